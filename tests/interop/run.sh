#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Re-encodes the samples with the library, lets tshark's LDP dissector read
# them, and compares its fields with what our decoder found.
# Usage: run.sh LDP_INTEROP SAMPLES.hex WORK_DIR
set -euo pipefail
tool=$1 samples=$2 work=$3
mkdir -p "$work"
"$tool" "$samples" "$work/ldp.pcap" "$work/expected.txt"
fields=(ldp.msg.type ldp.msg.len ldp.msg.id ldp.msg.tlv.hello.hold ldp.msg.tlv.ipv4.taddr
        ldp.msg.tlv.sess.ka ldp.msg.tlv.sess.rxlsr ldp.msg.tlv.generic.label ldp.msg.tlv.hc.value
        ldp.msg.tlv.lbl_req_msg_id ldp.msg.tlv.fec.pfval ldp.msg.tlv.fec.hoval)
args=()
for f in "${fields[@]}"; do args+=(-e "$f"); done
tshark -n -r "$work/ldp.pcap" -d udp.port==646,ldp -T fields -E separator='|' -E occurrence=a -E aggregator=, \
    "${args[@]}" > "$work/tshark.txt" 2> "$work/tshark.err"
# IPv6 prefixes and host addresses are left out of the comparison: keep only IPv4 text.
awk -F'|' -v OFS='|' '{
    for (i = 1; i <= NF; i++) {
        n = split($i, v, ","); out = "";
        for (j = 1; j <= n; j++) if (v[j] !~ /:/) out = out (out == "" ? "" : ",") v[j];
        $i = out;
    }
    print }' "$work/tshark.txt" > "$work/tshark.cmp"
if ! diff -u "$work/expected.txt" "$work/tshark.cmp"; then
    echo "tshark reads the encoded messages differently (expected: ours, +: tshark)"
    exit 1
fi
malformed=$(tshark -n -r "$work/ldp.pcap" -d udp.port==646,ldp -Y '_ws.malformed || _ws.expert.severity >= error' 2>/dev/null | wc -l)
if [ "$malformed" -ne 0 ]; then
    echo "tshark flags $malformed encoded messages as malformed or in error"
    tshark -n -r "$work/ldp.pcap" -d udp.port==646,ldp -Y '_ws.malformed || _ws.expert.severity >= error' -V 2>/dev/null | tail -40
    exit 1
fi
echo "tshark agrees on $(wc -l < "$work/expected.txt") messages"
