"""The companion's status while it follows the list, and what docs/scripts.md says of it."""

import json
import os
import pathlib
import plistlib
import re
import shutil
import signal
import subprocess
import unittest

from companion import CompanionTest, record

DAY = 86400
SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
SCRIPTS = (SOURCE / "docs/scripts.md").read_text(encoding="utf-8")


def example(heading, language):
    """The code of the page's section."""
    section = re.search(rf"^#+ {heading}\n(.*?)(?=^#|\Z)", SCRIPTS, re.MULTILINE | re.DOTALL)[1]
    return re.search(rf"```{language}\n(.*?)```", section, re.DOTALL)[1]


class StatusTest(CompanionTest):
    def setUp(self):
        super().setUp()
        programs = self.containers / "programs"
        programs.mkdir()
        (programs / "korvel-todayctl").symlink_to(os.environ["KORVEL_TODAYCTL"])
        self.environment = os.environ | {"KORVEL_GROUP_CONTAINERS": str(self.containers), "TZ": "UTC",
                                         "PATH": f"{programs}:{os.environ['PATH']}"}

    def start(self, *command, **options):
        """A program that is ended after the test, with its output as text."""
        process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   env=self.environment, **options)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def follow(self, *options):
        return self.start("korvel-todayctl", "status", "--follow", *options)

    def publish(self, *dates):
        """Replaces the feed as a host does."""
        new = self.container / "new"
        new.write_bytes(plistlib.dumps([record("p", float(date)) for date in dates]))
        new.rename(self.feed)

    def next_counts(self, process):
        line = json.loads(process.stdout.readline())
        return tuple(line[key] for key in ("overdue", "dueToday", "due"))


class Follow(StatusTest):
    def test_a_line_comes_at_once_and_after_each_change(self):
        process = self.follow()
        self.assertEqual(process.stdout.readline(), "transactions: 0 overdue, 0 due today, 0 due\n")
        self.publish(1)
        self.assertEqual(process.stdout.readline(), "transactions: 1 overdue, 0 due today, 0 due\n")
        self.publish(1, 2)
        self.assertEqual(process.stdout.readline(), "transactions: 2 overdue, 0 due today, 0 due\n")
        self.feed.unlink()
        self.assertEqual(process.stdout.readline(), "transactions: 0 overdue, 0 due today, 0 due\n")

    def test_each_line_is_json(self):
        process = self.follow("--json")
        first = json.loads(process.stdout.readline())
        self.assertEqual(first, json.loads(self.run_companion("status", "--json").stdout))
        self.publish(1)
        self.assertEqual(self.next_counts(process), (1, 0, 0))

    def test_a_container_may_come_later(self):
        shutil.rmtree(self.container)
        process = self.follow("--json")
        self.assertEqual(self.next_counts(process), (0, 0, 0))
        self.container.mkdir()
        self.publish(1)
        self.assertEqual(self.next_counts(process), (1, 0, 0))

    def test_it_is_confined_once_there_is_a_container(self):
        outside = self.containers / "outside"
        outside.write_bytes(plistlib.dumps([record("p", 1.0)]))
        shutil.rmtree(self.container)
        process = self.follow("--json")
        self.assertEqual(self.next_counts(process), (0, 0, 0))
        made = self.containers / "made"
        made.mkdir()
        (made / "notifications.xml").symlink_to(outside)
        made.rename(self.container)
        self.assertEqual(self.next_counts(process), (None, None, None))
        self.assertIn(f"{self.feed}: Permission denied", process.stderr.readline())
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text(encoding="utf-8")
        self.assertRegex(status, r"\nSeccomp:\t2\n")

    def test_it_ends_where_another_container_takes_the_place(self):
        process = self.follow()
        self.assertIn("0 overdue", process.stdout.readline())
        other = self.containers / "other"
        other.mkdir()
        (other / self.feed.name).write_bytes(plistlib.dumps([record("p", 1.0)]))
        self.container.rename(self.containers / "old")
        other.rename(self.container)
        self.assertEqual(process.wait(), 1)
        self.assertEqual(process.stderr.read(), f"korvel-todayctl: {self.container}: another has taken its place, "
                                                "which this process may not read\n")

    def test_signals_end_it_in_order(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            process = self.follow()
            process.stdout.readline()
            process.send_signal(number)
            self.assertEqual((process.wait(), process.stderr.read()), (0, ""))

    def test_it_ends_with_whoever_reads_it(self):
        process = self.follow()
        process.stdout.readline()
        process.stdout.close()
        self.assertEqual((process.wait(), process.stderr.read()), (0, ""))

    def test_output_that_is_lost_is_a_failure(self):
        with open("/dev/full", "wb") as full:
            done = self.run_companion("status", "--follow", stdout=full, stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"korvel-todayctl: standard output: it cannot be written\n"))


class Examples(StatusTest):
    def test_waybar_gets_what_its_module_shows(self):
        module = json.loads("{" + example("Waybar", "json") + "}")["custom/korvel-today"]
        self.assertEqual(module["return-type"], "json")
        self.publish(1, 2)
        process = self.start("sh", "-c", module["exec"], start_new_session=True)
        self.addCleanup(os.killpg, process.pid, signal.SIGTERM)
        self.assertEqual(json.loads(process.stdout.readline()), {"text": "2", "class": "overdue"})
        self.publish()
        self.assertEqual(json.loads(process.stdout.readline()), {"text": "0", "class": ""})
        self.feed.write_text("text", encoding="utf-8")
        self.assertEqual(json.loads(process.stdout.readline()), {"text": "?", "class": ""})

    def test_a_prompt_tells_what_is_overdue(self):
        shell = example("A shell's prompt", "sh") + 'printf "%s" "${PS1@P}"'
        for dates, prompt in (((1, 2), "2 overdue $ "), ((), "$ ")):
            self.publish(*dates)
            done = subprocess.run(["bash", "--norc", "-c", "PS1='$ '\n" + shell], env=self.environment,
                                  stdout=subprocess.PIPE, text=True, check=True)
            self.assertEqual(done.stdout, prompt)

    def test_a_list_is_published_elsewhere(self):
        self.publish(1, 2)
        other = self.containers / "other"
        listed = self.run_companion("list", "--json").stdout
        subprocess.run(["bash", "-euo", "pipefail", "-c", example("The list", "sh")], check=True,
                       env=self.environment | {"other": str(other)})
        self.assertEqual(self.run_companion("list", "--json", containers=other).stdout, listed)

    def test_the_log_is_json_lines(self):
        self.publish(1, 2)
        for date in ("1", "2"):
            self.assertEqual(self.run_companion("act", "p", date, "paid").returncode, 0)
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", example("The action log", "sh")], check=True,
                              env=self.environment, stdout=subprocess.PIPE, text=True)
        self.assertEqual(done.stdout, "1 p 1\n1 p 2\n")


if __name__ == "__main__":
    unittest.main()
