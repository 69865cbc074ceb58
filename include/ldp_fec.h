/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief FEC family: the FEC TLV (RFC 5036 section 3.4.1) with its Wildcard,
 * Prefix and Host Address elements, the multipoint FEC elements of RFC 6388
 * with their opaque values, and the RFC 6388 MP Status TLV.
 *
 * Message records that carry these TLVs embed LDP_FecTlv and
 * LDP_MpStatusTlv. Pre-parses read only; decoders allocate from
 * PLAT_SimpleAlloc_F with the caller's module ID; encoders report no room
 * through PLAT_Assert with LDP_ERR_PARAM. Include ldp_codec.h rather than
 * this file. */
#ifndef LDP_FEC_H
#define LDP_FEC_H

#include <stdbool.h>
#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name FEC element types as on the wire
 * @{ */
#define LDP_FEC_WILDCARD        0x01u /**< Wildcard: stands alone in its TLV */
#define LDP_FEC_PREFIX          0x02u /**< Prefix */
#define LDP_FEC_HOST_ADDR       0x03u /**< Host Address */
#define LDP_FEC_MLDP_P2MP       0x06u /**< mLDP point-to-multipoint (RFC 6388) */
#define LDP_FEC_MLDP_MP2MP_UP   0x07u /**< mLDP MP2MP upstream: sent only, unknown on receipt */
#define LDP_FEC_MLDP_MP2MP_DOWN 0x08u /**< mLDP MP2MP downstream: sent only, unknown on receipt */
#define LDP_FEC_PWID            0x80u /**< PWid (RFC 4447): handed to the caller, never parsed */
#define LDP_FEC_GEN_PWID        0x81u /**< Generalized PWid: handed to the caller, never parsed */
/** @} */

/** @name Address families of Prefix, Host Address and mLDP root addresses
 * @{ */
#define LDP_AF_IPV4 1u /**< IPv4 (IANA address family 1) */
#define LDP_AF_IPV6 2u /**< IPv6 (IANA address family 2) */
/** @} */

/** @name Opaque value element types of RFC 6388
 * @{ */
#define LDP_OV_TYPE_GENERIC_LSP_ID 1u   /**< value: a 4-byte LSP ID */
#define LDP_OV_TYPE_EXTENDED       255u /**< extended type and length follow */
/** @} */

/** @name MP Status TLV: the one value element the library understands
 * @{ */
#define LDP_MP_STATUS_ELEM_MBB    1u    /**< Make-Before-Break status element */
#define LDP_MP_STATUS_MBB_REQUEST 1u    /**< MBB status code: request */
#define LDP_MP_STATUS_MBB_ACK     2u    /**< MBB status code: acknowledgement */
#define LDP_MP_STATUS_ELEM_TAKEN  0x01u /**< ucElemFlags bit: element present */
/** @} */

/** @brief The body of one FEC element, the same layout for every element type.
 *
 * For a PWid element (kind 0x80) the first eight bytes are read instead as
 * ulRawLen (only its low 16 bits count) and pucRaw, a fully encoded element
 * that the encoder copies verbatim. Multi-byte fields are in host order;
 * aucAddr holds the prefix, host or root address in network order, zero
 * beyond its length. */
__extension__ typedef struct LDP_FecElementBody {
    __extension__ union {
        __extension__ struct __attribute__((packed)) {
            uint8_t ucFecType;       /**< element type as on the wire */
            uint16_t usAddrFamily;   /**< LDP_AF_IPV4 or LDP_AF_IPV6; unset for Wildcard */
            uint8_t ucPrefixLen;     /**< Prefix: bits; Host Address and mLDP root: bytes */
            uint8_t aucAddr[16];     /**< the address, network order, zero-padded */
            uint8_t *pucOpaqueValue; /**< mLDP only: owned opaque value in wire form */
            uint16_t usOpaqueLen;    /**< mLDP only: its length */
        };
        __extension__ struct __attribute__((packed)) {
            uint32_t ulRawLen; /**< PWid only: bytes at pucRaw (low 16 bits) */
            uint8_t *pucRaw;   /**< PWid only: owned encoded element */
        };
    };
} __attribute__((packed)) LDP_FecElementBody;

/** @brief One FEC element, a list element of LDP_FecTlv::stFecList, from
 * PLAT_SimpleAlloc_F.
 *
 * ucFecKind repeats the element type: decode sets it from the wire, encode
 * and release dispatch on it, so a record built for encoding sets both it
 * and stBody.ucFecType. */
typedef struct LDP_FecElement {
    SLL_Node stNode;           /**< list link */
    LDP_FecElementBody stBody; /**< the element */
    uint8_t ucFecKind;         /**< element type that encode and release go by */
} __attribute__((packed)) LDP_FecElement;

/** @brief The FEC TLV (0x0100): its header and its elements in wire order.
 * Message records holding one (label messages, Address Withdraw,
 * Notification) embed it as stFecTlv and own its elements. */
typedef struct LDP_FecTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header */
    SLL_List stFecList;        /**< owned LDP_FecElement elements */
} __attribute__((packed)) LDP_FecTlv;

/** @brief One opaque value element of an mLDP FEC element, from
 * PLAT_SimpleAlloc_F; it owns pucValue. */
typedef struct LDP_OvElement {
    struct LDP_OvElement *pNext; /**< next element; the list head (cast) after the last */
    struct LDP_OvElement *pPrev; /**< previous element; the list head (cast) before the first */
    uint8_t ucType;              /**< element type */
    uint16_t usLen;              /**< value length for types 0 to 254; the Extended Type for 255 */
    uint16_t usExtLen;           /**< type 255 only: the value length */
    uint8_t *pucValue;           /**< owned value as on the wire; NULL when empty */
} __attribute__((packed)) LDP_OvElement;

/** @brief Sentinel head of a circular, doubly linked list of LDP_OvElement.
 *
 * Its two pointers lie where an element's do, so elements point back at the
 * head through a cast; an empty list points at itself both ways. */
typedef struct LDP_OvList {
    LDP_OvElement *pNext; /**< first element, or the head itself */
    LDP_OvElement *pPrev; /**< last element, or the head itself */
} __attribute__((packed)) LDP_OvList;

/** @brief The MP Status TLV (0x096F), holding at most one MBB status element. */
typedef struct LDP_MpStatusTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header */
    uint16_t usElemLen;   /**< element length, host order */
    uint8_t ucElemType;   /**< LDP_MP_STATUS_ELEM_MBB when an element was taken */
    uint8_t ucStatusCode; /**< LDP_MP_STATUS_MBB_REQUEST or LDP_MP_STATUS_MBB_ACK */
    uint8_t ucElemFlags;  /**< LDP_MP_STATUS_ELEM_TAKEN; other bits are left alone */
} __attribute__((packed)) LDP_MpStatusTlv;

/** @brief Check the value of a FEC TLV without allocating.
 *
 * Walks the elements in turn. A pseudowire element ends the walk, whatever
 * follows it.
 * @param pucValue the value on the wire, right after the TLV header
 * @param usTlvLen its length
 * @retval LDP_OK                    every element checks out and they fill the value exactly
 * @retval LDP_STOP_WALK             a PWid or Generalized PWid element (0x80,
 *                                   0x81) was met; it is left to the caller
 * @retval LDP_ERR_PARAM             pucValue NULL
 * @retval LDP_STATUS_MALFORMED_TLV  an empty value, a Wildcard that is not
 *                                   alone, or elements that overrun the value
 * @retval LDP_STATUS_UNKNOWN_FEC    any other element type, the two mLDP
 *                                   MP2MP types included
 * @return also the codes of LDP_PreParsePrefixFecElement,
 *         LDP_PreParseHostAddrFecElement and LDP_PreParseMldpFecElement */
LDP_API uint32_t LDP_PreParseFECTlv(const uint8_t *pucValue, uint16_t usTlvLen);
/** @brief Check one Prefix element. The family is judged before the prefix
 * bytes are looked for.
 * @param pucElem    the element on the wire
 * @param usLeft     bytes left in the FEC TLV value from pucElem on
 * @param pusElemLen receives the element's size (4 plus the prefix bytes), 0 on failure
 * @retval LDP_OK                    well formed
 * @retval LDP_ERR_PARAM             a NULL pointer
 * @retval LDP_STATUS_BAD_TLV_LEN    fewer than 4 bytes left, or fewer than the prefix needs
 * @retval LDP_STATUS_MALFORMED_TLV  an IPv4 prefix above 32 bits or an IPv6 one above 128
 * @retval LDP_STATUS_UNSUPPORTED_AF a family other than IPv4 and IPv6 */
LDP_API uint32_t LDP_PreParsePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                              uint16_t *pusElemLen);
/** @brief Check one Host Address element. The address must fit before the
 * family is looked at.
 * @param pucElem    the element on the wire
 * @param usLeft     bytes left in the FEC TLV value from pucElem on
 * @param pusElemLen receives the element's size (8 or 20), 0 on failure
 * @retval LDP_OK                    well formed
 * @retval LDP_ERR_PARAM             a NULL pointer
 * @retval LDP_STATUS_BAD_TLV_LEN    fewer than 4 bytes left, or fewer than the address length says
 * @retval LDP_STATUS_MALFORMED_TLV  an IPv4 address not 4 bytes long, an IPv6 one not 16
 * @retval LDP_STATUS_UNSUPPORTED_AF a family other than IPv4 and IPv6 */
LDP_API uint32_t LDP_PreParseHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                                uint16_t *pusElemLen);
/** @brief Decode the value of a FEC TLV into new list elements.
 *
 * Each element is allocated before it is checked and appended once it
 * decodes; a PWid or Generalized PWid element is appended with only its kind
 * set. On any failure the elements decoded so far stay listed, for
 * LDP_FreeFecElement.
 * @param pucValue      the value on the wire, right after the TLV header
 * @param pstFecTlv     the TLV; stTlvHeader.usTlvLen must hold the value
 *                      length and stFecList be an initialised list
 * @param ulMemModuleId memory module ID for the elements
 * @retval LDP_OK                   decoded
 * @retval LDP_STOP_WALK            a pseudowire element was met and listed
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_ERR_NO_MEMORY        an element could not be allocated
 * @retval LDP_STATUS_MALFORMED_TLV an empty value, a Wildcard not alone,
 *                                  elements that overrun the value, or a P2MP
 *                                  element sharing the TLV with another element
 * @retval LDP_STATUS_UNKNOWN_FEC   any other element type
 * @return also the codes of LDP_DecodePrefixFecElement,
 *         LDP_DecodeHostAddrFecElement and LDP_DecodeMldpFecElement */
LDP_API uint32_t LDP_DecodeFECTlv(const uint8_t *pucValue, LDP_FecTlv *pstFecTlv,
                                  uint32_t ulMemModuleId);
/** @brief Decode one Prefix element: the checks of
 * LDP_PreParsePrefixFecElement, then type, family, prefix length and the
 * prefix bytes into the body.
 * @param pucElem       the element on the wire
 * @param usLeft        bytes left in the FEC TLV value from pucElem on
 * @param pstBody       receives the element (untouched on failure)
 * @param pusElemLen    receives the element's size, 0 on failure
 * @param ulMemModuleId not used
 * @return the codes of LDP_PreParsePrefixFecElement */
LDP_API uint32_t LDP_DecodePrefixFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                            LDP_FecElementBody *pstBody, uint16_t *pusElemLen,
                                            uint32_t ulMemModuleId);
/** @brief Decode one Host Address element: the checks of
 * LDP_PreParseHostAddrFecElement, then type, family, length and address into
 * the body.
 * @param pucElem       the element on the wire
 * @param usLeft        bytes left in the FEC TLV value from pucElem on
 * @param pstBody       receives the element (untouched on failure)
 * @param pusElemLen    receives the element's size, 0 on failure
 * @param ulMemModuleId not used
 * @return the codes of LDP_PreParseHostAddrFecElement */
LDP_API uint32_t LDP_DecodeHostAddrFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                              LDP_FecElementBody *pstBody, uint16_t *pusElemLen,
                                              uint32_t ulMemModuleId);
/** @brief Write a FEC TLV: the header as stored (the caller sets type and
 * length), then every element by its ucFecKind. A PWid element is copied
 * from pucRaw. The record is consumed: usTlvType and each family are left in
 * network order.
 * @param pucBuf        output
 * @param pstFecTlv     the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer; an empty element list (after the
 *                       header is written); a Wildcard that is not alone; an
 *                       element kind it cannot write (0x81 included); a
 *                       failing element encoder; or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeFECTlv(uint8_t *pucBuf, LDP_FecTlv *pstFecTlv, uint32_t ulMemModuleId,
                                  uint16_t usRoom);
/** @brief Write one Prefix element: type, family, prefix length and the
 * prefix bytes. Advances *ppucBuf and lowers *pusRoom by what it writes;
 * usAddrFamily is left in network order in the record.
 * @param ppucBuf       the output position, moved on
 * @param pstBody       the element
 * @param ulMemModuleId not used
 * @param pusRoom       bytes left at *ppucBuf, lowered
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer (or *ppucBuf NULL); a family other
 *                       than IPv4 and IPv6 or a prefix longer than it allows
 *                       (no assertion); or no room (with an assertion) */
LDP_API uint32_t LDP_EncodePrefixAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                                uint32_t ulMemModuleId, uint16_t *pusRoom);
/** @brief Write one Host Address element: type, family, length and that many
 * address bytes (zeros beyond the 16 held), without judging family or
 * length. Advances *ppucBuf and lowers *pusRoom; usAddrFamily is left in
 * network order in the record.
 * @param ppucBuf       the output position, moved on
 * @param pstBody       the element
 * @param ulMemModuleId not used
 * @param pusRoom       bytes left at *ppucBuf, lowered
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer (or *ppucBuf NULL), or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeHostAddrFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                              uint32_t ulMemModuleId, uint16_t *pusRoom);
/** @brief Release every element of a FEC TLV and what it owns (pucRaw of a
 * PWid element, the opaque value of an mLDP one); the list is left empty. An
 * element whose kind is not mLDP but whose type is P2MP has its opaque value
 * released too, with an assertion.
 * @param pstFecTlv the TLV; NULL: nothing happens */
LDP_API void LDP_FreeFecElement(LDP_FecTlv *pstFecTlv);

/** @brief Check one mLDP P2MP element (RFC 6388) and its opaque value without
 * allocating. Received roots must be IPv4.
 * @param pucElem      the element on the wire
 * @param usLeft       bytes left in the FEC TLV value from pucElem on
 * @param pusErrOffset on failure, how far the checks got (0, 4, 8 or 10);
 *                     once the header checks pass, the element's size
 * @retval LDP_OK                    well formed
 * @retval LDP_ERR_PARAM             a NULL pointer
 * @retval LDP_STATUS_BAD_TLV_LEN    the element header, root address, opaque
 *                                   length or opaque value runs past usLeft
 * @retval LDP_STATUS_UNSUPPORTED_AF a root family other than IPv4
 * @retval LDP_STATUS_MALFORMED_TLV  a root address length other than 4, or an
 *                                   opaque length of 0
 * @return also the codes of LDP_PreDecodeOvElement for the opaque value */
LDP_API uint32_t LDP_PreParseMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                            uint16_t *pusErrOffset);
/** @brief Check an opaque value, element by element, without allocating.
 * @param pucValue the opaque value on the wire
 * @param usLen    its length
 * @retval LDP_OK                   the elements fill the value exactly (also for usLen 0)
 * @retval LDP_ERR_PARAM            pucValue NULL
 * @retval LDP_STATUS_BAD_TLV_LEN   an element header or value runs past the end
 * @retval LDP_STATUS_MALFORMED_TLV a Generic LSP Identifier whose value is not 4 bytes */
LDP_API uint32_t LDP_PreDecodeOvElement(const uint8_t *pucValue, uint16_t usLen);
/** @brief Decode one mLDP P2MP element into a FEC element record.
 *
 * Type, family and root length are stored before they are judged; then the
 * checks of LDP_PreParseMldpFecElement run, the root address is copied and
 * the opaque value is stored re-encoded from its parsed elements (see
 * LDP_DecodeOpaqueValue) in a new buffer the element owns. Unlike the other
 * element functions it takes the whole element record.
 * @param pucElem       the element on the wire
 * @param usLeft        bytes left in the FEC TLV value from pucElem on
 * @param pstElem       the element record whose body is filled
 * @param pusElemLen    receives 10 plus the stored opaque length
 * @param ulMemModuleId memory module ID for the opaque value
 * @retval LDP_OK                    decoded
 * @retval LDP_ERR_PARAM             a NULL pointer
 * @retval LDP_STATUS_BAD_TLV_LEN    as LDP_PreParseMldpFecElement
 * @retval LDP_STATUS_UNSUPPORTED_AF a root family other than IPv4
 * @retval LDP_STATUS_MALFORMED_TLV  a root length other than 4, an opaque
 *                                   length of 0, or an opaque value that could
 *                                   not be parsed or stored (no memory included) */
LDP_API uint32_t LDP_DecodeMldpFecElement(const uint8_t *pucElem, uint16_t usLeft,
                                          LDP_FecElement *pstElem, uint16_t *pusElemLen,
                                          uint32_t ulMemModuleId);
/** @brief Write one mLDP element: type, family, root length, root address,
 * opaque length and the opaque value. IPv6 roots are sent though refused on
 * receipt. Advances *ppucBuf and lowers *pusRoom; usAddrFamily is left in
 * network order in the record.
 * @param ppucBuf       the output position, moved on
 * @param pstBody       the element
 * @param ulMemModuleId not used
 * @param pusRoom       bytes left at *ppucBuf, lowered
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer (or *ppucBuf NULL); a root that is
 *                       neither IPv4 of length 4 nor IPv6 of length 16 (no
 *                       assertion); or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeMldpFecElement(uint8_t **ppucBuf, LDP_FecElementBody *pstBody,
                                          uint32_t ulMemModuleId, uint16_t *pusRoom);
/** @brief Parse an opaque value into elements and re-encode them into a new
 * buffer (LDP_DecodeOvToElementList, then LDP_EncodeOvElement); the
 * elements are released again.
 * @param pucValue      the opaque value on the wire
 * @param usLen         its length
 * @param ppucOut       receives the new buffer, released by the caller with
 *                      LDP_MemFreeCallBack; NULL on failure
 * @param pusOutLen     receives its length
 * @param ulMemModuleId memory module ID for the elements and the buffer
 * @retval LDP_OK        stored
 * @retval LDP_ERR_PARAM a NULL pointer, a value that does not parse, or no
 *                       memory (for an element or the buffer) */
LDP_API uint32_t LDP_DecodeOpaqueValue(const uint8_t *pucValue, uint16_t usLen, uint8_t **ppucOut,
                                       uint16_t *pusOutLen, uint32_t ulMemModuleId);
/** @brief Parse an opaque value into a new list of elements
 * (LDP_DecodeOvElement for each).
 *
 * An element whose value could not be allocated counts as 3 bytes, which
 * puts the walk out of step with the wire.
 * @param pucValue      the opaque value on the wire
 * @param usLen         its length
 * @param pstHead       the list head, initialised here; the caller releases
 *                      the elements with LDP_FreeAllOvElement
 * @param ulMemModuleId memory module ID for the elements
 * @retval LDP_OK        parsed (an empty list for usLen 0)
 * @retval LDP_ERR_PARAM a NULL pointer, or an element that cannot be read or
 *                       allocated, or elements that overrun the value; the
 *                       list is then released and left empty */
LDP_API uint32_t LDP_DecodeOvToElementList(const uint8_t *pucValue, uint16_t usLen,
                                           LDP_OvList *pstHead, uint32_t ulMemModuleId);
/** @brief Read one opaque value element into a new element (not linked).
 * @param pucElem       the element on the wire
 * @param usLeft        bytes left in the opaque value from pucElem on
 * @param ulMemModuleId memory module ID for the element and its value
 * @return the element, released by the caller with LDP_FreeOvElement; NULL
 *         when the head does not check out (LDP_MLDP_UtilCheckOVElementHead),
 *         for a Generic LSP Identifier not 4 bytes long, or when the element
 *         cannot be allocated. When only its value cannot be allocated, a
 *         blank element (type 0, no value) is returned. */
LDP_API LDP_OvElement *LDP_DecodeOvElement(const uint8_t *pucElem, uint16_t usLeft,
                                           uint32_t ulMemModuleId);
/** @brief Whether an opaque value element's header and value fit.
 * @param pucElem the element on the wire
 * @param usLeft  bytes readable from pucElem on
 * @return true when the header (3 bytes, 5 for type 255) and the value it
 *         announces fit in usLeft; false otherwise, for NULL or usLeft 0 */
LDP_API bool LDP_MLDP_UtilCheckOVElementHead(const uint8_t *pucElem, uint16_t usLeft);
/** @brief The type of the first opaque value element.
 * @param pucValue the opaque value on the wire
 * @param usLen    its length
 * @return its first byte; 0 for NULL or usLen 0 */
LDP_API uint8_t LDP_DecodeOvElementType(const uint8_t *pucValue, uint16_t usLen);
/** @brief Concatenate the elements' wire forms into a new buffer.
 * @param pstHead       the list
 * @param ppucOut       receives the buffer (from PLAT_SimpleAlloc_F, released
 *                      by the caller with LDP_MemFreeCallBack), NULL on failure
 * @param pusOutLen     receives its length, 0 on failure
 * @param ulMemModuleId memory module ID for the buffer
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer; no memory for the buffer; or a list
 *                       too long for 16 bits (with an assertion, the buffer
 *                       released) */
LDP_API uint32_t LDP_EncodeOvElement(LDP_OvList *pstHead, uint8_t **ppucOut, uint16_t *pusOutLen,
                                     uint32_t ulMemModuleId);
/** @brief A new Generic LSP Identifier element holding ulLspId.
 * @param ulLspId       the LSP ID
 * @param ulMemModuleId memory module ID for the element and its 4-byte value
 * @return the element (not linked), released with LDP_FreeOvElement; NULL
 *         when memory runs out (nothing is left allocated) */
LDP_API LDP_OvElement *LDP_CreateOvElementByLspId(uint32_t ulLspId, uint32_t ulMemModuleId);
/** @brief The LSP ID of a Generic LSP Identifier element (usLen is not consulted).
 * @param pstElem  the element
 * @param pulLspId receives the ID in host order (0 when the element has no value)
 * @retval LDP_OK        read
 * @retval LDP_ERR_PARAM a NULL pointer, or an element of another type */
LDP_API uint32_t LDP_GetLspIdByOvElement(const LDP_OvElement *pstElem, uint32_t *pulLspId);
/** @brief Release one element and its value; it is not unlinked.
 * @param pstElem the element; NULL: nothing happens */
LDP_API void LDP_FreeOvElement(LDP_OvElement *pstElem);
/** @brief Unlink and release every element of a list; the list is left empty.
 * @param pstHead the list; NULL: nothing happens */
LDP_API void LDP_FreeAllOvElement(LDP_OvList *pstHead);

/** @brief Check the value of an MP Status TLV without allocating.
 *
 * Only a value that is exactly one MBB element (4 bytes, type 1) is read;
 * anything else is accepted unread.
 * @param pucValue the value on the wire, right after the TLV header
 * @param usTlvLen its length
 * @retval LDP_OK        accepted
 * @retval LDP_ERR_PARAM pucValue NULL, or an MBB element whose length is not 1
 *                       or whose status code is neither request nor ack */
LDP_API uint32_t LDP_PreParseMpStatusTlv(const uint8_t *pucValue, uint16_t usTlvLen);
/** @brief Decode the value of an MP Status TLV, the same checks as
 * LDP_PreParseMpStatusTlv. An MBB element is marked taken (ucElemType,
 * LDP_MP_STATUS_ELEM_TAKEN) before it is checked, so a refused one keeps the
 * mark. Nothing is allocated.
 * @param pucValue      the value on the wire
 * @param pstMpStatus   the TLV; stTlvHeader must already hold the received header
 * @param ulMemModuleId not used
 * @return the codes of LDP_PreParseMpStatusTlv (LDP_ERR_PARAM also for a NULL record) */
LDP_API uint32_t LDP_DecodeMpStatusTlv(const uint8_t *pucValue, LDP_MpStatusTlv *pstMpStatus,
                                       uint32_t ulMemModuleId);
/** @brief Write an MP Status TLV: the header as stored and, when
 * LDP_MP_STATUS_ELEM_TAKEN is set, the element type, length and one status
 * byte. The caller then moves on by stTlvHeader.usTlvLen + 4. usTlvType is
 * left in network order.
 * @param pucBuf        output
 * @param pstMpStatus   the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeMpStatusTlv(uint8_t *pucBuf, LDP_MpStatusTlv *pstMpStatus,
                                       uint32_t ulMemModuleId, uint16_t usRoom);

#ifdef __cplusplus
}
#endif

#endif /* LDP_FEC_H */
