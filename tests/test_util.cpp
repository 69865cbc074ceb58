// SPDX-License-Identifier: BSD-2-Clause
// Key-record orderings, the message log, the hex dump and other debug
// helpers, and the blackbox ring.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <numeric>
#include <utility>

#include "support.hpp"

namespace {

using ldptest::CodecTest;

// A field a key ordering reads: where it lies in the record and how wide it is.
struct field { size_t off, size; };
#define F(m) field{offsetof(Rec, m), sizeof(std::declval<Rec &>().m)}
#define ADDR6(m) F(m[0]), F(m[1]), F(m[2]), F(m[3])

// Higher: the top byte of a host integer made of 0x40 bytes goes up by one.
void bump(void *rec, field f)
{
    ++static_cast<uint8_t *>(rec)[f.off + (std::endian::native == std::endian::little ? f.size - 1 : 0)];
}

uint8_t g_zeros[0x4040], g_three[0x4040] = {3}, *g_to_zeros = g_zeros, *g_to_three = g_three;

// Base: 0x40 bytes but for the family and `ptr` (to g_zeros). Fields from highest precedence
// down: `hi` has field k higher, `lo` every later one, so field k alone must decide, both
// ways round. No other byte may change the order. Then the bytes `ptr` points to decide,
// and the platform's difference comes back as it is (3 for g_three).
template <class Rec>
void expect_order(int32_t (*cmp)(const Rec *, const Rec *), uint16_t family, const std::vector<field> &fields,
                  field ptr = {0, 0})
{
    Rec base;
    std::memset(static_cast<void *>(&base), 0x40, sizeof base);
    base.usAddrFamily = family;
    std::memcpy(reinterpret_cast<uint8_t *>(&base) + ptr.off, &g_to_zeros, ptr.size);
    std::vector<bool> read(sizeof(Rec));
    std::fill_n(read.begin() + ptr.off, ptr.size, true);
    for (size_t k = 0; k < fields.size(); ++k) {
        Rec lo = base, hi = base;
        bump(&hi, fields[k]);
        std::for_each(fields.begin() + k + 1, fields.end(), [&lo](field f) { bump(&lo, f); });
        EXPECT_EQ(std::make_pair(cmp(&lo, &hi), cmp(&hi, &lo)), std::make_pair(-1, 1)) << family << ", field " << k;
        std::fill_n(read.begin() + fields[k].off, fields[k].size, true);
    }
    for (size_t i = 0; i < sizeof(Rec); ++i) {
        Rec other = base;
        bump(&other, {i, 1});
        EXPECT_TRUE(read[i] || cmp(&base, &other) == 0) << "family " << family << ": byte " << i << " is not read";
    }
    Rec other = base;
    std::memcpy(reinterpret_cast<uint8_t *>(&other) + ptr.off, &g_to_three, ptr.size);
    EXPECT_EQ(cmp(&other, &base), ptr.size != 0 ? 3 : 0) << "family " << family;
}

TEST_F(CodecTest, FecKeysAndIpv6AddressesOrderFieldByField)
{
    using Rec = LDP_FecMsgData;
    expect_order(LDP_CmpFecMsgData, 1, {F(usAddrFamily), F(stIpv4.ulAddr), F(stIpv4.ucPrefixLen), F(ulKeyId)});
    expect_order(LDP_CmpFecMsgData, 2, {F(usAddrFamily), ADDR6(stIpv6.aulAddr6), F(stIpv6.ucPrefixLen), F(ulKeyId)});
    // Another family: the address is not looked at, the key alone decides.
    expect_order(LDP_CmpFecMsgData, 3, {F(usAddrFamily), F(ulKeyId)});
    // The IPv6 helper: the counts first, then four host-order words whatever the counts.
    const uint32_t a[4] = {0x0200000A, 0, 0, 1}, b[4] = {0x0200000A, 0, 0, 2}, c[4] = {0x0100000B, 9, 9, 9};
    EXPECT_EQ(LDP_CmpIpv6Address(a, 3, c, 4), -1);
    EXPECT_EQ(LDP_CmpIpv6Address(a, 2, b, 2), -1);
    EXPECT_EQ(LDP_CmpIpv6Address(a, 4, c, 4), 1) << "host integers, not bytes";
}

TEST_F(CodecTest, MappingKeysOrderByFamilyAddressPrefixAttributesThenKey)
{
    using Rec = LDP_MappingMsgData;
    expect_order(LDP_CmpMappingMsgData, 1, {F(usAddrFamily), F(stIpv4.ulAddr), F(stIpv4.ucPrefixLen),
                                            F(stIpv4.ulAttr), F(stIpv4.usAttr), F(ulKeyId)});
    expect_order(LDP_CmpMappingMsgData, 2, {F(usAddrFamily), ADDR6(stIpv6.aulAddr6), F(stIpv6.ucPrefixLen),
                                            F(stIpv6.ulAttr), F(stIpv6.usAttr), F(ulKeyId)});
    expect_order(LDP_CmpMappingMsgData, 0, {F(usAddrFamily), F(ulKeyId)});
}

TEST_F(CodecTest, PeerAddressKeysReadEveryOtherFamilyAsIpv6)
{
    using Rec = LDP_PeerAddressMsgData;
    expect_order(LDP_CmpPeerAddressMsgData, 1,
                 {F(usAddrFamily), F(stIpv4.ulAddr), F(stIpv4.ulAttr), F(stIpv4.usAttr), F(ulKeyId)});
    for (uint16_t family : {2, 3}) {
        expect_order(LDP_CmpPeerAddressMsgData, family,
                     {F(usAddrFamily), ADDR6(stIpv6.aulAddr6), F(stIpv6.ulAttr), F(stIpv6.usAttr), F(ulKeyId)});
    }
}

TEST_F(CodecTest, MldpKeysOrderByKeyFirstAndOpaqueValueLast)
{
    using Rec = LDP_MldpMappingMsgData;
    expect_order(LDP_CmpMldpMappingMsgData, 1, {F(ulKeyId), F(usAddrFamily), F(stIpv4.usOpaqueLen), F(ucAttr),
                 F(stIpv4.ulRootAddr), F(ulAttr), F(usAttr)}, F(stIpv4.pucOpaqueValue));
    for (uint16_t family : {0, 2}) { // every family but IPv4 goes the IPv6 way
        expect_order(LDP_CmpMldpMappingMsgData, family, {F(ulKeyId), F(usAddrFamily), F(stIpv6.usOpaqueLen),
                     F(ucAttr), ADDR6(stIpv6.aulRootAddr6), F(ulAttr), F(usAttr)}, F(stIpv6.pucOpaqueValue));
    }
}

TEST_F(CodecTest, HexDumpLayoutAndTruncationAndFirstSetBitNumbering)
{
    const std::string line = "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F ";
    struct row { uint16_t count; uint32_t size; std::string want; }; // text up to the terminator; '#' untouched
    const row rows[] = {
        {0, 128, std::string(127, '#')}, {15, 128, line.substr(0, 45)}, {16, 128, line + "\n"},
        {32, 128, line + "\n 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F \n"},
        {16, 50, line + "\n"}, {16, 49, line.substr(0, 45)}, // just room for the line; one less: its last byte left out
        {17, 12, "00 01 02 "}, {17, 4, std::string(127, '#')},
    };
    uint8_t data[32];
    std::iota(data, data + 32, 0);
    for (const row &r : rows) {
        std::string out(160, '#');
        LDP_SetPktDataToHexStrRecord(nullptr, r.count, out.data(), r.size); // no data: nothing written
        LDP_SetPktDataToHexStrRecord(data, r.count, out.data(), r.size);
        EXPECT_EQ(out.substr(0, std::min<size_t>(out.find('\0'), 127)), r.want) << r.count << " bytes, size " << r.size;
        EXPECT_EQ(out.substr(r.size), std::string(160 - r.size, '#')) << "nothing past size";
    }
    const std::pair<std::vector<uint32_t>, uint32_t> bits[] = {
        {{}, 0}, {{1}, 1}, {{0x80000000u}, 32}, {{0, 4}, 36}, {{0, 0}, 66}, {{0, 0, 0x10}, 71}, {{6, 1}, 2},
    };
    for (const auto &[words, want] : bits) {
        EXPECT_EQ(LDP_GetBitMapFirstSetBitPositionUint32(words.data(), uint32_t(words.size())), want);
    }
    EXPECT_EQ(LDP_GetBitMapFirstSetBitPositionUint32(nullptr, 3), 0u);
}

TEST_F(CodecTest, MessageLogStoresEntriesFoldsItsIndexAndTracksTheLargestGap)
{
    LDP_MsgLogEntry one[1] = {}, e{5, 4, 2, 3, 1, {7, 8, 9}, 0xEE};
    LDP_MsgLog log{0, 1, 0, one}, no_array{3, 4, 9, nullptr};
    LDP_CopyMsgLog(&log, &e);
    // No log, no array, no entry: nothing is touched (a write would crash).
    LDP_CopyMsgLog(&log, nullptr), LDP_CopyMsgLog(&no_array, &e);
    LDP_RecordMsgLog(nullptr, 1, 2, 3, 4, 5), LDP_RecordMsgLog(&no_array, 1, 2, 3, 4, 5);
    e.ucReserved = 0;
    EXPECT_EQ(std::memcmp(one, &e, sizeof e), 0) << "copied but for the reserved byte";

    struct row { uint16_t count; std::vector<uint32_t> times; uint32_t gap; uint16_t next; };
    const row rows[] = {
        {4, {100, 150, 400}, 250, 3},         // the first entry has no time before it
        {3, {10, 20, 30, 100}, 70, 4},        // wrap-around: slot 0 follows slot 2
        {2, {0, 7, 9}, 2, 3},                 // a zero time stamp before: no gap
        {2, {0xFFFFFFF0u, 0x10}, 0x20, 2},    // modulo 2^32
        {1, {10, 500, 9000, 9001}, 0, 2},     // one slot: an entry follows itself; the index folds from 3 to 2
    };
    testplat::set_clock(10);
    for (const row &r : rows) {
        std::vector<LDP_MsgLogEntry> slots(r.count);
        LDP_MsgLog gaps{0, r.count, 0, slots.data()};
        for (uint32_t t : r.times) {
            LDP_RecordMsgLog(&gaps, 1, 2, 3, 4, t);
        }
        EXPECT_EQ(gaps.ulMaxGap, r.gap) << r.times.size() << " times into " << r.count;
        EXPECT_EQ(gaps.usNextIndex, r.next);
        // In the slot after the one before: clock bytes 4 to 6 of the system time, a cleared reserved byte.
        const LDP_MsgLogEntry last{r.times.back(), 4, 2, 3, 1, {14, 15, 16}, 0};
        EXPECT_EQ(std::memcmp(&slots[(r.times.size() - 1) % r.count], &last, sizeof last), 0);
    }
}

TEST_F(CodecTest, DeleteDebugCondFreesListsAndBuffers)
{
    LDP_DebugCond conds[2] = {}, &cond = conds[0]; // lists 1 and 2 of cond never set up: left alone
    conds[1].ulUserData1 = 5;                      // no fourth buffer is read here
    auto node = [] { return static_cast<LDP_DebugCondNode *>(PLAT_SimpleAlloc_F(1, 24, "test", 1)); };
    LDP_DebugCondNode *head = &cond.astCondList[0], *a = node(), *b = node();
    *head = {a, b};
    *a = {b, head};
    *b = {head, a};
    cond.apBuffer[0] = PLAT_SimpleAlloc_F(1, 8, "test", 2);
    cond.apBuffer[2] = PLAT_SimpleAlloc_F(1, 8, "test", 3);
    LDP_DeleteDebugCond(&cond);
    EXPECT_TRUE(head->pNext == head && head->pPrev == head) << "the head left alone";
    EXPECT_TRUE(cond.apBuffer[0] == nullptr && cond.apBuffer[2] == nullptr) << "freed buffers cleared";
}

using ids = std::vector<uint32_t>;
using frees = std::vector<std::pair<uint32_t, uint32_t>>;
frees g_freed; // (payload id, argument) of each release

class Blackbox : public CodecTest {
protected:
    LDP_Blackbox *box = nullptr;

    void make(uint32_t capacity, uint32_t max_count)
    {
        LDP_ReleaseBlackbox(box, 0);
        g_freed.clear();
        const auto note = [](void *payload, uint32_t arg) { g_freed.emplace_back(ldptest::u32_at(payload, 0), arg); };
        ASSERT_EQ(LDP_CreateBlackbox(&box, capacity, max_count, ldptest::kModule, note), 0);
    }
    // Adds a zero-filled payload made to hold id; the argument is id + 100, the clock id.
    uint32_t add(uint32_t id)
    {
        void *p = LDP_AllocBlackRecord(box, 8);
        EXPECT_EQ(ldptest::u32_at(p, 1), 0u) << "zero-filled";
        std::memcpy(p, &id, sizeof id);
        testplat::set_clock(uint8_t(id));
        return LDP_AddBlackRecord(box, p, id + 100);
    }
    // Serials a walk meets, each checked against its payload, time stamp and look-up.
    ids walk(bool from_tail)
    {
        auto *first = from_tail ? LDP_GetFirstBlackRecordFromTail : LDP_GetFirstBlackRecord;
        auto *next = from_tail ? LDP_GetNextBlackRecordFromTail : LDP_GetNextBlackRecord;
        ids seen;
        uint32_t index = 0, cursor = 0;
        for (void *p = first(box, &index, &cursor); p != nullptr; p = next(box, &index, &cursor)) {
            SYS_Systime t;
            EXPECT_EQ(LDP_GetBlackboxRecordTime(nullptr, p, &t), 0u);
            EXPECT_EQ(t.aucTime[11], uint8_t(index + 11)) << "stamped when added";
            EXPECT_EQ(ldptest::u32_at(p, 0), index);
            EXPECT_EQ(LDP_GetBlackRecord(box, index), p);
            seen.push_back(index);
        }
        return seen;
    }
    void TearDown() override { LDP_ReleaseBlackbox(box, 0), CodecTest::TearDown(); }
};

TEST_F(Blackbox, RingsKeepTheNewestAndReleaseTheOldestWithTheCallersArgument)
{
    // Releases as (id, argument): by an addition id + 100, by a maximum of one 55, by the reset 7.
    struct row { uint32_t capacity, max_count, adds; ids kept; frees freed; };
    const row rows[] = {
        {2, 2, 0, {}, {}},
        {2, 2, 1, {0}, {{0, 7}}}, // from the tail: past the only record at once
        {3, 3, 3, {0, 1, 2}, {{0, 55}, {1, 55}, {2, 7}}},
        {3, 3, 5, {2, 3, 4}, {{0, 103}, {1, 104}, {2, 55}, {3, 55}, {4, 7}}}, // each overwrites the oldest
        {4, 2, 4, {2, 3}, {{0, 102}, {1, 103}, {2, 55}, {3, 7}}},              // the maximum below the capacity
    };
    const uint8_t saved = std::exchange(g_aucPlatMemPt[2], 0x5A);
    for (const row &r : rows) {
        make(r.capacity, r.max_count);
        EXPECT_EQ(testplat::last_partition(), 0x5A);
        for (uint32_t k = 0; k < r.adds; ++k) {
            EXPECT_EQ(add(k), k);
        }
        EXPECT_EQ(walk(false), r.kept);
        EXPECT_EQ(walk(true), ids(r.kept.rbegin(), r.kept.rend()));
        EXPECT_EQ(LDP_GetBlackboxMaxRecordIndex(box), r.adds);
        EXPECT_EQ(LDP_GetBlackRecord(box, r.adds), nullptr) << "its slot holds no record or an older one";
        LDP_SetBlackboxMaxCount(box, r.capacity + 1, 0); // above the capacity: ignored
        EXPECT_EQ(LDP_GetBlackboxMaxCount(box), r.max_count);
        LDP_SetBlackboxMaxCount(box, 1, 55);
        LDP_ResetBlackbox(box, 7);
        EXPECT_EQ(g_freed, r.freed);
        EXPECT_EQ(add(0), 0u) << "serials start again";
        LDP_SetBlackboxMaxCount(box, r.capacity, 0); // up to the capacity is fine
        EXPECT_EQ(LDP_GetBlackboxMaxCount(box), r.capacity);
    }
    g_aucPlatMemPt[2] = saved;
    EXPECT_EQ(testplat::modules_seen(), ids(testplat::modules_seen().size(), ldptest::kModule));
}

TEST_F(Blackbox, WalksAGapThatStopsAResetAndCallsWithoutRingSlotsOrArguments)
{
    make(2, 2);
    uint32_t index = 0, cursor = 0;
    EXPECT_EQ(LDP_GetFirstBlackRecord(box, &index, &cursor), nullptr); // empty: no index, cursor after the head
    EXPECT_EQ(LDP_GetFirstBlackRecordFromTail(box, &index, &cursor), nullptr); // empty: nothing touched
    EXPECT_EQ((ids{index, cursor}), (ids{0xFFFFFFFFu, 1}));
    add(0), add(1);
    // Without one argument, then with all: the cursor stays in the ring from call to call.
    for (auto *f : {LDP_GetFirstBlackRecord, LDP_GetNextBlackRecord, LDP_GetFirstBlackRecordFromTail,
                    LDP_GetNextBlackRecordFromTail}) {
        EXPECT_EQ((std::vector<void *>{f(nullptr, &index, &cursor), f(box, nullptr, &cursor), f(box, &index, nullptr)}),
                  std::vector<void *>(3, nullptr));
        EXPECT_NE(f(box, &index, &cursor), nullptr) << "the same call with every argument";
    }

    testplat::set_clock(60);
    LDP_SetBlackboxCurrSysTime(box);
    EXPECT_EQ(box->stCurrSysTime.aucTime[0], 60);
    EXPECT_EQ(LDP_GetBlackboxRecordTime(box, nullptr, &box->stCurrSysTime), reinterpret_cast<uintptr_t>(box));
    EXPECT_EQ(LDP_GetBlackboxRecordTime(box, LDP_GetBlackRecord(box, 1), nullptr), reinterpret_cast<uintptr_t>(box));

    // A record freed out of turn leaves an empty slot, where a reset stops.
    LDP_FreeBlackRecored(box, LDP_GetBlackRecord(box, 0), 9);
    LDP_ResetBlackbox(box, 0);
    EXPECT_EQ(g_freed, (frees{{0, 9}})) << "slot 0 is empty: the reset releases nothing";
    EXPECT_EQ(add(5), 0u) << "refills slot 0: the release at the end finds both";

    LDP_Blackbox *out = reinterpret_cast<LDP_Blackbox *>(uintptr_t(1));
    EXPECT_EQ(LDP_CreateBlackbox(nullptr, 3, 3, 0, nullptr), -1);
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_CreateBlackbox(&out, 3, 3, 0, nullptr), -1);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(LDP_CreateBlackbox(&out, 0x40000000u, 3, 0, nullptr), -1) << "too big for a 32-bit size";
    // No ring: nothing happens (make() releases the null ring it starts from).
    LDP_FreeBlackRecored(nullptr, &index, 0), LDP_ResetBlackbox(nullptr, 0);
    LDP_SetBlackboxMaxCount(nullptr, 1, 0), LDP_SetBlackboxCurrSysTime(nullptr);

    make(0, 0); // no slots: nothing is ever held
    void *p = LDP_AllocBlackRecord(box, 4);
    EXPECT_TRUE(LDP_AllocBlackRecord(nullptr, 4) == nullptr && LDP_GetBlackRecord(nullptr, 0) == nullptr &&
                LDP_GetBlackRecord(box, 0) == nullptr);
    EXPECT_EQ((ids{LDP_AddBlackRecord(nullptr, p, 0), LDP_AddBlackRecord(box, nullptr, 0),
                   LDP_AddBlackRecord(box, p, 0), LDP_GetBlackboxMaxCount(nullptr),
                   LDP_GetBlackboxMaxRecordIndex(nullptr)}), ids(5, 0xFFFFFFFFu));
    EXPECT_EQ(walk(false), ids{});
    LDP_ResetBlackbox(box, 0);
    EXPECT_EQ(box->ulNextSerial, 1u) << "the serial is taken all the same, and not reset";
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_AllocBlackRecord(box, 4), nullptr);
    LDP_FreeBlackRecored(box, p, 0); // still the caller's
    EXPECT_EQ((std::vector<int32_t>{_ARGS_TEST_(0), _ARGS_TEST_(-7)}), (std::vector<int32_t>{0, 1}));
}

} // namespace
