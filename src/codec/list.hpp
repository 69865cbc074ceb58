// SPDX-License-Identifier: BSD-2-Clause
// Helpers over the platform ring list embedded in records. The head node sits
// at the start of the SLL_List, so "the list itself" and "its head node" are
// the same address.
#pragma once

#include <cstdint>

#include "ldp_codec.h"

namespace ldp::list {

inline SLL_Node *head_node(SLL_List *list) { return reinterpret_cast<SLL_Node *>(list); }

// The state of a fresh or emptied list: first and last lead back to the head.
inline void reset_empty(SLL_List *list)
{
    list->stHead.pNext = head_node(list);
    list->stHead.ulHandle = 0;
    list->pTail = head_node(list);
    list->ulCount = 0;
}

// Link node after the current tail.
inline void append(SLL_List *list, SLL_Node *node)
{
    SLL_Insert_In_Middle(list, list->pTail, node, head_node(list));
}

inline SLL_Node *first(SLL_List *list) { return list->stHead.pNext; }

inline bool is_end(SLL_List *list, const SLL_Node *node)
{
    return node == nullptr || node == head_node(list);
}

// Calls fn(element) for each element, reading the next pointer before the
// call so fn may unlink or release the element.
template <class T, class Fn>
inline void for_each_safe(SLL_List *list, Fn fn)
{
    SLL_Node *node = first(list);
    while (!is_end(list, node)) {
        SLL_Node *next = node->pNext;
        fn(reinterpret_cast<T *>(node));
        node = next;
    }
}

} // namespace ldp::list
