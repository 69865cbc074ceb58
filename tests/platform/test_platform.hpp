// SPDX-License-Identifier: BSD-2-Clause
// A platform for the library's own tests: it counts live blocks, fails the
// n-th allocation or memcpy_s on request, records every assertion, and can
// hand out blocks at odd addresses to shake out unaligned access.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace testplat {

struct assertion {
    std::string file;
    uint32_t line;
    std::string text;
};

struct block {
    std::string file;
    uint32_t module;
    uint32_t size;
};

// Forget counters, failures to inject and recorded assertions. Live blocks
// are kept: a test that leaks still shows up in live_blocks().
void reset();

size_t live_blocks();
std::vector<block> live_block_list();
size_t alloc_calls();      // allocation attempts since reset(), failed ones included
size_t bad_frees();        // frees of pointers the platform never handed out
size_t take_overruns();    // guard bytes past a block's end found changed at a free (reset() keeps them)
std::vector<uint32_t> modules_seen();
std::vector<std::string> alloc_files(); // file text of every successful allocation

void fail_alloc_at(size_t n);           // the n-th attempt from now (1-based) returns null
void fail_memcpy_at(size_t n, int code); // the n-th memcpy_s from now returns code, copies nothing
size_t memcpy_calls();
void odd_addresses(bool on);            // blocks start at odd addresses while on
void set_clock(uint8_t first);          // SYS_SystimeGet gives bytes first, first + 1, ... (reset: 1)
uint8_t last_partition();               // partition of the last PLAT_Malloc_F call

const std::vector<assertion> &assertions();

} // namespace testplat
