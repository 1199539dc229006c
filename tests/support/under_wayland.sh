#!/usr/bin/env bash
# Runs a test program on Qt's Wayland platform, under a headless weston of its own, and answers
# with the program's exit code: for what a window does differently there.
# Usage: under_wayland.sh PROGRAM [ARGUMENTS...]
set -euo pipefail
source "$(dirname "$0")/check_desktop.sh"

start_headless_weston
status=0
env -u DISPLAY QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=vantrel-test "$@" || status=$?
exit "$status"
