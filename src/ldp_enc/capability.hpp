// SPDX-License-Identifier: BSD-2-Clause
// Encoding and release of a capability list, shared by the Initialization
// and Capability messages.
#pragma once

#include <cstdint>

#include "ldp_codec.h"

namespace ldp::caps {

// Writes every element of list at at, in list order, stepping by each
// element's usTlvLen + 4. An empty list (or one with no first element)
// writes nothing and succeeds; any element that does not fit gives
// LDP_ERR_PARAM.
uint32_t encode_list(uint8_t *at, SLL_List *list, uint32_t module, uint16_t room);

// Unlinks and releases every element and its data, then leaves the list empty.
void release_list(SLL_List *list);

} // namespace ldp::caps
