"""What the panel has to do with a Wayland compositor where it is an ordinary window."""

import unittest

import flows
import harness
import test_center
import wayland
import wayland_client
from flows import overdue


class Window(flows.Flow):
    desktop_kind = wayland.WaylandDesktop

    def test_window_has_the_identifier_of_the_application(self):
        panel = self.open([])
        self.assertEqual(panel.window.app_id(), "com.korvel.today")
        self.close()

    def test_compositor_closes_the_panel_with_a_waiting_sheet_and_nothing_is_chosen(self):
        panel = self.open([overdue(1, single=False), overdue(2)])
        self.open_sheet("Delete", 0, shown=2, choices=2)
        panel.window.ask_to_close()
        self.panel.wait_until_hidden()
        self.assert_untouched()


class Activation(test_center.Resident):
    """A panel that is asked for while another window has the focus. This compositor gives its window the focus only for
    a token."""

    desktop_kind = wayland.WaylandDesktop

    def setUp(self):
        super().setUp()
        self.desktop.tell('no_focus [app_id="com.korvel.today"]')
        self.desktop.tell("focus_on_window_activation focus")
        self.other = wayland_client.Client(self.desktop.env["WAYLAND_DISPLAY"])
        self.addCleanup(self.other.close)
        self.other.show("com.example.other", 200, 100)
        self.wait_for_focus("com.example.other")

    def wait_for_focus(self, app_id):
        harness.wait_for(lambda: [node["app_id"] for node in self.desktop.window_nodes() if node["focused"]] == [app_id],
                         f"the focus in {app_id}")

    def token(self):
        self.desktop.hand.press("space")
        return self.other.activation_token()

    def ask_with(self, token):
        """A further start, as a program does that has been given a token for it."""
        self.assertEqual(self.start(env={"XDG_ACTIVATION_TOKEN": token}).end_status(), 0)

    def test_a_token_gives_the_focus_to_a_panel_that_was_hidden(self):
        program = self.start("--background")
        self.ready(program)
        self.ask_with(self.token())
        self.wait_for_focus("com.korvel.today")

    def test_a_token_gives_the_focus_to_a_panel_that_is_shown(self):
        self.assert_list(self.start(), 2)
        self.ask_with(self.token())
        self.wait_for_focus("com.korvel.today")

    def test_nothing_but_a_token_of_the_compositor_does(self):
        program = self.start("--background")
        self.ready(program)
        for token in ("", "made-up"):
            self.ask_with(token)
            self.assert_list(program, 2)
            self.ask_with(token)  # it is shown already
            self.ask("--hide")
            self.assert_hidden(program)
            self.assertEqual(self.other.focus_losses(), 0)


class RightAfterAChoice(flows.Choosing):
    desktop_kind = wayland.WaylandDesktop

    def test_closing_the_window_loses_nothing(self):
        self.choose()
        self.panel.window.ask_to_close()
        self.assert_later_carried_out()


if __name__ == "__main__":
    unittest.main()
