#!/usr/bin/python3
# Reads the running app as a screen reader does, through AT-SPI: finds the nine page tabs, presses
# "All files" and "Quick scan" through their accessibility actions, and reads the new page's title
# and the status bar. Run inside a private session bus; the app gets a virtual display of its own:
#     dbus-run-session -- read_window.py /path/to/quorrin
# Every wait polls against a deadline and the whole run is bounded, so it never hangs.
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

# The reader talks to the accessibility bus of the private session bus only: without these, a
# desktop's own display would lead it to the desktop's bus.
for name in ("DISPLAY", "WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS"):
    os.environ.pop(name, None)

import pyatspi  # noqa: E402 (after the environment is cleaned)

PAGES = ["Overview", "All files", "FindOlder", "Duplicates", "Downloads review", "File health",
         "Kept files", "Folders & settings", "Activity"]
WHOLE_RUN_SECONDS = 100


class Failure(Exception):
    pass


def poll(what, find, seconds=30):
    """Calls find() until it returns something other than None; fails after `seconds`."""
    deadline = time.monotonic() + seconds
    while True:
        try:
            found = find()
        except Exception:  # the tree changes under the walk; try again
            found = None
        if found is not None:
            return found
        if time.monotonic() > deadline:
            raise Failure("timed out waiting for " + what)
        time.sleep(0.2)


def nodes(root, depth=0, limit=40):
    """Every node under root, depth first; nodes that vanish during the walk are skipped."""
    if root is None or depth > limit:
        return
    yield root
    try:
        count = root.childCount
    except Exception:
        return
    for i in range(count):
        try:
            child = root.getChildAtIndex(i)
        except Exception:
            continue
        yield from nodes(child, depth + 1, limit)


def showing(node):
    try:
        return node.getState().contains(pyatspi.STATE_SHOWING)
    except Exception:
        return False


def start_display():
    """Starts Xvfb on a free display (it picks the number itself) and returns (process, ":N")."""
    read_end, write_end = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write_end), "-nolisten", "tcp", "-screen", "0", "1280x1024x24"],
        pass_fds=(write_end,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write_end)
    number = b""
    deadline = time.monotonic() + 20
    os.set_blocking(read_end, False)
    while not number.endswith(b"\n"):
        if time.monotonic() > deadline or server.poll() is not None:
            os.close(read_end)
            server.kill()
            raise Failure("the virtual display did not start")
        try:
            chunk = os.read(read_end, 16)
        except BlockingIOError:
            chunk = None
        if chunk == b"":
            break
        if chunk:
            number += chunk
        else:
            time.sleep(0.05)
    os.close(read_end)
    if not number.strip().isdigit():
        server.kill()
        raise Failure("the virtual display gave no number")
    return server, ":" + number.strip().decode()


def stop(process):
    if process is None or process.poll() is not None:
        return
    process.terminate()
    try:
        process.wait(timeout=10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def the_app(process):
    desktop = pyatspi.Registry.getDesktop(0)
    for i in range(desktop.childCount):
        app = desktop.getChildAtIndex(i)
        if app is None:
            continue
        try:
            pid = app.get_process_id()
        except Exception:
            pid = None
        if pid == process.pid and app.childCount > 0:
            return app
    return None


def find_showing(app, role, name=None):
    for node in nodes(app):
        if node.getRole() == role and showing(node) and (name is None or node.name == name):
            return node
    return None


def press(node):
    actions = node.queryAction()
    for i in range(actions.nActions):
        if actions.getName(i).lower() in ("press", "click", "activate"):
            if not actions.doAction(i):
                raise Failure("the action on " + node.name + " was refused")
            return
    raise Failure(node.name + " has no press action")


def main():
    if len(sys.argv) != 2:
        print("usage: read_window.py QUORRIN", file=sys.stderr)
        return 2
    signal.signal(signal.SIGALRM, lambda *_: (_ for _ in ()).throw(Failure("the run took too long")))
    signal.alarm(WHOLE_RUN_SECONDS)

    home = tempfile.mkdtemp(prefix="quorrin-atspi-")
    process = None
    display = None
    try:
        display, display_name = start_display()
        for folder in ("Documents", "Downloads", "Desktop"):
            os.makedirs(os.path.join(home, folder))
        with open(os.path.join(home, "Documents", "Report.pdf"), "w") as report:
            report.write("report")
        runtime = os.path.join(home, "runtime")
        os.makedirs(runtime, mode=0o700)
        env = dict(os.environ, HOME=home, XDG_RUNTIME_DIR=runtime, QT_QPA_PLATFORM="xcb",
                   DISPLAY=display_name,
                   QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LC_ALL="C.UTF-8")
        process = subprocess.Popen([sys.argv[1]], env=env)

        app = poll("the app on the accessibility bus", lambda: the_app(process))

        tabs = poll("the nine page tabs", lambda: [
            node.name for node in nodes(app)
            if node.getRole() == pyatspi.ROLE_PAGE_TAB and showing(node)] or None)
        if tabs != PAGES:
            raise Failure("the page tabs read %r" % tabs)
        overview = find_showing(app, pyatspi.ROLE_PAGE_TAB, "Overview")
        if not overview.getState().contains(pyatspi.STATE_SELECTED):
            raise Failure("the Overview tab is not marked selected")

        press(find_showing(app, pyatspi.ROLE_PAGE_TAB, "All files"))
        title = poll("the title All files",
                     lambda: find_showing(app, pyatspi.ROLE_HEADING, "All files"))
        status = find_showing(app, pyatspi.ROLE_STATUS_BAR)
        if status is None or not status.name:
            raise Failure("no status bar with a status")
        print("page:", title.name, "| status:", status.name)
        all_files = find_showing(app, pyatspi.ROLE_PAGE_TAB, "All files")
        if not all_files.getState().contains(pyatspi.STATE_SELECTED):
            raise Failure("the All files tab is not marked selected")

        press(find_showing(app, pyatspi.ROLE_PUSH_BUTTON, "Quick scan"))
        status = poll("the status of the scan", lambda: next(
            (node for node in [find_showing(app, pyatspi.ROLE_STATUS_BAR)]
             if node is not None and node.name.startswith("Quick scan complete")), None))
        print("status:", status.name)
        row = poll("the row of Report.pdf", lambda: next(
            (node for node in nodes(app)
             if node.getRole() == pyatspi.ROLE_LIST_ITEM and node.name.startswith("Report.pdf, ")),
            None))
        print("row:", row.name)
        return 0
    except Failure as failure:
        print("FAILED:", failure, file=sys.stderr)
        return 1
    finally:
        signal.alarm(0)
        stop(process)
        stop(display)
        shutil.rmtree(home, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
