// SPDX-License-Identifier: BSD-2-Clause
// The two entry shapes of a message whose pre-parse and decoder share one
// walk(msg, msg_len, record or null, module): the pre-parse reads the header
// into a local and walks with no record; the decoder reads it into the record
// and walks filling it.
#pragma once

#include <cstdint>

#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "../codec/tlv.hpp"
#include "ldp_codec.h"

namespace ldp::dec {

template <class Rec>
using walk_fn = uint32_t (*)(const uint8_t *msg, uint16_t msg_len, Rec *rec, uint32_t module);

// How the message header reaches the local or the record: copied through
// memcpy_s, or read straight off the wire where no rule asks for the copy.
enum class header_read { copy, load };

template <header_read Read>
inline void take_header(const uint8_t *msg, LDP_MsgHeader *hdr)
{
    if constexpr (Read == header_read::copy) {
        msg::read_header(msg, hdr, srcfile::dec);
    } else {
        msg::load_header(msg, hdr);
    }
}

template <class Rec, header_read Read = header_read::copy>
uint32_t pre_parse(const uint8_t *msg, walk_fn<Rec> walk)
{
    if (msg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    take_header<Read>(msg, &hdr);
    return walk(msg, hdr.usMsgLen, nullptr, 0);
}

// On failure the record keeps what was filled so far; LDP_Decode releases it.
template <class Rec, header_read Read = header_read::copy>
uint32_t decode(const uint8_t *msg, Rec *rec, uint32_t module, walk_fn<Rec> walk)
{
    if (msg == nullptr || rec == nullptr) {
        return LDP_ERR_PARAM;
    }
    take_header<Read>(msg, &rec->stMsgHeader);
    return walk(msg, rec->stMsgHeader.usMsgLen, rec, module);
}

inline bool u_bit(const LDP_TlvHeader &tlv) { return (tlv.usTlvType & LDP_TLV_U_BIT) != 0; }
inline bool f_bit(const LDP_TlvHeader &tlv) { return (tlv.usTlvType & LDP_TLV_F_BIT) != 0; }

// A TLV a pre-parse checks on its first occurrence only; later copies pass
// unchecked. bad is the message's own code for a first copy that fails.
inline uint32_t first_only(bool &seen, bool well_formed, uint32_t bad)
{
    if (seen) {
        return LDP_OK;
    }
    seen = true;
    return well_formed ? LDP_OK : bad;
}

// The first FEC TLV of a message, checked by the FEC TLV pre-parse (whose
// LDP_STOP_WALK is passed on); later FEC TLVs pass unchecked.
inline uint32_t first_fec(bool &seen, const tlv_cursor &cur, uint16_t len)
{
    if (seen) {
        return LDP_OK;
    }
    seen = true;
    return LDP_PreParseFECTlv(cur.value(), len);
}

// A pre-parse meeting a TLV it does not take: refused without the U bit,
// stepped over with it (the F bit plays no part).
inline uint32_t skip_unknown(const LDP_TlvHeader &tlv)
{
    return u_bit(tlv) ? LDP_OK : LDP_STATUS_UNKNOWN_TLV;
}

// A label message decoder meeting a TLV it does not take: refused without
// the U bit, kept in the record's list for forwarding with the U and F bits,
// dropped with the U bit alone.
inline uint32_t keep_unknown(const tlv_cursor &cur, const LDP_TlvHeader &tlv, SLL_List *unknown,
                             uint32_t module)
{
    if (!u_bit(tlv)) {
        return LDP_STATUS_UNKNOWN_TLV;
    }
    if (f_bit(tlv)) {
        return LDP_DecodeUnknownTlv(cur.value(), unknown, tlv.usTlvLen, module);
    }
    return LDP_OK;
}

} // namespace ldp::dec
