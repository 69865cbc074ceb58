// SPDX-License-Identifier: BSD-2-Clause
// --stats: message counts by type and by result code, printed at the end.
#include "ldp_codec.h"
#include "report.hpp"

namespace ldpdump {

void stats::count(const message_report &m)
{
    ++messages_;
    ++types_[m.len >= 2 ? type_text(m.type_word) : "(no type)"];
    ++results_[LDP_GetResultName(m.rc)];
    roundtrip_diff_ += m.round && !m.round->same ? 1 : 0;
}

void stats::write(std::FILE *out, bool json) const
{
    if (json) {
        auto object = [](const std::map<std::string, uint64_t> &m) {
            std::string s = "{";
            for (const auto &[k, v] : m) {
                s += (s.size() > 1 ? "," : "") + json_string(k) + ":" + std::to_string(v);
            }
            return s + "}";
        };
        std::fprintf(out,
                     "{\"stats\":{\"messages\":%llu,\"types\":%s,\"results\":%s,\"frames\":%llu,\"ldp_frames\":%llu,"
                     "\"problems\":%llu,\"tcp_retransmitted\":%llu,\"tcp_out_of_order\":%llu,"
                     "\"roundtrip_differs\":%llu}}\n",
                     static_cast<unsigned long long>(messages_), object(types_).c_str(), object(results_).c_str(),
                     static_cast<unsigned long long>(frames_), static_cast<unsigned long long>(ldp_frames_),
                     static_cast<unsigned long long>(problems_), static_cast<unsigned long long>(retransmitted_),
                     static_cast<unsigned long long>(out_of_order_), static_cast<unsigned long long>(roundtrip_diff_));
        return;
    }
    std::fprintf(out, "%llu messages", static_cast<unsigned long long>(messages_));
    if (frames_ != 0) {
        std::fprintf(out, " in %llu LDP frames of %llu", static_cast<unsigned long long>(ldp_frames_),
                     static_cast<unsigned long long>(frames_));
    }
    std::fprintf(out, ", %llu problems reported", static_cast<unsigned long long>(problems_));
    if (retransmitted_ + out_of_order_ != 0) {
        std::fprintf(out, ", TCP: %llu retransmitted and %llu out-of-order segments",
                     static_cast<unsigned long long>(retransmitted_), static_cast<unsigned long long>(out_of_order_));
    }
    std::fputc('\n', out);
    std::fputs("by type:\n", out);
    for (const auto &[k, v] : types_) {
        std::fprintf(out, "  %-22s %llu\n", k.c_str(), static_cast<unsigned long long>(v));
    }
    std::fputs("by result:\n", out);
    for (const auto &[k, v] : results_) {
        std::fprintf(out, "  %-30s %llu\n", k.c_str(), static_cast<unsigned long long>(v));
    }
    if (roundtrip_diff_ != 0) {
        std::fprintf(out, "re-encoded differently: %llu\n", static_cast<unsigned long long>(roundtrip_diff_));
    }
}

} // namespace ldpdump
