// SPDX-License-Identifier: BSD-2-Clause
// Decoders of the TLVs shared by the label messages: Generic Label, Path
// Vector, and unknown TLVs kept for forwarding.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {
constexpr uint32_t kLabelMask = 0xFFFFFu; // labels are 20 bits (RFC 3032)
constexpr uint16_t kLsrIdSize = 4;
} // namespace

uint32_t ldp::label::decode_generic_label(const uint8_t *value, LDP_LabelTlv *lbl)
{
    if (lbl->stTlvHeader.usTlvLen != 4) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    lbl->ulLabel = wire::load32(value) & kLabelMask;
    lbl->usLabelKind = LDP_TLV_GENERIC_LABEL;
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodePathVectorTlv(const uint8_t *pucValue, LDP_PathVectorTlv *pstPathVector,
                                                    uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstPathVector == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstPathVector->stTlvHeader.usTlvLen;
    if (len == 0 || len % kLsrIdSize != 0) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    // The count is kept in 8 bits on purpose: 256 Ids or more wrap, and only
    // that many are converted; the whole value is still copied.
    const uint8_t count = uint8_t(len / kLsrIdSize);
    pstPathVector->usLsrIdCount = count;
    auto *ids = static_cast<uint8_t *>(mem::alloc(ulMemModuleId, len, srcfile::dec));
    if (ids == nullptr) {
        return LDP_ERR_NO_MEMORY;
    }
    mem::copy(ids, len, pucValue, len, srcfile::dec);
    for (uint16_t i = 0; i < count; ++i) {
        uint8_t *id = ids + size_t(i) * kLsrIdSize;
        wire::store_host32(id, wire::load32(id));
    }
    pstPathVector->pulLsrId = reinterpret_cast<uint32_t *>(ids);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodeUnknownTlv(const uint8_t *pucValue, SLL_List *pstList,
                                                 uint16_t usValueLen, uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstList == nullptr) {
        return LDP_ERR_PARAM;
    }
    auto *tlv = mem::alloc_record<LDP_UnknownTlv>(ulMemModuleId, srcfile::dec);
    if (tlv == nullptr) {
        return LDP_ERR_NO_MEMORY;
    }
    const uint32_t size = uint32_t(usValueLen) + wire::kTlvHeaderSize;
    auto *copy = static_cast<uint8_t *>(mem::alloc(ulMemModuleId, size, srcfile::dec));
    if (copy == nullptr) {
        mem::release(tlv, srcfile::dec);
        return LDP_ERR_NO_MEMORY;
    }
    tlv->ulTlvLen = size;
    // The header sits just before the value: keep the TLV whole, as received.
    mem::copy(copy, size, pucValue - wire::kTlvHeaderSize, size, srcfile::dec);
    tlv->pucTlv = copy;
    list::append(pstList, &tlv->stNode);
    return LDP_OK;
}
