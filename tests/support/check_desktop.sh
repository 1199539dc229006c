# Sourced by the checks that run the real program as a desktop would: a scratch folder `work` only
# the user can open, and at the end every process they started ended and the folder removed. Each
# process is started with setsid, in a process group of its own, and ended by it: the program
# (`app`) first, with a few seconds to close, then those in `check_groups`. Folders a check makes
# outside `work` (for a process that runs as another user) go in `check_dirs`.

work=$(mktemp -d)
chmod 700 "$work"
check_groups=()
check_dirs=()
app=""

finish() {
    for pid in ${app:+"$app"} "${check_groups[@]}"; do
        kill -TERM -- "-$pid" 2>/dev/null || true
    done
    for _ in $(seq 1 50); do
        { [ -n "$app" ] && pgrep -g "$app" >/dev/null; } || break
        sleep 0.1
    done
    for pid in ${app:+"$app"} "${check_groups[@]}"; do
        kill -KILL -- "-$pid" 2>/dev/null || true
    done
    rm -rf "$work" "${check_dirs[@]}"
}
trap finish EXIT

# A display of its own (Xvfb says which number it took), 1280x900 unless SCREEN says otherwise;
# DISPLAY names it from then on.
start_xvfb() { # [SCREEN]
    exec 3<>"$work/display"
    setsid Xvfb -displayfd 3 -screen 0 "${1:-1280x900x24}" -nolisten tcp >"$work/xvfb.log" 2>&1 &
    check_groups+=($!)
    for _ in $(seq 1 100); do
        [ -s "$work/display" ] && break
        sleep 0.1
    done
    [ -s "$work/display" ] || { echo "Xvfb did not start"; cat "$work/xvfb.log"; exit 1; }
    export DISPLAY=":$(head -n 1 "$work/display")"
}

# A headless weston of its own, with no X11 offered, on the Wayland socket "vantrel-test" of a
# runtime folder in the scratch folder (XDG_RUNTIME_DIR names it from then on).
start_headless_weston() {
    export XDG_RUNTIME_DIR="$work/runtime"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    setsid weston --backend=headless-backend.so --socket=vantrel-test --idle-time=0 >"$work/weston.log" 2>&1 &
    check_groups+=($!)
    for _ in $(seq 1 100); do
        [ -S "$XDG_RUNTIME_DIR/vantrel-test" ] && break
        sleep 0.1
    done
    [ -S "$XDG_RUNTIME_DIR/vantrel-test" ] || { echo "the compositor did not start"; cat "$work/weston.log"; exit 1; }
}

# Openbox on DISPLAY, once it says it manages the screen.
start_openbox() {
    setsid openbox >/dev/null 2>&1 &
    check_groups+=($!)
    for _ in $(seq 1 50); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" && break
        sleep 0.1
    done
}

# The pages of FOLDER served over http on 127.0.0.1; `port` says where.
start_web() { # FOLDER
    setsid /usr/bin/python3 -m http.server 0 --bind 127.0.0.1 --directory "$1" >"$work/web.log" 2>&1 &
    check_groups+=($!)
    port=""
    for _ in $(seq 1 50); do
        port=$(sed -n 's/.*port \([0-9]*\).*/\1/p' "$work/web.log" | head -n 1)
        [ -n "$port" ] && break
        sleep 0.1
    done
    [ -n "$port" ] || { echo "the page server did not start"; exit 1; }
}

# Options.INI and Colors.INI in the program folder FOLDER, so that no first-start question waits
# for an answer: about:blank as the pages, the main window kept on top unless ON_TOP is 0.
first_start_files() { # FOLDER [ON_TOP]
    printf ' 7100  250  8100  4700  1  0 \r\n 0  0  0  0  %s \r\nabout:blank\r\nabout:blank\r\n' "${2:-1}" \
        >"$1/Options.INI"
    printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
        >"$1/Colors.INI"
}
