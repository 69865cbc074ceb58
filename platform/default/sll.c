/* SPDX-License-Identifier: BSD-2-Clause */
/* The ring list service behind SLL_List. The head node is the first member of
 * the list, so the last element's pNext points at the list itself. */
#include <stddef.h>

#include "ldp_platform.h"

static SLL_Node *sll_head(SLL_List *pList)
{
    return &pList->stHead;
}

void SLL_Insert_In_Middle(SLL_List *pList, SLL_Node *pPrev, SLL_Node *pNode, SLL_Node *pNext)
{
    if (pList == NULL || pPrev == NULL || pNode == NULL || pNext == NULL) {
        return;
    }
    pPrev->pNext = pNode;
    pNode->pNext = pNext;
    if (pNext == sll_head(pList)) {
        pList->pTail = pNode;
    }
    pList->ulCount++;
}

void SLL_Delete(SLL_List *pList, SLL_Node *pNode)
{
    SLL_Node *pPrev;

    if (pList == NULL || pNode == NULL) {
        return;
    }
    pPrev = sll_head(pList);
    while (pPrev->pNext != pNode) {
        pPrev = pPrev->pNext;
        if (pPrev == NULL || pPrev == sll_head(pList)) {
            return; /* not on this list */
        }
    }
    pPrev->pNext = pNode->pNext;
    if (pList->pTail == pNode) {
        pList->pTail = pPrev;
    }
    pNode->pNext = NULL;
    if (pList->ulCount > 0) {
        pList->ulCount--;
    }
}

void SLL_FreeAll(SLL_List *pList, SLL_FreeFunc pfnFree)
{
    SLL_Node *pNode;

    if (pList == NULL) {
        return;
    }
    pNode = pList->stHead.pNext;
    while (pNode != NULL && pNode != sll_head(pList)) {
        SLL_Node *pNext = pNode->pNext;
        pNode->pNext = NULL;
        if (pfnFree != NULL) {
            (void)pfnFree(pNode);
        }
        pNode = pNext;
    }
    pList->stHead.pNext = sll_head(pList);
    pList->pTail = sll_head(pList);
    pList->ulCount = 0;
}
