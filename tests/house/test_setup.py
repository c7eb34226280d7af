"""scripts/setup on made-up systems: dpkg-query, apt-get, id and sudo are small scripts that note their calls."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

APT = "noninteractive -q -y -o Dpkg::Use-Pty=0"
INSTALL = APT + " install --no-install-recommends"


def release(number):
    return f'ID=debian\nVERSION_ID="{number}"\n'


FILES = {
    "scripts/packages": "build g++ the compiler\nbuild cmake makes files\ntest g++ for tests too\ntest xvfb a screen\n"
                        "dock shell keeps windows\ndock:13 dockshell where it is\n",
    "os-release": release(12),
    "lists": "",  # of the available packages; "update" makes it
    "bin/id": "#!/bin/sh\necho $USER_ID\n",
    # Knows the packages in the file "installed" and ends with 1 where it is asked for others, as the real one.
    "bin/dpkg-query": """#!/bin/sh
echo query >> "$SYSTEM/calls"
shift 3
status=0
for name; do grep -qx -- "$name" "$SYSTEM/installed" && echo "installed $name" || status=1; done
exit $status
""",
    "bin/apt-get": """#!/bin/sh
echo "$DEBIAN_FRONTEND $*" >> "$SYSTEM/calls"
case "$*" in
*update) [ -n "$OFFLINE" ] || touch "$SYSTEM/lists" ;;
*) [ -e "$SYSTEM/lists" ] || exit 100
    for word; do
        case $word in install | -* | Dpkg* | $RENAMED) ;; *) echo "$word" >> "$SYSTEM/installed" ;; esac
    done ;;
esac
""",
}
SUDO = '#!/bin/sh\necho "sudo $1" >> "$SYSTEM/calls"\nshift\nexec "$@"\n'
FEDORA = "ID=fedora\nVERSION_ID=40\n"

# What it is, arguments, installed packages, files (None: absent), environment; exit status, a text of the output,
# and the calls after the first query.
CASES = [
    ("nothing is missing", "build test", "g++ cmake xvfb", {}, {}, 0, "", ""),
    ("of the named groups only", "build", "g++", {}, {}, 0, "", f"{INSTALL} cmake\nquery"),
    ("a package of two groups once", "build test", "", {}, {}, 0, "", f"{INSTALL} cmake g++ xvfb\nquery"),
    ("without the lists", "build", "g++", {"lists": None}, {}, 0, "",
     f"{INSTALL} cmake\n{APT} update\n{INSTALL} cmake\nquery"),
    ("no network", "build", "", {"lists": None}, {"OFFLINE": "1"}, 1, "could not install: cmake g++", None),
    ("a package of another name", "build", "", {}, {"RENAMED": "cmake"}, 1, "no package's own: cmake", None),
    ("the newer release", "build", "g++", {"os-release": release(13)}, {}, 0, "", f"{INSTALL} cmake\nquery"),
    ("of that release only", "dock", "", {"os-release": release(13)}, {}, 0, "", f"{INSTALL} dockshell shell\nquery"),
    ("not of another release", "dock", "", {}, {}, 0, "", f"{INSTALL} shell\nquery"),
    ("the names on another system", "--list dock", "", {"os-release": FEDORA}, {}, 0, "dockshell\nshell\n", None),
    ("an older release", "build", "", {"os-release": release(11)}, {}, 1, "neither Debian 12 nor 13; install", ""),
    ("another system", "build", "", {"os-release": FEDORA}, {}, 1, "neither Debian 12 nor 13; install", ""),
    ("told to skip", "build", "", {"os-release": FEDORA}, {"KORVEL_SETUP": "skip"}, 0, "", None),
    ("no sudo", "build", "", {}, {"USER_ID": "1000"}, 1, "as root: apt-get install --no-install-recommends cmake", ""),
    ("sudo asks nothing", "build", "g++", {"bin/sudo": SUDO}, {"USER_ID": "1000"}, 0, "",
     f"sudo -n\n{INSTALL} cmake\nquery"),
    ("the names", "--list build test", "", {}, {}, 0, "cmake\ng++\nxvfb\n", None),
    *((f"usage: {words}", words, "", {}, {}, 2, text, None)
      for words, text in (("", "usage"), ("--list", "usage"), ("games", 'no group "games"'))),
]


class Setup(unittest.TestCase):
    def run_setup(self, system, words, installed, files, environment):
        files = FILES | {"installed": "".join(name + "\n" for name in installed.split())} | files
        for name, text in files.items():
            if text is not None:
                (system / name).parent.mkdir(exist_ok=True)
                (system / name).write_text(text, encoding="utf-8")
                (system / name).chmod(0o755)
        shutil.copy(pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "scripts/setup"), system / "scripts")
        # Nothing else is on the search path, so that a sudo of this machine is not found.
        for name in ("awk", "bash", "comm", "dirname", "env", "grep", "sh", "sort", "touch"):
            (system / "bin" / name).symlink_to(shutil.which(name))
        return subprocess.run(
            ["bash", system / "scripts/setup", *words.split()], capture_output=True, text=True,
            stdin=subprocess.DEVNULL,
            env={"PATH": str(system / "bin"), "SYSTEM": str(system), "USER_ID": "0",
                 "KORVEL_OS_RELEASE": str(system / "os-release")} | environment)

    def test_cases(self):
        for what, words, installed, files, environment, status, text, calls in CASES:
            with self.subTest(what), tempfile.TemporaryDirectory() as folder:
                system = pathlib.Path(folder)
                done = self.run_setup(system, words, installed, files, environment)
                self.assertEqual(done.returncode, status, done.stderr)
                self.assertIn(text, done.stdout + done.stderr)
                if status == 0 and not calls and not text:
                    self.assertEqual(done.stdout + done.stderr, "")
                if calls is not None:
                    made = (system / "calls").read_text(encoding="utf-8").splitlines()
                    self.assertEqual(made, ["query", *calls.splitlines()])


if __name__ == "__main__":
    unittest.main()
