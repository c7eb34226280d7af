"""A panel that a Wayland compositor docks at the edge of the screen, where its user wants it and where the compositor is
not one that takes the keyboard away from such windows. (The flows of test_wayland.py run on a docked panel too.)"""

import re
import unittest

import harness
import test_center
import wayland
import wayland_client
from flows import EDGE, overdue

OTHER = (200, 100)  # the size of the other window


class Docked(test_center.Resident):
    """On sway, as its user has chosen."""

    desktop_kind = wayland.DockingDesktop
    desktop_options = {"env": {"KORVEL_DOCKED": "yes"}}

    def place(self, program):
        here = self.assert_list(program, 2).geometry()
        return here.x, here.y

    def at_edge(self):
        return self.desktop.size[0] - EDGE - 344, EDGE


class Place(Docked):
    def test_panel_is_at_the_edge_of_what_a_bar_leaves(self):
        program = self.start()
        self.assertEqual(self.place(program), self.at_edge())
        self.desktop.start(("swaynag", "--edge", "top", "--message", "a bar"))
        harness.wait_for(lambda: self.place(program)[1] > EDGE, "a place below the bar")
        x, y = self.place(program)
        self.assertEqual(x, self.at_edge()[0])
        bar = self.desktop.picture(0, 0, 1, y)
        self.assertNotEqual(bar[0, y - EDGE - 2], self.desktop.background)
        self.assertEqual({bar[0, row] for row in range(y - EDGE, y)}, {self.desktop.background})

    def test_compositor_chooses_the_screen_whose_end_hides_the_panel(self):
        program = self.start("--background")
        self.ready(program)
        self.desktop.tell("create_output")
        self.desktop.tell("output HEADLESS-2 mode 1280x800 position 1280 0")
        self.desktop.tell("focus output HEADLESS-2")
        self.desktop.size = (2560, 800)
        self.ask("--show")
        self.assertEqual(self.place(program), self.at_edge())
        self.desktop.tell("output HEADLESS-2 unplug")
        self.desktop.size = (1280, 800)
        self.assert_hidden(program)
        self.ask("--show")
        self.assertEqual(self.place(program), self.at_edge())
        self.quit(program)


class Choice(test_center.Resident):
    desktop_kind = wayland.WaylandDesktop

    def test_on_sway_the_panel_is_an_ordinary_window_unless_its_user_wants_another(self):
        window = self.assert_list(self.start(), 2)
        self.assertEqual(window.app_id(), "com.korvel.today")


class Without(test_center.Resident):
    """On a compositor that docks nothing."""

    desktop_kind = wayland.WestonDesktop
    desktop_options = {"env": {"KORVEL_DOCKED": "yes", "WAYLAND_DEBUG": "client"}}

    def test_panel_is_an_ordinary_window(self):
        program = self.start()
        shown = re.compile(r"xdg_toplevel#\d+\.set_app_id\(\"com\.korvel\.today\"\).*wl_surface#\d+\.attach\(wl_buffer",
                           re.DOTALL)
        harness.wait_for(lambda: shown.search(program.err), "a window with a picture")
        self.assertNotIn("layer_surface", program.err)
        self.assertEqual(program.terminate(), 0)


class Keyboard(Docked):
    """On a compositor that leaves it to a docked window, which is chosen by nobody."""

    desktop_kind = wayland.LabwcDesktop
    desktop_options = {}

    def setUp(self):
        super().setUp()
        self.other = wayland_client.Client(self.desktop.env["WAYLAND_DISPLAY"])
        self.addCleanup(self.other.close)
        self.other.show("com.example.other", *OTHER)

    def test_panel_has_it_as_soon_as_it_is_shown_and_gives_it_back(self):
        program = self.start("--background")
        self.ready(program)
        for losses in (1, 2):
            self.ask("--show")
            self.assertEqual(self.place(program), self.at_edge())
            harness.wait_for(lambda: self.other.focus_losses() == losses, "the keyboard")
            self.desktop.hand.press("Escape")
            self.assert_hidden(program)
            self.desktop.hand.press("space")
            self.other.activation_token()  # for the key, which is the other's again

    def test_panel_keeps_it_while_its_height_changes(self):
        self.container.write_feed([overdue(1, single=False), overdue(2)])
        program = self.start()
        window = self.assert_list(program, 2)
        for _ in range(2):
            window.click(37, 33)
            harness.wait_for(lambda: max(window.picture()[207, y][0] for y in range(20, 46)) > 200, "an open row")
            window.click(207, 33)  # Later
            window.wait_for_size(344, 261)
            self.desktop.hand.press("Escape")
            self.assert_list(program, 2)
        self.desktop.hand.press("Escape")
        self.assert_hidden(program)

    def test_panel_of_a_key_hides_when_another_window_gets_it(self):
        program = self.start("--toggle")
        self.assert_list(program, 2)
        harness.wait_for(lambda: self.other.focus_losses() == 1, "the keyboard")
        self.desktop.hand.move(self.desktop.size[0] // 2, self.desktop.size[1] // 2)
        self.desktop.hand.hold(1)
        self.desktop.hand.let_go(1)
        self.assert_hidden(program)


if __name__ == "__main__":
    unittest.main()
