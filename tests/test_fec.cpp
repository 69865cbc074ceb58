// FEC family checks that need C++: the element functions with their own
// argument conventions, records built by hand for the encoders, list shapes
// and release, the opaque value toolkit and the MP Status TLV record. The
// wire cases are Label Mapping vectors in tests/vectors/fec.vec.
#include <algorithm>

#include "vectors.hpp"

namespace ldptest {
namespace {

using Fec = CodecTest;

const vec_case &vec(const std::string &name)
{
    const auto &all = all_vectors();
    return *std::find_if(all.begin(), all.end(), [&](const vec_case &c) { return c.file == "fec" && c.name == name; });
}

// The value of a vector's FEC TLV, which follows the message ID.
bytes fec_value(const vec_case &c) { return bytes(c.msg.begin() + 12, c.msg.begin() + 12 + (c.msg[10] << 8 | c.msg[11])); }

// Runs an encoder into a zeroed block of exactly room bytes; gives them as hex.
template <class F>
std::string into(uint16_t room, uint32_t &rc, F encoder)
{
    auto buf = std::make_unique<uint8_t[]>(room);
    rc = encoder(buf.get(), room);
    return to_hex(buf.get(), room);
}

// A buffer from the platform allocator, for fields the library releases.
uint8_t *owned(const bytes &b)
{
    auto *p = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(b.size()), "test", __LINE__));
    std::copy(b.begin(), b.end(), p);
    return p;
}

void drop(uint8_t *p)
{
    if (p != nullptr) {
        LDP_MemFreeCallBack(p);
    }
}

// A FEC TLV record as a message embeds it; its list goes with it.
struct fec_tlv {
    LDP_FecTlv tlv{};
    explicit fec_tlv(uint16_t len = 0)
    {
        tlv.stTlvHeader = {LDP_TLV_FEC, len};
        make_empty(&tlv.stFecList);
    }
    ~fec_tlv() { LDP_FreeFecElement(&tlv); }
    uint32_t decode(const bytes &v)
    {
        tlv.stTlvHeader.usTlvLen = uint16_t(v.size());
        return LDP_DecodeFECTlv(v.data(), &tlv, kModule);
    }
    LDP_FecElement *add(uint8_t kind)
    {
        auto *e = new_record<LDP_FecElement>();
        e->ucFecKind = e->stBody.ucFecType = kind;
        append(&tlv.stFecList, &e->stNode);
        return e;
    }
    LDP_FecElement *at(size_t i)
    {
        SLL_Node *n = tlv.stFecList.stHead.pNext;
        while (i-- > 0) {
            n = n->pNext;
        }
        return reinterpret_cast<LDP_FecElement *>(n);
    }
    std::string encode(uint16_t room, uint32_t &rc)
    {
        return into(room, rc, [&](uint8_t *b, uint16_t n) { return LDP_EncodeFECTlv(b, &tlv, kModule, n); });
    }
};

// Element sizes from the Prefix and Host Address pre-parse and decoder, which
// also zero the size on failure; the value may run on past the element.
TEST_F(Fec, ElementSizes)
{
    const struct { const char *elem; uint32_t rc; uint16_t size; } rows[] = {
        {"02 00 01 00", LDP_OK, 4}, {"02 00 01 09 0a 80", LDP_OK, 6}, {"02 00 01 18 0a 01 02 ff", LDP_OK, 7},
        {"02 00 01", LDP_STATUS_BAD_TLV_LEN, 0}, {"03 00 01 04 0a 00 00 01 ff", LDP_OK, 8},
        {"03 00 02 10 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 01", LDP_OK, 20},
        {"03 00 01", LDP_STATUS_BAD_TLV_LEN, 0}, {"03 00 05 04 0a 00 00 01", LDP_STATUS_UNSUPPORTED_AF, 0},
    };
    for (const auto &r : rows) {
        const bytes e = hex(r.elem);
        uint16_t pre = 0xffff, dec = 0xffff;
        LDP_FecElementBody body = {};
        const bool host = e[0] == LDP_FEC_HOST_ADDR;
        const auto left = uint16_t(e.size());
        EXPECT_EQ(host ? LDP_PreParseHostAddrFecElement(e.data(), left, &pre) : LDP_PreParsePrefixFecElement(e.data(), left, &pre), r.rc) << r.elem;
        EXPECT_EQ(host ? LDP_DecodeHostAddrFecElement(e.data(), left, &body, &dec, kModule)
                       : LDP_DecodePrefixFecElement(e.data(), left, &body, &dec, kModule), r.rc) << r.elem;
        EXPECT_EQ(pre, r.size) << r.elem;
        EXPECT_EQ(dec, r.size) << r.elem;
    }
}

// The P2MP vectors' elements through the element functions: where the
// pre-parse stopped, and what the decoder stored (its header even on failure).
TEST_F(Fec, MldpElements)
{
    const std::pair<const char *, uint16_t> rows[] = {
        {"p2mp-lsp-id", 17}, {"p2mp-three-bytes", 0}, {"p2mp-root-past-end", 4}, {"p2mp-root-length-before-family", 4},
        {"p2mp-ipv6-root", 4}, {"p2mp-root-length-3", 4}, {"p2mp-no-opaque-length", 8}, {"p2mp-opaque-past-end", 10},
        {"p2mp-empty-opaque", 10}, {"p2mp-lsp-id-of-3", 16}, {"p2mp-lsp-id-of-5", 18}, {"p2mp-extended", 18},
        {"p2mp-extended-empty", 15}, {"p2mp-other-type-empty", 13}, {"p2mp-several-elements", 29},
        {"p2mp-extended-header-cut", 14}, {"p2mp-inner-value-past-end", 14}, {"p2mp-inner-header-cut", 19},
    };
    for (const auto &[name, offset] : rows) {
        const vec_case &c = vec(name);
        const bytes v = fec_value(c);
        const auto left = uint16_t(v.size());
        uint16_t at = 0xffff, size = 0;
        EXPECT_EQ(LDP_PreParseMldpFecElement(v.data(), left, &at), c.pre) << name;
        EXPECT_EQ(at, offset) << name;
        LDP_FecElement e = {};
        EXPECT_EQ(LDP_DecodeMldpFecElement(v.data(), left, &e, &size, kModule), c.dec) << name;
        if (left >= 4) {
            const uint32_t head = uint32_t(e.stBody.ucFecType) << 24 | uint32_t(e.stBody.usAddrFamily) << 8;
            EXPECT_EQ(head | e.stBody.ucPrefixLen, uint32_t(v[0] << 24 | v[1] << 16 | v[2] << 8 | v[3])) << name;
        }
        const bytes opaque = c.dec == LDP_OK ? bytes(v.begin() + 10, v.end()) : bytes();
        EXPECT_EQ(to_hex(e.stBody.pucOpaqueValue, e.stBody.usOpaqueLen), to_hex(opaque)) << name;
        EXPECT_EQ(size, c.dec == LDP_OK ? left : 0) << name;
        drop(e.stBody.pucOpaqueValue);
    }
    expect_no_assertions();

    // An opaque value already there is replaced, with an assertion.
    const bytes v = fec_value(vec("p2mp-other-type-empty"));
    LDP_FecElement e = {};
    e.stBody.pucOpaqueValue = owned(hex("aa"));
    uint16_t size = 0;
    EXPECT_EQ(LDP_DecodeMldpFecElement(v.data(), uint16_t(v.size()), &e, &size, kModule), LDP_OK);
    expect_one_assertion("ldp_dec");
    EXPECT_EQ(to_hex(e.stBody.pucOpaqueValue, e.stBody.usOpaqueLen), "05 00 00");
    LDP_MemFreeCallBack(e.stBody.pucOpaqueValue);
}

// Records built by hand, through LDP_EncodeFECTlv or (elem) one element
// encoder, which also tells the room it leaves. addr is a PWid's raw bytes.
// A row that succeeds must fail with one assertion in any smaller room.
struct enc_row {
    bool elem;
    std::vector<uint8_t> kinds;
    uint16_t family;
    uint8_t len;
    const char *addr;
    const char *opaque;
    uint16_t room;
    uint32_t rc;
    const char *out;
    int left = -1;
    size_t asserts = 0;
    uint8_t type = 0; // the body's type when it differs from the kind
};

const enc_row kEncRows[] = {
    {false, {}, 0, 0, "", nullptr, 8, LDP_ERR_PARAM, "01 00 00 04 00 00 00 00"}, // header out, then refused
    {false, {1, 1}, 0, 0, "", nullptr, 16, LDP_ERR_PARAM, nullptr},             // a Wildcard stands alone
    {false, {0x00}, 0, 0, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {0x09}, 0, 0, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {0x81}, 0, 0, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {1}, 0, 0, "", nullptr, 5, LDP_OK, "01 00 00 01 55", -1, 0, 0x55}, // dispatch on the kind
    {false, {0x80}, 0, 0, "80 0b 00 05 00 00 00 01", nullptr, 12, LDP_OK, "01 00 00 08 80 0b 00 05 00 00 00 01"},
    {false, {8}, 2, 16, "20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 09", "05 00 00", 29, LDP_OK,
     "01 00 00 19 08 00 02 10 20 01 00 00 00 00 00 00 00 00 00 00 00 00 00 09 00 03 05 00 00"}, // IPv6 root is sent
    {false, {7}, 1, 4, "0a 00 00 01", nullptr, 14, LDP_OK, "01 00 00 0a 07 00 01 04 0a 00 00 01 00 00"},
    {false, {3}, 9, 2, "aa bb", nullptr, 10, LDP_OK, "01 00 00 06 03 00 09 02 aa bb"}, // not judged
    {false, {3}, 1, 18, "ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff", nullptr, 26, LDP_OK,
     "01 00 00 16 03 00 01 12 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff 00 00"}, // padded past the field
    {false, {2}, 1, 33, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {2}, 2, 129, "", nullptr, 32, LDP_ERR_PARAM, nullptr},
    {false, {2}, 3, 8, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {2}, 0, 0, "", nullptr, 16, LDP_ERR_PARAM, nullptr},
    {false, {6}, 1, 16, "", nullptr, 64, LDP_ERR_PARAM, nullptr},
    {false, {6}, 2, 4, "", nullptr, 64, LDP_ERR_PARAM, nullptr},
    {false, {6}, 1, 0, "", nullptr, 64, LDP_ERR_PARAM, nullptr},
    {false, {6}, 3, 4, "", nullptr, 64, LDP_ERR_PARAM, nullptr},
    {true, {2}, 1, 24, "0a 14 1e", nullptr, 7, LDP_OK, "02 00 01 18 0a 14 1e", 0},
    {true, {3}, 9, 2, "aa bb", nullptr, 6, LDP_OK, "03 00 09 02 aa bb", 0},
    {true, {6}, 1, 4, "c0", "01 00 04 00 00 00 2a", 17, LDP_OK, "06 00 01 04 c0 00 00 00 00 07 01 00 04 00 00 00 2a", 0},
    {true, {6}, 1, 4, "c0", "01 00 04 00 00 00 2a", 9, LDP_ERR_PARAM, "06 00 01 04 c0 00 00 00 00", 0, 1}, // lone byte given up
};

uint32_t run(const enc_row &r, uint16_t room, std::string &out, int &left)
{
    auto fill = [&r](LDP_FecElementBody &b, uint8_t kind) {
        const bytes a = hex(r.addr);
        if (kind == LDP_FEC_PWID) {
            b.pucRaw = owned(a);
            b.ulRawLen = 0xABCD0000u | uint32_t(a.size()); // only the low 16 bits count
            return;
        }
        b.ucFecType = r.type != 0 ? r.type : kind;
        b.usAddrFamily = r.family;
        b.ucPrefixLen = r.len;
        std::copy(a.begin(), a.end(), b.aucAddr);
        if (r.opaque != nullptr) {
            b.usOpaqueLen = uint16_t(hex(r.opaque).size());
            b.pucOpaqueValue = owned(hex(r.opaque));
        }
    };
    uint32_t rc = 0;
    if (!r.elem) {
        fec_tlv t(uint16_t(r.room - 4));
        for (const uint8_t k : r.kinds) {
            fill(t.add(k)->stBody, k);
        }
        out = t.encode(room, rc);
        return rc;
    }
    LDP_FecElementBody b = {};
    fill(b, r.kinds[0]);
    auto *fn = r.kinds[0] == LDP_FEC_PREFIX      ? LDP_EncodePrefixAddrFecElement
               : r.kinds[0] == LDP_FEC_HOST_ADDR ? LDP_EncodeHostAddrFecElement
                                                 : LDP_EncodeMldpFecElement;
    uint16_t room_left = room;
    out = into(room, rc, [&](uint8_t *p, uint16_t) { return fn(&p, &b, kModule, &room_left); });
    left = room_left;
    drop(b.pucOpaqueValue);
    return rc;
}

TEST_F(Fec, Encoders)
{
    for (const enc_row &r : kEncRows) {
        SCOPED_TRACE(&r - kEncRows);
        testplat::reset();
        std::string out;
        int left = -1;
        EXPECT_EQ(run(r, r.room, out, left), r.rc);
        if (r.out != nullptr) {
            EXPECT_EQ(out, r.out);
        }
        EXPECT_EQ(left, r.left);
        EXPECT_EQ(testplat::assertions().size(), r.asserts);
        for (uint16_t room = 0; r.rc == LDP_OK && room < r.room; ++room) {
            testplat::reset();
            EXPECT_EQ(run(r, room, out, left), LDP_ERR_PARAM) << "room " << room;
            expect_one_assertion("ldp_enc");
        }
    }
    fec_tlv t(1); // a count without a first node: the walk ends at once
    t.tlv.stFecList.ulCount = 1;
    t.tlv.stFecList.stHead.pNext = nullptr;
    uint32_t rc = 0;
    t.encode(5, rc);
    EXPECT_EQ(rc, LDP_OK);
    t.tlv.stFecList.ulCount = 0;
}

// Every FEC value the vectors re-encode: decoded by LDP_DecodeFECTlv, it is
// written in exactly its room, and any smaller room asserts once.
TEST_F(Fec, VectorValuesInEveryRoom)
{
    for (const vec_case &c : all_vectors()) {
        if (c.file != "fec" || !c.has_enc) {
            continue;
        }
        const bytes v = fec_value(c);
        const bytes tlv(c.msg.begin() + 8, c.msg.begin() + 12 + long(v.size()));
        for (uint16_t room = 0; room <= tlv.size(); ++room) {
            testplat::reset();
            fec_tlv t;
            ASSERT_EQ(t.decode(v), LDP_OK) << c.name;
            uint32_t rc = 0;
            const std::string out = t.encode(room, rc);
            const bool fits = room == tlv.size();
            EXPECT_EQ(rc, fits ? LDP_OK : LDP_ERR_PARAM) << c.name << " room " << room;
            EXPECT_EQ(testplat::assertions().size(), fits ? 0u : 1u) << c.name << " room " << room;
            EXPECT_EQ(out, fits ? to_hex(tlv) : out) << c.name;
        }
    }
}

// Encoding consumes the record: a second encode writes the type word and the
// family swapped, and a swapped family is refused (without an assertion).
TEST_F(Fec, EncodingTwice)
{
    const std::pair<const char *, const char *> rows[] = {
        {"host-ipv4", "00 01 00 08 03 01 00 04 0a 00 00 01"}, {"prefix-16", nullptr}, {"p2mp-lsp-id", nullptr}};
    for (const auto &[name, again] : rows) {
        const bytes v = fec_value(vec(name));
        fec_tlv t;
        ASSERT_EQ(t.decode(v), LDP_OK);
        uint32_t rc = 0;
        t.encode(uint16_t(v.size() + 4), rc);
        EXPECT_EQ(t.tlv.stTlvHeader.usTlvLen, v.size()) << "the length is restored";
        const std::string out = t.encode(uint16_t(v.size() + 4), rc);
        EXPECT_EQ(rc, again != nullptr ? LDP_OK : LDP_ERR_PARAM) << name;
        EXPECT_EQ(out, again != nullptr ? again : out) << name;
    }
    expect_no_assertions();
}

// A pseudowire element is listed with its kind alone; every block is the
// caller's module's, taken by the decoder.
TEST_F(Fec, DecodedPwid)
{
    fec_tlv t;
    ASSERT_EQ(t.decode(fec_value(vec("pwid-after-prefix"))), LDP_STOP_WALK);
    EXPECT_EQ(t.tlv.stFecList.ulCount, 2u);
    EXPECT_EQ(t.at(1)->ucFecKind, LDP_FEC_PWID);
    EXPECT_EQ(t.at(1)->stBody.ucFecType, 0);
    EXPECT_EQ(t.tlv.stFecList.pTail, &t.at(1)->stNode);
    EXPECT_EQ(testplat::modules_seen(), (std::vector<uint32_t>{kModule, kModule}));
    EXPECT_EQ(testplat::alloc_files(), (std::vector<std::string>{"ldp_dec", "ldp_dec"}));
}

// Release: what elements own goes with them, and the list is left an empty
// head whatever it looked like.
TEST_F(Fec, Release)
{
    fec_tlv t;
    t.add(LDP_FEC_PWID)->stBody.pucRaw = owned(hex("80 00"));
    t.add(LDP_FEC_MLDP_MP2MP_UP)->stBody.pucOpaqueValue = owned(hex("05 00 00"));
    t.add(LDP_FEC_MLDP_MP2MP_DOWN)->stBody.pucOpaqueValue = owned(hex("05 00 00"));
    t.add(LDP_FEC_MLDP_P2MP);
    t.add(LDP_FEC_PREFIX);
    LDP_FreeFecElement(&t.tlv);
    EXPECT_TRUE(is_empty(t.tlv.stFecList));
    EXPECT_EQ(testplat::live_blocks(), 0u);
    LDP_FreeFecElement(&t.tlv);
    t.tlv.stFecList.stHead.pNext = nullptr; // a zero count is trusted over the pointers
    t.tlv.stFecList.pTail = nullptr;
    LDP_FreeFecElement(&t.tlv);
    EXPECT_TRUE(is_empty(t.tlv.stFecList));
    expect_no_assertions();

    LDP_FecElement *e = t.add(LDP_FEC_PREFIX); // a P2MP body under another kind: freed, and reported
    e->stBody.ucFecType = LDP_FEC_MLDP_P2MP;
    e->stBody.pucOpaqueValue = owned(hex("05 00 00"));
    LDP_FreeFecElement(&t.tlv);
    EXPECT_EQ(testplat::live_blocks(), 0u);
    expect_one_assertion("ldp_enc");
}

// --- opaque values ------------------------------------------------------------

TEST_F(Fec, OpaqueValueList)
{
    const bytes v = hex("01 00 04 01 02 03 04 ff 00 07 00 02 aa bb 05 00 00");
    LDP_OvList head;
    auto *const end = reinterpret_cast<LDP_OvElement *>(&head);
    ASSERT_EQ(LDP_DecodeOvToElementList(v.data(), uint16_t(v.size()), &head, kModule), LDP_OK);
    const struct { uint8_t type; uint16_t len, ext; const char *value; } want[] = {
        {1, 4, 0, "01 02 03 04"}, {255, 7, 2, "aa bb"}, {5, 0, 0, ""}}; // type 255: usLen is the Extended Type
    LDP_OvElement *e = head.pNext;
    for (const auto &w : want) {
        ASSERT_NE(e, end);
        EXPECT_EQ(std::vector<unsigned>({e->ucType, e->usLen, e->usExtLen}), std::vector<unsigned>({w.type, w.len, w.ext}));
        EXPECT_EQ(to_hex(e->pucValue, hex(w.value).size()), w.value);
        EXPECT_EQ(e->pucValue == nullptr, *w.value == '\0');
        EXPECT_EQ(e->pNext->pPrev, e);
        e = e->pNext;
    }
    EXPECT_EQ(e, end);
    uint8_t *out = nullptr;
    uint16_t n = 0;
    ASSERT_EQ(LDP_EncodeOvElement(&head, &out, &n, kModule), LDP_OK);
    EXPECT_EQ(to_hex(out, n), to_hex(v));
    drop(out);
    LDP_FreeAllOvElement(&head);
    EXPECT_TRUE(head.pNext == end && head.pPrev == end);

    // Empty: an empty list, which encodes to an empty but allocated buffer.
    ASSERT_EQ(LDP_DecodeOvToElementList(v.data(), 0, &head, kModule), LDP_OK);
    EXPECT_EQ(head.pNext, end);
    EXPECT_EQ(LDP_EncodeOvElement(&head, &out, &n, kModule), LDP_OK);
    EXPECT_NE(out, nullptr);
    EXPECT_EQ(n, 0);
    drop(out);
    EXPECT_EQ(LDP_PreDecodeOvElement(v.data(), 0), LDP_OK);

    // A value that does not parse: nothing listed, nothing handed out.
    for (const char *bad : {"01 00 03 aa bb cc", "05 00 01 aa ff 00", "05 00 05 aa"}) {
        const bytes b = hex(bad);
        EXPECT_EQ(LDP_DecodeOvToElementList(b.data(), uint16_t(b.size()), &head, kModule), LDP_ERR_PARAM) << bad;
        EXPECT_EQ(head.pNext, end);
        out = nullptr;
        EXPECT_EQ(LDP_DecodeOpaqueValue(b.data(), uint16_t(b.size()), &out, &n, kModule), LDP_ERR_PARAM) << bad;
        EXPECT_EQ(out, nullptr);
    }
}

TEST_F(Fec, OpaqueElements)
{
    const struct { const char *bytes; uint16_t left; bool fits; } heads[] = {
        {"05 00 00", 3, true}, {"05 00 00", 2, false}, {"05 00 01 aa", 4, true}, {"05 00 02 aa", 4, false},
        {"ff 00 01 00", 4, false}, {"ff 00 01 00 00", 5, true}, {"ff 00 01 00 01 aa", 6, true}, {"05", 0, false}};
    for (const auto &h : heads) {
        EXPECT_EQ(LDP_MLDP_UtilCheckOVElementHead(hex(h.bytes).data(), h.left), h.fits) << h.bytes;
    }
    const bytes type = hex("ff 00");
    EXPECT_EQ(LDP_DecodeOvElementType(type.data(), 2), 0xff);
    EXPECT_EQ(LDP_DecodeOvElementType(type.data(), 0), 0);

    const bytes bad = hex("01 00 03 aa bb cc");
    EXPECT_EQ(LDP_DecodeOvElement(bad.data(), uint16_t(bad.size()), kModule), nullptr);
    EXPECT_EQ(testplat::alloc_calls(), 1u) << "the record is made, then dropped";
    const bytes good = hex("07 00 02 aa bb");
    testplat::fail_alloc_at(2);
    LDP_OvElement *e = LDP_DecodeOvElement(good.data(), 5, kModule); // no value: a blank element, not NULL
    ASSERT_NE(e, nullptr);
    EXPECT_TRUE(e->ucType == 0 && e->usLen == 0 && e->pucValue == nullptr);
    LDP_FreeOvElement(e);
    const bytes ext = hex("ff ab cd 00 00");
    e = LDP_DecodeOvElement(ext.data(), 5, kModule);
    ASSERT_NE(e, nullptr);
    EXPECT_TRUE(e->usLen == 0xabcd && e->usExtLen == 0 && e->pucValue == nullptr);
    LDP_FreeOvElement(e);
}

// Generic LSP Identifier elements: made from an ID, read back, encoded.
TEST_F(Fec, LspId)
{
    LDP_OvElement *e = LDP_CreateOvElementByLspId(0x01020304u, kModule);
    ASSERT_NE(e, nullptr);
    EXPECT_TRUE(e->ucType == LDP_OV_TYPE_GENERIC_LSP_ID && e->usLen == 4 && e->usExtLen == 0);
    uint32_t id = 0;
    EXPECT_EQ(LDP_GetLspIdByOvElement(e, &id), LDP_OK);
    EXPECT_EQ(id, 0x01020304u);
    LDP_OvList head = {e, e};
    e->pNext = e->pPrev = reinterpret_cast<LDP_OvElement *>(&head);
    uint8_t *out = nullptr;
    uint16_t n = 0;
    ASSERT_EQ(LDP_EncodeOvElement(&head, &out, &n, kModule), LDP_OK);
    EXPECT_EQ(to_hex(out, n), "01 00 04 01 02 03 04");
    drop(out);
    LDP_FreeAllOvElement(&head);

    LDP_OvElement other = {};
    other.ucType = LDP_OV_TYPE_EXTENDED;
    EXPECT_EQ(LDP_GetLspIdByOvElement(&other, &id), LDP_ERR_PARAM);
    other.ucType = LDP_OV_TYPE_GENERIC_LSP_ID;
    EXPECT_EQ(LDP_GetLspIdByOvElement(&other, &id), LDP_OK);
    EXPECT_EQ(id, 0u) << "no value reads as LSP ID 0";
    for (size_t k = 1; k <= 2; ++k) {
        testplat::fail_alloc_at(k);
        EXPECT_EQ(LDP_CreateOvElementByLspId(7, kModule), nullptr);
    }
}

// --- MP Status TLV ------------------------------------------------------------

// The decoder on a record that holds something already: a zero length leaves
// it alone, other flag bits stay, an element is marked taken before it is judged.
TEST_F(Fec, MpStatusDecode)
{
    const struct { const char *value; uint16_t len; uint32_t rc; unsigned flags, type, status, elem_len; } rows[] = {
        {"01 00 01 01", 0, LDP_OK, 0x84, 0, 0, 0x1234}, {"01 00 01 02", 4, LDP_OK, 0x85, 1, 2, 1},
        {"01 00 01 03", 4, LDP_ERR_PARAM, 0x85, 1, 3, 1}, {"01 00 02 01", 4, LDP_ERR_PARAM, 0x85, 1, 0, 2},
        {"02 00 01 07", 4, LDP_OK, 0x84, 0, 0, 0x1234}, {"01 00 01 01 00", 5, LDP_OK, 0x84, 0, 0, 0x1234}};
    for (const auto &r : rows) {
        const bytes v = hex(r.value);
        LDP_MpStatusTlv rec = {};
        rec.stTlvHeader = {LDP_TLV_MP_STATUS, r.len};
        rec.usElemLen = 0x1234;
        rec.ucElemFlags = 0x84;
        EXPECT_EQ(LDP_PreParseMpStatusTlv(v.data(), r.len), r.rc) << r.value;
        EXPECT_EQ(LDP_DecodeMpStatusTlv(v.data(), &rec, kModule), r.rc) << r.value;
        EXPECT_EQ(std::vector<unsigned>({rec.ucElemFlags, rec.ucElemType, rec.ucStatusCode, rec.usElemLen}),
                  std::vector<unsigned>({r.flags, r.type, r.status, r.elem_len})) << r.value;
    }
}

// What each room takes of an MBB record: the header at 4 bytes, then the
// element type, its length and one status byte, whatever the length says.
TEST_F(Fec, MpStatusEncode)
{
    LDP_MpStatusTlv rec;
    auto encode = [&rec](uint8_t *b, uint16_t n) { return LDP_EncodeMpStatusTlv(b, &rec, kModule, n); };
    const char *const rooms[] = {"", "00", "00 00", "00 00 00", "09 6f 00 04", "09 6f 00 04 01", "09 6f 00 04 01 00",
                                 "09 6f 00 04 01 00 01", "09 6f 00 04 01 00 01 02"};
    uint32_t rc = 0;
    for (uint16_t room = 0; room <= 8; ++room) {
        testplat::reset();
        rec = {{LDP_TLV_MP_STATUS, 4}, 1, LDP_MP_STATUS_ELEM_MBB, LDP_MP_STATUS_MBB_ACK, LDP_MP_STATUS_ELEM_TAKEN};
        EXPECT_EQ(into(room, rc, encode), rooms[room]);
        EXPECT_EQ(rc, room == 8 ? LDP_OK : LDP_ERR_PARAM) << room;
        EXPECT_EQ(testplat::assertions().size(), room == 8 ? 0u : 1u) << room;
    }
    rec.usElemLen = 3;
    rec.stTlvHeader.usTlvType = LDP_TLV_MP_STATUS;
    EXPECT_EQ(into(10, rc, encode), "09 6f 00 04 01 00 03 02 00 00");
    EXPECT_EQ(rec.stTlvHeader.usTlvLen, 4) << "the length is restored";
    EXPECT_EQ(into(8, rc, encode), "6f 09 00 04 01 00 03 02") << "the type word is left in network order";
}

} // namespace
} // namespace ldptest
