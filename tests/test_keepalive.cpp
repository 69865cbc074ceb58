// KeepAlive: the reference TLV walk, the decoder's record, the encoder's
// length rule and room check, and round trips through the entry points.
#include "support.hpp"

namespace ldptest {
namespace {

struct walk_case {
    const char *name;
    const char *wire;
    uint32_t rc;
};

// Each case is run through the pre-parse, the decoder and LDP_Decode: the
// three must agree for a KeepAlive.
const walk_case kWalkCases[] = {
    {"NoTlvs", "02 01 00 04 00 00 00 01", LDP_OK},
    {"UBitTypeWord", "82 01 00 04 00 00 00 01", LDP_OK},
    {"MsgLen3", "02 01 00 03 00 00 00 01", LDP_STATUS_BAD_MSG_LEN},
    {"MsgLen0", "02 01 00 00 00 00 00 01", LDP_STATUS_BAD_MSG_LEN},
    {"TwoStrayBytes", "02 01 00 06 00 00 00 01 80 00", LDP_STATUS_BAD_TLV_LEN},
    {"ThreeStrayBytes", "02 01 00 07 00 00 00 01 80 00 00", LDP_STATUS_BAD_TLV_LEN},
    {"UBitTlvSkipped", "02 01 00 08 00 00 00 01 81 23 00 00", LDP_OK},
    {"UAndFBitsSkipped", "02 01 00 08 00 00 00 01 c1 23 00 00", LDP_OK},
    {"FBitOnlyRefused", "02 01 00 08 00 00 00 01 41 23 00 00", LDP_STATUS_UNKNOWN_TLV},
    {"NoBitsRefused", "02 01 00 08 00 00 00 01 01 23 00 00", LDP_STATUS_UNKNOWN_TLV},
    {"LengthTestedBeforeType", "02 01 00 08 00 00 00 01 01 23 00 01", LDP_STATUS_BAD_TLV_LEN},
    {"ValueFillsMessage", "02 01 00 0c 00 00 00 01 81 23 00 04 de ad be ef", LDP_OK},
    {"ValueOneByteOver", "02 01 00 0c 00 00 00 01 81 23 00 05 de ad be ef", LDP_STATUS_BAD_TLV_LEN},
    {"HugeTlvLength", "02 01 00 08 00 00 00 01 81 23 ff ff", LDP_STATUS_BAD_TLV_LEN},
    {"TwoSkippedTlvs", "02 01 00 0e 00 00 00 01 81 00 00 01 aa 83 ff 00 01 bb", LDP_OK},
    {"SecondTlvLacksUBit", "02 01 00 0e 00 00 00 01 81 00 00 01 aa 03 ff 00 01 bb",
     LDP_STATUS_UNKNOWN_TLV},
    {"StrayBytesAfterATlv", "02 01 00 0b 00 00 00 01 81 00 00 01 aa 00 00", LDP_STATUS_BAD_TLV_LEN},
    {"KnownTypeStillNeedsUBit", "02 01 00 08 00 00 00 01 04 00 00 00", LDP_STATUS_UNKNOWN_TLV},
};

class KeepAliveWalk : public CodecTest, public ::testing::WithParamInterface<walk_case> {};

TEST_P(KeepAliveWalk, PreParseDecoderAndEntryAgree)
{
    const walk_case &c = GetParam();
    const decoded d = expect_decode_paths(hex(c.wire), LDP_MSG_KEEPALIVE, LDP_PreParseKeepAliveMsg,
                                          LDP_DecodeKeepAliveMsg, c.rc, c.rc);
    LDP_FreeMessage(d.rec);
    // One record for the direct decoder call, one more when LDP_Decode keeps it.
    EXPECT_EQ(testplat::alloc_calls(), c.rc == LDP_OK ? 2u : 1u) << "only the record is allocated";
}

INSTANTIATE_TEST_SUITE_P(KeepAlive, KeepAliveWalk, ::testing::ValuesIn(kWalkCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using KeepAliveTest = CodecTest;

TEST_F(KeepAliveTest, RecordHoldsTheHeaderInHostOrder)
{
    const decoded d = decode(hex("82 01 00 08 a1 b2 c3 d4 ff ff 00 00"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_KeepAliveMsg *>(d.rec);
    EXPECT_EQ(rec->stMsgHeader.usMsgType, 0x8201);
    EXPECT_EQ(rec->stMsgHeader.usMsgLen, 8);
    EXPECT_EQ(rec->stMsgHeader.ulMsgId, 0xa1b2c3d4u);
    EXPECT_EQ(d.type, LDP_MSG_KEEPALIVE);
    LDP_FreeMessage(d.rec);
}

TEST_F(KeepAliveTest, NullArgumentsReturn1Silently)
{
    const bytes msg = hex("02 01 00 04 00 00 00 01");
    LDP_KeepAliveMsg rec = {};
    uint8_t buf[8];
    EXPECT_EQ(LDP_PreParseKeepAliveMsg(nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeKeepAliveMsg(nullptr, &rec, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeKeepAliveMsg(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeKeepAliveMsg(nullptr, &rec, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeKeepAliveMsg(buf, nullptr, 0, 8), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(KeepAliveTest, FailedTlvHeaderCopyIsReportedAndWalkGoesOnWithZeroes)
{
    // Copies: header, then the TLV header. A zeroed TLV header has no U bit.
    testplat::fail_memcpy_at(2, 22);
    EXPECT_EQ(LDP_PreParseKeepAliveMsg(hex("02 01 00 08 00 00 00 01 81 23 00 00").data()),
              LDP_STATUS_UNKNOWN_TLV);
    expect_one_assertion("ldp_dec", "22");
}

TEST_F(KeepAliveTest, EncoderLengthRuleHasNoAssertion)
{
    struct {
        uint16_t msg_len;
        uint32_t rc;
    } cases[] = {{0, LDP_ERR_PARAM},    {3, LDP_ERR_PARAM},    {4, LDP_OK},
                 {4086, LDP_OK},        {4087, LDP_ERR_PARAM}, {0xFFFF, LDP_ERR_PARAM}};
    static uint8_t buf[4096 + 4];
    for (const auto &c : cases) {
        LDP_KeepAliveMsg rec = {{LDP_MSG_KEEPALIVE, c.msg_len, 1}};
        EXPECT_EQ(LDP_EncodeKeepAliveMsg(buf, &rec, 0, sizeof buf), c.rc) << c.msg_len;
    }
    expect_no_assertions();
}

TEST_F(KeepAliveTest, EncoderNeedsRoomForTheHeader)
{
    uint8_t buf[8] = {};
    LDP_KeepAliveMsg rec = {{LDP_MSG_KEEPALIVE, 4, 1}};
    EXPECT_EQ(LDP_EncodeKeepAliveMsg(buf, &rec, 0, 7), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    EXPECT_EQ(to_hex(buf, 8), "00 00 00 00 00 00 00 00");

    testplat::reset();
    LDP_KeepAliveMsg rec2 = {{LDP_MSG_KEEPALIVE, 4, 1}};
    EXPECT_EQ(LDP_EncodeKeepAliveMsg(buf, &rec2, 0, 8), LDP_OK);
    EXPECT_EQ(to_hex(buf, 8), "02 01 00 04 00 00 00 01");
    expect_no_assertions();
}

TEST_F(KeepAliveTest, RoundTripKeepsTheWireBytes)
{
    for (const char *wire : {"02 01 00 04 00 00 00 01", "82 01 00 04 ff ff ff ff"}) {
        const bytes msg = hex(wire);
        const decoded d = decode(msg);
        ASSERT_EQ(d.rc, LDP_OK);
        const encoded e = encode(LDP_MSG_KEEPALIVE, d.rec);
        ASSERT_EQ(e.rc, LDP_OK);
        EXPECT_EQ(e.wire, msg);
    }
}

TEST_F(KeepAliveTest, SkippedTlvsAreNotReEncoded)
{
    // TLVs are dropped on decode; the record's length still says 8, so the
    // re-encoded message carries four zero bytes where the TLV was.
    const decoded d = decode(hex("02 01 00 08 00 00 00 02 81 23 00 00"));
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_KEEPALIVE, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "02 01 00 08 00 00 00 02 00 00 00 00");
}

TEST_F(KeepAliveTest, OddAddressRecordsAndBuffers)
{
    testplat::odd_addresses(true);
    const decoded d = decode(hex("02 01 00 04 00 00 00 05"));
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(d.rec) & 1u, 1u);
    EXPECT_EQ(static_cast<LDP_KeepAliveMsg *>(d.rec)->stMsgHeader.ulMsgId, 5u);
    const encoded e = encode(LDP_MSG_KEEPALIVE, d.rec);
    EXPECT_EQ(to_hex(e.wire), "02 01 00 04 00 00 00 05");
}

} // namespace
} // namespace ldptest
