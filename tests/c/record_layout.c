/* SPDX-License-Identifier: BSD-2-Clause */
/* The size of every public record and the offset and size of each member,
 * as this target's compiler lays them out, against the one table in
 * record_layout.h (64-bit and 32-bit pointer columns). A router and this
 * library built apart must agree on every byte, on every target. */
#include <stddef.h>
#include <stdio.h>

#include "ldp_codec.h"

static int failures;
static int rows;

static void check(const char *rec, const char *member, size_t off, size_t size, size_t off64, size_t size64,
                  size_t off32, size_t size32)
{
    const int wide = sizeof(void *) == 8;
    const size_t want_off = wide ? off64 : off32;
    const size_t want_size = wide ? size64 : size32;
    ++rows;
    if (off != want_off || size != want_size) {
        printf("%s%s%s: offset %zu size %zu, table says offset %zu size %zu\n", rec, *member ? "." : "", member,
               off, size, want_off, want_size);
        ++failures;
    }
}

#define REC(R, s64, s32) check(#R, "", 0, sizeof(R), 0, s64, 0, s32);
#define MEMBER(R, M, o64, s64, o32, s32) check(#R, #M, offsetof(R, M), sizeof(((R *)0)->M), o64, s64, o32, s32);

int main(void)
{
    if (sizeof(void *) != 8 && sizeof(void *) != 4) {
        printf("no table column for %zu-byte pointers\n", sizeof(void *));
        return 1;
    }
#include "record_layout.h"
    printf("%d of %d layout rows differ (%zu-byte pointers)\n", failures, rows, sizeof(void *));
    return failures != 0;
}
