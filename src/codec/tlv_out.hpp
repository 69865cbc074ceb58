// SPDX-License-Identifier: BSD-2-Clause
// Writing a record's TLV header to the wire with the encoders' in-place habit:
// the record's type word is left in network order, while its length is given
// back in host order because the encoder still steps by it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ldp_codec.h"
#include "mem.hpp"
#include "wire.hpp"

namespace ldp::tlv_out {

inline void header(uint8_t *dst, size_t room, LDP_TlvHeader *tlv, const char *file,
                   const mem::where w = mem::where::current())
{
    tlv->usTlvType = wire::to_net16(tlv->usTlvType);
    tlv->usTlvLen = wire::to_net16(tlv->usTlvLen);
    mem::copy(dst, room, tlv, wire::kTlvHeaderSize, file, w);
    tlv->usTlvLen = wire::to_host16(tlv->usTlvLen);
}

// The opening of every TLV encoder: room for the 4-byte header, else an
// assertion and LDP_ERR_PARAM; then the header as above.
inline uint32_t begin(uint8_t *dst, uint16_t room, LDP_TlvHeader *tlv, const char *file,
                      const mem::where w = mem::where::current())
{
    if (room < wire::kTlvHeaderSize) {
        return mem::no_room(file, w);
    }
    header(dst, room, tlv, file, w);
    return LDP_OK;
}

// A value (already in wire order) of size bytes where left bytes remain:
// an assertion and LDP_ERR_PARAM when it does not fit.
inline uint32_t put(uint8_t *dst, uint16_t left, const void *src, uint16_t size, const char *file,
                    const mem::where w = mem::where::current())
{
    if (left < size) {
        return mem::no_room(file, w);
    }
    mem::copy(dst, left, src, size, file, w);
    return LDP_OK;
}

// An encoder's output position and the bytes left after it; every decrease
// saturates at 0, so a TLV that used up the room leaves 0, not a wrap.
struct out_cursor {
    uint8_t *pos;
    uint16_t left;

    void take(uint32_t n)
    {
        pos += n;
        left = left > n ? uint16_t(left - n) : uint16_t(0);
    }
};

// A TLV that must fit whole, header and value, or the encoder reports no
// room; value is size bytes already in wire order. The cursor moves past it.
inline uint32_t put_whole(out_cursor &out, LDP_TlvHeader &hdr, const void *value, uint16_t size, const char *file,
                          const mem::where w = mem::where::current())
{
    if (int32_t(out.left) < int32_t(wire::kTlvHeaderSize) + size) {
        return mem::no_room(file, w);
    }
    header(out.pos, out.left, &hdr, file, w);
    if (size != 0) {
        mem::copy(out.pos + wire::kTlvHeaderSize, out.left - wire::kTlvHeaderSize, value, size, file, w);
    }
    out.take(wire::kTlvHeaderSize + uint32_t(size));
    return LDP_OK;
}

} // namespace ldp::tlv_out
