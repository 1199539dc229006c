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
desktop-file-validate "$prefix/share/applications/org.vantrel.Vantrel.desktop"
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
