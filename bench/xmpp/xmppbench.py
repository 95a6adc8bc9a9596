#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""1,000 tarviks from one tarvikd user to another through a loopback prosody.

For each round: the sender's outbox gets N queued messages, SendReceiveRequest goes out on
its bus, and the receiver's inbox is watched until all N rows are there. Printed: messages
per second, and the latency from the request to each row in the receiver's inbox (median,
p99), beside a floor measured in the same run: the same stanzas between two bare slixmpp
clients, no database (floor.py). Then tarvikd's idle resident memory, and with --idle-seconds
its wake-ups (context switches of all its threads) per minute while idle. Fails when a
message is lost or duplicated.

  bench/xmpp/xmppbench.py BUILD/bin [--messages N] [--rounds R] [--idle-seconds S]
"""

import argparse
import os
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..")
PROSODY = os.path.join(ROOT, "tools", "xmpp", "localprosody.sh")


class User:
    def __init__(self, bindir, server_dir, port, number):
        self.number = number
        self.home = tempfile.mkdtemp(prefix="tarvik-bench-")
        out = subprocess.run(["dbus-daemon", "--session", "--fork", "--print-address=1",
                              "--print-pid=1"], capture_output=True, text=True, check=True)
        address, self.bus_pid = out.stdout.split()[:2]
        self.env = dict(os.environ, HOME=self.home, DBUS_SESSION_BUS_ADDRESS=address,
                        XDG_CONFIG_HOME=os.path.join(self.home, ".config"),
                        TARVIK_XMPP_DOMAIN="tarvik.localhost",
                        TARVIK_XMPP_SERVER="127.0.0.1:%d" % port,
                        TARVIK_XMPP_CA_FILE=os.path.join(server_dir, "ca.pem"))
        self.log = open(os.path.join(self.home, "tarvikd.log"), "wb")
        self.daemon = subprocess.Popen([os.path.join(bindir, "tarvikd")], env=self.env,
                                       stdout=subprocess.PIPE, stderr=self.log)
        if self.daemon.stdout.readline().strip() != b"ready":
            sys.exit("tarvikd did not come up; see " + self.log.name)
        self.database = os.path.join(self.home, ".tarvik", "tarvikdb.sqlite")
        self.db = sqlite3.connect(self.database, timeout=10)

    def signal(self, name):
        subprocess.run(["dbus-send", "--session", "--type=signal", "/com/qel/tarvik",
                        "com.qel.TarvikClient." + name], env=self.env, check=True)

    def register(self):
        self.db.execute("UPDATE settings SET value=? WHERE name='mynumber'", (self.number,))
        self.db.execute("UPDATE settings SET value='Bench' WHERE name='screenname'")
        self.db.commit()
        self.signal("RegistrationRequest")
        deadline = time.monotonic() + 30
        while time.monotonic() < deadline:
            if self.db.execute("SELECT value FROM settings WHERE name='regflag'"
                               ).fetchone()[0] == "1":
                return
            time.sleep(0.05)
        sys.exit("registration of %s failed; see %s" % (self.number, self.log.name))

    def memory(self):
        """Resident, proportional (shared pages divided among their users) and private
        anonymous memory, in MB."""
        values = {}
        for name in ("status", "smaps_rollup"):
            with open("/proc/%d/%s" % (self.daemon.pid, name)) as f:
                for line in f:
                    key, _, rest = line.partition(":")
                    if key in ("VmRSS", "Pss", "RssAnon"):
                        values[key] = int(rest.split()[0]) / 1024.0
        return "resident %.1f MB (proportional %.1f MB, own heap and stacks %.1f MB)" % (
            values.get("VmRSS", 0), values.get("Pss", 0), values.get("RssAnon", 0))

    def switches(self):
        """Context switches of all the daemon's threads so far: each one a wake-up."""
        total = 0
        task_dir = "/proc/%d/task" % self.daemon.pid
        for task in os.listdir(task_dir):
            try:
                with open(os.path.join(task_dir, task, "status")) as f:
                    for line in f:
                        key, _, rest = line.partition(":")
                        if key in ("voluntary_ctxt_switches", "nonvoluntary_ctxt_switches"):
                            total += int(rest)
            except OSError:
                pass  # a thread that ended meanwhile
        return total

    def wakeups(self, seconds):
        """Wake-ups per minute over `seconds` of doing nothing."""
        before = self.switches()
        time.sleep(seconds)
        return (self.switches() - before) * 60.0 / seconds

    def close(self):
        self.db.close()
        self.daemon.terminate()
        self.daemon.wait(10)
        subprocess.run(["kill", self.bus_pid], check=False)
        shutil.rmtree(self.home, ignore_errors=True)


def percentile(values, p):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(round(p / 100.0 * (len(ordered) - 1))))]


def tarvikd_round(sender, receiver, count, round_no):
    sender.db.executemany(
        "INSERT INTO outbox (tguid, tfrom, tto, tutcdatetime, ttz, ttitle, tnote, tlatitude,"
        " tlongitude, tscreenname, taddress, tcarrier, tversion, tflag) VALUES"
        " ('', ?, ?, strftime('%s','now'), 2, ?, 'Meet me at the tree by the old town hall',"
        " 59.4372155, 24.7453688, 'Bench', 'Raekoja plats 1', 'n/a', '1.0.5', 1)",
        [(sender.number, receiver.number, "Round %d message %d" % (round_no, i))
         for i in range(count)])
    sender.db.commit()
    before = receiver.db.execute("SELECT COALESCE(MAX(tid), 0) FROM inbox").fetchone()[0]
    arrivals = []
    start = time.monotonic()
    sender.signal("SendReceiveRequest")
    last = before
    deadline = start + 120
    while len(arrivals) < count and time.monotonic() < deadline:
        rows = receiver.db.execute("SELECT tid FROM inbox WHERE tid > ?", (last,)).fetchall()
        now = time.monotonic()
        for (tid,) in rows:
            arrivals.append((now - start) * 1000.0)
            last = max(last, tid)
        time.sleep(0.002)
    titles = [t for (t,) in receiver.db.execute(
        "SELECT ttitle FROM inbox WHERE tid > ?", (before,)).fetchall()]
    return arrivals, titles


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bindir")
    parser.add_argument("--messages", type=int, default=1000)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--idle-seconds", type=int, default=0,
                        help="also count the idle daemon's wake-ups over this time")
    args = parser.parse_args()

    server_dir = tempfile.mkdtemp(prefix="tarvik-bench-prosody-")
    port = int(subprocess.run([PROSODY, "start", server_dir], capture_output=True, text=True,
                              check=True).stdout.split()[-1])
    users = []
    status = 0
    try:
        sender = User(args.bindir, server_dir, port, "+3725551001")
        users.append(sender)
        receiver = User(args.bindir, server_dir, port, "+3725551002")
        users.append(receiver)
        sender.register()
        receiver.register()
        time.sleep(1.0)
        print("tarvikd idle: " + receiver.memory())
        if args.idle_seconds > 0:
            # Online, the client closed (so the server was told it is inactive), nothing
            # to do: only the server, the bus or the network should wake it.
            print("tarvikd idle: %.1f wake-ups per minute over %d s"
                  % (receiver.wakeups(args.idle_seconds), args.idle_seconds))
        for round_no in range(1, args.rounds + 1):
            arrivals, titles = tarvikd_round(sender, receiver, args.messages, round_no)
            lost = args.messages - len(set(titles))
            duplicated = len(titles) - len(set(titles))
            total = max(arrivals) if arrivals else float("nan")
            print("tarvikd round %d: %d messages, %.0f msg/s, median %.1f ms, p99 %.1f ms, "
                  "first %.1f ms, lost %d, duplicated %d"
                  % (round_no, len(arrivals), len(arrivals) / (total / 1000.0),
                     statistics.median(arrivals), percentile(arrivals, 99), min(arrivals), lost, duplicated))
            if lost or duplicated:
                status = 1
            floor = subprocess.run(["/usr/bin/python3", os.path.join(HERE, "floor.py"),
                                    "--dir", server_dir, "-n", str(args.messages)],
                                   capture_output=True, text=True)
            print("   " + (floor.stdout.strip() or floor.stderr.strip()))
            if floor.returncode != 0:
                status = 1
        time.sleep(1.0)
        print("tarvikd idle after the rounds: receiver " + receiver.memory())
        print("                               sender " + sender.memory())
    finally:
        for user in users:
            user.close()
        subprocess.run([PROSODY, "stop", server_dir], check=False)
        shutil.rmtree(server_dir, ignore_errors=True)
    sys.exit(status)


if __name__ == "__main__":
    main()
