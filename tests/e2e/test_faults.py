# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Faults around the real client: a daemon that dies, missing buses, a database that is
locked, full, read-only, garbage or gone, a GPS that fails and a flapping network (map
servers that hang: AppMapFormTest). After each one the client must still run and answer, show its text,
and keep every message that was queued in the outbox before."""

import contextlib
import os
import shutil
import signal
import socket
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Session, check, run, wait_for  # noqa: E402
from test_compose import (compose_and_send, label_shown, nmea_checksum,  # noqa: E402
                          stamped_track, type_into)

SENDING = "Sending..."
SEND_FAILED = "Sending failed"
LOCATING = "Requesting your current location..."
NO_FIX = "Unable to determine your current location"
REGISTERING = "Please wait while your registration is completed.\nIt may take up to a minute."
COMPOSE = "tarvik - Send a tarvik"
REGISTERED = ["--register-at-start", "--number", "+15550100"]
# A daemon that answers every send at once with a failure: messages stay in the outbox.
FAILING = REGISTERED + ["--incoming", "0", "--send", "fail", "--delay", "0"]
NM = ("org.freedesktop.NetworkManager", "/org/freedesktop/NetworkManager")


@contextlib.contextmanager
def client(bindir, sim_args, network="online", env=None, home=None):
    """A session with NetworkManager in `network` state and the client on its main screen;
    `env` is the client's extra environment, or a function of the session giving it."""
    with Session(bindir, home=home, sim_args=sim_args, start_client=False) as s:
        s.spawn_ready([os.path.join(bindir, "tarvik-fakes"), "--nm", network])
        s.client_env = env(s) if callable(env) else env or {}
        s.launch()
        s.wait_title("tarvik")
        yield s


def set_network(s, *states):
    for state in states:
        s.dbus("system", *NM, "org.tarvik.Fake.Control.SetState", "uint32:%d" % state)


def wait_label(s, text, timeout=15):
    wait_for(lambda: label_shown(s, text), timeout, "the text %r" % text)


def wait_log(s, text, timeout=10):
    wait_for(lambda: s.logged(text), timeout, "the log line %r" % text)


def press_send(s):
    """Taps Send on the compose form until a send popup starts (a form ignores taps for
    a moment after an earlier one)."""
    def popups():
        return sum("CLocationPopupForm::CLocationPopupForm started" in line for line in s.log())
    before = popups()

    def pressed():
        s.click(s.find("push button", "Send"))
        deadline = time.monotonic() + 1
        while popups() == before and time.monotonic() < deadline:
            time.sleep(0.1)
        return popups() > before
    wait_for(pressed, 10, "Send to start a popup", interval=0)


def failed_on_form(s, text):
    """A send ended in `text`: a tap takes the popup away and leaves the compose form."""
    wait_label(s, text)
    s.responsive()
    s.tap_away("label", text)
    s.wait_title(COMPOSE)


def one_more(s, before, what):
    """The outbox holds what it held before and one message more."""
    now = s.outbox()
    check(len(now) == len(before) + 1 and set(before) <= set(now),
          "%s: the outbox was %r and is %r" % (what, before, now))
    return now


def mounted_tmpfs(path, size):
    os.makedirs(path, exist_ok=True)
    return os.geteuid() == 0 and subprocess.run(
        ["mount", "-t", "tmpfs", "-o", "size=" + size, "tmpfs", path]).returncode == 0


@contextlib.contextmanager
def locked(s):
    """Another process holds the database longer than the client's busy time-out."""
    con = sqlite3.connect(s.database, timeout=5, isolation_level=None)
    con.execute("BEGIN EXCLUSIVE")
    yield
    con.execute("ROLLBACK")
    con.close()


@contextlib.contextmanager
def disk_full(s):
    filler = os.path.join(os.path.dirname(s.database), "filler")
    with open(filler, "wb", buffering=0) as f:
        with contextlib.suppress(OSError):
            while f.write(b"f" * 4096):
                pass
    yield
    os.unlink(filler)


@contextlib.contextmanager
def read_only(s):
    """A read-only view of the data directory over it: files already open stay writable,
    nothing new (a journal) can be made."""
    data = os.path.dirname(s.database)
    subprocess.run(["mount", "--bind", "-o", "ro", data, data], check=True)
    yield
    subprocess.run(["umount", data], check=True)


@contextlib.contextmanager
def garbage(s):
    with open(s.database, "r+b") as f:
        original = f.read()
        f.seek(0)
        f.write(os.urandom(len(original)))
    yield
    with open(s.database, "r+b") as f:
        f.write(original)


# Storage faults during a send: name, fault, whether it needs a private tmpfs.
STORAGE_FAULTS = [("locked", locked, False), ("disk full", disk_full, True),
                  ("read-only", read_only, True), ("garbage", garbage, False)]


def test_send_faults(bindir):
    """One client through a series of faults during a send. Each storage fault shows
    "Sending failed" and keeps the compose form, whose Send works once the fault is gone.
    A daemon killed while it works and a network that flaps lose nothing and queue the
    message once."""
    home = tempfile.mkdtemp(prefix="tarvik-faults-")
    data = os.path.join(home, ".tarvik")
    on_tmpfs = mounted_tmpfs(data, "1m")
    track, _ = stamped_track(home)
    try:
        with client(bindir, FAILING, home=home, env={"TARVIK_NMEA_SOURCE": track}) as s:
            compose_and_send(s, "+15550111", "First", "Queued before the faults.")
            s.wait_title("tarvik", 40)
            queued = one_more(s, [], "a failed send")

            for name, fault, needs_tmpfs in STORAGE_FAULTS:
                if needs_tmpfs and not on_tmpfs:
                    print("SKIP   test_send_faults %s: NEEDS ROOT WITH MOUNT: no private tmpfs"
                          % name, flush=True)
                    continue
                with fault(s):
                    compose_and_send(s, "+15550122", name, "Sent during: " + name)
                    failed_on_form(s, SEND_FAILED)
                check(s.outbox() == queued, "%s: the outbox changed: %r" % (name, s.outbox()))
                press_send(s)
                s.wait_title("tarvik", 20)
                queued = one_more(s, queued, name)

            # The daemon dies between the request and its answer: the popup's own timer
            # ends the wait, and the message stays queued.
            sim = s.restart_sim(REGISTERED + ["--incoming", "0", "--delay", "3000"])
            compose_and_send(s, "+15550133", "Killed", "The daemon dies.")
            wait_label(s, SENDING, 20)
            sim.send_signal(signal.SIGKILL)
            s.wait_title("tarvik", 10)
            s.responsive()
            queued = one_more(s, queued, "a killed daemon")
            s.restart_sim(FAILING)

            # No network when Send is pressed, then a flapping one.
            set_network(s, 20)
            compose_and_send(s, "+15550144", "Flapping", "On and off.")
            wait_log(s, "CLocationPopupForm::internetConnectionDisconnected 1")
            set_network(s, 70, 20, 70, 20, 70)
            s.wait_title("tarvik", 20)
            one_more(s, queued, "a flapping network")

            # A database deleted under the client: the save fails instead of going into
            # the unlinked file, and the text stays on the form.
            os.unlink(s.database)
            compose_and_send(s, "+15550155", "Deleted", "Nowhere to go.")
            failed_on_form(s, SEND_FAILED)
    finally:
        if on_tmpfs:
            subprocess.run(["umount", "-l", data])
        shutil.rmtree(home, ignore_errors=True)


class LoopbackServer:
    """A TCP server on a free loopback port that hands each connection to serve(conn)
    on a thread of its own; serve() returning without closing leaves the peer hanging."""

    def __init__(self, serve):
        self.sock = socket.socket()
        self.sock.bind(("127.0.0.1", 0))
        self.sock.listen(16)
        self.port = self.sock.getsockname()[1]
        self.held = []

        def accept():
            while True:
                conn, _ = self.sock.accept()
                self.held.append(conn)
                threading.Thread(target=serve, args=(conn,), daemon=True).start()
        threading.Thread(target=accept, daemon=True).start()


class NmeaSource:
    """An NMEA stream the test switches between "fix" (a recorded track, stamped now),
    "nofix" (noise and sentences without a position) and "end" (the stream closes)."""

    def __init__(self, track):
        with open(track) as f:
            self.fix = [line for line in f.read().split("\r\n") if line]
        self.mode = "nofix"
        self.lines = 0
        self.server = LoopbackServer(self._serve)
        self.url = "socket://127.0.0.1:%d" % self.server.port

    @staticmethod
    def _nofix():
        stamp = time.strftime("%H%M%S.00", time.gmtime())
        bodies = ["GPGGA,%s,,,,,0,00,99.99,,,,,," % stamp,
                  "GPRMC,%s,V,,,,,,,%s,,,N" % (stamp, time.strftime("%d%m%y", time.gmtime()))]
        return ["$%s*%s" % (b, nmea_checksum(b)) for b in bodies] + [
            "$GPGGA,12,garbage*00", os.urandom(24).hex()]

    def _serve(self, conn):
        i = 0
        while self.mode != "end":
            lines = self.fix[i % len(self.fix):][:2] if self.mode == "fix" else self._nofix()
            i += 2
            try:
                conn.sendall(("\r\n".join(lines) + "\r\n").encode())
            except OSError:
                return
            self.lines += len(lines)
            time.sleep(0.25)
        conn.close()


def test_gps_faults(bindir):
    """A GPS without a fix keeps the popup on its request until a tap closes it alone;
    a stream that ends says the position cannot be found; a stream that is back gives
    the next Send its position. The compose form keeps its text throughout."""
    gps = NmeaSource(stamped_track()[0])
    with client(bindir, FAILING, env={"TARVIK_NMEA_SOURCE": gps.url}) as s:
        compose_and_send(s, "+15550111", "Where", "No fix yet.")
        wait_label(s, LOCATING)
        seen = gps.lines
        wait_for(lambda: gps.lines > seen + 24, 10, "sentences without a fix to reach the client")
        check(label_shown(s, LOCATING), "no fix, yet the popup went on")
        s.tap_away("label", LOCATING)
        s.wait_title(COMPOSE)

        gps.mode = "end"
        press_send(s)
        failed_on_form(s, NO_FIX)

        gps.mode = "fix"
        press_send(s)
        s.wait_title("tarvik", 30)
        rows = s.rows("outbox")
        check(len(rows) == 1 and rows[0]["tnote"] == "No fix yet.", "outbox: %r" % rows)


def test_registration_on_flapping_network(bindir):
    """A network that comes and goes while the registration popup waits for it: the
    registration is asked for once and the account ends registered."""
    with client(bindir, ["--register", "succeed", "--delay", "200"], network="offline") as s:
        type_into(s, "What's your phone number?", "+15550123")
        type_into(s, "What's your screen name?", "Ann")
        s.click(s.find("push button", "Continue"))
        wait_label(s, REGISTERING)
        wait_log(s, "CRegisterPopupForm::internetConnectionDisconnected")
        set_network(s, 70, 20, 70, 20, 70)
        wait_for(lambda: not s.all("push button", "Continue"), 20, "the form to close")
        s.responsive()
        requests = [line for line in s.log() if "EmitRegistrationRequest" in line]
        check(len(requests) == 1, "registration asked %d times" % len(requests))
        check(str(s.settings().get("regflag")) == "1", "not registered: %r" % s.settings())


def test_no_buses(bindir):
    """Without a system bus the client starts, says so when a send needs the network, and
    answers. (Without a session bus: AppE2eTest.)"""
    nowhere = "unix:path=/nonexistent/bus"
    with client(bindir, FAILING, env={"DBUS_SYSTEM_BUS_ADDRESS": nowhere}) as s:
        compose_and_send(s, "+15550111", "No", "system bus")
        wait_log(s, "Unable to connect to the D-BUS daemon")
        s.responsive()
        s.quit_client()  # fails unless the exit status is 0


def test_display_server_dies(bindir):
    """The display server going away ends the client through Qt's exit(1) while its storage
    worker runs: the exit must be that status, not a crash in static destruction."""
    with client(bindir, FAILING) as s:
        xvfb = next(p for p in s.procs if os.path.basename(p.args[0]) == "Xvfb")
        xvfb.kill()
        status = s.client.wait(30)
        s.client = None
        check(status == 1, "the client ended with status %r after the display went" % status)


if __name__ == "__main__":
    run([test_send_faults, test_gps_faults, test_registration_on_flapping_network, test_no_buses,
         test_display_server_dies])
