#!/usr/bin/env bash
# The real program and a fake logind (python3-dbusmock) on a private bus that stands in for the
# system bus: when logind says the machine woke up, the page shown is loaded again.
# Usage: check_sleep.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
source "$(dirname "$0")/support/check_desktop.sh"
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
first_start_files "$data"
# Every shown page comes again after a sleep, however recent.
printf '[Recovery]\nAfterSleepReloadPagesOlderThanMinutes=0\n' >"$data/Vantrel.conf"

setsid dbus-daemon --session --nofork --print-address=1 >"$work/bus" 2>/dev/null &
check_groups+=($!)
for _ in $(seq 1 50); do
    [ -s "$work/bus" ] && break
    sleep 0.1
done
address=$(head -n 1 "$work/bus")
[ -n "$address" ] || fail "no private bus"
DBUS_SYSTEM_BUS_ADDRESS=$address setsid /usr/bin/python3 -m dbusmock --system --template logind \
    >/dev/null 2>"$work/logind.log" &
check_groups+=($!)
for _ in $(seq 1 100); do
    DBUS_SESSION_BUS_ADDRESS=$address gdbus call --session --dest org.freedesktop.DBus --object-path / \
        --method org.freedesktop.DBus.NameHasOwner org.freedesktop.login1 2>/dev/null | grep -q true && break
    sleep 0.1
done
start_web "$work/pages"

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
