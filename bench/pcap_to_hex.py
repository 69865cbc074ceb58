#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-2-Clause
"""LDP messages of a capture as a hex sample file, one message per line.

    bench/pcap_to_hex.py CAPTURE.pcapng > bench/frr-messages.hex

tshark gives the UDP and TCP payloads on port 646; TCP payloads are put back
in sequence order per direction (retransmissions dropped, the stream cut at
the first gap), then every PDU is cut at its length and every message in it
at its own. The 10-byte PDU header is left out, as the codec wants."""
import collections
import subprocess
import sys


def messages_of(data):
    out = []
    i = 0
    while i + 10 <= len(data):
        version = data[i] << 8 | data[i + 1]
        pdu_len = data[i + 2] << 8 | data[i + 3]
        if version != 1 or i + 4 + pdu_len > len(data):
            break
        j, end = i + 10, i + 4 + pdu_len
        while j + 4 <= end:
            msg_len = data[j + 2] << 8 | data[j + 3]
            if j + 4 + msg_len > end:
                break
            out.append(data[j:j + 4 + msg_len])
            j += 4 + msg_len
        i = end
    return out


def main(path):
    fields = subprocess.run(
        ["tshark", "-r", path, "-T", "fields", "-E", "separator=|", "-e", "ip.src", "-e", "tcp.srcport",
         "-e", "tcp.stream", "-e", "tcp.seq_raw", "-e", "tcp.payload", "-e", "udp.payload"],
        check=True, capture_output=True, text=True).stdout
    messages = []
    segments = collections.OrderedDict()  # direction -> {sequence number: payload}
    for line in fields.splitlines():
        src, port, stream, seq, tcp_payload, udp_payload = line.split("|")[:6]
        if udp_payload:
            messages += messages_of(bytes.fromhex(udp_payload))
        elif tcp_payload:
            segments.setdefault((stream, src, port), {}).setdefault(int(seq), bytes.fromhex(tcp_payload))
    for by_seq in segments.values():
        data, expected = b"", None
        for seq, payload in sorted(by_seq.items()):
            if expected is None or seq == expected:
                data += payload
            elif seq < expected:
                data += payload[expected - seq:]
            else:
                break
            expected = max(expected or 0, seq + len(payload))
        messages += messages_of(data)
    for m in messages:
        print(m.hex(" "))


if __name__ == "__main__":
    main(sys.argv[1])
