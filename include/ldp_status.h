/* The Status TLV, which the Notification and the Label Release message carry.
 * Include ldp_codec.h rather than this file. */
#ifndef LDP_STATUS_H
#define LDP_STATUS_H

#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* --- Status TLV (0x0300, RFC 5036 section 3.4.6) ---------------------------
 * Carried by the Notification and the Label Release message. */
#define LDP_STATUS_E_BIT      0x80000000u /* ulStatusCode: fatal error */
#define LDP_STATUS_F_BIT      0x40000000u /* ulStatusCode: forward the notification */
#define LDP_STATUS_DATA_MASK  0x3FFFFFFFu /* ulStatusCode: the status data */
/* Status data that the library leaves to its caller: the pseudowire status
 * code of RFC 4447. Decoding a Status TLV with it yields LDP_STOP_WALK. */
#define LDP_STATUS_DATA_PW_STATUS 40u
#define LDP_STATUS_TLV_LEN    10u         /* the only value length accepted */

typedef struct LDP_StatusTlv {
    LDP_TlvHeader stTlvHeader;
    uint32_t ulStatusCode;    /* E bit, F bit, 30-bit status data; host order */
    uint32_t ulStatusMsgId;   /* ID of the message the status is about, or 0 */
    uint16_t usStatusMsgType; /* that message's type, or 0 */
} __attribute__((packed)) LDP_StatusTlv;

/* Decode the 10 value bytes at pucValue into pstStatus, whose stTlvHeader the
 * caller has already filled (usTlvLen decides). Allocates nothing.
 * Returns LDP_OK; LDP_ERR_PARAM for a null pointer; LDP_STATUS_MALFORMED_TLV
 * when usTlvLen is not 10; LDP_STOP_WALK when the status data is 40 (the
 * pseudowire status, whatever the E and F bits), with the record filled. */
LDP_API uint32_t LDP_DecodeStatusTlv(const uint8_t *pucValue, LDP_StatusTlv *pstStatus);
/* Write the Status TLV at pucBuf: the header as the record holds it (the
 * caller sets type and length 10), then the three value fields. The value
 * fields are left in network order in the record, so it encodes once.
 * ulMemModuleId is not used. Returns LDP_OK; LDP_ERR_PARAM for a null
 * pointer, or with an assertion when usRoom cannot hold the next item. */
LDP_API uint32_t LDP_EncodeStatusTlv(uint8_t *pucBuf, LDP_StatusTlv *pstStatus, uint32_t ulMemModuleId,
                                     uint16_t usRoom);

#ifdef __cplusplus
}
#endif

#endif /* LDP_STATUS_H */
