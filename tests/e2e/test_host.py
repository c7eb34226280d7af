"""The demo's host application beside the panel: what the panel asks for and logs arrives in it, and nothing of it is
left when it ends."""

import os
import pathlib
import signal
import subprocess
import unittest

import containers
import flows
import harness
from flows import overdue

HOST = os.environ["KORVEL_DEMO_HOST"]

# Where temporary folders are made: nothing in its name may matter.
ODD_FOLDER = 'tmp of $HOME, "a" \\ it\'s'


class Session:
    """A host that has started a panel. `panel` clicks as in the flows of a panel alone."""

    def __init__(self, desktop, container, env=(), options=()):
        self.desktop = desktop
        self.program = desktop.run([HOST, container.containers, flows.PANEL, *options], env)
        self.window = harness.wait_for(lambda: self.shown("^Demo host application$"), "the host's window")
        self.panel = flows.Panel.__new__(flows.Panel)
        self.panel.scale, self.panel.mirrored = 1, False
        self.panel.window = harness.wait_for(lambda: self.shown_of_class("korvel-today"), "the panel")

    def shown(self, *how):
        words = how if how[0].startswith("--") else ("--name", *how)
        done = subprocess.run(["xdotool", "search", "--onlyvisible", *words], env=self.desktop.env,
                              capture_output=True, text=True, timeout=harness.DEADLINE)
        idents = done.stdout.split()
        return harness.Window(self.desktop, idents[0]) if idents else None

    def shown_of_class(self, name):
        return self.shown("--classname", f"^{name}$")

    def process_of(self, window):
        return int(window.property("_NET_WM_PID").rpartition("=")[2])

    def wait_for_lines(self, lines):
        expected = "".join(line + "\n" for line in lines)
        harness.wait_for(lambda: len(self.program.out) >= len(expected), f"{lines[-1]!r} after {self.program.out!r}")
        assert self.program.out == expected, f"{self.program.out!r} is not {expected!r}"


class DemoHost(harness.DesktopTest):
    # Without it, the toolkit starts a bus by itself, and notes in the home folder where it is.
    desktop_options = {"env": {"DBUS_SESSION_BUS_ADDRESS": "disabled:"}}

    def setUp(self):
        super().setUp()
        self.container = containers.Container(self.desktop.folder / "containers", "Jörg Müller")
        self.records = [overdue(1), overdue(2), overdue(3)]
        self.container.write_feed(self.records)
        self.tmp = pathlib.Path(self.desktop.env["TMPDIR"])

    def users_files(self):
        """What the user's own folders hold, with the content of each file."""
        home = pathlib.Path(self.desktop.env["HOME"])
        return {path.relative_to(home): path.read_bytes() if path.is_file() else None
                for path in home.rglob("*") if "cache" not in path.relative_to(home).parts}

    def start(self, **options):
        self.before = self.users_files()
        session = Session(self.desktop, self.container, **options)
        session.panel.window.wait_for_size(344, 216)
        return session

    def assert_nothing_left(self):
        self.assertEqual(list(self.tmp.iterdir()), [])
        self.assertEqual(self.users_files(), self.before)

    def end(self, session):
        subprocess.run([flows.PANEL, "--containers", self.container.containers, "--quit"], env=self.desktop.env, check=True,
                       timeout=harness.DEADLINE)
        self.assertEqual(session.program.end_status(), 0)
        self.assertEqual(session.program.err, "")
        self.assert_nothing_left()

    def test_shows_each_request_and_each_logged_action(self):
        session = self.start()
        panel = session.panel
        lines = []

        def expect(line):
            lines.append(line)
            session.wait_for_lines(lines)
        panel.open_row(1)
        panel.click_button("Info", 1)
        expect(f"request\tkorvelWidget://tw_edit_transaction\tplan-2\t{self.records[1]['date']}")
        panel.click_add(3)
        expect("request\tkorvelWidget://tw_new_transaction")
        panel.click_last_row(3)
        expect("request\tkorvelWidget://tw_all_transactions")
        panel.click_button("Paid", 1)
        expect(f"logged\tdate {self.records[1]['date']}, param 0, pk plan-2, type 1")
        panel.window.wait_for_size(344, 166)
        panel.open_row(1)
        panel.click_button("Delete", 1)
        expect(f"logged\tdate {self.records[2]['date']}, param 0, pk plan-3, type 3")
        # The host application takes the log.
        log = self.container.account / "actions.xml"
        emptied = log.with_name("emptied")
        emptied.write_bytes(flows.property_list([]))
        emptied.rename(log)
        expect("log\t0")
        self.end(session)

    def test_registers_with_whatever_the_temporary_folder_is_called(self):
        self.tmp = self.desktop.folder / ODD_FOLDER
        self.tmp.mkdir()
        session = self.start(env={"TMPDIR": str(self.tmp)})
        session.panel.click_add(3)
        session.wait_for_lines(["request\tkorvelWidget://tw_new_transaction"])
        self.end(session)

    def test_hands_both_spellings_to_openers_of_the_panel_and_to_no_others(self):
        session = self.start()
        panel = session.process_of(session.panel.window)
        told = pathlib.Path(f"/proc/{panel}/environ").read_bytes().split(b"\0")
        panels = dict(variable.decode().split("=", 1) for variable in told if variable)
        urls = ["korvelWidget://tw_new_transaction", "korvelwidget://tw_new_transaction"]
        lines = []
        for url in urls:
            subprocess.run(["gio", "open", url], env=panels, check=True, timeout=harness.DEADLINE)
            lines.append(f"request\t{url}")
            session.wait_for_lines(lines)
        for url in urls:
            done = subprocess.run(["gio", "open", url], env=self.desktop.env, capture_output=True,
                                  timeout=harness.DEADLINE)
            self.assertNotEqual(done.returncode, 0)
        self.assertEqual(session.program.out.splitlines(), lines)
        self.end(session)

    def test_window_that_was_closed_leaves_the_panel_and_comes_back_for_a_request(self):
        session = self.start()
        session.window.press("alt+F4")
        harness.wait_for(lambda: not session.window.shown(), "a closed window")
        self.assertTrue(session.panel.window.shown())
        session.panel.click_add(3)
        session.wait_for_lines(["request\tkorvelWidget://tw_new_transaction"])
        harness.wait_for(lambda: session.shown("^Demo host application$"), "the window again")
        self.end(session)

    def test_asked_to_end_ends_both_and_leaves_nothing(self):
        for sent in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(sent.name):
                session = self.start()
                panel = session.process_of(session.panel.window)
                window = session.process_of(session.window)
                os.kill(session.program.process.pid, sent)
                self.assertEqual(session.program.end_status(), -sent)
                for process in (panel, window):
                    self.assertFalse(pathlib.Path(f"/proc/{process}").exists())
                self.assert_nothing_left()

    def test_ends_with_a_panel_that_dies(self):
        session = self.start()
        extension = session.process_of(session.panel.window)
        os.kill(harness.parent(extension), signal.SIGKILL)
        self.assertEqual(session.program.end_status(), 128 + signal.SIGKILL)
        harness.wait_for(lambda: harness.state(extension) in (None, "Z"), "the end of the other process")
        self.assert_nothing_left()

    def test_gives_the_panels_options_and_its_exit_status(self):
        self.before = self.users_files()
        wrong = self.desktop.run([HOST, self.container.containers, flows.PANEL, "--no-such-option"])
        self.assertEqual(wrong.end_status(), 2)
        self.assertIn("--no-such-option", wrong.err)
        missing = self.desktop.run([HOST, self.container.containers, "/no/such/panel"])
        self.assertEqual(missing.end_status(), 127)
        self.assertIn("/no/such/panel", missing.err)
        self.assert_nothing_left()


if __name__ == "__main__":
    unittest.main()
