// SPDX-License-Identifier: BSD-2-Clause
// ldpdump's own walk over the TLVs of a message, independent of the codec:
// to list what a message carries, to compare it with its re-encoding, and to
// say where a decode failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ldpdump {

struct tlv_info {
    size_t offset = 0;      // of the TLV header, from the start of the message
    uint16_t type_word = 0; // with the U and F bits
    uint16_t len = 0;       // value length as the header says
    bool complete = true;   // false: the value runs past the end of the message
    uint16_t type() const { return uint16_t(type_word & 0x3FFF); }
};

// The TLVs after the 8-byte message header, up to the message length or the
// `len` bytes given, whichever ends first. A last TLV that does not fit is
// listed with complete == false and ends the walk.
std::vector<tlv_info> walk_tlvs(const uint8_t *msg, size_t len);

// "TLV 0x0400 Common Hello Parameters"
std::string tlv_label(const tlv_info &t);

// Where a message that the codec refused with `rc` (or stopped at, for
// LDP_STOP_WALK) fails, as far as can be
// told: the message is cut after each TLV in turn and decoded again, and the
// first TLV whose inclusion brings up `rc` is named. Message-wide codes (bad
// length, unknown type, a missing mandatory TLV) name no TLV.
struct failure_place {
    bool in_tlv = false;
    tlv_info tlv;
    size_t offset = 0;
    std::string text; // one phrase, e.g. "in TLV 0x0200 Generic Label at offset 20"
};
failure_place locate_failure(const uint8_t *msg, size_t len, uint32_t rc);

} // namespace ldpdump
