"""A container folder as a host application leaves it."""

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


def property_list(value):
    """The bytes of a property list as the platform and the widget write it."""
    return ('<?xml version="1.0" encoding="UTF-8"?>\n<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" '
            '"http://www.apple.com/DTDs/PropertyList-1.0.dtd">\n<plist version="1.0">\n'
            f"{_element(value, '')}</plist>\n").encode()


def _element(value, indent):
    deeper = indent + "\t"
    if isinstance(value, bool):
        return f"{indent}<{str(value).lower()}/>\n"
    if isinstance(value, int):
        return f"{indent}<integer>{value}</integer>\n"
    if isinstance(value, float):
        return f"{indent}<real>{'0.0' if value == 0 else format(value, '.17g')}</real>\n"
    if isinstance(value, str):
        return f"{indent}<string>{_escaped(value)}</string>\n"
    if not value:
        return f"{indent}<{'dict' if isinstance(value, dict) else 'array'}/>\n"
    if isinstance(value, list):
        return f"{indent}<array>\n" + "".join(_element(part, deeper) for part in value) + f"{indent}</array>\n"
    parts = "".join(f"{deeper}<key>{_escaped(key)}</key>\n{_element(value[key], deeper)}" for key in sorted(value))
    return f"{indent}<dict>\n{parts}{indent}</dict>\n"


def _escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


class Container:
    """`containers` is the folder that --containers takes; the container itself is `folder`."""

    def __init__(self, containers, account="anna"):
        self.containers = pathlib.Path(containers)
        self.folder = self.containers / os.environ["KORVEL_GROUP"]
        self.account = self.folder / account
        (self.account / "icons").mkdir(parents=True, exist_ok=True)
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
        (self.folder / "notifications.xml").write_bytes(property_list(records))
