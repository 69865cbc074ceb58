// Encoding of the session messages: KeepAlive.
#include <cstdint>

#include "../codec/msg.hpp"
#include "ldp_codec.h"

using namespace ldp;

extern "C" LDP_API uint32_t LDP_EncodeKeepAliveMsg(uint8_t *pucBuf, LDP_KeepAliveMsg *pMsgRecord,
                                                   uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (pucBuf == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (!msg::encodable_len(pMsgRecord->stMsgHeader)) {
        return LDP_ERR_PARAM;
    }
    // Only the header is written; a usMsgLen above 4 leaves zero bytes after
    // it, as the record asks.
    if (LDP_EncodeMsgHeader(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}
