/* ldpcodec: converts single LDP messages (RFC 5036 and extensions) between
 * wire bytes and validated in-memory records. This umbrella header declares
 * every record, code and exported function; it compiles as C99 and C++. */
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

/* Decode one message starting at its message header. On LDP_OK (and on
 * LDP_STOP_WALK) *ppMsgRecord is a new record the caller releases with
 * LDP_FreeMessage; on any other code it is NULL. *pulMsgType receives the
 * type without the U bit as soon as the type is known. */
LDP_API uint32_t LDP_Decode(const uint8_t *pucMsg, uint32_t *pulMsgType, void **ppMsgRecord,
                            uint32_t ulBufLen, uint32_t ulMemModuleId);

/* Encode a filled record into a new buffer of usMsgLen + 4 bytes. The record
 * belongs to the library from the call on and is released on every path. The
 * caller releases the buffer with LDP_MemFreeCallBack. */
LDP_API uint32_t LDP_Encode(uint8_t **ppucBuf, uint32_t ulMsgType, void *pMsgRecord,
                            uint32_t ulMemModuleId);

/* Write the record's 8-byte message header at pucBuf in network order. */
LDP_API uint32_t LDP_EncodeMsgHeader(uint8_t *pucBuf, void *pMsgRecord, uint32_t ulMemModuleId,
                                     uint32_t ulBufLen);

/* Release a record of any type together with everything it owns. NULL is fine. */
LDP_API void LDP_FreeMessage(void *pMsgRecord);

/* Release one block (a list element or an encoded buffer); usable as SLL_FreeFunc. */
LDP_API uint32_t LDP_MemFreeCallBack(void *p);

/* The name of a result code as its macro spells it ("LDP_STATUS_BAD_TLV_LEN"),
 * for logs; "unknown result" for a value that is not one of the library's
 * codes. The text is static: never freed, never NULL. */
LDP_API const char *LDP_GetResultName(uint32_t ulResult);

#ifdef __cplusplus
}
#endif

#endif /* LDP_CODEC_H */
