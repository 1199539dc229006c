#!/usr/bin/env bash
# Starts the program under a headless Wayland compositor with no X11 offered: it must run there
# natively, through Qt's Wayland platform, and keep running until it is ended.
# Usage: check_wayland.sh PROGRAM
set -euo pipefail
program=$1
source "$(dirname "$0")/support/check_desktop.sh"

start_headless_weston

mkdir -p "$work/home" "$work/data/Vantrel"
first_start_files "$work/data/Vantrel"
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
