// SPDX-License-Identifier: BSD-2-Clause
// Seeds for fuzz_stream from a real capture: every frame as it was captured,
// and, for each TCP or UDP payload, the payload alone (read as a datagram)
// and the payload cut into two segments in fuzz_stream's segment-run form
// (flags, sequence step, length, bytes).
//   stream_seeds CAPTURE OUT_DIR
#include <pcap/pcap.h>

#include <cstdio>
#include <string>
#include <vector>

#include "packet.hpp"

namespace {

void write(const std::string &path, const std::vector<uint8_t> &bytes)
{
    if (FILE *f = std::fopen(path.c_str(), "wb")) {
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
    }
}

void segment(std::vector<uint8_t> &out, uint8_t flags, const uint8_t *data, size_t len)
{
    out.insert(out.end(), {flags, 0, uint8_t(len >> 8), uint8_t(len)});
    out.insert(out.end(), data, data + len);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: stream_seeds CAPTURE OUT_DIR\n");
        return 2;
    }
    char err[PCAP_ERRBUF_SIZE] = {};
    pcap_t *cap = pcap_open_offline(argv[1], err);
    if (cap == nullptr) {
        std::fprintf(stderr, "stream_seeds: %s\n", err);
        return 2;
    }
    const std::string dir = argv[2];
    const int link = pcap_datalink(cap);
    pcap_pkthdr *hdr = nullptr;
    const u_char *data = nullptr;
    int n = 0;
    // A few dozen frames are plenty: the fuzzer mutates from there.
    for (; n < 48 && pcap_next_ex(cap, &hdr, &data) == 1; ++n) {
        const std::string base = dir + "/seed-" + std::to_string(n);
        write(base + "-frame", std::vector<uint8_t>(data, data + hdr->caplen));
        ldpdump::packet pkt;
        std::string why;
        if (ldpdump::decode_frame(link, data, hdr->caplen, pkt, why) != ldpdump::decode_status::ok ||
            pkt.payload_len == 0) {
            continue;
        }
        write(base + "-payload", std::vector<uint8_t>(pkt.payload, pkt.payload + pkt.payload_len));
        std::vector<uint8_t> run;
        const size_t half = pkt.payload_len / 2;
        segment(run, ldpdump::tcp_ack, pkt.payload, half);
        segment(run, ldpdump::tcp_ack | ldpdump::tcp_fin, pkt.payload + half, pkt.payload_len - half);
        write(base + "-segments", run);
    }
    pcap_close(cap);
    std::printf("%d frames\n", n);
    return n > 0 ? 0 : 1;
}
