"""What the built programs load. KORVEL_TODAYCTL and KORVEL_TODAY name them."""

import os
import subprocess
import unittest


def loaded_libraries(program):
    """All shared libraries that the loader would map for a program, the indirect ones too: their places by name."""
    done = subprocess.run(["ldd", program], stdout=subprocess.PIPE, text=True, check=True)
    return {fields[0]: fields[2] if "=>" in fields else None for fields in map(str.split, done.stdout.splitlines())}


class Libraries(unittest.TestCase):
    def test_companion_loads_no_widgets(self):
        libraries = loaded_libraries(os.environ["KORVEL_TODAYCTL"])
        self.assertIn("libQt6Core.so.6", libraries)
        self.assertNotIn("libQt6Widgets.so.6", libraries)

    def test_panel_loads_widgets(self):
        # The same question asked of a program for which the answer is yes.
        self.assertIn("libQt6Widgets.so.6", loaded_libraries(os.environ["KORVEL_TODAY"]))

    def test_panel_loads_only_what_its_toolkit_loads(self):
        # Some libraries are linked only so that the loader looks into them early: they must be there anyway.
        panel = loaded_libraries(os.environ["KORVEL_TODAY"])
        toolkit = loaded_libraries(panel["libQt6Widgets.so.6"])
        others = {name for name in panel.keys() - toolkit.keys() if not name.startswith(("libasan", "libubsan"))}
        self.assertEqual(others, {"libQt6Widgets.so.6"})

    def test_panel_loads_no_reader_of_svg(self):
        self.assertNotIn("libQt6Svg.so.6", loaded_libraries(os.environ["KORVEL_TODAY"]))


if __name__ == "__main__":
    unittest.main()
