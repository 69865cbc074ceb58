// SPDX-License-Identifier: BSD-2-Clause
// Label Abort Request (RFC 5036, 3.5.9), pre-parse and decode: an FEC and the
// ID of the request to give up, both required, in either order. Nothing else
// is taken; not even unknown TLVs are kept.
#include <cstdint>

#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"
#include "record_walk.hpp"

using namespace ldp;

namespace {

// The message ID (4 bytes), the shortest FEC TLV (5) and the request ID
// TLV (8).
constexpr uint16_t kMinAbortLen = 17;

// Pre-parse and decoder share this walk and its codes; rec is null for the
// pre-parse.
uint32_t walk_abort(const uint8_t *msg, uint16_t msg_len, LDP_LabelRequestAbortMsg *rec, uint32_t module)
{
    if (msg_len < kMinAbortLen) {
        return LDP_STATUS_MISSING_MSG_PARAMS;
    }
    bool fec_taken = false;
    bool id_taken = false;
    tlv_cursor cur(msg, msg_len);
    const uint32_t rc = walk_rest(cur, srcfile::dec, [&](const LDP_TlvHeader &tlv) -> uint32_t {
        switch (tlv.usTlvType & LDP_TLV_TYPE_MASK) {
        case LDP_TLV_FEC:
            if (fec_taken) {
                return LDP_OK; // a second FEC TLV passes unchecked
            }
            fec_taken = true;
            if (rec == nullptr) {
                return LDP_PreParseFECTlv(cur.value(), tlv.usTlvLen);
            }
            rec->stFecTlv.stTlvHeader = tlv;
            return LDP_DecodeFECTlv(cur.value(), &rec->stFecTlv, module);
        case LDP_TLV_LABEL_REQ_MSG_ID:
            if (id_taken) {
                return LDP_OK; // a second one passes, whatever its length
            }
            if (rec != nullptr) {
                rec->stLabelReqIdTlv = tlv; // kept even when the length is wrong
            }
            if (tlv.usTlvLen != 4) {
                return LDP_STATUS_MALFORMED_TLV;
            }
            if (rec != nullptr) {
                rec->ulLabelReqMsgId = wire::load32(cur.value());
            }
            id_taken = true;
            return LDP_OK;
        default:
            // Dropped, never kept: stUnknTlvList stays empty. A received
            // LSPID TLV is refused here although the encoder writes one;
            // the asymmetry is intended.
            return dec::skip_unknown(tlv);
        }
    });
    if (rc != LDP_OK) {
        return rc;
    }
    return fec_taken && id_taken ? LDP_OK : LDP_STATUS_MISSING_MSG_PARAMS;
}

} // namespace

extern "C" LDP_API uint32_t LDP_PreParseReqAbortMsg(const uint8_t *pucMsg)
{
    return dec::pre_parse<LDP_LabelRequestAbortMsg>(pucMsg, walk_abort);
}

extern "C" LDP_API uint32_t LDP_DecodeReqAbortMsg(const uint8_t *pucMsg, LDP_LabelRequestAbortMsg *pMsgRecord,
                                                  uint32_t ulMemModuleId)
{
    return dec::decode(pucMsg, pMsgRecord, ulMemModuleId, walk_abort);
}
