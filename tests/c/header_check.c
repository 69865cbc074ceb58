/* SPDX-License-Identifier: BSD-2-Clause */
/* Compiled as strict C99: the umbrella header must be plain C, its records
 * packed to the sizes the wire and the API fix, and the library usable from
 * C with the default platform. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "ldp_codec.h"

/* C99 has no _Static_assert: a negative array size stops the build instead. */
#define CHECK_SIZE(type, size) typedef char check_##type[(sizeof(type) == (size)) ? 1 : -1]

CHECK_SIZE(LDP_MsgHeader, 8);
CHECK_SIZE(LDP_TlvHeader, 4);
CHECK_SIZE(LDP_KeepAliveMsg, 8);
CHECK_SIZE(SLL_Node, sizeof(void *) + 4);
CHECK_SIZE(SLL_List, 2 * sizeof(void *) + 8);
CHECK_SIZE(SYS_Systime, 12);
CHECK_SIZE(LDP_FecElementBody, 22 + sizeof(void *));
CHECK_SIZE(LDP_FecElement, (sizeof(void *) + 4) + (22 + sizeof(void *)) + 1);
CHECK_SIZE(LDP_FecTlv, 4 + 2 * sizeof(void *) + 8);
CHECK_SIZE(LDP_OvElement, 3 * sizeof(void *) + 5);
CHECK_SIZE(LDP_OvList, 2 * sizeof(void *));
CHECK_SIZE(LDP_MpStatusTlv, 9);

static int failures;

static void expect(int ok, const char *what)
{
    if (!ok) {
        fprintf(stderr, "FAILED: %s\n", what);
        failures++;
    }
}

int main(void)
{
    static const uint8_t wire[] = {0x82, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x2a};
    uint32_t type = 0;
    void *rec = NULL;
    uint8_t *buf = NULL;

    expect(offsetof(LDP_MsgHeader, ulMsgId) == 4, "ulMsgId at offset 4");
    expect(offsetof(LDP_FecElement, stBody) == sizeof(SLL_Node), "FEC body after the node");
    expect(offsetof(LDP_FecElementBody, aucAddr) == 4, "address after type, family, length");
    expect(offsetof(LDP_FecElementBody, pucRaw) == 4, "PWid raw pointer after its length");
    expect(offsetof(LDP_FecElementBody, usOpaqueLen) == 20 + sizeof(void *), "opaque length last");
    expect(LDP_Decode(wire, &type, &rec, sizeof wire, 1) == LDP_OK, "decode a KeepAlive");
    expect(type == LDP_MSG_KEEPALIVE, "type without the U bit");
    expect(rec != NULL && ((LDP_KeepAliveMsg *)rec)->stMsgHeader.ulMsgId == 42, "message ID");
    expect(LDP_Encode(&buf, LDP_MSG_KEEPALIVE, rec, 1) == LDP_OK, "encode it back");
    expect(buf != NULL && memcmp(buf, wire, sizeof wire) == 0, "same bytes");
    if (buf != NULL) {
        (void)LDP_MemFreeCallBack(buf);
    }
    expect(LDP_STOP_WALK == 0xFFFFFFFFu, "LDP_STOP_WALK is all ones");
    {
        /* The version macros agree with each other and with the project's. */
        char text[32];
        snprintf(text, sizeof text, "%d.%d.%d", LDP_CODEC_VERSION_MAJOR, LDP_CODEC_VERSION_MINOR,
                 LDP_CODEC_VERSION_PATCH);
        expect(strcmp(text, LDP_CODEC_VERSION_STRING) == 0, "version numbers and text agree");
        expect(strcmp(LDP_CODEC_VERSION_STRING, LDP_EXPECTED_VERSION) == 0, "version of the project");
    }
    return failures == 0 ? 0 : 1;
}
