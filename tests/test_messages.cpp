// SPDX-License-Identifier: BSD-2-Clause
// Notification, Address and label messages (Mapping aside) beyond their wire vectors:
// records only an engine fills, their encoding, and what releases leave.
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

// ---------------------------------------------------------------- Notification

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

// ---------------------------------------------------------------- Address and Address Withdraw

TEST_F(MsgTest, AddressListAndMacListEncoders)
{
    // IPv6 words and MACs (no vector carries them): exact room, or short of a
    // word, the header or the MACs; a count without addresses is refused silently.
    uint32_t v6[4] = {0x20010db8u, 0, 0, 1};
    uint8_t macs[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    const struct {
        bool mac;
        uint16_t len, room;
        uint32_t rc;
        const char *wire; // null: one assertion
    } cases[] = {
        {false, 18, 22, LDP_OK, "01 01 00 12 00 02 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01"},
        {false, 18, 21, LDP_ERR_PARAM, nullptr},
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
        const char *wire;
    } cases[] = {
        {35, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST,
         "03 01 00 23 00 00 00 42 01 01 00 06 00 01 0a 01 02 01 01 00 00 07 02 00 01 18 c0 a8 0a"
         " 04 04 00 06 00 11 22 33 44 55"},
        // A list of 5 bytes or fewer is left out; the presence bit is not consulted.
        {25, 5, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST | LDP_ADDRWD_ADDR_LIST,
         "03 01 00 19 00 00 00 42 01 00 00 07 02 00 01 18 c0 a8 0a 04 04 00 06 00 11 22 33 44 55"},
        {14, 6, 0, "03 01 00 0e 00 00 00 42 01 01 00 06 00 01 0a 01 02 01"},
    };
    for (const auto &c : cases) {
        testplat::reset();
        const encoded e = encode(LDP_MSG_ADDRESS_WITHDRAW, withdraw_record(c.msg_len, c.list_len, c.flags));
        EXPECT_EQ(e.rc, LDP_OK) << c.msg_len;
        EXPECT_EQ(to_hex(e.wire), to_hex(hex(c.wire)));
        expect_no_assertions();
    }
    // Short of room anywhere in the list, the FEC TLV or the MAC List.
    for (uint16_t len = 4; len < 35; ++len) {
        testplat::reset();
        EXPECT_EQ(encode(LDP_MSG_ADDRESS_WITHDRAW, withdraw_record(len, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST)).rc,
                  LDP_ERR_PARAM) << len;
        expect_one_assertion("ldp_enc");
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
    EXPECT_EQ(a->ulLabelReqMsgId, kBigEndian ? 0x00000300u : 0x00030000u);
    EXPECT_EQ(a->stLabelReqIdTlv.usTlvType, kBigEndian ? 0x0600 : 0x0006);
    EXPECT_EQ(a->stLabelReqIdTlv.usTlvLen, 4) << "the length is given back";
    LDP_FreeMessage(a);
}

} // namespace
} // namespace ldptest
