"""Two hundred deaths at random moments of a user's gestures, of the process with the panel and of the resident one: the
files are whole each time, what was logged is logged once, the list comes back, and no process is left behind."""

import os
import plistlib
import random
import unittest

import containers
import flows
import harness
from flows import overdue

KILLS = int(os.environ.get("KORVEL_KILLS", "200"))
RECORDS = 40


class Kills(flows.Flow):
    def setUp(self):
        super().setUp()
        self.random = random.Random(20261122)  # the moments are not repeatable, the choices are

    def start(self):
        self.panel = flows.Panel(self.desktop, self.container)
        return self.panel.program

    def read(self, path):
        return plistlib.loads(path.read_bytes(), fmt=plistlib.FMT_XML) if path.exists() else []

    def assert_whole(self):
        """The feed holds what no action has taken; the last action may be logged and not yet be in the feed."""
        feed = {record["planpk"]: record for record in self.read(self.feed_file())}
        log = self.read(self.log_file())
        paid = [record["pk"] for record in log]
        self.assertEqual(len(paid), len(set(paid)), "logged twice")
        for record in log:
            self.assertEqual(record, flows.logged(1, self.plans[record["pk"]], 0))
        missing = set(self.plans) - set(feed)
        self.assertLessEqual(missing, set(paid), "taken from the feed and not logged")
        self.assertLessEqual(len(set(paid) - missing), 1, "logged and not taken from the feed")
        for plan, record in feed.items():
            self.assertEqual(record, self.plans[plan])
        return set(paid) - missing

    def fill(self):
        """The host consumes the log and writes a feed."""
        records = [overdue(number) for number in range(1, RECORDS + 1)]
        self.plans = {record["planpk"]: record for record in records}
        self.container.write_feed(records)
        self.log_file().unlink(missing_ok=True)

    def show(self):
        """Asks for the panel until it is there; which of both processes has died does not matter for that."""
        if not self.program.running():
            self.program = self.start()
        else:
            self.desktop.run([flows.PANEL, "--containers", self.container.containers]).end_status()

        def panel():
            windows = self.program.windows()
            here = windows[0].geometry() if len(windows) == 1 else None
            return windows if here and here.height == 6 * flows.ROW + 2 * flows.MARGIN_Y else None
        self.panel.window = harness.wait_for(panel, "the list")[0]

    def test_two_hundred(self):
        self.container = containers.Container(self.desktop.folder / "containers", self.account)
        self.container.write_settings()
        self.fill()
        self.program = self.start()
        carried_out = 0
        for _ in range(KILLS):
            self.show()
            before = len(self.read(self.log_file()))
            whom = self.random.choice([self.panel.extension(), self.program.process.pid])
            others = set(self.program.pids()) - {whom}
            row = self.random.randrange(5)
            moment = self.random.uniform(0, 0.45)
            opened = min(moment, 0.25)
            here = self.panel.window.geometry()

            def at(place, here=here):
                return "mousemove", here.x + place[0], here.y + place[1]
            words = [*at(self.panel.on_row(row)), "click", "--delay", 0, 1, "sleep", opened]
            if moment > opened:
                words += [*at(self.panel.on_button("Paid", row)), "click", "--delay", 0, 1, "sleep", moment - opened]
            self.desktop.xdotool(*words, "exec", "kill", "-KILL", whom)
            harness.wait_for(lambda pid=whom: harness.state(pid) in (None, "Z"), "the death")
            if whom == self.program.process.pid:
                self.program.process.wait(harness.DEADLINE)
                harness.wait_for(lambda pids=others: all(harness.state(pid) in (None, "Z") for pid in pids),
                                 "the end of the other process")
            else:
                self.assertTrue(self.program.running())
            logged = len(self.read(self.log_file()))
            half = self.assert_whole()
            carried_out += logged - before
            if half or len(self.read(self.feed_file())) < 10:
                self.fill()
        self.assertGreater(carried_out, KILLS // 20, "the deaths came before the clicks")
        self.show()
        others = self.program.pids()[1:]
        self.assertEqual(self.program.terminate(), 0)
        self.assertEqual([pid for pid in others if harness.state(pid) not in (None, "Z")], [])
        self.assertEqual(self.program.err, "")


if __name__ == "__main__":
    unittest.main()
