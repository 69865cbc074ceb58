// SPDX-License-Identifier: BSD-2-Clause
// Encoders of the TLVs shared by the label messages, the unknown-TLV list
// writer, and the release of that list.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t kLabelValueSize = 4;
constexpr uint16_t kLspIdValueSize = 8;
constexpr uint16_t kTrafficValueSize = 24;
constexpr uint16_t kLsrIdSize = 4;

// Hop sizes on the wire, header included.
constexpr uint16_t kIpv4HopSize = 12;
constexpr uint16_t kIpv6HopSize = 24;
constexpr uint16_t kAsHopSize = 8;
constexpr uint16_t kLspIdHopSize = 12;

uint32_t encode_lspid(uint8_t *out, LDP_LspIdTlv *rec, uint16_t room)
{
    if (out == nullptr || rec == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(out, room, &rec->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    rec->usReserved = wire::to_net16(rec->usReserved);
    rec->usLocalCrLspId = wire::to_net16(rec->usLocalCrLspId);
    rec->ulIngressLsrId = wire::to_net32(rec->ulIngressLsrId);
    // A failed copy is reported and the TLV still counts as written.
    return tlv_out::put(out + wire::kTlvHeaderSize, uint16_t(room - wire::kTlvHeaderSize), &rec->usReserved,
                        kLspIdValueSize, srcfile::enc);
}

// IPv4, IPv6 and AS hops: header, then the body in network order.
void put_hop(uint8_t *out, uint16_t room, LDP_ErHop *hop)
{
    tlv_out::header(out, room, &hop->stTlvHeader, srcfile::enc);
    uint8_t *body = out + wire::kTlvHeaderSize;
    LDP_ErHopBody &b = hop->unHopBody;
    switch (hop->usHopKind) {
    case LDP_TLV_ER_HOP_IPV4:
        b.stIpv4.ulFlagsPreLen = wire::to_net32(b.stIpv4.ulFlagsPreLen);
        b.stIpv4.ulIpv4Addr = wire::to_net32(b.stIpv4.ulIpv4Addr);
        mem::copy(body, room - wire::kTlvHeaderSize, &b.stIpv4, kIpv4HopSize - wire::kTlvHeaderSize,
                  srcfile::enc);
        break;
    case LDP_TLV_ER_HOP_IPV6:
        b.stIpv6.ulFlagsPreLen = wire::to_net32(b.stIpv6.ulFlagsPreLen);
        mem::copy(body, room - wire::kTlvHeaderSize, &b.stIpv6, kIpv6HopSize - wire::kTlvHeaderSize,
                  srcfile::enc);
        break;
    default: // LDP_TLV_ER_HOP_AS
        b.stAs.usFlags = wire::to_net16(b.stAs.usFlags);
        b.stAs.usAsNumber = wire::to_net16(b.stAs.usAsNumber);
        mem::copy(body, room - wire::kTlvHeaderSize, &b.stAs, kAsHopSize - wire::kTlvHeaderSize,
                  srcfile::enc);
        break;
    }
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeLabelTlv(uint8_t *pucBuf, LDP_LabelTlv *pstLabel,
                                               uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstLabel == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t kind = pstLabel->usLabelKind;
    if (kind != LDP_TLV_GENERIC_LABEL && kind != LDP_TLV_ATM_LABEL && kind != LDP_TLV_FR_LABEL) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstLabel->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if (kind == LDP_TLV_ATM_LABEL) {
        pstLabel->usVpi = wire::to_net16(pstLabel->usVpi);
        pstLabel->usVci = wire::to_net16(pstLabel->usVci);
    } else {
        pstLabel->ulLabel = wire::to_net32(pstLabel->ulLabel);
    }
    // The label goes out as the record holds it: no 20-bit mask on encode.
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize, uint16_t(usRoom - wire::kTlvHeaderSize),
                        &pstLabel->ulLabel, kLabelValueSize, srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_EncodePathVectorTlv(uint8_t *pucBuf, LDP_PathVectorTlv *pstPathVector,
                                                    uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    // Unlike its neighbours this encoder reports a null argument too.
    if (pucBuf == nullptr || pstPathVector == nullptr || usRoom < wire::kTlvHeaderSize) {
        return mem::no_room(srcfile::enc);
    }
    tlv_out::header(pucBuf, usRoom, &pstPathVector->stTlvHeader, srcfile::enc);
    const uint16_t count = pstPathVector->usLsrIdCount;
    if (count == 0) {
        return LDP_OK;
    }
    uint16_t left = uint16_t(usRoom - wire::kTlvHeaderSize);
    if (left < kLsrIdSize) {
        return mem::no_room(srcfile::enc);
    }
    if (pstPathVector->pulLsrId == nullptr) {
        return LDP_ERR_PARAM; // a count without an array cannot be written
    }
    const auto *ids = reinterpret_cast<const uint8_t *>(pstPathVector->pulLsrId);
    uint8_t *out = pucBuf + wire::kTlvHeaderSize;
    // An 8-bit counter, on purpose: a count above 255 never matches and the
    // walk ends when the room runs out.
    uint8_t written = 0;
    while (left >= kLsrIdSize) {
        wire::store32(out, wire::load_host32(ids + size_t(written) * kLsrIdSize));
        out += kLsrIdSize;
        left = uint16_t(left - kLsrIdSize);
        ++written;
        if (written == count) {
            return LDP_OK;
        }
    }
    return mem::no_room(srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_EncodeLSPIdTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspId,
                                               uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    return encode_lspid(pucBuf, pstLspId, usRoom);
}

extern "C" LDP_API uint32_t LDP_EncodeLSPIdERHopTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspIdHop,
                                                    uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    return encode_lspid(pucBuf, pstLspIdHop, usRoom);
}

extern "C" LDP_API uint32_t LDP_EncodeTrafficTlv(uint8_t *pucBuf, LDP_TrafficTlv *pstTraffic,
                                                 uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstTraffic == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstTraffic->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstTraffic->ulPdr = wire::to_net32(pstTraffic->ulPdr);
    pstTraffic->ulPbs = wire::to_net32(pstTraffic->ulPbs);
    pstTraffic->ulCdr = wire::to_net32(pstTraffic->ulCdr);
    pstTraffic->ulCbs = wire::to_net32(pstTraffic->ulCbs);
    pstTraffic->ulEbs = wire::to_net32(pstTraffic->ulEbs);
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize, uint16_t(usRoom - wire::kTlvHeaderSize),
                        &pstTraffic->ucFlags, kTrafficValueSize, srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_EncodeERTlv(uint8_t *pucBuf, LDP_ErTlv *pstEr, uint32_t ulMemModuleId,
                                            uint16_t usRoom)
{
    if (pucBuf == nullptr || pstEr == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstEr->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    SLL_List *hops = &pstEr->stHopList;
    if (hops->ulCount == 0) {
        return LDP_ERR_PARAM; // an ER TLV needs at least one hop; its header is already out
    }
    uint8_t *out = pucBuf + wire::kTlvHeaderSize;
    uint16_t left = uint16_t(usRoom - wire::kTlvHeaderSize);
    for (SLL_Node *node = list::first(hops); !list::is_end(hops, node); node = node->pNext) {
        auto *hop = reinterpret_cast<LDP_ErHop *>(node);
        uint16_t size;
        switch (hop->usHopKind) {
        case LDP_TLV_ER_HOP_IPV4: size = kIpv4HopSize; break;
        case LDP_TLV_ER_HOP_IPV6: size = kIpv6HopSize; break;
        case LDP_TLV_ER_HOP_AS: size = kAsHopSize; break;
        case LDP_TLV_ER_HOP_LSPID: {
            // The LSPID hop's result is ignored on purpose; the walk moves on
            // by the hop's size whatever happened.
            auto *lspid = reinterpret_cast<LDP_LspIdTlv *>(&hop->stTlvHeader);
            (void)LDP_EncodeLSPIdERHopTlv(out, lspid, ulMemModuleId, left);
            out += kLspIdHopSize;
            left = msg::room_after(left, kLspIdHopSize);
            continue;
        }
        default:
            return LDP_ERR_PARAM;
        }
        if (left < size) {
            return mem::no_room(srcfile::enc);
        }
        put_hop(out, left, hop);
        out += size;
        left = uint16_t(left - size);
    }
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_ProcUnknTlvList(SLL_List *pstList, uint8_t *pucBuf, uint32_t ulMemModuleId,
                                                uint16_t *pusRoom)
{
    (void)ulMemModuleId;
    if (pstList == nullptr || pucBuf == nullptr || pusRoom == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (pstList->ulCount == 0) {
        return LDP_OK;
    }
    uint8_t *out = pucBuf;
    for (SLL_Node *node = list::first(pstList); !list::is_end(pstList, node); node = node->pNext) {
        const auto *tlv = reinterpret_cast<const LDP_UnknownTlv *>(node);
        const uint32_t n = tlv->ulTlvLen;
        if (n > *pusRoom) {
            return mem::no_room(srcfile::enc);
        }
        // Forwarded exactly as received, U and F bits included.
        mem::copy(out, *pusRoom, tlv->pucTlv, n, srcfile::enc);
        out += n;
        *pusRoom = msg::room_after(*pusRoom, uint16_t(n));
    }
    return LDP_OK;
}

namespace ldp::label {

void free_unknown_elements(SLL_List *unknown)
{
    list::for_each_safe<LDP_UnknownTlv>(unknown, [unknown](LDP_UnknownTlv *tlv) {
        SLL_Delete(unknown, &tlv->stNode);
        if (tlv->pucTlv != nullptr) {
            mem::release(tlv->pucTlv, srcfile::enc);
            tlv->pucTlv = nullptr;
        }
        mem::release(tlv, srcfile::enc);
    });
}

} // namespace ldp::label
