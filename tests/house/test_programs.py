"""What the built programs load. KORVEL_TODAYCTL and KORVEL_TODAY name them."""

import os
import subprocess
import unittest


def loaded_libraries(program):
    """The names of all shared libraries that the loader would map for a program, the indirect ones too."""
    done = subprocess.run(["ldd", program], stdout=subprocess.PIPE, text=True, check=True)
    return {line.split()[0] for line in done.stdout.splitlines()}


class Libraries(unittest.TestCase):
    def test_companion_loads_no_widgets(self):
        libraries = loaded_libraries(os.environ["KORVEL_TODAYCTL"])
        self.assertIn("libQt6Core.so.6", libraries)
        self.assertNotIn("libQt6Widgets.so.6", libraries)

    def test_panel_loads_widgets(self):
        # The same question asked of a program for which the answer is yes.
        self.assertIn("libQt6Widgets.so.6", loaded_libraries(os.environ["KORVEL_TODAY"]))

    def test_panel_loads_no_reader_of_svg(self):
        self.assertNotIn("libQt6Svg.so.6", loaded_libraries(os.environ["KORVEL_TODAY"]))


if __name__ == "__main__":
    unittest.main()
