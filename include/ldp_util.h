/* Utilities around the codec for an LDP engine: ordering of the key records
 * it keeps per peer (mappings, FECs, peer addresses), a circular message log
 * for tracing, a hexadecimal dump of packet bytes, a bitmap search and the
 * release of a debug-condition record. Nothing here keeps global state or
 * takes a lock: the caller owns every record and serialises access to a log.
 * Include ldp_codec.h rather than this file. */
#ifndef LDP_UTIL_H
#define LDP_UTIL_H

#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* --- Key records and their ordering ----------------------------------------
 * Key records are filled by the engine from decoded messages and used as the
 * keys of its sorted containers. Every one opens with the same 36 bytes (on a
 * 32-bit host; 52 on a 64-bit one) and ends with an address-dependent tail:
 * stIpv4 when usAddrFamily is LDP_AF_IPV4 (1), stIpv6 for any other family.
 * All values are in host order and compared as unsigned integers as they lie
 * in memory, addresses included (so on a little-endian host the address
 * bytes 0A 00 00 02 sort above 0B 00 00 01). Fields marked "not read" belong
 * to the user and never take part in a comparison. */

/* Room for the user's container links (tree or list node); not read. */
typedef struct LDP_KeyUserNode {
    void *apLink[4];
} __attribute__((packed)) LDP_KeyUserNode;

typedef struct LDP_FecKeyIpv4 {
    uint32_t ulAddr;
    uint8_t ucPrefixLen;
} __attribute__((packed)) LDP_FecKeyIpv4;

typedef struct LDP_FecKeyIpv6 {
    uint32_t aulAddr6[4];
    uint8_t ucPrefixLen;
} __attribute__((packed)) LDP_FecKeyIpv6;

/* A FEC the engine holds data for. */
typedef struct LDP_FecMsgData {
    LDP_KeyUserNode stUserNode; /* not read */
    uint32_t ulKeyId;           /* the user's key, e.g. the peer or instance */
    uint16_t usReserved;        /* not read */
    uint16_t usAddrFamily;
    uint8_t aucUser[12];        /* not read */
    __extension__ union {
        LDP_FecKeyIpv4 stIpv4;
        LDP_FecKeyIpv6 stIpv6;
    };
} __attribute__((packed)) LDP_FecMsgData;

typedef struct LDP_MappingKeyIpv4 {
    uint32_t ulAddr;
    uint32_t ulAttr;
    uint16_t usAttr;
    uint8_t ucPrefixLen;
} __attribute__((packed)) LDP_MappingKeyIpv4;

typedef struct LDP_MappingKeyIpv6 {
    uint32_t aulAddr6[4];
    uint32_t ulAttr;
    uint16_t usAttr;
    uint8_t ucPrefixLen;
} __attribute__((packed)) LDP_MappingKeyIpv6;

/* A label mapping of a prefix FEC. */
typedef struct LDP_MappingMsgData {
    LDP_KeyUserNode stUserNode; /* not read */
    uint32_t ulKeyId;
    uint16_t usReserved;        /* not read */
    uint16_t usAddrFamily;
    uint8_t aucUser[12];        /* not read */
    __extension__ union {
        LDP_MappingKeyIpv4 stIpv4;
        LDP_MappingKeyIpv6 stIpv6;
    };
} __attribute__((packed)) LDP_MappingMsgData;

typedef struct LDP_PeerAddressKeyIpv4 {
    uint32_t ulAddr;
    uint32_t ulAttr;
    uint16_t usAttr;
} __attribute__((packed)) LDP_PeerAddressKeyIpv4;

typedef struct LDP_PeerAddressKeyIpv6 {
    uint32_t aulAddr6[4];
    uint32_t ulAttr;
    uint16_t usAttr;
} __attribute__((packed)) LDP_PeerAddressKeyIpv6;

/* An interface address a peer advertised. */
typedef struct LDP_PeerAddressMsgData {
    LDP_KeyUserNode stUserNode; /* not read */
    uint32_t ulKeyId;
    uint16_t usReserved;        /* not read */
    uint16_t usAddrFamily;
    uint8_t aucUser[12];        /* not read */
    __extension__ union {
        LDP_PeerAddressKeyIpv4 stIpv4;
        LDP_PeerAddressKeyIpv6 stIpv6;
    };
} __attribute__((packed)) LDP_PeerAddressMsgData;

typedef struct LDP_MldpKeyIpv4 {
    uint32_t ulRootAddr;
    uint16_t usOpaqueLen;
    uint16_t usReserved;      /* not read */
    uint32_t ulReserved;      /* not read */
    uint8_t *pucOpaqueValue;  /* usOpaqueLen bytes, the user's */
} __attribute__((packed)) LDP_MldpKeyIpv4;

typedef struct LDP_MldpKeyIpv6 {
    uint32_t aulRootAddr6[4];
    uint16_t usOpaqueLen;
    uint16_t usReserved;      /* not read */
    uint32_t ulReserved;      /* not read */
    uint8_t *pucOpaqueValue;
} __attribute__((packed)) LDP_MldpKeyIpv6;

/* An mLDP mapping (root address and opaque value). The three attributes lie
 * before the root address in both forms, so they are members of the record
 * itself; what follows them moves with the address width. */
typedef struct LDP_MldpMappingMsgData {
    LDP_KeyUserNode stUserNode; /* not read */
    uint32_t ulKeyId;
    uint16_t usReserved;        /* not read */
    uint16_t usAddrFamily;
    uint8_t aucUser[12];        /* not read */
    uint32_t ulAttr;
    uint16_t usAttr;
    uint8_t ucAttr;
    __extension__ union {
        LDP_MldpKeyIpv4 stIpv4;
        LDP_MldpKeyIpv6 stIpv6;
    };
} __attribute__((packed)) LDP_MldpMappingMsgData;

/* The comparisons return 1 when the first argument orders after the second,
 * -1 when before, 0 when every compared field is equal. No pointer is checked
 * for NULL.
 *
 * Two IPv6 addresses given as four host-order words each: the word counts
 * decide first, then words 0 to 3 in turn (always four words, whatever the
 * counts say; pass 4). The words may sit at any alignment. */
LDP_API int32_t LDP_CmpIpv6Address(const uint32_t *pulAddr1, uint32_t ulWords1,
                                   const uint32_t *pulAddr2, uint32_t ulWords2);
/* Family; then for IPv4 address and prefix length, for IPv6 address and
 * prefix length, for any other family nothing; then ulKeyId. */
LDP_API int32_t LDP_CmpFecMsgData(const LDP_FecMsgData *pstData1, const LDP_FecMsgData *pstData2);
/* Family; then (IPv4 or IPv6 only) address, prefix length, ulAttr, usAttr;
 * then ulKeyId. */
LDP_API int32_t LDP_CmpMappingMsgData(const LDP_MappingMsgData *pstData1,
                                      const LDP_MappingMsgData *pstData2);
/* Family; then address, ulAttr, usAttr, where every family but IPv4 uses
 * the IPv6 form; then ulKeyId. */
LDP_API int32_t LDP_CmpPeerAddressMsgData(const LDP_PeerAddressMsgData *pstData1,
                                          const LDP_PeerAddressMsgData *pstData2);
/* ulKeyId first, then family, opaque length, ucAttr, root address (IPv4 form
 * for family 1, IPv6 form otherwise), ulAttr, usAttr. When all of these are
 * equal the opaque values decide: the result is SYS_MemCmp's over
 * usOpaqueLen bytes, passed on unchanged (its sign orders, its size may be
 * more than 1). */
LDP_API int32_t LDP_CmpMldpMappingMsgData(const LDP_MldpMappingMsgData *pstData1,
                                          const LDP_MldpMappingMsgData *pstData2);

/* --- Message log ------------------------------------------------------------
 * A circular log of fixed-size entries in an array the caller owns, with the
 * largest time gap seen between consecutive entries. */

/* One log entry. Apart from the clock bytes and ucReserved the values are the
 * caller's; ulTimeStamp 0 means "no time" and is left out of the gap. */
typedef struct LDP_MsgLogEntry {
    uint32_t ulTimeStamp;
    uint32_t ulParam4;
    uint16_t usParam2;
    uint32_t ulParam3;
    uint32_t ulParam1;
    uint8_t aucClock[3]; /* bytes 4 to 6 of SYS_Systime when recorded */
    uint8_t ucReserved;  /* written as 0 */
} __attribute__((packed)) LDP_MsgLogEntry;

/* The log head. Set usEntryCount (never 0) and pEntries, and zero the rest,
 * before the first entry. usNextIndex counts entries modulo usEntryCount;
 * once it has gone round the array twice it stays within [2, 3) times
 * usEntryCount (for counts up to 21,845; larger ones let it wrap at 65,536),
 * so slot usNextIndex % usEntryCount always gets the next
 * entry and, when the array is full, also holds the oldest one. */
typedef struct LDP_MsgLog {
    uint16_t usNextIndex;
    uint16_t usEntryCount;
    uint32_t ulMaxGap;          /* largest ulTimeStamp difference of neighbours */
    LDP_MsgLogEntry *pEntries;  /* usEntryCount entries, the caller's */
} __attribute__((packed)) LDP_MsgLog;

/* Write the next entry from the four values and the time stamp, with the
 * clock bytes read from SYS_SystimeGet, and update ulMaxGap: the gap is the
 * time stamp less that of the entry in the slot before (modulo 2^32), or 0
 * when that slot's time stamp is 0. A NULL log or array: nothing happens.
 * usEntryCount 0 is a caller error (division by zero). */
LDP_API void LDP_RecordMsgLog(LDP_MsgLog *pstLog, uint32_t ulParam1, uint16_t usParam2,
                              uint32_t ulParam3, uint32_t ulParam4, uint32_t ulTimeStamp);
/* The same with a ready-made entry: every field is copied (its clock bytes
 * included, no clock is read) except ucReserved, written as 0. A NULL log,
 * array or entry: nothing happens. */
LDP_API void LDP_CopyMsgLog(LDP_MsgLog *pstLog, const LDP_MsgLogEntry *pstEntry);

/* --- Debug helpers -------------------------------------------------------- */

/* Render usCount bytes as text into pcOut (ulSize bytes), each byte as two
 * upper-case hex digits and a blank, 16 bytes a line; every line after the
 * first starts with a blank. When the bytes end a full line the text ends in
 * the line feed. Bytes are added while fewer than ulSize - 4 characters have
 * been written, so a short buffer holds the first whole bytes only, always
 * terminated; ulSize must be at least 4 (4 writes nothing), and with
 * usCount 0 or a NULL pointer pcOut is left as it was. The running position
 * is 16 bits wide: keep ulSize at or below 65,536. */
LDP_API void LDP_SetPktDataToHexStrRecord(const uint8_t *pucData, uint16_t usCount, char *pcOut,
                                          uint32_t ulSize);

/* Position of the first set bit in ulWords words, scanning word 0 first and
 * each word from its least significant bit. Words are numbered 33 apart:
 * bit b of word w is 33 * w + b + 1 (1 to 32 for word 0, 34 to 65 for word 1,
 * ...). No bit set: 33 * ulWords. No words, or a NULL array: 0. */
LDP_API uint32_t LDP_GetBitMapFirstSetBitPositionUint32(const uint32_t *pulWords, uint32_t ulWords);

/* Node and sentinel head of a circular, doubly linked list: an empty list
 * points at itself both ways. */
typedef struct LDP_DebugCondNode {
    struct LDP_DebugCondNode *pNext;
    struct LDP_DebugCondNode *pPrev;
} __attribute__((packed)) LDP_DebugCondNode;

/* A debug condition: three lists of nodes from PLAT_SimpleAlloc_F (each node
 * opens with an LDP_DebugCondNode) and three owned buffers. The two
 * ulUserData words are the user's. */
typedef struct LDP_DebugCond {
    uint32_t ulUserData1;
    LDP_DebugCondNode astCondList[3];
    uint32_t ulUserData2;
    void *apBuffer[3]; /* owned; NULL when absent */
} __attribute__((packed)) LDP_DebugCond;

/* Free every node of the three lists (each list is left empty, pointing at
 * itself) and each buffer that is not NULL (setting it to NULL). A list head
 * whose pNext is NULL is left alone. The record itself stays the caller's;
 * it must not be NULL. */
LDP_API void LDP_DeleteDebugCond(LDP_DebugCond *pstCond);

#ifdef __cplusplus
}
#endif

#endif /* LDP_UTIL_H */
