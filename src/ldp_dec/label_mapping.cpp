// Pre-parse and decode of the Label Mapping message (RFC 5036 section 3.5.7).
// TLVs may come in any order; most optional ones count only on their first
// occurrence, later copies are stepped over unchecked.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"
#include "record_walk.hpp"

using namespace ldp;

namespace {

// Message ID, a FEC TLV with one single-byte element, and an 8-byte Label TLV.
constexpr uint16_t kMinMappingLen = 17;

// What a pre-parse has met so far; each flag marks a first occurrence done.
struct seen_tlvs {
    bool fec = false;
    bool label = false;
    bool hop_count = false;
    bool path_vector = false;
    bool req_id = false;
    bool short_tlv = false;
    bool mp_status = false;
    bool priv = false;
};

// The Label Mapping pre-parse calls every wrong length malformed.
uint32_t first_only(bool &seen, bool well_formed)
{
    return dec::first_only(seen, well_formed, LDP_STATUS_MALFORMED_TLV);
}

// Checks one TLV of a received Label Mapping without keeping anything.
uint32_t pre_parse_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, seen_tlvs &seen)
{
    const uint16_t len = tlv.usTlvLen;
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        seen.fec = true;
        return LDP_PreParseFECTlv(cur.value(), len); // LDP_STOP_WALK included
    case LDP_TLV_GENERIC_LABEL:
        return first_only(seen.label, len == 4);
    case LDP_TLV_HOP_COUNT:
        return first_only(seen.hop_count, len == 1);
    case LDP_TLV_PATH_VECTOR:
        return first_only(seen.path_vector, len != 0 && len % 4 == 0);
    case LDP_TLV_LABEL_REQ_MSG_ID:
        return first_only(seen.req_id, len == 4);
    case LDP_TLV_MAPPING_0601:
    case LDP_TLV_MAPPING_0900: // the two types share one slot and one flag
        return first_only(seen.short_tlv, len == 2);
    case LDP_TLV_MP_STATUS:
        if (!seen.mp_status) {
            seen.mp_status = true;
            return LDP_PreParseMpStatusTlv(cur.value(), len) != LDP_OK ? LDP_STATUS_MALFORMED_TLV : LDP_OK;
        }
        return LDP_OK;
    case LDP_TLV_VENDOR_PRIVATE:
        return first_only(seen.priv, len == 2);
    case LDP_TLV_MAPPING_0206:
        return len != 0 ? LDP_STATUS_MALFORMED_TLV : LDP_OK; // every occurrence
    default:
        return dec::skip_unknown(tlv);
    }
}

// Decodes one TLV into the record. Returns LDP_OK to go on.
uint32_t decode_tlv(const tlv_cursor &cur, const LDP_TlvHeader &tlv, LDP_MappingMsg *rec, bool &label_seen,
                    uint32_t module)
{
    const uint8_t *value = cur.value();
    const uint16_t len = tlv.usTlvLen;
    switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC:
        // Every FEC TLV adds its elements to the one list.
        rec->stFecTlv.stTlvHeader = tlv;
        return LDP_DecodeFECTlv(value, &rec->stFecTlv, module);
    case LDP_TLV_GENERIC_LABEL:
        if (label_seen) {
            return LDP_OK;
        }
        label_seen = true;
        rec->stLabelTlv.stTlvHeader = tlv;
        return label::decode_generic_label(value, &rec->stLabelTlv);
    case LDP_TLV_HOP_COUNT:
        if (rec->ucOptFlags1 & LDP_MAP_OPT_HOP_COUNT) {
            return LDP_OK;
        }
        rec->stHopCountTlv.stTlvHeader = tlv;
        if (len != 1) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stHopCountTlv.ucHopCount = value[0];
        rec->ucOptFlags1 |= LDP_MAP_OPT_HOP_COUNT;
        return LDP_OK;
    case LDP_TLV_PATH_VECTOR: {
        if (rec->ucOptFlags1 & LDP_MAP_OPT_PATH_VECTOR) {
            return LDP_OK;
        }
        rec->stPathVectorTlv.stTlvHeader = tlv;
        const uint32_t rc = LDP_DecodePathVectorTlv(value, &rec->stPathVectorTlv, module);
        if (rc != LDP_OK) {
            return rc;
        }
        rec->ucOptFlags1 |= LDP_MAP_OPT_PATH_VECTOR;
        return LDP_OK;
    }
    case LDP_TLV_LABEL_REQ_MSG_ID:
        if (rec->ucOptFlags1 & LDP_MAP_OPT_LABEL_REQ_ID) {
            return LDP_OK;
        }
        rec->stLabelReqIdTlv.stTlvHeader = tlv;
        if (len != 4) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stLabelReqIdTlv.ulReqMsgId = wire::load32(value);
        rec->ucOptFlags1 |= LDP_MAP_OPT_LABEL_REQ_ID;
        return LDP_OK;
    case LDP_TLV_MAPPING_0601:
    case LDP_TLV_MAPPING_0900:
        if (rec->ucOptFlags1 & LDP_MAP_OPT_SHORT) {
            return LDP_OK;
        }
        if (len != 2) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stShortTlv.stTlvHeader = tlv;
        rec->stShortTlv.usValue = wire::load16(value);
        rec->ucOptFlags1 |= LDP_MAP_OPT_SHORT;
        return LDP_OK;
    case LDP_TLV_MP_STATUS:
        if (rec->ucOptFlags2 & LDP_MAP_OPT2_MP_STATUS) {
            return LDP_OK;
        }
        rec->stMpStatusTlv.stTlvHeader = tlv;
        // A failed MP Status is passed over on purpose; a later one may still be taken.
        if (LDP_DecodeMpStatusTlv(value, &rec->stMpStatusTlv, module) == LDP_OK) {
            rec->ucOptFlags2 |= LDP_MAP_OPT2_MP_STATUS;
        }
        return LDP_OK;
    case LDP_TLV_VENDOR_PRIVATE:
        if (rec->ucOptFlags2 & LDP_MAP_OPT2_PRIV) {
            return LDP_OK;
        }
        if (len != 2) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->stPrivTlv.stTlvHeader = tlv;
        mem::copy(rec->stPrivTlv.aucValue, sizeof rec->stPrivTlv.aucValue, value, 2, srcfile::dec);
        rec->ucOptFlags2 |= LDP_MAP_OPT2_PRIV;
        return LDP_OK;
    case LDP_TLV_MAPPING_0206:
        if (len != 0) {
            return LDP_STATUS_MALFORMED_TLV;
        }
        rec->ucOptFlags2 |= LDP_MAP_OPT2_EMPTY; // only its presence is kept
        return LDP_OK;
    default:
        return dec::keep_unknown(cur, tlv, &rec->stUnknTlvList, module);
    }
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseMappingMsg(const uint8_t *pucMsg)
{
    if (pucMsg == nullptr) {
        return LDP_ERR_PARAM;
    }
    // The walk needs only the length: no copy of the header is made here.
    const uint16_t msg_len = wire::load16(pucMsg + 2);
    if (msg_len < kMinMappingLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    seen_tlvs seen;
    tlv_cursor cur(pucMsg, msg_len);
    do {
        if (!cur.has_header()) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const LDP_TlvHeader tlv = cur.load_header();
        if (!cur.value_fits(tlv.usTlvLen)) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const uint32_t rc = pre_parse_tlv(cur, tlv, seen);
        if (rc != LDP_OK) {
            return rc;
        }
        cur.advance(tlv.usTlvLen);
    } while (!cur.at_or_past_end());
    if (!seen.fec || !seen.label) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    // Every TLV was checked against the message end, so this only guards.
    return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
}

extern "C" LDP_API uint32_t LDP_DecodeMappingMsg(const uint8_t *pucMsg, LDP_MappingMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(pucMsg, &pMsgRecord->stMsgHeader, srcfile::dec);
    const uint16_t msg_len = pMsgRecord->stMsgHeader.usMsgLen;
    if (msg_len < kMinMappingLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    bool fec_seen = false;
    bool label_seen = false;
    tlv_cursor cur(pucMsg, msg_len);
    do {
        if (!cur.has_header()) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const LDP_TlvHeader tlv = cur.load_header();
        if (!cur.value_fits(tlv.usTlvLen)) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        fec_seen = fec_seen || (tlv.usTlvType & LDP_TLV_TYPE_MASK) == LDP_TLV_FEC;
        const uint32_t rc = decode_tlv(cur, tlv, pMsgRecord, label_seen, ulMemModuleId);
        if (rc != LDP_OK) {
            return rc;
        }
        cur.advance(tlv.usTlvLen);
    } while (!cur.at_or_past_end());
    if (!fec_seen || !label_seen || pMsgRecord->stFecTlv.stFecList.ulCount == 0) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
}
