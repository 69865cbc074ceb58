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

// Encoders: write a record's TLV header at out (room bytes available, at
// least 4). The record's header is swapped in place; the length comes back to
// host order for the caller's bookkeeping, the type stays in network order.
inline void put_tlv_header(uint8_t *out, uint16_t room, LDP_TlvHeader *hdr, const char *file,
                           const mem::where w = mem::where::current())
{
    hdr->usTlvType = wire::to_net16(hdr->usTlvType);
    hdr->usTlvLen = wire::to_net16(hdr->usTlvLen);
    mem::copy(out, room, hdr, wire::kTlvHeaderSize, file, w);
    hdr->usTlvLen = wire::to_host16(hdr->usTlvLen);
}

} // namespace ldp
