// SPDX-License-Identifier: BSD-2-Clause
// Session messages beyond tests/vectors/session.vec: records
// no decode produces, the label range decoder, what encoding leaves in a record, and release.
#include "vectors.hpp"

namespace ldptest {
namespace {

using SessionTest = CodecTest;

uint16_t type_of(const bytes &m) { return uint16_t((m[0] << 8 | m[1]) & 0x7FFF); }
const bytes &msg_of(const char *vec) { return vector_msg("session", vec); }
const char *const kCapTwo = "cap-announced-then-withdrawn";

// Encodes a fresh record from make() with every room up to the full size:
// the full room gives want, each smaller one PARAM and one ldp_enc assertion.
template <class Make>
void expect_rooms(uint16_t type, Make make, const bytes &want)
{
    for (size_t room = 0; room <= want.size(); ++room) {
        testplat::reset();
        auto *rec = static_cast<LDP_MsgHeader *>(make());
        auto buf = std::make_unique<uint8_t[]>(want.size());
        const uint32_t rc = find_kind(type)->encode(buf.get(), rec, kModule, uint16_t(room));
        rec->usMsgType = type; // below 8 bytes the header stays in network order
        LDP_FreeMessage(rec);
        const bool full = room == want.size();
        const auto &as = testplat::assertions();
        EXPECT_EQ(rc, full ? LDP_OK : LDP_ERR_PARAM) << "room " << room;
        EXPECT_TRUE(full ? as.empty() : as.size() == 1 && as[0].file == "ldp_enc") << "room " << room;
        EXPECT_EQ(to_hex(buf.get(), full ? room : 0), full ? to_hex(want) : "");
    }
}

SLL_Node *cap(uint16_t type, uint16_t len, const bytes &data = {})
{
    auto *p = new_record<LDP_CapabilityParam>();
    *p = {{}, {type, len}, 0x80, nullptr};
    if (!data.empty()) {
        p->pucCapData = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(data.size()), "test", 1));
        std::memcpy(p->pucCapData, data.data(), data.size());
    }
    return &p->stNode;
}

SLL_Node *range(uint32_t min, uint32_t max)
{
    auto *r = new_record<LDP_LabelRangeComponent>();
    *r = {{}, min, max};
    return &r->stNode;
}

// Label ranges, FT Session and three capabilities, one without the data its length announces.
void *init_record()
{
    auto *rec = static_cast<LDP_InitMsg *>(new_prepared(*find_kind(LDP_MSG_INIT)));
    rec->stMsgHeader = {LDP_MSG_INIT, 89, 1};
    rec->stCommSess = {{LDP_TLV_COMMON_SESSION, 14}, 1, 180, 0x8000, 4096, 0x0a000002u, 0};
    rec->ucOptFlags = LDP_INIT_OPT_ATM_SESS | LDP_INIT_OPT_FR_SESS | LDP_INIT_OPT_FT_SESS;
    rec->stAtmSess.stTlvHeader = {LDP_TLV_ATM_SESSION, 12};
    rec->stAtmSess.ulMndWord = 0x44000000u;
    append(&rec->stAtmSess.stRangeList, range(0x20, 0xff));
    rec->stFrSess.stTlvHeader = {LDP_TLV_FR_SESSION, 12};
    rec->stFrSess.ulMndWord = 0x04000000u;
    append(&rec->stFrSess.stRangeList, range(0x01000010, 0x010003ff));
    rec->stFtSess = {{LDP_TLV_FT_SESSION, 12}, 0x0001, 0xffff, 60000, 120000};
    append(&rec->stCapList, cap(0x8508, 1));
    append(&rec->stCapList, cap(0x0506, 3));
    append(&rec->stCapList, cap(0x8506, 3, {0xab, 0xcd}));
    return rec;
}

TEST_F(SessionTest, InitEncoderWritesEveryTlvInItsOrder)
{
    expect_rooms(LDP_MSG_INIT, init_record,
                 hex("02 00 00 59 00 00 00 01 05 00 00 0e 00 01 00 b4 80 00 10 00 0a 00 00 02 00 00"
                     " 05 01 00 0c 44 00 00 00 00 00 00 20 00 00 00 ff 05 02 00 0c 04 00 00 00 01 00 00 10 01 00 03 ff"
                     " 05 03 00 0c 00 01 00 00 00 00 ea 60 00 01 d4 c0" // reserved bits go out as zero
                     " 85 08 00 01 80 05 06 00 03 80 00 00 85 06 00 03 80 ab cd"));
}

TEST_F(SessionTest, LabelRangeEncoderOddities)
{
    uint8_t buf[16] = {};
    LDP_LabelRangeSessParamTlv fr = {{LDP_TLV_FR_SESSION, 4}, 0x80000000u, {}};
    make_empty(&fr.stRangeList);
    EXPECT_EQ(LDP_EncodeFRSessParamTlv(buf, &fr, 0, 16), LDP_ERR_PARAM) << "an empty list is refused";
    EXPECT_EQ(to_hex(buf, 9), "05 02 00 04 80 00 00 00 00") << "after its header and word";
    LDP_LabelRangeSessParamTlv atm = {{LDP_TLV_ATM_SESSION, 4}, 0, {}};
    atm.stRangeList.ulCount = 1; // a count without a first element is taken as done
    EXPECT_EQ(LDP_EncodeATMSessParamTlv(buf, &atm, 0, 16), LDP_OK);
    expect_no_assertions();
}

// Only a caller reaches this decoder: a received Initialization refuses the TLV.
TEST_F(SessionTest, LabelRangeDecoder)
{
    const char *two = "48 00 00 00 00 10 00 20 00 10 00 ff 00 20 00 20 00 20 01 ff"; // N = 2
    const struct { const char *value; uint16_t len; size_t fail; uint32_t rc, mnd; std::vector<uint32_t> ranges; } rows[] = {
        {two, 20, 0, LDP_OK, 0x48000000u, {0x00100020, 0x001000ff, 0x00200020, 0x002001ff}},
        {two, 12, 0, LDP_STATUS_MALFORMED_TLV, 0x48000000u, {}}, // not 4 + 8 N; the word is kept
        {two, 3, 0, LDP_STATUS_MALFORMED_TLV, 0, {}},
        {"40 00 00 00", 4, 0, LDP_OK, 0x40000000u, {}},
        {two, 20, 2, LDP_ERR_NO_MEMORY, 0x48000000u, {0x00100020, 0x001000ff}}, // the first stays listed
    };
    for (const auto &r : rows) {
        LDP_LabelRangeSessParamTlv tlv = {{LDP_TLV_ATM_SESSION, r.len}, 0, {}};
        make_empty(&tlv.stRangeList);
        testplat::fail_alloc_at(r.fail != 0 ? r.fail : 1000);
        EXPECT_EQ(LDP_DecodeATMSessParamTlv(hex(r.value).data(), &tlv, kModule), r.rc) << r.len;
        EXPECT_EQ(tlv.ulMndWord, r.mnd);
        std::vector<uint32_t> got;
        for (SLL_Node *n = tlv.stRangeList.stHead.pNext; n != &tlv.stRangeList.stHead; n = n->pNext) {
            const auto *c = reinterpret_cast<const LDP_LabelRangeComponent *>(n);
            got.insert(got.end(), {c->ulRangeMin, c->ulRangeMax});
        }
        EXPECT_EQ(got, r.ranges) << r.len;
        SLL_FreeAll(&tlv.stRangeList, LDP_MemFreeCallBack);
    }
}

// Encoding works in the record: values and TLV types are left in network
// order, TLV lengths come back in host order (intended). Also: a usMsgLen
// outside 4..4086 is refused silently, before anything is written.
TEST_F(SessionTest, EncodingLeavesTheRecordInWireOrder)
{
    const struct { const char *vec, *field, *want; uint16_t msg_len; uint32_t rc; } rows[] = {
        {"hello-every-optional-tlv", "usHelloFlags", kBigEndian ? "0x7fff" : "0xff7f", 4, LDP_OK},
        {"hello-every-optional-tlv", "stCommHelloTlv.usTlvType", kBigEndian ? "0xc400" : "0x00c4", 4086, LDP_OK},
        {"hello-every-optional-tlv", "stIpv4TransTlv.usTlvLen", "4", 54, LDP_OK},
        {"hello-every-optional-tlv", "ulIpv4TransAddr", kBigEndian ? "0x0a000001" : "0x0100000a", 54, LDP_OK},
        {"hello-every-optional-tlv", "ulConfSeqNum", "7", 3, LDP_ERR_PARAM},
        {"init-ft-session-twice", "usFtReserved", "0", 54, LDP_OK},
        {"init-ft-session-twice", "stFtSess.stTlvHeader.usTlvType", kBigEndian ? "0x8503" : "0x0385", 54, LDP_OK},
        {"init-ft-session-twice", "usKeepAliveTime", "180", 4087, LDP_ERR_PARAM},
        {"init-every-capability", "stCapList[3].usTlvType", kBigEndian ? "0x850a" : "0x0a85", 54, LDP_OK},
        {"init-every-capability", "stCapList[3].usTlvType", "0x850a", 0, LDP_ERR_PARAM},
        {"cap-mbb-announced", "stCapList[0].usTlvType", "0xc50a", 0xffff, LDP_ERR_PARAM},
        {"ka-plain", "ulMsgId", "1", 3, LDP_ERR_PARAM},
    };
    static uint8_t buf[4100];
    for (const auto &r : rows) {
        const bytes &msg = msg_of(r.vec);
        auto *rec = static_cast<LDP_MsgHeader *>(decode(msg).rec);
        rec->usMsgLen = r.msg_len;
        EXPECT_EQ(find_kind(type_of(msg))->encode(buf, rec, kModule, sizeof buf), r.rc) << r.vec << r.msg_len;
        EXPECT_EQ(check_field(type_of(msg), rec, r.field, r.want), "") << r.vec;
        LDP_FreeMessage(rec);
    }
    expect_no_assertions();
}

// Each release frees the lists of its own type only (U bit ignored), leaves
// them empty, and finds nothing left to do a second time.
TEST_F(SessionTest, ReleaseTouchesOnlyItsOwnType)
{
    const struct { bool init; uint16_t as_type; size_t live; } rows[] = {
        {true, 0x8200, 1}, {true, LDP_MSG_CAPABILITY, 7}, {false, 0x8202, 1}, {false, LDP_MSG_INIT, 3}};
    for (const auto &r : rows) {
        auto *rec = static_cast<LDP_MsgHeader *>(r.init ? init_record() : decode(msg_of(kCapTwo)).rec);
        const uint16_t own = rec->usMsgType & 0x7FFF;
        rec->usMsgType = r.as_type;
        for (int twice = 0; twice < 2; ++twice) {
            r.init ? LDP_FreeInitMsg(reinterpret_cast<LDP_InitMsg *>(rec))
                   : LDP_FreeCapabilityMsg(reinterpret_cast<LDP_CapabilityMsg *>(rec));
        }
        EXPECT_EQ(testplat::live_blocks(), r.live) << r.as_type;
        for (const size_t off : find_kind(own)->lists) {
            EXPECT_EQ(is_empty(*reinterpret_cast<SLL_List *>(reinterpret_cast<uint8_t *>(rec) + off)), r.live == 1);
        }
        rec->usMsgType = own;
        LDP_FreeMessage(rec);
    }
}

// A failed copy is reported and the walk goes on: a zeroed TLV header lacks the U bit.
TEST_F(SessionTest, FailedTlvHeaderCopyIsReported)
{
    testplat::fail_memcpy_at(2, 22); // the message header, then the TLV header
    EXPECT_EQ(LDP_PreParseKeepAliveMsg(msg_of("ka-u-and-f-bits-skipped").data()), LDP_STATUS_UNKNOWN_TLV);
    expect_one_assertion("ldp_dec", "22");
}

} // namespace
} // namespace ldptest
