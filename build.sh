#!/usr/bin/env bash
# Set-up, build and run for ldpcodec on Debian (run as root on a fresh machine).
#   ./build.sh sample   install what is missing, build, decode samples/frr-ldp.pcapng with ldpdump
#   ./build.sh test     install what is missing, then four builds, warnings as
#                       errors, each running the whole suite: GCC; Clang with
#                       ASan+UBSan and a short fuzz run; GCC with ASan+UBSan;
#                       32-bit ARM cross-built and run under qemu
# Each step prints one line; the full output of a failing step follows it,
# and every step's log stays in build/logs/.
set -euo pipefail
cd "$(dirname "$0")"

PACKAGES=(cmake ninja-build g++ clang binutils libgtest-dev libgmock-dev libbenchmark-dev
          googletest g++-arm-linux-gnueabihf qemu-user tshark libpcap-dev)
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

install_missing() {
    local missing=()
    for p in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    if ((${#missing[@]})); then
        local sudo=()
        [ "$(id -u)" -eq 0 ] || sudo=(sudo)
        step "install ${missing[*]}" bash -c "${sudo[*]} apt-get update -q &&
            DEBIAN_FRONTEND=noninteractive ${sudo[*]} apt-get install -y -q --no-install-recommends ${missing[*]}"
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
    install_missing
    build release gcc g++ -DCMAKE_BUILD_TYPE=Release -DLDP_BUILD_TESTS=OFF -DLDP_BUILD_BENCH=OFF
    build/release/tools/ldpdump/ldpdump samples/frr-ldp.pcapng
    ;;
test)
    install_missing
    build gcc gcc g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLDP_WERROR=ON
    run_tests gcc
    # Clang with ASan+UBSan, plus a short libFuzzer run on LDP_Decode/LDP_Encode.
    build clang clang clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLDP_WERROR=ON \
        -DLDP_SANITIZE=ON -DLDP_BUILD_FUZZ=ON -DLDP_BUILD_BENCH=OFF
    run_tests clang
    build sanitize gcc g++ -DCMAKE_BUILD_TYPE=Debug -DLDP_WERROR=ON -DLDP_SANITIZE=ON -DLDP_BUILD_BENCH=OFF
    ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1 UBSAN_OPTIONS=print_stacktrace=1 run_tests sanitize
    build arm32 arm-linux-gnueabihf-gcc arm-linux-gnueabihf-g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DLDP_WERROR=ON -DLDP_BUILD_BENCH=OFF -DCMAKE_TOOLCHAIN_FILE=cmake/arm-linux-gnueabihf.cmake
    run_tests arm32
    ;;
*)
    echo "usage: $0 sample|test" >&2
    exit 2
    ;;
esac
