// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the FEC family: the FEC TLV and its Wildcard,
// Prefix and Host Address elements, the RFC 6388 multipoint elements with
// their opaque values, and the MP Status TLV.
#include <cstdint>

#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/wire.hpp"
#include "fec_elem.hpp"
#include "ldp_codec.h"

using namespace ldp;
using namespace ldp::fec;

namespace {

// The header checks of a multipoint element, in the order both the pre-parse
// and the decoder make them. *offset follows the checks; on success it is
// the element size and *opaque_len the Opaque Length.
uint32_t check_mldp(const uint8_t *elem, uint16_t left, uint16_t *offset, uint16_t *opaque_len)
{
    *offset = 0;
    if (left <= 3) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    const uint16_t family = wire::load16(elem + 1);
    const uint8_t addr_len = elem[3];
    *offset = 4;
    if (addr_len > left - 4) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if (family != LDP_AF_IPV4) {
        return LDP_STATUS_UNSUPPORTED_AF; // received roots are IPv4 only
    }
    if (addr_len != 4) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    *offset = 8;
    if (left <= 9) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    *opaque_len = wire::load16(elem + 8);
    if (*opaque_len > left - 10) {
        *offset = 10;
        return LDP_STATUS_BAD_TLV_LEN;
    }
    *offset = uint16_t(10 + *opaque_len);
    return *opaque_len == 0 ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
}

// Header size and value length of the opaque value element at p, given that
// at least the header's bytes are readable.
uint16_t ov_header_size(uint8_t type) { return type == LDP_OV_TYPE_EXTENDED ? 5 : 3; }
uint16_t ov_value_len(const uint8_t *p)
{
    return wire::load16(p + (p[0] == LDP_OV_TYPE_EXTENDED ? 3 : 1));
}

// Wire size of a parsed opaque value element; type 255 keeps its value
// length in usExtLen.
uint16_t ov_wire_size(const LDP_OvElement *e)
{
    return e->ucType == LDP_OV_TYPE_EXTENDED ? uint16_t(5u + e->usExtLen) : uint16_t(3u + e->usLen);
}

void ov_append(LDP_OvList *head, LDP_OvElement *e)
{
    auto *sentinel = reinterpret_cast<LDP_OvElement *>(head);
    e->pPrev = head->pPrev;
    e->pNext = sentinel;
    head->pPrev->pNext = e;
    head->pPrev = e;
}

} // namespace

// --- FEC TLV ----------------------------------------------------------------

extern "C" LDP_API uint32_t LDP_PreParsePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                         uint16_t *pusElemLen)
{
    if (pucElem == nullptr || pusElemLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    return check_prefix(pucElem, usLeft, pusElemLen);
}

extern "C" LDP_API uint32_t LDP_PreParseHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                           uint16_t *pusElemLen)
{
    if (pucElem == nullptr || pusElemLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    return check_host(pucElem, usLeft, pusElemLen);
}

extern "C" LDP_API uint32_t LDP_DecodePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                       LDP_FecElementBody *pstBody,
                                                       uint16_t *pusElemLen, uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucElem == nullptr || pstBody == nullptr || pusElemLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint32_t rc = check_prefix(pucElem, usLeft, pusElemLen);
    if (rc == LDP_OK) {
        store_addr_elem(pucElem, pstBody, prefix_bytes(pucElem[3]));
    }
    return rc;
}

extern "C" LDP_API uint32_t LDP_DecodeHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                         LDP_FecElementBody *pstBody,
                                                         uint16_t *pusElemLen, uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucElem == nullptr || pstBody == nullptr || pusElemLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint32_t rc = check_host(pucElem, usLeft, pusElemLen);
    if (rc == LDP_OK) {
        store_addr_elem(pucElem, pstBody, pucElem[3]);
    }
    return rc;
}

extern "C" LDP_API uint32_t LDP_PreParseFECTlv(const uint8_t *pucValue, uint16_t usTlvLen)
{
    if (pucValue == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (usTlvLen == 0) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    uint16_t used = 0;
    do {
        const uint8_t *elem = pucValue + used;
        const uint16_t left = uint16_t(usTlvLen - used);
        uint16_t size = 0;
        uint32_t rc = LDP_OK;
        switch (elem[0]) {
        case LDP_FEC_WILDCARD:
            if (usTlvLen != 1) {
                return LDP_STATUS_MALFORMED_TLV; // a Wildcard stands alone
            }
            size = 1;
            break;
        case LDP_FEC_PREFIX:
            rc = LDP_PreParsePrefixFecElement(elem, left, &size);
            break;
        case LDP_FEC_HOST_ADDR:
            rc = LDP_PreParseHostAddrFecElement(elem, left, &size);
            break;
        case LDP_FEC_MLDP_P2MP:
            rc = LDP_PreParseMldpFecElement(elem, left, &size);
            break;
        case LDP_FEC_PWID:
        case LDP_FEC_GEN_PWID:
            return LDP_STOP_WALK; // pseudowire elements are the caller's
        default:
            return LDP_STATUS_UNKNOWN_FEC; // MP2MP types too: not accepted on receipt
        }
        if (rc != LDP_OK) {
            return rc;
        }
        used = uint16_t(used + size);
    } while (used < usTlvLen);
    return used == usTlvLen ? LDP_OK : LDP_STATUS_MALFORMED_TLV;
}

extern "C" LDP_API uint32_t LDP_DecodeFECTlv(const uint8_t *pucValue, LDP_FecTlv *pstFecTlv,
                                             uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstFecTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstFecTlv->stTlvHeader.usTlvLen;
    if (len == 0) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    SLL_List *fec_list = &pstFecTlv->stFecList;
    bool has_p2mp = false;
    uint16_t used = 0;
    do {
        const uint8_t *elem = pucValue + used;
        const uint16_t left = uint16_t(len - used);
        auto *rec = mem::alloc_record<LDP_FecElement>(ulMemModuleId, srcfile::dec);
        if (rec == nullptr) {
            return LDP_ERR_NO_MEMORY; // what is listed already stays for the caller
        }
        rec->ucFecKind = elem[0];
        uint16_t size = 0;
        uint32_t rc = LDP_OK;
        switch (elem[0]) {
        case LDP_FEC_WILDCARD:
            if (len != 1) {
                rc = LDP_STATUS_MALFORMED_TLV;
                break;
            }
            rec->stBody.ucFecType = LDP_FEC_WILDCARD;
            size = 1;
            break;
        case LDP_FEC_PREFIX:
            rc = LDP_DecodePrefixFecElement(elem, left, &rec->stBody, &size, ulMemModuleId);
            break;
        case LDP_FEC_HOST_ADDR:
            rc = LDP_DecodeHostAddrFecElement(elem, left, &rec->stBody, &size, ulMemModuleId);
            break;
        case LDP_FEC_MLDP_P2MP:
            rc = LDP_DecodeMldpFecElement(elem, left, rec, &size, ulMemModuleId);
            has_p2mp = true;
            break;
        case LDP_FEC_PWID:
        case LDP_FEC_GEN_PWID:
            // Listed with only its kind set; the caller reads the rest itself.
            list::append(fec_list, &rec->stNode);
            return LDP_STOP_WALK;
        default:
            rc = LDP_STATUS_UNKNOWN_FEC;
            break;
        }
        if (rc != LDP_OK) {
            mem::release(rec, srcfile::dec);
            return rc;
        }
        list::append(fec_list, &rec->stNode);
        used = uint16_t(used + size);
    } while (used < len);

    if (used > len) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    // Only the decoder enforces this; the pre-parse lets a shared P2MP pass.
    if (has_p2mp && fec_list->ulCount > 1) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    return LDP_OK;
}

// --- mLDP FEC elements and opaque values ------------------------------------

extern "C" LDP_API uint32_t LDP_PreParseMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                       uint16_t *pusErrOffset)
{
    if (pucElem == nullptr || pusErrOffset == nullptr) {
        return LDP_ERR_PARAM;
    }
    uint16_t opaque_len = 0;
    const uint32_t rc = check_mldp(pucElem, usLeft, pusErrOffset, &opaque_len);
    if (rc != LDP_OK) {
        return rc;
    }
    return LDP_PreDecodeOvElement(pucElem + 10, opaque_len);
}

extern "C" LDP_API uint32_t LDP_PreDecodeOvElement(const uint8_t *pucValue, uint16_t usLen)
{
    if (pucValue == nullptr) {
        return LDP_ERR_PARAM;
    }
    uint16_t used = 0;
    while (used < usLen) {
        const uint8_t *p = pucValue + used;
        const uint16_t rest = uint16_t(usLen - used);
        const uint16_t header = ov_header_size(p[0]);
        if (rest < header) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const uint16_t value_len = ov_value_len(p);
        if (value_len > rest - header) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        if (p[0] == LDP_OV_TYPE_GENERIC_LSP_ID && value_len != 4) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        used = uint16_t(used + header + value_len);
    }
    return used == usLen ? LDP_OK : LDP_STATUS_MALFORMED_TLV;
}

extern "C" LDP_API uint32_t LDP_DecodeMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                     LDP_FecElement *pstElem, uint16_t *pusElemLen,
                                                     uint32_t ulMemModuleId)
{
    if (pucElem == nullptr || pstElem == nullptr || pusElemLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_FecElementBody *pstBody = &pstElem->stBody;
    if (usLeft < 4) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    // The header fields are stored before they are judged.
    pstBody->ucFecType = pucElem[0];
    pstBody->usAddrFamily = wire::load16(pucElem + 1);
    pstBody->ucPrefixLen = pucElem[3];
    uint16_t offset = 0;
    uint16_t opaque_len = 0;
    const uint32_t rc = check_mldp(pucElem, usLeft, &offset, &opaque_len);
    if (rc != LDP_OK) {
        return rc;
    }
    mem::copy(pstBody->aucAddr, sizeof pstBody->aucAddr, pucElem + 4, pucElem[3], srcfile::dec);

    // The opaque value is kept as its elements re-encoded; a missing buffer,
    // not the result code, says the value was unusable.
    uint8_t *opaque = nullptr;
    uint16_t stored_len = 0;
    (void)LDP_DecodeOpaqueValue(pucElem + 10, opaque_len, &opaque, &stored_len, ulMemModuleId);
    if (opaque == nullptr) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    if (pstBody->pucOpaqueValue != nullptr) {
        mem::report(srcfile::dec, "opaque value replaced");
        mem::release(pstBody->pucOpaqueValue, srcfile::dec);
    }
    pstBody->pucOpaqueValue = opaque;
    pstBody->usOpaqueLen = stored_len;
    // Counted by the re-encoded length, which matches the wire unless a value
    // allocation failed while parsing.
    *pusElemLen = uint16_t(10 + stored_len);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_DecodeOpaqueValue(const uint8_t *pucValue, uint16_t usLen,
                                                  uint8_t **ppucOut, uint16_t *pusOutLen,
                                                  uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || ppucOut == nullptr || pusOutLen == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_OvList elems;
    uint32_t rc = LDP_ERR_PARAM;
    if (LDP_DecodeOvToElementList(pucValue, usLen, &elems, ulMemModuleId) == LDP_OK) {
        rc = LDP_EncodeOvElement(&elems, ppucOut, pusOutLen, ulMemModuleId);
    }
    LDP_FreeAllOvElement(&elems);
    return rc;
}

extern "C" LDP_API uint32_t LDP_DecodeOvToElementList(const uint8_t *pucValue, uint16_t usLen,
                                                      LDP_OvList *pstHead, uint32_t ulMemModuleId)
{
    if (pstHead == nullptr || pucValue == nullptr) {
        return LDP_ERR_PARAM;
    }
    pstHead->pNext = reinterpret_cast<LDP_OvElement *>(pstHead);
    pstHead->pPrev = reinterpret_cast<LDP_OvElement *>(pstHead);
    uint16_t used = 0;
    while (used < usLen) {
        LDP_OvElement *e = LDP_DecodeOvElement(pucValue + used, uint16_t(usLen - used), ulMemModuleId);
        if (e == nullptr) {
            LDP_FreeAllOvElement(pstHead);
            return LDP_ERR_PARAM;
        }
        ov_append(pstHead, e);
        // An element whose value could not be allocated counts as 3 bytes,
        // which puts the walk out of step with the wire; kept as it is.
        used = uint16_t(used + ov_wire_size(e));
    }
    if (used == usLen) {
        return LDP_OK;
    }
    LDP_FreeAllOvElement(pstHead);
    return LDP_ERR_PARAM;
}

extern "C" LDP_API bool LDP_MLDP_UtilCheckOVElementHead(const uint8_t *pucElem, uint16_t usLeft)
{
    if (pucElem == nullptr || usLeft == 0) {
        return false;
    }
    const uint16_t header = ov_header_size(pucElem[0]);
    if (usLeft < header) {
        return false;
    }
    return ov_value_len(pucElem) <= usLeft - header;
}

extern "C" LDP_API LDP_OvElement *LDP_DecodeOvElement(const uint8_t *pucElem, uint16_t usLeft,
                                                      uint32_t ulMemModuleId)
{
    if (pucElem == nullptr || !LDP_MLDP_UtilCheckOVElementHead(pucElem, usLeft)) {
        return nullptr;
    }
    const uint8_t type = pucElem[0];
    const uint16_t value_len = ov_value_len(pucElem);
    auto *e = mem::alloc_record<LDP_OvElement>(ulMemModuleId, srcfile::dec);
    if (e == nullptr) {
        return nullptr;
    }
    if (type == LDP_OV_TYPE_GENERIC_LSP_ID && value_len != 4) {
        mem::release(e, srcfile::dec);
        return nullptr;
    }
    if (value_len == 0 && type != LDP_OV_TYPE_EXTENDED) {
        e->ucType = type;
        return e;
    }
    uint8_t *value = nullptr;
    if (value_len != 0) {
        value = static_cast<uint8_t *>(mem::alloc_zeroed(ulMemModuleId, value_len, srcfile::dec));
        if (value == nullptr) {
            return e; // handed back blank (type 0, no value) rather than NULL, on purpose
        }
        mem::copy(value, value_len, pucElem + ov_header_size(type), value_len, srcfile::dec);
    }
    e->ucType = type;
    if (type == LDP_OV_TYPE_EXTENDED) {
        e->usLen = wire::load16(pucElem + 1); // the Extended Type
        e->usExtLen = value_len;
    } else {
        e->usLen = value_len;
    }
    e->pucValue = value;
    return e;
}

extern "C" LDP_API uint8_t LDP_DecodeOvElementType(const uint8_t *pucValue, uint16_t usLen)
{
    return (pucValue == nullptr || usLen == 0) ? 0 : pucValue[0];
}

extern "C" LDP_API uint32_t LDP_GetLspIdByOvElement(const LDP_OvElement *pstElem, uint32_t *pulLspId)
{
    if (pstElem == nullptr || pulLspId == nullptr || pstElem->ucType != LDP_OV_TYPE_GENERIC_LSP_ID) {
        return LDP_ERR_PARAM;
    }
    // usLen is not consulted: a Generic LSP Identifier value is 4 bytes.
    uint32_t id = 0;
    if (pstElem->pucValue != nullptr) {
        mem::copy(&id, sizeof id, pstElem->pucValue, sizeof id, srcfile::dec);
    }
    *pulLspId = wire::to_host32(id);
    return LDP_OK;
}

// --- MP Status TLV ----------------------------------------------------------

extern "C" LDP_API uint32_t LDP_PreParseMpStatusTlv(const uint8_t *pucValue, uint16_t usTlvLen)
{
    if (pucValue == nullptr) {
        return LDP_ERR_PARAM;
    }
    // Anything but a lone MBB element is accepted without being read.
    if (usTlvLen == 0 || pucValue[0] != LDP_MP_STATUS_ELEM_MBB || usTlvLen != 4) {
        return LDP_OK;
    }
    if (wire::load16(pucValue + 1) != 1) {
        return LDP_ERR_PARAM;
    }
    const uint8_t code = pucValue[3];
    return (code == LDP_MP_STATUS_MBB_REQUEST || code == LDP_MP_STATUS_MBB_ACK) ? LDP_OK
                                                                               : LDP_ERR_PARAM;
}

extern "C" LDP_API uint32_t LDP_DecodeMpStatusTlv(const uint8_t *pucValue, LDP_MpStatusTlv *pstMpStatus,
                                                  uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucValue == nullptr || pstMpStatus == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstMpStatus->stTlvHeader.usTlvLen;
    if (len == 0 || pucValue[0] != LDP_MP_STATUS_ELEM_MBB || len != 4) {
        return LDP_OK;
    }
    // Marked as taken before it is checked: a rejected element keeps the mark.
    pstMpStatus->ucElemType = LDP_MP_STATUS_ELEM_MBB;
    pstMpStatus->ucElemFlags = uint8_t(pstMpStatus->ucElemFlags | LDP_MP_STATUS_ELEM_TAKEN);
    pstMpStatus->usElemLen = wire::load16(pucValue + 1);
    if (pstMpStatus->usElemLen != 1) {
        return LDP_ERR_PARAM;
    }
    pstMpStatus->ucStatusCode = pucValue[3];
    const uint8_t code = pstMpStatus->ucStatusCode;
    return (code == LDP_MP_STATUS_MBB_REQUEST || code == LDP_MP_STATUS_MBB_ACK) ? LDP_OK
                                                                               : LDP_ERR_PARAM;
}
