// Pre-parse and decode of the Notification message (RFC 5036 section 3.5.1)
// and of the Status TLV it opens with (also used by Label Release).
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

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
    if ((pstStatus->ulStatusCode & LDP_STATUS_DATA_MASK) == LDP_STATUS_DATA_PW_STATUS) {
        return LDP_STOP_WALK;
    }
    return LDP_OK;
}
