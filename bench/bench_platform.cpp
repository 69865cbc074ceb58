// SPDX-License-Identifier: BSD-2-Clause
// Implementation of the benchmark platform's allocator, copy, list service
// and assertion sink. The copy and the list service record their calls and
// otherwise behave as the default platform's. The default platform's other
// services are compiled in beside this file.
#include "bench_platform.hpp"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "ldp_platform.h"

// The default list service, compiled here as static functions under other
// names so that the recording wrappers below inline it ("void static f" is a
// valid declaration; the headers sll.c includes are already included).
namespace default_sll {
#define SLL_Insert_In_Middle static insert_in_middle
#define SLL_Delete static remove
#define SLL_FreeAll static free_all
#include "../platform/default/sll.c"
#undef SLL_Insert_In_Middle
#undef SLL_Delete
#undef SLL_FreeAll
} // namespace default_sll

namespace benchplat {
namespace {

struct recorder {
    bool recording = false;
    std::map<void *, uint32_t> live;    // size of each tracked block
    std::map<void *, int32_t> in_seq;   // index of each block made in the sequence
    std::map<void *, int32_t> earlier;  // index of each earlier block released in it
    sequence seq;
};

recorder &rec()
{
    static recorder r;
    return r;
}

// Read without a lock: the switches change only while one thread runs.
std::atomic<bool> g_watch{false};
std::atomic<uint64_t> g_asserts{0};

void on_alloc(void *p, uint32_t size)
{
    recorder &r = rec();
    r.live[p] = size;
    if (r.recording) {
        const auto idx = int32_t(r.in_seq.size());
        r.in_seq[p] = idx;
        r.seq.events.push_back({kind::alloc, size, idx});
    }
}

void on_free(void *p)
{
    recorder &r = rec();
    if (r.recording) {
        if (auto it = r.in_seq.find(p); it != r.in_seq.end()) {
            r.seq.events.push_back({kind::release, 0, it->second});
            r.in_seq.erase(it);
        } else {
            auto [e, fresh] = r.earlier.try_emplace(p, int32_t(r.seq.earlier_sizes.size()));
            if (fresh) {
                const auto l = r.live.find(p);
                r.seq.earlier_sizes.push_back(l != r.live.end() ? l->second : 1);
            }
            r.seq.events.push_back({kind::release, 0, -1 - e->second});
        }
    }
    r.live.erase(p);
}

void on_copy(size_t room, size_t count)
{
    recorder &r = rec();
    if (r.recording) {
        r.seq.events.push_back({kind::copy, uint32_t(count), int32_t(room)});
    }
}

void on_list(kind k)
{
    recorder &r = rec();
    if (r.recording) {
        r.seq.events.push_back({k, 0, 0});
    }
}

uint32_t count_of(const std::vector<event> &events, kind k)
{
    uint32_t n = 0;
    for (const event &e : events) {
        n += e.what == k ? 1 : 0;
    }
    return n;
}

} // namespace

uint32_t sequence::allocs() const { return count_of(events, kind::alloc); }
uint32_t sequence::copies() const { return count_of(events, kind::copy); }
sequence sequence::memory_only() const
{
    sequence out;
    out.earlier_sizes = earlier_sizes;
    for (const event &e : events) {
        if (e.what == kind::alloc || e.what == kind::release) {
            out.events.push_back(e);
        }
    }
    return out;
}

uint32_t sequence::list_calls() const
{
    return count_of(events, kind::list_insert) + count_of(events, kind::list_delete) +
           count_of(events, kind::list_free_all);
}

void track(bool on)
{
    if (!on) {
        rec().live.clear();
    }
    g_watch = on;
}

void start()
{
    recorder &r = rec();
    r.seq = {};
    r.in_seq.clear();
    r.earlier.clear();
    r.recording = true;
}

sequence take()
{
    recorder &r = rec();
    r.recording = false;
    return std::move(r.seq);
}

uint64_t assertions() { return g_asserts.load(); }

} // namespace benchplat

extern "C" {

uint8_t g_aucPlatMemPt[16];

void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine)
{
    (void)ulMemModuleId;
    (void)pcFile;
    (void)ulLine;
    void *p = std::malloc(ulSize == 0 ? 1 : ulSize);
    if (benchplat::g_watch.load(std::memory_order_relaxed) && p != nullptr) {
        benchplat::on_alloc(p, ulSize);
    }
    return p;
}

void *PLAT_Malloc_F(uint32_t ulMemModuleId, uint8_t ucPartition, uint32_t ulSize, const char *pcFile,
                    uint32_t ulLine)
{
    (void)ucPartition;
    return PLAT_SimpleAlloc_F(ulMemModuleId, ulSize, pcFile, ulLine);
}

uint32_t PLAT_Free_F(void *p, const char *pcFile, uint32_t ulLine)
{
    (void)pcFile;
    (void)ulLine;
    if (p == nullptr) {
        return 1;
    }
    if (benchplat::g_watch.load(std::memory_order_relaxed)) {
        benchplat::on_free(p);
    }
    std::free(p);
    return 0;
}

// The default platform's checks, here rather than forwarded so that counting
// adds no call; a copy is counted out of line, only while recording.
static int checked_copy(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount)
{
    if (ulCount == 0) {
        return 0;
    }
    if (pDst == nullptr || pSrc == nullptr) {
        return EINVAL;
    }
    if (ulCount > ulDstMax) {
        return ERANGE;
    }
    std::memmove(pDst, pSrc, ulCount);
    return 0;
}

[[gnu::noinline]] static int counted_copy(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount)
{
    benchplat::on_copy(ulDstMax, ulCount);
    return checked_copy(pDst, ulDstMax, pSrc, ulCount);
}

int memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount)
{
    if (benchplat::g_watch.load(std::memory_order_relaxed)) {
        return counted_copy(pDst, ulDstMax, pSrc, ulCount);
    }
    return checked_copy(pDst, ulDstMax, pSrc, ulCount);
}


// Out of line and cold, so that the list calls stay as cheap as the default
// platform's while nothing is recorded.
[[gnu::cold, gnu::noinline]] static void note_list(benchplat::kind k) { benchplat::on_list(k); }

void SLL_Insert_In_Middle(SLL_List *pList, SLL_Node *pPrev, SLL_Node *pNode, SLL_Node *pNext)
{
    if (benchplat::g_watch.load(std::memory_order_relaxed)) {
        note_list(benchplat::kind::list_insert);
    }
    default_sll::insert_in_middle(pList, pPrev, pNode, pNext);
}

void SLL_Delete(SLL_List *pList, SLL_Node *pNode)
{
    if (benchplat::g_watch.load(std::memory_order_relaxed)) {
        note_list(benchplat::kind::list_delete);
    }
    default_sll::remove(pList, pNode);
}

void SLL_FreeAll(SLL_List *pList, SLL_FreeFunc pfnFree)
{
    if (benchplat::g_watch.load(std::memory_order_relaxed)) {
        note_list(benchplat::kind::list_free_all);
    }
    default_sll::free_all(pList, pfnFree);
}

void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText)
{
    (void)pcFile;
    (void)ulLine;
    (void)pcText;
    benchplat::g_asserts.fetch_add(1, std::memory_order_relaxed);
}

} // extern "C"
