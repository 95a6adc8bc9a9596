# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""The map screens opened from a received message, driven through the accessibility bus."""

import os
import struct
import sys
import time
import zlib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import HttpServer, Session, check, run, wait_for  # noqa: E402

SOURCE_DIR = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
ROUTE_JSON = os.path.join(SOURCE_DIR, "tests", "app", "map", "data", "route.json")
TRACK_NMEA = os.path.join(SOURCE_DIR, "tests", "gps", "data", "track.nmea")


def street_tile():
    """A 256x256 PNG: light land crossed by a grid of white streets."""
    rows = []
    for y in range(256):
        row = bytearray(b"\x00")
        for x in range(256):
            street = x % 64 < 6 or y % 64 < 6
            row += b"\xff\xff\xff" if street else b"\xe8\xe0\xd0"
        rows.append(bytes(row))

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data) & 0xffffffff))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 256, 256, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(b"".join(rows))) + chunk(b"IEND", b""))


def map_server():
    """Loopback tiles under /tiles/ and an OSRM-compatible route service under /osrm/."""
    tile = street_tile()
    with open(ROUTE_JSON, "rb") as f:
        route = f.read()

    def answer(path):
        if path.startswith("/tiles/"):
            return tile, "image/png"
        if path.startswith("/osrm/route/v1/driving/"):
            return route, "application/json"
        return None
    return HttpServer(answer)


def tap_until(session, name, done):
    """Taps a button until done() holds: a map form ignores taps for a moment after its
    controls appear."""
    def tapped():
        session.click(session.find("push button", name))
        time.sleep(0.3)
        return done()
    wait_for(tapped, 15, "%r to take effect" % name, interval=0.3)


def back_to(session, title):
    tap_until(session, "Back", lambda: session.window_title() == title)


def open_delivered(session, entry):
    """Opens the inbox, has the simulator deliver its message, and opens `entry`."""
    session.click(session.find("list item", "Inbox"))
    session.wait_title("tarvik - Inbox")
    session.deliver()
    item = session.find("list item", entry)
    session.tap_away("label", "New tarviks received")
    session.click(item, double=True)
    session.wait_title("tarvik - Message")


def test_show_on_map_and_view_route(bindir):
    """"Show on map" opens the position map, whose controls come once tiles have loaded,
    and Back returns to the inbox; "View route" takes the own position from the GPS,
    draws the route and switches to the directions without asking for it again."""
    server = map_server()
    routes = lambda: [p for p in server.paths if p.startswith("/osrm/")]  # noqa: E731
    shots = os.path.join(bindir, os.pardir, "screenshots")
    os.makedirs(shots, exist_ok=True)
    with Session(bindir, sim_args=["--register-at-start", "--delay", "50"], start_client=False,
                 incoming=[{"from": "+447700900555", "screenname": "Aino", "title": "Here",
                            "note": "Come over", "latitude": 59.442, "longitude": 24.76}]) as s:
        _, nmea = s.spawn_ready([os.path.join(bindir, "tarvik-fakes"), "--nmea-stream",
                                 TRACK_NMEA])
        check(nmea.startswith("socket://"), "no NMEA stream (said %r)" % nmea)
        s.client_env = {"TARVIK_TILE_URL": server.url + "/tiles/{z}/{x}/{y}.png",
                        "TARVIK_ROUTE_URL": server.url + "/osrm",
                        "TARVIK_NMEA_SOURCE": nmea}
        s.launch()
        s.wait_title("tarvik")
        open_delivered(s, "Aino, Here")
        s.click(s.find("push button", "Show on map"))
        s.wait_title("tarvik - Map", 30)
        s.find("push button", "Zoom in", timeout=30)
        check(any(p.startswith("/tiles/") for p in server.paths),
              "the map showed its controls without asking for tiles")
        s.screenshot(os.path.join(shots, "e2e-map.png"))
        back_to(s, "tarvik - Inbox (1)")

        s.click(s.find("list item", "Aino, Here"), double=True)
        s.wait_title("tarvik - Message")
        s.click(s.find("push button", "View route"))
        s.wait_title("tarvik - Route", 30)
        s.find("push button", "Route", timeout=30)
        wait_for(routes, 10, "the route request")
        check(routes()[0].startswith("/osrm/route/v1/driving/"), "route asked as %r" % routes())
        tap_until(s, "Route", lambda: s.all("push button", "Map"))
        s.screenshot(os.path.join(shots, "e2e-directions.png"))
        check(len(routes()) == 1, "the directions asked again: %r" % routes())
        back_to(s, "tarvik - Inbox (1)")
    server.close()


if __name__ == "__main__":
    run([test_show_on_map_and_view_route])
