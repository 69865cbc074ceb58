/* SPDX-License-Identifier: BSD-2-Clause */
/* Decodes one LDP message held in memory and prints what the record says. */
#include <stdio.h>

#include "ldp_codec.h"

/* A Label Mapping, ID 7: FEC 10.1.0.0/16, generic label 0x12345 and the ID
 * of the Label Request it answers (42). */
static const uint8_t message[] = {
    0x04, 0x00, 0x00, 0x1e, 0x00, 0x00, 0x00, 0x07, /* message header */
    0x01, 0x00, 0x00, 0x06, 0x02, 0x00, 0x01, 0x10, 0x0a, 0x01, /* FEC */
    0x02, 0x00, 0x00, 0x04, 0x00, 0x01, 0x23, 0x45, /* generic label */
    0x06, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x2a, /* Label Request Message ID */
};

int main(void)
{
    uint32_t type = 0;
    void *record = NULL;
    uint32_t rc = LDP_Decode(message, &type, &record, sizeof message, 0);

    printf("type 0x%04x: %s\n", (unsigned)type, LDP_GetResultName(rc));
    if (rc == LDP_OK && type == LDP_MSG_LABEL_MAPPING) {
        LDP_LabelMappingMsg *map = record; /* fields are in host order */
        SLL_List *fecs = &map->stFecTlv.stFecList;
        SLL_Node *node;

        printf("message id %u, label %u\n", (unsigned)map->stMsgHeader.ulMsgId,
               (unsigned)map->stLabelTlv.ulLabel);
        /* The FEC elements form a ring that leads back to the list head. */
        for (node = fecs->stHead.pNext; node != &fecs->stHead; node = node->pNext) {
            LDP_FecElement *fec = (LDP_FecElement *)node;
            if (fec->ucFecKind == LDP_FEC_PREFIX && fec->stBody.usAddrFamily == LDP_AF_IPV4) {
                const uint8_t *a = fec->stBody.aucAddr;
                printf("FEC prefix %u.%u.%u.%u/%u\n", a[0], a[1], a[2], a[3], fec->stBody.ucPrefixLen);
            }
        }
        if (map->ucOptFlags1 & LDP_MAP_OPT_LABEL_REQ_ID) {
            printf("answers Label Request %u\n", (unsigned)map->stLabelReqIdTlv.ulReqMsgId);
        }
    }
    LDP_FreeMessage(record); /* the record and all it owns; NULL is fine */
    return rc == LDP_OK ? 0 : 1;
}
