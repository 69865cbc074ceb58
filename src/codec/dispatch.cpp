// SPDX-License-Identifier: BSD-2-Clause
// The dispatch table: every message type the library knows, with its record
// and operations, and the decode road of LDP_Decode made once per type so the
// record's size and list heads are constants there.
#include "dispatch.hpp"

namespace ldp {
namespace {

template <class Rec, uint32_t (*PreParse)(const uint8_t *), uint32_t (*Decode)(const uint8_t *, Rec *, uint32_t),
          size_t... ListOffsets>
constexpr auto decode_as = decode_road<Rec, PreParse, Decode, ListOffsets...>;

template <class Rec, uint32_t (*Fn)(uint8_t *, Rec *, uint32_t, uint16_t)>
uint32_t encode_as(uint8_t *buf, void *rec, uint32_t module, uint16_t room)
{
    return Fn(buf, static_cast<Rec *>(rec), module, room);
}

template <class Rec, void (*Fn)(Rec *)>
void release_as(void *rec)
{
    Fn(static_cast<Rec *>(rec));
}

} // namespace

// Offset of the element list of a record's embedded FEC TLV.
#define LDP_FEC_LIST(Rec) (offsetof(Rec, stFecTlv) + offsetof(LDP_FecTlv, stFecList))

const msg_ops kNotification = {
    LDP_MSG_NOTIFICATION,
    decode_as<LDP_NotifyMsg, LDP_PreParseNotifMsg, LDP_DecodeNotifMsg, LDP_FEC_LIST(LDP_NotifyMsg)>,
    encode_as<LDP_NotifyMsg, LDP_EncodeNotifMsg>, release_as<LDP_NotifyMsg, LDP_FreeNotifyMsg>};
const msg_ops kHello = {LDP_MSG_HELLO, decode_as<LDP_HelloMsg, LDP_PreParseHelloMsg, LDP_DecodeHelloMsg>,
                        encode_as<LDP_HelloMsg, LDP_EncodeHelloMsg>, nullptr};
const msg_ops kInit = {
    LDP_MSG_INIT,
    decode_as<LDP_InitMsg, LDP_PreParseInitMsg, LDP_DecodeInitMsg,
              offsetof(LDP_InitMsg, stAtmSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList),
              offsetof(LDP_InitMsg, stFrSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList),
              offsetof(LDP_InitMsg, stCapList)>,
    encode_as<LDP_InitMsg, LDP_EncodeInitMsg>, release_as<LDP_InitMsg, LDP_FreeInitMsg>};
const msg_ops kKeepAlive = {
    LDP_MSG_KEEPALIVE, decode_as<LDP_KeepAliveMsg, LDP_PreParseKeepAliveMsg, LDP_DecodeKeepAliveMsg>,
    encode_as<LDP_KeepAliveMsg, LDP_EncodeKeepAliveMsg>, nullptr};
const msg_ops kCapability = {
    LDP_MSG_CAPABILITY,
    decode_as<LDP_CapabilityMsg, LDP_PreParseCapabilityMsg, LDP_DecodeCapabilityMsg,
              offsetof(LDP_CapabilityMsg, stCapList)>,
    encode_as<LDP_CapabilityMsg, LDP_EncodeCapabilityMsg>, release_as<LDP_CapabilityMsg, LDP_FreeCapabilityMsg>};
const msg_ops kAddress = {LDP_MSG_ADDRESS, decode_as<LDP_AddressMsg, LDP_PreParseAddrMsg, LDP_DecodeAddrMsg>,
                          encode_as<LDP_AddressMsg, LDP_EncodeAddrMsg>,
                          release_as<LDP_AddressMsg, LDP_FreeAddressMsg>};
const msg_ops kAddressWithdraw = {
    LDP_MSG_ADDRESS_WITHDRAW,
    decode_as<LDP_AddressWithdrawMsg, LDP_PreParseAddrWithdrawMsg, LDP_DecodeAddrWithdrawMsg,
              LDP_FEC_LIST(LDP_AddressWithdrawMsg)>,
    encode_as<LDP_AddressWithdrawMsg, LDP_EncodeAddrWithdrawMsg>,
    release_as<LDP_AddressWithdrawMsg, LDP_FreeAddressWithdrawMsg>};
const msg_ops kLabelMapping = {
    LDP_MSG_LABEL_MAPPING,
    decode_mapping_road,
    encode_as<LDP_LabelMappingMsg, LDP_EncodeMappingMsg>,
    release_as<LDP_LabelMappingMsg, LDP_FreeLabelMappingMsg>};
const msg_ops kLabelRequest = {
    LDP_MSG_LABEL_REQUEST,
    decode_as<LDP_LabelRequestMsg, LDP_PreParseRequestMsg, LDP_DecodeRequestMsg, LDP_FEC_LIST(LDP_LabelRequestMsg),
              offsetof(LDP_LabelRequestMsg, stErTlv) + offsetof(LDP_ErTlv, stHopList),
              offsetof(LDP_LabelRequestMsg, stUnknTlvList)>,
    encode_as<LDP_LabelRequestMsg, LDP_EncodeReqMsg>, release_as<LDP_LabelRequestMsg, LDP_FreeLabelRequestMsg>};
const msg_ops kLabelWithdraw = {
    LDP_MSG_LABEL_WITHDRAW,
    decode_as<LDP_LabelWithdrawMsg, LDP_PreParseWithdrawMsg, LDP_DecodeWithdrawMsg,
              LDP_FEC_LIST(LDP_LabelWithdrawMsg), offsetof(LDP_LabelWithdrawMsg, stUnknTlvList)>,
    encode_as<LDP_LabelWithdrawMsg, LDP_EncodeWithdrawMsg>,
    release_as<LDP_LabelWithdrawMsg, LDP_FreeLabelWithdrawMsg>};
const msg_ops kLabelRelease = {
    LDP_MSG_LABEL_RELEASE,
    decode_as<LDP_LabelReleaseMsg, LDP_PreParseReleaseMsg, LDP_DecodeReleaseMsg, LDP_FEC_LIST(LDP_LabelReleaseMsg),
              offsetof(LDP_LabelReleaseMsg, stUnknTlvList)>,
    encode_as<LDP_LabelReleaseMsg, LDP_EncodeReleaseMsg>, release_as<LDP_LabelReleaseMsg, LDP_FreeLabelReleaseMsg>};
const msg_ops kLabelAbortRequest = {
    LDP_MSG_LABEL_ABORT_REQUEST,
    decode_as<LDP_LabelRequestAbortMsg, LDP_PreParseReqAbortMsg, LDP_DecodeReqAbortMsg,
              LDP_FEC_LIST(LDP_LabelRequestAbortMsg), offsetof(LDP_LabelRequestAbortMsg, stUnknTlvList)>,
    encode_as<LDP_LabelRequestAbortMsg, LDP_EncodeAbortReqMsg>,
    release_as<LDP_LabelRequestAbortMsg, LDP_FreeLabelRequestAbortMsg>};

#undef LDP_FEC_LIST

} // namespace ldp
