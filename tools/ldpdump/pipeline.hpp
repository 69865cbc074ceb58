// SPDX-License-Identifier: BSD-2-Clause
// From frames (or hex lines) to reported messages: link and IP decoding,
// TCP reassembly per direction, PDU framing, then each message through the
// codec and out to the chosen output.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "capture.hpp"
#include "framing.hpp"
#include "packet.hpp"
#include "reassembly.hpp"
#include "report.hpp"
#include "trace.hpp"

namespace ldpdump {

struct options {
    bool verbose = false;
    bool json = false;
    bool roundtrip = false;
    bool stats = false;
    bool strict = false;
    bool hexdump = false;
    std::vector<uint16_t> types;   // -Y: message types to show; empty for all
    std::vector<uint32_t> allowed; // --allow: result codes --strict accepts
    std::unique_ptr<message_log> log;
    std::unique_ptr<failure_box> box;
};

// "Label Mapping", "label-mapping", "0x0400" or "1024" to a type code;
// false when the text names no message type.
bool parse_message_type(const std::string &text, uint16_t &type);
// "LDP_STATUS_UNKNOWN_FEC" or "12" to a result code the library names.
bool parse_result_code(const std::string &text, uint32_t &code);

class pipeline : public pdu_sink {
public:
    explicit pipeline(options &opt) : opt_(opt) {}

    void hex_line(uint64_t line, const std::string &text);
    void frame(int link, const ldpdump::frame &f);
    // A damaged capture file, or a read error.
    void capture_error(uint64_t after_frame, const std::string &text);
    // The input ended: flush what the TCP streams still hold.
    void finish();

    bool failed() const { return failed_; } // for --strict
    const stats &counts() const { return stats_; }

    void message(const pdu_header &pdu, const uint8_t *msg, size_t len) override;
    void problem(const std::string &text) override;

private:
    struct flow_key {
        ip_addr src, dst;
        uint16_t sport, dport;
        bool operator<(const flow_key &o) const
        {
            if (src < o.src || o.src < src) {
                return src < o.src;
            }
            if (dst < o.dst || o.dst < dst) {
                return dst < o.dst;
            }
            return std::tie(sport, dport) < std::tie(o.sport, o.dport);
        }
    };
    struct flow {
        tcp_reassembler tcp;
        pdu_splitter split;
        origin last; // the frame that last fed the flow
    };

    void handle(const pdu_header *pdu, const uint8_t *msg, size_t len);
    void apply(flow &fl, stream_events &ev);

    options &opt_;
    origin current_;
    std::map<flow_key, flow> flows_;
    stats stats_;
    bool failed_ = false;
    bool link_reported_ = false;
    uint64_t bad_lines_ = 0;
};

} // namespace ldpdump
