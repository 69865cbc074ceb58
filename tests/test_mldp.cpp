// Multipoint FEC elements (RFC 6388): validation and decoding of received
// P2MP elements, encoding of P2MP and MP2MP records, the opaque value
// toolkit and the Generic LSP Identifier helpers.
#include "fec_support.hpp"

namespace ldptest {
namespace {

// Root 192.0.2.1 and an opaque value of `opaque` (hex), with its length.
std::string p2mp(const std::string &opaque)
{
    const size_t n = hex(opaque).size();
    char len[32];
    std::snprintf(len, sizeof len, "%02x %02x", unsigned(n >> 8 & 0xff), unsigned(n & 0xff));
    return "06 00 01 04 c0 00 02 01 " + std::string(len) + " " + opaque;
}

struct elem_case {
    const char *name;
    std::string elem;
    uint32_t pre_rc;
    uint16_t offset; // where the pre-parse stopped (the size on success)
    uint32_t dec_rc; // the decoder reads the opaque value another way
};

const elem_case kElemCases[] = {
    {"LspId", p2mp("01 00 04 00 00 00 2a"), LDP_OK, 17, LDP_OK},
    {"ThreeBytes", "06 00 01", LDP_STATUS_BAD_TLV_LEN, 0, LDP_STATUS_BAD_TLV_LEN},
    {"RootPastTheEnd", "06 00 01 05 c0 00 02 01", LDP_STATUS_BAD_TLV_LEN, 4, LDP_STATUS_BAD_TLV_LEN},
    {"RootLengthBeforeFamily", "06 00 02 05 c0 00 02 01", LDP_STATUS_BAD_TLV_LEN, 4, LDP_STATUS_BAD_TLV_LEN},
    {"Ipv6RootRefused", "06 00 02 10 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01 00 03 05 00 00",
     LDP_STATUS_UNSUPPORTED_AF, 4, LDP_STATUS_UNSUPPORTED_AF},
    {"RootLength3", "06 00 01 03 c0 00 02 00 03 05 00 00", LDP_STATUS_MALFORMED_TLV, 4, LDP_STATUS_MALFORMED_TLV},
    {"NoOpaqueLength", "06 00 01 04 c0 00 02 01 00", LDP_STATUS_BAD_TLV_LEN, 8, LDP_STATUS_BAD_TLV_LEN},
    {"OpaquePastTheEnd", "06 00 01 04 c0 00 02 01 00 08 01 00 04 00 00 00 2a", LDP_STATUS_BAD_TLV_LEN, 10,
     LDP_STATUS_BAD_TLV_LEN},
    {"EmptyOpaque", "06 00 01 04 c0 00 02 01 00 00", LDP_STATUS_MALFORMED_TLV, 10, LDP_STATUS_MALFORMED_TLV},
    {"LspIdOf3", p2mp("01 00 03 00 00 2a"), LDP_STATUS_MALFORMED_TLV, 16, LDP_STATUS_MALFORMED_TLV},
    {"LspIdOf5", p2mp("01 00 05 00 00 00 00 2a"), LDP_STATUS_MALFORMED_TLV, 18, LDP_STATUS_MALFORMED_TLV},
    {"ExtendedAnyLength", p2mp("ff 12 34 00 03 aa bb cc"), LDP_OK, 18, LDP_OK},
    {"ExtendedEmpty", p2mp("ff 12 34 00 00"), LDP_OK, 15, LDP_OK},
    {"OtherTypeEmpty", p2mp("05 00 00"), LDP_OK, 13, LDP_OK},
    {"SeveralElements", p2mp("01 00 04 00 00 00 01 07 00 01 ee ff 00 01 00 00"), LDP_OK, 26, LDP_OK},
    // Inner faults: the pre-parse says 7, the decoder's parse just fails (8).
    {"ExtendedHeaderCut", p2mp("ff 00 01 00"), LDP_STATUS_BAD_TLV_LEN, 14, LDP_STATUS_MALFORMED_TLV},
    {"InnerValuePastEnd", p2mp("05 00 02 aa"), LDP_STATUS_BAD_TLV_LEN, 14, LDP_STATUS_MALFORMED_TLV},
    {"InnerHeaderCut", p2mp("01 00 04 00 00 00 01 05 00"), LDP_STATUS_BAD_TLV_LEN, 19, LDP_STATUS_MALFORMED_TLV},
};

// Cases show up by name in test listings.
void PrintTo(const elem_case &c, std::ostream *os) { *os << c.name; }

class MldpElement : public CodecTest, public ::testing::WithParamInterface<elem_case> {};

TEST_P(MldpElement, PreParseAndDecode)
{
    const elem_case &c = GetParam();
    const exact e(hex(c.elem));
    uint16_t offset = 0xffff;
    EXPECT_EQ(LDP_PreParseMldpFecElement(e.data(), e.size(), &offset), c.pre_rc);
    EXPECT_EQ(offset, c.offset);
    EXPECT_EQ(testplat::alloc_calls(), 0u);

    LDP_FecElement elem = {};
    LDP_FecElementBody &body = elem.stBody;
    uint16_t size = 0;
    EXPECT_EQ(LDP_DecodeMldpFecElement(e.data(), e.size(), &elem, &size, kModule), c.dec_rc);
    if (c.dec_rc == LDP_OK) {
        EXPECT_EQ(size, e.size());
        EXPECT_EQ(body.usOpaqueLen, e.size() - 10);
        EXPECT_EQ(to_hex(body.pucOpaqueValue, body.usOpaqueLen), to_hex(e.data() + 10, e.size() - 10u));
        LDP_MemFreeCallBack(body.pucOpaqueValue);
    } else {
        EXPECT_EQ(body.pucOpaqueValue, nullptr);
    }
    expect_no_assertions();
}

INSTANTIATE_TEST_SUITE_P(Mldp, MldpElement, ::testing::ValuesIn(kElemCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using MldpTest = CodecTest;

TEST_F(MldpTest, DecodedRecordFields)
{
    fec_tlv rec;
    ASSERT_EQ(rec.decode(hex(p2mp("ff 00 09 00 01 77"))), LDP_OK);
    const LDP_FecElement *e = rec.elements().at(0);
    EXPECT_EQ(e->ucFecKind, LDP_FEC_MLDP_P2MP);
    EXPECT_EQ(e->stBody.ucFecType, LDP_FEC_MLDP_P2MP);
    EXPECT_EQ(e->stBody.usAddrFamily, LDP_AF_IPV4);
    EXPECT_EQ(e->stBody.ucPrefixLen, 4);
    EXPECT_EQ(to_hex(e->stBody.aucAddr, 16), "c0 00 02 01 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(e->stBody.usOpaqueLen, 6);
    EXPECT_EQ(to_hex(e->stBody.pucOpaqueValue, 6), "ff 00 09 00 01 77");
}

TEST_F(MldpTest, DecoderStoresTheHeaderBeforeJudgingIt)
{
    const exact e(hex("06 00 02 04 c0 00 02 01 00 00"));
    LDP_FecElement elem = {};
    LDP_FecElementBody &body = elem.stBody;
    uint16_t size = 0;
    EXPECT_EQ(LDP_DecodeMldpFecElement(e.data(), e.size(), &elem, &size, kModule), LDP_STATUS_UNSUPPORTED_AF);
    EXPECT_EQ(body.ucFecType, 6);
    EXPECT_EQ(body.usAddrFamily, 2);
    EXPECT_EQ(body.ucPrefixLen, 4);
}

TEST_F(MldpTest, DecoderReplacesAnEarlierOpaqueValueWithAnAssertion)
{
    const exact e(hex(p2mp("05 00 00")));
    LDP_FecElement elem = {};
    LDP_FecElementBody &body = elem.stBody;
    body.pucOpaqueValue = owned_copy(hex("aa"));
    uint16_t size = 0;
    EXPECT_EQ(LDP_DecodeMldpFecElement(e.data(), e.size(), &elem, &size, kModule), LDP_OK);
    expect_one_assertion("ldp_dec");
    EXPECT_EQ(to_hex(body.pucOpaqueValue, body.usOpaqueLen), "05 00 00");
    LDP_MemFreeCallBack(body.pucOpaqueValue);
}

// Allocations of a P2MP decode: the FEC element, the opaque value element,
// its value, then the re-encoded buffer. A value that cannot be had leaves a
// blank element that puts the parse out of step, so the value is refused.
TEST_F(MldpTest, EachAllocationFailure)
{
    const bytes value = hex(p2mp("01 00 04 00 00 00 01"));
    const uint32_t expected[] = {LDP_ERR_NO_MEMORY, LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV,
                                 LDP_STATUS_MALFORMED_TLV, LDP_OK};
    for (size_t n = 1; n <= 5; ++n) {
        testplat::reset();
        fec_tlv rec;
        testplat::fail_alloc_at(n);
        EXPECT_EQ(rec.decode(value), expected[n - 1]) << n;
        LDP_FreeFecElement(&rec.tlv);
        EXPECT_EQ(testplat::live_blocks(), 0u) << n;
    }
}

// --- encoding ---------------------------------------------------------------

LDP_FecElementBody ipv6_root_body(uint8_t type)
{
    LDP_FecElementBody body = make_body(type, LDP_AF_IPV6, 16);
    body.aucAddr[0] = 0x20;
    body.aucAddr[1] = 0x01;
    body.aucAddr[15] = 0x09;
    return body;
}

TEST_F(MldpTest, Ipv6RootIsEncodedThoughRefusedOnReceipt)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 25;
    LDP_FecElement *e = rec.add(LDP_FEC_MLDP_MP2MP_DOWN);
    e->stBody = ipv6_root_body(LDP_FEC_MLDP_MP2MP_DOWN);
    e->stBody.pucOpaqueValue = owned_copy(hex("05 00 00"));
    e->stBody.usOpaqueLen = 3;
    const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 29);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "01 00 00 19 08 00 02 10 20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 09 00 03 05 00 00");
    expect_no_assertions();
}

TEST_F(MldpTest, Mp2mpKindGoesThroughTheMultipointEncoder)
{
    fec_tlv rec;
    rec.tlv.stTlvHeader.usTlvLen = 10;
    LDP_FecElement *e = rec.add(LDP_FEC_MLDP_MP2MP_UP);
    e->stBody.usAddrFamily = LDP_AF_IPV4;
    e->stBody.ucPrefixLen = 4;
    e->stBody.aucAddr[0] = 10;
    e->stBody.aucAddr[3] = 1;
    const written w = run_tlv_encoder(LDP_EncodeFECTlv, &rec.tlv, 14);
    EXPECT_EQ(w.rc, LDP_OK);
    EXPECT_EQ(to_hex(w.out), "01 00 00 0a 07 00 01 04 0a 00 00 01 00 00") << "no opaque bytes";
}

TEST_F(MldpTest, FamilyIsLeftInNetworkOrder)
{
    LDP_FecElementBody body = ipv6_root_body(LDP_FEC_MLDP_P2MP);
    ASSERT_EQ(run_elem_encoder(LDP_EncodeMldpFecElement, &body, 22).rc, LDP_OK);
    uint8_t family[2];
    std::memcpy(family, &body.usAddrFamily, 2);
    EXPECT_EQ(to_hex(family, 2), "00 02");
}

TEST_F(MldpTest, RootFamilyAndLengthMustAgree)
{
    struct {
        uint16_t family;
        uint8_t len;
    } cases[] = {{1, 16}, {2, 4}, {1, 0}, {3, 4}};
    for (const auto &c : cases) {
        LDP_FecElementBody body = make_body(LDP_FEC_MLDP_P2MP, c.family, c.len);
        EXPECT_EQ(run_elem_encoder(LDP_EncodeMldpFecElement, &body, 64).rc, LDP_ERR_PARAM);
    }
    expect_no_assertions();
}

TEST_F(MldpTest, EveryShortRoomAsserts)
{
    const bytes opaque = hex("01 00 04 00 00 00 2a");
    for (uint16_t room = 0; room <= 17; ++room) {
        testplat::reset();
        LDP_FecElementBody body = make_body(LDP_FEC_MLDP_P2MP, LDP_AF_IPV4, 4);
        body.aucAddr[0] = 0xc0;
        body.pucOpaqueValue = owned_copy(opaque);
        body.usOpaqueLen = 7;
        size_t moved = 0;
        const written w = run_elem_encoder(LDP_EncodeMldpFecElement, &body, room, &moved);
        if (room == 17) {
            EXPECT_EQ(w.rc, LDP_OK);
            EXPECT_EQ(to_hex(w.out), "06 00 01 04 c0 00 00 00 00 07 01 00 04 00 00 00 2a");
            EXPECT_EQ(w.room_left, 0);
            expect_no_assertions();
        } else {
            EXPECT_EQ(w.rc, LDP_ERR_PARAM) << room;
            expect_one_assertion("ldp_enc");
            EXPECT_LE(moved, room);
        }
        if (room == 9) {
            EXPECT_EQ(w.room_left, 0) << "a lone byte for the opaque length is given up";
            EXPECT_EQ(moved, 8u);
        }
        LDP_MemFreeCallBack(body.pucOpaqueValue);
    }
}

// --- opaque values ----------------------------------------------------------

constexpr const char kOpaque[] = "01 00 04 01 02 03 04 ff 00 07 00 02 aa bb 05 00 00";

TEST_F(MldpTest, OpaqueValueToListAndBack)
{
    const exact v(hex(kOpaque));
    LDP_OvList head;
    ASSERT_EQ(LDP_DecodeOvToElementList(v.data(), v.size(), &head, kModule), LDP_OK);
    std::vector<LDP_OvElement *> elems;
    for (LDP_OvElement *e = head.pNext; e != reinterpret_cast<LDP_OvElement *>(&head); e = e->pNext) {
        elems.push_back(e);
    }
    ASSERT_EQ(elems.size(), 3u);
    EXPECT_EQ(elems[0]->ucType, LDP_OV_TYPE_GENERIC_LSP_ID);
    EXPECT_EQ(elems[0]->usLen, 4);
    EXPECT_EQ(elems[0]->usExtLen, 0);
    EXPECT_EQ(elems[1]->ucType, LDP_OV_TYPE_EXTENDED);
    EXPECT_EQ(elems[1]->usLen, 7) << "the Extended Type";
    EXPECT_EQ(elems[1]->usExtLen, 2);
    EXPECT_EQ(to_hex(elems[1]->pucValue, 2), "aa bb");
    EXPECT_EQ(elems[2]->ucType, 5);
    EXPECT_EQ(elems[2]->pucValue, nullptr);
    EXPECT_EQ(head.pPrev, elems[2]);
    EXPECT_EQ(elems[0]->pPrev, reinterpret_cast<LDP_OvElement *>(&head));

    uint8_t *out = nullptr;
    uint16_t out_len = 0;
    ASSERT_EQ(LDP_EncodeOvElement(&head, &out, &out_len, kModule), LDP_OK);
    EXPECT_EQ(to_hex(out, out_len), to_hex(hex(kOpaque)));
    LDP_MemFreeCallBack(out);

    LDP_FreeAllOvElement(&head);
    EXPECT_EQ(head.pNext, reinterpret_cast<LDP_OvElement *>(&head));
    EXPECT_EQ(head.pPrev, reinterpret_cast<LDP_OvElement *>(&head));
}

TEST_F(MldpTest, EmptyOpaqueValues)
{
    const exact v(hex("ff"));
    LDP_OvList head = {nullptr, nullptr};
    EXPECT_EQ(LDP_DecodeOvToElementList(v.data(), 0, &head, kModule), LDP_OK);
    EXPECT_EQ(head.pNext, reinterpret_cast<LDP_OvElement *>(&head));

    uint8_t *out = nullptr;
    uint16_t out_len = 7;
    EXPECT_EQ(LDP_EncodeOvElement(&head, &out, &out_len, kModule), LDP_OK);
    EXPECT_NE(out, nullptr);
    EXPECT_EQ(out_len, 0);
    LDP_MemFreeCallBack(out);

    EXPECT_EQ(LDP_PreDecodeOvElement(v.data(), 0), LDP_OK);
    EXPECT_EQ(LDP_PreDecodeOvElement(nullptr, 0), LDP_ERR_PARAM);
}

TEST_F(MldpTest, FailedListLeavesNothing)
{
    for (const char *bad : {"01 00 03 aa bb cc", "05 00 01 aa ff 00", "05 00 05 aa"}) {
        const exact v(hex(bad));
        LDP_OvList head;
        EXPECT_EQ(LDP_DecodeOvToElementList(v.data(), v.size(), &head, kModule), LDP_ERR_PARAM) << bad;
        EXPECT_EQ(head.pNext, reinterpret_cast<LDP_OvElement *>(&head));
        EXPECT_EQ(testplat::live_blocks(), 0u);

        uint8_t *out = reinterpret_cast<uint8_t *>(uintptr_t(1));
        uint16_t out_len = 0;
        EXPECT_EQ(LDP_DecodeOpaqueValue(v.data(), v.size(), &out, &out_len, kModule), LDP_ERR_PARAM);
        EXPECT_EQ(out, reinterpret_cast<uint8_t *>(uintptr_t(1))) << "the output is not touched";
    }
}

TEST_F(MldpTest, OpaqueNullArguments)
{
    const exact v(hex(kOpaque));
    LDP_OvList head;
    uint8_t *out = nullptr;
    uint16_t out_len = 0;
    EXPECT_EQ(LDP_DecodeOvToElementList(nullptr, 3, &head, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeOvToElementList(v.data(), 3, nullptr, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeOpaqueValue(nullptr, 3, &out, &out_len, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeOpaqueValue(v.data(), 3, nullptr, &out_len, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeOvElement(nullptr, &out, &out_len, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeOvElement(nullptr, 3, kModule), nullptr);
    uint16_t offset = 0;
    LDP_FecElementBody body = {};
    EXPECT_EQ(LDP_PreParseMldpFecElement(nullptr, 20, &offset), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeMldpFecElement(v.data(), 20, nullptr, &offset, kModule), LDP_ERR_PARAM);
    uint8_t *cur = nullptr;
    uint16_t room = 20;
    EXPECT_EQ(LDP_EncodeMldpFecElement(&cur, &body, kModule, &room), LDP_ERR_PARAM);
    LDP_FreeOvElement(nullptr);
    LDP_FreeAllOvElement(nullptr);
    EXPECT_EQ(testplat::alloc_calls(), 0u);
}

TEST_F(MldpTest, ElementHeadCheck)
{
    struct {
        const char *bytes;
        uint16_t left;
        bool fits;
    } cases[] = {
        {"05 00 00", 3, true},       {"05 00 00", 2, false},     {"05 00 01 aa", 4, true},
        {"05 00 02 aa", 4, false},   {"ff 00 01 00", 4, false},  {"ff 00 01 00 00", 5, true},
        {"ff 00 01 00 01 aa", 6, true}, {"05", 0, false},
    };
    for (const auto &c : cases) {
        const exact b(hex(c.bytes));
        EXPECT_EQ(LDP_MLDP_UtilCheckOVElementHead(b.data(), c.left), c.fits) << c.bytes;
    }
    EXPECT_FALSE(LDP_MLDP_UtilCheckOVElementHead(nullptr, 5));
}

TEST_F(MldpTest, ElementType)
{
    const exact b(hex("ff 00"));
    EXPECT_EQ(LDP_DecodeOvElementType(b.data(), 2), 0xff);
    EXPECT_EQ(LDP_DecodeOvElementType(b.data(), 0), 0);
    EXPECT_EQ(LDP_DecodeOvElementType(nullptr, 2), 0);
}

TEST_F(MldpTest, SingleElementDecode)
{
    const exact bad(hex("01 00 03 aa bb cc"));
    EXPECT_EQ(LDP_DecodeOvElement(bad.data(), bad.size(), kModule), nullptr);
    EXPECT_EQ(testplat::alloc_calls(), 1u) << "the record is made, then dropped";

    // A value that cannot be allocated leaves a blank element, not NULL.
    const exact good(hex("07 00 02 aa bb"));
    testplat::fail_alloc_at(2);
    LDP_OvElement *blank = LDP_DecodeOvElement(good.data(), good.size(), kModule);
    ASSERT_NE(blank, nullptr);
    EXPECT_EQ(blank->ucType, 0);
    EXPECT_EQ(blank->usLen, 0);
    EXPECT_EQ(blank->pucValue, nullptr);
    LDP_FreeOvElement(blank);

    const exact ext(hex("ff ab cd 00 00"));
    LDP_OvElement *e = LDP_DecodeOvElement(ext.data(), ext.size(), kModule);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->usLen, 0xabcd);
    EXPECT_EQ(e->usExtLen, 0);
    EXPECT_EQ(e->pucValue, nullptr);
    LDP_FreeOvElement(e);
}

TEST_F(MldpTest, OpaqueValueAllocationFailures)
{
    const exact v(hex(kOpaque));
    // Elements and values of three elements (the last has no value), then the buffer.
    for (size_t n = 1; n <= 6; ++n) {
        testplat::reset();
        testplat::fail_alloc_at(n);
        uint8_t *out = nullptr;
        uint16_t out_len = 0;
        EXPECT_EQ(LDP_DecodeOpaqueValue(v.data(), v.size(), &out, &out_len, kModule), LDP_ERR_PARAM) << n;
        EXPECT_EQ(testplat::live_blocks(), 0u) << n;
    }
    testplat::reset();
    testplat::fail_alloc_at(7);
    uint8_t *out = nullptr;
    uint16_t out_len = 0;
    EXPECT_EQ(LDP_DecodeOpaqueValue(v.data(), v.size(), &out, &out_len, kModule), LDP_OK);
    LDP_MemFreeCallBack(out);
}

// --- Generic LSP Identifier ---------------------------------------------------

TEST_F(MldpTest, LspIdRoundTrip)
{
    LDP_OvElement *e = LDP_CreateOvElementByLspId(0x01020304u, kModule);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->ucType, LDP_OV_TYPE_GENERIC_LSP_ID);
    EXPECT_EQ(e->usLen, 4);
    EXPECT_EQ(e->usExtLen, 0);
    EXPECT_EQ(to_hex(e->pucValue, 4), "01 02 03 04");
    uint32_t id = 0;
    EXPECT_EQ(LDP_GetLspIdByOvElement(e, &id), LDP_OK);
    EXPECT_EQ(id, 0x01020304u);

    // Linked into a list, it encodes as a Generic LSP Identifier element.
    LDP_OvList head;
    head.pNext = head.pPrev = e;
    e->pNext = e->pPrev = reinterpret_cast<LDP_OvElement *>(&head);
    uint8_t *out = nullptr;
    uint16_t out_len = 0;
    ASSERT_EQ(LDP_EncodeOvElement(&head, &out, &out_len, kModule), LDP_OK);
    EXPECT_EQ(to_hex(out, out_len), "01 00 04 01 02 03 04");
    LDP_MemFreeCallBack(out);
    LDP_FreeAllOvElement(&head);
}

TEST_F(MldpTest, LspIdReadRules)
{
    uint32_t id = 99;
    LDP_OvElement ext = {};
    ext.ucType = LDP_OV_TYPE_EXTENDED;
    EXPECT_EQ(LDP_GetLspIdByOvElement(&ext, &id), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_GetLspIdByOvElement(nullptr, &id), LDP_ERR_PARAM);
    LDP_OvElement bare = {};
    bare.ucType = LDP_OV_TYPE_GENERIC_LSP_ID;
    EXPECT_EQ(LDP_GetLspIdByOvElement(&bare, nullptr), LDP_ERR_PARAM);
    EXPECT_EQ(id, 99u);
    EXPECT_EQ(LDP_GetLspIdByOvElement(&bare, &id), LDP_OK);
    EXPECT_EQ(id, 0u) << "no value reads as LSP ID 0";
}

TEST_F(MldpTest, LspIdCreationFailures)
{
    for (size_t n = 1; n <= 2; ++n) {
        testplat::reset();
        testplat::fail_alloc_at(n);
        EXPECT_EQ(LDP_CreateOvElementByLspId(7, kModule), nullptr);
        EXPECT_EQ(testplat::live_blocks(), 0u);
    }
}

} // namespace
} // namespace ldptest
