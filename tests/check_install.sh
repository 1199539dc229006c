#!/usr/bin/env bash
# Installs the build into a temporary prefix (or unpacks its Debian package), checks the files a
# desktop program must bring, validates its launcher and software-centre description, and starts
# the installed program, which must load its browser engine module for its start-up page.
# Usage: check_install.sh BUILD_DIR prefix|package
set -euo pipefail
build=$1
mode=$2
work=$(mktemp -d)
finish() {
    if [ -n "${app:-}" ]; then
        # The program leads a process group of its own: it and the engine's helpers go together.
        kill -TERM -- "-$app" 2>/dev/null || true
        for _ in $(seq 1 50); do
            pgrep -g "$app" >/dev/null || break
            sleep 0.1
        done
        kill -KILL -- "-$app" 2>/dev/null || true
        wait "$app" 2>/dev/null || true
    fi
    rm -rf "$work" 2>/dev/null || true
}
trap finish EXIT

if [ "$mode" = package ]; then
    (cd "$build" && cpack -G DEB -B "$work/package" >/dev/null)
    deb=$(ls "$work"/package/*.deb)
    info=$(dpkg-deb --info "$deb")
    grep -q "Package: vantrel" <<<"$info" || { echo "not the vantrel package"; exit 1; }
    grep -q "Depends:.*libqt6webengine" <<<"$info" || { echo "the package does not depend on the engine"; exit 1; }
    dpkg-deb -x "$deb" "$work/root"
    prefix="$work/root/usr"
else
    cmake --install "$build" --prefix "$work/root" >/dev/null
    prefix="$work/root"
fi

for f in bin/vantrel share/applications/org.vantrel.Vantrel.desktop \
         share/metainfo/org.vantrel.Vantrel.metainfo.xml \
         share/icons/hicolor/scalable/apps/org.vantrel.Vantrel.svg; do
    [ -f "$prefix/$f" ] || { echo "missing: $f"; exit 1; }
done
for size in 16 32 48 64 128 256; do
    [ -f "$prefix/share/icons/hicolor/${size}x${size}/apps/org.vantrel.Vantrel.png" ] || { echo "missing icon $size"; exit 1; }
done
[ -n "$(find "$prefix" -path '*/vantrel/libvantrel-webengine.so')" ] ||
    { echo "missing: the browser engine module"; exit 1; }
# The program itself beside its engine module; the command stays small (a start that only hands
# over must not load the widgets) and finds the program where this installation put it.
[ -n "$(find "$prefix" -path '*/vantrel/vantrel-program' -perm -u+x)" ] || { echo "missing: the program"; exit 1; }
if ldd "$prefix/bin/vantrel" | grep -q -e libQt6Widgets -e libQt6Gui; then
    echo "the vantrel command loads the widgets:"; ldd "$prefix/bin/vantrel"; exit 1
fi
version=$("$prefix/bin/vantrel" --version)
[ "$version" = "Vantrel $(sed -n 's/^project(Vantrel VERSION \([0-9.]*\).*/\1/p' "$(dirname "$0")/../CMakeLists.txt")" ] ||
    { echo "the installed command answered: $version"; exit 1; }
desktop-file-validate "$prefix/share/applications/org.vantrel.Vantrel.desktop"
# Started on demand by the bus: the service file names the installed program.
service="$prefix/share/dbus-1/services/org.vantrel.Vantrel.service"
[ -f "$service" ] || { echo "missing: the D-Bus service file"; exit 1; }
grep -qx 'Name=org.vantrel.Vantrel' "$service" || { echo "the service file names another service"; exit 1; }
execLine=$(sed -n 's/^Exec=//p' "$service")
if [ "$mode" = package ]; then
    [ "$execLine" = /usr/bin/vantrel ] || { echo "the service file starts $execLine"; exit 1; }
else
    [ "$execLine" = "$prefix/bin/vantrel" ] || { echo "the service file starts $execLine"; exit 1; }
fi
appstreamcli validate --no-net "$prefix/share/metainfo/org.vantrel.Vantrel.metainfo.xml" >/dev/null
# Internet Shortcut files open in Vantrel once the desktop's database knows the launcher (a Debian
# installation does this through the desktop-file-utils trigger), asked in a home of its own.
grep -q '^MimeType=application/x-mswinurl;' "$prefix/share/applications/org.vantrel.Vantrel.desktop" ||
    { echo "the launcher does not take Internet Shortcut files"; exit 1; }
update-desktop-database "$prefix/share/applications"
mkdir -p "$work/mimehome"
opener=$(env -u XDG_CURRENT_DESKTOP -u DESKTOP_SESSION HOME="$work/mimehome" XDG_CONFIG_HOME="$work/mimehome/.config" \
    XDG_DATA_HOME="$work/mimehome/.local/share" XDG_DATA_DIRS="$prefix/share" \
    xdg-mime query default application/x-mswinurl)
[ "$opener" = org.vantrel.Vantrel.desktop ] || { echo "Internet Shortcut files open with \"$opener\""; exit 1; }

# Start it as a user would, with a start-up page, in a home of its own.
mkdir -p "$work/home" "$work/data/Vantrel" "$work/run"
chmod 700 "$work/run"
printf '<html><head><title>Start</title></head><body>start</body></html>' > "$work/start.html"
printf ' 100  100  8100  4700  1  0 \r\n 0  1  0  0  0 \r\nfile://%s\r\nabout:blank\r\n' "$work/start.html" \
    > "$work/data/Vantrel/Options.INI"
printf ' 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n' \
    > "$work/data/Vantrel/Colors.INI"
cd "$work"

# Started by the bus on demand, as the desktop does for a D-Bus-activatable launcher: a private
# session bus that knows the installed service file starts the program at the first call.
if [ "$mode" = prefix ]; then
    mkdir -p "$work/busrun" && chmod 700 "$work/busrun"
    cat >"$work/bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <include>/usr/share/dbus-1/session.conf</include>
  <listen>unix:dir=$work/busrun</listen>
  <servicedir>$prefix/share/dbus-1/services</servicedir>
</busconfig>
EOF
    bus=$(env HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/busrun" QT_QPA_PLATFORM=offscreen \
        dbus-daemon --config-file="$work/bus.conf" --fork --print-address=1 --print-pid=1)
    busAddress=$(sed -n 1p <<<"$bus")
    busPid=$(sed -n 2p <<<"$bus")
    call() {
        DBUS_SESSION_BUS_ADDRESS="$busAddress" timeout 60 gdbus call --session --dest org.vantrel.Vantrel \
            --object-path /org/vantrel/Vantrel --method "$@"
    }
    call org.freedesktop.Application.Activate "{}" >/dev/null ||
        { echo "the bus did not start Vantrel"; kill "$busPid"; exit 1; }
    call org.vantrel.Vantrel.Status | grep -q '"windows"' ||
        { echo "Vantrel started by the bus does not answer"; kill "$busPid"; exit 1; }
    call org.vantrel.Vantrel.Quit false >/dev/null
    for _ in $(seq 1 100); do
        DBUS_SESSION_BUS_ADDRESS="$busAddress" gdbus call --session --dest org.freedesktop.DBus \
            --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.NameHasOwner org.vantrel.Vantrel |
            grep -q false && break
        sleep 0.1
    done
    kill "$busPid"
    echo "started by the bus and closed again"
fi

HOME="$work/home" XDG_DATA_HOME="$work/data" XDG_RUNTIME_DIR="$work/run" QT_QPA_PLATFORM=offscreen \
    setsid "$prefix/bin/vantrel" >"$work/out.log" 2>&1 &
app=$! # the program itself (setsid runs it in place, in a new session and process group)
for _ in $(seq 1 600); do
    [ -d "$work/data/Vantrel/Browser" ] && break
    kill -0 "$app" 2>/dev/null || { echo "the program ended"; tail -20 "$work/out.log"; exit 1; }
    sleep 0.1
done
[ -d "$work/data/Vantrel/Browser" ] || { echo "the browser engine was not loaded"; tail -20 "$work/out.log"; exit 1; }
kill -0 "$app" || { echo "the program ended"; exit 1; }
echo "installed ($mode) and started"
