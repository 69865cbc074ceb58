// SPDX-License-Identifier: BSD-2-Clause
// Round-trip libFuzzer target, one build per message family (LDP_FUZZ_FAMILY:
// 0 session, 1 address, 2 label, 3 notification). A message of the family
// that LDP_Decode accepts is encoded from its record and decoded again; the
// two records must agree on every field the library keeps, else the run
// aborts naming the field. What the library deliberately does not carry
// across is handled in restore_dropped(), not_comparable(),
// allowed_refusal(), allowed_failure() and next to the comparisons.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ldp_codec.h"

#ifndef LDP_FUZZ_FAMILY
#error "build with -DLDP_FUZZ_FAMILY=0..3"
#endif

namespace {

bool in_family(uint32_t t)
{
    switch (LDP_FUZZ_FAMILY) {
    case 0:
        return t == LDP_MSG_KEEPALIVE || t == LDP_MSG_HELLO || t == LDP_MSG_INIT || t == LDP_MSG_CAPABILITY;
    case 1:
        return t == LDP_MSG_ADDRESS || t == LDP_MSG_ADDRESS_WITHDRAW;
    case 2:
        return t >= LDP_MSG_LABEL_MAPPING && t <= LDP_MSG_LABEL_ABORT_REQUEST;
    default:
        return t == LDP_MSG_NOTIFICATION;
    }
}

// What a finding prints beside the field: the record type, the message and
// its re-encoding, ready for a test vector.
const char *g_record = "";
bool g_priv_left_out;
const uint8_t *g_msg;
size_t g_msg_len;
const uint8_t *g_wire;
size_t g_wire_len;

void print_hex(const char *label, const uint8_t *p, size_t n)
{
    std::fprintf(stderr, "%s", label);
    for (size_t i = 0; i < n; ++i) {
        std::fprintf(stderr, " %02x", p[i]);
    }
    std::fprintf(stderr, "\n");
}

[[noreturn]] void differs(const char *what, const char *detail = "")
{
    std::fprintf(stderr, "round trip: %s%s differs%s\n", g_record, what, detail);
    print_hex("msg  ", g_msg, g_msg_len);
    if (g_wire != nullptr) {
        print_hex("enc  ", g_wire, g_wire_len);
    }
    std::abort();
}

// Two records of one type, compared member by member (offsetof, so packed
// fields are never bound to references).
struct pair {
    const uint8_t *a;
    const uint8_t *b;

    void same(const char *name, size_t off, size_t size) const
    {
        if (std::memcmp(a + off, b + off, size) != 0) {
            differs(name);
        }
    }
    template <class T>
    T get(const uint8_t *r, size_t off) const
    {
        T v;
        std::memcpy(&v, r + off, sizeof v);
        return v;
    }
    // An owned buffer of n bytes (n read from the first record).
    void buffer(const char *name, size_t ptr_off, size_t n) const
    {
        const auto *pa = get<const uint8_t *>(a, ptr_off);
        const auto *pb = get<const uint8_t *>(b, ptr_off);
        if ((pa == nullptr) != (pb == nullptr)) {
            differs(name, " (one buffer missing)");
        }
        if (pa != nullptr && n != 0 && std::memcmp(pa, pb, n) != 0) {
            differs(name);
        }
    }
    pair at(size_t off) const { return {a + off, b + off}; }
};

#define SAME(R, f) p.same(#f, offsetof(R, f), sizeof(static_cast<R *>(nullptr)->f))
#define TLVH(R, f) SAME(R, f.usTlvType), SAME(R, f.usTlvLen)

template <class F>
void each(const pair &p, size_t list_off, const char *name, F elem)
{
    const auto *la = reinterpret_cast<const SLL_List *>(p.a + list_off);
    const auto *lb = reinterpret_cast<const SLL_List *>(p.b + list_off);
    uint32_t na, nb;
    std::memcpy(&na, &la->ulCount, 4);
    std::memcpy(&nb, &lb->ulCount, 4);
    if (na != nb) {
        differs(name, " (element count)");
    }
    const SLL_Node *x = la->stHead.pNext;
    const SLL_Node *y = lb->stHead.pNext;
    for (; x != &la->stHead && y != &lb->stHead; x = x->pNext, y = y->pNext) {
        elem(pair{reinterpret_cast<const uint8_t *>(x), reinterpret_cast<const uint8_t *>(y)});
    }
    if (x != &la->stHead || y != &lb->stHead) {
        differs(name, " (list length)");
    }
}

void fec_list(const pair &p, size_t off)
{
    each(p, off, "stFecList", [](const pair &p) {
        g_record = "LDP_FecElement.";
        SAME(LDP_FecElement, ucFecKind);
        const uint8_t kind = p.a[offsetof(LDP_FecElement, ucFecKind)];
        if (kind == LDP_FEC_PWID || kind == LDP_FEC_GEN_PWID) {
            const uint32_t raw = p.get<uint32_t>(p.a, offsetof(LDP_FecElement, stBody.ulRawLen));
            SAME(LDP_FecElement, stBody.ulRawLen);
            p.buffer("stBody.pucRaw", offsetof(LDP_FecElement, stBody.pucRaw), raw & 0xFFFF);
            return;
        }
        SAME(LDP_FecElement, stBody.ucFecType);
        SAME(LDP_FecElement, stBody.usAddrFamily);
        SAME(LDP_FecElement, stBody.ucPrefixLen);
        SAME(LDP_FecElement, stBody.aucAddr);
        SAME(LDP_FecElement, stBody.usOpaqueLen);
        p.buffer("stBody.pucOpaqueValue", offsetof(LDP_FecElement, stBody.pucOpaqueValue),
                 p.get<uint16_t>(p.a, offsetof(LDP_FecElement, stBody.usOpaqueLen)));
    });
}

void fec_tlv(const pair &rec, size_t off)
{
    const pair p = rec.at(off);
    g_record = "stFecTlv.";
    TLVH(LDP_FecTlv, stTlvHeader);
    fec_list(p, offsetof(LDP_FecTlv, stFecList));
}

void unknown_list(const pair &p, size_t off)
{
    each(p, off, "stUnknTlvList", [](const pair &p) {
        g_record = "LDP_UnknownTlv.";
        SAME(LDP_UnknownTlv, ulTlvLen);
        p.buffer("pucTlv", offsetof(LDP_UnknownTlv, pucTlv),
                 p.get<uint32_t>(p.a, offsetof(LDP_UnknownTlv, ulTlvLen)));
    });
}

void cap_list(const pair &p, size_t off)
{
    each(p, off, "stCapList", [](const pair &p) {
        g_record = "LDP_CapabilityParam.";
        TLVH(LDP_CapabilityParam, stTlvHeader);
        SAME(LDP_CapabilityParam, ucSByte);
        const uint16_t len = p.get<uint16_t>(p.a, offsetof(LDP_CapabilityParam, stTlvHeader.usTlvLen));
        p.buffer("pucCapData", offsetof(LDP_CapabilityParam, pucCapData), len > 1 ? len - 1 : 0);
    });
}

void range_list(const pair &p, size_t off)
{
    each(p, off, "stRangeList", [](const pair &p) {
        g_record = "LDP_LabelRangeComponent.";
        SAME(LDP_LabelRangeComponent, ulRangeMin);
        SAME(LDP_LabelRangeComponent, ulRangeMax);
    });
}

void path_vector(const pair &rec, size_t off)
{
    const pair p = rec.at(off);
    g_record = "stPathVectorTlv.";
    TLVH(LDP_PathVectorTlv, stTlvHeader);
    SAME(LDP_PathVectorTlv, usLsrIdCount);
    p.buffer("pulLsrId", offsetof(LDP_PathVectorTlv, pulLsrId),
             4u * p.get<uint16_t>(p.a, offsetof(LDP_PathVectorTlv, usLsrIdCount)));
}

// A nested part; the record's name is put back for the fields after it.
void sub(void (*fn)(const pair &, size_t), const pair &p, size_t off)
{
    const char *name = g_record;
    fn(p, off);
    g_record = name;
}
#define SUB(R, f, fn) sub(fn, p, offsetof(R, f))

void compare(uint32_t type, const pair &p, bool len_kept)
{
    g_record = "stMsgHeader.";
    if (len_kept) {
        SAME(LDP_MsgHeader, usMsgLen);
    }
    SAME(LDP_MsgHeader, usMsgType);
    SAME(LDP_MsgHeader, ulMsgId);
    switch (type) {
    case LDP_MSG_KEEPALIVE:
        break;
    case LDP_MSG_HELLO: {
        using R = LDP_HelloMsg;
        g_record = "LDP_HelloMsg.";
        TLVH(R, stCommHelloTlv), SAME(R, usHoldTime), SAME(R, usHelloFlags);
        TLVH(R, stIpv4TransTlv), SAME(R, ulIpv4TransAddr), TLVH(R, stIpv6TransTlv), SAME(R, aucIpv6TransAddr);
        TLVH(R, stConfSeqTlv), SAME(R, ulConfSeqNum), TLVH(R, stPrivHelloTlv), SAME(R, aucPrivHelloValue);
        SAME(R, ucHelloOptFlags);
        break;
    }
    case LDP_MSG_INIT: {
        using R = LDP_InitMsg;
        g_record = "LDP_InitMsg.";
        TLVH(R, stCommSess.stTlvHeader), SAME(R, stCommSess.usProtocolVersion), SAME(R, stCommSess.usKeepAliveTime);
        SAME(R, stCommSess.usAdPvLim), SAME(R, stCommSess.usMaxPduLen), SAME(R, stCommSess.ulReceiverLsrId);
        SAME(R, stCommSess.usReceiverLabelSpace);
        TLVH(R, stAtmSess.stTlvHeader), SAME(R, stAtmSess.ulMndWord), SUB(R, stAtmSess.stRangeList, range_list);
        TLVH(R, stFrSess.stTlvHeader), SAME(R, stFrSess.ulMndWord), SUB(R, stFrSess.stRangeList, range_list);
        TLVH(R, stFtSess.stTlvHeader), SAME(R, stFtSess.usFtFlags); // usFtReserved: always sent as zero
        SAME(R, stFtSess.ulFtReconnectTimeout), SAME(R, stFtSess.ulFtRecoveryTime);
        SUB(R, stCapList, cap_list), SAME(R, ucOptFlags), SAME(R, ucOptFlags2);
        break;
    }
    case LDP_MSG_CAPABILITY: {
        using R = LDP_CapabilityMsg;
        g_record = "LDP_CapabilityMsg.";
        SUB(R, stCapList, cap_list), SAME(R, ulCapFlags);
        break;
    }
    case LDP_MSG_ADDRESS:
    case LDP_MSG_ADDRESS_WITHDRAW: {
        using R = LDP_AddressWithdrawMsg; // the Address record is its first part
        g_record = type == LDP_MSG_ADDRESS ? "LDP_AddressMsg." : "LDP_AddressWithdrawMsg.";
        // A list shorter than its family field gets the family written past
        // its end, where it reads as another TLV (see allowed_failure).
        if (p.get<uint16_t>(p.a, offsetof(R, stAddrListTlv.usTlvLen)) >= 2) {
            TLVH(R, stAddrListTlv), SAME(R, usAddrFamily);
        }
        SAME(R, usAddrCount);
        p.buffer("pulAddrList", offsetof(R, pulAddrList), 4u * p.get<uint16_t>(p.a, offsetof(R, usAddrCount)));
        if (type == LDP_MSG_ADDRESS) {
            break;
        }
        // A FEC TLV that fails its check stays in the record, unflagged, and
        // is not sent; a good one ends the walk before LDP_Decode keeps a record.
        if (p.a[offsetof(R, ucAddrWdFlags)] & LDP_ADDRWD_FEC) {
            SUB(R, stFecTlv, fec_tlv);
        }
        TLVH(R, stMacListTlv), SAME(R, usMacListLen), SAME(R, ucAddrWdFlags);
        p.buffer("pucMacList", offsetof(R, pucMacList), p.get<uint16_t>(p.a, offsetof(R, usMacListLen)));
        break;
    }
    case LDP_MSG_LABEL_MAPPING: {
        using R = LDP_LabelMappingMsg;
        g_record = "LDP_LabelMappingMsg.";
        SUB(R, stFecTlv, fec_tlv), TLVH(R, stLabelTlv.stTlvHeader), SAME(R, stLabelTlv.ulLabel);
        SAME(R, stLabelTlv.usLabelKind), TLVH(R, stLabelReqIdTlv.stTlvHeader), SAME(R, stLabelReqIdTlv.ulReqMsgId);
        SAME(R, stLspIdTlv), SAME(R, stHopCountTlv), SUB(R, stPathVectorTlv, path_vector), SAME(R, stTrafficTlv);
        SAME(R, stShortTlv), TLVH(R, stWordPtrTlv.stTlvHeader), TLVH(R, stVarPtrTlv.stTlvHeader);
        SAME(R, stMpStatusTlv), SUB(R, stUnknTlvList, unknown_list), SAME(R, ucOptFlags1);
        if (g_priv_left_out) {
            if ((p.a[offsetof(R, ucOptFlags2)] ^ p.b[offsetof(R, ucOptFlags2)]) != LDP_MAP_OPT2_PRIV) {
                differs("ucOptFlags2");
            }
        } else {
            SAME(R, stPrivTlv), SAME(R, ucOptFlags2);
        }
        break;
    }
    case LDP_MSG_LABEL_REQUEST: {
        using R = LDP_LabelRequestMsg;
        g_record = "LDP_LabelRequestMsg.";
        SUB(R, stFecTlv, fec_tlv), TLVH(R, stLabelTlv.stTlvHeader), SAME(R, stLabelTlv.ulLabel);
        SAME(R, stLabelTlv.usLabelKind), SAME(R, stLspIdTlv), TLVH(R, stErTlv.stTlvHeader);
        SAME(R, stErTlv.stHopList.ulCount), SAME(R, stHopCountTlv), SUB(R, stPathVectorTlv, path_vector);
        SAME(R, stTrafficTlv), SAME(R, stWordTlvA), SAME(R, stWordTlvB), SAME(R, stRawWordTlv);
        SAME(R, stWordTlvC), TLVH(R, stVarPtrTlv.stTlvHeader), SUB(R, stUnknTlvList, unknown_list);
        SAME(R, ucOptFlags1), SAME(R, ucOptFlags2);
        break;
    }
    case LDP_MSG_LABEL_WITHDRAW:
    case LDP_MSG_LABEL_RELEASE: {
        // The Withdraw record is the Release record without its Status TLV.
        using W = LDP_LabelWithdrawMsg;
        using R = LDP_LabelReleaseMsg;
        g_record = type == LDP_MSG_LABEL_RELEASE ? "LDP_LabelReleaseMsg." : "LDP_LabelWithdrawMsg.";
        SUB(R, stFecTlv, fec_tlv), SAME(R, stLspIdTlv), TLVH(R, stLabelTlv.stTlvHeader);
        SAME(R, stLabelTlv.ulLabel), SAME(R, stLabelTlv.usLabelKind);
        if (type == LDP_MSG_LABEL_WITHDRAW) {
            SUB(W, stUnknTlvList, unknown_list), SAME(W, ucLblFlags);
        } else {
            TLVH(R, stStatusTlv.stTlvHeader), SAME(R, stStatusTlv.ulStatusCode);
            SAME(R, stStatusTlv.ulStatusMsgId), SAME(R, stStatusTlv.usStatusMsgType);
            SUB(R, stUnknTlvList, unknown_list), SAME(R, ucLblFlags);
        }
        break;
    }
    case LDP_MSG_LABEL_ABORT_REQUEST: {
        using R = LDP_LabelRequestAbortMsg;
        g_record = "LDP_LabelRequestAbortMsg.";
        SUB(R, stFecTlv, fec_tlv), TLVH(R, stLabelReqIdTlv), SAME(R, ulLabelReqMsgId), SAME(R, stLspIdTlv);
        SUB(R, stUnknTlvList, unknown_list), SAME(R, ucAbortFlags);
        break;
    }
    case LDP_MSG_NOTIFICATION: {
        using R = LDP_NotifyMsg;
        g_record = "LDP_NotifyMsg.";
        TLVH(R, stStatusTlv.stTlvHeader), SAME(R, stStatusTlv.ulStatusCode), SAME(R, stStatusTlv.ulStatusMsgId);
        SAME(R, stStatusTlv.usStatusMsgType), TLVH(R, stExtStatusTlv), SAME(R, ulExtStatus);
        TLVH(R, stRetPduTlv), TLVH(R, stRetMsgTlv), SAME(R, stLspIdTlv), TLVH(R, stLabelReqIdTlv);
        SAME(R, ulLabelReqMsgId), SUB(R, stFecTlv, fec_tlv), TLVH(R, stPwStatusTlv), TLVH(R, stPwIfParamTlv);
        SAME(R, stMpStatusTlv), TLVH(R, stLabelTlv.stTlvHeader), SAME(R, stLabelTlv.ulLabel);
        SAME(R, stLabelTlv.usLabelKind), SAME(R, ucNotifFlags), SAME(R, ucNotifFlags2);
        p.buffer("pucRetPdu", offsetof(R, pucRetPdu), p.get<uint16_t>(p.a, offsetof(R, stRetPduTlv.usTlvLen)));
        p.buffer("pucRetMsg", offsetof(R, pucRetMsg), p.get<uint16_t>(p.a, offsetof(R, stRetMsgTlv.usTlvLen)));
        p.buffer("pucPwStatus", offsetof(R, pucPwStatus), 4);
        p.buffer("pucPwIfParam", offsetof(R, pucPwIfParam),
                 p.get<uint16_t>(p.a, offsetof(R, stPwIfParamTlv.usTlvLen)));
        break;
    }
    default:
        break;
    }
}

// The value of the n-th TLV (from 0) of masked type t in a wire message, or null.
const uint8_t *find_tlv(const uint8_t *m, size_t len, uint16_t t, uint16_t *vlen, int n = 0)
{
    for (size_t pos = 8; pos + 4 <= len;) {
        *vlen = uint16_t(m[pos + 2] << 8 | m[pos + 3]);
        if (((m[pos] << 8 | m[pos + 1]) & LDP_TLV_TYPE_MASK) == t && n-- == 0) {
            return pos + 4 + *vlen <= len ? m + pos + 4 : nullptr;
        }
        pos += 4 + *vlen;
    }
    return nullptr;
}

// Records the encoder cannot give back as received, so no second decode is
// compared: a Label Mapping with several FEC TLVs keeps all their elements in
// one list under the last TLV's header, and the encoder writes them all but
// moves on by that one length.
bool not_comparable(uint32_t type, const uint8_t *msg, size_t len)
{
    uint16_t vlen = 0;
    return type == LDP_MSG_LABEL_MAPPING && find_tlv(msg, len, LDP_TLV_FEC, &vlen, 1) != nullptr;
}

// What the record does not keep, put back before encoding so the rest of
// the message can be compared: a Label Mapping keeps only the presence of
// the empty TLV 0x0206, not its header.
// And the vendor-private TLV of a Label Mapping is written over the first
// six bytes of the kept unknown TLVs (intended): when both are present it is
// left out, and not compared (g_priv_left_out).

void restore_dropped(uint32_t type, void *rec)
{
    g_priv_left_out = false;
    if (type == LDP_MSG_LABEL_MAPPING) {
        auto *m = static_cast<LDP_LabelMappingMsg *>(rec);
        if (m->ucOptFlags2 & LDP_MAP_OPT2_EMPTY) {
            m->stEmptyTlv.usTlvType = LDP_TLV_MAPPING_0206;
            m->stEmptyTlv.usTlvLen = 0;
        }
        if ((m->ucOptFlags2 & LDP_MAP_OPT2_PRIV) && m->stUnknTlvList.ulCount != 0) {
            m->ucOptFlags2 &= uint8_t(~LDP_MAP_OPT2_PRIV);
            g_priv_left_out = true;
        }
    }
}

// A second decode that may fail, and why:
// - nothing but the header was written (every TLV was skipped on decode):
//   the message types that need a TLV refuse it as missing;
// - a Notification whose FEC TLV holds a pseudowire element: the walk stops
//   there, keeping that element as its kind alone (no raw bytes, so the
//   encoder writes nothing for it) and dropping what follows, while the TLV
//   length still counts it all: the re-encoding has zeros there;
// - an Address or Address Withdraw whose kept Address List is IPv6: its
//   addresses are dropped on decode and the length is not checked when the
//   list replaces an earlier one, so the re-encoded list (zeros of the
//   received length) may be refused as malformed;
// - an address list shorter than its 2-byte family field: the encoder writes
//   the family all the same, past the TLV's end, where it reads as a TLV.
bool allowed_failure(uint32_t type, uint32_t rc, const void *first, const uint8_t *msg, size_t len, size_t kept)
{
    if (kept == 8 && rc == LDP_STATUS_MISSING_MSG_PARAMS) {
        return true;
    }
    if (type == LDP_MSG_ADDRESS || type == LDP_MSG_ADDRESS_WITHDRAW) {
        const auto *a = static_cast<const LDP_AddressMsg *>(first);
        return (a->usAddrFamily == LDP_AF_IPV6 && rc == LDP_STATUS_MALFORMED_TLV) || a->stAddrListTlv.usTlvLen < 2;
    }
    uint16_t vlen = 0;
    const uint8_t *fec = find_tlv(msg, len, LDP_TLV_FEC, &vlen);
    return type == LDP_MSG_NOTIFICATION && fec != nullptr && LDP_PreParseFECTlv(fec, vlen) == LDP_STOP_WALK;
}

// Records the decoder accepts and the encoder refuses: only a Notification
// whose FEC TLV holds a Generic PWid element (0x81). The decoder lets it by,
// kept as its kind alone; the FEC encoder knows no such kind (it copies a
// caller's ready-made bytes for 0x80 only) and gives LDP_ERR_PARAM.
bool allowed_refusal(uint32_t type, uint32_t rc, const void *first)
{
    if (type != LDP_MSG_NOTIFICATION || rc != LDP_ERR_PARAM) {
        return false;
    }
    const SLL_List &list = static_cast<const LDP_NotifyMsg *>(first)->stFecTlv.stFecList;
    for (const SLL_Node *n = list.stHead.pNext; n != &list.stHead; n = n->pNext) {
        if (reinterpret_cast<const LDP_FecElement *>(n)->ucFecKind == LDP_FEC_GEN_PWID) {
            return true;
        }
    }
    return false;
}

// The encoder writes only what the record keeps, in a fixed order, and
// leaves the rest of the usMsgLen + 4 bytes zero. A zero tail that starts at
// a TLV boundary is such a hole: the message is cut before it (its length
// field lowered), so the second decode sees what was written. Returns the
// length the message keeps.
size_t written_length(uint8_t *wire, size_t len)
{
    size_t pos = 8;
    while (pos + 4 <= len) {
        bool zero = true;
        for (size_t i = pos; i < len && zero; ++i) {
            zero = wire[i] == 0;
        }
        if (zero) {
            wire[2] = uint8_t((pos - 4) >> 8);
            wire[3] = uint8_t(pos - 4);
            return pos;
        }
        pos += 4 + size_t(wire[pos + 2] << 8 | wire[pos + 3]);
    }
    return len;
}

uint32_t decode_copy(const uint8_t *data, size_t size, uint32_t *type, void **rec)
{
    auto *msg = static_cast<uint8_t *>(std::malloc(size == 0 ? 1 : size));
    std::memcpy(msg, data, size);
    const uint32_t rc = LDP_Decode(msg, type, rec, uint32_t(size), 0);
    std::free(msg);
    return rc;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    uint32_t type = 0;
    void *first = nullptr;
    if (size < 8 || decode_copy(data, size, &type, &first) != LDP_OK || !in_family(type) ||
        not_comparable(type, data, size)) {
        LDP_FreeMessage(first);
        return 0;
    }
    // The encoder consumes its record: encode a second decode of the same bytes.
    void *scratch = nullptr;
    uint32_t type2 = 0;
    if (decode_copy(data, size, &type2, &scratch) != LDP_OK) {
        differs("a second decode of the same bytes");
    }
    g_msg = data;
    g_msg_len = size;
    g_wire = nullptr;
    restore_dropped(type, scratch);
    uint8_t *wire = nullptr;
    const uint32_t enc = LDP_Encode(&wire, type, scratch, 0);
    if (enc != LDP_OK) {
        if (wire != nullptr || !allowed_refusal(type, enc, first)) {
            char why[48];
            std::snprintf(why, sizeof why, " (LDP_Encode: %u)", enc);
            g_record = "";
            differs("the encoding", why);
        }
        LDP_FreeMessage(first);
        return 0;
    }
    const size_t full = size_t(static_cast<LDP_MsgHeader *>(first)->usMsgLen) + 4;
    const size_t kept = written_length(wire, full);
    g_wire = wire;
    g_wire_len = kept;
    void *second = nullptr;
    const uint32_t rc = decode_copy(wire, kept, &type2, &second);
    if (rc != LDP_OK && allowed_failure(type, rc, first, data, size, kept)) {
        LDP_FreeMessage(second);
        LDP_FreeMessage(first);
        LDP_MemFreeCallBack(wire);
        return 0;
    }
    if (rc != LDP_OK) {
        g_record = "";
        char why[48];
        std::snprintf(why, sizeof why, " (second decode: %u)", rc);
        differs("the re-encoded message", why);
    }
    compare(type, pair{static_cast<const uint8_t *>(first), static_cast<const uint8_t *>(second)}, kept == full);
    LDP_FreeMessage(second);
    LDP_FreeMessage(first);
    LDP_MemFreeCallBack(wire);
    return 0;
}
