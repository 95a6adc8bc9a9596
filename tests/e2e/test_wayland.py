# SPDX-FileCopyrightText: 2026 The tarvik authors
# SPDX-License-Identifier: GPL-3.0-or-later

"""Every screen as a native Wayland client of weston, at a phone's portrait size (360 x 720
logical pixels at scale 2) and at the desktop's landscape size (800 x 450 at scale 1): no
control outside the window, no two controls of a screen over each other, and in portrait
buttons a finger can hit. The client is given no size: it takes the screen's, as on a
phone.

Weston runs on its X11 backend inside the session's Xvfb: that gives it a seat, so the
pointer and key events the accessibility registry generates in Xvfb reach the client
through Wayland (the headless backend has no seat at all). Positions from the
accessibility bus are logical pixels relative to the window, the only kind a Wayland
client knows. With TARVIK_SCREENSHOT_DIR set, each screen is saved there as a PNG."""

import os
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from tarvikui import Failure, Session, check, run, wait_for  # noqa: E402
from test_compose import stamped_track, type_into  # noqa: E402
from test_faults import wait_label  # noqa: E402
from test_map import map_server  # noqa: E402

PORTRAIT = ("portrait", (360, 720), 2)
LANDSCAPE = ("landscape", (800, 450), 1)
MIN_TOUCH = 48
# Containers whose children scroll: what lies outside their viewport is not on screen.
SCROLLED = {"list", "table", "tree", "tree table", "scroll pane"}
BUTTONS = {"push button", "toggle button"}
SKIP_CODE = 77

WESTON_INI = """[core]
idle-time=0
[shell]
panel-position=none
locking=false
background-color=0xff303030
[input-method]
path=
"""


def wayland_missing():
    """What this machine lacks to run the client on weston, or None. The build tells
    where Qt's platform plugins are (TARVIK_QT_PLATFORM_PLUGINS)."""
    if not shutil.which("weston"):
        return "weston is not installed"
    plugins = os.environ.get("TARVIK_QT_PLATFORM_PLUGINS")
    if plugins and not os.path.exists(os.path.join(plugins, "libqwayland-generic.so")):
        return "Qt's Wayland platform plugin is not in %s (qt6-wayland)" % plugins
    return None


class WestonSession(Session):
    """A session whose client is a Wayland client of weston, on a screen of `size` logical
    pixels at `scale`. The window takes the screen's size, as on a phone."""

    def __init__(self, bindir, size, scale, **kwargs):
        super().__init__(bindir, **kwargs)
        self.size = size
        self.scale = scale
        # Weston's window fills the X screen but for a strip along the right and the
        # bottom, where the pointer waits (see launch).
        self.pixels = (size[0] * scale, size[1] * scale)
        self.screen = "%dx%dx24" % (self.pixels[0] + 8, self.pixels[1] + 8)

    def _start_xvfb(self):
        display = super()._start_xvfb()
        ini = os.path.join(self.tmp, "weston.ini")
        with open(ini, "w") as f:
            f.write(WESTON_INI)
        # No panel, so the window sits at the output's origin; no input method, which
        # would take the keyboard from the client.
        self._spawn(["weston", "--backend=x11-backend.so", "--use-pixman", "--config=" + ini,
                     "--socket=wayland-tarvik", "--width=%d" % self.size[0],
                     "--height=%d" % self.size[1], "--scale=%d" % self.scale],
                    dict(os.environ, DISPLAY=display, XDG_RUNTIME_DIR=self.tmp))
        wait_for(lambda: os.path.exists(os.path.join(self.tmp, "wayland-tarvik.lock")), 15,
                 "weston's socket")
        return display

    def launch(self):
        # An empty DISPLAY: the client cannot fall back to X11.
        self.client_env.update({"WAYLAND_DISPLAY": "wayland-tarvik", "QT_QPA_PLATFORM": "wayland",
                                "DISPLAY": "", "QT_WAYLAND_DISABLE_WINDOWDECORATION": "1"})
        client = super().launch()
        # Weston follows the X pointer only once it has seen it enter its window; a
        # pointer that was inside from the start goes unnoticed.
        import pyatspi
        pyatspi.Registry.generateMouseEvent(self.pixels[0] + 4, self.pixels[1] + 4, "abs")
        return client

    def screenshot(self, path):
        subprocess.run(["import", "-display", self.env["DISPLAY"], "-window", "root", "-crop",
                        "%dx%d+0+0" % self.pixels, "+repage", path], check=True)

    def __exit__(self, exc_type, *exc):
        if exc_type is not None and self.client is not None and self.client.poll() is not None:
            print("The client ended with %r; its output ends:\n%s\nweston's log ends:\n%s"
                  % (self.client.poll(), self._tail("tarvik.log"), self._tail("weston.log")))
        return super().__exit__(exc_type, *exc)

    def centre(self, node):
        import pyatspi
        ext = node.queryComponent().getExtents(pyatspi.WINDOW_COORDS)
        check(ext.width > 0 and ext.height > 0, "%r has no size on screen" % node.name)
        return ((ext.x + ext.width // 2) * self.scale, (ext.y + ext.height // 2) * self.scale)


# --- geometry ---------------------------------------------------------------------------

def extents(node):
    import pyatspi
    e = node.queryComponent().getExtents(pyatspi.WINDOW_COORDS)
    return (e.x, e.y, e.x + e.width, e.y + e.height)


def clipped(a, b):
    if b is None:
        return a
    return (max(a[0], b[0]), max(a[1], b[1]), min(a[2], b[2]), min(a[3], b[3]))


def empty(r):
    return r[2] <= r[0] or r[3] <= r[1]


def inside(a, b):
    return a[0] >= b[0] and a[1] >= b[1] and a[2] <= b[2] and a[3] <= b[3]


def describe(control):
    role, name, r = control
    return "%s %r at %d,%d %dx%d" % (role, name.replace("\n", " ")[:40], r[0], r[1],
                                     r[2] - r[0], r[3] - r[1])


def controls(s, form):
    """(role, name, rectangle) of each control the form shows: the leaves of the
    accessible tree under it with a size, cut to the viewport of the list they scroll in
    (an empty list counts as one).
    A node that is not showing ends the walk there: the children of a form that is hidden
    under another can still claim to be showing."""
    found = []

    def walk(node, clip):
        """Adds the controls under node; says whether there were any."""
        if not s._showing(node):
            return False
        try:
            r = extents(node)
        except NotImplementedError:  # a web page's document has no geometry of its own
            return False
        if empty(r):
            return False
        role = node.getRoleName()
        inner = clipped(r, clip) if role in SCROLLED else clip
        if any([walk(node.getChildAtIndex(i), inner) for i in range(node.childCount)]):
            return True
        # A leaf, or a view whose content has no geometry (the web view).
        r = clipped(r, clip)
        if empty(r):
            return False
        found.append((role, node.name or "", r))
        return True

    walk(form, None)
    return found


def top_form(s):
    """The form on top of the window's form stack (a popup over a form is the last shown
    child of the stack)."""
    stack = s.all("layered pane")
    check(stack, "no form stack on the accessibility bus")
    forms = [stack[0].getChildAtIndex(i) for i in range(stack[0].childCount)]
    shown = [f for f in forms if s._showing(f) and not empty(extents(f))]
    check(shown, "no form showing")
    return shown[-1]


class Inspector:
    """Checks screen after screen of one orientation and gathers what is wrong."""

    def __init__(self, s, orientation):
        self.s = s
        self.orientation = orientation
        self.failures = []
        self.shots = os.environ.get("TARVIK_SCREENSHOT_DIR")
        if self.shots:
            os.makedirs(self.shots, exist_ok=True)

    def screen(self, name, settle=0.3):
        time.sleep(settle)  # the last layout pass and paint
        s = self.s
        if self.shots:
            s.screenshot(os.path.join(self.shots, "%s-%s.png" % (name.replace(" ", "-"),
                                                                  self.orientation)))
        window = extents(s.all("frame")[0])
        screen = (0, 0) + s.size
        bounds = clipped(window, screen)
        problems = []
        if not inside(window, screen):
            problems.append("the window is %dx%d, larger than the %dx%d screen"
                            % ((window[2] - window[0], window[3] - window[1]) + s.size))
        found = controls(s, top_form(s))
        outside = [c for c in found if not inside(c[2], bounds)]
        problems += ["%s lies outside the %dx%d window" % ((describe(c),) + s.size)
                     for c in outside]
        overlaps = [(a, b) for i, a in enumerate(found) for b in found[i + 1:]
                    if not empty(clipped(a[2], b[2]))]
        problems += ["%s overlaps %s" % (describe(a), describe(b)) for a, b in overlaps]
        buttons = sorted((c for c in found if c[0] in BUTTONS),
                         key=lambda c: min(c[2][2] - c[2][0], c[2][3] - c[2][1]))
        if self.orientation == "portrait":
            problems += ["%s is smaller than %dx%d" % (describe(c), MIN_TOUCH, MIN_TOUCH)
                         for c in buttons
                         if min(c[2][2] - c[2][0], c[2][3] - c[2][1]) < MIN_TOUCH]
        smallest = ("smallest button %dx%d" % (buttons[0][2][2] - buttons[0][2][0],
                                               buttons[0][2][3] - buttons[0][2][1])
                    if buttons else "no buttons")
        print("%s %s: %d controls, %d outside, %d overlaps, %s"
              % (name, self.orientation, len(found), len(outside), len(overlaps), smallest),
              flush=True)
        check(found, "%s %s: no control found" % (name, self.orientation))
        self.failures += ["%s %s: %s" % (name, self.orientation, p) for p in problems]

    def verdict(self):
        check(not self.failures, "%d layout faults:\n  %s"
              % (len(self.failures), "\n  ".join(self.failures)))


# --- the walk -----------------------------------------------------------------------------

def menu(s, item, title=None):
    s.click(s.find("list item", item))
    if title:
        # This walk looks at layouts: a tap lost by a loaded compositor is tapped again.
        shown = lambda: (s.window_title() or "").startswith(title)  # noqa: E731
        try:
            wait_for(shown, 5, "the screen " + title)
        except Failure:
            s.click(s.find("list item", item))
            wait_for(shown, 15, "the screen " + title)


def compose(s):
    menu(s, "Send a tarvik", "tarvik - Send a tarvik")


def message(s):
    menu(s, "Inbox", "tarvik - Inbox")
    # The first entry of the inbox itself: the menu's entries under it still say showing.
    first = next(n for n in s._walk(top_form(s)) if n.getRoleName() == "list item")
    s.click(first, double=True)
    s.wait_title("tarvik - Message")


def send(s):
    compose(s)
    type_into(s, "To:", "+15550111")
    time.sleep(0.6)  # a tap within half a second of the last is dropped
    s.click(s.find("push button", "Send"))
    wait_label(s, "Sending...", 40)


def shown_map(s):
    message(s)
    s.click(s.find("push button", "Show on map"))
    s.wait_title("tarvik - Map", 30)
    s.find("push button", "Zoom in", timeout=30)


# Each screen is reached from the main menu of a client of its own: a form or popup
# wider than the screen makes the window grow for good (a phone's shell would shrink it
# again), which would spoil the screens after it.
SCREENS = [
    ("main menu", lambda s: None),
    ("settings", lambda s: (menu(s, "Settings"), s.find("push button", "Back"))),
    ("about", lambda s: (menu(s, "About tarvik"), s.find("push button", "Back"))),
    ("inbox", lambda s: menu(s, "Inbox", "tarvik - Inbox")),
    ("outbox", lambda s: menu(s, "Outbox", "tarvik - Outbox")),
    ("sent", lambda s: menu(s, "Sent tarviks", "tarvik - Sent")),
    ("message", message),
    ("map", shown_map),
    ("compose", compose),
    # The other popups are the same form with other texts: the translations test sees
    # each of their texts fit a portrait screen.
    ("location popup", send),
]


def walk_screens(bindir, orientation):
    name, size, scale = orientation
    server = map_server()
    tmp = tempfile.mkdtemp(prefix="tarvik-wayland-")
    track, _ = stamped_track(tmp)
    # Long answers, so that the popups stay while they are looked at.
    sim = ["--seed-demo", "--register", "succeed", "--delay", "2500", "--incoming", "0"]
    client_env = {"TARVIK_NMEA_SOURCE": track,
                  "TARVIK_TILE_URL": server.url + "/tiles/{z}/{x}/{y}.png",
                  "TARVIK_ROUTE_URL": server.url + "/osrm"}
    try:
        with WestonSession(bindir, size, scale, sim_args=sim, client_env=client_env) as s:
            look = Inspector(s, name)
            s.find("push button", "Continue", timeout=30)
            look.screen("registration")
            type_into(s, "What's your phone number?", "+15550123")
            type_into(s, "What's your screen name?", "Ann")
            s.click(s.find("push button", "Continue"))
            wait_label(s, "Please wait while your registration is completed.\n"
                          "It may take up to a minute.")
            look.screen("registration popup", settle=0)
            wait_for(lambda: not s.all("push button", "Continue"), 20, "the registration")
            # Enough messages that the inbox scrolls in either orientation.
            for i in range(12):
                s.execute("INSERT INTO inbox (tfrom, tscreenname, ttitle, tnote, tutcdatetime, "
                          "tlatitude, tlongitude, tflag) VALUES (?, ?, ?, 'n', ?, 1.5, 2.5, 0)",
                          ("+1555010%02d" % i, "Old friend %d" % i, "Earlier %d" % i,
                           1700000000 + i * 3600))
            for screen, reach in SCREENS:
                s.quit_client()
                s.launch()
                wait_for(lambda: s.window_title() == "tarvik" and s._showing(
                    s.find("list item", "Inbox").parent), 20, "the main menu")
                reach(s)
                look.screen(screen, settle=0 if "popup" in screen else 0.3)
            look.verdict()
    finally:
        server.close()
        shutil.rmtree(tmp, ignore_errors=True)


def test_portrait(bindir):
    walk_screens(bindir, PORTRAIT)


def test_landscape(bindir):
    walk_screens(bindir, LANDSCAPE)


if __name__ == "__main__":
    missing = wayland_missing()
    if missing:
        print("SKIP   the client cannot run on weston here: %s" % missing, flush=True)
        sys.exit(SKIP_CODE)
    run([test_portrait, test_landscape])
