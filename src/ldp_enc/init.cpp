// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Initialization message: the Common Session
// TLV, the label range TLVs for ATM and Frame Relay, FT Session, and the
// Capability Parameter TLV that the Capability message reuses.
#include <cstddef>
#include <cstdint>

#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "capability.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t kCommSessValueLen = 14;
constexpr uint16_t kFtSessValueLen = 12;

// ATM and Frame Relay Session Parameters share one layout and one encoder.
uint32_t encode_label_range(uint8_t *buf, LDP_LabelRangeSessParamTlv *tlv, uint16_t room)
{
    if (buf == nullptr || tlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(buf, room, &tlv->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    uint8_t *at = buf + wire::kTlvHeaderSize;
    uint16_t left = uint16_t(room - wire::kTlvHeaderSize);
    tlv->ulMndWord = wire::to_net32(tlv->ulMndWord);
    const uint32_t mnd = tlv->ulMndWord;
    if (tlv_out::put(at, left, &mnd, 4, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    at += 4;
    left = uint16_t(left - 4);
    // An empty range list is refused, though only after the header and the
    // M/N/D word have gone out; a listed count without a first element is
    // accepted. Both are intended.
    if (tlv->stRangeList.ulCount == 0) {
        return LDP_ERR_PARAM;
    }
    SLL_List *ranges = &tlv->stRangeList;
    for (SLL_Node *node = list::first(ranges); !list::is_end(ranges, node); node = node->pNext) {
        auto *range = reinterpret_cast<LDP_LabelRangeComponent *>(node);
        range->ulRangeMin = wire::to_net32(range->ulRangeMin);
        range->ulRangeMax = wire::to_net32(range->ulRangeMax);
        const uint32_t min = range->ulRangeMin;
        const uint32_t max = range->ulRangeMax;
        if (tlv_out::put(at, left, &min, 4, srcfile::enc) != LDP_OK ||
            tlv_out::put(at + 4, msg::room_after(left, 4), &max, 4, srcfile::enc) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        at += 8;
        left = uint16_t(left - 8);
    }
    return LDP_OK;
}

// The ATM and Frame Relay steps of the Initialization encoder.
struct label_range_step {
    uint8_t flag;
    uint32_t (*encode)(uint8_t *, LDP_LabelRangeSessParamTlv *, uint32_t, uint16_t);
    LDP_LabelRangeSessParamTlv *tlv;
};

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeInitMsg(uint8_t *pucBuf, LDP_InitMsg *pMsgRecord,
                                              uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    uint16_t room = msg::room_after(usRoom, wire::kMsgHeaderSize);
    if (LDP_EncodeCommSessParamTlv(pucBuf + wire::kMsgHeaderSize, &pMsgRecord->stCommSess,
                                   ulMemModuleId, room) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // Wire order is fixed: Common Session, ATM, Frame Relay, FT, capabilities.
    // Each step advances by the length the record gives, not by what was written.
    uint8_t *at = pucBuf + 26;
    room = msg::room_after(room, 18);
    const uint8_t flags = pMsgRecord->ucOptFlags;
    const label_range_step ranges[] = {
        {LDP_INIT_OPT_ATM_SESS, LDP_EncodeATMSessParamTlv, &pMsgRecord->stAtmSess},
        {LDP_INIT_OPT_FR_SESS, LDP_EncodeFRSessParamTlv, &pMsgRecord->stFrSess},
    };
    for (const label_range_step &r : ranges) {
        if ((flags & r.flag) == 0) {
            continue;
        }
        if (r.encode(at, r.tlv, ulMemModuleId, room) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        const uint16_t step = uint16_t(r.tlv->stTlvHeader.usTlvLen + 4u);
        at += step;
        room = msg::room_after(room, step);
    }
    if (flags & LDP_INIT_OPT_FT_SESS) {
        if (LDP_EncodeFTSessParamTlv(at, &pMsgRecord->stFtSess, ulMemModuleId, room) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        at += 16;
        room = msg::room_after(room, 16);
    }
    return caps::encode_list(at, &pMsgRecord->stCapList, ulMemModuleId, room);
}

extern "C" LDP_API uint32_t LDP_EncodeCommSessParamTlv(uint8_t *pucBuf, LDP_CommSessParamTlv *pstTlv,
                                                       uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstTlv->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstTlv->usProtocolVersion = wire::to_net16(pstTlv->usProtocolVersion);
    pstTlv->usKeepAliveTime = wire::to_net16(pstTlv->usKeepAliveTime);
    pstTlv->usAdPvLim = wire::to_net16(pstTlv->usAdPvLim);
    pstTlv->usMaxPduLen = wire::to_net16(pstTlv->usMaxPduLen);
    pstTlv->ulReceiverLsrId = wire::to_net32(pstTlv->ulReceiverLsrId);
    pstTlv->usReceiverLabelSpace = wire::to_net16(pstTlv->usReceiverLabelSpace);
    // Always the 14 value bytes, whatever usTlvLen says.
    const auto *fields =
        reinterpret_cast<const uint8_t *>(pstTlv) + offsetof(LDP_CommSessParamTlv, usProtocolVersion);
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize, uint16_t(usRoom - wire::kTlvHeaderSize), fields,
                        kCommSessValueLen, srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_EncodeATMSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                                      uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    return encode_label_range(pucBuf, pstTlv, usRoom);
}

extern "C" LDP_API uint32_t LDP_EncodeFRSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                                     uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    return encode_label_range(pucBuf, pstTlv, usRoom);
}

extern "C" LDP_API uint32_t LDP_EncodeFTSessParamTlv(uint8_t *pucBuf, LDP_FtSessParamTlv *pstTlv,
                                                     uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstTlv->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstTlv->usFtReserved = 0; // reserved bits always go out as zero
    pstTlv->usFtFlags = wire::to_net16(pstTlv->usFtFlags);
    pstTlv->ulFtReconnectTimeout = wire::to_net32(pstTlv->ulFtReconnectTimeout);
    pstTlv->ulFtRecoveryTime = wire::to_net32(pstTlv->ulFtRecoveryTime);
    const auto *fields = reinterpret_cast<const uint8_t *>(pstTlv) + offsetof(LDP_FtSessParamTlv, usFtFlags);
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize, uint16_t(usRoom - wire::kTlvHeaderSize), fields,
                        kFtSessValueLen, srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_EncodeCapabilityParamTlv(uint8_t *pucBuf, LDP_CapabilityParam *pstCap,
                                                         uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstCap == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstCap->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    const uint16_t left = uint16_t(usRoom - wire::kTlvHeaderSize);
    if (left == 0) {
        return mem::no_room(srcfile::enc);
    }
    const uint8_t s_byte = pstCap->ucSByte;
    mem::copy(pucBuf + wire::kTlvHeaderSize, left, &s_byte, 1, srcfile::enc);
    const uint16_t len = pstCap->stTlvHeader.usTlvLen;
    if (pstCap->pucCapData == nullptr || len <= 1) {
        return LDP_OK; // no data: the S byte alone, whatever usTlvLen says
    }
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize + 1, uint16_t(left - 1), pstCap->pucCapData,
                        uint16_t(len - 1), srcfile::enc);
}

uint32_t ldp::caps::encode_list(uint8_t *at, SLL_List *list, uint32_t module, uint16_t room)
{
    if (list->ulCount == 0 || list::first(list) == nullptr) {
        return LDP_OK;
    }
    // Every element goes out, whatever capability it names.
    for (SLL_Node *node = list::first(list); !list::is_end(list, node); node = node->pNext) {
        auto *cap = reinterpret_cast<LDP_CapabilityParam *>(node);
        if (LDP_EncodeCapabilityParamTlv(at, cap, module, room) != LDP_OK) {
            return LDP_ERR_PARAM;
        }
        const uint16_t step = uint16_t(cap->stTlvHeader.usTlvLen + 4u);
        at += step;
        room = msg::room_after(room, step);
    }
    return LDP_OK;
}

void ldp::caps::release_list(SLL_List *list)
{
    if (list->ulCount != 0 && list::first(list) != nullptr) {
        list::for_each_safe<LDP_CapabilityParam>(list, [list](LDP_CapabilityParam *cap) {
            SLL_Delete(list, &cap->stNode);
            if (cap->pucCapData != nullptr) {
                mem::release(cap->pucCapData, srcfile::enc);
                cap->pucCapData = nullptr;
            }
            mem::release(cap, srcfile::enc);
        });
    }
    list::reset_empty(list);
}

extern "C" LDP_API void LDP_FreeInitMsg(LDP_InitMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr || (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_INIT) {
        return;
    }
    SLL_FreeAll(&pMsgRecord->stAtmSess.stRangeList, LDP_MemFreeCallBack);
    SLL_FreeAll(&pMsgRecord->stFrSess.stRangeList, LDP_MemFreeCallBack);
    caps::release_list(&pMsgRecord->stCapList);
}
