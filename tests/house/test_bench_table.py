"""The table of bench/run: which bars are met, and that a line that is no figure is a fault."""

import contextlib
import io
import os
import pathlib
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "bench")))
import table  # noqa: E402


class Rows(unittest.TestCase):
    def test_ratio_at_its_bar_is_met_and_one_above_is_missed(self):
        self.assertEqual(table.row("read\t1 ms\t2 ms\t0.5\t0.5")[-1], "met")
        self.assertEqual(table.row("read\t1 ms\t2 ms\t0.5001\t0.5")[-1], "MISSED")

    def test_figure_without_a_bar_has_no_verdict(self):
        self.assertEqual(table.row("read\t1 ms\t2 ms\t0.5\t-")[-1], "")

    def test_lines_that_are_no_figures(self):
        for line in ("read", "read\t1 ms\t2 ms\t0.5", "read\t1 ms\t2 ms\tfast\t0.5", "read\t1 ms\t2 ms\t0.5\tlow",
                     "read\t1 ms\t2 ms\tnan\t0.5", "read\t1 ms\t2 ms\tinf\t0.5"):
            with self.subTest(line), self.assertRaises(table.BadLine):
                table.row(line)

    def test_columns_are_aligned(self):
        rows = [table.row("read\t1 ms\t2 ms\t0.5\t0.75"), table.row("write a feed\t10 ms\t9 ms\t1.11\t1")]
        self.assertEqual(table.table(rows).splitlines(), [
            "what          ours   yardstick  ratio   bar",
            "read          1 ms   2 ms         0.5  0.75  met",
            "write a feed  10 ms  9 ms        1.11     1  MISSED"])


class Runs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copy(table.__file__, self.folder / "table.py")
        self.addCleanup(setattr, table, "__file__", table.__file__)
        table.__file__ = str(self.folder / "table.py")

    def write_run(self, name, body):
        (self.folder / name).mkdir()
        path = self.folder / name / "run"
        path.write_text("#!/bin/sh\n" + body, encoding="utf-8")
        path.chmod(0o755)

    def run_all(self, *names):
        out, err = io.StringIO(), io.StringIO()
        with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
            status = table.main(self.folder, list(names))
        return status, out.getvalue(), err.getvalue()

    def test_all_folders_stand_in_one_table_with_their_notes_below(self):
        self.write_run("b", "printf 'b\\t1\\t2\\t0.5\\t1\\n# a note\\n'")
        self.write_run("a", "printf 'a\\t1\\t2\\t0.5\\t1\\n'")
        status, out, _ = self.run_all()
        self.assertEqual(status, 0)
        self.assertEqual([line.split()[0] for line in out.splitlines()], ["what", "a", "b", "#"])

    def test_named_folders_only(self):
        self.write_run("a", "printf 'a\\t1\\t2\\t0.5\\t1\\n'")
        self.write_run("b", "exit 1")
        self.assertEqual(self.run_all("a")[0], 0)

    def test_missed_bar_is_a_failure(self):
        self.write_run("a", "printf 'a\\t1\\t2\\t0.5\\t0.4\\n'")
        self.assertEqual(self.run_all()[0], 1)

    def test_run_that_fails_or_prints_what_is_no_figure_is_a_failure(self):
        self.write_run("a", "printf 'a\\t1\\t2\\t0.5\\t1\\n'; exit 3")
        self.write_run("b", "echo hello")
        status, _, err = self.run_all()
        self.assertEqual(status, 1)
        self.assertIn("bench/a/run ended with 3", err)
        self.assertIn("bench/b/run: 1 fields", err)

    def test_nothing_to_measure_is_a_failure(self):
        self.assertEqual(self.run_all()[0], 1)


if __name__ == "__main__":
    unittest.main()
