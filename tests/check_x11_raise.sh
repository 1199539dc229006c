#!/usr/bin/env bash
# The real program under Xvfb with a window manager (openbox): a second start that the desktop
# launched (DESKTOP_STARTUP_ID, "..._TIME<server time>") and asks for the window brings the main
# window forward over a browser window that has the focus, with the time of the person's request
# as the window's user time, as focus-stealing prevention wants it.
# Usage: check_x11_raise.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
work=$(mktemp -d)
chmod 700 "$work"
finish() {
    for pid in ${app:-} ${web:-} ${wm:-} ${server:-}; do
        kill -TERM -- "-$pid" 2>/dev/null || true
    done
    for _ in $(seq 1 50); do
        { [ -n "${app:-}" ] && pgrep -g "$app" >/dev/null; } || break
        sleep 0.1
    done
    for pid in ${app:-} ${web:-} ${wm:-} ${server:-}; do
        kill -KILL -- "-$pid" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT
fail() {
    echo "$1"
    echo "--- output"; tail -n 30 "$work/out.log" 2>/dev/null || true
    exit 1
}

exec 3<> "$work/display"
setsid Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
server=$!
for _ in $(seq 1 100); do
    [ -s "$work/display" ] && break
    sleep 0.1
done
[ -s "$work/display" ] || { echo "Xvfb did not start"; exit 1; }
export DISPLAY=":$(head -n 1 "$work/display")"
setsid openbox >/dev/null 2>&1 &
wm=$!
for _ in $(seq 1 50); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break
    sleep 0.1
done

data="$work/data/Vantrel"
mkdir -p "$work/home" "$data" "$work/pages" "$work/run"
chmod 700 "$work/run"
printf '<html><head><title>Page A</title></head><body>A</body></html>' >"$work/pages/a.html"
printf ' 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n' >"$data/Options.INI"
printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
    >"$data/Colors.INI"
# The page comes over http, as pages from outside must.
setsid /usr/bin/python3 -m http.server 0 --bind 127.0.0.1 --directory "$work/pages" >"$work/web.log" 2>&1 &
web=$!
for _ in $(seq 1 50); do
    port=$(sed -n 's/.*port \([0-9]*\).*/\1/p' "$work/web.log" | head -n 1)
    [ -n "$port" ] && break
    sleep 0.1
done
[ -n "${port:-}" ] || fail "the page server did not start"
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
