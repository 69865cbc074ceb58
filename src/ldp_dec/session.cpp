// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the session messages: KeepAlive, Hello and
// Capability (Initialization has its own file).
#include <cstddef>
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "capability.hpp"
#include "record_walk.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

// The reference TLV walk: a KeepAlive knows no TLV type, so every TLV must
// carry the U bit and is skipped. The length test comes before the type test.
// Kept out of line so that the usual KeepAlive, which has no TLV, does not
// pay for the loop's set-up.
[[gnu::noinline]] uint32_t walk_keepalive_loop(const uint8_t *msg, uint16_t msg_len)
{
    tlv_cursor cur(msg, msg_len);
    return walk_tlvs(cur, srcfile::dec, [](const LDP_TlvHeader &tlv) {
        return (tlv.usTlvType & LDP_TLV_U_BIT) != 0 ? LDP_OK : LDP_STATUS_UNKNOWN_TLV;
    });
}

inline uint32_t walk_keepalive_tlvs(const uint8_t *msg, uint16_t msg_len)
{
    if (msg_len < 4) {
        return LDP_STATUS_BAD_MSG_LEN;
    }
    if (msg_len == 4) {
        return LDP_OK;
    }
    return walk_keepalive_loop(msg, msg_len);
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

// ---------------------------------------------------------------- Hello

namespace {

constexpr uint16_t kHelloMinLen = 12;      // message ID plus the 8-byte Common Hello TLV
constexpr uint16_t kCommHelloValueLen = 4; // hold time and flags

// LDP_CommHelloParamTlv must lie exactly over the record's run of fields.
static_assert(offsetof(LDP_HelloMsg, usHelloFlags) - offsetof(LDP_HelloMsg, stCommHelloTlv) ==
                  offsetof(LDP_CommHelloParamTlv, usHelloFlags) &&
              sizeof(LDP_CommHelloParamTlv) == offsetof(LDP_HelloMsg, stIpv4TransTlv) -
                                                   offsetof(LDP_HelloMsg, stCommHelloTlv));

// Value length each optional Hello TLV must have; 0 for a type Hello skips.
uint16_t hello_value_len(uint16_t masked_type)
{
    switch (masked_type) {
    case LDP_TLV_IPV4_TRANSPORT:
    case LDP_TLV_CONF_SEQ_NUM:
        return 4;
    case LDP_TLV_IPV6_TRANSPORT:
        return 16;
    case LDP_TLV_VENDOR_PRIVATE:
        return 2;
    default:
        return 0;
    }
}

// Stores one optional TLV in the record. IPv4, IPv6 and configuration
// sequence headers are kept even when their length is then refused; the
// vendor-private header only once its length is right. Both are intended.
uint32_t decode_hello_opt(const tlv_cursor &cur, const LDP_TlvHeader &tlv, LDP_HelloMsg *rec)
{
    const uint16_t type = tlv.usTlvType & LDP_TLV_TYPE_MASK;
    const uint16_t want = hello_value_len(type);
    switch (type) {
    case LDP_TLV_IPV4_TRANSPORT:
        rec->stIpv4TransTlv = tlv;
        if (tlv.usTlvLen != want) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->ulIpv4TransAddr = wire::load32(cur.value());
        rec->ucHelloOptFlags |= LDP_HELLO_OPT_IPV4_TRANS;
        return LDP_OK;
    case LDP_TLV_IPV6_TRANSPORT:
        rec->stIpv6TransTlv = tlv;
        if (tlv.usTlvLen != want) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        mem::copy(rec->aucIpv6TransAddr, sizeof rec->aucIpv6TransAddr, cur.value(), want,
                  srcfile::dec);
        rec->ucHelloOptFlags |= LDP_HELLO_OPT_IPV6_TRANS;
        return LDP_OK;
    case LDP_TLV_CONF_SEQ_NUM:
        rec->stConfSeqTlv = tlv;
        if (tlv.usTlvLen != want) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->ulConfSeqNum = wire::load32(cur.value());
        rec->ucHelloOptFlags |= LDP_HELLO_OPT_CONF_SEQ;
        return LDP_OK;
    case LDP_TLV_VENDOR_PRIVATE:
        if (tlv.usTlvLen != want) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stPrivHelloTlv = tlv;
        mem::copy(rec->aucPrivHelloValue, sizeof rec->aucPrivHelloValue, cur.value(), want,
                  srcfile::dec);
        rec->ucHelloOptFlags |= LDP_HELLO_OPT_PRIV_3E0A;
        return LDP_OK;
    default:
        return LDP_OK; // Hello drops every other TLV, U bit or not
    }
}

// The pre-parse's view of an optional TLV: only its length is checked.
uint32_t check_hello_opt(const LDP_TlvHeader &tlv)
{
    const uint16_t want = hello_value_len(tlv.usTlvType & LDP_TLV_TYPE_MASK);
    return want != 0 && tlv.usTlvLen != want ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
}

// The pre-parse and the decoder of a Hello make the same checks in the same
// order, so they share this walk; rec is null for the pre-parse, which only
// validates.
uint32_t walk_hello(const uint8_t *msg, uint16_t msg_len, LDP_HelloMsg *rec, uint32_t module)
{
    if (msg_len < kHelloMinLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    // The Common Hello Parameters header is read off the wire; the optional
    // TLVs after it are walked as the reference walk does, copying each header.
    tlv_cursor cur(msg, msg_len);
    const LDP_TlvHeader first = cur.load_header();
    if (!cur.value_fits(first.usTlvLen)) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if ((first.usTlvType & LDP_TLV_TYPE_MASK) != LDP_TLV_COMMON_HELLO) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    if (rec != nullptr) {
        rec->stCommHelloTlv = first;
        auto *comm = reinterpret_cast<LDP_CommHelloParamTlv *>(&rec->stCommHelloTlv);
        const uint32_t rc = LDP_DecodeCommHelloParamTlv(cur.value(), comm, module);
        if (rc != LDP_OK) {
            return rc;
        }
    } else if (first.usTlvLen != kCommHelloValueLen) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    cur.advance(kCommHelloValueLen);
    if (cur.at_end()) {
        return LDP_OK;
    }
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    // A repeated TLV is decoded again and replaces the earlier one.
    return walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        return rec != nullptr ? decode_hello_opt(cur, tlv, rec) : check_hello_opt(tlv);
    });
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseHelloMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_HelloMsg, dec::header_read::load>(pucMsg, walk_hello);
}

extern "C" LDP_API uint32_t LDP_DecodeHelloMsg(const uint8_t *pucMsg, LDP_HelloMsg *pMsgRecord,
                                               uint32_t ulMemModuleId)
{
    return dec::decode<LDP_HelloMsg, dec::header_read::load>(pucMsg, pMsgRecord, ulMemModuleId, walk_hello);
}

extern "C" LDP_API uint32_t LDP_DecodeCommHelloParamTlv(const uint8_t *pucValue,
                                                        LDP_CommHelloParamTlv *pstCommHello,
                                                        uint32_t ulMemModuleId)
{
    (void)ulMemModuleId;
    if (pucValue == nullptr || pstCommHello == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (pstCommHello->stCommHelloTlv.usTlvLen != kCommHelloValueLen) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    pstCommHello->usHoldTime = wire::load16(pucValue);
    pstCommHello->usHelloFlags = wire::load16(pucValue + 2);
    return LDP_OK;
}

// ---------------------------------------------------------------- Capability

namespace {

// Pre-parse and decoder share this walk; rec is null for the pre-parse.
uint32_t walk_capability(const uint8_t *msg, uint16_t msg_len, LDP_CapabilityMsg *rec, uint32_t module)
{
    if (msg_len < 4) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    if (msg_len == 4) {
        return LDP_OK; // a Capability message may carry no TLV at all
    }
    tlv_cursor cur(msg, msg_len);
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    return walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) -> uint32_t {
        const uint16_t type = tlv.usTlvType & LDP_TLV_TYPE_MASK;
        if (type == LDP_TLV_DYNAMIC_CAP) {
            return LDP_OK;
        }
        if (type != LDP_TLV_MBB_CAP) {
            return (tlv.usTlvType & LDP_TLV_U_BIT) ? LDP_OK : LDP_STATUS_UNKNOWN_TLV;
        }
        // A Make-Before-Break value other than the single S byte counts as a
        // length error here (7), not as malformed.
        if (tlv.usTlvLen != 1) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        if (rec == nullptr) {
            return LDP_OK;
        }
        uint8_t s_byte = 0;
        const uint32_t rc = caps::decode_into(cur.value(), tlv, &rec->stCapList, module, &s_byte);
        if (rc == LDP_OK && (s_byte & LDP_CAP_S_BIT)) {
            rec->ulCapFlags |= LDP_CAPMSG_MBB_ANNOUNCED;
        }
        return rc;
    });
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseCapabilityMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_CapabilityMsg>(pucMsg, walk_capability);
}

extern "C" LDP_API uint32_t LDP_DecodeCapabilityMsg(const uint8_t *pucMsg, LDP_CapabilityMsg *pMsgRecord,
                                                    uint32_t ulMemModuleId)
{
    return dec::decode(pucMsg, pMsgRecord, ulMemModuleId, walk_capability);
}
