"""The manifest of the Flatpak, as flatpak-builder understands it, and what its programs are started by."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
PACKAGING = SOURCE / "packaging"
IDENTIFIER = "com.korvel.today"


class Flatpak(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if not shutil.which("flatpak-builder"):
            print("not run: flatpak-builder is not installed", file=sys.stderr)
            raise unittest.SkipTest("flatpak-builder is not installed")
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(
                ["flatpak-builder", "--show-manifest", PACKAGING / f"{IDENTIFIER}.yml"], cwd=folder,
                env=os.environ | {"HOME": folder, "XDG_DATA_HOME": folder}, capture_output=True, text=True, check=True)
        cls.manifest = json.loads(done.stdout)
        cls.permissions = cls.manifest["finish-args"]

    def test_permissions_are_those_that_the_page_explains(self):
        page = (SOURCE / "docs" / "flatpak.md").read_text(encoding="utf-8")
        explained = re.findall(r"^\| `(--[^`]*)` \| \S", page, re.M)
        self.assertEqual(explained, self.permissions)

    def test_permissions_reach_one_folder_no_network_and_no_whole_bus(self):
        kinds = {}
        for permission in self.permissions:
            kind, _, what = permission.partition("=")
            kinds.setdefault(kind, set()).add(what)
        self.assertEqual(kinds.keys(), {"--socket", "--share", "--filesystem", "--talk-name", "--system-talk-name"})
        self.assertEqual(kinds["--filesystem"], {f"xdg-data/group-containers/{os.environ['KORVEL_GROUP']}"})
        self.assertEqual(kinds["--share"], {"ipc"})
        self.assertEqual(kinds["--socket"], {"wayland", "fallback-x11"})
        for name in kinds["--talk-name"] | kinds["--system-talk-name"]:
            self.assertNotIn("*", name)
        # It starts whatever it is asked for, outside.
        self.assertNotIn("org.freedesktop.Flatpak", kinds["--talk-name"])
        self.assertNotIn("org.freedesktop.systemd1", kinds["--talk-name"])

    def test_names_are_those_of_the_program(self):
        self.assertEqual(self.manifest["id"], IDENTIFIER)
        for name in (f"{IDENTIFIER}.desktop", f"{IDENTIFIER}.service.in"):
            self.assertTrue((PACKAGING / name).exists(), name)
        self.assertEqual(self.manifest["command"], "korvel-today")

    def test_commands_take_files_that_are_there(self):
        commands = "\n".join(self.manifest["modules"][-1]["build-commands"])
        taken = set(re.findall(r"\bpackaging/[\w./-]+", commands))
        self.assertGreaterEqual(len(taken), 4, commands)
        for path in taken:
            self.assertTrue((SOURCE / path).exists(), path)


class Start(unittest.TestCase):
    """The script that programs in a sandbox are started by."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        script = (PACKAGING / "flatpak" / "start").read_text(encoding="utf-8")
        self.assertEqual(script.count("/app/libexec"), 1)
        (self.folder / "korvel-today").write_text(script.replace("/app/libexec", f"{self.folder}/libexec"), encoding="utf-8")
        (self.folder / "libexec").mkdir()
        program = self.folder / "libexec" / "korvel-today"
        program.write_text('#!/bin/sh\nprintf "%s\\n" "$KORVEL_GROUP_CONTAINERS" "$@"\n', encoding="utf-8")
        program.chmod(0o755)

    def started(self, **variables):
        """The folder of containers that the program is told."""
        done = subprocess.run(["sh", self.folder / "korvel-today", "--show", "a b"], capture_output=True, text=True, check=True,
                              env={"PATH": os.environ["PATH"], "HOME": "/home/anna",
                                   "XDG_DATA_HOME": "/home/anna/.var/app/com.korvel.today/data"} | variables)
        containers, *arguments = done.stdout.splitlines()
        self.assertEqual(arguments, ["--show", "a b"])
        return containers

    def test_takes_the_users_data_folder(self):
        self.assertEqual(self.started(), "/home/anna/.local/share/group-containers")

    def test_takes_the_data_folder_that_the_session_has_set(self):
        self.assertEqual(self.started(HOST_XDG_DATA_HOME="/data/of anna"), "/data/of anna/group-containers")

    def test_takes_the_folder_that_it_is_told(self):
        self.assertEqual(self.started(KORVEL_GROUP_CONTAINERS="/elsewhere"), "/elsewhere")


if __name__ == "__main__":
    unittest.main()
