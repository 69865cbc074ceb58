// Hello: the mandatory Common Hello Parameters TLV, the optional TLVs and
// their length rules, the record the decoder fills, and the fixed TLV order
// and room checks of the encoder.
#include <cstring>

#include "support.hpp"

namespace ldptest {
namespace {

// Message ID 1, Common Hello Parameters: hold time 15, T bit.
constexpr const char *kHead12 = "01 00 00 0c 00 00 00 01 04 00 00 04 00 0f 80 00";

struct walk_case {
    const char *name;
    const char *wire;
    uint32_t rc;
};

// Pre-parse, decoder and LDP_Decode agree on every Hello.
const walk_case kWalkCases[] = {
    {"CommonHelloOnly", "01 00 00 0c 00 00 00 01 04 00 00 04 00 0f 80 00", LDP_OK},
    {"CommonHelloWithUAndFBits", "01 00 00 0c 00 00 00 01 c4 00 00 04 00 0f 80 00", LDP_OK},
    {"TooShortForMandatoryTlv", "01 00 00 0b 00 00 00 01 04 00 00 04 00 0f 80",
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"FirstTlvNotCommonHello", "01 00 00 0c 00 00 00 01 04 01 00 04 0a 00 00 01",
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"CommonHelloLength5", "01 00 00 0d 00 00 00 01 04 00 00 05 00 0f 80 00 00",
     LDP_STATUS_MALFORMED_TLV},
    {"CommonHelloLength3", "01 00 00 0c 00 00 00 01 04 00 00 03 00 0f 80 00",
     LDP_STATUS_MALFORMED_TLV},
    {"CommonHelloOverrunsMessage", "01 00 00 0c 00 00 00 01 04 00 00 09 00 0f 80 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"FirstTlvLengthTestedBeforeType", "01 00 00 0c 00 00 00 01 04 01 00 09 00 0f 80 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"TwoStrayBytes", "01 00 00 0e 00 00 00 01 04 00 00 04 00 0f 80 00 00 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"ThreeStrayBytes", "01 00 00 0f 00 00 00 01 04 00 00 04 00 0f 80 00 00 00 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"Ipv4Transport", "01 00 00 14 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01",
     LDP_OK},
    {"Ipv4TransportLength6",
     "01 00 00 16 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 06 0a 00 00 01 00 00",
     LDP_STATUS_MALFORMED_TLV},
    {"Ipv6TransportLength4", "01 00 00 14 00 00 00 01 04 00 00 04 00 0f 80 00 04 03 00 04 0a 00 00 01",
     LDP_STATUS_MALFORMED_TLV},
    {"ConfSeqLength3", "01 00 00 13 00 00 00 01 04 00 00 04 00 0f 80 00 04 02 00 03 00 00 01",
     LDP_STATUS_MALFORMED_TLV},
    {"Private3E0ALength3", "01 00 00 13 00 00 00 01 04 00 00 04 00 0f 80 00 3e 0a 00 03 00 00 01",
     LDP_STATUS_MALFORMED_TLV},
    {"Private3E0AWithUBit", "01 00 00 12 00 00 00 01 04 00 00 04 00 0f 80 00 be 0a 00 02 ab cd",
     LDP_OK},
    {"UnknownWithoutUBitSkipped", "01 00 00 12 00 00 00 01 04 00 00 04 00 0f 80 00 01 23 00 02 ab cd",
     LDP_OK},
    {"UnknownOverrunsMessage", "01 00 00 12 00 00 00 01 04 00 00 04 00 0f 80 00 01 23 00 03 ab cd",
     LDP_STATUS_BAD_TLV_LEN},
    {"KnownTlvOverrunTestedBeforeLength",
     "01 00 00 12 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 03 ab cd", LDP_STATUS_BAD_TLV_LEN},
    {"StrayBytesAfterOptionalTlv",
     "01 00 00 16 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01 00 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"AllOptionalTlvs",
     "01 00 00 36 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01"
     " 04 03 00 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"
     " 04 02 00 04 00 00 00 07 3e 0a 00 02 ab cd",
     LDP_OK},
};

class HelloWalk : public CodecTest, public ::testing::WithParamInterface<walk_case> {};

TEST_P(HelloWalk, PreParseDecoderAndEntryAgree)
{
    const walk_case &c = GetParam();
    const decoded d =
        expect_decode_paths(hex(c.wire), LDP_MSG_HELLO, LDP_PreParseHelloMsg, LDP_DecodeHelloMsg, c.rc, c.rc);
    LDP_FreeMessage(d.rec);
}

INSTANTIATE_TEST_SUITE_P(Hello, HelloWalk, ::testing::ValuesIn(kWalkCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using HelloTest = CodecTest;

TEST_F(HelloTest, MinimalHelloRecord)
{
    const decoded d = decode(hex(kHead12));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_HelloMsg *>(d.rec);
    EXPECT_EQ(rec->stMsgHeader.usMsgType, 0x0100);
    EXPECT_EQ(rec->stMsgHeader.usMsgLen, 12);
    EXPECT_EQ(rec->stCommHelloTlv.usTlvType, 0x0400);
    EXPECT_EQ(rec->stCommHelloTlv.usTlvLen, 4);
    EXPECT_EQ(rec->usHoldTime, 15);
    EXPECT_EQ(rec->usHelloFlags, 0x8000);
    EXPECT_EQ(rec->ucHelloOptFlags, 0);
    EXPECT_EQ(testplat::alloc_calls(), 1u) << "only the record";
    LDP_FreeMessage(d.rec);
}

TEST_F(HelloTest, EveryOptionalTlvIsKept)
{
    const decoded d = decode(hex("81 00 00 36 12 34 56 78 c4 00 00 04 00 5a 7f ff"
                                 " 3e 0a 00 02 ab cd 04 02 00 04 00 00 00 07"
                                 " 84 03 00 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"
                                 " 44 01 00 04 0a 00 00 01"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_HelloMsg *>(d.rec);
    EXPECT_EQ(rec->stMsgHeader.usMsgType, 0x8100);
    EXPECT_EQ(rec->stMsgHeader.ulMsgId, 0x12345678u);
    EXPECT_EQ(rec->stCommHelloTlv.usTlvType, 0xc400);
    EXPECT_EQ(rec->usHoldTime, 90);
    EXPECT_EQ(rec->usHelloFlags, 0x7fff) << "R and reserved bits kept";
    EXPECT_EQ(rec->ucHelloOptFlags, 0x0f);
    EXPECT_EQ(rec->stIpv4TransTlv.usTlvType, 0x4401);
    EXPECT_EQ(rec->stIpv4TransTlv.usTlvLen, 4);
    EXPECT_EQ(rec->ulIpv4TransAddr, 0x0a000001u);
    EXPECT_EQ(rec->stIpv6TransTlv.usTlvType, 0x8403);
    EXPECT_EQ(to_hex(rec->aucIpv6TransAddr, 16), "20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01");
    EXPECT_EQ(rec->stConfSeqTlv.usTlvType, 0x0402);
    EXPECT_EQ(rec->ulConfSeqNum, 7u);
    EXPECT_EQ(rec->stPrivHelloTlv.usTlvType, 0x3e0a);
    EXPECT_EQ(rec->stPrivHelloTlv.usTlvLen, 2);
    EXPECT_EQ(to_hex(rec->aucPrivHelloValue, 2), "ab cd");
    LDP_FreeMessage(d.rec);
}

TEST_F(HelloTest, RepeatedTlvKeepsTheLastOne)
{
    const decoded d = decode(hex("01 00 00 1c 00 00 00 01 04 00 00 04 00 0f 80 00"
                                 " 04 01 00 04 0a 00 00 01 04 01 00 04 0a 00 00 02"));
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(static_cast<const LDP_HelloMsg *>(d.rec)->ulIpv4TransAddr, 0x0a000002u);
    LDP_FreeMessage(d.rec);
}

TEST_F(HelloTest, RefusedTransportHeaderIsStillStoredButPrivateIsNot)
{
    LDP_HelloMsg rec = {};
    const bytes v4 = hex("01 00 00 16 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 06 0a 00 00 01 00 00");
    EXPECT_EQ(LDP_DecodeHelloMsg(v4.data(), &rec, kModule), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(rec.stIpv4TransTlv.usTlvType, 0x0401);
    EXPECT_EQ(rec.stIpv4TransTlv.usTlvLen, 6);
    EXPECT_EQ(rec.ucHelloOptFlags, 0);

    LDP_HelloMsg rec2 = {};
    const bytes priv = hex("01 00 00 13 00 00 00 01 04 00 00 04 00 0f 80 00 3e 0a 00 03 00 00 01");
    EXPECT_EQ(LDP_DecodeHelloMsg(priv.data(), &rec2, kModule), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(rec2.stPrivHelloTlv.usTlvType, 0);
    EXPECT_EQ(rec2.stPrivHelloTlv.usTlvLen, 0);
}

TEST_F(HelloTest, NullArgumentsReturn1Silently)
{
    const bytes msg = hex(kHead12);
    LDP_HelloMsg rec = {};
    LDP_CommHelloParamTlv comm = {{0x0400, 4}, 0, 0};
    uint8_t buf[16];
    EXPECT_EQ(LDP_PreParseHelloMsg(nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeHelloMsg(nullptr, &rec, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeHelloMsg(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCommHelloParamTlv(nullptr, &comm, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCommHelloParamTlv(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeHelloMsg(nullptr, &rec, 0, 16), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeHelloMsg(buf, nullptr, 0, 16), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCommHelloParamTlv(nullptr, &comm, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCommHelloParamTlv(buf, nullptr, 0, 8), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(HelloTest, CommonHelloValueDecoder)
{
    const bytes value = hex("00 1e c0 01");
    LDP_CommHelloParamTlv comm = {{0x0400, 4}, 0, 0};
    EXPECT_EQ(LDP_DecodeCommHelloParamTlv(value.data(), &comm, 0), LDP_OK);
    EXPECT_EQ(comm.usHoldTime, 30);
    EXPECT_EQ(comm.usHelloFlags, 0xc001);
    LDP_CommHelloParamTlv bad = {{0x0400, 5}, 0, 0};
    EXPECT_EQ(LDP_DecodeCommHelloParamTlv(value.data(), &bad, 0), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(bad.usHoldTime, 0);
}

// A Hello record with hold time 15 and the T bit; optional TLVs per flags.
LDP_HelloMsg *hello_record(uint16_t msg_len, uint8_t flags)
{
    auto *rec = new_record<LDP_HelloMsg>();
    rec->stMsgHeader = {LDP_MSG_HELLO, msg_len, 1};
    rec->stCommHelloTlv = {LDP_TLV_COMMON_HELLO, 4};
    rec->usHoldTime = 15;
    rec->usHelloFlags = LDP_HELLO_T_BIT;
    rec->ucHelloOptFlags = flags;
    rec->stIpv4TransTlv = {LDP_TLV_IPV4_TRANSPORT, 4};
    rec->ulIpv4TransAddr = 0x0a000001u;
    rec->stIpv6TransTlv = {LDP_TLV_IPV6_TRANSPORT, 16};
    for (uint8_t i = 0; i < 16; ++i) {
        rec->aucIpv6TransAddr[i] = uint8_t(0xf0 + i);
    }
    rec->stConfSeqTlv = {LDP_TLV_CONF_SEQ_NUM, 4};
    rec->ulConfSeqNum = 0x01020304u;
    rec->stPrivHelloTlv = {LDP_TLV_VENDOR_PRIVATE, 2};
    rec->aucPrivHelloValue[0] = 0xab;
    rec->aucPrivHelloValue[1] = 0xcd;
    return rec;
}

TEST_F(HelloTest, EncodesIpv4ThenIpv6)
{
    const encoded e = encode(LDP_MSG_HELLO, hello_record(40, 0x03));
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "01 00 00 28 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01"
                              " 04 03 00 10 f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff");
    expect_no_assertions();
}

TEST_F(HelloTest, OneByteShortOfTheIpv6TlvFails)
{
    const encoded e = encode(LDP_MSG_HELLO, hello_record(39, 0x03));
    EXPECT_EQ(e.rc, LDP_ERR_PARAM);
    EXPECT_FALSE(e.has_buf);
    expect_one_assertion("ldp_enc");
}

TEST_F(HelloTest, Ipv6AloneFollowsTheCommonHelloTlv)
{
    const encoded e = encode(LDP_MSG_HELLO, hello_record(32, 0x02));
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "01 00 00 20 00 00 00 01 04 00 00 04 00 0f 80 00"
                              " 04 03 00 10 f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff");
}

TEST_F(HelloTest, EveryTlvAtItsExactRoomAndOneByteShort)
{
    // usMsgLen 12 + 8 + 20 + 8 + 6 = 54 fits exactly; each shorter room
    // fails at the TLV it cuts, with one assertion.
    const char *full = "01 00 00 36 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01"
                       " 04 03 00 10 f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff"
                       " 04 02 00 04 01 02 03 04 3e 0a 00 02 ab cd";
    uint8_t buf[58];
    LDP_HelloMsg *rec = hello_record(54, 0x0f);
    EXPECT_EQ(LDP_EncodeHelloMsg(buf, rec, 0, sizeof buf), LDP_OK);
    EXPECT_EQ(to_hex(buf, sizeof buf), to_hex(hex(full)));
    LDP_FreeMessage(rec);
    expect_no_assertions();

    for (uint16_t room : {57, 51, 43, 23, 15, 11, 7}) {
        testplat::reset();
        rec = hello_record(54, 0x0f);
        EXPECT_EQ(LDP_EncodeHelloMsg(buf, rec, 0, room), LDP_ERR_PARAM) << room;
        expect_one_assertion("ldp_enc");
        // Below 8 bytes the header stays in network order, where a Hello's
        // type word reads as a Notification: put it back before releasing.
        rec->stMsgHeader.usMsgType = LDP_MSG_HELLO;
        LDP_FreeMessage(rec);
    }
}

TEST_F(HelloTest, TlvHeadersAreWrittenAsTheRecordHoldsThem)
{
    LDP_HelloMsg *rec = hello_record(24, 0x04);
    rec->stCommHelloTlv = {0xc400, 7};
    rec->stConfSeqTlv = {0x8402, 9}; // the encoder neither fixes nor checks it
    const encoded e = encode(LDP_MSG_HELLO, rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "01 00 00 18 00 00 00 01 c4 00 00 07 00 0f 80 00"
                              " 84 02 00 09 01 02 03 04 00 00 00 00");
}

TEST_F(HelloTest, ReceivedOrderIsNotKept)
{
    // Configuration sequence before the IPv4 address on the wire, after it
    // once re-encoded.
    const decoded d = decode(hex("01 00 00 1c 00 00 00 09 04 00 00 04 00 0f 00 00"
                                 " 04 02 00 04 00 00 00 05 04 01 00 04 c0 a8 00 01"));
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_HELLO, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "01 00 00 1c 00 00 00 09 04 00 00 04 00 0f 00 00"
                              " 04 01 00 04 c0 a8 00 01 04 02 00 04 00 00 00 05");
}

TEST_F(HelloTest, RoundTripOfEveryTlv)
{
    const bytes msg = hex("01 00 00 36 00 00 00 01 04 00 00 04 00 0f 80 00 04 01 00 04 0a 00 00 01"
                          " 04 03 00 10 f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff"
                          " 04 02 00 04 01 02 03 04 3e 0a 00 02 ab cd");
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_HELLO, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(e.wire, msg);
}

TEST_F(HelloTest, EncoderLengthRuleHasNoAssertion)
{
    static uint8_t buf[4096];
    for (uint16_t len : {0, 3, 4087}) {
        LDP_HelloMsg *rec = hello_record(len, 0);
        EXPECT_EQ(LDP_EncodeHelloMsg(buf, rec, 0, sizeof buf), LDP_ERR_PARAM) << len;
        LDP_FreeMessage(rec);
    }
    expect_no_assertions();
}

TEST_F(HelloTest, CommonHelloEncoderLeavesTypeAndValueInWireOrder)
{
    uint8_t buf[8] = {};
    LDP_CommHelloParamTlv comm = {{0x0400, 4}, 0x0102, 0x8000};
    EXPECT_EQ(LDP_EncodeCommHelloParamTlv(buf, &comm, 0, 8), LDP_OK);
    EXPECT_EQ(to_hex(buf, 8), "04 00 00 04 01 02 80 00");
    EXPECT_EQ(comm.stCommHelloTlv.usTlvType, 0x0004) << "type stays swapped";
    EXPECT_EQ(comm.stCommHelloTlv.usTlvLen, 4) << "length is given back";
    EXPECT_EQ(comm.usHoldTime, 0x0201);
    expect_no_assertions();

    std::memset(buf, 0, sizeof buf);
    LDP_CommHelloParamTlv comm2 = {{0x0400, 4}, 15, 0};
    EXPECT_EQ(LDP_EncodeCommHelloParamTlv(buf, &comm2, 0, 7), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    EXPECT_EQ(to_hex(buf, 8), "04 00 00 04 00 00 00 00") << "the header went out first";

    testplat::reset();
    LDP_CommHelloParamTlv comm3 = {{0x0400, 4}, 15, 0};
    EXPECT_EQ(LDP_EncodeCommHelloParamTlv(buf, &comm3, 0, 3), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
}

TEST_F(HelloTest, EncodingConsumesTheRecord)
{
    // After encoding, the record's TLV types and values read in network order;
    // only the TLV lengths come back in host order.
    LDP_HelloMsg *rec = hello_record(12 + 8 + 20 + 8 + 6, 0x0f);
    uint8_t buf[12 + 8 + 20 + 8 + 6 + 4] = {};
    ASSERT_EQ(LDP_EncodeHelloMsg(buf, rec, 0, sizeof buf), LDP_OK);
    EXPECT_EQ(rec->ulIpv4TransAddr, 0x0100000au);
    EXPECT_EQ(rec->ulConfSeqNum, 0x04030201u);
    EXPECT_EQ(rec->usHoldTime, 0x0f00);
    EXPECT_EQ(rec->stIpv4TransTlv.usTlvType, 0x0104);
    EXPECT_EQ(rec->stIpv4TransTlv.usTlvLen, 4);
    EXPECT_EQ(rec->stConfSeqTlv.usTlvType, 0x0204);
    EXPECT_EQ(rec->stPrivHelloTlv.usTlvLen, 2);
    LDP_FreeMessage(rec);
}

} // namespace
} // namespace ldptest
