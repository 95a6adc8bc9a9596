# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Screenshots of the folder screens and the message view, for people to look at.

Usage: /usr/bin/python3 tools/screenshots/folders.py <bindir> <outdir>
"""

import os
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tests/e2e"))
from tarvikui import Session  # noqa: E402


def main():
    bindir, outdir = sys.argv[1], sys.argv[2]
    os.makedirs(outdir, exist_ok=True)
    with Session(bindir, sim_args=["--register-at-start", "--seed-demo", "--delay", "50"]) as s:
        s.wait_title("tarvik")
        long_name = "Maximilian-Alexander von Habsburg-Lothringen-Wittelsbach the Third"
        s.execute("UPDATE inbox SET tscreenname = ? WHERE tid = (SELECT MIN(tid) FROM inbox)",
                  (long_name,))
        s.execute("UPDATE outbox SET tflag = 0 WHERE tid = (SELECT MIN(tid) FROM outbox)")
        s.execute("INSERT INTO outbox (tfrom, tto, tutcdatetime, ttitle, tnote, tflag) "
                  "SELECT tfrom, '+447700900123', tutcdatetime + 60000, 'On my way', tnote, 1 "
                  "FROM outbox LIMIT 1")

        def shot(name):
            time.sleep(0.4)
            s.screenshot(os.path.join(outdir, name + ".png"))

        s.click(s.find("list item", "Inbox"))
        s.wait_title("tarvik - Inbox (%d)" % len(s.rows("inbox")))
        shot("inbox")
        first = s.rows("inbox", "tscreenname = ?", (long_name,))[0]
        s.click(s.find("list item", first["tscreenname"] + ", " + first["ttitle"]), double=True)
        s.wait_title("tarvik - Message")
        shot("view-received")
        import pyatspi
        label = s.find("label", "Subject:")
        x, y = s.centre(label)
        pyatspi.Registry.generateMouseEvent(x, y + 60, "b3c")
        shot("view-menu")
        pyatspi.Registry.generateKeyboardEvent(9, None, pyatspi.KEY_PRESSRELEASE)  # Escape
        s.click(s.find("push button", "Back"))
        s.click(s.find("push button", "Back"))
        s.wait_title("tarvik")

        s.click(s.find("list item", "Outbox"))
        s.wait_title("tarvik - Outbox (%d)" % len(s.rows("outbox")))
        shot("outbox")
        s.click(s.find("push button", "Back"))
        s.wait_title("tarvik")

        s.click(s.find("list item", "Sent tarviks"))
        s.wait_title("tarvik - Sent (%d)" % len(s.rows("sent")))
        shot("sent")
        row = s.rows("sent")[0]
        s.click(s.find("list item", row["tto"] + ", " + row["ttitle"]), double=True)
        s.wait_title("tarvik - Message")
        shot("view-sent")
        s.click(s.find("push button", "Back"))
        s.wait_title("tarvik - Sent (%d)" % len(s.rows("sent")))
        s.click(s.find("push button", "Delete All"))
        s.wait_title("tarvik - Sent")
        shot("empty")


if __name__ == "__main__":
    main()
