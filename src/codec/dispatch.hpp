// The per-type operations behind the entry points: one row for each of the
// twelve message types.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ldp_codec.h"

namespace ldp {

struct msg_ops {
    uint16_t type;
    // Pre-parse, allocation of the zeroed record with its lists prepared, and
    // decode: the whole of LDP_Decode once the type is known. *out receives
    // the record when the decoder ran, and is left alone otherwise.
    uint32_t (*decode)(const uint8_t *msg, void **out, uint32_t module);
    uint32_t (*encode)(uint8_t *buf, void *rec, uint32_t module, uint16_t room);
    void (*release)(void *rec); // what the record owns; null when it owns nothing
};

// The row of a masked message type, or null for a type the library does not know.
const msg_ops *find_msg_ops(uint32_t masked_type);

} // namespace ldp
