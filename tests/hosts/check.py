"""Compares what other finance programs say is due with what the bridge publishes; see scripts/check-hosts."""

import collections
import contextlib
import datetime
import importlib
import itertools
import os
import pathlib
import shutil
import sys
import tempfile
import time

import bridge

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAMS = ("hledger", "homebank", "kmymoney", "gnucash")

# A Saturday; a month's last day; the first of a year; a day that much was missed before; a leap day.
DAYS = ("2026-11-21", "2026-11-30", "2027-01-01", "2027-03-15", "2028-02-29")


class Figures:
    """How many entries were compared, and how many of them both the program and the bridge have."""

    def __init__(self):
        self.compared = self.agree = 0

    def add(self, shown, published, what):
        """Names the entries that only one has."""
        shown, published = collections.Counter(shown), collections.Counter(published)
        if not shown:
            raise RuntimeError(f"{what}: the program shows nothing")
        both, all_entries = shown & published, shown | published
        for who, entries in (("the program", shown - both), ("the bridge", published - both)):
            for entry in sorted(", ".join(map(str, entry)) for entry in entries.elements()):
                print(f"{what}: only {who} has {entry}")
        print(f"{what}: {both.total()} of {all_entries.total()}", flush=True)
        self.agree += both.total()
        self.compared += all_entries.total()


def copied(program, path, folder):
    """A copy of a made-up file and those beside it, in a folder of its own."""
    here = pathlib.Path(tempfile.mkdtemp(dir=folder))
    for name in (path, *getattr(program, "WITH", ())):
        shutil.copy(ROOT / name, here)
    return here / pathlib.Path(path).name


def check(program, folder):
    """The row of a program in the table, and whether all agrees."""
    figures = Figures()
    with contextlib.ExitStack() as stack:
        screen = program.screen(stack) if hasattr(program, "screen") else None
        for day, path in itertools.product(DAYS, program.FILES):
            moment = datetime.datetime.fromisoformat(day + "T10:00:00")
            file = copied(program, path, folder)
            records = bridge.Bridge(file.parent / "home", file).records(moment)
            figures.add(program.shown(screen, file, moment), program.published(records, file, moment.date()),
                        f"{program.__name__} {file.name} {day}")
        if hasattr(program, "carries_back"):
            here = pathlib.Path(tempfile.mkdtemp(dir=folder))
            print(f"{program.__name__}: {program.carries_back(screen, ROOT, here)}")
    version = program.version()
    row = f"| {program.NAME} {version} | {program.SHOWS} | {figures.compared} | {figures.agree} |"
    return row, figures.compared == figures.agree


def main(names):
    unknown = set(names) - set(PROGRAMS)
    if unknown:
        print(f"check-hosts: no program {unknown.pop()!r} among {' '.join(PROGRAMS)}", file=sys.stderr)
        return 2
    # Days are this process's too.
    os.environ["TZ"] = bridge.ZONE
    time.tzset()
    with tempfile.TemporaryDirectory(prefix="korvel-hosts-") as folder:
        done = [check(importlib.import_module(name), folder) for name in names or PROGRAMS]
    print(f"\nOn {', '.join(DAYS)}:\n\n| program | what it shows | compared | agree |\n|---|---|--:|--:|")
    print(*(row for row, _ in done), sep="\n")
    return 0 if all(agrees for _, agrees in done) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
