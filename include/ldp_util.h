/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Utilities around the codec for an LDP engine: ordering of the key
 * records it keeps per peer (mappings, FECs, peer addresses), a circular
 * message log for tracing, a hexadecimal dump of packet bytes, a bitmap
 * search and the release of a debug-condition record.
 *
 * Nothing here keeps global state or takes a lock: the caller owns every
 * record and serialises access to a log. Include ldp_codec.h rather than this
 * file.
 *
 * Key records are filled by the engine from decoded messages and used as the
 * keys of its sorted containers. Every one opens with the same 36 bytes (on a
 * 32-bit host; 52 on a 64-bit one) and ends with an address-dependent tail:
 * stIpv4 when usAddrFamily is LDP_AF_IPV4 (1), stIpv6 for any other family.
 * All values are in host order and compared as unsigned integers as they lie
 * in memory, addresses included (so on a little-endian host the address
 * bytes 0A 00 00 02 sort above 0B 00 00 01). Fields marked "not read" belong
 * to the user and never take part in a comparison. */
#ifndef LDP_UTIL_H
#define LDP_UTIL_H

#include <stdint.h>

#include "ldp_platform.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief Room for the user's container links (tree or list node); not read. */
typedef struct LDP_KeyUserNode {
    void *apLink[4]; /**< the user's pointers */
} __attribute__((packed)) LDP_KeyUserNode;

/** @brief The IPv4 tail of LDP_FecMsgData. */
typedef struct LDP_FecKeyIpv4 {
    uint32_t ulAddr;     /**< prefix address */
    uint8_t ucPrefixLen; /**< prefix length */
} __attribute__((packed)) LDP_FecKeyIpv4;

/** @brief The IPv6 tail of LDP_FecMsgData. */
typedef struct LDP_FecKeyIpv6 {
    uint32_t aulAddr6[4]; /**< prefix address, four host-order words */
    uint8_t ucPrefixLen;  /**< prefix length */
} __attribute__((packed)) LDP_FecKeyIpv6;

/** @brief Key of a FEC the engine holds data for (LDP_CmpFecMsgData). */
typedef struct LDP_FecMsgData {
    LDP_KeyUserNode stUserNode; /**< not read */
    uint32_t ulKeyId;           /**< the user's key, e.g. the peer or instance */
    uint16_t usReserved;        /**< not read */
    uint16_t usAddrFamily;      /**< LDP_AF_IPV4 selects stIpv4; anything else stIpv6 */
    uint8_t aucUser[12];        /**< not read */
    __extension__ union {
        LDP_FecKeyIpv4 stIpv4;  /**< the IPv4 tail */
        LDP_FecKeyIpv6 stIpv6;  /**< the IPv6 tail */
    };
} __attribute__((packed)) LDP_FecMsgData;

/** @brief The IPv4 tail of LDP_MappingMsgData. */
typedef struct LDP_MappingKeyIpv4 {
    uint32_t ulAddr;     /**< prefix address */
    uint32_t ulAttr;     /**< the user's 32-bit attribute, compared */
    uint16_t usAttr;     /**< the user's 16-bit attribute, compared */
    uint8_t ucPrefixLen; /**< prefix length */
} __attribute__((packed)) LDP_MappingKeyIpv4;

/** @brief The IPv6 tail of LDP_MappingMsgData. */
typedef struct LDP_MappingKeyIpv6 {
    uint32_t aulAddr6[4]; /**< prefix address, four host-order words */
    uint32_t ulAttr;      /**< the user's 32-bit attribute, compared */
    uint16_t usAttr;      /**< the user's 16-bit attribute, compared */
    uint8_t ucPrefixLen;  /**< prefix length */
} __attribute__((packed)) LDP_MappingKeyIpv6;

/** @brief Key of a label mapping of a prefix FEC (LDP_CmpMappingMsgData). */
typedef struct LDP_MappingMsgData {
    LDP_KeyUserNode stUserNode; /**< not read */
    uint32_t ulKeyId;           /**< the user's key */
    uint16_t usReserved;        /**< not read */
    uint16_t usAddrFamily;      /**< LDP_AF_IPV4 or LDP_AF_IPV6; other families compare no tail */
    uint8_t aucUser[12];        /**< not read */
    __extension__ union {
        LDP_MappingKeyIpv4 stIpv4; /**< the IPv4 tail */
        LDP_MappingKeyIpv6 stIpv6; /**< the IPv6 tail */
    };
} __attribute__((packed)) LDP_MappingMsgData;

/** @brief The IPv4 tail of LDP_PeerAddressMsgData. */
typedef struct LDP_PeerAddressKeyIpv4 {
    uint32_t ulAddr; /**< the address */
    uint32_t ulAttr; /**< the user's 32-bit attribute, compared */
    uint16_t usAttr; /**< the user's 16-bit attribute, compared */
} __attribute__((packed)) LDP_PeerAddressKeyIpv4;

/** @brief The IPv6 tail of LDP_PeerAddressMsgData. */
typedef struct LDP_PeerAddressKeyIpv6 {
    uint32_t aulAddr6[4]; /**< the address, four host-order words */
    uint32_t ulAttr;      /**< the user's 32-bit attribute, compared */
    uint16_t usAttr;      /**< the user's 16-bit attribute, compared */
} __attribute__((packed)) LDP_PeerAddressKeyIpv6;

/** @brief Key of an interface address a peer advertised
 * (LDP_CmpPeerAddressMsgData). */
typedef struct LDP_PeerAddressMsgData {
    LDP_KeyUserNode stUserNode; /**< not read */
    uint32_t ulKeyId;           /**< the user's key */
    uint16_t usReserved;        /**< not read */
    uint16_t usAddrFamily;      /**< LDP_AF_IPV4 selects stIpv4; anything else stIpv6 */
    uint8_t aucUser[12];        /**< not read */
    __extension__ union {
        LDP_PeerAddressKeyIpv4 stIpv4; /**< the IPv4 tail */
        LDP_PeerAddressKeyIpv6 stIpv6; /**< the IPv6 tail */
    };
} __attribute__((packed)) LDP_PeerAddressMsgData;

/** @brief The IPv4 tail of LDP_MldpMappingMsgData. */
typedef struct LDP_MldpKeyIpv4 {
    uint32_t ulRootAddr;      /**< root address */
    uint16_t usOpaqueLen;     /**< bytes at pucOpaqueValue */
    uint16_t usReserved;      /**< not read */
    uint32_t ulReserved;      /**< not read */
    uint8_t *pucOpaqueValue;  /**< usOpaqueLen bytes, the user's */
} __attribute__((packed)) LDP_MldpKeyIpv4;

/** @brief The IPv6 tail of LDP_MldpMappingMsgData. */
typedef struct LDP_MldpKeyIpv6 {
    uint32_t aulRootAddr6[4]; /**< root address, four host-order words */
    uint16_t usOpaqueLen;     /**< bytes at pucOpaqueValue */
    uint16_t usReserved;      /**< not read */
    uint32_t ulReserved;      /**< not read */
    uint8_t *pucOpaqueValue;  /**< usOpaqueLen bytes, the user's */
} __attribute__((packed)) LDP_MldpKeyIpv6;

/** @brief Key of an mLDP mapping: root address and opaque value
 * (LDP_CmpMldpMappingMsgData).
 *
 * The three attributes lie before the root address in both forms, so they
 * are members of the record itself; what follows them moves with the
 * address width. */
typedef struct LDP_MldpMappingMsgData {
    LDP_KeyUserNode stUserNode; /**< not read */
    uint32_t ulKeyId;           /**< the user's key, compared first */
    uint16_t usReserved;        /**< not read */
    uint16_t usAddrFamily;      /**< LDP_AF_IPV4 selects stIpv4; anything else stIpv6 */
    uint8_t aucUser[12];        /**< not read */
    uint32_t ulAttr;            /**< the user's 32-bit attribute, compared */
    uint16_t usAttr;            /**< the user's 16-bit attribute, compared */
    uint8_t ucAttr;             /**< the user's 8-bit attribute, compared */
    __extension__ union {
        LDP_MldpKeyIpv4 stIpv4; /**< the IPv4 tail */
        LDP_MldpKeyIpv6 stIpv6; /**< the IPv6 tail */
    };
} __attribute__((packed)) LDP_MldpMappingMsgData;

/** @brief Order two IPv6 addresses given as four host-order words each.
 *
 * The word counts decide first, then words 0 to 3 in turn (always four
 * words, whatever the counts say; pass 4). The words may sit at any
 * alignment. No pointer is checked for NULL.
 * @param pulAddr1 first address
 * @param ulWords1 its word count
 * @param pulAddr2 second address
 * @param ulWords2 its word count
 * @return 1 when the first orders after the second, -1 when before, 0 when equal */
LDP_API int32_t LDP_CmpIpv6Address(const uint32_t *pulAddr1, uint32_t ulWords1,
                                   const uint32_t *pulAddr2, uint32_t ulWords2);
/** @brief Order two FEC keys: family; then for IPv4 address and prefix
 * length, for IPv6 address and prefix length, for any other family nothing;
 * then ulKeyId. No pointer is checked for NULL.
 * @param pstData1 first key
 * @param pstData2 second key
 * @return 1 when the first orders after the second, -1 when before, 0 when equal */
LDP_API int32_t LDP_CmpFecMsgData(const LDP_FecMsgData *pstData1, const LDP_FecMsgData *pstData2);
/** @brief Order two mapping keys: family; then (IPv4 or IPv6 only) address,
 * prefix length, ulAttr, usAttr; then ulKeyId. No pointer is checked for NULL.
 * @param pstData1 first key
 * @param pstData2 second key
 * @return 1 when the first orders after the second, -1 when before, 0 when equal */
LDP_API int32_t LDP_CmpMappingMsgData(const LDP_MappingMsgData *pstData1,
                                      const LDP_MappingMsgData *pstData2);
/** @brief Order two peer address keys: family; then address, ulAttr, usAttr,
 * where every family but IPv4 uses the IPv6 form; then ulKeyId. No pointer
 * is checked for NULL.
 * @param pstData1 first key
 * @param pstData2 second key
 * @return 1 when the first orders after the second, -1 when before, 0 when equal */
LDP_API int32_t LDP_CmpPeerAddressMsgData(const LDP_PeerAddressMsgData *pstData1,
                                          const LDP_PeerAddressMsgData *pstData2);
/** @brief Order two mLDP mapping keys: ulKeyId first, then family, opaque
 * length, ucAttr, root address (IPv4 form for family 1, IPv6 form
 * otherwise), ulAttr, usAttr; when all of these are equal, the opaque
 * values. No pointer is checked for NULL.
 * @param pstData1 first key
 * @param pstData2 second key
 * @return 1 when the first orders after the second, -1 when before, 0 when
 *         equal; when only the opaque values differ, SYS_MemCmp's result over
 *         usOpaqueLen bytes, passed on unchanged (its sign orders, its size
 *         may be more than 1) */
LDP_API int32_t LDP_CmpMldpMappingMsgData(const LDP_MldpMappingMsgData *pstData1,
                                          const LDP_MldpMappingMsgData *pstData2);

/** @brief One entry of a message log (a circular log of fixed-size entries in
 * an array the caller owns, with the largest time gap seen between
 * consecutive entries).
 *
 * Apart from the clock bytes and ucReserved the values are the caller's;
 * ulTimeStamp 0 means "no time" and is left out of the gap. */
typedef struct LDP_MsgLogEntry {
    uint32_t ulTimeStamp; /**< the caller's time stamp, 0 for none */
    uint32_t ulParam4;    /**< the caller's fourth value */
    uint16_t usParam2;    /**< the caller's second value */
    uint32_t ulParam3;    /**< the caller's third value */
    uint32_t ulParam1;    /**< the caller's first value */
    uint8_t aucClock[3];  /**< bytes 4 to 6 of SYS_Systime when recorded */
    uint8_t ucReserved;   /**< written as 0 */
} __attribute__((packed)) LDP_MsgLogEntry;

/** @brief The head of a message log.
 *
 * Set usEntryCount (never 0) and pEntries, and zero the rest, before the
 * first entry. usNextIndex counts entries modulo usEntryCount; once it has
 * gone round the array twice it stays within [2, 3) times usEntryCount (for
 * counts up to 21,845; larger ones let it wrap at 65,536), so slot
 * usNextIndex % usEntryCount always gets the next entry and, when the array
 * is full, also holds the oldest one. */
typedef struct LDP_MsgLog {
    uint16_t usNextIndex;       /**< where the next entry goes (see above) */
    uint16_t usEntryCount;      /**< entries at pEntries, never 0 */
    uint32_t ulMaxGap;          /**< largest ulTimeStamp difference of neighbours */
    LDP_MsgLogEntry *pEntries;  /**< usEntryCount entries, the caller's */
} __attribute__((packed)) LDP_MsgLog;

/** @brief Write the next log entry.
 *
 * The entry takes the four values and the time stamp, with the clock bytes
 * read from SYS_SystimeGet; ulMaxGap is updated with the gap: the time stamp
 * less that of the entry in the slot before (modulo 2^32), or 0 when that
 * slot's time stamp is 0. usEntryCount 0 is a caller error (division by zero).
 * @param pstLog      the log; NULL, or a NULL pEntries: nothing happens
 * @param ulParam1    the caller's first value
 * @param usParam2    the caller's second value
 * @param ulParam3    the caller's third value
 * @param ulParam4    the caller's fourth value
 * @param ulTimeStamp the caller's time stamp, 0 for none */
LDP_API void LDP_RecordMsgLog(LDP_MsgLog *pstLog, uint32_t ulParam1, uint16_t usParam2,
                              uint32_t ulParam3, uint32_t ulParam4, uint32_t ulTimeStamp);
/** @brief Write the next log entry from a ready-made one.
 *
 * Every field is copied (its clock bytes included, no clock is read) except
 * ucReserved, written as 0; ulMaxGap is updated as by LDP_RecordMsgLog.
 * @param pstLog   the log; NULL, or a NULL pEntries: nothing happens
 * @param pstEntry the entry; NULL: nothing happens */
LDP_API void LDP_CopyMsgLog(LDP_MsgLog *pstLog, const LDP_MsgLogEntry *pstEntry);

/** @brief Render bytes as hexadecimal text.
 *
 * Each byte becomes two upper-case hex digits and a blank, 16 bytes a line;
 * every line after the first starts with a blank. When the bytes end a full
 * line the text ends in the line feed. Bytes are added while fewer than
 * ulSize - 4 characters have been written, so a short buffer holds the first
 * whole bytes only, always terminated. The running position is 16 bits wide:
 * keep ulSize at or below 65,536.
 * @param pucData the bytes; NULL: pcOut is left as it was
 * @param usCount how many; 0: pcOut is left as it was
 * @param pcOut   the text buffer
 * @param ulSize  bytes at pcOut, at least 4 (4 writes nothing) */
LDP_API void LDP_SetPktDataToHexStrRecord(const uint8_t *pucData, uint16_t usCount, char *pcOut,
                                          uint32_t ulSize);

/** @brief Position of the first set bit of a bitmap.
 *
 * Scans word 0 first and each word from its least significant bit. Words are
 * numbered 33 apart: bit b of word w is 33 * w + b + 1 (1 to 32 for word 0,
 * 34 to 65 for word 1, ...).
 * @param pulWords the words
 * @param ulWords  how many
 * @return the position; 33 * ulWords when no bit is set; 0 for no words or a
 *         NULL array */
LDP_API uint32_t LDP_GetBitMapFirstSetBitPositionUint32(const uint32_t *pulWords, uint32_t ulWords);

/** @brief Node and sentinel head of a circular, doubly linked list: an empty
 * list points at itself both ways. */
typedef struct LDP_DebugCondNode {
    struct LDP_DebugCondNode *pNext; /**< next node, or the head after the last */
    struct LDP_DebugCondNode *pPrev; /**< previous node, or the head before the first */
} __attribute__((packed)) LDP_DebugCondNode;

/** @brief A debug condition: three lists of nodes from PLAT_SimpleAlloc_F
 * (each node opens with an LDP_DebugCondNode) and three owned buffers. */
typedef struct LDP_DebugCond {
    uint32_t ulUserData1;             /**< the user's */
    LDP_DebugCondNode astCondList[3]; /**< three list heads; the nodes are owned */
    uint32_t ulUserData2;             /**< the user's */
    void *apBuffer[3];                /**< owned; NULL when absent */
} __attribute__((packed)) LDP_DebugCond;

/** @brief Release what a debug condition owns.
 *
 * Frees every node of the three lists (each list is left empty, pointing at
 * itself) and each buffer that is not NULL (setting it to NULL). A list head
 * whose pNext is NULL is left alone. The record itself stays the caller's.
 * @param pstCond the condition; must not be NULL */
LDP_API void LDP_DeleteDebugCond(LDP_DebugCond *pstCond);

#ifdef __cplusplus
}
#endif

#endif /* LDP_UTIL_H */
