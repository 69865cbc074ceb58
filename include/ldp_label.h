/* TLVs shared by the label messages (and the Notification): Label, Label
 * Request Message ID, Hop Count, Path Vector, CR-LDP LSPID, Traffic and ER
 * (RFC 3212), and the list of unknown TLVs kept for forwarding. Include
 * ldp_codec.h rather than this file.
 *
 * Encoders here write each TLV header from the record as it stands and swap
 * the record's fields to network order in place; only usTlvLen is swapped
 * back, so a record can be encoded once. */
#ifndef LDP_LABEL_H
#define LDP_LABEL_H

#include "ldp_fec.h"
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

#ifdef __cplusplus
}
#endif

#endif /* LDP_LABEL_H */
