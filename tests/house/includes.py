"""Who may include whom in src/. A room is a folder of src/; what the tables do not allow is forbidden."""

import pathlib
import re

_PLATFORM = "platform/plist platform/system platform/storage platform/images "
_VIEWS = "platform/views platform/images platform/system "
_WIDGETS = "QtCore QtGui QtWidgets"

# Room: the other rooms that it may include, and the foreign headers beside those of C++.
ROOMS = {room: (set(rooms.split()), {"std", *foreign.split()}) for room, rooms, foreign in (
    ("platform/plist", "", ""),
    ("platform/system", "", "posix icu QtCore"),
    ("platform/storage", "platform/plist platform/system", "posix QtCore"),
    ("platform/confinement", "platform/storage platform/system", "posix seccomp"),
    ("platform/images", "", "posix QtCore QtGui QtSvg"),
    ("platform/desktop", "", "wayland QtCore QtGui"),
    ("platform/views", "platform/system platform/images", _WIDGETS),
    ("platform/extension", "platform/system platform/views", _WIDGETS),
    ("model", "platform/system", "QtCore"),
    ("exchange", "model " + _PLATFORM, "QtCore QtGui"),
    ("resources", "platform/images platform/views", _WIDGETS),
    ("views/controls", "model " + _VIEWS, _WIDGETS),
    ("views/rows", "views/controls model exchange " + _VIEWS, _WIDGETS),
    ("controller", "views/rows views/controls exchange model resources platform/views platform/extension " + _PLATFORM,
     _WIDGETS),
    ("channel", "", "posix QtCore"),
    ("panel", "channel controller exchange model resources platform/views platform/extension platform/confinement "
     "platform/desktop " + _PLATFORM,
     "posix xcb " + _WIDGETS),
    ("center", "channel model resources platform/desktop " + _PLATFORM, "posix QtDBus " + _WIDGETS),
    ("program", "center panel model resources " + _PLATFORM, "posix " + _WIDGETS),
    ("ctl", "exchange model platform/confinement " + _PLATFORM, "posix nlohmann QtCore QtGui"),
    ("bridge/plans", "", ""),
    ("bridge/icons", "bridge/plans", "QtCore"),
    ("bridge/sources", "bridge/plans", "posix nlohmann zlib QtCore"),
    ("bridge", "bridge/plans bridge/icons bridge/sources exchange model platform/plist platform/storage platform/system",
     "posix icu nlohmann sqlite QtCore"),
)}

# Room: its private folders. Only its own sources and the headers of these folders include what is in them.
PRIVATE = {"platform/plist": ("xml", "binary", "ascii", "text")}

# Room and class of another room: the operations of the class that the room may call.
OPERATIONS = {("views/rows", "TodayWidgetLogic"): {"imageByName"}}

_INCLUDE = re.compile(r'^\s*#\s*include\s*(["<])([^">]+)[">]', re.MULTILINE)
_GENERATED = re.compile(r"ui_\w+\.h|\w+\.moc")


def room_of(path):
    """The room that a path below src/ lies in, or None."""
    return next((str(folder) for folder in pathlib.PurePosixPath(path).parents if str(folder) in ROOMS), None)


def qt_modules(folder):
    """The Qt module of each header that is installed in a folder."""
    return {entry.name: module.name for module in sorted(pathlib.Path(folder).glob("Qt*")) if module.is_dir()
            for entry in module.iterdir()}


def library_of(header, qt):
    """The library that a foreign header belongs to: std, icu, xcb, seccomp, zlib, sqlite, nlohmann, wayland, a Qt
    module or posix."""
    folder, slash, _ = header.partition("/")
    if slash and (folder in ("unicode", "xcb", "nlohmann") or folder.startswith("Qt")):
        return "icu" if folder == "unicode" else folder
    if folder == "LayerShellQt" or header == "wayland-client.h":
        return "wayland"
    if header in ("seccomp.h", "zlib.h", "sqlite3.h"):
        return header.removesuffix(".h").rstrip("3")
    return qt.get(header) or ("posix" if slash or "." in header else "std")


def _is_private_to_another(name, target):
    owner = room_of(target)
    folders = [f"{owner}/{folder}/" for folder in PRIVATE.get(owner, ())]
    if not target.startswith(tuple(folders)) or name.startswith(tuple(folders)):
        return False
    return room_of(name) != owner or name.endswith(".h")


def _fault(src, name, room, quote, target, qt):
    """What is wrong with one #include, or None."""
    if quote == "<":
        library = library_of(target, qt)
        return None if library in ROOMS[room][1] else f"{room} may not include <{target}> ({library})"
    if _GENERATED.fullmatch(target):
        return None
    if not any((src / file).is_file() for file in (target, target + ".in")):
        return f"there is no src/{target} (paths are relative to src/)"
    if room_of(target) not in ROOMS[room][0] | {room}:
        return f'{room} may not include {room_of(target)} ("{target}")'
    if _is_private_to_another(name, target):
        return f'"{target}" is private to the sources of {room_of(target)}'
    return None


def faults(tree, qt):
    """The faults of a source tree, one line each. qt is the result of qt_modules."""
    src = pathlib.Path(tree, "src")
    files = sorted(path for path in src.rglob("*") if path.suffix in (".h", ".cpp"))
    if not files:
        yield f"{src}: no sources"
    for path in files:
        name, text = path.relative_to(src).as_posix(), path.read_text(encoding="utf-8")
        room = room_of(name)
        if room is None:
            yield f"src/{name}: lies in no room of the table"
            continue
        for found in _INCLUDE.finditer(text):
            if fault := _fault(src, name, room, *found.groups(), qt):
                yield f"src/{name}:{text.count(chr(10), 0, found.start(1)) + 1}: {fault}"
        for (guest, owner), allowed in OPERATIONS.items():
            for called in set(re.findall(rf"\b{owner}::(\w+)", text) if guest == room else ()) - allowed:
                yield f"src/{name}: {room} may not call {owner}::{called}"
