"""The companion's check under limits of its memory."""

import plistlib
import resource
import unittest

from companion import CompanionTest, record
from test_resources import KIBIBYTE, least_limit


class CheckMemory(CompanionTest):
    def test_little_memory_ends_it_in_order(self):
        self.feed.write_bytes(plistlib.dumps([record("p", float(second)) for second in range(20000)]))
        least = least_limit()
        lacking = []
        for step in (*range(0, 1024, 128), 2048, 4096, 8192, 16384, 32768, 65536, 1 << 20):
            limit = least + step * KIBIBYTE
            done = self.run_companion("check", before=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))
            self.assertEqual(done.returncode, 1)
            self.assertRegex(done.stderr, rb"\Akorvel-todayctl: [^\n]+\n\Z")
            lacking.append(b"memory" in done.stderr)
        self.assertEqual((lacking[0], lacking[-1]), (True, False))


if __name__ == "__main__":
    unittest.main()
