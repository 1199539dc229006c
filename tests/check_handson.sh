#!/usr/bin/env bash
# The real program under Xvfb, driven with real X input (xdotool, through XTEST): a run that goes
# on after a crash holds still while a person clicks in its window, but not for a pointer that only
# moves, goes on by itself once nobody has used the window for a while, and takes its keys
# (Ctrl+Shift+Space) from the window itself.
# Usage: check_handson.sh PROGRAM
set -euo pipefail
program=$1
source "$(dirname "$0")/support/check_desktop.sh"
fail() {
    echo "$1"
    echo "--- Vantrel.log"; cat "$data/Vantrel.log" 2>/dev/null || true
    echo "--- output"; tail -n 30 "$work/out.log" 2>/dev/null || true
    exit 1
}

start_xvfb

data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/pages"
printf '<html><head><title>Page A</title></head><body style="background:#ccf">A</body></html>' >"$work/pages/a.html"
printf '<html><head><title>Page B</title></head><body style="background:#cfc">B</body></html>' >"$work/pages/b.html"
a="file://$work/pages/a.html"
b="file://$work/pages/b.html"
first_start_files "$data"
printf 'Walls[#@!] [#@!] \r\nWalls[#@!]A[#@!]%s\r\nWalls[#@!]B[#@!]%s\r\n' "$a" "$b" >"$data/DefaultList.NLS"
# The program ended in the middle of a run of Walls, showing A: it goes on without asking.
printf '[Session]\nVersion=1\nEnded=running\nCurrent=1\nNewWindowMode=1\n\n[Window1]\nAddress=%s\nTitle=Page A\n\n[Run]\nList=Walls\nInterval=600\nLoop=1\nSeveralWindows=0\nKeepPagesLoaded=0\nPosition=1\n' \
    "$a" >"$data/Session.INI"
printf '[Session]\nReopenAfterACrashWithoutAsking=1\n\n[TimedBrowsing]\nGoOnAfterSecondsWithoutInput=5\n' \
    >"$data/Vantrel.conf"

cd "$work"
mkdir -p "$work/run" && chmod 700 "$work/run"
env -u QT_QPA_PLATFORM -u WAYLAND_DISPLAY HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/run" \
    setsid "$program" >"$work/out.log" 2>&1 &
app=$!

window=""
for _ in $(seq 1 300); do
    window=$(xdotool search --name "Page A" 2>/dev/null | head -n 1 || true)
    [ -n "$window" ] && break
    kill -0 "$app" 2>/dev/null || fail "the program ended"
    sleep 0.1
done
[ -n "$window" ] || fail "the run's window did not come"
logged() { grep -q "$1" "$data/Vantrel.log" 2>/dev/null; }
waitlog() {
    for _ in $(seq 1 "$2"); do
        logged "$1" && return 0
        sleep 0.1
    done
    return 1
}
waitlog "session of the last run reopened: 1 windows, the run of Walls going on at page 2" 100 ||
    fail "the session was not reopened"
sleep 1

# A pointer moved over the page is nobody at work.
eval "$(xdotool getwindowgeometry --shell "$window")"
xdotool mousemove $((X + 100)) $((Y + 100))
sleep 0.3
xdotool mousemove $((X + 300)) $((Y + 250))
sleep 1.5
logged "someone uses window" && fail "a pointer that only moved held the run"

# A click is.
xdotool click 1
waitlog "run paused: someone uses window 1 (Walls at page 1)" 50 || fail "a click did not hold the run"
# Left alone for five seconds, the run goes on.
waitlog "run resumed: nobody used its window for 5 s (Walls)" 120 || fail "the run did not go on by itself"

# The run's keys, pressed in its window.
xdotool key ctrl+shift+space
waitlog "run paused: Walls at page 1" 50 || fail "Ctrl+Shift+Space did not pause the run"
xdotool key ctrl+shift+space
waitlog "run resumed: Walls$" 50 || fail "Ctrl+Shift+Space did not resume the run"
kill -0 "$app" || fail "the program ended"
echo "a click holds the run, a moving pointer does not, and the run keys work in its window"
