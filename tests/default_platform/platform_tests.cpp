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

SLL_Node *head(SLL_List *l) { return &l->stHead; }

void init(SLL_List *l)
{
    l->stHead.pNext = head(l);
    l->stHead.ulHandle = 0;
    l->pTail = head(l);
    l->ulCount = 0;
}

void append(SLL_List *l, elem *e) { SLL_Insert_In_Middle(l, l->pTail, &e->node, head(l)); }

std::vector<int> ids(SLL_List *l)
{
    std::vector<int> out;
    for (SLL_Node *n = l->stHead.pNext; n != head(l); n = n->pNext) {
        out.push_back(reinterpret_cast<elem *>(n)->id);
    }
    return out;
}

TEST(DefaultPlatformList, AppendDeleteKeepRingTailAndCount)
{
    SLL_List l;
    init(&l);
    elem e[4] = {{{}, 1}, {{}, 2}, {{}, 3}, {{}, 4}};
    for (auto &x : e) {
        append(&l, &x);
    }
    EXPECT_EQ(ids(&l), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(l.ulCount, 4u);
    EXPECT_EQ(l.pTail, &e[3].node);
    EXPECT_EQ(e[3].node.pNext, head(&l));

    SLL_Delete(&l, &e[3].node); // tail
    EXPECT_EQ(l.pTail, &e[2].node);
    SLL_Delete(&l, &e[0].node); // first
    SLL_Delete(&l, &e[0].node); // no longer on the list: nothing happens
    EXPECT_EQ(ids(&l), (std::vector<int>{2, 3}));
    EXPECT_EQ(l.ulCount, 2u);
    SLL_Delete(&l, &e[1].node);
    SLL_Delete(&l, &e[2].node);
    EXPECT_EQ(l.ulCount, 0u);
    EXPECT_EQ(l.pTail, head(&l));
    EXPECT_EQ(l.stHead.pNext, head(&l));
}

std::vector<int> g_freed;
uint32_t record_free(void *p)
{
    g_freed.push_back(static_cast<elem *>(p)->id);
    return 0;
}

TEST(DefaultPlatformList, FreeAllCallsTheReleaseOnEachAndEmpties)
{
    SLL_List l;
    init(&l);
    elem e[3] = {{{}, 7}, {{}, 8}, {{}, 9}};
    for (auto &x : e) {
        append(&l, &x);
    }
    g_freed.clear();
    SLL_FreeAll(&l, record_free);
    EXPECT_EQ(g_freed, (std::vector<int>{7, 8, 9}));
    EXPECT_EQ(l.ulCount, 0u);
    EXPECT_EQ(l.stHead.pNext, head(&l));
    EXPECT_EQ(l.pTail, head(&l));
    SLL_FreeAll(&l, record_free); // an empty list: no calls
    EXPECT_EQ(g_freed.size(), 3u);
}

TEST(DefaultPlatformMem, BoundsCheckedCopyAndFill)
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
}

TEST(DefaultPlatformMem, AllocatorAndFree)
{
    void *p = PLAT_SimpleAlloc_F(1, 32, "test", 1);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(PLAT_Free_F(p, "test", 2), 0u);
    void *q = PLAT_Malloc_F(1, g_aucPlatMemPt[2], 8, "test", 3);
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(PLAT_Free_F(q, "test", 4), 0u);
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
    const unsigned year = unsigned(t.aucTime[0]) << 8 | t.aucTime[1];
    EXPECT_GE(year, 2024u);
    EXPECT_GE(t.aucTime[2], 1);
    EXPECT_LE(t.aucTime[2], 12);
}

} // namespace
