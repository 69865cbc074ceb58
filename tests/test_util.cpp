// Key-record orderings, the message log, the hex dump and other debug
// helpers, and the blackbox ring.
#include <bit>
#include <functional>
#include <numeric>
#include <string>
#include <vector>

#include "support.hpp"

namespace {

using ldptest::CodecTest;

// Field bumps listed from highest precedence down. For field k, `hi` gets
// field k bumped while `lo` gets every later field bumped: field k alone must
// decide, both ways round. Bumps in `ignored` must never change the order.
template <class Rec>
struct bump {
    const char *name;
    std::function<void(Rec &)> apply;
};

template <class Rec>
void expect_order(int32_t (*cmp)(const Rec *, const Rec *), const Rec &base,
                  const std::vector<bump<Rec>> &fields, const std::vector<bump<Rec>> &ignored = {})
{
    for (size_t k = 0; k < fields.size(); ++k) {
        Rec lo = base, hi = base;
        fields[k].apply(hi);
        for (size_t j = k + 1; j < fields.size(); ++j) {
            fields[j].apply(lo);
        }
        EXPECT_EQ(cmp(&lo, &hi), -1) << fields[k].name;
        EXPECT_EQ(cmp(&hi, &lo), 1) << fields[k].name;
    }
    for (const auto &f : ignored) {
        Rec other = base;
        f.apply(other);
        EXPECT_EQ(cmp(&base, &other), 0) << f.name << " is not compared";
    }
    EXPECT_EQ(cmp(&base, &base), 0);
}

// Opening fields every key record shares.
template <class Rec>
Rec key_base(uint16_t family)
{
    Rec r;
    std::memset(static_cast<void *>(&r), 0x40, sizeof r);
    r.usAddrFamily = family;
    return r;
}

#define BUMP(name, expr) bump<Rec>{name, [](Rec &r) { expr; }}
#define USER_FIELDS                                                                          \
    BUMP("stUserNode", r.stUserNode.apLink[3] = nullptr), BUMP("usReserved", ++r.usReserved), \
        BUMP("aucUser", ++r.aucUser[11])
#define ADDR6(tail, f)                                                                          \
    BUMP(#f "[0]", ++r.tail.f[0]), BUMP(#f "[1]", ++r.tail.f[1]), BUMP(#f "[2]", ++r.tail.f[2]), \
        BUMP(#f "[3]", ++r.tail.f[3])

TEST_F(CodecTest, FecKeysOrderByFamilyAddressPrefixThenKey)
{
    using Rec = LDP_FecMsgData;
    expect_order(LDP_CmpFecMsgData, key_base<Rec>(1),
                 {BUMP("family", r.usAddrFamily = 2), BUMP("ulAddr", ++r.stIpv4.ulAddr),
                  BUMP("prefix", ++r.stIpv4.ucPrefixLen), BUMP("key", ++r.ulKeyId)},
                 {USER_FIELDS});
    expect_order(LDP_CmpFecMsgData, key_base<Rec>(2),
                 {BUMP("family", r.usAddrFamily = 3), ADDR6(stIpv6, aulAddr6),
                  BUMP("prefix", ++r.stIpv6.ucPrefixLen), BUMP("key", ++r.ulKeyId)});
    // Another family: the address is not looked at, the key alone decides.
    expect_order(LDP_CmpFecMsgData, key_base<Rec>(3), {BUMP("key", ++r.ulKeyId)},
                 {ADDR6(stIpv6, aulAddr6), BUMP("prefix", ++r.stIpv6.ucPrefixLen)});
}

TEST_F(CodecTest, MappingKeysOrderByFamilyAddressPrefixAttributesThenKey)
{
    using Rec = LDP_MappingMsgData;
    expect_order(LDP_CmpMappingMsgData, key_base<Rec>(1),
                 {BUMP("family", r.usAddrFamily = 2), BUMP("ulAddr", ++r.stIpv4.ulAddr),
                  BUMP("prefix", ++r.stIpv4.ucPrefixLen), BUMP("ulAttr", ++r.stIpv4.ulAttr),
                  BUMP("usAttr", ++r.stIpv4.usAttr), BUMP("key", ++r.ulKeyId)},
                 {USER_FIELDS});
    expect_order(LDP_CmpMappingMsgData, key_base<Rec>(2),
                 {BUMP("family", r.usAddrFamily = 3), ADDR6(stIpv6, aulAddr6),
                  BUMP("prefix", ++r.stIpv6.ucPrefixLen), BUMP("ulAttr", ++r.stIpv6.ulAttr),
                  BUMP("usAttr", ++r.stIpv6.usAttr), BUMP("key", ++r.ulKeyId)});
    expect_order(LDP_CmpMappingMsgData, key_base<Rec>(0), {BUMP("key", ++r.ulKeyId)},
                 {ADDR6(stIpv6, aulAddr6), BUMP("ulAttr", ++r.stIpv6.ulAttr)});
}

TEST_F(CodecTest, PeerAddressKeysReadEveryOtherFamilyAsIpv6)
{
    using Rec = LDP_PeerAddressMsgData;
    expect_order(LDP_CmpPeerAddressMsgData, key_base<Rec>(1),
                 {BUMP("family", r.usAddrFamily = 2), BUMP("ulAddr", ++r.stIpv4.ulAddr),
                  BUMP("ulAttr", ++r.stIpv4.ulAttr), BUMP("usAttr", ++r.stIpv4.usAttr),
                  BUMP("key", ++r.ulKeyId)},
                 {USER_FIELDS});
    for (uint16_t family : {2, 3}) {
        expect_order(LDP_CmpPeerAddressMsgData, key_base<Rec>(family),
                     {ADDR6(stIpv6, aulAddr6), BUMP("ulAttr", ++r.stIpv6.ulAttr),
                      BUMP("usAttr", ++r.stIpv6.usAttr), BUMP("key", ++r.ulKeyId)});
    }
}

uint8_t g_opaque_lo[2] = {0x01, 0x02};
uint8_t g_opaque_next[2] = {0x01, 0x03};
uint8_t g_opaque_hi[2] = {0x01, 0x05}; // byte 1 is 3 more

TEST_F(CodecTest, MldpKeysOrderByKeyFirstAndOpaqueValueLast)
{
    using Rec = LDP_MldpMappingMsgData;
    Rec v4 = key_base<Rec>(1);
    v4.stIpv4.usOpaqueLen = 2;
    v4.stIpv4.pucOpaqueValue = g_opaque_lo;
    expect_order(LDP_CmpMldpMappingMsgData, v4,
                 {BUMP("key", ++r.ulKeyId), BUMP("family", r.usAddrFamily = 2),
                  BUMP("opaque length", ++r.stIpv4.usOpaqueLen), BUMP("ucAttr", ++r.ucAttr),
                  BUMP("root", ++r.stIpv4.ulRootAddr), BUMP("ulAttr", ++r.ulAttr),
                  BUMP("usAttr", ++r.usAttr), BUMP("opaque", r.stIpv4.pucOpaqueValue = g_opaque_next)},
                 {USER_FIELDS, BUMP("unread", ++r.stIpv4.usReserved; ++r.stIpv4.ulReserved)});
    Rec v6 = key_base<Rec>(2);
    v6.stIpv6.usOpaqueLen = 2;
    v6.stIpv6.pucOpaqueValue = g_opaque_lo;
    expect_order(LDP_CmpMldpMappingMsgData, v6,
                 {BUMP("family", r.usAddrFamily = 3), BUMP("opaque length", ++r.stIpv6.usOpaqueLen),
                  BUMP("ucAttr", ++r.ucAttr), ADDR6(stIpv6, aulRootAddr6), BUMP("ulAttr", ++r.ulAttr),
                  BUMP("usAttr", ++r.usAttr)});
    // Equal but for the opaque bytes: the platform's difference comes back as it is.
    Rec hi = v6;
    hi.stIpv6.pucOpaqueValue = g_opaque_hi;
    EXPECT_EQ(LDP_CmpMldpMappingMsgData(&v6, &hi), -3);
    EXPECT_EQ(LDP_CmpMldpMappingMsgData(&hi, &v6), 3);
}

TEST_F(CodecTest, Ipv6AddressesCompareCountsThenFourWords)
{
    struct row {
        uint32_t a[4], na, b[4], nb;
        int32_t want;
    };
    const row rows[] = {
        {{1, 2, 3, 4}, 4, {1, 2, 3, 4}, 4, 0},
        {{9, 9, 9, 9}, 3, {0, 0, 0, 0}, 4, -1}, // the counts come first
        {{0, 0, 0, 1}, 2, {0, 0, 0, 0}, 2, 1},  // four words whatever the count
        {{1, 0, 0, 0}, 4, {0, 9, 9, 9}, 4, 1},
        {{0, 0, 0, 1}, 4, {0, 0, 0, 2}, 4, -1},
    };
    for (const row &r : rows) {
        EXPECT_EQ(LDP_CmpIpv6Address(r.a, r.na, r.b, r.nb), r.want);
        EXPECT_EQ(LDP_CmpIpv6Address(r.b, r.nb, r.a, r.na), -r.want);
    }
    if constexpr (std::endian::native == std::endian::little) {
        // Words are host integers: 0A 00 00 02 is 0x0200000A, above 0x0100000B.
        auto a = key_base<LDP_FecMsgData>(1), b = a;
        std::memcpy(&a.stIpv4.ulAddr, "\x0A\x00\x00\x02", 4);
        std::memcpy(&b.stIpv4.ulAddr, "\x0B\x00\x00\x01", 4);
        EXPECT_EQ(LDP_CmpFecMsgData(&a, &b), 1);
    }
}

TEST_F(CodecTest, HexDumpLayoutAndTruncation)
{
    const std::string line = "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F ";
    struct row {
        uint16_t count;
        uint32_t size;
        std::string want; // text up to the terminator; '#' is untouched
    };
    const row rows[] = {
        {0, 128, std::string(127, '#')},
        {1, 128, "00 "},
        {15, 128, line.substr(0, 45)},
        {16, 128, line + "\n"},
        {17, 128, line + "\n 10 "},
        {32, 128, line + "\n 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F \n"},
        {16, 50, line + "\n"},       // just room for the line and its end
        {16, 49, line.substr(0, 45)}, // one byte less: the last byte is left out
        {17, 12, "00 01 02 "},
        {17, 4, std::string(127, '#')},
    };
    uint8_t data[32];
    std::iota(data, data + 32, 0);
    for (const row &r : rows) {
        char out[160];
        std::memset(out, '#', sizeof out);
        out[159] = '\0';
        LDP_SetPktDataToHexStrRecord(data, r.count, out, r.size);
        EXPECT_EQ(std::string(out).substr(0, 127), r.want) << r.count << " bytes, size " << r.size;
        EXPECT_EQ(std::string(out + r.size), std::string(159 - r.size, '#')) << "nothing past size";
    }
    char out[16] = "unchanged";
    const uint8_t odd[] = {0x01, 0x0A, 0xFF};
    LDP_SetPktDataToHexStrRecord(nullptr, 3, out, sizeof out);
    EXPECT_STREQ(out, "unchanged");
    LDP_SetPktDataToHexStrRecord(odd, 3, out, sizeof out);
    EXPECT_STREQ(out, "01 0A FF ");
}

TEST_F(CodecTest, FirstSetBitNumbersWords33Apart)
{
    const std::pair<std::vector<uint32_t>, uint32_t> rows[] = {
        {{}, 0}, {{1}, 1}, {{0x80000000u}, 32}, {{0, 4}, 36}, {{0, 0}, 66}, {{0, 0, 0x10}, 71}, {{6, 1}, 2},
    };
    for (const auto &[words, want] : rows) {
        EXPECT_EQ(LDP_GetBitMapFirstSetBitPositionUint32(words.data(), uint32_t(words.size())), want);
    }
    EXPECT_EQ(LDP_GetBitMapFirstSetBitPositionUint32(nullptr, 3), 0u);
}

TEST_F(CodecTest, MessageLogFoldsItsIndexAndKeepsTheSlotSequence)
{
    LDP_MsgLogEntry entries[4] = {};
    LDP_MsgLog log{0, 4, 0, entries};
    const uint16_t want_index[13] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 8, 9};
    for (uint32_t k = 0; k < 13; ++k) {
        testplat::set_clock(uint8_t(10 * k));
        LDP_RecordMsgLog(&log, k, uint16_t(100 + k), 200 + k, 300 + k, 1000 + k);
        EXPECT_EQ(log.usNextIndex, want_index[k]) << "after " << k + 1;
        // Clock bytes 4 to 6 of the system time, then a cleared reserved byte.
        const uint8_t c = uint8_t(10 * k);
        const LDP_MsgLogEntry want{1000 + k, 300 + k, uint16_t(100 + k), 200 + k, k, {uint8_t(c + 4), uint8_t(c + 5), uint8_t(c + 6)}, 0};
        EXPECT_EQ(ldptest::to_hex(reinterpret_cast<uint8_t *>(&entries[k % 4]), sizeof want),
                  ldptest::to_hex(reinterpret_cast<const uint8_t *>(&want), sizeof want));
    }
    EXPECT_EQ(log.ulMaxGap, 1u);
}

TEST_F(CodecTest, MessageLogTracksTheLargestGap)
{
    struct row {
        uint16_t count;
        std::vector<uint32_t> times;
        uint32_t want;
    };
    const row rows[] = {
        {4, {100, 150, 400}, 250},       // the first entry has no time before it
        {3, {10, 20, 30, 100}, 70},      // wrap-around: slot 0 follows slot 2
        {2, {0, 7, 9}, 2},               // a zero time stamp before: no gap
        {2, {0xFFFFFFF0u, 0x10}, 0x20},  // modulo 2^32
        {1, {10, 500, 9000}, 0},         // one slot: an entry follows itself
    };
    for (const row &r : rows) {
        std::vector<LDP_MsgLogEntry> entries(r.count);
        LDP_MsgLog log{0, r.count, 0, entries.data()};
        for (uint32_t t : r.times) {
            LDP_MsgLogEntry e{t, 4, 2, 3, 1, {7, 8, 9}, 0xEE};
            LDP_CopyMsgLog(&log, &e);
        }
        EXPECT_EQ(log.ulMaxGap, r.want) << r.times.size() << " times into " << r.count;
        const LDP_MsgLogEntry &last = entries[(r.times.size() - 1) % r.count];
        EXPECT_EQ(ldptest::to_hex(&last.aucClock[0], 4), "07 08 09 00") << "entry's clock, reserved cleared";
        EXPECT_EQ(last.ulTimeStamp, r.times.back());
    }
    // No log, no array, no entry: nothing happens.
    LDP_MsgLogEntry one[1] = {};
    LDP_MsgLog no_array{3, 4, 9, nullptr}, log{0, 1, 0, one};
    LDP_RecordMsgLog(nullptr, 1, 2, 3, 4, 5);
    LDP_RecordMsgLog(&no_array, 1, 2, 3, 4, 5);
    LDP_CopyMsgLog(&no_array, one);
    LDP_CopyMsgLog(&log, nullptr);
    EXPECT_EQ(no_array.usNextIndex, 3);
    EXPECT_EQ(no_array.ulMaxGap, 9u);
    EXPECT_EQ(log.usNextIndex, 0);
}

TEST_F(CodecTest, DeleteDebugCondFreesListsAndBuffers)
{
    LDP_DebugCond cond{};
    auto node = [] { return static_cast<LDP_DebugCondNode *>(PLAT_SimpleAlloc_F(1, 24, "test", 1)); };
    LDP_DebugCondNode *head = &cond.astCondList[0], *a = node(), *b = node();
    *head = {a, b};
    *a = {b, head};
    *b = {head, a};
    cond.astCondList[1] = {&cond.astCondList[1], &cond.astCondList[1]};
    cond.astCondList[2] = {nullptr, nullptr};
    cond.apBuffer[0] = PLAT_SimpleAlloc_F(1, 8, "test", 2);
    cond.apBuffer[2] = PLAT_SimpleAlloc_F(1, 8, "test", 3);
    cond.ulUserData1 = 5;
    LDP_DeleteDebugCond(&cond);
    EXPECT_EQ(head->pNext, head);
    EXPECT_EQ(head->pPrev, head);
    EXPECT_EQ(cond.astCondList[1].pNext, &cond.astCondList[1]);
    EXPECT_EQ(cond.astCondList[2].pNext, nullptr);
    EXPECT_EQ(cond.apBuffer[0], nullptr);
    EXPECT_EQ(cond.apBuffer[2], nullptr);
    EXPECT_EQ(cond.ulUserData1, 5u);
}

// --- Blackbox ---------------------------------------------------------------

std::vector<std::pair<uint32_t, uint32_t>> g_freed; // (payload id, argument)

void note_free(void *payload, uint32_t arg)
{
    uint32_t id;
    std::memcpy(&id, payload, sizeof id);
    g_freed.emplace_back(id, arg);
}

class Blackbox : public CodecTest {
protected:
    LDP_Blackbox *box = nullptr;

    void make(uint32_t capacity, uint32_t max_count)
    {
        g_freed.clear();
        ASSERT_EQ(LDP_CreateBlackbox(&box, capacity, max_count, ldptest::kModule, note_free), 0);
    }
    // Adds a payload holding id; the argument is id + 100 and the clock id.
    uint32_t add(uint32_t id)
    {
        void *p = LDP_AllocBlackRecord(box, 8);
        std::memcpy(p, &id, sizeof id);
        testplat::set_clock(uint8_t(id));
        return LDP_AddBlackRecord(box, p, id + 100);
    }
    static uint32_t id_of(const void *payload) { return payload ? ldptest::u32_at(payload, 0) : 0xDEAD; }

    // Serials met by a walk from the oldest or the newest record.
    std::vector<uint32_t> walk(bool from_tail)
    {
        auto *first = from_tail ? LDP_GetFirstBlackRecordFromTail : LDP_GetFirstBlackRecord;
        auto *next = from_tail ? LDP_GetNextBlackRecordFromTail : LDP_GetNextBlackRecord;
        std::vector<uint32_t> seen;
        uint32_t index = 0, cursor = 0;
        for (void *p = first(box, &index, &cursor); p != nullptr; p = next(box, &index, &cursor)) {
            EXPECT_EQ(id_of(p), index);
            seen.push_back(index);
        }
        return seen;
    }
    void TearDown() override
    {
        LDP_ReleaseBlackbox(box, 0);
        CodecTest::TearDown();
    }
};

using ids = std::vector<uint32_t>;
using frees = std::vector<std::pair<uint32_t, uint32_t>>;

TEST_F(Blackbox, FillWrapAndOverwriteReleaseTheOldestWithTheAddersArgument)
{
    const uint8_t saved = g_aucPlatMemPt[2];
    g_aucPlatMemPt[2] = 0x5A;
    make(3, 3);
    g_aucPlatMemPt[2] = saved;
    EXPECT_EQ(testplat::last_partition(), 0x5A);
    void *spare = LDP_AllocBlackRecord(box, 4);
    EXPECT_EQ(id_of(spare), 0u) << "zero-filled";
    EXPECT_EQ(testplat::modules_seen(), (ids{ldptest::kModule, ldptest::kModule}));
    LDP_FreeBlackRecored(box, spare, 0); // never added: still the caller's to free
    g_freed.clear();
    const frees want_freed[5] = {{}, {}, {}, {{0, 103}}, {{0, 103}, {1, 104}}};
    for (uint32_t k = 0; k < 5; ++k) {
        EXPECT_EQ(add(k), k);
        EXPECT_EQ(g_freed, want_freed[k]) << "after adding " << k;
    }
    EXPECT_EQ(box->ulHeadIndex, 2u);
    EXPECT_EQ(LDP_GetBlackboxMaxRecordIndex(box), 5u);
    EXPECT_EQ(box->ulNextSerial, 5u);
    EXPECT_EQ(LDP_GetBlackRecord(box, 1), nullptr);
    EXPECT_EQ(LDP_GetBlackRecord(box, 5), nullptr);
    EXPECT_EQ(id_of(LDP_GetBlackRecord(box, 4)), 4u);
    EXPECT_EQ(walk(false), (ids{2, 3, 4}));
    EXPECT_EQ(walk(true), (ids{4, 3, 2}));
    for (uint32_t k = 2; k < 5; ++k) {
        SYS_Systime t;
        EXPECT_EQ(LDP_GetBlackboxRecordTime(nullptr, LDP_GetBlackRecord(box, k), &t), 0u);
        EXPECT_EQ(t.aucTime[0], k) << "stamped when added";
        EXPECT_EQ(t.aucTime[11], k + 11);
    }
    LDP_ResetBlackbox(box, 7);
    EXPECT_EQ(g_freed.size(), 5u);
    EXPECT_EQ(g_freed.back(), std::make_pair(4u, 7u));
    EXPECT_EQ(box->ulHeadIndex + box->ulTailIndex + box->ulNextSerial, 0u);
    EXPECT_EQ(add(9), 0u) << "serials start again";
}

TEST_F(Blackbox, MaximumBelowCapacityDropsOnePerAddition)
{
    make(4, 2);
    for (uint32_t k = 0; k < 3; ++k) {
        add(k);
    }
    EXPECT_EQ(box->ulHeadIndex, 1u);
    EXPECT_EQ(g_freed, (frees{{0, 102}}));
    EXPECT_EQ(walk(false), (ids{1, 2}));
    LDP_SetBlackboxMaxCount(box, 5, 0); // above the capacity: ignored
    EXPECT_EQ(LDP_GetBlackboxMaxCount(box), 2u);
    add(3);
    LDP_SetBlackboxMaxCount(box, 1, 55);
    EXPECT_EQ(LDP_GetBlackboxMaxCount(box), 1u);
    EXPECT_EQ(g_freed, (frees{{0, 102}, {1, 103}, {2, 55}}));
    EXPECT_EQ(walk(true), (ids{3}));
    LDP_SetBlackboxMaxCount(box, 4, 0); // up to the capacity is fine
    EXPECT_EQ(LDP_GetBlackboxMaxCount(box), 4u);
}

TEST_F(Blackbox, WalksOfAnEmptyAndAOneRecordRing)
{
    make(2, 2);
    uint32_t index = ldptest::kUntouched, cursor = ldptest::kUntouched;
    EXPECT_EQ(LDP_GetFirstBlackRecordFromTail(box, &index, &cursor), nullptr);
    EXPECT_EQ(index, ldptest::kUntouched);
    EXPECT_EQ(cursor, ldptest::kUntouched);
    EXPECT_EQ(LDP_GetFirstBlackRecord(box, &index, &cursor), nullptr);
    EXPECT_EQ(index, 0xFFFFFFFFu);
    add(0);
    EXPECT_NE(LDP_GetFirstBlackRecordFromTail(box, &index, &cursor), nullptr);
    EXPECT_EQ(cursor, 2u) << "beyond the tail: the next call ends the walk";
    EXPECT_EQ(walk(true), (ids{0}));
    EXPECT_EQ(walk(false), (ids{0}));
    add(1);
    EXPECT_EQ(walk(true), (ids{1, 0}));
    for (auto *f : {LDP_GetFirstBlackRecord, LDP_GetNextBlackRecord, LDP_GetFirstBlackRecordFromTail,
                    LDP_GetNextBlackRecordFromTail}) {
        cursor = 0;
        EXPECT_EQ(f(nullptr, &index, &cursor), nullptr);
        EXPECT_EQ(f(box, nullptr, &cursor), nullptr);
        EXPECT_EQ(f(box, &index, nullptr), nullptr);
        EXPECT_NE(f(box, &index, &cursor), nullptr) << "the same call with every argument";
    }
    SYS_Systime t;
    testplat::set_clock(60);
    LDP_SetBlackboxCurrSysTime(box);
    EXPECT_EQ(box->stCurrSysTime.aucTime[0], 60);
    EXPECT_EQ(LDP_GetBlackboxRecordTime(box, nullptr, &t), reinterpret_cast<uintptr_t>(box));
    EXPECT_EQ(LDP_GetBlackboxRecordTime(box, LDP_GetBlackRecord(box, 0), nullptr), reinterpret_cast<uintptr_t>(box));
}

TEST_F(Blackbox, ResetStopsAtARecordFreedOutOfTurn)
{
    make(3, 3);
    add(0), add(1), add(2);
    void *one = LDP_GetBlackRecord(box, 1), *two = LDP_GetBlackRecord(box, 2);
    LDP_FreeBlackRecored(box, LDP_GetBlackRecord(box, 0), 9);
    EXPECT_EQ(LDP_GetBlackRecord(box, 0), nullptr);
    LDP_ResetBlackbox(box, 0);
    EXPECT_EQ(g_freed, (frees{{0, 9}})) << "slot 0 is empty: the reset releases nothing";
    EXPECT_EQ(LDP_GetBlackboxMaxRecordIndex(box), 0u);
    LDP_FreeBlackRecored(box, one, 0);
    LDP_FreeBlackRecored(box, two, 0);
}

TEST_F(Blackbox, FailuresReturnMinusOneNullOrNothing)
{
    LDP_Blackbox *out = reinterpret_cast<LDP_Blackbox *>(uintptr_t(1));
    EXPECT_EQ(LDP_CreateBlackbox(nullptr, 3, 3, 0, nullptr), -1);
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_CreateBlackbox(&out, 3, 3, 0, nullptr), -1);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(LDP_CreateBlackbox(&out, 0x40000000u, 3, 0, nullptr), -1) << "too big for a 32-bit size";

    uint32_t index = 0, cursor = 0;
    EXPECT_EQ(LDP_AllocBlackRecord(nullptr, 4), nullptr);
    EXPECT_EQ(LDP_AddBlackRecord(nullptr, &index, 0), 0xFFFFFFFFu);
    EXPECT_EQ(LDP_GetBlackRecord(nullptr, 0), nullptr);
    EXPECT_EQ(LDP_GetFirstBlackRecord(nullptr, &index, &cursor), nullptr);
    EXPECT_EQ(LDP_GetBlackboxMaxCount(nullptr), 0xFFFFFFFFu);
    EXPECT_EQ(LDP_GetBlackboxMaxRecordIndex(nullptr), 0xFFFFFFFFu);
    LDP_FreeBlackRecored(nullptr, &index, 0);
    LDP_ResetBlackbox(nullptr, 0);
    LDP_SetBlackboxMaxCount(nullptr, 1, 0);
    LDP_SetBlackboxCurrSysTime(nullptr);
    LDP_ReleaseBlackbox(nullptr, 0);

    make(0, 0); // no slots: nothing is ever held
    EXPECT_EQ(LDP_AddBlackRecord(box, nullptr, 0), 0xFFFFFFFFu);
    void *p = LDP_AllocBlackRecord(box, 4);
    EXPECT_EQ(LDP_AddBlackRecord(box, p, 0), 0xFFFFFFFFu);
    EXPECT_EQ(LDP_AddBlackRecord(box, p, 0), 0xFFFFFFFFu);
    EXPECT_EQ(box->ulNextSerial, 2u) << "serials are taken all the same";
    EXPECT_EQ(LDP_GetBlackRecord(box, 0), nullptr);
    EXPECT_EQ(LDP_GetFirstBlackRecord(box, &index, &cursor), nullptr);
    testplat::fail_alloc_at(1);
    EXPECT_EQ(LDP_AllocBlackRecord(box, 4), nullptr);
    LDP_ResetBlackbox(box, 0);
    EXPECT_EQ(box->ulNextSerial, 2u) << "a ring without slots is not reset";
    LDP_FreeBlackRecored(box, p, 0); // still the caller's
    EXPECT_EQ(_ARGS_TEST_(0), 0);
    EXPECT_EQ(_ARGS_TEST_(-7), 1);
}

} // namespace
