"""What the bridge publishes of a file at a moment, in a home of its own."""

import dataclasses
import datetime
import decimal
import os
import pathlib
import plistlib
import re
import subprocess

ZONE = "Europe/Berlin"
STEP = 60  # seconds for anything that runs and ends by itself
DAYS_AHEAD = 31


def at(moment):
    """The environment of a program whose clock starts at a moment."""
    return {"TZ": ZONE, "LD_PRELOAD": os.environ["LIBFAKETIME"], "FAKETIME": f"@{moment:%Y-%m-%d %H:%M:%S}",
            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "DONT_FAKE_MONOTONIC": "1"}


def output(command, env):
    """What a command prints; its own words where it fails."""
    done = subprocess.run([str(word) for word in command], env=env, stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, timeout=STEP)
    if done.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {done.returncode}: {done.stderr.strip()}")
    return done.stdout


def package_version(name):
    """The program's version, without what Debian adds to it."""
    version = output(["dpkg-query", "-W", "-f", "${Version}", name], {"PATH": os.environ["PATH"]})
    return re.sub(r"^\d+:|-[^-]*$", "", version)


def money(text):
    """An amount without its sign: its number and the sign of its currency. A mark with two digits behind it at the
    end is the decimal one; all others group."""
    number = re.search(r"\d[\d.,\s]*", text)
    if not number:
        return None
    digits = re.sub(r"\s", "", number[0])
    whole, mark, cents = digits[:-3], digits[-3:-2], digits[-2:]
    if mark not in (".", ","):
        whole, cents = digits, ""
    value = decimal.Decimal(re.sub(r"\D", "", whole) + ("." + cents if cents else ""))
    return f"{value} " + re.sub(r"[\d.,\s+\-−\u2066-\u2069]", "", text)


@dataclasses.dataclass(frozen=True)
class Record:
    """An occurrence as the feed has it."""
    plan: str
    name: str
    day: datetime.date
    kind: str  # "expense", "income" or "transfer"
    amount: str | None  # of money(); none where the feed has no amount


def _record(record):
    kind = "expense" if record["expense"] else "income" if record["income"] else "transfer"
    day = datetime.datetime.fromtimestamp(record["date"]).date()
    return Record(record["planpk"], record["name"], day, kind, money(record["amount"]))


class Bridge:
    """A bridge that is connected with one file."""

    def __init__(self, folder, file):
        self._home = pathlib.Path(folder)
        self._home.mkdir()
        self._file = file

    def run(self, moment, *words):
        containers = self._home / "containers"
        env = {"PATH": os.environ["PATH"], "HOME": str(self._home), "LANG": "C.UTF-8", "LC_MONETARY": "en_US.UTF-8"}
        return output([os.environ["KORVEL_BRIDGE"], "--containers", containers, *words], env | at(moment))

    def records(self, moment):
        """What it publishes at that moment, by date."""
        self.run(moment, "connect", self._file)
        self.run(moment, "update")
        [feed] = self._home.glob("containers/*/notifications.xml")
        return [_record(record) for record in plistlib.loads(feed.read_bytes())]
