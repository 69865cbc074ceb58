/* SPDX-License-Identifier: BSD-2-Clause */
/* Builds a Label Mapping record the way an LDP engine does, encodes it with
 * LDP_Encode, decodes the bytes back and checks that the binding survived.
 *
 * Ownership: every block of the record (the record itself and each FEC
 * element) comes from the platform allocator, because LDP_Encode takes the
 * record over and releases it with the platform on every outcome. The wire
 * buffer it returns is the caller's, released with LDP_MemFreeCallBack. */
#include <stdio.h>
#include <string.h>

#include "ldp_codec.h"

#define MODULE_ID 0x4558u /* any value; the library hands it to the allocator */

static void *zeroed(uint32_t size)
{
    void *p = PLAT_SimpleAlloc_F(MODULE_ID, size, __FILE__, __LINE__);
    if (p != NULL) {
        memset(p, 0, size);
    }
    return p;
}

/* An empty ring: the head leads back to itself. */
static void list_init(SLL_List *list)
{
    list->stHead.pNext = &list->stHead;
    list->stHead.ulHandle = 0;
    list->pTail = &list->stHead;
    list->ulCount = 0;
}

/* FEC 10.1.0.0/16 to generic label 0x12345, message ID 7. The caller sets
 * every length: the encoder writes them as they stand. */
static LDP_LabelMappingMsg *build_mapping(void)
{
    LDP_LabelMappingMsg *map = zeroed(sizeof *map);
    LDP_FecElement *fec = zeroed(sizeof *fec);
    static const uint8_t prefix[] = {10, 1};

    if (map == NULL || fec == NULL) {
        PLAT_Free_F(map, __FILE__, __LINE__);
        PLAT_Free_F(fec, __FILE__, __LINE__);
        return NULL;
    }
    list_init(&map->stFecTlv.stFecList);
    list_init(&map->stUnknTlvList);

    fec->ucFecKind = LDP_FEC_PREFIX; /* the encoder dispatches on the kind */
    fec->stBody.ucFecType = LDP_FEC_PREFIX;
    fec->stBody.usAddrFamily = LDP_AF_IPV4;
    fec->stBody.ucPrefixLen = 16;
    memcpy(fec->stBody.aucAddr, prefix, sizeof prefix);
    SLL_Insert_In_Middle(&map->stFecTlv.stFecList, map->stFecTlv.stFecList.pTail, &fec->stNode,
                         &map->stFecTlv.stFecList.stHead);

    /* FEC TLV: element type, family, prefix length and two address bytes. */
    map->stFecTlv.stTlvHeader.usTlvType = LDP_TLV_FEC;
    map->stFecTlv.stTlvHeader.usTlvLen = 6;
    map->stLabelTlv.stTlvHeader.usTlvType = LDP_TLV_GENERIC_LABEL;
    map->stLabelTlv.stTlvHeader.usTlvLen = 4;
    map->stLabelTlv.usLabelKind = LDP_TLV_GENERIC_LABEL;
    map->stLabelTlv.ulLabel = 0x12345;
    map->stMsgHeader.usMsgType = LDP_MSG_LABEL_MAPPING;
    map->stMsgHeader.usMsgLen = 4 + (4 + 6) + (4 + 4); /* ID, FEC TLV, Label TLV */
    map->stMsgHeader.ulMsgId = 7;
    return map;
}

int main(void)
{
    LDP_LabelMappingMsg *map = build_mapping();
    uint32_t wire_len, type = 0, rc, i;
    uint8_t *wire = NULL;
    void *record = NULL;
    int ok;

    if (map == NULL) {
        return 1;
    }
    wire_len = map->stMsgHeader.usMsgLen + 4u; /* the record is gone after the call */
    rc = LDP_Encode(&wire, LDP_MSG_LABEL_MAPPING, map, MODULE_ID);
    printf("encode: %s\n", LDP_GetResultName(rc));
    if (rc != LDP_OK) {
        return 1;
    }
    for (i = 0; i < wire_len; i++) {
        printf("%02x%s", wire[i], i + 1 == wire_len ? "\n" : " ");
    }

    rc = LDP_Decode(wire, &type, &record, wire_len, MODULE_ID);
    LDP_MemFreeCallBack(wire);
    printf("decode: %s\n", LDP_GetResultName(rc));
    ok = rc == LDP_OK && type == LDP_MSG_LABEL_MAPPING;
    if (ok) {
        LDP_LabelMappingMsg *back = record;
        LDP_FecElement *fec = (LDP_FecElement *)back->stFecTlv.stFecList.stHead.pNext;
        ok = back->stMsgHeader.ulMsgId == 7 && back->stLabelTlv.ulLabel == 0x12345 &&
             back->stFecTlv.stFecList.ulCount == 1 && fec->stBody.ucPrefixLen == 16 &&
             fec->stBody.aucAddr[0] == 10 && fec->stBody.aucAddr[1] == 1;
        printf("round trip: %s\n", ok ? "same binding" : "differs");
    }
    LDP_FreeMessage(record);
    return ok ? 0 : 1;
}
