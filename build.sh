#!/usr/bin/env bash
# Vantrel's two set-up commands on Debian 12:
#   ./build.sh run    install what is missing, build, start Vantrel
#   ./build.sh test   install what is missing, build, run every test headless
set -euo pipefail
cd "$(dirname "$0")"

RUN_PACKAGES=(g++ cmake ninja-build pkgconf qt6-base-dev qt6-webengine-dev qt6-wayland libgl-dev libqt6sql6-sqlite
    libxcb1-dev libmosquitto-dev qtkeychain-qt6-dev qt6-httpserver-dev qt6-websockets-dev libqrencode-dev)
TEST_PACKAGES=(clang libclang-rt-14-dev desktop-file-utils appstream dpkg-dev weston xwayland dbus-daemon libglib2.0-bin xdg-utils xvfb xdotool
    at-spi2-core python3-pyatspi openbox x11-utils python3-dbusmock xserver-xorg-core xserver-xorg-video-dummy
    x11-xserver-utils mosquitto mosquitto-clients openssl chromium chromium-driver python3-selenium)

BUILD_DIR=${BUILD_DIR:-build}
FUZZ_DIR=${FUZZ_DIR:-build-fuzz}
SANITIZE_DIR=${SANITIZE_DIR:-build-sanitize}
JOBS=$(nproc)

install_missing() {
    local missing=()
    for pkg in "$@"; do
        dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    "${sudo[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
}

configure_and_build() {
    cmake -S . -B "$BUILD_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
    cmake --build "$BUILD_DIR" -j "$JOBS"
}

case "${1:-}" in
run)
    install_missing "${RUN_PACKAGES[@]}"
    configure_and_build -DVANTREL_BUILD_TESTS=OFF -DVANTREL_BUILD_BENCH=OFF
    exec "$BUILD_DIR/src/vantrel"
    ;;
test)
    install_missing "${RUN_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
    # The readers' fuzz targets need clang's libFuzzer: a build of their own.
    CC=clang CXX=clang++ cmake -S . -B "$FUZZ_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTREL_FUZZ=ON
    cmake --build "$FUZZ_DIR" -j "$JOBS"
    # The test programs once more with AddressSanitizer and UndefinedBehaviorSanitizer (gcc): any
    # report fails the run.
    cmake -S . -B "$SANITIZE_DIR" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTREL_SANITIZE=ON \
        -DVANTREL_BUILD_TESTS=ON -DVANTREL_BUILD_BENCH=OFF
    cmake --build "$SANITIZE_DIR" -j "$JOBS"
    (cd "$SANITIZE_DIR" && ctest --output-on-failure -j "$JOBS")
    configure_and_build -DVANTREL_BUILD_TESTS=ON -DVANTREL_BUILD_BENCH=ON \
        -DVANTREL_FUZZ_BIN_DIR="$PWD/$FUZZ_DIR"
    cd "$BUILD_DIR"
    exec ctest --output-on-failure
    ;;
*)
    echo "usage: $0 run|test" >&2
    exit 2
    ;;
esac
