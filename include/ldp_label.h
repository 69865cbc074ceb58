/* Five LDP messages about labels (Mapping; Request and its Abort; Withdraw;
 * Release) and the TLVs they share with each other and the Notification:
 * Label, Hop Count, Path Vector, the ID of a Label Request, CR-LDP LSPID,
 * Traffic and ER (RFC 3212), and the list of unknown TLVs kept for
 * forwarding. Include ldp_codec.h rather than this file.
 *
 * Encoders here write each TLV header from the record as it stands and swap
 * the record's fields to network order in place; only usTlvLen is swapped
 * back, so a record can be encoded once. */
#ifndef LDP_LABEL_H
#define LDP_LABEL_H

#include "ldp_fec.h"
#include "ldp_status.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Label TLV: Generic (0x0200), ATM (0x0201) or Frame Relay (0x0202). The four
 * value bytes are one u32 (Generic, Frame Relay) or, for ATM, two u16 halves:
 * VPI with its Res/V bits first, then VCI. usLabelKind selects the form the
 * encoder writes; the header's type is written as it stands. */
typedef struct LDP_LabelTlv {
    LDP_TlvHeader stTlvHeader;
    __extension__ union {
        uint32_t ulLabel;
        __extension__ struct {
            uint16_t usVpi;
            uint16_t usVci;
        } __attribute__((packed));
    } __attribute__((packed));
    uint16_t usLabelKind;
} __attribute__((packed)) LDP_LabelTlv;

/* Label Request Message ID (0x0600): value is the 4-byte message ID. */
typedef struct LDP_LblReqMsgIdTlv {
    LDP_TlvHeader stTlvHeader;
    uint32_t ulReqMsgId;
} __attribute__((packed)) LDP_LblReqMsgIdTlv;

/* Hop Count (0x0103): value is one byte. */
typedef struct LDP_HopCountTlv {
    LDP_TlvHeader stTlvHeader;
    uint8_t ucHopCount;
} __attribute__((packed)) LDP_HopCountTlv;

/* Path Vector (0x0104): LSR Ids in host order, in an owned array. */
typedef struct LDP_PathVectorTlv {
    LDP_TlvHeader stTlvHeader;
    uint32_t *pulLsrId;
    uint16_t usLsrIdCount;
} __attribute__((packed)) LDP_PathVectorTlv;

/* CR-LDP LSPID (0x0821), also the form of the LSPID ER-hop (0x0804). */
typedef struct LDP_LspIdTlv {
    LDP_TlvHeader stTlvHeader;
    uint16_t usReserved;
    uint16_t usLocalCrLspId;
    uint32_t ulIngressLsrId;
} __attribute__((packed)) LDP_LspIdTlv;

/* CR-LDP Traffic Parameters. The five rates and sizes are 32-bit IEEE
 * floats kept as their bit patterns. */
typedef struct LDP_TrafficTlv {
    LDP_TlvHeader stTlvHeader;
    uint8_t ucFlags;
    uint8_t ucFrequency;
    uint8_t ucReserved;
    uint8_t ucWeight;
    uint32_t ulPdr;
    uint32_t ulPbs;
    uint32_t ulCdr;
    uint32_t ulCbs;
    uint32_t ulEbs;
} __attribute__((packed)) LDP_TrafficTlv;

/* Body of one ER-hop, after its TLV header (20 bytes, room for the IPv6
 * form). The LSPID form continues the hop's header exactly as an
 * LDP_LspIdTlv does, so &hop->stTlvHeader can be read as an LDP_LspIdTlv. */
typedef union LDP_ErHopBody {
    struct {
        uint32_t ulFlagsPreLen; /* L bit (bit 31), reserved, prefix length (bits 7-0) */
        uint32_t ulIpv4Addr;    /* host order */
    } __attribute__((packed)) stIpv4;
    struct {
        uint32_t ulFlagsPreLen;
        uint8_t aucIpv6Addr[16]; /* as on the wire */
    } __attribute__((packed)) stIpv6;
    struct {
        uint16_t usFlags; /* L bit (bit 15), reserved */
        uint16_t usAsNumber;
    } __attribute__((packed)) stAs;
    struct {
        uint16_t usReserved;
        uint16_t usLocalCrLspId;
        uint32_t ulIngressLsrId;
    } __attribute__((packed)) stLspId;
    uint8_t aucRaw[20];
} __attribute__((packed)) LDP_ErHopBody;

/* One ER-hop (list element of LDP_ErTlv.stHopList). usHopKind (0x0801 IPv4
 * prefix, 0x0802 IPv6 prefix, 0x0803 AS number, 0x0804 LSPID) selects the
 * form the encoder writes. */
typedef struct LDP_ErHop {
    SLL_Node stNode;
    LDP_TlvHeader stTlvHeader;
    LDP_ErHopBody unHopBody;
    uint16_t usHopKind;
} __attribute__((packed)) LDP_ErHop;

/* CR-LDP Explicit Route: the hops in wire order. */
typedef struct LDP_ErTlv {
    LDP_TlvHeader stTlvHeader;
    SLL_List stHopList;
} __attribute__((packed)) LDP_ErTlv;

/* A received TLV kept for forwarding (list element of a message's
 * stUnknTlvList): the whole TLV, header included, in wire order. */
typedef struct LDP_UnknownTlv {
    SLL_Node stNode;
    uint32_t ulTlvLen; /* bytes at pucTlv: 4 + value length */
    uint8_t *pucTlv;
} __attribute__((packed)) LDP_UnknownTlv;

/* Small extension TLVs of the Label Mapping message. */
typedef struct LDP_ShortTlv { /* a 2-byte value, host order (types 0x0601, 0x0900) */
    LDP_TlvHeader stTlvHeader;
    uint16_t usValue;
} __attribute__((packed)) LDP_ShortTlv;

typedef struct LDP_PtrTlv { /* an owned value of usTlvLen bytes (4 for the word form), wire order */
    LDP_TlvHeader stTlvHeader;
    uint8_t *pucValue;
} __attribute__((packed)) LDP_PtrTlv;

typedef struct LDP_PrivTlv { /* vendor-private 0x3E0A: 2 bytes as received */
    LDP_TlvHeader stTlvHeader;
    uint8_t aucValue[2];
} __attribute__((packed)) LDP_PrivTlv;

/* Label Mapping (0x0400). Presence bits: ucOptFlags1 0x01 Label Request
 * Message ID, 0x02 LSPID, 0x04 Hop Count, 0x08 Path Vector, 0x10 Traffic,
 * 0x20 stShortTlv, 0x40 stWordPtrTlv, 0x80 stVarPtrTlv; ucOptFlags2 0x01
 * stPrivTlv, 0x02 MP Status, 0x04 stEmptyTlv (TLV 0x0206). The decoder never
 * sets 0x02, 0x10, 0x40 or 0x80 of ucOptFlags1: those TLVs are only sent. */
typedef struct LDP_LabelMappingMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_FecTlv stFecTlv;
    LDP_LabelTlv stLabelTlv;
    LDP_LblReqMsgIdTlv stLabelReqIdTlv;
    LDP_LspIdTlv stLspIdTlv;
    LDP_HopCountTlv stHopCountTlv;
    LDP_PathVectorTlv stPathVectorTlv;
    LDP_TrafficTlv stTrafficTlv;
    LDP_ShortTlv stShortTlv;
    LDP_PtrTlv stWordPtrTlv;
    LDP_PtrTlv stVarPtrTlv;
    LDP_MpStatusTlv stMpStatusTlv;
    SLL_List stUnknTlvList; /* of LDP_UnknownTlv */
    LDP_PrivTlv stPrivTlv;
    LDP_TlvHeader stEmptyTlv;
    uint8_t ucOptFlags1;
    uint8_t ucOptFlags2;
} __attribute__((packed)) LDP_LabelMappingMsg;
typedef LDP_LabelMappingMsg LDP_MappingMsg;

#define LDP_MAP_OPT_LABEL_REQ_ID 0x01u
#define LDP_MAP_OPT_LSPID        0x02u
#define LDP_MAP_OPT_HOP_COUNT    0x04u
#define LDP_MAP_OPT_PATH_VECTOR  0x08u
#define LDP_MAP_OPT_TRAFFIC      0x10u
#define LDP_MAP_OPT_SHORT        0x20u
#define LDP_MAP_OPT_WORD_PTR     0x40u
#define LDP_MAP_OPT_VAR_PTR      0x80u
#define LDP_MAP_OPT2_PRIV        0x01u
#define LDP_MAP_OPT2_MP_STATUS   0x02u
#define LDP_MAP_OPT2_EMPTY       0x04u

LDP_API uint32_t LDP_PreParseMappingMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeMappingMsg(const uint8_t *pucMsg, LDP_MappingMsg *pMsgRecord, uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeMappingMsg(uint8_t *pucBuf, LDP_MappingMsg *pMsgRecord, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
LDP_API void LDP_FreeLabelMappingMsg(LDP_MappingMsg *pMsgRecord);

/* --- Label Request (0x0401, RFC 5036 section 3.5.8) -------------------------
 * Asks the peer for a label for one FEC (downstream on demand). The decoder
 * reads the FEC, Generic Label, Hop Count and Path Vector TLVs and keeps
 * unknown TLVs that have the U and F bits. What CR-LDP adds (LSPID, ER,
 * Traffic) and the extension slots below go out from the record only; a
 * peer's copies of them meet the unknown-TLV rule.
 *
 * Presence bits, ucOptFlags1: 0x01 Label, 0x02 LSPID, 0x04 ER, 0x08 Hop
 * Count, 0x10 Path Vector, 0x20 Traffic, 0x40 stWordTlvA, 0x80 stWordTlvB;
 * ucOptFlags2: 0x01 stRawWordTlv, 0x02 stWordTlvC, 0x04 stVarPtrTlv. The
 * extension slots carry whatever TLV type the application stores in their
 * headers; the library gives them no meaning.
 *
 * The record owns the FEC elements, the Path Vector array, the ER hops
 * (plain LDP_ErHop blocks from the platform allocator), the unknown-TLV
 * elements with their copies, and stVarPtrTlv.pucValue. */
#define LDP_REQ_OPT_LABEL       0x01u
#define LDP_REQ_OPT_LSPID       0x02u
#define LDP_REQ_OPT_ER          0x04u
#define LDP_REQ_OPT_HOP_COUNT   0x08u
#define LDP_REQ_OPT_PATH_VECTOR 0x10u
#define LDP_REQ_OPT_TRAFFIC     0x20u
#define LDP_REQ_OPT_WORD_A      0x40u
#define LDP_REQ_OPT_WORD_B      0x80u
#define LDP_REQ_OPT2_RAW_WORD   0x01u
#define LDP_REQ_OPT2_WORD_C     0x02u
#define LDP_REQ_OPT2_VAR_PTR    0x04u

typedef struct LDP_WordTlv { /* a 4-byte integer value, host order */
    LDP_TlvHeader stTlvHeader;
    uint32_t ulValue;
} __attribute__((packed)) LDP_WordTlv;

typedef struct LDP_RawWordTlv { /* 4 value bytes, wire order */
    LDP_TlvHeader stTlvHeader;
    uint8_t aucValue[4];
} __attribute__((packed)) LDP_RawWordTlv;

typedef struct LDP_LabelRequestMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_FecTlv stFecTlv;
    LDP_LabelTlv stLabelTlv;
    LDP_LspIdTlv stLspIdTlv;
    LDP_ErTlv stErTlv;
    LDP_HopCountTlv stHopCountTlv;
    LDP_PathVectorTlv stPathVectorTlv;
    LDP_TrafficTlv stTrafficTlv;
    LDP_WordTlv stWordTlvA;
    LDP_WordTlv stWordTlvB;
    LDP_RawWordTlv stRawWordTlv;
    LDP_WordTlv stWordTlvC;
    LDP_PtrTlv stVarPtrTlv;
    SLL_List stUnknTlvList; /* of LDP_UnknownTlv */
    uint8_t ucOptFlags1;
    uint8_t ucOptFlags2;
} __attribute__((packed)) LDP_LabelRequestMsg;
typedef LDP_LabelRequestMsg LDP_RequestMsg;

/* Checks a received Label Request without allocating. TLVs may come in any
 * order; the FEC, Hop Count, Path Vector and Generic Label TLVs are checked
 * on their first occurrence only. Every wrong TLV length is reported as
 * LDP_STATUS_BAD_TLV_LEN here, where the decoder says MALFORMED_TLV.
 * Returns LDP_OK; LDP_ERR_PARAM (NULL); LDP_STATUS_MISSING_MSG_PARAMS
 * (message length below 9, or no FEC TLV); LDP_STATUS_BAD_TLV_LEN (a TLV
 * overruns the message, 1 to 3 bytes left over, or a wrong Hop Count, Path
 * Vector or Label length); LDP_STATUS_UNKNOWN_TLV (an unknown TLV without
 * the U bit); LDP_STATUS_BAD_MSG_LEN (TLVs end past the message: a guard);
 * or any code of LDP_PreParseFECTlv, LDP_STOP_WALK included. */
LDP_API uint32_t LDP_PreParseRequestMsg(const uint8_t *pucMsg);
/* Decodes a received Label Request into pMsgRecord, a zeroed record whose
 * lists are empty (as LDP_Decode prepares it). Only the first FEC, Label,
 * Hop Count and Path Vector TLVs are kept; an unknown TLV with the U and F
 * bits is copied into stUnknTlvList. Whatever was filled stays in the record,
 * owned by it, on every outcome; release it with LDP_FreeMessage. Returns the
 * codes of the pre-parse, except that a wrong Hop Count, Path Vector or
 * Label length is LDP_STATUS_MALFORMED_TLV, a missing FEC is judged by an
 * empty element list, and the codes of LDP_DecodeFECTlv,
 * LDP_DecodePathVectorTlv and LDP_DecodeUnknownTlv pass through
 * (LDP_ERR_NO_MEMORY, LDP_STOP_WALK, ...). */
LDP_API uint32_t LDP_DecodeRequestMsg(const uint8_t *pucMsg, LDP_RequestMsg *pMsgRecord,
                                      uint32_t ulMemModuleId);
/* Writes the message at pucBuf (usRoom bytes): the header and the FEC TLV,
 * then in this order whatever is flagged: Label, LSPID, Hop Count, Path
 * Vector, ER, Traffic, stWordTlvA, stWordTlvC, stWordTlvB, stRawWordTlv,
 * stVarPtrTlv, and last the kept unknown TLVs. The caller sets usMsgLen (4 to
 * LDP_MAX_MSG_LEN) and every TLV length. The record is converted to network
 * order in place and can be encoded once; it stays the caller's. Returns
 * LDP_OK; LDP_ERR_PARAM for NULL, a bad usMsgLen, no room (with an
 * assertion) or a failing TLV encoder; or the code of LDP_EncodeFECTlv,
 * LDP_EncodeLabelTlv or LDP_ProcUnknTlvList. */
LDP_API uint32_t LDP_EncodeReqMsg(uint8_t *pucBuf, LDP_RequestMsg *pMsgRecord, uint32_t ulMemModuleId,
                                  uint16_t usRoom);
/* Releases what a Label Request record owns and leaves its lists empty; the
 * record itself stays. Does nothing for NULL or a record of another type. */
LDP_API void LDP_FreeLabelRequestMsg(LDP_RequestMsg *pMsgRecord);

/* --- Label Withdraw (0x0402) and Label Release (0x0403), RFC 5036 sections
 * 3.5.10 and 3.5.11 -----------------------------------------------------------
 * A FEC TLV, an optional Generic Label TLV, and (Release) an optional Status
 * TLV, in any order; unknown TLVs with the U and F bits are kept for
 * forwarding. stLspIdTlv is only sent: the caller sets it and its bit.
 * Each record owns its FEC elements and its kept unknown TLVs (with their
 * copies). */
#define LDP_WDR_FLAG_LSPID 0x01u
#define LDP_WDR_FLAG_LABEL 0x02u

typedef struct LDP_LabelWithdrawMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_FecTlv stFecTlv;
    LDP_LspIdTlv stLspIdTlv;
    LDP_LabelTlv stLabelTlv;
    SLL_List stUnknTlvList; /* of LDP_UnknownTlv */
    uint8_t ucLblFlags;     /* LDP_WDR_FLAG_* */
} __attribute__((packed)) LDP_LabelWithdrawMsg;

/* Checks a received Label Withdraw without allocating. The first FEC and the
 * first Generic Label TLV are checked, later ones skipped. Returns LDP_OK;
 * LDP_ERR_PARAM (NULL); LDP_STATUS_MISSING_MSG_PARAMS (message length 8 or
 * less, or no FEC TLV); LDP_STATUS_BAD_TLV_LEN (a TLV overruns the message,
 * 1 to 3 bytes left over, or a Label TLV whose length is not 4);
 * LDP_STATUS_UNKNOWN_TLV (any other TLV, Status included, without the U
 * bit); LDP_STATUS_BAD_MSG_LEN (a guard); or a code of LDP_PreParseFECTlv,
 * LDP_STOP_WALK included. */
LDP_API uint32_t LDP_PreParseWithdrawMsg(const uint8_t *pucMsg);
/* Decodes a received Label Withdraw into a zeroed record with empty lists.
 * No FEC TLV is not an error here. Filled parts stay with the record on
 * every outcome. Returns the pre-parse's codes, except a Label TLV whose
 * length is not 4 is LDP_STATUS_MALFORMED_TLV and a missing FEC TLV is
 * LDP_OK; the codes of LDP_DecodeFECTlv and LDP_DecodeUnknownTlv pass
 * through. */
LDP_API uint32_t LDP_DecodeWithdrawMsg(const uint8_t *pucMsg, LDP_LabelWithdrawMsg *pMsgRecord,
                                       uint32_t ulMemModuleId);
/* Writes the header, the FEC TLV, then when flagged the Label and LSPID TLVs,
 * then the kept unknown TLVs. The caller sets every length; the record is
 * converted in place and stays the caller's. Returns LDP_OK; LDP_ERR_PARAM
 * (NULL, bad usMsgLen, no room); or the code of LDP_EncodeFECTlv,
 * LDP_EncodeLabelTlv, LDP_EncodeLSPIdTlv or LDP_ProcUnknTlvList. */
LDP_API uint32_t LDP_EncodeWithdrawMsg(uint8_t *pucBuf, LDP_LabelWithdrawMsg *pMsgRecord,
                                       uint32_t ulMemModuleId, uint16_t usRoom);
/* Releases the FEC elements and kept unknown TLVs; presence bits stay. Does
 * nothing for NULL or a record of another type. */
LDP_API void LDP_FreeLabelWithdrawMsg(LDP_LabelWithdrawMsg *pMsgRecord);

/* --- Label Abort Request (0x0404, RFC 5036 section 3.5.9) ------------------
 * Names an FEC and, in a Label Request Message ID TLV, the request to give
 * up; both are mandatory and may come in either order. stLspIdTlv is only sent (bit 0x01 of
 * ucAbortFlags); a received LSPID TLV is refused as unknown. Nothing enters
 * stUnknTlvList on decode and the encoder never writes it. The record owns
 * the FEC elements (and anything a caller put in stUnknTlvList). */
#define LDP_ABORT_FLAG_LSPID 0x01u

typedef struct LDP_LabelRequestAbortMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_FecTlv stFecTlv;
    LDP_TlvHeader stLabelReqIdTlv; /* Label Request Message ID TLV header */
    uint32_t ulLabelReqMsgId;      /* message ID of the request being aborted */
    LDP_LspIdTlv stLspIdTlv;
    SLL_List stUnknTlvList; /* of LDP_UnknownTlv */
    uint8_t ucAbortFlags;   /* LDP_ABORT_FLAG_* */
} __attribute__((packed)) LDP_LabelRequestAbortMsg;

/* Checks a received Label Abort Request without allocating. Returns LDP_OK;
 * LDP_ERR_PARAM (NULL); LDP_STATUS_MISSING_MSG_PARAMS (message length below
 * 17, or the FEC or Label Request Message ID TLV missing);
 * LDP_STATUS_BAD_TLV_LEN (a TLV overruns the message, or 1 to 3 bytes left
 * over); LDP_STATUS_MALFORMED_TLV (the first Label Request Message ID TLV
 * is not 4 bytes long); LDP_STATUS_UNKNOWN_TLV (any other TLV, LSPID
 * included, without the U bit); LDP_STATUS_BAD_MSG_LEN (a guard); or a code
 * of LDP_PreParseFECTlv, LDP_STOP_WALK included. */
LDP_API uint32_t LDP_PreParseReqAbortMsg(const uint8_t *pucMsg);
/* Decodes a received Label Abort Request into a zeroed record with empty
 * lists: the first FEC TLV and the first Label Request Message ID TLV. Same
 * codes as the pre-parse, plus those of LDP_DecodeFECTlv (LDP_ERR_NO_MEMORY,
 * ...). Filled parts stay with the record on every outcome. */
LDP_API uint32_t LDP_DecodeReqAbortMsg(const uint8_t *pucMsg, LDP_LabelRequestAbortMsg *pMsgRecord,
                                       uint32_t ulMemModuleId);
/* Writes the header, the FEC TLV, the Label Request Message ID TLV and, when
 * flagged, the LSPID TLV. The record stays the caller's; its
 * stLabelReqIdTlv.usTlvType and ulLabelReqMsgId are left in network order.
 * Returns LDP_OK; LDP_ERR_PARAM (NULL, bad usMsgLen, no room, with an
 * assertion for no room); or the code of LDP_EncodeFECTlv or
 * LDP_EncodeLSPIdTlv. */
LDP_API uint32_t LDP_EncodeAbortReqMsg(uint8_t *pucBuf, LDP_LabelRequestAbortMsg *pMsgRecord,
                                       uint32_t ulMemModuleId, uint16_t usRoom);
/* Releases the FEC elements and any kept unknown TLVs. Does nothing for NULL
 * or a record of another type. */
LDP_API void LDP_FreeLabelRequestAbortMsg(LDP_LabelRequestAbortMsg *pMsgRecord);

LDP_API uint32_t LDP_EncodeLabelTlv(uint8_t *pucBuf, LDP_LabelTlv *pstLabel, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
LDP_API uint32_t LDP_DecodePathVectorTlv(const uint8_t *pucValue, LDP_PathVectorTlv *pstPathVector,
                                         uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodePathVectorTlv(uint8_t *pucBuf, LDP_PathVectorTlv *pstPathVector,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeLSPIdTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspId, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
LDP_API uint32_t LDP_EncodeLSPIdERHopTlv(uint8_t *pucBuf, LDP_LspIdTlv *pstLspIdHop,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeTrafficTlv(uint8_t *pucBuf, LDP_TrafficTlv *pstTraffic, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
LDP_API uint32_t LDP_EncodeERTlv(uint8_t *pucBuf, LDP_ErTlv *pstEr, uint32_t ulMemModuleId, uint16_t usRoom);

/* Keep the TLV whose value is at pucValue (its header is the 4 bytes before
 * it) by appending a copy to pstList. */
LDP_API uint32_t LDP_DecodeUnknownTlv(const uint8_t *pucValue, SLL_List *pstList, uint16_t usValueLen,
                                      uint32_t ulMemModuleId);
/* Write every kept TLV at pucBuf in list order; *pusRoom shrinks by what was written. */
LDP_API uint32_t LDP_ProcUnknTlvList(SLL_List *pstList, uint8_t *pucBuf, uint32_t ulMemModuleId,
                                     uint16_t *pusRoom);

/* --- Label Release (0x0403, RFC 5036 section 3.5.11) -----------------------
 * Like a Withdraw, plus an optional Status TLV (a status of 40, the
 * pseudowire status of RFC 4447, is left to the caller: pre-parse and decode
 * give LDP_STOP_WALK). The record owns its FEC elements and its kept unknown
 * TLVs. */
#define LDP_REL_FLAG_LSPID  0x01u
#define LDP_REL_FLAG_STATUS 0x02u
#define LDP_REL_FLAG_LABEL  0x04u

typedef struct LDP_LabelReleaseMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_FecTlv stFecTlv;
    LDP_LspIdTlv stLspIdTlv;
    LDP_LabelTlv stLabelTlv;
    LDP_StatusTlv stStatusTlv;
    SLL_List stUnknTlvList; /* of LDP_UnknownTlv */
    uint8_t ucLblFlags;     /* LDP_REL_FLAG_* */
} __attribute__((packed)) LDP_LabelReleaseMsg;

/* Checks a received Label Release without allocating: as
 * LDP_PreParseWithdrawMsg, except that the first Status TLV is decoded into
 * a scratch record by LDP_DecodeStatusTlv, whose LDP_STATUS_MALFORMED_TLV or
 * LDP_STOP_WALK is returned as is; later Status TLVs are skipped. */
LDP_API uint32_t LDP_PreParseReleaseMsg(const uint8_t *pucMsg);
/* Decodes a received Label Release into a zeroed record with empty lists;
 * as LDP_DecodeWithdrawMsg, plus the first Status TLV into stStatusTlv
 * (LDP_DecodeStatusTlv's non-zero code is returned, LDP_STOP_WALK with the
 * Status TLV filled). Filled parts stay with the record on every outcome. */
LDP_API uint32_t LDP_DecodeReleaseMsg(const uint8_t *pucMsg, LDP_LabelReleaseMsg *pMsgRecord,
                                      uint32_t ulMemModuleId);
/* As LDP_EncodeWithdrawMsg, with the flagged Status TLV after the LSPID TLV;
 * a failure of the Status TLV encoder is ignored. Returns LDP_OK;
 * LDP_ERR_PARAM (NULL, bad usMsgLen, no room); or the code of
 * LDP_EncodeFECTlv, LDP_EncodeLabelTlv, LDP_EncodeLSPIdTlv or
 * LDP_ProcUnknTlvList. */
LDP_API uint32_t LDP_EncodeReleaseMsg(uint8_t *pucBuf, LDP_LabelReleaseMsg *pMsgRecord, uint32_t ulMemModuleId,
                                      uint16_t usRoom);
/* Releases the FEC elements and kept unknown TLVs; presence bits stay. Does
 * nothing for NULL or a record of another type. */
LDP_API void LDP_FreeLabelReleaseMsg(LDP_LabelReleaseMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_LABEL_H */
