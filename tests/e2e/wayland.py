"""A desktop as harness.Desktop is one, on Wayland: sway is the compositor, without a screen or a graphics card. grim
takes the pictures, and wayvnc makes a pointer and a keyboard of what a remote client sends.

    class Actions(flows.Flow):
        desktop_kind = wayland.DESKTOP  # with a panel that is docked or not, as KORVEL_DOCKED says

Places and sizes are in pixels of the screen, as they are on X11, so a flow is the same at every scale.
"""

import contextlib
import json
import os
import socket
import subprocess

import harness
import wayland_client

OUTPUT = "HEADLESS-1"
# A window is never larger than it asks to be, and has no frame.
CONFIG = """
xwayland disable
output {output} mode {width}x{height} position 0 0
default_floating_border none
for_window [app_id=".*"] floating enable
"""
# sway refuses to run as root. The one capability left to it lets it make its sockets in folders that are root's alone.
AS_NOBODY = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--inh-caps=-all,+dac_override",
             "--ambient-caps=-all,+dac_override", "--pdeathsig=KILL")
KEYS = {"Escape": 0xff1b, "Tab": 0xff09, "Return": 0xff0d, "space": 0x20}


class Hand:
    """A pointer and a keyboard: a client of the Remote Framebuffer Protocol 3.8 (RFC 6143) that never asks for the
    picture."""

    def __init__(self, path):
        self._place, self._buttons = (0, 0), 0
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(harness.DEADLINE)
        harness.wait_for(lambda: self._socket.connect_ex(str(path)) == 0, "a remote hand")
        self._socket.sendall(self._read(12))  # the version
        if 1 not in self._read(self._number(1)):
            raise AssertionError("wayvnc wants a password")
        self._socket.sendall(b"\1")  # no password
        if self._number(4):
            raise AssertionError("wayvnc refuses a client")
        self._socket.sendall(b"\1")  # other clients may stay
        self._read(20)  # the size and the pixel format
        self._read(self._number(4))  # the name

    def _read(self, size):
        data = self._socket.recv(size, socket.MSG_WAITALL)
        if len(data) != size:
            raise AssertionError("wayvnc has ended")
        return data

    def _number(self, size):
        return int.from_bytes(self._read(size), "big")

    def _send_pointer(self):
        x, y = self._place
        self._socket.sendall(bytes((5, self._buttons)) + x.to_bytes(2, "big") + y.to_bytes(2, "big"))

    def move(self, x, y):
        self._place = (x, y)
        self._send_pointer()

    def hold(self, button):
        self._buttons |= 1 << (button - 1)
        self._send_pointer()

    def let_go(self, button):
        self._buttons &= ~(1 << (button - 1))
        self._send_pointer()

    def press(self, key):
        for down in (1, 0):
            self._socket.sendall(bytes((4, down, 0, 0)) + KEYS[key].to_bytes(4, "big"))

    def close(self):
        self._socket.close()


class WaylandWindow(harness.Window):
    """A window as the compositor knows it."""

    def _node(self):
        return next((node for node in self.desktop.window_nodes() if node["id"] == self.ident), None)

    def shown(self):
        node = self._node()
        return bool(node and node["visible"])

    def geometry(self):
        node = self._node()
        keys = ("x", "y", "width", "height")
        return node and harness.Geometry(*(node["rect"][key] * self.desktop.scale for key in keys))

    def is_on_screen(self):
        picture = self.picture()
        some = [picture[picture.width * part // 16, picture.height * part // 16] for part in range(1, 16)]
        return some.count(self.desktop.background) < len(some) / 2

    def app_id(self):
        return self._node()["app_id"]

    def picture(self, around=0):
        """What the screen shows where the window is, the pointer too, and so many points around it."""
        rect = self._node()["rect"]
        return self.desktop.picture(rect["x"] - around, rect["y"] - around,
                                    rect["width"] + 2 * around, rect["height"] + 2 * around)

    def move_pointer(self, x, y):
        here = self.geometry()
        self.desktop.hand.move(here.x + x, here.y + y)

    def click(self, x, y, button=1, times=1):
        self.move_pointer(x, y)
        for _ in range(times):
            self.desktop.hand.hold(button)
            self.desktop.hand.let_go(button)

    def hold(self, x, y, button=1):
        self.move_pointer(x, y)
        self.desktop.hand.hold(button)

    def let_go(self, x, y, button=1):
        self.move_pointer(x, y)
        self.desktop.hand.let_go(button)

    def press(self, key):
        self.desktop.tell(f"[con_id={self.ident}] focus")
        self.desktop.hand.press(key)

    def move_to(self, x, y):
        """Places its upper left corner at a point of the screen."""
        self.desktop.tell(f"[con_id={self.ident}] move absolute position {x} {y}")

    def ask_to_close(self):
        """Closes it as its user would have the compositor do."""
        self.desktop.tell(f"[con_id={self.ident}] kill")


class DockedWindow(WaylandWindow):
    """The panel where the compositor docks it. sway tells nothing of such windows, so that it is found by its colour in
    pictures of the screen; the hairline around that colour belongs to it."""

    COLOR = bytes((29, 33, 38))

    def __init__(self, desktop):
        super().__init__(desktop, None)

    def shown(self):
        return self.geometry() is not None

    def geometry(self):
        picture, scale = self.desktop.whole_picture(), self.desktop.scale
        rows = [(y, *ends) for y in range(picture.height) if (ends := picture.ends_in_row(y, self.COLOR))]
        if not rows:
            return None
        left, right = min(row[1] for row in rows) - scale, max(row[2] for row in rows) + scale
        top, bottom = rows[0][0] - scale, rows[-1][0] + scale
        return harness.Geometry(left, top, right + 1 - left, bottom + 1 - top)

    def picture(self, around=0):
        here, scale = self.geometry(), self.desktop.scale
        return self.desktop.picture(here.x // scale - around, here.y // scale - around,
                                    here.width // scale + 2 * around, here.height // scale + 2 * around)

    def press(self, key):
        """The compositor gives it the keyboard; nobody else can."""
        self.desktop.hand.press(key)

    def move_to(self, x, y):
        """It is in sight, and stays where it is."""


class WaylandProgram(harness.Program):
    """A program whose windows are all that came since it was started, those of its child processes too."""

    def __init__(self, desktop, command, env):
        self._others = {node["id"] for node in desktop.window_nodes()}
        super().__init__(desktop, command, env)

    def windows(self):
        return [WaylandWindow(self.desktop, node["id"]) for node in self.desktop.window_nodes()
                if node["visible"] and node["id"] not in self._others]

    def window(self):
        """Its one window, once it is on the screen. The compositor knows a window for some moments before it shows it,
        and a click at that time is nobody's."""
        window = super().window()
        harness.wait_for(window.is_on_screen, "a window on the screen")
        return window


class DockedProgram(WaylandProgram):
    """One with a panel that is docked."""

    def windows(self):
        docked = DockedWindow(self.desktop)
        return super().windows() + [docked] * docked.shown()


class WaylandDesktop(harness.Desktop):
    """The compositor and what belongs to it. Windows are ordinary ones."""

    places_windows = False
    program_kind = WaylandProgram
    hand = None
    scale = 1

    def _environment(self):
        # Without a word about the platform, as in a session on Wayland.
        env = super()._environment()
        del env["QT_QPA_PLATFORM"]
        return env

    def _start_screen(self, width, height):
        folder = self.folder / "compositor"
        folder.mkdir(mode=0o700)
        log = folder / "log"
        settings = {"XDG_RUNTIME_DIR": str(folder), "WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman",
                    "WLR_LIBINPUT_NO_DEVICES": "1"}
        with log.open("wb") as err:
            self._screen = self.start(self._compositor(folder, width, height), settings, stderr=err)

        def display():
            if not self.has_screen():
                raise AssertionError(f"the compositor does not start: {log.read_text(errors='replace')}")
            return self._answers() and next((path for path in folder.glob("wayland-*") if path.is_socket()), None)
        self.env["WAYLAND_DISPLAY"] = str(harness.wait_for(display, "a compositor"))

    def _compositor(self, folder, width, height):
        """The command that starts it."""
        config = folder / "config"
        config.write_text(CONFIG.format(output=OUTPUT, width=width, height=height))
        self.env["SWAYSOCK"] = str(folder / "ipc")
        return *(AS_NOBODY if os.getuid() == 0 else ()), "sway", "--config", config

    def _answers(self):
        return harness._output(("swaymsg", "-t", "get_version"), self.env)

    def _start_window_manager(self):
        # The compositor is one. What is missing is the hand, and its devices are to be there before any window is.
        self.background = harness.wait_for(lambda: self._taken(0, 0, 1, 1), "a screen")[0, 0]
        path = self.folder / "hand"
        self.start(("wayvnc", "--unix-socket", path))
        self.hand = Hand(path)
        harness.wait_for(self._has_devices, "a pointer and a keyboard")

    def _has_devices(self):
        return {"pointer", "keyboard"} <= {device["type"] for device in self._asked("get_inputs")}

    def _asked(self, what):
        answer = harness._output(("swaymsg", "--raw", "-t", what), self.env)
        if answer is None:
            raise AssertionError(f"sway does not answer {what}")
        return json.loads(answer)

    def tell(self, command):
        """Has the compositor carry out one of its commands."""
        subprocess.run(["swaymsg", "--quiet", "--", command], env=self.env, stdin=subprocess.DEVNULL,
                       timeout=harness.DEADLINE, check=True)

    def window_nodes(self):
        """What the compositor knows about each window."""
        def below(node):
            if "app_id" in node:
                yield node
            for child in (*node["nodes"], *node["floating_nodes"]):
                yield from below(child)
        return list(below(self._asked("get_tree")))

    def environment_at_scale(self, scale):
        # It is the compositor that tells a program how many pixels to draw.
        self.tell(f"output {OUTPUT} scale {scale}")
        self.scale = scale
        return {}

    def run(self, command, env=None):
        return self.program_kind(self, command, env)

    def whole_picture(self):
        return self.picture(0, 0, self.size[0] // self.scale, self.size[1] // self.scale)

    def picture(self, x, y, width, height):
        """What a part of the screen shows; the part is given in points."""
        picture = self._taken(x, y, width, height)
        if picture is None:
            raise AssertionError("grim takes no picture")
        return picture

    def _taken(self, x, y, width, height):
        data = harness._output(("grim", "-t", "ppm", "-g", f"{x},{y} {width}x{height}", "-"), self.env)
        if data is None:
            return None
        kind, size, _, pixels = data.split(b"\n", 3)
        assert kind == b"P6"
        return harness.Picture(*map(int, size.split()), pixels)

    def save_picture(self, path):
        subprocess.run(["grim", path], env=self.env, stdin=subprocess.DEVNULL, timeout=harness.DEADLINE, check=True)

    def end(self):
        if self.hand:
            self.hand.close()
        super().end()


class DockingDesktop(WaylandDesktop):
    """The same where the panel is docked. One program at a time has it."""

    places_windows = True
    program_kind = DockedProgram


class LabwcDesktop(DockingDesktop):
    """labwc is the compositor, which gives docked windows the keyboard as it does others. It tells nothing of windows."""

    def _compositor(self, folder, width, height):
        self.size = 1280, 720
        return "labwc", "--config-dir", folder

    def _answers(self):
        return True

    def _has_devices(self):
        with contextlib.closing(wayland_client.Client(self.env["WAYLAND_DISPLAY"])) as client:
            return client.has_devices()

    def window_nodes(self):
        return []


class WestonDesktop(WaylandDesktop):
    """weston is the compositor, which docks nothing. It shows nobody its screen and has no hand, so that a test has to
    look at what is said to it."""

    def _compositor(self, folder, width, height):
        return "weston", "--backend=headless", "--socket=wayland-weston", f"--width={width}", f"--height={height}"

    def _answers(self):
        return True

    def _start_window_manager(self):
        """Nothing is missing."""

    def window_nodes(self):
        return []

    def save_picture(self, path):
        """There is none."""


# What the tests are to run on: they inherit the user's choice.
DESKTOP = DockingDesktop if os.environ.get("KORVEL_DOCKED") == "yes" else WaylandDesktop
