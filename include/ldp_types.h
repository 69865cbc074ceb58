/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Result codes, message and TLV type codes, and the two header records
 * that open every message and TLV record. Part of the ldpcodec public
 * interface; include ldp_codec.h rather than this file. */
#ifndef LDP_TYPES_H
#define LDP_TYPES_H

#include <stdint.h>

#include "ldp_platform.h"

/** @brief Marks the functions libldpcodec.so exports; everything else in the
 * library has hidden visibility. */
#define LDP_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/** @name Result codes
 * Every pre-parse, decode and encode function returns one of these (uint32_t).
 * Where a value is also an RFC 5036 status code it carries the same meaning,
 * so an engine can put it in the Notification it sends. LDP_GetResultName()
 * gives the name of each.
 * @{ */
/** Success. */
#define LDP_OK                        0u
/** A NULL or unusable argument; also an encoder's "no room left" (reported
 * through PLAT_Assert) and LDP_Encode()'s unknown type: the generic failure. */
#define LDP_ERR_PARAM                 1u
/** LDP_Decode(): a message type the library does not know, U bit clear. */
#define LDP_STATUS_UNKNOWN_MSG_TYPE   4u
/** The message is shorter than its header needs, longer than the buffer, or
 * its TLVs do not end exactly where the message ends. */
#define LDP_STATUS_BAD_MSG_LEN        5u
/** An unknown TLV without the U bit, in a message that refuses those. */
#define LDP_STATUS_UNKNOWN_TLV        6u
/** A TLV header or value reaching past the end of the message, or fewer than
 * four bytes left where a TLV header should start; some checks also give it
 * for a TLV of the wrong length (each function says which). */
#define LDP_STATUS_BAD_TLV_LEN        7u
/** A known TLV whose length or contents break its definition. */
#define LDP_STATUS_MALFORMED_TLV      8u
/** A FEC element of a type the library does not know. */
#define LDP_STATUS_UNKNOWN_FEC        12u
/** A mandatory TLV is absent, or not in the place it must occupy. */
#define LDP_STATUS_MISSING_MSG_PARAMS 22u
/** An address family the library does not support. */
#define LDP_STATUS_UNSUPPORTED_AF     23u
/** Notification decoder only: no memory for the copy of a Returned PDU or
 * Returned Message TLV (the other allocations give LDP_ERR_NO_MEMORY). */
#define LDP_STATUS_INTERNAL_ERROR     25u
/** LDP_Decode(): an unknown message type with the U bit set; drop the
 * message without answering. */
#define LDP_ERR_IGNORE_MSG            106u
/** The platform allocator had no memory; also LDP_Encode()'s answer to a
 * record whose usMsgLen is 0 (kept that way on purpose). */
#define LDP_ERR_NO_MEMORY             108u
/** Not a failure: the walk stopped at content left to the caller (a
 * pseudowire FEC element, a Status TLV with the pseudowire status code, an
 * Address Withdraw's MAC List TLV or valid FEC TLV). Every function passes it
 * up unchanged. The only code with the top bit set. */
#define LDP_STOP_WALK                 0xFFFFFFFFu
/** @} */

/** @name Header bits and masks
 * Records keep the whole type word; the library compares types masked.
 * @{ */
#define LDP_MSG_U_BIT      0x8000u /**< message type word: ignore the message silently if unknown */
#define LDP_MSG_TYPE_MASK  0x7FFFu /**< message type word: the type proper */
#define LDP_TLV_U_BIT      0x8000u /**< TLV type word: ignore the TLV if unknown */
#define LDP_TLV_F_BIT      0x4000u /**< TLV type word: forward the TLV if unknown and ignored */
#define LDP_TLV_TYPE_MASK  0x3FFFu /**< TLV type word: the type proper */
/** @} */

/** @brief Largest usMsgLen an encoder accepts: a 4096-byte PDU less its
 * 10-byte PDU header. */
#define LDP_MAX_MSG_LEN    4086u

/** @name Message types
 * Values of LDP_MsgHeader::usMsgType after masking with LDP_MSG_TYPE_MASK.
 * @{ */
#define LDP_MSG_NOTIFICATION        0x0001u /**< Notification (LDP_NotifyMsg) */
#define LDP_MSG_HELLO               0x0100u /**< Hello (LDP_HelloMsg) */
#define LDP_MSG_INIT                0x0200u /**< Initialization (LDP_InitMsg) */
#define LDP_MSG_KEEPALIVE           0x0201u /**< KeepAlive (LDP_KeepAliveMsg) */
#define LDP_MSG_CAPABILITY          0x0202u /**< Capability, RFC 5561 (LDP_CapabilityMsg) */
#define LDP_MSG_ADDRESS             0x0300u /**< Address (LDP_AddressMsg) */
#define LDP_MSG_ADDRESS_WITHDRAW    0x0301u /**< Address Withdraw (LDP_AddressWithdrawMsg) */
#define LDP_MSG_LABEL_MAPPING       0x0400u /**< Label Mapping (LDP_LabelMappingMsg) */
#define LDP_MSG_LABEL_REQUEST       0x0401u /**< Label Request (LDP_LabelRequestMsg) */
#define LDP_MSG_LABEL_WITHDRAW      0x0402u /**< Label Withdraw (LDP_LabelWithdrawMsg) */
#define LDP_MSG_LABEL_RELEASE       0x0403u /**< Label Release (LDP_LabelReleaseMsg) */
#define LDP_MSG_LABEL_ABORT_REQUEST 0x0404u /**< Label Abort Request (LDP_LabelRequestAbortMsg) */

/** @} */

/** @name TLV types
 * Values of LDP_TlvHeader::usTlvType after masking with LDP_TLV_TYPE_MASK.
 * @{ */
#define LDP_TLV_FEC                 0x0100u /**< FEC */
#define LDP_TLV_ADDRESS_LIST        0x0101u /**< Address List */
#define LDP_TLV_HOP_COUNT           0x0103u /**< Hop Count */
#define LDP_TLV_PATH_VECTOR         0x0104u /**< Path Vector */
#define LDP_TLV_GENERIC_LABEL       0x0200u /**< Generic Label */
#define LDP_TLV_ATM_LABEL           0x0201u /**< ATM Label */
#define LDP_TLV_FR_LABEL            0x0202u /**< Frame Relay Label */
#define LDP_TLV_MAPPING_0205        0x0205u /**< a label-related type of the Label Mapping message; the decoders treat it as unknown */
#define LDP_TLV_MAPPING_0206        0x0206u /**< label-related TLV of the Label Mapping message, kept as LDP_LabelMappingMsg::stEmptyTlv */
#define LDP_TLV_STATUS              0x0300u /**< Status */
#define LDP_TLV_EXT_STATUS          0x0301u /**< Extended Status */
#define LDP_TLV_RETURNED_PDU        0x0302u /**< Returned PDU */
#define LDP_TLV_RETURNED_MSG        0x0303u /**< Returned Message */
#define LDP_TLV_COMMON_HELLO        0x0400u /**< Common Hello Parameters */
#define LDP_TLV_IPV4_TRANSPORT      0x0401u /**< IPv4 Transport Address */
#define LDP_TLV_CONF_SEQ_NUM        0x0402u /**< Configuration Sequence Number */
#define LDP_TLV_IPV6_TRANSPORT      0x0403u /**< IPv6 Transport Address */
#define LDP_TLV_MAC_LIST            0x0404u /**< MAC List (RFC 4762) */
#define LDP_TLV_COMMON_SESSION      0x0500u /**< Common Session Parameters */
#define LDP_TLV_ATM_SESSION         0x0501u /**< ATM Session Parameters */
#define LDP_TLV_FR_SESSION          0x0502u /**< Frame Relay Session Parameters */
#define LDP_TLV_FT_SESSION          0x0503u /**< FT Session (RFC 3479) */
#define LDP_TLV_DYNAMIC_CAP         0x0506u /**< Dynamic Capability Announcement (RFC 5561) */
#define LDP_TLV_P2MP_CAP            0x0508u /**< P2MP Capability (RFC 6388) */
#define LDP_TLV_MP2MP_CAP           0x0509u /**< MP2MP Capability (RFC 6388) */
#define LDP_TLV_MBB_CAP             0x050Au /**< Make-Before-Break Capability (RFC 6388) */
#define LDP_TLV_TYPED_WILDCARD_CAP  0x050Bu /**< Typed Wildcard FEC Capability (RFC 5918) */
#define LDP_TLV_LABEL_REQ_MSG_ID    0x0600u /**< Label Request Message ID */
#define LDP_TLV_MAPPING_0601        0x0601u /**< extension TLV of the Label Mapping message (2-byte value) */
#define LDP_TLV_ER_HOP_IPV4         0x0801u /**< IPv4 Prefix ER-Hop (RFC 3212) */
#define LDP_TLV_ER_HOP_IPV6         0x0802u /**< IPv6 Prefix ER-Hop (RFC 3212) */
#define LDP_TLV_ER_HOP_AS           0x0803u /**< AS Number ER-Hop (RFC 3212) */
#define LDP_TLV_ER_HOP_LSPID        0x0804u /**< LSPID ER-Hop (RFC 3212) */
#define LDP_TLV_LSPID               0x0821u /**< CR-LDP LSPID (RFC 3212) */
#define LDP_TLV_MAPPING_0900        0x0900u /**< extension TLV of the Label Mapping message (2-byte value) */
#define LDP_TLV_PW_STATUS           0x096Au /**< PW Status (RFC 4447) */
#define LDP_TLV_PW_IF_PARAMS        0x096Bu /**< PW Interface Parameters (RFC 4447) */
#define LDP_TLV_MP_STATUS           0x096Fu /**< MP Status (RFC 6388) */
#define LDP_TLV_VENDOR_PRIVATE      0x3E0Au /**< vendor-private TLV of the Hello and Label Mapping messages */
/** @} */

/** @brief The 8-byte message header in host order.
 *
 * First member (stMsgHeader) of every message record, so any record can be
 * read as an LDP_MsgHeader to learn its type. Encoders write it as it
 * stands: the caller sets the type and the length. */
typedef struct LDP_MsgHeader {
    uint16_t usMsgType; /**< type word, U bit included */
    uint16_t usMsgLen;  /**< bytes after this field: message ID plus parameters (the message is usMsgLen + 4 bytes) */
    uint32_t ulMsgId;   /**< message ID */
} __attribute__((packed)) LDP_MsgHeader;

/** @brief A TLV header in host order; opens every TLV record.
 *
 * Encoders write it as it stands (they never choose a type or a length). */
typedef struct LDP_TlvHeader {
    uint16_t usTlvType; /**< type word, U and F bits included */
    uint16_t usTlvLen;  /**< value bytes after the header */
} __attribute__((packed)) LDP_TlvHeader;

#ifdef __cplusplus
}
#endif

#endif /* LDP_TYPES_H */
