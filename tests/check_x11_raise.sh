#!/usr/bin/env bash
# The real program under Xvfb with a window manager (openbox): a second start that the desktop
# launched (DESKTOP_STARTUP_ID, "..._TIME<server time>") and asks for the window brings the main
# window forward over a browser window that has the focus, with the time of the person's request
# as the window's user time, as focus-stealing prevention wants it.
# Usage: check_x11_raise.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
source "$(dirname "$0")/support/check_desktop.sh"
fail() {
    echo "$1"
    echo "--- output"; tail -n 30 "$work/out.log" 2>/dev/null || true
    exit 1
}

start_xvfb
start_openbox

data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/pages" "$work/run"
chmod 700 "$work/run"
printf '<html><head><title>Page A</title></head><body>A</body></html>' >"$work/pages/a.html"
first_start_files "$data"
# The page comes over http, as pages from outside must.
start_web "$work/pages"
export HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/run"
unset QT_QPA_PLATFORM WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS DESKTOP_STARTUP_ID XDG_ACTIVATION_TOKEN
cd "$work"
setsid "$program" >"$work/out.log" 2>&1 &
app=$!

findwindow() {
    for _ in $(seq 1 300); do
        found=$(xdotool search ${2:-} --name "$1" 2>/dev/null | head -n 1 || true)
        [ -n "$found" ] && { echo "$found"; return 0; }
        sleep 0.1
    done
    return 1
}
main=$(findwindow '^Vantrel$' --onlyvisible) || fail "the main window did not come"
"$program" --new-window "http://127.0.0.1:$port/a.html" || fail "the page was not opened"
"$program" --status >/dev/null || fail "the program does not answer"
browser=$(findwindow 'Page A') || fail "the browser window did not come"
active() { xprop -root _NET_ACTIVE_WINDOW | sed -n 's/.*# \(0x[0-9a-f]*\).*/\1/p'; }
hex() { printf '0x%x' "$1"; }
# A person's click in the browser window: it has the focus, and its user time is now.
eval "$(xdotool getwindowgeometry --shell "$browser")"
xdotool mousemove $((X + 200)) $((Y + 200)) click 1
for _ in $(seq 1 50); do
    [ "$(active)" = "$(hex "$browser")" ] && break
    sleep 0.1
done
[ "$(active)" = "$(hex "$browser")" ] || fail "the browser window did not take the focus"
clicked=$(xprop -id "$browser" _NET_WM_USER_TIME | sed -n 's/.* = \([0-9]*\)$/\1/p')
[ -n "$clicked" ] || fail "the browser window has no user time"

# A launcher's action a moment later: its startup id carries the time of that request.
asked=$((clicked + 50))
DESKTOP_STARTUP_ID="launcher-1-test_TIME$asked" "$program" --raise || fail "--raise did not end with 0"
for _ in $(seq 1 50); do
    [ "$(active)" = "$(hex "$main")" ] && break
    sleep 0.1
done
[ "$(active)" = "$(hex "$main")" ] || fail "the main window ($(hex "$main")) did not come forward over the browser window ($(hex "$browser")): $(active), user time $(xprop -id "$main" _NET_WM_USER_TIME), asked $asked"
usertime=$(xprop -id "$main" _NET_WM_USER_TIME | sed -n 's/.* = \([0-9]*\)$/\1/p')
[ "$usertime" = "$asked" ] || fail "the main window's user time is $usertime, not the request's $asked"
kill -0 "$app" || fail "the program ended"
echo "a launcher's start brings the main window forward with the time of the person's request"
