#!/usr/bin/env bash
# A monitor unplugged and plugged in again while a rotation runs on it, under a real X server:
# Xorg's dummy driver gives RandR outputs that xrandr turns on and off as a desktop does when a
# monitor comes and goes, with openbox as the window manager. The window fixed full screen to the
# second monitor waits full screen on the first one within a second, goes back to its own within
# a second, and its rotation goes on all the while in the same window. Both Vantrel's --status and
# the X server (xwininfo) are asked where the window is. Prints the times, for the figures.
# Usage: check_monitor_hotplug.sh VANTREL
set -euo pipefail
program=$1
source "$(dirname "$0")/support/check_desktop.sh"
source "$(dirname "$0")/support/check_monitors.sh"

export XDG_RUNTIME_DIR="$work/runtime"
mkdir -m 700 "$XDG_RUNTIME_DIR"

# Xorg with the dummy driver and no configuration but this one; run directly, not through the
# wrapper, so that it needs no rights of its own.
cat >"$work/xorg.conf" <<'CONF'
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
EndSection
Section "Device"
    Identifier "dummy"
    Driver "dummy"
    VideoRam 64000
EndSection
Section "Screen"
    Identifier "screen"
    Device "dummy"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Virtual 2048 768
    EndSubSection
EndSection
CONF
mkdir "$work/xorg.conf.d"
exec 3<>"$work/display"
setsid /usr/lib/xorg/Xorg -displayfd 3 -config "$work/xorg.conf" -configdir "$work/xorg.conf.d" -noreset \
    -nolisten tcp -logfile "$work/xorg.log" >"$work/xorg.out" 2>&1 &
check_groups+=($!)
for _ in $(seq 1 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
[ -s "$work/display" ] || { echo "Xorg did not start"; cat "$work/xorg.out" "$work/xorg.log"; exit 1; }
export DISPLAY=":$(head -n 1 "$work/display")"
xwayland=$DISPLAY # start_vantrel x11 starts the program on it
plug() { xrandr --addmode DUMMY1 1024x768 2>/dev/null || true; xrandr --output DUMMY1 --mode 1024x768 --right-of DUMMY0; }
unplug() { xrandr --output DUMMY1 --off; }
plug
start_openbox

mkdir -p "$work/site"
for n in 1 2 3; do
    printf '<html><head><title>Wall %s</title></head><body>wall %s</body></html>' "$n" "$n" >"$work/site/$n.html"
done
start_web "$work/site"

window_field() { # SLOT FIELD
    vantrel --status | python3 -c '
import json, sys
print([w for w in json.load(sys.stdin)["windows"] if w["slot"] == int(sys.argv[1])][0][sys.argv[2]])' "$1" "$2"
}
# Where the X server has the window titled TITLE: "x width".
x_place() { # TITLE
    local id
    id=$(xdotool search --name "^$1\$" | head -1)
    xwininfo -id "$id" | awk '/Absolute upper-left X/ { x = $4 } /Width:/ { w = $2 } END { print x, w }'
}
# Waits up to two seconds for TEXT in the log.
logged() { # TEXT
    for _ in $(seq 1 40); do
        grep -qF "$1" "$work/data/Vantrel/Vantrel.log" 2>/dev/null && return 0
        sleep 0.05
    done
    return 1
}
fail() { echo "$1"; vantrel --status || true; cat "$work/data/Vantrel/Vantrel.log" 2>/dev/null; exit 1; }

mkdir -p "$work/data/Vantrel"
printf '[Window1]\nmonitor=DUMMY1\nplace=full-screen\nifMissing=primary\n' >"$work/data/Vantrel/Screens.conf"
base="http://127.0.0.1:$port"
printf 'Wall[#@!] [#@!] \r\nWall[#@!]One[#@!]%s/1.html\r\nWall[#@!]Two[#@!]%s/2.html\r\nWall[#@!]Three[#@!]%s/3.html\r\n' \
    "$base" "$base" "$base" >"$work/data/Vantrel/DefaultList.NLS"
start_vantrel x11
t0=$(date +%s%3N)
vantrel --run Wall --interval 2 --loop
shown=$(wait_on 1 DUMMY1 "$t0")
[ "$(x_place "$(window_field 1 title)")" = "1024 1024" ] || fail "the X server does not have the window over DUMMY1"
echo "the rotation's window is full screen on DUMMY1 after $shown ms"

# Unplugged: the window waits full screen on the first monitor, and the rotation goes on there.
first=$(window_field 1 address)
t0=$(date +%s%3N)
unplug
gone=$(wait_on 1 DUMMY0 "$t0")
[ "$gone" -le 1000 ] || fail "the window took $gone ms to come to DUMMY0"
logged "monitor missing: window 1 waits on DUMMY0 (DUMMY1 is not there)" ||
    fail "the log does not say the monitor is missing"
[ "$(x_place "$(window_field 1 title)")" = "0 1024" ] || fail "the X server does not have the window over DUMMY0"
sleep 4.5
moved=$(window_field 1 address)
[ "$moved" != "$first" ] || fail "the rotation stood still while its monitor was away ($moved)"

# Plugged in again: back on its own monitor, full screen, the same rotation going on.
t0=$(date +%s%3N)
plug
back=$(wait_on 1 DUMMY1 "$t0")
[ "$back" -le 1000 ] || fail "the window took $back ms to come back to DUMMY1"
logged "monitor back: window 1 on DUMMY1" || fail "the log does not say the monitor is back"
[ "$(x_place "$(window_field 1 title)")" = "1024 1024" ] || fail "the X server does not have the window back over DUMMY1"
vantrel --status | grep -q '"run":{' || fail "the rotation stopped"
sleep 4.5
[ "$(window_field 1 address)" != "$moved" ] || fail "the rotation stood still after its monitor came back"
echo "unplugged: full screen on DUMMY0 after $gone ms; plugged in again: full screen on DUMMY1 after $back ms; the rotation went on"
stop_vantrel
