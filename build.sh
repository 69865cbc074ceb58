#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Set-up, build and run for ldpcodec on Debian (run as root on a fresh machine).
#   ./build.sh sample   install what is missing, build, decode samples/frr-ldp.pcapng with ldpdump
#   ./build.sh test     install what is missing, then five builds, warnings as
#                       errors, each running the whole suite: GCC (then its
#                       instruction counts under callgrind, and valgrind);
#                       Clang with ASan+UBSan and short fuzz runs; GCC with
#                       ASan+UBSan; 32-bit ARM and big-endian s390x, cross-built
#                       and run under qemu; then the Debian packages, checked
#                       with lintian and installed
# Each step prints one line; the full output of a failing step follows it,
# and every step's log stays in build/logs/.
set -euo pipefail
cd "$(dirname "$0")"

# What each command needs: the sample only a compiler, CMake and libpcap.
SAMPLE_PACKAGES=(cmake ninja-build g++ libpcap-dev)
TEST_PACKAGES=("${SAMPLE_PACKAGES[@]}" clang binutils libgtest-dev libgmock-dev libbenchmark-dev
               googletest g++-arm-linux-gnueabihf qemu-user tshark make pkgconf file dpkg-dev lintian
               doxygen valgrind g++-s390x-linux-gnu python3)
LOGS=build/logs
mkdir -p "$LOGS"

# step NAME COMMAND...: run quietly; on failure show the log and stop.
step() {
    local name=$1 start=$SECONDS log="$LOGS/$1.log"
    shift
    if "$@" >"$log" 2>&1; then
        echo "ok   $name ($((SECONDS - start)) s)$(summary "$log")"
    else
        echo "FAIL $name ($((SECONDS - start)) s), log: $log"
        # Passing tests are noise next to a failure.
        grep -Ev '^ *[0-9]+/[0-9]+ Test +#[0-9]+: .* Passed' "$log" | tail -n 400
        exit 1
    fi
}

summary() {
    local line
    line=$(grep -Eo '[0-9]+% tests passed, [0-9]+ tests failed out of [0-9]+' "$1" | tail -1) || true
    [ -z "$line" ] || echo ": $line"
}

# install_missing PACKAGE...: apt-get waits (bounded) for a lock held by
# another apt-get or dpkg instead of failing at once.
install_missing() {
    local missing=()
    for p in "$@"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    if ((${#missing[@]})); then
        local sudo=()
        [ "$(id -u)" -eq 0 ] || sudo=(sudo)
        local wait="-o DPkg::Lock::Timeout=300"
        step "install ${missing[*]}" bash -c "${sudo[*]} apt-get $wait update -q &&
            DEBIAN_FRONTEND=noninteractive ${sudo[*]} apt-get $wait install -y -q --no-install-recommends ${missing[*]}"
    fi
}

# build NAME C-COMPILER CXX-COMPILER [cmake options...]
build() {
    local name=$1 cc=$2 cxx=$3
    shift 3
    step "build $name" bash -c 'cmake -S . -B "build/$0" -G Ninja -DCMAKE_C_COMPILER="$1" -DCMAKE_CXX_COMPILER="$2" "${@:3}" &&
        cmake --build "build/$0" -j2' "$name" "$cc" "$cxx" "$@"
}

run_tests() {
    step "test $1" ctest --test-dir "build/$1" -j2 --output-on-failure
}

case "${1:-}" in
sample)
    install_missing "${SAMPLE_PACKAGES[@]}"
    build release gcc g++ -DCMAKE_BUILD_TYPE=Release -DLDP_BUILD_TESTS=OFF -DLDP_BUILD_BENCH=OFF
    build/release/tools/ldpdump/ldpdump samples/frr-ldp.pcapng
    ;;
test)
    install_missing "${TEST_PACKAGES[@]}"
    build gcc gcc g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLDP_WERROR=ON
    run_tests gcc
    # Instructions per decode of each sample, against bench/instructions.txt.
    step "instructions gcc" bench/check_instructions.sh build/gcc/bench/ldp_icount
    # The GCC build's test programs, each once under valgrind memcheck.
    step "valgrind gcc" tests/valgrind.sh build/gcc
    # Clang with ASan+UBSan, plus short libFuzzer runs: LDP_Decode/LDP_Encode, and
    # the round trip of each message family (40 s each).
    build clang clang clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLDP_WERROR=ON \
        -DLDP_SANITIZE=ON -DLDP_BUILD_FUZZ=ON -DLDP_BUILD_BENCH=OFF
    run_tests clang
    build sanitize gcc g++ -DCMAKE_BUILD_TYPE=Debug -DLDP_WERROR=ON -DLDP_SANITIZE=ON -DLDP_BUILD_BENCH=OFF
    ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests sanitize
    build arm32 arm-linux-gnueabihf-gcc arm-linux-gnueabihf-g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DLDP_WERROR=ON -DLDP_BUILD_BENCH=OFF -DCMAKE_TOOLCHAIN_FILE=cmake/arm-linux-gnueabihf.cmake
    run_tests arm32
    # Big-endian: the same suite cross-built for s390x, run under qemu.
    build s390x s390x-linux-gnu-gcc s390x-linux-gnu-g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DLDP_WERROR=ON -DLDP_BUILD_BENCH=OFF -DCMAKE_TOOLCHAIN_FILE=cmake/s390x-linux-gnu.cmake
    run_tests s390x
    # Debian packages from a release build with static libraries, then lintian
    # and the packages' contents used from an unpacked root, then (as root) a
    # real dpkg -i that is purged again.
    build deb gcc g++ -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DLDP_BUILD_STATIC=ON \
        -DLDP_BUILD_TESTS=OFF -DLDP_BUILD_BENCH=OFF
    step "debian packages" bash tests/package/check_deb.sh build/deb
    ;;
*)
    echo "usage: $0 sample|test" >&2
    exit 2
    ;;
esac
