// SPDX-License-Identifier: BSD-2-Clause
// TCP reassembly of one direction of a connection: segments in, the byte
// stream out in order. Independent of libpcap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ldpdump {

// Bytes that follow on from what came before, or that start after bytes
// which will never arrive (`after_gap`): a reader of the stream must then
// look for the next message boundary.
struct stream_chunk {
    bool after_gap = false;
    std::vector<uint8_t> bytes;
};

// What one segment (or the end of the capture) did to the stream.
struct stream_events {
    std::vector<stream_chunk> chunks;
    std::vector<std::string> problems; // for stderr
    bool opened = false; // a SYN started a new connection
    bool closed = false; // the FIN was reached in order, or an RST came
};

class tcp_reassembler {
public:
    // `max_held` bounds the bytes kept out of order waiting for a gap to fill.
    explicit tcp_reassembler(size_t max_held = 1u << 20) : max_held_(max_held) {}

    stream_events segment(uint32_t seq, uint8_t flags, const uint8_t *data, size_t len);
    // The capture ended: whatever is still held out of order is delivered
    // after its gap, and the gap reported.
    stream_events finish();

    uint64_t retransmitted() const { return retransmitted_; }
    uint64_t out_of_order() const { return out_of_order_; }

private:
    void deliver(stream_events &ev, const uint8_t *p, size_t n, bool after_gap);
    void drain(stream_events &ev);
    void skip_gap(stream_events &ev);
    void reset();

    size_t max_held_;
    bool synced_ = false;   // `next_` is known
    bool fin_seen_ = false;
    bool fin_done_ = false; // the stream reached its FIN
    uint32_t isn_ = 0;      // sequence number of the SYN
    uint32_t next_ = 0;     // sequence number of the next byte expected
    uint64_t pos_ = 0;      // stream offset of that byte
    uint64_t fin_pos_ = 0;
    std::map<uint64_t, std::vector<uint8_t>> held_; // by stream offset
    size_t held_bytes_ = 0;
    bool pending_gap_ = false; // the next bytes delivered follow a gap
    uint64_t retransmitted_ = 0;
    uint64_t out_of_order_ = 0;
};

} // namespace ldpdump
