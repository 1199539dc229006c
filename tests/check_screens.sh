#!/usr/bin/env bash
# Two monitors, as weston's X11 back end gives them inside Xvfb. Under Wayland (screen0, screen1)
# windows fixed to monitors in Screens.conf end full screen on their own monitor, as the
# compositor tells the program where each surface is; started again with one output fewer, the
# window of the missing monitor waits on the primary one. Under X11, through Xwayland (XWAYLAND0,
# XWAYLAND1), windows at rectangles of their monitors stand there, as the X server says. (Weston's
# X11 window manager puts every full-screen X11 window on its first output, wherever it stands, so
# full screen is tried under Wayland alone.)
# Usage: check_screens.sh VANTREL
set -euo pipefail
program=$1
source "$(dirname "$0")/support/check_desktop.sh"
source "$(dirname "$0")/support/check_monitors.sh"
wayland_socket=vantrel-screens

export XDG_RUNTIME_DIR="$work/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"
start_xvfb 2200x1000x24

mkdir -p "$work/site"
printf '<html><head><title>Wall %s</title></head><body>wall</body></html>' 1 >"$work/site/one.html"
printf '<html><head><title>Wall %s</title></head><body>wall</body></html>' 2 >"$work/site/two.html"
start_web "$work/site"

compositor=""
start_weston() { # OUTPUTS
    [ -n "$compositor" ] && { kill -TERM -- "-$compositor" 2>/dev/null || true; sleep 0.5; }
    rm -f "$XDG_RUNTIME_DIR/vantrel-screens"
    : >"$work/weston.log"
    setsid weston --backend=x11-backend.so --output-count="$1" --use-pixman --xwayland \
        --width=800 --height=600 --socket=vantrel-screens --idle-time=0 >"$work/weston.log" 2>&1 &
    compositor=$!
    check_groups+=("$compositor")
    for _ in $(seq 1 100); do
        grep -q "xserver listening on display" "$work/weston.log" && [ -S "$XDG_RUNTIME_DIR/vantrel-screens" ] && break
        sleep 0.1
    done
    xwayland=$(sed -n 's/.*xserver listening on display \(:[0-9]*\).*/\1/p' "$work/weston.log" | tail -1)
    [ -n "$xwayland" ] || { echo "weston did not start"; cat "$work/weston.log"; exit 1; }
}

fix_windows() { # FIRST SECOND: window 1 on the second monitor, window 2 on the first
    printf '[Window1]\nmonitor=%s\nplace=full-screen\n[Window2]\nmonitor=%s\nplace=full-screen\n' "$2" "$1" \
        >"$work/data/Vantrel/Screens.conf"
}

check_platform() { # PLATFORM FIRST SECOND
    mkdir -p "$work/data/Vantrel"
    fix_windows "$2" "$3"
    start_vantrel
    local t0
    t0=$(date +%s%3N)
    vantrel --slot 1 "http://127.0.0.1:$port/one.html"
    vantrel --slot 2 "http://127.0.0.1:$port/two.html"
    one=$(wait_on 1 "$3" "$t0")
    two=$(wait_on 2 "$2" "$t0")
    echo "$1: window 1 full screen on $3 after $one ms, window 2 on $2 after $two ms"
    stop_vantrel
}

start_weston 2
check_platform wayland screen0 screen1

# One output fewer: the window of the missing monitor waits on the primary one, and says so.
start_weston 1
rm -f "$work/data/Vantrel/Vantrel.log"
fix_windows screen0 screen1
start_vantrel
t0=$(date +%s%3N)
vantrel --slot 1 "http://127.0.0.1:$port/one.html"
waited=$(wait_on 1 screen0 "$t0")
grep -q "monitor missing: window 1 waits on screen0 (screen1 is not there)" "$work/data/Vantrel/Vantrel.log" ||
    { echo "the log does not say the monitor is missing"; cat "$work/data/Vantrel/Vantrel.log"; exit 1; }
echo "one output fewer: window 1 waits full screen on screen0 after $waited ms"
stop_vantrel

# Under X11: rectangles of their monitors, where the X server puts them.
start_weston 2
printf '[Window1]\nmonitor=XWAYLAND1\nplace=100 50 400 300\n[Window2]\nmonitor=XWAYLAND0\nplace=10 10 300 200\n' \
    >"$work/data/Vantrel/Screens.conf"
start_vantrel x11
t0=$(date +%s%3N)
vantrel --slot 1 "http://127.0.0.1:$port/one.html"
vantrel --slot 2 "http://127.0.0.1:$port/two.html"
one=$(wait_on 1 XWAYLAND1 "$t0" false)
two=$(wait_on 2 XWAYLAND0 "$t0" false)
# As the X server has them: window 1 on the right-hand monitor (x from 800), window 2 on the left.
x_of() {
    local id
    id=$(DISPLAY="$xwayland" xdotool search --name "^$1\$" | head -1)
    DISPLAY="$xwayland" xwininfo -id "$id" | sed -n 's/.*Absolute upper-left X: *\(-*[0-9]*\).*/\1/p'
}
x1=$(x_of "Wall 1")
x2=$(x_of "Wall 2")
[ "$x1" -ge 800 ] && [ "$x1" -lt 1600 ] || { echo "window 1 stands at x $x1, not on XWAYLAND1"; exit 1; }
[ "$x2" -ge 0 ] && [ "$x2" -lt 800 ] || { echo "window 2 stands at x $x2, not on XWAYLAND0"; exit 1; }
echo "x11: window 1 at a rectangle of XWAYLAND1 (x $x1) after $one ms, window 2 of XWAYLAND0 (x $x2) after $two ms"
stop_vantrel
