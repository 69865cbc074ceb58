// SPDX-License-Identifier: BSD-2-Clause
// ldpdump's tracing options, built on the library's debug utilities: the hex
// dump of each message, a message log of every message with the largest gap
// between them, and a blackbox of the last messages that failed to decode.
#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "ldp_codec.h"

namespace ldpdump {

// The bytes through LDP_SetPktDataToHexStrRecord, indented under a message.
void print_hex(std::FILE *out, const std::vector<uint8_t> &msg);

// Type, ID, length, result and time of every message in an LDP_MsgLog.
class message_log {
public:
    explicit message_log(uint16_t entries);
    void record(const std::vector<uint8_t> &msg, uint32_t rc);
    void print(std::FILE *out) const;

private:
    std::vector<LDP_MsgLogEntry> entries_;
    LDP_MsgLog log_;
    uint32_t recorded_ = 0;
};

// The last messages that failed to decode, in an LDP_Blackbox ring.
class failure_box {
public:
    explicit failure_box(uint32_t capacity);
    ~failure_box();
    failure_box(const failure_box &) = delete;
    failure_box &operator=(const failure_box &) = delete;

    bool ok() const { return box_ != nullptr; }
    void keep(unsigned index, const std::vector<uint8_t> &msg, uint32_t rc);
    void print(std::FILE *out);

private:
    LDP_Blackbox *box_ = nullptr;
    uint32_t failures_ = 0;
};

} // namespace ldpdump
