// The two entry shapes of a message whose pre-parse and decoder share one
// walk(msg, msg_len, record or null, module): the pre-parse reads the header
// into a local and walks with no record; the decoder reads it into the record
// and walks filling it.
#pragma once

#include <cstdint>

#include "../codec/msg.hpp"
#include "../codec/srcfile.hpp"
#include "ldp_codec.h"

namespace ldp::dec {

template <class Rec>
using walk_fn = uint32_t (*)(const uint8_t *msg, uint16_t msg_len, Rec *rec, uint32_t module);

template <class Rec>
uint32_t pre_parse(const uint8_t *msg, walk_fn<Rec> walk)
{
    if (msg == nullptr) {
        return LDP_ERR_PARAM;
    }
    LDP_MsgHeader hdr = {};
    msg::read_header(msg, &hdr, srcfile::dec);
    return walk(msg, hdr.usMsgLen, nullptr, 0);
}

// On failure the record keeps what was filled so far; LDP_Decode releases it.
template <class Rec>
uint32_t decode(const uint8_t *msg, Rec *rec, uint32_t module, walk_fn<Rec> walk)
{
    if (msg == nullptr || rec == nullptr) {
        return LDP_ERR_PARAM;
    }
    msg::read_header(msg, &rec->stMsgHeader, srcfile::dec);
    return walk(msg, rec->stMsgHeader.usMsgLen, rec, module);
}

} // namespace ldp::dec
