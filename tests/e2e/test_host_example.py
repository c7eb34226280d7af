"""The host of docs/ beside the panel: what a hand does in the one arrives in the plans of the other."""

import json
import os
import pathlib
import subprocess
import sys
import types
import unittest

import flows
import harness

EXAMPLE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"]) / "docs" / "host-example.py"


def plan(name, *numbers):
    """A plan of overdue occurrences, so that no month's end hides one."""
    return {"name": name, "image": "bill", "amount": "5.00", "income": False, "expense": True,
            "single": len(numbers) == 1, "dates": [flows.overdue(number)["date"] for number in numbers]}


class HostExample(harness.DesktopTest):
    desktop_options = {"env": {"DBUS_SESSION_BUS_ADDRESS": "disabled:",
                               "PATH": f"{pathlib.Path(sys.executable).parent}:{os.environ['PATH']}"}}

    def setUp(self):
        super().setUp()
        data = pathlib.Path(self.desktop.env["XDG_DATA_HOME"])
        self.container = types.SimpleNamespace(containers=data / "group-containers")
        self.log = self.container.containers / os.environ["KORVEL_GROUP"] / "anna" / "actions.xml"
        self.own = data / "korvel-host-example"
        self.own.mkdir(parents=True)
        self.plans = {"gas": plan("T1", 1), "gym": plan("T2", 2, 3)}
        (self.own / "plans.json").write_text(json.dumps(self.plans), encoding="utf-8")
        self.host("register")
        self.host()
        self.panel = flows.Panel(self.desktop, self.container)
        self.panel.wait_for_rows(3)

    def host(self, *arguments):
        subprocess.run([EXAMPLE, *arguments], env=self.desktop.env, check=True, timeout=harness.DEADLINE)

    def wait_for_requests(self, *requests):
        path = self.own / "requests"
        expected = "".join(request + "\n" for request in requests)
        harness.wait_for(lambda: path.exists() and path.read_text(encoding="utf-8") == expected, f"requests {requests}")

    def assert_plans_have(self, **dates):
        plans = json.loads((self.own / "plans.json").read_text(encoding="utf-8"))
        self.assertEqual({key: values["dates"] for key, values in plans.items()}, dates)

    def test_carries_out_what_a_hand_chooses(self):
        panel = self.panel
        panel.open_row(0)
        panel.click_button("Paid", 0)
        panel.wait_for_rows(2)
        self.host()
        self.assert_plans_have(gas=[], gym=self.plans["gym"]["dates"])
        panel.open_row(0)
        panel.click_button("Delete", 0)
        panel.wait_for_sheet(2)
        panel.choose(1)
        panel.wait_for_rows(0)
        self.host()
        self.assert_plans_have(gas=[], gym=[])
        self.assertEqual([path.name for path in self.log.parent.iterdir()], ["icons"])
        panel.wait_for_rows(0)
        self.assertEqual(panel.program.terminate(), 0)

    def test_is_opened_for_what_a_hand_asks(self):
        panel = self.panel
        panel.open_row(1)
        panel.click_button("Info", 1)
        self.wait_for_requests("show T2")
        panel.click_add(3)
        self.wait_for_requests("show T2", "add")
        panel.click_last_row(3)
        self.wait_for_requests("show T2", "add", "show all")
        panel.click_button("Paid", 1)
        panel.wait_for_rows(2)
        self.host("korvelWidget://tw_edit_transaction")
        self.wait_for_requests("show T2", "add", "show all", "show what is gone")
        self.assert_plans_have(gas=self.plans["gas"]["dates"], gym=self.plans["gym"]["dates"][1:])
        self.assertEqual(panel.program.terminate(), 0)


if __name__ == "__main__":
    unittest.main()
