// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Address and Address Withdraw messages (RFC
// 5036 sections 3.5.5 and 3.5.6) and of the Address List TLV. Only IPv4
// addresses are kept; IPv6 lists are accepted and dropped.
#include <cstddef>
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint16_t kFamilySize = 2;
constexpr uint16_t kIpv4Size = 4;
constexpr uint16_t kIpv6Size = 16;
// The message ID and room for at least a TLV header.
constexpr uint16_t kMinAddrLen = 8;

// Both records hold the address-list fields as one run.
static_assert(offsetof(LDP_AddressMsg, usAddrCount) - offsetof(LDP_AddressMsg, stAddrListTlv) ==
              offsetof(LDP_AddrListTlv, usAddrCount));
static_assert(offsetof(LDP_AddressWithdrawMsg, usAddrCount) - offsetof(LDP_AddressWithdrawMsg, stAddrListTlv) ==
              offsetof(LDP_AddrListTlv, usAddrCount));

uint16_t masked(const LDP_TlvHeader &tlv) { return tlv.usTlvType & LDP_TLV_TYPE_MASK; }
bool u_bit(const LDP_TlvHeader &tlv) { return (tlv.usTlvType & LDP_TLV_U_BIT) != 0; }

template <class Rec>
LDP_AddrListTlv *addr_list(Rec *rec)
{
    return reinterpret_cast<LDP_AddrListTlv *>(&rec->stAddrListTlv);
}

// An unknown TLV is refused unless its U bit says to ignore it.
uint32_t unknown_tlv(const LDP_TlvHeader &tlv) { return u_bit(tlv) ? LDP_OK : LDP_STATUS_UNKNOWN_TLV; }

// The opening of an Address message: room for a TLV, an Address List first.
// On LDP_OK *first holds its header.
uint32_t open_address(const tlv_cursor &cur, LDP_TlvHeader *first)
{
    if (cur.msg_len() < kMinAddrLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    *first = cur.header(srcfile::dec);
    if (!cur.value_fits(first->usTlvLen)) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if (masked(*first) != LDP_TLV_ADDRESS_LIST) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    return LDP_OK;
}

// Where the rest of the message starts: nothing left (0 exactly at the end,
// 5 past it), a stray 1 to 3 bytes (7), or more TLVs (*more).
uint32_t after_first(const tlv_cursor &cur, bool *more)
{
    *more = false;
    if (cur.at_or_past_end()) {
        return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
    }
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    *more = true;
    return LDP_OK;
}

} // namespace

// ---------------------------------------------------------------- Address List TLV

extern "C" LDP_API uint32_t LDP_PreParseAddrListTlv(const uint8_t *pucValue, uint16_t usTlvLen)
{
    if (pucValue == nullptr) {
        return LDP_ERR_PARAM;
    }
    // An empty value, or a family alone, passes whatever the family is.
    if (usTlvLen == 0 || usTlvLen == kFamilySize) {
        return LDP_OK;
    }
    if (usTlvLen == 1) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    switch (wire::load16(pucValue)) {
    case LDP_AF_IPV4:
        return usTlvLen % kIpv4Size == kFamilySize ? LDP_OK : LDP_STATUS_MALFORMED_TLV;
    case LDP_AF_IPV6:
        return usTlvLen % kIpv6Size == kFamilySize ? LDP_OK : LDP_STATUS_MALFORMED_TLV;
    default:
        return LDP_STATUS_UNSUPPORTED_AF;
    }
}

extern "C" LDP_API uint32_t LDP_DecodeAddrListTlv(const uint8_t *pucValue, LDP_AddrListTlv *pstAddrList,
                                                  uint32_t ulMemModuleId)
{
    if (pucValue == nullptr || pstAddrList == nullptr) {
        return LDP_ERR_PARAM;
    }
    const uint16_t len = pstAddrList->stAddrListTlv.usTlvLen;
    if (len == 0) {
        pstAddrList->pulAddrList = nullptr; // the family stays as it was
        return LDP_OK;
    }
    if (len == 1) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    const uint16_t family = wire::load16(pucValue);
    pstAddrList->usAddrFamily = family;
    // IPv6 lists are accepted but not kept, and unlike the pre-parse the
    // decoder does not check their length; intended.
    if (len == kFamilySize || family == LDP_AF_IPV6) {
        pstAddrList->pulAddrList = nullptr;
        return LDP_OK;
    }
    const uint16_t size = uint16_t(len - kFamilySize);
    auto *addrs = static_cast<uint8_t *>(mem::alloc(ulMemModuleId, size, srcfile::dec));
    if (addrs == nullptr) {
        return LDP_ERR_NO_MEMORY;
    }
    pstAddrList->pulAddrList = reinterpret_cast<uint32_t *>(addrs);
    // The array is allocated before the family is looked at; it stays with
    // the record and goes with its release. Intended.
    if (family != LDP_AF_IPV4) {
        return LDP_STATUS_UNSUPPORTED_AF;
    }
    if (len % kIpv4Size != kFamilySize) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    const uint16_t count = uint16_t(size / kIpv4Size);
    pstAddrList->usAddrCount = count;
    mem::copy(addrs, size, pucValue + kFamilySize, size, srcfile::dec);
    for (uint16_t i = 0; i < count; ++i) {
        uint8_t *addr = addrs + size_t(i) * kIpv4Size;
        wire::store_host32(addr, wire::load32(addr));
    }
    return LDP_OK;
}

// ---------------------------------------------------------------- Address

extern "C" LDP_API uint32_t LDP_PreParseAddrMsg(const uint8_t *pucMsg)
{
    if (pucMsg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    msg::read_header(pucMsg, &hdr, srcfile::dec);
    tlv_cursor cur(pucMsg, hdr.usMsgLen);
    LDP_TlvHeader first = {};
    uint32_t rc = open_address(cur, &first);
    if (rc != LDP_OK) {
        return rc;
    }
    rc = LDP_PreParseAddrListTlv(cur.value(), first.usTlvLen);
    if (rc != LDP_OK) {
        return rc;
    }
    cur.advance(first.usTlvLen);
    bool more = false;
    rc = after_first(cur, &more);
    if (rc != LDP_OK || !more) {
        return rc;
    }
    // Further Address List TLVs are passed over unchecked.
    return walk_rest(cur, srcfile::dec, [](const LDP_TlvHeader &tlv) {
        return masked(tlv) == LDP_TLV_ADDRESS_LIST ? LDP_OK : unknown_tlv(tlv);
    });
}

extern "C" LDP_API uint32_t LDP_DecodeAddrMsg(const uint8_t *pucMsg, LDP_AddressMsg *pMsgRecord,
                                              uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(pucMsg, &pMsgRecord->stMsgHeader, srcfile::dec);
    const uint16_t msg_len = pMsgRecord->stMsgHeader.usMsgLen;
    tlv_cursor cur(pucMsg, msg_len);
    uint32_t rc = open_address(cur, &pMsgRecord->stAddrListTlv);
    if (rc != LDP_OK) {
        return rc;
    }
    rc = LDP_DecodeAddrListTlv(cur.value(), addr_list(pMsgRecord), ulMemModuleId);
    if (rc != LDP_OK) {
        return rc;
    }
    cur.advance(pMsgRecord->stAddrListTlv.usTlvLen);
    LDP_TlvHeader scratch = {};
    return LDP_DecodeAddrMsgForOtherTLV(cur.at(), pMsgRecord, ulMemModuleId, cur.pos(), msg_len, &scratch,
                                        pMsgRecord->usAddrFamily == LDP_AF_IPV4);
}

extern "C" LDP_API uint32_t LDP_DecodeAddrMsgForOtherTLV(const uint8_t *pucNext, LDP_AddressMsg *pMsgRecord,
                                                         uint32_t ulMemModuleId, uint16_t usPos,
                                                         uint16_t usMsgLen, LDP_TlvHeader *pstScratchTlv,
                                                         bool bIpv4Held)
{
    if (pucNext == nullptr || pMsgRecord == nullptr || pstScratchTlv == nullptr) {
        return LDP_ERR_PARAM;
    }
    // The cursor counts from the message start, which lies usPos + 4 bytes back.
    tlv_cursor cur(pucNext - (size_t(usPos) + wire::kLenFieldEnd), usMsgLen, usPos);
    bool more = false;
    const uint32_t rc = after_first(cur, &more);
    if (rc != LDP_OK || !more) {
        return rc;
    }
    bool ipv4_held = bIpv4Held;
    return walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) -> uint32_t {
        *pstScratchTlv = tlv;
        if (masked(tlv) != LDP_TLV_ADDRESS_LIST) {
            return unknown_tlv(tlv);
        }
        if (ipv4_held) {
            return LDP_OK;
        }
        // Replaces an earlier empty or IPv6 list.
        pMsgRecord->stAddrListTlv = tlv;
        const uint32_t list_rc = LDP_DecodeAddrListTlv(cur.value(), addr_list(pMsgRecord), ulMemModuleId);
        ipv4_held = pMsgRecord->usAddrFamily == LDP_AF_IPV4;
        return list_rc;
    });
}

// ---------------------------------------------------------------- Address Withdraw

extern "C" LDP_API uint32_t LDP_PreParseAddrWithdrawMsg(const uint8_t *pucMsg)
{
    if (pucMsg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    msg::read_header(pucMsg, &hdr, srcfile::dec);
    if (hdr.usMsgLen <= wire::kFirstTlvPos) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    bool list_seen = false;
    tlv_cursor cur(pucMsg, hdr.usMsgLen);
    return walk_tlvs(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) -> uint32_t {
        switch (masked(tlv)) {
        case LDP_TLV_ADDRESS_LIST:
            if (list_seen) {
                return LDP_OK;
            }
            list_seen = true;
            return LDP_PreParseAddrListTlv(cur.value(), tlv.usTlvLen);
        case LDP_TLV_MAC_LIST:
            return LDP_STOP_WALK; // the caller takes RFC 4762 MAC withdrawal over
        case LDP_TLV_FEC: {
            const uint32_t rc = LDP_PreParseFECTlv(cur.value(), tlv.usTlvLen);
            if (rc == LDP_OK || rc == LDP_STOP_WALK) {
                return LDP_STOP_WALK;
            }
            return LDP_OK; // a bad FEC TLV is passed over, not refused; intended
        }
        default:
            return unknown_tlv(tlv);
        }
    });
}

extern "C" LDP_API uint32_t LDP_DecodeAddrWithdrawMsg(const uint8_t *pucMsg, LDP_AddressWithdrawMsg *pMsgRecord,
                                                      uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(pucMsg, &pMsgRecord->stMsgHeader, srcfile::dec);
    const uint16_t msg_len = pMsgRecord->stMsgHeader.usMsgLen;
    if (msg_len <= wire::kFirstTlvPos) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    LDP_AddressWithdrawMsg &rec = *pMsgRecord;
    tlv_cursor cur(pucMsg, msg_len);
    return walk_tlvs(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) -> uint32_t {
        switch (masked(tlv)) {
        case LDP_TLV_ADDRESS_LIST: {
            if (rec.ucAddrWdFlags & LDP_ADDRWD_ADDR_LIST) {
                return LDP_OK;
            }
            rec.stAddrListTlv = tlv;
            const uint32_t rc = LDP_DecodeAddrListTlv(cur.value(), addr_list(&rec), ulMemModuleId);
            if (rc != LDP_OK) {
                return rc;
            }
            rec.ucAddrWdFlags |= LDP_ADDRWD_ADDR_LIST;
            return LDP_OK;
        }
        case LDP_TLV_MAC_LIST:
            return LDP_STOP_WALK; // not decoded: the caller reads it from the wire
        case LDP_TLV_FEC: {
            if (rec.ucAddrWdFlags & LDP_ADDRWD_FEC) {
                return LDP_OK;
            }
            rec.stFecTlv.stTlvHeader = tlv;
            const uint32_t rc = LDP_DecodeFECTlv(cur.value(), &rec.stFecTlv, ulMemModuleId);
            if (rc == LDP_OK || rc == LDP_STOP_WALK) {
                // The record is complete enough for the caller: stop here and keep it.
                rec.ucAddrWdFlags |= LDP_ADDRWD_FEC;
                return LDP_STOP_WALK;
            }
            // A bad FEC TLV is passed over and its elements so far stay
            // listed; intended.
            return LDP_OK;
        }
        default:
            return unknown_tlv(tlv);
        }
    });
}
