"""The harness itself, on a small window: what it reads is what is there, and nothing outlives a test."""

import os
import pathlib
import subprocess
import unittest

import harness

WINDOW = os.environ["KORVEL_E2E_WINDOW"]
RED, GREEN = (200, 0, 0), (0, 200, 0)


class OneWindow(harness.DesktopTest):
    desktop_options = {"width": 800, "height": 600}

    def setUp(self):
        super().setUp()
        self.program = self.desktop.run([WINDOW])
        self.window = self.program.window()

    def test_geometry_is_the_windows_own(self):
        self.window.wait_for_size(200, 100)
        self.assertEqual(self.window.geometry(), harness.Geometry(40, 60, 200, 100))

    def test_size_that_does_not_come_is_a_failure(self):
        with self.assertRaisesRegex(harness.Unmet, r"window is not 200 x 101 but .*height=100\b"):
            self.window.wait_for_size(200, 101, deadline=0.2)

    def test_click_reaches_the_button(self):
        harness.wait_for(lambda: self.window.picture()[5, 5] == RED, "a red window")
        self.window.click(60, 35)
        harness.wait_for(lambda: self.window.picture()[5, 5] == GREEN, "a green window")

    def test_click_beside_the_button_changes_nothing(self):
        harness.wait_for(lambda: self.window.picture()[5, 5] == RED, "a red window")
        self.window.click(190, 90)
        self.window.press("F1")
        self.window.wait_for_size(200, 130)
        self.assertEqual(self.window.picture()[5, 5], RED)

    def test_drag_off_the_button_changes_nothing(self):
        self.window.hold(60, 35)
        self.window.let_go(190, 90)
        self.window.press("F1")
        self.window.wait_for_size(200, 130)
        self.assertEqual(self.window.picture()[5, 5], RED)

    def test_paused_program_hears_of_everything_in_its_order_afterwards(self):
        harness.wait_for(lambda: self.window.picture()[5, 5] == RED, "a red window")
        with self.program.paused():
            self.window.click(60, 35)
            self.window.press("F1")
            self.assertEqual((self.window.picture()[5, 5], self.window.geometry().height), (RED, 100))
        self.window.wait_for_size(200, 130)
        harness.wait_for(lambda: self.window.picture()[5, 5] == GREEN, "a green window")

    def test_keys_reach_the_window(self):
        self.window.press("F1")
        self.window.wait_for_size(200, 130)
        self.window.press("Escape")
        self.assertEqual(self.program.end_status(), 0)
        self.assertFalse(self.window.shown())

    def test_crash_is_told_by_its_signal(self):
        self.window.press("F2")
        self.assertEqual(self.program.end_status(), -6)

    def test_property_of_the_window(self):
        self.assertIn(str(self.program.process.pid), self.window.property("_NET_WM_PID"))

    def test_nothing_composes_unless_asked_for(self):
        self.assertFalse(self.desktop.composited())


class TwiceAsDense(harness.DesktopTest):
    def test_window_has_twice_the_pixels(self):
        program = self.desktop.run([WINDOW], {"QT_SCALE_FACTOR": "2"})
        program.window().wait_for_size(400, 200)


class Composited(harness.DesktopTest):
    desktop_options = {"compositor": True}

    def test_compositor_owns_the_screen(self):
        self.assertTrue(self.desktop.composited())


class Accessible(harness.DesktopTest):
    desktop_options = {"accessibility": True}

    def test_client_finds_the_button_and_presses_it(self):
        window = self.desktop.run([WINDOW]).window()
        harness.wait_for(lambda: "Turn green" in str(self.desktop.accessible("tree")), "an accessible button")
        self.assertTrue(self.desktop.accessible("act", "push button", "Turn green", "Press"))
        harness.wait_for(lambda: window.picture()[5, 5] == GREEN, "a green window")

    def test_client_that_finds_nothing_is_a_failure(self):
        with self.assertRaisesRegex(AssertionError, "0 accessibles"):
            self.desktop.accessible("act", "push button", "Turn blue", "Press")


class Ends(unittest.TestCase):
    def test_condition_that_never_holds_is_a_failure(self):
        with self.assertRaisesRegex(harness.Unmet, "not within 0.1 s: rain"):
            harness.wait_for(lambda: False, "rain", 0.1)

    def test_program_that_shows_no_window_is_a_failure(self):
        desktop = harness.Desktop()
        self.addCleanup(desktop.end)
        with self.assertRaisesRegex(AssertionError, "ended with 3 before it showed a window: no luck"):
            desktop.run(["sh", "-c", "echo no luck >&2; exit 3"]).window()

    def test_desktop_leaves_no_process_and_no_file(self):
        desktop = harness.Desktop(accessibility=True)
        folder = desktop.folder
        program = desktop.run([WINDOW])
        program.window()
        orphan = desktop.run(["sh", "-c", "setsid sh -c 'trap \"\" TERM HUP; cat /dev/zero >/dev/null' & echo $!"])
        self.assertEqual(orphan.end_status(), 0)
        pids = [str(program.process.pid), orphan.out.strip()]
        self.assertTrue(all(map(running, pids)))
        desktop.end()
        self.assertEqual([pid for pid in pids if running(pid)], [])
        self.assertEqual(list(harness.children(os.getpid())), [])
        self.assertFalse(folder.exists())

    def test_killed_test_takes_its_desktop_along(self):
        test = subprocess.Popen(
            ["python3", "-B", "-c", "import harness, sys; d = harness.Desktop(); "
             "print(*(p.pid for p in d._processes), flush=True); sys.stdin.read()"],
            cwd=pathlib.Path(__file__).parent, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        pids = test.stdout.readline().split()
        self.assertEqual(len(pids), 2)
        test.kill()
        test.communicate()
        for pid in pids:
            harness.wait_for(lambda pid=pid: not running(pid), f"the end of process {pid}")


def running(pid):
    try:
        return pathlib.Path("/proc", pid, "stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except OSError:
        return False


if __name__ == "__main__":
    unittest.main()
