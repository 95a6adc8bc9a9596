#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Benchmark floor for tarvikd: what a loopback prosody and a plain slixmpp client
manage, so the daemon's own figures have something to be compared with.

  bench/xmpp/floor.py --dir DIR [-n N] [--window W] [--timeout S]
                      [--sender J --sender-password P --receiver J --receiver-password P]

DIR is a running tools/xmpp/localprosody.sh server. Two accounts (by default floor-a
and floor-b, registered here through localprosody.sh) log in; the receiver goes
online, then the sender sends N (default 1000) chat messages shaped like tarvik
stanzas to it, as fast as the connection takes them (--window W: at most W not yet
received at a time; 0, the default, means no limit). Prints

  floor: N messages, X msg/s, median Y ms, p99 Z ms

msg/s: N over the time from the first send to the last receipt; latency: from handing
a stanza to the socket to the receiver's handler seeing it (one process, one clock).
Exits 1 when a message was lost, duplicated or changed on the way, 2 when an account
could not log in.
"""

import argparse
import asyncio
import os
import secrets
import statistics
import subprocess
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.join(HERE, "..", "..", "tools", "xmpp")
sys.path.insert(0, TOOLS)
import tarvikxmpp  # noqa: E402
from slixmpp.exceptions import IqError, IqTimeout  # noqa: E402


def register(directory, user, password):
    subprocess.run([os.path.join(TOOLS, "localprosody.sh"), "register", directory, user, password],
                   check=True)


def make_stanzas(count, to, run_tag):
    """N different, realistic tarvik stanzas: {id: xml}."""
    when = tarvikxmpp.now_utc()
    stanzas = {}
    for i in range(count):
        stanza_id = f"floor-{run_tag}-{i}"
        fields = {
            "title": f"Coffee at the square #{i}",
            "note": "Table by the window, see you in 10 min. Bring the map & the keys <3",
            "lat": 59.4369608 + i * 1e-6,
            "lon": 24.7535747 - i * 1e-6,
            "time": when,
            "tz": 2,
            "to": "+447700900200",
            "address": "Raekoja plats 1, 10146 Tallinn",
            "type": "1",
            "typedesc": "meeting point",
            "priority": 1,
            "color": "#3070ff",
            "country": 248,
            "carrier": "n/a",
            "version": "1.0.5",
        }
        stanzas[stanza_id] = tarvikxmpp.tarvik_stanza(to, stanza_id, fields, nick="Demo")
    return stanzas


def percentile(sorted_values, p):
    """Nearest-rank percentile."""
    rank = max(1, -(-len(sorted_values) * p // 100))
    return sorted_values[int(rank) - 1]


async def bench(args, server):
    loop = asyncio.get_running_loop()
    sender = tarvikxmpp.new_client(args.sender, args.sender_password, server)
    receiver = tarvikxmpp.new_client(args.receiver, args.receiver_password, server)
    to = tarvikxmpp.full_jid(args.receiver, server)
    run_tag = secrets.token_hex(4)
    stanzas = make_stanzas(args.count, to, run_tag)
    bodies = {}
    sent_at, received_at = {}, {}
    duplicates, changed, stray = [], [], 0
    all_in = loop.create_future()
    window = asyncio.Semaphore(args.window) if args.window > 0 else None

    def on_message(msg):
        nonlocal stray
        now = time.perf_counter()
        stanza_id = msg["id"]
        if stanza_id not in stanzas:
            stray += 1  # e.g. left offline by an earlier, interrupted run
            return
        if stanza_id in received_at:
            duplicates.append(stanza_id)
            return
        received_at[stanza_id] = now
        if msg["body"] != bodies[stanza_id]:
            changed.append(stanza_id)
        if window:
            window.release()
        if len(received_at) == args.count and not all_in.done():
            all_in.set_result(None)

    receiver.add_event_handler("message", on_message)
    await tarvikxmpp.start_session(receiver, server)
    receiver.send_presence()
    await tarvikxmpp.ping_server(receiver, server)  # the presence has been processed
    await tarvikxmpp.start_session(sender, server)

    for stanza_id, xml in stanzas.items():
        start = xml.index("<body>") + len("<body>")
        bodies[stanza_id] = xml[start:xml.index("</body>")].replace("&lt;", "<").replace(
            "&gt;", ">").replace("&amp;", "&")

    for stanza_id, xml in stanzas.items():
        if window:
            await window.acquire()
        sent_at[stanza_id] = time.perf_counter()
        sender.send_raw(xml)
        if not window and len(sent_at) % 100 == 0:
            await asyncio.sleep(0)  # let the receiver read while the sender writes
    try:
        await asyncio.wait_for(all_in, args.timeout)
    except asyncio.TimeoutError:
        pass
    # Anything duplicated would come right behind the last original.
    try:
        await tarvikxmpp.ping_server(sender, server, 5.0)
        await tarvikxmpp.ping_server(receiver, server, 5.0)
    except (IqError, IqTimeout):
        pass
    await asyncio.sleep(0.2)
    await tarvikxmpp.close(sender)
    await tarvikxmpp.close(receiver)

    lost = [i for i in stanzas if i not in received_at]
    if received_at:
        first_send = min(sent_at.values())
        last_receipt = max(received_at.values())
        latencies = sorted((received_at[i] - sent_at[i]) * 1000.0 for i in received_at)
        rate = len(received_at) / (last_receipt - first_send)
        got = (f"{args.count}" if len(received_at) == args.count
               else f"{len(received_at)} of {args.count}")
        print(f"floor: {got} messages, {rate:.0f} msg/s, "
              f"median {statistics.median(latencies):.1f} ms, "
              f"p99 {percentile(latencies, 99):.1f} ms")
    if stray:
        print(f"floor: ignored {stray} messages of an earlier run", file=sys.stderr)
    failed = False
    for what, ids in (("lost", lost), ("duplicated", duplicates), ("changed", changed)):
        if ids:
            print(f"floor: {len(ids)} {what}, e.g. {ids[:3]}", file=sys.stderr)
            failed = True
    return 1 if failed else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    tarvikxmpp.add_server_args(parser)
    parser.add_argument("-n", "--count", type=int, default=1000)
    parser.add_argument("--window", type=int, default=0)
    parser.add_argument("--timeout", type=float, default=30.0,
                        help="seconds to wait for all messages after the last send")
    parser.add_argument("--sender")
    parser.add_argument("--sender-password")
    parser.add_argument("--receiver")
    parser.add_argument("--receiver-password")
    parser.add_argument("--verbose", action="store_true", help="slixmpp debug log on stderr")
    args = parser.parse_args()
    server = tarvikxmpp.server_from_args(parser, args)
    if args.count <= 0:
        parser.error("-n must be positive")
    for role, user in (("sender", "floor-a"), ("receiver", "floor-b")):
        if getattr(args, role) is None:
            if not args.dir:
                parser.error(f"--{role} and --{role}-password, or --dir to register one")
            password = secrets.token_hex(8)
            register(args.dir, user, password)
            setattr(args, role, user)
            setattr(args, f"{role}_password", password)
        elif getattr(args, f"{role}_password") is None:
            parser.error(f"--{role} needs --{role}-password")
    tarvikxmpp.setup_logging(args.verbose)
    try:
        return tarvikxmpp.run(bench(args, server))
    except tarvikxmpp.SessionError as e:
        print(f"floor: {e}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
