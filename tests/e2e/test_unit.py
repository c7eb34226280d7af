"""The unit of the user's service manager: which of its options hold, seen at run time. A manager ignores what it cannot do,
and says so to nobody; so each option is tried by itself, and beside a service that has none of them."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import harness
from user_manager import HERE, UserManager

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
TEMPLATE = (SOURCE / "packaging" / "korvel-today.service.in").read_text()

# What each option forbids, by itself.
FORBIDDEN = {
    "NoNewPrivileges": {"new privileges"},
    "SystemCallArchitectures": {"32-bit system call"},
    "SystemCallFilter": {"tracing", "mounting", "changing the root", "setting the clock", "kernel keyrings"},
    "RestrictAddressFamilies": {"socket AF_INET", "socket AF_INET6", "socket AF_NETLINK"},
    "RestrictNamespaces": {"user namespace", "mount namespace", "entering a namespace"},
    "LockPersonality": {"personality"},
    "MemoryDenyWriteExecute": {"writable code", "code that was written"},
    "RestrictRealtime": {"real-time scheduling"},
    "RestrictSUIDSGID": {"set-user-id bit"},
}
NEEDED = {"changing a group", "socket AF_UNIX", "landlock", "seccomp"}
# What these are worth is seen in the others.
OTHERS = {"Type", "BusName", "ExecStart", "Slice", "SystemCallErrorNumber"}


def options():
    """The lines of [Service] by their names."""
    found = {}
    for line in re.search(r"\[Service\]\n(.*?)\n\[", TEMPLATE, re.S)[1].splitlines():
        if line and not line.startswith("#"):
            found.setdefault(line.partition("=")[0], []).append(line)
    return found


class Score(unittest.TestCase):
    def test_is_printed(self):
        """Nobody trusts it, but the file must be one that systemd understands."""
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "korvel-today.service")
            file.write_text(TEMPLATE.replace("@KORVEL_BINARY_FOLDER@", "/usr/bin"))
            done = subprocess.run(["systemd-analyze", "--user", "--no-pager", "--offline=true", "security", file],
                                  env=os.environ | {"XDG_RUNTIME_DIR": folder, "LC_ALL": "C.UTF-8"}, capture_output=True, text=True,
                                  timeout=harness.DEADLINE)
        print(done.stdout.splitlines()[-1] if done.stdout else "", file=sys.stderr)
        self.assertRegex(done.stdout, r"Overall exposure level for \S+: \d")
        self.assertEqual(done.stderr, "")


class Options(harness.DesktopTest):
    def setUp(self):
        super().setUp()
        self.lines = options()
        hardening = {name: lines for name, lines in self.lines.items() if name not in OTHERS}
        error = self.lines["SystemCallErrorNumber"]
        services = {"none": [], "all": error + sum(hardening.values(), [])}
        services |= {name: error + lines for name, lines in hardening.items()}
        self.manager = UserManager(self.desktop, {
            f"try-{name}.service": self.unit(name, lines) for name, lines in services.items()})
        self.manager.install(pathlib.Path(__file__).with_name("attempts.py"))
        self.addCleanup(self.manager.end)
        self.manager.start()

    @staticmethod
    def unit(name, lines):
        return "\n".join(["[Service]", "Type=oneshot",
                          f"ExecStart=/usr/bin/python3 -B {HERE}/bin/attempts.py {HERE}/tmp/{name}", *lines, ""])

    def outcomes(self, name):
        done = self.manager.systemctl("start", f"try-{name}.service")
        self.assertEqual(done.returncode, 0, f"{name}: {done.stderr}{self.manager.log()}")
        return json.loads((self.manager.folder / "tmp" / name).read_text())

    def test_each_forbids_what_it_is_for_and_all_of_them_leave_what_is_needed(self):
        self.assertEqual(FORBIDDEN.keys() | OTHERS, self.lines.keys(), "options without an attempt")
        free = self.outcomes("none")
        self.assertEqual({name: told for name, told in free.items() if told != "done"}, {}, "what nobody forbids")
        for option, forbidden in FORBIDDEN.items():
            with self.subTest(option):
                told = self.outcomes(option)
                self.assertLessEqual(forbidden, {name for name in told if told[name] != "done"}, told)
        told = self.outcomes("all")
        print("  ".join(f"{name}: {text}" for name, text in told.items()), file=sys.stderr)
        self.assertEqual({name for name in told if told[name] == "done"}, NEEDED, told)


if __name__ == "__main__":
    unittest.main()
