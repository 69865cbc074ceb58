// --roundtrip: a decoded record encoded again with LDP_Encode and compared
// with the message it came from, TLV by TLV.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tlv_walk.hpp"

namespace ldpdump {

struct roundtrip_result {
    uint32_t rc = 0;                // LDP_Encode's code
    bool same = false;              // byte for byte
    std::vector<tlv_info> not_kept; // TLVs of the message the record does not keep
    std::vector<tlv_info> changed;  // kept, but written back with other bytes
    bool header_changed = false;    // the message header came back different
    bool reordered = false;         // the same TLVs in another order
    // A difference that dropped TLVs or reordering do not explain.
    bool failed() const { return rc != 0 || (!same && (header_changed || !changed.empty() || (not_kept.empty() && !reordered))); }
};

// Encodes `rec` (which LDP_Encode releases) and compares with msg[0..len).
roundtrip_result roundtrip(uint32_t type, void *rec, const uint8_t *msg, size_t len);

} // namespace ldpdump
