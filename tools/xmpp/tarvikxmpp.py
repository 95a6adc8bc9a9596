# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Shared parts of the XMPP test tools: finding a localprosody.sh server, logging a
slixmpp client in over loopback TLS, and writing and reading tarvik stanzas in the
form tarvikd puts on the wire.

Runs with Debian's /usr/bin/python3 (python3-slixmpp 1.8.3).
"""

import asyncio
import logging
import math
import os
import re
from dataclasses import dataclass
from datetime import datetime, timezone
from xml.sax.saxutils import escape, quoteattr

# slixmpp warns at import time that it lacks the compiled stringprep; that is only
# slower, and the warning would land in every test's output.
logging.getLogger("slixmpp.stringprep").setLevel(logging.ERROR)
from slixmpp import ClientXMPP  # noqa: E402

NS_CLIENT = "jabber:client"
NS_TARVIK = "urn:x-tarvik:message:1"
NS_GEOLOC = "http://jabber.org/protocol/geoloc"
NS_NICK = "http://jabber.org/protocol/nick"
NS_DELAY = "urn:xmpp:delay"


def setup_logging(verbose):
    """Our own messages are printed; slixmpp's log only with --verbose."""
    logging.basicConfig(level=logging.DEBUG if verbose else logging.CRITICAL,
                        format="%(levelname)s %(name)s: %(message)s")


def run(coroutine):
    """Runs the coroutine on a new event loop and returns its result; slixmpp's
    background tasks still pending at the end are cancelled before the loop closes."""
    loop = asyncio.new_event_loop()
    asyncio.set_event_loop(loop)
    try:
        return loop.run_until_complete(coroutine)
    finally:
        pending = asyncio.all_tasks(loop)
        for task in pending:
            task.cancel()
        loop.run_until_complete(asyncio.gather(*pending, return_exceptions=True))
        loop.close()


class SessionError(Exception):
    """The client could not get a session (connection, TLS or authentication)."""


@dataclass
class Server:
    host: str
    port: int
    ca: str
    domain: str


def add_server_args(parser):
    parser.add_argument("--dir", default=os.environ.get("LOCALPROSODY_DIR"),
                        help="localprosody.sh directory (port, domain, ca.pem); "
                             "default $LOCALPROSODY_DIR")
    parser.add_argument("--host", default="127.0.0.1")
    parser.add_argument("--port", type=int, help="c2s port (default DIR/port)")
    parser.add_argument("--ca", help="certificate to trust (default DIR/ca.pem)")
    parser.add_argument("--domain", help="service domain (default DIR/domain)")


def server_from_args(parser, args):
    def from_dir(name):
        if not args.dir:
            parser.error("--dir (or --port, --ca and --domain) is required")
        try:
            with open(os.path.join(args.dir, name), encoding="utf-8") as f:
                return f.read().strip()
        except OSError as e:
            parser.error(f"cannot read {name} in {args.dir}: {e.strerror}")

    port = args.port if args.port else int(from_dir("port"))
    ca = args.ca if args.ca else os.path.join(args.dir or "", "ca.pem")
    if not args.ca and not args.dir:
        from_dir("ca.pem")
    domain = args.domain if args.domain else from_dir("domain")
    return Server(args.host, port, ca, domain)


def full_jid(jid, server):
    """A bare user name gets the server's domain."""
    return jid if "@" in jid else f"{jid}@{server.domain}"


def new_client(jid, password, server, plugins=("xep_0199",)):
    client = ClientXMPP(full_jid(jid, server), password)
    # slixmpp verifies the certificate against the JID's domain even though it
    # connects to an IP address; the certificate names both, and trusting it as
    # its own CA is all the self-signed setup needs.
    client.ca_certs = server.ca
    # Whitespace keepalives are noise in the server log and make no difference
    # on loopback.
    client.whitespace_keepalive = False
    for plugin in plugins:
        client.register_plugin(plugin)
    return client


async def start_session(client, server, timeout=10.0):
    """Connects and waits for the session; raises SessionError with the reason."""
    loop = asyncio.get_running_loop()
    result = loop.create_future()

    def finish(error):
        if not result.done():
            result.set_result(error)

    handlers = {
        "session_start": lambda _: finish(None),
        "failed_all_auth": lambda _: finish("authentication failed"),
        "ssl_invalid_chain": lambda e: finish(f"TLS: certificate not trusted ({e})"),
        "stream_error": lambda e: finish(f"stream error: {e['condition']} {e['text']}"),
        "disconnected": lambda _: finish("disconnected before the session started"),
    }
    for name, handler in handlers.items():
        client.add_event_handler(name, handler)
    last_failure = []
    on_failed = lambda e: last_failure.append(str(e))  # noqa: E731
    client.add_event_handler("connection_failed", on_failed)
    try:
        client.connect((server.host, server.port))
        try:
            error = await asyncio.wait_for(result, timeout)
        except asyncio.TimeoutError:
            reason = f" (last: {last_failure[-1]})" if last_failure else ""
            error = f"no session within {timeout:g} s{reason}"
    finally:
        for name, handler in handlers.items():
            client.del_event_handler(name, handler)
        client.del_event_handler("connection_failed", on_failed)
    if error:
        client.cancel_connection_attempt()
        client.abort()
        raise SessionError(f"{client.boundjid.bare} at {server.host}:{server.port}: {error}")


async def ping_server(client, server, timeout=10.0):
    """Round trip to the server: everything sent before it has been processed."""
    await client["xep_0199"].ping(jid=server.domain, timeout=timeout)


async def close(client, wait=2.0):
    try:
        await asyncio.wait_for(client.disconnect(wait=wait), wait + 1.0)
    except (asyncio.TimeoutError, asyncio.CancelledError):
        client.abort()


# ---- tarvik stanzas ------------------------------------------------------------------

_XML_INVALID = re.compile("[^\u0009\u000a\u000d\u0020-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")


def xml_text(text):
    """Escaped character data; characters XML 1.0 cannot carry are dropped."""
    return escape(_XML_INVALID.sub("", str(text)))


def geo_number(value):
    """Coordinate for a geo: URI: fixed, at most 7 decimals, no trailing zeros, no -0."""
    text = f"{value:.7f}".rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def geo_uri(lat, lon):
    return f"geo:{geo_number(lat)},{geo_number(lon)}"


def shortest_number(value):
    """Shortest text that reads back as the same double, without a trailing '.0'."""
    text = repr(float(value))
    return text[:-2] if text.endswith(".0") else text


def xep0082(moment):
    return moment.astimezone(timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")


def tarvik_body(title, note, lat, lon):
    lines = [line for line in (title, note) if line]
    lines.append(geo_uri(lat, lon))
    return "\n".join(lines)


def tarvik_stanza(to, stanza_id, fields, nick=""):
    """The chat message for one recipient. fields: title, note, lat, lon, time
    (datetime), and optionally tz, to, address, type, typedesc, image, priority,
    color, country, carrier, version; empty ones are left out of the element."""
    title, note = fields.get("title", ""), fields.get("note", "")
    lat, lon = fields["lat"], fields["lon"]
    stamp = xep0082(fields["time"])
    parts = [
        f'<message xmlns="{NS_CLIENT}" type="chat" to={quoteattr(to)} id={quoteattr(stanza_id)}>',
        f"<body>{xml_text(tarvik_body(title, note, lat, lon))}</body>",
        f'<geoloc xmlns="{NS_GEOLOC}"><lat>{shortest_number(lat)}</lat>'
        f"<lon>{shortest_number(lon)}</lon><timestamp>{stamp}</timestamp></geoloc>",
    ]
    if nick:
        parts.append(f'<nick xmlns="{NS_NICK}">{xml_text(nick)}</nick>')
    parts.append(f'<tarvik xmlns="{NS_TARVIK}">')
    values = dict(fields)
    values.update(lat=shortest_number(lat), lon=shortest_number(lon), time=stamp)
    for name in ("title", "note", "lat", "lon", "time", "tz", "to", "address", "type",
                 "typedesc", "image", "priority", "color", "country", "carrier", "version"):
        value = values.get(name)
        if value is not None and str(value) != "":
            parts.append(f"<{name}>{xml_text(value)}</{name}>")
    parts.append("</tarvik></message>")
    return "".join(parts)


_GEO_URI = re.compile(r"geo:(-?\d+(?:\.\d+)?),(-?\d+(?:\.\d+)?)(?:,-?\d+(?:\.\d+)?)?(?:;[^\s]*)?")


def _valid(lat, lon):
    return (lat is not None and lon is not None and math.isfinite(lat) and math.isfinite(lon)
            and -90.0 <= lat <= 90.0 and -180.0 <= lon <= 180.0)


def _child_float(element, ns, name):
    child = element.find(f"{{{ns}}}{name}")
    if child is None or child.text is None:
        return None
    try:
        return float(child.text.strip())
    except ValueError:
        return None


def _child_text(element, ns, name):
    child = element.find(f"{{{ns}}}{name}") if element is not None else None
    return child.text or "" if child is not None else ""


def read_tarvik(message):
    """Reads a received <message> element (ElementTree) as a tarvik: a dict with
    lat, lon, title, note, nick, or None when it carries no valid position.
    Position: the tarvik element, else geoloc, else a geo: URI in the body."""
    tarvik = message.find(f"{{{NS_TARVIK}}}tarvik")
    geoloc = message.find(f"{{{NS_GEOLOC}}}geoloc")
    body = _child_text(message, NS_CLIENT, "body")
    position = None
    if tarvik is not None:
        lat, lon = _child_float(tarvik, NS_TARVIK, "lat"), _child_float(tarvik, NS_TARVIK, "lon")
        position = (lat, lon) if _valid(lat, lon) else None
    if position is None and geoloc is not None:
        lat, lon = _child_float(geoloc, NS_GEOLOC, "lat"), _child_float(geoloc, NS_GEOLOC, "lon")
        position = (lat, lon) if _valid(lat, lon) else None
    match = _GEO_URI.search(body)
    if position is None and match:
        lat, lon = float(match.group(1)), float(match.group(2))
        position = (lat, lon) if _valid(lat, lon) else None
    if position is None:
        return None
    if tarvik is not None:
        title = _child_text(tarvik, NS_TARVIK, "title")
        note = _child_text(tarvik, NS_TARVIK, "note")
    else:
        text = _GEO_URI.sub("", body, count=1) if match else body
        lines = [line.strip() for line in text.splitlines() if line.strip()]
        title = lines[0] if lines else ""
        note = "\n".join(lines[1:])
    return {"lat": position[0], "lon": position[1], "title": title, "note": note,
            "nick": _child_text(message, NS_NICK, "nick")}


def now_utc():
    return datetime.now(timezone.utc).replace(microsecond=0)
