# Sourced after check_desktop.sh by the checks of windows fixed to monitors: the real program
# (`program`) started under a compositor, on its Wayland socket (`wayland_socket`, a name in
# XDG_RUNTIME_DIR or a path) or on its Xwayland (`xwayland`), with its files in the scratch
# folder; asked from outside through --status, and ended.

start_vantrel() { # [x11]
    mkdir -p "$work/home" "$work/data/Vantrel"
    first_start_files "$work/data/Vantrel" 0
    if [ "${1:-}" = x11 ]; then
        env -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM HOME="$work/home" XDG_DATA_HOME="$work/data" DISPLAY="$xwayland" \
            DBUS_SESSION_BUS_ADDRESS=disabled: setsid "$program" >"$work/out.log" 2>&1 &
    else
        env -u DISPLAY -u QT_QPA_PLATFORM HOME="$work/home" XDG_DATA_HOME="$work/data" \
            WAYLAND_DISPLAY="$wayland_socket" DBUS_SESSION_BUS_ADDRESS=disabled: setsid "$program" >"$work/out.log" 2>&1 &
    fi
    app=$!
    for _ in $(seq 1 200); do
        vantrel --status >/dev/null 2>&1 && return
        kill -0 "$app" 2>/dev/null || break
        sleep 0.1
    done
    echo "Vantrel did not answer"; cat "$work/out.log"; exit 1
}
stop_vantrel() {
    vantrel --quit --discard >/dev/null 2>&1 || true
    for _ in $(seq 1 100); do kill -0 "$app" 2>/dev/null || return 0; sleep 0.1; done
    kill -KILL -- "-$app" 2>/dev/null || true
}
vantrel() {
    HOME="$work/home" XDG_DATA_HOME="$work/data" "$program" "$@"
}

# Waits until window SLOT is full screen on MONITOR (or FULL=false: not full screen): prints the
# milliseconds since SINCE_MS it took.
wait_on() { # SLOT MONITOR SINCE_MS [FULL]
    local deadline=$(( $(date +%s%3N) + 15000 ))
    while [ "$(date +%s%3N)" -lt "$deadline" ]; do
        if vantrel --status | python3 -c '
import json, sys
slot, monitor, full = int(sys.argv[1]), sys.argv[2], sys.argv[3] == "true"
w = [w for w in json.load(sys.stdin)["windows"] if w["slot"] == slot]
sys.exit(0 if w and w[0]["monitor"] == monitor and w[0]["fullScreen"] == full else 1)' "$1" "$2" "${4:-true}"; then
            echo $(( $(date +%s%3N) - $3 ))
            return 0
        fi
        sleep 0.05
    done
    echo "window $1 is not where it belongs on $2:"; vantrel --status; cat "$work/data/Vantrel/Vantrel.log" 2>/dev/null; exit 1
}
