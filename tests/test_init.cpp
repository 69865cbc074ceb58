// Initialization: the Common Session Parameters TLV, the optional FT Session
// and Capability Parameter TLVs, the codes where pre-parse and decoder part
// ways, allocation failures, the encoder's TLV order and room checks, and
// release.
#include <cstring>
#include <string>

#include "support.hpp"

namespace ldptest {
namespace {

// Header with message ID 1 and the Common Session Parameters TLV: version 1,
// KeepAlive 180 s, A bit, PVLim 0, max PDU 4096, receiver 10.0.0.2:0.
const std::string kCommSess = "05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00";

bytes init_msg(uint16_t msg_len, const std::string &tlvs, const std::string &first = kCommSess)
{
    char head[32];
    std::snprintf(head, sizeof head, "02 00 %02x %02x 00 00 00 01 ", msg_len >> 8, msg_len & 0xff);
    return hex(head + first + " " + tlvs);
}

struct walk_case {
    const char *name;
    uint16_t msg_len;
    const char *tlvs;
    uint32_t pre_rc; // pre-parse, and LDP_Decode when not 0
    uint32_t dec_rc; // decoder, and LDP_Decode after a passing pre-parse
};

const walk_case kWalkCases[] = {
    {"CommonSessionOnly", 22, "", LDP_OK, LDP_OK},
    {"ThreeStrayBytes", 25, "00 00 00", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    {"OneStrayByte", 23, "00", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    {"FtSession", 38, "05 03 00 0c 80 00 00 00 00 00 ea 60 00 01 d4 c0", LDP_OK, LDP_OK},
    {"FtSessionLength11", 37, "05 03 00 0b 80 00 00 00 00 00 ea 60 00 01 d4", LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"DynamicCapLength1", 27, "05 06 00 01 80", LDP_OK, LDP_OK},
    {"DynamicCapLength0", 26, "05 06 00 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV},
    {"P2mpCapLength2", 28, "05 08 00 02 80 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_BAD_TLV_LEN},
    {"Mp2mpCapLength0", 26, "05 09 00 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_BAD_TLV_LEN},
    {"MbbCapLength2", 28, "85 0a 00 02 80 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_BAD_TLV_LEN},
    {"TypedWildcardCapLength2", 28, "05 0b 00 02 80 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_BAD_TLV_LEN},
    {"AllCapabilities", 47, "05 06 00 01 80 05 08 00 01 80 05 09 00 01 00 85 0a 00 01 80 c5 0b 00 01 80",
     LDP_OK, LDP_OK},
    {"AtmSessionRefused", 38, "05 01 00 0c 84 00 00 00 00 00 00 20 00 00 00 ff", LDP_STATUS_UNKNOWN_TLV,
     LDP_STATUS_UNKNOWN_TLV},
    {"AtmSessionWithUBitSkipped", 38, "85 01 00 0c 84 00 00 00 00 00 00 20 00 00 00 ff", LDP_OK, LDP_OK},
    {"FrSessionRefused", 38, "05 02 00 0c 84 00 00 00 00 00 00 20 00 00 00 ff", LDP_STATUS_UNKNOWN_TLV,
     LDP_STATUS_UNKNOWN_TLV},
    {"UnknownWithUBitAtTheEnd", 28, "81 23 00 02 ab cd", LDP_OK, LDP_OK},
    {"UnknownWithUAndFBits", 28, "c1 23 00 02 ab cd", LDP_OK, LDP_OK},
    {"UnknownWithFBitOnly", 28, "41 23 00 02 ab cd", LDP_STATUS_UNKNOWN_TLV, LDP_STATUS_UNKNOWN_TLV},
    {"UnknownWithoutBits", 26, "01 23 00 00", LDP_STATUS_UNKNOWN_TLV, LDP_STATUS_UNKNOWN_TLV},
    {"LengthTestedBeforeType", 28, "01 23 00 03 ab cd", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    {"LastTlvOneByteOver", 32, "05 06 00 01 80 81 23 00 02 ab", LDP_STATUS_BAD_TLV_LEN,
     LDP_STATUS_BAD_TLV_LEN},
    {"StrayBytesAfterATlv", 29, "05 06 00 01 80 00 00", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    {"CapabilityBeforeBadTlv", 31, "05 08 00 01 80 01 23 00 00", LDP_STATUS_UNKNOWN_TLV,
     LDP_STATUS_UNKNOWN_TLV},
};

class InitWalk : public CodecTest, public ::testing::WithParamInterface<walk_case> {};

TEST_P(InitWalk, PreParseDecoderAndEntry)
{
    const walk_case &c = GetParam();
    const bytes msg = init_msg(c.msg_len, c.tlvs);
    ASSERT_EQ(msg.size(), size_t(c.msg_len) + 4) << "test data";
    const decoded d = expect_decode_paths<LDP_InitMsg>(msg, LDP_MSG_INIT, LDP_PreParseInitMsg, LDP_DecodeInitMsg,
                                                       c.pre_rc, c.dec_rc, [](LDP_InitMsg *r) {
                                                           make_empty(&r->stAtmSess.stRangeList);
                                                           make_empty(&r->stFrSess.stRangeList);
                                                           make_empty(&r->stCapList);
                                                       });
    LDP_FreeMessage(d.rec);
}

INSTANTIATE_TEST_SUITE_P(Init, InitWalk, ::testing::ValuesIn(kWalkCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

struct first_tlv_case {
    const char *name;
    uint16_t msg_len;
    const char *first;
    uint32_t rc;
};

// Faults of the Common Session Parameters TLV, the same for all three.
const first_tlv_case kFirstTlvCases[] = {
    {"TooShort", 21, "05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00", LDP_STATUS_MISSING_MSG_PARAMS},
    {"FtSessionFirst", 22, "05 03 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00",
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"Length13", 22, "05 00 00 0d 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00", LDP_STATUS_MALFORMED_TLV},
    {"Length15", 23, "05 00 00 0f 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00 00", LDP_STATUS_MALFORMED_TLV},
    {"Length15Overruns", 22, "05 00 00 0f 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00", LDP_STATUS_BAD_TLV_LEN},
    {"OverrunTestedBeforeType", 22, "05 03 00 0f 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00",
     LDP_STATUS_BAD_TLV_LEN},
    {"UAndFBitsAccepted", 22, "c5 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00", LDP_OK},
};

class InitFirstTlv : public CodecTest, public ::testing::WithParamInterface<first_tlv_case> {};

TEST_P(InitFirstTlv, SameCodeEverywhere)
{
    const first_tlv_case &c = GetParam();
    const bytes msg = init_msg(c.msg_len, "", c.first);
    EXPECT_EQ(LDP_PreParseInitMsg(msg.data()), c.rc);
    LDP_InitMsg rec = {};
    EXPECT_EQ(LDP_DecodeInitMsg(msg.data(), &rec, kModule), c.rc);
    const decoded d = decode(msg);
    EXPECT_EQ(d.rc, c.rc);
    LDP_FreeMessage(d.rec);
}

INSTANTIATE_TEST_SUITE_P(Init, InitFirstTlv, ::testing::ValuesIn(kFirstTlvCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using InitTest = CodecTest;

const LDP_CapabilityParam &cap_at(const SLL_List &list, unsigned i)
{
    const SLL_Node *n = list.stHead.pNext;
    while (i-- > 0) {
        n = n->pNext;
    }
    return *reinterpret_cast<const LDP_CapabilityParam *>(n);
}

TEST_F(InitTest, MinimalRecord)
{
    const decoded d = decode(init_msg(22, ""));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_InitMsg *>(d.rec);
    const LDP_CommSessParamTlv &cs = rec->stCommSess;
    EXPECT_EQ(cs.stTlvHeader.usTlvType, 0x0500);
    EXPECT_EQ(cs.stTlvHeader.usTlvLen, 14);
    EXPECT_EQ(cs.usProtocolVersion, 1);
    EXPECT_EQ(cs.usKeepAliveTime, 180);
    EXPECT_EQ(cs.usAdPvLim, 0x8000);
    EXPECT_EQ(cs.usMaxPduLen, 4096);
    EXPECT_EQ(cs.ulReceiverLsrId, 0x0a000002u);
    EXPECT_EQ(cs.usReceiverLabelSpace, 0);
    EXPECT_TRUE(is_empty(rec->stCapList));
    EXPECT_TRUE(is_empty(rec->stAtmSess.stRangeList));
    EXPECT_TRUE(is_empty(rec->stFrSess.stRangeList));
    EXPECT_EQ(rec->ucOptFlags, 0);
    EXPECT_EQ(rec->ucOptFlags2, 0);
    LDP_FreeMessage(d.rec);
}

TEST_F(InitTest, AdPvLimIsOneWord)
{
    const decoded d = decode(init_msg(22, "", "05 00 00 0e 00 01 00 b4 c0 ff 10 00 0a 00 00 02 00 07"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_InitMsg *>(d.rec);
    EXPECT_EQ(rec->stCommSess.usAdPvLim, 0xc0ff) << "A and D in the top bits, PVLim in the low byte";
    EXPECT_EQ(rec->stCommSess.usReceiverLabelSpace, 7);
    LDP_FreeMessage(d.rec);
}

TEST_F(InitTest, FtSessionKeepsTheLastOne)
{
    const decoded d = decode(init_msg(54, "05 03 00 0c 00 01 00 00 00 00 ea 60 00 01 d4 c0"
                                          " 85 03 00 0c 80 00 ab cd 00 00 00 01 00 00 00 02"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_InitMsg *>(d.rec);
    EXPECT_EQ(rec->ucOptFlags, LDP_INIT_OPT_FT_SESS);
    EXPECT_EQ(rec->stFtSess.stTlvHeader.usTlvType, 0x8503);
    EXPECT_EQ(rec->stFtSess.usFtFlags, 0x8000);
    EXPECT_EQ(rec->stFtSess.usFtReserved, 0xabcd);
    EXPECT_EQ(rec->stFtSess.ulFtReconnectTimeout, 1u);
    EXPECT_EQ(rec->stFtSess.ulFtRecoveryTime, 2u);
    LDP_FreeMessage(d.rec);
}

TEST_F(InitTest, CapabilitiesAreListedInWireOrderWithTheirFlags)
{
    const decoded d = decode(init_msg(54, "05 06 00 03 80 ab cd 05 08 00 01 80 05 09 00 01 00"
                                          " 85 0a 00 01 80 c5 0b 00 01 ff 05 08 00 01 00"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_InitMsg *>(d.rec);
    ASSERT_EQ(rec->stCapList.ulCount, 6u);
    // MP2MP arrived withdrawn: listed, no flag. The second P2MP withdrawal
    // leaves the P2MP flag set.
    EXPECT_EQ(rec->ucOptFlags, LDP_INIT_OPT_P2MP_CAP | LDP_INIT_OPT_MBB_CAP | LDP_INIT_OPT_TYPED_WC_CAP);
    EXPECT_EQ(rec->ucOptFlags2, LDP_INIT_OPT2_DYNAMIC_CAP);
    const uint16_t types[] = {0x0506, 0x0508, 0x0509, 0x850a, 0xc50b, 0x0508};
    const uint8_t s_bytes[] = {0x80, 0x80, 0x00, 0x80, 0xff, 0x00};
    for (unsigned i = 0; i < 6; ++i) {
        const LDP_CapabilityParam &cap = cap_at(rec->stCapList, i);
        EXPECT_EQ(cap.stTlvHeader.usTlvType, types[i]) << i;
        EXPECT_EQ(cap.ucSByte, s_bytes[i]) << i;
        if (i == 0) {
            EXPECT_EQ(cap.stTlvHeader.usTlvLen, 3);
            ASSERT_NE(cap.pucCapData, nullptr);
            EXPECT_EQ(to_hex(cap.pucCapData, 2), "ab cd");
        } else {
            EXPECT_EQ(cap.pucCapData, nullptr) << i;
        }
    }
    EXPECT_EQ(rec->stCapList.pTail, &cap_at(rec->stCapList, 5).stNode);
    LDP_FreeMessage(d.rec);
}

TEST_F(InitTest, EveryAllocationFailureGivesItsCodeAndLeavesNothing)
{
    // Allocations: record, element, its 2 data bytes, element, element.
    const bytes msg = init_msg(39, "05 06 00 03 80 ab cd 05 08 00 01 80 05 0a 00 01 80");
    const uint32_t expected[] = {LDP_ERR_NO_MEMORY, LDP_ERR_NO_MEMORY, LDP_ERR_PARAM, LDP_ERR_NO_MEMORY,
                                 LDP_ERR_NO_MEMORY};
    for (size_t n = 1; n <= 5; ++n) {
        testplat::reset();
        testplat::fail_alloc_at(n);
        const decoded d = decode(msg);
        EXPECT_EQ(d.rc, expected[n - 1]) << "allocation " << n;
        EXPECT_EQ(d.rec, nullptr);
        EXPECT_EQ(testplat::live_blocks(), 0u) << "allocation " << n;
    }
    testplat::reset();
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(testplat::alloc_calls(), 5u);
    for (uint32_t m : testplat::modules_seen()) {
        EXPECT_EQ(m, kModule);
    }
    for (const std::string &f : testplat::alloc_files()) {
        EXPECT_EQ(f, "ldp_dec");
    }
    LDP_FreeMessage(d.rec);
}

TEST_F(InitTest, ReleaseEmptiesEveryList)
{
    const decoded d = decode(init_msg(34, "05 06 00 03 80 ab cd 05 08 00 01 80"));
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_InitMsg *>(d.rec);
    auto *range = static_cast<LDP_LabelRangeComponent *>(PLAT_SimpleAlloc_F(kModule, sizeof(LDP_LabelRangeComponent), "t", 1));
    append(&rec->stAtmSess.stRangeList, &range->stNode);
    LDP_FreeInitMsg(rec);
    EXPECT_TRUE(is_empty(rec->stCapList));
    EXPECT_TRUE(is_empty(rec->stAtmSess.stRangeList));
    EXPECT_TRUE(is_empty(rec->stFrSess.stRangeList));
    EXPECT_EQ(testplat::live_blocks(), 1u) << "only the record is left";
    LDP_FreeInitMsg(rec); // a second call finds nothing to do
    LDP_FreeMessage(rec);
}

TEST_F(InitTest, ReleaseOfAnotherTypeDoesNothing)
{
    const decoded d = decode(init_msg(27, "05 08 00 01 80"));
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_InitMsg *>(d.rec);
    rec->stMsgHeader.usMsgType = LDP_MSG_CAPABILITY;
    LDP_FreeInitMsg(rec);
    EXPECT_EQ(rec->stCapList.ulCount, 1u);
    EXPECT_EQ(testplat::live_blocks(), 2u);
    rec->stMsgHeader.usMsgType = 0x8200; // U bit ignored
    LDP_FreeInitMsg(rec);
    EXPECT_TRUE(is_empty(rec->stCapList));
    LDP_FreeMessage(rec);
    LDP_FreeInitMsg(nullptr);
}

TEST_F(InitTest, NullArgumentsReturn1Silently)
{
    const bytes msg = init_msg(22, "");
    LDP_InitMsg rec = {};
    LDP_CommSessParamTlv cs = {};
    LDP_FtSessParamTlv ft = {};
    LDP_LabelRangeSessParamTlv atm = {};
    LDP_CapabilityParam cap = {};
    uint8_t buf[64];
    EXPECT_EQ(LDP_PreParseInitMsg(nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeInitMsg(nullptr, &rec, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeInitMsg(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCommSessParamTlv(nullptr, &cs, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCommSessParamTlv(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeFTSessParamTlv(nullptr, &ft, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeFTSessParamTlv(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(nullptr, &atm, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCapabilityParamTlv(nullptr, &cap, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeCapabilityParamTlv(msg.data(), nullptr, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeInitMsg(nullptr, &rec, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeInitMsg(buf, nullptr, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCommSessParamTlv(nullptr, &cs, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCommSessParamTlv(buf, nullptr, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeATMSessParamTlv(nullptr, &atm, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeFRSessParamTlv(buf, nullptr, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeFTSessParamTlv(nullptr, &ft, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeFTSessParamTlv(buf, nullptr, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(nullptr, &cap, 0, 64), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, nullptr, 0, 64), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(InitTest, TlvValueDecodersCheckTheirLength)
{
    const bytes value = hex("00 01 00 b4 80 00 10 00 0a 00 00 02 00 00 00");
    LDP_CommSessParamTlv cs = {{0x0500, 15}, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(LDP_DecodeCommSessParamTlv(value.data(), &cs, 0), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(cs.usProtocolVersion, 0);
    LDP_FtSessParamTlv ft = {{0x0503, 11}, 0, 0, 0, 0};
    EXPECT_EQ(LDP_DecodeFTSessParamTlv(value.data(), &ft, 0), LDP_STATUS_MALFORMED_TLV);
    LDP_CapabilityParam cap = {};
    cap.stTlvHeader = {0x0506, 0};
    EXPECT_EQ(LDP_DecodeCapabilityParamTlv(value.data(), &cap, 0), LDP_STATUS_MALFORMED_TLV);
}

TEST_F(InitTest, AtmSessionDecoder)
{
    // M = 1, N = 2, D = 0, then two ranges.
    const bytes value = hex("48 00 00 00 00 10 00 20 00 10 00 ff 00 20 00 20 00 20 01 ff");
    LDP_LabelRangeSessParamTlv atm = {};
    make_empty(&atm.stRangeList);
    atm.stTlvHeader = {0x0501, 20};
    ASSERT_EQ(LDP_DecodeATMSessParamTlv(value.data(), &atm, kModule), LDP_OK);
    EXPECT_EQ(atm.ulMndWord, 0x48000000u);
    ASSERT_EQ(atm.stRangeList.ulCount, 2u);
    const auto *r1 = reinterpret_cast<const LDP_LabelRangeComponent *>(atm.stRangeList.stHead.pNext);
    const auto *r2 = reinterpret_cast<const LDP_LabelRangeComponent *>(r1->stNode.pNext);
    EXPECT_EQ(r1->ulRangeMin, 0x00100020u);
    EXPECT_EQ(r1->ulRangeMax, 0x001000ffu);
    EXPECT_EQ(r2->ulRangeMin, 0x00200020u);
    EXPECT_EQ(r2->ulRangeMax, 0x002001ffu);
    SLL_FreeAll(&atm.stRangeList, LDP_MemFreeCallBack);

    // Length must be 4 + 8 N; the word is kept even then.
    LDP_LabelRangeSessParamTlv bad = {};
    make_empty(&bad.stRangeList);
    bad.stTlvHeader = {0x0501, 12};
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(value.data(), &bad, kModule), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(bad.ulMndWord, 0x48000000u);
    bad.stTlvHeader.usTlvLen = 3;
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(value.data(), &bad, kModule), LDP_STATUS_MALFORMED_TLV);

    const bytes none = hex("40 00 00 00");
    bad.stTlvHeader.usTlvLen = 4;
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(none.data(), &bad, kModule), LDP_OK);
    EXPECT_TRUE(is_empty(bad.stRangeList));

    // A failed second allocation leaves the first range listed.
    testplat::fail_alloc_at(2);
    EXPECT_EQ(LDP_DecodeATMSessParamTlv(value.data(), &atm, kModule), LDP_ERR_NO_MEMORY);
    EXPECT_EQ(atm.stRangeList.ulCount, 1u);
    SLL_FreeAll(&atm.stRangeList, LDP_MemFreeCallBack);
}

TEST_F(InitTest, CapabilityDataAllocationFailureIs1)
{
    const bytes value = hex("80 ab cd");
    LDP_CapabilityParam cap = {};
    cap.stTlvHeader = {0x0506, 3};
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_DecodeCapabilityParamTlv(value.data(), &cap, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(cap.ucSByte, 0x80);
    EXPECT_EQ(cap.pucCapData, nullptr);
}

// ---------------------------------------------------------------- encode

LDP_CapabilityParam *new_cap(uint16_t type, uint16_t len, uint8_t s_byte, const char *data = nullptr)
{
    auto *cap = new_record<LDP_CapabilityParam>();
    cap->stTlvHeader = {type, len};
    cap->ucSByte = s_byte;
    if (data != nullptr) {
        const bytes b = hex(data);
        cap->pucCapData = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(b.size()), "t", 1));
        std::memcpy(cap->pucCapData, b.data(), b.size());
    }
    return cap;
}

LDP_LabelRangeComponent *new_range(uint32_t min, uint32_t max)
{
    auto *r = new_record<LDP_LabelRangeComponent>();
    r->ulRangeMin = min;
    r->ulRangeMax = max;
    return r;
}

LDP_InitMsg *init_record(uint16_t msg_len, uint8_t flags)
{
    auto *rec = new_record<LDP_InitMsg>();
    make_empty(&rec->stAtmSess.stRangeList);
    make_empty(&rec->stFrSess.stRangeList);
    make_empty(&rec->stCapList);
    rec->stMsgHeader = {LDP_MSG_INIT, msg_len, 1};
    rec->stCommSess = {{LDP_TLV_COMMON_SESSION, 14}, 1, 180, 0x8000, 4096, 0x0a000002u, 0};
    rec->ucOptFlags = flags;
    rec->stAtmSess.stTlvHeader = {LDP_TLV_ATM_SESSION, 12};
    rec->stAtmSess.ulMndWord = 0x44000000u;
    rec->stFrSess.stTlvHeader = {LDP_TLV_FR_SESSION, 12};
    rec->stFrSess.ulMndWord = 0x04000000u;
    rec->stFtSess = {{LDP_TLV_FT_SESSION, 12}, 0x0001, 0xffff, 60000, 120000};
    return rec;
}

const char *kHead = "02 00 00 16 00 00 00 01 05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00";

TEST_F(InitTest, EncodesEveryTlvInFixedOrder)
{
    LDP_InitMsg *rec = init_record(22 + 16 + 16 + 16 + 5 + 7, 0x07 | 0x08);
    append(&rec->stAtmSess.stRangeList, &new_range(0x00000020, 0x000000ff)->stNode);
    append(&rec->stFrSess.stRangeList, &new_range(0x01000010, 0x010003ff)->stNode);
    append(&rec->stCapList, &new_cap(0x8508, 1, 0x80)->stNode);
    append(&rec->stCapList, &new_cap(0x8506, 3, 0x80, "ab cd")->stNode);
    const encoded e = encode(LDP_MSG_INIT, rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(hex("02 00 00 52 00 00 00 01 05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00"
                                         " 05 01 00 0c 44 00 00 00 00 00 00 20 00 00 00 ff"
                                         " 05 02 00 0c 04 00 00 00 01 00 00 10 01 00 03 ff"
                                         " 05 03 00 0c 00 01 00 00 00 00 ea 60 00 01 d4 c0"
                                         " 85 08 00 01 80 85 06 00 03 80 ab cd")))
        << "FT reserved bits go out as zero";
    expect_no_assertions();
}

TEST_F(InitTest, EveryRoomShortfallFailsWithOneAssertion)
{
    // 86 bytes fit exactly; each cut lands inside another TLV or field.
    const uint16_t full = 86;
    for (uint16_t room : {full, uint16_t(full - 1), uint16_t(79), uint16_t(75), uint16_t(74), uint16_t(70),
                          uint16_t(57), uint16_t(53), uint16_t(41), uint16_t(37), uint16_t(30), uint16_t(25),
                          uint16_t(11)}) {
        testplat::reset();
        LDP_InitMsg *rec = init_record(82, 0x07);
        append(&rec->stAtmSess.stRangeList, &new_range(0x00000020, 0x000000ff)->stNode);
        append(&rec->stFrSess.stRangeList, &new_range(0x01000010, 0x010003ff)->stNode);
        append(&rec->stCapList, &new_cap(0x8508, 1, 0x80)->stNode);
        append(&rec->stCapList, &new_cap(0x8506, 3, 0x80, "ab cd")->stNode);
        uint8_t buf[86] = {};
        const uint32_t rc = LDP_EncodeInitMsg(buf, rec, 0, room);
        if (room == full) {
            EXPECT_EQ(rc, LDP_OK);
            expect_no_assertions();
        } else {
            EXPECT_EQ(rc, LDP_ERR_PARAM) << room;
            expect_one_assertion("ldp_enc");
        }
        LDP_FreeMessage(rec);
    }
}

TEST_F(InitTest, CommonSessionOnlyAndLongerLength)
{
    const encoded e = encode(LDP_MSG_INIT, init_record(26, 0));
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(hex(std::string("02 00 00 1a") + (kHead + 11) + " 00 00 00 00")));
}

TEST_F(InitTest, LabelRangeEncoderEdges)
{
    // Flag set with an empty range list: refused, no assertion.
    const encoded e = encode(LDP_MSG_INIT, init_record(38, LDP_INIT_OPT_ATM_SESS));
    EXPECT_EQ(e.rc, LDP_ERR_PARAM);
    EXPECT_FALSE(e.has_buf);
    expect_no_assertions();

    uint8_t buf[16] = {};
    LDP_LabelRangeSessParamTlv fr = {{0x0502, 4}, 0x80000000u, {}};
    make_empty(&fr.stRangeList);
    EXPECT_EQ(LDP_EncodeFRSessParamTlv(buf, &fr, 0, 16), LDP_ERR_PARAM);
    EXPECT_EQ(to_hex(buf, 8), "05 02 00 04 80 00 00 00") << "header and word were written";

    // A count without a first element is taken as done.
    LDP_LabelRangeSessParamTlv odd = {{0x0501, 4}, 0, {}};
    odd.stRangeList.ulCount = 1;
    EXPECT_EQ(LDP_EncodeATMSessParamTlv(buf, &odd, 0, 16), LDP_OK);
    expect_no_assertions();
}

TEST_F(InitTest, CapabilityEncoderRoom)
{
    uint8_t buf[8] = {};
    LDP_CapabilityParam cap = {};
    cap.stTlvHeader = {0x050a, 1};
    cap.ucSByte = 0x80;
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, &cap, 0, 4), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");

    testplat::reset();
    cap.stTlvHeader = {0x050a, 1};
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, &cap, 0, 5), LDP_OK);
    EXPECT_EQ(to_hex(buf, 5), "05 0a 00 01 80");

    // Without data only five bytes go out, whatever the length says.
    testplat::reset();
    std::memset(buf, 0, sizeof buf);
    cap.stTlvHeader = {0x0506, 3};
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, &cap, 0, 5), LDP_OK);
    EXPECT_EQ(to_hex(buf, 8), "05 06 00 03 80 00 00 00");

    uint8_t data[2] = {0xab, 0xcd};
    cap.pucCapData = data;
    cap.stTlvHeader = {0x0506, 3};
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, &cap, 0, 6), LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    testplat::reset();
    cap.stTlvHeader = {0x0506, 3};
    EXPECT_EQ(LDP_EncodeCapabilityParamTlv(buf, &cap, 0, 7), LDP_OK);
    EXPECT_EQ(to_hex(buf, 7), "05 06 00 03 80 ab cd");
    expect_no_assertions();
}

TEST_F(InitTest, RoundTrip)
{
    const bytes msg = init_msg(55, "05 03 00 0c 00 01 00 00 00 00 ea 60 00 01 d4 c0"
                                   " 85 06 00 03 80 ab cd 85 08 00 01 80 c5 0b 00 01 00");
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_INIT, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(msg));
}

TEST_F(InitTest, SkippedTlvsAreNotReEncoded)
{
    const decoded d = decode(init_msg(30, "81 23 00 04 de ad be ef"));
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_INIT, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(init_msg(30, "00 00 00 00 00 00 00 00")));
}

} // namespace
} // namespace ldptest
