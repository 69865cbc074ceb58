/* SPDX-License-Identifier: BSD-2-Clause */
/* Default allocator and assertion sink for standalone use: the C heap and
 * stderr. A router build replaces this file with its own services. */
#include <stdio.h>
#include <stdlib.h>

#include "ldp_platform.h"

/* Memory partition per module class; the codec only reads it. */
uint8_t g_aucPlatMemPt[16];

void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine)
{
    (void)ulMemModuleId;
    (void)pcFile;
    (void)ulLine;
    return malloc(ulSize == 0 ? 1 : ulSize);
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
    if (p == NULL) {
        return 1;
    }
    free(p);
    return 0;
}

void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText)
{
    fprintf(stderr, "ldp assertion: %s:%u: %s\n", pcFile != NULL ? pcFile : "?", (unsigned)ulLine,
            pcText != NULL ? pcText : "");
}
