"""A screen on which other programs run, and what an assistive program is told of them."""

import contextlib
import dataclasses
import os
import pathlib
import sys

import bridge

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
import harness  # noqa: E402

UNTIL_SHOWN = 60.0  # seconds


@dataclasses.dataclass(frozen=True)
class Table:
    """A list on the screen; a column without a title has an empty one."""
    columns: list[str]
    cells: list[list[str]]

    def rows(self):
        return [dict(zip(self.columns, row)) for row in self.cells]


def _texts(cell):
    """What a cell says. One that has several parts says nothing itself."""
    return cell["name"] or "".join(_texts(part) for part in cell["children"])


def _nodes(node):
    yield node
    for child in node["children"]:
        yield from _nodes(child)


def _tables(node):
    for table in _nodes(node):
        columns = [_texts(each) for each in table["children"] if each["role"] == "table column header"]
        cells = [_texts(each) for each in table["children"] if each["role"] == "table cell"]
        if columns:
            yield Table(columns, [cells[at:at + len(columns)] for at in range(0, len(cells), len(columns))])


class Screen:
    """One at a time; a program that is open ends with the block that opened it."""

    def __init__(self, stack, width=1600, height=1200):
        self.desktop = harness.Desktop(width, height, accessibility=True)
        stack.callback(self.desktop.end)

    @contextlib.contextmanager
    def opened(self, command, moment, home, env=()):
        """A program in a home of its own, as if started at a moment."""
        folders = {"HOME": home, "XDG_CONFIG_HOME": home / "config", "XDG_DATA_HOME": home / "data",
                   "XDG_CACHE_HOME": home / "cache"}
        for folder in folders.values():
            folder.mkdir(parents=True, exist_ok=True)
        program = self.desktop.run(command, {name: str(path) for name, path in folders.items()} | bridge.at(moment) | dict(env))
        try:
            yield program
        except (AssertionError, RuntimeError) as error:
            if os.environ.get("KORVEL_FAILURES"):
                self.desktop.save_picture(pathlib.Path(os.environ["KORVEL_FAILURES"], f"{command[0]}.png"))
            raise RuntimeError(f"{command[0]}: {error}; it says: {program.err[-500:]}") from error
        finally:
            program.process.kill()
            program.end_status()

    def _told(self):
        """What each program tells; nothing where something goes away while it is asked."""
        try:
            return self.desktop.accessible("tree")
        except AssertionError:
            return []

    def wait_for_node(self, role, name):
        """What is told of the one thing with this role and name, once it is there."""
        def found():
            return next((node for root in self._told() for node in _nodes(root)
                         if node["role"] == role and node["name"] == name), None)
        return harness.wait_for(found, f"a {role} {name!r}", UNTIL_SHOWN)

    def table(self, *columns):
        """The list that has these columns, once it has rows and they stay as they are."""
        def found():
            before, now[:] = list(now), [each for root in self._told() for each in _tables(root)
                                         if set(columns) <= set(each.columns) and each.cells]
            return now == before and now
        now = []
        return harness.wait_for(found, f"a list with the columns {', '.join(columns)}", UNTIL_SHOWN)[0]
