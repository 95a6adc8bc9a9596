# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Drives the real tarvik client through the accessibility bus, as a person would.

A session starts a private D-Bus session bus (the accessibility bus launcher is
activated from it), a private system bus, Xvfb, the daemon simulator and the client
with accessibility on. Controls are found by role and accessible name and are clicked
with real pointer events at the position the accessibility bus reports.

Usage:
    with Session(bindir, sim_args=[...]) as s:
        s.click(s.find("push button", "Open"))
"""

import fcntl
import http.server
import json
import os
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

# The scripts import each other's helpers; no byte code is left in the source tree.
sys.dont_write_bytecode = True

SYSTEM_BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-BUS Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path={path}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Failure(AssertionError):
    pass


def check(condition, message):
    if not condition:
        raise Failure(message)


def wait_for(predicate, timeout, what, interval=0.1):
    """Polls predicate until it returns something true; fails naming `what`."""
    deadline = time.monotonic() + timeout
    last_error = None
    while time.monotonic() < deadline:
        try:
            value = predicate()
            if value:
                return value
        except Exception as error:  # the tree changes under our feet while screens switch
            last_error = error
        time.sleep(interval)
    raise Failure("timed out after %.1f s waiting for %s%s"
                  % (timeout, what, " (last error: %s)" % last_error if last_error else ""))


def db_rows(path, folder, where="1", args=()):
    """The rows of a folder of the database at `path`, as dictionaries, oldest first."""
    con = sqlite3.connect(path, timeout=5)
    con.row_factory = sqlite3.Row
    try:
        return [dict(r) for r in con.execute(
            "SELECT * FROM %s WHERE %s ORDER BY tid" % (folder, where), args)]
    finally:
        con.close()


def db_execute(path, sql, args=()):
    con = sqlite3.connect(path, timeout=5)
    try:
        con.execute(sql, args)
        con.commit()
    finally:
        con.close()


def db_settings(path):
    """The settings table of the database at `path` as a dictionary."""
    con = sqlite3.connect(path, timeout=5)
    try:
        return dict(con.execute("SELECT name, value FROM settings").fetchall())
    finally:
        con.close()


class HttpServer:
    """A loopback web server on a free port that keeps the path of every request and
    answers it with answer(path): (body, content type), or None for 404. Answers carry
    the CORS header public servers send."""

    def __init__(self, answer=lambda path: None):
        owner = self
        self.paths = []

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                owner.paths.append(self.path)
                found = answer(self.path)
                self.send_response(404 if found is None else 200)
                if found is not None:
                    self.send_header("Content-Type", found[1])
                    self.send_header("Content-Length", str(len(found[0])))
                    self.send_header("Access-Control-Allow-Origin", "*")
                self.end_headers()
                if found is not None:
                    self.wfile.write(found[0])

            def log_message(self, *args):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self.url = "http://127.0.0.1:%d" % self.server.server_address[1]
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def close(self):
        self.server.shutdown()


class Session:
    # The Xvfb screen: width x height x depth.
    screen = "800x480x24"

    def __init__(self, bindir, sim_args=None, home=None, client_env=None, start_client=True,
                 daemon="tarvik-simd", daemon_env=None, incoming=None):
        self.bindir = bindir
        self.sim_args = list(sim_args or [])
        self.daemon = daemon
        self.daemon_env = daemon_env or {}
        self.client_env = client_env or {}
        self.start_client = start_client
        self.tmp = tempfile.mkdtemp(prefix="tarvik-atspi-")
        self.home = home or os.path.join(self.tmp, "home")
        os.makedirs(self.home, exist_ok=True)
        if incoming is not None:  # the messages the simulator delivers
            path = os.path.join(self.tmp, "incoming.json")
            with open(path, "w") as f:
                json.dump(incoming, f)
            self.sim_args += ["--incoming-file", path]
        self.procs = []
        self.client = None
        self.app = None
        self.env = None

    # --- set-up ---------------------------------------------------------------

    def _spawn(self, args, env, **kwargs):
        log = open(os.path.join(self.tmp, os.path.basename(args[0]) + ".log"), "ab")
        proc = subprocess.Popen(args, env=env, stdout=kwargs.pop("stdout", log), stderr=log,
                                start_new_session=True, **kwargs)
        self.procs.append(proc)
        return proc

    def _start_buses(self, display):
        # Services the bus activates (the accessibility bus and its registry, which
        # turns generated input into X events) inherit the display from here.
        env = os.environ.copy()
        env["DISPLAY"] = display
        env["XDG_RUNTIME_DIR"] = self.tmp
        out = subprocess.run(["dbus-daemon", "--session", "--fork", "--print-address=1",
                              "--print-pid=1"], capture_output=True, text=True, check=True,
                             env=env)
        address, pid = out.stdout.split()[:2]
        self.bus_pids = [int(pid)]
        sys_path = os.path.join(self.tmp, "system_bus_socket")
        config = os.path.join(self.tmp, "system.conf")
        with open(config, "w") as f:
            f.write(SYSTEM_BUS_CONFIG.format(path=sys_path))
        out = subprocess.run(["dbus-daemon", "--config-file=" + config, "--fork",
                              "--print-pid=1"], capture_output=True, text=True, check=True)
        self.bus_pids.append(int(out.stdout.split()[0]))
        return address, "unix:path=" + sys_path

    def _start_xvfb(self):
        # Sessions that run side by side must never share a display (nor the accessibility
        # bus address that the bus launcher publishes on its root window). A display number
        # is ours while we hold its lock file; Xvfb writes the number to the pipe once it
        # accepts connections, or closes the pipe when the display is taken by a server
        # from outside. No reset: a server that resets when its last client leaves
        # refuses connections for a moment, and a client starting then gives up.
        for display in range(90, 190):
            lock = open("/tmp/tarvik-atspi-display-%d.lock" % display, "w")
            try:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except OSError:
                lock.close()
                continue
            read_end, write_end = os.pipe()
            proc = self._spawn(["Xvfb", ":%d" % display, "-displayfd", str(write_end),
                                "-screen", "0", self.screen, "-nolisten", "tcp", "-noreset"],
                               os.environ.copy(), pass_fds=(write_end,))
            os.close(write_end)
            with os.fdopen(read_end) as pipe:
                ready = pipe.readline().strip() == str(display)
            if ready:
                self.display_lock = lock
                return ":%d" % display
            proc.kill()
            proc.wait()
            lock.close()
        raise Failure("no free X display")

    def __enter__(self):
        try:
            return self._start()
        except BaseException:
            self.stop()
            shutil.rmtree(self.tmp, ignore_errors=True)
            raise

    def _start(self):
        display = self._start_xvfb()
        session_bus, system_bus = self._start_buses(display)
        env = os.environ.copy()
        for key in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_QTESTLIB_RUNNING"):
            env.pop(key, None)
        env.update({
            "HOME": self.home,
            "DISPLAY": display,
            "DBUS_SESSION_BUS_ADDRESS": session_bus,
            "DBUS_SYSTEM_BUS_ADDRESS": system_bus,
            "XDG_RUNTIME_DIR": self.tmp,
            "XDG_CONFIG_HOME": os.path.join(self.home, ".config"),
            "XDG_DATA_HOME": os.path.join(self.home, ".local/share"),
            "XDG_CACHE_HOME": os.path.join(self.home, ".cache"),
            "GSETTINGS_BACKEND": "memory",
            "NO_AT_BRIDGE": "0",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "QT_ACCESSIBILITY": "1",
            "LC_ALL": "C.UTF-8",
            # Far from UTC (+14 h), so that a time shown in UTC instead of local time shows.
            "TZ": "Pacific/Kiritimati",
        })
        self.env = env
        # pyatspi finds the accessibility bus through these, so set them before import.
        os.environ.update({k: env[k] for k in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS",
                                                 "XDG_RUNTIME_DIR", "HOME")})
        daemon_env = dict(env)
        daemon_env.update(self.daemon_env)
        sim = self._spawn([os.path.join(self.bindir, self.daemon)] + self.sim_args, daemon_env,
                          stdout=subprocess.PIPE)
        line = sim.stdout.readline().decode().strip()
        check(line == "ready", "%s did not come up (said %r)" % (self.daemon, line))
        if self.start_client:
            self.launch()
        return self

    def launch(self):
        env = dict(self.env)
        env.update(self.client_env)
        if os.environ.get("TARVIK_E2E_CLIENT_PRELOAD"):
            env["LD_PRELOAD"] = os.environ["TARVIK_E2E_CLIENT_PRELOAD"]
        self.client = self._spawn([os.path.join(self.bindir, "tarvik")], env)
        import pyatspi  # noqa: F401  (needs the environment above)
        try:
            self.app = wait_for(self._find_app, 30,
                                "the tarvik application on the accessibility bus")
        except Failure as error:
            raise Failure("%s; client exit code %r; its output ends:\n%s\nits log ends:\n%s"
                          % (error, self.client.poll(), self._tail("tarvik.log"),
                             self._tail(os.path.join(self.home, ".tarvik", "tarvik.log"))))
        return self.client

    def _tail(self, name, lines=30):
        try:
            with open(os.path.join(self.tmp, name), encoding="utf-8", errors="replace") as f:
                return "".join(f.readlines()[-lines:])
        except OSError:
            return "(none)"

    def __exit__(self, exc_type, *exc):
        try:
            # A test that went well also needs a client that ends cleanly: in the sanitizer
            # build a leak or a fault at exit shows only in the exit status.
            if exc_type is None and self.client is not None:
                self.quit_client()
        finally:
            self.stop()
            shutil.rmtree(self.tmp, ignore_errors=True)
        return False

    def stop(self):
        for proc in reversed(self.procs):
            if proc.poll() is None:
                try:
                    os.killpg(proc.pid, signal.SIGTERM)
                except ProcessLookupError:
                    pass
                try:
                    proc.wait(10)
                except subprocess.TimeoutExpired:
                    os.killpg(proc.pid, signal.SIGKILL)
                    proc.wait()
        self.procs = []
        for pid in getattr(self, "bus_pids", []):
            try:
                os.kill(pid, signal.SIGTERM)
            except ProcessLookupError:
                pass
        self.bus_pids = []
        lock = getattr(self, "display_lock", None)
        if lock is not None:
            lock.close()
            self.display_lock = None

    def quit_client(self, timeout=60):
        """Ends the client as a desktop would (SIGTERM), waits for it and fails unless it
        exits with status 0 (it must not have died before, either)."""
        if self.client.poll() is None:
            self.client.send_signal(signal.SIGTERM)
            try:
                self.client.wait(timeout)
            except subprocess.TimeoutExpired:
                raise Failure("the client did not end within %d s of SIGTERM" % timeout)
        status = self.client.returncode
        self.client = None
        self.app = None
        check(status == 0, "the client ended with status %r; its output ends:\n%s"
              % (status, self._tail("tarvik.log", 60)))

    # --- the accessibility tree -------------------------------------------------

    def _find_app(self):
        import pyatspi
        desktop = pyatspi.Registry.getDesktop(0)
        for i in range(desktop.childCount):
            app = desktop.getChildAtIndex(i)
            if app is not None and app.name == "tarvik":
                return app
        return None

    @staticmethod
    def _walk(node, depth=0):
        if node is None or depth > 40:
            return
        yield node
        try:
            count = node.childCount
        except Exception:
            return
        for i in range(count):
            try:
                child = node.getChildAtIndex(i)
            except Exception:
                continue
            yield from Session._walk(child, depth + 1)

    @staticmethod
    def _showing(node):
        import pyatspi
        try:
            return node.getState().contains(pyatspi.STATE_SHOWING)
        except Exception:
            return False

    def all(self, role=None, name=None, showing=True):
        found = []
        for node in self._walk(self.app):
            try:
                if role is not None and node.getRoleName() != role:
                    continue
                if name is not None and node.name != name:
                    continue
            except Exception:
                continue
            if showing and not self._showing(node):
                continue
            found.append(node)
        return found

    def find(self, role, name, timeout=15, showing=True):
        """The first control of this role and accessible name that is on screen."""
        def look():
            nodes = self.all(role, name, showing)
            return nodes[0] if nodes else None
        return wait_for(look, timeout, "%s %r" % (role, name))

    def tap_away(self, role, name, timeout=15):
        """Taps a control until it has left the screen (a popup that closes on a tap may
        still refuse the first one while it settles)."""
        def gone():
            nodes = self.all(role, name)
            if not nodes:
                return True
            self.click(nodes[0])
            time.sleep(0.3)
            return not self.all(role, name)
        return wait_for(gone, timeout, "%s %r to go away" % (role, name))

    def names(self, role):
        return [n.name for n in self.all(role)]

    def window_title(self):
        frames = self.all("frame")
        return frames[0].name if frames else None

    def wait_title(self, title, timeout=15):
        return wait_for(lambda: self.window_title() == title, timeout,
                        "window title %r (now %r)" % (title, self.window_title()))

    @staticmethod
    def text(node):
        t = node.queryText()
        return t.getText(0, t.characterCount)

    @staticmethod
    def enabled(node):
        import pyatspi
        return node.getState().contains(pyatspi.STATE_ENABLED)

    # --- input ------------------------------------------------------------------

    @staticmethod
    def centre(node):
        import pyatspi
        ext = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        check(ext.width > 0 and ext.height > 0, "%r has no size on screen" % node.name)
        return ext.x + ext.width // 2, ext.y + ext.height // 2

    def click(self, node, double=False):
        import pyatspi
        x, y = self.centre(node)
        pyatspi.Registry.generateMouseEvent(x, y, "b1d" if double else "b1c")
        time.sleep(0.05)

    def type_text(self, text):
        import pyatspi
        pyatspi.Registry.generateKeyboardEvent(0, text, pyatspi.KEY_STRING)

    # --- data ---------------------------------------------------------------------

    @property
    def database(self):
        return os.path.join(self.home, ".tarvik", "tarvikdb.sqlite")

    def rows(self, folder, where="1", args=()):
        return db_rows(self.database, folder, where, args)

    def execute(self, sql, args=()):
        db_execute(self.database, sql, args)

    def settings(self):
        return db_settings(self.database)

    def log(self):
        path = os.path.join(self.home, ".tarvik", "tarvik.log")
        with open(path, encoding="utf-8", errors="replace") as f:
            return f.read().splitlines()

    def outbox(self):
        """The outbox rows by content, without the row id and the send mark, which a
        send rewrites; for checking that nothing queued earlier was lost."""
        return sorted(tuple(sorted((k, v) for k, v in row.items() if k not in ("tid", "tflag")))
                      for row in self.rows("outbox"))

    def responsive(self):
        """The client runs and its accessibility tree still answers."""
        check(self.client.poll() is None, "the client ended with %r" % self.client.poll())
        wait_for(lambda: self.window_title(), 10, "the client to answer on the accessibility bus")

    def logged(self, text):
        return any(text in line for line in self.log())

    def spawn_ready(self, args, env=None):
        """Starts a helper that prints a line when ready (the simulator, the fakes); the
        line is returned."""
        proc = self._spawn(args, env or self.env, stdout=subprocess.PIPE)
        line = proc.stdout.readline().decode().strip()
        check(line, "%s did not come up" % os.path.basename(args[0]))
        return proc, line

    def restart_sim(self, sim_args, kill=signal.SIGTERM):
        """Ends the running simulator (with `kill`) and starts one with other arguments."""
        for proc in self.procs:
            if proc.args[0].endswith("tarvik-simd") and proc.poll() is None:
                proc.send_signal(kill)
                proc.wait(10)
        sim, line = self.spawn_ready([os.path.join(self.bindir, "tarvik-simd")] + sim_args)
        check(line == "ready", "the simulator did not come up (said %r)" % line)
        return sim

    def dbus(self, bus, dest, path, method, *args):
        subprocess.run(["dbus-send", "--" + bus, "--print-reply", "--dest=" + dest, path, method]
                       + list(args), env=self.env, check=True, capture_output=True)

    def deliver(self, count=1):
        """Has the simulator deliver `count` messages now."""
        self.dbus("session", "com.qel.tarvikdaemon", "/com/qel/tarviksim",
                  "com.qel.TarvikSimControl.DeliverNow", "int32:%d" % count)

    def owner_pid(self, name):
        """The process that owns `name` on the session bus, or None."""
        out = subprocess.run(["dbus-send", "--session", "--print-reply",
                              "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                              "org.freedesktop.DBus.GetConnectionUnixProcessID", "string:" + name],
                             env=self.env, capture_output=True, text=True)
        return int(out.stdout.split()[-1]) if out.returncode == 0 else None

    def focus_elsewhere(self):
        """Maps a small window of our own in the screen's corner and gives it the keyboard
        focus, as when the user works in another program: the client's window turns
        inactive."""
        import ctypes
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
        for name in ("XDefaultRootWindow", "XCreateSimpleWindow"):
            getattr(x11, name).restype = ctypes.c_ulong
        x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        x11.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + \
            [ctypes.c_int] * 2 + [ctypes.c_uint] * 3 + [ctypes.c_ulong] * 2
        x11.XMapRaised.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        x11.XSetInputFocus.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int,
                                       ctypes.c_ulong]
        x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        display = x11.XOpenDisplay(self.env["DISPLAY"].encode())
        check(display, "cannot open the X display")
        window = x11.XCreateSimpleWindow(display, x11.XDefaultRootWindow(display), 0, 0, 2, 2,
                                         0, 0, 0)
        x11.XMapRaised(display, window)
        x11.XSync(display, 0)
        x11.XSetInputFocus(display, window, 2, 0)  # RevertToParent, CurrentTime
        x11.XSync(display, 0)
        self._x_display = display  # the window lives as long as this connection
        import pyatspi
        wait_for(lambda: not any(f.getState().contains(pyatspi.STATE_ACTIVE)
                                 for f in self.all("frame")), 10, "the client's window inactive")

    def screenshot(self, path):
        subprocess.run(["import", "-display", self.env["DISPLAY"], "-window", "root", path],
                       check=True)


def run(tests):
    """Runs each test function in a process of its own (the accessibility library keeps
    its first bus for the life of a process); prints a line per test and exits non-zero
    on a failure. Arguments: the directory of the binaries, then optionally test names."""
    bindir = sys.argv[1] if len(sys.argv) > 1 else "."
    only = sys.argv[2:]
    if len(only) == 1:
        test = {t.__name__: t for t in tests}[only[0]]
        started = time.monotonic()
        try:
            test(bindir)
        except Exception as error:
            print("FAIL!  %s: %s" % (test.__name__, error), flush=True)
            import traceback
            traceback.print_exc()
            sys.exit(1)
        print("PASS   %s (%.1f s)" % (test.__name__, time.monotonic() - started), flush=True)
        sys.exit(0)
    failed = 0
    for test in tests:
        if only and test.__name__ not in only:
            continue
        result = subprocess.run([sys.executable, sys.argv[0], bindir, test.__name__])
        failed += result.returncode != 0
    sys.exit(1 if failed else 0)
