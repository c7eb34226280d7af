"""The bills of a file of HomeBank, which the resident program has published anew when the file changes or the user acts."""

import datetime
import json
import os
import plistlib
import subprocess
import unittest

import containers
import flows
import harness
from services_test import ServicesTest

BRIDGE = os.environ["KORVEL_BRIDGE"]
PLANS = "Rent", "Power", "Water"
DAY = datetime.date.today().toordinal()


def homebank(*names):
    """The bytes of a file with a plan of each name, each due yesterday and once."""
    plans = "".join(f'<fav key="{PLANS.index(name) + 1}" amount="-10" account="1" flags="132" wording="{name}" '
                    f'nextdate="{DAY - 1}" every="1" unit="2" limit="1"/>\n' for name in names)
    return ('<?xml version="1.0"?>\n<homebank v="1.4" d="050602">\n'
            '<properties title="Bills" curr="1" auto_smode="0" auto_weekday="1" auto_nbmonths="1" auto_nbdays="14"/>\n'
            '<cur key="1" flags="0" iso="EUR" name="Euro" symb="€" syprf="0" dchar="," gchar=" " frac="2" rate="1"/>\n'
            '<account key="1" pos="1" type="1" curr="1" name="Giro" initial="0" minimum="0" maximum="0"/>\n'
            f"{plans}</homebank>\n").encode()


class Bills(ServicesTest):
    def setUp(self):
        super().setUp()
        self.home = self.desktop.folder / "home"
        self.file = self.home / "bills.xhb"
        self.file.write_bytes(homebank("Rent", "Power"))
        self.containers = self.desktop.folder / "of-bills"
        self.container = containers.Container.__new__(containers.Container)
        self.container.containers = self.containers
        self.container.folder = self.containers / os.environ["KORVEL_GROUP"]
        self.env |= {"KORVEL_GROUP_CONTAINERS": str(self.containers)}

    def bridge(self, *words):
        done = subprocess.run([BRIDGE, *words], env=self.desktop.env | self.env, capture_output=True, text=True,
                              timeout=harness.DEADLINE)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def published(self):
        try:
            records = plistlib.loads((self.container.folder / "notifications.xml").read_bytes())
        except FileNotFoundError:
            return None
        return sorted(record["name"] for record in records)

    def wait_for(self, *names):
        harness.wait_for(lambda: self.published() == sorted(names), f"a feed of {names}")

    def connect(self):
        """Elsewhere, while the program runs."""
        self.program = self.start("--background")
        self.ready(self.program)
        self.bridge("connect", self.file)
        self.wait_for("Rent", "Power")

    def save(self, *names):
        """As a program does it that keeps the old file until the new one is whole."""
        new = self.file.with_suffix(".new")
        new.write_bytes(homebank(*names))
        new.rename(self.file)


class Connected(Bills):
    def setUp(self):
        super().setUp()
        self.connect()
        self.ask("--show")
        self.window = self.assert_list(self.program, 2)

    def test_its_bills_are_shown(self):
        self.assertEqual(self.published(), ["Power", "Rent"])

    def test_a_save_is_shown(self):
        self.save("Rent", "Power", "Water")
        self.wait_for("Rent", "Power", "Water")
        self.assert_list(self.program, 3)

    def test_a_file_that_is_written_in_place_is_shown(self):
        self.file.write_bytes(homebank("Rent"))
        self.wait_for("Rent")
        self.assert_list(self.program, 1)

    def test_what_is_paid_is_pending_until_the_file_shows_it(self):
        panel = flows.Panel.__new__(flows.Panel)
        panel.window, panel.scale, panel.mirrored = self.window, 1, False
        panel.open_row(0)
        panel.click_button("Paid", 0)
        pending = harness.wait_for(lambda: json.loads(self.bridge("pending", "--json")), "a pending payment")
        self.assertEqual(len(pending), 1)
        paid = pending[0]["name"]
        self.assertIn(paid, ("Rent", "Power"))
        left = {"Rent": "Power", "Power": "Rent"}[paid]
        self.wait_for(left)
        self.save(left)
        harness.wait_for(lambda: not json.loads(self.bridge("pending", "--json")), "nothing that is pending")
        self.assertEqual(self.published(), [left])
        self.assert_list(self.program, 1)

    def test_a_damaged_file_leaves_what_is_shown(self):
        self.file.write_bytes(self.file.read_bytes()[:-40])
        harness.wait_for(lambda: json.loads(self.bridge("status", "--json"))["files"][0]["fault"], "a fault")
        self.assertEqual(self.published(), ["Power", "Rent"])
        self.save("Rent")
        self.wait_for("Rent")


class FirstRun(Bills):
    """No list is there, and no file is connected."""

    desktop_options = {"bus": True, "accessibility": True}

    def setUp(self):
        super().setUp()
        self.program = self.start()
        self.window = self.shown(self.program)

    def row(self):
        """The row of the file, as an assistive program is told of it; absent until it is offered."""
        found = [told for told in flows.AssistedPanel.accessibles(self, "push button") if "bills.xhb" in told["name"]]
        return found[0] if found else None

    def click_row(self, times=1):
        x, y, width, height = harness.wait_for(self.row, "a file that is offered")["place"]
        here = self.window.geometry()
        self.window.click(x + width // 2 - here.x, y + height // 2 - here.y, times=times)

    def test_one_click_on_a_file_shows_its_bills(self):
        self.click_row()
        self.wait_for("Rent", "Power")
        self.assert_list(self.program, 2)
        status = json.loads(self.bridge("status", "--json"))
        self.assertEqual([file["path"] for file in status["files"]], [str(self.file)])

    def test_more_clicks_than_one_do_no_more(self):
        self.click_row(times=3)
        self.assert_list(self.program, 2)
        self.assertEqual(len(json.loads(self.bridge("status", "--json"))["files"]), 1)

    def test_a_file_that_was_damaged_meanwhile_says_so_and_can_be_chosen_again(self):
        harness.wait_for(self.row, "a file that is offered")
        self.file.write_bytes(self.file.read_bytes()[:-40])
        self.click_row()
        told = harness.wait_for(lambda: (row := self.row()) and "~/bills.xhb" in row["description"] and row, "a fault")
        self.assertNotIn("busy", told["states"])
        self.assertIsNone(self.published())
        self.save("Rent")
        self.click_row()
        self.assert_list(self.program, 1)

    def open_again(self):
        self.ask("--hide")
        self.assert_hidden(self.program)
        self.ask("--show")
        self.window = self.shown(self.program)

    def test_what_is_offered_follows_what_is_found_at_each_opening(self):
        harness.wait_for(self.row, "a file that is offered")
        self.file.unlink()
        for _ in range(2):  # a row stays until an opening after which its file was not found
            self.open_again()
        harness.wait_for(lambda: not self.row(), "no file that is offered")
        self.save("Rent")
        self.open_again()
        self.click_row()
        self.assert_list(self.program, 1)


class Apart(Bills):
    def test_a_start_for_other_containers_leaves_the_bills_alone(self):
        """It is another program: that of a demonstration, perhaps."""
        self.bridge("connect", self.file)
        other = self.desktop.folder / "other"
        program = self.desktop.run([flows.PANEL, "--containers", other], self.env)
        self.shown(program)
        subprocess.run([flows.PANEL, "--containers", other, "--quit"], env=self.desktop.env | self.env, check=True,
                       timeout=harness.DEADLINE)
        self.assertEqual((program.end_status(), self.published(), other.exists()), (0, None, False))


if __name__ == "__main__":
    unittest.main()
