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

// Offset of the element list of a record's embedded FEC TLV.
#define LDP_FEC_LIST(Rec) (offsetof(Rec, stFecTlv) + offsetof(LDP_FecTlv, stFecList))

constexpr msg_ops kNotification = {
    LDP_MSG_NOTIFICATION,
    decode_as<LDP_NotifyMsg, LDP_PreParseNotifMsg, LDP_DecodeNotifMsg, LDP_FEC_LIST(LDP_NotifyMsg)>,
    encode_as<LDP_NotifyMsg, LDP_EncodeNotifMsg>, release_as<LDP_NotifyMsg, LDP_FreeNotifyMsg>};
constexpr msg_ops kHello = {LDP_MSG_HELLO, decode_as<LDP_HelloMsg, LDP_PreParseHelloMsg, LDP_DecodeHelloMsg>,
                            encode_as<LDP_HelloMsg, LDP_EncodeHelloMsg>, nullptr};
constexpr msg_ops kInit = {
    LDP_MSG_INIT,
    decode_as<LDP_InitMsg, LDP_PreParseInitMsg, LDP_DecodeInitMsg,
              offsetof(LDP_InitMsg, stAtmSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList),
              offsetof(LDP_InitMsg, stFrSess) + offsetof(LDP_LabelRangeSessParamTlv, stRangeList),
              offsetof(LDP_InitMsg, stCapList)>,
    encode_as<LDP_InitMsg, LDP_EncodeInitMsg>, release_as<LDP_InitMsg, LDP_FreeInitMsg>};
constexpr msg_ops kKeepAlive = {
    LDP_MSG_KEEPALIVE, decode_as<LDP_KeepAliveMsg, LDP_PreParseKeepAliveMsg, LDP_DecodeKeepAliveMsg>,
    encode_as<LDP_KeepAliveMsg, LDP_EncodeKeepAliveMsg>, nullptr};
constexpr msg_ops kCapability = {
    LDP_MSG_CAPABILITY,
    decode_as<LDP_CapabilityMsg, LDP_PreParseCapabilityMsg, LDP_DecodeCapabilityMsg,
              offsetof(LDP_CapabilityMsg, stCapList)>,
    encode_as<LDP_CapabilityMsg, LDP_EncodeCapabilityMsg>, release_as<LDP_CapabilityMsg, LDP_FreeCapabilityMsg>};
constexpr msg_ops kAddress = {LDP_MSG_ADDRESS,
                              decode_as<LDP_AddressMsg, LDP_PreParseAddrMsg, LDP_DecodeAddrMsg>,
                              encode_as<LDP_AddressMsg, LDP_EncodeAddrMsg>,
                              release_as<LDP_AddressMsg, LDP_FreeAddressMsg>};
constexpr msg_ops kAddressWithdraw = {
    LDP_MSG_ADDRESS_WITHDRAW,
    decode_as<LDP_AddressWithdrawMsg, LDP_PreParseAddrWithdrawMsg, LDP_DecodeAddrWithdrawMsg,
              LDP_FEC_LIST(LDP_AddressWithdrawMsg)>,
    encode_as<LDP_AddressWithdrawMsg, LDP_EncodeAddrWithdrawMsg>,
    release_as<LDP_AddressWithdrawMsg, LDP_FreeAddressWithdrawMsg>};
constexpr msg_ops kLabelMapping = {
    LDP_MSG_LABEL_MAPPING,
    decode_mapping_road,
    encode_as<LDP_LabelMappingMsg, LDP_EncodeMappingMsg>,
    release_as<LDP_LabelMappingMsg, LDP_FreeLabelMappingMsg>};
constexpr msg_ops kLabelRequest = {
    LDP_MSG_LABEL_REQUEST,
    decode_as<LDP_LabelRequestMsg, LDP_PreParseRequestMsg, LDP_DecodeRequestMsg, LDP_FEC_LIST(LDP_LabelRequestMsg),
              offsetof(LDP_LabelRequestMsg, stErTlv) + offsetof(LDP_ErTlv, stHopList),
              offsetof(LDP_LabelRequestMsg, stUnknTlvList)>,
    encode_as<LDP_LabelRequestMsg, LDP_EncodeReqMsg>, release_as<LDP_LabelRequestMsg, LDP_FreeLabelRequestMsg>};
constexpr msg_ops kLabelWithdraw = {
    LDP_MSG_LABEL_WITHDRAW,
    decode_as<LDP_LabelWithdrawMsg, LDP_PreParseWithdrawMsg, LDP_DecodeWithdrawMsg,
              LDP_FEC_LIST(LDP_LabelWithdrawMsg), offsetof(LDP_LabelWithdrawMsg, stUnknTlvList)>,
    encode_as<LDP_LabelWithdrawMsg, LDP_EncodeWithdrawMsg>,
    release_as<LDP_LabelWithdrawMsg, LDP_FreeLabelWithdrawMsg>};
constexpr msg_ops kLabelRelease = {
    LDP_MSG_LABEL_RELEASE,
    decode_as<LDP_LabelReleaseMsg, LDP_PreParseReleaseMsg, LDP_DecodeReleaseMsg, LDP_FEC_LIST(LDP_LabelReleaseMsg),
              offsetof(LDP_LabelReleaseMsg, stUnknTlvList)>,
    encode_as<LDP_LabelReleaseMsg, LDP_EncodeReleaseMsg>, release_as<LDP_LabelReleaseMsg, LDP_FreeLabelReleaseMsg>};
constexpr msg_ops kLabelAbortRequest = {
    LDP_MSG_LABEL_ABORT_REQUEST,
    decode_as<LDP_LabelRequestAbortMsg, LDP_PreParseReqAbortMsg, LDP_DecodeReqAbortMsg,
              LDP_FEC_LIST(LDP_LabelRequestAbortMsg), offsetof(LDP_LabelRequestAbortMsg, stUnknTlvList)>,
    encode_as<LDP_LabelRequestAbortMsg, LDP_EncodeAbortReqMsg>,
    release_as<LDP_LabelRequestAbortMsg, LDP_FreeLabelRequestAbortMsg>};

#undef LDP_FEC_LIST

} // namespace

// A switch rather than a scan: the compiler makes it a jump table or a short
// comparison tree.
const msg_ops *find_msg_ops(uint32_t masked_type)
{
    switch (masked_type) {
    case LDP_MSG_NOTIFICATION: return &kNotification;
    case LDP_MSG_HELLO: return &kHello;
    case LDP_MSG_INIT: return &kInit;
    case LDP_MSG_KEEPALIVE: return &kKeepAlive;
    case LDP_MSG_CAPABILITY: return &kCapability;
    case LDP_MSG_ADDRESS: return &kAddress;
    case LDP_MSG_ADDRESS_WITHDRAW: return &kAddressWithdraw;
    case LDP_MSG_LABEL_MAPPING: return &kLabelMapping;
    case LDP_MSG_LABEL_REQUEST: return &kLabelRequest;
    case LDP_MSG_LABEL_WITHDRAW: return &kLabelWithdraw;
    case LDP_MSG_LABEL_RELEASE: return &kLabelRelease;
    case LDP_MSG_LABEL_ABORT_REQUEST: return &kLabelAbortRequest;
    default: return nullptr;
    }
}

} // namespace ldp
