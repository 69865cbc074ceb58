// SPDX-License-Identifier: BSD-2-Clause
// Link (Ethernet with VLAN tags, Linux cooked, loopback, raw), IPv4/IPv6
// and TCP/UDP header decoding.
#include "packet.hpp"

#include <arpa/inet.h>

#include <cstring>

namespace ldpdump {
namespace {

uint16_t be16(const uint8_t *p) { return uint16_t(p[0] << 8 | p[1]); }
uint32_t be32(const uint8_t *p) { return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3]; }

constexpr uint16_t eth_ipv4 = 0x0800, eth_ipv6 = 0x86DD;

bool is_vlan(uint16_t ethertype) { return ethertype == 0x8100 || ethertype == 0x88A8 || ethertype == 0x9100; }

// Skip any VLAN tags; `p` and `len` start after an ethertype field.
decode_status skip_vlans(uint16_t &ethertype, const uint8_t *&p, size_t &len, std::string &why)
{
    while (is_vlan(ethertype)) {
        if (len < 4) {
            why = "VLAN tag cut short";
            return decode_status::truncated;
        }
        ethertype = be16(p + 2);
        p += 4;
        len -= 4;
    }
    return decode_status::ok;
}

decode_status transport(uint8_t proto, const uint8_t *p, size_t len, packet &pkt, std::string &why)
{
    pkt.proto = proto;
    if (proto == 17) {
        if (len < 8) {
            why = "UDP header cut short";
            return decode_status::truncated;
        }
        const uint16_t ulen = be16(p + 4);
        if (ulen < 8 || ulen > len) {
            why = "UDP length " + std::to_string(ulen) + " past the " + std::to_string(len) + " bytes captured";
            return decode_status::truncated;
        }
        pkt.sport = be16(p);
        pkt.dport = be16(p + 2);
        pkt.payload = p + 8;
        pkt.payload_len = ulen - 8u;
        return decode_status::ok;
    }
    if (proto == 6) {
        if (len < 20 || len < size_t(p[12] >> 4) * 4u || (p[12] >> 4) < 5) {
            why = "TCP header cut short";
            return decode_status::truncated;
        }
        const size_t hlen = size_t(p[12] >> 4) * 4u;
        pkt.sport = be16(p);
        pkt.dport = be16(p + 2);
        pkt.seq = be32(p + 4);
        pkt.tcp_flags = p[13];
        pkt.payload = p + hlen;
        pkt.payload_len = len - hlen;
        return decode_status::ok;
    }
    why = "IP protocol " + std::to_string(proto);
    return decode_status::not_ip;
}

decode_status ipv4(const uint8_t *p, size_t len, packet &pkt, std::string &why)
{
    if (len < 20 || (p[0] & 0x0F) < 5 || len < size_t(p[0] & 0x0F) * 4u) {
        why = "IPv4 header cut short";
        return decode_status::truncated;
    }
    const size_t hlen = size_t(p[0] & 0x0F) * 4u;
    const size_t total = be16(p + 2);
    if (total < hlen || total > len) {
        why = "IPv4 length " + std::to_string(total) + " past the " + std::to_string(len) + " bytes captured";
        return decode_status::truncated;
    }
    pkt.src.version = pkt.dst.version = 4;
    std::memcpy(pkt.src.bytes, p + 12, 4);
    std::memcpy(pkt.dst.bytes, p + 16, 4);
    if ((be16(p + 6) & 0x3FFF) != 0) { // more fragments, or an offset
        why = "IPv4 fragment";
        return decode_status::fragment;
    }
    return transport(p[9], p + hlen, total - hlen, pkt, why);
}

decode_status ipv6(const uint8_t *p, size_t len, packet &pkt, std::string &why)
{
    if (len < 40) {
        why = "IPv6 header cut short";
        return decode_status::truncated;
    }
    const size_t total = 40u + be16(p + 4);
    if (total > len) {
        why = "IPv6 length " + std::to_string(total) + " past the " + std::to_string(len) + " bytes captured";
        return decode_status::truncated;
    }
    pkt.src.version = pkt.dst.version = 6;
    std::memcpy(pkt.src.bytes, p + 8, 16);
    std::memcpy(pkt.dst.bytes, p + 24, 16);
    uint8_t next = p[6];
    size_t pos = 40;
    // Hop-by-hop, routing, fragment, destination options and AH headers.
    while (next == 0 || next == 43 || next == 44 || next == 60 || next == 51) {
        if (total - pos < 8) {
            why = "IPv6 extension header cut short";
            return decode_status::truncated;
        }
        const uint8_t *h = p + pos;
        size_t hlen = next == 44 ? 8 : next == 51 ? (size_t(h[1]) + 2) * 4 : (size_t(h[1]) + 1) * 8;
        if (next == 44 && (be16(h + 2) & 0xFFF9) != 0) { // an offset or more fragments
            why = "IPv6 fragment";
            return decode_status::fragment;
        }
        if (hlen > total - pos) {
            why = "IPv6 extension header cut short";
            return decode_status::truncated;
        }
        next = h[0];
        pos += hlen;
    }
    return transport(next, p + pos, total - pos, pkt, why);
}

decode_status by_ethertype(uint16_t ethertype, const uint8_t *p, size_t len, packet &pkt, std::string &why)
{
    const decode_status s = skip_vlans(ethertype, p, len, why);
    if (s != decode_status::ok) {
        return s;
    }
    if (ethertype == eth_ipv4) {
        return ipv4(p, len, pkt, why);
    }
    if (ethertype == eth_ipv6) {
        return ipv6(p, len, pkt, why);
    }
    why = "ethertype " + std::to_string(ethertype);
    return decode_status::not_ip;
}

decode_status by_version(const uint8_t *p, size_t len, packet &pkt, std::string &why)
{
    if (len >= 1 && p[0] >> 4 == 4) {
        return ipv4(p, len, pkt, why);
    }
    if (len >= 1 && p[0] >> 4 == 6) {
        return ipv6(p, len, pkt, why);
    }
    why = "not an IP header";
    return decode_status::not_ip;
}

decode_status cut_short(const char *what, std::string &why)
{
    why = std::string(what) + " header cut short";
    return decode_status::truncated;
}

} // namespace

std::string ip_addr::text() const
{
    char t[INET6_ADDRSTRLEN];
    if (inet_ntop(version == 6 ? AF_INET6 : AF_INET, bytes, t, sizeof t) == nullptr) {
        return "?";
    }
    return t;
}

bool ip_addr::operator<(const ip_addr &o) const
{
    if (version != o.version) {
        return version < o.version;
    }
    return std::memcmp(bytes, o.bytes, sizeof bytes) < 0;
}

decode_status decode_frame(int link, const uint8_t *data, size_t len, packet &pkt, std::string &why)
{
    pkt = packet{};
    switch (link) {
    case link_ethernet:
        if (len < 14) {
            return cut_short("Ethernet", why);
        }
        return by_ethertype(be16(data + 12), data + 14, len - 14, pkt, why);
    case link_sll:
        if (len < 16) {
            return cut_short("Linux cooked", why);
        }
        return by_ethertype(be16(data + 14), data + 16, len - 16, pkt, why);
    case link_sll2:
        if (len < 20) {
            return cut_short("Linux cooked v2", why);
        }
        return by_ethertype(be16(data), data + 20, len - 20, pkt, why);
    case link_null:
    case link_loop: {
        if (len < 4) {
            return cut_short("loopback", why);
        }
        // The family word is in the capturing host's order for DLT_NULL; IPv6
        // is 10, 24, 28 or 30 depending on the system. The version nibble decides.
        return by_version(data + 4, len - 4, pkt, why);
    }
    case link_raw:
    case link_raw_bsd:
    case link_raw_file:
    case link_ipv4:
    case link_ipv6:
        return by_version(data, len, pkt, why);
    default:
        why = "link type " + std::to_string(link);
        return decode_status::bad_link;
    }
}

} // namespace ldpdump
