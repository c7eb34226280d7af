"""Whole flows: a hand opens rows, presses buttons and answers sheets, and the host application finds exactly that in
its files and in the URL it is opened with."""

import unittest

import flows
import harness
from flows import days_from_now, in_each_variant, logged, overdue, property_list

KEPT = {"note": "ü & <x>", "weights": [1, -2, 0.5, {}], "empty": []}  # keys that only the host knows


class EachAction(flows.Flow):
    @in_each_variant
    def test_paid_takes_the_occurrence_out_and_logs_it(self, variant):
        other = overdue(3, planpk="plan-2", **KEPT)
        records = [overdue(1), overdue(2), other]
        panel = self.open(records, variant)
        panel.wait_for_rows(3)
        panel.open_row(1)
        panel.click_button("Paid", 1)
        self.assert_carried_out([records[0], other], logged(1, records[1], 0))
        panel.wait_for_rows(2)
        self.close()

    @in_each_variant
    def test_later_moves_the_occurrence_by_each_choice_and_not_at_all_by_cancel(self, variant):
        for choice, days in ((1, 1), (2, 3), (3, 7)):
            records = [overdue(1, **KEPT), overdue(2)]
            panel = self.open(records, variant)
            if choice == 1:
                self.open_sheet("Later", 0, shown=2, choices=3)
                panel.cancel(3)
                panel.wait_for_rows(2)
                self.assert_untouched()
            self.open_sheet("Later", 0, shown=2, choices=3)
            panel.choose(choice)
            moved = records[0] | {"date": days_from_now(days)}
            self.assert_carried_out([moved, records[1]], logged(2, records[0], days))
            self.close()

    @in_each_variant
    def test_delete_of_a_single_plan_asks_nothing(self, variant):
        records = [overdue(1), overdue(2, **KEPT)]
        panel = self.open(records, variant)
        panel.wait_for_rows(2)
        panel.open_row(0)
        panel.click_button("Delete", 0)
        self.assert_carried_out(records[1:], logged(3, records[0], 0))
        panel.wait_for_rows(1)
        self.close()

    @in_each_variant
    def test_delete_of_a_repeating_plan_asks_for_this_one_or_all_later_ones(self, variant):
        # The last two lie far ahead: not shown, and in the feed all the same.
        weeks = [overdue(number, planpk="plan-1", single=False, **({"date": 1e10 + number} if number > 2 else {}))
                 for number in (1, 2, 3, 4)]
        other = overdue(5, date=2e10)
        panel = self.open([*weeks, other], variant)
        self.open_sheet("Delete", 1, shown=2, choices=2)
        panel.cancel(2)
        panel.wait_for_rows(2)
        self.assert_untouched()
        self.open_sheet("Delete", 0, shown=2, choices=2)
        panel.choose(2)
        self.assert_carried_out([*weeks[1:], other], logged(3, weeks[0], 0))
        self.open_sheet("Delete", 0, shown=1, choices=2)
        panel.choose(1)
        self.assert_carried_out([other], logged(3, weeks[1], 1))
        panel.wait_for_rows(0)
        self.close()

    @in_each_variant
    def test_info_and_the_last_row_open_the_host_application(self, variant):
        for count in (2, 6):  # without a caption, and with one
            records = [overdue(number) for number in range(1, count + 1)]
            panel = self.open(records, variant)
            shown = min(count, 5)
            panel.wait_for_rows(shown)
            asked = self.container.settings
            panel.open_row(1)
            for click, request, more in (
                    (lambda: panel.click_button("Info", 1), "tw_edit_transaction",
                     {"edit_transaction_plan_pk": "plan-2", "edit_transaction_date": records[1]["date"]}),
                    (lambda: panel.click_add(shown), "tw_new_transaction", {}),
                    (lambda: panel.click_last_row(shown), "tw_all_transactions", {})):
                before = self.host.received()
                click()
                asked = asked | more | {"url_string": request}
                expected = before + f"korvelWidget://{request}\n".encode()
                harness.wait_for(lambda e=expected: len(self.host.received()) >= len(e), "a URL")
                self.assertEqual(self.host.received(), expected)
                self.assertEqual(self.settings_file().read_bytes(), property_list(asked))
            self.assertEqual(self.feed_file().read_bytes(), self.feed_before)
            self.assertFalse(self.log_file().exists())
            self.close()


if __name__ == "__main__":
    unittest.main()
