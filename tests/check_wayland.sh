#!/usr/bin/env bash
# Starts the program under a headless Wayland compositor with no X11 offered: it must run there
# natively, through Qt's Wayland platform, and keep running until it is ended.
# Usage: check_wayland.sh PROGRAM
set -euo pipefail
program=$1
work=$(mktemp -d)
chmod 700 "$work"
finish() {
    for pid in ${app:-} ${compositor:-}; do
        kill -TERM -- "-$pid" 2>/dev/null || true
    done
    for _ in $(seq 1 50); do
        { [ -n "${app:-}" ] && pgrep -g "$app" >/dev/null; } || { [ -n "${compositor:-}" ] && pgrep -g "$compositor" >/dev/null; } || break
        sleep 0.1
    done
    for pid in ${app:-} ${compositor:-}; do
        kill -KILL -- "-$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT

export XDG_RUNTIME_DIR="$work/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"
setsid weston --backend=headless-backend.so --socket=vantrel-test --idle-time=0 >"$work/weston.log" 2>&1 &
compositor=$!
for _ in $(seq 1 100); do
    [ -S "$XDG_RUNTIME_DIR/vantrel-test" ] && break
    sleep 0.1
done
[ -S "$XDG_RUNTIME_DIR/vantrel-test" ] || { echo "the compositor did not start"; cat "$work/weston.log"; exit 1; }

mkdir -p "$work/home" "$work/data/Vantrel"
printf ' 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n' >"$work/data/Vantrel/Options.INI"
printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
    >"$work/data/Vantrel/Colors.INI"
cd "$work"
env -u DISPLAY -u QT_QPA_PLATFORM HOME="$work/home" XDG_DATA_HOME="$work/data" WAYLAND_DISPLAY=vantrel-test \
    setsid "$program" >"$work/out.log" 2>&1 &
app=$!
# Running, with the Wayland platform loaded.
for _ in $(seq 1 100); do
    grep -q "libqwayland\|Qt6WaylandClient" "/proc/$app/maps" 2>/dev/null && break
    kill -0 "$app" 2>/dev/null || { echo "the program ended"; cat "$work/out.log"; exit 1; }
    sleep 0.1
done
grep -q "libqwayland\|Qt6WaylandClient" "/proc/$app/maps" || { echo "not on Wayland"; cat "$work/out.log"; exit 1; }
sleep 2
kill -0 "$app" || { echo "the program ended"; cat "$work/out.log"; exit 1; }
echo "runs natively under Wayland"
