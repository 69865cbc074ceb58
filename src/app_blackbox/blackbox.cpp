// SPDX-License-Identifier: BSD-2-Clause
// The blackbox ring: records numbered by a running index, each kept in slot
// index % capacity, the oldest dropped as new ones arrive. A record is one
// block, LDP_BlackRecord followed by the user's payload.
#include <cstdint>
#include <cstring>

#include "../codec/mem.hpp"
#include "../codec/srcfile.hpp"
#include "ldp_codec.h"

using namespace ldp;

namespace {

constexpr uint32_t no_index = 0xFFFFFFFFu;
// Which entry of the platform's partition table holds ring memory.
constexpr size_t ring_partition = 2;

// The slot array follows the packed header, so a slot may sit at any
// alignment: slots are read and written byte-wise.
LDP_BlackRecord *slot_at(const LDP_Blackbox *box, uint32_t index)
{
    LDP_BlackRecord *rec;
    const size_t slot = index % box->ulCapacity;
    std::memcpy(&rec, reinterpret_cast<const uint8_t *>(box->ppSlots) + slot * sizeof rec, sizeof rec);
    return rec;
}

void set_slot(LDP_Blackbox *box, uint32_t index, LDP_BlackRecord *rec)
{
    const size_t slot = index % box->ulCapacity;
    std::memcpy(reinterpret_cast<uint8_t *>(box->ppSlots) + slot * sizeof rec, &rec, sizeof rec);
}

LDP_BlackRecord *record_of(const void *payload)
{
    return reinterpret_cast<LDP_BlackRecord *>(const_cast<uint8_t *>(static_cast<const uint8_t *>(payload)) -
                                               sizeof(LDP_BlackRecord));
}

// Release the record at index (if its slot holds one) and clear the slot.
void drop(LDP_Blackbox *box, uint32_t index, uint32_t arg)
{
    LDP_BlackRecord *rec = slot_at(box, index);
    if (rec != nullptr) {
        LDP_FreeBlackRecored(box, rec->pPayload, arg);
    }
    set_slot(box, index, nullptr);
}

// What a walk hands out: the payload, with the record's serial in *index.
void *hand_out(const LDP_BlackRecord *rec, uint32_t *index)
{
    *index = rec->ulSerial;
    return rec->pPayload;
}

// The first step of a walk: set the cursor for the steps to come and hand
// out the record at index first, if there is one.
void *start_walk(LDP_Blackbox *box, uint32_t *index, uint32_t *cursor, uint32_t next, uint32_t first)
{
    *cursor = next;
    *index = no_index;
    if (box->ulCapacity == 0) {
        return nullptr;
    }
    const LDP_BlackRecord *rec = slot_at(box, first);
    return rec != nullptr ? hand_out(rec, index) : nullptr;
}

// The record a walk's cursor names. Null arguments give none; so does a
// cursor outside [head, tail), which still moves on by one, and a ring
// without slots. Slots in that range hold records unless the user freed one
// out of turn, which the walks do not allow for.
const LDP_BlackRecord *at_cursor(LDP_Blackbox *box, const uint32_t *index, uint32_t *cursor)
{
    if (box == nullptr || index == nullptr || cursor == nullptr) {
        return nullptr;
    }
    if (*cursor < box->ulHeadIndex || *cursor >= box->ulTailIndex) {
        ++*cursor;
        return nullptr;
    }
    return box->ulCapacity != 0 ? slot_at(box, *cursor) : nullptr;
}

} // namespace

extern "C" LDP_API int32_t LDP_CreateBlackbox(LDP_Blackbox **ppstBox, uint32_t ulCapacity,
                                              uint32_t ulMaxCount, uint32_t ulMemModuleId,
                                              LDP_BlackboxFreeFunc pfnFreeRecord)
{
    if (ppstBox == nullptr) {
        return -1;
    }
    *ppstBox = nullptr;
    const uint64_t slots_size = uint64_t(ulCapacity) * sizeof(LDP_BlackRecord *);
    if (slots_size > UINT32_MAX - sizeof(LDP_Blackbox)) {
        return -1; // no 32-bit block can hold it
    }
    const uint32_t size = uint32_t(sizeof(LDP_Blackbox) + slots_size);
    auto *box = static_cast<LDP_Blackbox *>(
        PLAT_Malloc_F(ulMemModuleId, g_aucPlatMemPt[ring_partition], size, srcfile::blackbox, __LINE__));
    if (box == nullptr) {
        return -1;
    }
    box->ulNextSerial = 0;
    box->ulCapacity = ulCapacity;
    box->ulMaxCount = ulMaxCount;
    box->ulHeadIndex = 0;
    box->ulTailIndex = 0;
    box->ulMemModuleId = ulMemModuleId;
    box->pfnFreeRecord = pfnFreeRecord;
    box->ppSlots = reinterpret_cast<LDP_BlackRecord **>(box + 1);
    (void)memset_s(box + 1, size_t(slots_size), 0, size_t(slots_size));
    *ppstBox = box;
    return 0;
}

extern "C" LDP_API void *LDP_AllocBlackRecord(LDP_Blackbox *pstBox, uint32_t ulSize)
{
    if (pstBox == nullptr || ulSize > UINT32_MAX - sizeof(LDP_BlackRecord)) {
        return nullptr;
    }
    const uint32_t size = uint32_t(sizeof(LDP_BlackRecord) + ulSize);
    auto *rec = static_cast<LDP_BlackRecord *>(mem::alloc_zeroed(pstBox->ulMemModuleId, size, srcfile::blackbox));
    if (rec == nullptr) {
        return nullptr;
    }
    rec->pPayload = rec + 1;
    return rec + 1;
}

extern "C" LDP_API uint32_t LDP_AddBlackRecord(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg)
{
    if (pstBox == nullptr || pPayload == nullptr) {
        return no_index;
    }
    if (pstBox->ulTailIndex == pstBox->ulHeadIndex + pstBox->ulCapacity) {
        ++pstBox->ulHeadIndex; // full: the oldest goes below
    }
    LDP_BlackRecord *rec = record_of(pPayload);
    rec->ulSerial = pstBox->ulNextSerial++;
    SYS_SystimeGet(&rec->stTime);
    // Serial and head have moved already even for a ring without slots; the
    // record stays the caller's. This order is intended.
    if (pstBox->ulCapacity == 0) {
        return no_index;
    }
    drop(pstBox, pstBox->ulTailIndex, ulArg);
    set_slot(pstBox, pstBox->ulTailIndex, rec);
    ++pstBox->ulTailIndex;

    if (pstBox->ulCapacity != pstBox->ulMaxCount && pstBox->ulTailIndex - pstBox->ulHeadIndex > pstBox->ulMaxCount) {
        drop(pstBox, pstBox->ulHeadIndex, ulArg);
        ++pstBox->ulHeadIndex;
    }
    return rec->ulSerial;
}

extern "C" LDP_API void *LDP_GetBlackRecord(LDP_Blackbox *pstBox, uint32_t ulIndex)
{
    if (pstBox == nullptr || pstBox->ulCapacity == 0) {
        return nullptr;
    }
    const LDP_BlackRecord *rec = slot_at(pstBox, ulIndex);
    if (rec == nullptr || rec->ulSerial != ulIndex) {
        return nullptr; // overwritten since, or never added
    }
    return rec->pPayload;
}

extern "C" LDP_API void *LDP_GetFirstBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                                 uint32_t *pulCursor)
{
    if (pstBox == nullptr || pulIndex == nullptr || pulCursor == nullptr) {
        return nullptr;
    }
    return start_walk(pstBox, pulIndex, pulCursor, pstBox->ulHeadIndex + 1, pstBox->ulHeadIndex);
}

extern "C" LDP_API void *LDP_GetNextBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                                uint32_t *pulCursor)
{
    const LDP_BlackRecord *rec = at_cursor(pstBox, pulIndex, pulCursor);
    if (rec == nullptr) {
        return nullptr;
    }
    ++*pulCursor;
    return hand_out(rec, pulIndex);
}

extern "C" LDP_API void *LDP_GetFirstBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                                         uint32_t *pulCursor)
{
    if (pstBox == nullptr || pulIndex == nullptr || pulCursor == nullptr || pstBox->ulTailIndex == 0) {
        return nullptr;
    }
    const uint32_t tail = pstBox->ulTailIndex;
    const uint32_t head = pstBox->ulHeadIndex;
    // With one index used so far and head 0 the cursor lands beyond the tail
    // on purpose, which ends the walk at the next call.
    const uint32_t cursor = tail >= 2 ? tail - 2 : (head != 0 ? head - 1 : 2);
    return start_walk(pstBox, pulIndex, pulCursor, cursor, tail - 1);
}

extern "C" LDP_API void *LDP_GetNextBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                                        uint32_t *pulCursor)
{
    const LDP_BlackRecord *rec = at_cursor(pstBox, pulIndex, pulCursor);
    if (rec == nullptr) {
        return nullptr;
    }
    // Below index 0 there is nothing: jump past the tail to end the walk.
    *pulCursor = *pulCursor != 0 ? *pulCursor - 1 : pstBox->ulTailIndex + 1;
    return hand_out(rec, pulIndex);
}

extern "C" LDP_API void LDP_FreeBlackRecored(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg)
{
    if (pstBox == nullptr || pPayload == nullptr) {
        return;
    }
    if (pstBox->pfnFreeRecord != nullptr) {
        pstBox->pfnFreeRecord(pPayload, ulArg);
    }
    LDP_BlackRecord *rec = record_of(pPayload);
    if (pstBox->ulCapacity != 0 && slot_at(pstBox, rec->ulSerial) == rec) {
        set_slot(pstBox, rec->ulSerial, nullptr);
    }
    (void)mem::release(rec, srcfile::blackbox);
}

extern "C" LDP_API void LDP_ResetBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg)
{
    if (pstBox == nullptr || pstBox->ulCapacity == 0) {
        return;
    }
    // Stops at the first empty slot: records behind a gap stay where they are.
    for (uint32_t i = pstBox->ulHeadIndex % pstBox->ulCapacity; slot_at(pstBox, i) != nullptr;
         i = (i + 1) % pstBox->ulCapacity) {
        drop(pstBox, i, ulArg);
    }
    pstBox->ulHeadIndex = 0;
    pstBox->ulTailIndex = 0;
    pstBox->ulNextSerial = 0;
}

extern "C" LDP_API void LDP_SetBlackboxMaxCount(LDP_Blackbox *pstBox, uint32_t ulMaxCount, uint32_t ulArg)
{
    if (pstBox == nullptr || pstBox->ulCapacity == 0 || ulMaxCount > pstBox->ulCapacity) {
        return;
    }
    while (slot_at(pstBox, pstBox->ulHeadIndex) != nullptr &&
           pstBox->ulHeadIndex + ulMaxCount < pstBox->ulTailIndex) {
        drop(pstBox, pstBox->ulHeadIndex, ulArg);
        ++pstBox->ulHeadIndex;
    }
    pstBox->ulMaxCount = ulMaxCount;
}

extern "C" LDP_API uint32_t LDP_GetBlackboxMaxCount(const LDP_Blackbox *pstBox)
{
    return pstBox != nullptr ? pstBox->ulMaxCount : no_index;
}

extern "C" LDP_API uint32_t LDP_GetBlackboxMaxRecordIndex(const LDP_Blackbox *pstBox)
{
    return pstBox != nullptr ? pstBox->ulTailIndex : no_index;
}

extern "C" LDP_API uintptr_t LDP_GetBlackboxRecordTime(LDP_Blackbox *pstBox, const void *pPayload,
                                                       SYS_Systime *pstTime)
{
    // The ring is not needed; without a payload or an output it is what the
    // caller gets back, a habit engines written against this call rely on.
    uintptr_t result = reinterpret_cast<uintptr_t>(pstBox);
    if (pPayload != nullptr && pstTime != nullptr) {
        result = uintptr_t(memcpy_s(pstTime, sizeof *pstTime, &record_of(pPayload)->stTime, sizeof *pstTime));
    }
    return result;
}

extern "C" LDP_API void LDP_SetBlackboxCurrSysTime(LDP_Blackbox *pstBox)
{
    if (pstBox != nullptr) {
        SYS_SystimeGet(&pstBox->stCurrSysTime);
    }
}

extern "C" LDP_API void LDP_ReleaseBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg)
{
    if (pstBox == nullptr) {
        return;
    }
    LDP_ResetBlackbox(pstBox, ulArg);
    (void)mem::release(pstBox, srcfile::blackbox);
}
