// TLVs shared by the label messages: Label, Path Vector, LSPID, Traffic and
// ER encoders, the Path Vector decoder, and the unknown-TLV list.
#include "support.hpp"

namespace ldptest {
namespace {

using LabelTlvTest = CodecTest;

// Encodes with a buffer of exactly `room` bytes (plus a guard area that must stay untouched).
template <class Rec, class Fn>
std::pair<uint32_t, std::string> encode_into(Fn fn, Rec *rec, uint16_t room)
{
    bytes buf(size_t(room) + 8, 0xEE);
    const uint32_t rc = fn(buf.data(), rec, 0, room);
    for (size_t i = room; i < buf.size(); ++i) {
        EXPECT_EQ(buf[i], 0xEE) << "wrote past the room at " << i;
    }
    // Show what was written: trailing bytes still at the fill value are cut.
    size_t end = room;
    while (end > 0 && buf[end - 1] == 0xEE) {
        --end;
    }
    return {rc, to_hex(buf.data(), end)};
}

struct label_case {
    const char *name;
    LDP_LabelTlv rec;
    uint16_t room;
    uint32_t rc;
    const char *wire;
    bool asserts;
};

LDP_LabelTlv label(uint16_t type, uint32_t value, uint16_t kind)
{
    LDP_LabelTlv l = {};
    l.stTlvHeader = {type, 4};
    l.ulLabel = value;
    l.usLabelKind = kind;
    return l;
}

LDP_LabelTlv atm_label(uint16_t vpi, uint16_t vci)
{
    LDP_LabelTlv l = {};
    l.stTlvHeader = {LDP_TLV_ATM_LABEL, 4};
    l.usVpi = vpi;
    l.usVci = vci;
    l.usLabelKind = LDP_TLV_ATM_LABEL;
    return l;
}

TEST_F(LabelTlvTest, LabelEncoder)
{
    const label_case cases[] = {
        {"generic", label(0x0200, 0x12345, 0x0200), 8, LDP_OK, "02 00 00 04 00 01 23 45", false},
        {"generic not masked", label(0x0200, 0xFFFFFFFF, 0x0200), 8, LDP_OK, "02 00 00 04 ff ff ff ff", false},
        {"atm halves", atm_label(0x1012, 0x0034), 8, LDP_OK, "02 01 00 04 10 12 00 34", false},
        {"frame relay", label(0x0202, 0x01ABCDEF, 0x0202), 8, LDP_OK, "02 02 00 04 01 ab cd ef", false},
        {"header as it stands", label(0x8200, 0x1, 0x0202), 8, LDP_OK, "82 00 00 04 00 00 00 01", false},
        {"unknown kind", label(0x0203, 0x1, 0x0203), 8, LDP_ERR_PARAM, "", false},
        {"kind zero", label(0x0200, 0x1, 0), 8, LDP_ERR_PARAM, "", false},
        {"no room for header", label(0x0200, 0x1, 0x0200), 3, LDP_ERR_PARAM, "", true},
        {"no room for value", label(0x0200, 0x1, 0x0200), 7, LDP_ERR_PARAM, "02 00 00 04", true},
    };
    for (const auto &c : cases) {
        testplat::reset();
        LDP_LabelTlv rec = c.rec;
        const auto [rc, wire] = encode_into(LDP_EncodeLabelTlv, &rec, c.room);
        EXPECT_EQ(rc, c.rc) << c.name;
        EXPECT_EQ(wire, c.wire) << c.name;
        EXPECT_EQ(testplat::assertions().size(), c.asserts ? 1u : 0u) << c.name;
        if (c.rc == LDP_OK) {
            EXPECT_EQ(rec.stTlvHeader.usTlvLen, 4) << "length back in host order";
            EXPECT_EQ(rec.stTlvHeader.usTlvType, uint16_t(c.rec.stTlvHeader.usTlvType << 8 |
                                                          c.rec.stTlvHeader.usTlvType >> 8))
                << "type left in network order";
        }
    }
    EXPECT_EQ(LDP_EncodeLabelTlv(nullptr, nullptr, 0, 8), LDP_ERR_PARAM);
}

struct pv_decode_case {
    const char *name;
    uint16_t len;
    uint32_t rc;
    uint16_t count;
};

TEST_F(LabelTlvTest, PathVectorDecoder)
{
    const pv_decode_case cases[] = {
        {"one id", 4, LDP_OK, 1},          {"two ids", 8, LDP_OK, 2},
        {"255 ids", 1020, LDP_OK, 255},    {"256 ids wrap to 0", 1024, LDP_OK, 0},
        {"257 ids wrap to 1", 1028, LDP_OK, 1}, {"empty", 0, LDP_STATUS_MALFORMED_TLV, 0},
        {"not a multiple of 4", 6, LDP_STATUS_MALFORMED_TLV, 0}, {"one byte", 1, LDP_STATUS_MALFORMED_TLV, 0},
    };
    for (const auto &c : cases) {
        testplat::reset();
        bytes value(c.len);
        for (size_t i = 0; i < value.size(); ++i) {
            value[i] = uint8_t(i % 4 == 0 ? i / 4 : 0xA0 + i % 4); // id n: n a1 a2 a3
        }
        LDP_PathVectorTlv pv = {};
        pv.stTlvHeader = {LDP_TLV_PATH_VECTOR, c.len};
        EXPECT_EQ(LDP_DecodePathVectorTlv(value.empty() ? hex("00").data() : value.data(), &pv, kModule), c.rc)
            << c.name;
        if (c.rc != LDP_OK) {
            EXPECT_EQ(pv.pulLsrId, nullptr);
            EXPECT_EQ(testplat::alloc_calls(), 0u);
            continue;
        }
        EXPECT_EQ(pv.usLsrIdCount, c.count) << c.name;
        ASSERT_NE(pv.pulLsrId, nullptr);
        EXPECT_EQ(testplat::alloc_files(), std::vector<std::string>{"ldp_dec"});
        // The converted ids read in host order; the rest stay as on the wire.
        const auto *ids = reinterpret_cast<const uint8_t *>(pv.pulLsrId);
        for (size_t i = 0; i < c.len / 4u; ++i) {
            uint32_t id;
            std::memcpy(&id, ids + 4 * i, 4);
            uint32_t wire_order;
            std::memcpy(&wire_order, value.data() + 4 * i, 4);
            const uint32_t host = uint32_t(i & 0xFF) << 24 | 0xA1A2A3u;
            EXPECT_EQ(id, i < c.count ? host : wire_order) << c.name << " id " << i;
        }
        LDP_MemFreeCallBack(pv.pulLsrId);
    }
}

TEST_F(LabelTlvTest, PathVectorDecoderOutOfMemory)
{
    const bytes value = hex("0a 00 00 01");
    LDP_PathVectorTlv pv = {};
    pv.stTlvHeader = {LDP_TLV_PATH_VECTOR, 4};
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_DecodePathVectorTlv(value.data(), &pv, kModule), LDP_ERR_NO_MEMORY);
    EXPECT_EQ(pv.pulLsrId, nullptr);
    EXPECT_EQ(LDP_DecodePathVectorTlv(nullptr, &pv, kModule), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodePathVectorTlv(value.data(), nullptr, kModule), LDP_ERR_PARAM);
}

TEST_F(LabelTlvTest, PathVectorEncoder)
{
    uint32_t ids[300];
    for (uint32_t i = 0; i < 300; ++i) {
        ids[i] = 0x0A000000u + i;
    }
    struct {
        const char *name;
        uint16_t count;
        uint16_t room;
        uint32_t rc;
        bool asserts;
        size_t bytes_written;
    } cases[] = {
        {"count 0 writes the header only", 0, 4, LDP_OK, false, 4},
        {"two ids", 2, 12, LDP_OK, false, 12},
        {"two ids, larger room", 2, 40, LDP_OK, false, 12},
        {"one byte short", 2, 11, LDP_ERR_PARAM, true, 8},
        {"no room after the header", 2, 7, LDP_ERR_PARAM, true, 4},
        {"no room for the header", 2, 3, LDP_ERR_PARAM, true, 0},
        {"255 ids", 255, 4 + 4 * 255, LDP_OK, false, 4 + 4 * 255},
        {"counter wraps, room runs out", 300, 4 + 4 * 300, LDP_ERR_PARAM, true, 4 + 4 * 300},
    };
    for (const auto &c : cases) {
        testplat::reset();
        LDP_PathVectorTlv pv = {};
        pv.stTlvHeader = {LDP_TLV_PATH_VECTOR, uint16_t(4 * c.count)};
        pv.pulLsrId = ids;
        pv.usLsrIdCount = c.count;
        bytes buf(size_t(c.room) + 4, 0xEE);
        EXPECT_EQ(LDP_EncodePathVectorTlv(buf.data(), &pv, 0, c.room), c.rc) << c.name;
        EXPECT_EQ(testplat::assertions().size(), c.asserts ? 1u : 0u) << c.name;
        size_t end = buf.size();
        while (end > 0 && buf[end - 1] == 0xEE) {
            --end;
        }
        EXPECT_EQ(end, c.bytes_written) << c.name;
        if (c.bytes_written >= 12) {
            EXPECT_EQ(to_hex(buf.data() + 4, 8), "0a 00 00 00 0a 00 00 01") << c.name;
        }
        if (c.count == 300) {
            // After id 255 the 8-bit counter wraps and the first ids come again.
            EXPECT_EQ(to_hex(buf.data() + 4 + 4 * 256, 4), "0a 00 00 00");
        }
    }
    EXPECT_EQ(ids[1], 0x0A000001u) << "the record's array is not converted";

    testplat::reset();
    LDP_PathVectorTlv pv = {};
    uint8_t out[8];
    EXPECT_EQ(LDP_EncodePathVectorTlv(nullptr, &pv, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodePathVectorTlv(out, nullptr, 0, 8), LDP_ERR_PARAM);
    EXPECT_EQ(testplat::assertions().size(), 2u) << "null arguments are reported here";
}

TEST_F(LabelTlvTest, LspIdEncoders)
{
    for (auto fn : {LDP_EncodeLSPIdTlv, LDP_EncodeLSPIdERHopTlv}) {
        struct {
            uint16_t room;
            uint32_t rc;
            const char *wire;
            bool asserts;
        } cases[] = {
            {12, LDP_OK, "08 21 00 08 00 01 00 05 0a 00 00 01", false},
            {11, LDP_ERR_PARAM, "08 21 00 08", true},
            {3, LDP_ERR_PARAM, "", true},
        };
        for (const auto &c : cases) {
            testplat::reset();
            LDP_LspIdTlv rec = {{LDP_TLV_LSPID, 8}, 1, 5, 0x0A000001};
            const auto [rc, wire] = encode_into(fn, &rec, c.room);
            EXPECT_EQ(rc, c.rc);
            EXPECT_EQ(wire, c.wire);
            EXPECT_EQ(testplat::assertions().size(), c.asserts ? 1u : 0u);
        }
        // A failed value copy is reported; the TLV still counts as written.
        testplat::reset();
        LDP_LspIdTlv rec = {{LDP_TLV_LSPID, 8}, 1, 5, 0x0A000001};
        testplat::fail_memcpy_at(2, 34);
        uint8_t out[12] = {};
        EXPECT_EQ(fn(out, &rec, 0, 12), LDP_OK);
        expect_one_assertion("ldp_enc", "34");
        EXPECT_EQ(fn(nullptr, &rec, 0, 12), LDP_ERR_PARAM);
        EXPECT_EQ(fn(out, nullptr, 0, 12), LDP_ERR_PARAM);
    }
}

TEST_F(LabelTlvTest, TrafficEncoder)
{
    const LDP_TrafficTlv base = {{0x0810, 24}, 0x01, 0x02, 0x03, 0x04, 0x11111111, 0x22222222,
                                 0x33333333, 0x44444444, 0x3F800000};
    const char *full = "08 10 00 18 01 02 03 04 11 11 11 11 22 22 22 22 33 33 33 33 44 44 44 44 3f 80 00 00";
    LDP_TrafficTlv rec = base;
    auto [rc, wire] = encode_into(LDP_EncodeTrafficTlv, &rec, 28);
    EXPECT_EQ(rc, LDP_OK);
    EXPECT_EQ(wire, full);
    expect_no_assertions();

    rec = base;
    std::tie(rc, wire) = encode_into(LDP_EncodeTrafficTlv, &rec, 27);
    EXPECT_EQ(rc, LDP_ERR_PARAM);
    EXPECT_EQ(wire, "08 10 00 18");
    expect_one_assertion("ldp_enc");

    testplat::reset();
    rec = base;
    EXPECT_EQ(encode_into(LDP_EncodeTrafficTlv, &rec, 3).first, LDP_ERR_PARAM);
    expect_one_assertion("ldp_enc");
    EXPECT_EQ(LDP_EncodeTrafficTlv(nullptr, &rec, 0, 28), LDP_ERR_PARAM);
}

// An ER TLV record whose hops live on the stack for the length of a test.
struct er_fixture {
    LDP_ErTlv er = {};
    LDP_ErHop hops[4] = {};

    explicit er_fixture(uint16_t tlv_len)
    {
        er.stTlvHeader = {0x0800, tlv_len};
        make_empty(&er.stHopList);
    }
    LDP_ErHop &add(uint16_t kind, uint16_t len)
    {
        LDP_ErHop &h = hops[er.stHopList.ulCount];
        h.stTlvHeader = {kind, len};
        h.usHopKind = kind;
        append(&er.stHopList, &h.stNode);
        return h;
    }
};

TEST_F(LabelTlvTest, ErEncoderWritesEveryHopForm)
{
    er_fixture f(56);
    LDP_ErHop &v4 = f.add(LDP_TLV_ER_HOP_IPV4, 8);
    v4.unHopBody.stIpv4 = {0x80000018, 0xC0A80100};
    LDP_ErHop &v6 = f.add(LDP_TLV_ER_HOP_IPV6, 20);
    v6.unHopBody.stIpv6.ulFlagsPreLen = 0x00000040;
    const bytes addr = hex("20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01");
    std::memcpy(v6.unHopBody.stIpv6.aucIpv6Addr, addr.data(), 16);
    LDP_ErHop &as = f.add(LDP_TLV_ER_HOP_AS, 4);
    as.unHopBody.stAs = {0x8000, 65001};
    LDP_ErHop &lsp = f.add(LDP_TLV_ER_HOP_LSPID, 8);
    lsp.unHopBody.stLspId = {0, 7, 0x0A000002};

    const auto [rc, wire] = encode_into(LDP_EncodeERTlv, &f.er, 60);
    EXPECT_EQ(rc, LDP_OK);
    EXPECT_EQ(wire, "08 00 00 38"
                    " 08 01 00 08 80 00 00 18 c0 a8 01 00"
                    " 08 02 00 14 00 00 00 40 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"
                    " 08 03 00 04 80 00 fd e9"
                    " 08 04 00 08 00 00 00 07 0a 00 00 02");
    expect_no_assertions();
}

TEST_F(LabelTlvTest, ErEncoderFailures)
{
    {
        er_fixture f(0);
        const auto [rc, wire] = encode_into(LDP_EncodeERTlv, &f.er, 8);
        EXPECT_EQ(rc, LDP_ERR_PARAM) << "an empty hop list";
        EXPECT_EQ(wire, "08 00 00 00") << "the header is written first";
        expect_no_assertions();
    }
    {
        er_fixture f(8);
        f.add(0x0805, 4);
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &f.er, 40).first, LDP_ERR_PARAM) << "unknown hop kind";
        expect_no_assertions();
    }
    const struct {
        uint16_t kind;
        uint16_t hop_size;
    } sized[] = {{LDP_TLV_ER_HOP_IPV4, 12}, {LDP_TLV_ER_HOP_IPV6, 24}, {LDP_TLV_ER_HOP_AS, 8}};
    for (const auto &s : sized) {
        testplat::reset();
        er_fixture f(s.hop_size);
        f.add(s.kind, uint16_t(s.hop_size - 4));
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &f.er, uint16_t(4 + s.hop_size - 1)).first, LDP_ERR_PARAM);
        expect_one_assertion("ldp_enc");
        testplat::reset();
        er_fixture g(s.hop_size);
        g.add(s.kind, uint16_t(s.hop_size - 4));
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &g.er, uint16_t(4 + s.hop_size)).first, LDP_OK);
        expect_no_assertions();
    }
    {
        // The LSPID hop's own failure is ignored: the walk moves on and succeeds.
        testplat::reset();
        er_fixture f(12);
        f.add(LDP_TLV_ER_HOP_LSPID, 8);
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &f.er, 4 + 11).first, LDP_OK);
        expect_one_assertion("ldp_enc");
    }
    {
        testplat::reset();
        er_fixture f(0);
        f.er.stHopList.ulCount = 1; // a count with no first node
        f.er.stHopList.stHead.pNext = nullptr;
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &f.er, 8).first, LDP_OK);
        er_fixture g(0);
        EXPECT_EQ(encode_into(LDP_EncodeERTlv, &g.er, 3).first, LDP_ERR_PARAM);
        expect_one_assertion("ldp_enc");
    }
}

// A message-record list of unknown TLVs, released by hand at the end.
struct unknown_list {
    SLL_List l = {};
    unknown_list() { make_empty(&l); }
    ~unknown_list()
    {
        while (l.ulCount != 0) {
            auto *t = reinterpret_cast<LDP_UnknownTlv *>(l.stHead.pNext);
            SLL_Delete(&l, &t->stNode);
            LDP_MemFreeCallBack(t->pucTlv);
            LDP_MemFreeCallBack(t);
        }
    }
    uint32_t add(const bytes &tlv) { return LDP_DecodeUnknownTlv(tlv.data() + 4, &l, uint16_t(tlv.size() - 4), kModule); }
};

TEST_F(LabelTlvTest, UnknownTlvsAreKeptWholeAndWrittenBackInOrder)
{
    const bytes a = hex("ff 00 00 00"), b = hex("bf 00 00 03 01 02 03");
    {
        unknown_list u;
        ASSERT_EQ(u.add(a), LDP_OK);
        ASSERT_EQ(u.add(b), LDP_OK);
        EXPECT_EQ(u.l.ulCount, 2u);
        const auto *first = reinterpret_cast<const LDP_UnknownTlv *>(u.l.stHead.pNext);
        EXPECT_EQ(first->ulTlvLen, 4u) << "an empty value is kept as its header";
        EXPECT_EQ(testplat::alloc_files(), (std::vector<std::string>{"ldp_dec", "ldp_dec", "ldp_dec", "ldp_dec"}));

        struct {
            uint16_t room;
            uint32_t rc;
            const char *wire;
            uint16_t room_after;
        } cases[] = {
            {11, LDP_OK, "ff 00 00 00 bf 00 00 03 01 02 03", 0},
            {20, LDP_OK, "ff 00 00 00 bf 00 00 03 01 02 03", 9},
            {10, LDP_ERR_PARAM, "ff 00 00 00", 6}, // the second one does not fit
            {3, LDP_ERR_PARAM, "", 3},
        };
        for (const auto &c : cases) {
            testplat::reset();
            bytes out(32, 0xEE);
            uint16_t room = c.room;
            EXPECT_EQ(LDP_ProcUnknTlvList(&u.l, out.data(), 0, &room), c.rc) << c.room;
            size_t end = out.size();
            while (end > 0 && out[end - 1] == 0xEE) {
                --end;
            }
            EXPECT_EQ(to_hex(out.data(), end), c.wire) << c.room;
            EXPECT_EQ(room, c.room_after) << c.room;
            EXPECT_EQ(testplat::assertions().size(), c.rc == LDP_OK ? 0u : 1u);
        }
    }
    {
        unknown_list u;
        uint16_t room = 10;
        uint8_t out[4];
        EXPECT_EQ(LDP_ProcUnknTlvList(&u.l, out, 0, &room), LDP_OK) << "empty list";
        EXPECT_EQ(room, 10);
        EXPECT_EQ(LDP_ProcUnknTlvList(nullptr, out, 0, &room), LDP_ERR_PARAM);
        EXPECT_EQ(LDP_ProcUnknTlvList(&u.l, nullptr, 0, &room), LDP_ERR_PARAM);
        EXPECT_EQ(LDP_ProcUnknTlvList(&u.l, out, 0, nullptr), LDP_ERR_PARAM);
    }
}

TEST_F(LabelTlvTest, ProcUnknTlvListRefusesATlvLargerThanTheRoom)
{
    unknown_list u;
    ASSERT_EQ(u.add(hex("ff 01 00 08 01 02 03 04 05 06 07 08")), LDP_OK);
    bytes out(16, 0xEE);
    uint16_t room = 10;
    EXPECT_EQ(LDP_ProcUnknTlvList(&u.l, out.data(), 0, &room), LDP_ERR_PARAM);
    EXPECT_EQ(out, bytes(16, 0xEE)) << "nothing written";
    expect_one_assertion("ldp_enc");
}

TEST_F(LabelTlvTest, DecodeUnknownTlvOutOfMemory)
{
    const bytes t = hex("ff 01 00 02 aa bb");
    for (size_t n = 1; n <= 2; ++n) {
        testplat::reset();
        unknown_list u;
        testplat::fail_alloc_at(n);
        EXPECT_EQ(u.add(t), LDP_ERR_NO_MEMORY) << n;
        EXPECT_EQ(u.l.ulCount, 0u);
        EXPECT_EQ(testplat::live_blocks(), 0u) << "element released when its copy fails";
    }
    unknown_list u;
    EXPECT_EQ(LDP_DecodeUnknownTlv(nullptr, &u.l, 0, 0), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_DecodeUnknownTlv(t.data() + 4, nullptr, 2, 0), LDP_ERR_PARAM);
}

} // namespace
} // namespace ldptest
