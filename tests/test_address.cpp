// Address family: the address array of a decoded record, the Address List and
// MAC List functions called directly, the Address Withdraw encoder and the
// record the withdraw decoder keeps when it stops at a FEC TLV.
#include <bit>

#include "support.hpp"
#include "vectors.hpp"

namespace ldptest {
namespace {

class AddressTest : public CodecTest {};

TEST_F(AddressTest, DecodedAddressesAreInHostOrder)
{
    const decoded d = decode(vector_msg("address", "addr-ipv4"));
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_AddressMsg *>(d.rec);
    ASSERT_NE(rec->pulAddrList, nullptr);
    EXPECT_EQ(u32_at(rec->pulAddrList, 0), 0xc0000201u);
    EXPECT_EQ(u32_at(rec->pulAddrList, 1), 0x0a000001u);
    EXPECT_EQ(u32_at(rec->pulAddrList, 2), 0x0a010201u);
    LDP_FreeMessage(d.rec);
}

TEST_F(AddressTest, AddressListPreParse)
{
    struct list_case {
        const char *value;
        uint32_t rc;
    };
    const list_case cases[] = {
        {"", LDP_OK},
        {"00", LDP_STATUS_MALFORMED_TLV},
        {"00 07", LDP_OK}, // a family alone passes whatever it is
        {"00 01 0a 00 00 01", LDP_OK},
        {"00 01 0a 00 00", LDP_STATUS_MALFORMED_TLV},
        {"00 02 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01", LDP_OK},
        {"00 02 20 01 0d b8 00 00", LDP_STATUS_MALFORMED_TLV},
        {"00 03 0a 00", LDP_STATUS_UNSUPPORTED_AF},
    };
    for (const list_case &c : cases) {
        const bytes v = hex(std::string(c.value) + " ff"); // one byte more, so even "" has a pointer
        EXPECT_EQ(LDP_PreParseAddrListTlv(v.data(), uint16_t(v.size() - 1)), c.rc) << c.value;
    }
}

TEST_F(AddressTest, AddressListDecoderDirect)
{
    const bytes v = hex("00 03 0a 00 00 01");
    LDP_AddrListTlv list = {};
    list.stAddrListTlv = {LDP_TLV_ADDRESS_LIST, 6};
    // An unknown family is refused after the array is allocated; it stays for the release.
    EXPECT_EQ(LDP_DecodeAddrListTlv(v.data(), &list, kModule), LDP_STATUS_UNSUPPORTED_AF);
    EXPECT_EQ(list.usAddrFamily, 3u);
    ASSERT_NE(list.pulAddrList, nullptr);
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_MemFreeCallBack(list.pulAddrList);

    // An empty value leaves the family as it was.
    list.stAddrListTlv.usTlvLen = 0;
    EXPECT_EQ(LDP_DecodeAddrListTlv(v.data(), &list, kModule), LDP_OK);
    EXPECT_EQ(list.pulAddrList, nullptr);
    EXPECT_EQ(list.usAddrFamily, 3u);

    list.stAddrListTlv.usTlvLen = 6;
    list.usAddrFamily = 0;
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_DecodeAddrListTlv(hex("00 01 0a 00 00 01").data(), &list, kModule), LDP_ERR_NO_MEMORY);
}

TEST_F(AddressTest, FollowingTlvWalkDirect)
{
    // The walk after the first list: the scratch header ends up holding the
    // last header read, and an IPv4 list held means later lists are skipped.
    const bytes msg = vector_msg("address", "addr-ipv4-then-ipv4");
    LDP_AddressMsg rec = {};
    LDP_TlvHeader scratch = {};
    EXPECT_EQ(LDP_DecodeAddrMsgForOtherTLV(msg.data() + 18, &rec, kModule, 14, 28, &scratch, true), LDP_OK);
    EXPECT_EQ(scratch.usTlvType, LDP_TLV_ADDRESS_LIST);
    EXPECT_EQ(scratch.usTlvLen, 10u);
    EXPECT_EQ(rec.pulAddrList, nullptr);
    EXPECT_EQ(LDP_DecodeAddrMsgForOtherTLV(msg.data() + 18, &rec, kModule, 14, 28, &scratch, false), LDP_OK);
    EXPECT_EQ(rec.usAddrCount, 2u);
    ASSERT_NE(rec.pulAddrList, nullptr);
    EXPECT_EQ(u32_at(rec.pulAddrList, 1), 0x0a010201u);
    LDP_MemFreeCallBack(rec.pulAddrList);
}

TEST_F(AddressTest, AddressListEncoder)
{
    uint32_t v6[4] = {0x20010db8u, 0, 0, 1};
    LDP_AddrListTlv list = {{LDP_TLV_ADDRESS_LIST, 18}, LDP_AF_IPV6, v6, 1};
    uint8_t out[22] = {};
    EXPECT_EQ(LDP_EncodeAddrListTlv(out, &list, 0, 22), LDP_OK);
    EXPECT_EQ(to_hex(out, 22), "01 01 00 12 00 02 20 01 0d b8 00 00 00 00 00 00 00 00 00 00 00 01");

    // Short of room for the header, the family, or any address word.
    for (const uint16_t room : {3, 5, 9, 21}) {
        testplat::reset();
        list = {{LDP_TLV_ADDRESS_LIST, 18}, LDP_AF_IPV6, v6, 1};
        EXPECT_EQ(LDP_EncodeAddrListTlv(out, &list, 0, room), LDP_ERR_PARAM) << room;
        expect_one_assertion("ldp_enc");
    }
    testplat::reset();
    list = {{LDP_TLV_ADDRESS_LIST, 6}, LDP_AF_IPV4, nullptr, 1};
    EXPECT_EQ(LDP_EncodeAddrListTlv(out, &list, 0, 22), LDP_ERR_PARAM);
    expect_no_assertions();
}

TEST_F(AddressTest, MacListEncoder)
{
    uint8_t macs[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    uint8_t out[10] = {};
    LDP_MacListTlv mac = {{LDP_TLV_MAC_LIST, 0}, macs, 6};
    EXPECT_EQ(LDP_EncodeMacListTLV(out, &mac, 0, 4), LDP_OK); // empty: the header alone
    EXPECT_EQ(to_hex(out, 10), "04 04 00 00 00 00 00 00 00 00");
    mac = {{LDP_TLV_MAC_LIST, 6}, macs, 6};
    EXPECT_EQ(LDP_EncodeMacListTLV(out, &mac, 0, 10), LDP_OK);
    EXPECT_EQ(to_hex(out, 10), "04 04 00 06 00 11 22 33 44 55");
    expect_no_assertions();
    for (const uint16_t room : {3, 9}) {
        testplat::reset();
        mac = {{LDP_TLV_MAC_LIST, 6}, macs, 6};
        EXPECT_EQ(LDP_EncodeMacListTLV(out, &mac, 0, room), LDP_ERR_PARAM) << room;
        expect_one_assertion("ldp_enc");
    }
}

// An Address Withdraw record as an engine fills it: one address, a FEC
// element 10.1.0.0/16 when asked, a MAC when asked.
LDP_AddressWithdrawMsg *withdraw_record(uint16_t msg_len, uint16_t list_len, uint8_t flags)
{
    auto *rec = new_record<LDP_AddressWithdrawMsg>();
    rec->stMsgHeader = {LDP_MSG_ADDRESS_WITHDRAW, msg_len, 5};
    rec->stAddrListTlv = {LDP_TLV_ADDRESS_LIST, list_len};
    rec->usAddrFamily = LDP_AF_IPV4;
    rec->usAddrCount = 1;
    rec->pulAddrList = static_cast<uint32_t *>(PLAT_SimpleAlloc_F(kModule, 4, "test", __LINE__));
    std::memcpy(rec->pulAddrList, "\x01\x02\x01\x0a", 4); // 10.1.2.1 in host order (little-endian)
    make_empty(&rec->stFecTlv.stFecList);
    if (flags & LDP_ADDRWD_FEC) {
        rec->stFecTlv.stTlvHeader = {LDP_TLV_FEC, 6};
        auto *elem = new_record<LDP_FecElement>();
        elem->ucFecKind = elem->stBody.ucFecType = LDP_FEC_PREFIX;
        elem->stBody.usAddrFamily = LDP_AF_IPV4;
        elem->stBody.ucPrefixLen = 16;
        elem->stBody.aucAddr[0] = 10;
        elem->stBody.aucAddr[1] = 1;
        append(&rec->stFecTlv.stFecList, &elem->stNode);
    }
    if (flags & LDP_ADDRWD_MAC_LIST) {
        rec->stMacListTlv = {LDP_TLV_MAC_LIST, 6};
        rec->usMacListLen = 6;
        rec->pucMacList = static_cast<uint8_t *>(PLAT_SimpleAlloc_F(kModule, 6, "test", __LINE__));
        std::memcpy(rec->pucMacList, "\x00\x11\x22\x33\x44\x55", 6);
    }
    rec->ucAddrWdFlags = flags;
    return rec;
}

TEST_F(AddressTest, WithdrawEncoder)
{
    if (std::endian::native != std::endian::little) {
        GTEST_SKIP() << "the record's address is written for a little-endian host";
    }
    struct enc_case {
        uint16_t msg_len;
        uint16_t list_len;
        uint8_t flags;
        uint32_t rc;
        const char *wire;
    };
    const enc_case cases[] = {
        {34, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST, LDP_OK,
         "03 01 00 22 00 00 00 05 01 01 00 06 00 01 0a 01 02 01 01 00 00 06 02 00 01 10 0a 01"
         " 04 04 00 06 00 11 22 33 44 55"},
        // A list of 5 bytes or fewer is left out; the presence bit is not consulted.
        {24, 5, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST, LDP_OK,
         "03 01 00 18 00 00 00 05 01 00 00 06 02 00 01 10 0a 01 04 04 00 06 00 11 22 33 44 55"},
        {14, 6, 0, LDP_OK, "03 01 00 0e 00 00 00 05 01 01 00 06 00 01 0a 01 02 01"},
        // No room for the MAC list, then none for the FEC TLV.
        {33, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST, LDP_ERR_PARAM, nullptr},
        {23, 6, LDP_ADDRWD_FEC, LDP_ERR_PARAM, nullptr},
    };
    for (const enc_case &c : cases) {
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
}

TEST_F(AddressTest, WithdrawDecoderKeepsTheFecItStopsAt)
{
    // Called directly (the decode entry stops at the pre-parse): the record
    // holds the list and the FEC TLV, and releases both.
    const bytes msg = vector_msg("address", "wd-fec");
    auto *rec = new_record<LDP_AddressWithdrawMsg>();
    make_empty(&rec->stFecTlv.stFecList);
    EXPECT_EQ(LDP_DecodeAddrWithdrawMsg(msg.data(), rec, kModule), LDP_STOP_WALK);
    EXPECT_EQ(rec->ucAddrWdFlags, LDP_ADDRWD_ADDR_LIST | LDP_ADDRWD_FEC);
    EXPECT_EQ(rec->stFecTlv.stFecList.ulCount, 1u);
    LDP_FreeMessage(rec);

    // A FEC TLV that fails after one good element is passed over; the
    // element stays listed and goes with the record.
    const bytes bad = hex("03 01 00 0e 00 00 00 05 01 00 00 06 02 00 01 08 0a 05");
    const decoded d = decode(bad);
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *kept = static_cast<const LDP_AddressWithdrawMsg *>(d.rec);
    EXPECT_EQ(kept->ucAddrWdFlags, 0u);
    EXPECT_EQ(kept->stFecTlv.stFecList.ulCount, 1u);
    LDP_FreeMessage(d.rec);
}

TEST_F(AddressTest, ReleaseChecksTheType)
{
    auto *rec = withdraw_record(14, 6, LDP_ADDRWD_FEC | LDP_ADDRWD_MAC_LIST);
    LDP_FreeAddressMsg(reinterpret_cast<LDP_AddressMsg *>(rec)); // not an Address message
    EXPECT_NE(rec->pulAddrList, nullptr);
    LDP_FreeAddressWithdrawMsg(rec);
    EXPECT_EQ(rec->pulAddrList, nullptr);
    EXPECT_EQ(rec->pucMacList, nullptr);
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(testplat::live_blocks(), 1u);
    LDP_FreeMessage(rec);
}

} // namespace
} // namespace ldptest
