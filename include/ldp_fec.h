/* FEC family: the FEC TLV (RFC 5036 section 3.4.1) with its Wildcard, Prefix
 * and Host Address elements, the multipoint FEC elements of RFC 6388 with
 * their opaque values, and the RFC 6388 MP Status TLV. Message records that
 * carry these TLVs embed LDP_FecTlv and LDP_MpStatusTlv. Include ldp_codec.h
 * rather than this file. */
#ifndef LDP_FEC_H
#define LDP_FEC_H

#include <stdbool.h>
#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* FEC element types as on the wire. */
#define LDP_FEC_WILDCARD        0x01u
#define LDP_FEC_PREFIX          0x02u
#define LDP_FEC_HOST_ADDR       0x03u
#define LDP_FEC_MLDP_P2MP       0x06u
#define LDP_FEC_MLDP_MP2MP_UP   0x07u
#define LDP_FEC_MLDP_MP2MP_DOWN 0x08u
#define LDP_FEC_PWID            0x80u /* handed to the caller, never parsed */
#define LDP_FEC_GEN_PWID        0x81u /* handed to the caller, never parsed */

/* Address families of Prefix, Host Address and mLDP root addresses. */
#define LDP_AF_IPV4 1u
#define LDP_AF_IPV6 2u

/* Opaque value element types of RFC 6388. */
#define LDP_OV_TYPE_GENERIC_LSP_ID 1u   /* value: a 4-byte LSP ID */
#define LDP_OV_TYPE_EXTENDED       255u /* extended type and length follow */

/* MP Status TLV: the one value element the library understands. */
#define LDP_MP_STATUS_ELEM_MBB    1u    /* Make-Before-Break status element */
#define LDP_MP_STATUS_MBB_REQUEST 1u
#define LDP_MP_STATUS_MBB_ACK     2u
#define LDP_MP_STATUS_ELEM_TAKEN  0x01u /* ucElemFlags bit: element present */

/* The body of one FEC element, the same layout for every element type. For a
 * PWid element (kind 0x80) the first eight bytes are read instead as ulRawLen
 * (only its low 16 bits count) and pucRaw, a fully encoded element that the
 * encoder copies verbatim. Multi-byte fields are in host order; aucAddr holds
 * the prefix, host or root address in network order, zero beyond its length. */
__extension__ typedef struct LDP_FecElementBody {
    __extension__ union {
        __extension__ struct __attribute__((packed)) {
            uint8_t ucFecType;       /* element type as on the wire */
            uint16_t usAddrFamily;   /* LDP_AF_IPV4 or LDP_AF_IPV6; unset for Wildcard */
            uint8_t ucPrefixLen;     /* Prefix: bits; Host Address and mLDP root: bytes */
            uint8_t aucAddr[16];
            uint8_t *pucOpaqueValue; /* mLDP only: owned opaque value in wire form */
            uint16_t usOpaqueLen;    /* mLDP only: its length */
        };
        __extension__ struct __attribute__((packed)) {
            uint32_t ulRawLen; /* PWid only */
            uint8_t *pucRaw;   /* PWid only: owned encoded element */
        };
    };
} __attribute__((packed)) LDP_FecElementBody;

/* One FEC element, a list element of LDP_FecTlv.stFecList. ucFecKind repeats
 * the element type: decode sets it from the wire, encode and release dispatch
 * on it, so a record built for encoding sets both it and stBody.ucFecType. */
typedef struct LDP_FecElement {
    SLL_Node stNode;
    LDP_FecElementBody stBody;
    uint8_t ucFecKind;
} __attribute__((packed)) LDP_FecElement;

/* The FEC TLV (0x0100): its header and its elements in wire order. Message
 * records holding one (label messages, Address Withdraw, Notification) embed
 * it as stFecTlv. */
typedef struct LDP_FecTlv {
    LDP_TlvHeader stTlvHeader;
    SLL_List stFecList; /* of LDP_FecElement */
} __attribute__((packed)) LDP_FecTlv;

/* One opaque value element of an mLDP FEC element. usLen is the value length
 * for types 0 to 254 and the Extended Type for type 255, whose value length is
 * then in usExtLen. pucValue holds the value as on the wire (NULL when empty). */
typedef struct LDP_OvElement {
    struct LDP_OvElement *pNext; /* the list head (cast) after the last element */
    struct LDP_OvElement *pPrev; /* the list head (cast) before the first element */
    uint8_t ucType;
    uint16_t usLen;
    uint16_t usExtLen;
    uint8_t *pucValue;
} __attribute__((packed)) LDP_OvElement;

/* Sentinel head of a circular, doubly linked list of LDP_OvElement. Its two
 * pointers lie where an element's do, so elements point back at the head
 * through a cast; an empty list points at itself both ways. */
typedef struct LDP_OvList {
    LDP_OvElement *pNext;
    LDP_OvElement *pPrev;
} __attribute__((packed)) LDP_OvList;

/* The MP Status TLV (0x096F), holding at most one MBB status element. */
typedef struct LDP_MpStatusTlv {
    LDP_TlvHeader stTlvHeader;
    uint16_t usElemLen;   /* element length, host order */
    uint8_t ucElemType;   /* LDP_MP_STATUS_ELEM_MBB when an element was taken */
    uint8_t ucStatusCode; /* LDP_MP_STATUS_MBB_REQUEST or LDP_MP_STATUS_MBB_ACK */
    uint8_t ucElemFlags;  /* LDP_MP_STATUS_ELEM_TAKEN; other bits are left alone */
} __attribute__((packed)) LDP_MpStatusTlv;

/* --- FEC TLV ---------------------------------------------------------------
 * pucValue is the first byte after the TLV header. Pre-parse reads only;
 * decode appends to an initialised, empty list; LDP_STOP_WALK means a PWid
 * element (0x80, 0x81) was met and is left to the caller. */
LDP_API uint32_t LDP_PreParseFECTlv(const uint8_t *pucValue, uint16_t usTlvLen);
LDP_API uint32_t LDP_PreParsePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                              uint16_t *pusElemLen);
LDP_API uint32_t LDP_PreParseHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                uint16_t *pusElemLen);
/* stTlvHeader.usTlvLen must hold the value length. On failure the elements
 * decoded so far stay listed for LDP_FreeFecElement. */
LDP_API uint32_t LDP_DecodeFECTlv(const uint8_t *pucValue, LDP_FecTlv *pstFecTlv,
                                  uint32_t ulMemModuleId);
LDP_API uint32_t LDP_DecodePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                            LDP_FecElementBody *pstBody, uint16_t *pusElemLen,
                                            uint32_t ulMemModuleId);
LDP_API uint32_t LDP_DecodeHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                              LDP_FecElementBody *pstBody, uint16_t *pusElemLen,
                                              uint32_t ulMemModuleId);
/* Writes the TLV header as stored (the caller sets type and length) and every
 * element. The record is consumed: usTlvType is left in network order. */
LDP_API uint32_t LDP_EncodeFECTlv(uint8_t *pucBuf, LDP_FecTlv *pstFecTlv, uint32_t ulMemModuleId,
                                  uint16_t usRoom);
/* Element encoders advance *ppucBuf and lower *pusRoom by what they write.
 * They leave usAddrFamily in network order in the record. */
LDP_API uint32_t LDP_EncodePrefixAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                                uint32_t ulMemModuleId, uint16_t *pusRoom);
LDP_API uint32_t LDP_EncodeHostAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                              uint32_t ulMemModuleId, uint16_t *pusRoom);
/* Releases every element and what it owns; the list is left empty. NULL is fine. */
LDP_API void LDP_FreeFecElement(LDP_FecTlv *pstFecTlv);

/* --- mLDP FEC elements (RFC 6388) and opaque values ------------------------
 * usLeft is what remains of the FEC TLV value, counted from this element's
 * first byte. On failure *pusErrOffset tells how far the checks got; on success it
 * is the element's size. */
LDP_API uint32_t LDP_PreParseMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                            uint16_t *pusErrOffset);
LDP_API uint32_t LDP_PreDecodeOvElement(const uint8_t *pucValue, uint16_t usLen);
/* Received elements are accepted for IPv4 roots only. The opaque value is
 * stored re-encoded from its parsed elements. Unlike the other element
 * functions, the decoder takes the whole element record and fills its body. */
LDP_API uint32_t LDP_DecodeMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                          LDP_FecElement *pstElem, uint16_t *pusElemLen,
                                          uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeMldpFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                          uint32_t ulMemModuleId, uint16_t *pusRoom);
/* Parses an opaque value and re-encodes it into a new buffer (*ppucOut, NULL
 * on failure), which the caller releases with LDP_MemFreeCallBack. */
LDP_API uint32_t LDP_DecodeOpaqueValue(const uint8_t *pucValue, uint16_t usLen, uint8_t **ppucOut,
                                       uint16_t *pusOutLen, uint32_t ulMemModuleId);
LDP_API uint32_t LDP_DecodeOvToElementList(const uint8_t *pucValue, uint16_t usLen,
                                           LDP_OvList *pstHead, uint32_t ulMemModuleId);
LDP_API LDP_OvElement *LDP_DecodeOvElement(const uint8_t *pucElem, uint16_t usLeft,
                                           uint32_t ulMemModuleId);
LDP_API bool LDP_MLDP_UtilCheckOVElementHead(const uint8_t *pucElem, uint16_t usLeft);
LDP_API uint8_t LDP_DecodeOvElementType(const uint8_t *pucValue, uint16_t usLen);
/* Concatenates the elements' wire forms into a new buffer. */
LDP_API uint32_t LDP_EncodeOvElement(LDP_OvList *pstHead, uint8_t **ppucOut, uint16_t *pusOutLen,
                                     uint32_t ulMemModuleId);
LDP_API LDP_OvElement *LDP_CreateOvElementByLspId(uint32_t ulLspId, uint32_t ulMemModuleId);
LDP_API uint32_t LDP_GetLspIdByOvElement(const LDP_OvElement *pstElem, uint32_t *pulLspId);
LDP_API void LDP_FreeOvElement(LDP_OvElement *pstElem);
LDP_API void LDP_FreeAllOvElement(LDP_OvList *pstHead);

/* --- MP Status TLV (RFC 6388) ----------------------------------------------
 * pucValue is the first byte after the TLV header. Nothing is allocated. */
LDP_API uint32_t LDP_PreParseMpStatusTlv(const uint8_t *pucValue, uint16_t usTlvLen);
/* stTlvHeader must already hold the received header. */
LDP_API uint32_t LDP_DecodeMpStatusTlv(const uint8_t *pucValue, LDP_MpStatusTlv *pstMpStatus,
                                       uint32_t ulMemModuleId);
/* Writes the header as stored and, when flagged, the one element; the caller
 * then moves on by stTlvHeader.usTlvLen + 4. usTlvType is left in network order. */
LDP_API uint32_t LDP_EncodeMpStatusTlv(uint8_t *pucBuf, LDP_MpStatusTlv *pstMpStatus,
                                       uint32_t ulMemModuleId, uint16_t usRoom);

#ifdef __cplusplus
}
#endif

#endif /* LDP_FEC_H */
