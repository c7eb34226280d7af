"""The panel as people meet it: its height, its keys, its exit status, and its picture without a screen."""

import os
import pathlib
import struct
import subprocess
import tempfile
import unittest

import containers
import harness

PANEL = os.environ["KORVEL_TODAY"]

# In points. The content is as wide as PANEL_CONTENT and 50 a row; around it the panel leaves room.
CONTENT_WIDTH, ROW_HEIGHT = 320, 50
MARGIN_X, MARGIN_Y = 12, 8


def panel_size(rows):
    return CONTENT_WIDTH + 2 * MARGIN_X, ROW_HEIGHT * rows + 2 * MARGIN_Y


class OnScreen(harness.DesktopTest):
    def setUp(self):
        super().setUp()
        self.container = containers.Container(self.desktop.folder / "containers")

    def open(self, count, env=None):
        self.container.write_feed([containers.transaction(number) for number in range(count)])
        program = self.desktop.run([PANEL, "--containers", self.container.containers], env)
        return program, program.window()

    def assert_height(self, count, rows):
        width, height = panel_size(rows)
        for scale in (1, 2):
            with self.subTest(scale=scale):
                program, window = self.open(count, {"QT_SCALE_FACTOR": str(scale)})
                window.wait_for_size(width * scale, height * scale)
                window.press("Escape")
                harness.wait_for(lambda: not window.shown(), "a hidden panel")
                self.assertEqual(program.terminate(), 0)
                self.assertEqual(program.err, "")

    def test_is_one_row_high_without_transactions(self):
        self.assert_height(0, rows=1)

    def test_is_two_rows_high_with_one_transaction(self):
        self.assert_height(1, rows=2)

    def test_is_four_rows_high_with_three_transactions(self):
        self.assert_height(3, rows=4)

    def test_is_six_rows_high_with_ten_transactions(self):
        self.assert_height(10, rows=6)

    def test_is_one_row_high_where_nothing_is_to_be_shown(self):
        self.container.write_settings(show_transactions_count=-1)
        self.assert_height(3, rows=1)

    def test_stands_at_the_right_edge_of_the_screen(self):
        _, window = self.open(3)
        here = window.wait_for_size(*panel_size(4))
        self.assertLess(1280 - (here.x + here.width), 40)
        self.assertGreaterEqual(1280 - (here.x + here.width), 0)

    def test_closes_on_escape_and_leaves_the_feed_alone(self):
        program, window = self.open(3)
        feed = self.container.folder / "notifications.xml"
        before = feed.read_bytes()
        window.press("Escape")
        harness.wait_for(lambda: not window.shown(), "a hidden panel")
        self.assertEqual(program.terminate(), 0)
        self.assertEqual(feed.read_bytes(), before)

    def test_shows_the_list_as_soon_as_there_is_a_container(self):
        nowhere = self.desktop.folder / "nowhere"
        program = self.desktop.run([PANEL, "--containers", nowhere])
        window = program.window()
        here = window.wait_for_size(panel_size(1)[0], None)
        self.assertGreater(here.height, panel_size(2)[1])
        self.assertFalse(nowhere.exists())
        (nowhere / os.environ["KORVEL_GROUP"]).mkdir(parents=True)
        harness.wait_for(lambda: not window.shown(), "the end of a process that may not read what has come")
        window = program.window()
        window.wait_for_size(*panel_size(1))
        containers.Container(nowhere).write_feed([containers.transaction(number) for number in range(3)])
        window.wait_for_size(*panel_size(4))
        window.press("Escape")
        harness.wait_for(lambda: not window.shown(), "a hidden panel")
        self.assertEqual(program.terminate(), 0)
        self.assertEqual(program.err, "")


class LowScreen(harness.DesktopTest):
    desktop_options = {"width": 800, "height": 240}

    def test_panel_is_never_taller_than_the_screen(self):
        container = containers.Container(self.desktop.folder / "containers")
        container.write_feed([containers.transaction(number) for number in range(5)])
        window = self.desktop.run([PANEL, "--containers", container.containers]).window()
        here = window.wait_for_size(panel_size(6)[0], None)
        self.assertLessEqual(here.y + here.height, 240)
        self.assertGreaterEqual(here.y, 0)


class WithoutScreen(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.container = containers.Container(self.folder / "containers")

    def run_panel(self, *options):
        env = {name: value for name, value in os.environ.items()
               if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        env["XDG_RUNTIME_DIR"] = str(self.folder)  # Qt says a line of its own where a session has none
        return subprocess.run([PANEL, "--containers", self.container.containers, *options], env=env,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)

    def snapshot_size(self, *options):
        picture = self.folder / "panel.png"
        done = self.run_panel("--snapshot", picture, *options)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        header = picture.read_bytes()[:24]
        self.assertEqual(header[:8], b"\x89PNG\r\n\x1a\n")
        return struct.unpack(">II", header[16:])

    def assert_fails(self, status, *options):
        done = self.run_panel(*options)
        self.assertEqual((done.returncode, done.stdout), (status, ""))
        self.assertRegex(done.stderr, r"\A[^\n]+\n\Z")

    def test_snapshot_is_as_large_as_the_panel(self):
        self.container.write_feed([containers.transaction(number) for number in range(3)])
        width, height = panel_size(4)
        for scale in (1, 1.5, 2):
            with self.subTest(scale=scale):
                self.assertEqual(self.snapshot_size("--scale", str(scale)), (width * scale, height * scale))

    def test_snapshot_is_as_wide_as_asked_for(self):
        self.assertEqual(self.snapshot_size("--width", "400"), (400 + 2 * MARGIN_X, panel_size(1)[1]))

    def test_snapshot_that_cannot_be_written_is_a_failure(self):
        self.assert_fails(1, "--snapshot", self.folder / "no-such-folder" / "panel.png")

    def test_wrong_options_are_wrong_usage(self):
        for options in (["--no-such-option"], ["file.png"], ["--snapshot"], ["--scale", "2"],
                        ["--snapshot", "x.png", "--scale", "big"], ["--snapshot", "x.png", "--width", "-5"]):
            with self.subTest(options):
                self.assert_fails(2, *options)

    def test_malformed_record_ends_the_program_at_once_and_silently(self):
        self.container.write_feed([{"date": 0.0, "name": "No amount"}])
        done = self.run_panel("--snapshot", self.folder / "panel.png")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (-6, "", ""))
        self.assertFalse((self.folder / "panel.png").exists())

    def test_version_names_the_group(self):
        done = self.run_panel("--version")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn(os.environ["KORVEL_GROUP"], done.stdout)


if __name__ == "__main__":
    unittest.main()
