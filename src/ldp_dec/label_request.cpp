// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Label Request message (RFC 5036 section 3.5.8).
// TLVs come in any order; the FEC TLV is the only one required, and the
// FEC, Label, Hop Count and Path Vector TLVs count on their first occurrence.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"
#include "record_walk.hpp"

using namespace ldp;

namespace {

// Message ID and a FEC TLV with one single-byte element (a Wildcard).
constexpr uint16_t kMinRequestLen = 9;

struct seen_tlvs {
    bool fec = false;
    bool label = false;
    bool hop_count = false;
    bool path_vector = false;
};

// The pre-parse of this message reports any wrong length as a length error
// (7), where its decoder says malformed (8): the two answers are intended.
uint32_t check_request_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, seen_tlvs &seen)
{
    const uint16_t len = tlv.usTlvLen;
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        return dec::first_fec(seen.fec, cur, len);
    case LDP_TLV_HOP_COUNT:
        return dec::first_only(seen.hop_count, len == 1, LDP_STATUS_BAD_TLV_LEN);
    case LDP_TLV_PATH_VECTOR:
        return dec::first_only(seen.path_vector, len != 0 && len % 4 == 0, LDP_STATUS_BAD_TLV_LEN);
    case LDP_TLV_GENERIC_LABEL:
        return dec::first_only(seen.label, len == 4, LDP_STATUS_BAD_TLV_LEN);
    default:
        return dec::skip_unknown(tlv);
    }
}

uint32_t decode_request_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, LDP_RequestMsg *rec,
                            bool &fec_taken, uint32_t module)
{
    const uint8_t *value = cur.value();
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        if (fec_taken) {
            return LDP_OK; // only the first FEC TLV's elements are kept
        }
        fec_taken = true;
        rec->stFecTlv.stTlvHeader = tlv;
        return LDP_DecodeFECTlv(value, &rec->stFecTlv, module);
    case LDP_TLV_HOP_COUNT:
        if (rec->ucOptFlags1 & LDP_REQ_OPT_HOP_COUNT) {
            return LDP_OK;
        }
        rec->stHopCountTlv.stTlvHeader = tlv;
        if (tlv.usTlvLen != 1) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stHopCountTlv.ucHopCount = value[0];
        rec->ucOptFlags1 |= LDP_REQ_OPT_HOP_COUNT;
        return LDP_OK;
    case LDP_TLV_PATH_VECTOR: {
        if (rec->ucOptFlags1 & LDP_REQ_OPT_PATH_VECTOR) {
            return LDP_OK;
        }
        rec->stPathVectorTlv.stTlvHeader = tlv;
        const uint32_t rc = LDP_DecodePathVectorTlv(value, &rec->stPathVectorTlv, module);
        if (rc != LDP_OK) {
            return rc;
        }
        rec->ucOptFlags1 |= LDP_REQ_OPT_PATH_VECTOR;
        return LDP_OK;
    }
    case LDP_TLV_GENERIC_LABEL: {
        if (rec->ucOptFlags1 & LDP_REQ_OPT_LABEL) {
            return LDP_OK;
        }
        rec->stLabelTlv.stTlvHeader = tlv;
        const uint32_t rc = label::decode_generic_label(value, &rec->stLabelTlv);
        if (rc != LDP_OK) {
            return rc;
        }
        rec->ucOptFlags1 |= LDP_REQ_OPT_LABEL;
        return LDP_OK;
    }
    default:
        // LSPID, ER, Traffic and ATM or Frame Relay labels land here too.
        return dec::keep_unknown(cur, tlv, &rec->stUnknTlvList, module);
    }
}

// Pre-parse and decoder share this walk; rec is null for the pre-parse.
uint32_t walk_request(const uint8_t *msg, uint16_t msg_len, LDP_RequestMsg *rec, uint32_t module)
{
    if (msg_len < kMinRequestLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    seen_tlvs seen;
    bool fec_taken = false;
    tlv_cursor cur(msg, msg_len);
    const uint32_t rc = walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        return rec != nullptr ? decode_request_tlv(cur, tlv, rec, fec_taken, module)
                              : check_request_tlv(cur, tlv, seen);
    });
    // The length outcome (5) is settled before the missing FEC (22), the
    // other way round from the Label Mapping message.
    if (rc != LDP_OK) {
        return rc;
    }
    const bool has_fec = rec != nullptr ? rec->stFecTlv.stFecList.ulCount != 0 : seen.fec;
    return has_fec ? LDP_OK : LDP_STATUS_MISSING_MSG_PARAMS;
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseRequestMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_RequestMsg>(pucMsg, walk_request);
}

extern "C" LDP_API uint32_t LDP_DecodeRequestMsg(const uint8_t *pucMsg, LDP_RequestMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId)
{
    return dec::decode(pucMsg, pMsgRecord, ulMemModuleId, walk_request);
}
