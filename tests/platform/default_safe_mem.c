/* SPDX-License-Identifier: BSD-2-Clause */
/* The default platform's bounds-checked copy, fill and formatting, reused by
 * the test platform; memcpy_s is renamed so the test platform can put failure
 * injection in front of it. */
#define memcpy_s ldp_default_memcpy_s
#include "../../platform/default/safe_mem.c"
