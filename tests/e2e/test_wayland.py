"""Whole flows on Wayland, with a panel that is docked or an ordinary window: the compositor places it and scales the
screen, and the panel draws as many pixels as the screen has."""

import signal
import unittest

import flows
import harness
import wayland
from flows import days_from_now, in_each_variant, logged, overdue

BACKGROUND = (29, 33, 38)  # the panel's


class WaylandFlow(flows.Flow):
    desktop_kind = wayland.DESKTOP
    variants = [(flows.LEFT_TO_RIGHT, 1), (flows.RIGHT_TO_LEFT, 2)]  # the others are those of X11

    def assert_gone(self):
        harness.wait_for(lambda: not self.panel.window.shown(), "a closed panel")


class Flows(WaylandFlow):
    @in_each_variant
    def test_paid_takes_the_occurrence_out_and_logs_it(self, variant):
        records = [overdue(1), overdue(2)]
        panel = self.open(records, variant)
        panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Paid", 0)
        self.assert_carried_out(records[1:], logged(1, records[0], 0))
        panel.wait_for_rows(1)
        self.close()

    @in_each_variant
    def test_later_asks_for_the_days_and_moves_the_occurrence(self, variant):
        records = [overdue(1), overdue(2)]
        panel = self.open(records, variant)
        self.open_sheet("Later", 0, shown=2, choices=3)
        panel.choose(3)
        self.assert_carried_out([records[0] | {"date": days_from_now(7)}, records[1]], logged(2, records[0], 7))
        panel.wait_for_rows(1)  # a day that is not due any more
        self.close()

    @in_each_variant
    def test_delete_of_a_repeating_plan_asks_for_this_one_or_all_later_ones(self, variant):
        records = [overdue(number, planpk="plan-1", single=False) for number in (1, 2)]
        panel = self.open(records, variant)
        self.open_sheet("Delete", 1, shown=2, choices=2)
        panel.cancel(2)
        panel.wait_for_rows(2)
        self.assert_untouched()
        self.open_sheet("Delete", 0, shown=2, choices=2)
        panel.choose(2)
        self.assert_carried_out(records[1:], logged(3, records[0], 0))
        panel.wait_for_rows(1)
        self.close()

    @in_each_variant
    def test_escape_in_a_waiting_sheet_is_its_cancel_and_then_closes_the_panel(self, variant):
        panel = self.open([overdue(1, single=False), overdue(2)], variant)
        for button, choices in (("Later", 3), ("Delete", 2)):
            self.open_sheet(button, 0, shown=2, choices=choices)
            panel.window.press("Escape")
            panel.wait_for_rows(2)
        self.assertTrue(panel.window.shown())
        panel.window.press("Escape")
        self.assert_gone()
        self.assert_untouched()
        panel.program.process.kill()  # it may go on without a window
        panel.program.process.wait(harness.DEADLINE)


class AssistedFlows(WaylandFlow):
    """Each action by an assistive program."""

    desktop_options = {"accessibility": True}
    panel_kind = flows.AssistedPanel

    def test_paid_and_later(self):
        records = [overdue(1), overdue(2)]
        panel = self.open(records)
        panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Paid", 0)
        self.assert_carried_out(records[1:], logged(1, records[0], 0))
        self.open_sheet("Later", 0, shown=1, choices=3)
        panel.choose(3)
        self.assert_carried_out([records[1] | {"date": days_from_now(7)}], logged(2, records[1], 7))
        self.close()

    def test_info_and_the_last_row_open_the_host_application(self):
        panel = self.open([overdue(1), overdue(2)])
        panel.wait_for_rows(2)
        panel.click_add(2)
        harness.wait_for(lambda: self.host.received() == b"korvelWidget://tw_new_transaction\n", "a URL")
        self.close()


class Window(WaylandFlow):
    @in_each_variant
    def test_window_follows_the_sheet_and_stays_where_the_compositor_put_it(self, variant):
        panel = self.open([overdue(1), overdue(2)], variant)
        panel.wait_for_rows(2)
        self.wait_until_drawn_in_full()
        before = panel.window.geometry()
        self.open_sheet("Later", 0, shown=2, choices=3)
        self.wait_until_drawn_in_full()
        with_sheet = panel.window.geometry()
        self.assertEqual((with_sheet.x, with_sheet.y, with_sheet.width), (before.x, before.y, before.width))
        panel.cancel(3)
        panel.wait_for_rows(2)
        harness.wait_for(lambda: panel.window.geometry() == before, "the window where it was")
        panel.window.move_pointer(-40, 40)  # it was where the window has been
        self.wait_until_drawn_in_full()
        self.close()

    def wait_until_drawn_in_full(self):
        """Waits until the panel fills the place that the compositor has for it, and nothing around it."""
        def drawn():
            picture = self.panel.window.picture(around)
            width, height = picture.width, picture.height
            hairline, inside, outside = (
                frame(picture, inset, width, height)
                for inset in (around * self.panel.scale, (around + 1) * self.panel.scale, around * self.panel.scale - 1))
            return inside == {BACKGROUND} and len(hairline) == 1 and not outside & (inside | hairline)

        def frame(picture, inset, width, height):
            across, down = range(inset, width - inset), range(inset, height - inset)
            return {picture[x, y] for x in across for y in (inset, height - 1 - inset)} | {
                picture[x, y] for y in down for x in (inset, width - 1 - inset)}
        around = 2
        harness.wait_for(drawn, "a panel that fills its window")

    def test_panel_is_drawn_with_the_pixels_of_the_screen(self):
        panel = self.open([overdue(1), overdue(2)], (flows.LEFT_TO_RIGHT, 2))
        panel.wait_for_rows(2)
        panel.window.move_pointer(-90, 90)
        harness.wait_for(lambda: self.detailed_squares() > 500, "a panel drawn at scale 2")
        self.close()

    def detailed_squares(self):
        """How many squares of 2 x 2 pixels are not of one colour. A window that was drawn at scale 1 has none."""
        picture = self.panel.window.picture()
        return sum(len({picture[x, y], picture[x + 1, y], picture[x, y + 1], picture[x + 1, y + 1]}) > 1
                   for x in range(0, picture.width, 2) for y in range(0, picture.height, 2))

    def test_open_panel_can_be_used_after_a_change_of_the_scale(self):
        records = [overdue(1), overdue(2)]
        panel = self.open(records)
        panel.wait_for_rows(2)
        panel.window.move_to(40, 30)  # in sight at either scale
        for panel.scale in (2, 1):
            self.desktop.environment_at_scale(panel.scale)
            self.open_sheet("Later", 1, shown=2, choices=3)
            panel.cancel(3)
            panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Paid", 0)
        self.assert_carried_out(records[1:], logged(1, records[0], 0))
        self.close()


class RightAfterAChoice(flows.Choosing):
    desktop_kind = wayland.DESKTOP

    def test_a_signal_ends_the_panel_only_when_the_choice_is_written(self):
        self.choose()
        self.panel.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.panel.program.end_status(), 0)
        self.assertEqual(self.panel.program.err, "")
        self.assert_later_carried_out()

    def test_the_end_of_the_compositor_ends_the_panel_only_when_the_choice_is_written(self):
        self.choose()
        self.desktop.end_screen()
        self.assertIn(self.panel.program.end_status(), (1, 255))  # Qt 6.4 says 1, Qt 6.8 says 255
        self.assertEqual(self.panel.program.err, "")
        self.assert_later_carried_out()


if __name__ == "__main__":
    unittest.main()
