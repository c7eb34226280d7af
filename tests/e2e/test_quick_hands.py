"""A hand that is quicker than the panel: it clicks where something else has come, or something is about to go. It hits
nothing that it did not mean. Each gesture is done again and again, at the paces at which it once went wrong; a pace is
that of the client that clicks, and what comes of it is waited for as anywhere."""

import unittest

import flows
import harness
from flows import logged, overdue, property_list

TIMES = 20  # in the first variant; a quarter of them in others


def clicks(place, times, pace):
    """The steps of clicks at one place, a pace in seconds between them."""
    return [place, "click", *[pace, "click"] * (times - 1)]


def times_in(variant):
    return range(TIMES if variant == flows.VARIANTS[0] else TIMES // 4)


class QuickHand(flows.Flow):
    variants = flows.VARIANTS[:2]

    def gestures(self, records, variant, steps_in):
        """Panels in which a gesture was done, one for each time: steps_in prepares a panel and says the steps. A panel
        in which the hand was slower than that shows nothing and is done again."""
        for time in times_in(variant):
            while not self.panel_after(records, variant, lambda: steps_in(time)):
                self.panel.window.press("alt+F4")
                self.panel.wait_until_closed_by_key()
                self.panel.program.terminate()
            yield self.panel

    def panel_after(self, records, variant, steps):
        self.open(records, variant).wait_for_rows(len(records))
        return self.panel.gesture(*steps())


class Rows(QuickHand):
    @flows.in_each_variant
    def test_button_of_a_row_that_closes_acts_on_no_other_row(self, variant):
        def steps(time):
            self.panel.open_row(0)
            return (self.panel.on_row(1), "click", self.panel.on_button("Delete", 0), (0.03, 0.06, 0.09)[time % 3],
                    "click")
        for panel in self.gestures([overdue(1), overdue(2)], variant, steps):
            panel.wait_until_open(1)
            harness.wait_for(lambda: panel.shows_title(0), "the first row closed again")
            self.close()
            self.assert_untouched()

    @flows.in_each_variant
    def test_clicks_where_a_button_comes_press_no_button(self, variant):
        def steps(time):
            return clicks(self.panel.on_button("Delete", 1), 3, (0.15, 0.2, 0.25)[time % 3])
        for panel in self.gestures([overdue(1), overdue(2)], variant, steps):
            panel.hold_row(0)  # all before has been handled then
            panel.window.let_go(*panel.on_row(0))
            self.close()
            self.assert_untouched()

    @flows.in_each_variant
    def test_row_opened_again_in_mid_slide_shows_what_an_open_row_shows(self, variant):
        panel = self.open([overdue(1), overdue(2)], variant)
        panel.wait_for_rows(2)
        panel.open_row(1)
        opened = panel.row_picture(1)
        for time in times_in(variant):
            panel.gesture(*clicks(panel.on_row(1), 2, (0.05, 0.1, 0.15)[time % 3]))
            panel.wait_for_row(1, opened)
        self.close()
        self.assert_untouched()


class Buttons(QuickHand):
    def test_clicks_on_later_choose_nothing_in_the_sheet_that_comes_under_them(self):
        def steps(time):
            self.panel.open_row(1)
            return clicks(self.panel.on_button("Later", 1), 3, (0.1, 0.2, 0.25)[time % 3])
        for panel in self.gestures([overdue(1), overdue(2)], flows.VARIANTS[0], steps):
            panel.wait_for_sheet(3)
            panel.window.press("Escape")  # no answered sheet would take it
            panel.wait_for_rows(2)
            self.close()
            self.assert_untouched()

    def test_clicks_on_delete_delete_one_transaction(self):
        def steps(time):
            self.panel.open_row(0)
            return clicks(self.panel.on_button("Delete", 0), 5, (0.1, 0.2, 0.25)[time % 3])
        records = [overdue(1), overdue(2)]
        for panel in self.gestures(records, flows.VARIANTS[0], steps):
            self.assert_carried_out(records[1:], logged(3, records[0], 0))
            panel.wait_for_rows(1)
            harness.wait_for(lambda: panel.shows_title(0), "the row that was the second, closed")
            self.close()
            self.assertEqual(self.feed_file().read_bytes(), property_list(records[1:]))

    def test_add_button_that_a_refresh_replaces_under_the_hand_opens_the_host(self):
        records = [overdue(number) for number in range(1, TIMES + 8)]
        panel = self.open(records)
        panel.wait_for_rows(5)
        log = []
        for time in range(1, TIMES + 1):
            panel.open_row(0)
            panel.gesture(panel.on_button("Paid", 0), "click", 0.1, panel.on_row(5, 19), 0.15, "mousedown", 0.15,
                          "mouseup")
            expected = b"korvelWidget://tw_new_transaction\n" * time
            harness.wait_for(lambda: self.host.received() == expected, f"URL number {time}")
            log.append(logged(1, records.pop(0), 0))
            self.assertEqual(self.feed_file().read_bytes(), property_list(records))
            self.assertEqual(self.log_file().read_bytes(), property_list(log))
        self.close()


class LowScreen(QuickHand):
    # Room for four of the six rows.
    desktop_options = {"width": 800, "height": 240}

    def test_sheet_of_a_list_that_is_scrolled_down_is_scrolled_to(self):
        records = [overdue(number, single=False) for number in range(1, 6)]
        panel = self.open(records)
        panel.window.wait_for_size(flows.WIDTH + 2 * flows.MARGIN_X, 4 * flows.ROW + 2 * flows.MARGIN_Y)
        harness.wait_for(lambda: len(set(panel.row_picture(2))) > 1, "painted rows")
        second = panel.row_picture(1)
        panel.click(panel.on_row(1), button=5, times=3)
        harness.wait_for(lambda: panel.row_picture(1) != second, "the end of the list")
        scrolled = panel.row_picture(0)
        panel.open_row(2)  # the fifth transaction
        panel.click_button("Delete", 2)
        # The band behind the title is the only thing that is grey from edge to edge.
        harness.wait_for(lambda: self.shows_band(panel), "the title of the sheet")
        panel.cancel(2)
        panel.wait_for_row(0, scrolled)
        self.close()
        self.assert_untouched()

    @staticmethod
    def shows_band(panel):
        picture = panel.window.picture()
        ends = {picture[panel.at(x, 4)] for x in (2, flows.WIDTH - 3)}
        return len(ends) == 1 and min(next(iter(ends))) > 50


if __name__ == "__main__":
    unittest.main()
