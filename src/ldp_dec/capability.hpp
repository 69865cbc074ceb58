// SPDX-License-Identifier: BSD-2-Clause
// Decoding of one Capability Parameter TLV into a new list element, shared by
// the Initialization and Capability messages.
#pragma once

#include <cstdint>

#include "ldp_codec.h"

namespace ldp::caps {

// Allocates a zeroed element (LDP_ERR_NO_MEMORY when that fails), gives it
// the TLV header, fills it with LDP_DecodeCapabilityParamTlv and appends it to
// list. When filling fails the element is released and that code returned.
// On success *s_byte receives the element's first value byte.
uint32_t decode_into(const uint8_t *value, const LDP_TlvHeader &tlv, SLL_List *list,
                     uint32_t module, uint8_t *s_byte);

} // namespace ldp::caps
