/* The blackbox: a bounded ring of time-stamped debug records (for example the
 * last messages sent or received) that the engine keeps and dumps when
 * something goes wrong. Records get running indices; the ring holds the
 * newest of them, at most its capacity and its maximum count, and releases
 * the older ones as new ones arrive. The payload of a record is the user's;
 * the ring calls the user's free callback on each payload before releasing
 * its record. The ring takes no lock: serialise every call on one ring.
 * Include ldp_codec.h rather than this file. */
#ifndef LDP_BLACKBOX_H
#define LDP_BLACKBOX_H

#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Called with a record's payload and the argument of the call that releases
 * the record (add, free, reset, resize, release), before the ring frees it. */
typedef void (*LDP_BlackboxFreeFunc)(void *pPayload, uint32_t ulArg);

/* The header in front of every payload. The user only sees pPayload, and
 * every function taking a payload finds the header right in front of it. */
typedef struct LDP_BlackRecord {
    uint32_t ulSerial;   /* given by LDP_AddBlackRecord */
    SYS_Systime stTime;  /* taken by LDP_AddBlackRecord */
    void *pPayload;      /* the bytes right behind this header */
} __attribute__((packed)) LDP_BlackRecord;

/* One ring, allocated as one block: this header, then ulCapacity slot
 * pointers (ppSlots points at them; each is NULL or a record header). The
 * slots are not declared as a member: they follow the header at whatever
 * alignment its packed size gives, and are read byte-wise. Indices grow
 * without bound (modulo 2^32); index i lives in slot i % ulCapacity, and
 * ulTailIndex - ulHeadIndex records are held. */
typedef struct LDP_Blackbox {
    uint32_t ulNextSerial;   /* serial of the next record added; starts at 0 */
    uint32_t ulCapacity;     /* slots, fixed at creation */
    uint32_t ulMaxCount;     /* most records kept (LDP_SetBlackboxMaxCount) */
    uint32_t ulHeadIndex;    /* index of the oldest record held */
    uint32_t ulTailIndex;    /* index the next record takes */
    uint32_t ulMemModuleId;  /* passed to every record allocation */
    SYS_Systime stCurrSysTime; /* set by LDP_SetBlackboxCurrSysTime only */
    LDP_BlackboxFreeFunc pfnFreeRecord; /* may be NULL */
    LDP_BlackRecord **ppSlots;
} __attribute__((packed)) LDP_Blackbox;

/* Create a ring of ulCapacity slots keeping at most ulMaxCount records (not
 * checked against the capacity), in one block from PLAT_Malloc_F with the
 * memory partition g_aucPlatMemPt[2]. *ppstBox is set to NULL first, then to
 * the new ring. Returns 0; -1 for a NULL ppstBox or when memory runs out
 * (including a capacity too large for a 32-bit block size). stCurrSysTime is
 * left uninitialised. The caller releases the ring with LDP_ReleaseBlackbox. */
LDP_API int32_t LDP_CreateBlackbox(LDP_Blackbox **ppstBox, uint32_t ulCapacity, uint32_t ulMaxCount,
                                   uint32_t ulMemModuleId, LDP_BlackboxFreeFunc pfnFreeRecord);

/* A new zero-filled payload of ulSize bytes, not yet in the ring: the caller
 * owns it until LDP_AddBlackRecord succeeds, and otherwise frees it with
 * LDP_FreeBlackRecored. NULL for a NULL ring or when memory runs out. */
LDP_API void *LDP_AllocBlackRecord(LDP_Blackbox *pstBox, uint32_t ulSize);

/* Stamp the payload's record with the next serial and SYS_SystimeGet, put it
 * in the ring and return its serial (the ring owns it from then on). A full
 * ring drops its oldest record first; when more than ulMaxCount records are
 * then held (and the maximum differs from the capacity) one more of the
 * oldest is dropped. Dropped records go through the free callback with ulArg.
 * Returns 0xFFFFFFFF for a NULL ring or payload, and for a ring of capacity
 * 0, which still advances ulNextSerial and ulHeadIndex and leaves the payload
 * with the caller. */
LDP_API uint32_t LDP_AddBlackRecord(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg);

/* The payload of the record with index ulIndex; NULL when that record is no
 * longer (or not yet) held, or for a NULL ring or capacity 0. */
LDP_API void *LDP_GetBlackRecord(LDP_Blackbox *pstBox, uint32_t ulIndex);

/* Walk from the oldest record: First, then Next until NULL, passing the same
 * cursor. *pulIndex receives each record's serial (First sets it to
 * 0xFFFFFFFF when it finds nothing). Any NULL argument gives NULL. The walk
 * trusts every slot between head and tail to be occupied: do not free records
 * of a ring out of turn while walking it. */
LDP_API void *LDP_GetFirstBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex, uint32_t *pulCursor);
LDP_API void *LDP_GetNextBlackRecord(LDP_Blackbox *pstBox, uint32_t *pulIndex, uint32_t *pulCursor);

/* Walk from the newest record towards the oldest, the same way. On an empty
 * ring (tail index 0) First returns NULL without touching *pulIndex or
 * *pulCursor. */
LDP_API void *LDP_GetFirstBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                              uint32_t *pulCursor);
LDP_API void *LDP_GetNextBlackRecordFromTail(LDP_Blackbox *pstBox, uint32_t *pulIndex,
                                             uint32_t *pulCursor);

/* Release one record: the free callback runs on the payload with ulArg, the
 * record's slot is cleared if it still holds this record, and the record is
 * freed. Head and tail do not move. A NULL ring or payload: nothing. (The
 * name is spelled so on purpose; engines link against it.) */
LDP_API void LDP_FreeBlackRecored(LDP_Blackbox *pstBox, void *pPayload, uint32_t ulArg);

/* Release the records from the oldest on, stopping at the first empty slot,
 * and set head, tail and serial back to 0. A NULL ring or capacity 0:
 * nothing, the indices included. */
LDP_API void LDP_ResetBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg);

/* Lower (or raise) the maximum count: the oldest records are released until
 * at most ulMaxCount remain (or an empty slot is met). A NULL ring, capacity
 * 0 or a maximum above the capacity: nothing changes. */
LDP_API void LDP_SetBlackboxMaxCount(LDP_Blackbox *pstBox, uint32_t ulMaxCount, uint32_t ulArg);

/* ulMaxCount, or 0xFFFFFFFF for a NULL ring. */
LDP_API uint32_t LDP_GetBlackboxMaxCount(const LDP_Blackbox *pstBox);

/* ulTailIndex (the index the next record takes), or 0xFFFFFFFF for a NULL ring. */
LDP_API uint32_t LDP_GetBlackboxMaxRecordIndex(const LDP_Blackbox *pstBox);

/* Copy the record's time stamp into *pstTime and return memcpy_s's result (0).
 * With a NULL payload or pstTime nothing is copied and the ring pointer
 * itself is returned, as an integer; the ring is not otherwise used. */
LDP_API uintptr_t LDP_GetBlackboxRecordTime(LDP_Blackbox *pstBox, const void *pPayload,
                                            SYS_Systime *pstTime);

/* Fill stCurrSysTime from SYS_SystimeGet. A NULL ring: nothing. */
LDP_API void LDP_SetBlackboxCurrSysTime(LDP_Blackbox *pstBox);

/* Reset the ring (see LDP_ResetBlackbox), then free it. NULL: nothing. */
LDP_API void LDP_ReleaseBlackbox(LDP_Blackbox *pstBox, uint32_t ulArg);

/* 1 when lArg is non-zero, else 0. Kept inline under its historical name, so
 * the library still exports LDP_ symbols only. */
static inline int32_t _ARGS_TEST_(int32_t lArg)
{
    return lArg != 0 ? 1 : 0;
}

#ifdef __cplusplus
}
#endif

#endif /* LDP_BLACKBOX_H */
