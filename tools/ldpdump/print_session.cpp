// SPDX-License-Identifier: BSD-2-Clause
// Field printers for the session message records (Hello, Initialization,
// Capability).
#include <cinttypes>

#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {
namespace {

void print_tlv(std::FILE *out, const char *name, const LDP_TlvHeader &t)
{
    std::fprintf(out, "    %s: type 0x%04x%s%s len %u\n", name, t.usTlvType,
                 (t.usTlvType & LDP_TLV_U_BIT) ? " U" : "", (t.usTlvType & LDP_TLV_F_BIT) ? " F" : "",
                 t.usTlvLen);
}

void print_ipv4(std::FILE *out, const char *name, uint32_t a)
{
    std::fprintf(out, "      %s %u.%u.%u.%u\n", name, a >> 24, (a >> 16) & 0xFFu, (a >> 8) & 0xFFu,
                 a & 0xFFu);
}

void print_hello(std::FILE *out, const LDP_HelloMsg &h)
{
    print_tlv(out, "Common Hello Parameters", h.stCommHelloTlv);
    const uint16_t flags = h.usHelloFlags;
    std::fprintf(out, "      usHoldTime %u  usHelloFlags 0x%04x%s%s\n", h.usHoldTime, flags,
                 (flags & LDP_HELLO_T_BIT) ? " T" : "", (flags & LDP_HELLO_R_BIT) ? " R" : "");
    std::fprintf(out, "    ucHelloOptFlags 0x%02x\n", h.ucHelloOptFlags);
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_IPV4_TRANS) {
        print_tlv(out, "IPv4 Transport Address", h.stIpv4TransTlv);
        print_ipv4(out, "ulIpv4TransAddr", h.ulIpv4TransAddr);
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_IPV6_TRANS) {
        print_tlv(out, "IPv6 Transport Address", h.stIpv6TransTlv);
        std::fprintf(out, "      aucIpv6TransAddr");
        for (unsigned i = 0; i < 16; i += 2) {
            std::fprintf(out, "%s%02x%02x", i ? ":" : " ", h.aucIpv6TransAddr[i],
                         h.aucIpv6TransAddr[i + 1]);
        }
        std::fprintf(out, "\n");
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_CONF_SEQ) {
        print_tlv(out, "Configuration Sequence Number", h.stConfSeqTlv);
        std::fprintf(out, "      ulConfSeqNum %u\n", h.ulConfSeqNum);
    }
    if (h.ucHelloOptFlags & LDP_HELLO_OPT_PRIV_3E0A) {
        print_tlv(out, "vendor-private 0x3E0A", h.stPrivHelloTlv);
        std::fprintf(out, "      aucPrivHelloValue %02x %02x\n", h.aucPrivHelloValue[0],
                     h.aucPrivHelloValue[1]);
    }
}

void print_caps(std::FILE *out, const SLL_List &caps)
{
    std::fprintf(out, "    stCapList: %u element(s)\n", caps.ulCount);
    const SLL_Node *head = &caps.stHead;
    for (const SLL_Node *n = caps.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        const auto *cap = reinterpret_cast<const LDP_CapabilityParam *>(n);
        print_tlv(out, "Capability Parameter", cap->stTlvHeader);
        std::fprintf(out, "      ucSByte 0x%02x%s", cap->ucSByte, (cap->ucSByte & LDP_CAP_S_BIT) ? " S" : "");
        if (cap->pucCapData != nullptr && cap->stTlvHeader.usTlvLen > 1) {
            std::fprintf(out, "  pucCapData");
            for (unsigned i = 0; i + 1u < cap->stTlvHeader.usTlvLen; ++i) {
                std::fprintf(out, " %02x", cap->pucCapData[i]);
            }
        }
        std::fprintf(out, "\n");
    }
}

// Only a record built for encoding carries these; a decoded one never does.
void print_label_range(std::FILE *out, const char *name, const LDP_LabelRangeSessParamTlv &t)
{
    print_tlv(out, name, t.stTlvHeader);
    std::fprintf(out, "      ulMndWord 0x%08x  %u range(s)\n", t.ulMndWord, t.stRangeList.ulCount);
    const SLL_Node *head = &t.stRangeList.stHead;
    for (const SLL_Node *n = t.stRangeList.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        const auto *r = reinterpret_cast<const LDP_LabelRangeComponent *>(n);
        std::fprintf(out, "        ulRangeMin 0x%08x  ulRangeMax 0x%08x\n", r->ulRangeMin, r->ulRangeMax);
    }
}

void print_init(std::FILE *out, const LDP_InitMsg &m)
{
    const LDP_CommSessParamTlv &cs = m.stCommSess;
    print_tlv(out, "Common Session Parameters", cs.stTlvHeader);
    const uint16_t adpv = cs.usAdPvLim;
    std::fprintf(out, "      usProtocolVersion %u  usKeepAliveTime %u  usAdPvLim 0x%04x (%s%s PVLim %u)\n",
                 cs.usProtocolVersion, cs.usKeepAliveTime, adpv, (adpv & 0x8000u) ? "A=DoD" : "A=DU",
                 (adpv & 0x4000u) ? " D" : "", adpv & 0xFFu);
    const uint32_t lsr = cs.ulReceiverLsrId;
    std::fprintf(out, "      usMaxPduLen %u  receiver LDP id %u.%u.%u.%u:%u\n", cs.usMaxPduLen, lsr >> 24,
                 (lsr >> 16) & 0xFFu, (lsr >> 8) & 0xFFu, lsr & 0xFFu, cs.usReceiverLabelSpace);
    std::fprintf(out, "    ucOptFlags 0x%02x  ucOptFlags2 0x%02x\n", m.ucOptFlags, m.ucOptFlags2);
    if (m.ucOptFlags & LDP_INIT_OPT_ATM_SESS) {
        print_label_range(out, "ATM Session Parameters", m.stAtmSess);
    }
    if (m.ucOptFlags & LDP_INIT_OPT_FR_SESS) {
        print_label_range(out, "Frame Relay Session Parameters", m.stFrSess);
    }
    if (m.ucOptFlags & LDP_INIT_OPT_FT_SESS) {
        const LDP_FtSessParamTlv &ft = m.stFtSess;
        print_tlv(out, "FT Session", ft.stTlvHeader);
        std::fprintf(out, "      usFtFlags 0x%04x  ulFtReconnectTimeout %u ms  ulFtRecoveryTime %u ms\n",
                     ft.usFtFlags, ft.ulFtReconnectTimeout, ft.ulFtRecoveryTime);
    }
    print_caps(out, m.stCapList);
}

} // namespace

void print_session_record(std::FILE *out, uint32_t type, const void *rec)
{
    switch (type) {
    case LDP_MSG_HELLO:
        print_hello(out, *static_cast<const LDP_HelloMsg *>(rec));
        break;
    case LDP_MSG_INIT:
        print_init(out, *static_cast<const LDP_InitMsg *>(rec));
        break;
    case LDP_MSG_CAPABILITY: {
        const auto &m = *static_cast<const LDP_CapabilityMsg *>(rec);
        std::fprintf(out, "    ulCapFlags 0x%08x\n", m.ulCapFlags);
        print_caps(out, m.stCapList);
        break;
    }
    default:
        break;
    }
}

} // namespace ldpdump
