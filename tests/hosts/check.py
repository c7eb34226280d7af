"""Compares what other finance programs say is due with what the bridge publishes; see scripts/check-hosts."""

import collections
import contextlib
import datetime
import importlib
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
    def __init__(self):
        self.compared = self.agree = 0

    def add(self, shown, published, what):
        """Counts the entries that both have, and names those that only one has."""
        shown, published = collections.Counter(shown), collections.Counter(published)
        both = shown & published
        self.agree += both.total()
        self.compared += (shown | published).total()
        for entry in sorted((shown - both).elements(), key=str):
            print(f"{what}: only the program has {_text(entry)}")
        for entry in sorted((published - both).elements(), key=str):
            print(f"{what}: only the bridge has {_text(entry)}")
        print(f"{what}: {both.total()} of {(shown | published).total()}", flush=True)
        if not shown:
            raise RuntimeError(f"{what}: the program shows nothing")


def _text(entry):
    return ", ".join(map(str, entry))


def check(program, folder):
    """The row of a program in the table, and whether all agrees."""
    figures = Figures()
    with contextlib.ExitStack() as stack:
        screen = program.screen(stack) if hasattr(program, "screen") else None
        version = program.version(screen)
        for day in DAYS:
            moment = datetime.datetime.fromisoformat(day + "T10:00:00")
            for path in program.FILES:
                here = pathlib.Path(tempfile.mkdtemp(dir=folder))
                for name in (path, *getattr(program, "WITH", ())):
                    shutil.copy(ROOT / name, here)
                file = here / pathlib.Path(path).name
                published = program.published(bridge.Bridge(here / "home", file).records(moment), file, moment.date())
                shown = program.shown(screen, file, moment)
                figures.add(shown, published, f"{program.__name__} {file.name} {day}")
    row = f"| {program.__name__} {version} | {program.SHOWS} | {len(DAYS)} | {figures.compared} | {figures.agree} |"
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
    print("\n| program | what it shows | dates | compared | agree |\n|---|---|--:|--:|--:|")
    print(*(row for row, _ in done), sep="\n")
    return 0 if all(agrees for _, agrees in done) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
