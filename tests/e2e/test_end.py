"""The panel is told to end, or loses its screen, right after the user has chosen: the choice is carried out first."""

import os
import pathlib
import re
import signal
import subprocess
import unittest

import flows
import harness
from flows import overdue


class RightAfterAChoice(flows.Choosing):
    def test_a_signal_ends_the_panel_only_when_the_choice_is_written(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                self.choose()
                self.panel.program.process.send_signal(number)
                self.assertEqual(self.panel.program.end_status(), 0)
                self.assertEqual(self.panel.program.err, "")
                self.assert_later_carried_out()

    def test_a_signal_to_the_process_with_the_window_ends_it_only_when_the_choice_is_written(self):
        self.choose()
        os.kill(self.panel.extension(), signal.SIGTERM)
        self.assert_later_carried_out()
        self.assertEqual(self.panel.program.terminate(), 0)

    def test_the_death_of_the_resident_process_loses_no_choice(self):
        self.choose()
        extension = self.panel.extension()
        self.panel.program.process.kill()
        self.assert_later_carried_out()
        harness.wait_for(lambda: harness.state(extension) in (None, "Z"), "the end of the other process")

    def test_a_second_signal_does_not_hurry_it(self):
        self.choose()
        for _ in range(3):
            self.panel.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.panel.program.end_status(), 0)
        self.assert_later_carried_out()

    def test_a_signal_ends_a_panel_without_a_choice_and_leaves_the_files_alone(self):
        self.open([overdue(1)])
        self.panel.wait_for_rows(1)
        self.panel.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.panel.program.end_status(), 0)
        self.assert_untouched()

    def test_a_limit_of_the_size_of_files_does_not_end_the_panel(self):
        self.open([overdue(1)])
        self.panel.wait_for_rows(1)
        status = pathlib.Path(f"/proc/{self.panel.extension()}/status").read_text()
        ignored = int(re.search(r"^SigIgn:\s*(\w+)", status, re.MULTILINE).group(1), 16)
        self.assertTrue(ignored >> (signal.SIGXFSZ - 1) & 1, "a file beyond the limit is a write that fails")

    def test_the_end_of_the_screen_ends_the_panel_only_when_the_choice_is_written(self):
        self.choose()
        self.desktop.end_screen()
        self.assertEqual(self.panel.program.end_status(), 1)
        self.assertEqual(self.panel.program.err, "")
        self.assert_later_carried_out()

    def test_the_end_of_the_screen_ends_a_panel_without_a_choice_and_leaves_the_files_alone(self):
        self.open([overdue(1)])
        self.panel.wait_for_rows(1)
        self.desktop.end_screen()
        self.assertEqual(self.panel.program.end_status(), 1)
        self.assert_untouched()


class WithoutADisplay(unittest.TestCase):
    def assert_one_line(self, **display):
        keep = {name: value for name, value in os.environ.items()
                if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_LOGGING_RULES")}
        ended = subprocess.run([os.environ["KORVEL_TODAY"]], env=keep | display, capture_output=True, text=True, timeout=60,
                               check=False)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr),
                         (1, "", "korvel-today: there is no display to show the panel on\n"))

    def test_the_panel_says_so_and_ends(self):
        self.assert_one_line()

    def test_a_display_that_does_not_answer_is_none(self):
        self.assert_one_line(DISPLAY="127.0.0.1:9999")
        self.assert_one_line(WAYLAND_DISPLAY="/nowhere/wayland-0", QT_QPA_PLATFORM="wayland")


if __name__ == "__main__":
    unittest.main()
