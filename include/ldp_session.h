/* Session messages: Hello, Initialization (with its session parameter and
 * Capability Parameter TLVs), KeepAlive, Capability and Notification (its
 * Status TLV is in ldp_status.h). Include ldp_codec.h rather than this file. */
#ifndef LDP_SESSION_H
#define LDP_SESSION_H

#include "ldp_fec.h"
#include "ldp_label.h"
#include "ldp_status.h"
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


/* --- Notification (0x0001, RFC 5036 section 3.5.1) ------------------------
 * The Status TLV is mandatory and comes first. Each optional TLV below is
 * kept once, on its first occurrence (later copies and unknown TLVs are
 * skipped whatever their U bit); its presence bit tells which are held, and
 * the encoder writes exactly the flagged ones. The record owns pucRetPdu,
 * pucRetMsg, pucPwStatus, pucPwIfParam and the FEC elements; the PW status
 * and PW interface parameter values (RFC 4447) are kept as received. */
#define LDP_NOTIF_EXT_STATUS   0x01u /* ucNotifFlags */
#define LDP_NOTIF_RET_PDU      0x02u
#define LDP_NOTIF_RET_MSG      0x04u
#define LDP_NOTIF_LSPID        0x08u
#define LDP_NOTIF_LABEL_REQ_ID 0x10u
#define LDP_NOTIF_FEC          0x20u
#define LDP_NOTIF_PW_STATUS    0x40u
#define LDP_NOTIF_PW_IF_PARAM  0x80u
#define LDP_NOTIF2_MP_STATUS   0x01u /* ucNotifFlags2 */
#define LDP_NOTIF2_LABEL       0x02u

typedef struct LDP_NotifyMsg {
    LDP_MsgHeader stMsgHeader;
    LDP_StatusTlv stStatusTlv;
    LDP_TlvHeader stExtStatusTlv;  /* Extended Status (0x0301) */
    uint32_t ulExtStatus;
    LDP_TlvHeader stRetPduTlv;     /* Returned PDU (0x0302) */
    uint8_t *pucRetPdu;            /* usTlvLen bytes as received */
    LDP_TlvHeader stRetMsgTlv;     /* Returned Message (0x0303) */
    uint8_t *pucRetMsg;            /* usTlvLen bytes as received */
    LDP_LspIdTlv stLspIdTlv;       /* LSPID (0x0821, RFC 3212) */
    LDP_TlvHeader stLabelReqIdTlv; /* Label Request Message ID (0x0600) */
    uint32_t ulLabelReqMsgId;
    LDP_FecTlv stFecTlv;           /* FEC (0x0100) */
    LDP_TlvHeader stPwStatusTlv;   /* PW Status (0x096A) */
    uint8_t *pucPwStatus;          /* the 4-byte status word as received */
    LDP_TlvHeader stPwIfParamTlv;  /* PW Interface Parameters (0x096B) */
    uint8_t *pucPwIfParam;         /* usTlvLen bytes as received */
    LDP_MpStatusTlv stMpStatusTlv; /* MP Status (0x096F, RFC 6388) */
    LDP_LabelTlv stLabelTlv;       /* Generic Label (0x0200) */
    uint8_t ucNotifFlags;          /* LDP_NOTIF_* */
    uint8_t ucNotifFlags2;         /* LDP_NOTIF2_* */
} __attribute__((packed)) LDP_NotifyMsg;

/* Check a Notification on the wire without allocating. Returns LDP_OK;
 * LDP_ERR_PARAM (null); LDP_STATUS_MISSING_MSG_PARAMS (shorter than a Status
 * TLV, or the first TLV is not one); LDP_STATUS_BAD_TLV_LEN;
 * LDP_STATUS_BAD_MSG_LEN; LDP_STATUS_MALFORMED_TLV (a bad Status TLV, or the
 * first of a known optional TLV with a bad length or MP Status value); the
 * FEC TLV pre-parse codes (LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNSUPPORTED_AF,
 * ...), except that a pseudowire FEC element is tolerated; LDP_STOP_WALK when
 * the status data is 40. */
LDP_API uint32_t LDP_PreParseNotifMsg(const uint8_t *pucMsg);
/* Fill pMsgRecord (zeroed, its FEC list empty) from the wire message. Returns
 * the pre-parse codes, and also LDP_STATUS_INTERNAL_ERROR when the Returned
 * PDU or Returned Message copy cannot be allocated, LDP_ERR_NO_MEMORY when a
 * PW buffer or FEC element cannot, and LDP_ERR_PARAM for an MP Status TLV
 * the MP Status decoder refuses, when no later FEC TLV follows it. On LDP_STOP_WALK the record holds what
 * was read up to the point the walk stopped. Whatever the result, the record
 * owns what it holds and is released with LDP_FreeMessage. */
LDP_API uint32_t LDP_DecodeNotifMsg(const uint8_t *pucMsg, LDP_NotifyMsg *pMsgRecord, uint32_t ulMemModuleId);
/* Write the message header, the Status TLV and then the flagged TLVs in a
 * fixed order: Returned PDU, Returned Message, Extended Status, LSPID, Label
 * Request Message ID, PW Status, MP Status, FEC, PW Interface Parameters,
 * Label. The caller sets every length. The record is consumed (fields left
 * in network order, FEC elements released). Returns LDP_OK, or LDP_ERR_PARAM
 * for a null pointer, a message length the encoders refuse, or too little
 * room (with an assertion). */
LDP_API uint32_t LDP_EncodeNotifMsg(uint8_t *pucBuf, LDP_NotifyMsg *pMsgRecord, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
/* Release the buffers and FEC elements the record owns, nulling the pointers;
 * not the record itself. Clears the FEC and PW presence bits but leaves the
 * Returned PDU and Returned Message bits set and the MP Status untouched.
 * Does nothing unless the record is a Notification. */
LDP_API void LDP_FreeNotifyMsg(LDP_NotifyMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_SESSION_H */
