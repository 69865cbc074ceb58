#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Runs every test program of a native build once under valgrind memcheck:
#   tests/valgrind.sh build/gcc
# Any memory error or leak fails the run. Each program runs whole, in one
# process: under ctest's memcheck mode every test case would start valgrind
# anew, which costs about a second per case (some 7 minutes for the suite).
set -euo pipefail
build=${1:?usage: tests/valgrind.sh BUILD_DIR}
src=$(cd "$(dirname "$0")/.." && pwd)
vg=(valgrind --leak-check=full --errors-for-leak-kinds=definite,indirect,possible
    --error-exitcode=1 --track-origins=yes -q)
run() {
    echo "== valgrind $*" >&2
    "${vg[@]}" "$@"
}
run "$build/tests/ldpcodec_tests" --gtest_brief=1
run "$build/tests/ldpplatform_tests" --gtest_brief=1
run "$build/tests/ldp_c_header_check"
if [ -x "$build/tools/ldpdump/ldpdump" ]; then
    run "$build/tools/ldpdump/ldpdump" --hexdump --log 4 --blackbox 2 -f "$src/samples/messages.hex" >/dev/null
fi
echo "valgrind: no errors, no leaks"
