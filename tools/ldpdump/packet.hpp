// SPDX-License-Identifier: BSD-2-Clause
// Link, IP and transport headers of one captured frame, down to the TCP or
// UDP payload. Works on bytes alone (no libpcap), so tests and the fuzz
// target can drive it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ldpdump {

// Link-layer header types as libpcap numbers them (DLT_*).
enum link_type : int {
    link_null = 0,       // BSD loopback: 4-byte family in the capturing host's order
    link_ethernet = 1,
    link_raw = 12,       // bare IPv4 or IPv6 (Linux DLT_RAW)
    link_raw_bsd = 14,   // the same on OpenBSD
    link_raw_file = 101, // LINKTYPE_RAW as stored in a file
    link_loop = 108,     // OpenBSD loopback: family in network order
    link_sll = 113,      // Linux cooked capture
    link_ipv4 = 228,
    link_ipv6 = 229,
    link_sll2 = 276,     // Linux cooked capture, version 2
};

// An IPv4 address in the first 4 bytes, or an IPv6 address.
struct ip_addr {
    uint8_t version = 0; // 4 or 6
    uint8_t bytes[16] = {};
    std::string text() const;
    bool operator<(const ip_addr &o) const;
};

enum : uint8_t { tcp_fin = 0x01, tcp_syn = 0x02, tcp_rst = 0x04, tcp_ack = 0x10 };

struct packet {
    ip_addr src, dst;
    uint8_t proto = 0; // 6 TCP, 17 UDP
    uint16_t sport = 0, dport = 0;
    uint32_t seq = 0;      // TCP only
    uint8_t tcp_flags = 0; // TCP only
    const uint8_t *payload = nullptr;
    size_t payload_len = 0;
};

enum class decode_status {
    ok,          // a TCP or UDP packet: `pkt` filled
    not_ip,      // a frame that is not IPv4/IPv6, or IP that is neither TCP nor UDP
    truncated,   // a header, or the payload an IP or UDP length claims, is cut short
    fragment,    // an IP fragment (not reassembled)
    bad_link,    // a link type this tool does not read
};

// Peel the headers off one frame. On anything but ok, `why` says what was
// wrong in a few words.
decode_status decode_frame(int link, const uint8_t *data, size_t len, packet &pkt, std::string &why);

} // namespace ldpdump
