/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Services the LDP codec imports from its host: memory, assertions,
 * the ring list, bounds-checked copies, text and time.
 *
 * libldpcodec.so leaves every one of these undefined; the program links an
 * implementation (libldpplatform for standalone use, the router's own
 * services in production). The library never calls malloc or free itself. */
#ifndef LDP_PLATFORM_H
#define LDP_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** @brief Link of a ring list; opens every list element. */
typedef struct SLL_Node {
    struct SLL_Node *pNext; /**< next element; after the last one, the list head */
    uint32_t ulHandle;      /**< kept 0 */
} __attribute__((packed)) SLL_Node;

/** @brief Head of a ring list, embedded in the record that owns the list.
 *
 * In an empty list both stHead.pNext and pTail lead back to the list head
 * and ulCount is 0: LDP_Decode prepares every list of a new record so, and
 * the release functions leave them so. To walk, start at stHead.pNext and
 * stop on reaching the head again. */
typedef struct SLL_List {
    SLL_Node stHead;  /**< stHead.pNext is the first element */
    SLL_Node *pTail;  /**< the last element */
    uint32_t ulCount; /**< number of elements, kept by the list service */
} __attribute__((packed)) SLL_List;

/** @brief Releases one list element; LDP_MemFreeCallBack is one.
 * @param pNode the element
 * @return the release's result, not used by the list service */
typedef uint32_t (*SLL_FreeFunc)(void *pNode);

/** @brief A time stamp in the platform's own 12-byte format. */
typedef struct SYS_Systime {
    uint8_t aucTime[12]; /**< opaque to the codec; the message log keeps bytes 4 to 6 */
} __attribute__((packed)) SYS_Systime;

/** @brief Allocate uninitialised memory; the codec's only allocator.
 * @param ulMemModuleId the caller's memory module ID, passed through from the entry point
 * @param ulSize        bytes wanted
 * @param pcFile        source-file text of the caller ("ldp_dec", "ldp_enc", ...)
 * @param ulLine        source line of the caller
 * @return the block, or NULL when memory runs out */
void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine);
/** @brief Allocate uninitialised memory from a memory partition (the blackbox uses it).
 * @param ulMemModuleId the caller's memory module ID
 * @param ucPartition   the partition, an entry of g_aucPlatMemPt
 * @param ulSize        bytes wanted
 * @param pcFile        source-file text of the caller
 * @param ulLine        source line of the caller
 * @return the block, or NULL when memory runs out */
void *PLAT_Malloc_F(uint32_t ulMemModuleId, uint8_t ucPartition, uint32_t ulSize, const char *pcFile,
                    uint32_t ulLine);
/** @brief Release a block from either allocator.
 * @param p      the block
 * @param pcFile source-file text of the caller
 * @param ulLine source line of the caller
 * @return the platform's result, passed on by LDP_MemFreeCallBack */
uint32_t PLAT_Free_F(void *p, const char *pcFile, uint32_t ulLine);
/** @brief Report a failed internal condition. It returns, and the codec goes
 * on as each function documents (usually with LDP_ERR_PARAM).
 * @param pcFile source-file text of the caller
 * @param ulLine source line of the caller
 * @param pcText what failed (a failed copy gives its code as decimal text), or NULL */
void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText);
/** @brief The platform's memory partition numbers; the blackbox allocates from entry 2. */
extern uint8_t g_aucPlatMemPt[];

/** @brief Render a value as decimal text.
 * @param lValue the value
 * @param pcBuf  the text buffer (the codec passes 5 zeroed bytes) */
void SYS_Int32ToStr(int32_t lValue, char *pcBuf);
/** @brief Read the system time.
 * @param pstTime receives the time */
void SYS_SystimeGet(SYS_Systime *pstTime);
/** @brief Compare two byte strings as memcmp does.
 * @param p1    first bytes
 * @param p2    second bytes
 * @param ulLen bytes to compare
 * @return below, equal to or above 0 as p1 orders before, with or after p2 */
int32_t SYS_MemCmp(const void *p1, const void *p2, uint32_t ulLen);

/** @brief Link pNode between pPrev and pNext and count it.
 * @param pList the list
 * @param pPrev the node before (the tail, to append)
 * @param pNode the new element
 * @param pNext the node after (the list itself, to append) */
void SLL_Insert_In_Middle(SLL_List *pList, SLL_Node *pPrev, SLL_Node *pNode, SLL_Node *pNext);
/** @brief Unlink pNode from the list and uncount it; the element is not freed.
 * @param pList the list
 * @param pNode the element */
void SLL_Delete(SLL_List *pList, SLL_Node *pNode);
/** @brief Unlink every element and pass each to pfnFree.
 * @param pList   the list
 * @param pfnFree the release function, e.g. LDP_MemFreeCallBack */
void SLL_FreeAll(SLL_List *pList, SLL_FreeFunc pfnFree);

/** @brief Bounds-checked copy.
 * @param pDst     destination
 * @param ulDstMax bytes writable at pDst
 * @param pSrc     source
 * @param ulCount  bytes to copy
 * @return 0 when copied; nonzero, with nothing copied, when ulCount exceeds
 *         ulDstMax or a pointer is NULL. The codec reports a failure through
 *         PLAT_Assert and goes on. */
int memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount);
/** @brief Bounds-checked fill.
 * @param pDst     destination
 * @param ulDstMax bytes writable at pDst
 * @param c        the byte value
 * @param ulCount  bytes to fill
 * @return 0 when filled, nonzero when ulCount exceeds ulDstMax or pDst is NULL */
int memset_s(void *pDst, size_t ulDstMax, int c, size_t ulCount);
/** @brief Formatted text that is cut, always terminated, when it does not fit.
 * @param pcBuf     destination
 * @param ulBufSize bytes writable at pcBuf
 * @param pcFormat  printf format, followed by its arguments
 * @return the characters written, the terminator excluded (fewer than the
 *         full text when it was cut); negative for a NULL or empty buffer */
int snprintf_truncated_s(char *pcBuf, size_t ulBufSize, const char *pcFormat, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif /* LDP_PLATFORM_H */
