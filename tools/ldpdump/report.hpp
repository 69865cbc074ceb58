// SPDX-License-Identifier: BSD-2-Clause
// One message as ldpdump reports it: where it came from, what the codec made
// of it, and what the optional checks found. Filled by the pipeline, written
// by the text or the JSON output.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "fields.hpp"
#include "framing.hpp"
#include "roundtrip.hpp"
#include "tlv_walk.hpp"

namespace ldpdump {

struct origin {
    bool from_capture = false; // else a line of hex text
    uint64_t number = 0;       // frame, or line
    int64_t sec = 0;
    int32_t usec = 0;
    std::string src, dst;      // "address:port" (IPv6 in brackets)
    const char *proto = "";    // "udp" or "tcp"
};

struct message_report {
    const origin *from = nullptr;
    const pdu_header *pdu = nullptr; // null for hex input
    const uint8_t *bytes = nullptr;
    size_t len = 0;
    uint16_t type_word = 0; // as on the wire, 0 if fewer than 2 bytes
    bool type_known = false; // the codec reported a type
    uint32_t id = 0;
    uint32_t rc = 0;
    std::vector<field> fields;
    std::vector<tlv_info> tlvs;
    std::string record_text;                 // -v: the whole record
    std::optional<roundtrip_result> round;   // --roundtrip (and -v)
    std::optional<failure_place> failure;    // decode failures
};

void write_text(std::FILE *out, const message_report &m, bool verbose, bool show_roundtrip);
void write_json(std::FILE *out, const message_report &m, bool show_roundtrip);

// --stats: counts by message type and by result code.
class stats {
public:
    void count(const message_report &m);
    void note_frame(bool ldp) { ++frames_; ldp_frames_ += ldp ? 1 : 0; }
    void note_problem() { ++problems_; }
    void note_tcp(uint64_t retransmitted, uint64_t out_of_order)
    {
        retransmitted_ += retransmitted;
        out_of_order_ += out_of_order;
    }
    void write(std::FILE *out, bool json) const;

private:
    std::map<std::string, uint64_t> types_, results_;
    uint64_t messages_ = 0, frames_ = 0, ldp_frames_ = 0, problems_ = 0, retransmitted_ = 0, out_of_order_ = 0,
             roundtrip_diff_ = 0;
};

std::string type_text(uint16_t type_word); // "Label Mapping", or "type 0x0f00"

} // namespace ldpdump
