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


def _text(cell):
    """What a cell says. One that has several parts says nothing itself."""
    return cell["name"] or "".join(_text(part) for part in cell["children"])


def _nodes(node):
    yield node
    for child in node["children"]:
        yield from _nodes(child)


def texts(node):
    """What a thing and all its parts say."""
    return [each["name"] for each in _nodes(node) if each["name"]]


def _table(node):
    """The list that a thing is; without columns where it is none."""
    columns = [_text(each) for each in node["children"] if each["role"] == "table column header"]
    cells = [_text(each) for each in node["children"] if each["role"] == "table cell"]
    return Table(columns, [cells[at:at + len(columns)] for at in range(0, len(cells), len(columns))] if columns else [])


class Screen:
    """One at a time; a program that is open ends with the block that opened it."""

    def __init__(self, stack, width=1600, height=1200):
        self.desktop = harness.Desktop(width, height, accessibility=True, env=harness.SYSTEM_FILES)
        stack.callback(self.desktop.end)

    @contextlib.contextmanager
    def opened(self, command, moment, home):
        """A program in a home of its own, as if started at a moment."""
        folders = {"HOME": home, "XDG_CONFIG_HOME": home / "config", "XDG_DATA_HOME": home / "data",
                   "XDG_CACHE_HOME": home / "cache"}
        for folder in folders.values():
            folder.mkdir(parents=True, exist_ok=True)
        env = {name: str(path) for name, path in folders.items()} | bridge.at(moment)
        program = self.desktop.run(command, env)
        try:
            yield program
        except (AssertionError, RuntimeError) as error:
            if failures := os.environ.get("KORVEL_FAILURES"):
                pathlib.Path(failures).mkdir(parents=True, exist_ok=True)
                self.desktop.save_picture(pathlib.Path(failures, f"{command[0]}.png"))
            raise RuntimeError(f"{command[0]}: {error}; it says: {program.err[-500:]}") from error
        finally:
            program.process.kill()
            program.end_status()

    def nodes(self):
        """All that the programs tell; nothing where something goes away while it is asked."""
        try:
            return [node for root in self.desktop.accessible("tree") for node in _nodes(root)]
        except AssertionError:
            return []

    def wait_for_node(self, role, *names, unlike=None):
        """The one thing with this role and one of the names, once it is there and says something else than `unlike`."""
        def found():
            return next((node for node in self.nodes() if node["role"] == role and node["name"] in names
                         and (unlike is None or texts(node) != unlike)), None)
        return harness.wait_for(found, f"a {role} {' or '.join(map(repr, names))}", UNTIL_SHOWN)

    def click(self, role, name):
        """Clicks on a thing, once it is there."""
        x, y, width, height = self.wait_for_node(role, name)["place"]
        self.desktop.xdotool("mousemove", x + width // 2, y + height // 2, "click", 1)

    def press(self, role, name):
        """Presses a thing without waiting for what that does: where it opens a dialog there is no answer before the
        dialog's end."""
        client = pathlib.Path(harness.__file__).with_name("accessible.py")
        self.desktop.start([sys.executable, "-B", client, "act", role, name, "Press"])

    def table(self, *columns):
        """The list that has these columns, once it has rows and they stay as they are."""
        def found():
            before, now[:] = list(now), [each for each in map(_table, self.nodes())
                                         if set(columns) <= set(each.columns) and each.cells]
            return now == before and now
        now = []
        return harness.wait_for(found, f"a list with the columns {', '.join(columns)}", UNTIL_SHOWN)[0]
