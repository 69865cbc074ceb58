// SPDX-License-Identifier: BSD-2-Clause
// The pipeline behind ldpdump (see pipeline.hpp).
#include "pipeline.hpp"

#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "hex_text.hpp"
#include "ldp_codec.h"
#include "print.hpp"

namespace ldpdump {
namespace {

constexpr uint16_t ldp_port = 646;

std::string squeeze(const std::string &s)
{
    std::string out;
    for (unsigned char c : s) {
        if (std::isalnum(c)) {
            out += char(std::tolower(c));
        }
    }
    return out;
}

std::string endpoint(const ip_addr &a, uint16_t port)
{
    return (a.version == 6 ? "[" + a.text() + "]" : a.text()) + ":" + std::to_string(port);
}

std::string where(const origin &o)
{
    if (!o.from_capture) {
        return "line " + std::to_string(o.number);
    }
    std::string s = "frame " + std::to_string(o.number);
    if (!o.src.empty()) {
        s += " (" + std::string(o.proto) + " " + o.src + " > " + o.dst + ")";
    }
    return s;
}

// The record as the -v printers write it, caught in a string.
std::string record_text(uint32_t type, const void *rec)
{
    char *buf = nullptr;
    size_t size = 0;
    std::FILE *mem = open_memstream(&buf, &size);
    if (mem == nullptr) {
        return "";
    }
    print_record(mem, type, rec);
    std::fclose(mem);
    std::string s(buf, size);
    std::free(buf);
    return s;
}

} // namespace

bool parse_message_type(const std::string &text, uint16_t &type)
{
    char *end = nullptr;
    const unsigned long n = std::strtoul(text.c_str(), &end, 0);
    if (!text.empty() && *end == '\0' && n <= 0x7FFF) {
        type = uint16_t(n);
        return true;
    }
    static const uint16_t known[] = {LDP_MSG_NOTIFICATION,     LDP_MSG_HELLO,          LDP_MSG_INIT,
                                     LDP_MSG_KEEPALIVE,        LDP_MSG_CAPABILITY,     LDP_MSG_ADDRESS,
                                     LDP_MSG_ADDRESS_WITHDRAW, LDP_MSG_LABEL_MAPPING,  LDP_MSG_LABEL_REQUEST,
                                     LDP_MSG_LABEL_WITHDRAW,   LDP_MSG_LABEL_RELEASE,  LDP_MSG_LABEL_ABORT_REQUEST};
    // A whole name, or a part of one that only one name contains ("mapping").
    const std::string want = squeeze(text);
    int matches = 0;
    for (uint16_t t : known) {
        const std::string name = squeeze(message_name(t));
        if (name == want) {
            type = t;
            return true;
        }
        if (!want.empty() && name.find(want) != std::string::npos) {
            type = t;
            ++matches;
        }
    }
    return matches == 1;
}

bool parse_result_code(const std::string &text, uint32_t &code)
{
    static const uint32_t codes[] = {LDP_OK, LDP_ERR_PARAM, LDP_STATUS_UNKNOWN_MSG_TYPE, LDP_STATUS_BAD_MSG_LEN,
                                     LDP_STATUS_UNKNOWN_TLV, LDP_STATUS_BAD_TLV_LEN, LDP_STATUS_MALFORMED_TLV,
                                     LDP_STATUS_UNKNOWN_FEC, LDP_STATUS_MISSING_MSG_PARAMS, LDP_STATUS_UNSUPPORTED_AF,
                                     LDP_STATUS_INTERNAL_ERROR, LDP_ERR_IGNORE_MSG, LDP_ERR_NO_MEMORY};
    char *end = nullptr;
    const unsigned long n = std::strtoul(text.c_str(), &end, 0);
    for (uint32_t c : codes) {
        if (text == LDP_GetResultName(c) || (!text.empty() && *end == '\0' && n == c)) {
            code = c;
            return true;
        }
    }
    return false;
}

void pipeline::problem(const std::string &text)
{
    stats_.note_problem();
    std::fprintf(stderr, "ldpdump: %s: %s\n", where(current_).c_str(), text.c_str());
}

void pipeline::capture_error(uint64_t after_frame, const std::string &text)
{
    stats_.note_problem();
    std::fprintf(stderr, "ldpdump: frame %llu: cannot read the capture further: %s\n",
                 static_cast<unsigned long long>(after_frame + 1), text.c_str());
}

void pipeline::message(const pdu_header &pdu, const uint8_t *msg, size_t len) { handle(&pdu, msg, len); }

void pipeline::handle(const pdu_header *pdu, const uint8_t *msg, size_t len)
{
    message_report m;
    m.from = &current_;
    m.pdu = pdu;
    m.bytes = msg;
    m.len = len;
    m.type_word = len >= 2 ? uint16_t(msg[0] << 8 | msg[1]) : 0;
    m.id = len >= 8 ? uint32_t(msg[4]) << 24 | uint32_t(msg[5]) << 16 | uint32_t(msg[6]) << 8 | msg[7] : 0;
    if (!opt_.types.empty()) {
        bool wanted = false;
        for (uint16_t t : opt_.types) {
            wanted = wanted || (len >= 2 && t == (m.type_word & LDP_MSG_TYPE_MASK));
        }
        if (!wanted) {
            return;
        }
    }
    static const uint8_t nothing[1] = {0};
    uint32_t type = 0xFFFFFFFFu;
    void *rec = nullptr;
    m.rc = LDP_Decode(len != 0 ? msg : nothing, &type, &rec, uint32_t(len), 0);
    m.type_known = type != 0xFFFFFFFFu;
    m.tlvs = walk_tlvs(msg, len);
    if (rec != nullptr) {
        m.fields = key_fields(type, rec);
        if (opt_.verbose) {
            m.record_text = record_text(type, rec);
        }
        if (opt_.roundtrip || opt_.verbose) {
            m.round = roundtrip(type, rec, msg, len); // LDP_Encode releases the record
        } else {
            LDP_FreeMessage(rec);
        }
    }
    if (m.rc != LDP_OK) {
        m.failure = locate_failure(msg, len, m.rc);
    }
    if (opt_.json) {
        write_json(stdout, m, opt_.roundtrip);
    } else {
        write_text(stdout, m, opt_.verbose, opt_.roundtrip);
        if (opt_.hexdump) {
            print_hex(stdout, std::vector<uint8_t>(msg, msg + len));
        }
    }
    const std::vector<uint8_t> copy(msg, msg + len);
    if (opt_.log) {
        opt_.log->record(copy, m.rc);
    }
    if (opt_.box) {
        opt_.box->keep(unsigned(current_.number), copy, m.rc);
    }
    stats_.count(m);
    // LDP_STOP_WALK hands content to the engine: not a failure.
    bool refused = m.rc != LDP_OK && m.rc != LDP_STOP_WALK;
    for (uint32_t code : opt_.allowed) {
        refused = refused && m.rc != code;
    }
    failed_ = failed_ || refused || (opt_.roundtrip && m.round && m.round->failed());
}

void pipeline::hex_line(uint64_t line, const std::string &text)
{
    current_ = origin{};
    current_.number = line;
    std::vector<uint8_t> msg;
    if (!ldphex::parse(text, msg)) {
        failed_ = true;
        // A binary file read as hex would report every line: the first few do.
        if (++bad_lines_ <= 10) {
            problem("not a hex message (" + std::to_string(text.size()) + " characters)");
        } else if (bad_lines_ == 11) {
            problem("more lines that are not hex follow; not reported one by one");
        }
        return;
    }
    handle(nullptr, msg.data(), msg.size());
}

void pipeline::apply(flow &fl, stream_events &ev)
{
    for (const std::string &p : ev.problems) {
        problem(p);
    }
    for (const stream_chunk &c : ev.chunks) {
        fl.split.feed(c.bytes.data(), c.bytes.size(), c.after_gap, *this);
    }
    if (ev.closed) {
        fl.split.finish(*this);
    }
}

void pipeline::frame(int link, const ldpdump::frame &f)
{
    current_ = origin{};
    current_.from_capture = true;
    current_.number = f.number;
    current_.sec = f.sec;
    current_.usec = f.usec;
    packet pkt;
    std::string why;
    const decode_status st = decode_frame(link, f.data, f.len, pkt, why);
    if (st != decode_status::ok) {
        stats_.note_frame(false);
        if (st == decode_status::truncated) {
            problem("frame cut short: " + why);
        } else if (st == decode_status::bad_link && !link_reported_) {
            link_reported_ = true;
            problem("cannot read frames of " + why);
        }
        return;
    }
    if (pkt.sport != ldp_port && pkt.dport != ldp_port) {
        stats_.note_frame(false);
        return;
    }
    stats_.note_frame(true);
    current_.proto = pkt.proto == 6 ? "tcp" : "udp";
    current_.src = endpoint(pkt.src, pkt.sport);
    current_.dst = endpoint(pkt.dst, pkt.dport);
    if (pkt.proto == 17) {
        split_datagram(pkt.payload, pkt.payload_len, *this);
        return;
    }
    flow &fl = flows_[flow_key{pkt.src, pkt.dst, pkt.sport, pkt.dport}];
    fl.last = current_;
    stream_events ev = fl.tcp.segment(pkt.seq, pkt.tcp_flags, pkt.payload, pkt.payload_len);
    if (ev.opened) {
        fl.split.finish(*this); // whatever the earlier connection left
    }
    apply(fl, ev);
}

void pipeline::finish()
{
    for (auto &[key, fl] : flows_) {
        current_ = fl.last;
        stream_events ev = fl.tcp.finish();
        apply(fl, ev);
        fl.split.finish(*this);
        stats_.note_tcp(fl.tcp.retransmitted(), fl.tcp.out_of_order());
    }
    flows_.clear();
}

} // namespace ldpdump
