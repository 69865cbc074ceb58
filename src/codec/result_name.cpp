// SPDX-License-Identifier: BSD-2-Clause
// Result codes by name, for the engine's logs and for ldpdump.
#include "ldp_codec.h"

extern "C" LDP_API const char *LDP_GetResultName(uint32_t ulResult)
{
    switch (ulResult) {
    case LDP_OK: return "LDP_OK";
    case LDP_ERR_PARAM: return "LDP_ERR_PARAM";
    case LDP_STATUS_UNKNOWN_MSG_TYPE: return "LDP_STATUS_UNKNOWN_MSG_TYPE";
    case LDP_STATUS_BAD_MSG_LEN: return "LDP_STATUS_BAD_MSG_LEN";
    case LDP_STATUS_UNKNOWN_TLV: return "LDP_STATUS_UNKNOWN_TLV";
    case LDP_STATUS_BAD_TLV_LEN: return "LDP_STATUS_BAD_TLV_LEN";
    case LDP_STATUS_MALFORMED_TLV: return "LDP_STATUS_MALFORMED_TLV";
    case LDP_STATUS_UNKNOWN_FEC: return "LDP_STATUS_UNKNOWN_FEC";
    case LDP_STATUS_MISSING_MSG_PARAMS: return "LDP_STATUS_MISSING_MSG_PARAMS";
    case LDP_STATUS_UNSUPPORTED_AF: return "LDP_STATUS_UNSUPPORTED_AF";
    case LDP_STATUS_INTERNAL_ERROR: return "LDP_STATUS_INTERNAL_ERROR";
    case LDP_ERR_IGNORE_MSG: return "LDP_ERR_IGNORE_MSG";
    case LDP_ERR_NO_MEMORY: return "LDP_ERR_NO_MEMORY";
    case LDP_STOP_WALK: return "LDP_STOP_WALK";
    default: return "unknown result";
    }
}
