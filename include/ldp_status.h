/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief The Status TLV (0x0300, RFC 5036 section 3.4.6), which the
 * Notification and the Label Release message carry. Include ldp_codec.h
 * rather than this file. */
#ifndef LDP_STATUS_H
#define LDP_STATUS_H

#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define LDP_STATUS_E_BIT      0x80000000u /**< ulStatusCode: fatal error */
#define LDP_STATUS_F_BIT      0x40000000u /**< ulStatusCode: forward the notification */
#define LDP_STATUS_DATA_MASK  0x3FFFFFFFu /**< ulStatusCode: the status data */
/** @brief Status data left to the caller: the pseudowire status code of RFC
 * 4447. Decoding a Status TLV that carries it gives LDP_STOP_WALK. */
#define LDP_STATUS_DATA_PW_STATUS 40u
#define LDP_STATUS_TLV_LEN    10u         /**< the only Status TLV value length accepted */

/** @brief A Status TLV in host order. */
typedef struct LDP_StatusTlv {
    LDP_TlvHeader stTlvHeader; /**< type 0x0300; usTlvLen must be 10 */
    uint32_t ulStatusCode;    /**< E bit, F bit and 30-bit status data; host order */
    uint32_t ulStatusMsgId;   /**< ID of the message the status is about, or 0 */
    uint16_t usStatusMsgType; /**< that message's type, or 0 */
} __attribute__((packed)) LDP_StatusTlv;

/** @brief Decode the value of a Status TLV.
 *
 * Reads the 10 value bytes into the record whose header the caller has
 * already filled; its usTlvLen decides. Allocates nothing.
 * @param pucValue  the value bytes on the wire, right after the TLV header
 * @param pstStatus the record to fill; stTlvHeader must be set
 * @retval LDP_OK                   filled
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is not 10; the fields stay untouched
 * @retval LDP_STOP_WALK            the status data is 40 (pseudowire status,
 *                                  whatever the E and F bits); the record is filled */
LDP_API uint32_t LDP_DecodeStatusTlv(const uint8_t *pucValue, LDP_StatusTlv *pstStatus);
/** @brief Write a Status TLV.
 *
 * Writes the header as the record holds it (the caller sets the type and the
 * length 10), then the three value fields, which stay in network order in
 * the record: a record encodes once.
 * @param pucBuf        where the TLV starts
 * @param pstStatus     the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written, 14 bytes
 * @retval LDP_ERR_PARAM a NULL pointer; or usRoom cannot hold the next field,
 *                       reported through PLAT_Assert (what fitted is written) */
LDP_API uint32_t LDP_EncodeStatusTlv(uint8_t *pucBuf, LDP_StatusTlv *pstStatus, uint32_t ulMemModuleId,
                                     uint16_t usRoom);

#ifdef __cplusplus
}
#endif

#endif /* LDP_STATUS_H */
