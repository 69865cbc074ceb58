// libFuzzer target: any bytes through LDP_Decode, and every record that comes
// back through LDP_Encode. Built with ASan and UBSan, so an out-of-bounds
// read, a misaligned access or a leak (LeakSanitizer) ends the run.
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

    const bool keeps_record = rc == LDP_OK || rc == LDP_STOP_WALK;
    if (keeps_record != (rec != nullptr)) {
        std::abort(); // a record must come back exactly with these two codes
    }
    if (rec != nullptr) {
        uint8_t *wire = nullptr;
        if (LDP_Encode(&wire, type, rec, 0) == LDP_OK) {
            LDP_MemFreeCallBack(wire);
        }
    }
    return 0;
}
