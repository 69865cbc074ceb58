// SPDX-License-Identifier: BSD-2-Clause
// Network-order loads, stores and swaps. Wire bytes may sit at any address,
// so every access goes through memcpy; record fields are packed and are
// swapped by value (never through a reference to the packed member).
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace ldp::wire {

inline constexpr uint16_t swap16(uint16_t v)
{
    if constexpr (std::endian::native == std::endian::little) {
        return __builtin_bswap16(v);
    } else {
        return v;
    }
}

inline constexpr uint32_t swap32(uint32_t v)
{
    if constexpr (std::endian::native == std::endian::little) {
        return __builtin_bswap32(v);
    } else {
        return v;
    }
}

// Host <-> network is the same swap either way; the two names say which way
// the caller means.
inline constexpr uint16_t to_net16(uint16_t v) { return swap16(v); }
inline constexpr uint32_t to_net32(uint32_t v) { return swap32(v); }
inline constexpr uint16_t to_host16(uint16_t v) { return swap16(v); }
inline constexpr uint32_t to_host32(uint32_t v) { return swap32(v); }

inline uint16_t load16(const uint8_t *p)
{
    uint16_t v;
    std::memcpy(&v, p, sizeof v);
    return to_host16(v);
}

inline uint32_t load32(const uint8_t *p)
{
    uint32_t v;
    std::memcpy(&v, p, sizeof v);
    return to_host32(v);
}

inline void store16(uint8_t *p, uint16_t v)
{
    v = to_net16(v);
    std::memcpy(p, &v, sizeof v);
}

inline void store32(uint8_t *p, uint32_t v)
{
    v = to_net32(v);
    std::memcpy(p, &v, sizeof v);
}

// A host-order u32 at any address (owned arrays may sit at odd addresses).
inline uint32_t load_host32(const void *p)
{
    uint32_t v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

inline void store_host32(void *p, uint32_t v) { std::memcpy(p, &v, sizeof v); }

// Wire layout of the message header: type word, length, message ID.
inline constexpr uint16_t kMsgHeaderSize = 8;
inline constexpr uint16_t kTlvHeaderSize = 4;
// Message length units start after the length field: the first TLV sits at
// position 4 (wire offset 8), right after the message ID.
inline constexpr uint16_t kFirstTlvPos = 4;
inline constexpr uint16_t kLenFieldEnd = 4; // wire offset = position + 4

} // namespace ldp::wire
