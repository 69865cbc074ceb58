// SPDX-License-Identifier: BSD-2-Clause
// The library's front door: LDP_Decode, LDP_Encode, LDP_EncodeMsgHeader,
// LDP_FreeMessage and LDP_MemFreeCallBack.
#include <cstdint>

#include "dispatch.hpp"
#include "ldp_codec.h"
#include "list.hpp"
#include "mem.hpp"
#include "msg.hpp"
#include "srcfile.hpp"
#include "wire.hpp"

using namespace ldp;

extern "C" LDP_API uint32_t LDP_Decode(const uint8_t *pucMsg, uint32_t *pulMsgType,
                                       void **ppMsgRecord, uint32_t ulBufLen,
                                       uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr) {
        mem::report(srcfile::dec, "pucMsg is NULL");
        return LDP_ERR_PARAM;
    }
    if (ppMsgRecord == nullptr) {
        mem::report(srcfile::dec, "ppMsgRecord is NULL");
        return LDP_ERR_PARAM;
    }
    if (pulMsgType == nullptr) {
        mem::report(srcfile::dec, "pulMsgType is NULL");
        return LDP_ERR_PARAM;
    }
    *ppMsgRecord = nullptr;

    if (ulBufLen < wire::kLenFieldEnd) {
        return LDP_STATUS_BAD_MSG_LEN;
    }
    const uint16_t msg_len = wire::load16(pucMsg + 2);
    // Signed on purpose: a buffer length of 0x80000003 or more reads as
    // negative and is refused along with buffers too short for the message.
    if (msg_len < 4 || int32_t(ulBufLen - 3u) <= int32_t(msg_len)) {
        return LDP_STATUS_BAD_MSG_LEN;
    }

    const uint16_t type_word = wire::load16(pucMsg);
    const msg_ops *ops = find_msg_ops(type_word & LDP_MSG_TYPE_MASK);
    if (ops == nullptr) {
        return (type_word & LDP_MSG_U_BIT) ? LDP_ERR_IGNORE_MSG : LDP_STATUS_UNKNOWN_MSG_TYPE;
    }
    *pulMsgType = ops->type; // reported before validation, even if it fails
    return ops->decode(pucMsg, ppMsgRecord, ulMemModuleId);
}

extern "C" LDP_API uint32_t LDP_Encode(uint8_t **ppucBuf, uint32_t ulMsgType, void *pMsgRecord,
                                       uint32_t ulMemModuleId)
{
    if (pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    // From here on the record is ours and is released on every path.
    if (ppucBuf == nullptr) {
        LDP_FreeMessage(pMsgRecord);
        return LDP_ERR_PARAM;
    }
    *ppucBuf = nullptr;

    // Compared as given, unmasked: 0x8201 is no KeepAlive for the encoder.
    const msg_ops *ops = find_msg_ops(ulMsgType);
    if (ops == nullptr) {
        LDP_FreeMessage(pMsgRecord);
        return LDP_ERR_PARAM;
    }

    const uint16_t msg_len = static_cast<LDP_MsgHeader *>(pMsgRecord)->usMsgLen;
    if (msg_len == 0) {
        LDP_FreeMessage(pMsgRecord);
        return LDP_ERR_NO_MEMORY; // a zero length is answered as a failed allocation, on purpose
    }

    const uint32_t size = uint32_t(msg_len) + 4u;
    auto *buf = static_cast<uint8_t *>(mem::alloc_zeroed(ulMemModuleId, size, srcfile::enc));
    if (buf == nullptr) {
        LDP_FreeMessage(pMsgRecord);
        return LDP_ERR_NO_MEMORY;
    }

    const uint32_t rc = ops->encode(buf, pMsgRecord, ulMemModuleId, uint16_t(size));
    LDP_FreeMessage(pMsgRecord);
    if (rc != LDP_OK) {
        mem::release(buf, srcfile::enc);
        return rc;
    }
    *ppucBuf = buf;
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeMsgHeader(uint8_t *pucBuf, void *pMsgRecord,
                                                uint32_t ulMemModuleId, uint32_t ulBufLen)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    auto *hdr = static_cast<LDP_MsgHeader *>(pMsgRecord);
    hdr->usMsgType = wire::to_net16(hdr->usMsgType);
    hdr->usMsgLen = wire::to_net16(hdr->usMsgLen);
    hdr->ulMsgId = wire::to_net32(hdr->ulMsgId);
    if (ulBufLen < wire::kMsgHeaderSize) {
        // The header stays in network order: the record is released right after.
        return mem::no_room(srcfile::enc);
    }
    mem::copy(pucBuf, ulBufLen, hdr, wire::kMsgHeaderSize, srcfile::enc);
    hdr->usMsgType = wire::to_host16(hdr->usMsgType);
    hdr->usMsgLen = wire::to_host16(hdr->usMsgLen);
    hdr->ulMsgId = wire::to_host32(hdr->ulMsgId);
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeMessage(void *pMsgRecord)
{
    if (pMsgRecord == nullptr) {
        return;
    }
    const msg_ops *ops =
        find_msg_ops(static_cast<LDP_MsgHeader *>(pMsgRecord)->usMsgType & LDP_MSG_TYPE_MASK);
    if (ops != nullptr && ops->release != nullptr) {
        ops->release(pMsgRecord);
    }
    mem::release(pMsgRecord, srcfile::enc);
}

extern "C" LDP_API uint32_t LDP_MemFreeCallBack(void *p)
{
    return mem::release(p, srcfile::enc);
}
