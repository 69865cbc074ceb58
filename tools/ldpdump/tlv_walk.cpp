// SPDX-License-Identifier: BSD-2-Clause
// TLV walk of a message and the search for the TLV a decode failed in.
#include "tlv_walk.hpp"

#include <cstdio>

#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {
namespace {

uint16_t be16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }

size_t message_end(const uint8_t *msg, size_t len)
{
    if (len < 4) {
        return len;
    }
    const size_t end = 4u + be16(msg + 2);
    return end < len ? end : len;
}

} // namespace

std::vector<tlv_info> walk_tlvs(const uint8_t *msg, size_t len)
{
    std::vector<tlv_info> out;
    const size_t end = message_end(msg, len);
    size_t pos = 8;
    while (pos + 4 <= end) {
        tlv_info t;
        t.offset = pos;
        t.type_word = be16(msg + pos);
        t.len = be16(msg + pos + 2);
        t.complete = pos + 4 + t.len <= end;
        out.push_back(t);
        if (!t.complete) {
            break;
        }
        pos += 4u + t.len;
    }
    return out;
}

std::string tlv_label(const tlv_info &t)
{
    char text[96];
    std::snprintf(text, sizeof text, "TLV 0x%04x %s", t.type(), tlv_name(t.type()));
    return text;
}

failure_place locate_failure(const uint8_t *msg, size_t len, uint32_t rc)
{
    failure_place f;
    if (rc == LDP_OK) {
        return f;
    }
    if (len < 8 || rc == LDP_STATUS_BAD_MSG_LEN || 4u + be16(msg + 2) > len) {
        f.text = "in the message header or length";
        return f;
    }
    if (rc == LDP_STATUS_UNKNOWN_MSG_TYPE || rc == LDP_ERR_IGNORE_MSG) {
        f.text = "at the message type";
        return f;
    }
    if (rc == LDP_STATUS_MISSING_MSG_PARAMS) {
        f.text = "in no TLV: a mandatory TLV is missing";
        return f;
    }
    const std::vector<tlv_info> tlvs = walk_tlvs(msg, len);
    std::vector<uint8_t> cut(msg, msg + 8);
    for (const tlv_info &t : tlvs) {
        bool found = !t.complete;
        if (t.complete) {
            cut.insert(cut.end(), msg + t.offset, msg + t.offset + 4 + t.len);
            cut[2] = uint8_t((cut.size() - 4) >> 8);
            cut[3] = uint8_t(cut.size() - 4);
            uint32_t type = 0;
            void *rec = nullptr;
            found = LDP_Decode(cut.data(), &type, &rec, uint32_t(cut.size()), 0) == rc;
            LDP_FreeMessage(rec);
        }
        if (found) {
            f.in_tlv = true;
            f.tlv = t;
            f.offset = t.offset;
            f.text = "in " + tlv_label(t) + " at offset " + std::to_string(t.offset) +
                     (t.complete ? "" : " (its length runs past the message)");
            return f;
        }
    }
    const size_t end = 4u + be16(msg + 2);
    const size_t walked = tlvs.empty() ? 8 : tlvs.back().offset + 4 + tlvs.back().len;
    f.offset = walked;
    f.text = walked < end ? "after the last TLV, at offset " + std::to_string(walked)
                          : "in no single TLV (the message as a whole)";
    return f;
}

} // namespace ldpdump
