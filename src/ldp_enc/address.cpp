// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Address and Address Withdraw messages, with the
// Address List and MAC List (RFC 4762) TLV encoders.
#include <cstddef>
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t kFamilySize = 2;
constexpr uint16_t kWordSize = 4;
constexpr uint16_t kWordsPerIpv6 = 4;
// An Address List this short (a family and at most 3 stray bytes) is left
// out of an Address Withdraw.
constexpr uint16_t kMaxOmittedListLen = 5;

template <class Rec>
LDP_AddrListTlv *addr_list(Rec *rec)
{
    return reinterpret_cast<LDP_AddrListTlv *>(&rec->stAddrListTlv);
}

} // namespace

extern "C" LDP_API uint32_t LDP_EncodeAddrListTlv(uint8_t *pucBuf, LDP_AddrListTlv *pstAddrList,
                                                  uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstAddrList == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstAddrList->stAddrListTlv, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    const uint16_t family = pstAddrList->usAddrFamily;
    const uint32_t words =
        family == LDP_AF_IPV6 ? uint32_t(pstAddrList->usAddrCount) * kWordsPerIpv6 : pstAddrList->usAddrCount;
    uint16_t left = uint16_t(usRoom - wire::kTlvHeaderSize);
    if (left < kFamilySize) {
        return mem::no_room(srcfile::enc);
    }
    wire::store16(pucBuf + wire::kTlvHeaderSize, family);
    if (words == 0) {
        return LDP_OK;
    }
    const uint32_t *addrs = pstAddrList->pulAddrList;
    if (addrs == nullptr) {
        return LDP_ERR_PARAM; // a count without addresses: nothing to write from
    }
    left = uint16_t(left - kFamilySize);
    uint8_t *out = pucBuf + wire::kTlvHeaderSize + kFamilySize;
    for (uint32_t i = 0; i < words; ++i) {
        if (left < kWordSize) {
            return mem::no_room(srcfile::enc);
        }
        wire::store32(out, wire::load_host32(addrs + i));
        out += kWordSize;
        left = uint16_t(left - kWordSize);
    }
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeMacListTLV(uint8_t *pucBuf, LDP_MacListTlv *pstMacList,
                                                 uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstMacList == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstMacList->stMacListTlv, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // The TLV length says whether there is a list; usMacListLen says how much.
    if (pstMacList->stMacListTlv.usTlvLen == 0) {
        return LDP_OK;
    }
    const uint16_t size = pstMacList->usMacListLen;
    if (usRoom - wire::kTlvHeaderSize < size) {
        return mem::no_room(srcfile::enc);
    }
    // A failed copy is reported and the TLV still counts as written.
    mem::copy(pucBuf + wire::kTlvHeaderSize, usRoom - wire::kTlvHeaderSize, pstMacList->pucMacList, size,
              srcfile::enc);
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeAddrMsg(uint8_t *pucBuf, LDP_AddressMsg *pMsgRecord, uint32_t ulMemModuleId,
                                              uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // The list's own result is dropped: once the header is out the message
    // counts as encoded, even if the list did not fit. Intended.
    (void)LDP_EncodeAddrListTlv(pucBuf + wire::kMsgHeaderSize, addr_list(pMsgRecord), ulMemModuleId,
                                msg::room_after(usRoom, wire::kMsgHeaderSize));
    return LDP_OK;
}

extern "C" LDP_API uint32_t LDP_EncodeAddrWithdrawMsg(uint8_t *pucBuf, LDP_AddressWithdrawMsg *pMsgRecord,
                                                      uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    LDP_AddressWithdrawMsg &rec = *pMsgRecord;
    uint8_t *pos = pucBuf + wire::kMsgHeaderSize;
    uint16_t room = msg::room_after(usRoom, wire::kMsgHeaderSize);
    auto take = [&](uint32_t n) {
        pos += n;
        room = room > n ? uint16_t(room - n) : uint16_t(0);
    };

    // The list goes by its length, not by its presence bit.
    const uint16_t list_len = rec.stAddrListTlv.usTlvLen;
    if (list_len > kMaxOmittedListLen) {
        const uint32_t rc = LDP_EncodeAddrListTlv(pos, addr_list(&rec), ulMemModuleId, room);
        if (rc != LDP_OK) {
            return rc;
        }
        take(wire::kTlvHeaderSize + uint32_t(list_len));
    }
    if (rec.ucAddrWdFlags & LDP_ADDRWD_FEC) {
        const uint32_t rc = LDP_EncodeFECTlv(pos, &rec.stFecTlv, ulMemModuleId, room);
        if (rc != LDP_OK) {
            return rc;
        }
        take(wire::kTlvHeaderSize + uint32_t(rec.stFecTlv.stTlvHeader.usTlvLen));
    }
    if (rec.ucAddrWdFlags & LDP_ADDRWD_MAC_LIST) {
        auto *mac = reinterpret_cast<LDP_MacListTlv *>(&rec.stMacListTlv);
        return LDP_EncodeMacListTLV(pos, mac, ulMemModuleId, room) != LDP_OK ? LDP_ERR_PARAM : LDP_OK;
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeAddressMsg(LDP_AddressMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr || (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_ADDRESS) {
        return;
    }
    if (pMsgRecord->pulAddrList != nullptr) {
        mem::release(pMsgRecord->pulAddrList, srcfile::enc);
        pMsgRecord->pulAddrList = nullptr;
    }
}

extern "C" LDP_API void LDP_FreeAddressWithdrawMsg(LDP_AddressWithdrawMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_ADDRESS_WITHDRAW) {
        return;
    }
    LDP_AddressWithdrawMsg &rec = *pMsgRecord;
    if (rec.pulAddrList != nullptr) {
        mem::release(rec.pulAddrList, srcfile::enc);
        rec.pulAddrList = nullptr;
    }
    LDP_FreeFecElement(&rec.stFecTlv);
    if (rec.pucMacList != nullptr) {
        mem::release(rec.pucMacList, srcfile::enc);
        rec.pucMacList = nullptr;
    }
}
