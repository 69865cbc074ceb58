// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Label Mapping message. TLVs go out in a fixed
// order whatever order they arrived in; the caller has set every length.
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

uint32_t put_whole(out_cursor &out, LDP_TlvHeader &hdr, const void *value, uint16_t size,
                   const mem::where w = mem::where::current())
{
    return tlv_out::put_whole(out, hdr, value, size, srcfile::enc, w);
}

// The 2-byte extension TLV is checked in two steps: the header goes out
// before the room for its value is looked at.
uint32_t put_short(out_cursor &out, LDP_ShortTlv &tlv)
{
    if (tlv_out::begin(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    tlv.usValue = wire::to_net16(tlv.usValue);
    if (tlv_out::put(out.pos + 4, uint16_t(out.left - 4), &tlv.usValue, 2, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    out.take(6);
    return LDP_OK;
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeMappingMsg(uint8_t *pucBuf, LDP_MappingMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    LDP_MappingMsg &rec = *pMsgRecord;
    out_cursor out{pucBuf + wire::kMsgHeaderSize, msg::room_after(usRoom, wire::kMsgHeaderSize)};

    uint32_t rc = LDP_EncodeFECTlv(out.pos, &rec.stFecTlv, ulMemModuleId, out.left);
    if (rc != LDP_OK) {
        return rc;
    }
    out.take(4u + rec.stFecTlv.stTlvHeader.usTlvLen);

    rc = LDP_EncodeLabelTlv(out.pos, &rec.stLabelTlv, ulMemModuleId, out.left);
    if (rc != LDP_OK) {
        return rc;
    }
    out.take(4u + rec.stLabelTlv.stTlvHeader.usTlvLen);

    const uint8_t opt1 = rec.ucOptFlags1;
    const uint8_t opt2 = rec.ucOptFlags2;
    if (opt1 & LDP_MAP_OPT_LABEL_REQ_ID) {
        rec.stLabelReqIdTlv.ulReqMsgId = wire::to_net32(rec.stLabelReqIdTlv.ulReqMsgId);
        if (put_whole(out, rec.stLabelReqIdTlv.stTlvHeader, &rec.stLabelReqIdTlv.ulReqMsgId, 4) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
    }
    if (opt1 & LDP_MAP_OPT_LSPID) {
        if (LDP_EncodeLSPIdTlv(out.pos, &rec.stLspIdTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(12);
    }
    if ((opt1 & LDP_MAP_OPT_HOP_COUNT) &&
        put_whole(out, rec.stHopCountTlv.stTlvHeader, &rec.stHopCountTlv.ucHopCount, 1) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (opt1 & LDP_MAP_OPT_PATH_VECTOR) {
        if (LDP_EncodePathVectorTlv(out.pos, &rec.stPathVectorTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(4u + rec.stPathVectorTlv.stTlvHeader.usTlvLen);
    }
    if (opt1 & LDP_MAP_OPT_TRAFFIC) {
        if (LDP_EncodeTrafficTlv(out.pos, &rec.stTrafficTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(28);
    }
    if ((opt1 & LDP_MAP_OPT_SHORT) && put_short(out, rec.stShortTlv) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt1 & LDP_MAP_OPT_WORD_PTR) &&
        put_whole(out, rec.stWordPtrTlv.stTlvHeader, rec.stWordPtrTlv.pucValue, 4) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt1 & LDP_MAP_OPT_VAR_PTR) && put_whole(out, rec.stVarPtrTlv.stTlvHeader, rec.stVarPtrTlv.pucValue,
                                                 rec.stVarPtrTlv.stTlvHeader.usTlvLen) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (opt2 & LDP_MAP_OPT2_MP_STATUS) {
        if (LDP_EncodeMpStatusTlv(out.pos, &rec.stMpStatusTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(4u + rec.stMpStatusTlv.stTlvHeader.usTlvLen);
    }
    if ((opt2 & LDP_MAP_OPT2_EMPTY) && put_whole(out, rec.stEmptyTlv, nullptr, 0) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (rec.stUnknTlvList.ulCount != 0) {
        // The room shrinks but the position stays: see the private TLV below.
        rc = LDP_ProcUnknTlvList(&rec.stUnknTlvList, out.pos, ulMemModuleId, &out.left);
        if (rc != LDP_OK) {
            return rc;
        }
    }
    // Written at the position before the unknown TLVs, so it lands on the
    // first six bytes of those just written; this placement is intended.
    if ((opt2 & LDP_MAP_OPT2_PRIV) &&
        put_whole(out, rec.stPrivTlv.stTlvHeader, rec.stPrivTlv.aucValue, 2) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeLabelMappingMsg(LDP_MappingMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_LABEL_MAPPING) {
        return;
    }
    LDP_MappingMsg &rec = *pMsgRecord;
    label::free_unknown_tlvs(&rec.stUnknTlvList);
    LDP_FreeFecElement(&rec.stFecTlv);
    if (rec.stPathVectorTlv.pulLsrId != nullptr) {
        mem::release(rec.stPathVectorTlv.pulLsrId, srcfile::enc);
        rec.stPathVectorTlv.pulLsrId = nullptr; // its presence bit stays as it is
    }
    if (rec.stWordPtrTlv.pucValue != nullptr) {
        rec.ucOptFlags1 &= uint8_t(~LDP_MAP_OPT_WORD_PTR);
        mem::release(rec.stWordPtrTlv.pucValue, srcfile::enc);
        rec.stWordPtrTlv.pucValue = nullptr;
    }
    if (rec.stVarPtrTlv.pucValue != nullptr) {
        rec.ucOptFlags1 &= uint8_t(~LDP_MAP_OPT_VAR_PTR);
        mem::release(rec.stVarPtrTlv.pucValue, srcfile::enc);
        rec.stVarPtrTlv.pucValue = nullptr;
    }
}
