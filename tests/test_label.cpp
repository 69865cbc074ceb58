// The label family beyond its wire cases (tests/vectors/label.vec): TLV
// encoders fed hand-built records, the Path Vector helpers called directly,
// the Label Mapping TLVs only an engine fills, and the release.
#include <algorithm>

#include "vectors.hpp"

namespace ldptest {
namespace {

using LabelTest = CodecTest;

// What an encoder wrote into exactly `room` bytes of a buffer filled with
// 0xEE (the bytes after the room must stay so), checking its code and its
// assertions; fail_copy > 0 fails that memcpy_s.
template <class Rec>
std::string enc(uint32_t (*fn)(uint8_t *, Rec *, uint32_t, uint16_t), Rec *rec, size_t room, uint32_t rc,
                size_t asserts = 0, size_t fail_copy = 0)
{
    testplat::reset();
    if (fail_copy != 0) {
        testplat::fail_memcpy_at(fail_copy, 34);
    }
    bytes buf(room + 8, 0xEE);
    EXPECT_EQ(fn(buf.data(), rec, 0, uint16_t(room)), rc) << room;
    EXPECT_EQ(testplat::assertions().size(), asserts) << room;
    const size_t end = size_t(std::find_if(buf.rbegin(), buf.rend(), [](uint8_t b) { return b != 0xEE; }).base() -
                              buf.begin());
    EXPECT_LE(end, room) << "wrote past the room";
    return to_hex(buf.data(), end);
}

// Given its size the TLV goes out whole, its type left in network order and
// its length given back in host order; one byte less writes the header only,
// less than a header nothing, both LDP_ERR_PARAM with one assertion.
template <class Rec>
void whole_or_header(uint32_t (*fn)(uint8_t *, Rec *, uint32_t, uint16_t), const Rec &base, const char *wire)
{
    const bytes w = hex(wire);
    const uint16_t type = base.stTlvHeader.usTlvType;
    for (const size_t room : {w.size(), w.size() - 1, size_t(3)}) {
        Rec rec = base;
        const bool fits = room == w.size();
        EXPECT_EQ(enc(fn, &rec, room, fits ? LDP_OK : LDP_ERR_PARAM, fits ? 0 : 1),
                  to_hex(w.data(), fits ? w.size() : room < 4 ? 0 : 4));
        EXPECT_EQ(rec.stTlvHeader.usTlvType, room < 4 ? type : uint16_t(type << 8 | type >> 8)) << wire;
        EXPECT_EQ(rec.stTlvHeader.usTlvLen, base.stTlvHeader.usTlvLen) << wire;
    }
}

TEST_F(LabelTest, TlvEncodersWriteWholeOrHeader)
{
    LDP_LabelTlv l = {{LDP_TLV_ATM_LABEL, 4}, {}, LDP_TLV_ATM_LABEL};
    l.usVpi = 0x1012;
    l.usVci = 0x0034;
    whole_or_header(LDP_EncodeLabelTlv, l, "02 01 00 04 10 12 00 34");
    whole_or_header(LDP_EncodeLabelTlv, {{0x8202, 4}, {0x01ABCDEF}, LDP_TLV_FR_LABEL}, "82 02 00 04 01 ab cd ef");
    l = {{LDP_TLV_GENERIC_LABEL, 4}, {0xFFFFFFFF}, LDP_TLV_GENERIC_LABEL}; // no 20-bit mask on encode
    whole_or_header(LDP_EncodeLabelTlv, l, "02 00 00 04 ff ff ff ff");
    l.usLabelKind = 0x0203;
    EXPECT_EQ(enc(LDP_EncodeLabelTlv, &l, 8, LDP_ERR_PARAM), "") << "an unknown label kind";
    const LDP_LspIdTlv id = {{LDP_TLV_LSPID, 8}, 1, 5, 0x0A000001};
    for (auto fn : {LDP_EncodeLSPIdTlv, LDP_EncodeLSPIdERHopTlv}) {
        whole_or_header(fn, id, "08 21 00 08 00 01 00 05 0a 00 00 01");
        LDP_LspIdTlv rec = id; // a failed value copy is reported; the TLV still counts as written
        EXPECT_EQ(enc(fn, &rec, 12, LDP_OK, 1, 2), "08 21 00 08");
    }
    whole_or_header(LDP_EncodeTrafficTlv, {{0x0810, 24}, 1, 2, 3, 4, 0x11111111, 0x22222222, 0x33333333, 0x44444444, 0x3F800000},
                    "08 10 00 18 01 02 03 04 11 11 11 11 22 22 22 22 33 33 33 33 44 44 44 44 3f 80 00 00");
}

TEST_F(LabelTest, PathVectorCountsInEightBits)
{
    uint32_t ids[300];
    for (uint32_t i = 0; i < 300; ++i) {
        ids[i] = 0x0A000000u + i;
    }
    // {count, room, code, bytes written, assertions}: the encoder's counter
    // wraps after 255 and never meets 300, so the ids repeat until the room runs out.
    const struct { uint16_t count, room; uint32_t rc; size_t written, asserts; } rows[] = {
        {0, 4, LDP_OK, 4, 0}, {2, 3, LDP_ERR_PARAM, 0, 1}, {300, 1204, LDP_ERR_PARAM, 1204, 1}};
    for (const auto &r : rows) {
        LDP_PathVectorTlv pv = {{LDP_TLV_PATH_VECTOR, uint16_t(4 * r.count)}, ids, r.count};
        const bytes out = hex(enc(LDP_EncodePathVectorTlv, &pv, r.room, r.rc, r.asserts));
        ASSERT_EQ(out.size(), r.written) << r.count;
        for (size_t i = 4; i < out.size(); i += 4) {
            EXPECT_EQ(to_hex(out.data() + i, 4), "0a 00 00 " + to_hex(bytes{uint8_t(i / 4 - 1)})) << i;
        }
    }
    EXPECT_EQ(ids[1], 0x0A000001u) << "the record's array is not converted";
    // The decoder counts in 8 bits too: only the first (count mod 256) ids are made host order.
    for (const uint16_t len : {1024, 1028}) {
        bytes value(len);
        for (size_t i = 0; i < value.size(); ++i) {
            value[i] = uint8_t(i % 4 == 0 ? i / 4 : 0xA0 + i % 4); // id n: n a1 a2 a3
        }
        LDP_PathVectorTlv pv = {{LDP_TLV_PATH_VECTOR, len}, nullptr, 0};
        ASSERT_EQ(LDP_DecodePathVectorTlv(value.data(), &pv, kModule), LDP_OK);
        EXPECT_EQ(pv.usLsrIdCount, uint16_t(len / 4 - 256));
        for (size_t i = 0; i < len / 4u; ++i) {
            EXPECT_EQ(u32_at(pv.pulLsrId, i), i < pv.usLsrIdCount ? 0xA1A2A3u : u32_at(value.data(), i)) << i;
        }
        LDP_MemFreeCallBack(pv.pulLsrId);
    }
}

TEST_F(LabelTest, ErEncoder)
{
    // A hop of every form, in kind order; each row links copies of those it names.
    LDP_ErHop hops[4] = {};
    hops[0].unHopBody.stIpv4 = {0x80000018, 0xC0A80100};
    hops[1].unHopBody.stIpv6.ulFlagsPreLen = 0x00000040;
    std::memcpy(hops[1].unHopBody.stIpv6.aucIpv6Addr, hex("20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01").data(), 16);
    hops[2].unHopBody.stAs = {0x8000, 65001};
    hops[3].unHopBody.stLspId = {0, 7, 0x0A000002};
    // {hop kinds, room, code, assertions, bytes}: each hop must fit whole, but
    // an LSPID hop's own failure is passed over; with no hop only the header goes out.
    const struct { std::vector<uint16_t> kinds; uint16_t room; uint32_t rc; size_t asserts; const char *wire; } rows[] = {
        {{0x0801, 0x0802, 0x0803, 0x0804}, 60, LDP_OK, 0, "08 00 00 38 08 01 00 08 80 00 00 18 c0 a8 01 00"
             " 08 02 00 14 00 00 00 40 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"
             " 08 03 00 04 80 00 fd e9 08 04 00 08 00 00 00 07 0a 00 00 02"},
        {{}, 8, LDP_ERR_PARAM, 0, "08 00 00 38"}, {{0x0805}, 40, LDP_ERR_PARAM, 0, "08 00 00 38"},
        {{0x0801}, 3, LDP_ERR_PARAM, 1, ""}, {{0x0801}, 15, LDP_ERR_PARAM, 1, "08 00 00 38"},
        {{0x0801}, 16, LDP_OK, 0, "08 00 00 38 08 01 00 08 80 00 00 18 c0 a8 01 00"},
        {{0x0802}, 27, LDP_ERR_PARAM, 1, "08 00 00 38"}, {{0x0803}, 11, LDP_ERR_PARAM, 1, "08 00 00 38"},
        {{0x0803}, 12, LDP_OK, 0, "08 00 00 38 08 03 00 04 80 00 fd e9"},
        {{0x0804}, 15, LDP_OK, 1, "08 00 00 38 08 04 00 08"},
    };
    for (const auto &r : rows) {
        LDP_ErHop h[4];
        LDP_ErTlv er = {{0x0800, 56}, {}};
        make_empty(&er.stHopList);
        for (size_t i = 0; i < r.kinds.size(); ++i) {
            h[i] = hops[std::min(r.kinds[i] - 0x0801u, 3u)];
            h[i].stTlvHeader = {r.kinds[i], uint16_t(r.kinds[i] == 0x0802 ? 20 : r.kinds[i] == 0x0803 ? 4 : 8)};
            h[i].usHopKind = r.kinds[i];
            append(&er.stHopList, &h[i].stNode);
        }
        EXPECT_EQ(enc(LDP_EncodeERTlv, &er, r.room, r.rc, r.asserts), r.wire) << r.room;
    }
}

// A Label Mapping record as LDP_Decode leaves it for the named vector.
LDP_MappingMsg *decoded_mapping(const char *name)
{
    const decoded d = decode(vector_msg("label", name));
    EXPECT_EQ(d.rc, LDP_OK) << name;
    return static_cast<LDP_MappingMsg *>(d.rec);
}

// The TLVs the decoder never fills, added to a decoded Label Mapping: they
// go out in their fixed order, and a room that ends inside one fails there.
TEST_F(LabelTest, MappingEncodesTheTlvsOnlyAnEngineFills)
{
    const bytes base = vector_msg("label", "map-prefix-label");
    const char *const tlvs = "08 21 00 08 00 00 00 03 0a 00 00 01 08 10 00 18 01 02 00 04 00 00 00 05 00 00 00 06"
                             " 00 00 00 07 00 00 00 08 00 00 00 09 3e 01 00 04 01 02 03 04 3e 02 00 03 aa bb cc";
    for (const size_t end : {0, 12, 40, 48, 55}) { // 0: room for all; else where a TLV ends
        LDP_MappingMsg *m = decoded_mapping("map-prefix-label");
        m->stMsgHeader.usMsgLen = uint16_t(m->stMsgHeader.usMsgLen + 55);
        m->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 3, 0x0A000001};
        m->stTrafficTlv = {{0x0810, 24}, 1, 2, 0, 4, 5, 6, 7, 8, 9};
        m->stWordPtrTlv = {{0x3E01, 4}, static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", 1))};
        m->stVarPtrTlv = {{0x3E02, 3}, static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 2))};
        std::memcpy(m->stWordPtrTlv.pucValue, "\x01\x02\x03\x04", 4);
        std::memcpy(m->stVarPtrTlv.pucValue, "\xaa\xbb\xcc", 3);
        m->ucOptFlags1 = LDP_MAP_OPT_LSPID | LDP_MAP_OPT_TRAFFIC | LDP_MAP_OPT_WORD_PTR | LDP_MAP_OPT_VAR_PTR;
        if (end != 0) {
            enc(LDP_EncodeMappingMsg, m, base.size() + end - 1, LDP_ERR_PARAM, 1);
            LDP_FreeMessage(m);
            continue;
        }
        const encoded e = encode(LDP_MSG_LABEL_MAPPING, m);
        EXPECT_EQ(e.rc, LDP_OK);
        EXPECT_EQ(to_hex(e.wire), "04 00 00 4d " + to_hex(base).substr(12) + " " + tlvs);
    }
}

TEST_F(LabelTest, MappingReleaseFreesWhatTheRecordOwns)
{
    LDP_MappingMsg *m = decoded_mapping("map-everything"); // a FEC element, the Path Vector, an unknown TLV
    m->stWordPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", 1));
    m->stVarPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 2));
    m->ucOptFlags1 |= LDP_MAP_OPT_WORD_PTR | LDP_MAP_OPT_VAR_PTR;
    const size_t live = testplat::live_blocks();
    m->stMsgHeader.usMsgType = LDP_MSG_LABEL_MAPPING + 1; // another type: nothing is released
    LDP_FreeLabelMappingMsg(m);
    EXPECT_EQ(testplat::live_blocks(), live);
    for (int pass = 0; pass < 2; ++pass) { // the U bit does not matter; a second release is harmless
        m->stMsgHeader.usMsgType = LDP_MSG_LABEL_MAPPING | 0x8000;
        LDP_FreeLabelMappingMsg(m);
        EXPECT_EQ(testplat::live_blocks(), 1u) << "only the record itself is left";
        EXPECT_TRUE(is_empty(m->stFecTlv.stFecList) && is_empty(m->stUnknTlvList));
        EXPECT_TRUE(m->stPathVectorTlv.pulLsrId == nullptr && m->stWordPtrTlv.pucValue == nullptr &&
                    m->stVarPtrTlv.pucValue == nullptr);
        EXPECT_EQ(m->ucOptFlags1, 0x2D) << "the Path Vector keeps its presence bit, the owned values do not";
    }
    LDP_FreeMessage(m);
}

} // namespace
} // namespace ldptest
