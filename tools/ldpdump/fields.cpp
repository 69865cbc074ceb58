// SPDX-License-Identifier: BSD-2-Clause
// Key fields per message type, taken from the record the codec returned:
// hold time and transport address, session parameters and capabilities,
// addresses, FEC elements, labels and status codes.
#include "fields.hpp"

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>

#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {

std::string json_string(const std::string &s)
{
    std::string out = "\"";
    for (unsigned char c : s) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += char(c);
        } else if (c < 0x20) {
            char esc[8];
            std::snprintf(esc, sizeof esc, "\\u%04x", c);
            out += esc;
        } else {
            out += char(c);
        }
    }
    return out + "\"";
}

std::string json_array(const std::vector<std::string> &values)
{
    std::string out = "[";
    for (size_t i = 0; i < values.size(); ++i) {
        out += (i ? "," : "") + values[i];
    }
    return out + "]";
}

std::string hex_bytes(const uint8_t *p, size_t n, const char *sep)
{
    std::string out;
    char b[4];
    for (size_t i = 0; p != nullptr && i < n; ++i) {
        std::snprintf(b, sizeof b, "%02x", p[i]);
        out += (i && *sep ? sep : "") + std::string(b);
    }
    return out;
}

std::string ipv4_text(uint32_t a)
{
    char t[16];
    std::snprintf(t, sizeof t, "%u.%u.%u.%u", a >> 24, (a >> 16) & 0xFFu, (a >> 8) & 0xFFu, a & 0xFFu);
    return t;
}

namespace {

using fields = std::vector<field>;

void num(fields &f, const char *key, uint64_t v, const char *label)
{
    f.push_back({key, std::to_string(v), label ? std::string(label) + " " + std::to_string(v) : ""});
}

void str(fields &f, const char *key, const std::string &v, const char *label)
{
    f.push_back({key, json_string(v), label ? std::string(label) + " " + v : ""});
}

void flag(fields &f, const char *key, bool v) { f.push_back({key, v ? "true" : "false", ""}); }

std::string addr_text(uint16_t family, const uint8_t *addr, size_t len)
{
    uint8_t full[16] = {};
    const size_t width = family == LDP_AF_IPV6 ? 16 : 4;
    std::memcpy(full, addr, len < width ? len : width);
    char t[64];
    if ((family != LDP_AF_IPV4 && family != LDP_AF_IPV6) ||
        inet_ntop(family == LDP_AF_IPV6 ? AF_INET6 : AF_INET, full, t, sizeof t) == nullptr) {
        return "?";
    }
    return t;
}

template <typename T, typename F> void each(const SLL_List &list, F fn)
{
    const auto *head = reinterpret_cast<const SLL_Node *>(&list);
    for (const SLL_Node *n = list.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        fn(*reinterpret_cast<const T *>(n));
    }
}

// FEC elements: JSON objects with a "type", and short text forms.
void fec(fields &f, const LDP_FecTlv &tlv)
{
    std::vector<std::string> json, text;
    each<LDP_FecElement>(tlv.stFecList, [&](const LDP_FecElement &e) {
        const LDP_FecElementBody &b = e.stBody;
        std::string j, t;
        switch (e.ucFecKind) {
        case LDP_FEC_WILDCARD:
            j = "{\"type\":\"wildcard\"}";
            t = "wildcard";
            break;
        case LDP_FEC_PREFIX: {
            const std::string a = addr_text(b.usAddrFamily, b.aucAddr, (b.ucPrefixLen + 7u) / 8u);
            j = "{\"type\":\"prefix\",\"family\":" + std::to_string(b.usAddrFamily) + ",\"address\":" +
                json_string(a) + ",\"prefix_len\":" + std::to_string(b.ucPrefixLen) + "}";
            t = a + "/" + std::to_string(b.ucPrefixLen);
            break;
        }
        case LDP_FEC_HOST_ADDR: {
            const std::string a = addr_text(b.usAddrFamily, b.aucAddr, b.ucPrefixLen);
            j = "{\"type\":\"host\",\"family\":" + std::to_string(b.usAddrFamily) + ",\"address\":" + json_string(a) +
                "}";
            t = "host " + a;
            break;
        }
        case LDP_FEC_MLDP_P2MP:
        case LDP_FEC_MLDP_MP2MP_UP:
        case LDP_FEC_MLDP_MP2MP_DOWN: {
            static const char *const kinds[] = {"p2mp", "mp2mp-up", "mp2mp-down"};
            const char *kind = kinds[e.ucFecKind - LDP_FEC_MLDP_P2MP];
            const std::string a = addr_text(b.usAddrFamily, b.aucAddr, b.ucPrefixLen);
            const std::string ov = hex_bytes(b.pucOpaqueValue, b.usOpaqueLen);
            j = std::string("{\"type\":\"") + kind + "\",\"family\":" + std::to_string(b.usAddrFamily) +
                ",\"root\":" + json_string(a) + ",\"opaque\":\"" + ov + "\"}";
            t = std::string(kind) + " root " + a + " opaque " + (ov.empty() ? "-" : ov);
            break;
        }
        case LDP_FEC_PWID:
        case LDP_FEC_GEN_PWID:
            j = std::string("{\"type\":\"") + (e.ucFecKind == LDP_FEC_PWID ? "pwid" : "gen-pwid") + "\"}";
            t = e.ucFecKind == LDP_FEC_PWID ? "pwid" : "gen-pwid";
            break;
        default:
            j = "{\"type\":" + std::to_string(e.ucFecKind) + "}";
            t = "element " + std::to_string(e.ucFecKind);
            break;
        }
        json.push_back(j);
        text.push_back(t);
    });
    std::string joined;
    for (const auto &t : text) {
        joined += (joined.empty() ? "" : ",") + t;
    }
    f.push_back({"fec", json_array(json), "fec " + (joined.empty() ? "-" : joined)});
}

void label(fields &f, const LDP_LabelTlv &l)
{
    switch (l.usLabelKind) {
    case LDP_TLV_ATM_LABEL:
        f.push_back({"atm_label", "{\"vpi\":" + std::to_string(l.usVpi) + ",\"vci\":" + std::to_string(l.usVci) + "}",
                     "atm-label " + std::to_string(l.usVpi) + "/" + std::to_string(l.usVci)});
        break;
    case LDP_TLV_FR_LABEL:
        num(f, "fr_label", l.ulLabel, "fr-label");
        break;
    default:
        num(f, "label", l.ulLabel, "label");
        break;
    }
}

void status(fields &f, const LDP_StatusTlv &st)
{
    const uint32_t code = st.ulStatusCode;
    num(f, "status_code", code, nullptr);
    num(f, "status_data", code & LDP_STATUS_DATA_MASK, nullptr);
    str(f, "status", status_name(code & LDP_STATUS_DATA_MASK), "status");
    flag(f, "status_fatal", code & LDP_STATUS_E_BIT);
    flag(f, "status_forward", code & LDP_STATUS_F_BIT);
    num(f, "status_msg_id", st.ulStatusMsgId, nullptr);
    num(f, "status_msg_type", st.usStatusMsgType, nullptr);
}

void caps(fields &f, const SLL_List &list)
{
    std::vector<std::string> json;
    std::string text;
    each<LDP_CapabilityParam>(list, [&](const LDP_CapabilityParam &c) {
        const unsigned type = c.stTlvHeader.usTlvType & LDP_TLV_TYPE_MASK;
        const size_t n = c.stTlvHeader.usTlvLen > 1 && c.pucCapData ? c.stTlvHeader.usTlvLen - 1u : 0u;
        json.push_back("{\"type\":" + std::to_string(type) + ",\"name\":" + json_string(tlv_name(type)) +
                       ",\"s\":" + ((c.ucSByte & LDP_CAP_S_BIT) ? "true" : "false") + ",\"data\":\"" +
                       hex_bytes(c.pucCapData, n) + "\"}");
        text += (text.empty() ? "" : ",") + std::string(tlv_name(type)) + ((c.ucSByte & LDP_CAP_S_BIT) ? "" : "(off)");
    });
    f.push_back({"capabilities", json_array(json), json.empty() ? "" : "caps " + text});
}

void addresses(fields &f, uint16_t family, const uint32_t *list, uint16_t count)
{
    num(f, "address_family", family, nullptr);
    num(f, "address_count", count, nullptr);
    if (list == nullptr) {
        if (family == LDP_AF_IPV6) {
            f.push_back({"", "", "addr (IPv6, not kept by the record)"});
        }
        return;
    }
    std::vector<std::string> json;
    std::string text;
    const auto *bytes = reinterpret_cast<const uint8_t *>(list);
    for (uint16_t i = 0; i < count; ++i) {
        uint32_t a;
        std::memcpy(&a, bytes + 4u * i, sizeof a);
        json.push_back(json_string(ipv4_text(a)));
        text += (i ? "," : "") + ipv4_text(a);
    }
    f.push_back({"addresses", json_array(json), "addr " + text});
}

void path_vector(fields &f, const LDP_PathVectorTlv &pv)
{
    std::vector<std::string> ids;
    const auto *bytes = reinterpret_cast<const uint8_t *>(pv.pulLsrId);
    for (uint16_t i = 0; bytes != nullptr && i < pv.usLsrIdCount; ++i) {
        uint32_t id;
        std::memcpy(&id, bytes + 4u * i, sizeof id);
        ids.push_back(json_string(ipv4_text(id)));
    }
    f.push_back({"path_vector", json_array(ids), "path-vector " + std::to_string(ids.size())});
}

void hello(fields &f, const LDP_HelloMsg &h)
{
    num(f, "hold_time", h.usHoldTime, "hold");
    flag(f, "targeted", h.usHelloFlags & LDP_HELLO_T_BIT);
    flag(f, "request_targeted", h.usHelloFlags & LDP_HELLO_R_BIT);
    if (h.usHelloFlags & LDP_HELLO_T_BIT) {
        f.push_back({"", "", "targeted"});
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_IPV4_TRANS) {
        str(f, "transport_address", ipv4_text(h.ulIpv4TransAddr), "taddr");
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_IPV6_TRANS) {
        str(f, "transport_address_v6", addr_text(LDP_AF_IPV6, h.aucIpv6TransAddr, 16), "taddr6");
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_CONF_SEQ) {
        num(f, "config_seq", h.ulConfSeqNum, "cseq");
    }
}

void init(fields &f, const LDP_InitMsg &m)
{
    const LDP_CommSessParamTlv &cs = m.stCommSess;
    num(f, "protocol_version", cs.usProtocolVersion, nullptr);
    num(f, "keepalive_time", cs.usKeepAliveTime, "ka");
    const std::string mode = (cs.usAdPvLim & 0x8000u) ? "DoD" : "DU";
    f.push_back({"advertisement", json_string(mode), mode});
    flag(f, "loop_detection", cs.usAdPvLim & 0x4000u);
    num(f, "path_vector_limit", cs.usAdPvLim & 0xFFu, nullptr);
    num(f, "max_pdu_length", cs.usMaxPduLen, "max-pdu");
    str(f, "receiver_lsr_id", ipv4_text(cs.ulReceiverLsrId), "to");
    num(f, "receiver_label_space", cs.usReceiverLabelSpace, nullptr);
    caps(f, m.stCapList);
}

} // namespace

std::vector<field> key_fields(uint32_t type, const void *rec)
{
    fields f;
    switch (type) {
    case LDP_MSG_HELLO:
        hello(f, *static_cast<const LDP_HelloMsg *>(rec));
        break;
    case LDP_MSG_INIT:
        init(f, *static_cast<const LDP_InitMsg *>(rec));
        break;
    case LDP_MSG_CAPABILITY:
        caps(f, static_cast<const LDP_CapabilityMsg *>(rec)->stCapList);
        break;
    case LDP_MSG_NOTIFICATION: {
        const auto &m = *static_cast<const LDP_NotifyMsg *>(rec);
        status(f, m.stStatusTlv);
        if (m.ucNotifFlags & LDP_NOTIF_EXT_STATUS) {
            num(f, "ext_status", m.ulExtStatus, nullptr);
        }
        if (m.ucNotifFlags & LDP_NOTIF_LABEL_REQ_ID) {
            num(f, "request_id", m.ulLabelReqMsgId, "req-id");
        }
        if (m.ucNotifFlags & LDP_NOTIF_FEC) {
            fec(f, m.stFecTlv);
        }
        if (m.ucNotifFlags2 & LDP_NOTIF2_LABEL) {
            label(f, m.stLabelTlv);
        }
        break;
    }
    case LDP_MSG_ADDRESS: {
        const auto &m = *static_cast<const LDP_AddressMsg *>(rec);
        addresses(f, m.usAddrFamily, m.pulAddrList, m.usAddrCount);
        break;
    }
    case LDP_MSG_ADDRESS_WITHDRAW: {
        const auto &m = *static_cast<const LDP_AddressWithdrawMsg *>(rec);
        if (m.ucAddrWdFlags & LDP_ADDRWD_ADDR_LIST) {
            addresses(f, m.usAddrFamily, m.pulAddrList, m.usAddrCount);
        }
        if (m.ucAddrWdFlags & LDP_ADDRWD_FEC) {
            fec(f, m.stFecTlv);
        }
        break;
    }
    case LDP_MSG_LABEL_MAPPING: {
        const auto &m = *static_cast<const LDP_MappingMsg *>(rec);
        fec(f, m.stFecTlv);
        label(f, m.stLabelTlv);
        if (m.ucOptFlags1 & LDP_MAP_OPT_LABEL_REQ_ID) {
            num(f, "request_id", m.stLabelReqIdTlv.ulReqMsgId, "req-id");
        }
        if (m.ucOptFlags1 & LDP_MAP_OPT_HOP_COUNT) {
            num(f, "hop_count", m.stHopCountTlv.ucHopCount, "hops");
        }
        if (m.ucOptFlags1 & LDP_MAP_OPT_PATH_VECTOR) {
            path_vector(f, m.stPathVectorTlv);
        }
        break;
    }
    case LDP_MSG_LABEL_REQUEST: {
        const auto &m = *static_cast<const LDP_RequestMsg *>(rec);
        fec(f, m.stFecTlv);
        if (m.ucOptFlags1 & LDP_REQ_OPT_LABEL) {
            label(f, m.stLabelTlv);
        }
        if (m.ucOptFlags1 & LDP_REQ_OPT_HOP_COUNT) {
            num(f, "hop_count", m.stHopCountTlv.ucHopCount, "hops");
        }
        if (m.ucOptFlags1 & LDP_REQ_OPT_PATH_VECTOR) {
            path_vector(f, m.stPathVectorTlv);
        }
        break;
    }
    case LDP_MSG_LABEL_WITHDRAW: {
        const auto &m = *static_cast<const LDP_LabelWithdrawMsg *>(rec);
        fec(f, m.stFecTlv);
        if (m.ucLblFlags & LDP_WDR_FLAG_LABEL) {
            label(f, m.stLabelTlv);
        }
        break;
    }
    case LDP_MSG_LABEL_RELEASE: {
        const auto &m = *static_cast<const LDP_LabelReleaseMsg *>(rec);
        fec(f, m.stFecTlv);
        if (m.ucLblFlags & LDP_REL_FLAG_LABEL) {
            label(f, m.stLabelTlv);
        }
        if (m.ucLblFlags & LDP_REL_FLAG_STATUS) {
            status(f, m.stStatusTlv);
        }
        break;
    }
    case LDP_MSG_LABEL_ABORT_REQUEST: {
        const auto &m = *static_cast<const LDP_LabelRequestAbortMsg *>(rec);
        fec(f, m.stFecTlv);
        num(f, "request_id", m.ulLabelReqMsgId, "req-id");
        break;
    }
    default:
        break;
    }
    return f;
}

} // namespace ldpdump
