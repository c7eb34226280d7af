"""The process with the panel as the kernel confines it: what it has left, what an account outside the container comes to,
and how it is replaced when the container becomes another folder."""

import contextlib
import os
import pathlib
import shutil
import unittest

import containers
import flows
import harness
import wayland
from flows import logged, overdue


def status(pid):
    """What the kernel tells of a process."""
    lines = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="utf-8").splitlines()
    return dict(line.split(":\t", 1) for line in lines if ":\t" in line)


def filters(pid):
    """How many filters of system calls a process has beside those of this one, which may run under some itself."""
    return int(status(pid)["Seccomp_filters"]) - int(status("self")["Seccomp_filters"])


class Process(flows.Flow):
    def test_it_is_confined_for_good_and_the_centre_is_not(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        self.assertEqual(status(panel.extension())["NoNewPrivs"], "1")
        self.assertEqual((filters(panel.extension()), filters(panel.program.process.pid)), (2, 0))

    def test_all_its_threads_are(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        threads = [entry.name for entry in pathlib.Path(f"/proc/{panel.extension()}/task").iterdir()]
        self.assertGreater(len(threads), 1)
        self.assertEqual(set(map(filters, threads)), {2})

    def test_it_has_a_connection_to_the_display_and_to_the_centre_and_no_others(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        self.assertEqual(self.sockets(panel.extension()), 2)

    def sockets(self, pid):
        return sum(os.readlink(entry).startswith("socket:") for entry in pathlib.Path(f"/proc/{pid}/fd").iterdir())


class AssistedProcess(flows.Flow):
    desktop_options = {"accessibility": True}
    panel_kind = flows.AssistedPanel

    def test_it_may_make_no_connection_either_once_it_is_on_the_accessibility_bus(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        self.assertEqual(panel.row_name(0), "T1, 1.00")
        self.assertEqual(filters(panel.extension()), 2)


class Surroundings(flows.Flow):
    """What others have in the environment or have left open."""

    def test_an_input_method_is_not_asked(self):
        self.desktop.env |= {"QT_IM_MODULE": "ibus", "QT_IM_MODULES": "wayland;ibus"}
        self.open([overdue(1)]).wait_for_rows(1)
        self.close()

    def test_a_key_to_the_display_is_found_by_the_path_that_is_given(self):
        for name in ("key", "odd:key"):
            key = self.desktop.folder / name
            key.write_bytes(b"")
            self.desktop.env["XAUTHORITY"] = str(key)
            self.open([overdue(1)]).wait_for_rows(1)
            self.close()


class ProcessOnWayland(flows.Flow):
    desktop_kind = wayland.WaylandDesktop

    def test_it_is_confined_as_well(self):
        panel = self.open([overdue(1)])
        panel.wait_for_rows(1)
        extension, = harness.children(panel.program.process.pid)
        self.assertEqual(filters(extension), 2)


class AssistedProcessOnWayland(ProcessOnWayland):
    desktop_options = {"accessibility": True}
    panel_kind = flows.AssistedPanel

    def test_it_is_confined_as_well(self):
        super().test_it_is_confined_as_well()
        self.assertEqual(self.panel.row_name(0), "T1, 1.00")


class Account(flows.Flow):
    """The key of the account names a folder, and is one component of a path as it stands."""

    account = "../../outside"

    def test_paid_writes_no_log_outside_the_container_and_takes_the_occurrence_out(self):
        # The icons cannot be read either; the widget does without one that has a picture's name.
        records = [overdue(number, image="picture-streaming-film-club") for number in (1, 2)]
        panel = self.open(records)
        outside = self.desktop.folder / "outside"
        before = sorted(outside.rglob("*"))
        panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Paid", 0)
        expected = containers.property_list(records[1:])
        harness.wait_for(lambda: self.feed_file().read_bytes() == expected, "the feed without what was paid")
        panel.wait_for_rows(1)
        self.assertEqual(sorted(outside.rglob("*")), before)
        self.close()


class AnotherContainer(flows.Flow):
    def replace_container(self, records):
        """As a program does that makes the folder anew, and moves it to its place in one step."""
        folder = self.container.folder
        new = containers.Container(self.desktop.folder / "new", self.account)
        new.write_feed(records)
        folder.rename(folder.with_name("former"))
        new.folder.rename(folder)
        self.feed_before = self.feed_file().read_bytes()

    def test_its_list_is_shown_by_another_process_in_the_same_place(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        first = panel.extension()
        self.replace_container([overdue(3)])
        self.wait_for_another(first)
        self.panel.wait_for_rows(1)

    def wait_for_another(self, first):
        """Waits for the window of the process that comes after the first."""
        def others():
            pids = {window: window.property("_NET_WM_PID").rpartition("=")[2].strip()
                    for window in self.panel.program.windows()}
            return [window for window, pid in pids.items() if pid not in ("", str(first))]  # one that goes has none
        self.panel.window = harness.wait_for(others, "a window of another process")[0]

    def test_an_open_row_is_left_alone_and_the_new_container_can_be_written(self):
        records = [overdue(3), overdue(4)]
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        panel.open_row(0)
        first = panel.extension()
        self.replace_container(records)
        with self.assertRaises(harness.Unmet):
            harness.wait_for(lambda: first not in panel.program.pids(), "the end of the process", 1.5)
        self.assertTrue(panel.is_open(0))
        panel.click_row(0)
        self.wait_for_another(first)
        panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Paid", 0)
        self.log = []
        self.assert_carried_out(records[1:], logged(1, records[0], 0))

    def test_a_hidden_panel_stays_hidden_and_shows_the_new_list_when_it_is_asked_for(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        first = panel.extension()
        panel.window.press("Escape")
        panel.wait_until_hidden()
        self.replace_container([overdue(3)])
        harness.wait_for(lambda: first not in panel.program.pids() and len(panel.program.pids()) == 2, "another process")
        self.assertEqual(panel.program.windows(), [])
        further = self.desktop.run([flows.PANEL, "--containers", self.container.containers])
        self.assertEqual(further.end_status(), 0)
        panel.window = panel.program.window()
        panel.wait_for_rows(1)

    def test_several_in_a_row_leave_a_panel(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        for number in range(6):
            pid = panel.extension()
            former = self.container.folder.with_name(f"former-{number}")
            self.container.folder.rename(former)
            shutil.copytree(former, self.container.folder)
            self.container.write_feed([overdue(3)])
            with contextlib.suppress(harness.Unmet):
                harness.wait_for(lambda gone=pid: gone not in panel.program.pids(), "the end of a process", 1)
            panel.window = panel.program.window()
        self.assertTrue(panel.window.shown())
        panel.wait_for_rows(1)

    def test_one_that_comes_is_shown_in_the_place_of_the_welcome(self):
        self.container = containers.Container(self.desktop.folder / "later", self.account)
        self.container.write_feed([overdue(1)])
        waiting = self.container.folder.with_name("waiting")
        self.container.folder.rename(waiting)
        self.panel = panel = flows.Panel(self.desktop, self.container)
        first = panel.extension()
        waiting.rename(self.container.folder)
        self.wait_for_another(first)
        panel.wait_for_rows(1)

    def test_one_that_goes_is_no_reason(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        first = panel.extension()
        before = panel.window.geometry()
        self.container.folder.rename(self.container.folder.with_name("former"))
        harness.wait_for(lambda: panel.window.geometry() != before, "the welcome")
        self.assertEqual(panel.extension(), first)


if __name__ == "__main__":
    unittest.main()
