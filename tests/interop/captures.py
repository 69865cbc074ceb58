#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-2-Clause
"""Small captures built here, and what ldpdump must make of each.

Every link type ldpdump reads carries the same TCP session (split, out of
order, retransmitted and overlapping segments, a sequence number wrap) and
must give the same messages; broken inputs must be named on stderr while the
rest is still decoded. Usage: captures.py LDPDUMP WORK_DIR
"""
import re
import struct
import subprocess
import sys
from pathlib import Path

# Messages (from samples/messages.hex) that decode with LDP_OK.
INIT = "02 00 00 16 00 00 00 09 05 00 00 0e 00 01 00 b4 00 00 10 00 c0 00 02 02 00 00"
KEEPALIVE = "02 01 00 04 00 00 00 01"
HELLO = "01 00 00 14 00 00 00 06 04 00 00 04 00 0f 00 00 04 01 00 04 c0 00 02 01"
ADDRESS = "03 00 00 16 00 00 00 30 01 01 00 0e 00 01 c0 00 02 01 0a 00 00 01 0a 01 02 01"
MAPPING = ("04 00 00 24 00 00 01 00 01 00 00 07 02 00 01 18 c0 a8 0a 02 00 00 04 00 00 04 0d"
           " 06 00 00 04 00 00 00 0c 01 03 00 01 02")
BAD_TLV = "02 01 00 08 00 00 00 03 0f 00 00 00"  # KeepAlive with an unknown TLV, U bit clear: refused


def msg(text):
    return bytes.fromhex(text)


def pdu(*msgs, lsr=0xC0000201, length=None):
    body = b"".join(msg(m) for m in msgs)
    return struct.pack("!HHIH", 1, 6 + len(body) if length is None else length, lsr, 0) + body


def csum(data):
    data += b"\0" * (len(data) & 1)
    s = sum(struct.unpack("!%dH" % (len(data) // 2), data))
    while s >> 16:
        s = (s & 0xFFFF) + (s >> 16)
    return ~s & 0xFFFF


def ipv4(src, dst, proto, payload):
    h = struct.pack("!BBHHHBBH4s4s", 0x45, 0, 20 + len(payload), 1, 0, 64, proto, 0, bytes(src), bytes(dst))
    return h[:10] + struct.pack("!H", csum(h)) + h[12:] + payload


def ipv6(src, dst, proto, payload):
    hop_by_hop = bytes([proto, 0, 1, 4, 0, 0, 0, 0])  # an extension header to skip (PadN)
    return struct.pack("!IHBB", 6 << 28, len(payload) + 8, 0, 64) + bytes(src) + bytes(dst) + hop_by_hop + payload


def udp(sport, dport, payload):
    return struct.pack("!HHHH", sport, dport, 8 + len(payload), 0) + payload


FIN, SYN, RST, ACK = 1, 2, 4, 16


def tcp(sport, dport, seq, flags, payload=b""):
    return struct.pack("!HHIIBBHHH", sport, dport, seq & 0xFFFFFFFF, 0, 5 << 4, flags | ACK, 65535, 0, 0) + payload


A4, B4 = [10, 0, 0, 2], [10, 0, 0, 1]
A6, B6 = [0x20, 1, 0x0D, 0xB8] + [0] * 11 + [2], [0x20, 1, 0x0D, 0xB8] + [0] * 11 + [1]
ISN_A, ISN_B = 0xFFFFFFF0, 1000  # A's stream wraps past 2^32


def session(gap=False, junk=False, cut_pdu=False):
    """(proto, sport, dport, transport bytes) of a client A and an LDP server B."""
    stream = pdu(INIT) + pdu(KEEPALIVE) + pdu(ADDRESS, MAPPING) + pdu(KEEPALIVE)
    if junk:
        stream = pdu(INIT) + b"\x45\x00\x12\x34\xde\xad" + stream[len(pdu(INIT)):]
    if cut_pdu:
        stream += pdu(KEEPALIVE)[:12]
    s = ISN_A + 1
    a = lambda seq, flags, data=b"": (6, 40000, 646, tcp(40000, 646, seq, flags, data))
    b = lambda seq, flags, data=b"": (6, 646, 40000, tcp(646, 40000, seq, flags, data))
    n = len(stream)
    segs = [a(ISN_A, SYN), b(ISN_B, SYN),
            a(s, 0, stream[:7]),                      # a PDU header split
            a(s + 20, 0, stream[20:40]),              # out of order: held
            ] + ([] if gap else [a(s + 7, 0, stream[7:20])]) + [
            a(s + 7, 0, stream[7:20]) if not gap else a(s + 40, 0, b""),  # retransmission
            b(ISN_B + 1, 0, pdu(INIT, KEEPALIVE)),    # two messages in one PDU
            a(s + 35, 0, stream[35:60]),              # overlaps what came before
            a(s + 60, 0, stream[60:]),
            a(s + n, FIN), b(ISN_B + 1 + len(pdu(INIT, KEEPALIVE)), FIN)]
    hello = (17, 646, 646, udp(646, 646, pdu(HELLO)))
    return [hello] + segs


def ip_frames(segs, v6=False):
    out = []
    for proto, sport, dport, data in segs:
        fwd = sport == 40000 or (proto == 17)
        src, dst = (A6, B6) if v6 else (A4, B4)
        if not fwd:
            src, dst = dst, src
        out.append((ipv6 if v6 else ipv4)(src, dst, proto, data))
    return out


MAC = bytes(6) + bytes([0, 1, 2, 3, 4, 5])


def ethernet(ip, tags=()):
    et = 0x86DD if ip[0] >> 4 == 6 else 0x0800
    head = MAC
    for tpid, vid in tags:
        head += struct.pack("!HH", tpid, vid)
    return head + struct.pack("!H", et) + ip


def sll(ip):
    return struct.pack("!HHH8sH", 0, 1, 6, bytes(8), 0x86DD if ip[0] >> 4 == 6 else 0x0800) + ip


def sll2(ip):
    return struct.pack("!HHIHBB8s", 0x86DD if ip[0] >> 4 == 6 else 0x0800, 0, 1, 1, 0, 6, bytes(8)) + ip


def write_pcap(path, link, frames):
    with open(path, "wb") as f:
        f.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, link))
        for i, fr in enumerate(frames):
            f.write(struct.pack("<IIII", 1700000000 + i, 0, len(fr), len(fr)) + fr)


def write_pcapng(path, link, frames):
    def block(kind, body):
        body += b"\0" * (-len(body) % 4)
        return struct.pack("<II", kind, len(body) + 12) + body + struct.pack("<I", len(body) + 12)
    out = block(0x0A0D0D0A, struct.pack("<IHHq", 0x1A2B3C4D, 1, 0, -1))
    out += block(1, struct.pack("<HHI", link, 0, 65535))
    for i, fr in enumerate(frames):
        ts = (1700000000 + i) * 1000000
        out += block(6, struct.pack("<IIIII", 0, ts >> 32, ts & 0xFFFFFFFF, len(fr), len(fr)) + fr)
    Path(path).write_bytes(out)


GOOD = session()
# Every form must give these 8 messages, all LDP_OK, nothing on stderr.
LINKS = [
    ("ethernet.pcap", 1, [ethernet(p) for p in ip_frames(GOOD)]),
    ("vlan.pcap", 1, [ethernet(p, [(0x8100, 100)]) for p in ip_frames(GOOD)]),
    ("qinq.pcap", 1, [ethernet(p, [(0x88A8, 10), (0x8100, 20)]) for p in ip_frames(GOOD)]),
    ("sll.pcap", 113, [sll(p) for p in ip_frames(GOOD)]),
    ("sll2.pcap", 276, [sll2(p) for p in ip_frames(GOOD)]),
    ("null.pcap", 0, [struct.pack("<I", 2) + p for p in ip_frames(GOOD)]),
    ("loop.pcap", 108, [struct.pack("!I", 24) + p for p in ip_frames(GOOD, v6=True)]),
    ("raw.pcap", 101, ip_frames(GOOD)),
    ("ipv6.pcapng", 1, [ethernet(p) for p in ip_frames(GOOD, v6=True)]),
]


def bad_inputs(work):
    eth = lambda segs: [ethernet(p) for p in ip_frames(segs)]
    good = work / "ethernet.pcap"
    data = good.read_bytes()
    (work / "truncated.pcap").write_bytes(data[:-30])
    (work / "garbage.pcap").write_bytes(b"this is not a capture file\n")
    write_pcap(work / "gap.pcap", 1, eth(session(gap=True)))
    write_pcap(work / "junk.pcap", 1, eth(session(junk=True)))
    write_pcap(work / "cut.pcap", 1, eth(session(cut_pdu=True)))
    # More than the 1 MiB held per direction arrives after a lost segment:
    # the gap is given up at once, not at the end of the capture.
    stream = pdu(INIT) + pdu(KEEPALIVE) * 60000
    segs = [(6, 40000, 646, tcp(40000, 646, ISN_A, SYN))]
    segs += [(6, 40000, 646, tcp(40000, 646, ISN_A + 1 + i, 0, stream[i:i + 1400]))
             for i in range(7, len(stream), 1400)]
    write_pcap(work / "overflow.pcap", 1, eth(segs))
    long_pdu = (17, 646, 646, udp(646, 646, pdu(KEEPALIVE, length=40)))
    not_ldp = (17, 5353, 646, udp(5353, 646, b"\x12\x34\x01\x00\x00\x01" + bytes(20)))
    refused = (17, 646, 646, udp(646, 646, pdu(BAD_TLV)))
    write_pcap(work / "udp.pcap", 1, eth([long_pdu, not_ldp, refused]))
    # (arguments, exit status, message lines on stdout, stderr pattern or None for silence)
    return [
        (["truncated.pcap"], 0, 8, r"frame 12: cannot read the capture further: truncated"),
        (["garbage.pcap"], 2, 0, r"cannot read garbage\.pcap: .*\n.*-x FILE"),
        (["-x", "ethernet.pcap"], 0, 0, r"line 1: not a hex message"),
        (["--strict", "-x", "ethernet.pcap"], 1, 0, r"line 1: not a hex message"),
        (["gap.pcap"], 0, 7, r"frame 10 \(tcp 10\.0\.0\.2:40000 > 10\.0\.0\.1:646\): TCP gap: 13 bytes never captured"
                            r"(.|\n)*PDU cut by a gap(.|\n)*resynchronised on a PDU header after 16 bytes"),
        (["junk.pcap"], 0, 8, r"bad PDU header \(version 17664, length 4660\) at stream offset 36"
                             r"(.|\n)*resynchronised on a PDU header after 6 bytes"),
        (["overflow.pcap"], 0, 60000, r"^ldpdump: frame 750 \(tcp [^)]*\): TCP gap: 7 bytes never captured, skipped\n"
                                      r".*resynchronised on a PDU header after 29 bytes\n$"),
        (["cut.pcap"], 0, 8, r"PDU length 14 runs past the end of the stream \(12 bytes left\)"),
        (["udp.pcap"], 0, 2, r"frame 1 \(udp 10\.0\.0\.2:646 > 10\.0\.0\.1:646\): PDU length 40 runs past the end"
                            r"(.|\n)*frame 2 .*: not an LDP PDU: bad PDU header \(version 4660"),
        (["--strict", "udp.pcap"], 1, 2, r"not an LDP PDU"),
        (["--strict", "--allow", "LDP_STATUS_UNKNOWN_TLV", "udp.pcap"], 0, 2, r"not an LDP PDU"),
        (["--allow", "LDP_NO_SUCH_CODE", "udp.pcap"], 2, 0, r"not a result code"),
        (["--strict", "-Y", "keepalive", "ethernet.pcap"], 0, 3, None),
        (["-Y", "bogus", "ethernet.pcap"], 2, 0, r"-Y bogus: names no single message type"),
        (["--no-such-option", "ethernet.pcap"], 2, 0, r"usage"),
        (["missing.pcap"], 2, 0, r"cannot read missing\.pcap: .*No such file"),
        ([], 2, 0, r"nothing to read"),
    ]


def run(tool, work, args):
    p = subprocess.run([tool] + args, cwd=work, capture_output=True, text=True, errors="replace", timeout=60)
    lines = [l for l in p.stdout.splitlines() if re.match(r"\[\d+\] ", l)]
    return p.returncode, lines, p.stderr


def main():
    tool, work = sys.argv[1], Path(sys.argv[2])
    work.mkdir(parents=True, exist_ok=True)
    failures = []
    for name, link, frames in LINKS:
        (write_pcapng if name.endswith(".pcapng") else write_pcap)(work / name, link, frames)
        rc, lines, err = run(tool, work, ["--strict", "--roundtrip", name])
        types = [re.sub(r"^\[\d+\] \S+ \S+ \S+ > \S+ lsr \S+ (.*?) id .*", r"\1", l) for l in lines]
        want = ["Hello", "Initialization", "Initialization", "KeepAlive", "KeepAlive", "Address", "Label Mapping",
                "KeepAlive"]
        if rc != 0 or err or sorted(types) != sorted(want) or any(" LDP_OK" not in l for l in lines):
            failures.append("%s: exit %d, stderr %r, messages %s" % (name, rc, err, types))
    for args, want_rc, want_lines, pattern in bad_inputs(work):
        rc, lines, err = run(tool, work, args)
        ok = rc == want_rc and len(lines) == want_lines
        ok = ok and (not err if pattern is None else re.search(pattern, err) is not None)
        if not ok:
            failures.append("ldpdump %s: exit %d (want %d), %d message lines (want %d), stderr:\n%s"
                            % (" ".join(args), rc, want_rc, len(lines), want_lines, err))
    for f in failures:
        print("FAIL", f)
    print("%d capture cases, %d failed" % (len(LINKS) + len(bad_inputs(work)), len(failures)))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
