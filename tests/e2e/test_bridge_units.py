"""The bridge's units under a user's own service manager, as they are installed: a file that changes, the action log and a new
day start it, once each time, and it does all of its work within what they leave it."""

import datetime
import json
import os
import pathlib
import plistlib
import re
import unittest

import harness
from user_manager import HERE, USER, UserManager

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
PACKAGING = SOURCE / "packaging"
TODAY = datetime.date.today()
YESTERDAY = TODAY - datetime.timedelta(days=1)
# As if it had been saved today; its own days are those of this one.
DAYS_SINCE = (TODAY - datetime.date(2026, 11, 21)).days
BILLS = re.sub(r'(?<=nextdate=")\d+', lambda day: str(int(day[0]) + DAYS_SINCE),
               (SOURCE / "tests/data/bridge/homebank/plans.xhb").read_text(encoding="utf-8"))
SERVICE = "korvel-today-bridge.service"
BRIDGE = HERE / "bin/korvel-today-bridge"
# Each end of a run is a line of a file.
COUNT = f"[Service]\nExecStopPost=sh -c 'echo >> {HERE}/tmp/runs'\n"


def hardening(name):
    """The lines of [Service] from the first restriction on."""
    text = (PACKAGING / name).read_text().partition("\nNoNewPrivileges=")[2].partition("\n[")[0]
    return [line for line in text.splitlines()[1:] if line and not line.startswith("#")]


class Restrictions(unittest.TestCase):
    def test_are_those_of_the_resident_program(self):
        """What these forbid is tried there."""
        others = [line for line in hardening("korvel-today.service.in") if "landlock" not in line]
        self.assertEqual(hardening(f"{SERVICE}.in"), others)
        self.assertGreater(len(others), 8)
        self.assertNotIn("@", re.sub("@[a-z-]+", "", "".join(others)))


class Runs(harness.DesktopTest):
    def setUp(self):
        super().setUp()
        bare = {name: f"[Unit]\nDescription={name}\n" for name in ("paths.target", "timers.target")}
        ours = {name: (PACKAGING / name).read_text() for name in ("korvel-today-bridge@.path", "korvel-today-bridge.timer")}
        service = (PACKAGING / f"{SERVICE}.in").read_text().replace("@KORVEL_BINARY_FOLDER@", str(BRIDGE.parent))
        self.manager = UserManager(self.desktop, bare | ours | {SERVICE: service}, {
            "TZ": "UTC", "LC_ALL": "C.UTF-8", "SYSTEMD_UNIT_PATH": f"{HERE}/home/config/systemd/user:{HERE}/units",
            # A leak checker stops the process by tracing it, which the unit forbids.
            "ASAN_OPTIONS": ":".join(filter(None, [os.environ.get("ASAN_OPTIONS"), "detect_leaks=0"]))})
        drop_in = self.manager.folder / "units" / f"{SERVICE}.d"
        drop_in.mkdir()
        (drop_in / "count.conf").write_text(COUNT)
        for program in ("KORVEL_BRIDGE", "KORVEL_TODAYCTL"):
            self.manager.install(os.environ[program])
        self.addCleanup(self.manager.end)
        self.manager.start()
        self.container = self.manager.folder / "home/data/group-containers" / os.environ["KORVEL_GROUP"]

    def outside(self, path):
        return self.manager.folder / path.relative_to(HERE)

    def write(self, path, text):
        """As an editor does that replaces the file."""
        new = self.outside(path).with_suffix(".new")
        new.write_text(text, encoding="utf-8")
        os.chown(new, USER, USER)
        new.rename(self.outside(path))

    def said(self, *command):
        done = self.manager.run(*map(str, command))
        self.assertEqual(done.returncode, 0, f"{command}: {done.stdout}{done.stderr}{self.manager.log()}")
        return done.stdout

    def names(self):
        return [record["name"] for record in plistlib.loads((self.container / "notifications.xml").read_bytes())]

    def watch(self, path):
        """Enables the path unit of a file, as the comment in it says, and gives its name."""
        unit = self.said("sh", "-c", 'printf %s "korvel-today-bridge@$(systemd-escape --path "$1").path"', "sh", path)
        self.said("systemctl", "--user", "enable", "--now", unit)
        return unit

    def runs(self):
        file = self.manager.folder / "tmp/runs"
        return len(file.read_text()) if file.exists() else 0

    def wait_for_run(self, number, path_unit=None):
        """Waits for the end of a run, and until the manager looks at the file again."""
        harness.wait_for(lambda: self.runs() >= number and self.manager.show(SERVICE, "ActiveState") == "inactive"
                         and (path_unit is None or self.manager.show(path_unit, "SubState") == "waiting"),
                         f"the end of run {number}: {self.manager.log()}")

    def check_no_further_run(self, number):
        """A run that has been started lasts for a second at least, and so is seen by one of several looks, each of which
        the manager answers between other events."""
        for _ in range(10):
            self.assertEqual(self.manager.show(SERVICE, "ActiveState"), "inactive")
        self.assertEqual(self.runs(), number)

    def paid(self, name):
        """Marks a transaction paid by the companion, in the panel's place."""
        listed = json.loads(self.said(HERE / "bin/korvel-todayctl", "list", "--json"))
        record = next(each for each in listed["transactions"] if each["name"] == name)
        self.said(HERE / "bin/korvel-todayctl", "act", record["planpk"], record["date"], "paid")

    def connect_bills(self):
        file = HERE / "home/My bills.xhb"
        self.write(file, BILLS)
        self.said(BRIDGE, "connect", file)
        self.said(BRIDGE, "update")
        self.assertIn("Weekly shop", self.names())
        return file

    def test_each_change_of_a_file_is_published_by_one_run(self):
        file = self.connect_bills()
        unit = self.watch(file)
        # More often within ten seconds than a service may be started by default.
        for number in range(1, 7):
            self.write(file, BILLS.replace("Weekly shop", f"Shop {number}"))
            harness.wait_for(lambda: f"Shop {number}" in self.names(), f"the new name: {self.manager.log()}")
            self.wait_for_run(number, unit)
        # One that is written in place, in several strokes.
        with self.outside(file).open("w", encoding="utf-8") as saved:
            for line in BILLS.replace("Weekly shop", "Shop 7").splitlines(keepends=True):
                saved.write(line)
                saved.flush()
        harness.wait_for(lambda: "Shop 7" in self.names(), "the new name")
        self.wait_for_run(7, unit)
        self.check_no_further_run(7)

    def test_the_action_log_is_taken_by_one_run_each_time_it_grows(self):
        self.connect_bills()
        log = self.container / "bridge/actions.xml"
        self.assertFalse(log.exists())
        unit = self.watch(HERE / log.relative_to(self.manager.folder))
        for number, name in enumerate(("Rent", "Cleaning fortnight"), 1):
            self.paid(name)
            self.wait_for_run(number, unit)
            self.assertEqual(plistlib.loads(log.read_bytes()), [])
            pending = json.loads(self.said(BRIDGE, "pending", "--json"))
            self.assertEqual(len(pending), number)
            self.assertIn(name, [each["name"] for each in pending])
        self.check_no_further_run(2)

    def test_a_path_that_is_too_long_for_a_name_is_given_by_a_drop_in(self):
        folder = HERE / "home" / ("ж" * 60)
        self.outside(folder).mkdir()
        os.chown(self.outside(folder), USER, USER)
        file = folder / "Bills.xhb"
        self.write(file, BILLS)
        self.said(BRIDGE, "connect", file)
        escaped = self.said("systemd-escape", "--path", file).strip()
        self.assertGreater(len(f"korvel-today-bridge@{escaped}.path"), 255)
        unit = "korvel-today-bridge@bills.path"
        drop_in = HERE / "home/config/systemd/user" / f"{unit}.d"
        self.said("mkdir", "-p", drop_in)
        self.write(drop_in / "override.conf", f"[Path]\nPathChanged=\nPathChanged={file}\n")
        self.said("systemctl", "--user", "daemon-reload")
        self.said("systemctl", "--user", "enable", "--now", unit)
        self.write(file, BILLS.replace("Weekly shop", "New shop"))
        self.wait_for_run(1, unit)
        self.assertIn("New shop", self.names())

    def test_the_timer_publishes_at_the_start_and_after_midnight(self):
        self.connect_bills()
        (self.container / "notifications.xml").unlink()
        self.said("systemctl", "--user", "enable", "--now", "korvel-today-bridge.timer")
        self.wait_for_run(1)
        self.assertIn("Weekly shop", self.names())
        self.assertRegex(self.manager.show("korvel-today-bridge.timer", "NextElapseUSecRealtime"), r" 00:00:05 UTC$")
        self.check_no_further_run(1)

    def test_what_is_paid_of_a_journal_is_entered_and_checked(self):
        journal = HERE / "home/plans.journal"
        rules = f"account assets:giro\naccount expenses:home\n\n~ {YESTERDAY}  Rent  ; plan: rent\n" \
                "    expenses:home  870.00 EUR\n    assets:giro\n"
        self.write(journal, rules)
        mark = json.loads(self.said(BRIDGE, "connect", journal, "--json"))["id"]
        paid = HERE / f"home/.local/state/korvel-today/paid-{mark}.journal"
        self.said("systemctl", "--user", "start", SERVICE)
        self.assertEqual(self.names(), ["Rent"])
        self.write(journal, f"{rules}\ninclude {paid}\n")
        self.paid("Rent")
        self.said("systemctl", "--user", "start", SERVICE)
        self.assertIn(f"; plan: rent, paid-of: {YESTERDAY}\n", self.outside(paid).read_text())
        self.assertEqual(json.loads(self.said(BRIDGE, "pending", "--json")), [])


if __name__ == "__main__":
    unittest.main()
