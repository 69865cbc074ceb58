/* SPDX-License-Identifier: BSD-2-Clause */
/* Text, time and comparison services. */
#include <stdio.h>
#include <string.h>
#include <time.h>

#include "ldp_platform.h"

void SYS_Int32ToStr(int32_t lValue, char *pcBuf)
{
    if (pcBuf != NULL) {
        (void)sprintf(pcBuf, "%ld", (long)lValue);
    }
}

/* Layout of the 12 bytes: year (2, big-endian), month, day, hour, minute,
 * second, then milliseconds (2, big-endian) and three zero bytes. */
void SYS_SystimeGet(SYS_Systime *pstTime)
{
    struct timespec ts;
    struct tm tmv;
    unsigned ms;

    if (pstTime == NULL) {
        return;
    }
    memset(pstTime, 0, sizeof *pstTime);
    if (clock_gettime(CLOCK_REALTIME, &ts) != 0 || gmtime_r(&ts.tv_sec, &tmv) == NULL) {
        return;
    }
    ms = (unsigned)(ts.tv_nsec / 1000000);
    pstTime->aucTime[0] = (uint8_t)((tmv.tm_year + 1900) >> 8);
    pstTime->aucTime[1] = (uint8_t)(tmv.tm_year + 1900);
    pstTime->aucTime[2] = (uint8_t)(tmv.tm_mon + 1);
    pstTime->aucTime[3] = (uint8_t)tmv.tm_mday;
    pstTime->aucTime[4] = (uint8_t)tmv.tm_hour;
    pstTime->aucTime[5] = (uint8_t)tmv.tm_min;
    pstTime->aucTime[6] = (uint8_t)tmv.tm_sec;
    pstTime->aucTime[7] = (uint8_t)(ms >> 8);
    pstTime->aucTime[8] = (uint8_t)ms;
}

int32_t SYS_MemCmp(const void *p1, const void *p2, uint32_t ulLen)
{
    int r;

    if (ulLen == 0) {
        return 0;
    }
    r = memcmp(p1, p2, ulLen);
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}
