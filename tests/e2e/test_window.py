"""The panel's window as a desktop has it: where it stands whatever its height, what moves it and what does not, and
how it looks while its height changes."""

import os
import signal
import subprocess
import unittest

import containers
import flows
import harness
from flows import MARGIN_X, MARGIN_Y, WIDTH, overdue

ON_CALL = os.environ["KORVEL_E2E_PANEL"]
WINDOW = os.environ["KORVEL_E2E_WINDOW"]

EDGE = 12  # points between the window and the edges of the work area
SCREEN = (1280, 800)
SCALES = [(flows.LEFT_TO_RIGHT, 1), (flows.LEFT_TO_RIGHT, 2)]


class PanelOnCall(flows.Panel):
    """A panel that opens and closes when a test says so, in a program that does not end by itself."""

    is_docked = False  # its tests look at its place themselves

    def __init__(self, desktop, container, locale=flows.LEFT_TO_RIGHT, scale=1):
        self.container, self.scale, self.mirrored = container, scale, False
        calls = desktop.folder / f"{container.containers.name}-calls"
        os.mkfifo(calls)
        self.program = desktop.run([ON_CALL, calls], {
            "QT_SCALE_FACTOR": str(scale), "LC_ALL": locale, "KORVEL_GROUP_CONTAINERS": str(container.containers)})
        self._calls = os.open(calls, os.O_RDWR)
        self.show()

    def wait_for_height(self, content):
        """A translucent window has its new height before what is drawn in it has."""
        super().wait_for_height(content)
        harness.wait_for(self._is_drawn_to_its_bottom, f"a panel that is drawn {content} points high")

    def _is_drawn_to_its_bottom(self):
        picture = self.window.picture()
        return picture[picture.width // 2, picture.height - 3] != picture[0, 0]

    def call(self, *words):
        os.write(self._calls, (" ".join(words) + "\n").encode())

    def show(self, *words):
        self.call("open", *words)
        self.window = self.program.window()

    def hide(self):
        self.call("close")
        self.wait_until_hidden()

    def wait_until_hidden(self):
        harness.wait_for(lambda: not self.program.windows(), "a hidden panel")

    def end(self):
        os.close(self._calls)


class WindowTest(flows.Flow):
    panel_kind = PanelOnCall
    variants = SCALES

    def open(self, *arguments, **settings):
        panel = super().open(*arguments, **settings)
        self.addCleanup(panel.end)
        return panel

    def assert_at(self, x, y, content):
        """Waits until the window is as high as a content of this height makes it, then compares its place, once
        the window manager has done what it was asked for before."""
        panel = self.panel
        panel.wait_for_height(content)
        self.desktop.wait_for_window_manager()
        expected = harness.Geometry(x, y, (WIDTH + 2 * MARGIN_X) * panel.scale,
                                    (content + 2 * MARGIN_Y) * panel.scale)
        self.assertEqual(panel.window.geometry(), expected)

    def assert_docked(self, content, right=SCREEN[0], top=0):
        scale = self.panel.scale
        self.assert_at(right - (EDGE + WIDTH + 2 * MARGIN_X) * scale, top + EDGE * scale, content)

    def assert_docked_with_rows(self, transactions, **work_area):
        self.assert_docked(flows.ROW * (transactions + 1), **work_area)

    def reserve(self, **sides):
        """Has a window that keeps some pixels of the screen's sides for itself, as a desktop's bar does."""
        if not hasattr(self, "_bar"):
            self._bar = self.desktop.run([WINDOW])
        sizes = [sides.get(side, 0) for side in ("left", "right", "top", "bottom")]
        ranges = [0, SCREEN[1] - 1, 0, SCREEN[1] - 1, 0, SCREEN[0] - 1, 0, SCREEN[0] - 1]
        subprocess.run(["xprop", "-id", self._bar.window().ident, "-f", "_NET_WM_STRUT_PARTIAL", "32c", "-set",
                        "_NET_WM_STRUT_PARTIAL", ", ".join(map(str, sizes + ranges))],
                       env=self.desktop.env, timeout=harness.DEADLINE, check=True)


class DockedWindowTest(WindowTest):
    """A window that nobody moves stands at the edge, however high it is."""

    @flows.in_each_variant
    def while_rows_are_opened_and_paid(self, variant):
        panel = self.open([overdue(number) for number in range(1, 5)], variant)
        self.assert_docked_with_rows(4)
        for left in (3, 2, 1, 0):
            panel.open_row(0)
            self.assert_docked_with_rows(left + 1)
            panel.click_button("Paid", 0)
            self.assert_docked_with_rows(left)

    @flows.in_each_variant
    def while_a_sheet_opens_is_cancelled_and_answered(self, variant):
        panel = self.open([overdue(number) for number in range(1, 3)], variant)
        self.open_sheet("Later", 0, shown=2, choices=3)
        self.assert_docked(flows.SHEET[3])
        panel.cancel(3)
        self.assert_docked_with_rows(2)
        self.open_sheet("Later", 0, shown=2, choices=3)
        self.assert_docked(flows.SHEET[3])
        panel.choose(1)
        self.assert_docked_with_rows(1)

    @flows.in_each_variant
    def while_the_host_writes_the_list_anew(self, variant):
        self.open([overdue(1)], variant)
        self.assert_docked_with_rows(1)
        for count in (5, 0, 3, 1, 4):
            self.container.write_feed([overdue(number) for number in range(1, count + 1)])
            self.assert_docked_with_rows(count)

    def through_twenty_sheets(self):
        panel = self.open([overdue(1)])
        for _ in range(20):
            self.open_sheet("Later", 0, shown=1, choices=3)
            self.assert_docked(flows.SHEET[3])
            panel.cancel(3)
            self.assert_docked_with_rows(1)

    def when_it_has_changed_while_it_was_hidden(self):
        panel = self.open([overdue(1)])
        for count in (5, 2, 0, 3):
            panel.hide()
            self.container.write_feed([overdue(number) for number in range(1, count + 1)])
            panel.show()
            self.assert_docked_with_rows(count)


class Docked(DockedWindowTest):
    def test_while_rows_are_opened_and_paid(self):
        self.while_rows_are_opened_and_paid()

    def test_while_a_sheet_opens_is_cancelled_and_answered(self):
        self.while_a_sheet_opens_is_cancelled_and_answered()

    def test_while_the_host_writes_the_list_anew(self):
        self.while_the_host_writes_the_list_anew()

    def test_through_twenty_sheets(self):
        self.through_twenty_sheets()

    def test_when_it_has_changed_while_it_was_hidden(self):
        self.when_it_has_changed_while_it_was_hidden()


class DockedWithCompositor(DockedWindowTest):
    desktop_options = {"compositor": True}

    def test_while_rows_are_opened_and_paid(self):
        self.while_rows_are_opened_and_paid()

    def test_while_a_sheet_opens_is_cancelled_and_answered(self):
        self.while_a_sheet_opens_is_cancelled_and_answered()

    def test_while_the_host_writes_the_list_anew(self):
        self.while_the_host_writes_the_list_anew()

    def test_through_twenty_sheets(self):
        self.through_twenty_sheets()

    def test_when_it_has_changed_while_it_was_hidden(self):
        self.when_it_has_changed_while_it_was_hidden()


class Moved(WindowTest):
    """A window that the user has moved stays there until it is opened again."""

    def move(self, x, y):
        self.desktop.xdotool("windowmove", self.panel.window.ident, x, y)
        harness.wait_for(lambda: (self.panel.window.geometry().x, self.panel.window.geometry().y) == (x, y),
                         f"a window moved to {x}, {y}")

    @flows.in_each_variant
    def test_stays_while_its_height_changes(self, variant):
        panel = self.open([overdue(1), overdue(2)], variant)
        self.assert_docked_with_rows(2)
        self.move(100, 60)
        self.open_sheet("Later", 0, shown=2, choices=3)
        self.assert_at(100, 60, flows.SHEET[3])
        panel.cancel(3)
        self.assert_at(100, 60, flows.ROW * 3)
        self.container.write_feed([overdue(1)])
        self.assert_at(100, 60, flows.ROW * 2)

    def test_stays_in_the_screens_corner(self):
        self.open([overdue(1)])
        self.assert_docked_with_rows(1)
        self.move(0, 0)
        self.container.write_feed([overdue(1), overdue(2)])
        self.assert_at(0, 0, flows.ROW * 3)

    def test_stays_when_it_is_asked_for_again(self):
        panel = self.open([overdue(1)])
        self.assert_docked_with_rows(1)
        self.move(100, 60)
        self.container.write_feed([overdue(1), overdue(2)])
        panel.show()
        self.assert_at(100, 60, flows.ROW * 3)

    def test_is_docked_when_it_opens_again(self):
        panel = self.open([overdue(1)])
        self.assert_docked_with_rows(1)
        self.move(100, 60)
        panel.hide()
        panel.show()
        self.assert_docked_with_rows(1)

    def test_stands_higher_where_it_would_reach_beyond_the_bottom(self):
        panel = self.open([overdue(1)])
        self.assert_docked_with_rows(1)
        low = SCREEN[1] - 150
        self.move(100, low)
        self.open_sheet("Later", 0, shown=1, choices=3)
        self.assert_at(100, SCREEN[1] - flows.SHEET[3] - 2 * MARGIN_Y, flows.SHEET[3])
        panel.cancel(3)
        self.assert_at(100, low, flows.ROW * 2)


class WorkArea(WindowTest):
    """A window is docked at the edge of what the desktop's bars leave."""

    @flows.in_each_variant
    def test_is_followed(self, variant):
        self.open([overdue(1)], variant)
        self.assert_docked_with_rows(1)
        for right, top in ((100, 0), (0, 30), (64, 48), (0, 0)):
            self.reserve(right=right, top=top)
            self.wait_for_place(top)
            self.assert_docked_with_rows(1, right=SCREEN[0] - right, top=top)

    def wait_for_place(self, top):
        y = top + EDGE * self.panel.scale
        harness.wait_for(lambda: self.panel.window.geometry().y == y, f"a window at {y}")

    def test_is_kept_when_the_height_changes(self):
        self.open([overdue(1)])
        self.assert_docked_with_rows(1)
        self.reserve(right=100, top=30)
        self.wait_for_place(30)
        self.container.write_feed([overdue(1), overdue(2)])
        self.assert_docked_with_rows(2, right=1180, top=30)

    def test_is_never_left_at_its_bottom(self):
        self.open([overdue(number) for number in range(1, 6)], self.LOW[0])
        self.assert_docked_with_rows(5)
        self.reserve(bottom=SCREEN[1] - 400)
        self.assert_docked(self.LOW[1])
        self.reserve()
        self.assert_docked_with_rows(5)

    def test_that_changes_leaves_a_moved_window_where_it_is(self):
        self.open([overdue(number) for number in range(1, 6)], self.LOW[0])
        self.assert_docked_with_rows(5)
        self.desktop.xdotool("windowmove", self.panel.window.ident, 300, 20)
        harness.wait_for(lambda: self.panel.window.geometry().x == 300, "a moved window")
        self.reserve(bottom=SCREEN[1] - 400)
        self.assert_at(300, 20, self.LOW[1])

    # The window manager leaves half of the screen at least. So much is too low for six rows at twice the pixels.
    LOW = SCALES[1], 400 // 2 - 2 * EDGE - 2 * MARGIN_Y


class Screens(WindowTest):
    """A window is docked on the screen where it was asked for, for as long as that is there."""

    def xrandr(self, *words):
        subprocess.run(["xrandr", *words], env=self.desktop.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       timeout=harness.DEADLINE, check=True)

    def split(self):
        """Makes two screens of the one: "left" and "right", at 96 pixels to an inch."""
        half, height = SCREEN[0] // 2, SCREEN[1]
        for name, output in (("left", "screen"), ("right", "none")):
            x = 0 if name == "left" else half
            self.xrandr("--setmonitor", name, f"{half}/169x{height}/211+{x}+0", output)

    def test_that_was_asked_for_has_the_window(self):
        self.split()
        panel = self.open([overdue(1)])
        for name, right in (("right", 1280), ("left", 640), ("", 640), ("no-such-screen", 640), ("right", 1280)):
            panel.hide()
            panel.show(name)
            self.assert_docked_with_rows(1, right=right)

    def test_that_changes_is_followed(self):
        self.xrandr("--newmode", "small", "60", "1024", "1034", "1044", "1054", "600", "610", "620", "630")
        self.xrandr("--addmode", "screen", "small")
        self.open([overdue(number) for number in range(1, 6)], SCALES[1])
        self.assert_docked_with_rows(5)
        self.xrandr("--output", "screen", "--mode", "small")
        self.assert_docked(600 // 2 - 2 * EDGE - 2 * MARGIN_Y, right=1024)
        self.xrandr("--output", "screen", "--mode", f"{SCREEN[0]}x{SCREEN[1]}")
        self.assert_docked_with_rows(5)

    def test_that_goes_leaves_the_window_to_another(self):
        self.split()
        panel = self.open([overdue(1)])
        panel.hide()
        panel.show("right")
        self.assert_docked_with_rows(1)
        self.xrandr("--delmonitor", "right")
        harness.wait_for(lambda: panel.window.geometry().x < SCREEN[0] // 2, "a window on the left screen")
        self.assert_docked_with_rows(1, right=640)
        self.container.write_feed([overdue(1), overdue(2)])
        self.assert_docked_with_rows(2, right=640)


class Scale(WindowTest):
    """A change of the scale in the desktop's settings is followed by a window that is shown."""

    def setUp(self):
        super().setUp()
        self.settings = self.desktop.folder / "xsettings"
        self.write_scale(1)
        self.daemon = self.desktop.start(("xsettingsd", "-c", self.settings))
        harness.wait_for(lambda: self.desktop.has_owner("_XSETTINGS_S0"), "the desktop's settings")

    def write_scale(self, scale):
        self.settings.write_text(f"Xft/DPI {scale * 96 * 1024}\n")

    def change_scale(self, scale):
        self.write_scale(scale)
        self.daemon.send_signal(signal.SIGHUP)
        self.panel.scale = scale
        left = SCREEN[0] - (EDGE + WIDTH + 2 * MARGIN_X) * scale
        harness.wait_for(lambda: self.panel.window.geometry().x == left, f"a window at {left}")

    def test_leaves_it_docked(self):
        self.open([overdue(1), overdue(2)])
        self.assert_docked_with_rows(2)
        for scale in (2, 1):
            self.change_scale(scale)
            self.assert_docked_with_rows(2)

    def test_leaves_a_sheet_that_can_be_answered(self):
        panel = self.open([overdue(1), overdue(2)])
        for scale in (2, 1):
            self.open_sheet("Later", 0, shown=2, choices=3)
            self.change_scale(scale)
            self.assert_docked(flows.SHEET[3])
            panel.cancel(3)
            self.assert_docked_with_rows(2)

    def test_leaves_an_open_row_whose_buttons_work(self):
        panel = self.open([overdue(1), overdue(2), overdue(3)])
        for scale, left in ((2, 2), (1, 1)):
            panel.wait_for_rows(left + 1)
            panel.open_row(0)
            self.change_scale(scale)
            self.assert_docked_with_rows(left + 1)
            panel.wait_until_open(0)
            panel.click_button("Paid", 0)
            self.assert_docked_with_rows(left)

    def test_leaves_it_as_tall_as_the_work_area_at_most(self):
        height = 500  # of the work area, in pixels
        self.reserve(bottom=SCREEN[1] - height)
        self.open([overdue(number) for number in range(1, 6)])
        self.assert_docked_with_rows(5)
        self.change_scale(2)
        self.assert_docked(height // 2 - 2 * EDGE - 2 * MARGIN_Y)
        self.change_scale(1)
        self.assert_docked_with_rows(5)


class FocusLoss(WindowTest):
    """A window that was opened to hide when another one takes the focus."""

    def setUp(self):
        super().setUp()
        self.other = self.desktop.run([WINDOW]).window()

    def open_hiding(self, records):
        panel = self.open(records)
        panel.hide()
        panel.show("hiding")
        panel.wait_for_rows(len(records))
        self.wait_for_focus()
        return panel

    def wait_for_focus(self):
        """A panel that is shown again at once has another window."""
        shown = self.panel.program.windows
        harness.wait_for(lambda: self.focused() in [window.ident for window in shown()], "a panel with the focus")

    def focused(self):
        done = subprocess.run(["xdotool", "getwindowfocus"], env=self.desktop.env, capture_output=True, text=True,
                              timeout=harness.DEADLINE)
        return done.stdout.strip()

    def take_focus(self):
        self.other.click(190, 90)
        harness.wait_for(lambda: self.focused() == self.other.ident, "another window with the focus")

    def test_hides_it(self):
        panel = self.open_hiding([overdue(1)])
        self.take_focus()
        panel.wait_until_hidden()
        panel.show("hiding")
        self.assert_docked_with_rows(1)

    def test_hides_it_when_it_opens_again_at_once(self):
        panel = self.open_hiding([overdue(1)])
        for _ in range(3):
            panel.call("close\nopen", "hiding")
            self.wait_for_focus()
        self.take_focus()
        panel.wait_until_hidden()

    def test_hides_it_after_a_sheet_is_answered(self):
        panel = self.open_hiding([overdue(1), overdue(2)])
        self.open_sheet("Later", 0, shown=2, choices=3)
        self.take_focus()
        panel.choose(1)
        harness.wait_for(self.log_file().exists, "an action log")
        self.take_focus()
        panel.wait_until_hidden()


class Corners(WindowTest):
    """Whether a window has round corners is seen at each opening. No corner is square while the height changes."""

    desktop_options = {"compositor": True}

    def corners(self):
        """The colours of the corners of what is drawn of the panel, whose height is read from the picture."""
        picture = self.panel.window.picture()
        middle, ground = picture.width // 2, picture[0, 0]
        bottom = max(y for y in range(picture.height) if picture[middle, y] != ground)
        return bottom + 1, [picture[x, y] for y in (0, bottom) for x in (0, picture.width - 1)]

    def test_are_round_while_the_height_changes(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        start, moving = flows.ROW * 2 + 2 * MARGIN_Y, set()
        for count in (5, 1) * 30:  # a busy machine may show each sheet at its end only
            end = flows.ROW * (count + 1) + 2 * MARGIN_Y
            self.container.write_feed([overdue(number) for number in range(1, count + 1)])
            harness.wait_for(lambda: self.corners()[0] != start, "a sheet that moves")
            with panel.program.paused():
                self.desktop.wait_for_window_manager()
                height, corners = self.corners()
            self.assertEqual(len(set(corners)), 1, f"corners at a height of {height}: {corners}")
            panel.wait_for_rows(count)
            if height not in (start, end):
                moving.add(height)
            if len(moving) == 5:
                break
            start = end
        self.assertTrue(moving, "no sheet was seen on its way")

    def test_are_round_only_where_something_composes_the_screen(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        compositor = self.desktop._processes[2]
        compositor.terminate()
        compositor.wait(harness.DEADLINE)
        panel.hide()
        panel.show()
        self.assert_docked_with_rows(1)
        harness.wait_for(lambda: panel.window.picture()[5, 5] == (29, 33, 38), "an opaque panel")
        picture = panel.window.picture()
        self.assertEqual(len({picture[x, y] for x, y in ((0, 0), (343, 115), (100, 0), (0, 50))}), 1)
        self.assertNotEqual(picture[0, 0], picture[5, 5], "an outline")
        self.desktop._start_compositor()
        panel.hide()
        panel.show()
        self.assert_docked_with_rows(1)
        harness.wait_for(lambda: len(set(self.corners()[1])) == 1 and self.corners()[1][0] != picture[0, 0],
                         "round corners")


if __name__ == "__main__":
    unittest.main()
