"""What `cmake --install` puts where: the files of a system that the panel is installed on, as their readers understand them."""

import configparser
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

SOURCE = pathlib.Path(os.environ["KORVEL_SOURCE_DIR"])
BUILD = os.environ["KORVEL_BUILD"]
IDENTIFIER = "com.korvel.today"
BRIDGE_ENTRY = "zz-korvel-today-bridge.desktop"
UNITS = ("korvel-today.service", "korvel-today-bridge.service", "korvel-today-bridge@.path", "korvel-today-bridge.timer")
SIDES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
EXPECTED = {
    "bin/korvel-today", "bin/korvel-todayctl", "bin/korvel-today-bridge",
    *(f"lib/systemd/user/{unit}" for unit in UNITS),
    f"share/dbus-1/services/{IDENTIFIER}.service",
    f"share/applications/{IDENTIFIER}.desktop", f"share/applications/{BRIDGE_ENTRY}",
    f"etc/xdg/autostart/{IDENTIFIER}.desktop",
    f"share/metainfo/{IDENTIFIER}.metainfo.xml",
    *(f"share/icons/hicolor/{side}x{side}/apps/{IDENTIFIER}.png" for side in SIDES),
    f"share/icons/hicolor/scalable/apps/{IDENTIFIER}.svg",
    f"share/icons/hicolor/symbolic/apps/{IDENTIFIER}-symbolic.svg",
    f"share/icons/hicolor/symbolic/apps/{IDENTIFIER}-overdue-symbolic.svg",
}
# Manual pages and completions have tests of their own, as what docks the panel, which is built where LayerShellQt is.
OF_OTHERS = re.compile(r"share/(man|bash-completion|zsh|fish)/|lib/(\S+/)?korvel-today/layer-shell\.so$")


def said(*command, **options):
    """What a command prints on either stream, and how it ended."""
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, **options)
    return done.returncode, done.stdout


def entries(path):
    """The groups of a desktop entry, a unit or a file of the session bus, without the names that stand more than once."""
    parser = configparser.ConfigParser(delimiters="=", comment_prefixes="#", interpolation=None, strict=False)
    parser.optionxform = str
    parser.read_string(path.read_text(encoding="utf-8"))
    return parser


class InstallTest(unittest.TestCase):
    """Installs into a folder that is gone after the test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="korvel install ")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def install(self, prefix, **variables):
        status, output = said("cmake", "--install", BUILD, "--prefix", prefix, env=os.environ | variables)
        self.assertEqual(status, 0, output)

    def home(self):
        """The environment of a user who has nothing yet."""
        home = self.folder / "home"
        (home / "run").mkdir(mode=0o700, parents=True, exist_ok=True)
        return {name: value for name, value in os.environ.items() if name == "PATH" or name.startswith(("ASAN_", "LSAN_"))} | {
            "HOME": str(home), "XDG_RUNTIME_DIR": str(home / "run"), "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/dev/null"}


class Files(InstallTest):
    def test_are_staged_each_in_its_place(self):
        self.install("/usr", DESTDIR=str(self.folder))
        self.assertEqual([path.name for path in self.folder.iterdir()], ["usr"])
        installed = {path.relative_to(self.folder / "usr").as_posix(): path.stat().st_mode & 0o7777
                     for path in (self.folder / "usr").rglob("*") if not path.is_dir()}
        ours = {name: mode for name, mode in installed.items() if not OF_OTHERS.match(name)}
        self.assertEqual(ours.keys(), EXPECTED)
        for name, mode in installed.items():
            self.assertEqual(oct(mode), oct(0o755 if name.startswith("bin/") else 0o644), name)

    def test_name_the_programs_where_they_are_installed(self):
        self.install("/opt/of anna", DESTDIR=str(self.folder))
        prefix = self.folder / "opt/of anna"
        for name, group, key, command in (
                (f"share/dbus-1/services/{IDENTIFIER}.service", "D-BUS Service", "Exec", 'korvel-today" --background'),
                ("lib/systemd/user/korvel-today.service", "Service", "ExecStart", 'korvel-today" --background'),
                ("lib/systemd/user/korvel-today-bridge.service", "Service", "ExecStart", 'korvel-today-bridge" update')):
            self.assertEqual(entries(prefix / name)[group][key], f'"/opt/of anna/bin/{command}')
            self.assertNotIn("@", re.sub(r"@[a-z-]+", "", (prefix / name).read_text()), "groups of system calls aside")
        # An entry of the desktop finds it on the search path.
        for name in (f"share/applications/{IDENTIFIER}.desktop", f"etc/xdg/autostart/{IDENTIFIER}.desktop"):
            for group in entries(prefix / name).values():
                for key in group.keys() & {"Exec", "TryExec"}:
                    self.assertEqual(group[key].split()[0], "korvel-today", name)
        self.assertEqual(entries(prefix / "share/applications" / BRIDGE_ENTRY)["Desktop Entry"]["Exec"],
                         "korvel-today-bridge open %u")

    def test_are_found_by_the_names_that_they_give_each_other(self):
        self.install("/usr", DESTDIR=str(self.folder))
        share = self.folder / "usr/share"
        bus = entries(share / f"dbus-1/services/{IDENTIFIER}.service")["D-BUS Service"]
        unit = entries(self.folder / "usr/lib/systemd/user" / bus["SystemdService"])
        self.assertEqual((bus["Name"], unit["Service"]["BusName"]), (IDENTIFIER, IDENTIFIER))
        entry = entries(share / f"applications/{IDENTIFIER}.desktop")
        self.assertEqual(entry["Desktop Entry"]["DBusActivatable"], "true")
        for action in entry["Desktop Entry"]["Actions"].rstrip(";").split(";"):
            self.assertIn(f"Desktop Action {action}", entry)
        autostart = entries(self.folder / f"usr/etc/xdg/autostart/{IDENTIFIER}.desktop")["Desktop Entry"]
        self.assertEqual(autostart["Exec"], "korvel-today --background")
        for icon in (entry["Desktop Entry"]["Icon"], autostart["Icon"]):
            for side in SIDES:
                png = (share / f"icons/hicolor/{side}x{side}/apps/{icon}.png").read_bytes()
                self.assertEqual((png[:8], png[16:24]), (b"\x89PNG\r\n\x1a\n", side.to_bytes(4, "big") * 2))
        component = xml.etree.ElementTree.parse(share / f"metainfo/{IDENTIFIER}.metainfo.xml").getroot()
        self.assertEqual(component.findtext("id"), IDENTIFIER)
        self.assertEqual(component.findtext("launchable"), f"{IDENTIFIER}.desktop")
        programs = {path.name for path in (self.folder / "usr/bin").iterdir()}
        self.assertEqual({each.text for each in component.iterfind("provides/binary")}, programs)


class Programs(InstallTest):
    def test_run_from_where_the_folder_is_moved_to(self):
        self.install(self.folder / "first")
        there = (self.folder / "first").rename(self.folder / "second")
        shutil.rmtree(there / "share")
        companion = there / "bin/korvel-todayctl"
        status, output = said(companion, "--version", env=self.home())
        self.assertEqual((status, output.split()[:2]), (0, ["korvel-todayctl", version()]))
        (self.folder / "feed.json").write_text("[]")
        self.assertEqual(said(companion, "publish", self.folder / "feed.json", env=self.home()), (0, ""))
        self.assertEqual(said(companion, "list", "--json", env=self.home())[0], 0)
        picture = self.folder / "panel.png"
        self.assertEqual(said(there / "bin/korvel-today", "--snapshot", picture, "--locale", "de_DE", env=self.home()), (0, ""))
        self.assertEqual(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")


class Understood(InstallTest):
    """By the programs that the desktop's own parts come with."""

    def test_desktop_entries(self):
        self.install(self.folder)
        for name in (f"share/applications/{IDENTIFIER}.desktop", f"share/applications/{BRIDGE_ENTRY}",
                     f"etc/xdg/autostart/{IDENTIFIER}.desktop"):
            self.assertEqual(said("desktop-file-validate", self.folder / name), (0, ""))

    def test_handler_of_the_panels_urls(self):
        """The bridge is, where no host application has an entry of its own in the folder, whatever that is called."""
        self.install(self.folder)
        applications = self.folder / "share/applications"
        env = self.home() | {"XDG_DATA_DIRS": str(self.folder / "share"), "XDG_CONFIG_DIRS": str(self.folder / "none")}
        env["PATH"] = f"{self.folder}/bin:{env['PATH']}"
        for default in (BRIDGE_ENTRY, "org.example.host.desktop"):
            if default != BRIDGE_ENTRY:
                (applications / default).write_text("[Desktop Entry]\nType=Application\nName=Host\nExec=true %u\nMimeType="
                                                    "x-scheme-handler/korvelWidget;x-scheme-handler/korvelwidget;\n")
            self.assertEqual(said("update-desktop-database", applications), (0, ""))
            for spelling in ("korvelWidget", "korvelwidget"):
                status, output = said("gio", "mime", f"x-scheme-handler/{spelling}", env=env)
                self.assertEqual(status, 0, output)
                self.assertRegex(output, rf"Default application for .*: {default}\n")

    def test_metainfo(self):
        """There is no home page to name yet, of which newer versions of the program warn."""
        status, output = said("appstreamcli", "validate", "--no-net", "--no-color",
                              SOURCE / f"packaging/{IDENTIFIER}.metainfo.xml", env=self.home())
        faults = set(re.findall(r"^[EW]: \S+ (\S+)$", output, re.M))
        self.assertLessEqual(faults, {"url-homepage-missing"}, output)
        self.assertEqual(status == 0, not faults, output)

    def test_units(self):
        """Beside a session's bus, which need not be installed."""
        units = self.folder / "lib/systemd/user"
        units.mkdir(parents=True)
        (units / "dbus.socket").write_text("[Socket]\nListenStream=%t/bus\n")
        (units / "dbus.service").write_text("[Service]\nExecStart=/bin/true\n")
        self.install(self.folder)
        for unit in UNITS:
            self.assertEqual(said("systemd-analyze", "--user", "verify", "--man=no", units / unit, env=self.home()), (0, ""), unit)

    def test_licences(self):
        """Of a copy, since a build's own files say whatever they say."""
        copy = self.folder / "copy"
        shutil.copytree(SOURCE, copy, ignore=shutil.ignore_patterns("build", ".git", "__pycache__", ".cache"))
        status, output = said("reuse", "--root", copy, "lint", cwd=copy)
        self.assertEqual(status, 0, output)


def version():
    return re.search(r"project\(KorvelToday VERSION ([\d.]+)", (SOURCE / "CMakeLists.txt").read_text())[1]


def names(field):
    """The packages that stand in a field of debian/control, without versions, alternatives and variables."""
    text = re.search(rf"^{field}:\n((?: .*\n)+)", (SOURCE / "debian/control").read_text(), re.M)[1]
    return {re.split(r"[ (|]", line.strip())[0] for line in text.replace(",", "").splitlines() if "${" not in line}


def group(name):
    """The packages of a group of scripts/packages, those that one release of Debian has among them."""
    lines = map(str.split, (SOURCE / "scripts/packages").read_text().splitlines())
    return {fields[1] for fields in lines if fields and fields[0].partition(":")[0] == name}


class Debian(unittest.TestCase):
    def test_versions_agree(self):
        changelog = (SOURCE / "debian/changelog").read_text().partition("\n")[0]
        self.assertEqual(re.search(r"\(([\d.]+)\)", changelog)[1], version())
        component = xml.etree.ElementTree.parse(SOURCE / f"packaging/{IDENTIFIER}.metainfo.xml")
        self.assertEqual(component.find("releases/release").get("version"), version())

    def test_takes_the_packages_that_the_project_names(self):
        self.assertEqual(names("Build-Depends") - {"debhelper-compat"}, group("build") - {"g++"})
        self.assertLessEqual(group("run"), names("Depends") | names("Recommends"))


if __name__ == "__main__":
    unittest.main()
