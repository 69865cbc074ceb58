// SPDX-License-Identifier: BSD-2-Clause
// Allocation, release, copies and assertions, all through the platform, with
// the library's habits: a failed memcpy_s is reported and work goes on, an
// encoder short of room reports and gives up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "ldp_codec.h"

namespace ldp::mem {

// The caller's line, captured by a default argument (Clang 14 with libstdc++
// has no std::source_location; __builtin_LINE works on both compilers).
struct where {
    uint32_t line;
    static constexpr where current(uint32_t l = __builtin_LINE()) { return where{l}; }
};

inline uint32_t line_of(const where &w) { return w.line; }

// Raw block from the platform allocator; the caller decides whether to zero it.
inline void *alloc(uint32_t module, uint32_t size, const char *file, const where w = where::current())
{
    return PLAT_SimpleAlloc_F(module, size, file, line_of(w));
}

// Zeroed block, or null when the platform is exhausted.
inline void *alloc_zeroed(uint32_t module, uint32_t size, const char *file,
                          const where w = where::current())
{
    void *p = PLAT_SimpleAlloc_F(module, size, file, line_of(w));
    if (p != nullptr) {
        (void)memset_s(p, size, 0, size);
    }
    return p;
}

// Zeroes N bytes, N a constant, with one plain store per 8 bytes (the
// compiler pairs them into wider stores where it can). A constant memset of a
// record's size tends to become a string instruction with a slow start.
template <size_t... Word, size_t... Byte>
inline void zero_fixed(uint8_t *p, std::index_sequence<Word...>, std::index_sequence<Byte...>)
{
    constexpr uint64_t zero8 = 0;
    constexpr uint8_t zero1 = 0;
    (std::memcpy(p + Word * 8, &zero8, 8), ...);
    (std::memcpy(p + sizeof...(Word) * 8 + Byte, &zero1, 1), ...);
}

template <size_t N>
inline void zero_fixed(void *p)
{
    zero_fixed(static_cast<uint8_t *>(p), std::make_index_sequence<N / 8>{}, std::make_index_sequence<N % 8>{});
}

// A zeroed record of type T, zeroed inline: no rule asks for memset_s here.
template <class T>
inline T *alloc_record(uint32_t module, const char *file, const where w = where::current())
{
    void *p = PLAT_SimpleAlloc_F(module, sizeof(T), file, line_of(w));
    if (p != nullptr) {
        zero_fixed<sizeof(T)>(p);
    }
    return static_cast<T *>(p);
}

inline uint32_t release(void *p, const char *file, const where w = where::current())
{
    return PLAT_Free_F(p, file, line_of(w));
}

inline void report(const char *file, const char *text, const where w = where::current())
{
    PLAT_Assert(file, line_of(w), text);
}

// The report of a failed memcpy_s: its code as decimal text. Out of line and
// marked cold, so the copies themselves stay small.
[[gnu::cold, gnu::noinline]] inline void report_copy_failure(int rc, const char *file, uint32_t line)
{
    // The platform writes into a 5-byte text by convention; the extra room
    // only guards against a platform that renders a longer number.
    char text[12] = {};
    SYS_Int32ToStr(static_cast<int32_t>(rc), text);
    PLAT_Assert(file, line, text);
}

// memcpy_s with the house rule: a failure is reported with its code as
// decimal text and the caller carries on as if the copy had been made.
inline void copy(void *dst, size_t room, const void *src, size_t count, const char *file,
                 const where w = where::current())
{
    const int rc = memcpy_s(dst, room, src, count);
    if (rc != 0) {
        report_copy_failure(rc, file, line_of(w));
    }
}

// An encoder found less room than the item it is about to write.
inline uint32_t no_room(const char *file, const where w = where::current())
{
    PLAT_Assert(file, line_of(w), "no room left in the output buffer");
    return LDP_ERR_PARAM;
}

} // namespace ldp::mem
