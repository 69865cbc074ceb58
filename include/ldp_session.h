/* Session messages: Hello, KeepAlive (more session messages join this header
 * as they are built). Include ldp_codec.h rather than this file. */
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

#ifdef __cplusplus
}
#endif

#endif /* LDP_SESSION_H */
