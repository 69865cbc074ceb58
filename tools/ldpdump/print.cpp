// Text for result codes, message names and record fields.
#include "print.hpp"

#include "ldp_codec.h"

namespace ldpdump {

const char *result_name(uint32_t rc) { return LDP_GetResultName(rc); }

const char *message_name(uint32_t type)
{
    switch (type) {
    case LDP_MSG_NOTIFICATION: return "Notification";
    case LDP_MSG_HELLO: return "Hello";
    case LDP_MSG_INIT: return "Initialization";
    case LDP_MSG_KEEPALIVE: return "KeepAlive";
    case LDP_MSG_CAPABILITY: return "Capability";
    case LDP_MSG_ADDRESS: return "Address";
    case LDP_MSG_ADDRESS_WITHDRAW: return "Address Withdraw";
    case LDP_MSG_LABEL_MAPPING: return "Label Mapping";
    case LDP_MSG_LABEL_REQUEST: return "Label Request";
    case LDP_MSG_LABEL_WITHDRAW: return "Label Withdraw";
    case LDP_MSG_LABEL_RELEASE: return "Label Release";
    case LDP_MSG_LABEL_ABORT_REQUEST: return "Label Abort Request";
    default: return "unknown message";
    }
}

namespace {

void print_header(std::FILE *out, const LDP_MsgHeader &h)
{
    std::fprintf(out, "    usMsgType 0x%04x%s  usMsgLen %u  ulMsgId %u (0x%08x)\n", h.usMsgType,
                 (h.usMsgType & LDP_MSG_U_BIT) ? " (U)" : "", h.usMsgLen, h.ulMsgId, h.ulMsgId);
}

} // namespace

void print_record(std::FILE *out, uint32_t type, const void *rec)
{
    const auto *hdr = static_cast<const LDP_MsgHeader *>(rec);
    print_header(out, *hdr);
    switch (type) {
    case LDP_MSG_KEEPALIVE:
        break; // the header is the whole record
    case LDP_MSG_HELLO:
    case LDP_MSG_INIT:
    case LDP_MSG_CAPABILITY:
        print_session_record(out, type, rec);
        break;
    case LDP_MSG_NOTIFICATION:
        print_notify(out, static_cast<const LDP_NotifyMsg *>(rec));
        break;
    case LDP_MSG_ADDRESS:
        print_address(out, static_cast<const LDP_AddressMsg *>(rec));
        break;
    case LDP_MSG_ADDRESS_WITHDRAW:
        print_address_withdraw(out, static_cast<const LDP_AddressWithdrawMsg *>(rec));
        break;
    case LDP_MSG_LABEL_MAPPING:
        print_mapping(out, static_cast<const LDP_MappingMsg *>(rec));
        break;
    case LDP_MSG_LABEL_REQUEST:
        print_request(out, static_cast<const LDP_RequestMsg *>(rec));
        break;
    case LDP_MSG_LABEL_WITHDRAW:
        print_withdraw(out, static_cast<const LDP_LabelWithdrawMsg *>(rec));
        break;
    case LDP_MSG_LABEL_RELEASE:
        print_release(out, static_cast<const LDP_LabelReleaseMsg *>(rec));
        break;
    case LDP_MSG_LABEL_ABORT_REQUEST:
        print_abort(out, static_cast<const LDP_LabelRequestAbortMsg *>(rec));
        break;
    default:
        break;
    }
}

} // namespace ldpdump
