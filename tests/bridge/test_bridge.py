"""The finished program with a journal of today's date, in a home of its own."""

import datetime
import json
import os
import pathlib
import plistlib
import subprocess
import tempfile
import unittest

TODAY = datetime.date.today()
DAY = TODAY + datetime.timedelta(days=2)  # to come, whenever midnight is
JOURNAL = f"""account assets:giro  ; type: A
account expenses:home  ; type: X

~ {DAY}  Rent  ; plan: rent
    expenses:home  870.00 EUR
    assets:giro
"""
HOMEBANK = '<?xml version="1.0"?>\n<homebank v="1.3999999999999999" d="050602">\n<properties title="x" curr="1"/>\n</homebank>\n'


class BridgeTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name).resolve()
        self.journal = self.home / "plans.journal"
        self.journal.write_text(JOURNAL)
        self.container = self.home / "containers" / os.environ["KORVEL_GROUP"]

    def start_bridge(self, *words):
        return subprocess.Popen([os.environ["KORVEL_BRIDGE"], "--containers", self.home / "containers", *words],
                                env={"PATH": os.environ["PATH"], "HOME": str(self.home), "TZ": "UTC", "LC_ALL": "C.UTF-8"},
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def finish(self, bridge, status=0):
        out, err = bridge.communicate(timeout=60)
        self.assertEqual(bridge.returncode, status, err)
        return err if status else out

    def run_bridge(self, *words, status=0):
        return self.finish(self.start_bridge(*words), status)

    def records(self):
        return plistlib.loads((self.container / "notifications.xml").read_bytes())

    def test_plans_are_found_shown_and_paid(self):
        self.assertEqual(self.run_bridge("sources"), f"hledger  {self.journal}\n")
        self.run_bridge("connect", self.journal)
        self.run_bridge("update")
        [record] = self.records()
        self.assertEqual((record["name"], record["expense"], record["income"], record["source"]),
                         ("Rent", True, False, "korvel-today-bridge"))
        self.assertEqual(datetime.datetime.fromtimestamp(record["date"], datetime.timezone.utc).isoformat(),
                         f"{DAY}T23:59:59+00:00")
        self.assertRegex(record["planpk"], r"\Ahledger:[0-9a-f]{8}:rent\Z")
        icon = self.container / "bridge" / "icons" / (record["image"] + ".png")
        self.assertEqual(icon.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        log = self.container / "bridge" / "actions.xml"
        log.write_bytes(plistlib.dumps([{"type": 1, "pk": record["planpk"], "date": record["date"], "param": 0}]))
        self.run_bridge("update")
        self.assertEqual((self.records(), plistlib.loads(log.read_bytes())), ([], []))
        [pending] = json.loads(self.run_bridge("pending", "--json"))
        self.assertEqual((pending["name"], pending["due"]), ("Rent", str(DAY)))
        self.run_bridge("undo")
        self.assertEqual(self.records(), [record])

    def test_wrong_file_is_named(self):
        for name, what in (("a.gnucash", b"SQLite format 3\0"), ("b.kmy", b"\x1f\x8b\x08"), ("c.xhb", b"<homebank"),
                           ("d.journal", b"2026-13-45 no day\n")):
            with self.subTest(file=name):
                (self.home / name).write_bytes(what)
                said = self.run_bridge("connect", self.home / name, status=1)
                self.assertRegex(said, rf"\Akorvel-today-bridge: {self.home}/{name} [^\n]+\n\Z")
        self.assertFalse((self.home / ".config").exists())

    def test_commands_at_the_same_time_undo_nothing_of_each_other(self):
        files = [self.home / "a.xhb", self.home / "b.xhb"]
        for file in files:
            file.write_text(HOMEBANK)
        for round_ in range(20):
            for command, connected in (("connect", files), ("disconnect", [])):
                with self.subTest(command=command, round=round_):
                    for bridge in [self.start_bridge(command, file) for file in files]:
                        self.finish(bridge)
                    status = json.loads(self.run_bridge("status", "--json"))
                    self.assertEqual(sorted(file["path"] for file in status["files"]), [str(file) for file in connected])


if __name__ == "__main__":
    unittest.main()
