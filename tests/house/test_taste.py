"""This tree has no fault of taste, and the checker sees each kind in made-up trees."""

import os
import pathlib
import tempfile
import unittest

import taste

SOUND_PACKAGES = "# a comment\n\nbuild g++ the compiler\ntest g++ the same again\n"


class ThisTree(unittest.TestCase):
    def setUp(self):
        self.tree = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])

    def check(self, check):
        found = list(check(self.tree))
        self.assertEqual(found, [], "\n" + "\n".join(found))

    def test_holds_nothing_forbidden(self):
        self.check(taste.patterns)

    def test_has_no_file_too_long_to_read(self):
        self.check(taste.lengths)

    def test_has_headers_that_guard_themselves(self):
        self.check(taste.headers)

    def test_says_why_it_needs_each_package(self):
        self.check(taste.packages)

    def test_has_sound_shell_scripts(self):
        found = {path.relative_to(self.tree).as_posix() for path in taste.shell_scripts(self.tree)}
        self.assertLessEqual({"run", "test", ".ci/run", "scripts/setup", "bench/run", "demo/make"}, found)
        self.check(taste.scripts)


class MadeUpTree(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)

    def write(self, name, text, mode=0o644):
        path = self.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(mode)

    def assert_one_fault(self, check, *parts):
        found = list(check(self.tree))
        self.assertEqual(len(found), 1, found)
        for part in parts:
            self.assertIn(part, found[0])

    def assert_no_fault(self, check):
        self.assertEqual(list(check(self.tree)), [])

    def test_each_forbidden_line(self):
        for name, line in (
                ("src/a/A.cpp", "QSave" "File file(path);"),
                ("src/a/A.cpp", "QDesktop" "Services::openUrl(url);"),
                ("src/a/A.cpp", "view->set" "StyleSheet(text);"),
                ("src/a/A.ui", '<property name="style' 'Sheet">'),
                ("src/a/A.cpp", "QUi" "Loader loader;"),
                ("src/a/A.h", "#include <Q" "Label>"),
                ("src/a/A.ui", '<widget class="Q' 'Label" name="title">'),
                ("src/a/A.cpp", "auto* lines = new QVBox" "Layout(this);"),
                ("src/a/A.h", "class View : public QWidget { Q_OBJ" "ECT"),
                ("tests/a/ATest.cpp", "std::this_thread::sleep_" "for(1s);"),
                ("tests/a/ATest.cpp", "QTest::q" "Wait(50);"),
                ("tests/a/a.py", "    time." "sleep(1)"),
                ("bench/a/a.cpp", "u" "sleep(10);"),
                ("tests/a/ATest.cpp", "GTEST_" "SKIP();"),
                ("tests/a/ATest.cpp", "TEST(A, DISABLED" "_b) {"),
                ("tests/a/a.py", "    self.skip" 'Test("later")'),
                ("tests/a/ATest.cpp", "EXPECT_TRUE(" "true);"),
                ("tests/a/ATest.cpp", 'write("/t' 'mp/feed.xml");'),
                ("src/a/A.cpp", 'open("/ho' 'me/anna/feed.xml");'),
                ("docs/a.md", "cd /ro" "ot/korvel-today")):
            with self.subTest(line):
                self.write(name, f"#pragma once\n{line}\n")
                self.assert_one_fault(taste.patterns, f"{name}:2: ")
                (self.tree / name).unlink()

    def test_lines_that_look_like_forbidden_ones(self):
        self.write("src/a/A.h", "class View : public QWidget {\n    Q_OBJECT\n")
        self.write("src/a/A.cpp", "platform::Label* title;\nplatform::LayoutConstraint* width;\n")
        self.write("docs/a.md", "$HOME/home/x, ~/home/x, https://example.org/home\n")
        self.assert_no_fault(taste.patterns)

    def test_file_of_the_greatest_length_and_one_beyond(self):
        self.write("src/a/A.cpp", "\n" * taste.MAX_LINES)
        self.assert_no_fault(taste.lengths)
        self.write("tests/a/A.h", "\n" * (taste.MAX_LINES + 1))
        self.assert_one_fault(taste.lengths, "tests/a/A.h: 451 lines")

    def test_header_without_a_guard(self):
        self.write("src/a/A.h", "#pragma once\n")
        self.assert_no_fault(taste.headers)
        self.write("src/a/B.h", "// #pragma once\n")
        self.assert_one_fault(taste.headers, "src/a/B.h: no #pragma once")

    def test_package_without_a_reason(self):
        self.write("scripts/packages", SOUND_PACKAGES)
        self.assert_no_fault(taste.packages)
        for line in ("run gio", "run gio because", "run"):
            with self.subTest(line):
                self.write("scripts/packages", SOUND_PACKAGES + line + "\n")
                self.assert_one_fault(taste.packages, "scripts/packages:5: no reason")

    def test_package_that_stands_twice_in_a_group(self):
        self.write("scripts/packages", SOUND_PACKAGES + "test g++ once more again\n")
        self.assert_one_fault(taste.packages, "scripts/packages:5: g++ stands twice in test")

    def test_shell_script_that_cannot_be_read_or_run(self):
        sound = "#!/usr/bin/env bash\nset -euo pipefail\n"
        self.write("scripts/a", sound, 0o755)
        self.write("scripts/b.py", "#!/usr/bin/env python3\nif:\n")
        self.write("scripts/c", "a table: if then fi\n")
        self.assert_no_fault(taste.scripts)
        self.write("run", sound + "if true; then\n", 0o755)
        self.assert_one_fault(taste.scripts, "run: ", "syntax error")
        self.write("run", "#!/bin/sh\n# one command\nexec true\n", 0o755)
        self.assert_no_fault(taste.scripts)
        self.write("run", "#!/bin/sh\nfalse\ntrue\n", 0o755)
        self.assert_one_fault(taste.scripts, "run: no 'set -eu'")
        self.write("run", sound, 0o644)
        self.assert_one_fault(taste.scripts, "run: cannot be executed")


if __name__ == "__main__":
    unittest.main()
