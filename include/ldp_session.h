/* Session messages: Hello, Initialization (with its session parameter and
 * Capability Parameter TLVs), KeepAlive and Capability. Include ldp_codec.h
 * rather than this file. */
#ifndef LDP_SESSION_H
#define LDP_SESSION_H

#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Hello (0x0100, RFC 5036 section 3.5.2). The Common Hello Parameters TLV is
 * mandatory and comes first; the optional TLVs below are kept when present
 * (ucHelloOptFlags says which) and every other TLV is dropped. A TLV that
 * arrives twice is kept as last received. The record owns no memory. */
#define LDP_HELLO_T_BIT          0x8000u /* usHelloFlags: targeted Hello */
#define LDP_HELLO_R_BIT          0x4000u /* usHelloFlags: request targeted Hellos */
#define LDP_HELLO_OPT_IPV4_TRANS 0x01u
#define LDP_HELLO_OPT_IPV6_TRANS 0x02u
#define LDP_HELLO_OPT_CONF_SEQ   0x04u
#define LDP_HELLO_OPT_PRIV_3E0A  0x08u

typedef struct LDP_HelloMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_TlvHeader stCommHelloTlv;  /* Common Hello Parameters header as received */
    uint16_t usHoldTime;           /* seconds */
    uint16_t usHelloFlags;         /* whole word: T 0x8000, R 0x4000, reserved bits kept */
    LDP_TlvHeader stIpv4TransTlv;
    uint32_t ulIpv4TransAddr;      /* host order */
    LDP_TlvHeader stIpv6TransTlv;
    uint8_t aucIpv6TransAddr[16];  /* as on the wire */
    LDP_TlvHeader stConfSeqTlv;
    uint32_t ulConfSeqNum;
    LDP_TlvHeader stPrivHelloTlv;  /* vendor-private TLV 0x3E0A */
    uint8_t aucPrivHelloValue[2];  /* as on the wire */
    uint8_t ucHelloOptFlags;       /* LDP_HELLO_OPT_* */
} __attribute__((packed)) LDP_HelloMsg;

/* The run of LDP_HelloMsg fields from stCommHelloTlv to usHelloFlags, laid
 * out exactly as in the record: the Common Hello Parameters functions take
 * (LDP_CommHelloParamTlv *)&pMsgRecord->stCommHelloTlv. */
typedef struct LDP_CommHelloParamTlv {
    LDP_TlvHeader stCommHelloTlv;
    uint16_t usHoldTime;
    uint16_t usHelloFlags;
} __attribute__((packed)) LDP_CommHelloParamTlv;

LDP_API uint32_t LDP_PreParseHelloMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeHelloMsg(const uint8_t *pucMsg, LDP_HelloMsg *pMsgRecord,
                                    uint32_t ulMemModuleId);
/* pucValue: the 4 value bytes on the wire; pstCommHello->stCommHelloTlv must
 * already hold the TLV header. */
LDP_API uint32_t LDP_DecodeCommHelloParamTlv(const uint8_t *pucValue,
                                             LDP_CommHelloParamTlv *pstCommHello,
                                             uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeHelloMsg(uint8_t *pucBuf, LDP_HelloMsg *pMsgRecord,
                                    uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeCommHelloParamTlv(uint8_t *pucBuf, LDP_CommHelloParamTlv *pstCommHello,
                                             uint32_t ulMemModuleId, uint16_t usRoom);

/* Initialization (0x0200, RFC 5036 section 3.5.3). */

/* Common Session Parameters TLV (0x0500): the wire TLV in host order. */
typedef struct LDP_CommSessParamTlv {
    LDP_TlvHeader stTlvHeader;
    uint16_t usProtocolVersion;
    uint16_t usKeepAliveTime;      /* seconds */
    uint16_t usAdPvLim;            /* A 0x8000, D 0x4000, PVLim in bits 7-0 */
    uint16_t usMaxPduLen;
    uint32_t ulReceiverLsrId;      /* with the label space: the receiver LDP identifier */
    uint16_t usReceiverLabelSpace;
} __attribute__((packed)) LDP_CommSessParamTlv;

/* One 8-byte label range component of an ATM or Frame Relay Session
 * Parameters TLV: its two words in host order, not split into VPI/VCI or
 * DLCI fields. */
typedef struct LDP_LabelRangeComponent {
    SLL_Node stNode;
    uint32_t ulRangeMin;
    uint32_t ulRangeMax;
} __attribute__((packed)) LDP_LabelRangeComponent;

/* Label range session parameters, for ATM (0x0501) or Frame Relay (0x0502). */
#define LDP_LABEL_RANGE_N_SHIFT 26u  /* ulMndWord: number of components, bits 29-26 */
#define LDP_LABEL_RANGE_N_MASK  0xFu

typedef struct LDP_LabelRangeSessParamTlv {
    LDP_TlvHeader stTlvHeader;
    uint32_t ulMndWord;            /* M bits 31-30, N bits 29-26, D bit 25 */
    SLL_List stRangeList;          /* LDP_LabelRangeComponent */
} __attribute__((packed)) LDP_LabelRangeSessParamTlv;

/* FT Session TLV (0x0503, RFC 3479). */
typedef struct LDP_FtSessParamTlv {
    LDP_TlvHeader stTlvHeader;
    uint16_t usFtFlags;
    uint16_t usFtReserved;
    uint32_t ulFtReconnectTimeout; /* milliseconds */
    uint32_t ulFtRecoveryTime;     /* milliseconds */
} __attribute__((packed)) LDP_FtSessParamTlv;

/* A Capability Parameter TLV (RFC 5561), element of stCapList in the
 * Initialization and Capability records. It owns pucCapData. */
#define LDP_CAP_S_BIT 0x80u        /* ucSByte: capability announced (clear: withdrawn) */

typedef struct LDP_CapabilityParam {
    SLL_Node stNode;
    LDP_TlvHeader stTlvHeader;
    uint8_t ucSByte;               /* first value byte as received */
    uint8_t *pucCapData;           /* the usTlvLen - 1 further value bytes as received; NULL when none */
} __attribute__((packed)) LDP_CapabilityParam;

/* ucOptFlags / ucOptFlags2. ATM, Frame Relay and FT tell the encoder which
 * TLVs to write (a received message only ever sets FT); the capability bits
 * are set by the decoder when that capability arrives with its S bit set. */
#define LDP_INIT_OPT_ATM_SESS       0x01u
#define LDP_INIT_OPT_FR_SESS        0x02u
#define LDP_INIT_OPT_FT_SESS        0x04u
#define LDP_INIT_OPT_P2MP_CAP       0x08u
#define LDP_INIT_OPT_MP2MP_CAP      0x10u
#define LDP_INIT_OPT_MBB_CAP        0x20u
#define LDP_INIT_OPT_TYPED_WC_CAP   0x40u
#define LDP_INIT_OPT2_DYNAMIC_CAP   0x01u

typedef struct LDP_InitMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_CommSessParamTlv stCommSess;
    LDP_LabelRangeSessParamTlv stAtmSess;
    LDP_LabelRangeSessParamTlv stFrSess;
    LDP_FtSessParamTlv stFtSess;
    SLL_List stCapList;            /* LDP_CapabilityParam, in wire order */
    uint8_t ucOptFlags;            /* LDP_INIT_OPT_* */
    uint8_t ucOptFlags2;           /* LDP_INIT_OPT2_* */
} __attribute__((packed)) LDP_InitMsg;

LDP_API uint32_t LDP_PreParseInitMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeInitMsg(const uint8_t *pucMsg, LDP_InitMsg *pMsgRecord, uint32_t ulMemModuleId);
/* The TLV decoders take the value on the wire and a sub-record whose
 * stTlvHeader the caller has already filled. */
LDP_API uint32_t LDP_DecodeCommSessParamTlv(const uint8_t *pucValue, LDP_CommSessParamTlv *pstTlv,
                                            uint32_t ulMemModuleId);
LDP_API uint32_t LDP_DecodeFTSessParamTlv(const uint8_t *pucValue, LDP_FtSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId);
/* Appends to pstTlv->stRangeList, which must be a valid (e.g. empty) list. */
LDP_API uint32_t LDP_DecodeATMSessParamTlv(const uint8_t *pucValue, LDP_LabelRangeSessParamTlv *pstTlv,
                                           uint32_t ulMemModuleId);
LDP_API uint32_t LDP_DecodeCapabilityParamTlv(const uint8_t *pucValue, LDP_CapabilityParam *pstCap,
                                              uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeInitMsg(uint8_t *pucBuf, LDP_InitMsg *pMsgRecord, uint32_t ulMemModuleId,
                                   uint16_t usRoom);
LDP_API uint32_t LDP_EncodeCommSessParamTlv(uint8_t *pucBuf, LDP_CommSessParamTlv *pstTlv,
                                            uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeATMSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                           uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeFRSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeFTSessParamTlv(uint8_t *pucBuf, LDP_FtSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId, uint16_t usRoom);
LDP_API uint32_t LDP_EncodeCapabilityParamTlv(uint8_t *pucBuf, LDP_CapabilityParam *pstCap,
                                              uint32_t ulMemModuleId, uint16_t usRoom);
/* Releases the range lists and capability elements; not the record itself.
 * Does nothing unless the record is an Initialization message. */
LDP_API void LDP_FreeInitMsg(LDP_InitMsg *pMsgRecord);

/* KeepAlive (0x0201): the message header and nothing else. TLVs received in a
 * KeepAlive must all carry the U bit; they are checked and dropped. */
typedef struct LDP_KeepAliveMsg {
    LDP_MsgHeader stMsgHeader;
} __attribute__((packed)) LDP_KeepAliveMsg;

LDP_API uint32_t LDP_PreParseKeepAliveMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeKeepAliveMsg(const uint8_t *pucMsg, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId);
LDP_API uint32_t LDP_EncodeKeepAliveMsg(uint8_t *pucBuf, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId, uint16_t usRoom);

/* Capability (0x0202, RFC 5561). Only Make-Before-Break capabilities (RFC
 * 6388) are kept, each as an element of stCapList; Dynamic Capability
 * Announcement TLVs are accepted and dropped. */
#define LDP_CAPMSG_MBB_ANNOUNCED 0x01u /* ulCapFlags: a kept capability had its S bit set */

typedef struct LDP_CapabilityMsg {
    LDP_MsgHeader stMsgHeader;
    SLL_List stCapList;            /* LDP_CapabilityParam, in wire order */
    uint32_t ulCapFlags;           /* LDP_CAPMSG_* */
} __attribute__((packed)) LDP_CapabilityMsg;

LDP_API uint32_t LDP_PreParseCapabilityMsg(const uint8_t *pucMsg);
LDP_API uint32_t LDP_DecodeCapabilityMsg(const uint8_t *pucMsg, LDP_CapabilityMsg *pMsgRecord,
                                         uint32_t ulMemModuleId);
/* Writes every element of stCapList, whatever capability it names. */
LDP_API uint32_t LDP_EncodeCapabilityMsg(uint8_t *pucBuf, LDP_CapabilityMsg *pMsgRecord,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
/* Releases the elements, not the record; nothing unless it is a Capability message. */
LDP_API void LDP_FreeCapabilityMsg(LDP_CapabilityMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_SESSION_H */
