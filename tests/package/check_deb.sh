#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Makes the Debian packages in BUILD_DIR (configured with the /usr prefix),
# has lintian check them (errors fail), checks their dependencies, unpacks
# them into a scratch root and uses them from there: the packaged ldpdump
# decodes the sample messages, and the examples build against the packaged
# headers and libraries through pkg-config, shared and static (the static
# codec leaves the platform to the program).
# Usage: check_deb.sh BUILD_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
src=$(cd "$(dirname "$0")/../.." && pwd)

rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB)
debs=("$build"/libldpcodec0_*.deb "$build"/libldpcodec-dev_*.deb "$build"/ldpdump_*.deb)
lintian --fail-on error "${debs[@]}"

# The tool and the headers need this very build of the libraries, and the
# three install together on this system (a simulation: nothing changes).
for deb in "${debs[@]:1}"; do
    dpkg-deb -f "$deb" Depends | grep -q "libldpcodec0 (= $(dpkg-deb -f "${debs[0]}" Version))"
done
apt-get -s -o Debug::NoLocking=1 install "${debs[@]}" >/dev/null

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
for deb in "${debs[@]}"; do dpkg-deb -x "$deb" "$root"; done

"$root/usr/bin/ldpdump" -f "$src/samples/messages.hex" >"$root/dump.txt"
grep -q 'KeepAlive id 1 LDP_OK' "$root/dump.txt"
grep -q 'Label Mapping id 256 LDP_OK' "$root/dump.txt"
# (Into a file first: grep -q would leave the tool writing into a closed pipe.)
"$root/usr/bin/ldpdump" "$src/samples/frr-ldp.pcapng" >"$root/frr.txt"
grep -q ' Label Mapping id [0-9]* LDP_OK ' "$root/frr.txt"

pc=$(dirname "$(find "$root/usr/lib" -name ldpcodec.pc)")
mkdir "$root/examples"
(cd "$root/examples" && PKG_CONFIG_PATH=$pc make -s -f "$src/examples/Makefile" check \
    "CFLAGS=-O2 -Wall -Wextra -Wpedantic -Werror")

lib=$(dirname "$pc")
if nm --defined-only "$lib/libldpcodec.a" | grep -E ' [A-Z] (PLAT|SYS|SLL)_|memcpy_s|g_aucPlatMemPt'; then
    echo "libldpcodec.a defines platform symbols" >&2
    exit 1
fi
"${CC:-cc}" -std=c99 -I"$root/usr/include/ldpcodec" -o "$root/examples/static" "$src/examples/encode_mapping.c" \
    "$src/examples/my_platform.c" "$lib/libldpcodec.a"
"$root/examples/static" >/dev/null

# As root, a real installation with dpkg -i: the installed tool decodes the
# sample from /usr/bin, then the packages are purged again. LDP_DEB_INSTALL=0
# skips it on a machine whose system should stay untouched.
installed=no
if [ "$(id -u)" -eq 0 ] && [ "${LDP_DEB_INSTALL:-1}" != 0 ]; then
    trap 'dpkg --purge ldpdump libldpcodec-dev libldpcodec0 >/dev/null 2>&1 || true; rm -rf "$root"' EXIT
    dpkg -i "${debs[@]}" >/dev/null
    /usr/bin/ldpdump "$src/samples/frr-ldp.pcapng" >"$root/frr-installed.txt"
    grep -q ' Label Mapping id [0-9]* LDP_OK ' "$root/frr-installed.txt"
    man -w ldpdump >/dev/null 2>&1 || [ -f /usr/share/man/man1/ldpdump.1.gz ]
    pkg-config --exists ldpcodec ldpplatform
    dpkg --purge ldpdump libldpcodec-dev libldpcodec0 >/dev/null
    installed=yes
fi
echo "packages: $(cd "$build" && ls ./*.deb | tr '\n' ' ')lintian clean of errors, contents used, dpkg -i: $installed"
