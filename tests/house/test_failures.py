"""What the failed tests of a run said is printed behind everything else."""

import os
import pathlib
import subprocess
import tempfile
import unittest

PROGRAM = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"]) / "scripts" / "failures"


class Failures(unittest.TestCase):
    def printed(self, cases):
        with tempfile.NamedTemporaryFile("w", suffix=".xml") as results:
            results.write(f"<testsuite>{cases}</testsuite>")
            results.flush()
            return subprocess.run([PROGRAM, results.name], check=True, capture_output=True, text=True).stdout

    def test_only_failed_ones_are_printed(self):
        printed = self.printed('<testcase name="A" status="run"><system-out>well</system-out></testcase>'
                               '<testcase name="B" status="fail"><system-out>first\nsecond\n</system-out></testcase>'
                               '<testcase name="C" status="notrun"/>')
        self.assertEqual(printed, "\n==== B\nfirst\nsecond\n")

    def test_a_test_without_output_is_named(self):
        self.assertEqual(self.printed('<testcase name="B" status="fail"/>'), "\n==== B\n\n")

    def test_of_a_long_output_the_end_is_printed(self):
        lines = "\n".join(f"line {number}" for number in range(150))
        printed = self.printed(f'<testcase name="B" status="fail"><system-out>{lines}</system-out></testcase>')
        self.assertEqual(printed.splitlines()[2:], [f"line {number}" for number in range(50, 150)])


if __name__ == "__main__":
    unittest.main()
