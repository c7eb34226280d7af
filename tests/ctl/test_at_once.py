"""Several companions at once, as scripts run them: what each says that it has done is done, once."""

import json
import os
import pathlib
import plistlib
import subprocess
import tempfile
import threading
import unittest

PLANS = [f"plan {number}" for number in range(24)]


class AtOnceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.containers = pathlib.Path(folder.name)
        self.container = self.containers / os.environ["KORVEL_GROUP"]
        feed = [{"date": 10, "name": plan, "image": "i", "amount": "5", "income": 0, "expense": 1, "planpk": plan,
                 "single": False} for plan in PLANS]
        self.assertEqual(self.run_companion("publish", "-", text=json.dumps(feed)).returncode, 0)

    def run_companion(self, *words, text=""):
        return subprocess.run([os.environ["KORVEL_TODAYCTL"], "--containers", self.containers, *words], input=text,
                              capture_output=True, text=True, timeout=60, check=False)

    def at_once(self, *programs):
        threads = [threading.Thread(target=program) for program in programs]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def test_each_action_is_handed_out_once(self):
        results, printed, done = [], [], []

        def act(plans):
            for plan in plans:
                results.append(self.run_companion("act", plan, "10", "paid"))
            done.append(plans)

        def consume():
            while len(done) < 3:
                printed.append(self.run_companion("consume", "--json"))

        self.at_once(lambda: act(PLANS[:8]), lambda: act(PLANS[8:16]), lambda: act(PLANS[16:]), consume, consume)
        printed.append(self.run_companion("consume", "--json"))
        self.assertEqual([result.stderr for result in results if result.returncode != 0], [])
        self.assertEqual([result.stderr for result in printed if result.returncode != 0], [])
        records = [json.loads(line) for result in printed for line in result.stdout.splitlines()]
        self.assertEqual(sorted(record["pk"] for record in records), sorted(PLANS))
        self.assertEqual(plistlib.loads((self.container / "notifications.xml").read_bytes()), [])
        self.assertEqual([path.name for path in self.container.rglob("*.aside")], [])
        self.assertEqual([path.name for path in self.container.rglob(".korvel-*")], [])

    def test_no_setting_undoes_another(self):
        results = []

        def switch(program):
            for number in range(20):
                results.append(self.run_companion("settings", "set", f"{program} {number}", str(number)))

        self.at_once(lambda: switch("a"), lambda: switch("b"), lambda: switch("c"))
        self.assertEqual([result.stderr for result in results if result.returncode != 0], [])
        [file] = self.container.rglob("*.plist")
        expected = {f"{program} {number}": str(number) for program in "abc" for number in range(20)}
        self.assertEqual(plistlib.loads(file.read_bytes()), expected)


if __name__ == "__main__":
    unittest.main()
