"""What the shells themselves complete."""

import json
import os
import pathlib
import pty
import select
import signal
import subprocess
import tempfile
import time
import unittest

COMPLETIONS = pathlib.Path(os.environ["KORVEL_COMPLETIONS"])
DEADLINE = 30
PROMPT = "ready> "
COMMON = {"--containers", "--version", "--help"}

# A line up to the cursor, and the words that the shell finds for the last one.
CASES = {
    "korvel-todayctl ac": {"act"},
    "korvel-todayctl s": {"settings", "status"},
    "korvel-todayctl --": COMMON,
    "korvel-todayctl list --": COMMON | {"--json"},
    "korvel-todayctl list --json --": COMMON,
    "korvel-todayctl --containers=x --": COMMON - {"--containers"},
    "korvel-todayctl act --": COMMON,
    "korvel-todayctl act p d ": {"paid", "later", "delete", "delete-future", "info"},
    "korvel-todayctl act p -5 del": {"delete", "delete-future"},
    "korvel-todayctl act p d later ": set(),
    "korvel-todayctl act ": set(),
    "korvel-todayctl settings ": {"get", "set"},
    "korvel-todayctl settings get --j": {"--json"},
    "korvel-todayctl settings set --j": set(),
    "korvel-todayctl plist f --to ": {"json", "xml"},
    "korvel-todayctl plist --to xml f": {"feed one.json", "folder two/"},
    "korvel-todayctl publish fe": {"feed one.json"},
    "korvel-todayctl list fe": set(),
    "korvel-todayctl --containers f": {"folder two/"},
    "korvel-todayctl --containers x ch": {"check"},
    "korvel-todayctl help pu": {"publish"},
    "korvel-todayctl help list ": set(),
    "korvel-todayctl publish -- --fe": {"--feed"},
    "korvel-today-bridge ex": {"export"},
    "korvel-today-bridge status --": COMMON | {"--json"},
    "korvel-today-bridge update --": COMMON,
    "korvel-today-bridge connect fe": {"feed one.json"},
    "korvel-today-bridge connect x ": set(),
    "korvel-today-bridge --containers x disconnect f": {"feed one.json", "folder two/"},
    "korvel-today-bridge open ": set(),
    "korvel-today-bridge help un": {"undo"},
    "korvel-today --h": {"--help", "--hide"},
    "korvel-today --snapshot fe": {"feed one.json"},
    "korvel-today --containers f": {"folder two/"},
    "korvel-today --scale ": set(),
    "korvel-today --show f": set(),
}
# The value of an option in its own word.
JOINED = {
    "korvel-todayctl plist --to=x": {"xml"},
    "korvel-todayctl plist --to=": {"json", "xml"},
    "korvel-today --snapshot=fe": {"feed one.json"},
}


class ShellTest(unittest.TestCase):
    """The programs are others here, which note what they are given."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.files = self.home / "files"
        self.files.mkdir()
        (self.files / "folder two").mkdir()
        (self.files / "feed one.json").touch()
        (self.files / "--feed").touch()
        self.env = {"HOME": str(self.home), "ZDOTDIR": str(self.home), "TERM": "dumb", "LC_ALL": "C.UTF-8",
                    "PATH": f"{self.home}:{os.environ['PATH']}"}
        for name in ("korvel-todayctl", "korvel-today", "korvel-today-bridge"):
            program = self.home / name
            program.write_text(f"#!/bin/sh\nprintf '%s\\0' \"$@\" > '{self.home}/new'\nmv '{self.home}/new' '{self.home}/got'\n")
            program.chmod(0o755)

    @staticmethod
    def tables():
        """What the programs tell of themselves."""
        return [json.loads(subprocess.run([os.environ[program], *arguments], stdout=subprocess.PIPE, check=True).stdout)
                for program, arguments in (("KORVEL_TODAYCTL", ["help", "--json"]), ("KORVEL_BRIDGE", ["help", "--json"]),
                                           ("KORVEL_TODAY", ["--help", "--json"]))]

    def check_tables(self):
        *with_commands, panel = self.tables()
        self.check({f"{table['program']} ": {command["command"] for command in table["commands"]} for table in with_commands} | {
                    "korvel-today --": {option["name"] for option in panel["options"]}})


class LineEditorTest(ShellTest):
    """A shell that a hand types into, with a key that puts all matches into the line."""

    def start(self, command, rc):
        (self.home / ".zshrc").write_text(rc)
        (self.home / "bashrc").write_text(rc)
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(self.files)
            os.execvpe(command[0], command, self.env)
        self.addCleanup(self.end)
        self.seen = b""
        self.wait_for_prompt()

    def end(self):
        os.close(self.terminal)
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)

    def wait_for_prompt(self):
        end = time.monotonic() + DEADLINE
        while PROMPT.encode() not in self.seen:
            ready = select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]
            self.assertTrue(ready, f"no prompt after {self.seen!r}")
            self.seen += os.read(self.terminal, 4096)

    def words(self, line):
        """The arguments of the program once all matches are in the line."""
        got = self.home / "got"
        got.unlink(missing_ok=True)
        self.seen = b""
        os.write(self.terminal, line.encode() + self.key + b"\n")
        self.wait_for_prompt()
        self.assertTrue(got.exists(), self.seen)
        return got.read_text().split("\0")[:-1]

    def check(self, cases):
        for line, expected in cases.items():
            with self.subTest(line):
                *before, last = line.split(" ")[1:]
                prefix = f"{last.partition('=')[0]}=" if "=" in last else ""
                found = sorted(word.rstrip("/") for word in expected) if expected else [last] if last else []
                words = self.words(line)
                self.assertEqual(words[:len(before)], before)
                rest = [word.removeprefix(prefix) for word in words[len(before):]]
                self.assertEqual(sorted(word.rstrip("/") for word in rest), found)


class Bash(LineEditorTest):
    key = b"\x1b*"  # insert-completions

    def setUp(self):
        super().setUp()
        (self.home / "completions").symlink_to(COMPLETIONS / "bash")
        self.env["BASH_COMPLETION_USER_DIR"] = str(self.home)
        self.start(["bash", "--noprofile", "--rcfile", str(self.home / "bashrc"), "-i"],
                   f". /usr/share/bash-completion/bash_completion\nbind 'set enable-bracketed-paste off'\nPS1='{PROMPT}'\n")

    def test_completes(self):
        self.check(CASES | JOINED)

    def test_completes_all_of_the_tables(self):
        self.check_tables()


class Zsh(LineEditorTest):
    key = b"\x18a"

    def setUp(self):
        super().setUp()
        self.start(["zsh", "-d", "-i"], f"""
PS1='{PROMPT}'
fpath=('{COMPLETIONS}/zsh' $fpath)
autoload -Uz compinit
compinit -D -u
all() {{ _main_complete; compstate[insert]=all; compstate[list]=; }}
zle -C all complete-word all
bindkey '^Xa' all
""")

    def test_completes(self):
        self.check(CASES | JOINED)

    def test_completes_all_of_the_tables(self):
        self.check_tables()


class Fish(ShellTest):
    def check(self, cases):
        script = f"set fish_complete_path '{COMPLETIONS}/fish'\n" + "".join(
            f"complete -C '{line}'\necho =====\n" for line in cases)
        done = subprocess.run(["fish", "--no-config", "-c", script], env=self.env, cwd=self.files, timeout=DEADLINE,
                              capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        outputs = done.stdout.split("=====\n")[:-1]
        self.assertEqual(len(outputs), len(cases))
        for (line, expected), output in zip(cases.items(), outputs):
            with self.subTest(line):
                last = line.rpartition(" ")[2]
                prefix = f"{last.partition('=')[0]}=" if "=" in last else ""
                found = [match.split("\t")[0].removeprefix(prefix) for match in output.splitlines()]
                # Of a few letters fish 4 also tells what only has them somewhere.
                self.assertEqual(sorted(match for match in found if match.startswith(last.removeprefix(prefix))),
                                 sorted(expected))

    def test_completes(self):
        self.check(CASES | JOINED)

    def test_completes_all_of_the_tables(self):
        self.check_tables()


if __name__ == "__main__":
    unittest.main()
