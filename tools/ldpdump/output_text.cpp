// SPDX-License-Identifier: BSD-2-Clause
// The one-line text output, and with -v the whole record, the TLVs and
// where a decode failed.
#include <ctime>

#include "ldp_codec.h"
#include "print.hpp"
#include "report.hpp"

namespace ldpdump {

std::string type_text(uint16_t type_word)
{
    const uint16_t t = type_word & LDP_MSG_TYPE_MASK;
    const char *name = message_name(t);
    char text[48];
    if (std::string(name) == "unknown message") {
        std::snprintf(text, sizeof text, "type 0x%04x", t);
        return text;
    }
    return name;
}

namespace {

std::string when(const origin &o)
{
    const time_t t = time_t(o.sec);
    std::tm tm{};
    gmtime_r(&t, &tm);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%06d", tm.tm_hour, tm.tm_min, tm.tm_sec, int(o.usec));
    return text;
}

std::string tlv_list(const std::vector<tlv_info> &tlvs)
{
    std::string s;
    for (const tlv_info &t : tlvs) {
        char b[16];
        std::snprintf(b, sizeof b, "0x%04x", t.type());
        s += (s.empty() ? "" : ", ") + std::string(b) + " " + tlv_name(t.type());
    }
    return s;
}

bool listed(const std::vector<tlv_info> &list, const tlv_info &t)
{
    for (const tlv_info &x : list) {
        if (x.offset == t.offset) {
            return true;
        }
    }
    return false;
}

} // namespace

void write_text(std::FILE *out, const message_report &m, bool verbose, bool show_roundtrip)
{
    const origin &o = *m.from;
    std::fprintf(out, "[%llu] ", static_cast<unsigned long long>(o.number));
    if (o.from_capture) {
        std::fprintf(out, "%s %s %s > %s ", when(o).c_str(), o.proto, o.src.c_str(), o.dst.c_str());
    }
    if (m.pdu != nullptr) {
        std::fprintf(out, "lsr %s:%u ", ipv4_text(m.pdu->lsr_id).c_str(), m.pdu->label_space);
    }
    std::fprintf(out, "%s%s", m.len >= 2 ? type_text(m.type_word).c_str() : "(no type)",
                 (m.type_word & LDP_MSG_U_BIT) ? " (U)" : "");
    if (m.len >= 8) {
        std::fprintf(out, " id %u", m.id);
    }
    std::fprintf(out, " %s", LDP_GetResultName(m.rc));
    for (const field &f : m.fields) {
        if (!f.text.empty()) {
            std::fprintf(out, " %s", f.text.c_str());
        }
    }
    std::fputc('\n', out);
    if (verbose) {
        if (m.failure) {
            std::fprintf(out, "    decode %s %s\n", m.rc == LDP_STOP_WALK ? "stopped" : "failed",
                         m.failure->text.c_str());
        }
        std::fputs(m.record_text.c_str(), out);
        for (const tlv_info &t : m.tlvs) {
            const bool dropped = m.round && listed(m.round->not_kept, t);
            const bool unknown = std::string(tlv_name(t.type())) == "unknown TLV";
            std::fprintf(out, "    TLV 0x%04x%s%s %s, length %u at offset %zu%s%s", t.type(),
                         (t.type_word & LDP_TLV_U_BIT) ? " U" : "", (t.type_word & LDP_TLV_F_BIT) ? " F" : "",
                         tlv_name(t.type()), t.len, t.offset, t.complete ? "" : " (runs past the message)",
                         dropped ? ", not kept by the record" : "");
            if ((dropped || unknown) && t.complete) {
                std::fprintf(out, ": %s", hex_bytes(m.bytes + t.offset + 4, t.len, " ").c_str());
            }
            std::fputc('\n', out);
        }
    }
    if (show_roundtrip && m.round && !m.round->same) {
        const roundtrip_result &r = *m.round;
        if (r.rc != LDP_OK) {
            std::fprintf(out, "    roundtrip: LDP_Encode failed with %s\n", LDP_GetResultName(r.rc));
            return;
        }
        std::fprintf(out, "    roundtrip: the re-encoded message differs%s\n",
                     r.failed() ? " (not explained by TLVs the record does not keep)" : "");
        if (!r.not_kept.empty()) {
            std::fprintf(out, "      not kept by the record: %s\n", tlv_list(r.not_kept).c_str());
        }
        if (!r.partly.empty()) {
            std::fprintf(out, "      of those, kept only in part: %s\n", tlv_list(r.partly).c_str());
        }
        if (!r.added.empty()) {
            std::fprintf(out, "      written but not in the message: %s\n", tlv_list(r.added).c_str());
        }
        if (r.header_changed) {
            std::fputs("      message header written back differently\n", out);
        }
        if (r.reordered) {
            std::fputs("      TLVs written back in another order\n", out);
        }
    }
}

} // namespace ldpdump
