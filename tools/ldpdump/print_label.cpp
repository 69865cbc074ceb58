// SPDX-License-Identifier: BSD-2-Clause
// ldpdump printers for the label messages and the TLVs they share.
#include <cstring>

#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {
namespace {

void print_label_tlv(std::FILE *out, const LDP_LabelTlv &l)
{
    switch (l.usLabelKind) {
    case LDP_TLV_ATM_LABEL:
        std::fprintf(out, "    label: ATM vpi %u vci %u\n", l.usVpi, l.usVci);
        break;
    case LDP_TLV_FR_LABEL:
        std::fprintf(out, "    label: Frame Relay 0x%08x\n", l.ulLabel);
        break;
    default:
        std::fprintf(out, "    label: %u\n", l.ulLabel);
        break;
    }
}

void print_path_vector(std::FILE *out, const LDP_PathVectorTlv &pv)
{
    std::fprintf(out, "    path vector (%u):", pv.usLsrIdCount);
    const auto *ids = reinterpret_cast<const uint8_t *>(pv.pulLsrId);
    for (uint16_t i = 0; ids != nullptr && i < pv.usLsrIdCount; ++i) {
        uint32_t id;
        std::memcpy(&id, ids + 4u * i, sizeof id);
        std::fprintf(out, " %u.%u.%u.%u", id >> 24, (id >> 16) & 0xFF, (id >> 8) & 0xFF, id & 0xFF);
    }
    std::fputc('\n', out);
}

void print_unknown_tlvs(std::FILE *out, const SLL_List &l)
{
    const auto *head = reinterpret_cast<const SLL_Node *>(&l);
    for (const SLL_Node *n = l.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        const auto *t = reinterpret_cast<const LDP_UnknownTlv *>(n);
        std::fprintf(out, "    unknown TLV kept for forwarding (%u bytes):", t->ulTlvLen);
        for (uint32_t i = 0; i < t->ulTlvLen; ++i) {
            std::fprintf(out, " %02x", t->pucTlv[i]);
        }
        std::fputc('\n', out);
    }
}

} // namespace

void print_mapping(std::FILE *out, const LDP_MappingMsg *m)
{
    print_fec_tlv(out, &m->stFecTlv);
    print_label_tlv(out, m->stLabelTlv);
    const uint8_t opt1 = m->ucOptFlags1;
    const uint8_t opt2 = m->ucOptFlags2;
    if (opt1 & LDP_MAP_OPT_LABEL_REQ_ID) {
        std::fprintf(out, "    label request message ID: %u\n", m->stLabelReqIdTlv.ulReqMsgId);
    }
    if (opt1 & LDP_MAP_OPT_HOP_COUNT) {
        std::fprintf(out, "    hop count: %u\n", m->stHopCountTlv.ucHopCount);
    }
    if (opt1 & LDP_MAP_OPT_PATH_VECTOR) {
        print_path_vector(out, m->stPathVectorTlv);
    }
    if (opt1 & LDP_MAP_OPT_SHORT) {
        std::fprintf(out, "    TLV 0x%04x: 0x%04x\n", m->stShortTlv.stTlvHeader.usTlvType & LDP_TLV_TYPE_MASK,
                     m->stShortTlv.usValue);
    }
    if (opt2 & LDP_MAP_OPT2_MP_STATUS) {
        print_mp_status_tlv(out, &m->stMpStatusTlv);
    }
    if (opt2 & LDP_MAP_OPT2_PRIV) {
        std::fprintf(out, "    vendor-private TLV 0x3e0a: %02x %02x\n", m->stPrivTlv.aucValue[0],
                     m->stPrivTlv.aucValue[1]);
    }
    if (opt2 & LDP_MAP_OPT2_EMPTY) {
        std::fputs("    TLV 0x0206 (empty)\n", out);
    }
    print_unknown_tlvs(out, m->stUnknTlvList);
}

void print_request(std::FILE *out, const LDP_RequestMsg *m)
{
    const uint8_t opt1 = m->ucOptFlags1;
    std::fprintf(out, "    ucOptFlags1 0x%02x  ucOptFlags2 0x%02x\n", opt1, m->ucOptFlags2);
    print_fec_tlv(out, &m->stFecTlv);
    if (opt1 & LDP_REQ_OPT_LABEL) {
        print_label_tlv(out, m->stLabelTlv);
    }
    if (opt1 & LDP_REQ_OPT_HOP_COUNT) {
        std::fprintf(out, "    hop count: %u\n", m->stHopCountTlv.ucHopCount);
    }
    if (opt1 & LDP_REQ_OPT_PATH_VECTOR) {
        print_path_vector(out, m->stPathVectorTlv);
    }
    print_unknown_tlvs(out, m->stUnknTlvList);
}

void print_withdraw(std::FILE *out, const LDP_LabelWithdrawMsg *m)
{
    std::fprintf(out, "    ucLblFlags 0x%02x\n", m->ucLblFlags);
    print_fec_tlv(out, &m->stFecTlv);
    if (m->ucLblFlags & LDP_WDR_FLAG_LABEL) {
        print_label_tlv(out, m->stLabelTlv);
    }
    print_unknown_tlvs(out, m->stUnknTlvList);
}

void print_release(std::FILE *out, const LDP_LabelReleaseMsg *m)
{
    std::fprintf(out, "    ucLblFlags 0x%02x\n", m->ucLblFlags);
    print_fec_tlv(out, &m->stFecTlv);
    if (m->ucLblFlags & LDP_REL_FLAG_LABEL) {
        print_label_tlv(out, m->stLabelTlv);
    }
    if (m->ucLblFlags & LDP_REL_FLAG_STATUS) {
        const LDP_StatusTlv &st = m->stStatusTlv;
        std::fprintf(out, "    stStatusTlv: ulStatusCode 0x%08x  ulStatusMsgId %u (0x%08x)  usStatusMsgType 0x%04x\n",
                     st.ulStatusCode, st.ulStatusMsgId, st.ulStatusMsgId, st.usStatusMsgType);
    }
    print_unknown_tlvs(out, m->stUnknTlvList);
}

void print_abort(std::FILE *out, const LDP_LabelRequestAbortMsg *m)
{
    print_fec_tlv(out, &m->stFecTlv);
    std::fprintf(out, "    ulLabelReqMsgId %u (0x%08x)\n", m->ulLabelReqMsgId, m->ulLabelReqMsgId);
}

} // namespace ldpdump
