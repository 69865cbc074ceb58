// MP Status TLV (RFC 6388): validation and decoding of the one MBB status
// element the library understands, and encoding with its room checks.
#include "fec_support.hpp"

namespace ldptest {
namespace {

struct status_case {
    const char *name;
    const char *value;
    uint32_t rc;     // validation and decoding agree
    bool taken;      // the element flag after decoding
    uint8_t status;  // ucStatusCode after decoding
};

const status_case kStatusCases[] = {
    {"Empty", "", LDP_OK, false, 0},
    {"MbbRequest", "01 00 01 01", LDP_OK, true, 1},
    {"MbbAck", "01 00 01 02", LDP_OK, true, 2},
    {"Status0", "01 00 01 00", LDP_ERR_PARAM, true, 0},
    {"Status3", "01 00 01 03", LDP_ERR_PARAM, true, 3},
    {"StatusFF", "01 00 01 ff", LDP_ERR_PARAM, true, 0xff},
    {"ElementLength2", "01 00 02 01", LDP_ERR_PARAM, true, 0},
    {"ElementLength0", "01 00 00 01", LDP_ERR_PARAM, true, 0},
    {"OtherElementType", "02 00 01 07", LDP_OK, false, 0},
    {"LongerTlvUnread", "01 00 01 09 00", LDP_OK, false, 0},
    {"ShorterTlvUnread", "01 00 01", LDP_OK, false, 0},
    {"OneByte", "01", LDP_OK, false, 0},
};

// Cases show up by name in test listings.
void PrintTo(const status_case &c, std::ostream *os) { *os << c.name; }

class MpStatusValue : public CodecTest, public ::testing::WithParamInterface<status_case> {};

TEST_P(MpStatusValue, ValidateAndDecode)
{
    const status_case &c = GetParam();
    const exact v(hex(c.value));
    EXPECT_EQ(LDP_PreParseMpStatusTlv(v.data(), v.size()), c.rc) << "validation";

    LDP_MpStatusTlv rec = {};
    rec.stTlvHeader.usTlvType = LDP_TLV_MP_STATUS;
    rec.stTlvHeader.usTlvLen = v.size();
    EXPECT_EQ(LDP_DecodeMpStatusTlv(v.data(), &rec, kModule), c.rc) << "decoding";
    EXPECT_EQ((rec.ucElemFlags & LDP_MP_STATUS_ELEM_TAKEN) != 0, c.taken);
    EXPECT_EQ(rec.ucElemType, c.taken ? LDP_MP_STATUS_ELEM_MBB : 0u);
    EXPECT_EQ(rec.ucStatusCode, c.status);
    EXPECT_EQ(testplat::alloc_calls(), 0u);
    expect_no_assertions();
}

INSTANTIATE_TEST_SUITE_P(MpStatus, MpStatusValue, ::testing::ValuesIn(kStatusCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using MpStatusTest = CodecTest;

LDP_MpStatusTlv mbb_record(uint8_t status)
{
    LDP_MpStatusTlv rec = {};
    rec.stTlvHeader.usTlvType = LDP_TLV_MP_STATUS;
    rec.stTlvHeader.usTlvLen = 4;
    rec.usElemLen = 1;
    rec.ucElemType = LDP_MP_STATUS_ELEM_MBB;
    rec.ucStatusCode = status;
    rec.ucElemFlags = LDP_MP_STATUS_ELEM_TAKEN;
    return rec;
}

TEST_F(MpStatusTest, NullArguments)
{
    const exact v(hex("01 00 01 01"));
    LDP_MpStatusTlv rec = mbb_record(1);
    uint8_t buf[8];
    EXPECT_EQ(LDP_PreParseMpStatusTlv(nullptr, 4), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeMpStatusTlv(nullptr, &rec, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeMpStatusTlv(v.data(), nullptr, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeMpStatusTlv(nullptr, &rec, kModule, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeMpStatusTlv(buf, nullptr, kModule, 8), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(MpStatusTest, ZeroLengthLeavesTheRecordAlone)
{
    const exact v(hex("01 00 01 01"));
    LDP_MpStatusTlv rec = {};
    rec.usElemLen = 0x1234;
    rec.ucElemFlags = 0x80;
    EXPECT_EQ(LDP_DecodeMpStatusTlv(v.data(), &rec, kModule), LDP_OK);
    EXPECT_EQ(rec.usElemLen, 0x1234);
    EXPECT_EQ(rec.ucElemFlags, 0x80);
    EXPECT_EQ(rec.ucElemType, 0);
}

TEST_F(MpStatusTest, OtherFlagBitsAreKept)
{
    const exact v(hex("01 00 01 02"));
    LDP_MpStatusTlv rec = {};
    rec.stTlvHeader.usTlvLen = 4;
    rec.ucElemFlags = 0x84;
    EXPECT_EQ(LDP_DecodeMpStatusTlv(v.data(), &rec, kModule), LDP_OK);
    EXPECT_EQ(rec.ucElemFlags, 0x85);
    EXPECT_EQ(rec.usElemLen, 1);
}

// What each room writes for a full MBB record: the header at 4 bytes, then
// the element type, its length and the status byte in turn.
TEST_F(MpStatusTest, EveryRoom)
{
    const char *const expected[] = {
        "", "00", "00 00", "00 00 00", "09 6f 00 04", "09 6f 00 04 01", "09 6f 00 04 01 00",
        "09 6f 00 04 01 00 01", "09 6f 00 04 01 00 01 02",
    };
    for (uint16_t room = 0; room <= 8; ++room) {
        testplat::reset();
        LDP_MpStatusTlv rec = mbb_record(2);
        const written w = run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, room);
        EXPECT_EQ(to_hex(w.out), expected[room]) << room;
        if (room == 8) {
            EXPECT_EQ(w.rc, LDP_OK);
            expect_no_assertions();
        } else {
            EXPECT_EQ(w.rc, LDP_ERR_PARAM) << room;
            expect_one_assertion("ldp_enc");
        }
    }
}

TEST_F(MpStatusTest, UnflaggedRecordWritesTheHeaderOnly)
{
    LDP_MpStatusTlv rec = mbb_record(1);
    rec.ucElemFlags = 0x02;
    rec.stTlvHeader.usTlvLen = 5; // written as it stands
    const written w = run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, 4);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "09 6f 00 05");
    expect_no_assertions();
}

TEST_F(MpStatusTest, OneStatusByteWhateverTheElementLength)
{
    LDP_MpStatusTlv rec = mbb_record(1);
    rec.usElemLen = 3;
    const written w = run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, 10);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "09 6f 00 04 01 00 03 01 00 00");
}

TEST_F(MpStatusTest, EncodingConsumesTheType)
{
    LDP_MpStatusTlv rec = mbb_record(1);
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, 8).out), "09 6f 00 04 01 00 01 01");
    EXPECT_EQ(rec.stTlvHeader.usTlvLen, 4) << "the length is restored";
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, 8).out), "6f 09 00 04 01 00 01 01");
}

TEST_F(MpStatusTest, DecodeThenEncodeKeepsTheBytes)
{
    for (const char *tlv : {"09 6f 00 04 01 00 01 01", "c9 6f 00 04 01 00 01 02"}) {
        const bytes wire = hex(tlv);
        const exact v(bytes(wire.begin() + 4, wire.end()));
        LDP_MpStatusTlv rec = {};
        rec.stTlvHeader.usTlvType = uint16_t(wire[0] << 8 | wire[1]);
        rec.stTlvHeader.usTlvLen = 4;
        ASSERT_EQ(LDP_DecodeMpStatusTlv(v.data(), &rec, kModule), LDP_OK);
        const written w = run_tlv_encoder(LDP_EncodeMpStatusTlv, &rec, 8);
        EXPECT_EQ(w.rc, LDP_OK);
        EXPECT_EQ(w.out, wire);
    }
}

} // namespace
} // namespace ldptest
