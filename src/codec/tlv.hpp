// SPDX-License-Identifier: BSD-2-Clause
// A bounded reader over the TLVs of one message. Positions are in message
// length units (the message ID counts, so the first TLV is at position 4);
// the cursor never reads past position L, the message length it was given.
// Each message keeps its own loop over the cursor so its check order shows.
#pragma once

#include <cstdint>

#include "ldp_codec.h"
#include "mem.hpp"
#include "wire.hpp"

namespace ldp {

class tlv_cursor {
public:
    tlv_cursor(const uint8_t *msg, uint16_t msg_len, uint16_t pos = wire::kFirstTlvPos)
        : msg_(msg), len_(msg_len), pos_(pos)
    {
    }

    uint16_t pos() const { return pos_; }
    uint16_t msg_len() const { return len_; }

    // Bytes between the position and the message end; negative once a walk
    // has run past the end.
    int32_t left() const { return int32_t(len_) - int32_t(pos_); }

    // Room for a TLV header at the position.
    bool has_header() const { return left() >= wire::kTlvHeaderSize; }

    // The header at the position, copied through memcpy_s and converted to
    // host order. A failed copy is reported and leaves the header zeroed.
    LDP_TlvHeader header(const char *file, const mem::where w = mem::where::current()) const
    {
        LDP_TlvHeader tlv = {};
        mem::copy(&tlv, sizeof tlv, at(), wire::kTlvHeaderSize, file, w);
        tlv.usTlvType = wire::to_host16(tlv.usTlvType);
        tlv.usTlvLen = wire::to_host16(tlv.usTlvLen);
        return tlv;
    }

    // The header at the position read straight off the wire, for the walks
    // whose TLV headers no rule asks to copy through memcpy_s.
    LDP_TlvHeader load_header() const
    {
        return LDP_TlvHeader{wire::load16(at()), wire::load16(at() + 2)};
    }

    // Masked type of the TLV at the position, read without a copy.
    uint16_t peek_type() const { return wire::load16(at()) & LDP_TLV_TYPE_MASK; }

    // The value of a TLV of length n fits before the message end.
    bool value_fits(uint16_t n) const { return int32_t(n) <= left() - wire::kTlvHeaderSize; }

    // Start of the TLV header and of its value on the wire.
    const uint8_t *at() const { return msg_ + pos_ + wire::kLenFieldEnd; }
    const uint8_t *value() const { return at() + wire::kTlvHeaderSize; }

    // Step over a TLV with a value of n bytes (position arithmetic is u16).
    void advance(uint16_t n) { pos_ = uint16_t(pos_ + wire::kTlvHeaderSize + n); }

    bool at_or_past_end() const { return pos_ >= len_; }
    bool at_end() const { return pos_ == len_; }

private:
    const uint8_t *msg_;
    uint16_t len_;
    uint16_t pos_;
};

// How a walk reads each TLV header: copied through memcpy_s, as the reference
// walk of LDP does (a failed copy is reported and leaves a zeroed header), or
// loaded straight off the wire where no rule asks for the copy.
enum class tlv_read { copy, load };

// The part every message walk shares once its own opening checks are done
// and a TLV header is known to fit at the cursor: each TLV's value must end
// inside the message (7) before fn(header) sees it; a nonzero code from fn
// ends the walk; after each TLV the walk ends when the message is used up
// (0 exactly at the end, 5 past it) and otherwise needs room for another
// header (7). The message's own rules live in fn.
template <tlv_read Read = tlv_read::copy, class Fn>
uint32_t walk_rest(tlv_cursor &cur, const char *file, Fn fn)
{
    for (;;) {
        const LDP_TlvHeader tlv = Read == tlv_read::copy ? cur.header(file) : cur.load_header();
        if (!cur.value_fits(tlv.usTlvLen)) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
        const uint32_t rc = fn(tlv);
        if (rc != LDP_OK) {
            return rc;
        }
        cur.advance(tlv.usTlvLen);
        if (cur.at_or_past_end()) {
            return cur.at_end() ? LDP_OK : LDP_STATUS_BAD_MSG_LEN;
        }
        if (!cur.has_header()) {
            return LDP_STATUS_BAD_TLV_LEN;
        }
    }
}

// A whole walk from the cursor: a first TLV header must fit (7), then as
// walk_rest.
template <tlv_read Read = tlv_read::copy, class Fn>
uint32_t walk_tlvs(tlv_cursor &cur, const char *file, Fn fn)
{
    if (!cur.has_header()) {
        return LDP_STATUS_BAD_TLV_LEN;
    }
    return walk_rest<Read>(cur, file, fn);
}

} // namespace ldp
