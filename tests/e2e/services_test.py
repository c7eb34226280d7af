"""The resident program with the desktop's services on a session bus (see services.py), and what tests ask them."""

import json
import os
import pathlib
import select
import subprocess
import sys

import flows
import harness
import test_center
from test_truth import local_noon

WINDOW = os.environ["KORVEL_E2E_WINDOW"]
ITEM, MENU = "/StatusNotifierItem", "/MenuBar"
ITEM_INTERFACE, MENU_INTERFACE = "org.kde.StatusNotifierItem", "com.canonical.dbusmenu"


class Services:
    """The desktop's services (see services.py)."""

    def __init__(self, desktop):
        self._process = desktop.start([sys.executable, "-B", pathlib.Path(__file__).with_name("services.py")],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=None)

    def ask(self, service, command, *arguments):
        self._process.stdin.write(json.dumps([service, command, *arguments]).encode() + b"\n")
        self._process.stdin.flush()
        if not select.select([self._process.stdout], [], [], harness.DEADLINE)[0]:
            raise harness.Unmet(f"no answer to {command} of {service}")
        return json.loads(self._process.stdout.readline())

    def call(self, *words):
        answer = self.ask("Client", "call", *words)
        if "error" in answer:
            raise AssertionError(f"{words}: {answer['error']}")
        return answer["reply"]

    def close(self):
        self._process.stdin.close()
        self._process.stdout.close()


class ServicesTest(test_center.Resident):
    """The user's own program. It is about noon."""

    desktop_options = {"bus": True}

    def setUp(self):
        super().setUp()
        self.services = Services(self.desktop)
        self.addCleanup(self.services.close)
        self.env = {"KORVEL_GROUP_CONTAINERS": str(self.container.containers), "TZ": local_noon(),
                    "LC_ALL": flows.LEFT_TO_RIGHT, "LANGUAGE": "", "LOCPATH": os.environ["KORVEL_TEST_LOCALES"]}
        self.write_settings("[notifications]\nenabled=false\n")

    def start(self, *options, env=None):
        return self.desktop.run([flows.PANEL, *options], self.env | (env or {}))

    def write_settings(self, text):
        """In one step, as an editor does it."""
        folder = self.desktop.folder / "home" / "config" / "korvel-today"
        folder.mkdir(exist_ok=True)
        (folder / "settings.new").write_text(text)
        (folder / "settings.new").rename(folder / "settings.ini")

    def settle(self):
        """Returns when the resident program has handled what reached it before."""
        self.services.call("com.korvel.today", "/com/korvel/today", "org.freedesktop.Application", "ActivateAction",
                           "('no-such-action', @av [], @a{sv} {})")

    def assert_not_asked_for(self, program):
        self.assert_hidden(program)
        self.settle()
        self.ask("--toggle")  # would hide a panel that was shown
        self.assert_list(program, 2)

    def other_window(self):
        """A window of another program, which has the focus when it has been clicked."""
        return self.desktop.run([WINDOW]).window()

    def take_focus(self, other):
        other.click(190, 90)
        harness.wait_for(lambda: self.focused() == other.ident, "another window with the focus")

    def wait_for_focus(self, window):
        harness.wait_for(lambda: self.focused() == window.ident, "a panel with the focus")

    def focused(self):
        return subprocess.run(["xdotool", "getwindowfocus"], env=self.desktop.env, capture_output=True, text=True,
                              timeout=harness.DEADLINE).stdout.strip()

    # The item of the tray.

    def come_with_tray(self):
        self.services.ask("Watcher", "come", True)

    def item(self):
        """The connection of the one item, once it is registered."""
        def found():
            items = self.services.ask("Watcher", "items")
            self.assertLessEqual(len(items), 1)
            return items
        return harness.wait_for(found, "an item of the tray")[0]

    def wait_for_no_item(self):
        harness.wait_for(lambda: not self.services.ask("Watcher", "items"), "no item of the tray")

    def property(self, name):
        return self.services.call(self.item(), ITEM, "org.freedesktop.DBus.Properties", "Get",
                                  f"('{ITEM_INTERFACE}', '{name}')")[0]

    def tooltip(self):
        _, _, title, text = self.property("ToolTip")
        return f"{title}\n{text}".strip().splitlines()

    def wait_for_tooltip(self, counts):
        expected = ["Korvel Today", counts]
        try:
            harness.wait_for(lambda: self.tooltip() == expected, "tooltip")
        except harness.Unmet:
            self.assertEqual(self.tooltip(), expected)

    def icon(self):
        return self.property("IconPixmap")

    def click_item(self):
        self.services.call(self.item(), ITEM, ITEM_INTERFACE, "Activate", "(0, 0)")

    def click_item_of_stopped(self):
        """The program will find the click when it goes on."""
        self.services.ask("Client", "send", self.item(), ITEM, ITEM_INTERFACE, "Activate", "(0, 0)")

    def menu(self):
        """The numbers of the menu's entries by their texts."""
        _, (_, _, entries) = self.services.call(self.item(), MENU, MENU_INTERFACE, "GetLayout", "(0, -1, @as [])")
        return {properties["label"].replace("_", ""): number for number, properties, _ in entries
                if properties.get("type") != "separator"}

    def choose(self, entry):
        self.services.call(self.item(), MENU, MENU_INTERFACE, "Event",
                           f"({self.menu()[entry]}, 'clicked', <0>, uint32 0)")

    # Notifications.

    def notified(self):
        """The arguments of each notification so far, of the resident program's present state too."""
        self.settle()
        self.services.call("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                           "org.freedesktop.Notifications", "GetServerInformation")
        return self.services.ask("Notifications", "shown")

    def wait_for_notification(self):
        shown = harness.wait_for(lambda: self.services.ask("Notifications", "shown"), "a notification")
        self.assertEqual(len(shown), 1)
        return shown[0]

    def wait_for_closed(self, numbers):
        harness.wait_for(lambda: self.services.ask("Notifications", "closed") == numbers, f"closed: {numbers}")
