#!/bin/bash
# Makes the browser bookmark fixtures in this folder again, with the real
# browsers from Debian's packages (firefox-esr and chromium). Not run by CI.
#
#   bash tests/data/browsers/make-fixtures.sh [OUTPUT_DIR]
#
# OUTPUT_DIR defaults to this script's folder; the committed inputs
# (firefox-esr/imported-source.html, chromium/profile1-source.json) are always
# read from this script's folder. Everything else happens in a scratch folder
# under /tmp with its own HOME and XDG folders; the real home is never used.
# Needs root (to install missing packages, and for a private mount namespace in
# which chromium sees our initial preferences instead of Debian's). Nothing is
# changed system-wide apart from installing packages. Set KEEP_WORK=1 to keep
# the scratch folder. See README.md beside this script for what is made.
set -euo pipefail

HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
OUT=$(mkdir -p "${1:-$HERE}" && cd "${1:-$HERE}" && pwd)
SOURCE_HTML=$HERE/firefox-esr/imported-source.html
PROFILE1_JSON=$HERE/chromium/profile1-source.json
WORK=$(mktemp -d /tmp/vantrel-browser-fixtures.XXXXXX)
PIDS=()

log() { printf '== %s\n' "$*" >&2; }
die() { printf 'make-fixtures: %s\n' "$*" >&2; exit 1; }

cleanup() {
    local rc=$?
    for pid in "${PIDS[@]}"; do
        if kill -0 "$pid" 2>/dev/null; then
            kill -TERM "$pid" 2>/dev/null || true
        fi
    done
    if [ "$rc" -ne 0 ] || [ "${KEEP_WORK:-0}" = 1 ]; then
        echo "scratch folder kept: $WORK" >&2
    else
        rm -rf "$WORK"
    fi
}
trap cleanup EXIT

[ -f "$SOURCE_HTML" ] || die "missing $SOURCE_HTML"
[ -f "$PROFILE1_JSON" ] || die "missing $PROFILE1_JSON"

# ---------------------------------------------------------------- packages
need=()
command -v firefox-esr >/dev/null || need+=(firefox-esr)
command -v chromium >/dev/null || need+=(chromium)
command -v sqlite3 >/dev/null || need+=(sqlite3)
command -v python3 >/dev/null || need+=(python3)
command -v Xvfb >/dev/null || need+=(xvfb)
command -v xdotool >/dev/null || need+=(xdotool)
command -v unshare >/dev/null || need+=(util-linux)
if [ ${#need[@]} -gt 0 ]; then
    [ "$(id -u)" = 0 ] || die "please install: ${need[*]}"
    log "installing ${need[*]}"
    apt-get update
    DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${need[@]}"
fi
FIREFOX_VERSION=$(firefox-esr --version 2>/dev/null | tail -n 1)
CHROMIUM_VERSION=$(chromium --version 2>/dev/null | tail -n 1)
log "$FIREFOX_VERSION / $CHROMIUM_VERSION"

export LANG=C.UTF-8 LC_ALL=C.UTF-8 LANGUAGE=en
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS SESSION_MANAGER

# A scratch home: HOME and the XDG folders all inside $1.
scratch_env() {
    local h=$1
    mkdir -p "$h"/{config,cache,data,state,run}
    chmod 700 "$h/run"
    export HOME=$h XDG_CONFIG_HOME=$h/config XDG_CACHE_HOME=$h/cache \
        XDG_DATA_HOME=$h/data XDG_STATE_HOME=$h/state XDG_RUNTIME_DIR=$h/run
}

# ---------------------------------------------------------------- helpers
cat > "$WORK/marionette.py" <<'PY'
"""Tiny Marionette client. usage: marionette.py PORT quit | marionette.py PORT js SCRIPT
In 'js' the script runs async in the chrome context; it ends by calling
arguments[arguments.length - 1](result)."""
import json, socket, sys, time

class Conn:
    def __init__(self, port, timeout=90):
        end = time.time() + timeout
        while True:
            try:
                self.s = socket.create_connection(("127.0.0.1", port), timeout=180)
                break
            except OSError:
                if time.time() > end:
                    raise
                time.sleep(0.5)
        self.buf, self.n = b"", 0
        self.recv()
    def read(self):
        d = self.s.recv(65536)
        if not d:
            raise EOFError("connection closed")
        self.buf += d
    def recv(self):
        while b":" not in self.buf:
            self.read()
        n, rest = self.buf.split(b":", 1)
        self.buf = rest
        while len(self.buf) < int(n):
            self.read()
        msg, self.buf = self.buf[:int(n)], self.buf[int(n):]
        return json.loads(msg)
    def cmd(self, name, params=None):
        self.n += 1
        data = json.dumps([0, self.n, name, params or {}]).encode()
        self.s.sendall(str(len(data)).encode() + b":" + data)
        while True:
            m = self.recv()
            if m[0] == 1 and m[1] == self.n:
                if m[2]:
                    raise RuntimeError(json.dumps(m[2]))
                return m[3]

c = Conn(int(sys.argv[1]))
c.cmd("WebDriver:NewSession", {"capabilities": {}})
if sys.argv[2] == "quit":
    try:
        c.cmd("Marionette:Quit", {"flags": ["eAttemptQuit"]})
    except EOFError:
        pass
else:
    c.cmd("Marionette:SetContext", {"value": "chrome"})
    r = c.cmd("WebDriver:ExecuteAsyncScript",
              {"script": sys.argv[3], "args": [], "scriptTimeout": 120000})
    print(json.dumps(r.get("value"), ensure_ascii=False))
    c.cmd("WebDriver:DeleteSession")
PY

cat > "$WORK/cdp_pipe.py" <<'PY'
"""Runs a Chromium command line with --remote-debugging-pipe and closes it with
Browser.close (a normal exit).
usage: cdp_pipe.py wait-json FILE -- CMD...   close once FILE is JSON with a checksum
       cdp_pipe.py export FILE -- CMD...      export the bookmarks to FILE through
                                               chrome://bookmarks and the save dialog
                                               (needs DISPLAY and xdotool)"""
import json, os, select, subprocess, sys, time

mode, target = sys.argv[1], sys.argv[2]
cmd = sys.argv[sys.argv.index("--") + 1:]
r1, w1 = os.pipe()
r2, w2 = os.pipe()

def setup():
    os.dup2(r1, 3)
    os.dup2(w2, 4)

proc = subprocess.Popen(cmd + ["--remote-debugging-pipe"], pass_fds=(3, 4), preexec_fn=setup)
os.close(r1)
os.close(w2)
buf, n = b"", 0

def send(method, params=None, session=None):
    global n
    n += 1
    m = {"id": n, "method": method, "params": params or {}}
    if session:
        m["sessionId"] = session
    os.write(w1, json.dumps(m).encode() + b"\0")
    return n

def answer(i, timeout=60):
    global buf
    end = time.time() + timeout
    while time.time() < end:
        while b"\0" in buf:
            msg, buf = buf.split(b"\0", 1)
            m = json.loads(msg)
            if m.get("id") == i:
                if "error" in m:
                    raise RuntimeError(json.dumps(m["error"]))
                return m["result"]
        if proc.poll() is not None:
            raise RuntimeError("browser exited with %s" % proc.returncode)
        if select.select([r2], [], [], 0.5)[0]:
            d = os.read(r2, 1 << 20)
            if not d:
                raise RuntimeError("pipe closed")
            buf += d
    raise TimeoutError(i)

def wait_until(pred, timeout, what):
    end = time.time() + timeout
    while time.time() < end:
        if proc.poll() is not None:
            raise RuntimeError("browser exited early with %s" % proc.returncode)
        if pred():
            return
        time.sleep(0.5)
    raise TimeoutError(what)

def xdo(*args):
    return subprocess.run(["xdotool"] + list(args), capture_output=True, text=True).stdout.split()

def json_with_checksum():
    try:
        with open(target, encoding="utf-8") as f:
            return "checksum" in json.load(f)
    except (OSError, ValueError):
        return False

try:
    answer(send("Browser.getVersion"))
    if mode == "wait-json":
        wait_until(json_with_checksum, 90, target)
        time.sleep(3)
    elif mode == "export":
        tid = answer(send("Target.createTarget", {"url": "chrome://bookmarks/"}))["targetId"]
        sid = answer(send("Target.attachToTarget", {"targetId": tid, "flatten": True}))["sessionId"]
        time.sleep(3)
        answer(send("Runtime.evaluate", {"expression": "chrome.bookmarkManagerPrivate.export(); 'asked'",
                                         "userGesture": True}, sid))
        win = []
        def dialog():
            win[:] = xdo("search", "--onlyvisible", "--name", "^Save File$")
            return bool(win)
        wait_until(dialog, 60, "save dialog")
        time.sleep(1.5)
        # The file name entry is at the top of the GTK dialog; there is no
        # window manager, so click it to give it the keyboard.
        xdo("mousemove", "--window", win[0], "300", "26", "click", "1")
        time.sleep(0.5)
        xdo("key", "ctrl+a")
        xdo("type", "--delay", "20", target)
        time.sleep(0.5)
        # Return does not reach the dialog's default button here: click Save,
        # which sits in the dialog's bottom right corner.
        geo = subprocess.run(["xdotool", "getwindowgeometry", "--shell", win[0]],
                             capture_output=True, text=True).stdout
        size = dict(l.split("=", 1) for l in geo.split() if "=" in l)
        xdo("mousemove", "--window", win[0], str(int(size["WIDTH"]) - 50),
            str(int(size["HEIGHT"]) - 24), "click", "1")
        wait_until(lambda: os.path.exists(target) and b"</DL>" in open(target, "rb").read(), 60, target)
        time.sleep(2)
    else:
        sys.exit("unknown mode " + mode)
    send("Browser.close")
    rc = proc.wait(timeout=90)
except Exception:
    proc.terminate()
    proc.wait(timeout=60)
    raise
print("chromium exit code", rc, flush=True)
sys.exit(0 if rc == 0 else 1)
PY

# ================================================================ Firefox ESR
FFH=$WORK/firefox-home
FFOUT=$OUT/firefox-esr
mkdir -p "$FFOUT"
FF_LOG=$WORK/firefox.log

ff_common_prefs() {
    cat <<'JS'
// Scratch fixture profile: keep it quiet and off the network.
user_pref("network.proxy.type", 1);
user_pref("network.proxy.http", "127.0.0.1");
user_pref("network.proxy.http_port", 9);
user_pref("network.proxy.ssl", "127.0.0.1");
user_pref("network.proxy.ssl_port", 9);
user_pref("network.proxy.socks", "127.0.0.1");
user_pref("network.proxy.socks_port", 9);
user_pref("network.proxy.socks_remote_dns", true);
user_pref("network.proxy.no_proxies_on", "");
user_pref("network.proxy.allow_hijacking_localhost", true);
user_pref("network.dns.disablePrefetch", true);
user_pref("network.prefetch-next", false);
user_pref("network.connectivity-service.enabled", false);
user_pref("network.captive-portal-service.enabled", false);
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("browser.aboutwelcome.enabled", false);
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("datareporting.healthreport.uploadEnabled", false);
user_pref("toolkit.telemetry.enabled", false);
user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);
user_pref("app.normandy.enabled", false);
user_pref("app.update.enabled", false);
user_pref("services.settings.server", "http://127.0.0.1:9/v1");
user_pref("browser.safebrowsing.malware.enabled", false);
user_pref("browser.safebrowsing.phishing.enabled", false);
user_pref("browser.safebrowsing.downloads.enabled", false);
user_pref("extensions.update.enabled", false);
user_pref("extensions.getAddons.cache.enabled", false);
user_pref("browser.newtabpage.activity-stream.feeds.topsites", false);
user_pref("browser.newtabpage.activity-stream.feeds.system.topstories", false);
user_pref("browser.search.update", false);
user_pref("media.gmp-manager.updateEnabled", false);
user_pref("marionette.port", 2828);
JS
}

FFPID=
ff_start() {  # ff_start [firefox args...]
    MOZ_HEADLESS=1 MOZ_CRASHREPORTER_DISABLE=1 \
        firefox-esr --headless --marionette -remote-allow-system-access "$@" about:blank >>"$FF_LOG" 2>&1 &
    FFPID=$!
    PIDS+=("$FFPID")
}
ff_js() { python3 "$WORK/marionette.py" 2828 js "$1"; }
ff_quit() {
    python3 "$WORK/marionette.py" 2828 quit
    local i
    for i in $(seq 90); do kill -0 "$FFPID" 2>/dev/null || break; sleep 1; done
    if kill -0 "$FFPID" 2>/dev/null; then
        kill -TERM "$FFPID"
        die "firefox-esr did not quit by itself"
    fi
    wait "$FFPID" || die "firefox-esr exited with $?"
}

scratch_env "$FFH"
cd "$WORK"

log "firefox-esr: first start in an empty home (makes profiles.ini, installs.ini and its own profile)"
ff_start
sleep 3
ff_quit
PROFILES_INI=$(find "$FFH" -path '*mozilla/firefox/profiles.ini' | head -n 1)
[ -n "$PROFILES_INI" ] || die "firefox-esr wrote no profiles.ini"
FFROOT=$(dirname "$PROFILES_INI")
INSTALL_DEFAULT=$(sed -n 's/^Default=//p' "$FFROOT/installs.ini" | head -n 1)
[ -n "$INSTALL_DEFAULT" ] || die "installs.ini names no profile"
case $INSTALL_DEFAULT in /*) PROF=$INSTALL_DEFAULT ;; *) PROF=$FFROOT/$INSTALL_DEFAULT ;; esac
log "profile the installation uses: $PROF (profiles.ini in ${PROFILES_INI#$FFH/})"
# Start the bookmarks afresh, as on a profile whose first start imports them.
rm -f "$PROF"/places.sqlite* "$PROF"/favicons.sqlite*

log "firefox-esr: import $SOURCE_HTML"
{ ff_common_prefs
  echo 'user_pref("browser.places.importBookmarksHTML", true);'
  printf 'user_pref("browser.bookmarks.file", "%s");\n' "$SOURCE_HTML"
} > "$PROF/user.js"
ff_start --profile "$PROF"
IMPORTED=$(ff_js '
const done = arguments[arguments.length - 1];
(async () => {
  const { setTimeout } = ChromeUtils.importESModule("resource://gre/modules/Timer.sys.mjs");
  const { PlacesUtils } = ChromeUtils.importESModule("resource://gre/modules/PlacesUtils.sys.mjs");
  for (let i = 0; i < 240 && Services.prefs.getBoolPref("browser.places.importBookmarksHTML", true); i++)
    await new Promise(r => setTimeout(r, 500));
  const db = await PlacesUtils.promiseDBConnection();
  const rows = await db.execute("SELECT count(*) FROM moz_bookmarks");
  return rows[0].getResultByIndex(0);
})().then(done, e => done("ERROR " + e));')
log "rows in moz_bookmarks after the import: $IMPORTED"
ff_quit
[ "$IMPORTED" -gt 20 ] 2>/dev/null || die "import failed: $IMPORTED"

log "firefox-esr: start again with browser.bookmarks.autoExportHTML, quit cleanly"
sed -i '/"browser.bookmarks.file"/d; /"browser.places.importBookmarksHTML"/d' "$PROF/prefs.js"
{ ff_common_prefs
  echo 'user_pref("browser.bookmarks.autoExportHTML", true);'
} > "$PROF/user.js"
rm -f "$PROF/bookmarks.html"
ff_start --profile "$PROF"
ff_js 'arguments[arguments.length - 1](1);' >/dev/null
sleep 5
ff_quit
grep -q 'automatically generated' "$PROF/bookmarks.html" || die "firefox-esr exported no bookmarks.html"

cp "$PROF/bookmarks.html" "$FFOUT/bookmarks.html"
cp "$FFROOT/profiles.ini" "$FFOUT/profiles.ini"
cp "$FFROOT/installs.ini" "$FFOUT/installs.ini"
cp "$PROF/places.sqlite" "$WORK/places.sqlite"
[ ! -s "$PROF/places.sqlite-wal" ] || cp "$PROF/places.sqlite-wal" "$WORK/places.sqlite-wal"
sqlite3 "$WORK/places.sqlite" 'PRAGMA wal_checkpoint(TRUNCATE); VACUUM;' >/dev/null
rm -f "$WORK/places.sqlite-wal" "$WORK/places.sqlite-shm"
cp "$WORK/places.sqlite" "$FFOUT/places.sqlite"
[ "$SOURCE_HTML" -ef "$FFOUT/imported-source.html" ] || cp "$SOURCE_HTML" "$FFOUT/imported-source.html"

log "firefox-esr: a copy of the profile, changed while running; places.sqlite and its -wal copied live"
RPROF=$WORK/running-profile
cp -a "$PROF" "$RPROF"
rm -f "$RPROF/bookmarks.html" "$RPROF/places.sqlite-wal" "$RPROF/places.sqlite-shm"
cp "$WORK/places.sqlite" "$RPROF/places.sqlite"   # the small VACUUMed one
# With 4096-byte pages instead of Firefox's 32768 the pair stays small (every
# changed page is a whole frame in the -wal). Firefox keeps the page size of a
# database it finds.
sqlite3 "$RPROF/places.sqlite" 'PRAGMA journal_mode=DELETE; PRAGMA page_size=4096; VACUUM; PRAGMA journal_mode=WAL;' >/dev/null
ff_common_prefs > "$RPROF/user.js"
sed -i '/"browser.bookmarks.autoExportHTML"/d' "$RPROF/prefs.js"
ff_start --profile "$RPROF"
CHANGED=$(ff_js '
const done = arguments[arguments.length - 1];
(async () => {
  const { setTimeout } = ChromeUtils.importESModule("resource://gre/modules/Timer.sys.mjs");
  const { PlacesUtils } = ChromeUtils.importESModule("resource://gre/modules/PlacesUtils.sys.mjs");
  await new Promise(r => setTimeout(r, 5000));
  let busy = 1;
  for (let i = 0; i < 20 && busy; i++) {
    busy = await PlacesUtils.withConnectionWrapper("fixture: checkpoint", async db => {
      const rows = await db.execute("PRAGMA wal_checkpoint(TRUNCATE)");
      return rows[0].getResultByIndex(0);
    });
    if (busy) await new Promise(r => setTimeout(r, 500));
  }
  if (busy) throw new Error("checkpoint stayed busy");
  const bm = PlacesUtils.bookmarks;
  const folder = await bm.insert({ parentGuid: bm.unfiledGuid, type: bm.TYPE_FOLDER,
                                   title: "Added While Running" });
  await bm.insert({ parentGuid: folder.guid, url: "https://example.com/running-1",
                    title: "Running One" });
  await bm.insert({ parentGuid: bm.toolbarGuid, index: 0, url: "https://example.com/running-2",
                    title: "Running Two" });
  const other = await bm.fetch({ url: "https://example.com/other-1" });
  await bm.update({ guid: other.guid, title: "Other One (renamed while running)" });
  return "changed";
})().then(done, e => done("ERROR " + e));')
[ "$CHANGED" = '"changed"' ] || die "change while running failed: $CHANGED"
mkdir -p "$FFOUT/running"
cp "$RPROF/places.sqlite" "$FFOUT/running/places.sqlite"
cp "$RPROF/places.sqlite-wal" "$FFOUT/running/places.sqlite-wal"
ff_quit
# Firefox grows the file in 5 MiB steps; past the pages its header counts
# there are only zeros. Drop them from the copy.
python3 - "$FFOUT/running/places.sqlite" <<'PY'
import struct, sys
path = sys.argv[1]
data = open(path, "rb").read()
page = struct.unpack(">H", data[16:18])[0] or 65536
pages = struct.unpack(">I", data[28:32])[0]
end = page * pages
if pages and data[24:28] == data[92:96] and end < len(data) and not data[end:].strip(b"\0"):
    open(path, "r+b").truncate(end)
PY
# Check the pair on copies (sqlite3 folds the -wal in and deletes it on close).
mkdir -p "$WORK/check-main" "$WORK/check-wal"
cp "$FFOUT/running/places.sqlite" "$WORK/check-main/"
cp "$FFOUT/running/places.sqlite" "$FFOUT/running/places.sqlite-wal" "$WORK/check-wal/"
Q="SELECT count(*) FROM moz_bookmarks WHERE title IN ('Added While Running','Running One','Running Two','Other One (renamed while running)')"
IN_MAIN=$(sqlite3 "file:$WORK/check-main/places.sqlite?immutable=1" "$Q")
IN_WAL=$(sqlite3 "$WORK/check-wal/places.sqlite" "$Q")
log "changed-while-running rows: main file alone $IN_MAIN, with the -wal $IN_WAL"
[ "$IN_MAIN" = 0 ] && [ "$IN_WAL" = 4 ] || die "the -wal capture does not hold what it should"

# ================================================================ Chromium
CHH=$WORK/chromium-home
CHOUT=$OUT/chromium
mkdir -p "$CHOUT"
scratch_env "$CHH"
UD=$XDG_CONFIG_HOME/chromium   # chromium's usual place for its user data
CH_LOG=$WORK/chromium.log

# Debian's chromium reads its initial preferences from a fixed place in /etc
# (they import /usr/share/chromium/initial_bookmarks.html at first run). In a
# private mount namespace we lay a copy over it whose
# distribution.import_bookmarks_from_file names our source instead.
ETC_PREFS=
for f in /etc/chromium/initial_preferences /etc/chromium/master_preferences; do
    [ -f "$f" ] && { ETC_PREFS=$f; break; }
done
[ -n "$ETC_PREFS" ] || die "no /etc/chromium initial preferences file"
python3 - "$ETC_PREFS" "$SOURCE_HTML" "$WORK/initial_preferences" <<'PY'
import json, sys
p = json.load(open(sys.argv[1]))
p.setdefault("distribution", {})["import_bookmarks_from_file"] = sys.argv[2]
p["distribution"]["import_bookmarks"] = False
json.dump(p, open(sys.argv[3], "w"), indent=2)
PY
UNSHARE=(unshare -m --propagation private)
[ "$(id -u)" = 0 ] || UNSHARE=(unshare -r -m --propagation private)
CH_FLAGS=(--no-sandbox --proxy-server=127.0.0.1:9 "--host-resolver-rules=MAP * ~NOTFOUND"
          --disable-background-networking --disable-component-update --disable-sync
          --disable-breakpad --password-store=basic "--user-data-dir=$UD")
ch_run() {  # ch_run MODE FILE chromium-args...
    local mode=$1 file=$2
    shift 2
    python3 "$WORK/cdp_pipe.py" "$mode" "$file" -- "${UNSHARE[@]}" sh -c \
        'mount --bind "$0" "$1" && shift && exec chromium "$@"' \
        "$WORK/initial_preferences" "$ETC_PREFS" "${CH_FLAGS[@]}" "$@" >>"$CH_LOG" 2>&1 \
        || die "chromium run failed, see $CH_LOG"
}

log "chromium: first run, importing $SOURCE_HTML into the Default profile"
ch_run wait-json "$UD/Default/Bookmarks" --headless=new --force-first-run about:blank

log "chromium: a second profile, 'Profile 1', from a hand-written Bookmarks without checksum or guids"
mkdir -p "$UD/Profile 1"
cp "$PROFILE1_JSON" "$UD/Profile 1/Bookmarks"
echo '{"profile":{"name":"Work Profile"}}' > "$UD/Profile 1/Preferences"
ch_run wait-json "$UD/Profile 1/Bookmarks" --headless=new --no-first-run \
    "--profile-directory=Profile 1" about:blank

cp "$UD/Default/Bookmarks" "$CHOUT/Bookmarks"
cp "$UD/Local State" "$CHOUT/Local State"
mkdir -p "$CHOUT/Profile 1"
cp "$UD/Profile 1/Bookmarks" "$CHOUT/Profile 1/Bookmarks"
[ "$PROFILE1_JSON" -ef "$CHOUT/profile1-source.json" ] || cp "$PROFILE1_JSON" "$CHOUT/profile1-source.json"

log "chromium: export each profile's bookmarks to HTML (chrome://bookmarks, under Xvfb)"
cp -a "$UD" "$WORK/export-ud"
CH_FLAGS[${#CH_FLAGS[@]}-1]="--user-data-dir=$WORK/export-ud"
DISP=
for d in $(seq 90 140); do
    [ -e "/tmp/.X11-unix/X$d" ] || [ -e "/tmp/.X$d-lock" ] || { DISP=$d; break; }
done
[ -n "$DISP" ] || die "no free X display number"
Xvfb ":$DISP" -screen 0 1280x900x24 -nolisten tcp >"$WORK/xvfb.log" 2>&1 &
XVFB_PID=$!
PIDS+=("$XVFB_PID")
sleep 2
export DISPLAY=:$DISP
ch_run export "$WORK/export-default.html" --no-first-run --profile-directory=Default about:blank
ch_run export "$WORK/export-profile1.html" --no-first-run "--profile-directory=Profile 1" about:blank
kill -TERM "$XVFB_PID"
wait "$XVFB_PID" 2>/dev/null || true
unset DISPLAY
cp "$WORK/export-default.html" "$CHOUT/exported-bookmarks.html"
cp "$WORK/export-profile1.html" "$CHOUT/Profile 1/exported-bookmarks.html"

cat > "$OUT/VERSIONS" <<EOF
$FIREFOX_VERSION (Debian package firefox-esr $(dpkg-query -W -f='${Version}' firefox-esr 2>/dev/null || echo '?'))
$CHROMIUM_VERSION (Debian package chromium $(dpkg-query -W -f='${Version}' chromium 2>/dev/null || echo '?'))
EOF
log "done; files in $OUT:"
(cd "$OUT" && find firefox-esr chromium VERSIONS -type f -printf '%10s  %p\n' | sort -k2)
