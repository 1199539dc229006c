#!/usr/bin/env bash
# The real program under Xvfb with a schedule that starts a rotation at the next minute and stops it
# a minute later, seen from outside through `vantrel --status`: each within a second of its minute.
# Prints how far from the minute each came, for the figures.
# Usage: check_schedule.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
source "$(dirname "$0")/support/check_desktop.sh"
fail() {
    echo "$1"
    echo "--- Vantrel.log"; cat "$data/Vantrel.log" 2>/dev/null || true
    echo "--- output"; tail -n 30 "$work/out.log" 2>/dev/null || true
    exit 1
}

start_xvfb

data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/run"
chmod 700 "$work/run"
first_start_files "$data"
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
