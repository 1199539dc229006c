#!/usr/bin/python3
"""What a screen reader hears of the running program.

The real program runs under Xvfb with a session bus and an accessibility bus of its own, switched
on as a screen reader switches it on (org.a11y.Status.ScreenReaderEnabled). Its accessible tree is
read through AT-SPI, the main window's first, then More Options and the run dialog, each opened by
a screen reader's press of its button. The check fails, naming each control, on a control without
a name, on a button that says it is a check box, on a colour swatch or any other control that says
it is text without being editable, on a tree without a name or with a column header that is only
a number, and on a control that a keyboard cannot reach.

Usage: check_accessibility.py PROGRAM
"""
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

# Roles a person acts on: each must have a name and a keyboard stop.
ACTED_ON = {"push button", "toggle button", "check box", "radio button", "text", "entry",
            "combo box", "spin button", "slider", "tree", "tree table", "table", "page tab list",
            "menu item", "link", "password text"}
# Roles that mean a control was described as something it is not, or as nothing.
NOT_A_CONTROL = {"filler", "panel", "unknown", "invalid", "redundant object", "layered pane"}

# The program's own buttons and the role each must have: the ones that once said "check box".
OWN_BUTTONS = {
    "Save": "push button", "Organize": "push button", "Refresh": "push button",
    "Run Favorite List": "push button", "Create New Favorite List": "push button",
    "Clear": "push button", "Apply": "push button", "Help": "push button", "About": "push button",
    "More...": "push button", "New": "push button", "Calendar": "push button",
    "Window": "push button", "Small": "push button",
    "Click on Favorite Link to go to Web Site": "push button",
}


class Processes:
    """The display, the buses and the program, each in a process group of its own."""

    def __init__(self):
        self.started = []

    def start(self, args, env, **kwargs):
        process = subprocess.Popen(args, env=env, start_new_session=True, **kwargs)
        self.started.append(process)
        return process

    def end(self):
        for process in reversed(self.started):
            try:
                os.killpg(process.pid, signal.SIGTERM)
            except ProcessLookupError:
                pass
        deadline = time.monotonic() + 5
        for process in reversed(self.started):
            try:
                process.wait(max(0.1, deadline - time.monotonic()))
            except subprocess.TimeoutExpired:
                try:
                    os.killpg(process.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
                process.wait()


def wait_until(what, seconds, pause=0.1):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        found = what()
        if found:
            return found
        time.sleep(pause)
    return None


def write_data(data):
    """The program folder of a person who has used Vantrel before: no first-start hints."""
    os.makedirs(data)
    with open(os.path.join(data, "Options.INI"), "wb") as f:
        f.write(b" 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n")
    with open(os.path.join(data, "Colors.INI"), "wb") as f:
        f.write(b" 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n")
    with open(os.path.join(data, "DefaultList.NLS"), "wb") as f:
        f.write(b"Walls[#@!] [#@!] \r\nWalls[#@!]A[#@!]https://a.example/\r\n")


def start_everything(program, work, processes):
    env = {k: v for k, v in os.environ.items()
           if k not in ("QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                        "AT_SPI_BUS_ADDRESS", "QT_ACCESSIBILITY", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON")}
    read_end, write_end = os.pipe()
    processes.start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
                    env, pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write_end)
    with os.fdopen(read_end) as display:
        number = display.readline().strip()
    if not number:
        raise SystemExit("Xvfb did not start")
    env["DISPLAY"] = ":" + number

    runtime = os.path.join(work, "run")
    os.makedirs(runtime, mode=0o700)
    env.update(HOME=os.path.join(work, "home"), XDG_DATA_HOME=os.path.join(work, "data"),
               XDG_RUNTIME_DIR=runtime, GSETTINGS_BACKEND="memory", NO_AT_BRIDGE="0")
    os.makedirs(env["HOME"])
    write_data(os.path.join(env["XDG_DATA_HOME"], "Vantrel"))

    bus = processes.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"], env,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
    if not env["DBUS_SESSION_BUS_ADDRESS"]:
        raise SystemExit("the session bus did not start")
    processes.start(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], env,
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def enabled():
        # A screen reader coming up: it tells the desktop, and programs switch their bridge on.
        return subprocess.run(["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                               "/org/a11y/bus", "--method", "org.freedesktop.DBus.Properties.Set",
                               "org.a11y.Status", "ScreenReaderEnabled", "<true>"],
                              env=env, capture_output=True).returncode == 0
    if not wait_until(enabled, 10, 0.2):
        raise SystemExit("the accessibility bus did not start")

    log = open(os.path.join(work, "program.log"), "w")
    app = processes.start([program], env, stdout=log, stderr=subprocess.STDOUT, cwd=work)
    os.environ.update({k: env[k] for k in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR")})
    return app


def described(node):
    return f"[{node.getRoleName()}] {node.name!r}"


def walk(node, path=()):
    """Every accessible object under `node`, with the roles of those above it."""
    yield node, path
    for i in range(node.childCount):
        child = node.getChildAtIndex(i)
        if child is not None:
            yield from walk(child, path + (node.getRoleName(),))


def audit(pyatspi, window, where):
    problems = []
    controls = 0
    for node, path in walk(window):
        role = node.getRoleName()
        name = (node.name or "").strip()
        states = node.getState()
        focusable = states.contains(pyatspi.STATE_FOCUSABLE)
        in_combo = "combo box" in path  # the combo box's own popup list is Qt's, and named by it
        if in_combo:
            continue
        controls += role in ACTED_ON
        if role in ACTED_ON and not name:
            problems.append(f"{where}: {described(node)} has no name")
        if role in ACTED_ON and not focusable and role != "page tab list":
            problems.append(f"{where}: {described(node)} cannot be reached with the keyboard")
        if focusable and role in NOT_A_CONTROL:
            problems.append(f"{where}: {described(node)} takes the keyboard but says it is no control")
        if focusable and not name and role not in ACTED_ON:
            problems.append(f"{where}: {described(node)} takes the keyboard without a name")
        if role in ("text", "entry") and not states.contains(pyatspi.STATE_EDITABLE):
            problems.append(f"{where}: {described(node)} says it is text but cannot be edited")
        if role == "table column header" and name.isdigit():
            problems.append(f"{where}: a column header says only {name!r}")
        expected = OWN_BUTTONS.get(name)
        if expected and role in ("check box", "push button", "toggle button", "text") and role != expected:
            problems.append(f"{where}: {described(node)} should be a {expected}")
        if name.startswith("Quick button") and role != "push button":
            problems.append(f"{where}: {described(node)} should be a push button")
        if name.startswith("Set ") and name.endswith(" Color") and role != "push button":
            problems.append(f"{where}: the colour swatch {described(node)} should be a push button")
        if role == "page tab" and not name:
            problems.append(f"{where}: a tab has no name")
    print(f"{where}: {controls} controls read")
    if controls == 0:
        problems.append(f"{where}: no control could be read")
    return problems


def showing(pyatspi, node):
    """The objects under `node` that are on the screen."""
    yield node
    for i in range(node.childCount):
        child = node.getChildAtIndex(i)
        if child is not None and child.getState().contains(pyatspi.STATE_SHOWING):
            yield from showing(pyatspi, child)


def keyboard_stops(pyatspi, window, presses):
    """What has the focus after each press of Tab in `window`, as a screen reader hears it."""
    stops = []
    for _ in range(presses):
        subprocess.run(["xdotool", "key", "Tab"], check=True)
        time.sleep(0.15)
        focused = [n for n in showing(pyatspi, window) if n.getState().contains(pyatspi.STATE_FOCUSED)
                   and n.getRoleName() != "page tab"]
        stops.append(described(focused[-1]) if focused else None)
    return stops


def find(node, name, role=None):
    for each, _ in walk(node):
        if each.name == name and (role is None or each.getRoleName() == role):
            return each
    return None


def press(node, problems):
    """A screen reader's press of `node`; false, with the problem noted, when it has none."""
    if node is None:
        problems.append("a control to press is missing")
        return False
    action = node.queryAction()
    for i in range(action.nActions):
        if action.getName(i) == "Press":
            return action.doAction(i)
    problems.append(f"{described(node)} cannot be pressed by a screen reader")
    return False


def main():
    program = os.path.abspath(sys.argv[1])
    work = tempfile.mkdtemp(prefix="vantrel-a11y-")
    processes = Processes()
    problems = []
    passed = False
    try:
        app_process = start_everything(program, work, processes)
        import pyatspi  # only now: it finds the accessibility bus through the session bus above
        desktop = pyatspi.Registry.getDesktop(0)

        def vantrel():
            if app_process.poll() is not None:
                problems.append(f"the program ended with status {app_process.returncode}")
                raise SystemExit(1)
            for i in range(desktop.childCount):
                app = desktop.getChildAtIndex(i)
                if app is not None and app.name == "Vantrel":
                    return app
            return None

        def window(title, role):
            app = vantrel()
            if app is None:
                return None
            for i in range(app.childCount):
                child = app.getChildAtIndex(i)
                if child is not None and child.name == title and child.getRoleName() == role:
                    return child
            return None

        main_window = wait_until(lambda: window("Vantrel", "frame"), 60, 0.25)
        if main_window is None:
            app = vantrel()
            roles = [described(app.getChildAtIndex(i)) for i in range(app.childCount)] if app else []
            raise SystemExit(f"no main window of role frame named Vantrel: {roles}")
        if not find(main_window, "Save", "push button"):
            raise SystemExit("the main window's controls did not come")
        problems += audit(pyatspi, main_window, "main window")

        # The keyboard's way round the Surf tab: every control a stop, the tabs among them. The
        # keyboard goes to the main window as a window manager would send it there.
        window_id = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Vantrel$"],
                                   capture_output=True, text=True).stdout.split()
        if window_id:
            subprocess.run(["xdotool", "windowfocus", "--sync", window_id[0]])
            time.sleep(0.3)
        stops = keyboard_stops(pyatspi, main_window, 8)
        print("Tab goes to: " + ", ".join(str(stop) for stop in stops))
        for wanted in ("[page tab list]", "[push button] 'New'", "[push button] 'Small'", "[push button] 'Calendar'"):
            if not any(stop and stop.startswith(wanted) for stop in stops):
                problems.append(f"main window: Tab never reaches {wanted}")

        # A two-state button says when it is on.
        small = find(main_window, "Small")
        checked_before = small.getState().contains(pyatspi.STATE_CHECKED)
        if press(small, problems):
            if not wait_until(lambda: small.getState().contains(pyatspi.STATE_CHECKED) != checked_before, 5):
                problems.append("main window: the Small button's state did not follow a press")
            press(small, problems)

        press(find(main_window, "More..."), problems)
        more = wait_until(lambda: window("More Options", "dialog"), 10)
        if more is None:
            problems.append("More... pressed by a screen reader opened no dialog named More Options")
        else:
            problems += audit(pyatspi, more, "More Options")
            press(find(more, "Schedules..."), problems)
            schedules = wait_until(lambda: window("Schedules", "dialog"), 10)
            if schedules is None:
                problems.append("Schedules... pressed by a screen reader opened no dialog named Schedules")
            else:
                press(find(schedules, "Add"), problems)
                wait_until(lambda: find(schedules, "Schedule 1"), 5)
                problems += audit(pyatspi, schedules, "Schedules")

        press(find(main_window, "Run Favorite List"), problems)
        run = wait_until(lambda: window("Run List of Web Pages", "dialog"), 10)
        if run is None:
            problems.append("Run Favorite List pressed by a screen reader opened no run dialog")
        else:
            problems += audit(pyatspi, run, "run dialog")
        passed = not problems
    finally:
        processes.end()
        for problem in problems:
            print(problem)
        if not passed or os.environ.get("KEEP_A11Y_WORK"):
            log = os.path.join(work, "program.log")
            if os.path.exists(log):
                print("--- program output")
                print(open(log).read()[-3000:])
        shutil.rmtree(work, ignore_errors=True)

    if problems:
        print(f"{len(problems)} controls a screen reader cannot use")
        return 1
    print("every control has a name, a usable role and a keyboard stop")
    return 0


if __name__ == "__main__":
    sys.exit(main())
