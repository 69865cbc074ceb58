// SPDX-License-Identifier: BSD-2-Clause
// The per-type operations behind the entry points: one row for each of the
// twelve message types.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ldp_codec.h"
#include "list.hpp"
#include "mem.hpp"
#include "srcfile.hpp"

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

extern const msg_ops kNotification, kHello, kInit, kKeepAlive, kCapability, kAddress, kAddressWithdraw,
    kLabelMapping, kLabelRequest, kLabelWithdraw, kLabelRelease, kLabelAbortRequest;

// The row of a masked message type, or null for a type the library does not
// know. A switch rather than a scan, inline in the entry points.
inline const msg_ops *find_msg_ops(uint32_t masked_type)
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

// The decode road of LDP_Decode for one record type: the check (the type's
// pre-parse); then the record, zeroed, with the list heads at the given
// offsets made empty; then the decoder. A decoder code other than LDP_OK and
// LDP_STOP_WALK releases the record again.
template <class Rec, uint32_t (*Check)(const uint8_t *), uint32_t (*Decode)(const uint8_t *, Rec *, uint32_t),
          size_t... ListOffsets>
uint32_t decode_road(const uint8_t *msg, void **out, uint32_t module)
{
    const uint32_t checked = Check(msg);
    if (checked != LDP_OK) {
        return checked; // no record yet
    }
    Rec *rec = mem::alloc_record<Rec>(module, srcfile::dec);
    if (rec == nullptr) {
        return LDP_ERR_NO_MEMORY;
    }
    auto *base = reinterpret_cast<uint8_t *>(rec);
    (list::reset_empty(reinterpret_cast<SLL_List *>(base + ListOffsets)), ...);

    const uint32_t rc = Decode(msg, rec, module);
    *out = rec;
    // LDP_STOP_WALK keeps the record: the decoder filled it and stopped at
    // content the caller takes over.
    if (rc == LDP_OK || rc == LDP_STOP_WALK) {
        return rc;
    }
    LDP_FreeMessage(rec);
    *out = nullptr;
    return rc;
}

// Label Mapping has a road of its own, with a quick path for the usual shape.
uint32_t decode_mapping_road(const uint8_t *msg, void **out, uint32_t module);

} // namespace ldp
