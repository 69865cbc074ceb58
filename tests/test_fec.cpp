// SPDX-License-Identifier: BSD-2-Clause
// FEC family checks beyond the wire cases of tests/vectors/fec.vec, which several reuse.
#include <algorithm>

#include "vectors.hpp"

namespace ldptest {
namespace {

// The value of a vector's FEC TLV, which follows the message ID.
bytes fec_value(const bytes &m) { return bytes(m.begin() + 12, m.begin() + 12 + (m[10] << 8 | m[11])); }

// A buffer from the platform allocator, for fields the library releases.
uint8_t *owned(const bytes &b)
{
    auto *p = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(b.size()), "test", __LINE__));
    std::copy(b.begin(), b.end(), p);
    return p;
}

// A FEC TLV record as a message embeds it; its list goes with it.
struct fec_tlv {
    LDP_FecTlv tlv{{LDP_TLV_FEC, 0}, {}};
    fec_tlv() { make_empty(&tlv.stFecList); }
    ~fec_tlv() { LDP_FreeFecElement(&tlv); }
    uint32_t decode(const bytes &v)
    {
        tlv.stTlvHeader.usTlvLen = uint16_t(v.size());
        return LDP_DecodeFECTlv(v.data(), &tlv, kModule);
    }
    LDP_FecElementBody &add(uint8_t kind)
    {
        auto *e = new_record<LDP_FecElement>();
        e->ucFecKind = e->stBody.ucFecType = kind;
        append(&tlv.stFecList, &e->stNode);
        return e->stBody;
    }
    // Encodes into room bytes, which it must not write past.
    std::string encode(uint16_t room, uint32_t &rc)
    {
        bytes buf(room + 1u);
        buf[room] = 0xa5;
        rc = LDP_EncodeFECTlv(buf.data(), &tlv, kModule, room);
        EXPECT_EQ(buf[room], 0xa5) << "written past a room of " << room;
        return to_hex(buf.data(), room);
    }
};

// A vector's first element through its own functions: codes, size (P2MP: where the pre-parse stopped; 0 on
// failure), header stored (P2MP: even when refused); a P2MP opaque value replaces one there, with an assertion.
TEST_F(CodecTest, FecElementFunctions)
{
    const std::map<std::string, unsigned> rows = {
        {"prefix-17", 7}, {"prefix-family-3-short", 0}, {"two-prefixes", 5}, {"host-ipv6", 20}, {"host-header-cut", 0},
        {"p2mp-three-bytes", 0}, {"p2mp-root-past-end", 4}, {"p2mp-root-length-3", 4}, {"p2mp-no-opaque-length", 8},
        {"p2mp-opaque-past-end", 10}, {"p2mp-empty-opaque", 10}, {"p2mp-lsp-id-of-5", 18}, {"p2mp-extended", 18},
        {"p2mp-several-elements", 29}, {"p2mp-inner-header-cut", 19}, {"p2mp-header-only", 4},
        {"p2mp-root-fills-value", 8}};
    size_t replaced = 0;
    for (const vec_case &c : all_vectors()) {
        const auto row = rows.find(c.name);
        if (c.file != "fec" || row == rows.end()) {
            continue;
        }
        const bytes v = fec_value(c.msg);
        const auto n = uint16_t(v.size());
        uint16_t at = 0xffff, size = 0;
        LDP_FecElement e = {};
        e.stBody.pucOpaqueValue = owned({0xaa});
        const bool p2mp = v[0] == LDP_FEC_MLDP_P2MP, host = v[0] == LDP_FEC_HOST_ADDR;
        const uint32_t pre = (p2mp   ? LDP_PreParseMldpFecElement
                              : host ? LDP_PreParseHostAddrFecElement
                                     : LDP_PreParsePrefixFecElement)(v.data(), n, &at);
        const uint32_t rc = p2mp ? LDP_DecodeMldpFecElement(v.data(), n, &e, &size, kModule)
                                 : (host ? LDP_DecodeHostAddrFecElement
                                         : LDP_DecodePrefixFecElement)(v.data(), n, &e.stBody, &size, kModule);
        const LDP_FecElementBody &b = e.stBody;
        const unsigned head = b.ucFecType << 24 | b.usAddrFamily << 8 | b.ucPrefixLen, want = row->second;
        const bool stored = rc == LDP_OK || (p2mp && n >= 4);
        EXPECT_EQ(std::vector<unsigned>({pre, rc, at, size, head}),
                  std::vector<unsigned>({c.pre, c.dec, want, rc == LDP_OK ? want : 0,
                                         stored ? unsigned(v[0] << 24 | v[1] << 16 | v[2] << 8 | v[3]) : 0})) << c.name;
        replaced += p2mp && rc == LDP_OK;
        LDP_MemFreeCallBack(e.stBody.pucOpaqueValue);
    }
    EXPECT_EQ(testplat::assertions().size(), replaced);
}

// A FEC TLV record made by `make`, in exactly `size` bytes, gives rc and out (if
// given), no assertion; when that is OK, any smaller room gives PARAM and one.
template <class Make>
void check_encode(Make make, uint16_t size, uint32_t rc, const std::string &out)
{
    for (uint16_t room = rc == LDP_OK ? 0 : size; room <= size; ++room) {
        testplat::reset();
        fec_tlv t;
        make(t);
        uint32_t got = 0;
        const std::string wrote = t.encode(room, got);
        EXPECT_EQ(got, room == size ? rc : LDP_ERR_PARAM) << "room " << room;
        EXPECT_EQ(testplat::assertions().size(), room == size ? 0u : 1u) << "room " << room;
        EXPECT_EQ(wrote, room == size && !out.empty() ? out : wrote);
    }
}

// Records built by hand, written as elements: kind, family, length byte,
// address, then after '/' an opaque value (a PWid: kind, then its raw bytes).
TEST_F(CodecTest, FecEncoders)
{
    const struct { std::vector<std::string> elems; uint32_t rc; const char *out = ""; } rows[] = {
        {{}, LDP_ERR_PARAM, "01 00 00 04 00 00 00 00"},   // the header goes out, then a refusal
        {{"01 00 00 00", "01 00 00 00"}, LDP_ERR_PARAM}, // a Wildcard stands alone
        {{"81 00 00 00"}, LDP_ERR_PARAM}, {{"02 00 01 21"}, LDP_ERR_PARAM}, {{"02 00 02 81"}, LDP_ERR_PARAM},
        {{"02 00 03 08"}, LDP_ERR_PARAM}, {{"06 00 01 10"}, LDP_ERR_PARAM}, {{"06 00 02 04"}, LDP_ERR_PARAM},
        {{"80 80 0b 00 05 00 00 00 01"}, LDP_OK, "01 00 00 08 80 0b 00 05 00 00 00 01"},
        {{"08 00 02 10 20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 09 / 05 00 00"}, LDP_OK, // IPv6 roots are sent
         "01 00 00 19 08 00 02 10 20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 09 00 03 05 00 00"},
        {{"07 00 01 04 0a 00 00 01"}, LDP_OK, "01 00 00 0a 07 00 01 04 0a 00 00 01 00 00"},
        {{"03 00 09 02 aa bb"}, LDP_OK, "01 00 00 06 03 00 09 02 aa bb"}}; // family and length are not judged
    for (const auto &r : rows) {
        SCOPED_TRACE(&r - rows);
        const auto size = uint16_t(*r.out != '\0' ? hex(r.out).size() : 64);
        check_encode([&](fec_tlv &t) {
            t.tlv.stTlvHeader.usTlvLen = uint16_t(size - 4);
            for (const std::string &elem : r.elems) {
                const size_t slash = std::min(elem.find('/'), elem.size());
                bytes f = hex(elem.substr(0, slash)), opaque = hex(elem.substr(slash));
                LDP_FecElementBody &b = t.add(f[0]);
                if (f[0] == LDP_FEC_PWID) { // its length and raw bytes lie over type, family and address
                    b.ulRawLen = 0xABCD0000u | uint32_t(f.size() - 1); // only the low 16 bits count
                    b.pucRaw = owned(bytes(f.begin() + 1, f.end()));
                    continue;
                }
                b.usAddrFamily = uint16_t(f[1] << 8 | f[2]);
                b.ucPrefixLen = f[3];
                std::copy(f.begin() + 4, f.end(), b.aucAddr);
                b.usOpaqueLen = uint16_t(opaque.size());
                b.pucOpaqueValue = opaque.empty() ? nullptr : owned(opaque);
            }
        }, size, r.rc, r.out);
    }
    fec_tlv t; // encoded twice, a record gives its type word and family swapped (little-endian)
    ASSERT_EQ(t.decode(fec_value(vector_msg("fec", "host-ipv4"))), LDP_OK);
    uint32_t rc = 0;
    t.encode(12, rc);
    EXPECT_EQ(t.encode(12, rc), kBigEndian ? "01 00 00 08 03 00 01 04 0a 00 00 01" : "00 01 00 08 03 01 00 04 0a 00 00 01");
}

// Release: what elements own goes with them, the list is left an empty head.
TEST_F(CodecTest, FecRelease)
{
    fec_tlv t;
    t.add(LDP_FEC_PWID).pucRaw = owned({0x80, 0x00});
    t.add(LDP_FEC_MLDP_MP2MP_UP).pucOpaqueValue = owned({5, 0, 0});
    t.add(LDP_FEC_MLDP_MP2MP_DOWN).pucOpaqueValue = owned({5, 0, 0});
    t.add(LDP_FEC_MLDP_P2MP);
    LDP_FreeFecElement(&t.tlv);
    EXPECT_TRUE(is_empty(t.tlv.stFecList) && testplat::live_blocks() == 0 && testplat::assertions().empty());
    LDP_FecElementBody &b = t.add(LDP_FEC_PREFIX); // a P2MP body under another kind: freed, and reported
    b.ucFecType = LDP_FEC_MLDP_P2MP;
    b.pucOpaqueValue = owned({5, 0, 0});
    LDP_FreeFecElement(&t.tlv);
    expect_one_assertion("ldp_enc");
}

// Opaque values: a bad list; elements; LSP IDs.
TEST_F(CodecTest, FecOpaqueValues)
{
    const auto show = [](const LDP_OvElement *e) {
        return std::to_string(e->ucType) + "/" + std::to_string(e->usLen) + "/" + std::to_string(e->usExtLen) + "=" +
               (e->pucValue != nullptr ? to_hex(e->pucValue, e->ucType == 255 ? e->usExtLen : e->usLen) : "null");
    };
    LDP_OvList head;
    auto *const end = reinterpret_cast<LDP_OvElement *>(&head);
    const bytes bad = hex("05 00 01 aa ff 00 01 00 03 aa bb cc 07 00 02 aa bb");
    EXPECT_EQ(LDP_DecodeOvToElementList(bad.data(), 6, &head, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(head.pNext, end);
    EXPECT_TRUE(LDP_MLDP_UtilCheckOVElementHead(bad.data() + 6, 6));
    EXPECT_FALSE(LDP_MLDP_UtilCheckOVElementHead(bad.data() + 12, 4));
    EXPECT_TRUE(LDP_DecodeOvElementType(bad.data() + 12, 2) == 7 && LDP_DecodeOvElementType(bad.data(), 0) == 0);
    EXPECT_EQ(LDP_DecodeOvElement(bad.data() + 6, 6, kModule), nullptr); // an LSP ID of 3 bytes
    testplat::fail_alloc_at(2);
    LDP_OvElement *e = LDP_DecodeOvElement(bad.data() + 12, 5, kModule);
    EXPECT_EQ(show(e), "0/0/0=null") << "no value: a blank element, not NULL";
    LDP_FreeOvElement(e);
    e = LDP_CreateOvElementByLspId(0x01020304u, kModule);
    EXPECT_EQ(show(e), "1/4/0=01 02 03 04");
    uint32_t id = 0;
    EXPECT_TRUE(LDP_GetLspIdByOvElement(e, &id) == LDP_OK && id == 0x01020304u);
    LDP_FreeOvElement(e);
    for (size_t k = 1; k <= 2; ++k) {
        testplat::fail_alloc_at(k);
        EXPECT_EQ(LDP_CreateOvElementByLspId(7, kModule), nullptr);
    }
}

} // namespace
} // namespace ldptest
