"""The demo's feed and its icons fit each other, and demo/make fills a container with them."""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

DEMO = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "demo")
SHORTEST_PICTURE_NAME = 23  # UTF-16 code units; a shorter name means a glyph
KEYS = {"date": str, "name": str, "image": str, "amount": str, "income": bool, "expense": bool, "planpk": str,
        "single": bool}

PROGRAMS = {
    # Notes how it is called and makes the container, as publishing does.
    "ctl": '#!/bin/sh\necho "$*" >> "$CALLS"\nif [ "$3" = publish ]; then mkdir "$2/group"; fi\n',
    # The day is $TODAY; the rest is the real program's.
    "date": '#!/bin/sh\nif [ "$1" = -d ]; then exec "$REAL" "$@"; else exec "$REAL" -d "$TODAY" "$@"; fi\n',
}


class Demo(unittest.TestCase):
    def test_feed_has_whole_records_of_each_kind_and_an_icon_for_each(self):
        records = json.loads((DEMO / "transactions.json").read_text(encoding="utf-8"))
        self.assertGreater(len(records), 5, "no more than are shown at once")
        for record in records:
            self.assertEqual({key: type(value) for key, value in record.items()}, KEYS)
        self.assertEqual({(record["income"], record["expense"]) for record in records},
                         {(True, False), (False, True), (False, False)})
        self.assertEqual({record["single"] for record in records}, {True, False})
        self.assertLess(len({record["planpk"] for record in records}), len(records), "no plan has two occurrences")
        images = {record["image"] for record in records}
        self.assertLessEqual(images, {path.stem for path in (DEMO / "icons").glob("*.png")})
        self.assertEqual({len(name.encode("utf-16-le")) // 2 < SHORTEST_PICTURE_NAME for name in images}, {True, False})

    def make(self, folder, today="2026-11-21"):
        """The end of demo/make and its calls of the companion."""
        for name, text in PROGRAMS.items():
            (folder / name).write_text(text, encoding="utf-8")
            (folder / name).chmod(0o755)
        (folder / "calls").write_text("", encoding="utf-8")
        done = subprocess.run(
            [DEMO / "make", folder / "containers", folder / "ctl"], capture_output=True, text=True,
            env=os.environ | {"PATH": f"{folder}:{os.environ['PATH']}", "CALLS": str(folder / "calls"), "TODAY": today,
                              "REAL": shutil.which("date")})
        return done, [line.split(maxsplit=2)[2] for line in (folder / "calls").read_text().splitlines()]

    def test_make_publishes_sets_and_brings_the_icons_anew(self):
        with tempfile.TemporaryDirectory() as name:
            group = pathlib.Path(name, "containers/group")
            for _ in range(2):
                done, calls = self.make(pathlib.Path(name))
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertTrue(calls[0].startswith("publish "), calls)
                self.assertIn("settings set account_pk demo", calls)
                self.assertTrue((group / "demo/icons/home.png").is_file())
                self.assertFalse((group / "actions.xml").exists())
                (group / "actions.xml").write_text("old", encoding="utf-8")

    def test_make_looks_ahead_as_far_as_the_month_goes(self):
        # The widget's limit wraps within the month. On the last day the limit is the day before, whatever is set.
        for today, days in (("2026-11-01", 7), ("2026-11-22", 7), ("2026-11-23", 6), ("2026-11-29", 0),
                            ("2026-11-30", 29), ("2028-02-28", 0), ("2027-02-28", 27), ("2026-12-31", 30)):
            with self.subTest(today), tempfile.TemporaryDirectory() as name:
                self.assertIn(f"settings set notification_days_count {days}", self.make(pathlib.Path(name), today)[1])

    def test_make_leaves_a_folder_alone_that_it_did_not_make(self):
        with tempfile.TemporaryDirectory() as name:
            mine = pathlib.Path(name, "containers/mine")
            mine.parent.mkdir()
            mine.write_text("kept", encoding="utf-8")
            done, calls = self.make(pathlib.Path(name))
            self.assertEqual((done.returncode, calls, mine.read_text(encoding="utf-8")), (1, [], "kept"))


if __name__ == "__main__":
    unittest.main()
