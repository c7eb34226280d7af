"""docs/hosts.md does what it says, and so does the host beside it."""

import datetime
import fcntl
import json
import os
import pathlib
import plistlib
import re
import select
import struct
import subprocess
import sys
import tempfile
import time
import unittest

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
COMPANION = pathlib.Path(os.environ["KORVEL_TODAYCTL"])
PAGE = (SOURCE / "docs" / "hosts.md").read_text(encoding="utf-8")
EXAMPLE = SOURCE / "docs" / "host-example.py"
GROUP = "K7RV2LTD9A.group.com.korvel.finance"
DEADLINE = 60

# Days on which the month ends soon, and others.
DAYS = ["2026-03-01", "2026-03-10", "2026-03-30", "2026-03-31", "2028-02-29"]


def blocks(language):
    return re.findall(rf"^```{language}\n(.*?)^```$", PAGE, re.MULTILINE | re.DOTALL)


def undated(text):
    return re.sub(r"\d{4}-\d\d-\d\d", "DATE", text)


class UserTest(unittest.TestCase):
    """A user in UTC, with folders of their own and a clock that can be set."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.data = self.home / "data"
        self.env = {"HOME": str(self.home), "XDG_DATA_HOME": str(self.data), "TMPDIR": str(self.home), "TZ": "UTC",
                    "XDG_DATA_DIRS": str(self.home / "none"), "XDG_CONFIG_DIRS": str(self.home / "none"),
                    "LC_ALL": "C.UTF-8",
                    "PATH": os.pathsep.join([str(COMPANION.parent), os.path.dirname(sys.executable),
                                             os.environ["PATH"]])}
        self.env |= {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}

    def set_clock(self, day):
        """Noon of that day, as a program of the test will have it."""
        moment = datetime.datetime.fromisoformat(f"{day} 12:00+00:00")
        clock = self.home / "clock"
        clock.mkdir(exist_ok=True)
        (clock / "offset").write_bytes(struct.pack("d", moment.timestamp() - time.time()))
        self.env |= {"LD_PRELOAD": os.environ["KORVEL_E2E_CLOCK"], "KORVEL_TEST_CLOCK": str(clock),
                     "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0"}
        return moment.timestamp()

    def output(self, *command, **options):
        done = subprocess.run(command, env=self.env, cwd=SOURCE, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL,
                              text=True, timeout=DEADLINE, check=True, **options)
        return done.stdout


class HostsPage(UserTest):
    def script(self):
        """The page's commands, each block's output between two lines, and what the page says of it."""
        parts = re.findall(r"^```sh\n(.*?)^```$(?:\n+^```text\n(.*?)^```$)?", PAGE, re.MULTILINE | re.DOTALL)
        self.assertEqual([text for _, text in parts if text], blocks("text"))
        return "set -eu\n" + "".join(f"{commands}echo =====\n" for commands, _ in parts), [text for _, text in parts]

    def test_commands_print_what_the_page_says_on_every_day(self):
        script, expected = self.script()
        self.assertGreater(len(expected), 8)
        for day in DAYS:
            with self.subTest(day):
                self.set_clock(day)
                outputs = self.output("bash", "-c", script).split("=====\n")
                self.assertEqual([undated(text) for text in outputs], [undated(text) for text in [*expected, ""]])

    def is_cut(self, count):
        self.output("korvel-todayctl", "settings", "set", "notification_days_count", str(count))
        done = subprocess.run(["korvel-todayctl", "check", "--json"], env=self.env, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=DEADLINE)
        return "dayCountCut" in [finding["finding"] for finding in json.loads(done.stdout)]

    def make_container(self):
        (self.data / "group-containers" / GROUP).mkdir(parents=True)

    def test_table_has_the_largest_counts(self):
        self.make_container()
        rows = re.findall(r"^\| (\d+) \| (-?\d+) \| (\d+) \|$", PAGE, re.MULTILINE)
        self.assertEqual(len(rows), 4)
        for today, count, until in (map(int, row) for row in rows):
            with self.subTest(today=today):
                self.set_clock(datetime.date(2026, 3, today))
                self.assertEqual((self.is_cut(count), self.is_cut(count + 1)), (False, True))
                self.assertEqual(today + count, until)

    def test_count_of_the_page_is_the_largest_on_each_day_of_a_months_end(self):
        self.make_container()
        program = re.search(r"days.py\" <<'PY'\n(.*?)^PY$", PAGE, re.MULTILINE | re.DOTALL)[1]
        self.assertIn("min(7, ", program)
        program = program.replace("min(7, ", "min(99, ")
        for year, month, length in ((2026, 2, 28), (2028, 2, 29), (2026, 4, 30), (2026, 12, 31)):
            for day in range(length - 3, length + 1):
                with self.subTest(year=year, month=month, day=day):
                    self.set_clock(datetime.date(year, month, day))
                    count = int(self.output("python3", "-c", program))
                    self.assertEqual((self.is_cut(count), self.is_cut(count + 1)), (False, True))

    def test_links_lead_to_what_is_there(self):
        for link in re.findall(r"\]\(([^)#]+)[^)]*\)", PAGE):
            self.assertTrue((SOURCE / "docs" / link).is_file(), link)


class HostExample(UserTest):
    def setUp(self):
        super().setUp()
        self.container = self.data / "group-containers" / GROUP
        self.log = self.container / "anna" / "actions.xml"
        self.taken = self.container / "anna" / "actions.xml.taken"
        self.feed = self.container / "notifications.xml"
        self.settings = self.container / "Library" / "Preferences" / f"{GROUP}.plist"
        self.noon = self.set_clock("2026-03-10")

    def host(self, *arguments):
        self.output("python3", "-B", EXAMPLE, *arguments)

    def act(self, plan, date, *action):
        self.output("korvel-todayctl", "act", plan, repr(date), *action)
        if self.log.exists():
            os.utime(self.log, (self.noon, self.noon))  # the kernel's clock is not set

    def dates(self):
        """The dates of each plan, which are the same in the host's own data and in the feed."""
        plans = json.loads((self.data / "korvel-host-example" / "plans.json").read_text(encoding="utf-8"))
        own = {plan: sorted(values["dates"]) for plan, values in plans.items()}
        published = {plan: [] for plan in own}
        for record in plistlib.loads(self.feed.read_bytes()):
            published[record["planpk"]].append(record["date"])
        self.assertEqual({plan: sorted(dates) for plan, dates in published.items()}, own)
        return own

    def after(self, *actions):
        """The dates once a host has carried these out."""
        for action in actions:
            self.act(*action)
        self.host()
        self.assertEqual([path.name for path in self.log.parent.iterdir()], ["icons"])
        return self.dates()

    def day(self, days, hour=0):
        """A moment of a day counted from the one that the clock was set to."""
        return self.noon + 86400.0 * days + 3600 * (hour - 12)

    def test_has_a_hundred_lines(self):
        self.assertLessEqual(sum(bool(line) for line in EXAMPLE.read_text(encoding="utf-8").splitlines()), 100)

    def test_publishes_a_sound_container_on_every_day(self):
        self.host("register")
        for day in DAYS:
            with self.subTest(day):
                self.set_clock(day)
                self.host()
                self.assertEqual(self.output("korvel-todayctl", "check"), "The container is sound.\n")
                self.assertEqual(json.loads(self.output("korvel-todayctl", "check", "--json")), [])

    def test_shows_seven_days_and_less_at_the_months_end(self):
        for day, count in ((10, 7), (23, 7), (24, 6), (30, 0), (31, -1)):
            with self.subTest(day=day):
                self.set_clock(f"2026-03-{day}")
                self.host()
                self.assertEqual(plistlib.loads(self.settings.read_bytes()),
                                 {"account_pk": "anna", "notification_days_count": count})

    def test_keeps_settings_that_it_does_not_know(self):
        self.host()
        self.output("korvel-todayctl", "settings", "set", "another", "kept")
        self.host()
        self.assertEqual(plistlib.loads(self.settings.read_bytes())["another"], "kept")

    def test_carries_out_what_was_chosen(self):
        self.host()
        first = self.dates()
        rent = first["rent"]
        self.assertEqual(rent, [self.day(-1, 9), self.day(29, 9)])
        self.assertEqual(self.after(("phone", first["phone"][0], "paid")), first | {"phone": []})
        self.assertEqual(self.after(("rent", rent[0], "later", "3"))["rent"], [self.day(3), rent[1]])
        self.assertEqual(self.after(("rent", self.day(3), "delete")), first | {"phone": [], "rent": [rent[1]]})
        self.assertEqual(self.after(("pay", first["pay"][0], "delete-future")),
                         {"phone": [], "rent": [rent[1]], "pay": []})

    def test_deletes_later_occurrences_too(self):
        self.host()
        self.assertEqual(self.after(("rent", self.dates()["rent"][0], "delete-future"))["rent"], [])

    def test_knows_what_was_put_off_before_by_the_panels_date(self):
        self.noon = self.set_clock("2026-03-30")
        self.host()
        rent = self.dates()["rent"]
        wrapped = self.day(-28)  # the month's second day
        self.assertEqual(self.after(("rent", rent[0], "later", "3"), ("rent", wrapped, "paid"))["rent"], [rent[1]])

    def test_puts_off_into_the_next_month(self):
        self.noon = self.set_clock("2026-03-30")
        self.host()
        self.assertEqual(self.after(("rent", self.dates()["rent"][0], "later", "3"))["rent"][0], self.day(3))

    def test_counts_from_the_day_of_the_choice(self):
        self.host()
        rent = self.dates()["rent"]
        self.act("rent", rent[0], "later", "3")
        self.set_clock("2026-03-12")
        self.host()
        self.assertEqual(self.dates()["rent"], [self.day(3), rent[1]])

    def test_log_of_an_interrupted_run_comes_first_and_has_its_effect_once(self):
        self.host()
        first = self.dates()
        rent = first["rent"]
        self.act("rent", rent[0], "later", "1")
        done = plistlib.loads(self.log.read_bytes())
        self.assertEqual(self.after()["rent"], [self.day(1), rent[1]])
        self.taken.write_bytes(plistlib.dumps(done))
        self.assertEqual(self.after()["rent"], [self.day(1), rent[1]])
        self.act("pay", first["pay"][0], "paid")
        self.taken.write_bytes(plistlib.dumps(done + plistlib.loads(self.log.read_bytes())))
        self.log.unlink()
        self.assertEqual(self.after(("phone", first["phone"][0], "paid")),
                         {"rent": [self.day(1), rent[1]], "phone": [], "pay": []})

    def test_waits_for_its_turn(self):
        self.host()
        self.act("phone", self.dates()["phone"][0], "paid")
        folder = os.open(self.container, os.O_RDONLY | os.O_DIRECTORY)
        fcntl.flock(folder, fcntl.LOCK_SH)
        host = subprocess.Popen(["python3", "-B", EXAMPLE], env=self.env)
        end = time.monotonic() + DEADLINE
        while not re.search(rf"-> FLOCK .* {host.pid} ", pathlib.Path("/proc/locks").read_text(encoding="ascii")):
            self.assertLess(time.monotonic(), end, "the host does not wait for the lock")
            self.assertIsNone(host.poll())
            select.select([], [], [], 0.02)
        self.assertTrue(self.log.exists())
        os.close(folder)
        self.assertEqual(host.wait(DEADLINE), 0)
        self.assertEqual(self.dates()["phone"], [])
        self.assertFalse(self.log.exists())

    def test_notes_what_the_panel_asks_for(self):
        self.host("register")
        self.host()
        rent = self.dates()["rent"]
        (self.home / "bin").mkdir()
        (self.home / "bin" / "gio").symlink_to("/bin/true")
        self.env["PATH"] = f"{self.home / 'bin'}:{self.env['PATH']}"
        self.act("rent", rent[0], "info")
        for url in ("korvelWidget://tw_edit_transaction", "korvelwidget://tw_new_transaction",
                    "korvelWidget://tw_all_transactions", "korvelWidget://of_another_version"):
            self.host(url)
        self.after(("rent", rent[0], "paid"))
        self.host("korvelWidget://tw_edit_transaction")
        requests = (self.data / "korvel-host-example" / "requests").read_text(encoding="utf-8")
        self.assertEqual(requests.splitlines(), ["show Rent", "add", "show all", "unknown", "show what is gone"])


if __name__ == "__main__":
    unittest.main()
