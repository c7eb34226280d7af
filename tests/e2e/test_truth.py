"""The open panel follows what the host application writes, the clock and the time zone, and takes no click from the
user for it."""

import datetime
import os
import pathlib
import shutil
import struct
import time
import unittest

import containers
import flows
import harness
from flows import logged, overdue

SECONDS_AHEAD = 4, 15, 60  # to what a test waits for: more, where the machine is too slow for less
ORANGE = (243, 123, 5)  # what is overdue


def local_noon():
    """A value of TZ by which it is about noon now, so that neither end of the day is near."""
    seconds = 12 * 3600 - int(time.time()) % 86400
    return rule(seconds)


def rule(offset):
    """A value of TZ whose local time is so many seconds ahead of UTC."""
    hours, rest = divmod(abs(offset), 3600)
    return f"LOC{'-' if offset > 0 else '+'}{hours}:{rest // 60:02}:{rest % 60:02}"


class Truth(flows.Flow):
    def replace_feed(self, records):
        """As a careful host does it: another file takes the feed's place."""
        new = self.feed_file().with_name("feed.new")
        new.write_bytes(flows.property_list(records))
        new.rename(self.feed_file())

    def place(self):
        here = self.panel.window.geometry()
        return here.x, here.y

    def is_overdue(self, row):
        """Whether a row's due state is drawn in orange."""
        picture = self.panel.window.picture()
        (left, y), (right, _) = self.panel.at(0, self.panel.row_middle(row)), self.panel.at(flows.WIDTH, 0)
        return any(picture[x, y + dy] == ORANGE for x in range(left, right) for dy in range(-20, 20))

    def start(self, env):
        """Starts the panel on a container that is there already, with this environment."""
        self.panel = flows.Panel.__new__(flows.Panel)
        self.panel.container, self.panel.scale, self.panel.mirrored = self.container, 1, False
        self.panel.program = self.desktop.run([flows.PANEL, "--containers", self.container.containers], env)
        self.panel.window = self.panel.program.window()
        return self.panel

    def new_container(self, records, **settings):
        self.container = containers.Container(self.desktop.folder / "containers", self.account)
        self.container.write_settings(**settings)
        self.container.write_feed(records)


class Host(Truth):
    def test_a_new_feed_shows_at_once(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        place = self.place()
        for count in (4, 1, 0, 5):
            self.replace_feed([overdue(number) for number in range(1, count + 1)])
            panel.wait_for_rows(count)
            self.assertEqual(self.place(), place)
        self.feed_file().unlink()
        panel.wait_for_rows(0)
        self.container.write_feed([overdue(1)])  # in place
        panel.wait_for_rows(1)
        self.close()

    def test_new_settings_show_at_once(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        self.container.write_settings(show_transactions_count=-1)
        panel.wait_for_rows(0)
        self.container.write_settings(show_transactions_count=1)
        panel.wait_for_rows(2)

    def test_a_new_icon_shows_at_once(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        before = panel.row_picture(0)
        icons = self.container.account / "icons"
        (icons / "new").write_bytes(containers.png(20, 10))
        (icons / "new").rename(icons / "glyph.png")
        harness.wait_for(lambda: panel.row_picture(0) != before, "another icon")

    def test_a_container_that_appears_later_shows_at_once(self):
        self.container = containers.Container(self.desktop.folder / "elsewhere", self.account)
        self.container.write_feed([overdue(1), overdue(2)])
        self.container.containers = self.desktop.folder / "not" / "there"
        panel = self.start({})
        here = panel.window.wait_for_size(flows.WIDTH + 2 * flows.MARGIN_X, None)
        self.assertGreater(here.height, flows.ROW * 3, "what the panel says while there is no container")
        (self.desktop.folder / "not").mkdir()
        (self.desktop.folder / "elsewhere").rename(self.desktop.folder / "not" / "there")
        window = panel.window
        harness.wait_for(lambda: not window.shown(), "the end of a process that may not read what has come")
        panel.window = panel.program.window()
        panel.wait_for_rows(2)

    def open_row_while_the_host_writes(self, row, records, written):
        """Opens a row, then has the host write feeds. A second panel has shown each of them when this returns, so
        that the first one has had the time to do so too."""
        panel = self.open(records)
        panel.wait_for_rows(len(records))
        panel.open_row(row)
        elsewhere = self.desktop.folder / "another-run"
        elsewhere.mkdir(mode=0o700)
        witness = flows.Panel(self.desktop, self.container, added={"XDG_RUNTIME_DIR": str(elsewhere)})
        witness.wait_for_rows(len(records))
        for feed in written:
            self.replace_feed(feed)
            witness.wait_for_rows(len(feed))
        self.assertEqual(witness.program.terminate(), 0)
        panel.wait_for_rows(len(records))
        self.assertTrue(panel.is_open(row))
        return panel

    def test_a_new_feed_takes_no_click_from_an_open_row(self):
        records = [overdue(1), overdue(2)]
        panel = self.open_row_while_the_host_writes(0, records, [[overdue(0), *records, overdue(3)]])
        panel.click_button("Paid", 0)
        self.assert_carried_out([overdue(0), records[1], overdue(3)], logged(1, records[0], 0))
        panel.wait_for_rows(3)
        self.close()

    def test_a_new_feed_waits_until_the_row_is_closed(self):
        records = [overdue(1), overdue(2)]
        panel = self.open_row_while_the_host_writes(1, records, [[*records, overdue(3)], [overdue(1)]])
        panel.click_row(1)
        panel.wait_for_rows(1)


class LowScreen(Truth):
    desktop_options = {"width": 800, "height": 240}

    def names(self):
        """Where the list is: the pixels of the rows' names and dates."""
        picture = self.panel.window.picture()
        return [picture[flows.MARGIN_X + x, y] for x in range(52, 115) for y in range(picture.height)]

    def test_a_new_feed_leaves_the_list_scrolled_to_its_place(self):
        records = [overdue(number) for number in range(1, 6)]
        panel = self.open(records)
        panel.window.wait_for_size(None, None)
        top = self.names()
        panel.window.click(100, 100, button=5)
        harness.wait_for(lambda: self.names() != top, "a scrolled list")
        scrolled, before = self.names(), panel.row_picture(1)
        self.replace_feed([record | {"amount": "77.00"} for record in records])
        harness.wait_for(lambda: panel.row_picture(1) != before, "the new amounts")
        self.assertEqual(self.names(), scrolled)


class Moments(Truth):
    def test_a_transaction_falls_due_before_the_eye(self):
        zone = local_noon()
        self.new_container([overdue(1)])
        panel = self.start({"TZ": zone})
        panel.wait_for_rows(1)

        def is_seen_as_planned(ahead):
            self.due = time.time() + ahead
            self.replace_feed([overdue(1, date=self.due)])
            harness.wait_for(lambda: not self.is_overdue(0) or time.time() > self.due, "a planned transaction")
            return time.time() < self.due

        self.assertTrue(any(map(is_seen_as_planned, SECONDS_AHEAD)))
        harness.wait_for(lambda: self.is_overdue(0), "an overdue transaction")
        self.assertGreater(time.time(), self.due)

    def test_a_new_day_brings_its_transactions(self):

        def is_shown_before_midnight(ahead):
            self.midnight = int(time.time()) + ahead
            # Of the two zones where it is midnight then, that in which the new day is not the last of its month:
            # what is due on that day would not be shown.
            offset = -(self.midnight % 86400)
            day = datetime.datetime.fromtimestamp(self.midnight + offset, datetime.timezone.utc)
            if (day + datetime.timedelta(days=1)).day == 1:
                offset += 86400
            self.new_container([overdue(1), overdue(2, date=self.midnight + 43200.0)])
            self.start({"TZ": rule(offset)}).window.wait_for_size(None, None)
            if time.time() < self.midnight:
                return True
            return self.panel.program.terminate() != 0

        self.assertTrue(any(map(is_shown_before_midnight, SECONDS_AHEAD)))
        self.panel.wait_for_rows(2)
        self.assertGreaterEqual(time.time(), self.midnight)

    def test_a_clock_that_is_set_shows_what_is_overdue(self):
        self.new_container([overdue(1, date=time.time() + 3600)])
        clock = self.container.folder / "clock"  # in the one folder that the panel's process may read
        clock.mkdir()
        (clock / "offset").write_bytes(struct.pack("d", 0))
        os.mkfifo(clock / "set")
        self.start({"TZ": local_noon(), "LD_PRELOAD": os.environ["KORVEL_E2E_CLOCK"],
                    "KORVEL_TEST_CLOCK": str(clock),
                    "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"})
        self.panel.wait_for_rows(1)
        self.assertFalse(self.is_overdue(0))
        for offset, expected in ((7200.0, True), (-7200.0, False)):
            with (clock / "offset").open("r+b") as file:
                file.write(struct.pack("d", offset))
            with (clock / "set").open("wb") as pipe:
                pipe.write(b"!")
            harness.wait_for(lambda: self.is_overdue(0) == expected, f"overdue: {expected}")

    def test_another_time_zone_shows_other_dates(self):
        zones = pathlib.Path("/usr/share/zoneinfo/Etc")
        zone = self.desktop.folder / "localtime"
        zone.symlink_to(zones / "GMT+12")
        self.new_container([overdue(1, date=containers.LONG_AGO)])  # 1 January in the one zone, 2 January in the other
        panel = self.start({"TZ": f":{zone}"})
        panel.wait_for_rows(1)
        first = panel.row_picture(0)
        new = zone.with_name("localtime.new")
        new.symlink_to(zones / "GMT-14")
        new.rename(zone)
        harness.wait_for(lambda: panel.row_picture(0) != first, "another date")
        second = panel.row_picture(0)
        for name, picture in (("GMT+12", first), ("GMT-14", second)):
            shutil.copyfile(zones / name, new)
            new.rename(zone)
            window = panel.window
            harness.wait_for(lambda gone=window: not gone.shown(), "the end of a process that may not read the copy")
            panel.window = panel.program.window()
            panel.wait_for_rows(1)
            panel.wait_for_row(0, picture)


if __name__ == "__main__":
    unittest.main()
