// SPDX-License-Identifier: BSD-2-Clause
// ldpdump printers for the Notification and the Address messages.
#include <cstring>

#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {

// Status data names of RFC 5036 section 3.9, and a few later ones LDP peers
// send (PW status, capabilities, End-of-LIB, dual stack).
const char *status_name(uint32_t data)
{
    static const char *const rfc5036[] = {
        "Success",
        "Bad LDP Identifier",
        "Bad Protocol Version",
        "Bad PDU Length",
        "Unknown Message Type",
        "Bad Message Length",
        "Unknown TLV",
        "Bad TLV Length",
        "Malformed TLV Value",
        "Hold Timer Expired",
        "Shutdown",
        "Loop Detected",
        "Unknown FEC",
        "No Route",
        "No Label Resources",
        "Label Resources / Available",
        "Session Rejected/No Hello",
        "Session Rejected/Parameters Advertisement Mode",
        "Session Rejected/Parameters Max PDU Length",
        "Session Rejected/Parameters Label Range",
        "KeepAlive Timer Expired",
        "Label Request Aborted",
        "Missing Message Parameters",
        "Unsupported Address Family",
        "Session Rejected/Bad KeepAlive Time",
        "Internal Error",
    };
    if (data < sizeof rfc5036 / sizeof rfc5036[0]) {
        return rfc5036[data];
    }
    switch (data) {
    case 0x1A: return "No LDP Session";
    case 0x20: return "Temporary Shutdown";
    case LDP_STATUS_DATA_PW_STATUS: return "PW Status";
    case 0x2E: return "Unsupported Capability"; // RFC 5561
    case 0x2F: return "End-of-LIB";             // RFC 5919
    case 0x32: return "Transport Connection Mismatch"; // RFC 7552
    case 0x33: return "Dual-Stack Noncompliance";      // RFC 7552
    default: return "unknown status";
    }
}

namespace {

void print_tlv(std::FILE *out, const char *name, const LDP_TlvHeader &t)
{
    std::fprintf(out, "    %s: type 0x%04x%s%s len %u\n", name, t.usTlvType,
                 (t.usTlvType & LDP_TLV_U_BIT) ? " U" : "", (t.usTlvType & LDP_TLV_F_BIT) ? " F" : "",
                 t.usTlvLen);
}

void print_bytes(std::FILE *out, const char *name, const uint8_t *p, unsigned n)
{
    std::fprintf(out, "      %s", name);
    for (unsigned i = 0; p != nullptr && i < n; ++i) {
        std::fprintf(out, " %02x", p[i]);
    }
    std::fputc('\n', out);
}

void print_ipv4(std::FILE *out, uint32_t a)
{
    std::fprintf(out, " %u.%u.%u.%u", a >> 24, (a >> 16) & 0xFFu, (a >> 8) & 0xFFu, a & 0xFFu);
}

void print_addr_list(std::FILE *out, const LDP_TlvHeader &tlv, uint16_t family, const uint32_t *list,
                     uint16_t count)
{
    print_tlv(out, "Address List", tlv);
    std::fprintf(out, "      usAddrFamily %u (%s)  usAddrCount %u\n", family,
                 family == LDP_AF_IPV4 ? "IPv4" : family == LDP_AF_IPV6 ? "IPv6, not kept" : "?", count);
    if (list == nullptr) {
        return;
    }
    std::fprintf(out, "      pulAddrList");
    const auto *bytes = reinterpret_cast<const uint8_t *>(list);
    for (uint16_t i = 0; i < count; ++i) {
        uint32_t a;
        std::memcpy(&a, bytes + 4u * i, sizeof a);
        print_ipv4(out, a);
    }
    std::fputc('\n', out);
}

} // namespace

void print_notify(std::FILE *out, const LDP_NotifyMsg *m)
{
    const LDP_StatusTlv &st = m->stStatusTlv;
    const uint32_t code = st.ulStatusCode;
    print_tlv(out, "Status", st.stTlvHeader);
    std::fprintf(out, "      ulStatusCode 0x%08x%s%s: %s (%u)\n", code, (code & LDP_STATUS_E_BIT) ? " E" : "",
                 (code & LDP_STATUS_F_BIT) ? " F" : "", status_name(code & LDP_STATUS_DATA_MASK),
                 code & LDP_STATUS_DATA_MASK);
    std::fprintf(out, "      ulStatusMsgId %u  usStatusMsgType 0x%04x (%s)\n", st.ulStatusMsgId,
                 st.usStatusMsgType,
                 st.usStatusMsgType != 0 ? message_name(st.usStatusMsgType & LDP_MSG_TYPE_MASK) : "none");
    const uint8_t f = m->ucNotifFlags;
    const uint8_t f2 = m->ucNotifFlags2;
    std::fprintf(out, "    ucNotifFlags 0x%02x  ucNotifFlags2 0x%02x\n", f, f2);
    if (f & LDP_NOTIF_EXT_STATUS) {
        print_tlv(out, "Extended Status", m->stExtStatusTlv);
        std::fprintf(out, "      ulExtStatus 0x%08x\n", m->ulExtStatus);
    }
    if (f & LDP_NOTIF_RET_PDU) {
        print_tlv(out, "Returned PDU", m->stRetPduTlv);
        print_bytes(out, "pucRetPdu", m->pucRetPdu, m->stRetPduTlv.usTlvLen);
    }
    if (f & LDP_NOTIF_RET_MSG) {
        print_tlv(out, "Returned Message", m->stRetMsgTlv);
        print_bytes(out, "pucRetMsg", m->pucRetMsg, m->stRetMsgTlv.usTlvLen);
    }
    if (f & LDP_NOTIF_LSPID) {
        print_tlv(out, "LSPID", m->stLspIdTlv.stTlvHeader);
        std::fprintf(out, "      usLocalCrLspId %u  ulIngressLsrId", m->stLspIdTlv.usLocalCrLspId);
        print_ipv4(out, m->stLspIdTlv.ulIngressLsrId);
        std::fputc('\n', out);
    }
    if (f & LDP_NOTIF_LABEL_REQ_ID) {
        print_tlv(out, "Label Request Message ID", m->stLabelReqIdTlv);
        std::fprintf(out, "      ulLabelReqMsgId %u\n", m->ulLabelReqMsgId);
    }
    if (f & LDP_NOTIF_FEC) {
        print_fec_tlv(out, &m->stFecTlv);
    }
    if (f & LDP_NOTIF_PW_STATUS) {
        print_tlv(out, "PW Status", m->stPwStatusTlv);
        print_bytes(out, "pucPwStatus", m->pucPwStatus, 4);
    }
    if (f & LDP_NOTIF_PW_IF_PARAM) {
        print_tlv(out, "PW Interface Parameters", m->stPwIfParamTlv);
        print_bytes(out, "pucPwIfParam", m->pucPwIfParam, m->stPwIfParamTlv.usTlvLen);
    }
    if (f2 & LDP_NOTIF2_MP_STATUS) {
        print_mp_status_tlv(out, &m->stMpStatusTlv);
    }
    if (f2 & LDP_NOTIF2_LABEL) {
        print_tlv(out, "Generic Label", m->stLabelTlv.stTlvHeader);
        std::fprintf(out, "      ulLabel %u\n", m->stLabelTlv.ulLabel);
    }
}

void print_address(std::FILE *out, const LDP_AddressMsg *m)
{
    print_addr_list(out, m->stAddrListTlv, m->usAddrFamily, m->pulAddrList, m->usAddrCount);
}

void print_address_withdraw(std::FILE *out, const LDP_AddressWithdrawMsg *m)
{
    std::fprintf(out, "    ucAddrWdFlags 0x%02x\n", m->ucAddrWdFlags);
    if (m->ucAddrWdFlags & LDP_ADDRWD_ADDR_LIST) {
        print_addr_list(out, m->stAddrListTlv, m->usAddrFamily, m->pulAddrList, m->usAddrCount);
    }
    if (m->ucAddrWdFlags & LDP_ADDRWD_FEC) {
        print_fec_tlv(out, &m->stFecTlv);
    }
}

} // namespace ldpdump
