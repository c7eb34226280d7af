"""The companion with files that may not grow, and with input that is too long."""

import resource
import unittest

from companion import LimitsTest

GIBIBYTE = 1 << 30


class Limits(LimitsTest):
    def test_files_may_not_grow(self):
        self.assertGreater(self.sweep(resource.RLIMIT_FSIZE, (0, 1, 4096, 61440)), 20)

    def test_input_without_an_end_is_refused(self):
        for command, name in (("plist", "-"), ("publish", "standard input")):
            with open("/dev/zero", "rb") as zeros:
                done = self.run_companion(command, "-", stdin=zeros)
            self.assertEqual((done.returncode, done.stdout, done.stderr.decode()),
                             (1, b"", f"korvel-todayctl: {name}: File too large\n"))

    def test_a_file_above_a_gibibyte_is_refused(self):
        self.fill()
        source = self.containers / "feed.json"
        for path, commands in ((source, [["plist", str(source)], ["publish", str(source)]]),
                               (self.feed, [["list"], ["act", "p", "5", "paid"]]),
                               (self.log, [["consume"]]),
                               (self.settings, [["list"], ["settings", "get", "text"], ["settings", "set", "a", "b"]])):
            self.fill()
            with path.open("wb") as file:
                file.truncate(GIBIBYTE + 1)
            for command in commands:
                with self.subTest(command=command):
                    done = self.run_companion(*command)
                    self.assertEqual(done.returncode, 1)
                    self.assertEqual(done.stdout, b"")
                    self.assertRegex(done.stderr, rb"\Akorvel-todayctl: [^\n]+\n\Z")
                    self.assertEqual(path.stat().st_size, GIBIBYTE + 1)
            path.unlink()


if __name__ == "__main__":
    unittest.main()
