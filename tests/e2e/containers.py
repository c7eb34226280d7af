"""A container folder as a host application leaves it, written with Python's own property lists."""

import os
import pathlib
import plistlib
import zlib


def png(width, height):
    """A PNG file of one opaque colour."""
    def chunk(kind, data):
        return (len(data).to_bytes(4, "big") + kind + data + zlib.crc32(kind + data).to_bytes(4, "big"))
    header = width.to_bytes(4, "big") + height.to_bytes(4, "big") + bytes((8, 2, 0, 0, 0))
    pixels = (b"\0" + b"\x30\x90\x60" * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(pixels))
            + chunk(b"IEND", b""))

# 2020-01-01 12:00 UTC. What was due an hour ago lies past the limit on the last day of a month.
LONG_AGO = 1577880000.0


def transaction(number, **changes):
    """A record of the feed, an hour further back for each number: years overdue, so that no month's end hides it."""
    record = {"date": LONG_AGO - 3600.0 * number, "name": f"Transaction {number}", "image": "glyph",
              "amount": f"{number}.00", "income": False, "expense": True, "planpk": f"plan-{number}", "single": True}
    return record | changes


class Container:
    """`containers` is the folder that --containers takes; the container itself is `folder`."""

    def __init__(self, containers, account="anna"):
        self.containers = pathlib.Path(containers)
        self.folder = self.containers / os.environ["KORVEL_GROUP"]
        self.account = self.folder / account
        (self.account / "icons").mkdir(parents=True)
        (self.account / "icons" / "glyph.png").write_bytes(png(36, 36))
        self.settings = {"account_pk": account, "show_transactions_count": 5, "notification_days_count": 0}
        self.write_settings()

    def write_settings(self, **changes):
        self.settings |= changes
        preferences = self.folder / "Library" / "Preferences"
        preferences.mkdir(parents=True, exist_ok=True)
        with (preferences / f"{self.folder.name}.plist").open("wb") as file:
            plistlib.dump(self.settings, file)

    def write_feed(self, records):
        with (self.folder / "notifications.xml").open("wb") as file:
            plistlib.dump(records, file)
