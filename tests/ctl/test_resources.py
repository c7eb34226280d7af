"""The companion under limits on what a sanitizer would take for itself: memory and open files."""

import os
import resource
import subprocess
import unittest

from companion import LimitsTest

KIBIBYTE = 1 << 10


def reaches_the_program(limit):
    """Whether the loader and the libraries have what they need before the program itself begins."""
    done = subprocess.run([os.environ["KORVEL_TODAYCTL"], "--version"], capture_output=True,
                          preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
    return done.returncode == 0 or done.stderr.startswith(b"korvel-todayctl: there is not")


def least_limit():
    """The least limit, to 32 KiB, under which the program begins."""
    low, high = 0, 1 << 20
    while high - low > 32:
        middle = (low + high) // 2
        low, high = (low, middle) if reaches_the_program(middle * KIBIBYTE) else (middle, high)
    return high * KIBIBYTE


class Resources(LimitsTest):
    def test_memory_is_short(self):
        least = least_limit()
        steps = [0, 128, 256, 512, 1024, 1536, 2048, 3072, 6144]
        self.assertGreater(self.sweep(resource.RLIMIT_AS, [least + step * KIBIBYTE for step in steps]), 60)

    def test_few_files_may_be_open(self):
        # The loader of programs opens the first file after the three standard streams.
        self.assertGreater(self.sweep(resource.RLIMIT_NOFILE, (4, 5, 6, 8)), 3)

    def test_input_without_an_end_finds_no_memory(self):
        limit = least_limit() + (100 << 20)
        for command in ("plist", "publish"):
            with open("/dev/zero", "rb") as zeros:
                done = self.run_companion(command, "-", stdin=zeros,
                                          before=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            self.assertEqual((done.returncode, done.stdout, done.stderr),
                             (1, b"", b"korvel-todayctl: there is not enough memory\n"))


if __name__ == "__main__":
    unittest.main()
