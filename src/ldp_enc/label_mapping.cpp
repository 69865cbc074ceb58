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

namespace {

// Output position and the bytes left after it; every decrease saturates at 0.
struct out_cursor {
    uint8_t *pos;
    uint16_t left;

    void take(uint32_t n)
    {
        pos += n;
        left = left > n ? uint16_t(left - n) : uint16_t(0);
    }
};

uint32_t put_req_id(out_cursor &out, LDP_LblReqMsgIdTlv &tlv)
{
    if (out.left <= 7) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    tlv.ulReqMsgId = wire::to_net32(tlv.ulReqMsgId);
    mem::copy(out.pos + 4, out.left - 4u, &tlv.ulReqMsgId, 4, srcfile::enc);
    out.take(8);
    return LDP_OK;
}

uint32_t put_hop_count(out_cursor &out, LDP_HopCountTlv &tlv)
{
    if (out.left < 5) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    out.pos[4] = tlv.ucHopCount;
    out.take(5);
    return LDP_OK;
}

uint32_t put_short(out_cursor &out, LDP_ShortTlv &tlv)
{
    if (out.left < 4) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    if (out.left - 4 < 2) {
        return mem::no_room(srcfile::enc);
    }
    tlv.usValue = wire::to_net16(tlv.usValue);
    mem::copy(out.pos + 4, out.left - 4u, &tlv.usValue, 2, srcfile::enc);
    out.take(6);
    return LDP_OK;
}

uint32_t put_word_ptr(out_cursor &out, LDP_PtrTlv &tlv)
{
    if (out.left < 8) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    mem::copy(out.pos + 4, out.left - 4u, tlv.pucValue, 4, srcfile::enc);
    out.take(8);
    return LDP_OK;
}

uint32_t put_var_ptr(out_cursor &out, LDP_PtrTlv &tlv)
{
    const uint16_t len = tlv.stTlvHeader.usTlvLen;
    if (int32_t(len) + 3 >= int32_t(out.left)) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    mem::copy(out.pos + 4, out.left - 4u, tlv.pucValue, len, srcfile::enc);
    out.take(4u + len);
    return LDP_OK;
}

uint32_t put_empty(out_cursor &out, LDP_TlvHeader &tlv)
{
    if (out.left < 4) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv, srcfile::enc);
    out.take(4);
    return LDP_OK;
}

uint32_t put_priv(out_cursor &out, LDP_PrivTlv &tlv)
{
    if (out.left < 6) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &tlv.stTlvHeader, srcfile::enc);
    mem::copy(out.pos + 4, out.left - 4u, tlv.aucValue, 2, srcfile::enc);
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
    if ((opt1 & LDP_MAP_OPT_LABEL_REQ_ID) && put_req_id(out, rec.stLabelReqIdTlv) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (opt1 & LDP_MAP_OPT_LSPID) {
        if (LDP_EncodeLSPIdTlv(out.pos, &rec.stLspIdTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(12);
    }
    if ((opt1 & LDP_MAP_OPT_HOP_COUNT) && put_hop_count(out, rec.stHopCountTlv) != LDP_OK) {
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
    if ((opt1 & LDP_MAP_OPT_WORD_PTR) && put_word_ptr(out, rec.stWordPtrTlv) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((opt1 & LDP_MAP_OPT_VAR_PTR) && put_var_ptr(out, rec.stVarPtrTlv) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (opt2 & LDP_MAP_OPT2_MP_STATUS) {
        if (LDP_EncodeMpStatusTlv(out.pos, &rec.stMpStatusTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        out.take(4u + rec.stMpStatusTlv.stTlvHeader.usTlvLen);
    }
    if ((opt2 & LDP_MAP_OPT2_EMPTY) && put_empty(out, rec.stEmptyTlv) != LDP_OK) {
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
    if ((opt2 & LDP_MAP_OPT2_PRIV) && put_priv(out, rec.stPrivTlv) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeLabelMappingMsg(LDP_MappingMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr || (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_LABEL_MAPPING) {
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
