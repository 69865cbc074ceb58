/* Result codes, message and TLV type codes, and the header records shared by
 * every LDP message record. Part of the ldpcodec public interface; include
 * ldp_codec.h rather than this file. */
#ifndef LDP_TYPES_H
#define LDP_TYPES_H

#include <stdint.h>

#include "ldp_platform.h"

/* Marks the functions libldpcodec.so exports; everything else is hidden. */
#define LDP_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* Result codes. Where a value is also an RFC 5036 status code it means the same. */
#define LDP_OK                        0u
#define LDP_ERR_PARAM                 1u
#define LDP_STATUS_UNKNOWN_MSG_TYPE   4u
#define LDP_STATUS_BAD_MSG_LEN        5u
#define LDP_STATUS_UNKNOWN_TLV        6u
#define LDP_STATUS_BAD_TLV_LEN        7u
#define LDP_STATUS_MALFORMED_TLV      8u
#define LDP_STATUS_UNKNOWN_FEC        12u
#define LDP_STATUS_MISSING_MSG_PARAMS 22u
#define LDP_STATUS_UNSUPPORTED_AF     23u
#define LDP_STATUS_INTERNAL_ERROR     25u
#define LDP_ERR_IGNORE_MSG            106u
#define LDP_ERR_NO_MEMORY             108u
/* Not a failure: the walk stopped at content the caller handles itself. */
#define LDP_STOP_WALK                 0xFFFFFFFFu

/* Header bits and masks. Records keep the whole type word; comparisons mask. */
#define LDP_MSG_U_BIT      0x8000u
#define LDP_MSG_TYPE_MASK  0x7FFFu
#define LDP_TLV_U_BIT      0x8000u
#define LDP_TLV_F_BIT      0x4000u
#define LDP_TLV_TYPE_MASK  0x3FFFu

/* Largest message length an encoder accepts (a 4096-byte PDU less its
 * 10-byte PDU header). */
#define LDP_MAX_MSG_LEN    4086u

/* Message types (after masking with LDP_MSG_TYPE_MASK). */
#define LDP_MSG_NOTIFICATION        0x0001u
#define LDP_MSG_HELLO               0x0100u
#define LDP_MSG_INIT                0x0200u
#define LDP_MSG_KEEPALIVE           0x0201u
#define LDP_MSG_CAPABILITY          0x0202u
#define LDP_MSG_ADDRESS             0x0300u
#define LDP_MSG_ADDRESS_WITHDRAW    0x0301u
#define LDP_MSG_LABEL_MAPPING       0x0400u
#define LDP_MSG_LABEL_REQUEST       0x0401u
#define LDP_MSG_LABEL_WITHDRAW      0x0402u
#define LDP_MSG_LABEL_RELEASE       0x0403u
#define LDP_MSG_LABEL_ABORT_REQUEST 0x0404u

/* TLV types (after masking with LDP_TLV_TYPE_MASK). */
#define LDP_TLV_FEC                 0x0100u
#define LDP_TLV_ADDRESS_LIST        0x0101u
#define LDP_TLV_HOP_COUNT           0x0103u
#define LDP_TLV_PATH_VECTOR         0x0104u
#define LDP_TLV_GENERIC_LABEL       0x0200u
#define LDP_TLV_ATM_LABEL           0x0201u
#define LDP_TLV_FR_LABEL            0x0202u
#define LDP_TLV_MAPPING_0205        0x0205u
#define LDP_TLV_MAPPING_0206        0x0206u
#define LDP_TLV_STATUS              0x0300u
#define LDP_TLV_EXT_STATUS          0x0301u
#define LDP_TLV_RETURNED_PDU        0x0302u
#define LDP_TLV_RETURNED_MSG        0x0303u
#define LDP_TLV_COMMON_HELLO        0x0400u
#define LDP_TLV_IPV4_TRANSPORT      0x0401u
#define LDP_TLV_CONF_SEQ_NUM        0x0402u
#define LDP_TLV_IPV6_TRANSPORT      0x0403u
#define LDP_TLV_MAC_LIST            0x0404u
#define LDP_TLV_COMMON_SESSION      0x0500u
#define LDP_TLV_ATM_SESSION         0x0501u
#define LDP_TLV_FR_SESSION          0x0502u
#define LDP_TLV_FT_SESSION          0x0503u
#define LDP_TLV_DYNAMIC_CAP         0x0506u
#define LDP_TLV_P2MP_CAP            0x0508u
#define LDP_TLV_MP2MP_CAP           0x0509u
#define LDP_TLV_MBB_CAP             0x050Au
#define LDP_TLV_TYPED_WILDCARD_CAP  0x050Bu
#define LDP_TLV_LABEL_REQ_MSG_ID    0x0600u
#define LDP_TLV_MAPPING_0601        0x0601u
#define LDP_TLV_ER_HOP_IPV4         0x0801u
#define LDP_TLV_ER_HOP_IPV6         0x0802u
#define LDP_TLV_ER_HOP_AS           0x0803u
#define LDP_TLV_ER_HOP_LSPID        0x0804u
#define LDP_TLV_LSPID               0x0821u
#define LDP_TLV_MAPPING_0900        0x0900u
#define LDP_TLV_PW_STATUS           0x096Au
#define LDP_TLV_PW_IF_PARAMS        0x096Bu
#define LDP_TLV_MP_STATUS           0x096Fu
#define LDP_TLV_VENDOR_PRIVATE      0x3E0Au

/* The 8-byte message header in host order; first member of every message
 * record, so any record can be read as an LDP_MsgHeader to learn its type. */
typedef struct LDP_MsgHeader {
    uint16_t usMsgType; /* type word, U bit included */
    uint16_t usMsgLen;  /* bytes after this field: message ID plus parameters */
    uint32_t ulMsgId;
} __attribute__((packed)) LDP_MsgHeader;

/* A TLV header in host order; opens every TLV record. */
typedef struct LDP_TlvHeader {
    uint16_t usTlvType; /* type word, U and F bits included */
    uint16_t usTlvLen;  /* value bytes after the header */
} __attribute__((packed)) LDP_TlvHeader;

#ifdef __cplusplus
}
#endif

#endif /* LDP_TYPES_H */
