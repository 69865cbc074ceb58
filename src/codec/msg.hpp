// SPDX-License-Identifier: BSD-2-Clause
// Message header handling shared by every message's pre-parse, decoder and
// encoder.
#pragma once

#include <cstdint>

#include "ldp_codec.h"
#include "mem.hpp"
#include "wire.hpp"

namespace ldp::msg {

// Copy the 8-byte wire header into hdr (through memcpy_s) and convert it to
// host order. hdr may be a local or the record's own stMsgHeader.
inline void read_header(const uint8_t *wire_msg, LDP_MsgHeader *hdr, const char *file,
                        const mem::where w = mem::where::current())
{
    mem::copy(hdr, sizeof *hdr, wire_msg, wire::kMsgHeaderSize, file, w);
    hdr->usMsgType = wire::to_host16(hdr->usMsgType);
    hdr->usMsgLen = wire::to_host16(hdr->usMsgLen);
    hdr->ulMsgId = wire::to_host32(hdr->ulMsgId);
}

// The 8-byte wire header read straight into hdr in host order, for the
// decoders that no rule asks to copy it through memcpy_s.
inline void load_header(const uint8_t *wire_msg, LDP_MsgHeader *hdr)
{
    hdr->usMsgType = wire::load16(wire_msg);
    hdr->usMsgLen = wire::load16(wire_msg + 2);
    hdr->ulMsgId = wire::load32(wire_msg + 4);
}

// The encoders' length rule: usMsgLen from 4 to LDP_MAX_MSG_LEN. A length
// below 4 wraps to a large u16 and fails the same test.
inline bool encodable_len(const LDP_MsgHeader &hdr)
{
    return uint16_t(hdr.usMsgLen - 4u) <= LDP_MAX_MSG_LEN - 4u;
}

// The opening every message encoder shares: both pointers given, a length
// the encoders accept (no assertion otherwise), then the 8-byte header.
// Any failure is LDP_ERR_PARAM.
inline uint32_t begin_encode(uint8_t *buf, void *rec, uint32_t module, uint16_t room)
{
    if (buf == nullptr || rec == nullptr) {
        return LDP_ERR_PARAM;
    }
    if (!encodable_len(*static_cast<const LDP_MsgHeader *>(rec))) {
        return LDP_ERR_PARAM;
    }
    if (LDP_EncodeMsgHeader(buf, rec, module, room) != LDP_OK) {
        return LDP_ERR_PARAM;
    }
    return LDP_OK;
}

// Room left after w bytes have been written, never below zero.
inline uint16_t room_after(uint16_t room, uint16_t used)
{
    return room > used ? uint16_t(room - used) : uint16_t(0);
}

} // namespace ldp::msg
