#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""An XMPP client that is not tarvik's (slixmpp), for tests against a localprosody.sh server.

  xmppclient.py --dir DIR send --jid J --password P --to JID (--body TEXT | --raw-xml XML)
      sends one chat message (or the stanza as written), and exits 0 once the server has
      answered a ping sent after it
  xmppclient.py --dir DIR receive --jid J --password P --count N [--timeout S]
      prints each chat message received as a JSON line (from, id, body, stanza); exits 0
      when N arrived, 1 on time-out
"""

import argparse
import asyncio
import json
import logging
import os
import ssl
import sys

import slixmpp


def server_of(directory):
    with open(os.path.join(directory, "port")) as f:
        port = int(f.read().strip())
    return ("127.0.0.1", port), os.path.join(directory, "ca.pem")


class Client(slixmpp.ClientXMPP):
    def __init__(self, args):
        super().__init__(args.jid, args.password)
        self.args = args
        self.received = 0
        self.outcome = None
        self.register_plugin("xep_0199")
        self.add_event_handler("session_start", self.on_start)
        self.add_event_handler("message", self.on_message)
        self.add_event_handler("failed_auth", lambda _: self.finish(2))
        self.add_event_handler("disconnected", self.on_disconnected)

    def finish(self, code):
        if self.outcome is None:
            self.outcome = code
            self.disconnect()

    def on_disconnected(self, _):
        if self.outcome is None:
            self.outcome = 3

    async def on_start(self, _):
        self.send_presence()
        if self.args.command == "send":
            if self.args.raw_xml is not None:
                self.send_raw(self.args.raw_xml)
            else:
                self.send_message(mto=self.args.to, mbody=self.args.body, mtype="chat")
            # The server handles one stream in order: its answer confirms the message.
            await self.plugin["xep_0199"].ping(self.boundjid.domain, timeout=10)
            self.finish(0)
        else:
            self.loop.call_later(self.args.timeout, lambda: self.finish(1))

    def on_message(self, msg):
        if self.args.command != "receive" or msg["type"] not in ("chat", "normal"):
            return
        print(json.dumps({"from": str(msg["from"].bare), "id": msg["id"],
                          "body": msg["body"], "stanza": str(msg)}), flush=True)
        self.received += 1
        if self.received >= self.args.count:
            self.finish(0)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--dir", required=True, help="the localprosody.sh directory")
    sub = parser.add_subparsers(dest="command", required=True)
    for name in ("send", "receive"):
        p = sub.add_parser(name)
        p.add_argument("--jid", required=True)
        p.add_argument("--password", required=True)
        if name == "send":
            p.add_argument("--to", required=True)
            group = p.add_mutually_exclusive_group(required=True)
            group.add_argument("--body")
            group.add_argument("--raw-xml")
        else:
            p.add_argument("--count", type=int, default=1)
            p.add_argument("--timeout", type=float, default=20)
    args = parser.parse_args()
    logging.basicConfig(level=logging.ERROR)
    address, ca = server_of(args.dir)
    client = Client(args)
    client.ssl_context = ssl.create_default_context(cafile=ca)
    client.connect(address=address)
    client.loop.run_until_complete(client.disconnected)
    sys.exit(client.outcome if client.outcome is not None else 3)


if __name__ == "__main__":
    main()
