// SPDX-License-Identifier: BSD-2-Clause
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

const char *tlv_name(uint32_t type)
{
    switch (type & LDP_TLV_TYPE_MASK) {
    case LDP_TLV_FEC: return "FEC";
    case LDP_TLV_ADDRESS_LIST: return "Address List";
    case LDP_TLV_HOP_COUNT: return "Hop Count";
    case LDP_TLV_PATH_VECTOR: return "Path Vector";
    case LDP_TLV_GENERIC_LABEL: return "Generic Label";
    case LDP_TLV_ATM_LABEL: return "ATM Label";
    case LDP_TLV_FR_LABEL: return "Frame Relay Label";
    case LDP_TLV_STATUS: return "Status";
    case LDP_TLV_EXT_STATUS: return "Extended Status";
    case LDP_TLV_RETURNED_PDU: return "Returned PDU";
    case LDP_TLV_RETURNED_MSG: return "Returned Message";
    case 0x0304: return "Returned TLVs";
    case LDP_TLV_COMMON_HELLO: return "Common Hello Parameters";
    case LDP_TLV_IPV4_TRANSPORT: return "IPv4 Transport Address";
    case LDP_TLV_CONF_SEQ_NUM: return "Configuration Sequence Number";
    case LDP_TLV_IPV6_TRANSPORT: return "IPv6 Transport Address";
    case LDP_TLV_MAC_LIST: return "MAC List";
    case LDP_TLV_COMMON_SESSION: return "Common Session Parameters";
    case LDP_TLV_ATM_SESSION: return "ATM Session Parameters";
    case LDP_TLV_FR_SESSION: return "Frame Relay Session Parameters";
    case LDP_TLV_FT_SESSION: return "FT Session";
    case LDP_TLV_DYNAMIC_CAP: return "Dynamic Announcement";
    case LDP_TLV_P2MP_CAP: return "P2MP Capability";
    case LDP_TLV_MP2MP_CAP: return "MP2MP Capability";
    case LDP_TLV_MBB_CAP: return "MBB Capability";
    case LDP_TLV_TYPED_WILDCARD_CAP: return "Typed Wildcard FEC Capability";
    case 0x0603: return "Unrecognized Notification Capability";
    case LDP_TLV_LABEL_REQ_MSG_ID: return "Label Request Message ID";
    case LDP_TLV_LSPID: return "LSPID";
    case LDP_TLV_PW_STATUS: return "PW Status";
    case LDP_TLV_PW_IF_PARAMS: return "PW Interface Parameters";
    case LDP_TLV_MP_STATUS: return "MP Status";
    case LDP_TLV_VENDOR_PRIVATE: return "vendor-private 0x3E0A";
    case 0x0701: return "Dual-Stack Capability";
    default: return "unknown TLV";
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
