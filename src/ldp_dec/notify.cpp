// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Notification message (RFC 5036 section 3.5.1)
// and of the Status TLV it opens with (also used by Label Release).
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

// Status data 40 is the RFC 4447 PW status, whatever the E and F bits say.
bool is_pw_status(const LDP_StatusTlv &st)
{
    return (st.ulStatusCode & LDP_STATUS_DATA_MASK) == LDP_STATUS_DATA_PW_STATUS;
}

} // namespace

extern "C" LDP_API uint32_t LDP_DecodeStatusTlv(const uint8_t *pucValue, LDP_StatusTlv *pstStatus)
{
    if (pucValue == nullptr || pstStatus == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (pstStatus->stTlvHeader.usTlvLen != LDP_STATUS_TLV_LEN) {
        return LDP_STATUS_MALFORMED_TLV;
    }
    // The three value fields follow the header in the record as on the wire.
    mem::copy(&pstStatus->ulStatusCode, LDP_STATUS_TLV_LEN, pucValue, LDP_STATUS_TLV_LEN, srcfile::dec);
    pstStatus->ulStatusCode = wire::to_host32(pstStatus->ulStatusCode);
    pstStatus->ulStatusMsgId = wire::to_host32(pstStatus->ulStatusMsgId);
    pstStatus->usStatusMsgType = wire::to_host16(pstStatus->usStatusMsgType);
    // A pseudowire status is the caller's business; the record is filled anyway.
    if (is_pw_status(*pstStatus)) {
        return LDP_STOP_WALK;
    }
    return LDP_OK;
}

namespace {

// Message ID plus a whole Status TLV (4-byte header, 10-byte value).
constexpr uint16_t kMinNotifLen = 18;
constexpr uint16_t kRetPduMinLen = 10;  // at least a PDU header
constexpr uint16_t kRetMsgMinLen = 4;   // at least a message type and length
constexpr uint16_t kLspIdLen = 8;

uint16_t masked(const LDP_TlvHeader &tlv) { return tlv.usTlvType & LDP_TLV_TYPE_MASK; }

// The opening both walks share: the message must hold a Status TLV and open
// with it. On LDP_OK the cursor stands after the Status TLV, which is stored
// in *status, and the caller walks on while TLVs remain (*more).
uint32_t open_notification(tlv_cursor &cur, LDP_StatusTlv *status, bool *more)
{
    if (cur.msg_len() < kMinNotifLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    const LDP_TlvHeader first = cur.header(srcfile::dec);
    if (!cur.value_fits(first.usTlvLen)) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    if (masked(first) != LDP_TLV_STATUS) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    status->stTlvHeader = first;
    const uint32_t rc = LDP_DecodeStatusTlv(cur.value(), status);
    if (rc != LDP_OK) {
        return rc; // LDP_STOP_WALK for a pseudowire status
    }
    cur.advance(first.usTlvLen);
    *more = false;
    if (cur.at_or_past_end()) {
        return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
    }
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    *more = true;
    return LDP_OK;
}

// First occurrences of the optional TLVs the pre-parse checks.
struct seen_tlvs {
    bool ext_status = false;
    bool ret_pdu = false;
    bool ret_msg = false;
    bool label = false;
    bool fec = false;
    bool lspid = false;
    bool req_id = false;
    bool pw_status = false;
    bool mp_status = false;
    bool pw_if_param = false;
};

// True when this is the first TLV of its kind (and marks it seen).
bool first_time(bool &seen)
{
    const bool first = !seen;
    seen = true;
    return first;
}

uint32_t pre_parse_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, const LDP_StatusTlv &status,
                       seen_tlvs &seen)
{
    const uint16_t len = tlv.usTlvLen;
    auto length_ok = [](bool ok) { return ok ? LDP_OK : LDP_STATUS_MALFORMED_TLV; };
    switch (masked(tlv)) {
    case LDP_TLV_EXT_STATUS:
        return first_time(seen.ext_status) ? length_ok(len == 4) : LDP_OK;
    case LDP_TLV_RETURNED_PDU:
        return first_time(seen.ret_pdu) ? length_ok(len >= kRetPduMinLen) : LDP_OK;
    case LDP_TLV_RETURNED_MSG:
        return first_time(seen.ret_msg) ? length_ok(len >= kRetMsgMinLen) : LDP_OK;
    case LDP_TLV_GENERIC_LABEL:
        return first_time(seen.label) ? length_ok(len == 4) : LDP_OK;
    case LDP_TLV_FEC: {
        if (!first_time(seen.fec)) {
            return LDP_OK;
        }
        const uint32_t rc = LDP_PreParseFECTlv(cur.value(), len);
        // A pseudowire FEC element is let through unless the status is the PW one.
        if (rc == LDP_STOP_WALK && !is_pw_status(status)) {
            return LDP_OK;
        }
        return rc;
    }
    case LDP_TLV_LSPID:
        return first_time(seen.lspid) ? length_ok(len == kLspIdLen) : LDP_OK;
    case LDP_TLV_LABEL_REQ_MSG_ID:
        return first_time(seen.req_id) ? length_ok(len == 4) : LDP_OK;
    case LDP_TLV_PW_STATUS:
        return first_time(seen.pw_status) ? length_ok(len == 4) : LDP_OK;
    case LDP_TLV_MP_STATUS:
        if (!first_time(seen.mp_status)) {
            return LDP_OK;
        }
        return length_ok(LDP_PreParseMpStatusTlv(cur.value(), len) == LDP_OK);
    case LDP_TLV_PW_IF_PARAMS:
        (void)first_time(seen.pw_if_param); // kept as bytes, nothing to check
        return LDP_OK;
    default:
        return LDP_OK; // unknown TLVs are passed over whatever their U bit says
    }
}

// An owned copy of a TLV value as received, or null when the platform is out
// of memory.
uint8_t *copy_value(const uint8_t *value, uint16_t len, uint32_t module)
{
    auto *buf = static_cast<uint8_t *>(mem::alloc(module, len, srcfile::dec));
    if (buf != nullptr) {
        mem::copy(buf, len, value, len, srcfile::dec);
    }
    return buf;
}

// The PW interface parameters copy reports a failure with its own text: the
// code, the length and the source address.
void copy_pw_if_param(uint8_t *dst, const uint8_t *value, uint16_t len)
{
    const int rc = memcpy_s(dst, len, value, len);
    if (rc != 0) {
        char text[128] = {};
        (void)snprintf_truncated_s(text, sizeof text, "iRc:%u, Len:%u, SrcP:%p", unsigned(rc), unsigned(len),
                                   static_cast<const void *>(value));
        mem::report(srcfile::dec, text);
    }
}

// Decodes one optional TLV into the record; LDP_OK goes on. *pending is the
// code the message ends with if it ends after this TLV.
uint32_t decode_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, LDP_NotifyMsg *rec, uint32_t *pending,
                    uint32_t module)
{
    const uint8_t *value = cur.value();
    const uint16_t len = tlv.usTlvLen;
    uint8_t &flags = rec->ucNotifFlags;
    uint8_t &flags2 = rec->ucNotifFlags2;
    switch (masked(tlv)) {
    case LDP_TLV_EXT_STATUS:
        if (flags & LDP_NOTIF_EXT_STATUS) {
            return LDP_OK;
        }
        rec->stExtStatusTlv = tlv;
        if (len != 4) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->ulExtStatus = wire::load32(value);
        flags |= LDP_NOTIF_EXT_STATUS;
        return LDP_OK;
    case LDP_TLV_RETURNED_PDU:
        if (flags & LDP_NOTIF_RET_PDU) {
            return LDP_OK;
        }
        rec->stRetPduTlv = tlv;
        if (len < kRetPduMinLen) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->pucRetPdu = copy_value(value, len, module);
        if (rec->pucRetPdu == nullptr) {
            return LDP_STATUS_INTERNAL_ERROR; // unlike the PW buffers below; intended
        }
        flags |= LDP_NOTIF_RET_PDU;
        return LDP_OK;
    case LDP_TLV_RETURNED_MSG:
        if (flags & LDP_NOTIF_RET_MSG) {
            return LDP_OK;
        }
        rec->stRetMsgTlv = tlv;
        if (len < kRetMsgMinLen) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->pucRetMsg = copy_value(value, len, module);
        if (rec->pucRetMsg == nullptr) {
            return LDP_STATUS_INTERNAL_ERROR;
        }
        flags |= LDP_NOTIF_RET_MSG;
        return LDP_OK;
    case LDP_TLV_LSPID:
        if (flags & LDP_NOTIF_LSPID) {
            return LDP_OK;
        }
        rec->stLspIdTlv.stTlvHeader = tlv;
        if (len != kLspIdLen) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stLspIdTlv.usReserved = wire::load16(value);
        rec->stLspIdTlv.usLocalCrLspId = wire::load16(value + 2);
        rec->stLspIdTlv.ulIngressLsrId = wire::load32(value + 4);
        flags |= LDP_NOTIF_LSPID;
        return LDP_OK;
    case LDP_TLV_LABEL_REQ_MSG_ID:
        if (flags & LDP_NOTIF_LABEL_REQ_ID) {
            return LDP_OK;
        }
        rec->stLabelReqIdTlv = tlv;
        if (len != 4) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->ulLabelReqMsgId = wire::load32(value);
        flags |= LDP_NOTIF_LABEL_REQ_ID;
        return LDP_OK;
    case LDP_TLV_FEC: {
        if (flags & LDP_NOTIF_FEC) {
            return LDP_OK;
        }
        list::reset_empty(&rec->stFecTlv.stFecList);
        rec->stFecTlv.stTlvHeader = tlv;
        const uint32_t rc = LDP_DecodeFECTlv(value, &rec->stFecTlv, module);
        if (rc == LDP_STOP_WALK && is_pw_status(rec->stStatusTlv)) {
            return LDP_STOP_WALK;
        }
        if (rc != LDP_OK && rc != LDP_STOP_WALK) {
            return rc;
        }
        flags |= LDP_NOTIF_FEC;
        *pending = LDP_OK; // a good FEC TLV clears an earlier MP Status failure
        return LDP_OK;
    }
    case LDP_TLV_PW_STATUS:
        if (flags & LDP_NOTIF_PW_STATUS) {
            return LDP_OK;
        }
        if (len != 4) {
            return LDP_STATUS_MALFORMED_TLV; // tested before the header is kept
        }
        rec->stPwStatusTlv = tlv;
        rec->pucPwStatus = copy_value(value, len, module);
        if (rec->pucPwStatus == nullptr) {
            return LDP_ERR_NO_MEMORY;
        }
        flags |= LDP_NOTIF_PW_STATUS;
        return LDP_OK;
    case LDP_TLV_PW_IF_PARAMS:
        if (flags & LDP_NOTIF_PW_IF_PARAM) {
            return LDP_OK;
        }
        rec->stPwIfParamTlv = tlv;
        // Asked for even when the length is 0; only a null answer fails.
        rec->pucPwIfParam = static_cast<uint8_t *>(mem::alloc(module, len, srcfile::dec));
        if (rec->pucPwIfParam == nullptr) {
            return LDP_ERR_NO_MEMORY;
        }
        if (len != 0) {
            copy_pw_if_param(rec->pucPwIfParam, value, len);
        }
        flags |= LDP_NOTIF_PW_IF_PARAM;
        return LDP_OK;
    case LDP_TLV_MP_STATUS:
        if (flags2 & LDP_NOTIF2_MP_STATUS) {
            return LDP_OK;
        }
        rec->stMpStatusTlv.stTlvHeader = tlv;
        // A bad MP Status does not stop the walk: it only decides the result
        // if the message ends before a FEC TLV clears it.
        *pending = LDP_DecodeMpStatusTlv(value, &rec->stMpStatusTlv, module);
        if (*pending == LDP_OK) {
            flags2 |= LDP_NOTIF2_MP_STATUS;
        }
        return LDP_OK;
    case LDP_TLV_GENERIC_LABEL: {
        if (flags2 & LDP_NOTIF2_LABEL) {
            return LDP_OK;
        }
        rec->stLabelTlv.stTlvHeader = tlv;
        const uint32_t rc = label::decode_generic_label(value, &rec->stLabelTlv);
        if (rc != LDP_OK) {
            return rc;
        }
        flags2 |= LDP_NOTIF2_LABEL;
        return LDP_OK;
    }
    default:
        return LDP_OK; // unknown TLVs are passed over whatever their U bit says
    }
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseNotifMsg(const uint8_t *pucMsg)
{
    if (pucMsg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    msg::read_header(pucMsg, &hdr, srcfile::dec);
    tlv_cursor cur(pucMsg, hdr.usMsgLen);
    LDP_StatusTlv status = {};
    bool more = false;
    const uint32_t rc = open_notification(cur, &status, &more);
    if (rc != LDP_OK || !more) {
        return rc;
    }
    seen_tlvs seen;
    return walk_rest(cur, srcfile::dec,
                     [&](const LDP_TlvHeader &tlv) { return pre_parse_tlv(cur, tlv, status, seen); });
}

extern "C" LDP_API uint32_t LDP_DecodeNotifMsg(const uint8_t *pucMsg, LDP_NotifyMsg *pMsgRecord,
                                               uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(pucMsg, &pMsgRecord->stMsgHeader, srcfile::dec);
    tlv_cursor cur(pucMsg, pMsgRecord->stMsgHeader.usMsgLen);
    bool more = false;
    const uint32_t rc = open_notification(cur, &pMsgRecord->stStatusTlv, &more);
    if (rc != LDP_OK || !more) {
        return rc;
    }
    uint32_t pending = LDP_OK;
    const uint32_t walked = walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        return decode_tlv(cur, tlv, pMsgRecord, &pending, ulMemModuleId);
    });
    // The walk reports LDP_OK only when the message ends exactly after a TLV.
    return walked == LDP_OK ? pending : walked;
}
