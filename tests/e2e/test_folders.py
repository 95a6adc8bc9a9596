# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Folder screens and the message view, driven through the accessibility bus."""

import os
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import HttpServer, Session, check, run, wait_for  # noqa: E402


def hostile_messages(url):
    return [{
        "from": "+447700900555",
        "screenname": '<b>Mallory</b><img src="%s/name.png">' % url,
        "title": '<a href="%s/title">click</a><script>alert(1)</script>' % url,
        "note": 'Line one\n<img src="%s/note.png"> & <i>not italic</i>\n<table><tr><td>x' % url,
        "latitude": 60.169857,
        "longitude": 24.938379,
    }]


def test_inbox_refreshes_opens_and_marks_read(bindir):
    """The inbox follows the daemon, a double click opens an entry whose fields read back
    literally (markup included) and nothing is fetched; Back finds the message read."""
    server = HttpServer()  # markup in a message must never make the client fetch anything
    with Session(bindir, sim_args=["--register-at-start", "--delay", "50"],
                 incoming=hostile_messages(server.url)) as s:
        s.wait_title("tarvik")
        s.click(s.find("list item", "Inbox"))
        s.wait_title("tarvik - Inbox")
        check(s.find("push button", "Open").name and not s.enabled(s.find("push button", "Open")),
              "Open is enabled with nothing selected")

        s.deliver()
        row = wait_for(lambda: s.rows("inbox"), 10, "the delivered message in the database")[0]
        check(row["tflag"] == 1, "a delivered message is unread")
        entry_name = row["tscreenname"] + ", " + row["ttitle"]
        entry = s.find("list item", entry_name)
        # The shell announces the new message over the list; a tap closes the notice.
        s.find("label", "New tarviks received")
        s.tap_away("label", "New tarviks received")
        s.wait_title("tarvik - Inbox (1)")

        s.click(entry, double=True)
        s.wait_title("tarvik - Message")
        fields = {name: s.text(s.find("text", name)) for name in ("From", "Subject")}
        check(fields["From"] == "%s ( %s )" % (row["tscreenname"], row["tfrom"]),
              "From reads %r" % fields["From"])
        check(fields["Subject"] == row["ttitle"], "Subject reads %r" % fields["Subject"])
        note = s.text(s.find("text", "tarvik - Message"))
        check(note == row["tnote"], "the message text reads %r" % note)
        check(s.text(s.find("text", "Date")).strip() != "", "the date is empty")

        wait_for(lambda: s.rows("inbox")[0]["tflag"] == 0, 10, "the message saved as read")
        s.click(s.find("push button", "Back"))
        s.wait_title("tarvik - Inbox (1)")
        s.find("list item", entry_name)
        check(server.paths == [], "the client fetched %r" % server.paths)
    server.close()


def test_delete_and_delete_all(bindir):
    """Delete needs a selection; Delete All empties the folder; the empty list says so."""
    with Session(bindir, sim_args=["--register-at-start", "--seed-demo", "--delay", "50"]) as s:
        s.wait_title("tarvik")
        before = s.rows("inbox")
        check(len(before) >= 2, "the demo inbox has %d messages" % len(before))
        s.click(s.find("list item", "Inbox"))
        s.wait_title("tarvik - Inbox (%d)" % len(before))
        delete = s.find("push button", "Delete")
        check(not s.enabled(delete), "Delete is enabled with nothing selected")
        victim = before[0]
        s.click(s.find("list item", victim["tscreenname"] + ", " + victim["ttitle"]))
        wait_for(lambda: s.enabled(s.find("push button", "Delete")), 5, "Delete enabled")
        s.click(s.find("push button", "Delete"))
        s.wait_title("tarvik - Inbox (%d)" % (len(before) - 1))
        check([r["tid"] for r in s.rows("inbox")] == [r["tid"] for r in before[1:]],
              "Delete removed other messages than the selected one")
        wait_for(lambda: s.enabled(s.find("push button", "Delete All")), 5, "Delete All")
        time.sleep(0.6)  # a second tap within half a second of the first is dropped
        s.click(s.find("push button", "Delete All"))
        s.wait_title("tarvik - Inbox")
        check(s.rows("inbox") == [], "Delete All left messages")
        check(not s.enabled(s.find("push button", "Delete All")), "Delete All stays enabled")


if __name__ == "__main__":
    run([test_inbox_refreshes_opens_and_marks_read, test_delete_and_delete_all])
