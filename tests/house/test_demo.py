"""The demo's feed and its icons fit each other, and demo/make fills a container with them."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

# From this length on, in UTF-16 code units, an image's name means a picture; below it, a glyph.
SHORTEST_PICTURE_NAME = 23

KEYS = {"date": str, "name": str, "image": str, "amount": str, "income": bool, "expense": bool, "planpk": str,
        "single": bool}


class Demo(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "demo")
        self.records = json.loads((self.folder / "transactions.json").read_text(encoding="utf-8"))

    def test_has_each_key_of_the_feed_in_each_record(self):
        for record in self.records:
            self.assertEqual({key: type(value) for key, value in record.items()}, KEYS)

    def test_has_more_transactions_than_are_shown_at_once(self):
        self.assertGreater(len(self.records), 5)

    def test_shows_each_kind(self):
        kinds = {(record["income"], record["expense"]) for record in self.records}
        self.assertEqual(kinds, {(True, False), (False, True), (False, False)})
        self.assertEqual({record["single"] for record in self.records}, {True, False})
        plans = [record["planpk"] for record in self.records]
        self.assertLess(len(set(plans)), len(plans), "no plan has two occurrences")

    def test_has_an_icon_for_each_name(self):
        named = {record["image"] for record in self.records}
        drawn = {path.stem for path in (self.folder / "icons").glob("*.png")}
        self.assertEqual(named - drawn, set())

    def test_has_glyphs_and_pictures(self):
        lengths = [len(record["image"].encode("utf-16-le")) // 2 for record in self.records]
        self.assertLess(min(lengths), SHORTEST_PICTURE_NAME)
        self.assertGreaterEqual(max(lengths), SHORTEST_PICTURE_NAME)


# Notes how it is called and makes the container, as publishing does.
CTL = """#!/bin/sh
echo "$*" >> "$CALLS"
if [ "$3" = publish ]; then mkdir "$2/group"; fi
"""

# The day is $TODAY; the rest is the real program's.
DATE = """#!/bin/sh
if [ "$1" = -d ]; then exec "$REAL" "$@"; else exec "$REAL" -d "$TODAY" "$@"; fi
"""


class Make(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.containers = self.folder / "containers"
        for name, text in (("ctl", CTL), ("date", DATE)):
            (self.folder / name).write_text(text, encoding="utf-8")
            (self.folder / name).chmod(0o755)

    def make(self, today="2026-11-21"):
        """The calls of the companion."""
        calls = self.folder / "calls"
        calls.unlink(missing_ok=True)
        env = os.environ | {"PATH": f"{self.folder}:{os.environ['PATH']}", "CALLS": str(calls), "TODAY": today,
                            "REAL": shutil.which("date")}
        make = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "demo/make")
        self.done = subprocess.run([make, self.containers, self.folder / "ctl"], env=env, capture_output=True, text=True)
        return [line.split()[2:] for line in calls.read_text().splitlines()] if calls.exists() else []

    def test_publishes_sets_and_brings_the_icons(self):
        calls = self.make()
        self.assertEqual(self.done.returncode, 0, self.done.stderr)
        self.assertEqual(calls[0][0], "publish")
        self.assertIn(["settings", "set", "account_pk", "demo"], calls)
        self.assertTrue((self.containers / "group/demo/icons/home.png").is_file())

    def test_looks_ahead_as_far_as_the_month_goes(self):
        # The widget's limit wraps within the month. On the last day the limit is the day before, whatever is set.
        for today, days in (("2026-11-01", 7), ("2026-11-22", 7), ("2026-11-23", 6), ("2026-11-29", 0),
                            ("2026-11-30", 29), ("2028-02-28", 0), ("2027-02-28", 27), ("2026-12-31", 30)):
            with self.subTest(today):
                self.assertIn(["settings", "set", "notification_days_count", str(days)], self.make(today))

    def test_is_made_anew_each_time(self):
        self.make()
        (self.containers / "group" / "actions.xml").write_text("old", encoding="utf-8")
        self.make()
        self.assertEqual(self.done.returncode, 0, self.done.stderr)
        self.assertFalse((self.containers / "group" / "actions.xml").exists())

    def test_leaves_a_folder_alone_that_it_did_not_make(self):
        self.containers.mkdir()
        (self.containers / "mine").write_text("kept", encoding="utf-8")
        self.assertEqual(self.make(), [])
        self.assertEqual(self.done.returncode, 1)
        self.assertEqual((self.containers / "mine").read_text(encoding="utf-8"), "kept")


if __name__ == "__main__":
    unittest.main()
