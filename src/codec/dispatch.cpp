// The dispatch table: every message type the library knows, with its record
// and operations. Rows without functions are recognised but not yet handled.
#include "dispatch.hpp"

namespace ldp {
namespace {

constexpr msg_ops kTable[] = {
    {LDP_MSG_NOTIFICATION, sizeof(LDP_NotifyMsg), 1,
     {uint16_t(offsetof(LDP_NotifyMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList))},
     LDP_PreParseNotifMsg, decode_as<LDP_NotifyMsg, LDP_DecodeNotifMsg>,
     encode_as<LDP_NotifyMsg, LDP_EncodeNotifMsg>, release_as<LDP_NotifyMsg, LDP_FreeNotifyMsg>},
    {LDP_MSG_HELLO, sizeof(LDP_HelloMsg), 0, {}, LDP_PreParseHelloMsg,
     decode_as<LDP_HelloMsg, LDP_DecodeHelloMsg>, encode_as<LDP_HelloMsg, LDP_EncodeHelloMsg>,
     nullptr},
    {LDP_MSG_INIT,
     sizeof(LDP_InitMsg),
     3,
     {uint16_t(offsetof(LDP_InitMsg, stAtmSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList)),
      uint16_t(offsetof(LDP_InitMsg, stFrSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList)),
      uint16_t(offsetof(LDP_InitMsg, stCapList))},
     LDP_PreParseInitMsg,
     decode_as<LDP_InitMsg, LDP_DecodeInitMsg>,
     encode_as<LDP_InitMsg, LDP_EncodeInitMsg>,
     release_as<LDP_InitMsg, LDP_FreeInitMsg>},
    {LDP_MSG_KEEPALIVE, sizeof(LDP_KeepAliveMsg), 0, {}, LDP_PreParseKeepAliveMsg,
     decode_as<LDP_KeepAliveMsg, LDP_DecodeKeepAliveMsg>,
     encode_as<LDP_KeepAliveMsg, LDP_EncodeKeepAliveMsg>, nullptr},
    {LDP_MSG_CAPABILITY, sizeof(LDP_CapabilityMsg), 1, {uint16_t(offsetof(LDP_CapabilityMsg, stCapList))},
     LDP_PreParseCapabilityMsg, decode_as<LDP_CapabilityMsg, LDP_DecodeCapabilityMsg>,
     encode_as<LDP_CapabilityMsg, LDP_EncodeCapabilityMsg>,
     release_as<LDP_CapabilityMsg, LDP_FreeCapabilityMsg>},
    {LDP_MSG_ADDRESS, sizeof(LDP_AddressMsg), 0, {}, LDP_PreParseAddrMsg,
     decode_as<LDP_AddressMsg, LDP_DecodeAddrMsg>, encode_as<LDP_AddressMsg, LDP_EncodeAddrMsg>,
     release_as<LDP_AddressMsg, LDP_FreeAddressMsg>},
    {LDP_MSG_ADDRESS_WITHDRAW, sizeof(LDP_AddressWithdrawMsg), 1,
     {uint16_t(offsetof(LDP_AddressWithdrawMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList))},
     LDP_PreParseAddrWithdrawMsg, decode_as<LDP_AddressWithdrawMsg, LDP_DecodeAddrWithdrawMsg>,
     encode_as<LDP_AddressWithdrawMsg, LDP_EncodeAddrWithdrawMsg>,
     release_as<LDP_AddressWithdrawMsg, LDP_FreeAddressWithdrawMsg>},
    {LDP_MSG_LABEL_MAPPING, sizeof(LDP_LabelMappingMsg), 2,
     {uint16_t(offsetof(LDP_LabelMappingMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList)),
      uint16_t(offsetof(LDP_LabelMappingMsg, stUnknTlvList))},
     LDP_PreParseMappingMsg, decode_as<LDP_LabelMappingMsg, LDP_DecodeMappingMsg>,
     encode_as<LDP_LabelMappingMsg, LDP_EncodeMappingMsg>,
     release_as<LDP_LabelMappingMsg, LDP_FreeLabelMappingMsg>},
    {LDP_MSG_LABEL_REQUEST, sizeof(LDP_LabelRequestMsg), 3,
     {uint16_t(offsetof(LDP_LabelRequestMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList)),
      uint16_t(offsetof(LDP_LabelRequestMsg, stErTlv) + offsetof(LDP_ErTlv, stHopList)),
      uint16_t(offsetof(LDP_LabelRequestMsg, stUnknTlvList))},
     LDP_PreParseRequestMsg, decode_as<LDP_LabelRequestMsg, LDP_DecodeRequestMsg>,
     encode_as<LDP_LabelRequestMsg, LDP_EncodeReqMsg>,
     release_as<LDP_LabelRequestMsg, LDP_FreeLabelRequestMsg>},
    {LDP_MSG_LABEL_WITHDRAW, sizeof(LDP_LabelWithdrawMsg), 2,
     {uint16_t(offsetof(LDP_LabelWithdrawMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList)),
      uint16_t(offsetof(LDP_LabelWithdrawMsg, stUnknTlvList))},
     LDP_PreParseWithdrawMsg, decode_as<LDP_LabelWithdrawMsg, LDP_DecodeWithdrawMsg>,
     encode_as<LDP_LabelWithdrawMsg, LDP_EncodeWithdrawMsg>,
     release_as<LDP_LabelWithdrawMsg, LDP_FreeLabelWithdrawMsg>},
    {LDP_MSG_LABEL_RELEASE, sizeof(LDP_LabelReleaseMsg), 2,
     {uint16_t(offsetof(LDP_LabelReleaseMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList)),
      uint16_t(offsetof(LDP_LabelReleaseMsg, stUnknTlvList))},
     LDP_PreParseReleaseMsg, decode_as<LDP_LabelReleaseMsg, LDP_DecodeReleaseMsg>,
     encode_as<LDP_LabelReleaseMsg, LDP_EncodeReleaseMsg>,
     release_as<LDP_LabelReleaseMsg, LDP_FreeLabelReleaseMsg>},
    {LDP_MSG_LABEL_ABORT_REQUEST, sizeof(LDP_LabelRequestAbortMsg), 2,
     {uint16_t(offsetof(LDP_LabelRequestAbortMsg, stFecTlv) + offsetof(LDP_FecTlv, stFecList)),
      uint16_t(offsetof(LDP_LabelRequestAbortMsg, stUnknTlvList))},
     LDP_PreParseReqAbortMsg, decode_as<LDP_LabelRequestAbortMsg, LDP_DecodeReqAbortMsg>,
     encode_as<LDP_LabelRequestAbortMsg, LDP_EncodeAbortReqMsg>,
     release_as<LDP_LabelRequestAbortMsg, LDP_FreeLabelRequestAbortMsg>},
};

} // namespace

const msg_ops *find_msg_ops(uint32_t masked_type)
{
    for (const msg_ops &row : kTable) {
        if (row.type == masked_type) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace ldp
