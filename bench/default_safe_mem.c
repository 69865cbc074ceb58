/* SPDX-License-Identifier: BSD-2-Clause */
/* The default platform's bounds-checked fill and formatting, reused by the
 * bench platform; its memcpy_s is renamed out of the way of the bench
 * platform's own, which counts the copies. */
#define memcpy_s ldp_default_memcpy_s
#include "../platform/default/safe_mem.c"
