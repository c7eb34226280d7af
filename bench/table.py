#!/usr/bin/env python3
"""table.py BUILD [FOLDER...]: runs bench/FOLDER/run BUILD for each folder, one after the other, and prints what
they measured as one table.

A `run` prints one line for each figure, five fields parted by tabs:

    what was measured    ours    the yardstick    ratio    bar

"ours" and "the yardstick" are texts with their units ("0.31 ms", "0.87 ms pugixml"); the ratio is a number, and
so is the bar, the highest ratio that is good enough ("-" where a figure is only told). Lines that start with "#"
are notes and are printed below the table. The two sides of a ratio were measured in one interleaved run.
"""

import math
import pathlib
import subprocess
import sys

HEADINGS = ("what", "ours", "yardstick", "ratio", "bar", "")


class BadLine(ValueError):
    """A line that is no row of the table."""


def row(line):
    """The six cells of one line; the last says whether the bar was met."""
    fields = line.split("\t")
    if len(fields) != 5:
        raise BadLine(f"{len(fields)} fields where there should be 5: {line!r}")
    try:
        ratio = float(fields[3])
        bar = None if fields[4] == "-" else float(fields[4])
    except ValueError:
        raise BadLine(f"ratio or bar is no number: {line!r}") from None
    if not math.isfinite(ratio):
        raise BadLine(f"the ratio is not finite: {line!r}")
    verdict = "" if bar is None else "met" if ratio <= bar else "MISSED"
    return (fields[0], fields[1], fields[2], f"{ratio:.3g}", fields[4], verdict)


def table(rows):
    """The rows under their headings, in columns; texts stand left, numbers right."""
    lines = [HEADINGS, *rows]
    widths = [max(len(line[i]) for line in lines) for i in range(len(HEADINGS))]
    def cells(line):
        return (cell.rjust(width) if i in (3, 4) else cell.ljust(width)
                for i, (cell, width) in enumerate(zip(line, widths)))
    return "\n".join("  ".join(cells(line)).rstrip() for line in lines)


def main(build, names):
    here = pathlib.Path(__file__).resolve().parent
    names = names or sorted(path.parent.name for path in here.glob("*/run"))
    rows, notes, failures = [], [], []
    for name in names:
        print(f"bench/{name}", file=sys.stderr)
        done = subprocess.run([here / name / "run", pathlib.Path(build).resolve()], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, text=True)
        if done.returncode != 0:
            failures.append(f"bench/{name}/run ended with {done.returncode}")
        for line in done.stdout.splitlines():
            try:
                if line.startswith("#"):
                    notes.append(line)
                elif line:
                    rows.append(row(line))
            except BadLine as fault:
                failures.append(f"bench/{name}/run: {fault}")
    if not rows:
        failures.append("nothing was measured")
    print(table(rows))
    for line in notes:
        print(line)
    for line in failures:
        print("table.py: " + line, file=sys.stderr)
    return 1 if failures or any(cells[5] == "MISSED" for cells in rows) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
