// SPDX-License-Identifier: BSD-2-Clause
// Encoding of the session messages: KeepAlive, Hello and Capability, and
// release of the Capability record (Initialization has its own file).
#include <cstddef>
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "capability.hpp"
#include "ldp_codec.h"

using namespace ldp;

extern "C" LDP_API uint32_t LDP_EncodeKeepAliveMsg(uint8_t *pucBuf, LDP_KeepAliveMsg *pMsgRecord,
                                                   uint32_t ulMemModuleId, uint16_t usRoom)
{
    // Only the header is written; a usMsgLen above 4 leaves zero bytes after
    // it, as the record asks.
    return msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom);
}

// ---------------------------------------------------------------- Hello

namespace {

// One optional Hello TLV: its presence flag, the header as the record holds
// it, and the record's value with the size its type defines (written
// whatever usTlvLen says).
struct hello_opt {
    uint8_t flag;
    LDP_TlvHeader *tlv;
    const void *value;
    uint16_t value_size;
};

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeHelloMsg(uint8_t *pucBuf, LDP_HelloMsg *pMsgRecord,
                                               uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    const uint16_t after_header = msg::room_after(usRoom, wire::kMsgHeaderSize);
    auto *comm = reinterpret_cast<LDP_CommHelloParamTlv *>(&pMsgRecord->stCommHelloTlv);
    if (LDP_EncodeCommHelloParamTlv(pucBuf + wire::kMsgHeaderSize, comm, ulMemModuleId,
                                    after_header) != LDP_OK) {
        return LDP_ERR_PARAM;
    }

    // The optional TLVs go out in this fixed order, whatever order they came in.
    const hello_opt opts[] = {
        {LDP_HELLO_OPT_IPV4_TRANS, &pMsgRecord->stIpv4TransTlv, &pMsgRecord->ulIpv4TransAddr, 4},
        {LDP_HELLO_OPT_IPV6_TRANS, &pMsgRecord->stIpv6TransTlv, pMsgRecord->aucIpv6TransAddr, 16},
        {LDP_HELLO_OPT_CONF_SEQ, &pMsgRecord->stConfSeqTlv, &pMsgRecord->ulConfSeqNum, 4},
        {LDP_HELLO_OPT_PRIV_3E0A, &pMsgRecord->stPrivHelloTlv, pMsgRecord->aucPrivHelloValue, 2},
    };
    uint8_t *at = pucBuf + 16;
    uint16_t room = msg::room_after(after_header, 8);
    for (const hello_opt &opt : opts) {
        if ((pMsgRecord->ucHelloOptFlags & opt.flag) == 0) {
            continue;
        }
        const uint16_t size = uint16_t(wire::kTlvHeaderSize + opt.value_size);
        if (room < size) {
            return mem::no_room(srcfile::enc);
        }
        tlv_out::header(at, room, opt.tlv, srcfile::enc);
        // The 32-bit values are swapped in the record itself, which encoding consumes.
        if (opt.flag == LDP_HELLO_OPT_IPV4_TRANS) {
            pMsgRecord->ulIpv4TransAddr = wire::to_net32(pMsgRecord->ulIpv4TransAddr);
        } else if (opt.flag == LDP_HELLO_OPT_CONF_SEQ) {
            pMsgRecord->ulConfSeqNum = wire::to_net32(pMsgRecord->ulConfSeqNum);
        }
        mem::copy(at + wire::kTlvHeaderSize, room - wire::kTlvHeaderSize, opt.value, opt.value_size,
                  srcfile::enc);
        at += size;
        room = uint16_t(room - size);
    }
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeCommHelloParamTlv(uint8_t *pucBuf,
                                                        LDP_CommHelloParamTlv *pstCommHello,
                                                        uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstCommHello == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstCommHello->stCommHelloTlv, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstCommHello->usHoldTime = wire::to_net16(pstCommHello->usHoldTime);
    pstCommHello->usHelloFlags = wire::to_net16(pstCommHello->usHelloFlags);
    // Hold time and flags sit side by side in the record, now in wire order.
    const auto *value = reinterpret_cast<const uint8_t *>(pstCommHello) +
                        offsetof(LDP_CommHelloParamTlv, usHoldTime);
    return tlv_out::put(pucBuf + wire::kTlvHeaderSize, uint16_t(usRoom - wire::kTlvHeaderSize), value, 4,
                        srcfile::enc);
}

// ---------------------------------------------------------------- Capability

extern "C" LDP_API uint32_t LDP_EncodeCapabilityMsg(uint8_t *pucBuf, LDP_CapabilityMsg *pMsgRecord,
                                                    uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // An empty list leaves the header alone in the message.
    return caps::encode_list(pucBuf + wire::kMsgHeaderSize, &pMsgRecord->stCapList, ulMemModuleId,
                             msg::room_after(usRoom, wire::kMsgHeaderSize));
}

extern "C" LDP_API void LDP_FreeCapabilityMsg(LDP_CapabilityMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_CAPABILITY) {
        return;
    }
    caps::release_list(&pMsgRecord->stCapList);
}
