// SPDX-License-Identifier: BSD-2-Clause
// The benchmark platform: the plain C heap behind PLAT_SimpleAlloc_F and
// PLAT_Free_F, with a switch that records the sequence of allocations,
// releases, memcpy_s calls and list-service calls one operation makes, so a
// benchmark can replay exactly that sequence as the floor the codec is
// measured against.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ldp_platform.h"

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

// The platform calls of a recorded sequence, made again: its allocations and
// releases, and with Calls set its memcpy_s and list-service calls too (the
// list calls on a scratch list, first in first out, as the codec's lists are
// emptied from the front). earlier holds the blocks it releases without
// having made them.
template <bool Calls>
inline void replay(const sequence &seq, void **blocks, void *const *earlier)
{
    alignas(16) static thread_local uint8_t src[65536 + 4];
    alignas(16) static thread_local uint8_t dst[65536 + 4];
    static thread_local SLL_Node nodes[64];
    static thread_local SLL_List list = {{reinterpret_cast<SLL_Node *>(&list), 0},
                                         reinterpret_cast<SLL_Node *>(&list), 0};
    static thread_local SLL_List empty = {{reinterpret_cast<SLL_Node *>(&empty), 0},
                                          reinterpret_cast<SLL_Node *>(&empty), 0};
    size_t in = 0;
    size_t out = 0;
    for (const event &e : seq.events) {
        switch (e.what) {
        case kind::alloc:
            blocks[e.ref] = PLAT_SimpleAlloc_F(0, e.size, "bench", __LINE__);
            break;
        case kind::release:
            PLAT_Free_F(e.ref >= 0 ? blocks[e.ref] : earlier[-1 - e.ref], "bench", __LINE__);
            break;
        case kind::copy:
            if (Calls) {
                (void)memcpy_s(dst, size_t(e.ref), src, e.size);
            }
            break;
        case kind::list_insert:
            if (Calls) {
                SLL_Insert_In_Middle(&list, list.pTail, &nodes[in++ % 64], &list.stHead);
            }
            break;
        case kind::list_delete:
            if (Calls) {
                SLL_Delete(&list, &nodes[out++ % 64]);
            }
            break;
        case kind::list_free_all:
            if (Calls) {
                SLL_FreeAll(&empty, nullptr);
            }
            break;
        }
    }
}

} // namespace benchplat
