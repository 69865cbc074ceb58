// SPDX-License-Identifier: BSD-2-Clause
// PDU header checks, resynchronisation on a stream, and splitting of PDU
// bodies into messages.
#include "framing.hpp"

namespace ldpdump {
namespace {

uint16_t be16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }
uint32_t be32(const uint8_t *p) { return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3]; }

pdu_header read_header(const uint8_t *p)
{
    pdu_header h;
    h.version = be16(p);
    h.length = be16(p + 2);
    h.lsr_id = be32(p + 4);
    h.label_space = be16(p + 8);
    return h;
}

// Version 1, and a length that covers at least the LDP identifier.
bool plausible(const pdu_header &h) { return h.version == 1 && h.length >= 6; }

// A message header of a known LDP type (or a vendor or experimental one)
// with a length that counts its message ID and fits in `room`.
bool likely_message(const uint8_t *m, size_t room)
{
    if (room < 8) {
        return false;
    }
    const unsigned type = be16(m) & 0x7FFFu;
    const unsigned len = be16(m + 2);
    const bool known = type == 0x0001 || (type >= 0x0100 && type <= 0x0101) || (type >= 0x0200 && type <= 0x0202) ||
                       (type >= 0x0300 && type <= 0x0301) || (type >= 0x0400 && type <= 0x0404) || type >= 0x3E00;
    return known && len >= 4 && len + 4u <= room;
}

std::string describe(const pdu_header &h)
{
    return "bad PDU header (version " + std::to_string(h.version) + ", length " + std::to_string(h.length) + ")";
}

} // namespace

void split_messages(const pdu_header &pdu, const uint8_t *body, size_t len, pdu_sink &sink)
{
    size_t pos = 0;
    while (pos < len) {
        const size_t rest = len - pos;
        if (rest < 4) {
            sink.problem(std::to_string(rest) + " bytes after the last message of the PDU, too few for a message header");
            return;
        }
        const size_t want = 4u + be16(body + pos + 2);
        if (want > rest) {
            sink.problem("message length " + std::to_string(want - 4) + " runs " + std::to_string(want - rest) +
                         " bytes past the end of the PDU");
            sink.message(pdu, body + pos, rest); // the codec says what it makes of the rest
            return;
        }
        sink.message(pdu, body + pos, want);
        pos += want;
    }
}

void split_datagram(const uint8_t *data, size_t len, pdu_sink &sink)
{
    if (len < pdu_header_len) {
        sink.problem("datagram of " + std::to_string(len) + " bytes, too short for an LDP PDU header");
        return;
    }
    const pdu_header h = read_header(data);
    if (!plausible(h)) {
        sink.problem("not an LDP PDU: " + describe(h));
        return;
    }
    size_t body = size_t(h.length) - 6u;
    if (body > len - pdu_header_len) {
        sink.problem("PDU length " + std::to_string(h.length) + " runs past the end of the datagram (" +
                     std::to_string(len) + " bytes)");
        body = len - pdu_header_len;
    } else if (body < len - pdu_header_len) {
        sink.problem(std::to_string(len - pdu_header_len - body) + " bytes after the PDU ignored");
    }
    split_messages(h, data + pdu_header_len, body, sink);
}

void pdu_splitter::feed(const uint8_t *data, size_t len, bool after_gap, pdu_sink &sink)
{
    if (after_gap) {
        if (!buf_.empty() && !searching_) {
            sink.problem("a PDU cut by a gap in the stream is dropped (" + std::to_string(buf_.size()) +
                         " bytes)");
        }
        consumed_ += buf_.size();
        buf_.clear();
        searching_ = true;
    }
    buf_.insert(buf_.end(), data, data + len);
    parse(sink);
}

void pdu_splitter::parse(pdu_sink &sink)
{
    size_t pos = 0;
    while (buf_.size() - pos >= pdu_header_len) {
        const pdu_header h = read_header(buf_.data() + pos);
        if (!plausible(h)) {
            if (!searching_) {
                sink.problem(describe(h) + " at stream offset " + std::to_string(consumed_ + pos) +
                             "; looking for the next PDU");
                searching_ = true;
            }
            ++pos;
            ++skipped_;
            continue;
        }
        const size_t total = size_t(h.length) + 4u;
        if (searching_) {
            // A chance 00 01 in the data is not taken for a header unless its
            // first message looks like one and fits in the PDU.
            if (buf_.size() - pos < pdu_header_len + 4) {
                break;
            }
            if (!likely_message(buf_.data() + pos + pdu_header_len, h.length - 6u)) {
                ++pos;
                ++skipped_;
                continue;
            }
        }
        if (buf_.size() - pos < total) {
            break; // wait for the rest
        }
        if (searching_) {
            if (skipped_ != 0) {
                sink.problem("resynchronised on a PDU header after " + std::to_string(skipped_) + " bytes");
            }
            searching_ = false;
            skipped_ = 0;
        }
        split_messages(h, buf_.data() + pos + pdu_header_len, total - pdu_header_len, sink);
        pos += total;
    }
    buf_.erase(buf_.begin(), buf_.begin() + std::ptrdiff_t(pos));
    consumed_ += pos;
}

void pdu_splitter::finish(pdu_sink &sink)
{
    if (buf_.size() >= pdu_header_len && !searching_) {
        const pdu_header h = read_header(buf_.data());
        sink.problem("PDU length " + std::to_string(h.length) + " runs past the end of the stream (" +
                     std::to_string(buf_.size()) + " bytes left)");
    } else if (!buf_.empty() && !searching_) {
        sink.problem(std::to_string(buf_.size()) + " bytes at the end of the stream, too few for a PDU header");
    } else if (searching_ && skipped_ + buf_.size() != 0) {
        sink.problem("no PDU header found in the last " + std::to_string(skipped_ + buf_.size()) +
                     " bytes of the stream");
    }
    consumed_ += buf_.size();
    buf_.clear();
    searching_ = false;
    skipped_ = 0;
}

} // namespace ldpdump
