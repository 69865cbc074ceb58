// SPDX-License-Identifier: BSD-2-Clause
// libFuzzer target: any bytes through LDP_Decode, and every record that comes
// back through LDP_Encode. Built with ASan and UBSan, so an out-of-bounds
// read, a misaligned access or a leak (LeakSanitizer) ends the run, and so
// does a record handed back with the wrong result code.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "ldp_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // An exact-size copy: reading one byte past the message is caught.
    auto *msg = static_cast<uint8_t *>(std::malloc(size == 0 ? 1 : size));
    if (size != 0) {
        std::memcpy(msg, data, size);
    }
    uint32_t type = 0;
    void *rec = nullptr;
    const uint32_t rc = LDP_Decode(msg, &type, &rec, uint32_t(size), 0);
    std::free(msg);

    // A record comes back only with LDP_OK or LDP_STOP_WALK, and always with
    // LDP_OK; a pre-parse that stops the walk leaves no record.
    if ((rec != nullptr && rc != LDP_OK && rc != LDP_STOP_WALK) || (rc == LDP_OK && rec == nullptr)) {
        std::abort();
    }
    if (rec != nullptr) {
        uint8_t *wire = nullptr;
        if (LDP_Encode(&wire, type, rec, 0) == LDP_OK) {
            LDP_MemFreeCallBack(wire);
        }
    }
    return 0;
}
