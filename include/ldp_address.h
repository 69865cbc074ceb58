/* Address family: the Address (0x0300) and Address Withdraw (0x0301)
 * messages of RFC 5036 sections 3.5.5 and 3.5.6, the Address List TLV and
 * the MAC List TLV of RFC 4762. Include ldp_codec.h rather than this file. */
#ifndef LDP_ADDRESS_H
#define LDP_ADDRESS_H

#include <stdbool.h>
#include <stdint.h>

#include "ldp_fec.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The address-list fields, laid out as both message records hold them. The
 * Address List functions take (LDP_AddrListTlv *)&pMsgRecord->stAddrListTlv.
 * Received lists keep IPv4 addresses only: an IPv6 list (family 2) is
 * accepted and leaves pulAddrList NULL. For encoding, pulAddrList holds
 * usAddrCount IPv4 addresses, or 4 x usAddrCount host-order words forming
 * usAddrCount IPv6 addresses; the caller sets usTlvLen (2 + 4 or 16 per
 * address). */
typedef struct LDP_AddrListTlv {
    LDP_TlvHeader stAddrListTlv; /* host order */
    uint16_t usAddrFamily;       /* LDP_AF_IPV4 or LDP_AF_IPV6 (IANA numbers) */
    uint32_t *pulAddrList;       /* owned; each address in host order; NULL when none */
    uint16_t usAddrCount;
} __attribute__((packed)) LDP_AddrListTlv;

/* The MAC List fields of LDP_AddressWithdrawMsg, from stMacListTlv on: the
 * MAC List encoder takes (LDP_MacListTlv *)&pMsgRecord->stMacListTlv. */
typedef struct LDP_MacListTlv {
    LDP_TlvHeader stMacListTlv;
    uint8_t *pucMacList;   /* owned; 6-byte MAC addresses as on the wire */
    uint16_t usMacListLen; /* bytes at pucMacList */
} __attribute__((packed)) LDP_MacListTlv;

/* Address: one Address List TLV first; later Address List TLVs replace an
 * empty or IPv6 list until an IPv4 list is held, then are skipped. */
typedef struct LDP_AddressMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_TlvHeader stAddrListTlv;
    uint16_t usAddrFamily;
    uint32_t *pulAddrList;
    uint16_t usAddrCount;
} __attribute__((packed)) LDP_AddressMsg;

/* ucAddrWdFlags */
#define LDP_ADDRWD_MAC_LIST  0x01u /* write the MAC List TLV (set by callers; decode never does) */
#define LDP_ADDRWD_FEC       0x02u /* FEC TLV present */
#define LDP_ADDRWD_ADDR_LIST 0x04u /* Address List TLV decoded (the encoder goes by usTlvLen instead) */

/* Address Withdraw: addresses to withdraw, optionally narrowed by a FEC TLV,
 * and for RFC 4762 VPLS a list of MAC addresses. Decoding stops with
 * LDP_STOP_WALK at any MAC List, and at a FEC TLV that checks out, leaving
 * both to the caller. */
typedef struct LDP_AddressWithdrawMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_TlvHeader stAddrListTlv;
    uint16_t usAddrFamily;
    uint32_t *pulAddrList;
    uint16_t usAddrCount;
    LDP_FecTlv stFecTlv;
    LDP_TlvHeader stMacListTlv;
    uint8_t *pucMacList;
    uint16_t usMacListLen;
    uint8_t ucAddrWdFlags; /* LDP_ADDRWD_* */
} __attribute__((packed)) LDP_AddressWithdrawMsg;

/* --- Address List TLV (0x0101) --------------------------------------------
 * Check the usTlvLen value bytes at pucValue without allocating. Returns
 * LDP_OK (also for an empty value or a family with no address, whatever the
 * family); LDP_ERR_PARAM (null); LDP_STATUS_MALFORMED_TLV (length 1, or a
 * length that is not 2 plus whole addresses); LDP_STATUS_UNSUPPORTED_AF
 * (a family other than IPv4 and IPv6 with addresses). */
LDP_API uint32_t LDP_PreParseAddrListTlv(const uint8_t *pucValue, uint16_t usTlvLen);
/* Fill pstAddrList, whose stAddrListTlv the caller has set, from the value at
 * pucValue. IPv4 addresses go to a new array in pulAddrList, owned by the
 * record. Returns LDP_OK; LDP_ERR_PARAM (null); LDP_STATUS_MALFORMED_TLV;
 * LDP_ERR_NO_MEMORY; LDP_STATUS_UNSUPPORTED_AF (the array is then already
 * allocated and stays in the record for its release). */
LDP_API uint32_t LDP_DecodeAddrListTlv(const uint8_t *pucValue, LDP_AddrListTlv *pstAddrList,
                                       uint32_t ulMemModuleId);
/* Write the header as it stands, the family and the addresses in network
 * order. Returns LDP_OK; LDP_ERR_PARAM for a null pointer, a missing array
 * with a nonzero count, or (with an assertion) too little room. */
LDP_API uint32_t LDP_EncodeAddrListTlv(uint8_t *pucBuf, LDP_AddrListTlv *pstAddrList, uint32_t ulMemModuleId,
                                       uint16_t usRoom);

/* --- MAC List TLV (0x0404, RFC 4762) ---------------------------------------
 * Write the header as it stands, then usMacListLen bytes of pucMacList unless
 * usTlvLen is 0. Returns LDP_OK; LDP_ERR_PARAM for a null pointer or (with an
 * assertion) too little room. */
LDP_API uint32_t LDP_EncodeMacListTLV(uint8_t *pucBuf, LDP_MacListTlv *pstMacList, uint32_t ulMemModuleId,
                                      uint16_t usRoom);

/* --- Address ----------------------------------------------------------------
 * Pre-parse and decode return LDP_OK; LDP_ERR_PARAM (null);
 * LDP_STATUS_MISSING_MSG_PARAMS (no room for a TLV, or the first TLV is not
 * an Address List); LDP_STATUS_BAD_TLV_LEN; LDP_STATUS_BAD_MSG_LEN;
 * LDP_STATUS_UNKNOWN_TLV (an unknown TLV without the U bit); the Address
 * List codes above. The decoder fills a zeroed record, which owns
 * pulAddrList whatever the result. */
LDP_API uint32_t LDP_PreParseAddrMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeAddrMsg(const uint8_t *pucMsg, LDP_AddressMsg *pMsgRecord, uint32_t ulMemModuleId);
/* What LDP_DecodeAddrMsg runs once the leading Address List is read: pucNext is
 * the next TLV on the wire, usPos its position in message-length units (the
 * message ID counts), usMsgLen the message length. Each header is read into
 * *pstScratchTlv. bIpv4Held says an IPv4 list is already held; until one
 * is, a further Address List TLV replaces the record's list. Same codes as
 * LDP_DecodeAddrMsg. */
LDP_API uint32_t LDP_DecodeAddrMsgForOtherTLV(const uint8_t *pucNext, LDP_AddressMsg *pMsgRecord,
                                              uint32_t ulMemModuleId, uint16_t usPos, uint16_t usMsgLen,
                                              LDP_TlvHeader *pstScratchTlv, bool bIpv4Held);
/* Write the header and the Address List TLV. Returns LDP_ERR_PARAM for a
 * null pointer, a message length the encoders refuse or a header that does
 * not fit; otherwise LDP_OK, even when the list did not fit (it is
 * reported with an assertion). The record is consumed. */
LDP_API uint32_t LDP_EncodeAddrMsg(uint8_t *pucBuf, LDP_AddressMsg *pMsgRecord, uint32_t ulMemModuleId,
                                   uint16_t usRoom);
/* Releases pulAddrList, not the record; nothing unless it is an Address message. */
LDP_API void LDP_FreeAddressMsg(LDP_AddressMsg *pMsgRecord);

/* --- Address Withdraw ------------------------------------------------------
 * Pre-parse returns LDP_OK; LDP_ERR_PARAM; LDP_STATUS_MISSING_MSG_PARAMS (no
 * TLV at all); LDP_STATUS_BAD_TLV_LEN; LDP_STATUS_BAD_MSG_LEN;
 * LDP_STATUS_UNKNOWN_TLV; the Address List codes; LDP_STOP_WALK at a MAC
 * List TLV or a FEC TLV that passes its check (a FEC TLV that fails it is
 * passed over). Through LDP_Decode that LDP_STOP_WALK comes with no record.
 * The decoder returns the same codes and LDP_ERR_NO_MEMORY; it returns
 * LDP_STOP_WALK with the FEC TLV decoded into stFecTlv (LDP_ADDRWD_FEC set),
 * or at a MAC List TLV, which it does not keep. */
LDP_API uint32_t LDP_PreParseAddrWithdrawMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeAddrWithdrawMsg(const uint8_t *pucMsg, LDP_AddressWithdrawMsg *pMsgRecord,
                                           uint32_t ulMemModuleId);
/* Write the header, the Address List TLV when its usTlvLen is above 5, then
 * the FEC TLV and the MAC List TLV when flagged. Returns LDP_OK or
 * LDP_ERR_PARAM (null, refused message length, FEC or list failure, or too
 * little room, with an assertion). The record is consumed. */
LDP_API uint32_t LDP_EncodeAddrWithdrawMsg(uint8_t *pucBuf, LDP_AddressWithdrawMsg *pMsgRecord,
                                           uint32_t ulMemModuleId, uint16_t usRoom);
/* Releases the address array, the FEC elements and the MAC list, not the
 * record; nothing unless it is an Address Withdraw message. */
LDP_API void LDP_FreeAddressWithdrawMsg(LDP_AddressWithdrawMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_ADDRESS_H */
