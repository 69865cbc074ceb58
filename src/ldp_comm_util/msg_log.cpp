// SPDX-License-Identifier: BSD-2-Clause
// The circular message log: fixed-size entries in the caller's array, with
// the largest time gap between neighbouring entries.
#include <cstdint>

#include "ldp_codec.h"

namespace {

static_assert(sizeof(LDP_MsgLogEntry) == 22);
static_assert(sizeof(LDP_MsgLog) == 8 + sizeof(void *));

// Bytes of SYS_Systime kept in an entry (the time of day on most platforms).
constexpr unsigned clock_first = 4;

// Write e (ucReserved cleared) into the next slot, track the gap to the slot
// before, and advance the running index.
void store(LDP_MsgLog *log, const LDP_MsgLogEntry &e)
{
    const int next = log->usNextIndex;
    const int count = log->usEntryCount;
    LDP_MsgLogEntry *slots = log->pEntries;

    LDP_MsgLogEntry &cur = slots[next % count];
    cur = e;
    cur.ucReserved = 0;

    // Read after the write: a one-entry log compares the entry with itself.
    const uint32_t before = slots[(next + count - 1) % count].ulTimeStamp;
    const uint32_t gap = before != 0 ? e.ulTimeStamp - before : 0;
    if (log->ulMaxGap < gap) {
        log->ulMaxGap = gap;
    }

    // The counter folds back by one array length once it reaches three: the
    // slot sequence goes on unbroken and the index never nears 65,535 for
    // small logs. Larger logs simply wrap at 16 bits, which is intended.
    uint16_t n = uint16_t(next + 1);
    if (n >= 3 * count) {
        n = uint16_t(n - count);
    }
    log->usNextIndex = n;
}

} // namespace

extern "C" LDP_API void LDP_RecordMsgLog(LDP_MsgLog *pstLog, uint32_t ulParam1, uint16_t usParam2,
                                         uint32_t ulParam3, uint32_t ulParam4, uint32_t ulTimeStamp)
{
    if (pstLog == nullptr || pstLog->pEntries == nullptr) {
        return;
    }
    SYS_Systime now;
    SYS_SystimeGet(&now);
    LDP_MsgLogEntry e;
    e.ulTimeStamp = ulTimeStamp;
    e.ulParam4 = ulParam4;
    e.usParam2 = usParam2;
    e.ulParam3 = ulParam3;
    e.ulParam1 = ulParam1;
    for (unsigned i = 0; i < sizeof e.aucClock; ++i) {
        e.aucClock[i] = now.aucTime[clock_first + i];
    }
    e.ucReserved = 0;
    store(pstLog, e);
}

extern "C" LDP_API void LDP_CopyMsgLog(LDP_MsgLog *pstLog, const LDP_MsgLogEntry *pstEntry)
{
    if (pstLog == nullptr || pstLog->pEntries == nullptr || pstEntry == nullptr) {
        return;
    }
    store(pstLog, *pstEntry);
}
