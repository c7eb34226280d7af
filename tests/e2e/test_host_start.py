"""What a confined resident program starts is not confined: the host application and the file manager come up as services of
the user's service manager, a made-up one and systemd's own."""

import os
import pathlib
import unittest

import containers
import flows
import harness
from flows import overdue
from services_test import ServicesTest
from user_manager import HERE, UserManager

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
NEW_URL = "korvelWidget://tw_new_transaction"


def confinement(pid):
    """Whether a process and its children have no new privileges, and how their system calls are filtered."""
    lines = pathlib.Path(f"/proc/{pid}/status").read_text().splitlines()
    return {key: value for key, _, value in (line.partition(":\t") for line in lines) if key in ("NoNewPrivs", "Seccomp")}


# That of whatever is started here: a container's own filter may be on everything.
FREE = confinement("self")


class Opened:
    """An application for both spellings of the scheme and for folders. Of each start it notes the argument, then what the
    kernel says of its confinement and the cgroup that it is in; then it stays."""

    def __init__(self, folder, seen=None):
        """`seen` is what the application calls the folder."""
        seen = pathlib.Path(seen or folder)
        self._notes = folder / "opened"
        program = folder / "application"
        program.write_text(f"""#!/bin/sh
{{ printf 'argument\\t%s\\n' "$1"; cat /proc/self/status /proc/self/cgroup; echo; }} > '{seen}/opened.new'
mv '{seen}/opened.new' '{seen}/opened'
exec sleep 1000
""")
        program.chmod(0o755)
        types = "x-scheme-handler/korvelWidget;x-scheme-handler/korvelwidget;inode/directory"
        applications = folder / "home" / "data" / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "application.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Host\nExec={seen}/application %u\nMimeType={types};\n")
        (folder / "home" / "config" / "mimeapps.list").write_text(
            "[Default Applications]\n" + "".join(f"{kind}=application.desktop\n" for kind in types.split(";")))

    def note(self):
        """Of the last start, once there is one: what it was given, its confinement and its cgroup."""
        harness.wait_for(self._notes.exists, "an application")
        lines = self._notes.read_text().splitlines()
        self._notes.unlink()
        fields = dict(line.split("\t", 1) for line in lines if "\t" in line)
        return (fields["argument"], {key.rstrip(":"): fields[key] for key in ("NoNewPrivs:", "Seccomp:")},
                next(line for line in lines if line.startswith("0::")))


class MadeUpManager(ServicesTest):
    """The resident program as any unprivileged confinement leaves it."""

    def setUp(self):
        if FREE["NoNewPrivs"] != "0":
            raise unittest.SkipTest("whatever is started here is confined")
        super().setUp()
        self.opened = Opened(self.desktop.folder)
        self.come_with_tray()

    def start_confined(self):
        program = self.desktop.run(["setpriv", "--no-new-privs", flows.PANEL, "--background"], self.env)
        self.wait_for_tooltip("2 overdue")
        self.assertEqual(confinement(program.process.pid)["NoNewPrivs"], "1")
        return program

    def units(self):
        return self.services.ask("Manager", "units")

    def test_the_host_is_started_by_the_manager_and_is_free(self):
        self.services.ask("Manager", "come")
        self.start_confined()
        self.choose("Add a transaction")
        argument, found, _ = self.opened.note()
        self.assertEqual((argument, found), (NEW_URL, FREE))
        self.assertEqual(len(self.units()), 1)

    def test_the_host_of_the_panel_itself_is_free_too(self):
        self.services.ask("Manager", "come")
        program = self.start_confined()
        self.ask("--show")
        panel = flows.Panel.__new__(flows.Panel)
        panel.window, panel.scale, panel.mirrored = self.assert_list(program, 2), 1, False
        panel.click_add(2)
        argument, found, _ = self.opened.note()
        self.assertEqual((argument, found), (NEW_URL, FREE))

    def test_the_file_manager_is_free_too(self):
        self.services.ask("Manager", "come")
        self.start_confined()
        self.choose("Show the shared folder")
        argument, found, _ = self.opened.note()
        self.assertEqual(found, FREE)
        self.assertEqual(argument.removeprefix("file://"), str(self.container.folder))

    def test_without_a_manager_the_host_comes_up_nevertheless(self):
        self.start_confined()
        self.choose("Add a transaction")
        argument, found, _ = self.opened.note()
        self.assertEqual((argument, found["NoNewPrivs"]), (NEW_URL, "1"))

    def test_a_program_that_is_not_confined_asks_no_manager(self):
        if FREE["Seccomp"] != "0":
            raise unittest.SkipTest("whatever is started here is confined")
        self.services.ask("Manager", "come")
        self.start("--background")
        self.choose("Add a transaction")
        argument, found, _ = self.opened.note()
        self.assertEqual((argument, found), (NEW_URL, FREE))
        self.assertEqual(self.units(), [])


class UnitTest(harness.DesktopTest):
    """The resident program as its unit has it."""

    containers_folder = "containers"

    def setUp(self):
        super().setUp()
        inside = HERE / self.containers_folder
        self.manager = UserManager(self.desktop, {"korvel-today.service": self.packaged("korvel-today.service.in")}, {
            "KORVEL_GROUP_CONTAINERS": str(inside), "DISPLAY": self.desktop.env["DISPLAY"], "LC_ALL": flows.LEFT_TO_RIGHT,
            "LANGUAGE": "",
            # A leak checker stops the process by tracing it, which the unit forbids.
            "ASAN_OPTIONS": ":".join(filter(None, [os.environ.get("ASAN_OPTIONS"), "detect_leaks=0"]))})
        self.manager.install(flows.PANEL)
        self.manager.install(pathlib.Path(flows.PANEL).with_name("korvel-todayctl"))
        services = self.manager.folder / "home" / "data" / "dbus-1" / "services"
        (services / "com.korvel.today.service").write_text(self.packaged("com.korvel.today.service.in"))
        self.container = containers.Container(self.manager.folder / self.containers_folder)
        self.container.write_feed([overdue(1), overdue(2)])
        self.opened = Opened(self.manager.folder, HERE)
        self.prepare()
        self.addCleanup(self.manager.end)
        self.manager.start()

    def prepare(self):
        """What else the user is to have."""

    @staticmethod
    def packaged(name):
        return (SOURCE / "packaging" / name).read_text().replace("@KORVEL_BINARY_FOLDER@", f"{HERE}/bin")

    def application(self, method, *arguments):
        answer = self.manager.bus("com.korvel.today", "/com/korvel/today", f"org.freedesktop.Application.{method}", *arguments)
        self.assertIsNotNone(answer, self.manager.log() + self.manager.systemctl("status", "korvel-today.service").stdout)

    def act(self, name):
        self.application("ActivateAction", name, "[]", "{}")

    def processes(self):
        return self.manager.processes_of("korvel-today.service")

    def windows(self):
        """They tell of their processes by the numbers that these have inside."""
        numbers = [pathlib.Path(f"/proc/{pid}/status").read_text().partition("NSpid:\t")[2].splitlines()[0].split()[-1]
                   for pid in self.processes()]
        return [window for number in numbers for window in self.desktop.windows_of(number)]

    def shown(self):
        return harness.wait_for(self.windows, "the panel")[0]

    def panel(self, rows):
        """Once its window has so many rows beside the last one."""
        panel = flows.Panel.__new__(flows.Panel)
        panel.window, panel.scale, panel.mirrored, panel.container = self.shown(), 1, False, self.container
        panel.window.wait_for_size(344, 50 * (rows + 1) + 16)
        return panel


class Systemd(UnitTest):
    def test_the_bus_starts_it_hardened_and_its_panel_works(self):
        self.application("Activate", "{}")
        panel = self.panel(2)
        found = self.processes()
        self.assertEqual(len(found), 2)
        for pid in found:
            self.assertEqual(confinement(pid), {"NoNewPrivs": "1", "Seccomp": "2"})
        panel.open_row(0)
        panel.click_button("Paid", 0)
        panel.window.wait_for_size(344, 116)
        harness.wait_for((self.container.account / "actions.xml").exists, "a logged action")

    def test_what_is_wrong_with_the_list_is_told_by_a_child_of_it(self):
        self.container.write_feed([{"date": 0.0, "name": "No amount"}])
        self.application("Activate", "{}")
        window = self.shown()
        before = window.geometry()
        window.press("Tab")  # from Try again
        window.press("space")
        harness.wait_for(lambda: window.geometry().height > before.height + 200, "room for what check says")
        self.assertNotIn("korvel-today-open-", self.manager.systemctl("list-units", "--all", "--full").stdout)

    def test_the_host_is_free_and_outlives_it(self):
        self.application("Activate", "{}")
        self.panel(2).click_add(2)
        argument, found, group = self.opened.note()
        self.assertEqual((argument, found), (NEW_URL, FREE))
        unit = pathlib.PurePath(group).name
        self.assertRegex(group, r"/app\.slice/korvel-today-open-[0-9a-f]{32}\.service$")
        self.act("quit")
        harness.wait_for(lambda: self.manager.show("korvel-today.service", "ActiveState") == "inactive", "the end")
        self.assertEqual(self.manager.show("korvel-today.service", "Result"), "success")
        self.assertEqual(self.manager.show(unit, "ActiveState"), "active")
        self.assertEqual(self.manager.systemctl("stop", unit).returncode, 0)
        self.assertEqual(self.manager.show(unit, "LoadState"), "not-found", "nothing is left of it")

    def test_ends_in_order_when_it_is_stopped(self):
        self.application("Activate", "{}")
        self.shown()
        self.assertEqual(self.manager.systemctl("stop", "korvel-today.service").returncode, 0)
        self.assertEqual(self.manager.show("korvel-today.service", "Result"), "success")


class BesideTheAutostart(UnitTest):
    """A session starts the program by itself too, outside of the unit. One process comes of it, whoever is first."""

    UNIT = "korvel-today.service"
    AUTOSTART = (HERE / "bin" / "korvel-today", "--background")

    def owner(self):
        return self.manager.owner_of("com.korvel.today")

    def state(self):
        return self.manager.show(self.UNIT, "ActiveState"), self.manager.show(self.UNIT, "Result")

    def test_a_unit_that_comes_second_ends_in_order(self):
        first = self.desktop.start(self.manager.inside(*self.AUTOSTART), self.manager.env)
        owner = harness.wait_for(self.owner, "a program")
        done = self.manager.systemctl("start", self.UNIT)
        self.assertEqual(done.returncode, 0, done.stderr + self.manager.log())
        harness.wait_for(lambda: self.state() == ("inactive", "success"), "the end of the unit's process")
        self.assertEqual((self.owner(), self.processes()), (owner, []))
        self.act("quit")
        self.assertEqual(first.wait(harness.DEADLINE), 0)

    def test_an_entry_that_comes_second_ends_in_order(self):
        self.assertEqual(self.manager.systemctl("start", self.UNIT).returncode, 0, self.manager.log())
        owner = self.owner()
        done = self.manager.run(*self.AUTOSTART)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual((self.owner(), self.state()), (owner, ("active", "success")))


class FailingOpener(UnitTest):
    def prepare(self):
        gio = self.manager.folder / "bin" / "gio"
        gio.write_text(f"#!/bin/sh\necho \"$*\" > {HERE}/tried\nexit 3\n")
        gio.chmod(0o755)
        with (self.manager.folder / "units" / "korvel-today.service").open("a") as unit:
            unit.write(f"[Service]\nEnvironment=PATH={HERE}/bin\n")

    def test_leaves_no_unit(self):
        self.application("Activate", "{}")
        self.shown()
        self.act("add")
        tried = self.manager.folder / "tried"
        harness.wait_for(lambda: tried.exists() and tried.read_text() == f"open {NEW_URL}\n", "an opener")
        harness.wait_for(lambda: "korvel-today-open-" not in self.manager.systemctl("list-units", "--all", "--full").stdout,
                         "no unit")


class OddFolder(UnitTest):
    """A folder whose name a manager would expand, where it is not told to leave it."""

    containers_folder = "a $HOME ${HOME} %h 'b'"

    def test_the_file_manager_gets_it_as_it_stands(self):
        self.application("Activate", "{}")
        self.shown()
        self.act("show-folder")
        argument, found, _ = self.opened.note()
        self.assertEqual(found, FREE)
        self.assertEqual(argument.removeprefix("file://"), f"{HERE}/{self.containers_folder}/{self.container.folder.name}")


if __name__ == "__main__":
    unittest.main()
