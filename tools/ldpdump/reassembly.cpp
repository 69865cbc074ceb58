// SPDX-License-Identifier: BSD-2-Clause
// Per-direction TCP reassembly: sequence arithmetic modulo 2^32, out-of-order
// segments held (up to a bound) until the gap before them fills, repeated
// bytes dropped.
#include "reassembly.hpp"

#include "packet.hpp"

namespace ldpdump {

void tcp_reassembler::reset()
{
    synced_ = false;
    fin_seen_ = false;
    fin_done_ = false;
    held_.clear();
    held_bytes_ = 0;
    pending_gap_ = false;
}

void tcp_reassembler::deliver(stream_events &ev, const uint8_t *p, size_t n, bool after_gap)
{
    if (n == 0) {
        return;
    }
    if (after_gap || pending_gap_ || ev.chunks.empty()) {
        stream_chunk c;
        c.after_gap = after_gap || pending_gap_;
        ev.chunks.push_back(std::move(c));
        pending_gap_ = false;
    }
    ev.chunks.back().bytes.insert(ev.chunks.back().bytes.end(), p, p + n);
    next_ += uint32_t(n);
    pos_ += n;
}

// Deliver held segments that now start at or before the next expected byte.
void tcp_reassembler::drain(stream_events &ev)
{
    while (!held_.empty() && held_.begin()->first <= pos_) {
        auto it = held_.begin();
        const uint64_t start = it->first;
        std::vector<uint8_t> bytes = std::move(it->second);
        held_bytes_ -= bytes.size();
        held_.erase(it);
        const uint64_t skip = pos_ - start;
        if (skip < bytes.size()) {
            deliver(ev, bytes.data() + skip, bytes.size() - size_t(skip), false);
        }
    }
    if (fin_seen_ && !fin_done_ && pos_ >= fin_pos_) {
        ev.closed = true;
        fin_done_ = true; // stay in step, so late retransmissions are still recognised
    }
}

// Give up on the bytes missing before the first held segment.
void tcp_reassembler::skip_gap(stream_events &ev)
{
    const uint64_t first = held_.begin()->first;
    ev.problems.push_back("TCP gap: " + std::to_string(first - pos_) + " bytes never captured, skipped");
    next_ += uint32_t(first - pos_);
    pos_ = first;
    pending_gap_ = true;
    drain(ev);
}

stream_events tcp_reassembler::segment(uint32_t seq, uint8_t flags, const uint8_t *data, size_t len)
{
    stream_events ev;
    if (flags & tcp_rst) {
        if (held_bytes_ != 0) {
            ev.problems.push_back("TCP reset with " + std::to_string(held_bytes_) +
                                  " bytes held out of order: discarded");
        }
        ev.closed = synced_;
        reset();
        return ev;
    }
    if (flags & tcp_syn) {
        if (synced_ && seq == isn_) {
            ++retransmitted_; // the same SYN again
            return ev;
        }
        if (synced_ && !fin_done_ && (pos_ != 0 || !held_.empty())) {
            ev.problems.push_back("TCP connection restarted: the earlier stream is closed");
            ev.closed = true;
        }
        reset();
        synced_ = true;
        ev.opened = true;
        isn_ = seq;
        next_ = seq + 1;
        pos_ = 0;
        ++seq; // data on a SYN follows it
    } else if (!synced_) {
        if (len == 0) {
            return ev;
        }
        // Picked up in mid-stream: the first bytes need not start a message.
        synced_ = true;
        next_ = seq;
        pos_ = 0;
        pending_gap_ = true;
    }
    const int32_t ahead = int32_t(seq - next_);
    if ((flags & tcp_fin) && !fin_seen_) {
        const int64_t at = int64_t(pos_) + ahead + int64_t(len);
        fin_seen_ = true;
        fin_pos_ = at < 0 ? 0 : uint64_t(at);
    }
    if (len != 0) {
        if (int64_t(ahead) + int64_t(len) <= 0) {
            ++retransmitted_;
        } else if (ahead <= 0) {
            deliver(ev, data - ahead, len + size_t(ahead), false);
        } else {
            ++out_of_order_;
            const uint64_t at = pos_ + uint64_t(ahead);
            auto &slot = held_[at];
            if (slot.size() < len) { // keep the longer of two copies
                held_bytes_ += len - slot.size();
                slot.assign(data, data + len);
            }
            while (held_bytes_ > max_held_ && !held_.empty()) {
                skip_gap(ev);
            }
        }
    }
    drain(ev);
    return ev;
}

stream_events tcp_reassembler::finish()
{
    stream_events ev;
    while (!held_.empty()) {
        skip_gap(ev);
    }
    return ev;
}

} // namespace ldpdump
