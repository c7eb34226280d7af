"""What the companion writes, read by another reader of property lists."""

import datetime
import json
import math
import plistlib
import random
import re
import unittest

from companion import CompanionTest

PLAIN = "aZ0 <>&'\"\\;]é家🏠\t\n\x7f\x85\x9b\u061c\u200e\u2028\u202e\u2066\ufeff\ufffd\ufdd0\U0001ffff\U0010ffff"
FORBIDDEN = "\x00\x01\x08\x0b\x0c\r\x0e\x1b\x1f\ufffe\uffff"
FIRST = -62135596800  # 0001-01-01 00:00 UTC
END = 253402300800  # 10000-01-01 00:00 UTC


def text(chance, odds):
    characters = [chance.choice(PLAIN) for _ in range(chance.randrange(8))]
    if chance.random() < odds:
        characters.insert(chance.randrange(len(characters) + 1), chance.choice(FORBIDDEN))
    return "".join(characters)


def number(chance):
    return chance.choice([0, -1, 2**53 + 1, 2**63 - 1, -2**63, 2**64 - 1, 0.1, -0.0, 5e-324, 1.7976931348623157e308,
                          chance.uniform(-1e9, 1e9), chance.getrandbits(60), chance.gauss(0, 1) * 10.0**chance.randrange(-300, 300)])


def value(chance, odds, depth=0):
    kind = chance.randrange(4 if depth > 3 else 6)
    if kind < 2:
        return text(chance, odds)
    if kind == 2:
        return number(chance)
    if kind == 3:
        return chance.random() < 0.5
    count = chance.randrange(4)
    if kind == 4:
        return [value(chance, odds, depth + 1) for _ in range(count)]
    return {text(chance, odds): value(chance, odds, depth + 1) for _ in range(count)}


def record(chance, odds):
    date = chance.choice([chance.uniform(FIRST, END), chance.randrange(FIRST, END), FIRST, END - 1])
    if chance.random() < odds:
        date = chance.choice([FIRST - 1, END, -1e300, 1e300, 2**64 - 1])
    whole = {key: text(chance, odds) for key in ("name", "image", "amount", "planpk")}
    whole |= {"date": date, "income": chance.random() < 0.5, "expense": 1, "single": 0.0}
    # No key of the feed has an upper-case letter or is empty.
    further = {"X" + text(chance, odds): value(chance, odds) for _ in range(chance.randrange(4))}
    return whole | further


def is_portable(item):
    if isinstance(item, str):
        return not set(item) & set(FORBIDDEN)
    if isinstance(item, list):
        return all(map(is_portable, item))
    if isinstance(item, dict):
        return all(is_portable(key) and is_portable(held) for key, held in item.items())
    return True


def fault_in(records):
    """The position of the first record that must be refused for its date, else for its texts; or None."""
    for faulty in (lambda one: not FIRST <= one["date"] < END, lambda one: not is_portable(one)):
        for position, one in enumerate(records, 1):
            if faulty(one):
                return position
    return None


def exact(item):
    """A value in which all that differs is unequal, but for the sign of zero."""
    if isinstance(item, float):
        return ("real", "nan") if math.isnan(item) else ("real", (item + 0.0).hex())
    if isinstance(item, list):
        return [exact(element) for element in item]
    if isinstance(item, dict):
        return {key: exact(held) for key, held in item.items()}
    return (type(item).__name__, item)


class Portability(CompanionTest):
    def test_published_records_are_read_back_equal_or_refused(self):
        outcomes = {True: 0, False: 0}
        for seed in range(200):
            with self.subTest(seed=seed):
                chance = random.Random(seed)
                records = [record(chance, chance.choice([0, 0.02])) for _ in range(chance.randrange(1, 6))]
                published = self.run_companion("publish", "-", input=json.dumps(records).encode())
                refused = fault_in(records)
                outcomes[refused is None] += 1
                if refused is None:
                    self.assertEqual((published.returncode, published.stderr), (0, b""))
                    read = plistlib.loads(self.feed.read_bytes())
                    self.assertEqual(exact(read), exact(records))
                else:
                    self.assertEqual(published.returncode, 1)
                    self.assertRegex(published.stderr.decode(), rf"^korvel-todayctl: standard input: record {refused}: ")
        self.assertGreater(min(outcomes.values()), 40)

    def test_settings_are_read_back_equal_or_refused(self):
        outcomes = {True: 0, False: 0}
        for seed in range(200):
            with self.subTest(seed=seed):
                chance = random.Random(seed)
                odds = chance.choice([0, 0.1])
                held = {text(chance, odds): value(chance, odds) for _ in range(chance.randrange(6))}
                held["data"] = chance.randbytes(chance.randrange(100))
                held["date"] = datetime.datetime(chance.randrange(1, 10000), chance.randrange(1, 13), 1, 23, 59, 59)
                key, new = "X" + text(chance, odds).replace("\0", ""), text(chance, odds).replace("\0", "")
                self.write_settings(held)
                before = self.settings.read_bytes()
                done = self.run_companion("settings", "set", "--", key, new)
                expected = held | {key: new}
                portable = is_portable(expected)
                outcomes[portable] += 1
                if portable:
                    self.assertEqual((done.returncode, done.stderr), (0, b""))
                    self.assertEqual(exact(plistlib.loads(self.settings.read_bytes())), exact(expected))
                else:
                    self.assertEqual(done.returncode, 1)
                    self.assertRegex(done.stderr.decode(), re.escape(str(self.container)) + r": \"")
                    self.assertEqual(self.settings.read_bytes(), before)
        self.assertGreater(min(outcomes.values()), 40)

    def test_a_real_setting_that_is_not_finite_is_read_back(self):
        self.write_settings({})
        for value_text in ("nan", "inf", "-inf"):
            self.assertEqual(self.run_companion("settings", "set", "--", "edit_transaction_date", value_text).returncode, 0)
            read = plistlib.loads(self.settings.read_bytes())
            self.assertEqual(exact(read), {"edit_transaction_date": exact(float(value_text))})

    def test_a_date_of_a_setting_keeps_its_whole_seconds(self):
        self.write_settings({"date": datetime.datetime(1999, 12, 31, 23, 59, 59, 750000)})
        self.assertEqual(self.run_companion("settings", "set", "account_pk", "a").returncode, 0)
        read = plistlib.loads(self.settings.read_bytes())
        self.assertEqual(read, {"date": datetime.datetime(1999, 12, 31, 23, 59, 59), "account_pk": "a"})


if __name__ == "__main__":
    unittest.main()
