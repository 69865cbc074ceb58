/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief The blackbox: a bounded ring of time-stamped debug records (for
 * example the last messages sent or received) that the engine keeps and dumps
 * when something goes wrong.
 *
 * Records get running indices; the ring holds the newest of them, at most its
 * capacity and its maximum count, and releases the older ones as new ones
 * arrive. The payload of a record is the user's; the ring calls the user's
 * free callback on each payload before releasing its record. The ring takes
 * no lock: serialise every call on one ring. Include ldp_codec.h rather than
 * this file. */
#ifndef LDP_BLACKBOX_H
#define LDP_BLACKBOX_H

#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief The user's release hook for a payload.
 *
 * Called before the ring frees a record, by the call that releases it (add,
 * free, reset, resize, release).
 * @param pPayload the record's payload
 * @param ulArg    the ulArg of that call */
typedef void (*LDP_BlackboxFreeFunc)(void *pPayload, uint32_t ulArg);

/** @brief The header in front of every payload, in the same block.
 *
 * The user only sees pPayload; every function taking a payload finds the
 * header right in front of it. */
typedef struct LDP_BlackRecord {
    uint32_t ulSerial;   /**< given by LDP_AddBlackRecord */
    SYS_Systime stTime;  /**< taken by LDP_AddBlackRecord */
    void *pPayload;      /**< the bytes right behind this header */
} __attribute__((packed)) LDP_BlackRecord;

/** @brief One ring, allocated as one block.
 *
 * The block holds this header, then ulCapacity slot pointers (ppSlots points
 * at them; each is NULL or a record header). The slots are not declared as a
 * member: they follow the header at whatever alignment its packed size
 * gives, and are read byte-wise. Indices grow without bound (modulo 2^32);
 * index i lives in slot i % ulCapacity, and ulTailIndex - ulHeadIndex
 * records are held. */
typedef struct LDP_Blackbox {
    uint32_t ulNextSerial;   /**< serial of the next record added; starts at 0 */
    uint32_t ulCapacity;     /**< slots, fixed at creation */
    uint32_t ulMaxCount;     /**< most records kept (LDP_SetBlackboxMaxCount) */
    uint32_t ulHeadIndex;    /**< index of the oldest record held */
    uint32_t ulTailIndex;    /**< index the next record takes */
    uint32_t ulMemModuleId;  /**< passed to every record allocation */
    SYS_Systime stCurrSysTime; /**< set by LDP_SetBlackboxCurrSysTime only */
    LDP_BlackboxFreeFunc pfnFreeRecord; /**< the user's payload hook; may be NULL */
    LDP_BlackRecord **ppSlots; /**< the slot pointers right behind this header */
} __attribute__((packed)) LDP_Blackbox;

/** @brief Create a ring.
 *
 * One block from PLAT_Malloc_F with the memory partition g_aucPlatMemPt[2];
 * the caller releases it with LDP_ReleaseBlackbox. stCurrSysTime is left
 * uninitialised.
 * @param ppstBox       set to NULL first, then to the new ring
 * @param ulCapacity    number of slots
 * @param ulMaxCount    most records kept (not checked against the capacity)
 * @param ulMemModuleId memory module ID of the ring and of every record
 * @param pfnFreeRecord the payload hook, or NULL
 * @retval 0  created
 * @retval -1 ppstBox NULL, no memory, or a capacity too large for a 32-bit block size */
LDP_API int32_t LDP_CreateBlackbox(LDP_Blackbox **ppstBox, uint32_t ulCapacity, uint32_t ulMaxCount,
                                   uint32_t ulMemModuleId, LDP_BlackboxFreeFunc pfnFreeRecord);

/** @brief A new zero-filled payload, not yet in the ring.
 *
 * The record (header and payload, one block from PLAT_SimpleAlloc_F with the
 * ring's module ID) is the caller's until LDP_AddBlackRecord takes it; until
 * then the caller frees it with LDP_FreeBlackRecored.
 * @param pstBox the ring
 * @param ulSize payload bytes
 * @return the payload; NULL for a NULL ring, a size too large, or no memory */
LDP_API void *LDP_AllocBlackRecord(LDP_Blackbox *pstBox, uint32_t ulSize);

/** @brief Put a payload from LDP_AllocBlackRecord in the ring.
 *
 * Stamps its record with the next serial and SYS_SystimeGet; the ring owns it
 * from then on. A full ring drops its oldest record first; when more than
 * ulMaxCount records are then held (and the maximum differs from the
 * capacity) one more of the oldest is dropped. Dropped records go through
 * the payload hook with ulArg.
 * @param pstBox   the ring
 * @param pPayload the payload
 * @param ulArg    passed to the payload hook of dropped records
 * @return the record's serial; 0xFFFFFFFF for a NULL ring or payload, and for
 *         a ring of capacity 0, which still advances ulNextSerial and
 *         ulHeadIndex and leaves the payload with the caller */
LDP_API uint32_t LDP_AddBlackRecord(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg);

/** @brief The payload of the record with a given index.
 * @param pstBox  the ring
 * @param ulIndex the record's index (its serial)
 * @return the payload; NULL when that record is no longer (or not yet) held,
 *         or for a NULL ring or capacity 0 */
LDP_API void *LDP_GetBlackRecord(LDP_Blackbox *pstBox, uint32_t ulIndex);

/** @brief Start a walk from the oldest record.
 *
 * Call First, then LDP_GetNextBlackRecord until NULL, passing the same
 * cursor. The walk trusts every slot between head and tail to be occupied:
 * do not free records of a ring out of turn while walking it.
 * @param pstBox    the ring
 * @param pulIndex  receives the record's serial, 0xFFFFFFFF when none is found
 * @param pulCursor the walk's state, set here
 * @return the oldest payload; NULL for an empty ring, capacity 0 or any NULL argument */
LDP_API void *LDP_GetFirstBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex, uint32_t *pulCursor);
/** @brief The next record of a walk from the oldest.
 * @param pstBox    the ring
 * @param pulIndex  receives the record's serial
 * @param pulCursor the walk's state
 * @return the next payload; NULL at the end or for any NULL argument */
LDP_API void *LDP_GetNextBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex, uint32_t *pulCursor);

/** @brief Start a walk from the newest record towards the oldest.
 *
 * Used as LDP_GetFirstBlackRecord, with LDP_GetNextBlackRecordFromTail.
 * @param pstBox    the ring
 * @param pulIndex  receives the record's serial, 0xFFFFFFFF when none is found
 * @param pulCursor the walk's state, set here
 * @return the newest payload; NULL for any NULL argument, for capacity 0, and
 *         for an empty ring (tail index 0: *pulIndex and *pulCursor stay untouched) */
LDP_API void *LDP_GetFirstBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                              uint32_t *pulCursor);
/** @brief The next (older) record of a walk from the newest.
 * @param pstBox    the ring
 * @param pulIndex  receives the record's serial
 * @param pulCursor the walk's state
 * @return the next payload; NULL at the end or for any NULL argument */
LDP_API void *LDP_GetNextBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                             uint32_t *pulCursor);

/** @brief Release one record.
 *
 * The payload hook runs with ulArg, the record's slot is cleared if it still
 * holds this record, and the record is freed. Head and tail do not move.
 * (The name is spelled so on purpose; engines link against it.)
 * @param pstBox   the ring; NULL: nothing happens
 * @param pPayload the payload; NULL: nothing happens
 * @param ulArg    passed to the payload hook */
LDP_API void LDP_FreeBlackRecored(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg);

/** @brief Empty the ring.
 *
 * Releases the records from the oldest on, stopping at the first empty slot,
 * and sets head, tail and serial back to 0.
 * @param pstBox the ring; NULL or capacity 0: nothing changes, the indices included
 * @param ulArg  passed to the payload hook */
LDP_API void LDP_ResetBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg);

/** @brief Lower (or raise) the maximum count.
 *
 * The oldest records are released until at most ulMaxCount remain (or an
 * empty slot is met).
 * @param pstBox     the ring; NULL or capacity 0: nothing changes
 * @param ulMaxCount the new maximum; above the capacity: nothing changes
 * @param ulArg      passed to the payload hook */
LDP_API void LDP_SetBlackboxMaxCount(LDP_Blackbox *pstBox, uint32_t ulMaxCount, uint32_t ulArg);

/** @brief The ring's maximum count.
 * @param pstBox the ring
 * @return ulMaxCount, or 0xFFFFFFFF for a NULL ring */
LDP_API uint32_t LDP_GetBlackboxMaxCount(const LDP_Blackbox *pstBox);

/** @brief The index the next record takes.
 * @param pstBox the ring
 * @return ulTailIndex, or 0xFFFFFFFF for a NULL ring */
LDP_API uint32_t LDP_GetBlackboxMaxRecordIndex(const LDP_Blackbox *pstBox);

/** @brief Copy a record's time stamp.
 * @param pstBox   the ring; not used except as a result
 * @param pPayload the record's payload
 * @param pstTime  receives the time stamp
 * @return memcpy_s's result (0) after the copy; with a NULL payload or
 *         pstTime nothing is copied and the ring pointer itself is returned,
 *         as an integer */
LDP_API uintptr_t LDP_GetBlackboxRecordTime(LDP_Blackbox *pstBox, const void *pPayload,
                                            SYS_Systime *pstTime);

/** @brief Fill stCurrSysTime from SYS_SystimeGet.
 * @param pstBox the ring; NULL: nothing happens */
LDP_API void LDP_SetBlackboxCurrSysTime(LDP_Blackbox *pstBox);

/** @brief Reset the ring (see LDP_ResetBlackbox), then free its block.
 * @param pstBox the ring; NULL: nothing happens
 * @param ulArg  passed to the payload hook */
LDP_API void LDP_ReleaseBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg);

/** @brief Whether an argument is set. Kept inline under its historical name,
 * so the library still exports LDP_ symbols only.
 * @param lArg the value
 * @return 1 when lArg is non-zero, else 0 */
static inline int32_t _ARGS_TEST_(int32_t lArg)
{
    return lArg != 0 ? 1 : 0;
}

#ifdef __cplusplus
}
#endif

#endif /* LDP_BLACKBOX_H */
