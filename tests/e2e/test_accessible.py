"""The panel as an assistive program finds it: what it is told, and every action done without mouse and keyboard, with
the same files and URLs to show for it."""

import json
import pathlib
import sys
import unittest

import flows
import harness
import test_actions
from flows import overdue

CLIENT = pathlib.Path(__file__).with_name("accessible.py")


class EachAction(test_actions.EachAction):
    desktop_options = {"accessibility": True}
    panel_kind = flows.AssistedPanel
    variants = flows.VARIANTS[:1]

    def test_paid_takes_the_occurrence_out_and_logs_it(self):
        super().test_paid_takes_the_occurrence_out_and_logs_it()

    def test_later_moves_the_occurrence_by_each_choice_and_not_at_all_by_cancel(self):
        super().test_later_moves_the_occurrence_by_each_choice_and_not_at_all_by_cancel()

    def test_delete_of_a_single_plan_asks_nothing(self):
        super().test_delete_of_a_single_plan_asks_nothing()

    def test_delete_of_a_repeating_plan_asks_for_this_one_or_all_later_ones(self):
        super().test_delete_of_a_repeating_plan_asks_for_this_one_or_all_later_ones()

    def test_info_and_the_last_row_open_the_host_application(self):
        super().test_info_and_the_last_row_open_the_host_application()


class WhatIsTold(flows.Flow):
    desktop_options = {"accessibility": True}
    panel_kind = flows.AssistedPanel

    def setUp(self):
        super().setUp()
        self.open([overdue(1, single=False), overdue(2)]).wait_for_rows(2)
        harness.wait_for(lambda: len(self.told("list item")) == 3, "rows on the accessibility bus")

    def told(self, role):
        return [told["name"] for told in self.panel.accessibles(role)]

    def states(self, row):
        return set(self.panel.accessibles("list item")[row]["states"])

    def test_window_list_and_rows_are_named(self):
        self.assertEqual(self.told("frame"), ["Korvel Today"])
        self.assertEqual(len(self.told("list")), 1)
        self.assertEqual(self.told("list item"), ["T1, 1.00", "T2, 2.00", "Show all…"])
        self.assertEqual(self.told("label"), ["T1", "Sep 14, 2020", "1.00", "T2", "Sep 15, 2020", "2.00", ""])
        self.assertEqual([row["description"] for row in self.panel.accessibles("list item")],
                         ["Sep 14, 2020, overdue", "Sep 15, 2020, overdue", ""])

    def test_buttons_are_there_while_they_can_be_pressed(self):
        self.assertEqual(self.told("push button"), ["Add a transaction"])
        self.panel.open_row(0)
        actions = list(self.panel.BUTTONS.values())
        self.assertEqual(self.told("push button"), [*actions, "Add a transaction"])
        for button in self.panel.accessibles("push button"):
            self.assertLessEqual({"showing", "visible", "enabled", "sensitive"}, set(button["states"]))
            self.assertIn("Press", button["actions"])
        for name, choices in (("Later", 3), ("Delete", 2)):
            self.panel.click_button(name, 0)
            self.panel.wait_for_sheet(choices)
            self.assertEqual(self.told("dialog"), ["T1: 1.00"])
            self.assertEqual(self.told("push button"), [*self.panel.CHOICES[choices], "Cancel"])
            self.assertEqual(self.told("list item"), [])
            self.panel.cancel(choices)
            self.panel.wait_for_rows(2)
            self.assertEqual(self.told("dialog"), [])
            self.panel.open_row(0)
        self.close()
        self.assert_untouched()

    def test_row_tells_that_it_opens_and_closes(self):
        events = self.desktop.folder / "events"
        with events.open("wb") as out:
            self.desktop.start((sys.executable, "-B", CLIENT, "listen", "object:property-change"), stdout=out)

        def heard():
            return [json.loads(line) for line in events.read_text().splitlines()]

        def rows_heard():
            return [event["name"] for event in heard()[1:] if event["event"].endswith("accessible-description")]
        harness.wait_for(lambda: heard()[:1] == ["listening"], "a listener")
        self.assertLessEqual({"expandable", "collapsed"}, self.states(0))
        self.panel.open_row(0)
        self.assertLessEqual({"expandable", "expanded"}, self.states(0))
        self.panel.open_row(1)  # and with it the first closes
        self.assertIn("collapsed", self.states(0))
        self.assertIn("expanded", self.states(1))
        expected = ["T1, 1.00", "T2, 2.00", "T1, 1.00"]
        harness.wait_for(lambda: len(rows_heard()) >= len(expected), "three changes")
        self.assertEqual(rows_heard(), expected)


if __name__ == "__main__":
    unittest.main()
