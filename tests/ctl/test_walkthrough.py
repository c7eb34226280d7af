"""The README's walk-through, on days on which the month's end and the leap day could be in its way."""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
README = (SOURCE / "README.md").read_text(encoding="utf-8")


def block(language):
    section = re.search(r"^## How a host application fills a container\n(.*?)^## ", README, re.MULTILINE | re.DOTALL)[1]
    return re.search(rf"```{language}\n(.*?)```", section, re.DOTALL)[1]


LIST = '\nkorvel-todayctl --containers "$containers" list'
CHECK = '\necho ---; korvel-todayctl --containers "$containers" check --json || true'


class Walkthrough(unittest.TestCase):
    def walk(self, moment, *, then="", **variables):
        """What the shell's block prints at a time in UTC. The panel is a program that does nothing."""
        with tempfile.TemporaryDirectory() as name:
            programs = pathlib.Path(name, "programs")
            programs.mkdir()
            (programs / "korvel-today").symlink_to("/bin/true")
            (programs / "korvel-todayctl").symlink_to(os.environ["KORVEL_TODAYCTL"])
            pathlib.Path(name, "demo").symlink_to(SOURCE / "demo")
            return subprocess.run(["bash", "-c", block("sh") + then], cwd=name, text=True, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, check=True,
                                  env=os.environ | {"PATH": f"{programs}:{os.environ['PATH']}", "TZ": "UTC",
                                                    "TMPDIR": name, "HOME": name, "LC_ALL": "C.UTF-8",
                                                    "LD_PRELOAD": os.environ["LIBFAKETIME"],
                                                    "FAKETIME": "@" + moment} | variables)

    def test_yesterdays_bill_is_listed_on_every_day(self):
        for day, yesterday in (("2026-03-01", "2026-02-28"), ("2028-03-01", "2028-02-29"), ("2026-01-01", "2025-12-31"),
                               ("2026-03-15", "2026-03-14"), ("2026-02-27", "2026-02-26"), ("2026-02-28", "2026-02-27"),
                               ("2028-02-28", "2028-02-27"), ("2028-02-29", "2028-02-28"), ("2026-03-28", "2026-03-27"),
                               ("2026-04-29", "2026-04-28"), ("2026-04-30", "2026-04-29"), ("2026-03-30", "2026-03-29"),
                               ("2026-03-31", "2026-03-30"), ("2026-12-31", "2026-12-30")):
            with self.subTest(day):
                done = self.walk(f"{day} 12:00:00", then=CHECK)
                shown, _, findings = done.stdout.partition("---")
                self.assertIn(f"{yesterday} 18:00  !  plan-rent  −870.00 €  Rent\n1 of 1 shown\n", shown)
                self.assertLessEqual({each["finding"] for each in json.loads(findings)
                                      if each["severity"] in ("ends", "loses")}, {"noHandler"})

    def test_the_same_feed_from_python_is_listed(self):
        then = '\nrm "$group/notifications.xml"; export group\npython3 -c "$script"\necho ---' + LIST
        script = "import os\ngroup = os.environ['group']\n" + block("python")
        shown = self.walk("2026-03-31 12:00:00", then=then, script=script).stdout.partition("---")[2]
        self.assertRegex(shown, r"\A\n2026-03-30 12:00(:\d\d)?  !  plan-rent  −870.00 €  Rent\n1 of 1 shown\n\Z")


if __name__ == "__main__":
    unittest.main()
