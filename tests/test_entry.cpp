// LDP_Decode / LDP_Encode / LDP_EncodeMsgHeader / LDP_FreeMessage /
// LDP_MemFreeCallBack: argument checks, length checks, type dispatch and
// ownership on every path.
#include "support.hpp"

namespace ldptest {
namespace {

using EntryTest = CodecTest;

const bytes kKeepAlive = hex("02 01 00 04 00 00 00 01");

TEST_F(EntryTest, DecodeNullArgumentsAssertInOrder)
{
    const uint8_t *msg = kKeepAlive.data();
    uint32_t type = kUntouched;
    void *rec = &type; // a sentinel that must survive the early returns

    struct {
        const uint8_t *msg;
        uint32_t *type;
        void **rec;
        const char *text;
    } cases[] = {
        {nullptr, nullptr, nullptr, "pucMsg is NULL"},
        {nullptr, &type, &rec, "pucMsg is NULL"},
        {msg, nullptr, nullptr, "ppMsgRecord is NULL"},
        {msg, &type, nullptr, "ppMsgRecord is NULL"},
        {msg, nullptr, &rec, "pulMsgType is NULL"},
    };
    for (const auto &c : cases) {
        testplat::reset();
        EXPECT_EQ(LDP_Decode(c.msg, c.type, c.rec, 8, kModule), LDP_ERR_PARAM);
        expect_one_assertion("ldp_dec", c.text);
        EXPECT_EQ(rec, static_cast<void *>(&type)) << "record pointer written before the checks";
        EXPECT_EQ(type, kUntouched);
        EXPECT_EQ(testplat::alloc_calls(), 0u);
    }
}

struct length_case {
    const char *name;
    const char *wire;
    uint32_t buf_len;
    uint32_t rc;
};

class DecodeLength : public CodecTest, public ::testing::WithParamInterface<length_case> {};

TEST_P(DecodeLength, ResultAndRecord)
{
    const length_case &c = GetParam();
    const decoded d = decode(hex(c.wire), c.buf_len);
    EXPECT_EQ(d.rc, c.rc);
    if (c.rc == LDP_OK) {
        ASSERT_NE(d.rec, nullptr);
        EXPECT_EQ(d.type, LDP_MSG_KEEPALIVE);
        LDP_FreeMessage(d.rec);
    } else {
        EXPECT_EQ(d.rec, nullptr);
        EXPECT_EQ(d.type, kUntouched) << "type reported before the length checks passed";
        EXPECT_EQ(testplat::alloc_calls(), 0u);
    }
}

// Buffer lengths above the real buffer are safe here: only L + 4 bytes are read.
INSTANTIATE_TEST_SUITE_P(
    Entry, DecodeLength,
    ::testing::Values(
        length_case{"BufLen0", "02 01 00 04 00 00 00 01", 0, LDP_STATUS_BAD_MSG_LEN},
        length_case{"BufLen3", "02 01 00 04 00 00 00 01", 3, LDP_STATUS_BAD_MSG_LEN},
        length_case{"MsgLen0", "02 01 00 00 00 00 00 01", 8, LDP_STATUS_BAD_MSG_LEN},
        length_case{"MsgLen3", "02 01 00 03 00 00 00 01", 8, LDP_STATUS_BAD_MSG_LEN},
        length_case{"BufLen4", "02 01 00 04 00 00 00 01", 4, LDP_STATUS_BAD_MSG_LEN},
        length_case{"BufOneShort", "02 01 00 04 00 00 00 01", 7, LDP_STATUS_BAD_MSG_LEN},
        length_case{"BufExact", "02 01 00 04 00 00 00 01", 8, LDP_OK},
        length_case{"BufLarger", "02 01 00 04 00 00 00 01", 100, LDP_OK},
        length_case{"BufLenLargestPositive", "02 01 00 04 00 00 00 01", 0x80000002u, LDP_OK},
        length_case{"BufLenSignedNegative", "02 01 00 04 00 00 00 01", 0x80000003u, LDP_STATUS_BAD_MSG_LEN},
        length_case{"BufLenAllOnes", "02 01 00 04 00 00 00 01", 0xFFFFFFFFu, LDP_STATUS_BAD_MSG_LEN},
        // Length is checked before the type: an unknown type with a bad length gives 5.
        length_case{"LengthBeforeType", "0f 00 00 08 00 00 00 01", 8, LDP_STATUS_BAD_MSG_LEN}),
    [](const auto &tc) { return std::string(tc.param.name); });

TEST_F(EntryTest, UnknownTypesAreIgnoredOrRefusedByTheUBit)
{
    struct {
        const char *wire;
        uint32_t rc;
    } cases[] = {
        {"8f 00 00 04 00 00 00 01", LDP_ERR_IGNORE_MSG},
        {"0f 00 00 04 00 00 00 01", LDP_STATUS_UNKNOWN_MSG_TYPE},
        {"00 00 00 04 00 00 00 01", LDP_STATUS_UNKNOWN_MSG_TYPE},
        {"80 00 00 04 00 00 00 01", LDP_ERR_IGNORE_MSG},
        {"02 03 00 04 00 00 00 01", LDP_STATUS_UNKNOWN_MSG_TYPE},
        {"84 05 00 04 00 00 00 01", LDP_ERR_IGNORE_MSG},
        {"7f ff 00 04 00 00 00 01", LDP_STATUS_UNKNOWN_MSG_TYPE},
    };
    for (const auto &c : cases) {
        const decoded d = decode(hex(c.wire));
        EXPECT_EQ(d.rc, c.rc) << c.wire;
        EXPECT_EQ(d.rec, nullptr);
        EXPECT_EQ(d.type, kUntouched) << c.wire;
    }
    EXPECT_EQ(testplat::alloc_calls(), 0u);
}

TEST_F(EntryTest, EveryKnownTypeIsRecognisedAndReportedWithoutUBit)
{
    const uint16_t types[] = {0x0001, 0x0100, 0x0200, 0x0201, 0x0202, 0x0300,
                              0x0301, 0x0400, 0x0401, 0x0402, 0x0403, 0x0404};
    for (uint16_t t : types) {
        for (uint16_t u : {uint16_t(0), uint16_t(0x8000)}) {
            bytes msg = hex("00 00 00 04 00 00 00 01");
            msg[0] = uint8_t((t | u) >> 8);
            msg[1] = uint8_t(t | u);
            const decoded d = decode(msg);
            EXPECT_NE(d.rc, LDP_STATUS_UNKNOWN_MSG_TYPE) << std::hex << (t | u);
            EXPECT_NE(d.rc, LDP_ERR_IGNORE_MSG) << std::hex << (t | u);
            EXPECT_EQ(d.type, t);
            LDP_FreeMessage(d.rc == LDP_OK || d.rc == LDP_STOP_WALK ? d.rec : nullptr);
        }
    }
}

TEST_F(EntryTest, FailedPreParseAllocatesNothingButReportsTheType)
{
    const decoded d = decode(hex("82 01 00 08 00 00 00 01 01 23 00 00"));
    EXPECT_EQ(d.rc, LDP_STATUS_UNKNOWN_TLV);
    EXPECT_EQ(d.type, LDP_MSG_KEEPALIVE);
    EXPECT_EQ(d.rec, nullptr);
    EXPECT_EQ(testplat::alloc_calls(), 0u);
}

TEST_F(EntryTest, RecordAllocationFailureGives108AndNoRecord)
{
    testplat::fail_alloc_at(1);
    const decoded d = decode(kKeepAlive);
    EXPECT_EQ(d.rc, LDP_ERR_NO_MEMORY);
    EXPECT_EQ(d.rec, nullptr);
    EXPECT_EQ(d.type, LDP_MSG_KEEPALIVE);
}

TEST_F(EntryTest, RecordComesFromTheCallersModuleAndDecodeFile)
{
    const decoded d = decode(kKeepAlive);
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(testplat::modules_seen(), std::vector<uint32_t>{kModule});
    EXPECT_EQ(testplat::alloc_files(), std::vector<std::string>{"ldp_dec"});
    LDP_FreeMessage(d.rec);
}

TEST_F(EntryTest, DecoderFailureReleasesTheRecord)
{
    // The pre-parse reads a good header; the decoder's own header copy fails,
    // leaves the zeroed record length at 0 and the walk answers 5.
    testplat::fail_memcpy_at(2, 34);
    const decoded d = decode(kKeepAlive);
    EXPECT_EQ(d.rc, LDP_STATUS_BAD_MSG_LEN);
    EXPECT_EQ(d.rec, nullptr);
    expect_one_assertion("ldp_dec", "34");
}

TEST_F(EntryTest, EncodeNullRecordReturns1AndTouchesNothing)
{
    uint8_t *buf = reinterpret_cast<uint8_t *>(uintptr_t(0x1));
    EXPECT_EQ(LDP_Encode(&buf, LDP_MSG_KEEPALIVE, nullptr, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(buf, reinterpret_cast<uint8_t *>(uintptr_t(0x1)));
    EXPECT_EQ(testplat::alloc_calls(), 0u);
}

TEST_F(EntryTest, EncodeReleasesTheRecordOnEveryEarlyFailure)
{
    struct {
        const char *name;
        bool null_buf;
        uint32_t type;
        uint16_t msg_len;
        size_t fail_alloc;
        uint32_t rc;
    } cases[] = {
        {"null buffer pointer", true, LDP_MSG_KEEPALIVE, 4, 0, LDP_ERR_PARAM},
        {"U bit in the type", false, 0x8201, 4, 0, LDP_ERR_PARAM},
        {"type zero", false, 0x0000, 4, 0, LDP_ERR_PARAM},
        {"type above 16 bits", false, 0x10201, 4, 0, LDP_ERR_PARAM},
        {"zero length is a memory error", false, LDP_MSG_KEEPALIVE, 0, 0, LDP_ERR_NO_MEMORY},
        {"buffer allocation fails", false, LDP_MSG_KEEPALIVE, 4, 1, LDP_ERR_NO_MEMORY},
        {"encoder refuses the length", false, LDP_MSG_KEEPALIVE, 4087, 0, LDP_ERR_PARAM},
        {"encoder refuses a short length", false, LDP_MSG_KEEPALIVE, 3, 0, LDP_ERR_PARAM},
    };
    for (const auto &c : cases) {
        testplat::reset();
        auto *rec = new_record<LDP_KeepAliveMsg>();
        rec->stMsgHeader.usMsgType = LDP_MSG_KEEPALIVE;
        rec->stMsgHeader.usMsgLen = c.msg_len;
        const size_t before = testplat::alloc_calls();
        if (c.fail_alloc != 0) {
            testplat::fail_alloc_at(c.fail_alloc);
        }
        uint8_t *buf = reinterpret_cast<uint8_t *>(uintptr_t(0x1));
        EXPECT_EQ(LDP_Encode(c.null_buf ? nullptr : &buf, c.type, rec, kModule), c.rc) << c.name;
        if (!c.null_buf) {
            EXPECT_EQ(buf, nullptr) << c.name;
        }
        EXPECT_EQ(testplat::live_blocks(), 0u) << c.name << ": record or buffer not released";
        expect_no_assertions();
        if (c.msg_len == 0) {
            EXPECT_EQ(testplat::alloc_calls(), before) << "a zero length must not allocate";
        }
    }
}

TEST_F(EntryTest, EncodeWritesTheHeaderAndZeroFillsTheRest)
{
    struct {
        uint16_t type_word;
        uint16_t msg_len;
        uint32_t msg_id;
        const char *head;
    } cases[] = {
        {0x0201, 4, 0x12345678, "02 01 00 04 12 34 56 78"},
        {0x8201, 4, 1, "82 01 00 04 00 00 00 01"}, // the U bit in the record goes on the wire
        {0x0201, 4086, 0xFFFFFFFF, "02 01 0f f6 ff ff ff ff"},
    };
    for (const auto &c : cases) {
        auto *rec = new_record<LDP_KeepAliveMsg>();
        rec->stMsgHeader = {c.type_word, c.msg_len, c.msg_id};
        const encoded e = encode(LDP_MSG_KEEPALIVE, rec);
        ASSERT_EQ(e.rc, LDP_OK);
        ASSERT_EQ(e.wire.size(), size_t(c.msg_len) + 4);
        EXPECT_EQ(to_hex(e.wire.data(), 8), c.head);
        EXPECT_EQ(bytes(e.wire.begin() + 8, e.wire.end()), bytes(c.msg_len - 4u, 0));
    }
    EXPECT_EQ(testplat::live_blocks(), 0u);
}

TEST_F(EntryTest, EncodeBufferComesFromTheCallersModuleAndEncodeFile)
{
    auto *rec = new_record<LDP_KeepAliveMsg>();
    rec->stMsgHeader = {LDP_MSG_KEEPALIVE, 4, 9};
    testplat::reset();
    uint8_t *buf = nullptr;
    ASSERT_EQ(LDP_Encode(&buf, LDP_MSG_KEEPALIVE, rec, kModule), LDP_OK);
    EXPECT_EQ(testplat::modules_seen(), std::vector<uint32_t>{kModule});
    EXPECT_EQ(testplat::alloc_files(), std::vector<std::string>{"ldp_enc"});
    EXPECT_EQ(LDP_MemFreeCallBack(buf), 0u);
}

TEST_F(EntryTest, EncodeMsgHeader)
{
    LDP_MsgHeader hdr = {0x8201, 4, 0x01020304};
    uint8_t out[8] = {};

    EXPECT_EQ(LDP_EncodeMsgHeader(nullptr, &hdr, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeMsgHeader(out, nullptr, 0, 8), LDP_ERR_PARAM);
    expect_no_assertions();

    ASSERT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 8), LDP_OK);
    EXPECT_EQ(to_hex(out, 8), "82 01 00 04 01 02 03 04");
    EXPECT_EQ(hdr.usMsgType, 0x8201) << "header not restored to host order";
    EXPECT_EQ(hdr.usMsgLen, 4);
    EXPECT_EQ(hdr.ulMsgId, 0x01020304u);
    expect_no_assertions();
}

TEST_F(EntryTest, EncodeMsgHeaderShortBufferAssertsAndLeavesNetworkOrder)
{
    LDP_MsgHeader hdr = {0x0201, 4, 0x01020304};
    uint8_t out[8] = {};
    EXPECT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 7), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    EXPECT_EQ(hdr.usMsgType, 0x0102);
    EXPECT_EQ(hdr.usMsgLen, 0x0400);
    EXPECT_EQ(hdr.ulMsgId, 0x04030201u);
    EXPECT_EQ(to_hex(out, 8), "00 00 00 00 00 00 00 00");
}

TEST_F(EntryTest, EncodeMsgHeaderFailedCopyIsReportedAndIgnored)
{
    LDP_MsgHeader hdr = {0x0201, 4, 7};
    uint8_t out[8] = {};
    testplat::fail_memcpy_at(1, 150);
    EXPECT_EQ(LDP_EncodeMsgHeader(out, &hdr, 0, 8), LDP_OK);
    expect_one_assertion("ldp_enc", "150");
    EXPECT_EQ(hdr.usMsgLen, 4) << "header not restored after a failed copy";
}

TEST_F(EntryTest, FreeMessageReleasesByType)
{
    LDP_FreeMessage(nullptr);

    // An unknown type: only the record itself is released.
    auto *odd = new_record<LDP_KeepAliveMsg>();
    odd->stMsgHeader.usMsgType = 0x1234;
    LDP_FreeMessage(odd);

    auto *ka = new_record<LDP_KeepAliveMsg>();
    ka->stMsgHeader.usMsgType = 0x8201;
    LDP_FreeMessage(ka);
    EXPECT_EQ(testplat::live_blocks(), 0u);
}

TEST_F(EntryTest, MemFreeCallBackPassesThePlatformResultOn)
{
    void *p = PLAT_SimpleAlloc_F(kModule, 16, "test", 1);
    EXPECT_EQ(LDP_MemFreeCallBack(p), 0u);
    int not_ours = 0;
    EXPECT_EQ(LDP_MemFreeCallBack(&not_ours), 1u); // the test platform's answer for a stranger
    EXPECT_EQ(testplat::bad_frees(), 1u);
    testplat::reset();
}

} // namespace
} // namespace ldptest
