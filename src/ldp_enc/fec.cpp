// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the FEC family: the FEC TLV and its elements, the
// RFC 6388 multipoint elements and opaque value lists, and the MP Status TLV.
#include <cstdint>

#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

// An output cursor over the caller's pointer and room count. Every take
// saturates at zero.
struct out_cursor {
    uint8_t **pos;
    uint16_t *room;

    void take(uint16_t n)
    {
        *pos += n;
        *room = msg::room_after(*room, n);
    }
    void put8(uint8_t v)
    {
        **pos = v;
        take(1);
    }
    void put16(uint16_t v)
    {
        wire::store16(*pos, v);
        take(2);
    }
    void put_bytes(const void *src, uint16_t n)
    {
        mem::copy(*pos, *room, src, n, srcfile::enc);
        take(n);
    }
};

// The opening shared by the Prefix, Host Address and multipoint encoders:
// argument checks, type byte, then the family. The family is left in network
// order in the record, on purpose: a second encode of the record writes it
// swapped. *family receives its host-order value.
uint32_t open_elem(uint8_t **pp, LDP_FecElementBody *body, uint16_t *room, uint16_t *family)
{
    if (pp == nullptr || *pp == nullptr || body == nullptr || room == nullptr) {
        return LDP_ERR_PARAM;
    }
    out_cursor out{pp, room};
    if (*out.room == 0) {
        return mem::no_room(srcfile::enc);
    }
    out.put8(body->ucFecType);
    *family = body->usAddrFamily;
    body->usAddrFamily = wire::to_net16(*family);
    if (*out.room < 2) {
        return mem::no_room(srcfile::enc);
    }
    out.put16(*family);
    return LDP_OK;
}

// Prefix and Host Address also need a byte for their length field before
// they look any further.
uint32_t open_prefix_or_host(uint8_t **pp, LDP_FecElementBody *body, uint16_t *room, uint16_t *family)
{
    const uint32_t rc = open_elem(pp, body, room, family);
    if (rc != LDP_OK) {
        return rc;
    }
    return *room == 0 ? mem::no_room(srcfile::enc) : LDP_OK;
}

uint16_t ov_value_len(const LDP_OvElement *e)
{
    return e->ucType == LDP_OV_TYPE_EXTENDED ? e->usExtLen : e->usLen;
}

uint16_t ov_wire_size(const LDP_OvElement *e)
{
    return uint16_t((e->ucType == LDP_OV_TYPE_EXTENDED ? 5u : 3u) + ov_value_len(e));
}

LDP_OvElement *ov_sentinel(LDP_OvList *head) { return reinterpret_cast<LDP_OvElement *>(head); }

} // namespace

// --- FEC TLV ----------------------------------------------------------------

extern "C" LDP_API uint32_t LDP_EncodePrefixAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                                           uint32_t ulMemModuleId, uint16_t *pusRoom)
{
    (void)ulMemModuleId;
    uint16_t family = 0;
    if (const uint32_t rc = open_prefix_or_host(ppucBuf, pstBody, pusRoom, &family); rc != LDP_OK) {
        return rc;
    }
    out_cursor out{ppucBuf, pusRoom};
    const uint8_t bits = pstBody->ucPrefixLen;
    if (!((family == LDP_AF_IPV6 && bits <= 128) || (family == LDP_AF_IPV4 && bits <= 32))) {
        return LDP_ERR_PARAM; // a bad prefix is refused without an assertion
    }
    out.put8(bits);
    if (bits == 0) {
        return LDP_OK;
    }
    const uint16_t n = uint16_t((bits + 7u) / 8u);
    if (n > *out.room) {
        return mem::no_room(srcfile::enc);
    }
    out.put_bytes(pstBody->aucAddr, n);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeHostAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                                         uint32_t ulMemModuleId, uint16_t *pusRoom)
{
    (void)ulMemModuleId;
    uint16_t family = 0;
    if (const uint32_t rc = open_prefix_or_host(ppucBuf, pstBody, pusRoom, &family); rc != LDP_OK) {
        return rc;
    }
    out_cursor out{ppucBuf, pusRoom};
    // Neither family nor length is judged here: the record is written as is.
    const uint8_t addr_len = pstBody->ucPrefixLen;
    out.put8(addr_len);
    if (*out.room < addr_len) {
        return mem::no_room(srcfile::enc);
    }
    // The address field holds 16 bytes; a longer stated length is padded
    // with zeros instead of reading past the record.
    const uint16_t from_record = addr_len < sizeof pstBody->aucAddr ? addr_len : uint16_t(sizeof pstBody->aucAddr);
    mem::copy(*out.pos, *out.room, pstBody->aucAddr, from_record, srcfile::enc);
    if (addr_len > from_record) {
        (void)memset_s(*out.pos + from_record, *out.room - from_record, 0, addr_len - from_record);
    }
    out.take(addr_len);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeFECTlv(uint8_t *pucBuf, LDP_FecTlv *pstFecTlv, uint32_t ulMemModuleId,
                                             uint16_t usRoom)
{
    if (pucBuf == nullptr || pstFecTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstFecTlv->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    uint8_t *pos = pucBuf + wire::kTlvHeaderSize;
    uint16_t room = uint16_t(usRoom - wire::kTlvHeaderSize);
    out_cursor out{&pos, &room};

    SLL_List *fec_list = &pstFecTlv->stFecList;
    if (fec_list->ulCount == 0) {
        return LDP_ERR_PARAM; // an empty FEC TLV is refused after its header is out
    }
    for (SLL_Node *node = list::first(fec_list); !list::is_end(fec_list, node); node = node->pNext) {
        auto *elem = reinterpret_cast<LDP_FecElement *>(node);
        uint32_t rc = LDP_OK;
        switch (elem->ucFecKind) {
        case LDP_FEC_WILDCARD:
            if (fec_list->ulCount > 1) {
                return LDP_ERR_PARAM; // a Wildcard stands alone
            }
            if (room == 0) {
                return mem::no_room(srcfile::enc);
            }
            out.put8(elem->stBody.ucFecType);
            break;
        case LDP_FEC_PREFIX:
            rc = LDP_EncodePrefixAddrFecElement(&pos, &elem->stBody, ulMemModuleId, &room);
            break;
        case LDP_FEC_HOST_ADDR:
            rc = LDP_EncodeHostAddrFecElement(&pos, &elem->stBody, ulMemModuleId, &room);
            break;
        case LDP_FEC_MLDP_P2MP:
        case LDP_FEC_MLDP_MP2MP_UP:
        case LDP_FEC_MLDP_MP2MP_DOWN:
            rc = LDP_EncodeMldpFecElement(&pos, &elem->stBody, ulMemModuleId, &room);
            break;
        case LDP_FEC_PWID: {
            // The application supplies the encoded element; only the low
            // 16 bits of its length count.
            const uint16_t raw_len = uint16_t(elem->stBody.ulRawLen);
            if (raw_len > room) {
                return mem::no_room(srcfile::enc);
            }
            out.put_bytes(elem->stBody.pucRaw, raw_len);
            break;
        }
        default:
            return LDP_ERR_PARAM;
        }
        if (rc != LDP_OK) {
            return rc;
        }
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeFecElement(LDP_FecTlv *pstFecTlv)
{
    if (pstFecTlv == nullptr) {
        return;
    }
    SLL_List *fec_list = &pstFecTlv->stFecList;
    if (fec_list->ulCount != 0 && list::first(fec_list) != nullptr) {
        list::for_each_safe<LDP_FecElement>(fec_list, [fec_list](LDP_FecElement *elem) {
            SLL_Delete(fec_list, &elem->stNode);
            const uint8_t kind = elem->ucFecKind;
            if (kind == LDP_FEC_PWID) {
                if (elem->stBody.pucRaw != nullptr) {
                    mem::release(elem->stBody.pucRaw, srcfile::enc);
                }
                elem->stBody.pucRaw = nullptr;
            } else if (kind >= LDP_FEC_MLDP_P2MP && kind <= LDP_FEC_MLDP_MP2MP_DOWN) {
                if (elem->stBody.pucOpaqueValue != nullptr) {
                    mem::release(elem->stBody.pucOpaqueValue, srcfile::enc);
                }
                elem->stBody.pucOpaqueValue = nullptr;
            } else if (elem->stBody.ucFecType == LDP_FEC_MLDP_P2MP) {
                // Kind and type disagree: free what a P2MP body owns and say so.
                if (elem->stBody.pucOpaqueValue != nullptr) {
                    mem::release(elem->stBody.pucOpaqueValue, srcfile::enc);
                }
                elem->stBody.pucOpaqueValue = nullptr;
                mem::report(srcfile::enc, "FEC element kind and type disagree");
            }
            mem::release(elem, srcfile::enc);
        });
    }
    list::reset_empty(fec_list);
}

// --- mLDP FEC elements and opaque values ------------------------------------

extern "C" LDP_API uint32_t LDP_EncodeMldpFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                                     uint32_t ulMemModuleId, uint16_t *pusRoom)
{
    (void)ulMemModuleId;
    uint16_t family = 0;
    if (const uint32_t rc = open_elem(ppucBuf, pstBody, pusRoom, &family); rc != LDP_OK) {
        return rc;
    }
    out_cursor out{ppucBuf, pusRoom};
    // IPv6 roots are sent even though they are refused on receipt.
    const uint8_t addr_len = pstBody->ucPrefixLen;
    if (!((family == LDP_AF_IPV4 && addr_len == 4) || (family == LDP_AF_IPV6 && addr_len == 16))) {
        return LDP_ERR_PARAM;
    }
    if (*out.room == 0) {
        return mem::no_room(srcfile::enc);
    }
    out.put8(addr_len);
    if (*out.room < addr_len) {
        return mem::no_room(srcfile::enc);
    }
    out.put_bytes(pstBody->aucAddr, addr_len);
    if (*out.room < 2) {
        *out.room = 0;
        return mem::no_room(srcfile::enc);
    }
    const uint16_t opaque_len = pstBody->usOpaqueLen;
    out.put16(opaque_len);
    if (opaque_len == 0) {
        return LDP_OK;
    }
    if (*out.room < opaque_len) {
        return mem::no_room(srcfile::enc);
    }
    out.put_bytes(pstBody->pucOpaqueValue, opaque_len);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeOvElement(LDP_OvList *pstHead, uint8_t **ppucOut, uint16_t *pusOutLen,
                                                uint32_t ulMemModuleId)
{
    if (pstHead == nullptr || ppucOut == nullptr || pusOutLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    *ppucOut = nullptr;
    *pusOutLen = 0;
    LDP_OvElement *const end = ov_sentinel(pstHead);
    uint16_t total = 0;
    for (LDP_OvElement *e = pstHead->pNext; e != nullptr && e != end; e = e->pNext) {
        total = uint16_t(total + ov_wire_size(e));
    }
    auto *buf = static_cast<uint8_t *>(mem::alloc(ulMemModuleId, total, srcfile::enc));
    if (buf == nullptr) {
        return LDP_ERR_PARAM;
    }
    *ppucOut = buf;
    *pusOutLen = total;

    uint8_t *pos = buf;
    uint16_t room = total;
    out_cursor out{&pos, &room};
    for (LDP_OvElement *e = pstHead->pNext; e != nullptr && e != end; e = e->pNext) {
        // Only a list of more than 64 KiB wraps the total; refuse it rather
        // than write past the buffer.
        if (ov_wire_size(e) > room || ov_wire_size(e) < ov_value_len(e)) {
            mem::release(buf, srcfile::enc);
            *ppucOut = nullptr;
            *pusOutLen = 0;
            return mem::no_room(srcfile::enc);
        }
        out.put8(e->ucType);
        out.put16(e->usLen); // the Extended Type for type 255
        if (e->ucType == LDP_OV_TYPE_EXTENDED) {
            out.put16(e->usExtLen);
        }
        if (ov_value_len(e) != 0) {
            out.put_bytes(e->pucValue, ov_value_len(e));
        }
    }
    return LDP_OK;
}

extern "C" LDP_API LDP_OvElement *LDP_CreateOvElementByLspId(uint32_t ulLspId, uint32_t ulMemModuleId)
{
    auto *e = mem::alloc_record<LDP_OvElement>(ulMemModuleId, srcfile::enc);
    if (e == nullptr) {
        return nullptr;
    }
    e->ucType = LDP_OV_TYPE_GENERIC_LSP_ID;
    e->usLen = 4;
    e->usExtLen = 0;
    auto *value = static_cast<uint8_t *>(mem::alloc_zeroed(ulMemModuleId, 4, srcfile::enc));
    if (value == nullptr) {
        mem::release(e, srcfile::enc);
        return nullptr;
    }
    wire::store32(value, ulLspId);
    e->pucValue = value;
    return e;
}

extern "C" LDP_API void LDP_FreeOvElement(LDP_OvElement *pstElem)
{
    if (pstElem == nullptr) {
        return;
    }
    uint8_t *value = pstElem->pucValue;
    pstElem->pucValue = nullptr;
    if (value != nullptr) {
        mem::release(value, srcfile::enc);
    }
    mem::release(pstElem, srcfile::enc);
}

extern "C" LDP_API void LDP_FreeAllOvElement(LDP_OvList *pstHead)
{
    if (pstHead == nullptr) {
        return;
    }
    LDP_OvElement *const end = ov_sentinel(pstHead);
    LDP_OvElement *e = pstHead->pNext;
    while (e != nullptr && e != end) {
        LDP_OvElement *next = e->pNext;
        e->pPrev->pNext = next;
        if (next != nullptr) {
            next->pPrev = e->pPrev;
        }
        LDP_FreeOvElement(e);
        e = next;
    }
    pstHead->pNext = end;
    pstHead->pPrev = end;
}

// --- MP Status TLV ----------------------------------------------------------

extern "C" LDP_API uint32_t LDP_EncodeMpStatusTlv(uint8_t *pucBuf, LDP_MpStatusTlv *pstMpStatus,
                                                  uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstMpStatus == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstMpStatus->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    if ((pstMpStatus->ucElemFlags & LDP_MP_STATUS_ELEM_TAKEN) == 0) {
        return LDP_OK; // header only, with whatever length the record holds
    }
    if (usRoom - 4 == 0) {
        return mem::no_room(srcfile::enc);
    }
    pucBuf[4] = pstMpStatus->ucElemType;
    if (usRoom - 5 <= 1) {
        return mem::no_room(srcfile::enc);
    }
    wire::store16(pucBuf + 5, pstMpStatus->usElemLen);
    if (usRoom - 7 == 0) {
        return mem::no_room(srcfile::enc);
    }
    pucBuf[7] = pstMpStatus->ucStatusCode; // one status byte, whatever usElemLen says
    return LDP_OK;
}
