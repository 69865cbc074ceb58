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

} // namespace ldp::tlv_out
