// Notification and Status TLV: what the wire vectors cannot show (owned
// buffers, allocation failures with differing codes, the release state, the
// TLV functions called directly, encoder room rules).
#include "support.hpp"

namespace ldptest {
namespace {

class NotifyTest : public CodecTest {};

LDP_StatusTlv status_tlv(uint16_t len)
{
    LDP_StatusTlv st = {};
    st.stTlvHeader = {LDP_TLV_STATUS, len};
    return st;
}

TEST_F(NotifyTest, StatusTlvDecoder)
{
    const bytes v = hex("c0 00 00 28 00 00 01 02 04 04");
    LDP_StatusTlv st = status_tlv(10);
    // The PW status is handed on, with the record filled all the same.
    EXPECT_EQ(LDP_DecodeStatusTlv(v.data(), &st), LDP_STOP_WALK);
    EXPECT_EQ(st.ulStatusCode, 0xc0000028u);
    EXPECT_EQ(st.ulStatusMsgId, 0x102u);
    EXPECT_EQ(st.usStatusMsgType, 0x0404u);
    for (const uint16_t len : {0, 9, 11}) {
        st = status_tlv(len);
        EXPECT_EQ(LDP_DecodeStatusTlv(v.data(), &st), LDP_STATUS_MALFORMED_TLV) << len;
    }
    expect_no_assertions();
}

TEST_F(NotifyTest, StatusTlvEncoderNeedsRoomForEachField)
{
    uint8_t out[14] = {};
    LDP_StatusTlv st;
    for (uint16_t room = 0; room < 14; ++room) {
        testplat::reset();
        st = {{LDP_TLV_STATUS, 10}, 0x8000000a, 7, 0x0100};
        EXPECT_EQ(LDP_EncodeStatusTlv(out, &st, 0, room), LDP_ERR_PARAM) << room;
        expect_one_assertion("ldp_enc");
    }
    st = {{LDP_TLV_STATUS, 10}, 0x8000000a, 7, 0x0100};
    EXPECT_EQ(LDP_EncodeStatusTlv(out, &st, 0, 14), LDP_OK);
    EXPECT_EQ(to_hex(out, 14), "03 00 00 0a 80 00 00 0a 00 00 00 07 01 00");
    EXPECT_EQ(st.stTlvHeader.usTlvLen, 10u); // the length is given back in host order
}

// A Notification with both returned copies, a FEC, a PW status, PW interface
// parameters and an MP Status.
const char *const kOwning = "00 01 00 4d 00 00 00 09  03 00 00 0a 00 00 00 05 00 00 00 09 02 00"
                            "  03 02 00 0a 00 01 00 1e c0 00 02 01 00 00"
                            "  03 03 00 04 02 00 00 16"
                            "  09 6a 00 04 00 00 00 01"
                            "  09 6f 00 04 01 00 01 02"
                            "  01 00 00 07 02 00 01 18 c0 a8 0a"
                            "  09 6b 00 06 01 04 05 dc 03 04";

TEST_F(NotifyTest, OwnedCopiesAreKeptAsReceivedAndEncodeBack)
{
    const bytes msg = hex(kOwning);
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    const auto *rec = static_cast<const LDP_NotifyMsg *>(d.rec);
    EXPECT_EQ(to_hex(rec->pucRetPdu, 10), "00 01 00 1e c0 00 02 01 00 00");
    EXPECT_EQ(to_hex(rec->pucRetMsg, 4), "02 00 00 16");
    EXPECT_EQ(to_hex(rec->pucPwStatus, 4), "00 00 00 01");
    EXPECT_EQ(to_hex(rec->pucPwIfParam, 6), "01 04 05 dc 03 04");
    EXPECT_EQ(rec->ucNotifFlags, 0xe6u);
    EXPECT_EQ(rec->ucNotifFlags2, LDP_NOTIF2_MP_STATUS);
    EXPECT_EQ(to_hex(encode(LDP_MSG_NOTIFICATION, d.rec).wire), to_hex(msg));
}

TEST_F(NotifyTest, EachAllocationFailureHasItsOwnCode)
{
    // Record, Returned PDU, Returned Message, PW status, FEC element, PW
    // interface parameters: the returned copies answer 25, the rest 108.
    const uint32_t want[] = {LDP_ERR_NO_MEMORY, LDP_STATUS_INTERNAL_ERROR, LDP_STATUS_INTERNAL_ERROR,
                             LDP_ERR_NO_MEMORY, LDP_ERR_NO_MEMORY,         LDP_ERR_NO_MEMORY};
    for (size_t k = 1; k <= std::size(want); ++k) {
        testplat::reset();
        testplat::fail_alloc_at(k);
        const decoded d = decode(hex(kOwning));
        EXPECT_EQ(d.rc, want[k - 1]) << "allocation " << k;
        EXPECT_EQ(d.rec, nullptr);
    }
}

TEST_F(NotifyTest, FailedPwInterfaceCopyIsReportedWithItsDetails)
{
    const bytes msg = hex("00 01 00 1c 00 00 00 09  03 00 00 0a 00 00 00 0a 00 00 00 00 00 00"
                          "  09 6b 00 06 01 04 05 dc 03 04");
    LDP_FreeMessage(decode(msg).rec);
    const size_t copies = testplat::memcpy_calls();
    int reported = 0;
    for (size_t k = 1; k <= copies; ++k) {
        testplat::reset();
        testplat::fail_memcpy_at(k, 34);
        const decoded d = decode(msg);
        for (const auto &a : testplat::assertions()) {
            if (a.text.rfind("iRc:", 0) != 0) {
                continue;
            }
            ++reported;
            EXPECT_EQ(a.file, "ldp_dec");
            EXPECT_EQ(a.text.rfind("iRc:34, Len:6, SrcP:", 0), 0u) << a.text;
            ASSERT_EQ(d.rc, LDP_OK);
            EXPECT_EQ(static_cast<const LDP_NotifyMsg *>(d.rec)->ucNotifFlags, LDP_NOTIF_PW_IF_PARAM);
        }
        LDP_FreeMessage(d.rec);
    }
    EXPECT_EQ(reported, 1);
}

TEST_F(NotifyTest, ReleaseFreesBuffersButLeavesSomeBits)
{
    const decoded d = decode(hex(kOwning));
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_NotifyMsg *>(d.rec);
    const size_t before = testplat::live_blocks();
    LDP_FreeNotifyMsg(rec);
    EXPECT_EQ(testplat::live_blocks(), before - 5);
    EXPECT_EQ(rec->pucRetPdu, nullptr);
    EXPECT_EQ(rec->pucRetMsg, nullptr);
    EXPECT_EQ(rec->pucPwStatus, nullptr);
    EXPECT_EQ(rec->pucPwIfParam, nullptr);
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(rec->ucNotifFlags, LDP_NOTIF_RET_PDU | LDP_NOTIF_RET_MSG);
    EXPECT_EQ(rec->ucNotifFlags2, LDP_NOTIF2_MP_STATUS);
    EXPECT_EQ(rec->stMpStatusTlv.ucStatusCode, 2u);

    // Records of other types are left alone.
    rec->stMsgHeader.usMsgType = LDP_MSG_HELLO;
    rec->ucNotifFlags = 0xff;
    LDP_FreeNotifyMsg(rec);
    EXPECT_EQ(rec->ucNotifFlags, 0xffu);
    LDP_FreeMessage(rec);
}

TEST_F(NotifyTest, EncoderReleasesFecElementsAtOnce)
{
    const bytes msg = hex("00 01 00 1d 00 00 00 09  03 00 00 0a 00 00 00 0a 00 00 00 00 00 00"
                          "  01 00 00 07 02 00 01 18 c0 a8 0a");
    const decoded d = decode(msg);
    ASSERT_EQ(d.rc, LDP_OK);
    auto *rec = static_cast<LDP_NotifyMsg *>(d.rec);
    uint8_t out[33] = {};
    EXPECT_EQ(LDP_EncodeNotifMsg(out, rec, 0, sizeof out), LDP_OK);
    EXPECT_EQ(to_hex(out, sizeof out), to_hex(msg));
    EXPECT_TRUE(is_empty(rec->stFecTlv.stFecList));
    EXPECT_EQ(testplat::live_blocks(), 1u); // the record alone
    LDP_FreeMessage(rec);
}

TEST_F(NotifyTest, EncoderRoomRules)
{
    // Returned PDU filling the room exactly: refused when a Returned Message
    // or Extended Status is still to come, accepted otherwise.
    struct room_case {
        uint8_t flags;
        uint16_t room;
        uint32_t rc;
    };
    const uint8_t pdu[10] = {0, 1, 0, 0x1e, 1, 2, 3, 4, 0, 0};
    const room_case cases[] = {
        {LDP_NOTIF_RET_PDU, 36, LDP_OK},
        {LDP_NOTIF_RET_PDU, 35, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_RET_MSG, 36, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_EXT_STATUS, 36, LDP_ERR_PARAM},
        {LDP_NOTIF_RET_PDU | LDP_NOTIF_LABEL_REQ_ID, 36, LDP_ERR_PARAM},
    };
    for (const room_case &c : cases) {
        testplat::reset();
        LDP_NotifyMsg rec = {};
        rec.stMsgHeader = {LDP_MSG_NOTIFICATION, 60, 1};
        rec.stStatusTlv = {{LDP_TLV_STATUS, 10}, 0x0a, 0, 0};
        rec.stRetPduTlv = {LDP_TLV_RETURNED_PDU, 10};
        rec.pucRetPdu = const_cast<uint8_t *>(pdu);
        rec.stRetMsgTlv = {LDP_TLV_RETURNED_MSG, 4};
        rec.pucRetMsg = const_cast<uint8_t *>(pdu);
        rec.stExtStatusTlv = {LDP_TLV_EXT_STATUS, 4};
        rec.stLabelReqIdTlv = {LDP_TLV_LABEL_REQ_MSG_ID, 4};
        rec.ucNotifFlags = c.flags;
        uint8_t out[64] = {};
        EXPECT_EQ(LDP_EncodeNotifMsg(out, &rec, 0, c.room), c.rc) << int(c.flags) << " room " << c.room;
        EXPECT_EQ(testplat::assertions().size(), c.rc == LDP_OK ? 0u : 1u);
    }
    // The message length rule needs no assertion.
    LDP_NotifyMsg rec = {};
    uint8_t out[8];
    for (const uint16_t len : {3, 4087}) {
        testplat::reset();
        rec.stMsgHeader = {LDP_MSG_NOTIFICATION, len, 1};
        EXPECT_EQ(LDP_EncodeNotifMsg(out, &rec, 0, 8), LDP_ERR_PARAM);
        expect_no_assertions();
    }
}

} // namespace
} // namespace ldptest
