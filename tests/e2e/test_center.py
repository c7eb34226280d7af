"""The resident program: one to a user, asked by further starts and over the session bus, and there when the process that
shows the panel dies."""

import os
import pathlib
import re
import signal
import subprocess
import unittest

import containers
import flows
import harness
from flows import overdue

PANEL = flows.PANEL


class Resident(harness.DesktopTest):
    def setUp(self):
        super().setUp()
        self.container = containers.Container(self.desktop.folder / "containers")
        self.container.write_feed([overdue(1), overdue(2)])
        self.programs = []

    def start(self, *options, env=None):
        program = self.desktop.run([PANEL, "--containers", self.container.containers, *options], env)
        self.programs.append(program)
        return program

    def ask(self, *options, status=0):
        """A further start, until it has ended."""
        program = self.start(*options)
        self.assertEqual(program.end_status(), status)
        self.assertEqual((program.out, program.err), ("", ""))

    def ready(self, program):
        """The process with the panel, once it has read the list."""
        def found():
            return [pid for pid in harness.children(program.process.pid)
                    if self.watches_files(pid)]
        return harness.wait_for(found, "a process that is ready")[0]

    @staticmethod
    def watches_files(pid):
        try:
            return any("inotify" in os.readlink(entry) for entry in pathlib.Path(f"/proc/{pid}/fd").iterdir())
        except OSError:
            return False

    def shown(self, program):
        return harness.wait_for(program.windows, "a window")[0]

    def assert_list(self, program, rows):
        """Waits for the panel with so many rows beside the last one."""
        size = (344, 50 * (rows + 1) + 16)

        def found():
            windows = program.windows()
            here = windows[0].geometry() if len(windows) == 1 else None
            return here and (here.width, here.height) == size
        harness.wait_for(found, f"a list of {rows}")
        return program.windows()[0]

    def assert_hidden(self, program):
        harness.wait_for(lambda: not program.windows(), "no window")
        self.assertTrue(program.running())

    def quit(self, program):
        others = program.pids()[1:]
        self.ask("--quit")
        self.assertEqual(program.end_status(), 0)
        self.assertEqual(program.err, "")
        self.assertEqual([pid for pid in others if harness.state(pid) not in (None, "Z")], [])


class Starts(Resident):
    def test_escape_hides_the_panel_and_a_further_start_shows_it(self):
        program = self.start()
        window = self.assert_list(program, 2)
        window.press("Escape")
        self.assert_hidden(program)
        self.ask()
        self.assert_list(program, 2)
        self.quit(program)

    def test_a_further_start_reads_the_list_again(self):
        program = self.start()
        self.assert_list(program, 2)
        self.ask("--hide")
        self.assert_hidden(program)
        self.container.write_feed([overdue(1)])
        self.ask("--show")
        self.assert_list(program, 1)

    def test_toggle_shows_and_hides(self):
        program = self.start("--toggle")
        for _ in range(8):
            self.assert_list(program, 2)
            self.ask("--toggle")
            self.assert_hidden(program)
            # Before a panel that hides with its focus is back, the focus has gone where a hidden window's goes.
            self.desktop.wait_for_window_manager()
            self.ask("--toggle")
        self.assert_list(program, 2)

    def test_background_shows_nothing_until_it_is_asked(self):
        program = self.start("--background")
        self.ready(program)
        self.ask("--background")
        self.assertEqual(program.windows(), [])
        self.ask("--show")
        self.assert_list(program, 2)

    def test_hide_and_quit_start_nothing(self):
        self.ask("--hide")
        self.ask("--quit")

    def test_two_starts_at_the_same_time_are_one(self):
        programs = [self.start() for _ in range(6)]
        harness.wait_for(lambda: sum(program.running() for program in programs) == 1, "one program")
        last = next(program for program in programs if program.running())
        self.assert_list(last, 2)
        for program in programs:
            if program is not last:
                self.assertEqual((program.end_status(), program.err), (0, ""))
        self.quit(last)

    def test_one_that_was_killed_leaves_no_trace_for_the_next(self):
        program = self.start()
        self.assert_list(program, 2)
        extension = next(harness.children(program.process.pid))
        program.process.kill()
        program.process.wait(harness.DEADLINE)
        harness.wait_for(lambda: harness.state(extension) in (None, "Z"), "the end of the other process")
        after = self.start()
        self.assert_list(after, 2)
        self.quit(after)

    def test_a_start_while_it_quits_is_the_next_one(self):
        program = self.start()
        for _ in range(10):
            self.assert_list(program, 2)
            quitting = self.start("--quit")
            after = self.start()
            self.assertEqual((quitting.end_status(), quitting.err), (0, ""))
            if not after.running():  # it was asked before the other was told to quit
                self.assertEqual((after.end_status(), after.err), (0, ""))
                self.assertEqual(program.end_status(), 0)
                after = self.start()
            program = after

    def test_a_lock_that_cannot_be_had_leaves_it_working_and_idle(self):
        lock = pathlib.Path(self.desktop.env["XDG_RUNTIME_DIR"])
        lock.chmod(0o700)
        program = self.start()
        self.assert_list(program, 2)
        name = next(lock.glob("korvel-today-*.lock"))
        self.quit(program)
        name.unlink()
        name.mkdir()
        program = self.start()
        self.assert_list(program, 2)
        before = harness.time_used(program.process.pid)
        with self.assertRaises(harness.Unmet):
            harness.wait_for(lambda: harness.time_used(program.process.pid) > before + 20, "a busy process", 1)
        self.assertEqual(program.terminate(), 0)

    def test_settings_that_are_a_pipe_are_none(self):
        folder = pathlib.Path(self.desktop.env["XDG_CONFIG_HOME"]) / "korvel-today"
        folder.mkdir(parents=True)
        os.mkfifo(folder / "settings.ini")
        program = self.desktop.run([PANEL], {"KORVEL_GROUP_CONTAINERS": str(self.container.containers)})
        self.assert_list(program, 2)
        self.assertEqual(program.terminate(), 0)

    def test_another_folder_of_containers_has_a_program_of_its_own(self):
        program = self.start()
        self.assert_list(program, 2)
        other = containers.Container(self.desktop.folder / "others")
        other.write_feed([overdue(1)])
        second = self.desktop.run([PANEL, "--containers", other.containers])
        self.assert_list(second, 1)
        self.assert_list(program, 2)

    def test_without_a_runtime_folder_it_works_alone(self):
        program = self.start(env={"XDG_RUNTIME_DIR": ""})
        window = self.assert_list(program, 2)
        window.press("Escape")
        self.assert_hidden(program)
        self.assertEqual(program.terminate(), 0)

    def test_the_role_of_the_process_with_the_panel_is_for_the_program_itself(self):
        program = self.desktop.run([PANEL, "--extension", "0"])
        self.assertEqual(program.end_status(), 2)
        self.assertRegex(program.err, r"\Akorvel-today: [^\n]+\n\Z")

    def test_it_starts_no_session_bus(self):
        program = self.start()
        self.assert_list(program, 2)
        for pid in program.pids():
            environment = pathlib.Path(f"/proc/{pid}/environ").read_bytes()
            if pid != program.process.pid:
                self.assertIn(b"DBUS_SESSION_BUS_ADDRESS=unix:path=/dev/null\0", environment)
        self.assertEqual(sorted(program.pids())[1:], sorted(harness.children(program.process.pid)))
        self.assertEqual(len(program.pids()), 2)


class Failures(Resident):
    """What takes the panel's place while there is none: a window of the resident process, in the same place."""

    def break_feed(self):
        self.container.write_feed([{"date": 0.0, "name": "No amount"}])

    def failure(self, program):
        def found():
            windows = program.windows()
            if len(windows) == 1 and f"= {program.process.pid}" in windows[0].property("_NET_WM_PID"):
                return windows[0]
            return None
        return harness.wait_for(found, "the failure's window")

    def test_a_list_that_cannot_be_loaded_is_said_in_the_panels_place(self):
        self.break_feed()
        window = self.failure(self.start())
        here = window.geometry()
        self.assertEqual((here.x + here.width, here.y, here.width), (1280 - 12, 12, 344))

    def test_the_list_comes_as_soon_as_the_host_has_mended_it(self):
        self.break_feed()
        program = self.start()
        self.failure(program)
        self.container.write_feed([overdue(1)])
        self.assert_list(program, 1)

    def test_a_process_that_dies_is_replaced_by_itself(self):
        program = self.start()
        self.assert_list(program, 2)
        extension = next(harness.children(program.process.pid))
        os.kill(extension, signal.SIGKILL)
        self.failure(program)
        self.assert_list(program, 2)
        self.assertNotIn(extension, program.pids())
        self.quit(program)

    def test_a_request_that_a_dying_process_does_not_take_is_for_the_next_one(self):
        program = self.start()
        self.assert_list(program, 2)
        for _ in range(6):  # after as many deaths, the next start by itself is further away than the deadline
            dying = self.ready(program)
            os.kill(dying, signal.SIGSTOP)
            self.ask()
            os.kill(dying, signal.SIGKILL)
            harness.wait_for(lambda pid=dying: harness.state(pid) is None, "the death")
            self.assert_list(program, 2)
        self.quit(program)

    def test_a_hidden_process_that_dies_is_replaced_without_a_word(self):
        program = self.start("--background")
        extension = self.ready(program)
        os.kill(extension, signal.SIGKILL)
        harness.wait_for(lambda: extension not in program.pids() and len(program.pids()) == 2, "another process")
        self.ready(program)
        self.assertEqual(program.windows(), [])
        self.ask("--show")
        self.assert_list(program, 2)

    def test_it_is_not_started_in_a_loop(self):
        self.break_feed()
        loads = harness.Opens(self.container.folder / "notifications.xml")
        self.failure(self.start())
        harness.wait_for(lambda: loads.count() >= 3, "three starts: at once, after one second, after two more")
        with self.assertRaises(harness.Unmet):  # the next comes after four
            harness.wait_for(lambda: loads.count() > 3, "a fourth start", 2.5)

    def test_escape_dismisses_it_and_a_further_start_brings_it_back(self):
        self.break_feed()
        program = self.start()
        self.failure(program).press("Escape")
        self.assert_hidden(program)
        self.ask("--show")
        self.failure(program)
        self.quit(program)

    def test_what_is_wrong_is_told_below(self):
        self.break_feed()
        program = self.start()
        window = self.failure(program)
        before = window.geometry()
        window.press("Tab")  # from Try again
        window.press("space")
        after = window.wait_for_size(344, None)
        harness.wait_for(lambda: window.geometry().height > before.height + 200, "room for what check says")
        after = window.geometry()
        self.assertEqual((after.x, after.y), (before.x, before.y))
        self.assertEqual(program.err, "")

    def test_try_again_starts_at_once(self):
        self.break_feed()
        program = self.start()
        window = self.failure(program)
        loads = harness.Opens(self.container.folder / "notifications.xml")
        for time in range(1, 9):  # more often than it would start by itself in a minute
            harness.wait_for(lambda: not list(harness.children(program.process.pid, ended=True)),
                             "the end of the last start")
            window.press("Return")
            harness.wait_for(lambda count=time: loads.count() >= count, "another start", 3)


class OnTheBus(Resident):
    """With a session bus, as desktops have one. The user's own program alone has the name."""

    desktop_options = {"bus": True}

    def start(self, *options, env=None):
        program = self.desktop.run([PANEL, *options],
                                   {"KORVEL_GROUP_CONTAINERS": str(self.container.containers)} | (env or {}))
        return program

    def call(self, *words):
        done = subprocess.run(["gdbus", "call", "--session", *words], env=self.desktop.env, capture_output=True, text=True,
                              timeout=harness.DEADLINE)
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def application(self, method, *words):
        return self.call("--dest", "com.korvel.today", "--object-path", "/com/korvel/today", "--method",
                         f"org.freedesktop.Application.{method}", *words)

    def bus(self, method, *words):
        return self.call("--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus", "--method",
                         f"org.freedesktop.DBus.{method}", *words)

    def wait_for_name(self):
        harness.wait_for(lambda: "true" in self.bus("NameHasOwner", "com.korvel.today"), "the name on the bus")

    def test_activate_shows_the_panel(self):
        program = self.start("--background")
        self.wait_for_name()
        self.application("Activate", "{'activation-token': <'token'>}")
        self.assert_list(program, 2)
        self.application("Activate", "{}")
        self.assert_list(program, 2)

    def test_actions_are_the_options(self):
        program = self.start("--background")
        self.wait_for_name()
        self.application("ActivateAction", "toggle", "[]", "{}")
        self.assert_list(program, 2)
        self.application("ActivateAction", "hide", "[]", "{}")
        self.assert_hidden(program)
        self.application("ActivateAction", "show", "[]", "{}")
        self.assert_list(program, 2)
        self.application("ActivateAction", "no-such-action", "[]", "{}")
        self.assert_list(program, 2)
        self.application("ActivateAction", "quit", "[]", "{}")
        self.assertEqual(program.end_status(), 0)

    def test_add_and_open_application_open_the_hosts_urls(self):
        host = flows.Host(self.desktop)
        self.start("--background")
        self.wait_for_name()
        self.application("ActivateAction", "add", "[]", "{}")
        harness.wait_for(lambda: host.received() == b"korvelWidget://tw_new_transaction\n", "a URL")
        self.application("ActivateAction", "open-application", "[]", "{}")
        harness.wait_for(lambda: host.received().endswith(b"\nkorvelWidget://tw_all_transactions\n"), "another URL")

    def test_the_process_with_the_panel_is_not_on_the_bus(self):
        program = self.start()
        self.assert_list(program, 2)
        names = re.findall(r"':[\d.]+'", self.bus("ListNames"))
        owners = [int(re.search(r"uint32 (\d+)", self.bus("GetConnectionUnixProcessID", name.strip("'")))[1])
                  for name in names if self.still_there(name)]
        self.assertIn(program.process.pid, owners)
        for child in harness.children(program.process.pid):
            self.assertNotIn(child, owners)

    def still_there(self, name):
        """The caller's own name is gone with it."""
        return "true" in self.bus("NameHasOwner", name.strip("'"))

    def test_the_bus_starts_it_when_it_is_asked_for(self):
        template = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "packaging/com.korvel.today.service.in").read_text()
        services = self.desktop.folder / "run" / "dbus-1" / "services"  # where a bus finds what a session brings along
        services.mkdir(parents=True, exist_ok=True)
        (services / "com.korvel.today.service").write_text(
            template.replace("@KORVEL_BINARY_FOLDER@", str(pathlib.Path(PANEL).parent)))
        self.bus("ReloadConfig")
        self.bus("UpdateActivationEnvironment", "{%s}" % ", ".join(
            f"'{name}': '{value}'" for name, value in
            (self.desktop.env | {"KORVEL_GROUP_CONTAINERS": str(self.container.containers)}).items()))
        self.application("Activate", "{}")
        name = self.bus("GetConnectionUnixProcessID", "com.korvel.today")
        started = int(re.search(r"uint32 (\d+)", name)[1])
        self.addCleanup(lambda: harness.state(started) and os.kill(started, signal.SIGTERM))

        def shown():
            pids = [started, *harness.children(started)]
            return [window for pid in pids for window in self.desktop.windows_of(pid)]
        harness.wait_for(shown, "the panel")
        self.application("ActivateAction", "quit", "[]", "{}")
        harness.wait_for(lambda: harness.state(started) in (None, "Z"), "the end")

    def test_the_name_on_the_bus_keeps_it_one_without_a_runtime_folder(self):
        nowhere = {"XDG_RUNTIME_DIR": "/proc/none"}
        program = self.start("--background", env=nowhere)
        self.wait_for_name()
        self.assertEqual(self.start(env=nowhere).end_status(), 0)
        self.assert_list(program, 2)
        self.assertEqual(self.start("--quit", env=nowhere).end_status(), 0)
        self.assertEqual(program.end_status(), 0)

    def test_a_bus_that_goes_leaves_the_program_running(self):
        program = self.start()
        window = self.assert_list(program, 2)
        self.desktop.end_bus()
        window.press("Escape")
        self.assert_hidden(program)
        self.ask("--show")
        self.assert_list(program, 2)

    def ask(self, *options, status=0):
        program = self.start(*options)
        self.assertEqual(program.end_status(), status)


if __name__ == "__main__":
    unittest.main()
