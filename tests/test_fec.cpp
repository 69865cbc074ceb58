// FEC TLV: validation and decoding of Wildcard, Prefix and Host Address
// elements, the hand-over of pseudowire and multipoint elements, encoding
// with its room checks, and release of the element list.
#include "fec_support.hpp"

namespace ldptest {
namespace {

// One P2MP element (RFC 6388): IPv4 root 192.0.2.1, one Generic LSP ID.
constexpr const char kP2mp[] = "06 00 01 04 c0 00 02 01 00 07 01 00 04 00 00 00 2a";

struct value_case {
    const char *name;
    std::string value;
    uint32_t pre_rc; // LDP_PreParseFECTlv
    uint32_t dec_rc; // LDP_DecodeFECTlv
    size_t listed;   // elements on the list after decoding
};

const value_case kValueCases[] = {
    {"Wildcard", "01", LDP_OK, LDP_OK, 1},
    {"WildcardThenPrefix", "01 02 00 01 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"WildcardInTwoBytes", "01 00", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"PrefixThenWildcard", "02 00 01 00 01", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 1},
    {"DefaultRoute", "02 00 01 00", LDP_OK, LDP_OK, 1},
    {"Prefix16", "02 00 01 10 0a 01", LDP_OK, LDP_OK, 1},
    {"Prefix32", "02 00 01 20 0a 01 02 03", LDP_OK, LDP_OK, 1},
    {"Prefix17NeedsThreeBytes", "02 00 01 11 0a 01 80", LDP_OK, LDP_OK, 1},
    {"Prefix33", "02 00 01 21 0a 01 02 03 04", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"Ipv6Prefix32", "02 00 02 20 20 01 0d b8", LDP_OK, LDP_OK, 1},
    {"Ipv6Prefix128", "02 00 02 80 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01", LDP_OK, LDP_OK, 1},
    {"Ipv6Prefix129", "02 00 02 81 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01 00",
     LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"PrefixFamily3EvenWhenShort", "02 00 03 20 0a", LDP_STATUS_UNSUPPORTED_AF, LDP_STATUS_UNSUPPORTED_AF, 0},
    {"PrefixFamily0", "02 00 00 00", LDP_STATUS_UNSUPPORTED_AF, LDP_STATUS_UNSUPPORTED_AF, 0},
    {"PrefixBytesMissing", "02 00 01 18 0a 01", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN, 0},
    {"PrefixHeaderCut", "02 00 01", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN, 0},
    {"TwoPrefixes", "02 00 01 08 0a 02 00 01 10 ac 10", LDP_OK, LDP_OK, 2},
    {"LastElementCutShort", "02 00 01 08 0a 02 00 01 18 0a", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN, 1},
    {"HostIpv4", "03 00 01 04 0a 00 00 01", LDP_OK, LDP_OK, 1},
    {"HostIpv6", "03 00 02 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01", LDP_OK, LDP_OK, 1},
    {"HostIpv4Length16", "03 00 01 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
     LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"HostIpv6Length4", "03 00 02 04 0a 00 00 01", LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV, 0},
    {"HostLengthBeforeFamily", "03 00 07 08 01 02", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN, 0},
    {"HostFamily3", "03 00 03 04 0a 00 00 01", LDP_STATUS_UNSUPPORTED_AF, LDP_STATUS_UNSUPPORTED_AF, 0},
    {"HostHeaderCut", "03 00", LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN, 0},
    {"HostAndPrefix", "03 00 01 04 0a 00 00 01 02 00 01 08 0a", LDP_OK, LDP_OK, 2},
    {"PwidFirst", "80 00 00 00 00", LDP_STOP_WALK, LDP_STOP_WALK, 1},
    {"GeneralizedPwidFirst", "81 ff", LDP_STOP_WALK, LDP_STOP_WALK, 1},
    {"PwidAfterPrefix", "02 00 01 08 0a 80", LDP_STOP_WALK, LDP_STOP_WALK, 2},
    {"PwidBeforeGarbage", "80 00 ff ff", LDP_STOP_WALK, LDP_STOP_WALK, 1},
    {"Type0", "00", LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"Type4", "04 00 01 00", LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"Type5", "05", LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"Mp2mpUpstreamRefused", "07" + std::string(kP2mp + 2), LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"Mp2mpDownstreamRefused", "08" + std::string(kP2mp + 2), LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"Type82", "82", LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 0},
    {"UnknownAfterPrefix", "02 00 01 08 0a 05", LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC, 1},
    {"P2mpAlone", kP2mp, LDP_OK, LDP_OK, 1},
    // Only the decoder insists that a P2MP element stands alone.
    {"P2mpThenPrefix", std::string(kP2mp) + " 02 00 01 08 0a", LDP_OK, LDP_STATUS_MALFORMED_TLV, 2},
    {"PrefixThenP2mp", "02 00 01 08 0a " + std::string(kP2mp), LDP_OK, LDP_STATUS_MALFORMED_TLV, 2},
    {"P2mpIpv6RootRefused", "06 00 02 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01 00 03 05 00 00",
     LDP_STATUS_UNSUPPORTED_AF, LDP_STATUS_UNSUPPORTED_AF, 0},
};

// Cases show up by name in test listings.
void PrintTo(const value_case &c, std::ostream *os) { *os << c.name; }

class FecValue : public CodecTest, public ::testing::WithParamInterface<value_case> {};

TEST_P(FecValue, PreParseAndDecode)
{
    const value_case &c = GetParam();
    const bytes value = hex(c.value);
    const exact v(value);
    EXPECT_EQ(LDP_PreParseFECTlv(v.data(), v.size()), c.pre_rc) << "pre-parse";
    EXPECT_EQ(testplat::alloc_calls(), 0u) << "pre-parse allocates nothing";

    fec_tlv rec;
    EXPECT_EQ(rec.decode(value), c.dec_rc) << "decode";
    EXPECT_EQ(rec.elements().size(), c.listed);
    EXPECT_EQ(rec.tlv.stFecList.ulCount, c.listed);
    expect_no_assertions();
}

INSTANTIATE_TEST_SUITE_P(Fec, FecValue, ::testing::ValuesIn(kValueCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using FecTest = CodecTest;

TEST_F(FecTest, NullArgumentsAndEmptyValues)
{
    const exact v(hex("01"));
    EXPECT_EQ(LDP_PreParseFECTlv(nullptr, 1), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_PreParseFECTlv(v.data(), 0), LDP_STATUS_MALFORMED_TLV);
    fec_tlv rec;
    EXPECT_EQ(LDP_DecodeFECTlv(nullptr, &rec.tlv, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeFECTlv(v.data(), nullptr, kModule), LDP_ERR_PARAM);
    rec.tlv.stTlvHeader.usTlvLen = 0;
    EXPECT_EQ(LDP_DecodeFECTlv(v.data(), &rec.tlv, kModule), LDP_STATUS_MALFORMED_TLV);
    EXPECT_EQ(testplat::alloc_calls(), 0u);

    uint16_t size = 0;
    LDP_FecElementBody body = {};
    EXPECT_EQ(LDP_PreParsePrefixFecElement(nullptr, 4, &size), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_PreParseHostAddrFecElement(v.data(), 1, nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodePrefixFecElement(v.data(), 1, nullptr, &size, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeHostAddrFecElement(nullptr, 1, &body, &size, kModule), LDP_ERR_PARAM);

    uint8_t buf[8];
    uint8_t *cur = buf;
    uint8_t *null_cur = nullptr;
    uint16_t room = 8;
    EXPECT_EQ(LDP_EncodeFECTlv(nullptr, &rec.tlv, kModule, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeFECTlv(buf, nullptr, kModule, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodePrefixAddrFecElement(nullptr, &body, kModule, &room), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodePrefixAddrFecElement(&null_cur, &body, kModule, &room), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeHostAddrFecElement(&cur, nullptr, kModule, &room), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(FecTest, ElementSizes)
{
    struct {
        const char *elem;
        uint16_t left;
        uint32_t rc;
        uint16_t size;
    } cases[] = {
        {"02 00 01 00", 4, LDP_OK, 4},          {"02 00 01 09 0a 80", 6, LDP_OK, 6},
        {"02 00 01 18 0a 01 02 ff", 8, LDP_OK, 7}, {"02 00 01", 3, LDP_STATUS_BAD_TLV_LEN, 0},
        {"03 00 01 04 0a 00 00 01", 8, LDP_OK, 8},
        {"03 00 02 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01", 20, LDP_OK, 20},
        {"03 00 01", 3, LDP_STATUS_BAD_TLV_LEN, 0},
    };
    for (const auto &c : cases) {
        const exact e(hex(c.elem));
        uint16_t pre_size = 0xffff;
        uint16_t dec_size = 0xffff;
        LDP_FecElementBody body = {};
        const bool host = e.data()[0] == LDP_FEC_HOST_ADDR;
        const uint32_t pre = host ? LDP_PreParseHostAddrFecElement(e.data(), c.left, &pre_size)
                                  : LDP_PreParsePrefixFecElement(e.data(), c.left, &pre_size);
        const uint32_t dec = host ? LDP_DecodeHostAddrFecElement(e.data(), c.left, &body, &dec_size, kModule)
                                  : LDP_DecodePrefixFecElement(e.data(), c.left, &body, &dec_size, kModule);
        EXPECT_EQ(pre, c.rc) << c.elem;
        EXPECT_EQ(dec, c.rc) << c.elem;
        EXPECT_EQ(pre_size, c.size) << c.elem;
        EXPECT_EQ(dec_size, c.size) << c.elem;
    }
}

// What a decoded element records: kind, type, family, length byte and the
// 16 address bytes, zero beyond the address. A PWid element has only its kind.
TEST_F(FecTest, DecodedRecords)
{
    const char *const two = "02 00 01 10 0a 01 02 00 02 20 20 01 0d b8";
    struct {
        const char *value;
        size_t index;
        uint32_t rc;
        uint8_t kind;
        uint16_t family;
        uint8_t len;
        const char *addr;
    } cases[] = {
        {two, 0, LDP_OK, LDP_FEC_PREFIX, 1, 16, "0a 01"},
        {two, 1, LDP_OK, LDP_FEC_PREFIX, 2, 32, "20 01 0d b8"},
        {"02 00 01 00", 0, LDP_OK, LDP_FEC_PREFIX, 1, 0, ""},
        {"03 00 01 04 0a 00 00 01", 0, LDP_OK, LDP_FEC_HOST_ADDR, 1, 4, "0a 00 00 01"}, // length in bytes
        {"01", 0, LDP_OK, LDP_FEC_WILDCARD, 0, 0, ""},
        {"80 00 00 00 00 00 00 00", 0, LDP_STOP_WALK, LDP_FEC_PWID, 0, 0, ""},
    };
    for (const auto &c : cases) {
        fec_tlv rec;
        ASSERT_EQ(rec.decode(hex(c.value)), c.rc) << c.value;
        const auto elems = rec.elements();
        const LDP_FecElement *e = elems.at(c.index);
        bytes addr = hex(c.addr);
        addr.resize(16);
        EXPECT_EQ(e->ucFecKind, c.kind);
        EXPECT_EQ(e->stBody.ucFecType, c.kind == LDP_FEC_PWID ? 0 : c.kind);
        EXPECT_EQ(e->stBody.usAddrFamily, c.family);
        EXPECT_EQ(e->stBody.ucPrefixLen, c.len);
        EXPECT_EQ(to_hex(e->stBody.aucAddr, 16), to_hex(addr)) << c.value;
        EXPECT_EQ(e->stBody.pucOpaqueValue, nullptr);
        EXPECT_EQ(rec.tlv.stFecList.pTail, &elems.back()->stNode);
    }
}

// Every allocation of a three-element decode failed in turn: 108, with the
// elements decoded before still listed, and nothing left once released.
TEST_F(FecTest, EachAllocationFailure)
{
    const bytes value = hex("02 00 01 08 0a 03 00 01 04 0a 00 00 01 02 00 01 00");
    for (size_t n = 1; n <= 3; ++n) {
        testplat::reset();
        fec_tlv rec;
        testplat::fail_alloc_at(n);
        EXPECT_EQ(rec.decode(value), LDP_ERR_NO_MEMORY) << n;
        EXPECT_EQ(rec.tlv.stFecList.ulCount, n - 1) << n;
        LDP_FreeFecElement(&rec.tlv);
        EXPECT_TRUE(rec.list_is_empty_head());
        EXPECT_EQ(testplat::live_blocks(), 0u) << n;
    }
    testplat::reset();
    fec_tlv rec;
    testplat::fail_alloc_at(4);
    EXPECT_EQ(rec.decode(value), LDP_OK);
}

// Element records at odd addresses: every packed field is reached without
// an aligned access (UBSan would object), and the round trip still holds.
TEST_F(FecTest, OddAddressElements)
{
    testplat::odd_addresses(true);
    const bytes value = hex("02 00 02 20 20 01 0d b8 03 00 01 04 0a 00 00 01");
    fec_tlv rec;
    ASSERT_EQ(rec.decode(value), LDP_OK);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(rec.elements().at(0)) & 1u, 1u);
    EXPECT_EQ(rec.elements().at(1)->stBody.usAddrFamily, LDP_AF_IPV4);
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 20).out), "01 00 00 10 " + to_hex(value));
}

TEST_F(FecTest, AllocationsAreChargedToTheCaller)
{
    fec_tlv rec;
    ASSERT_EQ(rec.decode(hex("02 00 01 08 0a 01")), LDP_STATUS_MALFORMED_TLV);
    for (uint32_t m : testplat::modules_seen()) {
        EXPECT_EQ(m, kModule);
    }
    for (const auto &f : testplat::alloc_files()) {
        EXPECT_EQ(f, "ldp_dec");
    }
}

// --- encoding ---------------------------------------------------------------

// Values that decode and encode back to the same bytes.
const char *const kRoundTrips[] = {
    "01",
    "02 00 01 00",
    "02 00 01 10 0a 01",
    "02 00 01 11 0a 01 80",
    "02 00 02 20 20 01 0d b8",
    "02 00 02 80 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
    "03 00 01 04 0a 00 00 01",
    "03 00 02 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01",
    "02 00 01 08 0a 03 00 01 04 0a 00 00 01 02 00 01 00",
    kP2mp,
};

class FecRoundTrip : public CodecTest, public ::testing::WithParamInterface<const char *> {};

bytes tlv_bytes(const bytes &value)
{
    bytes out = {0x01, 0x00, uint8_t(value.size() >> 8), uint8_t(value.size())};
    out.insert(out.end(), value.begin(), value.end());
    return out;
}

TEST_P(FecRoundTrip, ExactRoomWritesTheTlv)
{
    const bytes value = hex(GetParam());
    fec_tlv rec;
    ASSERT_EQ(rec.decode(value), LDP_OK);
    const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, uint16_t(value.size() + 4));
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), to_hex(tlv_bytes(value)));
    expect_no_assertions();
}

TEST_P(FecRoundTrip, AnyShorterRoomAsserts)
{
    const bytes value = hex(GetParam());
    for (uint16_t room = 0; room < value.size() + 4; ++room) {
        testplat::reset();
        fec_tlv rec;
        ASSERT_EQ(rec.decode(value), LDP_OK);
        const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, room);
        EXPECT_EQ(w.rc, LDP_ERR_PARAM) << "room " << room;
        expect_one_assertion("ldp_enc");
    }
}

INSTANTIATE_TEST_SUITE_P(Fec, FecRoundTrip, ::testing::ValuesIn(kRoundTrips));

TEST_F(FecTest, EmptyListWritesTheHeaderAndFails)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 0;
    const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 8);
    EXPECT_EQ(w.rc, LDP_ERR_PARAM);
    EXPECT_EQ(to_hex(w.out), "01 00 00 00 00 00 00 00");
    expect_no_assertions();
}

TEST_F(FecTest, NullFirstNodeEndsTheWalk)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 1;
    rec.tlv.stFecList.ulCount = 1;
    rec.tlv.stFecList.stHead.pNext = nullptr;
    EXPECT_EQ(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 5).rc, LDP_OK);
    rec.tlv.stFecList.ulCount = 0;
}

TEST_F(FecTest, WildcardMustStandAloneOnEncode)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 2;
    rec.add(LDP_FEC_WILDCARD);
    rec.add(LDP_FEC_WILDCARD);
    EXPECT_EQ(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 16).rc, LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(FecTest, UnknownKindsAreRefusedOnEncode)
{
    for (uint8_t kind : {0x00, 0x04, 0x05, 0x09, 0x7f, 0x81, 0xff}) {
        fec_tlv rec;
        rec.tlv.stTlvHeader.usTlvLen = 1;
        rec.add(kind);
        EXPECT_EQ(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 16).rc, LDP_ERR_PARAM) << int(kind);
    }
    expect_no_assertions();
}

TEST_F(FecTest, EncodeDispatchesOnKindNotBodyType)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 1;
    LDP_FecElement *e = rec.add(LDP_FEC_WILDCARD);
    e->stBody.ucFecType = 0x55; // written as it stands
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 5).out), "01 00 00 01 55");
}

TEST_F(FecTest, BadPrefixIsRefusedWithoutAssertion)
{
    struct {
        uint16_t family;
        uint8_t bits;
    } cases[] = {{1, 33}, {2, 129}, {3, 8}, {0, 0}};
    for (const auto &c : cases) {
        LDP_FecElementBody body = make_body(LDP_FEC_PREFIX, c.family, c.bits);
        EXPECT_EQ(run_elem_encoder(LDP_EncodePrefixAddrFecElement, &body, 32).rc, LDP_ERR_PARAM);
    }
    expect_no_assertions();
}

TEST_F(FecTest, ElementEncodersMoveTheCursorAndRoom)
{
    LDP_FecElementBody body = make_body(LDP_FEC_PREFIX, LDP_AF_IPV4, 24);
    body.aucAddr[0] = 10;
    body.aucAddr[1] = 20;
    body.aucAddr[2] = 30;
    size_t moved = 0;
    const written w = run_elem_encoder(LDP_EncodePrefixAddrFecElement, &body, 10, &moved);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(moved, 7u);
    EXPECT_EQ(w.room_left, 3);
    EXPECT_EQ(to_hex(w.out), "02 00 01 18 0a 14 1e 00 00 00");
}

TEST_F(FecTest, HostAddressLengthIsNotJudgedOnEncode)
{
    LDP_FecElementBody body = make_body(LDP_FEC_HOST_ADDR, 9, 2);
    body.aucAddr[0] = 0xaa;
    body.aucAddr[1] = 0xbb;
    const written w = run_elem_encoder(LDP_EncodeHostAddrFecElement, &body, 6);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "03 00 09 02 aa bb");
    expect_no_assertions();
}

TEST_F(FecTest, PwidRawBytesAreCopiedVerbatim)
{
    const bytes raw = hex("80 0b 00 05 00 00 00 01");
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 8;
    LDP_FecElement *e = rec.add(LDP_FEC_PWID);
    e->stBody.ulRawLen = 0xABCD0000u | 8u; // only the low 16 bits count
    e->stBody.pucRaw = owned_copy(raw);
    written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 12);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "01 00 00 08 " + to_hex(raw));

    rec.tlv.stTlvHeader.usTlvType = LDP_TLV_FEC;
    w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 11);
    EXPECT_EQ(w.rc, LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
}

TEST_F(FecTest, EncodingTwiceSwapsTypeAndFamily)
{
    fec_tlv rec;
    ASSERT_EQ(rec.decode(hex("03 00 01 04 0a 00 00 01")), LDP_OK);
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 12).out), "01 00 00 08 03 00 01 04 0a 00 00 01");
    EXPECT_EQ(rec.tlv.stTlvHeader.usTlvLen, 8) << "the length is restored";
    EXPECT_EQ(to_hex(run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 12).out), "00 01 00 08 03 01 00 04 0a 00 00 01");

    // A Prefix family swapped by the first encode is refused the second time.
    fec_tlv prefix;
    ASSERT_EQ(prefix.decode(hex("02 00 01 08 0a")), LDP_OK);
    EXPECT_EQ(run_tlv_encoder(LDP_EncodeFECTlv, &prefix.tlv, 9).rc, LDP_OK);
    const written again = run_tlv_encoder(LDP_EncodeFECTlv, &prefix.tlv, 9);
    EXPECT_EQ(again.rc, LDP_ERR_PARAM);
    EXPECT_EQ(to_hex(again.out), "00 01 00 05 02 01 00 00 00");
    expect_no_assertions();
}

// --- release ----------------------------------------------------------------

TEST_F(FecTest, FreeEmptiesTheList)
{
    fec_tlv rec;
    ASSERT_EQ(rec.decode(hex("02 00 01 08 0a 03 00 01 04 0a 00 00 01")), LDP_OK);
    LDP_FreeFecElement(&rec.tlv);
    EXPECT_TRUE(rec.list_is_empty_head());
    EXPECT_EQ(testplat::live_blocks(), 0u);
    LDP_FreeFecElement(&rec.tlv); // again: still a well-formed empty head
    EXPECT_TRUE(rec.list_is_empty_head());
    rec.tlv.stFecList.stHead.pNext = nullptr; // a zero count is trusted over the pointers
    rec.tlv.stFecList.pTail = nullptr;
    LDP_FreeFecElement(&rec.tlv);
    EXPECT_TRUE(rec.list_is_empty_head());
    LDP_FreeFecElement(nullptr);
    expect_no_assertions();
}

TEST_F(FecTest, FreeReleasesOwnedBuffers)
{
    fec_tlv rec;
    rec.add(LDP_FEC_PWID)->stBody.pucRaw = owned_copy(hex("80 00"));
    rec.add(LDP_FEC_MLDP_MP2MP_UP)->stBody.pucOpaqueValue = owned_copy(hex("05 00 00"));
    rec.add(LDP_FEC_MLDP_P2MP);
    LDP_FreeFecElement(&rec.tlv);
    EXPECT_TRUE(rec.list_is_empty_head());
    EXPECT_EQ(testplat::live_blocks(), 0u);
    expect_no_assertions();
}

TEST_F(FecTest, FreeOfP2mpBodyUnderAnotherKindAsserts)
{
    fec_tlv rec;
    LDP_FecElement *e = rec.add(LDP_FEC_PREFIX);
    e->stBody.ucFecType = LDP_FEC_MLDP_P2MP;
    e->stBody.pucOpaqueValue = owned_copy(hex("05 00 00"));
    LDP_FreeFecElement(&rec.tlv);
    EXPECT_EQ(testplat::live_blocks(), 0u);
    expect_one_assertion("ldp_enc");
}

} // namespace
} // namespace ldptest
