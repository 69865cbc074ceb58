// The per-type operations behind the entry points: one row for each of the
// twelve message types. A row whose functions are still null belongs to a
// type the library recognises but cannot handle yet; the entry points answer
// it with LDP_ERR_PARAM.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ldp_codec.h"

namespace ldp {

struct msg_ops {
    uint16_t type;
    uint32_t record_size;
    uint8_t list_count;
    uint16_t list_offsets[3]; // embedded SLL_List heads to prepare at allocation
    uint32_t (*pre_parse)(const uint8_t *msg);
    uint32_t (*decode)(const uint8_t *msg, void *rec, uint32_t module);
    uint32_t (*encode)(uint8_t *buf, void *rec, uint32_t module, uint16_t room);
    void (*release)(void *rec); // what the record owns; null when it owns nothing
};

// The row of a masked message type, or null for a type the library does not know.
const msg_ops *find_msg_ops(uint32_t masked_type);

// Adapters from the exported, typed functions to the row's void* signatures.
template <class Rec, uint32_t (*Fn)(const uint8_t *, Rec *, uint32_t)>
uint32_t decode_as(const uint8_t *msg, void *rec, uint32_t module)
{
    return Fn(msg, static_cast<Rec *>(rec), module);
}

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

} // namespace ldp
