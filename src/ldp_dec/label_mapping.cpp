// SPDX-License-Identifier: BSD-2-Clause
// Pre-parse and decode of the Label Mapping message (RFC 5036 section 3.5.7).
// TLVs may come in any order; most optional ones count only on their first
// occurrence, later copies are stepped over unchecked.
#include <cstddef>
#include <cstdint>

#include "../codec/dispatch.hpp"
#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"
#include "fec_elem.hpp"
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

// The decoder's walk once the message header is in the record.
uint32_t decode_walk(const uint8_t *msg, LDP_MappingMsg *rec, uint32_t module)
{
    const uint16_t msg_len = rec->stMsgHeader.usMsgLen;
    if (msg_len < kMinMappingLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    bool fec_seen = false;
    bool label_seen = false;
    tlv_cursor cur(msg, msg_len);
    const uint32_t rc = walk_rest<tlv_read::load>(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) {
        fec_seen = fec_seen || (tlv.usTlvType & LDP_TLV_TYPE_MASK) == LDP_TLV_FEC;
        return decode_tlv(cur, tlv, rec, label_seen, module);
    });
    if (rc != LDP_OK) {
        return rc;
    }
    return fec_seen && label_seen && rec->stFecTlv.stFecList.ulCount != 0 ? LDP_OK : LDP_STATUS_MISSING_MSG_PARAMS;
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
    const uint32_t rc = walk_rest<tlv_read::load>(
        cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) { return pre_parse_tlv(cur, tlv, seen); });
    if (rc != LDP_OK) {
        return rc;
    }
    return seen.fec && seen.label ? LDP_OK : LDP_STATUS_MISSING_MSG_PARAMS;
}

extern "C" LDP_API uint32_t LDP_DecodeMappingMsg(const uint8_t *pucMsg, LDP_MappingMsg *pMsgRecord,
                                                 uint32_t ulMemModuleId)
{
    if (pucMsg == nullptr || pMsgRecord == nullptr) {
        return LDP_ERR_PARAM;
    }
    // Read, not copied through memcpy_s: no rule asks for the copy here, and
    // the quick path of LDP_Decode reads it the same way.
    msg::load_header(pucMsg, &pMsgRecord->stMsgHeader);
    return decode_walk(pucMsg, pMsgRecord, ulMemModuleId);
}

// --- the quick path of LDP_Decode ---------------------------------------------
//
// Nearly every Label Mapping an engine receives has one FEC TLV of Prefix and
// Host Address elements, one Generic Label and perhaps a Label Request Message
// ID and a Hop Count. A message of that shape, well formed, passes the
// pre-parse and has nothing the decoder can refuse, so LDP_Decode checks the
// shape in one read-only pass and then fills the record without checking
// again. Anything else (another TLV, a repeat, a U bit that matters, any
// length or value the pre-parse would refuse) takes the usual road, decided
// before anything is allocated. Both roads make the same platform calls in the
// same order: the record, then per FEC element its allocation, its address
// copy and its listing.

namespace {

// Every element a Prefix or Host Address one that passes its checks, and the
// elements end exactly at the end of the value.
bool quick_fec(const uint8_t *value, uint16_t len)
{
    if (len == 0) {
        return false;
    }
    uint16_t used = 0;
    do {
        const uint8_t *elem = value + used;
        const uint16_t left = uint16_t(len - used);
        uint16_t size = 0;
        uint32_t rc = LDP_OK;
        switch (elem[0]) {
        case LDP_FEC_PREFIX:
            rc = fec::check_prefix(elem, left, &size);
            break;
        case LDP_FEC_HOST_ADDR:
            rc = fec::check_host(elem, left, &size);
            break;
        default:
            return false;
        }
        if (rc != LDP_OK) {
            return false;
        }
        used = uint16_t(used + size);
    } while (used < len);
    return used == len;
}

bool quick_shape(const uint8_t *msg)
{
    const uint16_t msg_len = wire::load16(msg + 2);
    if (msg_len < kMinMappingLen) {
        return false;
    }
    enum : unsigned { fec = 1, label = 2, req_id = 4, hop_count = 8 };
    unsigned seen = 0;
    tlv_cursor cur(msg, msg_len);
    do {
        if (!cur.has_header()) {
            return false;
        }
        const LDP_TlvHeader tlv = cur.load_header();
        const uint16_t len = tlv.usTlvLen;
        if (!cur.value_fits(len)) {
            return false;
        }
        unsigned kind = 0;
        bool ok = false;
        switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
        case LDP_TLV_FEC:
            kind = fec;
            ok = quick_fec(cur.value(), len);
            break;
        case LDP_TLV_GENERIC_LABEL:
            kind = label;
            ok = len == 4;
            break;
        case LDP_TLV_LABEL_REQ_MSG_ID:
            kind = req_id;
            ok = len == 4;
            break;
        case LDP_TLV_HOP_COUNT:
            kind = hop_count;
            ok = len == 1;
            break;
        default:
            return false;
        }
        if (!ok || (seen & kind) != 0) {
            return false;
        }
        seen |= kind;
        cur.advance(len);
    } while (!cur.at_or_past_end());
    return cur.at_end() && (seen & (fec | label)) == (fec | label);
}

// The elements of a FEC TLV that quick_fec accepted, appended in wire order
// as LDP_DecodeFECTlv appends them.
uint32_t quick_fec_elements(const uint8_t *value, uint16_t len, SLL_List *fec_list, uint32_t module)
{
    uint16_t used = 0;
    do {
        const uint8_t *elem = value + used;
        auto *e = mem::alloc_record<LDP_FecElement>(module, srcfile::dec);
        if (e == nullptr) {
            return LDP_ERR_NO_MEMORY; // what is listed already stays for the caller
        }
        e->ucFecKind = elem[0];
        const uint16_t addr_len = elem[0] == LDP_FEC_PREFIX ? fec::prefix_bytes(elem[3]) : elem[3];
        fec::store_addr_elem(elem, &e->stBody, addr_len);
        list::append(fec_list, &e->stNode);
        used = uint16_t(used + fec::kElemHeader + addr_len);
    } while (used < len);
    return LDP_OK;
}

// The decoder for a message quick_shape accepted.
uint32_t quick_decode(const uint8_t *msg, LDP_MappingMsg *rec, uint32_t module)
{
    msg::load_header(msg, &rec->stMsgHeader);
    tlv_cursor cur(msg, rec->stMsgHeader.usMsgLen);
    do {
        const LDP_TlvHeader tlv = cur.load_header();
        const uint8_t *value = cur.value();
        switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
        case LDP_TLV_FEC: {
            rec->stFecTlv.stTlvHeader = tlv;
            const uint32_t rc = quick_fec_elements(value, tlv.usTlvLen, &rec->stFecTlv.stFecList, module);
            if (rc != LDP_OK) {
                return rc;
            }
            break;
        }
        case LDP_TLV_GENERIC_LABEL:
            rec->stLabelTlv.stTlvHeader = tlv;
            (void)label::decode_generic_label(value, &rec->stLabelTlv);
            break;
        case LDP_TLV_LABEL_REQ_MSG_ID:
            rec->stLabelReqIdTlv.stTlvHeader = tlv;
            rec->stLabelReqIdTlv.ulReqMsgId = wire::load32(value);
            rec->ucOptFlags1 |= LDP_MAP_OPT_LABEL_REQ_ID;
            break;
        default: // Hop Count, the only other type the shape lets through
            rec->stHopCountTlv.stTlvHeader = tlv;
            rec->stHopCountTlv.ucHopCount = value[0];
            rec->ucOptFlags1 |= LDP_MAP_OPT_HOP_COUNT;
            break;
        }
        cur.advance(tlv.usTlvLen);
    } while (!cur.at_or_past_end());
    return LDP_OK;
}

// The shape was checked: the pre-parse would have said LDP_OK.
uint32_t shape_checked(const uint8_t *) { return LDP_OK; }

constexpr size_t kFecListOffset = offsetof(LDP_MappingMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList);
constexpr size_t kUnknownListOffset = offsetof(LDP_MappingMsg, stUnknTlvList);

} // namespace

uint32_t ldp::decode_mapping_road(const uint8_t *msg, void **out, uint32_t module)
{
    if (quick_shape(msg)) {
        return decode_road<LDP_MappingMsg, shape_checked, quick_decode, kFecListOffset, kUnknownListOffset>(
            msg, out, module);
    }
    return decode_road<LDP_MappingMsg, LDP_PreParseMappingMsg, LDP_DecodeMappingMsg, kFecListOffset,
                       kUnknownListOffset>(msg, out, module);
}
