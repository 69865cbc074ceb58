// SPDX-License-Identifier: BSD-2-Clause
// Interoperability check against an independent LDP dissector (tshark).
// Every sample message that decodes is encoded again by the library and
// written to a pcap as an LDP PDU over UDP port 646 (as received where the
// round trip is not byte for byte, see main); alongside, the fields
// our decoder found are printed in the layout of `tshark -T fields` with the
// options used by run.sh, so the two can be compared line by line.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "hex_text.hpp"
#include "ldp_codec.h"

namespace {

using bytes = std::vector<uint8_t>;

void put16(bytes &b, unsigned v)
{
    b.push_back(uint8_t(v >> 8));
    b.push_back(uint8_t(v));
}

void put32(bytes &b, uint32_t v)
{
    put16(b, v >> 16);
    put16(b, v & 0xFFFF);
}

void put32le(std::FILE *f, uint32_t v)
{
    const uint8_t b[4] = {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16), uint8_t(v >> 24)};
    std::fwrite(b, 1, 4, f);
}

// One pcap record: IPv4 (LINKTYPE_IPV4) / UDP 646 -> 646 / LDP PDU header / message.
void write_packet(std::FILE *f, const uint8_t *msg, size_t len, unsigned n)
{
    bytes pdu;
    put16(pdu, 1);                     // LDP version
    put16(pdu, unsigned(6 + len));     // PDU length: LDP identifier plus the message
    put32(pdu, 0xC0000201u);           // LSR ID 192.0.2.1
    put16(pdu, 0);                     // label space
    pdu.insert(pdu.end(), msg, msg + len);

    bytes udp;
    put16(udp, 646);
    put16(udp, 646);
    put16(udp, unsigned(8 + pdu.size()));
    put16(udp, 0); // no checksum
    udp.insert(udp.end(), pdu.begin(), pdu.end());

    bytes ip = {0x45, 0x00};
    put16(ip, unsigned(20 + udp.size()));
    put16(ip, n); // identification
    put16(ip, 0);
    ip.push_back(1);  // TTL
    ip.push_back(17); // UDP
    put16(ip, 0);     // checksum, filled below
    put32(ip, 0xC0000201u);
    put32(ip, 0xE0000002u); // 224.0.0.2, all routers
    uint32_t sum = 0;
    for (size_t i = 0; i < 20; i += 2) {
        sum += unsigned(ip[i]) << 8 | ip[i + 1];
    }
    while (sum >> 16) {
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    ip[10] = uint8_t(~sum >> 8);
    ip[11] = uint8_t(~sum);
    ip.insert(ip.end(), udp.begin(), udp.end());

    put32le(f, n);     // seconds
    put32le(f, 0);     // microseconds
    put32le(f, uint32_t(ip.size()));
    put32le(f, uint32_t(ip.size()));
    std::fwrite(ip.data(), 1, ip.size(), f);
}

std::string ipv4(uint32_t a)
{
    char t[16];
    std::snprintf(t, sizeof t, "%u.%u.%u.%u", a >> 24, (a >> 16) & 0xFF, (a >> 8) & 0xFF, a & 0xFF);
    return t;
}

// Prefix and host address values of the FEC elements, in list order.
void fec_values(const LDP_FecTlv &fec, std::string &prefixes, std::string &hosts)
{
    const auto *head = reinterpret_cast<const SLL_Node *>(&fec.stFecList);
    for (const SLL_Node *n = fec.stFecList.stHead.pNext; n != nullptr && n != head; n = n->pNext) {
        const auto &body = reinterpret_cast<const LDP_FecElement *>(n)->stBody;
        if (body.usAddrFamily != LDP_AF_IPV4) {
            continue; // the IPv6 text forms of the two programs need not agree
        }
        const uint32_t a = uint32_t(body.aucAddr[0]) << 24 | uint32_t(body.aucAddr[1]) << 16 |
                           uint32_t(body.aucAddr[2]) << 8 | body.aucAddr[3];
        std::string &to = body.ucFecType == LDP_FEC_HOST_ADDR ? hosts : prefixes;
        if (body.ucFecType == LDP_FEC_PREFIX || body.ucFecType == LDP_FEC_HOST_ADDR) {
            to += (to.empty() ? "" : ",") + ipv4(a);
        }
    }
}

std::string hex32(uint32_t v)
{
    char t[16];
    std::snprintf(t, sizeof t, "0x%08x", v);
    return t;
}

// The line tshark should print for this record; fields as in run.sh.
std::string expected_line(uint32_t type, const void *rec)
{
    const auto &h = *static_cast<const LDP_MsgHeader *>(rec);
    char head[64];
    std::snprintf(head, sizeof head, "0x%04x|%u|0x%08x", h.usMsgType & LDP_MSG_TYPE_MASK, h.usMsgLen, h.ulMsgId);
    std::string hold, taddr, ka, rxlsr, label, hops, reqid, prefixes, hosts;
    // The label messages: the label when present, then the FEC values.
    auto labelled = [&](const auto &m, bool has_label) {
        label = has_label ? std::to_string(m.stLabelTlv.ulLabel) : "";
        fec_values(m.stFecTlv, prefixes, hosts);
    };
    if (type == LDP_MSG_HELLO) {
        const auto &m = *static_cast<const LDP_HelloMsg *>(rec);
        hold = std::to_string(m.usHoldTime);
        taddr = m.ucHelloOptFlags & LDP_HELLO_OPT_IPV4_TRANS ? ipv4(m.ulIpv4TransAddr) : "";
    } else if (type == LDP_MSG_INIT) {
        const auto &m = *static_cast<const LDP_InitMsg *>(rec);
        ka = std::to_string(m.stCommSess.usKeepAliveTime);
        rxlsr = ipv4(m.stCommSess.ulReceiverLsrId);
    } else if (type == LDP_MSG_LABEL_MAPPING) {
        const auto &m = *static_cast<const LDP_MappingMsg *>(rec);
        labelled(m, true);
        hops = m.ucOptFlags1 & LDP_MAP_OPT_HOP_COUNT ? std::to_string(m.stHopCountTlv.ucHopCount) : "";
        reqid = m.ucOptFlags1 & LDP_MAP_OPT_LABEL_REQ_ID ? hex32(m.stLabelReqIdTlv.ulReqMsgId) : "";
    } else if (type == LDP_MSG_NOTIFICATION) {
        const auto &m = *static_cast<const LDP_NotifyMsg *>(rec);
        reqid = m.ucNotifFlags & LDP_NOTIF_LABEL_REQ_ID ? hex32(m.ulLabelReqMsgId) : "";
        if (m.ucNotifFlags & LDP_NOTIF_FEC) {
            fec_values(m.stFecTlv, prefixes, hosts);
        }
    } else if (type == LDP_MSG_LABEL_REQUEST) {
        const auto &m = *static_cast<const LDP_RequestMsg *>(rec);
        labelled(m, m.ucOptFlags1 & LDP_REQ_OPT_LABEL);
        hops = m.ucOptFlags1 & LDP_REQ_OPT_HOP_COUNT ? std::to_string(m.stHopCountTlv.ucHopCount) : "";
    } else if (type == LDP_MSG_LABEL_WITHDRAW) {
        const auto &m = *static_cast<const LDP_LabelWithdrawMsg *>(rec);
        labelled(m, m.ucLblFlags & LDP_WDR_FLAG_LABEL);
    } else if (type == LDP_MSG_LABEL_RELEASE) {
        const auto &m = *static_cast<const LDP_LabelReleaseMsg *>(rec);
        labelled(m, m.ucLblFlags & LDP_REL_FLAG_LABEL);
    } else if (type == LDP_MSG_LABEL_ABORT_REQUEST) {
        const auto &m = *static_cast<const LDP_LabelRequestAbortMsg *>(rec);
        reqid = hex32(m.ulLabelReqMsgId);
        fec_values(m.stFecTlv, prefixes, hosts);
    }
    return std::string(head) + "|" + hold + "|" + taddr + "|" + ka + "|" + rxlsr + "|" + label + "|" + hops +
           "|" + reqid + "|" + prefixes + "|" + hosts;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: ldp_interop SAMPLES.hex OUT.pcap EXPECTED.txt\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    std::FILE *pcap = std::fopen(argv[2], "wb");
    std::FILE *expected = std::fopen(argv[3], "w");
    if (!in || pcap == nullptr || expected == nullptr) {
        std::fprintf(stderr, "ldp_interop: cannot open the files\n");
        return 2;
    }
    put32le(pcap, 0xA1B2C3D4u); // pcap magic, microseconds
    const uint8_t version[4] = {2, 0, 4, 0};
    std::fwrite(version, 1, 4, pcap);
    put32le(pcap, 0);     // time zone
    put32le(pcap, 0);     // accuracy
    put32le(pcap, 65535); // snap length
    put32le(pcap, 228);   // LINKTYPE_IPV4

    std::string line;
    unsigned packets = 0;
    unsigned encoded = 0;
    bytes msg;
    while (std::getline(in, line)) {
        if (!ldphex::parse(ldphex::strip_comment(line), msg) || msg.empty()) {
            continue;
        }
        uint32_t type = 0;
        void *rec = nullptr;
        if (LDP_Decode(msg.data(), &type, &rec, uint32_t(msg.size()), 0) != LDP_OK) {
            continue; // refused samples have no record to encode
        }
        const std::string want = expected_line(type, rec);
        uint8_t *wire = nullptr;
        if (LDP_Encode(&wire, type, rec, 0) != LDP_OK) {
            std::fprintf(stderr, "ldp_interop: a decoded record did not encode: %s\n", line.c_str());
            return 1;
        }
        const size_t len = (size_t(wire[2]) << 8 | wire[3]) + 4;
        // A record keeps the received length, so a message whose decoder drops
        // or reorders TLVs does not come back byte for byte (the rest of the
        // message is zero). Such samples go out as received, which still
        // checks our decoder; the others as we encoded them.
        const bool same = len == msg.size() && std::memcmp(wire, msg.data(), len) == 0;
        write_packet(pcap, same ? wire : msg.data(), same ? len : msg.size(), ++packets);
        encoded += same ? 1 : 0;
        LDP_MemFreeCallBack(wire);
        std::fprintf(expected, "%s\n", want.c_str());
    }
    std::fclose(pcap);
    std::fclose(expected);
    std::printf("ldp_interop: %u messages, %u of them as re-encoded by the library\n", packets, encoded);
    return packets > 0 && encoded > 0 ? 0 : 1;
}
