#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""The demo friend: answers every tarvik it gets with a tarvik of its own.

  friend.py --dir DIR --jid J --password P [--nick NAME] [--distance M]
            [--tz N] [--client-version TEXT] [--verbose]

Logs in as J on a localprosody.sh server (or --port/--ca/--domain), sends presence
(so tarviks that came while it was away are delivered too) and answers each message
that carries a position (a tarvik element, a geoloc or a geo: URI in the body) with a
tarvik back to the sender: title "Right here", a friendly note, a position about
--distance metres (default 300) north-east of the received one, nick --nick (default
"Friend"). One line per answer on stderr. When the server goes away it logs in again
as soon as the server is back. Stops on SIGINT/SIGTERM.

The answer's id is derived from the sender and the received id, so a tarvik sent
twice gets the same answer id; it is answered once per run. Answers of another
friend are never answered (two friends would otherwise talk forever).
"""

import argparse
import asyncio
import hashlib
import math
import os
import signal
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import tarvikxmpp  # noqa: E402

REPLY_PREFIX = "friend-"
METRES_PER_DEGREE = 111_320.0


def log(text):
    print(f"friend: {text}", file=sys.stderr, flush=True)


def nearby(lat, lon, metres, bearing_deg=45.0):
    """A point about `metres` away on the given bearing, rounded to 6 decimals."""
    b = math.radians(bearing_deg)
    dlat = metres * math.cos(b) / METRES_PER_DEGREE
    dlon = metres * math.sin(b) / (METRES_PER_DEGREE * max(math.cos(math.radians(lat)), 0.01))
    lat2 = lat + dlat if lat + dlat <= 90.0 else lat - dlat
    lon2 = lon + dlon
    if lon2 > 180.0:
        lon2 -= 360.0
    return round(lat2, 6), round(lon2, 6)


def address_of(bare_jid, domain):
    """The sender as the client writes recipients: +digits for a phone-number account
    of our domain, else the bare JID."""
    local, _, host = bare_jid.partition("@")
    if host.lower() == domain.lower() and local.isdigit():
        return "+" + local
    return bare_jid


def reply_id(sender, received_id, body):
    key = f"{sender}\x1f{received_id or body}".encode("utf-8")
    return REPLY_PREFIX + hashlib.sha1(key).hexdigest()[:24]


class Friend:
    def __init__(self, args, server):
        self.args = args
        self.server = server
        self.answered = set()
        self.own = tarvikxmpp.full_jid(args.jid, server).lower()

    def on_message(self, client, msg):
        if msg["type"] not in ("chat", "normal", ""):
            return
        sender = msg["from"].bare
        if sender.lower() == self.own:
            return
        if msg["id"].startswith(REPLY_PREFIX):
            log(f"not answering {sender}: that is a friend's answer")
            return
        tarvik = tarvikxmpp.read_tarvik(msg.xml)
        if tarvik is None:
            log(f"not answering {sender}: no position in message {msg['id']!r}")
            return
        answer_id = reply_id(sender, msg["id"], msg["body"])
        if answer_id in self.answered:
            log(f"already answered {sender}'s {msg['id']!r}")
            return
        lat, lon = nearby(tarvik["lat"], tarvik["lon"], self.args.distance)
        got = f'Got your "{tarvik["title"]}"' if tarvik["title"] else "Got your tarvik"
        fields = {
            "title": "Right here",
            "note": f"{got}. I'm about {self.args.distance:g} m north-east of you, come over!",
            "lat": lat,
            "lon": lon,
            "time": tarvikxmpp.now_utc(),
            "tz": self.args.tz,
            "to": address_of(sender, self.server.domain),
            "version": self.args.client_version,
        }
        client.send_raw(tarvikxmpp.tarvik_stanza(sender, answer_id, fields, self.args.nick))
        self.answered.add(answer_id)
        received = tarvikxmpp.geo_uri(tarvik["lat"], tarvik["lon"])
        log(f"answered {sender} ({msg['id']!r} at {received}) with {answer_id} at "
            f"{tarvikxmpp.geo_uri(lat, lon)}")

    async def serve(self, stop):
        loop = asyncio.get_running_loop()
        delay = 0.2
        while not stop.done():
            client = tarvikxmpp.new_client(self.args.jid, self.args.password, self.server,
                                           plugins=())
            lost = loop.create_future()
            client.add_event_handler("message", lambda m, c=client: self.on_message(c, m))
            client.add_event_handler("session_start", lambda _, c=client: c.send_presence())
            try:
                await tarvikxmpp.start_session(client, self.server, 5.0)
            except tarvikxmpp.SessionError as e:
                log(f"no session ({e}); trying again in {delay:g} s")
                await asyncio.wait([stop], timeout=delay)
                delay = min(delay * 2, 5.0)
                continue
            client.add_event_handler("disconnected",
                                     lambda _, f=lost: f.done() or f.set_result(None))
            log(f"online as {client.boundjid.full}")
            delay = 0.2
            await asyncio.wait([stop, lost], return_when=asyncio.FIRST_COMPLETED)
            if stop.done():
                await tarvikxmpp.close(client)
            else:
                log("connection lost; logging in again")


async def main_async(args, server):
    loop = asyncio.get_running_loop()
    stop = loop.create_future()
    for sig in (signal.SIGINT, signal.SIGTERM):
        loop.add_signal_handler(sig, lambda: stop.done() or stop.set_result(None))
    await Friend(args, server).serve(stop)
    log("stopped")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    tarvikxmpp.add_server_args(parser)
    parser.add_argument("--jid", required=True)
    parser.add_argument("--password", required=True)
    parser.add_argument("--nick", default="Friend")
    parser.add_argument("--distance", type=float, default=300.0,
                        help="metres between the received position and the answer's")
    parser.add_argument("--tz", type=int, default=0, help="tz value sent in the answers")
    parser.add_argument("--client-version", default="1.0.5",
                        help="version value sent in the answers")
    parser.add_argument("--verbose", action="store_true", help="slixmpp debug log on stderr")
    args = parser.parse_args()
    server = tarvikxmpp.server_from_args(parser, args)
    tarvikxmpp.setup_logging(args.verbose)
    return tarvikxmpp.run(main_async(args, server))


if __name__ == "__main__":
    sys.exit(main())
