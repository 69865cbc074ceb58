// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Label Withdraw and Label Release messages: the
// FEC TLV, then the flagged Label and LSPID TLVs (and, for a Release, the
// Status TLV), then the forwarded unknown TLVs.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;
using tlv_out::out_cursor;

namespace {

constexpr uint16_t kLspIdTlvSize = 12;
constexpr uint16_t kStatusTlvSize = 14;

template <class Rec>
struct msg_traits;

template <>
struct msg_traits<LDP_LabelWithdrawMsg> {
    static constexpr uint16_t type = LDP_MSG_LABEL_WITHDRAW;
    static constexpr uint8_t label_bit = LDP_WDR_FLAG_LABEL;
    static constexpr uint8_t lspid_bit = LDP_WDR_FLAG_LSPID;
    static void encode_status(out_cursor &, LDP_LabelWithdrawMsg &, uint32_t) {}
};

template <>
struct msg_traits<LDP_LabelReleaseMsg> {
    static constexpr uint16_t type = LDP_MSG_LABEL_RELEASE;
    static constexpr uint8_t label_bit = LDP_REL_FLAG_LABEL;
    static constexpr uint8_t lspid_bit = LDP_REL_FLAG_LSPID;

    static void encode_status(out_cursor &out, LDP_LabelReleaseMsg &rec, uint32_t module)
    {
        if ((rec.ucLblFlags & LDP_REL_FLAG_STATUS) == 0) {
            return;
        }
        // The Status encoder's answer is not looked at: a failure here leaves
        // the outcome to the steps that follow. Intended.
        (void)LDP_EncodeStatusTlv(out.pos, &rec.stStatusTlv, module, out.left);
        out.take(kStatusTlvSize);
    }
};

bool is_label_kind(uint16_t kind)
{
    return kind == LDP_TLV_GENERIC_LABEL || kind == LDP_TLV_ATM_LABEL || kind == LDP_TLV_FR_LABEL;
}

template <class Rec>
uint32_t encode(uint8_t *buf, Rec *pRec, uint32_t module, uint16_t room)
{
    using traits = msg_traits<Rec>;
    if (msg::begin_encode(buf, pRec, module, room) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    Rec &rec = *pRec;
    out_cursor out{buf + wire::kMsgHeaderSize, msg::room_after(room, wire::kMsgHeaderSize)};

    const uint16_t fec_len = rec.stFecTlv.stTlvHeader.usTlvLen;
    uint32_t rc = LDP_EncodeFECTlv(out.pos, &rec.stFecTlv, module, out.left);
    if (rc != LDP_OK) {
        return rc;
    }
    out.take(4u + fec_len);

    if (rec.ucLblFlags & traits::label_bit) {
        rc = LDP_EncodeLabelTlv(out.pos, &rec.stLabelTlv, module, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        // A label of any other kind would step over its header alone; the
        // label encoder refuses such kinds first, so this is a guard.
        const bool whole = is_label_kind(rec.stLabelTlv.usLabelKind);
        out.take(4u + (whole ? rec.stLabelTlv.stTlvHeader.usTlvLen : 0u));
    }
    if (rec.ucLblFlags & traits::lspid_bit) {
        rc = LDP_EncodeLSPIdTlv(out.pos, &rec.stLspIdTlv, module, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(kLspIdTlvSize);
    }
    traits::encode_status(out, rec, module);
    if (rec.stUnknTlvList.ulCount != 0) {
        return LDP_ProcUnknTlvList(&rec.stUnknTlvList, out.pos, module, &out.left);
    }
    return LDP_OK;
}

template <class Rec>
void release(Rec *rec)
{
    if (rec == nullptr || (rec->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != msg_traits<Rec>::type) {
        return;
    }
    SLL_List *unknown = &rec->stUnknTlvList;
    // The list is reset only when it held something; presence bits stay.
    if (unknown->ulCount != 0 && list::first(unknown) != nullptr) {
        label::free_unknown_elements(unknown);
        list::reset_empty(unknown);
    }
    LDP_FreeFecElement(&rec->stFecTlv);
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeWithdrawMsg(uint8_t *pucBuf, LDP_LabelWithdrawMsg *pMsgRecord,
                                                  uint32_t ulMemModuleId, uint16_t usRoom)
{
    return encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom);
}

extern "C" LDP_API void LDP_FreeLabelWithdrawMsg(LDP_LabelWithdrawMsg *pMsgRecord)
{
    release(pMsgRecord);
}

extern "C" LDP_API uint32_t LDP_EncodeReleaseMsg(uint8_t *pucBuf, LDP_LabelReleaseMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId, uint16_t usRoom)
{
    return encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom);
}

extern "C" LDP_API void LDP_FreeLabelReleaseMsg(LDP_LabelReleaseMsg *pMsgRecord)
{
    release(pMsgRecord);
}
