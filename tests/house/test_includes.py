"""The include rules hold in this tree, and the checker sees each way of breaking them in made-up ones."""

import os
import pathlib
import tempfile
import unittest

import includes

QT = includes.QtHeaders(os.environ["KORVEL_QT_HEADERS"])


class ThisTree(unittest.TestCase):
    def test_keeps_the_include_rules(self):
        found = list(includes.faults(os.environ["KORVEL_SOURCE_DIR"], QT))
        self.assertEqual(found, [], "\n" + "\n".join(found))

    def test_has_rules_without_a_circle(self):
        self.assertIsNone(includes.cycle({name: sorted(room.rooms) for name, room in includes.ROOMS.items()}))

    def test_has_rules_that_name_rooms_only(self):
        for name, room in includes.ROOMS.items():
            self.assertEqual(room.rooms - includes.ROOMS.keys(), set(), name)

    def test_lets_nobody_include_the_programs(self):
        for name, room in includes.ROOMS.items():
            self.assertEqual(room.rooms & {"center", "ctl"}, set(), name)

    def test_knows_the_modules_of_the_installed_qt(self):
        self.assertEqual(QT.module("QString"), "QtCore")
        self.assertEqual(QT.module("qpainter.h"), "QtGui")
        self.assertEqual(QT.module("QtWidgets/QWidget"), "QtWidgets")


class MadeUpTree(unittest.TestCase):
    """Each test writes src/ of a tree of its own: file name -> text."""

    def faults(self, **files):
        with tempfile.TemporaryDirectory() as tree:
            for name, text in files["files"].items():
                path = pathlib.Path(tree, "src", name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
            return list(includes.faults(tree, QT))

    def assert_one_fault(self, expected, files):
        found = self.faults(files=files)
        self.assertEqual(len(found), 1, found)
        self.assertIn(expected, found[0])

    def test_sound_tree_has_no_faults(self):
        self.assertEqual(self.faults(files={
            "platform/system/Clock.h": "#pragma once\n#include <chrono>\n#include <QString>\n",
            "platform/system/Clock.cpp": '#include "platform/system/Clock.h"\n#include <unicode/calendar.h>\n',
            "model/TodayTransaction.h": '#include "platform/system/Clock.h"\n#include <QString>\n',
            "exchange/GroupIdentifiers.h.in": "#pragma once\n",
            "exchange/Feed.cpp": '#include "exchange/GroupIdentifiers.h"\n#include "model/TodayTransaction.h"\n',
        }), [])

    def test_tree_without_sources_is_a_fault(self):
        self.assert_one_fault("no sources", {})

    def test_qt_in_property_lists(self):
        self.assert_one_fault("src/platform/plist/Value.h:2: platform/plist may not include <QString> (QtCore)",
                              {"platform/plist/Value.h": "#pragma once\n#include <QString>\n"})

    def test_posix_in_property_lists(self):
        self.assert_one_fault("<sys/mman.h> (posix)", {"platform/plist/Value.cpp": "# include <sys/mman.h>\n"})

    def test_c_header_of_the_standard_library(self):
        self.assert_one_fault("<stdio.h>", {"platform/plist/Value.cpp": "#include <stdio.h>\n"})

    def test_windows_and_painting_in_the_model(self):
        for header, module in (("QWidget", "QtWidgets"), ("QtWidgets/QWidget", "QtWidgets"), ("QImage", "QtGui"),
                               ("qcolor.h", "QtGui")):
            with self.subTest(header):
                self.assert_one_fault(f"model may not include <{header}> ({module})",
                                      {"model/TodayTransaction.h": f"#include <{header}>\n"})

    def test_widgets_where_there_are_none(self):
        for room in ("ctl", "exchange", "platform/images", "platform/storage", "platform/system"):
            with self.subTest(room):
                self.assert_one_fault("<QWidget> (QtWidgets)", {f"{room}/A.cpp": "#include <QWidget>\n"})

    def test_calendar_library_outside_the_system_room(self):
        self.assert_one_fault("exchange may not include <unicode/calendar.h> (icu)",
                              {"exchange/Days.cpp": "#include <unicode/calendar.h>\n"})

    def test_json_library_outside_the_companion(self):
        self.assert_one_fault("exchange may not include <nlohmann/json.hpp> (nlohmann)",
                              {"exchange/Days.cpp": "#include <nlohmann/json.hpp>\n"})

    def test_upward_includes(self):
        for lower, upper in (("platform/plist", "platform/storage"), ("platform/storage", "exchange"),
                             ("platform/images", "platform/views"), ("platform/views", "model"),
                             ("model", "exchange"), ("exchange", "platform/views"),
                             ("views/controls", "views/rows"), ("views/controls", "exchange"),
                             ("views/rows", "controller"), ("controller", "center"), ("ctl", "controller"),
                             ("ctl", "platform/extension"), ("ctl", "center"), ("center", "ctl")):
            with self.subTest(f"{lower} -> {upper}"):
                self.assert_one_fault(f"{lower} may not include {upper}",
                                      {f"{upper}/B.h": "#pragma once\n", f"{lower}/A.cpp": f'#include "{upper}/B.h"\n'})

    def test_rows_call_of_the_exchange_what_is_not_an_icon(self):
        rows = '#include "exchange/TodayWidgetLogic.h"\nvoid f() { TodayWidgetLogic::%s(); }\n'
        chief = {"exchange/TodayWidgetLogic.h": "#pragma once\n"}
        self.assertEqual(self.faults(files=chief | {"views/rows/Row.cpp": rows % "imageByName"}), [])
        self.assert_one_fault("views/rows may not call TodayWidgetLogic::performNewTransaction",
                              chief | {"views/rows/Row.cpp": rows % "performNewTransaction"})

    def test_path_that_is_not_relative_to_src(self):
        self.assert_one_fault("there is no src/Value.h", {"platform/plist/Value.h": "#pragma once\n",
                                                          "platform/plist/Value.cpp": '#include "Value.h"\n'})

    def test_file_in_no_room(self):
        for name in ("helpers/Text.h", "Main.cpp", "platform/Text.h", "views/Text.h"):
            with self.subTest(name):
                self.assert_one_fault(f"src/{name}: lies in no room", {name: "\n"})

    def test_compiled_interface_files_and_mocs_are_no_ones(self):
        self.assertEqual(self.faults(files={
            "views/rows/Row.cpp": '#include "ui_TodayTableCellView.h"\n#include "Row.moc"\n'}), [])

    def test_two_rooms_that_include_each_other(self):
        found = self.faults(files={
            "model/A.h": '#include "exchange/B.h"\n', "exchange/B.h": '#include "model/A.h"\n'})
        self.assertIn("the rooms include each other in a circle: exchange -> model -> exchange", found)

    def test_circle_of_three(self):
        self.assertEqual(includes.cycle({"a": ["b"], "b": ["c"], "c": ["a"], "d": ["a"]}), ["a", "b", "c", "a"])
        self.assertIsNone(includes.cycle({"a": ["b", "c"], "b": ["c"], "c": []}))


if __name__ == "__main__":
    unittest.main()
