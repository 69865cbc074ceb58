/* SPDX-License-Identifier: BSD-2-Clause */
/* Bounds-checked copy, fill and formatting. Error codes follow errno values:
 * EINVAL for a missing pointer, ERANGE when the count exceeds the room. */
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include "ldp_platform.h"

int memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount)
{
    if (ulCount == 0) {
        return 0;
    }
    if (pDst == NULL || pSrc == NULL) {
        return EINVAL;
    }
    if (ulCount > ulDstMax) {
        return ERANGE;
    }
    memmove(pDst, pSrc, ulCount);
    return 0;
}

int memset_s(void *pDst, size_t ulDstMax, int c, size_t ulCount)
{
    if (ulCount == 0) {
        return 0;
    }
    if (pDst == NULL) {
        return EINVAL;
    }
    if (ulCount > ulDstMax) {
        return ERANGE;
    }
    memset(pDst, c, ulCount);
    return 0;
}

int snprintf_truncated_s(char *pcBuf, size_t ulBufSize, const char *pcFormat, ...)
{
    va_list args;
    int n;

    if (pcBuf == NULL || ulBufSize == 0 || pcFormat == NULL) {
        return -1;
    }
    va_start(args, pcFormat);
    n = vsnprintf(pcBuf, ulBufSize, pcFormat, args);
    va_end(args);
    if (n < 0) {
        pcBuf[0] = '\0';
        return -1;
    }
    /* Report what was actually written, the terminator excluded. */
    return (size_t)n >= ulBufSize ? (int)(ulBufSize - 1) : n;
}
