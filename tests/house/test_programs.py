"""What the built programs load."""

import os
import subprocess
import unittest

WIDGETS = "libQt6Widgets.so.6"


def libraries(program):
    """The shared libraries that the loader would map for a program, indirect ones too: their paths by name."""
    done = subprocess.run(["ldd", program], stdout=subprocess.PIPE, text=True, check=True)
    return {fields[0]: fields[2] if "=>" in fields else None for fields in map(str.split, done.stdout.splitlines())}


class Programs(unittest.TestCase):
    def test_companion_loads_no_widgets(self):
        loaded = libraries(os.environ["KORVEL_TODAYCTL"]).keys()
        self.assertEqual(loaded & {WIDGETS, "libQt6Core.so.6"}, {"libQt6Core.so.6"})

    def test_panel_loads_what_its_toolkit_loads_and_nothing_else(self):
        panel = libraries(os.environ["KORVEL_TODAY"])
        others = panel.keys() - libraries(panel[WIDGETS]).keys()
        self.assertEqual({name for name in others if not name.startswith(("libasan", "libubsan"))}, 
                         {WIDGETS, "libQt6Svg.so.6", "libseccomp.so.2"})


if __name__ == "__main__":
    unittest.main()
