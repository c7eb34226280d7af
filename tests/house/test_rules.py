"""This tree keeps the rules of includes.py and taste.py, and these see each way of breaking them in made-up trees."""

import graphlib
import os
import pathlib
import tempfile
import unittest

import includes
import taste

TREE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
QT = includes.qt_modules(os.environ["KORVEL_QT_HEADERS"])
SET = "#!/bin/bash\nset -euo pipefail\n"

# Files without a fault, some of which look as if they had one.
SOUND = {
    "src/platform/system/Clock.h": "#include <chrono>\n#include <QString>\n",
    "src/platform/system/Clock.cpp": "#include <unicode/calendar.h>\n#include <unistd.h>\n",
    "src/model/TodayTransaction.h": '#include "platform/system/Clock.h"\n#include <qstring.h>\n',
    "src/model/GroupIdentifiers.h.in": "",
    "src/exchange/Feed.cpp": '#include "model/GroupIdentifiers.h"\n#include "model/TodayTransaction.h"\n',
    "src/exchange/TodayWidgetLogic.h": "",
    "src/views/rows/Row.cpp": '#include "ui_Row.h"\n#include "Row.moc"\nauto i = TodayWidgetLogic::imageByName(n);\n',
    "src/platform/plist/xml/Token.h": "",
    "src/platform/plist/binary/Trailer.h": '#include "platform/plist/xml/Token.h"\n',
    "src/platform/plist/Reader.h": "",
    "src/platform/plist/Reader.cpp": '#include "platform/plist/xml/Token.h"\n',
    "src/model/A.h": "class View : public QWidget {\n    Q_OBJECT\n",
    "src/model/A.cpp": "platform::Label* title;\nplatform::LayoutConstraint* width;\n",
    "tests/a/A.cpp": "\n" * taste.MAX_LINES,
    "docs/a.md": "$HOME/home/x, ~/home/x, https://example.org/home\n",
    "scripts/packages": "# a comment\n\nbuild g++ the compiler\ntest g++ the same again\n",
    "scripts/a": SET,
    "scripts/b": "#!/bin/sh\n# one command\nexec true\n",
    "scripts/c.py": "#!/usr/bin/env python3\nif:\n",
}

# File, its text, and the one fault that it adds to the sound tree.
BROKEN = [
    ("src/platform/plist/Value.h", "\n#include <QString>", ":2: platform/plist may not include <QString> (QtCore)"),
    ("src/platform/plist/Value.cpp", "# include <sys/mman.h>", "<sys/mman.h> (posix)"),
    ("src/platform/plist/Value.cpp", "#include <stdio.h>", "<stdio.h> (posix)"),
    ("src/platform/plist/Value.cpp", '#include "Reader.h"', "there is no src/Reader.h"),
    ("src/model/A.h", "#include <QtWidgets/QWidget>", "model may not include <QtWidgets/QWidget> (QtWidgets)"),
    ("src/model/A.h", "#include <qcolor.h>", "<qcolor.h> (QtGui)"),
    *((f"src/{room}/A.cpp", "#include <QWidget>", "<QWidget> (QtWidgets)")
      for room in ("ctl", "exchange", "platform/images", "platform/storage", "platform/system")),
    ("src/exchange/Days.cpp", "#include <unicode/calendar.h>", "exchange may not include <unicode/calendar.h> (icu)"),
    ("src/exchange/Days.cpp", "#include <nlohmann/json.hpp>", "exchange may not include <nlohmann/json.hpp> (nlohmann)"),
    ("src/model/A.h", '#include "exchange/TodayWidgetLogic.h"', "model may not include exchange"),
    ("src/views/rows/B.cpp", "TodayWidgetLogic::performNew();", "may not call TodayWidgetLogic::performNew"),
    ("src/exchange/A.cpp", '#include "platform/plist/xml/Token.h"', '"platform/plist/xml/Token.h" is private'),
    ("src/platform/plist/Value.h", '#include "platform/plist/xml/Token.h"', '"platform/plist/xml/Token.h" is private'),
    *((f"src/{name}", "", "lies in no room") for name in ("helpers/A.h", "Main.cpp", "platform/A.h", "views/A.h")),
    *((name, f"#pragma once\n{line}\n", f"{name}:2: ") for name, line in (
        ("src/model/B.cpp", "QSave" "File file(path);"),
        ("src/model/B.cpp", "QDesktop" "Services::openUrl(url);"),
        ("src/model/B.cpp", "view->set" "StyleSheet(text);"),
        ("src/model/B.ui", '<property name="style' 'Sheet">'),
        ("src/model/B.cpp", "QUi" "Loader loader;"),
        ("src/views/rows/B.h", "#include <Q" "Label>"),
        ("src/model/B.ui", '<widget class="Q' 'Label" name="title">'),
        ("src/model/B.cpp", "auto* lines = new QVBox" "Layout(this);"),
        ("src/model/B.h", "class View : public QWidget { Q_OBJ" "ECT"),
        ("tests/a/B.cpp", "std::this_thread::sleep_" "for(1s);"),
        ("tests/a/B.cpp", "QTest::q" "Wait(50);"),
        ("tests/a/b.py", "    time." "sleep(1)"),
        ("bench/a/b.cpp", "u" "sleep(10);"),
        ("tests/a/B.cpp", "GTEST_" "SKIP();"),
        ("tests/a/B.cpp", "TEST(A, DISABLED" "_b) {"),
        ("tests/a/b.py", "    self.skip" 'Test("later")'),
        ("tests/a/B.cpp", "EXPECT_TRUE(" "true);"),
        ("tests/a/B.cpp", 'write("/t' 'mp/feed.xml");'),
        ("src/model/B.cpp", 'open("/ho' 'me/anna/feed.xml");'),
        ("docs/b.md", "cd /ro" "ot/korvel-today"))),
    ("tests/a/B.cpp", "\n" * (taste.MAX_LINES + 1), "tests/a/B.cpp: 451 lines"),
    *(("scripts/packages", f"build g++ the compiler\n{line}\n", "scripts/packages:2: no reason")
      for line in ("run gio", "run gio because", "run")),
    ("run", SET + "if true; then\n", "syntax error"),
    ("run", "#!/bin/sh\nfalse\ntrue\n", "run: no 'set -eu'"),
    ("demo/make.txt", SET, "demo/make.txt: cannot be executed"),
]


def faults(tree):
    return [*includes.faults(tree, QT), *taste.faults(tree)]


def faults_of(files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
            path.chmod(0o644 if path.suffix else 0o755)
        return faults(pathlib.Path(folder))


class Rules(unittest.TestCase):
    def test_this_tree_keeps_them(self):
        found = faults(TREE)
        self.assertEqual(found, [], "\n" + "\n".join(found))
        scripts = {path.relative_to(TREE).as_posix() for path, _ in taste.shell_scripts(TREE)}
        self.assertLessEqual({"run", "test", ".ci/run", "scripts/setup", "bench/run", "demo/make"}, scripts)

    def test_rooms_may_not_include_each_other_in_a_circle_nor_a_program(self):
        rules = {room: rooms for room, (rooms, _) in includes.ROOMS.items()}
        self.assertEqual(set(graphlib.TopologicalSorter(rules).static_order()), rules.keys())
        self.assertEqual(set().union(*rules.values()) & {"program", "ctl"}, set())

    def test_each_way_of_breaking_them_is_seen(self):
        self.assertEqual(faults_of(SOUND), [])
        for name, text, expected in BROKEN:
            with self.subTest(file=name, text=text[:60]):
                found = faults_of(SOUND | {name: text})
                self.assertEqual(len(found), 1, found)
                self.assertIn(expected, found[0])

    def test_tree_without_sources_is_a_fault(self):
        self.assertIn("no sources", faults_of({"scripts/packages": ""})[0])


if __name__ == "__main__":
    unittest.main()
