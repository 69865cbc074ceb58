// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Label Request message. The FEC TLV always goes
// out first, then the flagged TLVs in a fixed order, the forwarded unknown
// TLVs last; the caller has set every length.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;
using tlv_out::out_cursor;

namespace {

constexpr uint16_t kLspIdTlvSize = 12;
constexpr uint16_t kTrafficTlvSize = 28;
constexpr uint16_t kWordTlvSize = 8;

uint32_t put_whole(out_cursor &out, LDP_TlvHeader &hdr, const void *value, uint16_t size,
                   const mem::where w = mem::where::current())
{
    return tlv_out::put_whole(out, hdr, value, size, srcfile::enc, w);
}

// An extension TLV with a 4-byte integer: room is looked at first, then the
// value is swapped in place (it stays in network order in the record).
uint32_t put_word(out_cursor &out, LDP_WordTlv &tlv, const mem::where w = mem::where::current())
{
    if (out.left < kWordTlvSize) {
        return mem::no_room(srcfile::enc, w);
    }
    tlv.ulValue = wire::to_net32(tlv.ulValue);
    return put_whole(out, tlv.stTlvHeader, &tlv.ulValue, 4, w);
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeReqMsg(uint8_t *pucBuf, LDP_RequestMsg *pMsgRecord, uint32_t ulMemModuleId,
                                             uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    LDP_RequestMsg &rec = *pMsgRecord;
    out_cursor out{pucBuf + wire::kMsgHeaderSize, msg::room_after(usRoom, wire::kMsgHeaderSize)};

    uint32_t rc = LDP_EncodeFECTlv(out.pos, &rec.stFecTlv, ulMemModuleId, out.left);
    if (rc != LDP_OK) {
        return rc;
    }
    out.take(4u + rec.stFecTlv.stTlvHeader.usTlvLen);

    const uint8_t opt1 = rec.ucOptFlags1;
    const uint8_t opt2 = rec.ucOptFlags2;
    if (opt1 & LDP_REQ_OPT_LABEL) {
        rc = LDP_EncodeLabelTlv(out.pos, &rec.stLabelTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(4u + rec.stLabelTlv.stTlvHeader.usTlvLen);
    }
    if (opt1 & LDP_REQ_OPT_LSPID) {
        rc = LDP_EncodeLSPIdTlv(out.pos, &rec.stLspIdTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(kLspIdTlvSize);
    }
    if ((opt1 & LDP_REQ_OPT_HOP_COUNT) &&
        put_whole(out, rec.stHopCountTlv.stTlvHeader, &rec.stHopCountTlv.ucHopCount, 1) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (opt1 & LDP_REQ_OPT_PATH_VECTOR) {
        rc = LDP_EncodePathVectorTlv(out.pos, &rec.stPathVectorTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(4u + rec.stPathVectorTlv.stTlvHeader.usTlvLen);
    }
    // The ER TLV goes out after the Path Vector although its bit comes before.
    if (opt1 & LDP_REQ_OPT_ER) {
        if (LDP_EncodeERTlv(out.pos, &rec.stErTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(4u + rec.stErTlv.stTlvHeader.usTlvLen);
    }
    if (opt1 & LDP_REQ_OPT_TRAFFIC) {
        rc = LDP_EncodeTrafficTlv(out.pos, &rec.stTrafficTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(kTrafficTlvSize);
    }
    // Written A, C, B: the third word slot goes out between the other two.
    if ((opt1 & LDP_REQ_OPT_WORD_A) && put_word(out, rec.stWordTlvA) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt2 & LDP_REQ_OPT2_WORD_C) && put_word(out, rec.stWordTlvC) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt1 & LDP_REQ_OPT_WORD_B) && put_word(out, rec.stWordTlvB) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt2 & LDP_REQ_OPT2_RAW_WORD) &&
        put_whole(out, rec.stRawWordTlv.stTlvHeader, rec.stRawWordTlv.aucValue, 4) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt2 & LDP_REQ_OPT2_VAR_PTR) && put_whole(out, rec.stVarPtrTlv.stTlvHeader, rec.stVarPtrTlv.pucValue,
                                                  rec.stVarPtrTlv.stTlvHeader.usTlvLen) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (rec.stUnknTlvList.ulCount != 0) {
        return LDP_ProcUnknTlvList(&rec.stUnknTlvList, out.pos, ulMemModuleId, &out.left);
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeLabelRequestMsg(LDP_RequestMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_LABEL_REQUEST) {
        return;
    }
    LDP_RequestMsg &rec = *pMsgRecord;
    label::free_unknown_tlvs(&rec.stUnknTlvList);
    LDP_FreeFecElement(&rec.stFecTlv);
    if (rec.stPathVectorTlv.pulLsrId != nullptr) {
        mem::release(rec.stPathVectorTlv.pulLsrId, srcfile::enc);
        rec.stPathVectorTlv.pulLsrId = nullptr; // its presence bit stays as it is
    }
    if (rec.stVarPtrTlv.pucValue != nullptr) {
        rec.ucOptFlags2 &= uint8_t(~LDP_REQ_OPT2_VAR_PTR);
        mem::release(rec.stVarPtrTlv.pucValue, srcfile::enc);
        rec.stVarPtrTlv.pucValue = nullptr;
    }
    // ER hops own nothing, so the list service frees them one by one.
    SLL_FreeAll(&rec.stErTlv.stHopList, LDP_MemFreeCallBack);
}
