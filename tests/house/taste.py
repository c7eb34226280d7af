#!/usr/bin/env python3
"""taste.py TREE: checks what this project's sources never hold and always have; prints one line for each fault."""

import collections
import pathlib
import re
import subprocess
import sys

MAX_LINES = 450

Rule = collections.namedtuple("Rule", "folders suffixes pattern why")

# Some patterns are written with a one-letter class, so that this file does not match itself.
RULES = [
    Rule("src", ".h .cpp", r"\bQSave[F]ile\b", "loses data on a full disk; platform/storage replaces files"),
    Rule("src", ".h .cpp", r"\bQDesktop[S]ervices\b", "changes the URL's spelling; platform::Workspace opens URLs"),
    Rule("src", ".h .cpp .ui", r"\bset[S]tyleSheet\b|\"styleSheet\"", "costs 176 µs and 140 KB a row"),
    Rule("src", ".h .cpp", r"\bQUi[L]oader\b", "starts slowly; interface files are compiled"),
    Rule("src", ".h .cpp .ui", r"\bQ[L]abel\b", "twice the time and size of platform::Label"),
    Rule("src", ".h .cpp .ui", r"\bQ(V|H)?(Box|Grid|Form|Stacked)?[L]ayout\b", "rows are laid out by constraints"),
    Rule("src", ".h .cpp", r"^\s*(class|struct)\b.*\bQ_OBJ[E]CT\b", "escapes moc when on one line with the class"),
    Rule("tests bench", ".h .cpp .py .sh", r"\bsleep_([f]or|until)\b|\bqWa[i]t\b|\bu[s]leep\b|\btime\.[s]leep\b",
         "tests wait for conditions, not for time"),
    Rule("tests", ".h .cpp .py", r"\bGTEST_SK[I]P\b|\bQSK[I]P\b|\bDISABLED[_]|\bskip(Test|If|Unless)\b",
         "a test runs or is no test"),
    Rule("tests bench", ".h .cpp .py", r"EXPECT_TRUE\(t[r]ue\)|assertTrue\(T[r]ue\)", "asserts nothing"),
    Rule("src bench demo scripts cmake docs packaging", ".h .cpp .py .txt .cmake .ui .json .md .in",
         r"(?<![\w$}~])/(home|root|Users)/\w", "a path of one machine"),
    Rule("tests", ".h .cpp .py", r"[\"'( ]/t[m]p/\w\w", "a fixed path that two runs would share"),
]


def _files(tree, folders, suffixes=None):
    for folder in folders.split():
        for path in sorted((tree / folder).rglob("*")):
            if path.is_file() and "__pycache__" not in path.parts:
                if suffixes is None or path.suffix in suffixes.split():
                    yield path


def patterns(tree):
    """The lines that match a rule."""
    for rule in RULES:
        found = re.compile(rule.pattern)
        for path in _files(tree, rule.folders, rule.suffixes):
            for number, line in enumerate(path.read_text(encoding="utf-8", errors="replace").splitlines(), 1):
                if match := found.search(line):
                    yield f"{path.relative_to(tree)}:{number}: {match[0].strip()}: {rule.why}"


def lengths(tree):
    """The sources that are too long to read at one sitting."""
    for path in _files(tree, "src tests bench demo", ".h .cpp"):
        lines = len(path.read_text(encoding="utf-8").splitlines())
        if lines > MAX_LINES:
            yield f"{path.relative_to(tree)}: {lines} lines where {MAX_LINES} are the limit"


def headers(tree):
    """The headers that could be included twice."""
    for path in _files(tree, "src tests bench demo", ".h"):
        if not re.search(r"^#pragma once$", path.read_text(encoding="utf-8"), re.MULTILINE):
            yield f"{path.relative_to(tree)}: no #pragma once"


def packages(tree):
    """The lines of scripts/packages that are no package with a reason, or that stand there twice."""
    seen = set()
    listing = tree / "scripts/packages"
    for number, line in enumerate(listing.read_text(encoding="utf-8").splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        group, package, *why = line.split() + [""] * (2 - len(line.split()))
        if len(why) < 2:
            yield f"scripts/packages:{number}: no reason for \"{package}\""
        if (group, package) in seen:
            yield f"scripts/packages:{number}: {package} stands twice in {group}"
        seen.add((group, package))


def _is_shell_script(path):
    with path.open("rb") as file:
        first = file.readline(80)
    return first.startswith(b"#!") and re.search(rb"\b(ba)?sh\b", first) is not None


def shell_scripts(tree):
    """The shell scripts of the tree."""
    top = [tree / name for name in ("run", "test")]
    return [path for path in [*top, *_files(tree, "scripts demo bench packaging tests .ci")]
            if path.is_file() and _is_shell_script(path)]


def scripts(tree):
    """The shell scripts that bash cannot read, or that go on after an error."""
    for path in shell_scripts(tree):
        name = path.relative_to(tree)
        checked = subprocess.run(["bash", "-n", path], capture_output=True, text=True)
        if checked.returncode != 0:
            yield f"{name}: {checked.stderr.strip()}"
        text = path.read_text(encoding="utf-8")
        commands = [line for line in text.splitlines() if line and not line.startswith("#")]
        if len(commands) > 1 and not re.search(r"^set -eu(o pipefail)?$", text, re.MULTILINE):
            yield f"{name}: no 'set -eu'"
        if not path.stat().st_mode & 0o100:
            yield f"{name}: cannot be executed"


CHECKS = (patterns, lengths, headers, packages, scripts)


def main(tree):
    found = [line for check in CHECKS for line in check(pathlib.Path(tree))]
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
