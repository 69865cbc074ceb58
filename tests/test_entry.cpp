// SPDX-License-Identifier: BSD-2-Clause
// The entry points beyond what the wire vectors show: argument checks,
// ownership of records and buffers on every path, the header writer, and
// every exported function's answer to a null pointer.
#include <random>
#include <type_traits>
#include <utility>

#include "vectors.hpp"

namespace ldptest {
namespace {

using EntryTest = CodecTest;

TEST_F(EntryTest, DecodeNullArgumentsAssertInOrder)
{
    const bytes msg = hex("02 01 00 04 00 00 00 01");
    uint32_t type = kUntouched;
    void *rec = &type; // must survive the early returns
    const struct {
        const uint8_t *msg;
        uint32_t *type;
        void **rec;
        const char *text;
    } cases[] = {
        {nullptr, nullptr, nullptr, "pucMsg is NULL"},
        {msg.data(), &type, nullptr, "ppMsgRecord is NULL"},
        {msg.data(), nullptr, nullptr, "ppMsgRecord is NULL"},
        {msg.data(), nullptr, &rec, "pulMsgType is NULL"},
    };
    for (const auto &c : cases) {
        testplat::reset();
        EXPECT_EQ(LDP_Decode(c.msg, c.type, c.rec, 8, kModule), LDP_ERR_PARAM);
        expect_one_assertion("ldp_dec", c.text);
        EXPECT_EQ(rec, static_cast<void *>(&type));
        EXPECT_EQ(type, kUntouched);
        EXPECT_EQ(testplat::alloc_calls(), 0u);
    }
}

TEST_F(EntryTest, EncodeReleasesTheRecordOnEveryPath)
{
    const struct {
        bool null_buf;
        uint32_t type;
        uint16_t msg_len;
        size_t fail_alloc;
        uint32_t rc;
    } cases[] = {
        {true, LDP_MSG_KEEPALIVE, 4, 0, LDP_ERR_PARAM},
        {false, 0x8201, 4, 0, LDP_ERR_PARAM}, // no masking here
        {false, 0x0000, 4, 0, LDP_ERR_PARAM},
        {false, 0x10201, 4, 0, LDP_ERR_PARAM},
        {false, LDP_MSG_KEEPALIVE, 0, 0, LDP_ERR_NO_MEMORY}, // a zero length is answered as no memory
        {false, LDP_MSG_KEEPALIVE, 4, 1, LDP_ERR_NO_MEMORY},
        {false, LDP_MSG_KEEPALIVE, 4087, 0, LDP_ERR_PARAM},
        {false, LDP_MSG_KEEPALIVE, 3, 0, LDP_ERR_PARAM},
    };
    for (const auto &c : cases) {
        testplat::reset();
        auto *rec = new_record<LDP_KeepAliveMsg>();
        rec->stMsgHeader = {LDP_MSG_KEEPALIVE, c.msg_len, 1};
        const size_t before = testplat::alloc_calls();
        testplat::fail_alloc_at(c.fail_alloc);
        uint8_t *buf = reinterpret_cast<uint8_t *>(uintptr_t(0x1));
        EXPECT_EQ(LDP_Encode(c.null_buf ? nullptr : &buf, c.type, rec, kModule), c.rc) << c.type << " " << c.msg_len;
        EXPECT_EQ(buf, c.null_buf ? reinterpret_cast<uint8_t *>(uintptr_t(0x1)) : nullptr);
        EXPECT_EQ(testplat::live_blocks(), 0u) << "record or buffer kept";
        expect_no_assertions();
        EXPECT_EQ(testplat::alloc_calls() - before, c.msg_len == 0 || c.null_buf || c.type != LDP_MSG_KEEPALIVE ? 0u : 1u);
    }
    uint8_t *buf = nullptr;
    EXPECT_EQ(LDP_Encode(&buf, LDP_MSG_KEEPALIVE, nullptr, kModule), LDP_ERR_PARAM);
}

TEST_F(EntryTest, EncodeWritesTheHeaderAndZeroFillsTheRest)
{
    const struct {
        uint16_t type_word, msg_len;
        uint32_t msg_id;
        const char *head;
    } cases[] = {
        {0x8201, 4, 0x12345678, "82 01 00 04 12 34 56 78"},
        {0x0201, 4086, 0xFFFFFFFF, "02 01 0f f6 ff ff ff ff"},
    };
    for (const auto &c : cases) {
        testplat::reset();
        auto *rec = new_record<LDP_KeepAliveMsg>();
        rec->stMsgHeader = {c.type_word, c.msg_len, c.msg_id};
        const encoded e = encode(LDP_MSG_KEEPALIVE, rec);
        ASSERT_EQ(e.wire.size(), size_t(c.msg_len) + 4);
        EXPECT_EQ(to_hex(e.wire.data(), 8), c.head);
        EXPECT_EQ(bytes(e.wire.begin() + 8, e.wire.end()), bytes(c.msg_len - 4u, 0));
        EXPECT_EQ(testplat::modules_seen(), std::vector<uint32_t>(2, kModule));
        EXPECT_EQ(testplat::alloc_files(), (std::vector<std::string>{"test", "ldp_enc"}));
    }
}

TEST_F(EntryTest, EncodeMsgHeader)
{
    LDP_MsgHeader hdr = {0x8201, 4, 0x01020304};
    uint8_t out[8] = {};
    ASSERT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 8), LDP_OK);
    EXPECT_EQ(to_hex(out, 8), "82 01 00 04 01 02 03 04");
    EXPECT_EQ(hdr.usMsgType, 0x8201) << "header not restored to host order";
    EXPECT_EQ(hdr.usMsgLen, 4);
    EXPECT_EQ(hdr.ulMsgId, 0x01020304u);
    expect_no_assertions();

    // Short of room: an assertion, and the header stays in network order.
    hdr = {0x0201, 4, 0x01020304};
    std::memset(out, 0, sizeof out);
    EXPECT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 7), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    EXPECT_EQ(hdr.usMsgType, kBigEndian ? 0x0201 : 0x0102);
    EXPECT_EQ(hdr.usMsgLen, kBigEndian ? 0x0004 : 0x0400);
    EXPECT_EQ(hdr.ulMsgId, kBigEndian ? 0x01020304u : 0x04030201u);
    EXPECT_EQ(to_hex(out, 8), "00 00 00 00 00 00 00 00");

    // A failed copy is reported, and the header is still restored.
    testplat::reset();
    hdr = {0x0201, 4, 7};
    testplat::fail_memcpy_at(1, 150);
    EXPECT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 8), LDP_OK);
    expect_one_assertion("ldp_enc", "150");
    EXPECT_EQ(hdr.usMsgLen, 4);
}

TEST_F(EntryTest, FreeMessageAndMemFreeCallBack)
{
    LDP_FreeMessage(nullptr);
    for (const uint16_t type : {0x1234, 0x8201}) { // unknown: only the record goes
        auto *rec = new_record<LDP_KeepAliveMsg>();
        rec->stMsgHeader.usMsgType = type;
        LDP_FreeMessage(rec);
    }
    EXPECT_EQ(LDP_MemFreeCallBack(PLAT_SimpleAlloc_F(kModule, 16, "test", 1)), 0u);
    int stranger = 0;
    EXPECT_EQ(LDP_MemFreeCallBack(&stranger), 1u); // the test platform's answer, passed on
    EXPECT_EQ(testplat::bad_frees(), 1u);
    testplat::reset();
}

// Random TLV-shaped messages of every type, with allocations failing: any
// outcome is a documented code, a record only with it, nothing left over.
TEST_F(EntryTest, RandomMessagesGiveDocumentedCodes)
{
    std::mt19937 rng(20261123);
    auto any = [&](int hi) { return std::uniform_int_distribution<int>(0, hi)(rng); };
    const uint16_t types[] = {0x0001, 0x0100, 0x0200, 0x0201, 0x0202, 0x0300, 0x0301, 0x0400,
                              0x0401, 0x0402, 0x0403, 0x0404, 0x0f00, 0x8201, 0x8100, 0xffff};
    for (int i = 0; i < 20000; ++i) {
        const uint16_t type = types[any(15)];
        bytes msg = {uint8_t(type >> 8), uint8_t(type), 0, 0, uint8_t(any(255)), 0, 0, 1};
        for (int t = any(4); t > 0; --t) {
            const int len = any(24);
            const int claimed = any(255) < 32 ? any(255) : len; // sometimes a lie
            msg.insert(msg.end(), {uint8_t(any(255)), uint8_t(any(255)), uint8_t(claimed >> 8), uint8_t(claimed)});
            for (int j = 0; j < len; ++j) {
                msg.push_back(uint8_t(any(255)));
            }
        }
        const int msg_len = int(msg.size()) - 4 + (any(255) < 24 ? any(12) - 6 : 0);
        msg[2] = uint8_t(msg_len >> 8);
        msg[3] = uint8_t(msg_len);
        testplat::reset();
        testplat::fail_alloc_at(size_t(any(4)));
        const decoded d = decode(msg);
        ASSERT_TRUE(is_documented_code(d.rc)) << d.rc << " for " << to_hex(msg);
        ASSERT_EQ(d.rec != nullptr, d.rc == LDP_OK || (d.rc == LDP_STOP_WALK && d.rec != nullptr)) << to_hex(msg);
        LDP_FreeMessage(d.rec);
        ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(msg);
    }
}

// Every exported function that takes pointers answers a null in any of them
// with 1 (or nothing, for the release functions), silently.
alignas(8) uint8_t g_scratch[8192];

template <class T>
T arg(bool null)
{
    if constexpr (std::is_pointer_v<T>) {
        return null ? nullptr : reinterpret_cast<T>(g_scratch);
    } else {
        return sizeof(T) > 1 ? T(4096) : T{}; // room and lengths that cannot be the reason for a 1
    }
}

// Result codes answer 1; a pointer, flag or type byte answers null, false or 0.
template <class R, class... A>
void expect_null_refused(const char *name, R (*fn)(A...), bool asserts = false)
{
    const bool is_ptr[] = {std::is_pointer_v<A>...};
    for (size_t i = 0; i < sizeof...(A); ++i) {
        if (!is_ptr[i]) {
            continue;
        }
        std::memset(g_scratch, 0, sizeof g_scratch);
        testplat::reset();
        auto call = [&]<size_t... I>(std::index_sequence<I...>) { return fn(arg<A>(I == i)...); };
        if constexpr (std::is_void_v<R>) {
            call(std::index_sequence_for<A...>{});
        } else {
            const R want = std::is_same_v<R, uint32_t> ? R(LDP_ERR_PARAM) : R{};
            EXPECT_EQ(call(std::index_sequence_for<A...>{}), want) << name << ", argument " << i + 1 << " null";
        }
        EXPECT_EQ(testplat::assertions().size(), asserts ? 1u : 0u) << name;
        EXPECT_EQ(testplat::alloc_calls(), 0u) << name;
    }
}

#define NULLS(fn) expect_null_refused(#fn, fn)

TEST_F(EntryTest, NullPointersAreRefused)
{
    NULLS(LDP_PreParseKeepAliveMsg), NULLS(LDP_DecodeKeepAliveMsg), NULLS(LDP_EncodeKeepAliveMsg);
    NULLS(LDP_PreParseHelloMsg), NULLS(LDP_DecodeHelloMsg), NULLS(LDP_EncodeHelloMsg);
    NULLS(LDP_DecodeCommHelloParamTlv), NULLS(LDP_EncodeCommHelloParamTlv);
    NULLS(LDP_PreParseInitMsg), NULLS(LDP_DecodeInitMsg), NULLS(LDP_EncodeInitMsg), NULLS(LDP_FreeInitMsg);
    NULLS(LDP_DecodeCommSessParamTlv), NULLS(LDP_DecodeFTSessParamTlv), NULLS(LDP_DecodeATMSessParamTlv);
    NULLS(LDP_DecodeCapabilityParamTlv), NULLS(LDP_EncodeCommSessParamTlv), NULLS(LDP_EncodeATMSessParamTlv);
    NULLS(LDP_EncodeFRSessParamTlv), NULLS(LDP_EncodeFTSessParamTlv), NULLS(LDP_EncodeCapabilityParamTlv);
    NULLS(LDP_PreParseCapabilityMsg), NULLS(LDP_DecodeCapabilityMsg), NULLS(LDP_EncodeCapabilityMsg);
    NULLS(LDP_FreeCapabilityMsg);
    NULLS(LDP_PreParseFECTlv), NULLS(LDP_PreParsePrefixFecElement), NULLS(LDP_PreParseHostAddrFecElement);
    NULLS(LDP_DecodeFECTlv), NULLS(LDP_DecodePrefixFecElement), NULLS(LDP_DecodeHostAddrFecElement);
    NULLS(LDP_EncodeFECTlv), NULLS(LDP_EncodePrefixAddrFecElement), NULLS(LDP_EncodeHostAddrFecElement);
    NULLS(LDP_FreeFecElement), NULLS(LDP_PreParseMldpFecElement), NULLS(LDP_PreDecodeOvElement);
    NULLS(LDP_DecodeMldpFecElement), NULLS(LDP_EncodeMldpFecElement), NULLS(LDP_DecodeOpaqueValue);
    NULLS(LDP_DecodeOvToElementList), NULLS(LDP_DecodeOvElement), NULLS(LDP_MLDP_UtilCheckOVElementHead);
    NULLS(LDP_DecodeOvElementType), NULLS(LDP_EncodeOvElement), NULLS(LDP_GetLspIdByOvElement);
    NULLS(LDP_FreeOvElement), NULLS(LDP_FreeAllOvElement);
    NULLS(LDP_PreParseMpStatusTlv), NULLS(LDP_DecodeMpStatusTlv), NULLS(LDP_EncodeMpStatusTlv);
    NULLS(LDP_PreParseMappingMsg), NULLS(LDP_DecodeMappingMsg), NULLS(LDP_EncodeMappingMsg);
    NULLS(LDP_FreeLabelMappingMsg), NULLS(LDP_EncodeLabelTlv), NULLS(LDP_DecodePathVectorTlv);
    expect_null_refused("LDP_EncodePathVectorTlv", LDP_EncodePathVectorTlv, true); // it asserts, unlike the others
    NULLS(LDP_EncodeLSPIdTlv), NULLS(LDP_EncodeLSPIdERHopTlv);
    NULLS(LDP_EncodeTrafficTlv), NULLS(LDP_EncodeERTlv), NULLS(LDP_DecodeUnknownTlv), NULLS(LDP_ProcUnknTlvList);
    NULLS(LDP_DecodeStatusTlv), NULLS(LDP_EncodeStatusTlv), NULLS(LDP_PreParseNotifMsg);
    NULLS(LDP_DecodeNotifMsg), NULLS(LDP_EncodeNotifMsg), NULLS(LDP_FreeNotifyMsg);
    NULLS(LDP_PreParseAddrListTlv), NULLS(LDP_DecodeAddrListTlv), NULLS(LDP_EncodeAddrListTlv);
    NULLS(LDP_EncodeMacListTLV), NULLS(LDP_PreParseAddrMsg), NULLS(LDP_DecodeAddrMsg), NULLS(LDP_EncodeAddrMsg);
    NULLS(LDP_DecodeAddrMsgForOtherTLV), NULLS(LDP_FreeAddressMsg), NULLS(LDP_PreParseAddrWithdrawMsg);
    NULLS(LDP_DecodeAddrWithdrawMsg), NULLS(LDP_EncodeAddrWithdrawMsg), NULLS(LDP_FreeAddressWithdrawMsg);
    NULLS(LDP_PreParseRequestMsg), NULLS(LDP_DecodeRequestMsg), NULLS(LDP_EncodeReqMsg), NULLS(LDP_FreeLabelRequestMsg);
    NULLS(LDP_PreParseWithdrawMsg), NULLS(LDP_DecodeWithdrawMsg), NULLS(LDP_EncodeWithdrawMsg);
    NULLS(LDP_FreeLabelWithdrawMsg), NULLS(LDP_PreParseReleaseMsg), NULLS(LDP_DecodeReleaseMsg);
    NULLS(LDP_EncodeReleaseMsg), NULLS(LDP_FreeLabelReleaseMsg), NULLS(LDP_PreParseReqAbortMsg);
    NULLS(LDP_DecodeReqAbortMsg), NULLS(LDP_EncodeAbortReqMsg), NULLS(LDP_FreeLabelRequestAbortMsg);
    NULLS(LDP_EncodeMsgHeader);
}

} // namespace
} // namespace ldptest
