# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""The real client on the real network: registration and a tarvik typed into the client,
carried by tarvikd through a loopback prosody into another user's inbox, and that user's
answer shown in the client's inbox. Driven through the accessibility bus."""

import os
import shutil
import signal
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Session, check, db_execute, db_rows, db_settings, run, wait_for  # noqa: E402
from test_compose import compose_and_send, label_shown, stamped_track, type_into  # noqa: E402
from test_notifications import check_one_notification, displayed, start_dunst  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
PROSODY = os.path.join(HERE, "..", "..", "tools", "xmpp", "localprosody.sh")
OWN_NUMBER = "+37255501001"
FRIEND_NUMBER = "+3725550102"


class Server:
    """A throwaway prosody for one test."""

    def __init__(self):
        self.dir = tempfile.mkdtemp(prefix="tarvik-prosody-")

    def __enter__(self):
        self.port = int(subprocess.run([PROSODY, "start", self.dir], capture_output=True,
                                       text=True, check=True).stdout.split()[-1])
        return self

    def __exit__(self, *exc):
        subprocess.run([PROSODY, "stop", self.dir], check=False)
        shutil.rmtree(self.dir, ignore_errors=True)
        return False

    def env(self):
        return {"TARVIK_XMPP_DOMAIN": "tarvik.localhost",
                "TARVIK_XMPP_SERVER": "127.0.0.1:%d" % self.port,
                "TARVIK_XMPP_CA_FILE": os.path.join(self.dir, "ca.pem")}


def register(database, env, number, name):
    """Registers the account of the daemon on the bus of `env` as its client would: the
    number and name saved, then the request."""
    db_execute(database, "UPDATE settings SET value=? WHERE name='mynumber'", (number,))
    db_execute(database, "UPDATE settings SET value=? WHERE name='screenname'", (name,))
    subprocess.run(["dbus-send", "--session", "--type=signal", "/com/qel/tarvik",
                    "com.qel.TarvikClient.RegistrationRequest"], env=env, check=True)
    wait_for(lambda: str(db_settings(database).get("regflag")) == "1", 30,
             "the registration of %s" % number)


class Friend:
    """Another tarvik user: a daemon of its own on a bus of its own, no client."""

    def __init__(self, bindir, server):
        self.home = tempfile.mkdtemp(prefix="tarvik-friend-")
        self.env = dict(os.environ, HOME=self.home,
                        XDG_CONFIG_HOME=os.path.join(self.home, ".config"), **server.env())
        out = subprocess.run(["dbus-daemon", "--session", "--fork", "--print-address=1",
                              "--print-pid=1"], capture_output=True, text=True, check=True)
        address, self.bus_pid = out.stdout.split()[:2]
        self.env["DBUS_SESSION_BUS_ADDRESS"] = address
        self.log = open(os.path.join(self.home, "tarvikd.log"), "wb")
        self.daemon = subprocess.Popen([os.path.join(bindir, "tarvikd")], env=self.env,
                                       stdout=subprocess.PIPE, stderr=self.log)
        check(self.daemon.stdout.readline().strip() == b"ready", "the friend's daemon is up")
        self.database = os.path.join(self.home, ".tarvik", "tarvikdb.sqlite")

    def close(self):
        self.daemon.terminate()
        self.daemon.wait(10)
        subprocess.run(["kill", self.bus_pid], check=False)
        shutil.rmtree(self.home, ignore_errors=True)

    def rows(self, folder):
        return db_rows(self.database, folder)

    def send(self, title, note, screenname):
        """Queues a tarvik to the client's account and has the daemon send it."""
        db_execute(self.database, "INSERT INTO outbox (tguid, tfrom, tto, tutcdatetime, ttz,"
                   " ttitle, tnote, tlatitude, tlongitude, tscreenname, tcarrier, tflag) VALUES"
                   " ('', ?, ?, strftime('%s','now'), 0, ?, ?, 59.44, 24.75, ?, 'n/a', 1)",
                   (FRIEND_NUMBER, OWN_NUMBER, title, note, screenname))
        subprocess.run(["dbus-send", "--session", "--type=signal", "/com/qel/tarvik",
                        "com.qel.TarvikClient.SendReceiveRequest"], env=self.env, check=True)


def test_send_and_answer_over_xmpp(bindir):
    """Register through the form, send to a friend by number; the friend's inbox gets the
    tarvik with its texts and position, and the friend's answer lands in the client's
    inbox, announced by the popup."""
    track, fix = stamped_track()
    with Server() as server:
        friend = Friend(bindir, server)
        try:
            register(friend.database, friend.env, FRIEND_NUMBER, "Friend")
            with Session(bindir, daemon="tarvikd", daemon_env=server.env(),
                         client_env={"TARVIK_NMEA_SOURCE": track}) as s:
                s.wait_title("tarvik")
                type_into(s, "What's your phone number?", OWN_NUMBER)
                type_into(s, "What's your screen name?", "Ann")
                s.click(s.find("push button", "Continue"))
                s.find("list item", "Send a tarvik", timeout=60)
                wait_for(lambda: not s.all("push button", "Continue"), 10, "the form to close")
                check(str(s.settings().get("regflag")) == "1", "registered: %r" % s.settings())

                compose_and_send(s, FRIEND_NUMBER, "Lunch <today>?", "At the corner & soon.")
                got = wait_for(lambda: friend.rows("inbox"), 60, "the tarvik at the friend's")
                row = got[0]
                check(row["tfrom"] == OWN_NUMBER, "from: %r" % row["tfrom"])
                check(row["ttitle"] == "Lunch <today>?", "title: %r" % row["ttitle"])
                check(row["tnote"] == "At the corner & soon.", "note: %r" % row["tnote"])
                check(row["tscreenname"] == "Ann", "screen name: %r" % row["tscreenname"])
                check(abs(float(row["tlatitude"]) - fix[0]) < 1e-6, "lat %r" % row["tlatitude"])
                check(abs(float(row["tlongitude"]) - fix[1]) < 1e-6, "lon %r" % row["tlongitude"])
                check(not (row["treg"] or ""), "the IMEI travelled: %r" % row["treg"])
                wait_for(lambda: s.rows("sent") and not s.rows("outbox"), 20,
                         "the message moved to the client's sent folder")

                friend.send("On my way", "Five minutes", "Friend")
                answer = wait_for(lambda: s.rows("inbox"), 30, "the answer in the client's inbox")
                check(answer[0]["ttitle"] == "On my way", "answer: %r" % answer[0])
                check(answer[0]["tfrom"] == FRIEND_NUMBER, "from: %r" % answer[0]["tfrom"])
                wait_for(lambda: label_shown(s, "New tarviks received"), 20,
                         "the client announcing the answer")
        finally:
            friend.close()


def test_announced_while_closed(bindir):
    """No client runs: the daemon announces a tarvik from the friend at a real notification
    server (dunst), naming the sender as the client does; taking the notification has the
    bus start the client, which shows its inbox."""
    with Server() as server:
        friend = Friend(bindir, server)
        try:
            register(friend.database, friend.env, FRIEND_NUMBER, "Friend")
            with Session(bindir, daemon="tarvikd", daemon_env=server.env(),
                         start_client=False) as s:
                # The client as a desktop has it: a bus service file, and the session's
                # environment for what the bus starts.
                services = os.path.join(s.tmp, "dbus-1", "services")
                os.makedirs(services, exist_ok=True)
                with open(os.path.join(services, "com.qel.tarvik.service"), "w") as f:
                    f.write("[D-BUS Service]\nName=com.qel.tarvik\nExec=%s\n"
                            % os.path.abspath(os.path.join(bindir, "tarvik")))
                subprocess.run(["dbus-update-activation-environment", "--all"], env=s.env,
                               check=True)
                register(s.database, s.env, OWN_NUMBER, "Ann")
                dunst = start_dunst(s)
                friend.send("Still up?", "Look outside", "<b>Friend</b>")
                wait_for(lambda: s.rows("inbox"), 30, "the tarvik in the inbox")
                wait_for(lambda: displayed(s), 10, "the notification on screen at dunst")
                s.screenshot(os.path.join(s.tmp, "daemon-notification.png"))
                if os.environ.get("TARVIK_SHOTS"):
                    s.screenshot(os.path.join(os.environ["TARVIK_SHOTS"],
                                              "daemon-notification.png"))
                check(s.owner_pid("com.qel.tarvik") is None, "a client runs already")

                subprocess.run(["dunstctl", "action", "0"], env=s.env, check=True)
                client = wait_for(lambda: s.owner_pid("com.qel.tarvik"), 30,
                                  "the client started by the bus")
                try:
                    exe = os.readlink("/proc/%d/exe" % client)
                    check(exe == os.path.abspath(os.path.join(bindir, "tarvik")),
                          "the bus started %s" % exe)
                    s.app = wait_for(s._find_app, 30, "the client on the accessibility bus")
                    # On the inbox, with the tarvik in it.
                    s.wait_title("tarvik - Inbox (1)", 30)
                    check_one_notification(s, dunst, "Friend")
                finally:
                    _end(client)
        finally:
            friend.close()


def _end(pid):
    """Ends a process that is not our child (the bus started it)."""
    try:
        os.kill(pid, signal.SIGTERM)
        wait_for(lambda: not os.path.exists("/proc/%d" % pid)
                 or "State:\tZ" in open("/proc/%d/status" % pid).read(), 30,
                 "the client to end")
    except (ProcessLookupError, FileNotFoundError):
        pass


if __name__ == "__main__":
    run([test_send_and_answer_over_xmpp, test_announced_while_closed])
