# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""New messages reach a real notification server (dunst) while tarvik is in the back, and
the inbox left open behind another window lists each message once."""

import json
import os
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Session, check, run, wait_for  # noqa: E402


def start_dunst(session):
    dunst = session._spawn(["dunst"], session.env)
    # Ask the bus, not dunst: a call to the notification name before our dunst owns it
    # would have the bus start a second one.
    wait_for(lambda: session.owner_pid("org.freedesktop.Notifications"), 10, "dunst on the bus")
    return dunst


def displayed(session):
    out = subprocess.run(["dunstctl", "count", "displayed"], env=session.env,
                         capture_output=True, text=True)
    return out.returncode == 0 and out.stdout.strip() not in ("", "0")


def history(session):
    out = subprocess.run(["dunstctl", "history"], env=session.env, capture_output=True,
                         text=True)
    if out.returncode != 0:
        return []
    return [n for group in json.loads(out.stdout)["data"] for n in group]


def check_one_notification(session, dunst, sender):
    """Dunst showed one notification, tarvik's, naming `sender` without its markup."""
    shown = wait_for(lambda: history(session), 10, "the notification in dunst's history")
    check(len(shown) == 1, "%d notifications instead of one" % len(shown))
    note = shown[0]
    check(note["appname"]["data"] == "tarvik", "app name %r" % note["appname"])
    check(note["summary"]["data"] == "New tarviks received", "summary %r" % note["summary"])
    check(sender in note["body"]["data"] and "<b>" not in note["body"]["data"],
          "body %r" % note["body"]["data"])
    check(dunst.poll() is None, "dunst ended (%r): %s" % (dunst.poll(), session._tail("dunst.log")))


def test_dunst_shows_senders(bindir):
    incoming = [{"from": "+447700900555", "screenname": "<b>Mallory</b>", "title": "Hi",
                 "note": "n", "latitude": 60.1, "longitude": 24.9}]
    with Session(bindir, sim_args=["--register-at-start", "--delay", "50"], incoming=incoming,
                 start_client=False) as s:
        dunst = start_dunst(s)
        s.launch()
        s.wait_title("tarvik")
        # The inbox stays open while another window takes the focus, as when the user works
        # elsewhere; the notifier then reads the inbox too.
        s.click(s.find("list item", "Inbox"))
        s.wait_title("tarvik - Inbox")
        s.focus_elsewhere()
        s.deliver()
        wait_for(lambda: displayed(s), 10, "a notification on screen at dunst")
        s.screenshot(os.path.join(s.tmp, "notification.png"))
        if os.environ.get("TARVIK_SHOTS"):
            s.screenshot(os.path.join(os.environ["TARVIK_SHOTS"], "notification.png"))
        subprocess.run(["dunstctl", "close-all"], env=s.env, check=True)
        check_one_notification(s, dunst, "Mallory")

        # The notifier's read of the inbox has long been answered: once the window's own
        # notice is tapped away, the list shows each stored message once.
        s.tap_away("label", "New tarviks received")
        stored = s.rows("inbox")
        s.wait_title("tarvik - Inbox (%d)" % len(stored))
        wanted = [r["tscreenname"] + ", " + r["ttitle"] for r in stored]
        listed = [n for n in s.names("list item") if ", " in n]
        check(sorted(listed) == sorted(wanted), "the inbox lists %r, stored %r" % (listed, wanted))


if __name__ == "__main__":
    run([test_dunst_shows_senders])
