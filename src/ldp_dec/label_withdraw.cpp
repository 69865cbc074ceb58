// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Label Withdraw and Label Release messages
// (RFC 5036 sections 3.5.10 and 3.5.11). Both carry a FEC TLV, an optional
// Generic Label TLV and unknown TLVs to forward; a Release may also carry a
// Status TLV. One walk serves both, the differences sit in msg_traits.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"
#include "record_walk.hpp"

using namespace ldp;

namespace {

// Message ID and the shortest FEC TLV (one single-byte element).
constexpr uint16_t kMinLen = 9;

template <class Rec>
struct msg_traits;

template <>
struct msg_traits<LDP_LabelWithdrawMsg> {
    static constexpr bool has_status = false;
    static constexpr uint8_t label_bit = LDP_WDR_FLAG_LABEL;

    // Only the high byte of the kind is set; the low byte keeps what the
    // record held (zero after LDP_Decode). Intended.
    static void set_label_kind(LDP_LabelTlv &lbl, uint16_t before)
    {
        lbl.usLabelKind = uint16_t((before & 0x00FFu) | (LDP_TLV_GENERIC_LABEL & 0xFF00u));
    }
};

template <>
struct msg_traits<LDP_LabelReleaseMsg> {
    static constexpr bool has_status = true;
    static constexpr uint8_t label_bit = LDP_REL_FLAG_LABEL;

    static void set_label_kind(LDP_LabelTlv &lbl, uint16_t) { lbl.usLabelKind = LDP_TLV_GENERIC_LABEL; }
};

struct seen_tlvs {
    bool fec = false;
    bool label = false;
    bool status = false;
};

template <class Rec>
uint32_t check_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, seen_tlvs &seen)
{
    const uint16_t len = tlv.usTlvLen;
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        return dec::first_fec(seen.fec, cur, len);
    case LDP_TLV_GENERIC_LABEL:
        // A length error here, malformed in the decoder: both intended.
        return dec::first_only(seen.label, len == 4, LDP_STATUS_BAD_TLV_LEN);
    case LDP_TLV_STATUS:
        if constexpr (msg_traits<Rec>::has_status) {
            if (seen.status) {
                return LDP_OK;
            }
            seen.status = true;
            LDP_StatusTlv scratch = {};
            scratch.stTlvHeader = tlv; // the decoder judges the length from the header
            return LDP_DecodeStatusTlv(cur.value(), &scratch); // LDP_STOP_WALK included
        }
        return dec::skip_unknown(tlv); // a Withdraw knows no Status TLV
    default:
        return dec::skip_unknown(tlv);
    }
}

template <class Rec>
uint32_t decode_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, Rec *rec, bool &fec_taken,
                    uint32_t module)
{
    using traits = msg_traits<Rec>;
    const uint8_t *value = cur.value();
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        if (fec_taken) {
            return LDP_OK;
        }
        fec_taken = true;
        rec->stFecTlv.stTlvHeader = tlv;
        return LDP_DecodeFECTlv(value, &rec->stFecTlv, module);
    case LDP_TLV_GENERIC_LABEL: {
        if (rec->ucLblFlags & traits::label_bit) {
            return LDP_OK;
        }
        const uint16_t kind_before = rec->stLabelTlv.usLabelKind;
        rec->stLabelTlv.stTlvHeader = tlv;
        const uint32_t rc = label::decode_generic_label(value, &rec->stLabelTlv);
        if (rc != LDP_OK) {
            return rc;
        }
        traits::set_label_kind(rec->stLabelTlv, kind_before);
        rec->ucLblFlags |= traits::label_bit;
        return LDP_OK;
    }
    case LDP_TLV_STATUS:
        if constexpr (traits::has_status) {
            if (rec->ucLblFlags & LDP_REL_FLAG_STATUS) {
                return LDP_OK;
            }
            rec->stStatusTlv.stTlvHeader = tlv;
            const uint32_t rc = LDP_DecodeStatusTlv(value, &rec->stStatusTlv);
            if (rc != LDP_OK) {
                return rc; // LDP_STOP_WALK for the pseudowire status, bit left clear
            }
            rec->ucLblFlags |= LDP_REL_FLAG_STATUS;
            return LDP_OK;
        }
        return dec::keep_unknown(cur, tlv, &rec->stUnknTlvList, module); // a Withdraw knows no Status TLV
    default:
        return dec::keep_unknown(cur, tlv, &rec->stUnknTlvList, module);
    }
}

// Pre-parse and decoder share this walk; rec is null for the pre-parse.
template <class Rec>
uint32_t walk(const uint8_t *msg, uint16_t msg_len, Rec *rec, uint32_t module)
{
    if (msg_len < kMinLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    seen_tlvs seen;
    bool fec_taken = false;
    tlv_cursor cur(msg, msg_len);
    const uint32_t rc = walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        return rec != nullptr ? decode_tlv(cur, tlv, rec, fec_taken, module) : check_tlv<Rec>(cur, tlv, seen);
    });
    // Only the pre-parse insists on a FEC TLV; the decoder is content without.
    if (rc != LDP_OK || rec != nullptr) {
        return rc;
    }
    return seen.fec ? LDP_OK : LDP_STATUS_MISSING_MSG_PARAMS;
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseWithdrawMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_LabelWithdrawMsg>(pucMsg, walk<LDP_LabelWithdrawMsg>);
}

extern "C" LDP_API uint32_t LDP_DecodeWithdrawMsg(const uint8_t *pucMsg, LDP_LabelWithdrawMsg *pMsgRecord,
                                                  uint32_t ulMemModuleId)
{
    return dec::decode(pucMsg, pMsgRecord, ulMemModuleId, walk<LDP_LabelWithdrawMsg>);
}

extern "C" LDP_API uint32_t LDP_PreParseReleaseMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_LabelReleaseMsg>(pucMsg, walk<LDP_LabelReleaseMsg>);
}

extern "C" LDP_API uint32_t LDP_DecodeReleaseMsg(const uint8_t *pucMsg, LDP_LabelReleaseMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId)
{
    return dec::decode(pucMsg, pMsgRecord, ulMemModuleId, walk<LDP_LabelReleaseMsg>);
}
