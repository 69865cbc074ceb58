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

} // namespace ldp::tlv_out
