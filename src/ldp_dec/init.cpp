// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Initialization message and its TLVs: Common
// Session Parameters, FT Session, ATM Session Parameters and the Capability
// Parameter TLV (which the Capability message shares).
#include <cstddef>
#include <cstdint>

#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "capability.hpp"
#include "record_walk.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t kInitMinLen = 22;       // message ID plus the Common Session TLV
constexpr uint16_t kCommSessValueLen = 14;
constexpr uint16_t kFtSessValueLen = 12;

bool is_single_byte_cap(uint16_t masked_type)
{
    return masked_type == LDP_TLV_P2MP_CAP || masked_type == LDP_TLV_MP2MP_CAP ||
           masked_type == LDP_TLV_MBB_CAP || masked_type == LDP_TLV_TYPED_WILDCARD_CAP;
}

// The pre-parse's checks on an optional TLV.
uint32_t check_init_tlv(const LDP_TlvHeader &tlv)
{
    const uint16_t type = tlv.usTlvType & LDP_TLV_TYPE_MASK;
    if (type == LDP_TLV_FT_SESSION) {
        return tlv.usTlvLen != kFtSessValueLen ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
    }
    if (type == LDP_TLV_DYNAMIC_CAP) {
        return tlv.usTlvLen == 0 ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
    }
    if (is_single_byte_cap(type)) {
        return tlv.usTlvLen != 1 ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
    }
    // ATM and Frame Relay session parameters are not accepted on receive.
    return (tlv.usTlvType & LDP_TLV_U_BIT) ? LDP_OK : LDP_STATUS_UNKNOWN_TLV;
}

// Flag byte and bit an announced capability sets in the record.
void set_cap_flag(LDP_InitMsg *rec, uint16_t masked_type)
{
    switch (masked_type) {
    case LDP_TLV_DYNAMIC_CAP: rec->ucOptFlags2 |= LDP_INIT_OPT2_DYNAMIC_CAP; break;
    case LDP_TLV_P2MP_CAP: rec->ucOptFlags |= LDP_INIT_OPT_P2MP_CAP; break;
    case LDP_TLV_MP2MP_CAP: rec->ucOptFlags |= LDP_INIT_OPT_MP2MP_CAP; break;
    case LDP_TLV_MBB_CAP: rec->ucOptFlags |= LDP_INIT_OPT_MBB_CAP; break;
    case LDP_TLV_TYPED_WILDCARD_CAP: rec->ucOptFlags |= LDP_INIT_OPT_TYPED_WC_CAP; break;
    default: break;
    }
}

// The decoder's handling of an optional TLV.
uint32_t decode_init_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, LDP_InitMsg *rec,
                         uint32_t module)
{
    const uint16_t type = tlv.usTlvType & LDP_TLV_TYPE_MASK;
    if (type == LDP_TLV_FT_SESSION) {
        // A second FT Session TLV overwrites the first.
        rec->stFtSess.stTlvHeader = tlv;
        const uint32_t rc = LDP_DecodeFTSessParamTlv(cur.value(), &rec->stFtSess, module);
        if (rc != LDP_OK) {
            return rc;
        }
        rec->ucOptFlags |= LDP_INIT_OPT_FT_SESS;
        return LDP_OK;
    }
    if (type == LDP_TLV_DYNAMIC_CAP || is_single_byte_cap(type)) {
        // The decoder calls a wrong length here a length error (7) where the
        // pre-parse calls it malformed (8); both answers are intended.
        if (type != LDP_TLV_DYNAMIC_CAP && tlv.usTlvLen != 1) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        uint8_t s_byte = 0;
        const uint32_t rc = caps::decode_into(cur.value(), tlv, &rec->stCapList, module, &s_byte);
        if (rc != LDP_OK) {
            return rc;
        }
        // Only ever set: a later withdrawal of the same capability leaves it.
        if (s_byte & LDP_CAP_S_BIT) {
            set_cap_flag(rec, type);
        }
        return LDP_OK;
    }
    return (tlv.usTlvType & LDP_TLV_U_BIT) ? LDP_OK : LDP_STATUS_UNKNOWN_TLV;
}

// Pre-parse and decoder share this walk; rec is null for the pre-parse. They
// differ only where decode_init_tlv says so.
uint32_t walk_init(const uint8_t *msg, uint16_t msg_len, LDP_InitMsg *rec, uint32_t module)
{
    if (msg_len < kInitMinLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    // The Initialization walks read their TLV headers off the wire; only the
    // message header and the values are copied through memcpy_s.
    tlv_cursor cur(msg, msg_len);
    const LDP_TlvHeader first = cur.load_header();
    if (!cur.value_fits(first.usTlvLen)) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if ((first.usTlvType & LDP_TLV_TYPE_MASK) != LDP_TLV_COMMON_SESSION) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    if (rec != nullptr) {
        rec->stCommSess.stTlvHeader = first;
        const uint32_t rc = LDP_DecodeCommSessParamTlv(cur.value(), &rec->stCommSess, module);
        if (rc != LDP_OK) {
            return rc;
        }
    } else if (first.usTlvLen != kCommSessValueLen) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    cur.advance(kCommSessValueLen);
    if (cur.at_end()) {
        return LDP_OK;
    }
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    // The F bit plays no part in any of these checks.
    return walk_rest<tlv_read::load>(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        return rec != nullptr ? decode_init_tlv(cur, tlv, rec, module) : check_init_tlv(tlv);
    });
}

} // namespace

uint32_t ldp::caps::decode_into(const uint8_t *value, const LDP_TlvHeader &tlv, SLL_List *list,
                                uint32_t module, uint8_t *s_byte)
{
    auto *cap = mem::alloc_record<LDP_CapabilityParam>(module, srcfile::dec);
    if (cap == nullptr) {
        return LDP_ERR_NO_MEMORY;
    }
    cap->stTlvHeader = tlv;
    const uint32_t rc = LDP_DecodeCapabilityParamTlv(value, cap, module);
    if (rc != LDP_OK) {
        mem::release(cap, srcfile::dec);
        return rc;
    }
    list::append(list, &cap->stNode);
    *s_byte = cap->ucSByte;
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_PreParseInitMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_InitMsg, dec::header_read::load>(pucMsg, walk_init);
}

extern "C" LDP_API uint32_t LDP_DecodeInitMsg(const uint8_t *pucMsg, LDP_InitMsg *pMsgRecord,
                                              uint32_t ulMemModuleId)
{
    return dec::decode<LDP_InitMsg, dec::header_read::load>(pucMsg, pMsgRecord, ulMemModuleId, walk_init);
}

extern "C" LDP_API uint32_t LDP_DecodeCommSessParamTlv(const uint8_t *pucValue,
                                                       LDP_CommSessParamTlv *pstTlv,
                                                       uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucValue == nullptr || pstTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (pstTlv->stTlvHeader.usTlvLen != kCommSessValueLen) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    // The record's fields after the header have the wire layout: copy, then
    // swap each in place (the A/D/PVLim word as one 16-bit value).
    auto *fields = reinterpret_cast<uint8_t *>(pstTlv) + offsetof(LDP_CommSessParamTlv, usProtocolVersion);
    mem::copy(fields, kCommSessValueLen, pucValue, kCommSessValueLen, srcfile::dec);
    pstTlv->usProtocolVersion = wire::to_host16(pstTlv->usProtocolVersion);
    pstTlv->usKeepAliveTime = wire::to_host16(pstTlv->usKeepAliveTime);
    pstTlv->usAdPvLim = wire::to_host16(pstTlv->usAdPvLim);
    pstTlv->usMaxPduLen = wire::to_host16(pstTlv->usMaxPduLen);
    pstTlv->ulReceiverLsrId = wire::to_host32(pstTlv->ulReceiverLsrId);
    pstTlv->usReceiverLabelSpace = wire::to_host16(pstTlv->usReceiverLabelSpace);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodeFTSessParamTlv(const uint8_t *pucValue, LDP_FtSessParamTlv *pstTlv,
                                                     uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucValue == nullptr || pstTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (pstTlv->stTlvHeader.usTlvLen != kFtSessValueLen) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    auto *fields = reinterpret_cast<uint8_t *>(pstTlv) + offsetof(LDP_FtSessParamTlv, usFtFlags);
    mem::copy(fields, kFtSessValueLen, pucValue, kFtSessValueLen, srcfile::dec);
    pstTlv->usFtFlags = wire::to_host16(pstTlv->usFtFlags);
    pstTlv->usFtReserved = wire::to_host16(pstTlv->usFtReserved);
    pstTlv->ulFtReconnectTimeout = wire::to_host32(pstTlv->ulFtReconnectTimeout);
    pstTlv->ulFtRecoveryTime = wire::to_host32(pstTlv->ulFtRecoveryTime);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodeATMSessParamTlv(const uint8_t *pucValue,
                                                      LDP_LabelRangeSessParamTlv *pstTlv,
                                                      uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstTlv->stTlvHeader.usTlvLen;
    if (len < 4) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    pstTlv->ulMndWord = wire::load32(pucValue);
    const uint32_t count = (pstTlv->ulMndWord >> LDP_LABEL_RANGE_N_SHIFT) & LDP_LABEL_RANGE_N_MASK;
    if (len != 4 + 8 * count) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    // The length is trusted against the value given; the caller keeps it
    // inside the message.
    for (uint32_t i = 0; i < count; ++i) {
        auto *range = mem::alloc_record<LDP_LabelRangeComponent>(ulMemModuleId, srcfile::dec);
        if (range == nullptr) {
            return LDP_ERR_NO_MEMORY; // components already appended stay listed
        }
        range->ulRangeMin = wire::load32(pucValue + 4 + 8 * i);
        range->ulRangeMax = wire::load32(pucValue + 8 + 8 * i);
        list::append(&pstTlv->stRangeList, &range->stNode);
    }
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodeCapabilityParamTlv(const uint8_t *pucValue,
                                                         LDP_CapabilityParam *pstCap,
                                                         uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstCap == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstCap->stTlvHeader.usTlvLen;
    if (len == 0) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    pstCap->ucSByte = pucValue[0];
    pstCap->pucCapData = nullptr;
    if (len < 2) {
        return LDP_OK;
    }
    auto *data = static_cast<uint8_t *>(mem::alloc(ulMemModuleId, len - 1u, srcfile::dec));
    if (data == nullptr) {
        return LDP_ERR_PARAM; // 1 rather than 108 for this buffer, as intended
    }
    mem::copy(data, len - 1u, pucValue + 1, len - 1u, srcfile::dec);
    pstCap->pucCapData = data;
    return LDP_OK;
}
