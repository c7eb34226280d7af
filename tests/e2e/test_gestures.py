"""What a hand does besides clicking: too fast, too far, with the wrong button, and keys in between. Nothing is done
twice and no choice is lost. Where things happen at once the panel is held still meanwhile, so that it meets them
before any of its animations has moved."""

import unittest

import flows
import harness
from flows import days_from_now, logged, overdue, property_list

RIGHT, MIDDLE, WHEEL_UP, WHEEL_DOWN = 3, 2, 4, 5


class Rows(flows.Flow):
    def setUp(self):
        super().setUp()
        self.records = [overdue(number) for number in (1, 2, 3)]
        self.open(self.records).wait_for_rows(3)
        harness.wait_for(lambda: len(set(self.panel.row_picture(2))) > 1, "painted rows")
        self.closed = [self.panel.row_picture(row) for row in range(3)]

    def close_untouched(self):
        self.close()
        self.assert_untouched()

    def test_double_click_opens_a_row_and_closes_it(self):
        # That it was open shows in the other row, which an opening row closes.
        self.panel.open_row(0)
        with self.panel.program.paused():
            self.panel.click_row(1, times=2)
        self.panel.wait_for_row(0, self.closed[0])
        self.panel.hold_row(2)
        self.panel.wait_for_row(1, self.closed[1])
        self.close_untouched()

    def test_double_click_at_a_hands_pace_leaves_the_row_closed(self):
        self.panel.click_row(1, times=2)
        self.panel.hold_row(2)
        self.panel.wait_for_row(1, self.closed[1])
        self.close_untouched()

    def test_double_click_where_a_button_comes_presses_no_button(self):
        x, y = self.panel.on_button("Paid", 1)
        with self.panel.program.paused():
            self.panel.click((x, y), times=2)
        self.panel.hold_row(2)
        self.panel.wait_for_row(1, self.closed[1])
        self.close_untouched()

    def test_row_opened_again_while_it_closes_is_open(self):
        self.panel.open_row(1)
        self.panel.click_row(1)
        harness.wait_for(lambda: not self.panel.is_open(1), "a closing row")
        self.panel.click_row(1)
        self.panel.wait_until_open(1)
        # The end of the closing slide came first and has not brought back what an open row hides.
        self.assertFalse(self.panel.shows_title(1))
        self.panel.click_row(1)
        self.panel.rest()
        self.panel.wait_for_row(1, self.closed[1])
        self.assertTrue(self.panel.shows_title(1))
        self.close_untouched()

    def test_row_clicked_while_another_opens_closes_that_one(self):
        with self.panel.program.paused():
            self.panel.click_row(0)
            self.panel.click_row(2)
        self.panel.wait_until_open(2)
        self.panel.wait_for_row(0, self.closed[0])
        self.close_untouched()

    def test_press_dragged_off_its_row_toggles_that_row(self):
        elsewhere = [self.panel.on_row(2), (-200, 300), self.panel.on_row(3)]
        for number, place in enumerate(elsewhere):
            self.panel.window.hold(*self.panel.on_row(0))
            self.panel.window.let_go(*place)
            if number % 2 == 0:
                self.panel.wait_until_open(0)
            else:
                self.panel.wait_for_row(0, self.closed[0])
            self.panel.rest()
            self.panel.wait_for_row(2, self.closed[2])
        self.close_untouched()

    def test_press_dragged_off_a_button_presses_nothing(self):
        self.panel.open_row(0)
        for elsewhere in (self.panel.on_button("Later", 0), self.panel.on_row(2), (-200, 300)):
            self.panel.window.hold(*self.panel.on_button("Paid", 0))
            self.panel.window.let_go(*elsewhere)
        self.close_untouched()

    def test_right_and_middle_button_press_nothing(self):
        for button in (RIGHT, MIDDLE):
            self.panel.click_row(0, button=button)
            self.panel.open_row(1)
            for name in flows.BUTTONS:
                self.panel.click_button(name, 1, button=button)
            self.panel.click_row(1, button=button)
            self.panel.click_row(3, 19, button=button)
            self.panel.click_row(3, 160, button=button)
            self.panel.hold_row(2)
            self.assertEqual(self.panel.row_picture(0), self.closed[0])
            self.assertTrue(self.panel.is_open(1))
            self.panel.window.let_go(*self.panel.on_row(2))
            self.panel.wait_for_row(1, self.closed[1])
            self.panel.click_row(2)
            self.panel.rest()
            self.panel.wait_for_row(2, self.closed[2])
        self.close_untouched()

    def test_wheel_over_a_list_that_is_in_sight_as_a_whole_does_nothing(self):
        self.panel.open_row(1)
        for button in (WHEEL_DOWN, WHEEL_UP):
            for place in (self.panel.on_row(0), self.panel.on_button("Paid", 1), self.panel.on_row(3)):
                self.panel.click(place, button=button, times=3)
        self.panel.hold_row(2)
        self.assertEqual(self.panel.row_picture(0), self.closed[0])
        self.assertTrue(self.panel.is_open(1))
        self.close_untouched()

    def test_escape_closes_the_panel_while_a_row_is_open_or_held(self):
        self.panel.open_row(1)
        self.panel.hold_row(0)
        self.close_untouched()


class TallerThanTheScreen(flows.Flow):
    # Room for four of the six rows.
    desktop_options = {"width": 800, "height": 240}

    def test_wheel_scrolls_and_presses_nothing(self):
        panel = self.open([overdue(number) for number in range(1, 6)])
        panel.window.wait_for_size(flows.WIDTH + 2 * flows.MARGIN_X, 4 * flows.ROW + 2 * flows.MARGIN_Y)
        harness.wait_for(lambda: len(set(panel.row_picture(2))) > 1, "painted rows")
        closed = [panel.row_picture(row) for row in range(4)]
        panel.click(panel.on_row(1), button=WHEEL_DOWN)
        panel.wait_for_row(0, closed[1])
        panel.wait_for_row(2, closed[3])
        panel.open_row(1)  # the third transaction
        for place in (panel.on_button("Paid", 1), panel.on_button("Delete", 1), panel.on_row(0)):
            panel.click(place, button=WHEEL_DOWN)  # to the end with the first, and no further
        panel.wait_until_open(0)
        panel.click_button("Info", 0)
        harness.wait_for(self.host.received, "a URL")
        self.assertEqual(self.settings_file().read_bytes(), property_list(self.container.settings | {
            "edit_transaction_plan_pk": "plan-3", "edit_transaction_date": self.feed[2]["date"],
            "url_string": "tw_edit_transaction"}))
        panel.click(panel.on_row(3), button=WHEEL_UP, times=5)
        panel.wait_for_row(0, closed[0])
        panel.wait_for_row(1, closed[1])
        self.close()
        self.assertEqual(self.host.received(), b"korvelWidget://tw_edit_transaction\n")
        self.assertEqual(self.feed_file().read_bytes(), self.feed_before)
        self.assertFalse(self.log_file().exists())


class Sheet(flows.Flow):
    def setUp(self):
        super().setUp()
        self.records = [overdue(1, single=False), overdue(2)]
        self.open(self.records)
        self.moved = [self.records[0] | {"date": days_from_now(3)}, self.records[1]]

    def test_escape_in_a_waiting_sheet_is_its_cancel(self):
        for button, choices in (("Later", 3), ("Delete", 2)):
            self.open_sheet(button, 0, shown=2, choices=choices)
            self.panel.window.press("Escape")
            self.panel.wait_for_rows(2)
        self.assertTrue(self.panel.program.running())
        self.close()
        self.assert_untouched()

    def test_second_click_on_a_button_chooses_nothing_in_the_sheet_that_comes_under_it(self):
        single_first = [overdue(1), overdue(2, single=False)]
        for button, choices in (("Later", 3), ("Delete", 2)):
            self.open(single_first).wait_for_rows(2)
            self.panel.open_row(1)
            with self.panel.program.paused():
                self.panel.click_button(button, 1, times=2)
            self.panel.wait_for_sheet(choices)
            self.panel.window.press("Escape")  # no answered sheet would take it
            self.panel.wait_for_rows(2)
            self.close()
            self.assert_untouched()

    def test_escape_in_an_answered_sheet_does_nothing(self):
        self.open_sheet("Later", 0, shown=2, choices=3)
        with self.panel.program.paused():
            self.panel.choose(2)
            self.panel.window.press("Escape")
        self.assert_carried_out(self.moved, logged(2, self.records[0], 3))
        self.panel.wait_for_rows(1)  # a day that is not due any more
        self.close()

    def test_escape_in_a_cancelled_sheet_does_nothing(self):
        self.open_sheet("Later", 0, shown=2, choices=3)
        with self.panel.program.paused():
            self.panel.cancel(3)
            self.panel.window.press("Escape")
        self.panel.wait_for_rows(2)
        self.close()
        self.assert_untouched()

    def test_second_choice_after_the_first_is_ignored(self):
        self.open_sheet("Later", 0, shown=2, choices=3)
        with self.panel.program.paused():
            self.panel.choose(2)
            self.panel.choose(1)
            self.panel.cancel(3)
        self.assert_carried_out(self.moved, logged(2, self.records[0], 3))
        self.close()
        self.assertEqual(self.log_file().read_bytes(), property_list(self.log))

    def test_right_and_middle_button_choose_nothing(self):
        self.open_sheet("Later", 0, shown=2, choices=3)
        for button in (RIGHT, MIDDLE):
            for y in (*flows.CHOICES.values(), flows.CANCEL[3]):
                self.panel.click(self.panel.at(flows.WIDTH / 2, y), button=button)
        self.panel.choose(2)
        self.assert_carried_out(self.moved, logged(2, self.records[0], 3))
        self.close()

    def test_window_closed_right_after_a_choice_loses_nothing(self):
        self.open_sheet("Later", 0, shown=2, choices=3)
        with self.panel.program.paused():
            self.panel.choose(2)
            self.panel.window.press("alt+F4")
        self.panel.wait_until_closed_by_key()
        self.assertEqual(self.panel.program.terminate(), 0)
        self.assert_carried_out(self.moved, logged(2, self.records[0], 3))

    def test_window_closed_with_a_waiting_sheet_chooses_nothing(self):
        self.open_sheet("Delete", 0, shown=2, choices=2)
        self.panel.window.press("alt+F4")
        self.panel.wait_until_closed_by_key()
        self.assertEqual(self.panel.program.terminate(), 0)
        self.assert_untouched()


class Paid(flows.Flow):
    def setUp(self):
        super().setUp()
        self.records = [overdue(number) for number in range(1, 7)]
        self.open(self.records).wait_for_rows(5)

    def assert_only_paid(self, row):
        self.assert_carried_out([r for r in self.records if r is not self.records[row]],
                                logged(1, self.records[row], 0))

    def test_second_click_on_paid_hits_nothing(self):
        for row in (1, 3):
            self.panel.open_row(row)
            with self.panel.program.paused():
                self.panel.click_button("Paid", row, times=2)
            self.assert_only_paid(row)
            del self.records[row]
            self.panel.wait_for_rows(len(self.records) if len(self.records) < 5 else 5)
            self.panel.hold_row(0)
            self.assertFalse(self.panel.is_open(row))
            self.panel.window.let_go(*self.panel.on_row(0))
            self.panel.wait_until_open(0)
            self.panel.click_row(0)
        self.close()
        self.assertEqual(self.feed_file().read_bytes(), property_list(self.records))
        self.assertEqual(self.log_file().read_bytes(), property_list(self.log))

    def test_double_click_on_paid_at_a_hands_pace_hits_nothing_more(self):
        self.panel.open_row(1)
        self.panel.click_button("Paid", 1, times=2)
        self.assert_only_paid(1)
        self.panel.hold_row(0)
        self.assertFalse(self.panel.is_open(1))
        self.close()
        self.assertEqual(self.log_file().read_bytes(), property_list(self.log))

    def test_panel_closed_right_after_paid_leaves_both_files_whole(self):
        self.panel.open_row(4)
        with self.panel.program.paused():
            self.panel.click_button("Paid", 4)
            self.panel.window.press("Escape")
        self.panel.wait_until_hidden()
        self.assertEqual(self.panel.program.terminate(), 0)
        self.assert_only_paid(4)


if __name__ == "__main__":
    unittest.main()
