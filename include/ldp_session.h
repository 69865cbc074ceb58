/* SPDX-License-Identifier: BSD-2-Clause */
/** @file
 * @brief Session messages: Hello, Initialization (with its session parameter
 * and Capability Parameter TLVs), KeepAlive, Capability and Notification (its
 * Status TLV is in ldp_status.h). Include ldp_codec.h rather than this file.
 *
 * Every message has a pre-parse (checks the wire bytes, allocates nothing), a
 * decoder (fills a zeroed record with empty lists, as LDP_Decode prepares
 * it), an encoder and, where the record owns memory, a release function.
 * Pre-parses and decoders take the message at its message header; decoders
 * leave what they filled in the record on every outcome, owned by it, for
 * LDP_FreeMessage. Encoders write at pucBuf, at most usRoom bytes; the caller
 * sets usMsgLen (4 to LDP_MAX_MSG_LEN) and every TLV length, and the record
 * is converted to network order in place, so it encodes once. An encoder
 * that runs out of room reports it through PLAT_Assert and returns
 * LDP_ERR_PARAM. */
#ifndef LDP_SESSION_H
#define LDP_SESSION_H

#include "ldp_fec.h"
#include "ldp_label.h"
#include "ldp_status.h"
#include "ldp_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Hello flags and presence bits
 * @{ */
#define LDP_HELLO_T_BIT          0x8000u /**< usHelloFlags: targeted Hello */
#define LDP_HELLO_R_BIT          0x4000u /**< usHelloFlags: request targeted Hellos */
#define LDP_HELLO_OPT_IPV4_TRANS 0x01u   /**< ucHelloOptFlags: IPv4 Transport Address held */
#define LDP_HELLO_OPT_IPV6_TRANS 0x02u   /**< ucHelloOptFlags: IPv6 Transport Address held */
#define LDP_HELLO_OPT_CONF_SEQ   0x04u   /**< ucHelloOptFlags: Configuration Sequence Number held */
#define LDP_HELLO_OPT_PRIV_3E0A  0x08u   /**< ucHelloOptFlags: vendor-private TLV 0x3E0A held */
/** @} */

/** @brief Hello (0x0100, RFC 5036 section 3.5.2).
 *
 * The Common Hello Parameters TLV is mandatory and comes first; the optional
 * TLVs below are kept when present (ucHelloOptFlags says which) and every
 * other TLV is dropped, whatever its U bit. A TLV that arrives twice is kept
 * as last received. The record owns no memory. */
typedef struct LDP_HelloMsg {
    LDP_MsgHeader stMsgHeader;     /**< message header */
    LDP_TlvHeader stCommHelloTlv;  /**< Common Hello Parameters header as received */
    uint16_t usHoldTime;           /**< hold time, seconds */
    uint16_t usHelloFlags;         /**< whole word: T 0x8000, R 0x4000, reserved bits kept */
    LDP_TlvHeader stIpv4TransTlv;  /**< IPv4 Transport Address header */
    uint32_t ulIpv4TransAddr;      /**< IPv4 transport address, host order */
    LDP_TlvHeader stIpv6TransTlv;  /**< IPv6 Transport Address header */
    uint8_t aucIpv6TransAddr[16];  /**< IPv6 transport address as on the wire */
    LDP_TlvHeader stConfSeqTlv;    /**< Configuration Sequence Number header */
    uint32_t ulConfSeqNum;         /**< configuration sequence number */
    LDP_TlvHeader stPrivHelloTlv;  /**< vendor-private TLV 0x3E0A header */
    uint8_t aucPrivHelloValue[2];  /**< its value as on the wire */
    uint8_t ucHelloOptFlags;       /**< LDP_HELLO_OPT_* */
} __attribute__((packed)) LDP_HelloMsg;

/** @brief The run of LDP_HelloMsg fields from stCommHelloTlv to usHelloFlags,
 * laid out exactly as in the record: the Common Hello Parameters functions
 * take (LDP_CommHelloParamTlv *)&pMsgRecord->stCommHelloTlv. */
typedef struct LDP_CommHelloParamTlv {
    LDP_TlvHeader stCommHelloTlv; /**< TLV header (0x0400, length 4) */
    uint16_t usHoldTime;          /**< hold time, seconds */
    uint16_t usHelloFlags;        /**< T and R bits with the reserved bits */
} __attribute__((packed)) LDP_CommHelloParamTlv;

/** @brief Check a received Hello without allocating.
 *
 * Only the first TLV's length and the optional TLVs' lengths are checked;
 * other TLVs pass whatever their U bit.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 12, or the first
 *                                       TLV is not Common Hello Parameters
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_MALFORMED_TLV      Common Hello value not 4 bytes; IPv4
 *                                       Transport or Configuration Sequence
 *                                       not 4; IPv6 Transport not 16;
 *                                       vendor-private 0x3E0A not 2
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard) */
LDP_API uint32_t LDP_PreParseHelloMsg(const uint8_t *pucMsg);
/** @brief Decode a received Hello into its record.
 *
 * Same walk and codes as LDP_PreParseHelloMsg. On a wrong length of an IPv4,
 * IPv6 or Configuration Sequence TLV its header is kept though its presence
 * bit is not set; a vendor-private header only once its length is right.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record
 * @param ulMemModuleId not used (nothing is allocated)
 * @return the codes of LDP_PreParseHelloMsg; LDP_ERR_PARAM also for a NULL record */
LDP_API uint32_t LDP_DecodeHelloMsg(const uint8_t *pucMsg, LDP_HelloMsg *pMsgRecord,
                                    uint32_t ulMemModuleId);
/** @brief Decode the value of a Common Hello Parameters TLV.
 * @param pucValue      the 4 value bytes on the wire
 * @param pstCommHello  the fields to fill; stCommHelloTlv must already hold the header
 * @param ulMemModuleId not used
 * @retval LDP_OK                   filled
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is not 4 */
LDP_API uint32_t LDP_DecodeCommHelloParamTlv(const uint8_t *pucValue,
                                             LDP_CommHelloParamTlv *pstCommHello,
                                             uint32_t ulMemModuleId);
/** @brief Encode a Hello.
 *
 * Writes the header, the Common Hello Parameters TLV, then the flagged
 * optional TLVs in a fixed order (IPv4 Transport, IPv6 Transport,
 * Configuration Sequence, vendor-private), each with the value size its type
 * defines, whatever usTlvLen says.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       or no room for the next item (with an assertion) */
LDP_API uint32_t LDP_EncodeHelloMsg(uint8_t *pucBuf, LDP_HelloMsg *pMsgRecord,
                                    uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write a Common Hello Parameters TLV: the header as stored, then hold
 * time and flags (left in network order in the record).
 * @param pucBuf        output
 * @param pstCommHello  the fields to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        8 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeCommHelloParamTlv(uint8_t *pucBuf, LDP_CommHelloParamTlv *pstCommHello,
                                             uint32_t ulMemModuleId, uint16_t usRoom);

/** @brief Common Session Parameters TLV (0x0500) of the Initialization
 * message (RFC 5036 section 3.5.3), in host order. */
typedef struct LDP_CommSessParamTlv {
    LDP_TlvHeader stTlvHeader;     /**< TLV header; value length 14 */
    uint16_t usProtocolVersion;    /**< protocol version */
    uint16_t usKeepAliveTime;      /**< KeepAlive time, seconds */
    uint16_t usAdPvLim;            /**< A 0x8000, D 0x4000, PVLim in bits 7-0 */
    uint16_t usMaxPduLen;          /**< maximum PDU length */
    uint32_t ulReceiverLsrId;      /**< with the label space: the receiver LDP identifier */
    uint16_t usReceiverLabelSpace; /**< receiver label space */
} __attribute__((packed)) LDP_CommSessParamTlv;

/** @brief One 8-byte label range component of an ATM or Frame Relay Session
 * Parameters TLV: its two words in host order, not split into VPI/VCI or
 * DLCI fields. A list element from PLAT_SimpleAlloc_F. */
typedef struct LDP_LabelRangeComponent {
    SLL_Node stNode;     /**< list link */
    uint32_t ulRangeMin; /**< first word: the range's lower end */
    uint32_t ulRangeMax; /**< second word: the range's upper end */
} __attribute__((packed)) LDP_LabelRangeComponent;

#define LDP_LABEL_RANGE_N_SHIFT 26u  /**< ulMndWord: number of components, bits 29-26 */
#define LDP_LABEL_RANGE_N_MASK  0xFu /**< ulMndWord: mask of the component count after the shift */

/** @brief Label range session parameters, for ATM (0x0501) or Frame Relay
 * (0x0502). Sent only: a received one is an unknown TLV. */
typedef struct LDP_LabelRangeSessParamTlv {
    LDP_TlvHeader stTlvHeader;     /**< TLV header; value length 4 + 8 per component */
    uint32_t ulMndWord;            /**< M bits 31-30, N bits 29-26, D bit 25 */
    SLL_List stRangeList;          /**< owned LDP_LabelRangeComponent elements */
} __attribute__((packed)) LDP_LabelRangeSessParamTlv;

/** @brief FT Session TLV (0x0503, RFC 3479). */
typedef struct LDP_FtSessParamTlv {
    LDP_TlvHeader stTlvHeader;     /**< TLV header; value length 12 */
    uint16_t usFtFlags;            /**< FT flags */
    uint16_t usFtReserved;         /**< reserved; always sent as 0 */
    uint32_t ulFtReconnectTimeout; /**< reconnect timeout, milliseconds */
    uint32_t ulFtRecoveryTime;     /**< recovery time, milliseconds */
} __attribute__((packed)) LDP_FtSessParamTlv;

#define LDP_CAP_S_BIT 0x80u        /**< ucSByte: capability announced (clear: withdrawn) */

/** @brief A Capability Parameter TLV (RFC 5561), element of stCapList in the
 * Initialization and Capability records. A list element from
 * PLAT_SimpleAlloc_F; it owns pucCapData. */
typedef struct LDP_CapabilityParam {
    SLL_Node stNode;               /**< list link */
    LDP_TlvHeader stTlvHeader;     /**< TLV header as received */
    uint8_t ucSByte;               /**< first value byte as received (LDP_CAP_S_BIT) */
    uint8_t *pucCapData;           /**< the usTlvLen - 1 further value bytes as received; NULL when none */
} __attribute__((packed)) LDP_CapabilityParam;

/** @name Initialization presence bits
 * ucOptFlags and ucOptFlags2. ATM, Frame Relay and FT tell the encoder which
 * TLVs to write (a received message only ever sets FT); the capability bits
 * are set by the decoder when that capability arrives with its S bit set,
 * and never cleared by a later withdrawal.
 * @{ */
#define LDP_INIT_OPT_ATM_SESS       0x01u /**< ucOptFlags: write stAtmSess */
#define LDP_INIT_OPT_FR_SESS        0x02u /**< ucOptFlags: write stFrSess */
#define LDP_INIT_OPT_FT_SESS        0x04u /**< ucOptFlags: stFtSess held / to write */
#define LDP_INIT_OPT_P2MP_CAP       0x08u /**< ucOptFlags: P2MP capability announced */
#define LDP_INIT_OPT_MP2MP_CAP      0x10u /**< ucOptFlags: MP2MP capability announced */
#define LDP_INIT_OPT_MBB_CAP        0x20u /**< ucOptFlags: Make-Before-Break capability announced */
#define LDP_INIT_OPT_TYPED_WC_CAP   0x40u /**< ucOptFlags: Typed Wildcard FEC capability announced */
#define LDP_INIT_OPT2_DYNAMIC_CAP   0x01u /**< ucOptFlags2: Dynamic Capability Announcement announced */
/** @} */

/** @brief Initialization (0x0200, RFC 5036 section 3.5.3).
 *
 * The Common Session Parameters TLV is mandatory and comes first. The record
 * owns the range components and the capability elements with their data. */
typedef struct LDP_InitMsg {
    LDP_MsgHeader stMsgHeader;            /**< message header */
    LDP_CommSessParamTlv stCommSess;      /**< Common Session Parameters */
    LDP_LabelRangeSessParamTlv stAtmSess; /**< ATM Session Parameters (sent only) */
    LDP_LabelRangeSessParamTlv stFrSess;  /**< Frame Relay Session Parameters (sent only) */
    LDP_FtSessParamTlv stFtSess;          /**< FT Session; a second one overwrites the first */
    SLL_List stCapList;            /**< owned LDP_CapabilityParam elements, in wire order */
    uint8_t ucOptFlags;            /**< LDP_INIT_OPT_* */
    uint8_t ucOptFlags2;           /**< LDP_INIT_OPT2_* */
} __attribute__((packed)) LDP_InitMsg;

/** @brief Check a received Initialization without allocating.
 *
 * The F bit plays no part; capability TLVs may repeat.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 22, or the first
 *                                       TLV is not Common Session Parameters
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_MALFORMED_TLV      Common Session value not 14 bytes, FT
 *                                       Session not 12, Dynamic Capability
 *                                       empty, or a P2MP, MP2MP,
 *                                       Make-Before-Break or Typed Wildcard
 *                                       capability not 1 byte
 * @retval LDP_STATUS_UNKNOWN_TLV        any other TLV (ATM and Frame Relay
 *                                       Session included) without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard) */
LDP_API uint32_t LDP_PreParseInitMsg(const uint8_t *pucMsg);
/** @brief Decode a received Initialization into its record.
 *
 * Each capability TLV becomes a new element of stCapList. Same walk as the
 * pre-parse, with these differences in the codes.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record whose three lists are empty
 * @param ulMemModuleId memory module ID for the elements
 * @return the codes of LDP_PreParseInitMsg, except: a P2MP, MP2MP,
 *         Make-Before-Break or Typed Wildcard capability whose length is not 1
 *         is LDP_STATUS_BAD_TLV_LEN; LDP_ERR_NO_MEMORY when an element
 *         cannot be allocated; LDP_ERR_PARAM (also for a NULL record) when
 *         the data of a capability longer than one byte cannot */
LDP_API uint32_t LDP_DecodeInitMsg(const uint8_t *pucMsg, LDP_InitMsg *pMsgRecord, uint32_t ulMemModuleId);
/** @brief Decode the value of a Common Session Parameters TLV.
 * @param pucValue      the value on the wire
 * @param pstTlv        the TLV to fill; stTlvHeader must already hold the header
 * @param ulMemModuleId not used
 * @retval LDP_OK                   filled
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is not 14 */
LDP_API uint32_t LDP_DecodeCommSessParamTlv(const uint8_t *pucValue, LDP_CommSessParamTlv *pstTlv,
                                            uint32_t ulMemModuleId);
/** @brief Decode the value of an FT Session TLV.
 * @param pucValue      the value on the wire
 * @param pstTlv        the TLV to fill; stTlvHeader must already hold the header
 * @param ulMemModuleId not used
 * @retval LDP_OK                   filled
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is not 12 */
LDP_API uint32_t LDP_DecodeFTSessParamTlv(const uint8_t *pucValue, LDP_FtSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId);
/** @brief Decode the value of an ATM (or Frame Relay) Session Parameters TLV.
 *
 * Not used by the Initialization decoder. Appends one new component per
 * range to stRangeList; usTlvLen is trusted to lie inside the value given.
 * @param pucValue      the value on the wire
 * @param pstTlv        the TLV to fill; stTlvHeader must hold the header and
 *                      stRangeList be a valid (e.g. empty) list
 * @param ulMemModuleId memory module ID for the components
 * @retval LDP_OK                   filled
 * @retval LDP_ERR_PARAM            a NULL pointer
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen below 4, or not 4 + 8 times the
 *                                  component count of the M/N/D word
 * @retval LDP_ERR_NO_MEMORY        a component could not be allocated; those
 *                                  already appended stay listed */
LDP_API uint32_t LDP_DecodeATMSessParamTlv(const uint8_t *pucValue, LDP_LabelRangeSessParamTlv *pstTlv,
                                           uint32_t ulMemModuleId);
/** @brief Decode the value of a Capability Parameter TLV.
 * @param pucValue      the value on the wire
 * @param pstCap        the element to fill; stTlvHeader must hold the header
 * @param ulMemModuleId memory module ID for pucCapData
 * @retval LDP_OK                   filled; pucCapData is a new copy of the
 *                                  bytes after the S byte, or NULL for a
 *                                  1-byte value
 * @retval LDP_ERR_PARAM            a NULL pointer, or no memory for
 *                                  pucCapData (1 rather than 108, on purpose)
 * @retval LDP_STATUS_MALFORMED_TLV usTlvLen is 0 */
LDP_API uint32_t LDP_DecodeCapabilityParamTlv(const uint8_t *pucValue, LDP_CapabilityParam *pstCap,
                                              uint32_t ulMemModuleId);
/** @brief Encode an Initialization.
 *
 * Writes the header and the Common Session TLV, then when flagged the ATM
 * and Frame Relay Session TLVs, the FT Session TLV, and every element of
 * stCapList. Each step moves on by the length the record gives, not by what
 * was written.
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to
 *                       LDP_MAX_MSG_LEN, a failing TLV encoder (a flagged
 *                       label range TLV with an empty list), or no room
 *                       (with an assertion) */
LDP_API uint32_t LDP_EncodeInitMsg(uint8_t *pucBuf, LDP_InitMsg *pMsgRecord, uint32_t ulMemModuleId,
                                   uint16_t usRoom);
/** @brief Write a Common Session Parameters TLV: the header as stored, then
 * always the 14 value bytes, whatever usTlvLen says (left in network order).
 * @param pucBuf        output
 * @param pstTlv        the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        18 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeCommSessParamTlv(uint8_t *pucBuf, LDP_CommSessParamTlv *pstTlv,
                                            uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write an ATM Session Parameters TLV: the header as stored, the
 * M/N/D word, then each range component (all left in network order).
 * @param pucBuf        output
 * @param pstTlv        the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer; an empty range list (after the header
 *                       and the M/N/D word are written); or no room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeATMSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                           uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write a Frame Relay Session Parameters TLV; the same as
 * LDP_EncodeATMSessParamTlv.
 * @param pucBuf        output
 * @param pstTlv        the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer; an empty range list (after the header
 *                       and the M/N/D word are written); or no room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeFRSessParamTlv(uint8_t *pucBuf, LDP_LabelRangeSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write an FT Session TLV: the header as stored, then the 12 value
 * bytes with the reserved field as 0 (left in network order).
 * @param pucBuf        output
 * @param pstTlv        the TLV to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        16 bytes written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeFTSessParamTlv(uint8_t *pucBuf, LDP_FtSessParamTlv *pstTlv,
                                          uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Write a Capability Parameter TLV: the header as stored, the S byte,
 * then usTlvLen - 1 bytes of pucCapData when it is not NULL and usTlvLen
 * is above 1.
 * @param pucBuf        output
 * @param pstCap        the element to write
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeCapabilityParamTlv(uint8_t *pucBuf, LDP_CapabilityParam *pstCap,
                                              uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Release what an Initialization record owns: the range components
 * and the capability elements with their data; the lists are left empty and
 * the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeInitMsg(LDP_InitMsg *pMsgRecord);

/** @brief KeepAlive (0x0201): the message header and nothing else. TLVs
 * received in a KeepAlive must all carry the U bit; they are checked and
 * dropped. The record owns no memory. */
typedef struct LDP_KeepAliveMsg {
    LDP_MsgHeader stMsgHeader; /**< message header */
} __attribute__((packed)) LDP_KeepAliveMsg;

/** @brief Check a received KeepAlive without allocating.
 *
 * The length of each TLV is checked before its type.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                 a header alone, or TLVs that all carry the U bit
 * @retval LDP_ERR_PARAM          pucMsg NULL
 * @retval LDP_STATUS_BAD_MSG_LEN message length below 4 (caught earlier by
 *                                LDP_Decode), or the TLVs end past the
 *                                message (a guard)
 * @retval LDP_STATUS_BAD_TLV_LEN a TLV runs past the message, or 1 to 3 bytes
 *                                are left where a TLV should start
 * @retval LDP_STATUS_UNKNOWN_TLV a TLV without the U bit */
LDP_API uint32_t LDP_PreParseKeepAliveMsg(const uint8_t *pucMsg);
/** @brief Decode a received KeepAlive: the header into the record, then the
 * walk of LDP_PreParseKeepAliveMsg.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    the record
 * @param ulMemModuleId not used
 * @return the codes of LDP_PreParseKeepAliveMsg; LDP_ERR_PARAM also for a NULL record */
LDP_API uint32_t LDP_DecodeKeepAliveMsg(const uint8_t *pucMsg, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId);
/** @brief Encode a KeepAlive: the 8-byte header only; bytes up to a larger
 * usMsgLen stay as they are (zero in LDP_Encode's buffer).
 * @param pucBuf        output
 * @param pMsgRecord    the record
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       or usRoom below 8 (with an assertion) */
LDP_API uint32_t LDP_EncodeKeepAliveMsg(uint8_t *pucBuf, LDP_KeepAliveMsg *pMsgRecord,
                                        uint32_t ulMemModuleId, uint16_t usRoom);

#define LDP_CAPMSG_MBB_ANNOUNCED 0x01u /**< ulCapFlags: a kept capability had its S bit set */

/** @brief Capability (0x0202, RFC 5561).
 *
 * Only Make-Before-Break capabilities (RFC 6388) are kept, each as an
 * element of stCapList; Dynamic Capability Announcement TLVs are accepted
 * and dropped, and so are unknown TLVs with the U bit. The record owns the
 * elements. */
typedef struct LDP_CapabilityMsg {
    LDP_MsgHeader stMsgHeader;     /**< message header */
    SLL_List stCapList;            /**< owned LDP_CapabilityParam elements, in wire order */
    uint32_t ulCapFlags;           /**< LDP_CAPMSG_* */
} __attribute__((packed)) LDP_CapabilityMsg;

/** @brief Check a received Capability message without allocating.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed; also a message with no TLV
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 4 (caught earlier
 *                                       by LDP_Decode)
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, 1 to 3
 *                                       bytes are left where a TLV should
 *                                       start, or a Make-Before-Break value
 *                                       is not 1 byte
 * @retval LDP_STATUS_UNKNOWN_TLV        a TLV other than Make-Before-Break and
 *                                       Dynamic Capability without the U bit
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard) */
LDP_API uint32_t LDP_PreParseCapabilityMsg(const uint8_t *pucMsg);
/** @brief Decode a received Capability message into its record: each
 * Make-Before-Break TLV becomes a new element of stCapList.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record whose list is empty
 * @param ulMemModuleId memory module ID for the elements
 * @return the codes of LDP_PreParseCapabilityMsg; LDP_ERR_PARAM also for a
 *         NULL record; LDP_ERR_NO_MEMORY when an element cannot be allocated */
LDP_API uint32_t LDP_DecodeCapabilityMsg(const uint8_t *pucMsg, LDP_CapabilityMsg *pMsgRecord,
                                         uint32_t ulMemModuleId);
/** @brief Encode a Capability message: the header, then every element of
 * stCapList, whatever capability it names (none for an empty list).
 * @param pucBuf        output
 * @param pMsgRecord    the record; converted in place
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       or no room (with an assertion) */
LDP_API uint32_t LDP_EncodeCapabilityMsg(uint8_t *pucBuf, LDP_CapabilityMsg *pMsgRecord,
                                         uint32_t ulMemModuleId, uint16_t usRoom);
/** @brief Release the capability elements and their data; the list is left
 * empty and the record itself stays.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeCapabilityMsg(LDP_CapabilityMsg *pMsgRecord);


/** @name Notification presence bits
 * @{ */
#define LDP_NOTIF_EXT_STATUS   0x01u /**< ucNotifFlags: Extended Status held */
#define LDP_NOTIF_RET_PDU      0x02u /**< ucNotifFlags: Returned PDU held */
#define LDP_NOTIF_RET_MSG      0x04u /**< ucNotifFlags: Returned Message held */
#define LDP_NOTIF_LSPID        0x08u /**< ucNotifFlags: LSPID held */
#define LDP_NOTIF_LABEL_REQ_ID 0x10u /**< ucNotifFlags: Label Request Message ID held */
#define LDP_NOTIF_FEC          0x20u /**< ucNotifFlags: FEC TLV held */
#define LDP_NOTIF_PW_STATUS    0x40u /**< ucNotifFlags: PW Status held */
#define LDP_NOTIF_PW_IF_PARAM  0x80u /**< ucNotifFlags: PW Interface Parameters held */
#define LDP_NOTIF2_MP_STATUS   0x01u /**< ucNotifFlags2: MP Status held */
#define LDP_NOTIF2_LABEL       0x02u /**< ucNotifFlags2: Generic Label held */
/** @} */

/** @brief Notification (0x0001, RFC 5036 section 3.5.1).
 *
 * The Status TLV is mandatory and comes first. Each optional TLV below is
 * kept once, on its first occurrence (later copies and unknown TLVs are
 * skipped whatever their U bit); its presence bit tells which are held, and
 * the encoder writes exactly the flagged ones. The record owns pucRetPdu,
 * pucRetMsg, pucPwStatus, pucPwIfParam and the FEC elements; the PW status
 * and PW interface parameter values (RFC 4447) are kept as received. */
typedef struct LDP_NotifyMsg {
    LDP_MsgHeader stMsgHeader;     /**< message header */
    LDP_StatusTlv stStatusTlv;     /**< Status (0x0300), mandatory */
    LDP_TlvHeader stExtStatusTlv;  /**< Extended Status (0x0301) header */
    uint32_t ulExtStatus;          /**< extended status code */
    LDP_TlvHeader stRetPduTlv;     /**< Returned PDU (0x0302) header */
    uint8_t *pucRetPdu;            /**< owned; usTlvLen bytes as received */
    LDP_TlvHeader stRetMsgTlv;     /**< Returned Message (0x0303) header */
    uint8_t *pucRetMsg;            /**< owned; usTlvLen bytes as received */
    LDP_LspIdTlv stLspIdTlv;       /**< LSPID (0x0821, RFC 3212) */
    LDP_TlvHeader stLabelReqIdTlv; /**< Label Request Message ID (0x0600) header */
    uint32_t ulLabelReqMsgId;      /**< the request's message ID */
    LDP_FecTlv stFecTlv;           /**< FEC (0x0100) with owned elements */
    LDP_TlvHeader stPwStatusTlv;   /**< PW Status (0x096A) header */
    uint8_t *pucPwStatus;          /**< owned; the 4-byte status word as received */
    LDP_TlvHeader stPwIfParamTlv;  /**< PW Interface Parameters (0x096B) header */
    uint8_t *pucPwIfParam;         /**< owned; usTlvLen bytes as received */
    LDP_MpStatusTlv stMpStatusTlv; /**< MP Status (0x096F, RFC 6388) */
    LDP_LabelTlv stLabelTlv;       /**< Generic Label (0x0200) */
    uint8_t ucNotifFlags;          /**< LDP_NOTIF_* */
    uint8_t ucNotifFlags2;         /**< LDP_NOTIF2_* */
} __attribute__((packed)) LDP_NotifyMsg;

/** @brief Check a received Notification without allocating.
 *
 * The first copy of each known optional TLV is checked, later copies and
 * unknown TLVs (whatever their U bit) are passed over. A pseudowire FEC
 * element is tolerated.
 * @param pucMsg the message on the wire
 * @retval LDP_OK                        well formed
 * @retval LDP_ERR_PARAM                 pucMsg NULL
 * @retval LDP_STATUS_MISSING_MSG_PARAMS message length below 18 (no room for
 *                                       a Status TLV), or the first TLV is not
 *                                       a Status TLV
 * @retval LDP_STATUS_BAD_TLV_LEN        a TLV runs past the message, or 1 to 3
 *                                       bytes are left where a TLV should start
 * @retval LDP_STATUS_MALFORMED_TLV      Status value not 10 bytes; Extended
 *                                       Status, Label Request Message ID,
 *                                       Generic Label or PW Status not 4;
 *                                       LSPID not 8; Returned PDU below 10;
 *                                       Returned Message below 4; or an MP
 *                                       Status that LDP_PreParseMpStatusTlv refuses
 * @retval LDP_STOP_WALK                 the status data is 40 (pseudowire status)
 * @retval LDP_STATUS_BAD_MSG_LEN        the TLVs end past the message (a guard)
 * @return also any other code of LDP_PreParseFECTlv for the first FEC TLV
 *         (LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_UNSUPPORTED_AF, ...) */
LDP_API uint32_t LDP_PreParseNotifMsg(const uint8_t *pucMsg);
/** @brief Decode a received Notification into its record.
 *
 * The Returned PDU, Returned Message, PW Status and PW Interface Parameters
 * values are copied into new buffers the record owns. With LDP_STOP_WALK the
 * record holds the Status TLV. Whatever the result, the record owns what it
 * holds and is released with LDP_FreeMessage.
 * @param pucMsg        the message on the wire
 * @param pMsgRecord    a zeroed record whose FEC list is empty
 * @param ulMemModuleId memory module ID for the copies and FEC elements
 * @return the codes of LDP_PreParseNotifMsg (LDP_ERR_PARAM also for a NULL
 *         record); the codes of LDP_DecodeFECTlv for the first FEC TLV
 *         (LDP_ERR_NO_MEMORY, ...); LDP_STATUS_INTERNAL_ERROR when the
 *         Returned PDU or Returned Message copy cannot be allocated;
 *         LDP_ERR_NO_MEMORY when a PW buffer cannot; LDP_ERR_PARAM when
 *         LDP_DecodeMpStatusTlv refuses the MP Status TLV and no FEC TLV
 *         follows it (the pre-parse refuses that message first) */
LDP_API uint32_t LDP_DecodeNotifMsg(const uint8_t *pucMsg, LDP_NotifyMsg *pMsgRecord, uint32_t ulMemModuleId);
/** @brief Encode a Notification.
 *
 * Writes the message header, the Status TLV (always 14 bytes) and then the
 * flagged TLVs in a fixed order: Returned PDU, Returned Message, Extended
 * Status, LSPID, Label Request Message ID, PW Status, MP Status, FEC, PW
 * Interface Parameters, Label. The caller sets every length. The record is
 * consumed: fields are left in network order and the FEC elements are
 * released as soon as they are written.
 * @param pucBuf        output
 * @param pMsgRecord    the record
 * @param ulMemModuleId not used
 * @param usRoom        bytes writable at pucBuf
 * @retval LDP_OK        written
 * @retval LDP_ERR_PARAM a NULL pointer, usMsgLen outside 4 to LDP_MAX_MSG_LEN,
 *                       a failing TLV encoder, or too little room (with an
 *                       assertion) */
LDP_API uint32_t LDP_EncodeNotifMsg(uint8_t *pucBuf, LDP_NotifyMsg *pMsgRecord, uint32_t ulMemModuleId,
                                    uint16_t usRoom);
/** @brief Release the buffers and FEC elements a Notification record owns,
 * nulling the pointers; the record itself stays.
 *
 * Clears the FEC and PW presence bits but leaves the Returned PDU and
 * Returned Message bits set and the MP Status untouched.
 * @param pMsgRecord the record; NULL or another message type: nothing happens */
LDP_API void LDP_FreeNotifyMsg(LDP_NotifyMsg *pMsgRecord);

#ifdef __cplusplus
}
#endif

#endif /* LDP_SESSION_H */
