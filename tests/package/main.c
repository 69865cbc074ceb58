/* A program built against the installed package, as a user would build it:
 * find_package(ldpcodec CONFIG) and the two imported targets. */
#include "ldp_codec.h"

int main(void)
{
    static const uint8_t keepalive[] = {0x02, 0x01, 0x00, 0x04, 0x00, 0x00, 0x00, 0x01};
    uint32_t type = 0;
    void *rec = NULL;
    const uint32_t rc = LDP_Decode(keepalive, &type, &rec, sizeof keepalive, 0);
    LDP_FreeMessage(rec);
    return rc == LDP_OK && type == LDP_MSG_KEEPALIVE ? 0 : 1;
}
