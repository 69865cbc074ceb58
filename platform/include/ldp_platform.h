/* Services the LDP codec imports from its host: memory, assertions, the ring
 * list, bounds-checked copies, text and time. libldpcodec.so leaves every one
 * of these undefined; the program links an implementation (libldpplatform for
 * standalone use, the router's own services in production). */
#ifndef LDP_PLATFORM_H
#define LDP_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Ring list: every element opens with an SLL_Node; the list head is embedded
 * in its owner. After the last element pNext leads back to the head. */
typedef struct SLL_Node {
    struct SLL_Node *pNext;
    uint32_t ulHandle;
} __attribute__((packed)) SLL_Node;

typedef struct SLL_List {
    SLL_Node stHead;
    SLL_Node *pTail;
    uint32_t ulCount;
} __attribute__((packed)) SLL_List;

typedef uint32_t (*SLL_FreeFunc)(void *pNode);

typedef struct SYS_Systime {
    uint8_t aucTime[12];
} __attribute__((packed)) SYS_Systime;

void *PLAT_SimpleAlloc_F(uint32_t ulMemModuleId, uint32_t ulSize, const char *pcFile, uint32_t ulLine);
void *PLAT_Malloc_F(uint32_t ulMemModuleId, uint8_t ucPartition, uint32_t ulSize, const char *pcFile,
                    uint32_t ulLine);
uint32_t PLAT_Free_F(void *p, const char *pcFile, uint32_t ulLine);
void PLAT_Assert(const char *pcFile, uint32_t ulLine, const char *pcText);
extern uint8_t g_aucPlatMemPt[];

void SYS_Int32ToStr(int32_t lValue, char *pcBuf);
void SYS_SystimeGet(SYS_Systime *pstTime);
int32_t SYS_MemCmp(const void *p1, const void *p2, uint32_t ulLen);

void SLL_Insert_In_Middle(SLL_List *pList, SLL_Node *pPrev, SLL_Node *pNode, SLL_Node *pNext);
void SLL_Delete(SLL_List *pList, SLL_Node *pNode);
void SLL_FreeAll(SLL_List *pList, SLL_FreeFunc pfnFree);

int memcpy_s(void *pDst, size_t ulDstMax, const void *pSrc, size_t ulCount);
int memset_s(void *pDst, size_t ulDstMax, int c, size_t ulCount);
int snprintf_truncated_s(char *pcBuf, size_t ulBufSize, const char *pcFormat, ...)
    __attribute__((format(printf, 3, 4)));

#ifdef __cplusplus
}
#endif

#endif /* LDP_PLATFORM_H */
