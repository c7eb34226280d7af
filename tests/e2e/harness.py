"""A desktop of its own for each end-to-end test: an X server without a screen, a window manager and, where asked
for, a compositor and an accessibility bus; real clients look at it, click and type.

    class Panel(harness.DesktopTest):
        def test_closes_on_escape(self):
            program = self.desktop.run([os.environ["KORVEL_TODAY"]])
            program.window().press("Escape")
            self.assertEqual(program.end_status(), 0)

Nothing waits for a time: wait_for() looks until a condition holds and fails at its deadline. Everything that a
desktop starts ends with it, also when the test fails or is killed.
"""

import contextlib
import ctypes
import dataclasses
import json
import os
import pathlib
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

DEADLINE = 20.0  # seconds, for anything that a test waits for; far more than a loaded machine needs
LOOK_EVERY = 0.02  # seconds between two looks at a condition

# Where the desktop's own parts find their themes and the schemas of their settings.
SYSTEM_FILES = {"XDG_DATA_DIRS": "/usr/share", "XDG_CONFIG_DIRS": "/etc/xdg"}

_PR_SET_PDEATHSIG = 1
_PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


class Unmet(AssertionError):
    """A condition that did not come to hold before its deadline."""


def wait_for(condition, what, deadline=DEADLINE):
    """The first true value of condition(), looked at again and again."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Unmet(f"not within {deadline:g} s: {what}")
        select.select([], [], [], LOOK_EVERY)


def _output(command, env):
    """What a command prints, or none where it fails (a window that is gone, say)."""
    done = subprocess.run(command, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, timeout=DEADLINE)
    return done.stdout if done.returncode == 0 else None


def children(pid, ended=False):
    """The processes that are a process's children now, the adopted ones too; on request also those that have ended
    and of which it does not know yet."""
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        fields = _status(folder.name)
        if fields and fields[1] == str(pid) and (ended or fields[0] != "Z"):
            yield int(folder.name)


def _status(pid):
    """What the kernel tells of a process, from its state's letter on, or nothing where it is gone."""
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    except OSError:
        return []


def time_used(pid):
    """The hundredths of a second that a process has been running on a processor."""
    return sum(map(int, _status(pid)[11:13]))


def state(pid):
    """The letter of a process's state, or none where it is gone."""
    return next(iter(_status(pid)), None)


def parent(pid):
    """The process that a living one is a child of."""
    return int(_status(pid)[1])


@dataclasses.dataclass(frozen=True)
class Geometry:
    """A window's place and size on the screen, in pixels, without what a window manager puts around it."""
    x: int
    y: int
    width: int
    height: int


class Opens:
    """Counts how often a file is opened from now on."""

    def __init__(self, path):
        self._events = _libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        assert _libc.inotify_add_watch(self._events, os.fsencode(path), 0x20) >= 0  # IN_OPEN
        self._count = 0

    def count(self):
        with contextlib.suppress(BlockingIOError):
            while events := os.read(self._events, 1 << 16):
                self._count += len(events) // 16  # of a file there is no name behind an event
        return self._count


class Picture:
    """Pixels of the screen: picture[x, y] is (red, green, blue)."""

    def __init__(self, width, height, data):
        assert len(data) == width * height * 3
        self.width, self.height, self._data = width, height, data

    def __getitem__(self, at):
        x, y = at
        assert 0 <= x < self.width and 0 <= y < self.height
        start = (y * self.width + x) * 3
        return tuple(self._data[start:start + 3])

    def ends_in_row(self, y, color):
        """Where a colour is first and last in a row, or none where it is not."""
        row = self._data[y * self.width * 3:(y + 1) * self.width * 3]
        first = row.find(color)
        while first % 3 and first >= 0:
            first = row.find(color, first + 1)
        last = row.rfind(color)
        while last % 3 and last >= 0:
            last = row.rfind(color, 0, last + 2)
        return (first // 3, last // 3) if first >= 0 else None


class Window:
    """A window as other clients see it."""

    def __init__(self, desktop, ident):
        self.desktop, self.ident = desktop, ident

    def _text(self, *command):
        return (_output(command, self.desktop.env) or b"").decode(errors="replace")

    def shown(self):
        return "IsViewable" in self._text("xwininfo", "-id", self.ident)

    def geometry(self):
        """Where it is, or none where it is gone."""
        text = self._text("xwininfo", "-id", self.ident)
        keys = ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height")
        found = [re.search(rf"{key}: +(-?\d+)", text) for key in keys]
        return Geometry(*(int(match[1]) for match in found)) if all(found) else None

    def wait_for_size(self, width, height, deadline=DEADLINE):
        """Waits until it has this size (none: any); a window may still be on its way there."""
        def sized():
            seen.append(self.geometry())
            here = seen[-1]
            return here and width in (None, here.width) and height in (None, here.height)
        seen = []
        try:
            wait_for(sized, "size", deadline)
        except Unmet:
            raise Unmet(f"window is not {width} x {height} but {seen[-1]}") from None
        return seen[-1]

    def property(self, name):
        """The text of one of its properties, as xprop prints it."""
        return self._text("xprop", "-id", self.ident, name).strip()

    def picture(self):
        """What the screen shows where the window is."""
        here = self.geometry()
        data = _output(("import", "-window", "root", "-crop", f"{here.width}x{here.height}+{here.x}+{here.y}",
                        "+repage", "-depth", "8", "rgb:-"), self.desktop.env)
        return Picture(here.width, here.height, data)

    def move_pointer(self, x, y):
        """Puts the pointer x, y pixels from the window's upper left corner. The server has done so when this
        returns; xdotool's own waiting is for a pointer that moves, and takes long where it is there already."""
        here = self.geometry()
        self.desktop.xdotool("mousemove", here.x + x, here.y + y)

    def click(self, x, y, button=1, times=1):
        self.move_pointer(x, y)
        self.desktop.xdotool("click", "--repeat", times, "--delay", 30, button)

    def hold(self, x, y, button=1):
        self.move_pointer(x, y)
        self.desktop.xdotool("mousedown", button)

    def let_go(self, x, y, button=1):
        self.move_pointer(x, y)
        self.desktop.xdotool("mouseup", button)

    def gesture(self, *steps):
        """Does what a quick hand does, at its own pace: "click", "mousedown" and "mouseup" are the left button's, a
        pair is a place to go to, and a number the seconds to let pass before the next step. (xdotool would let a
        tenth pass after each click.) Returns whether the hand was as quick as that: on a loaded machine it may not
        have been."""
        here = self.geometry()
        words = []
        for step in steps:
            if step == "click":
                words += ["click", "--delay", 0, 1]
            elif isinstance(step, str):
                words += [step, 1]
            elif isinstance(step, tuple):
                words += ["mousemove", here.x + step[0], here.y + step[1]]
            else:
                words += ["sleep", step]
        begin = time.monotonic()
        self.desktop.xdotool(*words)
        return time.monotonic() - begin < sum(step for step in steps if isinstance(step, float)) + 0.1

    def press(self, key):
        """Gives the window the keyboard, then presses a key, named as X names it. A click goes through the window
        manager's hands; the key must not overtake it there."""
        self.desktop.wait_for_window_manager()
        self.desktop.xdotool("windowfocus", "--sync", self.ident)
        self.desktop.xdotool("key", key)


class Program:
    """A program that runs on a desktop."""

    def __init__(self, desktop, command, env):
        self.desktop = desktop
        folder = pathlib.Path(tempfile.mkdtemp(dir=desktop.folder))
        self._out, self._err = folder / "out", folder / "err"
        with self._out.open("wb") as out, self._err.open("wb") as err:
            self.process = desktop.start(command, env, stdout=out, stderr=err)

    @property
    def out(self):
        return self._out.read_text(encoding="utf-8", errors="replace")

    @property
    def err(self):
        return self._err.read_text(encoding="utf-8", errors="replace")

    def running(self):
        return self.process.poll() is None

    def pids(self):
        """The process and its children."""
        return [self.process.pid, *children(self.process.pid)]

    def windows(self):
        """Its windows that can be seen now, and those of its children."""
        return [window for pid in self.pids() for window in self.desktop.windows_of(pid)]

    def window(self):
        """Its one window, once it is there."""
        def found():
            if not self.running():
                raise AssertionError(f"ended with {self.process.returncode} before it showed a window: {self.err}")
            return self.windows()
        windows = wait_for(found, f"a window of {self.process.args[0]}")
        if len(windows) != 1:
            raise AssertionError(f"{len(windows)} windows where there should be one")
        return windows[0]

    @contextlib.contextmanager
    def paused(self):
        """Holds the program with its children still: what the mouse and the keyboard do meanwhile reaches it at one blow, before any
        time has passed for it. So "at once after" does not hang on how fast the machine is."""
        pids = self.pids()
        for pid in pids:
            os.kill(pid, signal.SIGSTOP)
        wait_for(lambda: all(state(pid) == "T" for pid in pids), "stopped processes")
        try:
            yield
        finally:
            for pid in pids:
                os.kill(pid, signal.SIGCONT)

    def terminate(self):
        """Asks it to end and gives its exit status."""
        self.process.terminate()
        return self.end_status()

    def end_status(self):
        """The exit status, once it has ended by itself; negative for a signal."""
        wait_for(lambda: not self.running(), f"the end of {self.process.args[0]}")
        return self.process.returncode


class Desktop:
    """The X server and what belongs to it. `env` is the environment of whatever runs on it."""

    places_windows = True  # where they want to be

    def __init__(self, width=1280, height=800, compositor=False, accessibility=False, bus=False, env=()):
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self._processes = []
        self.size = width, height
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="korvel-desktop-"))
        try:
            self.env = self._environment() | dict(env)
            self._start_screen(width, height)
            self._start_window_manager()
            if compositor:
                self._start_compositor()
            if bus or accessibility:
                self._start_bus()
            if accessibility:
                self._start_accessibility()
        except BaseException:
            self.end()
            raise

    def _environment(self):
        """Nothing of the user's own desktop but the search path and what the sanitizers are told, and nothing of a panel
        that is installed there: its icons, its handler of URLs and its autostart entry have the names of ours."""
        kept = {name: value for name, value in os.environ.items()
                if name == "PATH" or name.startswith(("KORVEL_", "ASAN_", "UBSAN_", "LSAN_"))}
        folders = {"HOME": "home", "XDG_RUNTIME_DIR": "run", "XDG_DATA_HOME": "home/data",
                   "XDG_CONFIG_HOME": "home/config", "XDG_CACHE_HOME": "home/cache", "TMPDIR": "tmp",
                   "XDG_DATA_DIRS": "share", "XDG_CONFIG_DIRS": "etc"}
        for name, folder in folders.items():
            (self.folder / folder).mkdir(mode=0o700, parents=True)
            kept[name] = str(self.folder / folder)
        return kept | {"LANG": "C.UTF-8", "TZ": "UTC", "QT_QPA_PLATFORM": "xcb", "NO_AT_BRIDGE": "1",
                       "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/dev/null"}

    def start(self, command, env=None, **streams):
        """Starts a process of this desktop in a group of its own; it dies with the test in any case."""
        def die_with_parent():
            _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)
        process = subprocess.Popen(
            [str(word) for word in command], env=self.env | dict(env or {}), cwd=self.folder,
            start_new_session=True, preexec_fn=die_with_parent,
            **(dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.DEVNULL) | streams))
        self._processes.append(process)
        return process

    def _start_screen(self, width, height):
        ours, its = os.pipe()
        log = self.folder / "Xvfb.log"
        try:
            with log.open("wb") as err:
                process = self._screen = self.start(
                    ("Xvfb", "-displayfd", its, "-screen", "0", f"{width}x{height}x24", "-dpi", "96", "-noreset",
                     "-nolisten", "tcp"), pass_fds=(its,), stderr=err)
        finally:
            os.close(its)
        number = self._line_from(ours)
        if not number:
            process.wait(DEADLINE)
            raise AssertionError(f"Xvfb does not start: {log.read_text(errors='replace')}")
        self.env["DISPLAY"] = f":{number}"

    def _start_window_manager(self):
        # While it starts it may lose a window that asks to be shown, and a request too; its own settings say four
        # desktops.
        self.start(("openbox", "--sm-disable"), env=SYSTEM_FILES)
        self._desktops = 1
        wait_for(lambda: self._ask_for_desktops() or self._has_desktops(), "a window manager")

    def _ask_for_desktops(self):
        _output(("xdotool", "set_num_desktops", str(self._desktops)), self.env)

    def _has_desktops(self):
        return _output(("xdotool", "get_num_desktops"), self.env) == f"{self._desktops}\n".encode()

    def wait_for_window_manager(self):
        """Returns when it has handled what came before. It takes one thing after the other, so it is asked for
        another number of desktops and has come to that when it has it."""
        self._desktops = 3 - self._desktops
        self._ask_for_desktops()
        wait_for(self._has_desktops, "the window manager's answer")

    def _start_compositor(self):
        self.start(("xcompmgr",))
        wait_for(self.composited, "a compositor")

    def _start_bus(self):
        ours, its = os.pipe()
        try:
            self._bus = self.start(("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={its}"),
                       pass_fds=(its,))
        finally:
            os.close(its)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self._line_from(ours)

    def end_bus(self):
        """Ends the session bus, at once."""
        self._bus.kill()
        self._bus.wait(DEADLINE)

    def _start_accessibility(self):
        self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        del self.env["NO_AT_BRIDGE"]
        self.start(("/usr/libexec/at-spi-bus-launcher", "--launch-immediately"), env=SYSTEM_FILES)
        wait_for(lambda: _output(("gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                                  "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress"), self.env),
                 "the accessibility bus")

    @staticmethod
    def _line_from(pipe):
        """The first line that a started process writes to a pipe, or "" where it ends without one."""
        with open(pipe, "rb", buffering=0) as stream:
            line = b""
            while not line.endswith(b"\n"):
                if not select.select([stream], [], [], DEADLINE)[0]:
                    raise Unmet("a started process says nothing")
                if not (some := stream.read(1024)):
                    break
                line += some
            return line.decode().strip()

    def composited(self):
        """Whether a compositor owns the screen."""
        return self.has_owner("_NET_WM_CM_S0")

    def has_owner(self, selection):
        """Whether a program has a selection of the X server, asked as toolkits ask it."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XInternAtom.restype = x11.XGetSelectionOwner.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.env["DISPLAY"].encode()))
        if not display:
            return False
        atom = ctypes.c_ulong(x11.XInternAtom(display, selection.encode(), False))
        owner = x11.XGetSelectionOwner(display, atom)
        x11.XCloseDisplay(display)
        return owner != 0

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.env, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, timeout=DEADLINE, check=True)

    @staticmethod
    def environment_at_scale(scale):
        """The environment of a program that draws so many pixels to a point."""
        return {"QT_SCALE_FACTOR": str(scale)}

    def run(self, command, env=None):
        """Starts a program on this desktop."""
        return Program(self, command, env)

    def accessible(self, *words):
        """Asks the accessibility client (see accessible.py) and gives its answer."""
        done = subprocess.run([sys.executable, "-B", pathlib.Path(__file__).with_name("accessible.py"), *words],
                              env=self.env, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=2 * DEADLINE)
        if done.returncode != 0:
            raise AssertionError(f"accessible.py {' '.join(words)}: {done.stderr}")
        return json.loads(done.stdout)

    def windows_of(self, pid):
        """The windows of a process that can be seen now."""
        found = _output(("xdotool", "search", "--onlyvisible", "--pid", str(pid)), self.env) or b""
        return [Window(self, ident) for ident in found.decode().split()]

    def save_picture(self, path):
        """Writes the whole screen to a PNG file."""
        subprocess.run(["import", "-window", "root", path], env=self.env, stdin=subprocess.DEVNULL,
                       timeout=DEADLINE, check=True)

    def has_screen(self):
        return self._screen.poll() is None

    def end_screen(self):
        """Ends the X server, at once and without a word to its clients."""
        self._screen.kill()
        self._screen.wait(DEADLINE)

    def end(self):
        """Ends everything that runs here, the last started first, then what those left behind."""
        for process in reversed(self._processes):
            for ask in (signal.SIGTERM, signal.SIGKILL):
                if process.poll() is not None:
                    break
                os.killpg(process.pid, ask)
                try:
                    process.wait(DEADLINE / 4)
                except subprocess.TimeoutExpired:
                    continue
        self._processes.clear()
        for child in children(os.getpid()):
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)
        shutil.rmtree(self.folder, ignore_errors=True)


class DesktopTest(unittest.TestCase):
    """A test with a desktop. A class says what its desktops are like in `desktop_kind` and `desktop_options`; when a test fails, what
    its screen showed stays as a picture in KORVEL_FAILURES."""

    desktop_kind = Desktop
    desktop_options = {}

    def run(self, result=None):
        self._result = result if result is not None else self.defaultTestResult()
        return super().run(self._result)

    def setUp(self):
        faults = self._faults()
        self.desktop = self.desktop_kind(**self.desktop_options)
        self.addCleanup(self.desktop.end)
        self.addCleanup(self._keep_picture_of_failure, faults)

    def _faults(self):
        return len(self._result.failures) + len(self._result.errors)

    def _keep_picture_of_failure(self, faults_before):
        folder = os.environ.get("KORVEL_FAILURES")
        if folder and self._faults() > faults_before and self.desktop.has_screen():
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            self.desktop.save_picture(pathlib.Path(folder, self.id() + ".png"))
