"""bench/run prints the figures of all benchmarks as one table, and fails for a missed bar and for what is no figure."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

TABLE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "bench/table.py")


def line(ratio, bar):
    return f"printf 'a\\t1 ms\\t2 ms\\t{ratio}\\t{bar}\\n'"


# The benchmarks' scripts, the folders that are named; exit status, a text of the errors, a text of the table.
RUNS = [
    ({"b": line(0.75, 0.75) + "; echo '# a note'", "a": line(1.25, "-")}, [], 0, "",
     "what  ours  yardstick  ratio   bar\na     1 ms  2 ms        1.25     -\n"
     "a     1 ms  2 ms        0.75  0.75  met\n# a note\n"),
    ({"a": line(0.5, 1), "b": "exit 1"}, ["a"], 0, "", "met"),
    ({"a": line(0.5001, 0.5)}, [], 1, "", "MISSED"),
    ({"a": line(0.5, 1) + "; exit 3"}, [], 1, "bench/a/run ended with 3", ""),
    ({"a": "echo hello"}, [], 1, "bench/a/run: 1 fields", ""),
    ({"a": line("fast", 1)}, [], 1, "ratio or bar is no number", ""),
    ({"a": line(0.5, "low")}, [], 1, "ratio or bar is no number", ""),
    ({"a": line("nan", 1)}, [], 1, "the ratio is not finite", ""),
    ({"a": line("inf", 1)}, [], 1, "the ratio is not finite", ""),
    ({}, [], 1, "", ""),
]


class Table(unittest.TestCase):
    def test_runs(self):
        for scripts, names, status, error, output in RUNS:
            with self.subTest(scripts), tempfile.TemporaryDirectory() as folder:
                shutil.copy(TABLE, folder)
                for name, body in scripts.items():
                    run = pathlib.Path(folder, name, "run")
                    run.parent.mkdir()
                    run.write_text(f"#!/bin/sh\n{body}\n", encoding="utf-8")
                    run.chmod(0o755)
                done = subprocess.run([sys.executable, "-B", f"{folder}/table.py", folder, *names],
                                      capture_output=True, text=True)
                self.assertEqual(done.returncode, status, done.stderr)
                self.assertIn(error, done.stderr)
                self.assertIn(output, done.stdout)


if __name__ == "__main__":
    unittest.main()
