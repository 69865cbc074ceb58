/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief ldpcodec: converts single LDP messages (RFC 5036 and extensions)
 * between wire bytes and validated in-memory records.
 *
 * This umbrella header declares every record, code and exported function and
 * the platform services; it compiles as C99 and as C++. Records are packed,
 * their integers in host order unless a field says otherwise. Every byte the
 * library allocates comes from PLAT_SimpleAlloc_F with the caller's memory
 * module ID, and a record is the owner of the memory behind each of its
 * pointer fields. */
#ifndef LDP_CODEC_H
#define LDP_CODEC_H

#include <stdint.h>

#include "ldp_version.h"
#include "ldp_platform.h"
#include "ldp_types.h"
#include "ldp_session.h"
#include "ldp_fec.h"
#include "ldp_label.h"
#include "ldp_address.h"
#include "ldp_util.h"
#include "ldp_blackbox.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief Decode one message, starting at its message header.
 *
 * Checks the length, runs the type's pre-parse on the wire bytes, then
 * allocates the type's record (zeroed, lists empty) and runs its decoder.
 * The record comes back with LDP_OK, and with LDP_STOP_WALK when the decoder
 * (not the pre-parse) stopped: the caller then owns it and releases it with
 * LDP_FreeMessage. A pre-parse that stops, as for a pseudowire FEC element in
 * a label message, a Status TLV with the pseudowire status or an Address
 * Withdraw's MAC List or FEC TLV, gives LDP_STOP_WALK with no record. With
 * every other code *ppMsgRecord is NULL and nothing is left allocated.
 * @param pucMsg        the message on the wire (not the PDU header)
 * @param pulMsgType    receives the type without the U bit as soon as it is
 *                      known, even when the message is then refused;
 *                      untouched for an unknown type or a bad length
 * @param ppMsgRecord   receives the new record or NULL
 * @param ulBufLen      bytes readable at pucMsg; bytes after the message are ignored
 * @param ulMemModuleId memory module ID for every allocation
 * @retval LDP_OK                      decoded; the record is the caller's
 * @retval LDP_STOP_WALK               stopped at content left to the caller;
 *                                     a record only when the decoder stopped
 * @retval LDP_ERR_PARAM               pucMsg, ppMsgRecord or pulMsgType NULL
 *                                     (in that order, each reported through PLAT_Assert)
 * @retval LDP_STATUS_BAD_MSG_LEN      ulBufLen below 4, message length below 4,
 *                                     or the buffer does not hold length + 4
 *                                     bytes (a ulBufLen of 0x80000003 or more
 *                                     is refused as well); also from pre-parses
 * @retval LDP_ERR_IGNORE_MSG          unknown type with the U bit set
 * @retval LDP_STATUS_UNKNOWN_MSG_TYPE unknown type with the U bit clear
 * @retval LDP_ERR_NO_MEMORY           the record or a part of it could not be allocated
 * @return otherwise the code of the type's pre-parse or decoder, unchanged */
LDP_API uint32_t LDP_Decode(const uint8_t *pucMsg, uint32_t *pulMsgType, void **ppMsgRecord,
                            uint32_t ulBufLen, uint32_t ulMemModuleId);

/** @brief Encode a filled record into a new buffer of usMsgLen + 4 bytes.
 *
 * The record's own usMsgLen sizes the buffer (zero-filled); the type's
 * encoder writes into it. A non-NULL record belongs to the library from the
 * call on and is released with LDP_FreeMessage on every path, failures
 * included. On LDP_OK the caller owns the buffer and releases it with
 * LDP_MemFreeCallBack; on any failure *ppucBuf is NULL.
 * @param ppucBuf       receives the buffer, or NULL
 * @param ulMsgType     one of the LDP_MSG_* codes exactly (a U bit is not accepted here)
 * @param pMsgRecord    the filled record, from the platform allocator; its
 *                      header holds the type word as sent and the length
 * @param ulMemModuleId memory module ID for the buffer
 * @retval LDP_OK            *ppucBuf holds the whole message
 * @retval LDP_ERR_PARAM     pMsgRecord NULL (nothing released), ppucBuf NULL,
 *                           or ulMsgType not a known type
 * @retval LDP_ERR_NO_MEMORY usMsgLen is 0 (on purpose), or no memory for the buffer
 * @return otherwise the encoder's code, with no buffer left behind */
LDP_API uint32_t LDP_Encode(uint8_t **ppucBuf, uint32_t ulMsgType, void *pMsgRecord,
                            uint32_t ulMemModuleId);

/** @brief Write the record's 8-byte message header at pucBuf in network order.
 *
 * The header fields are swapped in the record while copying and swapped back
 * after, except when the buffer is too short: they then stay in network
 * order, as the record is about to be released anyway.
 * @param pucBuf        where the message starts
 * @param pMsgRecord    any message record (read as its LDP_MsgHeader)
 * @param ulMemModuleId not used
 * @param ulBufLen      bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM pucBuf or pMsgRecord NULL, or ulBufLen below 8
 *                       (reported through PLAT_Assert) */
LDP_API uint32_t LDP_EncodeMsgHeader(uint8_t *pucBuf, void *pMsgRecord, uint32_t ulMemModuleId,
                                     uint32_t ulBufLen);

/** @brief Release a record of any type together with everything it owns.
 *
 * Runs the type's release function (by the masked usMsgType) and frees the
 * record with PLAT_Free_F. A record of an unknown type is freed alone.
 * @param pMsgRecord the record, or NULL (nothing happens) */
LDP_API void LDP_FreeMessage(void *pMsgRecord);

/** @brief Release one block: a list element, an encoded buffer or an opaque
 * value buffer. Usable as an SLL_FreeFunc.
 * @param p the block, from the platform allocator
 * @return what PLAT_Free_F returns */
LDP_API uint32_t LDP_MemFreeCallBack(void *p);

/** @brief The name of a result code as its macro spells it, for logs.
 * @param ulResult any value
 * @return "LDP_STATUS_BAD_TLV_LEN" and so on, or "unknown result" for a
 *         value that is none of the library's codes; static text, never NULL */
LDP_API const char *LDP_GetResultName(uint32_t ulResult);

#ifdef __cplusplus
}
#endif

#endif /* LDP_CODEC_H */
