// SPDX-License-Identifier: BSD-2-Clause
// The benchmark platform: the plain C heap behind PLAT_SimpleAlloc_F and
// PLAT_Free_F, with a switch that records the sequence of allocations,
// releases, memcpy_s calls and list-service calls one operation makes, so a
// benchmark can replay exactly that sequence as the floor the codec is
// measured against.
#pragma once

#include <cstdint>
#include <vector>

namespace benchplat {

// One platform event. For an allocation, size is the block size and ref the
// block's index among the blocks of the sequence. For a release, ref is the
// index of the released block: in the sequence when ref >= 0, or among the
// blocks that existed before it (-1 - ref) when negative. For a memcpy_s,
// size is the count and ref the destination room. The list-service calls
// carry nothing.
enum class kind : uint8_t { alloc, release, copy, list_insert, list_delete, list_free_all };

struct event {
    kind what;
    uint32_t size;
    int32_t ref;
};

struct sequence {
    std::vector<event> events;
    std::vector<uint32_t> earlier_sizes; // blocks released but made before the sequence
    uint32_t allocs() const;
    uint32_t copies() const;
    uint32_t list_calls() const;
    // The allocations and releases alone, for a floor that makes only those.
    sequence memory_only() const;
};

// Track every live block's size from now on (single-threaded use only).
void track(bool on);
// Start a new sequence: events are recorded until take() returns them.
void start();
sequence take();

// Assertions reported since the program started.
uint64_t assertions();

} // namespace benchplat
