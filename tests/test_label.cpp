// SPDX-License-Identifier: BSD-2-Clause
// The label family beyond tests/vectors/label.vec: hand-built records, 8-bit counters, engine-only TLVs, release.
#include <algorithm>
#include <numeric>

#include "vectors.hpp"

namespace ldptest {
namespace {

// What an encoder wrote into `room` bytes of a buffer of 0xEE (not past them), checking its code and new assertions.
template <class Rec>
std::string enc(uint32_t (*fn)(uint8_t *, Rec *, uint32_t, uint16_t), Rec *rec, size_t room, uint32_t rc,
                size_t asserts = 0)
{
    const size_t before = testplat::assertions().size();
    bytes buf(room + 8, 0xEE);
    EXPECT_EQ(fn(buf.data(), rec, 0, uint16_t(room)), rc) << room;
    EXPECT_EQ(testplat::assertions().size() - before, asserts) << room;
    const auto last = std::find_if(buf.rbegin(), buf.rend(), [](uint8_t b) { return b != 0xEE; });
    const auto end = size_t(last.base() - buf.begin());
    EXPECT_LE(end, room) << "wrote past the room";
    return to_hex(buf.data(), end);
}

// Label TLVs: the header's type goes out as it stands and stays in network order in the record.
TEST_F(CodecTest, LabelLspIdAndPathVectorEncoders)
{
    const LDP_LabelTlv atm = {{LDP_TLV_ATM_LABEL, 4}, {.usVpi = 0x1012, .usVci = 0x0034}, LDP_TLV_ATM_LABEL};
    const struct { LDP_LabelTlv rec; uint16_t room; uint32_t rc; size_t asserts; const char *wire; } rows[] = {
        {atm, 8, LDP_OK, 0, "02 01 00 04 10 12 00 34"}, {atm, 7, LDP_ERR_PARAM, 1, "02 01 00 04"},
        {{{0x8202, 4}, {0x01ABCDEF}, 0x0202}, 8, LDP_OK, 0, "82 02 00 04 01 ab cd ef"},
        {{{0x0200, 4}, {0xFFFFFFFF}, 0x0200}, 8, LDP_OK, 0, "02 00 00 04 ff ff ff ff"}, // no 20-bit mask
        {{{0x0203, 4}, {0x1}, 0x0203}, 8, LDP_ERR_PARAM, 0, ""}, // unknown kind
    };
    for (const auto &r : rows) {
        LDP_LabelTlv rec = r.rec;
        EXPECT_EQ(enc(LDP_EncodeLabelTlv, &rec, r.room, r.rc, r.asserts), r.wire);
        const uint16_t type = r.rec.stTlvHeader.usTlvType;
        const uint16_t net = kBigEndian ? type : uint16_t(type << 8 | type >> 8);
        EXPECT_EQ(rec.stTlvHeader.usTlvType, *r.wire == '\0' ? type : net) << r.wire;
    }
    for (auto fn : {LDP_EncodeLSPIdTlv, LDP_EncodeLSPIdERHopTlv}) {
        LDP_LspIdTlv rec = {{LDP_TLV_LSPID, 8}, 1, 5, 0x0A000001};
        testplat::fail_memcpy_at(2, 34); // a failed value copy is reported; the TLV still counts as written
        EXPECT_EQ(enc(fn, &rec, 12, LDP_OK, 1), "08 21 00 08");
    }
    // The Path Vector counts in 8 bits: of 300 ids the first 255 go out, then they repeat until the room runs out.
    uint32_t ids[300];
    std::iota(ids, ids + 300, 0x0A000000u);
    LDP_PathVectorTlv pv = {{LDP_TLV_PATH_VECTOR, 1200}, ids, 300};
    const bytes out = hex(enc(LDP_EncodePathVectorTlv, &pv, 1204, LDP_ERR_PARAM, 1));
    ASSERT_EQ(out.size(), 1204u);
    for (size_t i = 4; i < out.size(); i += 4) {
        EXPECT_EQ(to_hex(out.data() + i, 4), "0a 00 00 " + to_hex(bytes{uint8_t(i / 4 - 1)})) << i;
    }
    EXPECT_EQ(ids[1], 0x0A000001u) << "the record's array is not converted";
}

TEST_F(CodecTest, ErEncoder)
{
    const LDP_ErHop forms[4] = {
        {{}, {0x0801, 8}, {.stIpv4 = {0x80000018, 0xC0A80100}}, 0x0801},
        {{}, {0x0802, 20}, {.stIpv6 = {0x40, {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}}, 0x0802},
        {{}, {0x0803, 4}, {.stAs = {0x8000, 65001}}, 0x0803},
        {{}, {0x0804, 8}, {.stLspId = {0, 7, 0x0A000002}}, 0x0804},
    };
    const auto full = hex("08 00 00 38 08 01 00 08 80 00 00 18 c0 a8 01 00 08 02 00 14 00 00 00 40 20 01 0d b8 00 00 00"
                          " 00 00 00 00 00 00 00 00 01 08 03 00 04 80 00 fd e9 08 04 00 08 00 00 00 07 0a 00 00 02");
    // {hops, first hop's kind (0: as is), room, code, assertions, bytes}: an LSPID hop may fail.
    const struct { size_t hops; uint16_t kind0, room; uint32_t rc; size_t asserts, written; } rows[] = {
        {4, 0, 60, LDP_OK, 0, 60}, {4, 0, 3, LDP_ERR_PARAM, 1, 0}, {4, 0, 47, LDP_ERR_PARAM, 1, 40},
        {4, 0, 48, LDP_OK, 1, 48}, {4, 0, 59, LDP_OK, 1, 52}, {0, 0, 8, LDP_ERR_PARAM, 0, 4},
        {4, 0x0805, 60, LDP_ERR_PARAM, 0, 4},
    };
    for (const auto &r : rows) {
        LDP_ErHop h[4] = {forms[0], forms[1], forms[2], forms[3]};
        h[0].usHopKind = r.kind0 != 0 ? r.kind0 : h[0].usHopKind;
        LDP_ErTlv er = {{0x0800, 56}, {}};
        make_empty(&er.stHopList);
        for (size_t i = 0; i < r.hops; ++i) {
            append(&er.stHopList, &h[i].stNode);
        }
        EXPECT_EQ(enc(LDP_EncodeERTlv, &er, r.room, r.rc, r.asserts), to_hex(full.data(), r.written)) << r.room;
    }
}

// The TLVs only an engine fills go out in their order; a room that ends inside one fails there.
TEST_F(CodecTest, MappingEncodesTheTlvsOnlyAnEngineFills)
{
    const bytes base = vector_msg("label", "map-prefix-label");
    const char *const tlvs = "08 21 00 08 00 00 00 03 0a 00 00 01 08 10 00 18 01 02 00 04 00 00 00 05 00 00 00 06"
                             " 00 00 00 07 00 00 00 08 00 00 00 09 3e 01 00 04 01 02 03 04 3e 02 00 03 aa bb cc";
    for (const size_t cut : {0, 1, 8, 16, 44}) { // how far the room falls short of the message
        auto *m = static_cast<LDP_MappingMsg *>(decode(base).rec);
        m->stMsgHeader.usMsgLen = uint16_t(m->stMsgHeader.usMsgLen + 55);
        m->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 3, 0x0A000001};
        m->stTrafficTlv = {{0x0810, 24}, 1, 2, 0, 4, 5, 6, 7, 8, 9};
        m->stWordPtrTlv = {{0x3E01, 4}, static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", 1))};
        m->stVarPtrTlv = {{0x3E02, 3}, static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 2))};
        std::memcpy(m->stWordPtrTlv.pucValue, "\x01\x02\x03\x04", 4);
        std::memcpy(m->stVarPtrTlv.pucValue, "\xaa\xbb\xcc", 3);
        m->ucOptFlags1 = LDP_MAP_OPT_LSPID | LDP_MAP_OPT_TRAFFIC | LDP_MAP_OPT_WORD_PTR | LDP_MAP_OPT_VAR_PTR;
        const auto out = enc(LDP_EncodeMappingMsg, m, base.size() + 55 - cut, cut ? LDP_ERR_PARAM : LDP_OK, cut != 0);
        EXPECT_TRUE(cut != 0 || out == "04 00 00 4d " + to_hex(base).substr(12) + " " + tlvs) << out;
        LDP_FreeMessage(m);
    }
}

TEST_F(CodecTest, MappingReleaseFreesWhatTheRecordOwns)
{
    auto *m = static_cast<LDP_MappingMsg *>(decode(vector_msg("label", "map-everything")).rec); // FEC, PV, unknown
    m->stWordPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", 1));
    m->stVarPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 2));
    m->ucOptFlags1 |= LDP_MAP_OPT_WORD_PTR | LDP_MAP_OPT_VAR_PTR;
    // Another type releases nothing; the U bit does not matter; a second release is harmless.
    for (const uint16_t type : {0x0401, 0x8400, 0x8400}) {
        m->stMsgHeader.usMsgType = type;
        LDP_FreeLabelMappingMsg(m);
        const bool freed = type != 0x0401;
        EXPECT_EQ(m->ucOptFlags1, freed ? 0x2D : 0xED) << "the Path Vector keeps its presence bit";
        EXPECT_EQ(is_empty(m->stFecTlv.stFecList) && is_empty(m->stUnknTlvList) && !m->stPathVectorTlv.pulLsrId &&
                      !m->stWordPtrTlv.pucValue && !m->stVarPtrTlv.pucValue, freed) << type;
    }
    EXPECT_EQ(testplat::live_blocks(), 1u) << "all but the record itself";
    LDP_FreeMessage(m);
}

} // namespace
} // namespace ldptest
