#!/usr/bin/env bash
# Instructions per LDP_Decode + LDP_FreeMessage of each sample message, counted
# by callgrind and compared with bench/instructions.txt: fails when any
# message costs more than 10% above its recorded count. Deterministic for a
# given binary and sample file, so no timing noise enters.
#   bench/check_instructions.sh BUILD/bench/ldp_icount           check
#   bench/check_instructions.sh BUILD/bench/ldp_icount --update  record anew
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
driver=$1
mode=${2:-check}
table=$here/instructions.txt
samples=$here/../samples/messages.hex
n1=10
n2=110
limit=10 # percent

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
if ! valgrind --tool=callgrind --callgrind-out-file="$tmp/cg" "$driver" "$samples" "$n1" "$n2" \
    >"$tmp/log" 2>&1; then
    cat "$tmp/log"
    exit 1
fi
# Each dump is named "<message> n1" or "<message> n2" by the driver.
for f in "$tmp"/cg.*; do
    awk '/^desc: Trigger: Client Request: /{name=$5; n=$6} /^summary:/{print name, n, $2}' "$f"
done >"$tmp/dumps"
awk -v n1="$n1" -v n2="$n2" '
    { c[$1, $2] = $3; names[$1] = 1 }
    END {
        for (k in names)
            printf "%s %d %d %d\n", k, (c[k, "n2"] - c[k, "n1"]) / (n2 - n1), (c[k, "f2"] - c[k, "f1"]) / (n2 - n1),
                   (c[k, "b2"] - c[k, "b1"]) / (n2 - n1)
    }' \
    "$tmp/dumps" | sort >"$tmp/now"

if [ "$mode" = --update ]; then
    {
        echo "# Instructions per LDP_Decode + LDP_FreeMessage of each sample of"
        echo "# samples/messages.hex (callgrind, GCC RelWithDebInfo build, bench platform),"
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
