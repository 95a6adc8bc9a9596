# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""First start with registration, sending a message, and a daemon that never answers,
driven through the accessibility bus."""

import datetime
import os
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Session, check, run, wait_for  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
TRACK = os.path.join(HERE, "..", "gps", "data", "track.nmea")


def nmea_checksum(body):
    value = 0
    for ch in body.encode():
        value ^= ch
    return "%02X" % value


def stamped_track(directory=None):
    """A handset standing still at the first fix of the recorded track, stamped from now
    on (so no fix counts as stale) for a minute; and that position, decoded from the GGA
    sentence. Whichever fix the engine settles on, the position is the same."""
    now = datetime.datetime.now(datetime.timezone.utc)
    lines = [line.strip() for line in open(TRACK) if line.strip()]
    gga = next(line for line in lines if line[3:6] == "GGA")
    rmc = next(line for line in lines if line[3:6] == "RMC")
    f = gga[1:gga.index("*")].split(",")
    lat = int(f[2][:2]) + float(f[2][2:]) / 60.0
    lon = int(f[4][:3]) + float(f[4][3:]) / 60.0
    fix = (-lat if f[3] == "S" else lat, -lon if f[5] == "W" else lon)
    out = []
    for i in range(60):
        stamp = now + datetime.timedelta(seconds=i)
        for line in (gga, rmc):
            fields = line[1:line.index("*")].split(",")
            fields[1] = stamp.strftime("%H%M%S.00")
            if fields[0].endswith("RMC"):
                fields[9] = stamp.strftime("%d%m%y")
            body = ",".join(fields)
            out.append("$%s*%s" % (body, nmea_checksum(body)))
    path = os.path.join(directory or tempfile.mkdtemp(prefix="tarvik-nmea-"), "track.nmea")
    with open(path, "w") as out_file:
        out_file.write("\r\n".join(out) + "\r\n")
    return path, fix


def label_shown(s, text):
    return bool(s.all("label", text))


def type_into(s, name, text):
    s.click(s.find("text", name))
    s.type_text(text)
    wait_for(lambda: s.text(s.find("text", name)).endswith(text), 5, "%r typed" % text)


def compose_and_send(s, to, subject, note):
    s.click(s.find("list item", "Send a tarvik"))
    s.wait_title("tarvik - Send a tarvik")
    type_into(s, "To:", to)
    type_into(s, "Subject:", subject)
    type_into(s, "Message", note)
    s.click(s.find("push button", "Send"))


def test_first_start_registers(bindir):
    """A fresh start shows the registration form; Continue with empty fields does nothing;
    a number and screen name go through the popup and the daemon's yes ends on the menu;
    the next start goes straight to the menu."""
    with Session(bindir, sim_args=["--register", "succeed", "--delay", "500"]) as s:
        s.wait_title("tarvik")
        cont = s.find("push button", "Continue")
        check(not s.all("push button", "Back"), "a first registration offers Back")
        s.click(cont)
        time.sleep(0.7)
        check(not label_shown(s, "Please wait while your registration is completed.\n"
                                 "It may take up to a minute."),
              "Continue with empty fields opened the popup")
        type_into(s, "What's your phone number?", "+15550123")
        type_into(s, "What's your screen name?", "Ann")
        s.click(cont)
        wait_for(lambda: label_shown(s, "Please wait while your registration is completed.\n"
                                        "It may take up to a minute."), 10,
                 "the registration popup")
        s.find("list item", "Send a tarvik", timeout=15)
        wait_for(lambda: not s.all("push button", "Continue"), 10, "the form to close")
        settings = s.settings()
        check(settings.get("mynumber") == "+15550123", "number saved: %r" % settings)
        check(settings.get("screenname") == "Ann", "screen name saved: %r" % settings)
        check(str(settings.get("regflag")) == "1", "the daemon registered: %r" % settings)

        s.quit_client()
        s.launch()
        s.find("list item", "Send a tarvik", timeout=20)
        time.sleep(1.0)
        check(not s.all("push button", "Continue"), "a registered account saw the form again")


def test_send_to_two_recipients(bindir):
    """Send locates, fills the sender fields, queues and asks the daemon; the simulator
    moves the message to sent and the compose form closes."""
    track, fix = stamped_track()
    with Session(bindir, sim_args=["--register-at-start", "--number", "+15550100",
                                   "--screen-name", "Ann", "--delay", "300", "--incoming", "0"],
                 client_env={"TARVIK_NMEA_SOURCE": track}) as s:
        s.wait_title("tarvik")
        before = time.time()
        compose_and_send(s, "+15550111,+15550122", "Lunch?", "At the corner.")
        wait_for(lambda: label_shown(s, "Requesting your current location..."), 10,
                 "the location popup")
        sent = wait_for(lambda: s.rows("sent"), 40, "the message in the sent folder")
        s.wait_title("tarvik", timeout=10)
        check(not s.rows("outbox"), "the outbox is not empty")
        row = sent[0]
        check(row["tto"] == "+15550111,+15550122", "recipients: %r" % row["tto"])
        check(row["ttitle"] == "Lunch?" and row["tnote"] == "At the corner.", "texts: %r" % row)
        check(row["tfrom"] == "+15550100", "tfrom: %r" % row["tfrom"])
        check(row["tscreenname"] == "Ann", "tscreenname: %r" % row["tscreenname"])
        settings = s.settings()
        check((row["treg"] or "") == (settings.get("imei") or ""), "treg: %r" % row["treg"])
        check(row["tversion"] == settings.get("version"), "tversion: %r" % row["tversion"])
        check(abs(float(row["tlatitude"]) - fix[0]) < 1e-6, "latitude %r" % row["tlatitude"])
        check(abs(float(row["tlongitude"]) - fix[1]) < 1e-6, "longitude %r" % row["tlongitude"])
        check(before - 2 <= int(row["tutcdatetime"]) <= time.time() + 2,
              "tutcdatetime %r" % row["tutcdatetime"])


def test_daemon_silent(bindir):
    """A daemon that never answers: after 4000 ms popup and compose form close; the
    message waits in the outbox marked for sending."""
    track, _ = stamped_track()
    with Session(bindir, sim_args=["--register-at-start", "--send", "silent", "--incoming", "0"],
                 client_env={"TARVIK_NMEA_SOURCE": track}) as s:
        s.wait_title("tarvik")
        compose_and_send(s, "+15550111", "Anyone?", "Nobody answers.")
        wait_for(lambda: label_shown(s, "Sending..."), 40, "the request to the daemon")
        # The client's own timer, not the clock of a busy machine, says how long it waited.
        s.wait_title("tarvik", timeout=60)
        check(s.logged("CLocationPopupForm::onCloseTimeout no answer from the daemon within "
                       "4000 ms"), "the popup did not close on its time-out")
        rows = s.rows("outbox")
        check(len(rows) == 1 and rows[0]["tflag"] == 1, "outbox: %r" % rows)
        check(rows[0]["tnote"] == "Nobody answers.", "note: %r" % rows[0]["tnote"])


if __name__ == "__main__":
    run([test_first_start_registers, test_send_to_two_recipients, test_daemon_silent])
