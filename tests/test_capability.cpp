// Capability message: which TLVs are kept, dropped or refused, the record's
// element list and flag, allocation failures, encoding of the list and its
// room checks, release, and a random walk over capability-shaped bodies.
#include <algorithm>
#include <random>

#include "support.hpp"

namespace ldptest {
namespace {

struct walk_case {
    const char *name;
    const char *wire;
    uint32_t rc;
    uint32_t elements; // listed by a successful decode
};

// Pre-parse, decoder and LDP_Decode agree on every Capability message.
const walk_case kWalkCases[] = {
    {"NoTlvs", "02 02 00 04 00 00 00 01", LDP_OK, 0},
    {"UBitTypeWord", "82 02 00 04 00 00 00 01", LDP_OK, 0},
    {"OneStrayByte", "02 02 00 05 00 00 00 01 85", LDP_STATUS_BAD_TLV_LEN, 0},
    {"TwoStrayBytes", "02 02 00 06 00 00 00 01 85 0a", LDP_STATUS_BAD_TLV_LEN, 0},
    {"ThreeStrayBytes", "02 02 00 07 00 00 00 01 85 0a 00", LDP_STATUS_BAD_TLV_LEN, 0},
    {"MbbAnnounced", "02 02 00 09 00 00 00 01 85 0a 00 01 80", LDP_OK, 1},
    {"MbbWithdrawn", "02 02 00 09 00 00 00 01 05 0a 00 01 00", LDP_OK, 1},
    {"MbbLength2", "02 02 00 0a 00 00 00 01 85 0a 00 02 80 00", LDP_STATUS_BAD_TLV_LEN, 0},
    {"MbbLength0", "02 02 00 08 00 00 00 01 85 0a 00 00", LDP_STATUS_BAD_TLV_LEN, 0},
    {"DynamicCapSkipped", "02 02 00 09 00 00 00 01 85 06 00 01 80", LDP_OK, 0},
    {"DynamicCapLength0Skipped", "02 02 00 08 00 00 00 01 05 06 00 00", LDP_OK, 0},
    {"DynamicCapLength3Skipped", "02 02 00 0b 00 00 00 01 05 06 00 03 80 01 02", LDP_OK, 0},
    {"UnknownWithoutUBit", "02 02 00 08 00 00 00 01 01 23 00 00", LDP_STATUS_UNKNOWN_TLV, 0},
    {"UnknownWithFBitOnly", "02 02 00 08 00 00 00 01 41 23 00 00", LDP_STATUS_UNKNOWN_TLV, 0},
    {"UnknownWithUBitSkipped", "02 02 00 08 00 00 00 01 81 23 00 00", LDP_OK, 0},
    {"P2mpCapIsUnknownHere", "02 02 00 09 00 00 00 01 05 08 00 01 80", LDP_STATUS_UNKNOWN_TLV, 0},
    {"OverrunTestedBeforeType", "02 02 00 08 00 00 00 01 01 23 00 01", LDP_STATUS_BAD_TLV_LEN, 0},
    {"MbbOverrun", "02 02 00 09 00 00 00 01 85 0a 00 02 80", LDP_STATUS_BAD_TLV_LEN, 0},
    {"TwoMbb", "02 02 00 0e 00 00 00 01 85 0a 00 01 80 85 0a 00 01 00", LDP_OK, 2},
    {"StrayBytesAfterMbb", "02 02 00 0b 00 00 00 01 85 0a 00 01 80 00 00", LDP_STATUS_BAD_TLV_LEN, 0},
    {"MbbThenUnknown", "02 02 00 0d 00 00 00 01 85 0a 00 01 80 01 23 00 00", LDP_STATUS_UNKNOWN_TLV, 0},
};

class CapabilityWalk : public CodecTest, public ::testing::WithParamInterface<walk_case> {};

TEST_P(CapabilityWalk, PreParseDecoderAndEntryAgree)
{
    const walk_case &c = GetParam();
    const decoded d = expect_decode_paths<LDP_CapabilityMsg>(
        hex(c.wire), LDP_MSG_CAPABILITY, LDP_PreParseCapabilityMsg, LDP_DecodeCapabilityMsg, c.rc, c.rc,
        [](LDP_CapabilityMsg *r) { make_empty(&r->stCapList); });
    if (d.rec != nullptr) {
        EXPECT_EQ(static_cast<LDP_CapabilityMsg *>(d.rec)->stCapList.ulCount, c.elements);
        LDP_FreeMessage(d.rec);
    }
}

INSTANTIATE_TEST_SUITE_P(Capability, CapabilityWalk, ::testing::ValuesIn(kWalkCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using CapabilityTest = CodecTest;

const LDP_CapabilityParam &first_cap(const LDP_CapabilityMsg &m)
{
    return *reinterpret_cast<const LDP_CapabilityParam *>(m.stCapList.stHead.pNext);
}

TEST_F(CapabilityTest, ShortMessageIsMissingParametersToTheDirectCall)
{
    // LDP_Decode refuses a length below 4 itself (5); called directly the
    // message functions answer 22.
    const bytes msg = hex("02 02 00 03 00 00 00 01");
    EXPECT_EQ(LDP_PreParseCapabilityMsg(msg.data()), LDP_STATUS_MISSING_MSG_PARAMS);
    LDP_CapabilityMsg rec = {};
    EXPECT_EQ(LDP_DecodeCapabilityMsg(msg.data(), &rec, kModule), LDP_STATUS_MISSING_MSG_PARAMS);
    EXPECT_EQ(decode(msg).rc, LDP_STATUS_BAD_MSG_LEN);
}

TEST_F(CapabilityTest, EmptyMessageRecord)
{
    const decoded d = decode(hex("02 02 00 04 00 00 00 07"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_CapabilityMsg *>(d.rec);
    EXPECT_EQ(rec->stMsgHeader.ulMsgId, 7u);
    EXPECT_TRUE(is_empty(rec->stCapList));
    EXPECT_EQ(rec->ulCapFlags, 0u);
    LDP_FreeMessage(d.rec);
}

TEST_F(CapabilityTest, AnnouncedMbbSetsTheFlag)
{
    const decoded d = decode(hex("02 02 00 09 00 00 00 01 c5 0a 00 01 81"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_CapabilityMsg *>(d.rec);
    EXPECT_EQ(rec->ulCapFlags, LDP_CAPMSG_MBB_ANNOUNCED);
    ASSERT_EQ(rec->stCapList.ulCount, 1u);
    EXPECT_EQ(first_cap(*rec).stTlvHeader.usTlvType, 0xc50a);
    EXPECT_EQ(first_cap(*rec).stTlvHeader.usTlvLen, 1);
    EXPECT_EQ(first_cap(*rec).ucSByte, 0x81);
    EXPECT_EQ(first_cap(*rec).pucCapData, nullptr);
    LDP_FreeMessage(d.rec);
}

TEST_F(CapabilityTest, WithdrawnMbbIsListedWithoutTheFlag)
{
    const decoded d = decode(hex("02 02 00 09 00 00 00 01 85 0a 00 01 00"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_CapabilityMsg *>(d.rec);
    EXPECT_EQ(rec->ulCapFlags, 0u);
    EXPECT_EQ(rec->stCapList.ulCount, 1u);
    LDP_FreeMessage(d.rec);
}

TEST_F(CapabilityTest, TwoElementsInWireOrder)
{
    const decoded d = decode(hex("02 02 00 0e 00 00 00 01 05 0a 00 01 00 85 0a 00 01 80"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_CapabilityMsg *>(d.rec);
    ASSERT_EQ(rec->stCapList.ulCount, 2u);
    const LDP_CapabilityParam &a = first_cap(*rec);
    const auto &b = *reinterpret_cast<const LDP_CapabilityParam *>(a.stNode.pNext);
    EXPECT_EQ(a.stTlvHeader.usTlvType, 0x050a);
    EXPECT_EQ(a.ucSByte, 0x00);
    EXPECT_EQ(b.stTlvHeader.usTlvType, 0x850a);
    EXPECT_EQ(b.ucSByte, 0x80);
    EXPECT_EQ(b.stNode.pNext, &rec->stCapList.stHead);
    EXPECT_EQ(rec->stCapList.pTail, &b.stNode);
    EXPECT_EQ(rec->ulCapFlags, LDP_CAPMSG_MBB_ANNOUNCED);
    LDP_FreeMessage(d.rec);
}

TEST_F(CapabilityTest, EveryAllocationFailureGives108)
{
    // Allocations: record, first element, second element.
    const bytes msg = hex("02 02 00 0e 00 00 00 01 85 0a 00 01 80 85 0a 00 01 00");
    for (size_t n = 1; n <= 3; ++n) {
        testplat::reset();
        testplat::fail_alloc_at(n);
        const decoded d = decode(msg);
        EXPECT_EQ(d.rc, LDP_ERR_NO_MEMORY) << n;
        EXPECT_EQ(d.rec, nullptr);
        EXPECT_EQ(testplat::live_blocks(), 0u) << n;
    }
}

TEST_F(CapabilityTest, ReleaseEmptiesTheListAndIgnoresOtherTypes)
{
    const decoded d = decode(hex("02 02 00 0e 00 00 00 01 85 0a 00 01 80 85 0a 00 01 00"));
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_CapabilityMsg *>(d.rec);
    // Data on an element is released too.
    auto *cap = reinterpret_cast<LDP_CapabilityParam *>(rec->stCapList.stHead.pNext);
    cap->pucCapData = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "t", 1));

    rec->stMsgHeader.usMsgType = LDP_MSG_INIT;
    LDP_FreeCapabilityMsg(rec);
    EXPECT_EQ(rec->stCapList.ulCount, 2u) << "not a Capability record: untouched";
    EXPECT_EQ(testplat::live_blocks(), 4u);

    rec->stMsgHeader.usMsgType = 0x8202;
    LDP_FreeCapabilityMsg(rec);
    EXPECT_TRUE(is_empty(rec->stCapList));
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_FreeMessage(rec);
    LDP_FreeCapabilityMsg(nullptr);
}

TEST_F(CapabilityTest, NullArgumentsReturn1Silently)
{
    const bytes msg = hex("02 02 00 04 00 00 00 01");
    LDP_CapabilityMsg rec = {};
    uint8_t buf[8];
    EXPECT_EQ(LDP_PreParseCapabilityMsg(nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCapabilityMsg(nullptr, &rec, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCapabilityMsg(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCapabilityMsg(nullptr, &rec, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCapabilityMsg(buf, nullptr, 0, 8), LDP_ERR_PARAM);
    expect_no_assertions();
}

LDP_CapabilityMsg *cap_record(uint16_t msg_len)
{
    auto *rec = new_record<LDP_CapabilityMsg>();
    make_empty(&rec->stCapList);
    rec->stMsgHeader = {LDP_MSG_CAPABILITY, msg_len, 5};
    return rec;
}

void add_cap(LDP_CapabilityMsg *rec, uint16_t type, uint16_t len, uint8_t s_byte)
{
    auto *cap = new_record<LDP_CapabilityParam>();
    cap->stTlvHeader = {type, len};
    cap->ucSByte = s_byte;
    append(&rec->stCapList, &cap->stNode);
}

TEST_F(CapabilityTest, EmptyListWritesTheHeaderOnly)
{
    const encoded e = encode(LDP_MSG_CAPABILITY, cap_record(4));
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "02 02 00 04 00 00 00 05");
    const encoded longer = encode(LDP_MSG_CAPABILITY, cap_record(8));
    ASSERT_EQ(longer.rc, LDP_OK);
    EXPECT_EQ(to_hex(longer.wire), "02 02 00 08 00 00 00 05 00 00 00 00");
}

TEST_F(CapabilityTest, EveryElementIsWrittenWhateverItsType)
{
    LDP_CapabilityMsg *rec = cap_record(14);
    add_cap(rec, 0x850a, 1, 0x80);
    add_cap(rec, 0x8508, 1, 0x00); // not something a decode keeps, still written
    const encoded e = encode(LDP_MSG_CAPABILITY, rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "02 02 00 0e 00 00 00 05 85 0a 00 01 80 85 08 00 01 00");
    expect_no_assertions();
}

TEST_F(CapabilityTest, EncoderRoomBoundaries)
{
    // 18 bytes fit exactly; a room cut at each byte of the second element,
    // and at the first, fails with one assertion.
    uint8_t buf[18];
    for (uint16_t room : {18, 17, 14, 13, 12, 9, 8}) {
        testplat::reset();
        LDP_CapabilityMsg *rec = cap_record(14);
        add_cap(rec, 0x850a, 1, 0x80);
        add_cap(rec, 0x850a, 1, 0x00);
        const uint32_t rc = LDP_EncodeCapabilityMsg(buf, rec, 0, room);
        if (room == 18) {
            EXPECT_EQ(rc, LDP_OK);
            EXPECT_EQ(to_hex(buf, 18), "02 02 00 0e 00 00 00 05 85 0a 00 01 80 85 0a 00 01 00");
            expect_no_assertions();
        } else {
            EXPECT_EQ(rc, LDP_ERR_PARAM) << room;
            expect_one_assertion("ldp_enc");
        }
        LDP_FreeMessage(rec);
    }
    // Through the entry point: one byte short of the second element.
    testplat::reset();
    LDP_CapabilityMsg *rec = cap_record(13);
    add_cap(rec, 0x850a, 1, 0x80);
    add_cap(rec, 0x850a, 1, 0x00);
    const encoded e = encode(LDP_MSG_CAPABILITY, rec);
    EXPECT_EQ(e.rc, LDP_ERR_PARAM);
    EXPECT_FALSE(e.has_buf);
    expect_one_assertion("ldp_enc");
}

TEST_F(CapabilityTest, EncoderLengthRuleHasNoAssertion)
{
    static uint8_t buf[4096];
    for (uint16_t len : {0, 3, 4087}) {
        LDP_CapabilityMsg *rec = cap_record(len);
        EXPECT_EQ(LDP_EncodeCapabilityMsg(buf, rec, 0, sizeof buf), LDP_ERR_PARAM) << len;
        LDP_FreeMessage(rec);
    }
    expect_no_assertions();
}

TEST_F(CapabilityTest, RoundTrip)
{
    const bytes msg = hex("82 02 00 0e 12 34 56 78 85 0a 00 01 80 c5 0a 00 01 00");
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_CAPABILITY, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(e.wire, msg);
}

// Random bodies made of capability-like TLVs (types near 0x0506-0x050b with
// random U/F bits and short, sometimes wrong, lengths) for the three session
// messages that list capabilities or skip TLVs.
TEST_F(CapabilityTest, RandomSessionBodiesGiveDocumentedCodes)
{
    std::mt19937 rng(5561);
    std::uniform_int_distribution<int> byte(0, 255);
    const uint16_t msg_types[] = {0x0100, 0x0200, 0x0202};
    const char *heads[] = {"04 00 00 04 00 0f 80 00", "05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00",
                           ""};
    for (int i = 0; i < 5000; ++i) {
        const size_t k = size_t(std::uniform_int_distribution<int>(0, 2)(rng));
        bytes body = hex(heads[k]);
        const int tlvs = std::uniform_int_distribution<int>(0, 5)(rng);
        for (int t = 0; t < tlvs; ++t) {
            const int len = std::uniform_int_distribution<int>(0, 4)(rng);
            const uint16_t type = uint16_t((byte(rng) & 0xc0) << 8 | (0x0500 + (byte(rng) & 0x0f)));
            const int claimed = byte(rng) < 20 ? byte(rng) : len;
            for (int v : {type >> 8, type & 0xff, claimed >> 8, claimed & 0xff}) {
                body.push_back(uint8_t(v));
            }
            for (int j = 0; j < len; ++j) {
                body.push_back(uint8_t(byte(rng)));
            }
        }
        const uint16_t msg_len = uint16_t(body.size() + 4);
        // Filled in place (GCC 12 warns falsely on an insert here).
        bytes msg(8 + body.size());
        msg[0] = uint8_t(msg_types[k] >> 8);
        msg[1] = uint8_t(msg_types[k]);
        msg[2] = uint8_t(msg_len >> 8);
        msg[3] = uint8_t(msg_len);
        msg[7] = 1;
        std::copy(body.begin(), body.end(), msg.begin() + 8);
        if (byte(rng) < 16) {
            testplat::fail_alloc_at(size_t(std::uniform_int_distribution<int>(1, 4)(rng)));
        }
        const decoded d = decode(msg);
        EXPECT_TRUE(is_documented_code(d.rc)) << to_hex(msg);
        if (d.rc == LDP_OK) {
            LDP_FreeMessage(d.rec);
        } else {
            EXPECT_EQ(d.rec, nullptr);
        }
        testplat::reset();
        ASSERT_EQ(testplat::live_blocks(), 0u) << to_hex(msg);
    }
}

} // namespace
} // namespace ldptest
