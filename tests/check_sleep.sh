#!/usr/bin/env bash
# The real program and a fake logind (python3-dbusmock) on a private bus that stands in for the
# system bus: when logind says the machine woke up, the page shown is loaded again.
# Usage: check_sleep.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
work=$(mktemp -d)
chmod 700 "$work"
finish() {
    for pid in ${app:-} ${logind:-} ${web:-} ${bus:-}; do
        kill -TERM -- "-$pid" 2>/dev/null || true
    done
    for _ in $(seq 1 50); do
        { [ -n "${app:-}" ] && pgrep -g "$app" >/dev/null; } || break
        sleep 0.1
    done
    for pid in ${app:-} ${logind:-} ${web:-} ${bus:-}; do
        kill -KILL -- "-$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT
fail() {
    echo "$1"
    echo "--- Vantrel.log"; cat "$data/Vantrel.log" 2>/dev/null || true
    echo "--- pages asked"; cat "$work/web.log" 2>/dev/null || true
    exit 1
}
data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/run" "$work/pages"
chmod 700 "$work/run"
printf '<html><head><title>Wall</title></head><body>wall</body></html>' >"$work/pages/wall.html"
printf ' 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n' >"$data/Options.INI"
printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
    >"$data/Colors.INI"
# Every shown page comes again after a sleep, however recent.
printf '[Recovery]\nAfterSleepReloadPagesOlderThanMinutes=0\n' >"$data/Vantrel.conf"

setsid dbus-daemon --session --nofork --print-address=1 >"$work/bus" 2>/dev/null &
bus=$!
for _ in $(seq 1 50); do
    [ -s "$work/bus" ] && break
    sleep 0.1
done
address=$(head -n 1 "$work/bus")
[ -n "$address" ] || fail "no private bus"
DBUS_SYSTEM_BUS_ADDRESS=$address setsid /usr/bin/python3 -m dbusmock --system --template logind \
    >/dev/null 2>"$work/logind.log" &
logind=$!
for _ in $(seq 1 100); do
    DBUS_SESSION_BUS_ADDRESS=$address gdbus call --session --dest org.freedesktop.DBus --object-path / \
        --method org.freedesktop.DBus.NameHasOwner org.freedesktop.login1 2>/dev/null | grep -q true && break
    sleep 0.1
done
setsid /usr/bin/python3 -m http.server 0 --bind 127.0.0.1 --directory "$work/pages" >"$work/web.log" 2>&1 &
web=$!
for _ in $(seq 1 50); do
    port=$(sed -n 's/.*port \([0-9]*\).*/\1/p' "$work/web.log" | head -n 1)
    [ -n "$port" ] && break
    sleep 0.1
done
[ -n "${port:-}" ] || fail "the page server did not start"

export HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=offscreen
export DBUS_SYSTEM_BUS_ADDRESS=$address
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
cd "$work"
setsid "$program" >"$work/out.log" 2>&1 &
app=$!
for _ in $(seq 1 300); do
    "$program" --status >/dev/null 2>&1 && break
    kill -0 "$app" 2>/dev/null || fail "the program ended"
    sleep 0.1
done
url="http://127.0.0.1:$port/wall.html"
"$program" --new-window "$url" || fail "the page was not opened"
for _ in $(seq 1 200); do
    "$program" --status | grep -q '"state":"shown"' && break
    sleep 0.1
done
"$program" --status | grep -q '"state":"shown"' || fail "the page was not shown"
asked() { grep -c 'GET /wall.html' "$work/web.log" || true; }
before=$(asked)

say() {
    DBUS_SESSION_BUS_ADDRESS=$address gdbus call --session --dest org.freedesktop.login1 \
        --object-path /org/freedesktop/login1 --method org.freedesktop.DBus.Mock.EmitSignal \
        org.freedesktop.login1.Manager PrepareForSleep b "[<$1>]" >/dev/null
}
say true
say false
for _ in $(seq 1 100); do
    [ "$(asked)" -gt "$before" ] && break
    sleep 0.1
done
[ "$(asked)" -gt "$before" ] || fail "the page was not loaded again after the wake"
grep -q "the machine woke up" "$data/Vantrel.log" || fail "the wake is not in the log"
grep -q "reload after sleep: window 1 $url" "$data/Vantrel.log" || fail "the reload is not in the log"
echo "after logind's wake the shown page is loaded again"
