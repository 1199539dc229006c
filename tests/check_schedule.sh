#!/usr/bin/env bash
# The real program under Xvfb with a schedule that starts a rotation at the next minute and stops it
# a minute later, seen from outside through `vantrel --status`: each within a second of its minute.
# Prints how far from the minute each came, for the figures.
# Usage: check_schedule.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
work=$(mktemp -d)
chmod 700 "$work"
finish() {
    for pid in ${app:-} ${server:-}; do
        kill -TERM -- "-$pid" 2>/dev/null || true
    done
    for _ in $(seq 1 50); do
        { [ -n "${app:-}" ] && pgrep -g "$app" >/dev/null; } || break
        sleep 0.1
    done
    for pid in ${app:-} ${server:-}; do
        kill -KILL -- "-$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT
fail() {
    echo "$1"
    echo "--- Vantrel.log"; cat "$data/Vantrel.log" 2>/dev/null || true
    echo "--- output"; tail -n 30 "$work/out.log" 2>/dev/null || true
    exit 1
}

exec 3<> "$work/display"
setsid Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
server=$!
for _ in $(seq 1 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
[ -s "$work/display" ] || { echo "Xvfb did not start"; exit 1; }
export DISPLAY=":$(head -n 1 "$work/display")"

data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/run"
chmod 700 "$work/run"
printf ' 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n' >"$data/Options.INI"
printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
    >"$data/Colors.INI"
printf 'Shop[#@!] [#@!] \r\nShop[#@!]A[#@!]about:blank#a\r\nShop[#@!]B[#@!]about:blank#b\r\n' >"$data/DefaultList.NLS"

# The next whole minute with at least 15 s to go, and the one after it.
now=$(date +%s)
begin=$(( (now / 60 + 1) * 60 ))
[ $((begin - now)) -lt 15 ] && begin=$((begin + 60))
end=$((begin + 60))
printf '[Schedules]\n1\\name=Opening\n1\\list=Shop\n1\\interval=30\n1\\loop=true\n1\\rules=Daily %s-%s\nsize=1\n' \
    "$(date -d "@$begin" +%H:%M)" "$(date -d "@$end" +%H:%M)" >"$data/Schedules.conf"

export HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/run"
unset QT_QPA_PLATFORM WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
cd "$work"
setsid "$program" >"$work/out.log" 2>&1 &
app=$!
for _ in $(seq 1 300); do
    "$program" --status >/dev/null 2>&1 && break
    kill -0 "$app" 2>/dev/null || fail "the program ended"
    sleep 0.1
done
running() { "$program" --status 2>/dev/null | grep -q '"run":{'; }
running && fail "the rotation runs before its hours"

# Watches until the rotation's state is `want`; prints the milliseconds from `minute` it was seen.
seen() {
    local want=$1 minute=$2
    while :; do
        if { [ "$want" = on ] && running; } || { [ "$want" = off ] && ! running; }; then
            echo $(( $(date +%s%3N) - minute * 1000 ))
            return 0
        fi
        [ "$(date +%s)" -gt $((minute + 10)) ] && return 1
        kill -0 "$app" 2>/dev/null || return 1
        sleep 0.05
    done
}
started=$(seen on "$begin") || fail "the rotation did not start at $(date -d "@$begin" +%H:%M)"
stopped=$(seen off "$end") || fail "the rotation did not stop at $(date -d "@$end" +%H:%M)"
echo "started ${started} ms after its minute, stopped ${stopped} ms after its minute"
[ "$started" -ge 0 ] && [ "$started" -le 1000 ] || fail "started ${started} ms from its minute"
[ "$stopped" -ge 0 ] && [ "$stopped" -le 1000 ] || fail "stopped ${stopped} ms from its minute"
grep -q 'schedule "Opening": its hours began, Shop runs' "$data/Vantrel.log" || fail "the start is not in the log"
grep -q 'schedule "Opening": its hours ended, Shop stopped' "$data/Vantrel.log" || fail "the stop is not in the log"
echo "a schedule starts and stops its rotation on the minute"
