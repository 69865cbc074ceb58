// Encoding and release of the Notification message, and the Status TLV
// encoder it shares with Label Release.
#include <cstdint>

#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv_out.hpp"
#include "../codec/wire.hpp"
#include "ldp_codec.h"

using namespace ldp;

extern "C" LDP_API uint32_t LDP_EncodeStatusTlv(uint8_t *pucBuf, LDP_StatusTlv *pstStatus,
                                                uint32_t ulMemModuleId, uint16_t usRoom)
{
    (void)ulMemModuleId;
    if (pucBuf == nullptr || pstStatus == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (tlv_out::begin(pucBuf, usRoom, &pstStatus->stTlvHeader, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    // Each field is swapped in the record and stays so: the record encodes once.
    pstStatus->ulStatusCode = wire::to_net32(pstStatus->ulStatusCode);
    if (tlv_out::put(pucBuf + 4, uint16_t(usRoom - 4), &pstStatus->ulStatusCode, 4, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstStatus->ulStatusMsgId = wire::to_net32(pstStatus->ulStatusMsgId);
    if (tlv_out::put(pucBuf + 8, uint16_t(usRoom - 8), &pstStatus->ulStatusMsgId, 4, srcfile::enc) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    pstStatus->usStatusMsgType = wire::to_net16(pstStatus->usStatusMsgType);
    if (tlv_out::put(pucBuf + 12, uint16_t(usRoom - 12), &pstStatus->usStatusMsgType, 2, srcfile::enc) !=
        LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}
