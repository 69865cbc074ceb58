// SPDX-License-Identifier: BSD-2-Clause
// --roundtrip: a decoded record encoded again with LDP_Encode and compared
// with the message it came from, TLV by TLV.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tlv_walk.hpp"

namespace ldpdump {

struct roundtrip_result {
    uint32_t rc = 0;                  // LDP_Encode's code
    bool same = false;                // byte for byte
    std::vector<tlv_info> not_kept;   // TLVs of the message that do not come back as received
    std::vector<tlv_info> partly;     // of those, the ones written back with other bytes
    std::vector<tlv_info> added;      // written, but in no form in the message
    bool header_changed = false;      // the message header came back different
    bool reordered = false;           // TLVs that came back, in another order
    // A difference that neither TLVs the record does not keep nor its own
    // TLV order explains.
    bool failed() const
    {
        return rc != 0 || (!same && (header_changed || !added.empty() || (not_kept.empty() && !reordered)));
    }
};

// Encodes `rec` (which LDP_Encode releases) and compares with msg[0..len).
roundtrip_result roundtrip(uint32_t type, void *rec, const uint8_t *msg, size_t len);

} // namespace ldpdump
