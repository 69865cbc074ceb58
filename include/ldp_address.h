/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Address family: the Address (0x0300) and Address Withdraw (0x0301)
 * messages of RFC 5036 sections 3.5.5 and 3.5.6, the Address List TLV and
 * the MAC List TLV of RFC 4762. Include ldp_codec.h rather than this file.
 *
 * Pre-parses, decoders and encoders follow the rules stated in
 * ldp_session.h: decoders fill a zeroed record that owns what it holds on
 * every outcome; encoders write the lengths the caller set, convert the
 * record in place and report no room through PLAT_Assert with
 * LDP_ERR_PARAM. */
#ifndef LDP_ADDRESS_H
#define LDP_ADDRESS_H

#include <stdbool.h>
#include <stdint.h>

#include "ldp_fec.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The address-list fields, laid out as both message records hold
 * them: the Address List functions take
 * (LDP_AddrListTlv *)&pMsgRecord->stAddrListTlv.
 *
 * Received lists keep IPv4 addresses only: an IPv6 list (family 2) is
 * accepted and leaves pulAddrList NULL. For encoding, pulAddrList holds
 * usAddrCount IPv4 addresses, or 4 x usAddrCount host-order words forming
 * usAddrCount IPv6 addresses; the caller sets usTlvLen (2 + 4 or 16 per
 * address). */
typedef struct LDP_AddrListTlv {
    LDP_TlvHeader stAddrListTlv; /**< TLV header, host order */
    uint16_t usAddrFamily;       /**< LDP_AF_IPV4 or LDP_AF_IPV6 (IANA numbers) */
    uint32_t *pulAddrList;       /**< owned; each address in host order; NULL when none */
    uint16_t usAddrCount;        /**< addresses at pulAddrList */
} __attribute__((packed)) LDP_AddrListTlv;

/** @brief The MAC List fields of LDP_AddressWithdrawMsg, from stMacListTlv
 * on: the MAC List encoder takes (LDP_MacListTlv *)&pMsgRecord->stMacListTlv. */
typedef struct LDP_MacListTlv {
    LDP_TlvHeader stMacListTlv; /**< TLV header (0x0404) */
    uint8_t *pucMacList;   /**< owned; 6-byte MAC addresses as on the wire */
    uint16_t usMacListLen; /**< bytes at pucMacList */
} __attribute__((packed)) LDP_MacListTlv;

/** @brief Address (0x0300).
 *
 * One Address List TLV first; later Address List TLVs replace an empty or
 * IPv6 list until an IPv4 list is held, then are skipped. The record owns
 * pulAddrList. */
typedef struct LDP_AddressMsg {
    LDP_MsgHeader stMsgHeader;   /**< message header */
    LDP_TlvHeader stAddrListTlv; /**< Address List header */
    uint16_t usAddrFamily;       /**< address family */
    uint32_t *pulAddrList;       /**< owned; IPv4 addresses in host order, or NULL */
    uint16_t usAddrCount;        /**< addresses at pulAddrList */
} __attribute__((packed)) LDP_AddressMsg;

/** @name Address Withdraw presence bits (ucAddrWdFlags)
 * @{ */
#define LDP_ADDRWD_MAC_LIST  0x01u /**< write the MAC List TLV (set by callers; decode never does) */
#define LDP_ADDRWD_FEC       0x02u /**< FEC TLV present */
#define LDP_ADDRWD_ADDR_LIST 0x04u /**< Address List TLV decoded (the encoder goes by usTlvLen instead) */
/** @} */

/** @brief Address Withdraw (0x0301).
 *
 * Addresses to withdraw, optionally narrowed by a FEC TLV, and for RFC 4762
 * VPLS a list of MAC addresses. Decoding stops with LDP_STOP_WALK at any MAC
 * List, and at a FEC TLV that checks out, leaving both to the caller. The
 * record owns pulAddrList, the FEC elements and pucMacList. */
typedef struct LDP_AddressWithdrawMsg {
    LDP_MsgHeader stMsgHeader;   /**< message header */
    LDP_TlvHeader stAddrListTlv; /**< Address List header */
    uint16_t usAddrFamily;       /**< address family */
    uint32_t *pulAddrList;       /**< owned; IPv4 addresses in host order, or NULL */
    uint16_t usAddrCount;        /**< addresses at pulAddrList */
    LDP_FecTlv stFecTlv;         /**< FEC TLV with owned elements */
    LDP_TlvHeader stMacListTlv;  /**< MAC List header (sent only) */
    uint8_t *pucMacList;         /**< owned; MAC addresses to send, as on the wire */
    uint16_t usMacListLen;       /**< bytes at pucMacList */
    uint8_t ucAddrWdFlags;       /**< LDP_ADDRWD_* */
} __attribute__((packed)) LDP_AddressWithdrawMsg;

/** @brief Check the value of an Address List TLV (0x0101) without allocating.
 * @param pucValue the value on the wire
 * @param usTlvLen its length
 * @retval LDP_OK                    well formed; also an empty value or a
 *                                   family with no address, whatever the family
 * @retval LDP_ERR_PARAM             pucValue NULL
 * @retval LDP_STATUS_MALFORMED_TLV  length 1, or not 2 plus whole IPv4 or IPv6 addresses
 * @retval LDP_STATUS_UNSUPPORTED_AF a family other than IPv4 and IPv6, with addresses */
LDP_API uint32_t LDP_PreParseAddrListTlv(const uint8_t *pucValue, uint16_t usTlvLen);
/** @brief Decode the value of an Address List TLV.
 *
 * IPv4 addresses go to a new array in pulAddrList, owned by the record. An
 * IPv6 list is accepted without a length check and leaves pulAddrList NULL.
 * For any other family with addresses, and for a bad IPv4 length, the array
 * is allocated first and stays in the record for its release.
 * @param pucValue      the value on the wire
 * @param pstAddrList   the fields to fill; stAddrListTlv must hold the header
 * @param ulMemModuleId memory module ID for the array
 * @retval LDP_OK                    filled (an empty value leaves the family as it was)
 * @retval LDP_ERR_PARAM             a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV  length 1, or an IPv4 length that is not 2 plus whole addresses
 * @retval LDP_ERR_NO_MEMORY         no memory for the array
 * @retval LDP_STATUS_UNSUPPORTED_AF a family other than IPv4 and IPv6, with addresses */
LDP_API uint32_t LDP_DecodeAddrListTlv(const uint8_t *pucValue, LDP_AddrListTlv *pstAddrList,
                                       uint32_t ulMemModuleId);
/** @brief Write an Address List TLV: the header as it stands, the family and
 * the addresses in network order (four words per address for IPv6, one for
 * any other family).
 * @param pucBuf        output
 * @param pstAddrList   the fields to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, a NULL pulAddrList with a nonzero
 *                       count, or too little room (with an assertion) */
LDP_API uint32_t LDP_EncodeAddrListTlv(uint8_t *pucBuf, LDP_AddrListTlv *pstAddrList, uint32_t ulMemModuleId,
                                       uint16_t usRoom);

/** @brief Write a MAC List TLV (0x0404, RFC 4762): the header as it stands,
 * then usMacListLen bytes of pucMacList unless usTlvLen is 0.
 * @param pucBuf        output
 * @param pstMacList    the fields to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, or too little room (with an assertion) */
LDP_API uint32_t LDP_EncodeMacListTLV(uint8_t *pucBuf, LDP_MacListTlv *pstMacList, uint32_t ulMemModuleId,
                                      uint16_t usRoom);

/** @brief Check a received Address message without allocating.
 *
 * The first Address List TLV is checked with LDP_PreParseAddrListTlv; later
 * ones are passed over unchecked.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 8 (no room for a
 *                                       TLV), or the first TLV is not an Address List
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_UNKNOWN_TLV        a TLV other than Address List without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also LDP_STATUS_MALFORMED_TLV or LDP_STATUS_UNSUPPORTED_AF from
 *         LDP_PreParseAddrListTlv */
LDP_API uint32_t LDP_PreParseAddrMsg(const uint8_t *pucMsg);
/** @brief Decode a received Address message into its record.
 *
 * Decodes the leading Address List with LDP_DecodeAddrListTlv, then runs
 * LDP_DecodeAddrMsgForOtherTLV on the rest. The record owns pulAddrList
 * whatever the result.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record
 * @param ulMemModuleId memory module ID for the address array
 * @return the codes of LDP_PreParseAddrMsg (LDP_ERR_PARAM also for a NULL
 *         record), with those of LDP_DecodeAddrListTlv for every list it
 *         decodes (LDP_ERR_NO_MEMORY included); an IPv6 list of a bad length
 *         is accepted here */
LDP_API uint32_t LDP_DecodeAddrMsg(const uint8_t *pucMsg, LDP_AddressMsg *pMsgRecord, uint32_t ulMemModuleId);
/** @brief The rest of an Address message once the leading Address List is read.
 *
 * Each header is read into *pstScratchTlv. Until an IPv4 list is held, a
 * further Address List TLV is decoded in place of the record's list; after
 * that it is skipped. Unknown TLVs need the U bit.
 * @param pucNext       the next TLV on the wire
 * @param pMsgRecord    the record being decoded
 * @param ulMemModuleId memory module ID for an address array
 * @param usPos         position of pucNext in message-length units (the
 *                      message ID counts, so the first TLV is at 4)
 * @param usMsgLen      the message length
 * @param pstScratchTlv receives each TLV header
 * @param bIpv4Held     an IPv4 list is already held
 * @retval LDP_OK                 the message ends exactly after a TLV (or at usPos)
 * @retval LDP_ERR_PARAM          pucNext, pMsgRecord or pstScratchTlv NULL
 * @retval LDP_STATUS_BAD_TLV_LEN a TLV runs past the message, or 1 to 3 bytes
 *                                are left where a TLV should start
 * @retval LDP_STATUS_UNKNOWN_TLV a TLV other than Address List without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN usPos or the TLVs end past the message
 * @return also the codes of LDP_DecodeAddrListTlv for a list it decodes */
LDP_API uint32_t LDP_DecodeAddrMsgForOtherTLV(const uint8_t *pucNext, LDP_AddressMsg *pMsgRecord,
                                              uint32_t ulMemModuleId, uint16_t usPos, uint16_t usMsgLen,
                                              LDP_TlvHeader *pstScratchTlv, bool bIpv4Held);
/** @brief Encode an Address message: the header and the Address List TLV.
 * @param pucBuf        output
 * @param pMsgRecord    the record; consumed (converted in place)
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        the header is written; also when the list did not
 *                       fit or failed (reported with an assertion when it
 *                       did not fit), on purpose
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to
 *                       LDP_MAX_MSG_LEN, or usRoom below 8 (with an assertion) */
LDP_API uint32_t LDP_EncodeAddrMsg(uint8_t *pucBuf, LDP_AddressMsg *pMsgRecord, uint32_t ulMemModuleId,
                                   uint16_t usRoom);
/** @brief Release pulAddrList (and set it NULL); the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeAddressMsg(LDP_AddressMsg *pMsgRecord);

/** @brief Check a received Address Withdraw without allocating.
 *
 * TLVs may come in any order; the first Address List is checked, later ones
 * are passed over. The walk stops at a MAC List TLV and at a FEC TLV that
 * LDP_PreParseFECTlv accepts (or stops at); a FEC TLV that it refuses is
 * passed over. Through LDP_Decode this LDP_STOP_WALK comes with no record.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed, no MAC List or good FEC TLV
 * @retval LDP_STOP_WALK                 stopped at a MAC List or a good FEC TLV
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length 4 or less (no TLV at all)
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_UNKNOWN_TLV        any other TLV without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also LDP_STATUS_MALFORMED_TLV or LDP_STATUS_UNSUPPORTED_AF from
 *         LDP_PreParseAddrListTlv */
LDP_API uint32_t LDP_PreParseAddrWithdrawMsg(const uint8_t *pucMsg);
/** @brief Decode a received Address Withdraw into its record.
 *
 * The same walk as the pre-parse. The first Address List is decoded into the
 * record. At the first FEC TLV that LDP_DecodeFECTlv accepts (or stops at)
 * the decoder sets LDP_ADDRWD_FEC and returns LDP_STOP_WALK with the
 * elements in stFecTlv; a FEC TLV it refuses is passed over, its elements so
 * far left listed. At a MAC List TLV it returns LDP_STOP_WALK without
 * keeping the list. The record owns what it holds whatever the result.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record whose FEC list is empty
 * @param ulMemModuleId memory module ID for the array and the elements
 * @return the codes of LDP_PreParseAddrWithdrawMsg (LDP_ERR_PARAM also for a
 *         NULL record), with those of LDP_DecodeAddrListTlv for the first
 *         list (LDP_ERR_NO_MEMORY included; an IPv6 list of a bad length is
 *         accepted) */
LDP_API uint32_t LDP_DecodeAddrWithdrawMsg(const uint8_t *pucMsg, LDP_AddressWithdrawMsg *pMsgRecord,
                                           uint32_t ulMemModuleId);
/** @brief Encode an Address Withdraw.
 *
 * Writes the header, the Address List TLV when its usTlvLen is above 5
 * (whatever LDP_ADDRWD_ADDR_LIST says), then the FEC TLV and the MAC List
 * TLV when flagged.
 * @param pucBuf        output
 * @param pMsgRecord    the record; consumed (converted in place)
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to
 *                       LDP_MAX_MSG_LEN, a failing Address List, FEC or MAC
 *                       List encoder, or too little room (with an assertion) */
LDP_API uint32_t LDP_EncodeAddrWithdrawMsg(uint8_t *pucBuf, LDP_AddressWithdrawMsg *pMsgRecord,
                                           uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Release the address array, the FEC elements and the MAC list,
 * nulling the pointers; the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeAddressWithdrawMsg(LDP_AddressWithdrawMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_ADDRESS_H */
