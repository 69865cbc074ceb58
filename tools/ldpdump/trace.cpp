// SPDX-License-Identifier: BSD-2-Clause
// ldpdump's --hexdump, --log and --blackbox (see trace.hpp).
#include "trace.hpp"

#include <chrono>
#include <cstring>
#include <string>

#include "print.hpp"

namespace ldpdump {
namespace {

// The header fields of a message, or zeros for what is missing.
struct header {
    uint16_t type = 0;
    uint16_t len = 0;
    uint32_t id = 0;
};

header header_of(const std::vector<uint8_t> &m)
{
    header h;
    if (m.size() >= 4) {
        h.type = uint16_t(m[0] << 8 | m[1]);
        h.len = uint16_t(m[2] << 8 | m[3]);
    }
    if (m.size() >= 8) {
        h.id = uint32_t(m[4]) << 24 | uint32_t(m[5]) << 16 | uint32_t(m[6]) << 8 | m[7];
    }
    return h;
}

// Microseconds on a steady clock; 0 would mean "no time" to the log.
uint32_t now_us()
{
    const auto us = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    const auto t = uint32_t(us.count());
    return t != 0 ? t : 1;
}

// Records of the ring dropped to make room, counted by its free callback.
uint32_t g_dropped;

void count_drop(void *, uint32_t ulArg)
{
    g_dropped += ulArg;
}

// What a blackbox record holds: how a message's decode ended, then its bytes.
struct failed_msg {
    uint32_t index;
    uint32_t rc;
    uint32_t len;
    uint8_t *bytes() { return reinterpret_cast<uint8_t *>(this + 1); }
};

} // namespace

void print_hex(std::FILE *out, const std::vector<uint8_t> &msg)
{
    // The formatter counts in 16 bits: dump at most what a 64 KiB text holds.
    const size_t count = msg.size() < 0xFFFF ? msg.size() : 0xFFFF;
    const size_t want = count * 3 + count / 16 * 2 + 5;
    std::string text(want < 0xFFFF ? want : 0xFFFF, '\0');
    LDP_SetPktDataToHexStrRecord(msg.data(), uint16_t(count), text.data(), uint32_t(text.size()));
    text.resize(std::strlen(text.c_str()));
    while (!text.empty() && (text.back() == ' ' || text.back() == '\n')) {
        text.pop_back();
    }
    // Continuation lines already start with a blank.
    std::string indented = "    ";
    for (char c : text) {
        indented += c;
        if (c == '\n') {
            indented += "   ";
        }
    }
    std::fprintf(out, "%s\n", indented.c_str());
}

message_log::message_log(uint16_t entries) : entries_(entries), log_{0, entries, 0, entries_.data()} {}

void message_log::record(const std::vector<uint8_t> &msg, uint32_t rc)
{
    const header h = header_of(msg);
    LDP_RecordMsgLog(&log_, h.type, h.len, h.id, rc, now_us());
    ++recorded_;
}

void message_log::print(std::FILE *out) const
{
    const uint32_t count = log_.usEntryCount;
    const uint32_t held = recorded_ < count ? recorded_ : count;
    std::fprintf(out, "message log: last %u of %u message(s), largest gap %u us\n", held, recorded_,
                 unsigned(log_.ulMaxGap));
    // Full or not, the oldest held entry is where the next one would go,
    // less the entries not yet written.
    const uint32_t first = (log_.usNextIndex + count - held) % count;
    for (uint32_t i = 0; i < held; ++i) {
        const LDP_MsgLogEntry &e = entries_[(first + i) % count];
        const uint32_t type = e.ulParam1;
        std::fprintf(out, "  %02u:%02u:%02u  %-19s type 0x%04x  id %u  length %u  %s\n", e.aucClock[0],
                     e.aucClock[1], e.aucClock[2], message_name(type & LDP_MSG_TYPE_MASK), unsigned(type),
                     unsigned(e.ulParam3), unsigned(e.usParam2), result_name(e.ulParam4));
    }
}

failure_box::failure_box(uint32_t capacity)
{
    g_dropped = 0;
    if (LDP_CreateBlackbox(&box_, capacity, capacity, 0, count_drop) != 0) {
        box_ = nullptr;
    }
}

failure_box::~failure_box()
{
    LDP_ReleaseBlackbox(box_, 0); // a release, not a drop: the callback adds 0
}

void failure_box::keep(unsigned index, const std::vector<uint8_t> &msg, uint32_t rc)
{
    if (rc == LDP_OK || rc == LDP_STOP_WALK) {
        return;
    }
    ++failures_;
    auto *rec = static_cast<failed_msg *>(LDP_AllocBlackRecord(box_, uint32_t(sizeof(failed_msg) + msg.size())));
    if (rec == nullptr) {
        return;
    }
    rec->index = index;
    rec->rc = rc;
    rec->len = uint32_t(msg.size());
    if (!msg.empty()) {
        std::memcpy(rec->bytes(), msg.data(), msg.size());
    }
    (void)LDP_AddBlackRecord(box_, rec, 1);
}

void failure_box::print(std::FILE *out)
{
    std::fprintf(out, "blackbox: %u failed message(s), %u dropped, the last kept:\n", failures_,
                 unsigned(g_dropped));
    uint32_t serial = 0;
    uint32_t cursor = 0;
    for (void *p = LDP_GetFirstBlackRecord(box_, &serial, &cursor); p != nullptr;
         p = LDP_GetNextBlackRecord(box_, &serial, &cursor)) {
        auto *rec = static_cast<failed_msg *>(p);
        SYS_Systime t{};
        (void)LDP_GetBlackboxRecordTime(box_, p, &t);
        // The default platform's time: hour, minute, second at bytes 4 to 6,
        // milliseconds big-endian at 7 and 8.
        std::fprintf(out, "  #%u [%u] %02u:%02u:%02u.%03u  %s (%u)\n", unsigned(serial), unsigned(rec->index),
                     t.aucTime[4], t.aucTime[5], t.aucTime[6], unsigned(t.aucTime[7] << 8 | t.aucTime[8]),
                     result_name(rec->rc), unsigned(rec->rc));
        print_hex(out, std::vector<uint8_t>(rec->bytes(), rec->bytes() + rec->len));
    }
}

} // namespace ldpdump
