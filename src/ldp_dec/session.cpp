// Pre-parse and decode of the session messages: KeepAlive.
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

// The reference TLV walk: a KeepAlive knows no TLV type, so every TLV must
// carry the U bit and is skipped. The length test comes before the type test.
uint32_t walk_keepalive_tlvs(const uint8_t *msg, uint16_t msg_len)
{
    if (msg_len < 4) {
        return LDP_STATUS_BAD_MSG_LEN;
    }
    if (msg_len == 4) {
        return LDP_OK;
    }
    tlv_cursor cur(msg, msg_len);
    do {
        if (!cur.has_header()) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const LDP_TlvHeader tlv = cur.header(srcfile::dec);
        if (!cur.value_fits(tlv.usTlvLen)) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        if ((tlv.usTlvType & LDP_TLV_U_BIT) == 0) {
            return LDP_STATUS_UNKNOWN_TLV;
        }
        cur.advance(tlv.usTlvLen);
    } while (!cur.at_or_past_end());
    // The length test above keeps every TLV inside the message, so this only
    // states the end condition.
    return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseKeepAliveMsg(const uint8_t *pucMsg)
{
    if (pucMsg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    msg::read_header(pucMsg, &hdr, srcfile::dec);
    return walk_keepalive_tlvs(pucMsg, hdr.usMsgLen);
}

extern "C" LDP_API uint32_t LDP_DecodeKeepAliveMsg(const uint8_t *pucMsg, LDP_KeepAliveMsg *pMsgRecord,
                                                   uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(pucMsg, &pMsgRecord->stMsgHeader, srcfile::dec);
    return walk_keepalive_tlvs(pucMsg, pMsgRecord->stMsgHeader.usMsgLen);
}
