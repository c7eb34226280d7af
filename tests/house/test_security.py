"""Each test that docs/security.md names is one of this tree's."""

import os
import pathlib
import re
import unittest

ROOT = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
SUITE = re.compile(r"`((?:\w+/)?\w*Test|RateLimit|Message)(?:\.(\w+))?`")
FLOW = re.compile(r"`(?:e2e|house)\.(\w+)(?:\.(\w+))?(?:\.(\w+))?`")


def sources(pattern):
    return "\n".join(path.read_text(encoding="utf-8") for path in sorted((ROOT / "tests").glob(pattern)))


def missing(text, cpp, python):
    """What a document names and the tests have not."""
    for found in SUITE.finditer(text):
        suite, test = found[1].rpartition("/")[2], found[2] or ""
        if not re.search(rf"\bTEST(_F|_P)?\({suite},\s*{test}" + (r"\)" if test else ""), cpp):
            yield found[0]
    for found in FLOW.finditer(text):
        _, group, method = found.groups()
        if group and not re.search(rf"^class {group}\(", python, re.M):
            yield found[0]
        if method and f"def test_{method}(" not in python:
            yield found[0]


class Security(unittest.TestCase):
    def setUp(self):
        self.cpp, self.python = sources("**/*.cpp"), sources("**/test_*.py")

    def test_each_test_that_is_named_is_there(self):
        text = (ROOT / "docs/security.md").read_text(encoding="utf-8")
        self.assertGreater(len(SUITE.findall(text)), 15)
        self.assertGreater(len(FLOW.findall(text)), 8)
        self.assertEqual(list(missing(text, self.cpp, self.python)), [])

    def test_one_that_is_not_there_is_seen(self):
        named = "`NoSuchTest`, `ConfinementTest.noSuchThing`, `e2e.Confined.NoSuchClass`, `e2e.Confined.Account.no_such_flow`"
        self.assertEqual(len(list(missing(named, self.cpp, self.python))), 4)


if __name__ == "__main__":
    unittest.main()
