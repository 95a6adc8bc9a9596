#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""A foreign XMPP client for tarvikd's tests, on a localprosody.sh server.

  xmppclient.py send --dir DIR --jid J --password P --to JID --body TEXT [--id ID]
  xmppclient.py send --dir DIR --jid J --password P --raw-xml FILE_OR_TEXT
      Sends one chat message (or the raw XML as it is, for hostile input), then pings
      the server and exits 0 once the answer came, i.e. the server has taken the
      stanza. Exit 1 when the server closed the stream instead (e.g. on malformed XML).
      Sends no presence, so offline messages for J stay queued.

  xmppclient.py receive --dir DIR --jid J --password P --count N --timeout S
      Sends initial presence (which makes the server deliver offline messages) and
      prints each received message of type chat, normal or none as one JSON line:
      {"from", "id", "type", "body", "xml"} (xml: the whole stanza). Exits 0 once N
      arrived, 1 on time-out (S seconds from the start, login included). Having got N
      it goes unavailable and waits for the server's answer to a ping, printing any
      message that was already on its way, so none is lost: there can be more than N
      lines.

J is a bare JID or a user name (the server's domain is added). Exit 2: no session
(connection refused, certificate not trusted, wrong password). Instead of --dir:
--port, --ca and --domain (--host defaults to 127.0.0.1).
"""

import argparse
import asyncio
import json
import os
import sys

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import tarvikxmpp  # noqa: E402
from slixmpp.exceptions import IqError, IqTimeout  # noqa: E402


def stanza_record(msg):
    return {
        "from": str(msg["from"]),
        "id": msg["id"],
        "type": msg["type"],
        "body": msg["body"],
        "xml": str(msg),
    }


async def run_send(args, server):
    client = tarvikxmpp.new_client(args.jid, args.password, server)
    closed = []
    client.add_event_handler("stream_error",
                             lambda e: closed.append(f"stream error {e['condition']}: {e['text']}"))
    await tarvikxmpp.start_session(client, server, args.login_timeout)
    client.add_event_handler("disconnected", lambda _: closed.append("server closed the stream"))
    if args.raw_xml is not None:
        raw = args.raw_xml
        if os.path.isfile(raw):
            with open(raw, encoding="utf-8", errors="surrogateescape") as f:
                raw = f.read()
        client.send_raw(raw)
    else:
        msg = client.make_message(mto=args.to, mbody=args.body, mtype="chat")
        if args.id:
            msg["id"] = args.id
        msg.send()
    try:
        await tarvikxmpp.ping_server(client, server, args.timeout)
    except (IqError, IqTimeout) as e:
        reason = closed[0] if closed else f"no answer to the ping ({type(e).__name__})"
        print(f"xmppclient: {reason}", file=sys.stderr)
        client.abort()
        return 1
    await tarvikxmpp.close(client)
    return 0


async def run_receive(args, server):
    loop = asyncio.get_running_loop()
    deadline = loop.time() + args.timeout
    client = tarvikxmpp.new_client(args.jid, args.password, server)
    received = 0
    enough = loop.create_future()

    def on_message(msg):
        nonlocal received
        if msg["type"] not in ("chat", "normal", ""):
            return
        print(json.dumps(stanza_record(msg), ensure_ascii=False), flush=True)
        received += 1
        if received >= args.count and not enough.done():
            enough.set_result(None)

    def on_error(msg):
        print(f"xmppclient: error stanza: {msg}", file=sys.stderr)

    client.add_event_handler("message", on_message)
    client.add_event_handler("message_error", on_error)
    client.add_event_handler("session_start", lambda _: client.send_presence())
    try:
        await tarvikxmpp.start_session(client, server, min(args.login_timeout, args.timeout))
    except tarvikxmpp.SessionError:
        if loop.time() >= deadline:
            print("xmppclient: timed out before login", file=sys.stderr)
            return 1
        raise
    if args.count <= 0:
        enough.set_result(None)
    try:
        await asyncio.wait_for(enough, max(0.0, deadline - loop.time()))
        result = 0
    except asyncio.TimeoutError:
        print(f"xmppclient: {received} of {args.count} messages within {args.timeout:g} s",
              file=sys.stderr)
        result = 1
    # Unavailable first: from then on the server keeps new messages offline; the ping
    # answer comes after anything routed to us before that.
    client.send_presence(ptype="unavailable")
    try:
        await tarvikxmpp.ping_server(client, server, 5.0)
    except (IqError, IqTimeout):
        pass
    await tarvikxmpp.close(client)
    return result


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    sub = parser.add_subparsers(dest="command", required=True)
    for name in ("send", "receive"):
        p = sub.add_parser(name)
        tarvikxmpp.add_server_args(p)
        p.add_argument("--jid", required=True)
        p.add_argument("--password", required=True)
        p.add_argument("--login-timeout", type=float, default=10.0)
        p.add_argument("--verbose", action="store_true", help="slixmpp debug log on stderr")
        if name == "send":
            p.add_argument("--to", help="recipient JID (a user name gets the domain)")
            p.add_argument("--body")
            p.add_argument("--id", help="message id (default: slixmpp's own)")
            p.add_argument("--raw-xml", help="a file, or else the XML text itself, sent as it is")
            p.add_argument("--timeout", type=float, default=10.0,
                           help="seconds to wait for the ping answer")
        else:
            p.add_argument("--count", type=int, required=True)
            p.add_argument("--timeout", type=float, required=True)
    args = parser.parse_args()
    server = tarvikxmpp.server_from_args(parser, args)
    if args.command == "send" and args.raw_xml is None:
        if args.to is None or args.body is None:
            parser.error("send needs --to and --body, or --raw-xml")
        args.to = tarvikxmpp.full_jid(args.to, server)
    tarvikxmpp.setup_logging(args.verbose)
    run = run_send if args.command == "send" else run_receive
    try:
        return tarvikxmpp.run(run(args, server))
    except tarvikxmpp.SessionError as e:
        print(f"xmppclient: {e}", file=sys.stderr)
        return 2


if __name__ == "__main__":
    sys.exit(main())
