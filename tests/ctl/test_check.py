"""The companion's check as a process, with hostile texts in every file and with files that are too large."""

import json
import os
import unittest

from companion import CompanionTest, record
from test_terminal import HOSTILE, SURROGATE, binary_list, forbidden_in


class Check(CompanionTest):
    def test_nothing_raw_reaches_a_terminal(self):
        texts = {key: HOSTILE + SURROGATE for key in ("name", "amount", "image", "planpk")}
        self.feed.write_bytes(binary_list([record("p", 5.0) | texts | {HOSTILE: HOSTILE}, {HOSTILE: 1}, HOSTILE]))
        self.log.write_bytes(binary_list([HOSTILE + SURROGATE, {HOSTILE: HOSTILE}]))
        self.write_settings({"account_pk": "a/" + HOSTILE, HOSTILE: HOSTILE, "notification_days_count": HOSTILE})
        for arguments in (["check"], ["check", "--json"], ["check", HOSTILE]):
            done = self.run_companion(*arguments)
            self.assertIsNone(forbidden_in(done.stdout), done.stdout)
            self.assertIsNone(forbidden_in(done.stderr), done.stderr)
            self.assertEqual(done.stderr.count(b"\n"), 1, done.stderr)
        named = {finding["finding"] for finding in json.loads(self.run_companion("check", "--json").stdout)}
        self.assertLessEqual({"accountKeyNoName", "keyMissing", "notPortable", "recordNoDictionary"}, named)

    def test_a_file_above_a_gibibyte_is_named(self):
        for path, finding in ((self.feed, "feedUnreadable"), (self.log, "logUnreadable"),
                              (self.settings, "settingsUnreadable")):
            with path.open("wb") as file:
                file.truncate((1 << 30) + 1)
            found = json.loads(self.run_companion("check", "--json").stdout)
            self.assertIn((finding, os.fspath(path)), [(each["finding"], each["file"]) for each in found])
            path.unlink()


if __name__ == "__main__":
    unittest.main()
