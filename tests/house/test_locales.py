"""The locales that the build compiles for tests are there and are what tests want of them. LOCPATH names them."""

import locale
import unittest


class Locales(unittest.TestCase):
    def setUp(self):
        self.addCleanup(locale.setlocale, locale.LC_ALL, "C")

    def test_numbers_have_a_comma(self):
        for name in ("de_DE.UTF-8", "ru_RU.UTF-8"):
            with self.subTest(name):
                locale.setlocale(locale.LC_ALL, name)
                self.assertEqual(locale.localeconv()["decimal_point"], ",")


if __name__ == "__main__":
    unittest.main()
