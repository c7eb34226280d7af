#!/usr/bin/env python3
"""includes.py SOURCE_TREE QT_HEADERS: checks who includes whom in src/ and prints one line for each fault.

A room is a folder of src/. The table says for each room which other rooms and which foreign headers its files may
include; what it does not say is forbidden. A room that only some may enter by one door is in DOORS.
"""

import collections
import pathlib
import re
import sys

Room = collections.namedtuple("Room", "rooms foreign")


def _room(rooms="", foreign=""):
    return Room(frozenset(rooms.split()), frozenset(("std " + foreign).split()))


_GROUND = "platform/plist platform/system platform/storage platform/images"
_VIEWS = "platform/views platform/images platform/system"
_WIDGETS = "QtCore QtGui QtWidgets"

ROOMS = {
    "platform/plist": _room(),
    "platform/system": _room(foreign="posix icu QtCore"),
    "platform/storage": _room("platform/plist platform/system", "posix QtCore"),
    "platform/images": _room(foreign="posix QtCore QtGui"),
    "platform/views": _room("platform/system platform/images", "fontconfig " + _WIDGETS),
    "platform/extension": _room("platform/system platform/views", _WIDGETS),
    "model": _room("platform/system", "QtCore"),
    "exchange": _room("model " + _GROUND, "QtCore QtGui"),
    "resources": _room("platform/images platform/views", "QtSvg " + _WIDGETS),
    "views/controls": _room("model " + _VIEWS, _WIDGETS),
    "views/rows": _room("views/controls model exchange " + _VIEWS, _WIDGETS),
    "controller": _room("views/rows views/controls exchange model resources platform/views platform/extension "
                        + _GROUND, _WIDGETS),
    "center": _room("controller exchange model resources platform/views platform/extension " + _GROUND,
                    "posix xcb " + _WIDGETS),
    "ctl": _room("exchange model " + _GROUND, "posix nlohmann QtCore QtGui"),
}

# The only operations that a room may name of a class of another room.
DOORS = {("views/rows", "TodayWidgetLogic"): {"imageByName"}}

STD_HEADERS = frozenset("""
    algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
    climits clocale cmath compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef
    cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format
    forward_list fstream functional future initializer_list iomanip ios iosfwd iostream istream iterator latch
    limits list locale map memory memory_resource mutex new numbers numeric optional ostream queue random ranges
    ratio regex scoped_allocator semaphore set shared_mutex source_location span sstream stack stdexcept
    stop_token streambuf string string_view syncstream system_error thread tuple type_traits typeindex typeinfo
    unordered_map unordered_set utility valarray variant vector version""".split())

_INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]')


def includes(text):
    """The (line number, opening quote, path) of each #include of a source text."""
    for number, line in enumerate(text.splitlines(), 1):
        if found := _INCLUDE.match(line):
            yield number, found[1], found[2]


def room_of(path):
    """The room that a path under src/ lies in, or none."""
    folders = pathlib.PurePosixPath(path).parts[:-1]
    for length in range(len(folders), 0, -1):
        if "/".join(folders[:length]) in ROOMS:
            return "/".join(folders[:length])
    return None


class QtHeaders:
    """Which Qt module a header belongs to, as the installed headers tell."""

    def __init__(self, folder):
        folder = pathlib.Path(folder)
        self.modules = {entry.name: module.name for module in sorted(folder.glob("Qt*")) if module.is_dir()
                        for entry in module.iterdir()}

    def module(self, path):
        head, slash, _ = path.partition("/")
        return head if slash and head.startswith("Qt") else self.modules.get(path)


def kind_of(path, qt):
    """What a foreign header belongs to: std, icu, xcb, fontconfig, nlohmann, a Qt module or posix."""
    if path in STD_HEADERS:
        return "std"
    if path.startswith("unicode/"):
        return "icu"
    for library in ("xcb", "fontconfig", "nlohmann"):
        if path.startswith(library + "/"):
            return library
    return qt.module(path) or "posix"


def _faults_of_file(src, path, qt, edges):
    name = path.relative_to(src).as_posix()
    room = room_of(name)
    if room is None:
        yield f"src/{name}: lies in no room of the table"
        return
    text = path.read_text(encoding="utf-8")
    for number, quote, target in includes(text):
        where = f"src/{name}:{number}"
        if quote == "<":
            kind = kind_of(target, qt)
            if kind not in ROOMS[room].foreign:
                yield f"{where}: {room} may not include <{target}> ({kind})"
            continue
        if re.fullmatch(r"(ui_\w+\.h|\w+\.moc)", target):
            continue
        if not (src / target).is_file() and not (src / (target + ".in")).is_file():
            yield f'{where}: there is no src/{target} (paths are relative to src/)'
            continue
        other = room_of(target)
        if other == room:
            continue
        edges[room].setdefault(other, where)
        if other not in ROOMS[room].rooms:
            yield f'{where}: {room} may not include {other} ("{target}")'
    for (guest, owner), allowed in DOORS.items():
        if guest == room:
            for called in re.findall(rf"\b{owner}::(\w+)", text):
                if called not in allowed:
                    yield f"src/{name}: {room} may not call {owner}::{called}"


def cycle(edges):
    """The rooms of one cycle of a graph of rooms (room -> rooms), or none."""
    done, path = set(), []

    def visit(room):
        if room in path:
            return path[path.index(room):] + [room]
        if room in done:
            return None
        path.append(room)
        for other in edges.get(room, ()):
            if found := visit(other):
                return found
        path.pop()
        done.add(room)
        return None

    return next((found for room in list(edges) if (found := visit(room))), None)


def faults(tree, qt):
    """Every fault of a source tree, as lines for people."""
    src = pathlib.Path(tree) / "src"
    edges = collections.defaultdict(dict)
    files = sorted(path for path in src.rglob("*") if path.suffix in (".h", ".cpp"))
    if not files:
        yield f"{src}: no sources"
    for path in files:
        yield from _faults_of_file(src, path, qt, edges)
    if found := cycle(edges):
        yield "the rooms include each other in a circle: " + " -> ".join(found)


def main(tree, qt_headers):
    found = list(faults(tree, QtHeaders(qt_headers)))
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
