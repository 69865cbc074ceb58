// Label Mapping: the TLV walk of pre-parse and decode, the record, the fixed
// encode order, and what the release function frees.
#include "support.hpp"

namespace ldptest {
namespace {

// Building blocks, as wire hex.
const char *const kFecPrefix = "01 00 00 06 02 00 01 10 0a 01";   // 10.1.0.0/16
const char *const kFecWildcard = "01 00 00 01 01";
const char *const kLabel = "02 00 00 04 00 01 23 45";             // generic label 0x12345

// A Label Mapping with message ID 7 around the given TLVs; the length is computed.
bytes mapping(const std::string &tlvs)
{
    bytes body = hex(tlvs);
    bytes msg = hex("04 00 00 00 00 00 00 07");
    const size_t len = body.size() + 4;
    msg[2] = uint8_t(len >> 8);
    msg[3] = uint8_t(len);
    msg.insert(msg.end(), body.begin(), body.end());
    return msg;
}

std::string cat(std::initializer_list<const char *> parts)
{
    std::string s;
    for (const char *p : parts) {
        s += p;
        s += ' ';
    }
    return s;
}

// Lists set up as LDP_Decode sets them up, for calling the decoder directly.
void prepare_mapping(LDP_MappingMsg *rec)
{
    make_empty(&rec->stFecTlv.stFecList);
    make_empty(&rec->stUnknTlvList);
}

struct walk_case {
    const char *name;
    bytes msg;
    uint32_t pre_parse;
    uint32_t decode;
};

class MappingWalk : public CodecTest, public ::testing::WithParamInterface<walk_case> {};

TEST_P(MappingWalk, PreParseAndDecodeCodes)
{
    const walk_case &c = GetParam();
    const decoded d = expect_decode_paths<LDP_MappingMsg>(
        c.msg, LDP_MSG_LABEL_MAPPING, LDP_PreParseMappingMsg, LDP_DecodeMappingMsg, c.pre_parse, c.decode,
        prepare_mapping);
    LDP_FreeMessage(d.rec);
}

const walk_case kWalkCases[] = {
    {"Minimal", mapping(cat({kFecWildcard, kLabel})), LDP_OK, LDP_OK},
    {"PrefixAndLabel", mapping(cat({kFecPrefix, kLabel})), LDP_OK, LDP_OK},
    {"LabelFirst", mapping(cat({kLabel, kFecPrefix})), LDP_OK, LDP_OK},
    {"Length16", hex("04 00 00 10 00 00 00 07 01 00 00 01 01 02 00 00 04 00 00 00"), LDP_STATUS_MISSING_MSG_PARAMS,
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"NoLabel", mapping(cat({kFecPrefix, "01 03 00 01 05 01 03 00 01 05"})), LDP_STATUS_MISSING_MSG_PARAMS,
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"NoFec", mapping(cat({kLabel, "01 03 00 01 05 01 03 00 01 05"})), LDP_STATUS_MISSING_MSG_PARAMS,
     LDP_STATUS_MISSING_MSG_PARAMS},
    {"AtmLabelIsUnknown", mapping(cat({kFecPrefix, "02 01 00 04 00 10 00 20"})), LDP_STATUS_UNKNOWN_TLV,
     LDP_STATUS_UNKNOWN_TLV},
    {"AtmLabelWithUBitSkipped", mapping(cat({kFecPrefix, "82 01 00 04 00 10 00 20", kLabel})), LDP_OK, LDP_OK},
    {"LabelLength5", mapping(cat({kFecPrefix, "02 00 00 05 00 01 23 45 00"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"SecondLabelUnchecked", mapping(cat({kFecPrefix, kLabel, "02 00 00 01 00"})), LDP_OK, LDP_OK},
    {"SecondHopCountUnchecked", mapping(cat({kFecPrefix, kLabel, "01 03 00 01 05 01 03 00 03 aa bb cc"})), LDP_OK,
     LDP_OK},
    {"HopCountLength2", mapping(cat({kFecPrefix, kLabel, "01 03 00 02 05 06"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"PathVectorLength6", mapping(cat({kFecPrefix, kLabel, "01 04 00 06 0a 00 00 01 0a 00"})),
     LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV},
    {"PathVectorEmpty", mapping(cat({kFecPrefix, kLabel, "01 04 00 00"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"ReqIdLength3", mapping(cat({kFecPrefix, kLabel, "06 00 00 03 00 00 01"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"ShortLength3", mapping(cat({kFecPrefix, kLabel, "06 01 00 03 00 00 01"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"Short0900AfterShort0601Unchecked", mapping(cat({kFecPrefix, kLabel, "06 01 00 02 00 01 09 00 00 01 ff"})),
     LDP_OK, LDP_OK},
    {"PrivLength1", mapping(cat({kFecPrefix, kLabel, "3e 0a 00 01 ff"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"Empty0206Length1", mapping(cat({kFecPrefix, kLabel, "02 06 00 01 00"})), LDP_STATUS_MALFORMED_TLV,
     LDP_STATUS_MALFORMED_TLV},
    {"Empty0206EveryOccurrence", mapping(cat({kFecPrefix, kLabel, "02 06 00 00 02 06 00 01 00"})),
     LDP_STATUS_MALFORMED_TLV, LDP_STATUS_MALFORMED_TLV},
    // A bad MP Status fails the pre-parse but is passed over by the decoder.
    {"MpStatusBadCode", mapping(cat({kFecPrefix, kLabel, "09 6f 00 04 01 00 01 03"})), LDP_STATUS_MALFORMED_TLV,
     LDP_OK},
    {"UnknownNoUBit", mapping(cat({kFecPrefix, kLabel, "3f 00 00 00"})), LDP_STATUS_UNKNOWN_TLV,
     LDP_STATUS_UNKNOWN_TLV},
    {"UnknownUBitSkipped", mapping(cat({kFecPrefix, kLabel, "bf 00 00 01 aa"})), LDP_OK, LDP_OK},
    {"UnknownUFKept", mapping(cat({kFecPrefix, kLabel, "ff 00 00 01 aa"})), LDP_OK, LDP_OK},
    {"LspIdReceivedIsUnknown", mapping(cat({kFecPrefix, kLabel, "08 21 00 08 00 00 00 01 0a 00 00 01"})),
     LDP_STATUS_UNKNOWN_TLV, LDP_STATUS_UNKNOWN_TLV},
    {"PwidFecStopsTheWalk", mapping(cat({"01 00 00 01 80", kLabel})), LDP_STOP_WALK, LDP_STOP_WALK},
    {"BadFecPassedUp", mapping(cat({"01 00 00 01 04", kLabel})), LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNKNOWN_FEC},
    {"TwoStrayBytes", hex("04 00 00 18 00 00 00 07 01 00 00 06 02 00 01 10 0a 01 02 00 00 04 00 01 23 45 00 00"),
     LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    {"LastTlvOverruns", hex("04 00 00 16 00 00 00 07 01 00 00 06 02 00 01 10 0a 01 02 00 00 05 00 01 23 45"),
     LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
    // An overrun is found before the type is looked at.
    {"OverrunBeforeUnknownType", hex("04 00 00 16 00 00 00 07 01 00 00 06 02 00 01 10 0a 01 3f 00 00 05 00 01 23 45"),
     LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_BAD_TLV_LEN},
};

INSTANTIATE_TEST_SUITE_P(Mapping, MappingWalk, ::testing::ValuesIn(kWalkCases),
                         [](const auto &tc) { return std::string(tc.param.name); });

using MappingTest = CodecTest;

// Everything a received mapping can carry, in an order the encoder does not use.
const bytes kRich = mapping(cat({
    "06 00 00 04 00 00 00 2a",          // label request message ID 42
    kLabel,                              //
    "01 04 00 08 0a 00 00 01 0a 00 00 02", // path vector
    "01 03 00 01 03",                    // hop count 3
    kFecPrefix,                          //
    "09 6f 00 04 01 00 01 02",          // MP status: MBB acknowledgement
    "ff 00 00 02 be ef",                // unknown, U and F set: kept
    "09 00 00 02 12 34",                // short TLV
    "3e 0a 00 02 ab cd",                // vendor private
    "02 06 00 00",                      // empty TLV 0x0206
}));

TEST_F(MappingTest, DecodeFillsTheRecord)
{
    const decoded d = decode(kRich);
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_MappingMsg *>(d.rec);
    EXPECT_EQ(rec->stMsgHeader.ulMsgId, 7u);
    EXPECT_EQ(rec->stFecTlv.stFecList.ulCount, 1u);
    EXPECT_EQ(rec->stLabelTlv.ulLabel, 0x12345u);
    EXPECT_EQ(rec->stLabelTlv.usLabelKind, LDP_TLV_GENERIC_LABEL);
    EXPECT_EQ(rec->stLabelReqIdTlv.ulReqMsgId, 42u);
    EXPECT_EQ(rec->stHopCountTlv.ucHopCount, 3);
    ASSERT_EQ(rec->stPathVectorTlv.usLsrIdCount, 2);
    EXPECT_EQ(u32_at(rec->stPathVectorTlv.pulLsrId, 1), 0x0A000002u);
    EXPECT_EQ(rec->stShortTlv.stTlvHeader.usTlvType, 0x0900);
    EXPECT_EQ(rec->stShortTlv.usValue, 0x1234);
    EXPECT_EQ(rec->stMpStatusTlv.ucStatusCode, 2);
    EXPECT_EQ(to_hex(rec->stPrivTlv.aucValue, 2), "ab cd");
    EXPECT_EQ(rec->stUnknTlvList.ulCount, 1u);
    EXPECT_EQ(rec->ucOptFlags1, LDP_MAP_OPT_LABEL_REQ_ID | LDP_MAP_OPT_HOP_COUNT | LDP_MAP_OPT_PATH_VECTOR |
                                    LDP_MAP_OPT_SHORT);
    EXPECT_EQ(rec->ucOptFlags2, LDP_MAP_OPT2_PRIV | LDP_MAP_OPT2_MP_STATUS | LDP_MAP_OPT2_EMPTY);
    LDP_FreeMessage(d.rec);
}

TEST_F(MappingTest, LabelIsMaskedTo20Bits)
{
    const decoded d = decode(mapping(cat({kFecWildcard, "02 00 00 04 ff ff ff ff"})));
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(static_cast<LDP_MappingMsg *>(d.rec)->stLabelTlv.ulLabel, 0xFFFFFu);
    LDP_FreeMessage(d.rec);
}

TEST_F(MappingTest, FirstOccurrenceIsKept)
{
    const decoded d =
        decode(mapping(cat({kFecPrefix, kLabel, "01 03 00 01 05 01 03 00 03 aa bb cc 02 00 00 04 00 00 00 09"})));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_MappingMsg *>(d.rec);
    EXPECT_EQ(rec->stHopCountTlv.ucHopCount, 5);
    EXPECT_EQ(rec->stLabelTlv.ulLabel, 0x12345u);
    LDP_FreeMessage(d.rec);
}

TEST_F(MappingTest, AFailedMpStatusIsRetriedOnTheNextOne)
{
    const decoded d = decode(mapping(cat({kFecPrefix, kLabel, "09 6f 00 04 01 00 01 01"})));
    ASSERT_EQ(d.rc, LDP_OK);
    LDP_FreeMessage(d.rec);

    // The decoder alone (the pre-parse refuses a bad first MP Status).
    const bytes msg = mapping(cat({kFecPrefix, kLabel, "09 6f 00 04 01 00 01 07 09 6f 00 04 01 00 01 01"}));
    auto *rec = new_record<LDP_MappingMsg>();
    prepare_mapping(rec);
    EXPECT_EQ(LDP_DecodeMappingMsg(msg.data(), rec, kModule), LDP_OK);
    EXPECT_EQ(rec->ucOptFlags2 & LDP_MAP_OPT2_MP_STATUS, LDP_MAP_OPT2_MP_STATUS);
    EXPECT_EQ(rec->stMpStatusTlv.ucStatusCode, 1);
    LDP_FreeMessage(rec);
}

TEST_F(MappingTest, EncodeWritesTheFixedOrderAndPrivOverTheUnknownTlvs)
{
    const decoded d = decode(kRich);
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_LABEL_MAPPING, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    // FEC, label, request ID, hop count, path vector, short, MP status, empty;
    // then the unknown TLV, whose first six bytes the private TLV overwrites.
    // The decoder keeps only the presence of TLV 0x0206, not its header, so
    // the header written back is the record's zeroed one.
    EXPECT_EQ(to_hex(e.wire), to_hex(mapping(cat({
                                  kFecPrefix,
                                  kLabel,
                                  "06 00 00 04 00 00 00 2a",
                                  "01 03 00 01 03",
                                  "01 04 00 08 0a 00 00 01 0a 00 00 02",
                                  "09 00 00 02 12 34",
                                  "09 6f 00 04 01 00 01 02",
                                  "00 00 00 00",
                                  "3e 0a 00 02 ab cd",
                                  "00 00 00 00 00 00", // rest of the message: usMsgLen says so
                              }))));
}

TEST_F(MappingTest, RoundTripOfAMessageInEncodeOrder)
{
    const bytes msg = mapping(cat({kFecPrefix, kLabel, "06 00 00 04 00 00 00 2a", "ff 00 00 02 be ef"}));
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    const encoded e = encode(LDP_MSG_LABEL_MAPPING, d.rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(msg)) << "unknown U+F TLVs are forwarded byte for byte";
}

TEST_F(MappingTest, EncodeFailsOnAShortMessageLength)
{
    // Each case cuts usMsgLen by one byte too many for the last TLV.
    const struct {
        const char *name;
        const char *tlvs;
    } cases[] = {
        {"label", ""},
        {"request id", "06 00 00 04 00 00 00 2a"},
        {"hop count", "01 03 00 01 03"},
        {"short", "09 00 00 02 12 34"},
        {"empty", "02 06 00 00"},
        {"private", "3e 0a 00 02 ab cd"},
        {"path vector", "01 04 00 04 0a 00 00 01"},
        {"mp status", "09 6f 00 04 01 00 01 02"},
    };
    for (const auto &c : cases) {
        testplat::reset();
        const bytes msg = mapping(cat({kFecPrefix, kLabel, c.tlvs}));
        decoded d = decode(msg);
        ASSERT_EQ(d.rc, LDP_OK) << c.name;
        auto *rec = static_cast<LDP_MappingMsg *>(d.rec);
        rec->stMsgHeader.usMsgLen = uint16_t(rec->stMsgHeader.usMsgLen - 1);
        EXPECT_EQ(encode(LDP_MSG_LABEL_MAPPING, rec).rc, LDP_ERR_PARAM) << c.name;
        expect_one_assertion("ldp_enc");
    }
}

TEST_F(MappingTest, EncodeRefusesAnOutOfRangeLengthWithoutWriting)
{
    auto *rec = new_record<LDP_MappingMsg>();
    rec->stMsgHeader = {LDP_MSG_LABEL_MAPPING, 4087, 1};
    uint8_t buf[16] = {};
    EXPECT_EQ(LDP_EncodeMappingMsg(buf, rec, 0, sizeof buf), LDP_ERR_PARAM);
    EXPECT_EQ(to_hex(buf, 8), "00 00 00 00 00 00 00 00");
    expect_no_assertions();
    EXPECT_EQ(LDP_EncodeMappingMsg(nullptr, rec, 0, 16), LDP_ERR_PARAM);
    EXPECT_EQ(LDP_EncodeMappingMsg(buf, nullptr, 0, 16), LDP_ERR_PARAM);
    LDP_FreeMessage(rec);
}

TEST_F(MappingTest, EncodeOptionalTlvsOnlyTheDecoderNeverSets)
{
    auto *rec = new_record<LDP_MappingMsg>();
    rec->stMsgHeader = {LDP_MSG_LABEL_MAPPING, 4 + 5 + 8 + 12 + 28 + 8 + 7, 9};
    make_empty(&rec->stFecTlv.stFecList);
    make_empty(&rec->stUnknTlvList);
    auto *wild = static_cast<LDP_FecElement *>(PLAT_SimpleAlloc_F(kModule, sizeof(LDP_FecElement), "test", 1));
    std::memset(static_cast<void *>(wild), 0, sizeof *wild);
    wild->stBody.ucFecType = 1;
    wild->ucFecKind = 1;
    append(&rec->stFecTlv.stFecList, &wild->stNode);
    rec->stFecTlv.stTlvHeader = {LDP_TLV_FEC, 1};
    rec->stLabelTlv.stTlvHeader = {LDP_TLV_GENERIC_LABEL, 4};
    rec->stLabelTlv.ulLabel = 16;
    rec->stLabelTlv.usLabelKind = LDP_TLV_GENERIC_LABEL;
    rec->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 3, 0x0A000001};
    rec->stTrafficTlv = {{0x0810, 24}, 1, 2, 0, 4, 5, 6, 7, 8, 9};
    rec->stWordPtrTlv.stTlvHeader = {0x3E01, 4};
    rec->stWordPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", 2));
    std::memcpy(rec->stWordPtrTlv.pucValue, "\x01\x02\x03\x04", 4);
    rec->stVarPtrTlv.stTlvHeader = {0x3E02, 3};
    rec->stVarPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 3));
    std::memcpy(rec->stVarPtrTlv.pucValue, "\xaa\xbb\xcc", 3);
    rec->ucOptFlags1 = LDP_MAP_OPT_LSPID | LDP_MAP_OPT_TRAFFIC | LDP_MAP_OPT_WORD_PTR | LDP_MAP_OPT_VAR_PTR;

    const encoded e = encode(LDP_MSG_LABEL_MAPPING, rec);
    ASSERT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), "04 00 00 48 00 00 00 09"
                              " 01 00 00 01 01"
                              " 02 00 00 04 00 00 00 10"
                              " 08 21 00 08 00 00 00 03 0a 00 00 01"
                              " 08 10 00 18 01 02 00 04 00 00 00 05 00 00 00 06 00 00 00 07 00 00 00 08 00 00 00 09"
                              " 3e 01 00 04 01 02 03 04"
                              " 3e 02 00 03 aa bb cc");
}

TEST_F(MappingTest, EveryAllocationFailureGives108AndLeavesNothing)
{
    // Allocations: record, two FEC elements, path vector, two unknown TLVs (element and copy each).
    const bytes msg = mapping(cat({"01 00 00 0b 02 00 01 10 0a 01 02 00 01 08 0b", kLabel,
                                   "01 04 00 04 0a 00 00 01", "ff 00 00 01 aa", "ff 01 00 00"}));
    const decoded ok = decode(msg);
    ASSERT_EQ(ok.rc, LDP_OK);
    LDP_FreeMessage(ok.rec);
    const size_t allocations = testplat::alloc_calls();
    ASSERT_EQ(allocations, 8u);
    for (size_t n = 1; n <= allocations; ++n) {
        testplat::reset();
        testplat::fail_alloc_at(n);
        const decoded d = decode(msg);
        EXPECT_EQ(d.rc, LDP_ERR_NO_MEMORY) << "allocation " << n;
        EXPECT_EQ(d.rec, nullptr);
        EXPECT_EQ(testplat::live_blocks(), 0u) << "allocation " << n;
    }
}

TEST_F(MappingTest, FreeReleasesOwnedMemoryAndEmptiesTheLists)
{
    const decoded d = decode(kRich);
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_MappingMsg *>(d.rec);
    rec->stVarPtrTlv.pucValue = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 3, "test", 1));
    rec->ucOptFlags1 |= LDP_MAP_OPT_VAR_PTR;

    rec->stMsgHeader.usMsgType = 0x0401; // another type: nothing is released
    const size_t live = testplat::live_blocks();
    LDP_FreeLabelMappingMsg(rec);
    EXPECT_EQ(testplat::live_blocks(), live);

    rec->stMsgHeader.usMsgType = 0x8400; // the U bit does not matter
    LDP_FreeLabelMappingMsg(rec);
    EXPECT_EQ(testplat::live_blocks(), 1u) << "only the record itself is left";
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_TRUE(is_empty(rec->stUnknTlvList));
    EXPECT_EQ(rec->stPathVectorTlv.pulLsrId, nullptr);
    EXPECT_TRUE(rec->ucOptFlags1 & LDP_MAP_OPT_PATH_VECTOR) << "its presence bit is left";
    EXPECT_EQ(rec->stVarPtrTlv.pucValue, nullptr);
    EXPECT_FALSE(rec->ucOptFlags1 & LDP_MAP_OPT_VAR_PTR);
    LDP_FreeLabelMappingMsg(rec); // a second release is harmless
    LDP_FreeLabelMappingMsg(nullptr);
    LDP_FreeMessage(rec);
}

} // namespace
} // namespace ldptest
