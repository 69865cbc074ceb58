// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of the Label Abort Request message: the FEC TLV, the
// Label Request Message ID TLV and, when flagged, an LSPID TLV.
#include <cstdint>

#include "../codec/label.hpp"
#include "../codec/list.hpp"
#include "../codec/mem.hpp"
#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {
constexpr uint16_t kReqIdTlvSize = 8;
} // namespace

extern "C" LDP_API uint32_t LDP_EncodeAbortReqMsg(uint8_t *pucBuf, LDP_LabelRequestAbortMsg *pMsgRecord,
                                                  uint32_t ulMemModuleId, uint16_t usRoom)
{
    if (msg::begin_encode(pucBuf, pMsgRecord, ulMemModuleId, usRoom) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    LDP_LabelRequestAbortMsg &rec = *pMsgRecord;
    const uint16_t avail = usRoom < wire::kMsgHeaderSize ? wire::kMsgHeaderSize : usRoom;
    const uint16_t fec_len = rec.stFecTlv.stTlvHeader.usTlvLen;
    const uint32_t rc = LDP_EncodeFECTlv(pucBuf + wire::kMsgHeaderSize, &rec.stFecTlv, ulMemModuleId,
                                         uint16_t(avail - wire::kMsgHeaderSize));
    if (rc != LDP_OK) {
        return rc;
    }
    // Room after the FEC TLV, counted in 16 bits: a FEC TLV longer than the
    // buffer wraps it to a large value, which the first test catches.
    const uint16_t after_fec = uint16_t(avail - wire::kMsgHeaderSize - 4u - fec_len);
    if (uint32_t(fec_len) + 4u >= uint32_t(avail - wire::kMsgHeaderSize) || after_fec < kReqIdTlvSize) {
        return mem::no_room(srcfile::enc);
    }
    uint8_t *out = pucBuf + wire::kMsgHeaderSize + 4u + fec_len;
    tlv_out::header(out, after_fec, &rec.stLabelReqIdTlv, srcfile::enc);
    // Left in network order in the record, as is the header's type: encoding
    // the same record again would send the ID swapped. Intended.
    rec.ulLabelReqMsgId = wire::to_net32(rec.ulLabelReqMsgId);
    mem::copy(out + wire::kTlvHeaderSize, after_fec - wire::kTlvHeaderSize, &rec.ulLabelReqMsgId, 4,
              srcfile::enc);
    if (rec.ucAbortFlags & LDP_ABORT_FLAG_LSPID) {
        return LDP_EncodeLSPIdTlv(out + kReqIdTlvSize, &rec.stLspIdTlv, ulMemModuleId,
                                  uint16_t(after_fec - kReqIdTlvSize));
    }
    return LDP_OK;
}

extern "C" LDP_API void LDP_FreeLabelRequestAbortMsg(LDP_LabelRequestAbortMsg *pMsgRecord)
{
    if (pMsgRecord == nullptr ||
        (pMsgRecord->stMsgHeader.usMsgType & LDP_MSG_TYPE_MASK) != LDP_MSG_LABEL_ABORT_REQUEST) {
        return;
    }
    SLL_List *unknown = &pMsgRecord->stUnknTlvList;
    if (unknown->ulCount != 0 && list::first(unknown) != nullptr) {
        label::free_unknown_elements(unknown);
        // Only the two links go back to the head; the unlinking has already
        // brought the count down.
        unknown->stHead.pNext = list::head_node(unknown);
        unknown->pTail = list::head_node(unknown);
    }
    LDP_FreeFecElement(&pMsgRecord->stFecTlv);
}
