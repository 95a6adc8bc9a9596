#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Renders the client's art from the SVG sources in res_ui/svg and res/svg.

Icons and logos are plain renders. Skins are rendered one pixel smaller than the image and
placed at (1, 1); row 0 and column 0 then carry nothing but the opaque black marker runs that
say which columns and rows stretch. Frame strips are flattened onto black and written as RGB.
Skins and icons also get name@2x.png and name@3x.png beside them for high-density screens,
rendered from the SVG at that scale: a skin's content is scale times larger while its marker
row and column stay one pixel wide, with the runs covering the scaled stretch columns and rows.
Needs only python3 and rsvg-convert (librsvg2-bin). Run from anywhere: res/render-art.py
"""
import os
import struct
import subprocess
import sys
import tempfile
import zlib

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
UI_SVG = os.path.join(ROOT, "res_ui", "svg")
UI_IMG = os.path.join(ROOT, "res_ui", "img")
ART_SVG = os.path.join(ROOT, "res", "svg")
ART_IMG = os.path.join(ROOT, "res", "img")

MARKER = (0, 0, 0, 255)

# name: (width, height, stretch columns or None, stretch rows or None), sizes with markers.
SKINS = {
    "toolbar": (151, 41, (3, 150), (1, 38)),
    "toolbar_bottom": (151, 41, (1, 150), (3, 40)),
    "popup_bg": (250, 103, (26, 225), (25, 78)),
    "title_bg": (151, 41, (1, 150), (1, 38)),
    "list_item_bg": (151, 41, None, None),
    "line_edit_bg": (209, 29, (17, 194), (7, 22)),
    "btn_bg": (69, 41, (19, 49), (10, 30)),
    "btn_bg_hl": (69, 41, (19, 43), (10, 30)),
    "main_bg": (321, 457, (1, 320), (1, 456)),
    "transparent_bg": (151, 41, None, None),
}
# Images without markers that are drawn whole (stretched by their users).
WHOLE = {"list_item_bg", "transparent_bg"}

# The scales of the high-density variants (name@2x.png, name@3x.png) of skins and icons.
SCALES = (2, 3)

# name: (svg directory, png directory, width, height)
STRIPS = {
    "refresh_anim": (UI_SVG, UI_IMG, 320, 40),
    "progress_anim": (ART_SVG, ART_IMG, 320, 40),
}

# name: (width, height)
ICONS = {
    "send": (32, 32), "inbox": (32, 32), "outbox": (32, 32), "sent": (32, 32),
    "settings": (32, 32), "feedback": (32, 32), "about": (32, 32),
    "message_read": (32, 32), "message_unread": (32, 32), "message_sent": (32, 32),
    "message_sending": (32, 32), "message_failed_send": (32, 32), "message_draft": (32, 32),
    "arrow_north": (48, 48), "arrow_south": (48, 48), "arrow_east": (48, 48),
    "arrow_west": (48, 48), "zoom_plus": (48, 48), "zoom_minus": (48, 48),
    "tarvik_logo": (180, 52), "tarvik_logo_large": (330, 96),
}


def read_png(path):
    """Decodes an 8-bit RGBA or RGB, non-interlaced PNG into rows of RGBA tuples."""
    data = open(path, "rb").read()
    assert data[:8] == b"\x89PNG\r\n\x1a\n", path
    pos, idat, width = 8, b"", 0
    while pos < len(data):
        length, kind = struct.unpack(">I4s", data[pos:pos + 8])
        body = data[pos + 8:pos + 8 + length]
        if kind == b"IHDR":
            width, height, depth, ctype, _, _, interlace = struct.unpack(">IIBBBBB", body)
            assert depth == 8 and ctype in (2, 6) and interlace == 0, (path, depth, ctype)
        elif kind == b"IDAT":
            idat += body
        pos += 12 + length
    bpp = 4 if ctype == 6 else 3
    raw = zlib.decompress(idat)
    stride = width * bpp
    rows, prev = [], bytearray(stride)
    for y in range(height):
        ftype = raw[y * (stride + 1)]
        line = bytearray(raw[y * (stride + 1) + 1:(y + 1) * (stride + 1)])
        for i in range(stride):
            a = line[i - bpp] if i >= bpp else 0
            b = prev[i]
            c = prev[i - bpp] if i >= bpp else 0
            if ftype == 1:
                line[i] = (line[i] + a) & 255
            elif ftype == 2:
                line[i] = (line[i] + b) & 255
            elif ftype == 3:
                line[i] = (line[i] + (a + b) // 2) & 255
            elif ftype == 4:
                p = a + b - c
                pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
                pred = a if pa <= pb and pa <= pc else (b if pb <= pc else c)
                line[i] = (line[i] + pred) & 255
        prev = line
        if bpp == 4:
            rows.append([tuple(line[i:i + 4]) for i in range(0, stride, 4)])
        else:
            rows.append([tuple(line[i:i + 3]) + (255,) for i in range(0, stride, 3)])
    return rows


def write_png(path, rows, alpha=True):
    height, width = len(rows), len(rows[0])
    raw = bytearray()
    for row in rows:
        raw.append(0)
        for px in row:
            raw.extend(px if alpha else px[:3])

    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body
                + struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    ihdr = struct.pack(">IIBBBBB", width, height, 8, 6 if alpha else 2, 0, 0, 0)
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr)
                  + chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + chunk(b"IEND", b""))


def render(svg, width, height):
    with tempfile.TemporaryDirectory() as tmp:
        out = os.path.join(tmp, "out.png")
        subprocess.run(["rsvg-convert", "-w", str(width), "-h", str(height), "-f", "png",
                        "-o", out, svg], check=True)
        return read_png(out)


def not_marker(px):
    # A body pixel on a marker line must never read as a marker.
    return (1, 1, 1, 255) if px == MARKER else px


def file_name(name, scale):
    return name + (".png" if scale == 1 else "@%dx.png" % scale)


def scaled_run(run, scale):
    # Content column j is image column j + 1, so image columns [c0, c1] are content
    # [c0 - 1, c1 - 1], which at the scale is content [s (c0 - 1), s c1 - 1].
    return (scale * (run[0] - 1) + 1, scale * run[1])


def make_skin(name, scale=1):
    width, height, cols, rows = SKINS[name]
    svg = os.path.join(UI_SVG, name + ".svg")
    out = os.path.join(UI_IMG, file_name(name, scale))
    if name in WHOLE:
        image = [[not_marker(px) for px in row]
                 for row in render(svg, scale * width, scale * height)]
        # Only the first row and column are scanned for markers; keep them clean.
        write_png(out, image)
        return
    body = render(svg, scale * (width - 1), scale * (height - 1))
    width, height = len(body[0]) + 1, len(body) + 1
    cols, rows = scaled_run(cols, scale), scaled_run(rows, scale)
    image = [[(0, 0, 0, 0)] * width for _ in range(height)]
    for y in range(1, height):
        image[y][1:] = body[y - 1]
    for x in range(cols[0], cols[1] + 1):
        image[0][x] = MARKER
    for y in range(rows[0], rows[1] + 1):
        image[y][0] = MARKER
    write_png(out, image)


def make_strip(name):
    svg_dir, img_dir, width, height = STRIPS[name]
    image = render(os.path.join(svg_dir, name + ".svg"), width, height)
    flat = [[(r * a // 255, g * a // 255, b * a // 255, 255) for (r, g, b, a) in row]
            for row in image]
    write_png(os.path.join(img_dir, name + ".png"), flat, alpha=False)


def make_icon(name, scale=1):
    width, height = ICONS[name]
    write_png(os.path.join(ART_IMG, file_name(name, scale)),
              render(os.path.join(ART_SVG, name + ".svg"), scale * width, scale * height))


def main(names):
    os.makedirs(UI_IMG, exist_ok=True)
    os.makedirs(ART_IMG, exist_ok=True)
    for name in SKINS:
        if not names or name in names:
            for scale in (1,) + SCALES:
                make_skin(name, scale)
    for name in STRIPS:
        if not names or name in names:
            make_strip(name)
    for name in ICONS:
        if not names or name in names:
            for scale in (1,) + SCALES:
                make_icon(name, scale)


if __name__ == "__main__":
    main(set(sys.argv[1:]))
