// SPDX-License-Identifier: BSD-2-Clause
// libFuzzer target for ldpdump's packet decoding, TCP reassembly and PDU
// splitting. The input is read as a frame for every link type, as one UDP
// datagram, and as a run of TCP segments (flags, sequence step, length,
// bytes) for one direction of a connection; every message found goes
// through LDP_Decode. ASan and UBSan catch what goes wrong; a small bound on
// held bytes makes the gap-skipping path common.
#include <cstdint>
#include <cstring>
#include <string>

#include "framing.hpp"
#include "ldp_codec.h"
#include "packet.hpp"
#include "reassembly.hpp"

namespace {

class decode_sink : public ldpdump::pdu_sink {
public:
    void message(const ldpdump::pdu_header &, const uint8_t *msg, size_t len) override
    {
        uint32_t type = 0;
        void *rec = nullptr;
        static const uint8_t nothing[1] = {0};
        LDP_Decode(len != 0 ? msg : nothing, &type, &rec, uint32_t(len), 0);
        LDP_FreeMessage(rec);
    }
    void problem(const std::string &) override {}
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const int links[] = {0, 1, 12, 101, 108, 113, 228, 229, 276};
    for (int link : links) {
        ldpdump::packet pkt;
        std::string why;
        ldpdump::decode_frame(link, data, size, pkt, why);
    }
    decode_sink sink;
    ldpdump::split_datagram(data, size, sink);

    ldpdump::tcp_reassembler tcp(512);
    ldpdump::pdu_splitter split;
    uint32_t seq = 0;
    size_t pos = 0;
    while (size - pos >= 4) {
        const uint8_t flags = data[pos];
        const int8_t step = int8_t(data[pos + 1]); // a step back is a retransmission or an overlap
        const size_t want = size_t(data[pos + 2]) << 8 | data[pos + 3];
        pos += 4;
        const size_t len = want < size - pos ? want : size - pos;
        seq += uint32_t(int32_t(step) * 16);
        ldpdump::stream_events ev = tcp.segment(seq, flags, data + pos, len);
        for (const auto &c : ev.chunks) {
            split.feed(c.bytes.data(), c.bytes.size(), c.after_gap, sink);
        }
        if (ev.closed) {
            split.finish(sink);
        }
        seq += uint32_t(len);
        pos += len;
    }
    ldpdump::stream_events ev = tcp.finish();
    for (const auto &c : ev.chunks) {
        split.feed(c.bytes.data(), c.bytes.size(), c.after_gap, sink);
    }
    split.finish(sink);
    return 0;
}
