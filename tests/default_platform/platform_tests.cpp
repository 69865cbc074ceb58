// SPDX-License-Identifier: BSD-2-Clause
// The default platform shipped as libldpplatform: the ring list service,
// bounds-checked copies and the small system services.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "ldp_platform.h"

namespace {

struct elem {
    SLL_Node node;
    int id;
};
using ids = std::vector<int>;

// The ids met from the head round to the head again; count and tail must agree.
ids walk(SLL_List &l)
{
    ids out;
    SLL_Node *last = &l.stHead;
    for (SLL_Node *n = l.stHead.pNext; n != &l.stHead; last = n, n = n->pNext) {
        out.push_back(reinterpret_cast<elem *>(n)->id);
    }
    EXPECT_EQ(l.ulCount, out.size());
    EXPECT_EQ(l.pTail, last);
    return out;
}

ids g_freed;

TEST(DefaultPlatformList, AppendDeleteAndFreeAllKeepRingTailAndCount)
{
    SLL_List l{{&l.stHead, 0}, &l.stHead, 0};
    elem e[4] = {{{}, 1}, {{}, 2}, {{}, 3}, {{}, 4}};
    const auto append_all = [&] {
        for (elem &x : e) {
            SLL_Insert_In_Middle(&l, l.pTail, &x.node, &l.stHead);
        }
    };
    append_all();
    EXPECT_EQ(walk(l), (ids{1, 2, 3, 4}));
    SLL_Delete(&l, &e[3].node); // tail
    SLL_Delete(&l, &e[0].node); // first
    SLL_Delete(&l, &e[0].node); // no longer on the list: nothing happens
    EXPECT_EQ(walk(l), (ids{2, 3}));
    SLL_Delete(&l, &e[1].node);
    SLL_Delete(&l, &e[2].node);
    EXPECT_EQ(walk(l), ids{});

    append_all();
    const SLL_FreeFunc note = [](void *p) -> uint32_t { g_freed.push_back(static_cast<elem *>(p)->id); return 0; };
    SLL_FreeAll(&l, note); // each release called, the list left empty
    EXPECT_EQ(g_freed, (ids{1, 2, 3, 4}));
    EXPECT_EQ(walk(l), ids{});
    SLL_FreeAll(&l, note); // an empty list: no calls
    EXPECT_EQ(g_freed.size(), 4u);
}

TEST(DefaultPlatformMem, BoundsCheckedCopyFillAndTheAllocator)
{
    uint8_t dst[4] = {};
    const uint8_t src[5] = {1, 2, 3, 4, 5};
    EXPECT_EQ(memcpy_s(dst, sizeof dst, src, 4), 0);
    EXPECT_EQ(std::memcmp(dst, src, 4), 0);
    EXPECT_EQ(memcpy_s(dst, sizeof dst, src, 5), ERANGE);
    EXPECT_EQ(memcpy_s(nullptr, 4, src, 4), EINVAL);
    EXPECT_EQ(memcpy_s(dst, 4, nullptr, 4), EINVAL);
    EXPECT_EQ(memset_s(dst, sizeof dst, 0xAB, 4), 0);
    EXPECT_EQ(dst[3], 0xAB);
    EXPECT_EQ(memset_s(dst, sizeof dst, 0, 5), ERANGE);

    // A block freed with 0 was handed out (freeing nothing is refused).
    EXPECT_EQ(PLAT_Free_F(PLAT_SimpleAlloc_F(1, 32, "test", 1), "test", 2), 0u);
    EXPECT_EQ(PLAT_Free_F(PLAT_Malloc_F(1, g_aucPlatMemPt[2], 8, "test", 3), "test", 4), 0u);
    EXPECT_NE(PLAT_Free_F(nullptr, "test", 5), 0u);
}

TEST(DefaultPlatformSys, TextTimeAndCompare)
{
    char text[12] = {};
    SYS_Int32ToStr(34, text);
    EXPECT_STREQ(text, "34");
    SYS_Int32ToStr(-2147483647 - 1, text);
    EXPECT_STREQ(text, "-2147483648");

    char small[8];
    EXPECT_EQ(snprintf_truncated_s(small, sizeof small, "%s", "abcdefghij"), 7);
    EXPECT_STREQ(small, "abcdefg");
    EXPECT_EQ(snprintf_truncated_s(small, sizeof small, "%02X ", 0xAB), 3);

    const uint8_t a[] = {1, 2, 3}, b[] = {1, 2, 4};
    EXPECT_EQ(SYS_MemCmp(a, b, 3), -1);
    EXPECT_EQ(SYS_MemCmp(b, a, 3), 1);
    EXPECT_EQ(SYS_MemCmp(a, b, 2), 0);

    SYS_Systime t;
    SYS_SystimeGet(&t);
    EXPECT_GE(unsigned(t.aucTime[0]) << 8 | t.aucTime[1], 2024u) << "the year";
    EXPECT_TRUE(t.aucTime[2] >= 1 && t.aucTime[2] <= 12) << "the month";
}

} // namespace
