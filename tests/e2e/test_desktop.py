"""The resident program among the desktop's services: the tray, notifications, the screen's lock, the portal of settings,
and other windows."""

import contextlib
import itertools
import json
import os
import re
import signal
import stat
import subprocess
import time
import unittest

import flows
import harness
from flows import overdue
from services_test import ServicesTest

APPEARANCE = "org.freedesktop.appearance"
PRIVATE = "Rent of Jörg", "815.47"  # a name and an amount


def due_today():
    return overdue(9, date=time.time() + 3600)


class Tray(ServicesTest):
    def test_an_item_comes_with_a_host_that_comes_late(self):
        program = self.start("--background")
        self.ready(program)
        self.services.ask("Watcher", "come", False)
        self.settle()
        self.assertEqual(self.services.ask("Watcher", "items"), [])
        self.services.ask("Watcher", "host_comes")
        self.wait_for_tooltip("2 overdue")

    def test_an_item_comes_again_with_another_watcher_and_host(self):
        self.come_with_tray()
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        for _ in range(2):
            self.services.ask("Watcher", "go")
            self.services.ask("Watcher", "come", False)
            self.settle()
            self.assertEqual(self.services.ask("Watcher", "items"), [])
            self.services.ask("Watcher", "host_comes")
            self.wait_for_tooltip("2 overdue")

    def test_an_item_goes_and_comes_with_the_host(self):
        self.come_with_tray()
        self.start("--background")
        for _ in range(2):
            self.item()
            self.services.ask("Watcher", "host_goes")
            self.wait_for_no_item()
            self.services.ask("Watcher", "host_comes")
        self.wait_for_tooltip("2 overdue")

    def test_the_tooltip_follows_the_feed(self):
        self.container.write_settings(notification_days_count=1)
        self.come_with_tray()
        program = self.start("--background")
        self.wait_for_tooltip("2 overdue")
        for records, counts in (([overdue(1)], "1 overdue"), ([overdue(1), due_today()], "1 overdue, 1 due today"),
                                ([due_today()], "1 due today"), ([], "Nothing is due")):
            self.container.write_feed(records)
            self.wait_for_tooltip(counts)
        self.assertEqual(program.windows(), [])

    def test_the_tooltip_follows_what_the_user_does(self):
        self.come_with_tray()
        window = self.assert_list(self.start(), 2)
        self.wait_for_tooltip("2 overdue")
        panel = flows.Panel.__new__(flows.Panel)
        panel.window, panel.scale, panel.mirrored = window, 1, False
        panel.open_row(0)
        panel.click_button("Paid", 0)
        self.wait_for_tooltip("1 overdue")

    def test_the_icon_tells_that_something_is_overdue(self):
        self.come_with_tray()
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        marked = self.icon()
        self.container.write_feed([])
        self.wait_for_tooltip("Nothing is due")
        usual = self.icon()
        self.assertTrue(usual)
        self.assertNotEqual(usual, marked)
        self.container.write_feed([overdue(1)])
        self.wait_for_tooltip("1 overdue")
        self.assertEqual(self.icon(), marked)

    def test_the_icon_follows_the_colour_scheme(self):
        self.services.ask("Portal", "choose", APPEARANCE, "color-scheme", "uint32 2")
        self.services.ask("Portal", "come")
        self.come_with_tray()
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        light = self.icon()
        self.services.ask("Portal", "choose", APPEARANCE, "color-scheme", "uint32 1")
        harness.wait_for(lambda: self.icon() != light, "an icon for a dark tray")
        self.services.ask("Portal", "choose", APPEARANCE, "color-scheme", "uint32 2")
        harness.wait_for(lambda: self.icon() == light, "an icon for a light tray")

    def test_a_click_shows_and_hides_the_panel(self):
        self.come_with_tray()
        program = self.start("--background")
        for _ in range(2):
            self.click_item()
            window = self.assert_list(program, 2)
            self.wait_for_focus(window)
            self.click_item()
            self.assert_hidden(program)

    def test_show_shows_the_panel(self):
        self.come_with_tray()
        program = self.start("--background")
        self.choose("Show")
        self.assert_list(program, 2)

    def test_entries_of_the_menu_are_these(self):
        self.come_with_tray()
        self.start("--background")
        self.assertEqual(list(self.menu()), ["Show", "Add a transaction", "Open the finance application",
                                             "Show the shared folder", "Quit"])

    def test_add_and_open_open_the_hosts_urls(self):
        host = flows.Host(self.desktop)
        self.come_with_tray()
        self.start("--background")
        self.choose("Add a transaction")
        harness.wait_for(lambda: host.received() == b"korvelWidget://tw_new_transaction\n", "a URL")
        self.choose("Open the finance application")
        harness.wait_for(lambda: host.received().endswith(b"\nkorvelWidget://tw_all_transactions\n"), "another URL")

    def test_the_shared_folder_is_shown_by_the_file_manager(self):
        opened = self.register_file_manager()
        self.come_with_tray()
        self.start("--background")
        self.choose("Show the shared folder")
        harness.wait_for(lambda: opened.exists() and opened.read_text() == f"{self.container.folder}\n", "a folder")

    def register_file_manager(self):
        """A program that opens folders; the file where it notes them."""
        program, opened = self.desktop.folder / "files", self.desktop.folder / "opened"
        program.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> '{opened}'\n")
        program.chmod(program.stat().st_mode | stat.S_IXUSR)
        applications = self.desktop.folder / "home" / "data" / "applications"
        applications.mkdir(parents=True)
        (applications / "files.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Files\nExec={program} %f\nMimeType=inode/directory;\n")
        (self.desktop.folder / "home" / "config" / "mimeapps.list").write_text(
            "[Default Applications]\ninode/directory=files.desktop\n")
        return opened

    def test_quit_ends_both_processes(self):
        self.come_with_tray()
        program = self.start()
        self.assert_list(program, 2)
        pids = program.pids()
        self.choose("Quit")
        self.assertEqual((program.end_status(), program.err), (0, ""))
        self.assertEqual([pid for pid in pids if harness.state(pid) not in (None, "Z")], [])
        self.wait_for_no_item()

    def test_none_is_needed(self):
        program = self.start()
        self.assert_list(program, 2)
        self.ask("--toggle")
        self.assert_hidden(program)
        self.ask("--show")
        self.assert_list(program, 2)
        self.quit(program)


class Reminder(ServicesTest):
    """There is something overdue, and the time has come."""

    def setUp(self):
        super().setUp()
        self.container.write_feed([overdue(1, name=PRIVATE[0], amount=PRIVATE[1]), overdue(2, name=PRIVATE[0])])
        self.write_settings("[notifications]\ntime=00:00\n")
        self.services.ask("Notifications", "come")
        self.come_with_tray()

    def test_comes_once(self):
        self.start("--background")
        self.wait_for_notification()
        self.container.write_feed([overdue(number) for number in range(1, 4)])
        self.wait_for_tooltip("3 overdue")
        self.assertEqual(len(self.notified()), 1)

    def test_says_numbers_only(self):
        self.start("--background")
        arguments = self.wait_for_notification()
        self.assertEqual(arguments[3:5], ["2 overdue", ""])
        self.assertEqual(arguments[5], ["default", "Open", "open", "Open", "not-today", "Not today"])
        for word in PRIVATE:
            self.assertNotIn(word, json.dumps(arguments, ensure_ascii=False))

    def test_its_actions_close_it_and_open_shows_the_panel(self):
        program = self.start("--background")
        self.wait_for_notification()
        self.services.ask("Notifications", "invoke", 1, "open", "token")
        self.assert_list(program, 2)
        self.wait_for_closed([1])

    def test_not_today_only_closes_it(self):
        program = self.start("--background")
        self.wait_for_notification()
        self.services.ask("Notifications", "invoke", 1, "not-today", "")
        self.wait_for_closed([1])
        self.assert_not_asked_for(program)

    def test_comes_no_more_that_day_after_another_start(self):
        program = self.start("--background")
        self.wait_for_notification()
        self.quit(program)
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        self.assertEqual(len(self.notified()), 1)

    def test_comes_when_it_is_allowed(self):
        self.write_settings("[notifications]\nenabled=false\ntime=00:00\n")
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        self.assertEqual(self.notified(), [])
        self.write_settings("[notifications]\nenabled=true\ntime=00:00\n")
        self.wait_for_notification()

    def test_waits_for_its_time(self):
        self.write_settings("[notifications]\ntime=23:00\n")
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        self.assertEqual(self.notified(), [])

    def test_waits_for_an_unlocked_screen(self):
        self.services.ask("ScreenSaver", "come", True)
        self.start("--background")
        self.wait_for_tooltip("2 overdue")
        self.assertEqual(self.notified(), [])
        self.services.ask("ScreenSaver", "change", False)
        self.wait_for_notification()

    def test_goes_when_nothing_is_due_any_more(self):
        self.start("--background")
        self.wait_for_notification()
        self.container.write_feed([overdue(1)])
        self.wait_for_tooltip("1 overdue")
        self.settle()
        self.assertEqual(self.services.ask("Notifications", "closed"), [])
        self.container.write_feed([])
        self.wait_for_closed([1])


class Windows(ServicesTest):
    def test_a_panel_hides_when_the_screen_locks(self):
        self.services.ask("ScreenSaver", "come", False)
        program = self.start()
        self.assert_list(program, 2)
        self.services.ask("ScreenSaver", "change", True)
        self.assert_hidden(program)
        self.services.ask("ScreenSaver", "change", False)
        self.assert_not_asked_for(program)

    def test_a_panel_that_a_key_has_toggled_hides_as_another_window_takes_the_focus(self):
        other = self.other_window()
        program = self.start("--background")
        self.ready(program)
        for _ in range(2):
            self.ask("--toggle")
            self.wait_for_focus(self.assert_list(program, 2))
            self.take_focus(other)
            self.assert_hidden(program)

    def test_a_panel_that_a_start_has_shown_stays_when_another_window_takes_the_focus(self):
        other = self.other_window()
        program = self.start()
        self.wait_for_focus(self.assert_list(program, 2))
        self.take_focus(other)
        self.settle()
        self.assert_list(program, 2)
        self.ask("--toggle")  # would show a panel that was hidden
        self.assert_hidden(program)

    def test_a_click_on_the_item_that_has_hidden_the_panel_does_not_show_it(self):
        program, window, tray = self.show_by_item()
        with self.stopped(program.process.pid):
            self.take_focus(tray)
            harness.wait_for(lambda: not window.shown(), "a hidden panel")
            self.click_item_of_stopped()
        self.assert_not_asked_for(program)

    def test_a_click_on_the_item_that_will_hide_the_panel_does_not_show_it(self):
        program, _, tray = self.show_by_item()
        extension = next(pid for pid in program.pids() if pid != program.process.pid)
        with self.stopped(extension):
            self.take_focus(tray)
            self.click_item()
        self.assert_not_asked_for(program)

    def show_by_item(self):
        """The program, its panel, and the window that stands for the tray."""
        self.come_with_tray()
        tray = self.other_window()
        program = self.start("--background")
        self.click_item()
        window = self.assert_list(program, 2)
        self.wait_for_focus(window)
        return program, window, tray

    @contextlib.contextmanager
    def stopped(self, pid):
        os.kill(pid, signal.SIGSTOP)
        harness.wait_for(lambda: harness.state(pid) == "T", "a stopped process")
        try:
            yield
        finally:
            os.kill(pid, signal.SIGCONT)

    def test_a_panel_opens_on_the_screen_with_the_pointer(self):
        for name, output, x in (("left", "screen", 0), ("right", "none", 640)):
            subprocess.run(["xrandr", "--setmonitor", name, f"640/169x800/211+{x}+0", output], env=self.desktop.env,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=harness.DEADLINE, check=True)
        program = self.start("--background")
        self.ready(program)
        for x, right in ((960, 1280), (320, 640), (960, 1280)):
            self.desktop.xdotool("mousemove", x, 700)
            self.ask("--show")
            window = self.assert_list(program, 2)
            harness.wait_for(lambda: (here := window.geometry()) and here.x + here.width == right - 12,
                             f"a panel at {right}")
            self.ask("--hide")
            self.assert_hidden(program)


class Motion(ServicesTest):
    def test_a_panel_changes_its_height_at_once_where_the_user_wants_less_motion(self):
        self.choose_reduced(True)
        self.services.ask("Portal", "come")
        program = self.start()
        self.heights = Heights(self.desktop, self.assert_list(program, 2))
        self.assertEqual(self.heights_until(program, 4), [266])
        self.choose_reduced(False)
        self.assertGreater(len(self.heights_until(program, 1)), 1)
        self.choose_reduced(True)
        self.assertEqual(self.heights_until(program, 4), [266])

    def choose_reduced(self, is_reduced):
        self.services.ask("Portal", "choose", APPEARANCE, "reduced-motion", f"uint32 {int(is_reduced)}")

    def heights_until(self, program, rows):
        """The heights of the window on its way to a list of so many rows."""
        self.settle()
        self.heights.forget()
        self.container.write_feed([overdue(number) for number in range(1, rows + 1)])
        self.assert_list(program, rows)
        return self.heights.until(50 * (rows + 1) + 16)


class Heights:
    """The heights that a window gets, each that the X server tells its clients."""

    def __init__(self, desktop, window):
        self._program = desktop.run(["stdbuf", "-oL", "xev", "-id", window.ident, "-event", "structure"])
        self._known = 0
        places = itertools.cycle((200, 201))

        def is_listening():
            desktop.xdotool("windowmove", window.ident, next(places), 100)
            return self._seen()
        harness.wait_for(is_listening, "a moved window")

    def _seen(self):
        return [int(height) for height in re.findall(r"width \d+, height (\d+),", self._program.out)]

    def forget(self):
        self._known = len(self._seen())

    def until(self, last):
        """Those that came after the one it had, without repetitions."""
        harness.wait_for(lambda: last in self._seen()[self._known:], f"a height of {last}")
        return [height for height, _ in itertools.groupby(self._seen()[self._known - 1:])][1:]


class Bus(ServicesTest):
    def test_the_process_with_the_panel_is_not_there_whatever_services_are(self):
        self.come_with_tray()
        self.services.ask("Notifications", "come")
        self.services.ask("ScreenSaver", "come", False)
        self.services.ask("Portal", "come")
        program = self.start("--background")
        self.choose("Show")
        self.assert_list(program, 2)
        self.services.ask("ScreenSaver", "change", True)
        self.assert_hidden(program)
        owners = self.owners()
        self.assertIn(program.process.pid, owners)
        for child in harness.children(program.process.pid):
            self.assertNotIn(child, owners)

    def owners(self):
        """The processes that have a connection to the session bus."""
        def ask(method, text="()"):
            return self.services.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                      text)[0]
        found = []
        for name in ask("ListNames"):
            with contextlib.suppress(AssertionError):  # it has gone meanwhile
                found.append(ask("GetConnectionUnixProcessID", f"('{name}',)"))
        return found


if __name__ == "__main__":
    unittest.main()
