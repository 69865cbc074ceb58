// Allocation, release, copies and assertions, all through the platform, with
// the library's habits: a failed memcpy_s is reported and work goes on, an
// encoder short of room reports and gives up.
#pragma once

#include <cstdint>
#include <cstring>

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

// A zeroed record of type T. Its size is a constant, so the compiler zeroes
// it with a few plain stores instead of a call.
template <class T>
inline T *alloc_record(uint32_t module, const char *file, const where w = where::current())
{
    void *p = PLAT_SimpleAlloc_F(module, sizeof(T), file, line_of(w));
    if (p != nullptr) {
        std::memset(p, 0, sizeof(T));
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

// memcpy_s with the house rule: a failure is reported with its code as
// decimal text and the caller carries on as if the copy had been made.
inline void copy(void *dst, size_t room, const void *src, size_t count, const char *file,
                 const where w = where::current())
{
    const int rc = memcpy_s(dst, room, src, count);
    if (rc != 0) {
        // The platform writes into a 5-byte text by convention; the extra room
        // only guards against a platform that renders a longer number.
        char text[12] = {};
        SYS_Int32ToStr(static_cast<int32_t>(rc), text);
        PLAT_Assert(file, line_of(w), text);
    }
}

// An encoder found less room than the item it is about to write.
inline uint32_t no_room(const char *file, const where w = where::current())
{
    PLAT_Assert(file, line_of(w), "no room left in the output buffer");
    return LDP_ERR_PARAM;
}

} // namespace ldp::mem
