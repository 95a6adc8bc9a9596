# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""The screens as the client wires them together: a received message read, answered and
forwarded, both queued field by field; a sent message opened; Back on every folder and
on compose; Send/Receive from the inbox with a daemon that never answers and with a
database it cannot read."""

import json
import os
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Session, check, run, wait_for  # noqa: E402
from test_compose import stamped_track, type_into  # noqa: E402
from test_faults import locked, wait_label, wait_log  # noqa: E402
from test_map import back_to, open_delivered  # noqa: E402

IMEI = "356938035643809"
ORIGIN = {"from": "+447700900555", "screenname": "Aino", "title": "Here", "note": "Come over",
          "latitude": 60.169857, "longitude": 24.938379}
REGISTERED = ["--register-at-start", "--number", "+15550100", "--screen-name", "Ann",
              "--send", "silent", "--incoming", "0", "--delay", "50"]


def send_from_compose(s, subject):
    """Sends the compose form on screen and waits until the silent daemon's time-out has
    closed it and the message view is back."""
    before = len(s.rows("outbox"))
    s.click(s.find("push button", "Send"))
    wait_for(lambda: len(s.rows("outbox")) == before + 1, 40, "%r queued" % subject)
    s.wait_title("tarvik - Message", 60)


def test_read_reply_forward_and_folders(bindir):
    tmp = tempfile.mkdtemp(prefix="tarvik-flow-")
    track, fix = stamped_track(tmp)
    incoming = os.path.join(tmp, "incoming.json")
    with open(incoming, "w") as f:
        json.dump([ORIGIN], f)
    # The SIM answers before the database is made, so that it carries the IMEI.
    with Session(bindir, sim_args=[], start_client=False,
                 client_env={"TARVIK_NMEA_SOURCE": track}) as s:
        s.spawn_ready([os.path.join(bindir, "tarvik-fakes"), "--sim", IMEI])
        s.restart_sim(REGISTERED + ["--incoming-file", incoming])
        check(s.settings().get("imei") == IMEI, "settings: %r" % s.settings())
        s.launch()
        s.wait_title("tarvik")

        # Reply: Back on compose returns to the message; the second reply is sent.
        open_delivered(s, "Aino, Here")
        s.click(s.find("push button", "Reply"))
        s.wait_title("tarvik - Send a tarvik")
        back_to(s, "tarvik - Message")
        s.click(s.find("push button", "Reply"))
        s.wait_title("tarvik - Send a tarvik")
        send_from_compose(s, "the reply")
        # Forward: the original's position goes with it, not the own one.
        s.click(s.find("push button", "Forward"))
        s.wait_title("tarvik - Send a tarvik")
        type_into(s, "To:", "+15550133")
        send_from_compose(s, "the forward")

        reply, forward = s.rows("outbox")
        own = s.settings()
        for row, to, title, (lat, lon) in (
                (reply, ORIGIN["from"], "RE: Here", fix),
                (forward, "+15550133", "FW: Here", (ORIGIN["latitude"], ORIGIN["longitude"]))):
            check(row["tto"] == to and row["ttitle"] == title, "addressed: %r" % row)
            check(abs(float(row["tlatitude"]) - lat) < 1e-6 and
                  abs(float(row["tlongitude"]) - lon) < 1e-6, "position of %r" % row)
            check(row["treg"] == IMEI, "treg: %r" % row["treg"])
            check(row["tfrom"] == own["mynumber"] and row["tscreenname"] == own["screenname"],
                  "sender: %r" % row)
            check("Come over" in row["tnote"], "the original is not quoted: %r" % row["tnote"])
            check(row["tflag"] == 1, "not marked for sending: %r" % row)
        back_to(s, "tarvik - Inbox (1)")

        # Send/Receive: its text, then the daemon's silence ends it on its own timer.
        s.click(s.find("push button", "Send/Receive"))
        wait_label(s, "Sending/receiving tarviks...")
        s.wait_title("tarvik - Inbox (1)", 60)
        wait_log(s, "CSendReceivePopupForm::onCloseTimeout no answer from the daemon within "
                    "4000 ms")
        # A database it cannot read: the popup says so and a tap takes it away.
        time.sleep(0.6)  # a tap within half a second of the last is dropped
        with locked(s):
            s.click(s.find("push button", "Send/Receive"))
            wait_label(s, "Sending failed", 30)
        s.tap_away("label", "Sending failed")
        back_to(s, "tarvik")

        # A sent message: no Reply and no map, Forward stays; Back on each folder.
        s.execute("INSERT INTO sent (tto, ttitle, tnote, tutcdatetime, tlatitude, tlongitude, "
                  "tflag) VALUES ('+15550144', 'Gone', 'n', 1700000000000, 1.5, 2.5, 0)")
        s.click(s.find("list item", "Sent tarviks"))
        s.wait_title("tarvik - Sent (1)")
        s.click(s.find("list item", "+15550144, Gone"), double=True)
        s.wait_title("tarvik - Message")
        buttons = s.names("push button")
        check("Forward" in buttons and not {"Reply", "Show\non map", "View\nroute"} & set(buttons),
              "a sent message offers %r" % buttons)
        back_to(s, "tarvik - Sent (1)")
        back_to(s, "tarvik")
        for item, title in (("Outbox", "tarvik - Outbox (2)"), ("Inbox", "tarvik - Inbox (1)")):
            s.click(s.find("list item", item))
            s.wait_title(title)
            back_to(s, "tarvik")


if __name__ == "__main__":
    run([test_read_reply_forward_and_folders])
