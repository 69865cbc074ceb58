/* Session messages: KeepAlive (more session messages join this header as they
 * are built). Include ldp_codec.h rather than this file. */
#ifndef LDP_SESSION_H
#define LDP_SESSION_H

#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* KeepAlive (0x0201): the message header and nothing else. TLVs received in a
 * KeepAlive must all carry the U bit; they are checked and dropped. */
typedef struct LDP_KeepAliveMsg {
    LDP_MsgHeader stMsgHeader;
} __attribute__((packed)) LDP_KeepAliveMsg;

LDP_API uint32_t LDP_PreParseKeepAliveMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeKeepAliveMsg(const uint8_t *pucMsg, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeKeepAliveMsg(uint8_t *pucBuf, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId, uint16_t usRoom);

#ifdef __cplusplus
}
#endif

#endif /* LDP_SESSION_H */
