"""scripts/setup on made-up systems: dpkg-query and apt-get are small scripts that note how they were called."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PACKAGES = "build g++ the compiler\nbuild cmake makes the build files\ntest g++ once more for tests\ntest xvfb a screen\n"

# Knows the packages that the file "installed" lists, and ends with 1 where it is asked for others, as the real one.
DPKG_QUERY = """#!/bin/sh
echo call >> "$SYSTEM/queries"
shift 3
status=0
for name; do
    if grep -qx -- "$name" "$SYSTEM/installed"; then echo "installed $name"; else status=1; fi
done
exit $status
"""

# "install" works when the file "lists" is there, which "update" makes.
APT_GET = """#!/bin/sh
echo "$DEBIAN_FRONTEND: $*" >> "$SYSTEM/calls"
case "$*" in
*update) [ ! -e "$SYSTEM/offline" ] && touch "$SYSTEM/lists" ;;
*install*) [ -e "$SYSTEM/lists" ] || exit 100
    for word; do case $word in install | -* | Dpkg*) ;; *) echo "$word" >> "$SYSTEM/installed" ;; esac; done ;;
esac
"""


class Setup(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.system = pathlib.Path(folder.name)
        (self.system / "scripts").mkdir()
        shutil.copy(pathlib.Path(os.environ["KORVEL_SOURCE_DIR"], "scripts/setup"), self.system / "scripts")
        self.write("scripts/packages", PACKAGES)
        self.write("os-release", 'ID=debian\nVERSION_ID="12"\n')
        self.write("installed", "")
        self.write("lists", "")
        for name, text in (("dpkg-query", DPKG_QUERY), ("apt-get", APT_GET), ("id", "#!/bin/sh\necho 0\n")):
            self.write(f"bin/{name}", text)
            (self.system / "bin" / name).chmod(0o755)
        # Nothing else is on the search path, so that a sudo of this machine is not there either.
        for name in ("awk", "bash", "comm", "dirname", "env", "grep", "sh", "sort", "touch"):
            (self.system / "bin" / name).symlink_to(shutil.which(name))

    def write(self, name, text):
        (self.system / name).parent.mkdir(exist_ok=True)
        (self.system / name).write_text(text, encoding="utf-8")

    def run_setup(self, *words, **env):
        return subprocess.run(
            ["bash", self.system / "scripts/setup", *words], stdin=subprocess.DEVNULL, capture_output=True, text=True,
            env={"PATH": str(self.system / "bin"), "SYSTEM": str(self.system),
                 "KORVEL_OS_RELEASE": str(self.system / "os-release")} | env)

    def lines(self, name):
        path = self.system / name
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []

    def assert_ends(self, done, status, *texts):
        self.assertEqual(done.returncode, status, done.stderr)
        for text in texts:
            self.assertIn(text, done.stderr)

    def test_asks_once_and_says_nothing_when_nothing_is_missing(self):
        self.write("installed", "g++\ncmake\nxvfb\n")
        done = self.run_setup("build", "test")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual(len(self.lines("queries")), 1)
        self.assertEqual(self.lines("calls"), [])

    def test_installs_what_is_missing_of_the_named_groups_only(self):
        self.write("installed", "g++\n")
        self.assert_ends(self.run_setup("build"), 0)
        self.assertEqual(self.lines("calls"), [
            "noninteractive: -q -y -o Dpkg::Use-Pty=0 install --no-install-recommends cmake"])

    def test_installs_a_package_of_two_groups_once(self):
        self.assert_ends(self.run_setup("build", "test"), 0)
        self.assertEqual(sorted(self.lines("installed")), ["cmake", "g++", "xvfb"])

    def test_fetches_the_lists_when_installing_fails_without_them(self):
        (self.system / "lists").unlink()
        self.assert_ends(self.run_setup("build"), 0)
        self.assertEqual([line.split()[5] for line in self.lines("calls")], ["install", "update", "install"])

    def test_fails_when_the_packages_cannot_be_had(self):
        (self.system / "lists").unlink()
        self.write("offline", "")
        self.assert_ends(self.run_setup("build"), 1, "could not install: cmake g++")

    def test_fails_on_a_name_that_is_installed_under_another(self):
        self.write("bin/apt-get", "#!/bin/sh\ntrue\n")
        self.assert_ends(self.run_setup("build"), 1, "no package's own: cmake g++")

    def test_names_the_packages_on_another_system_and_changes_nothing(self):
        self.write("os-release", "ID=fedora\nVERSION_ID=40\n")
        self.assert_ends(self.run_setup("build"), 1, "not Debian 12", "cmake g++")
        self.assertEqual(self.lines("calls"), [])

    def test_goes_on_without_a_word_when_told_to_skip(self):
        self.write("os-release", "ID=fedora\nVERSION_ID=40\n")
        done = self.run_setup("build", KORVEL_SETUP="skip")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_tells_a_user_without_sudo_what_to_do(self):
        self.write("bin/id", "#!/bin/sh\necho 1000\n")
        done = self.run_setup("build")
        self.assert_ends(done, 1, "as root: apt-get install --no-install-recommends cmake g++")
        self.assertEqual(self.lines("calls"), [])

    def test_installs_through_sudo_without_asking_where_nobody_could_answer(self):
        self.write("bin/id", "#!/bin/sh\necho 1000\n")
        self.write("bin/sudo", '#!/bin/sh\necho "sudo $1" >> "$SYSTEM/sudo"\nshift\nexec "$@"\n')
        (self.system / "bin/sudo").chmod(0o755)
        self.assert_ends(self.run_setup("build"), 0)
        self.assertEqual(self.lines("sudo"), ["sudo -n"])

    def test_lists_the_names(self):
        done = self.run_setup("--list", "build", "test")
        self.assertEqual((done.returncode, done.stdout), (0, "cmake\ng++\nxvfb\n"))

    def test_wrong_usage(self):
        self.assert_ends(self.run_setup(), 2, "usage")
        self.assert_ends(self.run_setup("--list"), 2, "usage")
        self.assert_ends(self.run_setup("games"), 2, 'no group "games"')


if __name__ == "__main__":
    unittest.main()
