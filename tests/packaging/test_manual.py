"""The manual pages tell of each command and option that the programs know, and of no other."""

import json
import os
import pathlib
import re
import subprocess
import unittest

PAGES = [pathlib.Path(page) for page in os.environ["KORVEL_MANUAL_PAGES"].split(":")]
SOURCES = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"]) / "packaging" / "man"


def table(program, *arguments):
    return json.loads(subprocess.run([os.environ[program], *arguments], stdout=subprocess.PIPE, check=True).stdout)


class Page:
    """The source of a page. `items` has the items of a section, without their formatting."""

    def __init__(self, name):
        self.text = (SOURCES / f"{name}.1.scd").read_text(encoding="utf-8")

    def section(self, title):
        return re.search(rf"^# {title}\n(.*?)(?=^# |\Z)", self.text, re.MULTILINE | re.DOTALL)[1]

    def items(self, title):
        return [re.sub(r"[*_]", "", item) for item in re.findall(r"^(\S.*)\n\t", self.section(title), re.MULTILINE)]


def item_of(option):
    names = ", ".join(filter(None, (option["shortName"], option["name"])))
    return f"{names} {option['value']}".strip()


def way(command, options):
    values = {option["name"]: option["value"] for option in options}
    flags = [f"[{name} {values[name]}]".replace(" ]", "]") for name in command["options"]]
    return " ".join([command["command"], *command["operands"], *flags])


class Manual(unittest.TestCase):
    def setUp(self):
        self.tables = {"korvel-todayctl": table("KORVEL_TODAYCTL", "help", "--json"),
                       "korvel-today": table("KORVEL_TODAY", "--help", "--json"),
                       "korvel-today-bridge": table("KORVEL_BRIDGE", "help", "--json")}

    def test_has_a_page_of_each_program(self):
        self.assertEqual({page.name for page in PAGES}, {f"{program}.1" for program in self.tables})

    def test_options_are_those_of_the_program(self):
        for program, known in self.tables.items():
            page = Page(program)
            self.assertEqual(page.items("OPTIONS"), [item_of(option) for option in known["options"]])
            own = re.sub(r"(?m)^.*\bsystemd-escape .*\nsystemctl .*$", "", page.text)
            self.assertEqual(set(re.findall(r"--\w[\w-]*", own)), {option["name"] for option in known["options"]})

    def test_commands_are_those_of_the_program(self):
        for program in ("korvel-todayctl", "korvel-today-bridge"):
            known = self.tables[program]
            self.assertEqual(Page(program).items("COMMANDS"),
                             [way(command, known["options"]) for command in known["commands"]])

    def test_is_shown_without_a_warning(self):
        for page in PAGES:
            done = subprocess.run(["man", "--warnings", "-E", "UTF-8", "-l", page], capture_output=True, text=True,
                                  env=os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "80"}, check=True)
            self.assertEqual(done.stderr, "")
            for title in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS", "SEE ALSO"):
                self.assertRegex(done.stdout, rf"(?m)^{title}$")

    def test_is_found_by_what_it_is_about(self):
        for page in PAGES:
            done = subprocess.run(["lexgrog", page], capture_output=True, text=True, check=True)
            self.assertRegex(done.stdout, rf': "{page.stem} - [a-z]')


if __name__ == "__main__":
    unittest.main()
