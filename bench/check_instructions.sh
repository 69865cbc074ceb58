#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Instructions per LDP_Decode + LDP_FreeMessage of each sample message of
# samples/messages.hex, and per message of each type of bench/frr-messages.hex
# (rows "frr.<type>/<count>"), counted by callgrind and compared with
# bench/instructions.txt: fails when any row costs more than 10% above its
# recorded count. Deterministic for a given binary and sample files, so no
# timing noise enters.
#   bench/check_instructions.sh BUILD/bench/ldp_icount           check
#   bench/check_instructions.sh BUILD/bench/ldp_icount --update  record anew
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
driver=$1
mode=${2:-check}
table=$here/instructions.txt
limit=10 # percent

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

# measure NAME SAMPLES N1 N2 [--by-type PREFIX]: one callgrind run of the
# driver, whose dumps are named "<row> n1", "<row> n2" and so on; a row named
# "<name>/<count>" holds count messages, each decoded once per round.
measure() {
    local name=$1 samples=$2 n1=$3 n2=$4
    shift 4
    mkdir -p "$tmp/$name"
    if ! valgrind --tool=callgrind --callgrind-out-file="$tmp/$name/cg" "$driver" "$samples" "$n1" "$n2" "$@" \
        >"$tmp/$name/log" 2>&1; then
        cat "$tmp/$name/log"
        exit 1
    fi
    for f in "$tmp/$name"/cg.*; do
        awk '/^desc: Trigger: Client Request: /{name=$5; n=$6} /^summary:/{print name, n, $2}' "$f"
    done | awk -v n1="$n1" -v n2="$n2" '
        { c[$1, $2] = $3; names[$1] = 1 }
        END {
            for (k in names) {
                count = split(k, part, "/") > 1 ? part[2] : 1
                d = (n2 - n1) * count
                printf "%s %d %d %d\n", k, (c[k, "n2"] - c[k, "n1"]) / d, (c[k, "f2"] - c[k, "f1"]) / d,
                       (c[k, "b2"] - c[k, "b1"]) / d
            }
        }'
}

{
    measure samples "$here/../samples/messages.hex" 10 110
    measure frr "$here/frr-messages.hex" 1 4 --by-type frr.
} | sort >"$tmp/now"

if [ "$mode" = --update ]; then
    {
        echo "# Instructions per LDP_Decode + LDP_FreeMessage of each sample of"
        echo "# samples/messages.hex, and per message of each type of bench/frr-messages.hex"
        echo "# (frr.<type>/<messages>) (callgrind, GCC RelWithDebInfo build, bench platform),"
        echo "# then those of its floor (the same allocations and releases and one copy"
        echo "# of the message) and of the floor with the decode's memcpy_s and list calls added."
        echo "# The check guards the first column only."
        echo "# message instructions floor floor+calls"
        echo "# Re-measure: bench/check_instructions.sh build/gcc/bench/ldp_icount --update"
        cat "$tmp/now"
    } >"$table"
    cat "$tmp/now"
    exit 0
fi

echo "message              recorded      now  change   floor ratio   +calls ratio"
awk -v limit="$limit" '
    FNR == NR { if ($0 !~ /^#/ && NF == 4) old[$1] = $2; next }
    {
        seen[$1] = 1
        if (!($1 in old)) { printf "%-22s %8s %8d  new\n", $1, "-", $2; next }
        pct = 100.0 * ($2 - old[$1]) / old[$1]
        bad = pct > limit
        fail += bad
        printf "%-20s %8d %8d %+6.1f%%   %5d %5.2f   %5d %5.2f%s\n", $1, old[$1], $2, pct, $3, $2 / $3,
               $4, $2 / $4, bad ? "  FAIL" : ""
    }
    END {
        for (k in old) if (!(k in seen)) { printf "%-22s missing from this run  FAIL\n", k; fail++ }
        if (fail) { printf "%d message(s) above their count by more than %d%%\n", fail, limit; exit 1 }
    }' "$table" "$tmp/now"
