#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-2-Clause
"""Write every sample message and every vector's `msg` bytes as a binary seed,
sorted by message family, for the round-trip fuzzers:
    raw_seeds.py OUT_DIR
Then minimise into the committed corpus (needs the Clang fuzz build):
    build/clang/tests/fuzz/fuzz_rt_FAMILY -merge=1 tests/fuzz/corpus/FAMILY OUT_DIR/FAMILY
"""
import hashlib, pathlib, re, sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FAMILIES = {"session": {0x0100, 0x0200, 0x0201, 0x0202}, "address": {0x0300, 0x0301},
            "label": {0x0400, 0x0401, 0x0402, 0x0403, 0x0404}, "notification": {0x0001}}


def messages():
    for line in (ROOT / "samples/messages.hex").read_text().splitlines():
        text = line.split("#")[0].strip()
        if text:
            yield bytes.fromhex(text)
    for vec in sorted((ROOT / "tests/vectors").glob("*.vec")):
        msg, key = None, None
        for line in vec.read_text().splitlines() + ["case end"]:
            text = line.split("#")[0]
            if not text.strip():
                continue
            if not text[0].isspace():
                key, _, rest = text.partition(" ")
                if key in ("case", "msg") and msg:
                    yield bytes.fromhex(re.sub(r"\s", "", msg))
                    msg = None
                if key == "msg":
                    msg = rest
            elif key == "msg":
                msg += text


def main():
    out = pathlib.Path(sys.argv[1])
    for m in messages():
        if len(m) < 2:
            continue
        t = (m[0] << 8 | m[1]) & 0x7FFF
        for family, types in FAMILIES.items():
            if t in types:
                d = out / family
                d.mkdir(parents=True, exist_ok=True)
                (d / hashlib.sha1(m).hexdigest()).write_bytes(m)


main()
