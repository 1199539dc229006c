#!/usr/bin/env bash
# Runs a test program on Qt's Wayland platform, under a headless weston of its own, and answers
# with the program's exit code: for what a window does differently there.
# Usage: under_wayland.sh PROGRAM [ARGUMENTS...]
set -euo pipefail
source "$(dirname "$0")/check_desktop.sh"

export XDG_RUNTIME_DIR="$work/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"
setsid weston --backend=headless-backend.so --socket=vantrel-test --idle-time=0 >"$work/weston.log" 2>&1 &
check_groups+=($!)
for _ in $(seq 1 100); do
    [ -S "$XDG_RUNTIME_DIR/vantrel-test" ] && break
    sleep 0.1
done
[ -S "$XDG_RUNTIME_DIR/vantrel-test" ] || { echo "the compositor did not start"; cat "$work/weston.log"; exit 1; }
status=0
env -u DISPLAY QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=vantrel-test "$@" || status=$?
exit "$status"
