// SPDX-License-Identifier: BSD-2-Clause
// Re-encoding of decoded records and the TLV comparison behind --roundtrip.
#include "roundtrip.hpp"

#include <cstring>

#include "ldp_codec.h"

namespace ldpdump {
namespace {

bool same_bytes(const uint8_t *a, const tlv_info &ta, const uint8_t *b, const tlv_info &tb)
{
    return ta.type_word == tb.type_word && ta.len == tb.len && ta.complete && tb.complete &&
           std::memcmp(a + ta.offset, b + tb.offset, 4u + ta.len) == 0;
}

// The TLVs of an encoding, leaving out the zeros after the last one written
// (the buffer is as long as the received message even when TLVs were dropped).
std::vector<tlv_info> written_tlvs(const uint8_t *wire, size_t len)
{
    std::vector<tlv_info> out;
    for (const tlv_info &t : walk_tlvs(wire, len)) {
        bool rest_zero = true;
        for (size_t i = t.offset; i < len && rest_zero; ++i) {
            rest_zero = wire[i] == 0;
        }
        if (rest_zero) {
            break;
        }
        out.push_back(t);
    }
    return out;
}

} // namespace

roundtrip_result roundtrip(uint32_t type, void *rec, const uint8_t *msg, size_t len)
{
    roundtrip_result r;
    uint8_t *wire = nullptr;
    r.rc = LDP_Encode(&wire, type, rec, 0);
    if (r.rc != LDP_OK || wire == nullptr) {
        return r;
    }
    const size_t wlen = 4u + (size_t(wire[2]) << 8 | wire[3]);
    r.same = wlen == len && std::memcmp(wire, msg, len) == 0;
    if (!r.same) {
        r.header_changed = wlen < 8 || len < 8 || std::memcmp(wire, msg, 8) != 0;
        const std::vector<tlv_info> orig = walk_tlvs(msg, len);
        const std::vector<tlv_info> back = written_tlvs(wire, wlen);
        std::vector<bool> used(back.size(), false);
        std::vector<size_t> order;
        for (const tlv_info &t : orig) {
            size_t match = back.size();
            for (size_t i = 0; i < back.size() && match == back.size(); ++i) {
                if (!used[i] && same_bytes(msg, t, wire, back[i])) {
                    match = i;
                }
            }
            if (match == back.size()) {
                bool kept = false;
                for (size_t i = 0; i < back.size() && !kept; ++i) {
                    kept = !used[i] && back[i].type() == t.type();
                    if (kept) {
                        used[i] = true;
                    }
                }
                r.not_kept.push_back(t);
                if (kept) {
                    r.partly.push_back(t);
                }
                continue;
            }
            used[match] = true;
            order.push_back(match);
        }
        for (size_t i = 1; i < order.size(); ++i) {
            r.reordered = r.reordered || order[i] < order[i - 1];
        }
        for (size_t i = 0; i < back.size(); ++i) {
            if (!used[i]) {
                r.added.push_back(back[i]);
            }
        }
    }
    LDP_MemFreeCallBack(wire);
    return r;
}

} // namespace ldpdump
