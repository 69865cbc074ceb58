// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Notification message, and the Status TLV
// encoder it shares with Label Release.
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

extern "C" LDP_API uint32_t LDP_EncodeStatusTlv(uint8_t *pucBuf, LDP_StatusTlv *pstStatus,
                                                uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstStatus == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstStatus->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // Each field is swapped in the record and stays so: the record encodes once.
    pstStatus->ulStatusCode = wire::to_net32(pstStatus->ulStatusCode);
    if (tlv_out::put(pucBuf + 4, uint16_t(usRoom - 4), &pstStatus->ulStatusCode, 4, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstStatus->ulStatusMsgId = wire::to_net32(pstStatus->ulStatusMsgId);
    if (tlv_out::put(pucBuf + 8, uint16_t(usRoom - 8), &pstStatus->ulStatusMsgId, 4, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstStatus->usStatusMsgType = wire::to_net16(pstStatus->usStatusMsgType);
    if (tlv_out::put(pucBuf + 12, uint16_t(usRoom - 12), &pstStatus->usStatusMsgType, 2, srcfile::enc) !=
        LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}

namespace {

constexpr uint16_t kStatusTlvSize = 14;
constexpr uint16_t kLspIdTlvSize = 12;
constexpr uint16_t kWordTlvSize = 8; // a TLV with a 4-byte value

using tlv_out::out_cursor;

// A TLV whose value is a block of bytes kept as received. It must fit with a
// byte to spare in the room count's own terms: length + 3 < room.
uint32_t put_block(out_cursor &out, LDP_TlvHeader &hdr, const uint8_t *value)
{
    const uint16_t len = hdr.usTlvLen;
    if (!(int32_t(len) + 3 < int32_t(out.left))) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &hdr, srcfile::enc);
    if (len != 0) {
        mem::copy(out.pos + wire::kTlvHeaderSize, out.left - 4u, value, len, srcfile::enc);
    }
    out.take(wire::kTlvHeaderSize + uint32_t(len));
    return LDP_OK;
}

// A TLV with a 4-byte value already in wire order.
uint32_t put_word(out_cursor &out, LDP_TlvHeader &hdr, const void *value)
{
    if (out.left < kWordTlvSize) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(out.pos, out.left, &hdr, srcfile::enc);
    mem::copy(out.pos + wire::kTlvHeaderSize, out.left - 4u, value, 4, srcfile::enc);
    out.take(wire::kTlvHeaderSize + uint32_t(hdr.usTlvLen));
    return LDP_OK;
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeNotifMsg(uint8_t *pucBuf, LDP_NotifyMsg *pMsgRecord,
                                               uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    LDP_NotifyMsg &rec = *pMsgRecord;
    const uint16_t after_header = msg::room_after(usRoom, wire::kMsgHeaderSize);
    if (LDP_EncodeStatusTlv(pucBuf + wire::kMsgHeaderSize, &rec.stStatusTlv, ulMemModuleId, after_header) !=
        LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // The Status TLV always takes 14 bytes here, whatever length it holds.
    out_cursor out{pucBuf + wire::kMsgHeaderSize + kStatusTlvSize, msg::room_after(after_header, kStatusTlvSize)};

    const uint8_t flags = rec.ucNotifFlags;
    const uint8_t flags2 = rec.ucNotifFlags2;
    if (flags & LDP_NOTIF_RET_PDU) {
        if (put_block(out, rec.stRetPduTlv, rec.pucRetPdu) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        if (out.left == 0 && (flags & (LDP_NOTIF_RET_MSG | LDP_NOTIF_EXT_STATUS))) {
            return mem::no_room(srcfile::enc);
        }
    }
    if (flags & LDP_NOTIF_RET_MSG) {
        if (put_block(out, rec.stRetMsgTlv, rec.pucRetMsg) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        if (out.left == 0 && (flags & LDP_NOTIF_EXT_STATUS)) {
            return mem::no_room(srcfile::enc);
        }
    }
    if (flags & LDP_NOTIF_EXT_STATUS) {
        rec.ulExtStatus = wire::to_net32(rec.ulExtStatus);
        if (put_word(out, rec.stExtStatusTlv, &rec.ulExtStatus) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
    }
    if (flags & LDP_NOTIF_LSPID) {
        const uint32_t rc = LDP_EncodeLSPIdTlv(out.pos, &rec.stLspIdTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(kLspIdTlvSize);
    }
    if (flags & LDP_NOTIF_LABEL_REQ_ID) {
        rec.ulLabelReqMsgId = wire::to_net32(rec.ulLabelReqMsgId);
        if (put_word(out, rec.stLabelReqIdTlv, &rec.ulLabelReqMsgId) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
    }
    if ((flags & LDP_NOTIF_PW_STATUS) && put_word(out, rec.stPwStatusTlv, rec.pucPwStatus) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (flags2 & LDP_NOTIF2_MP_STATUS) {
        const uint32_t rc = LDP_EncodeMpStatusTlv(out.pos, &rec.stMpStatusTlv, ulMemModuleId, out.left);
        if (rc != LDP_OK) {
            return rc;
        }
        out.take(wire::kTlvHeaderSize + uint32_t(rec.stMpStatusTlv.stTlvHeader.usTlvLen));
    }
    if (flags & LDP_NOTIF_FEC) {
        if (LDP_EncodeFECTlv(out.pos, &rec.stFecTlv, ulMemModuleId, out.left) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        LDP_FreeFecElement(&rec.stFecTlv); // the elements go as soon as they are written
        out.take(wire::kTlvHeaderSize + uint32_t(rec.stFecTlv.stTlvHeader.usTlvLen));
        if (out.left == 0 && (flags & LDP_NOTIF_PW_IF_PARAM)) {
            return mem::no_room(srcfile::enc);
        }
    }
    if ((flags & LDP_NOTIF_PW_IF_PARAM) && put_block(out, rec.stPwIfParamTlv, rec.pucPwIfParam) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (flags2 & LDP_NOTIF2_LABEL) {
        return LDP_EncodeLabelTlv(out.pos, &rec.stLabelTlv, ulMemModuleId, out.left);
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeNotifyMsg(LDP_NotifyMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_NOTIFICATION) {
        return;
    }
    LDP_NotifyMsg &rec = *pMsgRecord;
    // The Returned PDU and Message bits stay set after their buffers go, and
    // the MP Status is left as it is: both intended.
    if (rec.pucRetMsg != nullptr) {
        mem::release(rec.pucRetMsg, srcfile::enc);
        rec.pucRetMsg = nullptr;
    }
    if (rec.pucRetPdu != nullptr) {
        mem::release(rec.pucRetPdu, srcfile::enc);
        rec.pucRetPdu = nullptr;
    }
    LDP_FreeFecElement(&rec.stFecTlv);
    rec.ucNotifFlags &= uint8_t(~(LDP_NOTIF_FEC | LDP_NOTIF_PW_STATUS));
    if (rec.pucPwStatus != nullptr) {
        mem::release(rec.pucPwStatus, srcfile::enc);
        rec.pucPwStatus = nullptr;
    }
    rec.ucNotifFlags &= uint8_t(~LDP_NOTIF_PW_IF_PARAM);
    if (rec.pucPwIfParam != nullptr) {
        mem::release(rec.pucPwIfParam, srcfile::enc);
        rec.pucPwIfParam = nullptr;
    }
}
