"""The companion as a process, on a container of its own."""

import json
import os
import pathlib
import plistlib
import resource
import subprocess
import tempfile
import unittest

LONG = "n" * 300000


def record(plan, date, **further):
    return {"date": date, "name": "Rent", "image": "i", "amount": "5", "income": False, "expense": True, "planpk": plan,
            "single": False} | further


FEED = [record("p", 5.0), record("p", 6.0), record("q", 6.0), record("r", 7.0, note=LONG)]


class CompanionTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.containers = pathlib.Path(folder.name)
        self.container = self.containers / os.environ["KORVEL_GROUP"]
        self.feed = self.container / "notifications.xml"
        self.log = self.container / "-" / "actions.xml"
        self.settings = self.container / "Library" / "Preferences" / f"{self.container.name}.plist"
        self.log.parent.mkdir(parents=True)
        self.settings.parent.mkdir(parents=True)

    def run_companion(self, *arguments, containers=None, before=None, **streams):
        """The finished program. It finds openers of URLs in the folder of all containers alone. `before` is called in its process before it starts."""
        return subprocess.run([os.environ["KORVEL_TODAYCTL"], *arguments], timeout=100, preexec_fn=before,
                              env=os.environ | {"PATH": str(self.containers), "TZ": "UTC", "LC_ALL": "C.UTF-8",
                                                "KORVEL_GROUP_CONTAINERS": containers or self.containers},
                              **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
                              | (streams or {"stdin": subprocess.DEVNULL}))

    def write_settings(self, settings):
        self.settings.write_bytes(plistlib.dumps(settings, fmt=plistlib.FMT_BINARY))


class LimitsTest(CompanionTest):
    """Under any limit the companion ends with one of its three statuses, never by a signal. Where it fails it says so in
    one line, and where it does not it has printed everything."""

    def setUp(self):
        super().setUp()
        (self.containers / "gio").symlink_to("/bin/true")

    def fill(self):
        self.feed.write_bytes(plistlib.dumps(FEED))
        self.log.write_bytes(plistlib.dumps([{"type": 1, "pk": "p", "date": 5.0, "param": 0}] * 500))
        (self.log.parent / "actions.xml.aside").unlink(missing_ok=True)
        self.write_settings({"notification_days_count": 3, "text": LONG})

    def commands(self):
        """Each command with its standard input."""
        source = self.containers / "feed.json"
        source.write_text(json.dumps(FEED))
        feed = plistlib.dumps(FEED)
        return [(arguments, {"plist -": feed, "publish -": source.read_bytes()}.get(" ".join(arguments[:2]), b""))
                for arguments in (
                    ["--help"], ["--version"], ["help", "--json"], ["status", "--json"],
                    ["nothing"], ["--nothing"], ["list"], ["list", "--json"],
                    ["act", "p", "5", "paid"], ["act", "q", "6", "later", "3"], ["act", "p", "5", "delete"],
                    ["act", "p", "5", "delete-future"], ["act", "p", "5", "info"], ["consume"], ["consume", "--json"],
                    ["plist", str(self.feed)], ["plist", str(self.feed), "--to", "xml"], ["plist", "-"],
                    ["publish", str(source)], ["publish", "-"], ["settings", "get", "text"],
                    ["settings", "get", "text", "--json"], ["settings", "set", "account_pk", "-"])]

    def sweep(self, kind, limits):
        """Runs each command under each limit. How many of the runs failed because of it."""
        failures = 0
        for arguments, standard_input in self.commands():
            self.fill()
            free = self.run_companion(*arguments, input=standard_input)
            for limit in limits:
                with self.subTest(command=" ".join(arguments)[-40:], limit=limit):
                    self.fill()
                    done = self.run_companion(*arguments, input=standard_input,
                                              before=lambda: resource.setrlimit(kind, (limit, limit)))
                    self.assertIn(done.returncode, (0, 1, 2))
                    if done.returncode == free.returncode:
                        self.assertEqual((done.stdout, done.stderr), (free.stdout, free.stderr))
                    else:
                        failures += 1
                        self.assertEqual(done.returncode, 1)
                        self.assertRegex(done.stderr, rb"\Akorvel-todayctl: [^\n]+\n\Z")
                    self.check_files()
        return failures

    def check_files(self):
        """Whatever happened, files are whole and no temporary one is left."""
        self.assertEqual([path.name for path in self.containers.rglob("*") if path.name.startswith(".")], [])
        for path in (self.feed, self.log, self.settings):
            if path.exists():
                plistlib.loads(path.read_bytes())
