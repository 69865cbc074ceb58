// Label Request, Withdraw, Release and Abort Request beyond the wire vectors
// (tests/vectors/label_msgs.vec): the TLVs only ever sent, in-place
// conversion left in records, label kinds, and what each release leaves.
#include "vectors.hpp"

namespace ldptest {
namespace {

using LabelMsgs = CodecTest;

template <class T>
T *new_block(size_t n = sizeof(T))
{
    auto *p = static_cast<T *>(PLAT_SimpleAlloc_F(kModule, uint32_t(n), "test", __LINE__));
    std::memset(static_cast<void *>(p), 0, n);
    return p;
}

void add_wildcard(LDP_FecTlv *fec)
{
    auto *e = new_block<LDP_FecElement>();
    e->ucFecKind = e->stBody.ucFecType = LDP_FEC_WILDCARD;
    append(&fec->stFecList, &e->stNode);
    fec->stTlvHeader = {LDP_TLV_FEC, 1};
}

void add_unknown(SLL_List *list)
{
    auto *u = new_block<LDP_UnknownTlv>();
    const bytes tlv = hex("cf 01 00 02 be ef");
    u->pucTlv = new_block<uint8_t>(tlv.size());
    std::memcpy(u->pucTlv, tlv.data(), tlv.size());
    u->ulTlvLen = uint32_t(tlv.size());
    append(list, &u->stNode);
}

// A Label Request with every TLV its encoder writes, lengths set by hand.
LDP_RequestMsg *full_request()
{
    auto *r = new_record<LDP_RequestMsg>();
    make_empty(&r->stFecTlv.stFecList);
    make_empty(&r->stErTlv.stHopList);
    make_empty(&r->stUnknTlvList);
    r->stMsgHeader = {LDP_MSG_LABEL_REQUEST, 131, 0x42};
    add_wildcard(&r->stFecTlv);
    r->stLabelTlv = {{LDP_TLV_GENERIC_LABEL, 4}, {0x12345}, LDP_TLV_GENERIC_LABEL};
    r->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 7, 0xC0000201u};
    r->stHopCountTlv = {{LDP_TLV_HOP_COUNT, 1}, 3};
    r->stPathVectorTlv.stTlvHeader = {LDP_TLV_PATH_VECTOR, 4};
    r->stPathVectorTlv.pulLsrId = new_block<uint32_t>();
    *r->stPathVectorTlv.pulLsrId = 0x0A000001u;
    r->stPathVectorTlv.usLsrIdCount = 1;
    r->stErTlv.stTlvHeader = {0x0800, 12};
    auto *hop = new_block<LDP_ErHop>();
    hop->stTlvHeader = {LDP_TLV_ER_HOP_IPV4, 8};
    hop->unHopBody.stIpv4.ulFlagsPreLen = 0x80000018u; // L bit, /24
    hop->unHopBody.stIpv4.ulIpv4Addr = 0xC0A81400u;
    hop->usHopKind = LDP_TLV_ER_HOP_IPV4;
    append(&r->stErTlv.stHopList, &hop->stNode);
    r->stTrafficTlv = {{0x0810, 24}, 1, 2, 0, 3, 0x3F800000u, 0x40000000u, 0x40400000u, 0x40800000u, 0x40A00000u};
    r->stWordTlvA = {{0x3E10, 4}, 0xA};
    r->stWordTlvB = {{0x3E11, 4}, 0xB};
    r->stWordTlvC = {{0x3E12, 4}, 0xC};
    r->stRawWordTlv = {{0x3E13, 4}, {0xAA, 0xBB, 0xCC, 0xDD}};
    r->stVarPtrTlv.stTlvHeader = {0x3E14, 3};
    r->stVarPtrTlv.pucValue = new_block<uint8_t>(3);
    std::memcpy(r->stVarPtrTlv.pucValue, "\x01\x02\x03", 3);
    add_unknown(&r->stUnknTlvList);
    r->ucOptFlags1 = 0xFF;
    r->ucOptFlags2 = LDP_REQ_OPT2_RAW_WORD | LDP_REQ_OPT2_WORD_C | LDP_REQ_OPT2_VAR_PTR;
    return r;
}

const char *const kFullRequest =
    "04 01 00 83 00 00 00 42  01 00 00 01 01  02 00 00 04 00 01 23 45"
    "  08 21 00 08 00 00 00 07 c0 00 02 01  01 03 00 01 03  01 04 00 04 0a 00 00 01"
    "  08 00 00 0c 08 01 00 08 80 00 00 18 c0 a8 14 00"                           // ER after the Path Vector
    "  08 10 00 18 01 02 00 03 3f 80 00 00 40 00 00 00 40 40 00 00 40 80 00 00 40 a0 00 00"
    "  3e 10 00 04 00 00 00 0a  3e 12 00 04 00 00 00 0c  3e 11 00 04 00 00 00 0b" // words A, C, B
    "  3e 13 00 04 aa bb cc dd  3e 14 00 03 01 02 03  cf 01 00 02 be ef";

TEST_F(LabelMsgs, RequestEncodesEveryTlvInItsOrder)
{
    const encoded e = encode(LDP_MSG_LABEL_REQUEST, full_request());
    EXPECT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(hex(kFullRequest)));
    expect_no_assertions();
}

TEST_F(LabelMsgs, RequestShortOfRoomAnywhereFailsWithAnAssertion)
{
    const size_t full = hex(kFullRequest).size();
    for (size_t room = 8; room < full; ++room) { // below 8 the header itself fails
        testplat::reset();
        LDP_RequestMsg *rec = full_request();
        auto out = std::make_unique<uint8_t[]>(room); // exact size: ASan sees any write past it
        EXPECT_EQ(LDP_EncodeReqMsg(out.get(), rec, kModule, uint16_t(room)), LDP_ERR_PARAM) << room;
        EXPECT_EQ(testplat::assertions().size(), 1u) << room;
        LDP_FreeMessage(rec);
    }
}

TEST_F(LabelMsgs, RequestEncodeGoesOnAfterAFailedCopy)
{
    testplat::reset();
    (void)encode(LDP_MSG_LABEL_REQUEST, full_request());
    const size_t copies = testplat::memcpy_calls();
    ASSERT_GT(copies, 10u);
    for (size_t k = 1; k <= copies; ++k) {
        LDP_RequestMsg *rec = full_request();
        testplat::reset();
        testplat::fail_memcpy_at(k, 34);
        EXPECT_EQ(encode(LDP_MSG_LABEL_REQUEST, rec).rc, LDP_OK) << k;
        ASSERT_EQ(testplat::assertions().size(), 1u) << k;
        EXPECT_EQ(testplat::assertions()[0].text, "34");
    }
}

TEST_F(LabelMsgs, RequestErTlvNeedsKnownHops)
{
    for (const uint16_t kind : {uint16_t(0), uint16_t(0x0805)}) {
        auto *r = new_record<LDP_RequestMsg>();
        make_empty(&r->stFecTlv.stFecList);
        make_empty(&r->stErTlv.stHopList);
        make_empty(&r->stUnknTlvList);
        r->stMsgHeader = {LDP_MSG_LABEL_REQUEST, 21, 1};
        add_wildcard(&r->stFecTlv);
        r->stErTlv.stTlvHeader = {0x0800, 8};
        if (kind != 0) { // else an empty hop list
            auto *hop = new_block<LDP_ErHop>();
            hop->stTlvHeader = {kind, 4};
            hop->usHopKind = kind;
            append(&r->stErTlv.stHopList, &hop->stNode);
        }
        r->ucOptFlags1 = LDP_REQ_OPT_ER;
        EXPECT_EQ(encode(LDP_MSG_LABEL_REQUEST, r).rc, LDP_ERR_PARAM) << kind;
    }
}

TEST_F(LabelMsgs, RequestReleaseKeepsBitsButThePointerOnes)
{
    LDP_RequestMsg *r = full_request();
    LDP_FreeLabelRequestMsg(r);
    EXPECT_EQ(r->stPathVectorTlv.pulLsrId, nullptr);
    EXPECT_EQ(r->stVarPtrTlv.pucValue, nullptr);
    EXPECT_EQ(r->ucOptFlags1, 0xFF) << "the Path Vector bit stays";
    EXPECT_EQ(r->ucOptFlags2, LDP_REQ_OPT2_RAW_WORD | LDP_REQ_OPT2_WORD_C);
    EXPECT_TRUE(is_empty(r->stFecTlv.stFecList) && is_empty(r->stErTlv.stHopList) && is_empty(r->stUnknTlvList));
    EXPECT_EQ(testplat::live_blocks(), 1u) << "only the record itself";
    LDP_FreeMessage(r);
}

// Each release does nothing for another type (U bit aside) and frees the kept
// unknown TLVs of its own; only the Request resets a list that held nothing.
template <class Rec>
void check_release(void (*release)(Rec *), uint16_t type, bool resets_empty_list)
{
    SCOPED_TRACE(type);
    auto *rec = new_record<Rec>();
    rec->stMsgHeader.usMsgType = type;
    release(rec);
    EXPECT_EQ(rec->stUnknTlvList.stHead.pNext != nullptr, resets_empty_list);

    make_empty(&rec->stFecTlv.stFecList);
    make_empty(&rec->stUnknTlvList);
    add_wildcard(&rec->stFecTlv);
    add_unknown(&rec->stUnknTlvList);
    rec->stMsgHeader.usMsgType = LDP_MSG_LABEL_MAPPING;
    release(rec);
    EXPECT_EQ(rec->stUnknTlvList.ulCount, 1u);
    EXPECT_EQ(rec->stFecTlv.stFecList.ulCount, 1u);
    rec->stMsgHeader.usMsgType = uint16_t(type | LDP_MSG_U_BIT);
    release(rec);
    EXPECT_TRUE(is_empty(rec->stUnknTlvList));
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_FreeMessage(rec);
}

TEST_F(LabelMsgs, ReleaseFunctions)
{
    check_release<LDP_RequestMsg>(LDP_FreeLabelRequestMsg, LDP_MSG_LABEL_REQUEST, true);
    check_release<LDP_LabelWithdrawMsg>(LDP_FreeLabelWithdrawMsg, LDP_MSG_LABEL_WITHDRAW, false);
    check_release<LDP_LabelReleaseMsg>(LDP_FreeLabelReleaseMsg, LDP_MSG_LABEL_RELEASE, false);
    check_release<LDP_LabelRequestAbortMsg>(LDP_FreeLabelRequestAbortMsg, LDP_MSG_LABEL_ABORT_REQUEST, false);
}

// The Withdraw decoder writes only the high byte of the label kind.
TEST_F(LabelMsgs, LabelKindOfWithdrawAndRelease)
{
    auto *w = static_cast<LDP_LabelWithdrawMsg *>(new_prepared(*find_kind(LDP_MSG_LABEL_WITHDRAW)));
    w->stLabelTlv.usLabelKind = 0x00AB;
    EXPECT_EQ(LDP_DecodeWithdrawMsg(vector_msg("label_msgs", "wdr-fec-label").data(), w, kModule), LDP_OK);
    EXPECT_EQ(w->stLabelTlv.usLabelKind, 0x02AB);
    LDP_FreeMessage(w);

    auto *r = static_cast<LDP_LabelReleaseMsg *>(new_prepared(*find_kind(LDP_MSG_LABEL_RELEASE)));
    r->stLabelTlv.usLabelKind = 0x00AB;
    EXPECT_EQ(LDP_DecodeReleaseMsg(vector_msg("label_msgs", "rel-fec-label").data(), r, kModule), LDP_OK);
    EXPECT_EQ(r->stLabelTlv.usLabelKind, LDP_TLV_GENERIC_LABEL);
    LDP_FreeMessage(r);
}

TEST_F(LabelMsgs, ReleaseStoppedByPseudowireStatusKeepsItsStatus)
{
    auto *r = static_cast<LDP_LabelReleaseMsg *>(new_prepared(*find_kind(LDP_MSG_LABEL_RELEASE)));
    EXPECT_EQ(LDP_DecodeReleaseMsg(vector_msg("label_msgs", "rel-status-40-e-f-bits").data(), r, kModule),
              LDP_STOP_WALK);
    EXPECT_EQ(r->stStatusTlv.ulStatusCode, 0xC0000028u);
    EXPECT_EQ(r->stStatusTlv.stTlvHeader.usTlvLen, 10);
    EXPECT_EQ(r->ucLblFlags & LDP_REL_FLAG_STATUS, 0) << "the bit is set only on success";
    LDP_FreeMessage(r);
}

TEST_F(LabelMsgs, AbortEncoderLeavesTheIdInNetworkOrder)
{
    const decoded d = decode(vector_msg("label_msgs", "abort-plain"));
    ASSERT_EQ(d.rc, LDP_OK);
    auto *a = static_cast<LDP_LabelRequestAbortMsg *>(d.rec);
    a->stMsgHeader.usMsgLen = uint16_t(a->stMsgHeader.usMsgLen + 12);
    a->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 7, 0xC0000201u};
    a->ucAbortFlags = LDP_ABORT_FLAG_LSPID;
    bytes out(39);
    EXPECT_EQ(LDP_EncodeAbortReqMsg(out.data(), a, kModule, uint16_t(out.size())), LDP_OK);
    EXPECT_EQ(to_hex(out), to_hex(hex("04 04 00 23 00 00 00 60  01 00 00 07 02 00 01 18 c0 a8 14"
                                      "  06 00 00 04 00 00 03 00  08 21 00 08 00 00 00 07 c0 00 02 01")));
    EXPECT_EQ(a->ulLabelReqMsgId, 0x00030000u);
    EXPECT_EQ(a->stLabelReqIdTlv.usTlvType, 0x0006);
    EXPECT_EQ(a->stLabelReqIdTlv.usTlvLen, 4) << "the length is given back";

    // A length the encoders refuse: nothing written, nothing reported.
    a->stMsgHeader.usMsgLen = 4087;
    bytes untouched(40, 0xEE);
    EXPECT_EQ(LDP_EncodeAbortReqMsg(untouched.data(), a, kModule, 40), LDP_ERR_PARAM);
    EXPECT_EQ(untouched, bytes(40, 0xEE));
    expect_no_assertions();
    LDP_FreeMessage(a);
}

} // namespace
} // namespace ldptest
