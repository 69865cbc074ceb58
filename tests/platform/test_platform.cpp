// SPDX-License-Identifier: BSD-2-Clause
// Implementation of the test platform. Everything is single-threaded.
#include "test_platform.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

#include "ldp_platform.h"

namespace testplat {
namespace {

struct live {
    void *base; // what malloc returned (the block may start one byte later)
    block info;
};

// Bytes after every block that the library must never write: a write past
// the end shows up at the free even in builds without a sanitizer.
constexpr size_t kGuard = 8;
constexpr uint8_t kGuardByte = 0x5A;

struct state {
    std::map<void *, live> blocks;
    size_t overruns = 0;
    size_t alloc_calls = 0;
    size_t fail_alloc = 0;      // 0: none
    size_t bad_frees = 0;
    size_t memcpy_calls = 0;
    size_t fail_memcpy = 0;
    int fail_memcpy_code = 0;
    bool odd = false;
    uint8_t clock = 1;
    uint8_t partition = 0;
    std::vector<uint32_t> modules;
    std::vector<std::string> files;
    std::vector<assertion> asserts;
};

state &st()
{
    static state s;
    return s;
}

void *take(uint32_t module, uint32_t size, const char *file)
{
    state &s = st();
    ++s.alloc_calls;
    if (s.alloc_calls == s.fail_alloc) {
        return nullptr;
    }
    const size_t extra = s.odd ? 1 : 0;
    auto *base = static_cast<uint8_t *>(std::malloc(size_t(size) + extra + kGuard));
    if (base == nullptr) {
        return nullptr;
    }
    uint8_t *p = base + extra;
    std::memset(p, 0xA5, size); // uninitialised memory is never zero here
    std::memset(p + size, kGuardByte, kGuard);
    s.blocks[p] = live{base, block{file ? file : "", module, size}};
    s.modules.push_back(module);
    s.files.emplace_back(file ? file : "");
    return p;
}

} // namespace

void reset()
{
    state &s = st();
    s.alloc_calls = 0;
    s.fail_alloc = 0;
    s.bad_frees = 0;
    s.memcpy_calls = 0;
    s.fail_memcpy = 0;
    s.fail_memcpy_code = 0;
    s.odd = false;
    s.clock = 1;
    s.modules.clear();
    s.files.clear();
    s.asserts.clear();
}

size_t live_blocks() { return st().blocks.size(); }

std::vector<block> live_block_list()
{
    std::vector<block> out;
    for (const auto &kv : st().blocks) {
        out.push_back(kv.second.info);
    }
    return out;
}

size_t alloc_calls() { return st().alloc_calls; }
size_t bad_frees() { return st().bad_frees; }
size_t take_overruns() { return std::exchange(st().overruns, 0); }
std::vector<uint32_t> modules_seen() { return st().modules; }
std::vector<std::string> alloc_files() { return st().files; }
void fail_alloc_at(size_t n) { st().fail_alloc = st().alloc_calls + n; }

void fail_memcpy_at(size_t n, int code)
{
    st().fail_memcpy = st().memcpy_calls + n;
    st().fail_memcpy_code = code;
}

size_t memcpy_calls() { return st().memcpy_calls; }
void odd_addresses(bool on) { st().odd = on; }
void set_clock(uint8_t first) { st().clock = first; }
uint8_t last_partition() { return st().partition; }
const std::vector<assertion> &assertions() { return st().asserts; }

} // namespace testplat

using testplat::st;

extern "C" {

// The default platform's copy, compiled under another name (tests/CMakeLists.txt).
int ldp_default_memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount);

uint8_t g_aucPlatMemPt[16] = {0, 1, 2, 3};

void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine)
{
    (void)ulLine;
    return testplat::take(ulMemModuleId, ulSize, pcFile);
}

void *PLAT_Malloc_F(uint32_t ulMemModuleId, uint8_t ucPartition, uint32_t ulSize, const char *pcFile,
                    uint32_t ulLine)
{
    (void)ulLine;
    st().partition = ucPartition;
    return testplat::take(ulMemModuleId, ulSize, pcFile);
}

uint32_t PLAT_Free_F(void *p, const char *pcFile, uint32_t ulLine)
{
    (void)pcFile;
    (void)ulLine;
    auto it = st().blocks.find(p);
    if (it == st().blocks.end()) {
        ++st().bad_frees;
        return 1;
    }
    const auto *guard = static_cast<const uint8_t *>(p) + it->second.info.size;
    for (size_t i = 0; i < testplat::kGuard; ++i) {
        st().overruns += guard[i] != testplat::kGuardByte;
    }
    std::free(it->second.base);
    st().blocks.erase(it);
    return 0;
}

void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText)
{
    st().asserts.push_back({pcFile ? pcFile : "", ulLine, pcText ? pcText : ""});
}

void SYS_Int32ToStr(int32_t lValue, char *pcBuf)
{
    std::sprintf(pcBuf, "%d", static_cast<int>(lValue));
}

void SYS_SystimeGet(SYS_Systime *pstTime)
{
    // A fixed, recognisable time keeps records comparable in tests.
    for (uint8_t i = 0; i < sizeof pstTime->aucTime; ++i) {
        pstTime->aucTime[i] = uint8_t(st().clock + i);
    }
}

int32_t SYS_MemCmp(const void *p1, const void *p2, uint32_t ulLen)
{
    // The difference of the first unequal bytes, as many C libraries give it:
    // callers must rely on the sign only.
    const auto *a = static_cast<const uint8_t *>(p1);
    const auto *b = static_cast<const uint8_t *>(p2);
    for (uint32_t i = 0; i < ulLen; ++i) {
        if (a[i] != b[i]) {
            return int32_t(a[i]) - int32_t(b[i]);
        }
    }
    return 0;
}

int memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount)
{
    ++st().memcpy_calls;
    if (st().memcpy_calls == st().fail_memcpy) {
        return st().fail_memcpy_code;
    }
    return ldp_default_memcpy_s(pDst, ulDstMax, pSrc, ulCount);
}

} // extern "C"
