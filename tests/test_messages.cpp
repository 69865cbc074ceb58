// Notification, Address and label messages (Mapping aside) beyond their wire vectors: TLV
// functions called directly, records only an engine fills, room rules, what releases leave.
#include "vectors.hpp"

namespace ldptest {
namespace {

using MsgTest = CodecTest;

// The record LDP_Decode keeps for a vector case.
template <class Rec>
Rec *decoded_vector(const char *file, const char *name)
{
    const decoded d = decode(vector_msg(file, name));
    EXPECT_EQ(d.rc, LDP_OK) << name;
    return static_cast<Rec *>(d.rec);
}

// An owned copy of n bytes, as an engine would hand the library one.
uint8_t *owned_copy(const char *data, size_t n)
{
    auto *p = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, uint32_t(n), "test", __LINE__));
    std::memcpy(p, data, n);
    return p;
}

// A release does nothing for a record of another type and, the U bit aside,
// frees all the record owns. Returns the record for a closer look.
template <class Rec>
Rec *check_release(void (*release)(Rec *), Rec *rec)
{
    const uint16_t type = rec->stMsgHeader.usMsgType;
    const size_t owned = testplat::live_blocks();
    rec->stMsgHeader.usMsgType = LDP_MSG_HELLO;
    release(rec);
    EXPECT_EQ(testplat::live_blocks(), owned) << type;
    rec->stMsgHeader.usMsgType = uint16_t(type | LDP_MSG_U_BIT);
    release(rec);
    EXPECT_EQ(testplat::live_blocks(), 1u) << type << ": only the record itself";
    return rec;
}

TEST_F(MsgTest, EncodersRefuseABadMessageLengthSilently)
{
    for (const uint16_t type : {LDP_MSG_NOTIFICATION, LDP_MSG_ADDRESS, LDP_MSG_ADDRESS_WITHDRAW, LDP_MSG_LABEL_REQUEST,
                                LDP_MSG_LABEL_WITHDRAW, LDP_MSG_LABEL_RELEASE, LDP_MSG_LABEL_ABORT_REQUEST}) {
        for (const uint16_t len : {3, 4087}) {
            testplat::reset();
            const msg_kind &k = *find_kind(type);
            auto *rec = static_cast<LDP_MsgHeader *>(new_prepared(k));
            *rec = {type, len, 1};
            bytes out(64, 0xEE);
            EXPECT_EQ(k.encode(out.data(), rec, kModule, 64), LDP_ERR_PARAM) << type << " " << len;
            EXPECT_EQ(out, bytes(64, 0xEE));
            expect_no_assertions();
            LDP_FreeMessage(rec);
        }
    }
}

// ---------------------------------------------------------------- Notification

TEST_F(MsgTest, StatusTlvEncoderNeedsRoomForEachField)
{
    uint8_t out[14] = {};
    for (uint16_t room = 0; room <= 14; ++room) {
        testplat::reset();
        LDP_StatusTlv st = {{LDP_TLV_STATUS, 10}, 0x8000000a, 7, 0x0100};
        EXPECT_EQ(LDP_EncodeStatusTlv(out, &st, 0, room), room < 14 ? LDP_ERR_PARAM : LDP_OK) << room;
        EXPECT_EQ(testplat::assertions().size(), room < 14 ? 1u : 0u) << room;
        EXPECT_EQ(st.stTlvHeader.usTlvLen, 10u); // the length is given back in host order
    }
    EXPECT_EQ(to_hex(out, 14), "03 00 00 0a 80 00 00 0a 00 00 00 07 01 00");
}

TEST_F(MsgTest, NotificationBuffersGoButSomeBitsStay)
{
    auto *rec = check_release(LDP_FreeNotifyMsg, decoded_vector<LDP_NotifyMsg>("notify", "notif-owned-copies"));
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(rec->ucNotifFlags, LDP_NOTIF_EXT_STATUS | LDP_NOTIF_RET_PDU | LDP_NOTIF_RET_MSG);
    EXPECT_EQ(rec->ucNotifFlags2, LDP_NOTIF2_MP_STATUS);
    LDP_FreeMessage(rec);
    // The encoder releases the FEC elements as soon as they are written.
    rec = decoded_vector<LDP_NotifyMsg>("notify", "notif-fec");
    uint8_t out[33];
    EXPECT_EQ(LDP_EncodeNotifMsg(out, rec, 0, sizeof out), LDP_OK);
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_FreeMessage(rec);
}

TEST_F(MsgTest, FailedPwInterfaceCopyIsReportedWithItsDetails)
{
    const bytes &msg = vector_msg("notify", "notif-pw-if-param");
    LDP_FreeMessage(decode(msg).rec);
    const size_t last = testplat::memcpy_calls(); // the PW interface parameters' copy
    testplat::reset();
    testplat::fail_memcpy_at(last, 34);
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(static_cast<const LDP_NotifyMsg *>(d.rec)->ucNotifFlags, LDP_NOTIF_PW_IF_PARAM);
    ASSERT_EQ(testplat::assertions().size(), 1u);
    EXPECT_EQ(testplat::assertions()[0].file, "ldp_dec");
    EXPECT_EQ(testplat::assertions()[0].text.rfind("iRc:34, Len:6, SrcP:", 0), 0u) << testplat::assertions()[0].text;
    LDP_FreeMessage(d.rec);
}

TEST_F(MsgTest, NotificationEncoderRoomRules)
{
    // A Returned PDU filling the room exactly: refused when a Returned
    // Message or Extended Status is still to come, accepted otherwise.
    const struct {
        uint8_t flags;
        uint16_t room;
        uint32_t rc;
    } cases[] = {
        {LDP_NOTIF_RET_PDU, 36, LDP_OK},
        {LDP_NOTIF_RET_PDU, 35, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_RET_MSG, 36, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_EXT_STATUS, 36, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_LABEL_REQ_ID, 36, LDP_ERR_PARAM},
    };
    uint8_t pdu[10] = {0, 1, 0, 0x1e, 1, 2, 3, 4, 0, 0};
    for (const auto &c : cases) {
        testplat::reset();
        LDP_NotifyMsg rec = {};
        rec.stMsgHeader = {LDP_MSG_NOTIFICATION, 60, 1};
        rec.stStatusTlv = {{LDP_TLV_STATUS, 10}, 0x0a, 0, 0};
        rec.stRetPduTlv = {LDP_TLV_RETURNED_PDU, 10};
        rec.stRetMsgTlv = {LDP_TLV_RETURNED_MSG, 4};
        rec.pucRetPdu = rec.pucRetMsg = pdu;
        rec.stExtStatusTlv = {LDP_TLV_EXT_STATUS, 4};
        rec.stLabelReqIdTlv = {LDP_TLV_LABEL_REQ_MSG_ID, 4};
        rec.ucNotifFlags = c.flags;
        uint8_t out[64] = {};
        EXPECT_EQ(LDP_EncodeNotifMsg(out, &rec, 0, c.room), c.rc) << int(c.flags) << " room " << c.room;
        EXPECT_EQ(testplat::assertions().size(), c.rc == LDP_OK ? 0u : 1u);
    }
}

// ---------------------------------------------------------------- Address and Address Withdraw

TEST_F(MsgTest, AddressListDecoderDirect)
{
    const bytes v = hex("00 03 0a 00 00 01");
    LDP_AddrListTlv list = {{LDP_TLV_ADDRESS_LIST, 6}, 0, nullptr, 0};
    // An unknown family is refused after the array is allocated; it stays for the release.
    EXPECT_EQ(LDP_DecodeAddrListTlv(v.data(), &list, kModule), LDP_STATUS_UNSUPPORTED_AF);
    EXPECT_EQ(list.usAddrFamily, 3u);
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_MemFreeCallBack(list.pulAddrList);
    // An empty value drops the array pointer and leaves the family.
    list.stAddrListTlv.usTlvLen = 0;
    EXPECT_EQ(LDP_DecodeAddrListTlv(v.data(), &list, kModule), LDP_OK);
    EXPECT_EQ(list.pulAddrList, nullptr);
    EXPECT_EQ(list.usAddrFamily, 3u);
}

TEST_F(MsgTest, AddressFollowingTlvWalkDirect)
{
    // The scratch header ends up holding the last header read, and an IPv4
    // list held means later lists are skipped.
    const bytes &msg = vector_msg("address", "addr-ipv4-then-ipv4");
    LDP_AddressMsg rec = {};
    LDP_TlvHeader scratch = {};
    EXPECT_EQ(LDP_DecodeAddrMsgForOtherTLV(msg.data() + 18, &rec, kModule, 14, 28, &scratch, true), LDP_OK);
    EXPECT_EQ(scratch.usTlvType, LDP_TLV_ADDRESS_LIST);
    EXPECT_EQ(scratch.usTlvLen, 10u);
    EXPECT_EQ(rec.pulAddrList, nullptr);
    EXPECT_EQ(LDP_DecodeAddrMsgForOtherTLV(msg.data() + 18, &rec, kModule, 14, 28, &scratch, false), LDP_OK);
    EXPECT_EQ(rec.usAddrCount, 2u);
    ASSERT_NE(rec.pulAddrList, nullptr);
    EXPECT_EQ(u32_at(rec.pulAddrList, 1), 0x0a010201u); // host order
    LDP_MemFreeCallBack(rec.pulAddrList);
}

TEST_F(MsgTest, AddressListAndMacListEncoders)
{
    // Exact room, or short of it for the header, the family, a word or the
    // MACs; an address count without addresses (len 0) is refused silently.
    uint32_t v6[4] = {0x20010db8u, 0, 0, 1};
    uint8_t macs[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    const struct {
        bool mac;
        uint16_t len, room;
        uint32_t rc;
        const char *wire; // null: one assertion
    } cases[] = {
        {false, 18, 22, LDP_OK, "01 01 00 12 00 02 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"},
        {false, 18, 3, LDP_ERR_PARAM, nullptr}, {false, 18, 5, LDP_ERR_PARAM, nullptr},
        {false, 18, 9, LDP_ERR_PARAM, nullptr}, {false, 18, 21, LDP_ERR_PARAM, nullptr},
        {false, 0, 22, LDP_ERR_PARAM, ""},
        {true, 0, 4, LDP_OK, "04 04 00 00"}, // an empty MAC List: the header alone
        {true, 6, 10, LDP_OK, "04 04 00 06 00 11 22 33 44 55"},
        {true, 6, 3, LDP_ERR_PARAM, nullptr}, {true, 6, 9, LDP_ERR_PARAM, nullptr},
    };
    for (const auto &c : cases) {
        testplat::reset();
        uint8_t out[22] = {};
        LDP_AddrListTlv list = {{LDP_TLV_ADDRESS_LIST, 18}, LDP_AF_IPV6, c.len != 0 ? v6 : nullptr, 1};
        LDP_MacListTlv mac = {{LDP_TLV_MAC_LIST, c.len}, macs, 6};
        const uint32_t rc =
            c.mac ? LDP_EncodeMacListTLV(out, &mac, 0, c.room) : LDP_EncodeAddrListTlv(out, &list, 0, c.room);
        EXPECT_EQ(rc, c.rc) << c.mac << " room " << c.room;
        if (c.wire == nullptr) {
            expect_one_assertion("ldp_enc");
            continue;
        }
        expect_no_assertions();
        if (c.rc == LDP_OK) {
            EXPECT_EQ(to_hex(out, c.room), c.wire);
        }
    }
}

TEST_F(MsgTest, AddressWithdrawKeepsTheGoodElementsOfABadFec)
{
    const decoded d = decode(hex("03 01 00 0e 00 00 00 05  01 00 00 06 02 00 01 08 0a 05"));
    ASSERT_EQ(d.rc, LDP_OK);
    EXPECT_EQ(static_cast<const LDP_AddressWithdrawMsg *>(d.rec)->ucAddrWdFlags, 0u);
    EXPECT_EQ(static_cast<const LDP_AddressWithdrawMsg *>(d.rec)->stFecTlv.stFecList.ulCount, 1u);
    LDP_FreeMessage(d.rec);
}

// An Address Withdraw record as the decoder leaves it at a FEC TLV (10.1.2.1,
// 192.168.10.0/24), with a MAC List added as an engine would.
LDP_AddressWithdrawMsg *withdraw_record(uint16_t msg_len, uint16_t list_len, uint8_t flags)
{
    auto *rec = static_cast<LDP_AddressWithdrawMsg *>(new_prepared(*find_kind(LDP_MSG_ADDRESS_WITHDRAW)));
    EXPECT_EQ(LDP_DecodeAddrWithdrawMsg(vector_msg("address", "wd-fec").data(), rec, kModule), LDP_STOP_WALK);
    rec->stMsgHeader.usMsgLen = msg_len;
    rec->stAddrListTlv.usTlvLen = list_len;
    rec->stMacListTlv = {LDP_TLV_MAC_LIST, 6};
    rec->usMacListLen = 6;
    rec->pucMacList = owned_copy("\x00\x11\x22\x33\x44\x55", 6);
    rec->ucAddrWdFlags = flags;
    return rec;
}

TEST_F(MsgTest, AddressWithdrawEncoderAndAddressReleases)
{
    const struct {
        uint16_t msg_len, list_len;
        uint8_t flags;
        uint32_t rc;
        const char *wire;
    } cases[] = {
        {35, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST, LDP_OK,
         "03 01 00 23 00 00 00 42 01 01 00 06 00 01 0a 01 02 01 01 00 00 07 02 00 01 18 c0 a8 0a"
         " 04 04 00 06 00 11 22 33 44 55"},
        // A list of 5 bytes or fewer is left out; the presence bit is not consulted.
        {25, 5, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST | LDP_ADDRWD_ADDR_LIST, LDP_OK,
         "03 01 00 19 00 00 00 42 01 00 00 07 02 00 01 18 c0 a8 0a 04 04 00 06 00 11 22 33 44 55"},
        {14, 6, 0, LDP_OK, "03 01 00 0e 00 00 00 42 01 01 00 06 00 01 0a 01 02 01"},
        // No room for the MAC List, then none for the FEC TLV.
        {34, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST, LDP_ERR_PARAM, nullptr},
        {24, 6, LDP_ADDRWD_FEC, LDP_ERR_PARAM, nullptr},
    };
    for (const auto &c : cases) {
        testplat::reset();
        const encoded e = encode(LDP_MSG_ADDRESS_WITHDRAW, withdraw_record(c.msg_len, c.list_len, c.flags));
        EXPECT_EQ(e.rc, c.rc) << c.msg_len;
        if (c.wire != nullptr) {
            EXPECT_EQ(to_hex(e.wire), to_hex(hex(c.wire)));
            expect_no_assertions();
        } else {
            expect_one_assertion("ldp_enc");
        }
    }
    LDP_FreeMessage(check_release(LDP_FreeAddressWithdrawMsg, withdraw_record(14, 6, 0)));
    LDP_FreeMessage(check_release(LDP_FreeAddressMsg, decoded_vector<LDP_AddressMsg>("address", "addr-ipv4")));
}

// ---------------------------------------------------------------- label messages

// A Withdraw or Release sends an LSPID TLV after a label of any kind, and a
// Release its Status TLV after that.
TEST_F(MsgTest, WithdrawAndReleaseSendAnLspid)
{
    auto *w = decoded_vector<LDP_LabelWithdrawMsg>("label_msgs", "wdr-fec-label");
    auto *r = decoded_vector<LDP_LabelReleaseMsg>("label_msgs", "rel-status");
    w->stMsgHeader.usMsgLen = uint16_t(w->stMsgHeader.usMsgLen + 12);
    r->stMsgHeader.usMsgLen = uint16_t(r->stMsgHeader.usMsgLen + 12);
    w->stLabelTlv.stTlvHeader.usTlvType = w->stLabelTlv.usLabelKind = LDP_TLV_FR_LABEL;
    w->stLspIdTlv = r->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 7, 0xC0000201u};
    w->ucLblFlags |= LDP_WDR_FLAG_LSPID;
    r->ucLblFlags |= LDP_REL_FLAG_LSPID;
    EXPECT_EQ(to_hex(encode(LDP_MSG_LABEL_WITHDRAW, w).wire),
              to_hex(hex("04 02 00 23 00 00 00 30  01 00 00 07 02 00 01 18 c0 a8 0a  02 02 00 04 00 00 04 0d"
                         "  08 21 00 08 00 00 00 07 c0 00 02 01")));
    EXPECT_EQ(to_hex(encode(LDP_MSG_LABEL_RELEASE, r).wire),
              to_hex(hex("04 03 00 31 00 00 00 51  01 00 00 07 02 00 01 18 c0 a8 0a  02 00 00 04 00 00 04 0d"
                         "  08 21 00 08 00 00 00 07 c0 00 02 01  03 00 00 0a 00 00 00 00 00 00 03 03 04 02")));
}

// A Label Request with every TLV its encoder writes: what the decoder reads,
// then what only an engine sets, lengths by hand.
LDP_RequestMsg *full_request(uint16_t hop_kind = LDP_TLV_ER_HOP_IPV4)
{
    auto *r = decoded_vector<LDP_RequestMsg>("label_msgs", "req-all-and-kept");
    r->stMsgHeader.usMsgLen = 131;
    r->stLspIdTlv = {{LDP_TLV_LSPID, 8}, 0, 7, 0xC0000201u};
    r->stErTlv.stTlvHeader = {0x0800, 12};
    auto *hop = new_record<LDP_ErHop>();
    hop->stTlvHeader = {hop_kind, 8};
    hop->unHopBody.stIpv4.ulFlagsPreLen = 0x80000018u; // L bit, /24
    hop->unHopBody.stIpv4.ulIpv4Addr = 0xC0A81400u;
    hop->usHopKind = hop_kind;
    append(&r->stErTlv.stHopList, &hop->stNode);
    r->stTrafficTlv = {{0x0810, 24}, 1, 2, 0, 3, 0x3F800000u, 0x40000000u, 0x40400000u, 0x40800000u, 0x40A00000u};
    r->stWordTlvA = {{0x3E10, 4}, 0xA};
    r->stWordTlvB = {{0x3E11, 4}, 0xB};
    r->stWordTlvC = {{0x3E12, 4}, 0xC};
    r->stRawWordTlv = {{0x3E13, 4}, {0xAA, 0xBB, 0xCC, 0xDD}};
    r->stVarPtrTlv.stTlvHeader = {0x3E14, 3};
    r->stVarPtrTlv.pucValue = owned_copy("\x01\x02\x03", 3);
    r->ucOptFlags1 = 0xFF;
    r->ucOptFlags2 = LDP_REQ_OPT2_RAW_WORD | LDP_REQ_OPT2_WORD_C | LDP_REQ_OPT2_VAR_PTR;
    return r;
}

const char *const kFullRequest =
    "04 01 00 83 00 00 00 11  01 00 00 01 01  02 00 00 04 00 01 23 45"
    "  08 21 00 08 00 00 00 07 c0 00 02 01  01 03 00 01 03  01 04 00 04 0a 00 00 01"
    "  08 00 00 0c 08 01 00 08 80 00 00 18 c0 a8 14 00"                           // ER after the Path Vector
    "  08 10 00 18 01 02 00 03 3f 80 00 00 40 00 00 00 40 40 00 00 40 80 00 00 40 a0 00 00"
    "  3e 10 00 04 00 00 00 0a  3e 12 00 04 00 00 00 0c  3e 11 00 04 00 00 00 0b" // words A, C, B
    "  3e 13 00 04 aa bb cc dd  3e 14 00 03 01 02 03  cf 01 00 02 be ef";

TEST_F(MsgTest, RequestEncodesEveryTlvInItsOrder)
{
    const encoded e = encode(LDP_MSG_LABEL_REQUEST, full_request());
    EXPECT_EQ(e.rc, LDP_OK);
    EXPECT_EQ(to_hex(e.wire), to_hex(hex(kFullRequest)));
    expect_no_assertions();
    EXPECT_EQ(encode(LDP_MSG_LABEL_REQUEST, full_request(0x0805)).rc, LDP_ERR_PARAM) << "an ER hop of unknown kind";
}

TEST_F(MsgTest, RequestShortOfRoomAnywhereFailsWithAnAssertion)
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

TEST_F(MsgTest, RequestEncodeGoesOnAfterAFailedCopy)
{
    LDP_RequestMsg *rec = full_request();
    testplat::reset();
    (void)encode(LDP_MSG_LABEL_REQUEST, rec);
    const size_t copies = testplat::memcpy_calls();
    ASSERT_GT(copies, 10u);
    for (size_t k = 1; k <= copies; ++k) {
        rec = full_request();
        testplat::reset();
        testplat::fail_memcpy_at(k, 34);
        EXPECT_EQ(encode(LDP_MSG_LABEL_REQUEST, rec).rc, LDP_OK) << k;
        ASSERT_EQ(testplat::assertions().size(), 1u) << k;
        EXPECT_EQ(testplat::assertions()[0].text, "34");
    }
}

TEST_F(MsgTest, LabelMessageReleases)
{
    auto *r = check_release(LDP_FreeLabelRequestMsg, full_request());
    EXPECT_EQ(r->ucOptFlags1, 0xFF) << "the Path Vector bit stays";
    EXPECT_EQ(r->ucOptFlags2, LDP_REQ_OPT2_RAW_WORD | LDP_REQ_OPT2_WORD_C);
    EXPECT_TRUE(is_empty(r->stFecTlv.stFecList) && is_empty(r->stErTlv.stHopList) && is_empty(r->stUnknTlvList));
    LDP_FreeMessage(r);
    LDP_FreeMessage(check_release(LDP_FreeLabelWithdrawMsg,
                                  decoded_vector<LDP_LabelWithdrawMsg>("label_msgs", "wdr-unknown-u-f-kept")));
    LDP_FreeMessage(check_release(LDP_FreeLabelReleaseMsg,
                                  decoded_vector<LDP_LabelReleaseMsg>("label_msgs", "rel-status-then-unknown")));
    auto *a = decoded_vector<LDP_LabelRequestAbortMsg>("label_msgs", "abort-plain");
    auto *u = new_record<LDP_UnknownTlv>(); // never kept by this decoder, released all the same
    u->pucTlv = owned_copy("\xcf\x01\x00\x00", 4);
    append(&a->stUnknTlvList, &u->stNode);
    EXPECT_TRUE(is_empty(check_release(LDP_FreeLabelRequestAbortMsg, a)->stUnknTlvList));
    LDP_FreeMessage(a);
}

// The Withdraw decoder writes only the high byte of the label kind.
TEST_F(MsgTest, LabelKindOfWithdrawAndRelease)
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

TEST_F(MsgTest, AbortEncoderLeavesTheIdInNetworkOrder)
{
    auto *a = decoded_vector<LDP_LabelRequestAbortMsg>("label_msgs", "abort-plain");
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
    LDP_FreeMessage(a);
}

} // namespace
} // namespace ldptest
