"""The panel on a screen as a hand meets it: where to click, what to wait for, and which files the widget writes.

Places are given in points of the content and read from left to right; a Panel knows the screen's scale and, in a
language that is read from the right, which places are mirrored.
"""

import contextlib
import datetime
import functools
import os
import stat

import containers
import harness
from containers import property_list

PANEL = os.environ.get("KORVEL_TODAY", "")

MARGIN_X, MARGIN_Y = 12, 8
EDGE = 12  # between the window and the edges of the screen
WIDTH, ROW = 320, 50
BUTTONS = {"Paid": 145, "Later": 195, "Info": 245, "Delete": 295}
MIRRORED_BUTTONS = {"Delete": 20, "Info": 70, "Later": 120, "Paid": 170}
CHOICES = {1: 66, 2: 114, 3: 162}
CANCEL = {2: 171, 3: 219}  # by the number of choices
SHEET = {2: 197, 3: 245}

# One panel each: the locale, and the scale of the screen.
LEFT_TO_RIGHT, RIGHT_TO_LEFT = "C.UTF-8", "ar_EG.UTF-8"
VARIANTS = [(LEFT_TO_RIGHT, 1), (RIGHT_TO_LEFT, 1), (LEFT_TO_RIGHT, 2), (RIGHT_TO_LEFT, 2)]


def overdue(number, **changes):
    """A record that is shown whatever the day is, as all that is overdue. Number 1 is the oldest and stands first.
    Its name is short, so that nothing of it stands where a row's buttons come."""
    date = 1600000000.125 + 86400.0 * number
    return containers.transaction(number, date=date, name=f"T{number}") | changes


def logged(kind, record, parameter):
    return {"type": kind, "pk": record["planpk"], "date": record["date"], "param": parameter}


def days_from_now(days):
    """The start of the day so many days from today in UTC, wrapped within the month."""
    today = datetime.datetime.now(datetime.timezone.utc).replace(hour=0, minute=0, second=0, microsecond=0)
    start = today.replace(day=1)
    length = ((start + datetime.timedelta(days=31)).replace(day=1) - start).days
    return today.replace(day=(today.day - 1 + days) % length + 1).timestamp()


class Host:
    """A host application that is registered on a desktop for both spellings of the scheme and notes each argument
    that it is started with."""

    def __init__(self, desktop):
        self._got = desktop.folder / "urls"
        program = desktop.folder / "host"
        program.write_text(f"#!/bin/sh\nfor url; do printf '%s\\n' \"$url\" >> '{self._got}'; done\n")
        program.chmod(program.stat().st_mode | stat.S_IXUSR)
        schemes = ("x-scheme-handler/korvelWidget", "x-scheme-handler/korvelwidget")
        applications = desktop.folder / "home" / "data" / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "host.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Host\nExec={program} %u\nMimeType={';'.join(schemes)};\n")
        (desktop.folder / "home" / "config" / "mimeapps.list").write_text(
            "[Default Applications]\n" + "".join(f"{scheme}=host.desktop\n" for scheme in schemes))

    def received(self):
        return self._got.read_bytes() if self._got.exists() else b""


class Panel:
    """A panel that shows a container's list."""

    is_docked = True  # nobody moves its window

    def __init__(self, desktop, container, locale=LEFT_TO_RIGHT, scale=1, added=()):
        self.container, self.scale = container, scale
        self.mirrored = locale == RIGHT_TO_LEFT
        env = {"LC_ALL": locale, "LANGUAGE": "", "LOCPATH": os.environ["KORVEL_TEST_LOCALES"]}
        self.program = desktop.run([PANEL, "--containers", container.containers],
                                   env | desktop.environment_at_scale(scale) | dict(added))
        self.window = self.program.window()

    def wait_until_hidden(self):
        harness.wait_for(lambda: not self.window.shown(), "a hidden panel")

    def wait_until_closed_by_key(self):
        """Waits until the window manager's key for it has closed the window; on a loaded machine the window manager has
        been seen to lose that key, which is pressed once more then."""
        with contextlib.suppress(harness.Unmet):
            harness.wait_for(lambda: not self.window.shown(), "a hidden panel", 5)
            return
        self.window.press("alt+F4")
        self.wait_until_hidden()

    def extension(self):
        """The process that has the window."""
        return int(self.window.property("_NET_WM_PID").rpartition("=")[2])

    def wait_for_height(self, content):
        """Waits until the window is as high as a content of this height makes it. It stands where it is docked all the
        while."""
        here = self.window.wait_for_size((WIDTH + 2 * MARGIN_X) * self.scale, (content + 2 * MARGIN_Y) * self.scale)
        if self.is_docked and self.window.desktop.places_windows:
            edge = EDGE * self.scale
            place = (self.window.desktop.size[0] - edge - here.width, edge)
            assert (here.x, here.y) == place, f"window is not at {place} but {here}"

    def wait_for_rows(self, transactions):
        self.wait_for_height(ROW * (transactions + 1))

    def wait_for_sheet(self, choices):
        self.wait_for_height(SHEET[choices])

    def at(self, x, y):
        """A place of the content in the window's pixels."""
        return round((MARGIN_X + x) * self.scale), round((MARGIN_Y + y) * self.scale)

    def leading(self, x):
        """A place counted from where reading begins."""
        return WIDTH - x if self.mirrored else x

    @staticmethod
    def row_middle(row):
        return ROW * row + ROW / 2

    def on_row(self, row, x=25):
        return self.at(self.leading(x), self.row_middle(row))

    def on_button(self, name, row):
        return self.at((MIRRORED_BUTTONS if self.mirrored else BUTTONS)[name], self.row_middle(row))

    def click(self, place, **options):
        self.window.click(*place, **options)

    def click_row(self, row, x=25, **options):
        self.click(self.on_row(row, x), **options)

    def click_button(self, name, row, **options):
        self.click(self.on_button(name, row), **options)

    def choose(self, choice):
        self.click(self.at(WIDTH / 2, CHOICES[choice]))

    def cancel(self, choices):
        self.click(self.at(WIDTH / 2, CANCEL[choices]))

    def click_add(self, row):
        self.click_row(row, 19)

    def click_last_row(self, row):
        self.click_row(row, 160)

    def is_open(self, row):
        """Whether the button that a row's slide uncovers last can be seen to its far edge."""
        x = (MIRRORED_BUTTONS if self.mirrored else BUTTONS)["Paid"]
        picture = self.window.picture()
        far = [picture[self.at(x + side, self.row_middle(row) + dy)]
               for dy in range(-12, 13) for side in (range(4, 13) if self.mirrored else range(-12, -3))]
        return max(map(min, far)) > 150

    def shows_title(self, row):
        """Whether there is anything in a row where its title begins, beside the picture and above the date."""
        picture = self.window.picture()
        there = {picture[self.at(self.leading(x), self.row_middle(row) + dy)]
                 for x in range(52, 115) for dy in range(-14, -2)}
        return len(there) > 1

    def open_row(self, row):
        self.click_row(row)
        self.wait_until_open(row)

    def wait_until_open(self, row):
        harness.wait_for(lambda: self.is_open(row), f"an open row {row}")

    def wait_for_row(self, row, picture):
        """Waits until a row looks as in a picture of a row."""
        harness.wait_for(lambda: self.row_picture(row) == picture, f"row {row} as it was seen before")

    def gesture(self, *steps):
        return self.window.gesture(*steps)

    def hold_row(self, row):
        """Presses a closed row and waits until it shows that. What the mouse did before has been handled then."""
        self.window.hold(*self.on_row(row))
        harness.wait_for(lambda: max(map(max, self.row_picture(row))) < 200, f"a held row {row}, which is dim")

    def rest(self):
        """Puts the mouse where it is on no row, so that none shows it."""
        self.window.move_pointer(*self.at(-MARGIN_X / 2, ROW / 2))

    def row_picture(self, row):
        """The pixels of a row's middle line, without those of the hairlines between rows."""
        picture = self.window.picture()
        (left, y), (right, _) = self.at(0, self.row_middle(row)), self.at(WIDTH, 0)
        return [picture[x, y + dy * self.scale] for x in range(left, right) for dy in (-12, -6, 0, 6, 12)]


class AssistedPanel(Panel):
    """A panel that an assistive program uses: rows and buttons are found by role and name and pressed by their
    action. The pictures and heights to wait for are a Panel's."""

    BUTTONS = {"Paid": "Mark as paid", "Later": "Postpone", "Info": "Open", "Delete": "Delete"}
    CHOICES = {3: ("Tomorrow", "In 3 days", "Next week"), 2: ("This and all future entries", "This entry only")}

    def press(self, role, name, action="Press"):
        """A row that slides shut keeps its buttons until it is shut; by then there is one of a name."""
        def pressed():
            try:
                return self.window.desktop.accessible("act", role, name, action)
            except AssertionError:
                return False
        harness.wait_for(pressed, f"one {role} {name!r}")

    def accessibles(self, role):
        """All with that role, as the client tells them, in their order."""
        def below(node):
            if node["role"] == role:
                yield node
            for child in node["children"]:
                yield from below(child)
        return [told for program in self.window.desktop.accessible("tree") for told in below(program)]

    def row_name(self, row):
        harness.wait_for(lambda: len(self.accessibles("list item")) > row, f"row {row} on the accessibility bus")
        return self.accessibles("list item")[row]["name"]

    def click_row(self, row, x=25, **options):
        self.press("list item", self.row_name(row))

    def click_button(self, name, row, **options):
        self.press("push button", self.BUTTONS[name])

    def choose(self, choice):
        choices = self.CHOICES[len(self.accessibles("push button")) - 1]
        self.press("push button", choices[choice - 1])

    def cancel(self, choices):
        self.press("push button", "Cancel")

    def click_add(self, row):
        self.press("push button", "Add a transaction")

    def click_last_row(self, row):
        self.press("list item", "Show all…")


def in_each_variant(flow):
    """Runs a test in both directions of reading, at scale 1 and 2."""
    @functools.wraps(flow)
    def run(self):
        for variant in self.variants:
            with self.subTest(locale=variant[0], scale=variant[1]):
                flow(self, variant)
    return run


class Flow(harness.DesktopTest):
    """A panel, the files of its container, and a host application."""

    account = "Jörg Müller"
    panel_kind = Panel
    variants = VARIANTS

    def setUp(self):
        super().setUp()
        self.host = Host(self.desktop)
        self.opened = 0

    def open(self, records, variant=VARIANTS[0], **settings):
        self.opened += 1
        self.container = containers.Container(self.desktop.folder / f"containers-{self.opened}", self.account)
        self.container.write_settings(**settings)
        self.container.write_feed(records)
        self.feed, self.log = records, []
        self.feed_before = self.feed_file().read_bytes()
        self.settings_before = self.settings_file().read_bytes()
        self.panel = self.panel_kind(self.desktop, self.container, *variant)
        return self.panel

    def open_sheet(self, button, row, shown, choices):
        self.panel.wait_for_rows(shown)
        self.panel.open_row(row)
        self.panel.click_button(button, row)
        self.panel.wait_for_sheet(choices)

    def feed_file(self):
        return self.container.folder / "notifications.xml"

    def log_file(self):
        return self.container.account / "actions.xml"

    def settings_file(self):
        return self.container.folder / "Library" / "Preferences" / f"{self.container.folder.name}.plist"

    def close(self):
        self.panel.window.press("Escape")
        self.panel.wait_until_hidden()
        self.assertEqual(self.panel.program.terminate(), 0)
        self.assertEqual(self.panel.program.err, "")

    def assert_untouched(self):
        self.assertEqual(self.feed_file().read_bytes(), self.feed_before)
        self.assertEqual(self.settings_file().read_bytes(), self.settings_before)
        self.assertFalse(self.log_file().exists())
        self.assertEqual(self.host.received(), b"")

    def assert_carried_out(self, feed, record):
        """Waits for the feed, which is written last, and compares every file."""
        self.feed, self.log = feed, [*self.log, record]
        expected = property_list(feed)
        harness.wait_for(lambda: self.feed_file().read_bytes() == expected, "the feed without what was acted on")
        self.assertEqual(self.log_file().read_bytes(), property_list(self.log))
        self.assertEqual(self.settings_file().read_bytes(), self.settings_before)
        self.assertEqual(self.host.received(), b"")


class Choosing(Flow):
    """Flows that end while a choice waits to be carried out."""

    def choose(self, variant=VARIANTS[0]):
        """Answers a sheet and waits until its other buttons fade. The answer is carried out half a second after the
        click."""
        self.records = [overdue(1), overdue(2)]
        panel = self.open(self.records, variant)
        self.open_sheet("Later", 0, shown=2, choices=3)
        before = self.cancel_button()
        panel.choose(2)
        harness.wait_for(lambda: self.cancel_button() != before, "an answered sheet")

    def cancel_button(self):
        picture = self.panel.window.picture()
        return [picture[self.panel.at(x, CANCEL[3])] for x in range(WIDTH)]

    def assert_later_carried_out(self):
        moved = self.records[0] | {"date": days_from_now(3)}
        self.assert_carried_out([moved, self.records[1]], logged(2, self.records[0], 3))
