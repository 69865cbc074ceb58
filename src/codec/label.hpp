// SPDX-License-Identifier: BSD-2-Clause
// Pieces of the label TLV family that the label messages (and the
// Notification) use inline rather than through an exported function.
#pragma once

#include <cstdint>

#include "ldp_codec.h"
#include "list.hpp"

namespace ldp::label {

// Decode a Generic Label value into lbl, whose header the caller has stored:
// the length must be 4 (else LDP_STATUS_MALFORMED_TLV), the label keeps its
// low 20 bits.
uint32_t decode_generic_label(const uint8_t *value, LDP_LabelTlv *lbl);

// Unlink and release every kept unknown TLV with its copy; the list head is
// left as the unlinking leaves it.
void free_unknown_elements(SLL_List *unknown);

// Release every kept unknown TLV and leave the list empty. Inline: the list
// is nearly always empty, and then this is a test and four stores.
inline void free_unknown_tlvs(SLL_List *unknown)
{
    if (unknown->ulCount != 0) {
        free_unknown_elements(unknown);
    }
    list::reset_empty(unknown);
}

} // namespace ldp::label
