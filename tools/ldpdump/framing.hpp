// SPDX-License-Identifier: BSD-2-Clause
// LDP PDU framing: a PDU header (version, length, LSR ID, label space) and
// the messages after it, from a UDP datagram or a reassembled TCP stream.
// Independent of libpcap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ldpdump {

constexpr size_t pdu_header_len = 10;

struct pdu_header {
    uint16_t version = 0;
    uint16_t length = 0; // bytes after the length field
    uint32_t lsr_id = 0;
    uint16_t label_space = 0;
};

// Receives what the splitter finds.
class pdu_sink {
public:
    virtual ~pdu_sink() = default;
    // One message, starting at its message header. `len` is what the PDU
    // holds of it: less than the message length says when the PDU ends first.
    virtual void message(const pdu_header &pdu, const uint8_t *msg, size_t len) = 0;
    virtual void problem(const std::string &text) = 0;
};

// Split a PDU body (the bytes after the 10-byte header) into messages.
void split_messages(const pdu_header &pdu, const uint8_t *body, size_t len, pdu_sink &sink);

// A UDP datagram holds one PDU.
void split_datagram(const uint8_t *data, size_t len, pdu_sink &sink);

// A TCP stream holds PDUs back to back; they may be split anywhere.
class pdu_splitter {
public:
    // Add stream bytes; every PDU completed by them goes to `sink`.
    // `after_gap`: bytes before these are lost, so the PDU being collected is
    // dropped and the next header is searched for.
    void feed(const uint8_t *data, size_t len, bool after_gap, pdu_sink &sink);
    // The stream ended: report a PDU left incomplete.
    void finish(pdu_sink &sink);

    uint64_t offset() const { return consumed_; } // stream offset of buf_[0]

private:
    void parse(pdu_sink &sink);

    std::vector<uint8_t> buf_;
    uint64_t consumed_ = 0;
    bool searching_ = false; // looking for a header after a gap or a bad header
    uint64_t skipped_ = 0;   // bytes passed over while searching
};

} // namespace ldpdump
