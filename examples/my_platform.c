/* SPDX-License-Identifier: BSD-2-Clause */
/* A platform of your own: every service libldpcodec imports, written over the
 * C library. Link it in place of libldpplatform; a router build maps these
 * onto its own memory, logging and list services instead.
 *
 * On top of the bare services this one counts live memory blocks and, when
 * the program ends with blocks still allocated, says so on stderr and exits
 * with status 3, so a leak in the program using it cannot go unnoticed. */
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "ldp_platform.h"

static long live_blocks;
static int leak_check_armed;

static void leak_check(void)
{
    if (live_blocks != 0) {
        fprintf(stderr, "my_platform: %ld block(s) never released\n", live_blocks);
        _Exit(3);
    }
}

/* --- memory --------------------------------------------------------------- */

/* Returns a block of ulSize bytes (contents undefined) or NULL when memory
 * runs out; the library then gives up the operation with LDP_ERR_NO_MEMORY
 * and releases whatever it had built. The module ID is the caller's own
 * accounting tag, passed through untouched; pcFile and ulLine name the
 * allocating place inside the library, for leak reports. Every block must be
 * releasable by PLAT_Free_F. */
void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine)
{
    void *p = malloc(ulSize != 0 ? ulSize : 1); /* a distinct block even for size 0 */

    (void)ulMemModuleId;
    (void)pcFile;
    (void)ulLine;
    if (!leak_check_armed) {
        leak_check_armed = 1;
        atexit(leak_check);
    }
    if (p != NULL) {
        live_blocks++;
    }
    return p;
}

/* As PLAT_SimpleAlloc_F, from a memory partition. The library uses it for
 * the blackbox ring only, naming the partition g_aucPlatMemPt[2]. */
void *PLAT_Malloc_F(uint32_t ulMemModuleId, uint8_t ucPartition, uint32_t ulSize, const char *pcFile,
                    uint32_t ulLine)
{
    (void)ucPartition;
    return PLAT_SimpleAlloc_F(ulMemModuleId, ulSize, pcFile, ulLine);
}

/* Releases a block from either allocator. Returns 0 when a block was
 * released and non-zero for NULL; LDP_MemFreeCallBack hands this value on. */
uint32_t PLAT_Free_F(void *p, const char *pcFile, uint32_t ulLine)
{
    (void)pcFile;
    (void)ulLine;
    if (p == NULL) {
        return 1;
    }
    free(p);
    live_blocks--;
    return 0;
}

/* Partition numbers by module class; the library only reads entry 2. */
uint8_t g_aucPlatMemPt[16];

/* --- diagnostics ---------------------------------------------------------- */

/* The library reports something that should not happen (a copy that did not
 * fit, an encoder short of room) and then carries on with its own result
 * code, so this must return: log it, never abort. pcText is a short message
 * or an error number as decimal text. */
void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText)
{
    fprintf(stderr, "ldpcodec: %s:%lu: %s\n", pcFile != NULL ? pcFile : "?", (unsigned long)ulLine,
            pcText != NULL ? pcText : "");
}

/* --- text, time and comparison -------------------------------------------- */

/* Writes lValue as decimal text with its terminator. The library passes a
 * 12-byte buffer, enough for any 32-bit value. */
void SYS_Int32ToStr(int32_t lValue, char *pcBuf)
{
    if (pcBuf != NULL) {
        sprintf(pcBuf, "%ld", (long)lValue);
    }
}

/* Fills the 12 opaque time bytes that blackbox records carry. The message
 * log keeps bytes 4 to 6 as the time of day, so this layout puts hour,
 * minute and second there: year (2 bytes, big-endian), month, day, hour,
 * minute, second, then zeros. */
void SYS_SystimeGet(SYS_Systime *pstTime)
{
    time_t now = time(NULL);
    struct tm *t = gmtime(&now);

    if (pstTime == NULL) {
        return;
    }
    memset(pstTime, 0, sizeof *pstTime);
    if (t == NULL) {
        return;
    }
    pstTime->aucTime[0] = (uint8_t)((t->tm_year + 1900) >> 8);
    pstTime->aucTime[1] = (uint8_t)(t->tm_year + 1900);
    pstTime->aucTime[2] = (uint8_t)(t->tm_mon + 1);
    pstTime->aucTime[3] = (uint8_t)t->tm_mday;
    pstTime->aucTime[4] = (uint8_t)t->tm_hour;
    pstTime->aucTime[5] = (uint8_t)t->tm_min;
    pstTime->aucTime[6] = (uint8_t)t->tm_sec;
}

/* Compares ulLen bytes as unsigned values: negative, 0 or positive, which
 * the key orderings (LDP_Cmp...) pass on. Length 0 compares equal. */
int32_t SYS_MemCmp(const void *p1, const void *p2, uint32_t ulLen)
{
    int r = ulLen != 0 ? memcmp(p1, p2, ulLen) : 0;

    return r < 0 ? -1 : r > 0;
}

/* --- the ring list behind every SLL_List in a record ----------------------
 * The head node is the list's first member; the last element's pNext leads
 * back to it, and an empty list's head and tail both point at the head. */

/* Links pNode between pPrev and pNext (the library passes the tail and the
 * head to append), counts it, and makes it the tail when pNext is the head. */
void SLL_Insert_In_Middle(SLL_List *pList, SLL_Node *pPrev, SLL_Node *pNode, SLL_Node *pNext)
{
    if (pList == NULL || pPrev == NULL || pNode == NULL || pNext == NULL) {
        return;
    }
    pPrev->pNext = pNode;
    pNode->pNext = pNext;
    if (pNext == &pList->stHead) {
        pList->pTail = pNode;
    }
    pList->ulCount++;
}

/* Unlinks pNode (not releasing it), keeping the tail and the count right.
 * A node that is not on the list is left alone. */
void SLL_Delete(SLL_List *pList, SLL_Node *pNode)
{
    SLL_Node *prev;

    if (pList == NULL || pNode == NULL) {
        return;
    }
    for (prev = &pList->stHead; prev->pNext != pNode; prev = prev->pNext) {
        if (prev->pNext == NULL || prev->pNext == &pList->stHead) {
            return;
        }
    }
    prev->pNext = pNode->pNext;
    if (pList->pTail == pNode) {
        pList->pTail = prev;
    }
    pList->ulCount--;
}

/* Hands every element to pfnFree (the library passes LDP_MemFreeCallBack)
 * and leaves the list empty. The next pointer is read before the call. */
void SLL_FreeAll(SLL_List *pList, SLL_FreeFunc pfnFree)
{
    SLL_Node *node;

    if (pList == NULL) {
        return;
    }
    node = pList->stHead.pNext;
    while (node != NULL && node != &pList->stHead) {
        SLL_Node *next = node->pNext;
        if (pfnFree != NULL) {
            pfnFree(node);
        }
        node = next;
    }
    pList->stHead.pNext = &pList->stHead;
    pList->pTail = &pList->stHead;
    pList->ulCount = 0;
}

/* --- bounds-checked memory and text ---------------------------------------
 * 0 means done; any other value means nothing was written. The library
 * reports a failed copy through PLAT_Assert with this value as text. */

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

/* printf into a buffer of ulBufSize bytes, cut short to fit and always
 * terminated. Returns the characters stored, or -1 on a bad argument. The
 * library builds its hex dumps and diagnostic texts with it. */
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
    return (size_t)n < ulBufSize ? n : (int)(ulBufSize - 1);
}
