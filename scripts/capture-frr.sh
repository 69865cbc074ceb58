#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-2-Clause
# Record a real LDP exchange between three FRRouting routers and save it as
# pcapng (default samples/frr-ldp.pcapng, or the path given as argument).
#
#   r1 ---- r2 ---- r3        each router: its own network namespace, zebra,
#                              staticd and ldpd from Debian's frr package
#
# Addresses (documentation ranges only, all set inside the namespaces):
#   loopbacks   192.0.2.N/32 and 2001:db8::N/128 (N = router number)
#   r1-r2 link  198.51.100.0/30, 2001:db8:12::/64
#   r2-r3 link  198.51.100.4/30, 2001:db8:23::/64
#   extras      203.0.113.0/24 and 2001:db8:99::/64 come and go during the run
#
# What the run provokes, in order:
#   - link Hellos on both families (dual-stack), sessions over IPv6 transport,
#     a targeted session r1<->r3 that also carries a VPLS pseudowire
#   - Address, Label Mapping: an address added on r3, static routes on r1
#   - Label Withdraw, Label Release, Address Withdraw: the same taken away
#   - pseudowire status Notifications and a MAC flush: r3's attachment
#     circuit goes down and up
#   - pseudowire Label Withdraw/Release/Mapping: the pseudowire ID changes
#   - typed-wildcard Label Requests: r2's label-acceptance filter changes
#   - wildcard Label Withdraw/Release: r2's advertisement filter denies r1
#   - Shutdown Notifications: a session reset from r1
#   - sessions moved to IPv4 transport (more resets, Hold Timer Expired)
#   - the pseudowire removed on r3, which resets the targeted session
# KeepAlives flow all along (every 10 s between r1 and r2).
#
# Run as root.  Nothing outside the namespaces is changed; everything is torn
# down on exit, also on error or interrupt.  Takes about 1.5 minutes.
# LDPCAP_DEBUG=SECONDS keeps a failed run's routers up that long for a look.
set -euo pipefail

REPO=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
OUT=${1:-$REPO/samples/frr-ldp.pcapng}
case $OUT in /*) ;; *) OUT=$PWD/$OUT ;; esac

FRR=/usr/lib/frr
TAG=ldpcap$$                 # prefix of the namespaces, unique per run
WORK=""                      # temporary directory, set below
ROUTERS=(r1 r2 r3)

say() { printf '%s  %s\n' "$(date -u +%H:%M:%S)" "$*" >&2; }
die() {
    say "error: $*"
    # LDPCAP_DEBUG=SECONDS keeps the routers up that long for a look
    [ -n "${LDPCAP_DEBUG:-}" ] && { say "namespaces $TAG-r1..r3, files in $WORK"; sleep "$LDPCAP_DEBUG"; }
    exit 1
}

[ "$(id -u)" = 0 ] || die "run as root"

# --- tools --------------------------------------------------------------------
need=()
[ -x $FRR/ldpd ] && [ -x $FRR/zebra ] && [ -x $FRR/staticd ] || need+=(frr)
command -v tcpdump >/dev/null || need+=(tcpdump)
command -v ip >/dev/null || need+=(iproute2)
command -v mergecap >/dev/null || need+=(wireshark-common)
if [ ${#need[@]} -gt 0 ]; then
    say "installing ${need[*]}"
    export DEBIAN_FRONTEND=noninteractive
    # waits up to 5 min for another apt/dpkg to finish; the package lists
    # are refreshed only when they turn out too old
    apt_install() {
        timeout 900 apt-get -o DPkg::Lock::Timeout=300 install -y -qq "${need[@]}" >/dev/null
    }
    apt_install || {
        timeout 900 apt-get -o DPkg::Lock::Timeout=300 update -qq
        apt_install
    }
fi

# --- teardown -------------------------------------------------------------------
# Stop processes we started (by their pids): TERM to all, then wait for
# them at most 5 s, then force the rest.
stop_pids() {
    local pid i left
    [ $# -gt 0 ] || return 0
    kill -TERM "$@" 2>/dev/null || true
    for i in $(seq 50); do
        left=0
        for pid in "$@"; do kill -0 "$pid" 2>/dev/null && left=1; done
        [ $left = 0 ] && return 0
        sleep 0.1
    done
    kill -KILL "$@" 2>/dev/null || true
}
# the same for the pids recorded in the given pid files (those that exist)
stop_pidfiles() {
    local f pids=()
    for f in "$@"; do [ -f "$f" ] && pids+=("$(cat "$f")"); done
    stop_pids "${pids[@]}"
}

cleanup() {
    local rc=$? r left
    trap - EXIT INT TERM
    set +e
    if [ -n "$WORK" ] && [ -d "$WORK" ]; then
        # captures first, then the routing daemons (ldpd and staticd
        # before zebra, which they talk to)
        stop_pidfiles "$WORK"/*/tcpdump.pid
        stop_pidfiles "$WORK"/*/ldpd.pid "$WORK"/*/staticd.pid
        stop_pidfiles "$WORK"/*/zebra.pid
    fi
    for r in "${ROUTERS[@]}"; do
        ip netns list | grep -qw "$TAG-$r" || continue
        # ldpd's helper processes, or anything else left in the namespace
        mapfile -t left < <(ip netns pids "$TAG-$r")
        stop_pids "${left[@]}"
        ip netns del "$TAG-$r"
    done
    [ -n "$WORK" ] && [ $rc -ne 0 ] && [ -d "$WORK" ] && {
        say "logs of the failed run:"
        tail -n 20 "$WORK"/*/*.log >&2
    }
    [ -n "$WORK" ] && rm -rf "$WORK"
    rm -f "$OUT.tmp"
    exit $rc
}
trap cleanup EXIT
trap 'exit 130' INT TERM

# --- helpers ------------------------------------------------------------------
nsx() { local r=$1; shift; ip netns exec "$TAG-$r" "$@"; }
vty() { local r=$1; shift; timeout 30 ip netns exec "$TAG-$r" vtysh --vty_socket "$WORK/$r" "$@"; }
vconf() {            # vconf ROUTER LINE... : lines run in configure mode
    local r=$1; shift
    local args=(-c "configure terminal") l
    for l in "$@"; do args+=(-c "$l"); done
    local out
    out=$(vty "$r" "${args[@]}" 2>&1) || die "vtysh on $r refused: $* :: $out"
}

# wait_for SECONDS DESCRIPTION COMMAND...: poll COMMAND every half second
wait_for() {
    local limit=$1 what=$2 i; shift 2
    for ((i = 0; i < limit * 2; i++)); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.5
    done
    die "timed out after ${limit}s waiting for $what"
}

# number of operational LDP sessions of a router
# (optionally only those over one address family)
sessions() {
    vty "$1" -c "show mpls ldp neighbor" 2>/dev/null | grep -c "^${2:-}.*OPERATIONAL" || true
}
has_sessions() { [ "$(sessions "$1" "${3:-}")" -ge "$2" ]; }
# ... and sessions that have been up for longer than a Hello hold time (6 s
# late in the run): nothing is still settling
settled() {          # ROUTER COUNT AF
    local n
    n=$(vty "$1" -c "show mpls ldp neighbor" 2>/dev/null | awk -v af="$3" '
        $1 == af && $3 == "OPERATIONAL" {
            split($5, t, ":"); if (t[1] * 3600 + t[2] * 60 + t[3] >= 8) n++
        } END { print n + 0 }')
    [ "$n" -ge "$2" ]
}
# both ends of the pseudowire have exchanged labels (it stays down for
# forwarding: there is no MPLS dataplane, which LDP does not mind)
pw_up() { vty r1 -c "show l2vpn atom binding" 2>/dev/null | grep -q "Remote Label: *[0-9]"; }

# --- namespaces and links -------------------------------------------------------
WORK=$(mktemp -d /tmp/ldpcap.XXXXXX)
chmod 755 "$WORK"
for r in "${ROUTERS[@]}"; do
    ip netns add "$TAG-$r"
    mkdir -p "$WORK/$r"
    nsx "$r" ip link set lo up
done

# veth pairs created inside r1 / r2 with their peer end moved straight into
# the neighbour namespace: no interface ever exists in the host namespace
ip -n "$TAG-r1" link add eth-r2 type veth peer name eth-r1 netns "$TAG-r2"
ip -n "$TAG-r2" link add eth-r3 type veth peer name eth-r2 netns "$TAG-r3"

addr() { nsx "$1" ip addr add "$2" dev "$3"; }
addr r1 192.0.2.1/32 lo;  addr r1 2001:db8::1/128 lo
addr r2 192.0.2.2/32 lo;  addr r2 2001:db8::2/128 lo
addr r3 192.0.2.3/32 lo;  addr r3 2001:db8::3/128 lo
addr r1 198.51.100.1/30 eth-r2;  addr r1 2001:db8:12::1/64 eth-r2
addr r2 198.51.100.2/30 eth-r1;  addr r2 2001:db8:12::2/64 eth-r1
addr r2 198.51.100.5/30 eth-r3;  addr r2 2001:db8:23::2/64 eth-r3
addr r3 198.51.100.6/30 eth-r2;  addr r3 2001:db8:23::3/64 eth-r2

# Stand-in interfaces are veth pairs with both ends in the same namespace
# (this kernel may lack the dummy driver; a veth pair has carrier as soon as
# both ends are up).
stub() { nsx "$1" ip link add "$2" type veth peer name "$2-p"; }
# VPLS pieces on the two PEs: an attachment circuit in a bridge, and the
# pseudowire interface FRR names in its config (Linux has no pseudowire
# device; the label exchange does not need one)
for r in r1 r3; do
    nsx "$r" ip link add br100 type bridge
    stub $r ac100
    stub $r mpw100
    nsx "$r" ip link set ac100 master br100
done
# an interface on r3 whose addresses come and go
stub r3 lan0
# no IPv6 link-local addresses on the stand-ins: ldpd would announce them
for i in br100 ac100 ac100-p mpw100 mpw100-p; do
    nsx r1 sysctl -qw "net.ipv6.conf.$i.disable_ipv6=1"
    nsx r3 sysctl -qw "net.ipv6.conf.$i.disable_ipv6=1"
done
nsx r3 sysctl -qw net.ipv6.conf.lan0-p.disable_ipv6=1

for r in "${ROUTERS[@]}"; do
    for i in $(nsx "$r" ip -o link show | awk -F': ' '{print $2}' | cut -d@ -f1); do
        nsx "$r" ip link set "$i" up
    done
    # no duplicate address detection delay for the link addresses
    nsx "$r" sysctl -qw net.ipv6.conf.all.accept_dad=0 net.ipv6.conf.default.accept_dad=0
    nsx "$r" sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1
done

# --- capture ------------------------------------------------------------------
# one capture per link, each taken at one end.  Targeted traffic r1<->r3
# crosses both links; it is kept on the first only, so the merged file
# holds every packet once.
start_capture() {    # ROUTER IFACE FILTER
    local r=$1 dev=$2 filter=$3
    ip netns exec "$TAG-$r" tcpdump -i "$dev" -Z root -U -s 0 -w "$WORK/$r/$dev.pcap" \
        "$filter" >"$WORK/$r/tcpdump.log" 2>&1 &
    echo $! >"$WORK/$r/tcpdump.pid"
    wait_for 10 "tcpdump on $r/$dev" grep -q "listening on" "$WORK/$r/tcpdump.log"
}
start_capture r1 eth-r2 "port 646"
start_capture r3 eth-r2 "port 646 and not (host 192.0.2.1 and host 192.0.2.3) and not (host 2001:db8::1 and host 2001:db8::3)"

# --- FRR configuration ------------------------------------------------------------
chown -R frr:frr "$WORK"

# the address-family block of ldpd's configuration, one command a line
af_lines() {         # ipv4|ipv6 ROUTER
    local af=$1 r=$2 n=${2#r} lo
    lo=192.0.2.$n
    [ "$af" = ipv6 ] && lo=2001:db8::$n
    echo "address-family $af"
    echo "discovery transport-address $lo"
    case $r in
    # a dual-stack session runs over IPv6 unless told otherwise, so the
    # targeted neighbour gets Hellos in both families
    r1) if [ "$af" = ipv4 ]; then echo "neighbor 192.0.2.3 targeted"
        else echo "neighbor 2001:db8::3 targeted"; fi
        echo "interface eth-r2" ;;
    r2) echo "interface eth-r1"; echo "interface eth-r3"
        # label filters that let everything through at first; the scenario
        # narrows them for a while
        if [ "$af" = ipv4 ]; then
            echo "label local advertise to LDP-TO"
            echo "label remote accept for LDP-ACCEPT"
        else
            echo "label remote accept for LDP-ACCEPT6"
        fi ;;
    r3) echo "discovery targeted-hello accept"; echo "interface eth-r2" ;;
    esac
    echo "exit-address-family"
}

write_conf() {       # ROUTER N
    local r=$1 n=$2 d=$WORK/$1
    printf 'hostname %s\n' "$r" >"$d/zebra.conf"
    case $r in
    r1) cat >"$d/staticd.conf" <<-EOF
	ip route 192.0.2.2/32 198.51.100.2
	ip route 192.0.2.3/32 198.51.100.2
	ip route 198.51.100.4/30 198.51.100.2
	ipv6 route 2001:db8::2/128 2001:db8:12::2
	ipv6 route 2001:db8::3/128 2001:db8:12::2
	ipv6 route 2001:db8:23::/64 2001:db8:12::2
	EOF
    ;;
    r2) cat >"$d/staticd.conf" <<-EOF
	ip route 192.0.2.1/32 198.51.100.1
	ip route 192.0.2.3/32 198.51.100.6
	ipv6 route 2001:db8::1/128 2001:db8:12::1
	ipv6 route 2001:db8::3/128 2001:db8:23::3
	EOF
    ;;
    r3) cat >"$d/staticd.conf" <<-EOF
	ip route 192.0.2.1/32 198.51.100.5
	ip route 192.0.2.2/32 198.51.100.5
	ip route 198.51.100.0/30 198.51.100.5
	ipv6 route 2001:db8::1/128 2001:db8:23::2
	ipv6 route 2001:db8::2/128 2001:db8:23::2
	ipv6 route 2001:db8:12::/64 2001:db8:23::2
	EOF
    ;;
    esac

    {
        printf 'hostname %s\n!\n' "$r"
        [ "$r" = r2 ] && printf '%s\n' "access-list LDP-TO seq 10 permit any" \
            "access-list LDP-ACCEPT seq 10 permit any" \
            "ipv6 access-list LDP-ACCEPT6 seq 10 permit any" "!"
        printf 'mpls ldp\n router-id 192.0.2.%s\n' "$n"
        # one neighbour with a shorter hold time: KeepAlives every 10 s
        [ "$r" = r1 ] && printf ' neighbor 192.0.2.2 session holdtime 30\n'
        # the targeted session crosses r2, one hop more than LDP's TTL
        # security (on by default for IPv6 transport) allows
        [ "$r" = r1 ] && printf ' neighbor 192.0.2.3 ttl-security disable\n'
        [ "$r" = r3 ] && printf ' neighbor 192.0.2.1 ttl-security disable\n'
        af_lines ipv4 "$r" | sed 's/^/ /'
        af_lines ipv6 "$r" | sed 's/^/ /'
        printf '!\n'
        case $r in
        r1|r3)
            local peer=192.0.2.3
            [ "$r" = r3 ] && peer=192.0.2.1
            printf 'l2vpn VPLS100 type vpls\n bridge br100\n member interface ac100\n'
            printf ' member pseudowire mpw100\n  neighbor lsr-id %s\n  pw-id 100\n' "$peer"
            printf ' exit\n!\n'
        ;;
        esac
    } >"$d/ldpd.conf"
    chown frr:frr "$d"/*.conf
}

start_daemon() {     # ROUTER DAEMON EXTRA-ARGS...
    local r=$1 dm=$2 d=$WORK/$1; shift 2
    timeout 30 ip netns exec "$TAG-$r" $FRR/"$dm" -d -f "$d/$dm.conf" -i "$d/$dm.pid" --vty_socket "$d" \
        -z "$d/zserv.api" -P 0 --log "file:$d/$dm.log" "$@"
    wait_for 20 "$dm on $r" test -S "$d/$dm.vty"
}

n=0
for r in "${ROUTERS[@]}"; do
    n=$((n + 1))
    write_conf "$r" $n
    start_daemon "$r" zebra
    wait_for 10 "zebra socket on $r" test -S "$WORK/$r/zserv.api"
    start_daemon "$r" staticd
    start_daemon "$r" ldpd --ctl_socket "$WORK/$r"
done

say "waiting for the LDP sessions"
wait_for 90 "r1's sessions (link to r2, targeted to r3)" has_sessions r1 2
wait_for 30 "r2's sessions" has_sessions r2 2
wait_for 30 "r3's sessions" has_sessions r3 2
wait_for 30 "the pseudowire r1<->r3" pw_up
sleep 3

# --- scenario --------------------------------------------------------------------
say "address and prefixes added on r3"
nsx r3 ip addr add 203.0.113.1/28 dev lan0
nsx r3 ip addr add 2001:db8:99::3/64 dev lan0
sleep 4

say "static routes added on r1"
vconf r1 "ip route 203.0.113.128/25 198.51.100.2" "ipv6 route 2001:db8:98::/64 2001:db8:12::2"
sleep 4
say "static routes removed on r1"
vconf r1 "no ip route 203.0.113.128/25 198.51.100.2" "no ipv6 route 2001:db8:98::/64 2001:db8:12::2"
sleep 4

say "addresses removed on r3"
nsx r3 ip addr del 203.0.113.1/28 dev lan0
nsx r3 ip addr del 2001:db8:99::3/64 dev lan0
sleep 4

say "pseudowire attachment circuit down and up on r3"
nsx r3 ip link set ac100 down
sleep 4
nsx r3 ip link set ac100 up
sleep 4

# a new pseudowire ID on one end, then on the other: the old label is
# withdrawn and released, the new one mapped
say "pseudowire ID changed on r3, then on r1"
vconf r3 "l2vpn VPLS100 type vpls" "member pseudowire mpw100" "pw-id 101"
sleep 4
vconf r1 "l2vpn VPLS100 type vpls" "member pseudowire mpw100" "pw-id 101"
sleep 4

# r2's label-acceptance filters change: after each change r2 asks its
# peers for their labels again (typed-wildcard Label Request: both ends
# announced that capability)
say "label acceptance filters on r2 narrowed, then widened"
vconf r2 "access-list LDP-ACCEPT seq 5 deny 198.51.100.0/24"
sleep 2
vconf r2 "ipv6 access-list LDP-ACCEPT6 seq 5 deny 2001:db8:12::/64"
sleep 2
vconf r2 "no access-list LDP-ACCEPT seq 5 deny 198.51.100.0/24" \
    "no ipv6 access-list LDP-ACCEPT6 seq 5 deny 2001:db8:12::/64"
sleep 3

# r2 stops advertising to r1 (wildcard Label Withdraw, answered by wildcard
# Label Release) and then starts again (Label Mappings)
say "label advertisement filter on r2: r1 denied, then allowed"
vconf r2 "access-list LDP-TO seq 5 deny 192.0.2.1/32"
sleep 4
vconf r2 "no access-list LDP-TO seq 5 deny 192.0.2.1/32"
sleep 4

# shorter Hello timers from here on (see the move to IPv4 below); the new
# hold times reach the peers with the next Hellos
for r in "${ROUTERS[@]}"; do
    vconf "$r" "mpls ldp" "discovery hello holdtime 6" "discovery hello interval 2" \
        "discovery targeted-hello holdtime 6" "discovery targeted-hello interval 2"
done

say "session reset from r1"
vty r1 -c "clear mpls ldp neighbor 192.0.2.2" >/dev/null
sleep 2
wait_for 60 "r1's sessions after the reset" has_sessions r1 2
sleep 3

# A neighbour keeps the transport it was found with while any adjacency of
# that family is left, and an adjacency outlives its session until its Hello
# hold time runs out: with short hold times, drop IPv6 discovery, prefer
# IPv4, and the sessions come back over IPv4.  IPv6 discovery then returns,
# its Hellos now announcing the IPv4 preference.
say "sessions moved to IPv4 transport"
for r in "${ROUTERS[@]}"; do
    vconf "$r" "mpls ldp" "dual-stack transport-connection prefer ipv4" "no address-family ipv6"
done
sleep 2
wait_for 60 "r1's sessions over IPv4" has_sessions r1 2 ipv4
wait_for 30 "r3's sessions over IPv4" has_sessions r3 2 ipv4
for r in "${ROUTERS[@]}"; do
    mapfile -t lines < <(af_lines ipv6 "$r")
    vconf "$r" "mpls ldp" "${lines[@]}"
done
# the IPv4 adjacencies now see a dual-stack TLV they were made without:
# they are dropped and made again, and the sessions with them
sleep 3
wait_for 60 "r1's sessions after IPv6 discovery returned" settled r1 2 ipv4
wait_for 30 "r3's sessions after IPv6 discovery returned" settled r3 2 ipv4
wait_for 30 "the pseudowire r1<->r3 over IPv4" pw_up
sleep 3

say "pseudowire removed on r3"
vconf r3 "l2vpn VPLS100 type vpls" "no member pseudowire mpw100"
sleep 4

# --- result -----------------------------------------------------------------------
stop_pidfiles "$WORK"/*/tcpdump.pid
rm -f "$WORK"/*/tcpdump.pid
mkdir -p "$(dirname "$OUT")"
mergecap -F pcapng -w "$OUT.tmp" "$WORK"/r1/*.pcap "$WORK"/r3/*.pcap
mv "$OUT.tmp" "$OUT"
say "wrote $OUT ($(stat -c %s "$OUT") bytes)"
