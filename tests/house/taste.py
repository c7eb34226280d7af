"""What this project's sources never hold and always have."""

import pathlib
import re
import subprocess

MAX_LINES = 450
CODE = ".h .cpp"
SCRIPTED = ".h .cpp .py .sh"

# What the panel consists of. The centre's windows are ordinary ones, of the toolkit's own widgets.
SPARING = "src/platform src/model src/exchange src/controller src/views src/resources src/panel"

# Folders, suffixes, pattern, reason. Some patterns hold a class of one letter so that this file does not match itself.
RULES = [
    ("src", CODE, r"\bQSave[F]ile\b", "can lose data on a full disk; platform/storage replaces files"),
    ("src", CODE, r"\bQDesktop[S]ervices\b", "changes the URL's spelling; platform::Workspace opens URLs"),
    ("src", CODE + " .ui", r"\bset[S]tyleSheet\b|\"styleSheet\"", "views draw themselves"),
    ("src", CODE, r"\bQUi[L]oader\b", "interface files are compiled"),
    (SPARING, CODE + " .ui", r"\bQ[L]abel\b", "texts are platform::Label"),
    (SPARING, CODE + " .ui", r"\bQ(V|H)?(Box|Grid|Form|Stacked)?[L]ayout\b", "rows are laid out by constraints"),
    ("src", CODE, r"^\s*(class|struct)\b.*\bQ_OBJ[E]CT\b", "moc misses it on the line of the class"),
    ("tests bench", SCRIPTED, r"\bsleep_([f]or|until)\b|\bqWa[i]t\b|\bu[s]leep\b|\btime\.[s]leep\b",
     "tests wait for conditions, not for time"),
    ("tests", SCRIPTED, r"\bGTEST_SK[I]P\b|\bQSK[I]P\b|\bDISABLED[_]|\bskip(Test|If|Unless)\b", "a skipped test"),
    ("tests bench", SCRIPTED, r"EXPECT_TRUE\(t[r]ue\)|assertTrue\(T[r]ue\)", "asserts nothing"),
    ("src bench demo scripts cmake docs packaging", SCRIPTED + " .txt .cmake .ui .json .md .in",
     r"(?<![\w$}~])/(home|root|Users)/\w", "a path of one machine"),
    ("tests", SCRIPTED, r"[\"'( ]/t[m]p/\w\w", "a fixed path, which two runs would share"),
]


def _files(tree, folders, suffixes=None):
    for path in sorted(path for folder in folders.split() for path in (tree / folder).rglob("*")):
        if path.is_file() and "__pycache__" not in path.parts and (not suffixes or path.suffix in suffixes.split()):
            yield path, path.read_text(encoding="utf-8", errors="replace")


def patterns(tree):
    """The lines that match a rule."""
    for folders, suffixes, pattern, why in RULES:
        for path, text in _files(tree, folders, suffixes):
            for number, line in enumerate(text.splitlines(), 1):
                if found := re.search(pattern, line):
                    yield f"{path.relative_to(tree)}:{number}: {found[0].strip()}: {why}"


def lengths(tree):
    """The sources that are too long to read at one sitting."""
    for path, text in _files(tree, "src tests bench demo", CODE):
        if (lines := len(text.splitlines())) > MAX_LINES:
            yield f"{path.relative_to(tree)}: {lines} lines where {MAX_LINES} are the limit"


def packages(tree):
    """The lines of scripts/packages that are not "GROUP PACKAGE REASON"; a reason has two words at least."""
    for number, line in enumerate((tree / "scripts/packages").read_text(encoding="utf-8").splitlines(), 1):
        if line and not line.startswith("#") and len(line.split()) < 4:
            yield f"scripts/packages:{number}: no reason for the package"


def shell_scripts(tree):
    """The shell scripts of the tree and their texts."""
    top = [(path, path.read_text(encoding="utf-8")) for path in (tree / "run", tree / "test") if path.is_file()]
    return [(path, text) for path, text in [*top, *_files(tree, "scripts demo bench packaging tests .ci")]
            if re.match(r"#!.*\b(ba)?sh\b", text)]


def scripts(tree):
    """The shell scripts that bash cannot read, that continue after an error or that are not executable."""
    for path, text in shell_scripts(tree):
        checked = subprocess.run(["bash", "-n", path], capture_output=True, text=True)
        commands = re.findall(r"^[^#\n].*$", text, re.MULTILINE)
        for is_wrong, what in ((checked.returncode != 0, checked.stderr.strip()),
                               (len(commands) > 1 and not re.search(r"^set -eu(o pipefail)?$", text, re.MULTILINE),
                                "no 'set -eu'"),
                               (not path.stat().st_mode & 0o100, "cannot be executed")):
            if is_wrong:
                yield f"{path.relative_to(tree)}: {what}"


def faults(tree):
    """The faults of a source tree, one line each."""
    return [line for check in (patterns, lengths, packages, scripts) for line in check(tree)]
