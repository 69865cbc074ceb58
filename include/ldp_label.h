/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Five LDP messages about labels (Mapping; Request and its Abort;
 * Withdraw; Release) and the TLVs they share with each other and the
 * Notification: Label, Hop Count, Path Vector, the ID of a Label Request,
 * CR-LDP LSPID, Traffic and ER (RFC 3212), and the list of unknown TLVs kept
 * for forwarding. Include ldp_codec.h rather than this file.
 *
 * Pre-parses check the wire bytes without allocating; decoders fill a zeroed
 * record whose lists are empty (as LDP_Decode prepares it), and whatever they
 * filled stays in the record, owned by it, on every outcome: release it with
 * LDP_FreeMessage. Encoders here write each TLV header from the record as it
 * stands and swap the record's fields to network order in place; only
 * usTlvLen is swapped back, so a record can be encoded once. The caller sets
 * usMsgLen (4 to LDP_MAX_MSG_LEN) and every TLV length. Every encoder here
 * answers LDP_OK or LDP_ERR_PARAM; running out of room is reported through
 * PLAT_Assert. */
#ifndef LDP_LABEL_H
#define LDP_LABEL_H

#include "ldp_fec.h"
#include "ldp_status.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @brief Label TLV: Generic (0x0200), ATM (0x0201) or Frame Relay (0x0202).
 *
 * The four value bytes are one u32 (Generic, Frame Relay) or, for ATM, two
 * u16 halves: VPI with its Res/V bits first, then VCI. usLabelKind selects
 * the form the encoder writes; the header's type is written as it stands.
 * Decoders read Generic labels only and keep their low 20 bits. */
typedef struct LDP_LabelTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 4 */
    __extension__ union {
        uint32_t ulLabel;      /**< Generic or Frame Relay label, host order */
        __extension__ struct {
            uint16_t usVpi;    /**< ATM: VPI with its Res/V bits */
            uint16_t usVci;    /**< ATM: VCI */
        } __attribute__((packed));
    } __attribute__((packed));
    uint16_t usLabelKind;      /**< LDP_TLV_GENERIC_LABEL, LDP_TLV_ATM_LABEL or LDP_TLV_FR_LABEL */
} __attribute__((packed)) LDP_LabelTlv;

/** @brief Label Request Message ID (0x0600): value is the 4-byte message ID. */
typedef struct LDP_LblReqMsgIdTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 4 */
    uint32_t ulReqMsgId;       /**< the request's message ID */
} __attribute__((packed)) LDP_LblReqMsgIdTlv;

/** @brief Hop Count (0x0103): value is one byte. */
typedef struct LDP_HopCountTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 1 */
    uint8_t ucHopCount;        /**< hop count */
} __attribute__((packed)) LDP_HopCountTlv;

/** @brief Path Vector (0x0104): LSR Ids in host order, in an owned array. */
typedef struct LDP_PathVectorTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 4 per LSR Id */
    uint32_t *pulLsrId;        /**< owned array of LSR Ids, host order */
    uint16_t usLsrIdCount;     /**< LSR Ids at pulLsrId (decode keeps it in 8 bits: 256 or more wrap) */
} __attribute__((packed)) LDP_PathVectorTlv;

/** @brief CR-LDP LSPID (0x0821), also the form of the LSPID ER-hop (0x0804). */
typedef struct LDP_LspIdTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 8 */
    uint16_t usReserved;       /**< reserved */
    uint16_t usLocalCrLspId;   /**< local CR-LSP ID */
    uint32_t ulIngressLsrId;   /**< ingress LSR router ID */
} __attribute__((packed)) LDP_LspIdTlv;

/** @brief CR-LDP Traffic Parameters (sent only). The five rates and sizes are
 * 32-bit IEEE floats kept as their bit patterns. */
typedef struct LDP_TrafficTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 24 */
    uint8_t ucFlags;           /**< flags */
    uint8_t ucFrequency;       /**< frequency */
    uint8_t ucReserved;        /**< reserved */
    uint8_t ucWeight;          /**< weight */
    uint32_t ulPdr;            /**< peak data rate */
    uint32_t ulPbs;            /**< peak burst size */
    uint32_t ulCdr;            /**< committed data rate */
    uint32_t ulCbs;            /**< committed burst size */
    uint32_t ulEbs;            /**< excess burst size */
} __attribute__((packed)) LDP_TrafficTlv;

/** @brief Body of one ER-hop, after its TLV header (20 bytes, room for the
 * IPv6 form). The LSPID form continues the hop's header exactly as an
 * LDP_LspIdTlv does, so &hop->stTlvHeader can be read as an LDP_LspIdTlv. */
typedef union LDP_ErHopBody {
    /** IPv4 prefix hop (0x0801). */
    struct {
        uint32_t ulFlagsPreLen; /**< L bit (bit 31), reserved, prefix length (bits 7-0) */
        uint32_t ulIpv4Addr;    /**< host order */
    } __attribute__((packed)) stIpv4;
    /** IPv6 prefix hop (0x0802). */
    struct {
        uint32_t ulFlagsPreLen;  /**< L bit (bit 31), reserved, prefix length (bits 7-0) */
        uint8_t aucIpv6Addr[16]; /**< as on the wire */
    } __attribute__((packed)) stIpv6;
    /** AS number hop (0x0803). */
    struct {
        uint16_t usFlags;    /**< L bit (bit 15), reserved */
        uint16_t usAsNumber; /**< AS number */
    } __attribute__((packed)) stAs;
    /** LSPID hop (0x0804). */
    struct {
        uint16_t usReserved;     /**< reserved */
        uint16_t usLocalCrLspId; /**< local CR-LSP ID */
        uint32_t ulIngressLsrId; /**< ingress LSR router ID */
    } __attribute__((packed)) stLspId;
    uint8_t aucRaw[20]; /**< the body as bytes */
} __attribute__((packed)) LDP_ErHopBody;

/** @brief One ER-hop, a list element of LDP_ErTlv::stHopList (a plain block
 * from the platform allocator). */
typedef struct LDP_ErHop {
    SLL_Node stNode;           /**< list link */
    LDP_TlvHeader stTlvHeader; /**< the hop's TLV header */
    LDP_ErHopBody unHopBody;   /**< the hop's body */
    uint16_t usHopKind;        /**< form written: 0x0801 IPv4 prefix, 0x0802 IPv6 prefix, 0x0803 AS number, 0x0804 LSPID */
} __attribute__((packed)) LDP_ErHop;

/** @brief CR-LDP Explicit Route (sent only): the hops in wire order. */
typedef struct LDP_ErTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header */
    SLL_List stHopList;        /**< owned LDP_ErHop elements */
} __attribute__((packed)) LDP_ErTlv;

/** @brief A received TLV kept for forwarding (list element of a message's
 * stUnknTlvList): the whole TLV, header included, in wire order. */
typedef struct LDP_UnknownTlv {
    SLL_Node stNode;   /**< list link */
    uint32_t ulTlvLen; /**< bytes at pucTlv: 4 + value length */
    uint8_t *pucTlv;   /**< owned copy of the TLV as received */
} __attribute__((packed)) LDP_UnknownTlv;

/** @brief An extension TLV of the Label Mapping message with a 2-byte value,
 * host order (types 0x0601 and 0x0900). */
typedef struct LDP_ShortTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 2 */
    uint16_t usValue;          /**< the value */
} __attribute__((packed)) LDP_ShortTlv;

/** @brief An extension TLV with an owned value of usTlvLen bytes (4 for the
 * word form), wire order. */
typedef struct LDP_PtrTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; the type is the application's */
    uint8_t *pucValue;         /**< owned value, wire order */
} __attribute__((packed)) LDP_PtrTlv;

/** @brief The vendor-private TLV 0x3E0A: 2 bytes as received. */
typedef struct LDP_PrivTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; value length 2 */
    uint8_t aucValue[2];       /**< the value as on the wire */
} __attribute__((packed)) LDP_PrivTlv;

/** @brief Label Mapping (0x0400, RFC 5036 section 3.5.7).
 *
 * A FEC TLV and a Generic Label TLV are mandatory; TLVs come in any order.
 * Every FEC TLV adds its elements to stFecTlv; the other known TLVs count on
 * their first occurrence; unknown TLVs with the U and F bits are kept for
 * forwarding. The decoder never sets LDP_MAP_OPT_LSPID, LDP_MAP_OPT_TRAFFIC,
 * LDP_MAP_OPT_WORD_PTR or LDP_MAP_OPT_VAR_PTR: those TLVs are only sent. The
 * record owns the FEC elements, the Path Vector array, the two pointer
 * values and the kept unknown TLVs. */
typedef struct LDP_LabelMappingMsg {
    LDP_MsgHeader stMsgHeader;          /**< message header */
    LDP_FecTlv stFecTlv;                /**< FEC TLV with owned elements */
    LDP_LabelTlv stLabelTlv;            /**< Label TLV (Generic on receipt) */
    LDP_LblReqMsgIdTlv stLabelReqIdTlv; /**< Label Request Message ID */
    LDP_LspIdTlv stLspIdTlv;            /**< LSPID (sent only) */
    LDP_HopCountTlv stHopCountTlv;      /**< Hop Count */
    LDP_PathVectorTlv stPathVectorTlv;  /**< Path Vector */
    LDP_TrafficTlv stTrafficTlv;        /**< Traffic Parameters (sent only) */
    LDP_ShortTlv stShortTlv;            /**< TLV 0x0601 or 0x0900 (one slot for both) */
    LDP_PtrTlv stWordPtrTlv;            /**< an application TLV with a 4-byte value (sent only) */
    LDP_PtrTlv stVarPtrTlv;             /**< an application TLV of usTlvLen bytes (sent only) */
    LDP_MpStatusTlv stMpStatusTlv;      /**< MP Status */
    SLL_List stUnknTlvList;             /**< owned LDP_UnknownTlv elements */
    LDP_PrivTlv stPrivTlv;              /**< vendor-private 0x3E0A */
    LDP_TlvHeader stEmptyTlv;           /**< TLV 0x0206 (empty value) */
    uint8_t ucOptFlags1;                /**< LDP_MAP_OPT_* */
    uint8_t ucOptFlags2;                /**< LDP_MAP_OPT2_* */
} __attribute__((packed)) LDP_LabelMappingMsg;
/** @brief The Label Mapping record under its short name. */
typedef LDP_LabelMappingMsg LDP_MappingMsg;

/** @name Label Mapping presence bits
 * @{ */
#define LDP_MAP_OPT_LABEL_REQ_ID 0x01u /**< ucOptFlags1: Label Request Message ID */
#define LDP_MAP_OPT_LSPID        0x02u /**< ucOptFlags1: LSPID */
#define LDP_MAP_OPT_HOP_COUNT    0x04u /**< ucOptFlags1: Hop Count */
#define LDP_MAP_OPT_PATH_VECTOR  0x08u /**< ucOptFlags1: Path Vector */
#define LDP_MAP_OPT_TRAFFIC      0x10u /**< ucOptFlags1: Traffic Parameters */
#define LDP_MAP_OPT_SHORT        0x20u /**< ucOptFlags1: stShortTlv */
#define LDP_MAP_OPT_WORD_PTR     0x40u /**< ucOptFlags1: stWordPtrTlv */
#define LDP_MAP_OPT_VAR_PTR      0x80u /**< ucOptFlags1: stVarPtrTlv */
#define LDP_MAP_OPT2_PRIV        0x01u /**< ucOptFlags2: stPrivTlv */
#define LDP_MAP_OPT2_MP_STATUS   0x02u /**< ucOptFlags2: MP Status */
#define LDP_MAP_OPT2_EMPTY       0x04u /**< ucOptFlags2: stEmptyTlv (TLV 0x0206) */
/** @} */

/** @brief Check a received Label Mapping without allocating.
 *
 * Every FEC TLV is checked; the other known TLVs on their first occurrence
 * only, except TLV 0x0206, checked every time.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 17, or no FEC or
 *                                       no Generic Label TLV (judged after
 *                                       the walk)
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_MALFORMED_TLV      Generic Label or Label Request Message
 *                                       ID not 4 bytes; Hop Count not 1; Path
 *                                       Vector empty or not whole LSR Ids;
 *                                       TLV 0x0601/0x0900 or vendor-private
 *                                       not 2; TLV 0x0206 not empty; an MP
 *                                       Status that LDP_PreParseMpStatusTlv refuses
 * @retval LDP_STATUS_UNKNOWN_TLV        any other TLV without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also any code of LDP_PreParseFECTlv, LDP_STOP_WALK included (a
 *         pseudowire FEC element: LDP_Decode then returns no record) */
LDP_API uint32_t LDP_PreParseMappingMsg(const uint8_t *pucMsg);
/** @brief Decode a received Label Mapping into its record.
 *
 * The same walk as the pre-parse. A refused MP Status TLV is passed over (a
 * later one may still be taken). Unknown TLVs with the U and F bits are
 * copied into stUnknTlvList.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record with empty lists
 * @param ulMemModuleId memory module ID for everything the record gets
 * @return the codes of the pre-parse (LDP_ERR_PARAM also for a NULL record;
 *         LDP_STATUS_MISSING_MSG_PARAMS also when the FEC TLVs gave no
 *         element), and the codes of LDP_DecodeFECTlv,
 *         LDP_DecodePathVectorTlv and LDP_DecodeUnknownTlv
 *         (LDP_ERR_NO_MEMORY, LDP_STOP_WALK, ...) */
LDP_API uint32_t LDP_DecodeMappingMsg(const uint8_t *pucMsg, LDP_MappingMsg *pMsgRecord, uint32_t ulMemModuleId);
/** @brief Encode a Label Mapping.
 *
 * Writes the header, the FEC TLV and the Label TLV, then whatever is flagged
 * in this order: Label Request Message ID, LSPID, Hop Count, Path Vector,
 * Traffic, stShortTlv, stWordPtrTlv, stVarPtrTlv, MP Status, TLV 0x0206,
 * the kept unknown TLVs, and last the vendor-private TLV, which is written
 * where the unknown TLVs began and so covers their first six bytes (kept
 * so on purpose). The record stays the caller's.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing TLV encoder (e.g. an empty FEC list or a
 *                       label kind it cannot write), or no room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeMappingMsg(uint8_t *pucBuf, LDP_MappingMsg *pMsgRecord, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
/** @brief Release what a Label Mapping record owns: the kept unknown TLVs,
 * the FEC elements, the Path Vector array (its bit stays) and the two pointer
 * values (clearing their bits); the lists are left empty and the record
 * itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeLabelMappingMsg(LDP_MappingMsg *pMsgRecord);

/** @name Label Request presence bits
 * The extension slots carry whatever TLV type the application stores in
 * their headers; the library gives them no meaning.
 * @{ */
#define LDP_REQ_OPT_LABEL       0x01u /**< ucOptFlags1: Label */
#define LDP_REQ_OPT_LSPID       0x02u /**< ucOptFlags1: LSPID (sent only) */
#define LDP_REQ_OPT_ER          0x04u /**< ucOptFlags1: ER (sent only) */
#define LDP_REQ_OPT_HOP_COUNT   0x08u /**< ucOptFlags1: Hop Count */
#define LDP_REQ_OPT_PATH_VECTOR 0x10u /**< ucOptFlags1: Path Vector */
#define LDP_REQ_OPT_TRAFFIC     0x20u /**< ucOptFlags1: Traffic (sent only) */
#define LDP_REQ_OPT_WORD_A      0x40u /**< ucOptFlags1: stWordTlvA (sent only) */
#define LDP_REQ_OPT_WORD_B      0x80u /**< ucOptFlags1: stWordTlvB (sent only) */
#define LDP_REQ_OPT2_RAW_WORD   0x01u /**< ucOptFlags2: stRawWordTlv (sent only) */
#define LDP_REQ_OPT2_WORD_C     0x02u /**< ucOptFlags2: stWordTlvC (sent only) */
#define LDP_REQ_OPT2_VAR_PTR    0x04u /**< ucOptFlags2: stVarPtrTlv (sent only) */
/** @} */

/** @brief An extension TLV with a 4-byte integer value, host order. */
typedef struct LDP_WordTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; the type is the application's */
    uint32_t ulValue;          /**< the value */
} __attribute__((packed)) LDP_WordTlv;

/** @brief An extension TLV with 4 value bytes, wire order. */
typedef struct LDP_RawWordTlv {
    LDP_TlvHeader stTlvHeader; /**< TLV header; the type is the application's */
    uint8_t aucValue[4];       /**< the value as on the wire */
} __attribute__((packed)) LDP_RawWordTlv;

/** @brief Label Request (0x0401, RFC 5036 section 3.5.8).
 *
 * Asks the peer for a label for one FEC (downstream on demand). The decoder
 * reads the FEC, Generic Label, Hop Count and Path Vector TLVs and keeps
 * unknown TLVs that have the U and F bits. What CR-LDP adds (LSPID, ER,
 * Traffic) and the extension slots go out from the record only; a peer's
 * copies of them meet the unknown-TLV rule. The record owns the FEC
 * elements, the Path Vector array, the ER hops, the unknown-TLV elements
 * with their copies, and stVarPtrTlv.pucValue. */
typedef struct LDP_LabelRequestMsg {
    LDP_MsgHeader stMsgHeader;         /**< message header */
    LDP_FecTlv stFecTlv;               /**< FEC TLV with owned elements */
    LDP_LabelTlv stLabelTlv;           /**< Label TLV */
    LDP_LspIdTlv stLspIdTlv;           /**< LSPID (sent only) */
    LDP_ErTlv stErTlv;                 /**< Explicit Route with owned hops (sent only) */
    LDP_HopCountTlv stHopCountTlv;     /**< Hop Count */
    LDP_PathVectorTlv stPathVectorTlv; /**< Path Vector */
    LDP_TrafficTlv stTrafficTlv;       /**< Traffic Parameters (sent only) */
    LDP_WordTlv stWordTlvA;            /**< extension slot A (sent only) */
    LDP_WordTlv stWordTlvB;            /**< extension slot B (sent only) */
    LDP_RawWordTlv stRawWordTlv;       /**< extension slot with raw bytes (sent only) */
    LDP_WordTlv stWordTlvC;            /**< extension slot C (sent only) */
    LDP_PtrTlv stVarPtrTlv;            /**< extension slot of usTlvLen owned bytes (sent only) */
    SLL_List stUnknTlvList;            /**< owned LDP_UnknownTlv elements */
    uint8_t ucOptFlags1;               /**< LDP_REQ_OPT_* */
    uint8_t ucOptFlags2;               /**< LDP_REQ_OPT2_* */
} __attribute__((packed)) LDP_LabelRequestMsg;
/** @brief The Label Request record under its short name. */
typedef LDP_LabelRequestMsg LDP_RequestMsg;

/** @brief Check a received Label Request without allocating.
 *
 * TLVs may come in any order; the FEC, Hop Count, Path Vector and Generic
 * Label TLVs are checked on their first occurrence only. Every wrong TLV
 * length is a length error here, where the decoder says malformed.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 9, or no FEC TLV
 *                                       (judged after the walk)
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, 1 to 3
 *                                       bytes left over, or a Hop Count not 1
 *                                       byte, a Path Vector empty or not whole
 *                                       LSR Ids, a Generic Label not 4 bytes
 * @retval LDP_STATUS_UNKNOWN_TLV        an unknown TLV without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also any code of LDP_PreParseFECTlv, LDP_STOP_WALK included */
LDP_API uint32_t LDP_PreParseRequestMsg(const uint8_t *pucMsg);
/** @brief Decode a received Label Request into its record.
 *
 * Only the first FEC, Label, Hop Count and Path Vector TLVs are kept; an
 * unknown TLV with the U and F bits is copied into stUnknTlvList.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record with empty lists
 * @param ulMemModuleId memory module ID for everything the record gets
 * @return the codes of the pre-parse (LDP_ERR_PARAM also for a NULL record),
 *         except that a wrong Hop Count, Path Vector or Label length is
 *         LDP_STATUS_MALFORMED_TLV and a missing FEC is judged by an empty
 *         element list; and the codes of LDP_DecodeFECTlv,
 *         LDP_DecodePathVectorTlv and LDP_DecodeUnknownTlv
 *         (LDP_ERR_NO_MEMORY, LDP_STOP_WALK, ...) */
LDP_API uint32_t LDP_DecodeRequestMsg(const uint8_t *pucMsg, LDP_RequestMsg *pMsgRecord,
                                      uint32_t ulMemModuleId);
/** @brief Encode a Label Request.
 *
 * Writes the header and the FEC TLV, then in this order whatever is flagged:
 * Label, LSPID, Hop Count, Path Vector, ER, Traffic, stWordTlvA,
 * stWordTlvC, stWordTlvB, stRawWordTlv, stVarPtrTlv, and last the kept
 * unknown TLVs. The record stays the caller's.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing TLV encoder, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeReqMsg(uint8_t *pucBuf, LDP_RequestMsg *pMsgRecord, uint32_t ulMemModuleId,
                                  uint16_t usRoom);
/** @brief Release what a Label Request record owns (FEC elements, Path Vector
 * array, ER hops, kept unknown TLVs, stVarPtrTlv.pucValue) and leave its
 * lists empty; the Path Vector bit stays, the stVarPtrTlv bit is cleared,
 * and the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeLabelRequestMsg(LDP_RequestMsg *pMsgRecord);

/** @name Label Withdraw presence bits (ucLblFlags)
 * @{ */
#define LDP_WDR_FLAG_LSPID 0x01u /**< write stLspIdTlv (sent only) */
#define LDP_WDR_FLAG_LABEL 0x02u /**< Label TLV held / to write */
/** @} */

/** @brief Label Withdraw (0x0402, RFC 5036 section 3.5.10).
 *
 * A FEC TLV and an optional Generic Label TLV, in any order; unknown TLVs
 * with the U and F bits are kept for forwarding. stLspIdTlv is only sent:
 * the caller sets it and its bit. The record owns its FEC elements and its
 * kept unknown TLVs (with their copies). */
typedef struct LDP_LabelWithdrawMsg {
    LDP_MsgHeader stMsgHeader; /**< message header */
    LDP_FecTlv stFecTlv;       /**< FEC TLV with owned elements */
    LDP_LspIdTlv stLspIdTlv;   /**< LSPID (sent only) */
    LDP_LabelTlv stLabelTlv;   /**< Label TLV (on receipt only the high byte of usLabelKind is set) */
    SLL_List stUnknTlvList;    /**< owned LDP_UnknownTlv elements */
    uint8_t ucLblFlags;        /**< LDP_WDR_FLAG_* */
} __attribute__((packed)) LDP_LabelWithdrawMsg;

/** @brief Check a received Label Withdraw without allocating.
 *
 * The first FEC and the first Generic Label TLV are checked, later ones
 * skipped.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length 8 or less, or no FEC TLV
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, 1 to 3
 *                                       bytes left over, or a Label TLV whose
 *                                       length is not 4
 * @retval LDP_STATUS_UNKNOWN_TLV        any other TLV, Status included, without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also any code of LDP_PreParseFECTlv, LDP_STOP_WALK included */
LDP_API uint32_t LDP_PreParseWithdrawMsg(const uint8_t *pucMsg);
/** @brief Decode a received Label Withdraw into its record.
 *
 * The first FEC and Generic Label TLVs are kept; unknown TLVs with the U and
 * F bits are copied into stUnknTlvList.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record with empty lists
 * @param ulMemModuleId memory module ID for everything the record gets
 * @return the codes of the pre-parse (LDP_ERR_PARAM also for a NULL record),
 *         except that a Label TLV whose length is not 4 is
 *         LDP_STATUS_MALFORMED_TLV and a missing FEC TLV is LDP_OK; and the
 *         codes of LDP_DecodeFECTlv and LDP_DecodeUnknownTlv
 *         (LDP_ERR_NO_MEMORY, LDP_STOP_WALK, ...) */
LDP_API uint32_t LDP_DecodeWithdrawMsg(const uint8_t *pucMsg, LDP_LabelWithdrawMsg *pMsgRecord,
                                       uint32_t ulMemModuleId);
/** @brief Encode a Label Withdraw: the header, the FEC TLV, then when flagged
 * the Label and LSPID TLVs, then the kept unknown TLVs. The record stays
 * the caller's.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing TLV encoder, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeWithdrawMsg(uint8_t *pucBuf, LDP_LabelWithdrawMsg *pMsgRecord,
                                       uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Release the FEC elements and kept unknown TLVs; presence bits stay
 * and the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeLabelWithdrawMsg(LDP_LabelWithdrawMsg *pMsgRecord);

#define LDP_ABORT_FLAG_LSPID 0x01u /**< ucAbortFlags: write stLspIdTlv */

/** @brief Label Abort Request (0x0404, RFC 5036 section 3.5.9).
 *
 * Names an FEC and, in a Label Request Message ID TLV, the request to give
 * up; both are mandatory and may come in either order. stLspIdTlv is only
 * sent; a received LSPID TLV is refused as unknown. Nothing enters
 * stUnknTlvList on decode and the encoder never writes it. The record owns
 * the FEC elements (and anything a caller put in stUnknTlvList). */
typedef struct LDP_LabelRequestAbortMsg {
    LDP_MsgHeader stMsgHeader;     /**< message header */
    LDP_FecTlv stFecTlv;           /**< FEC TLV with owned elements */
    LDP_TlvHeader stLabelReqIdTlv; /**< Label Request Message ID TLV header */
    uint32_t ulLabelReqMsgId;      /**< message ID of the request being aborted */
    LDP_LspIdTlv stLspIdTlv;       /**< LSPID (sent only) */
    SLL_List stUnknTlvList;        /**< LDP_UnknownTlv elements; left empty by decode */
    uint8_t ucAbortFlags;          /**< LDP_ABORT_FLAG_* */
} __attribute__((packed)) LDP_LabelRequestAbortMsg;

/** @brief Check a received Label Abort Request without allocating.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 17, or the FEC or
 *                                       Label Request Message ID TLV missing
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes left over
 * @retval LDP_STATUS_MALFORMED_TLV      the first Label Request Message ID TLV
 *                                       is not 4 bytes long
 * @retval LDP_STATUS_UNKNOWN_TLV        any other TLV, LSPID included, without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also any code of LDP_PreParseFECTlv for the first FEC TLV,
 *         LDP_STOP_WALK included */
LDP_API uint32_t LDP_PreParseReqAbortMsg(const uint8_t *pucMsg);
/** @brief Decode a received Label Abort Request into its record: the first
 * FEC TLV and the first Label Request Message ID TLV (its header kept even
 * when its length is wrong).
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record with empty lists
 * @param ulMemModuleId memory module ID for the FEC elements
 * @return the codes of the pre-parse (LDP_ERR_PARAM also for a NULL record),
 *         with those of LDP_DecodeFECTlv in place of LDP_PreParseFECTlv
 *         (LDP_ERR_NO_MEMORY, ...) */
LDP_API uint32_t LDP_DecodeReqAbortMsg(const uint8_t *pucMsg, LDP_LabelRequestAbortMsg *pMsgRecord,
                                       uint32_t ulMemModuleId);
/** @brief Encode a Label Abort Request: the header, the FEC TLV, the Label
 * Request Message ID TLV and, when flagged, the LSPID TLV. The record stays
 * the caller's; its stLabelReqIdTlv.usTlvType and ulLabelReqMsgId are left
 * in network order.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing TLV encoder, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeAbortReqMsg(uint8_t *pucBuf, LDP_LabelRequestAbortMsg *pMsgRecord,
                                       uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Release the FEC elements and any kept unknown TLVs; the record
 * itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeLabelRequestAbortMsg(LDP_LabelRequestAbortMsg *pMsgRecord);

/** @brief Write a Label TLV: the header as stored, then the label in the form
 * usLabelKind selects (one word, or the ATM halves), as the record holds it
 * (no 20-bit mask).
 * @param pucBuf        output
 * @param pstLabel      the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        8 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, a usLabelKind other than the three
 *                       label types (nothing written), or no room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeLabelTlv(uint8_t *pucBuf, LDP_LabelTlv *pstLabel, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
/** @brief Decode the value of a Path Vector TLV into a new array of LSR Ids
 * (host order) owned by the record.
 * @param pucValue      the value on the wire
 * @param pstPathVector the TLV; stTlvHeader must hold the header
 * @param ulMemModuleId memory module ID for the array
 * @retval LDP_OK                   decoded (a count of 256 or more wraps in
 *                                  usLsrIdCount, and only that many are converted)
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is 0 or not a multiple of 4
 * @retval LDP_ERR_NO_MEMORY        no memory for the array (usLsrIdCount is already set) */
LDP_API uint32_t LDP_DecodePathVectorTlv(const uint8_t *pucValue, LDP_PathVectorTlv *pstPathVector,
                                         uint32_t ulMemModuleId);
/** @brief Write a Path Vector TLV: the header as stored, then usLsrIdCount LSR
 * Ids in network order.
 * @param pucBuf        output
 * @param pstPathVector the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer or no room for the header (both with an
 *                       assertion); a NULL pulLsrId with a nonzero count; or
 *                       no room for the Ids (with an assertion) */
LDP_API uint32_t LDP_EncodePathVectorTlv(uint8_t *pucBuf, LDP_PathVectorTlv *pstPathVector,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write an LSPID TLV: the header as stored, then the 8 value bytes
 * (left in network order in the record).
 * @param pucBuf        output
 * @param pstLspId      the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        12 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeLSPIdTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspId, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
/** @brief Write an LSPID ER-hop; the same as LDP_EncodeLSPIdTlv.
 * @param pucBuf        output
 * @param pstLspIdHop   the hop, read from its TLV header on
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        12 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeLSPIdERHopTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspIdHop,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write a Traffic Parameters TLV: the header as stored, then the 24
 * value bytes (left in network order in the record).
 * @param pucBuf        output
 * @param pstTraffic    the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        28 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeTrafficTlv(uint8_t *pucBuf, LDP_TrafficTlv *pstTraffic, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
/** @brief Write an Explicit Route TLV: the header as stored, then each hop in
 * the form its usHopKind selects. An LSPID hop's own result is ignored and
 * the walk moves on by 12 bytes whatever happened.
 * @param pucBuf        output
 * @param pstEr         the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer; an empty hop list (after the header is
 *                       written); a hop of another kind; or no room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeERTlv(uint8_t *pucBuf, LDP_ErTlv *pstEr, uint32_t ulMemModuleId, uint16_t usRoom);

/** @brief Keep a received TLV for forwarding by appending a copy to a list.
 * @param pucValue      the TLV's value on the wire; its header is the 4 bytes before it
 * @param pstList       the list (stUnknTlvList)
 * @param usValueLen    the value length
 * @param ulMemModuleId memory module ID for the element and the copy
 * @retval LDP_OK            appended: a new LDP_UnknownTlv holding a copy of
 *                           the whole TLV
 * @retval LDP_ERR_PARAM     a NULL pointer
 * @retval LDP_ERR_NO_MEMORY no memory for the element or the copy (nothing is left allocated) */
LDP_API uint32_t LDP_DecodeUnknownTlv(const uint8_t *pucValue, SLL_List *pstList, uint16_t usValueLen,
                                      uint32_t ulMemModuleId);
/** @brief Write every kept TLV in list order, exactly as received.
 * @param pstList       the list
 * @param pucBuf        output
 * @param ulMemModuleId not used
 * @param pusRoom       bytes writable at pucBuf; lowered by what was written
 * @retval LDP_OK        written (nothing for an empty list)
 * @retval LDP_ERR_PARAM a NULL pointer, or a TLV that does not fit (with an assertion) */
LDP_API uint32_t LDP_ProcUnknTlvList(SLL_List *pstList, uint8_t *pucBuf, uint32_t ulMemModuleId,
                                     uint16_t *pusRoom);

/** @name Label Release presence bits (ucLblFlags)
 * @{ */
#define LDP_REL_FLAG_LSPID  0x01u /**< write stLspIdTlv (sent only) */
#define LDP_REL_FLAG_STATUS 0x02u /**< Status TLV held / to write */
#define LDP_REL_FLAG_LABEL  0x04u /**< Label TLV held / to write */
/** @} */

/** @brief Label Release (0x0403, RFC 5036 section 3.5.11).
 *
 * Like a Label Withdraw, plus an optional Status TLV; a status of 40, the
 * pseudowire status of RFC 4447, is left to the caller: pre-parse and
 * decode give LDP_STOP_WALK. The record owns its FEC elements and its kept
 * unknown TLVs. */
typedef struct LDP_LabelReleaseMsg {
    LDP_MsgHeader stMsgHeader; /**< message header */
    LDP_FecTlv stFecTlv;       /**< FEC TLV with owned elements */
    LDP_LspIdTlv stLspIdTlv;   /**< LSPID (sent only) */
    LDP_LabelTlv stLabelTlv;   /**< Label TLV */
    LDP_StatusTlv stStatusTlv; /**< Status TLV */
    SLL_List stUnknTlvList;    /**< owned LDP_UnknownTlv elements */
    uint8_t ucLblFlags;        /**< LDP_REL_FLAG_* */
} __attribute__((packed)) LDP_LabelReleaseMsg;

/** @brief Check a received Label Release without allocating: as
 * LDP_PreParseWithdrawMsg, except that the first Status TLV is decoded into a
 * scratch record by LDP_DecodeStatusTlv; later Status TLVs are skipped.
 * @param pucMsg the message on the wire
 * @return the codes of LDP_PreParseWithdrawMsg (a Status TLV is no longer
 *         unknown), plus LDP_STATUS_MALFORMED_TLV for a Status value not 10
 *         bytes long and LDP_STOP_WALK for the pseudowire status (LDP_Decode
 *         then returns no record) */
LDP_API uint32_t LDP_PreParseReleaseMsg(const uint8_t *pucMsg);
/** @brief Decode a received Label Release into its record: as
 * LDP_DecodeWithdrawMsg, plus the first Status TLV into stStatusTlv.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record with empty lists
 * @param ulMemModuleId memory module ID for everything the record gets
 * @return the codes of LDP_DecodeWithdrawMsg, plus LDP_DecodeStatusTlv's
 *         non-zero code: LDP_STATUS_MALFORMED_TLV, or LDP_STOP_WALK with the
 *         Status TLV filled (its presence bit left clear) */
LDP_API uint32_t LDP_DecodeReleaseMsg(const uint8_t *pucMsg, LDP_LabelReleaseMsg *pMsgRecord,
                                      uint32_t ulMemModuleId);
/** @brief Encode a Label Release: as LDP_EncodeWithdrawMsg, with the flagged
 * Status TLV after the LSPID TLV. A failure of the Status TLV encoder is
 * ignored (the walk moves on by 14 bytes).
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing FEC, Label, LSPID or unknown-TLV encoder,
 *                       or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeReleaseMsg(uint8_t *pucBuf, LDP_LabelReleaseMsg *pMsgRecord, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
/** @brief Release the FEC elements and kept unknown TLVs; presence bits stay
 * and the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeLabelReleaseMsg(LDP_LabelReleaseMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_LABEL_H */
