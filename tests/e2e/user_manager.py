"""A service manager of a user without privileges, with a session bus: systemd as a login would start it, in namespaces of
its own, where it finds a booted system, a cgroup to manage and nothing of the machine's own manager.

It takes root to make those. Where root, systemd or the right to make them is missing, UserManager raises
unittest.SkipTest with the reason, and the test is reported as skipped. What fails after that is a failure."""

import contextlib
import ctypes
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import harness

USER = 65534  # nobody: a bus takes only users that the system knows
SYSTEMD = "/lib/systemd/systemd"
HERE = pathlib.Path("/run/korvel")  # what the manager and its services call its folder

# As root: into a cgroup of its own, then into the namespaces, then the mounts, then another user.
START = """
set -e
echo $$ > "$GROUP/cgroup.procs"
exec unshare --cgroup --mount --propagation unchanged --pid --fork --kill-child --mount-proc sh -c '
    set -e
    mount -t tmpfs none /run
    mount -t tmpfs none /sys/fs/cgroup
    mount -t cgroup2 none /sys/fs/cgroup
    chown "$OWNER" /sys/fs/cgroup /sys/fs/cgroup/cgroup.procs
    mkdir -p /run/systemd/system /run/korvel
    mount --bind "$FOLDER" /run/korvel
    cd /run/korvel
    unset GROUP FOLDER
    setpriv --reuid "$OWNER" --regid "$OWNER" --clear-groups --inh-caps=-all --bounding-set=-all "$MANAGER" --user &
    wait'
"""

BUS = """<busconfig><type>session</type><listen>unix:path=/run/korvel/run/bus</listen>
<servicedir>/run/korvel/home/data/dbus-1/services</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>
"""

UNITS = {
    "default.target": "[Unit]\nDescription=A session\nRequires=dbus.service\nAfter=dbus.service\n",
    "dbus.socket": "[Unit]\nDescription=A session's bus\nDefaultDependencies=no\n[Socket]\nListenStream=%t/bus\n",
    "dbus.service": "[Unit]\nDescription=A session's bus\nRequires=dbus.socket\nDefaultDependencies=no\n[Service]\n"
                    "Type=notify\nNotifyAccess=main\nExecStart=dbus-daemon --config-file=/run/korvel/bus.conf --address=systemd: "
                    "--nofork --nopidfile --systemd-activation\n",
    "basic.target": "[Unit]\nDescription=What all services wait for\n",
    "shutdown.target": "[Unit]\nDescription=The end\nDefaultDependencies=no\n",
}


_NEW_MOUNTS, _PRIVATE, _RECURSIVE, _DETACH = 0x00020000, 1 << 18, 1 << 14, 2
_libc = ctypes.CDLL(None, use_errno=True)


def _missing(what):
    print(f"not run: {what}", file=sys.stderr)
    raise unittest.SkipTest(what)


def _done(result, what):
    if result != 0:
        _missing(f"{what}: {os.strerror(ctypes.get_errno())}")


def _leave_the_mounts():
    """Whatever this process mounts from now on is seen by it and its children alone."""
    _done(_libc.unshare(_NEW_MOUNTS), "no mounts of its own")
    # Where the root is no mount, as in a changed root, the mounts must be private already.
    if _libc.mount(None, b"/", None, _RECURSIVE | _PRIVATE, None) != 0:
        if " shared:" in pathlib.Path("/proc/self/mountinfo").read_text():
            _missing("mounts are shared with others, and the root is none")


class UserManager:
    """`folder` is the user's own, by its path outside of the namespaces; inside it is HERE. It is on the machine's
    network and in its /tmp, where the X server is; process numbers inside are others."""

    def __init__(self, desktop, units=None, env=None):
        if os.geteuid() != 0:
            _missing("only root can start a user's service manager here")
        if not os.access(SYSTEMD, os.X_OK):
            _missing("systemd is not installed")
        self.desktop = desktop
        self.folder = desktop.folder / "user"
        for folder in ("run", "tmp", "bin", "home/data/applications", "home/data/dbus-1/services", "home/config",
                       "home/cache", "units"):
            (self.folder / folder).mkdir(parents=True)
        (self.folder / "bus.conf").write_text(BUS)
        for name, text in (UNITS | dict(units or {})).items():
            (self.folder / "units" / name).write_text(text)
        self.env = {
            "HOME": f"{HERE}/home", "XDG_RUNTIME_DIR": f"{HERE}/run", "XDG_DATA_HOME": f"{HERE}/home/data",
            "XDG_CONFIG_HOME": f"{HERE}/home/config", "XDG_CACHE_HOME": f"{HERE}/home/cache", "TMPDIR": f"{HERE}/tmp",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={HERE}/run/bus", "SYSTEMD_UNIT_PATH": f"{HERE}/units"} | dict(env or {})

    def start(self):
        """Everything that the user is to have has been written to the folder."""
        self._log = self.folder / "log"
        self._log.touch()
        for path in [self.folder, *self.folder.rglob("*")]:
            os.chown(path, USER, USER, follow_symlinks=False)
        (self.folder / "run").chmod(0o700)
        _leave_the_mounts()
        self._cgroups = self.desktop.folder / "cgroups"
        self._cgroups.mkdir()
        _done(_libc.mount(b"none", os.fsencode(self._cgroups), b"cgroup2", 0, None), "no cgroups of the second version")
        try:
            self._group = pathlib.Path(tempfile.mkdtemp(prefix="korvel-", dir=self._cgroups))
        except OSError as error:
            _missing(f"no cgroup can be made: {error}")
        with self._log.open("ab") as log:
            self._process = self.desktop.start(
                ["sh", "-c", START],
                self.env | {"GROUP": str(self._group), "FOLDER": str(self.folder), "OWNER": str(USER), "MANAGER": SYSTEMD},
                stdout=log, stderr=log)
        harness.wait_for(self._is_up_or_gone, "a service manager")
        if self._process.poll() is not None:
            _missing(f"no namespaces for a service manager: {self.log()}")

    def _is_up_or_gone(self):
        if self._process.poll() is not None:
            return True
        is_inside = any(harness.children(self._process.pid))
        return is_inside and self.owner_of("org.freedesktop.systemd1")

    def end(self):
        if hasattr(self, "_group"):
            with contextlib.suppress(OSError):
                (self._group / "cgroup.kill").write_text("1")
            harness.wait_for(self._removed, "the end of the manager's cgroups")
        if hasattr(self, "_cgroups"):
            _libc.umount2(os.fsencode(self._cgroups), _DETACH)

    def _removed(self):
        for folder, _, _ in os.walk(self._group, topdown=False):
            with contextlib.suppress(OSError):
                os.rmdir(folder)
        return not self._group.exists()

    def log(self):
        return self._log.read_text(errors="replace")

    def inside(self, *words):
        """The command that runs another one as the user, inside."""
        target = next(harness.children(self._process.pid))
        return ["nsenter", "--target", str(target), "--mount", "--root", "--pid", "setpriv", "--reuid", str(USER), "--regid", str(USER),
                "--clear-groups", *words]

    def run(self, *words):
        return subprocess.run(self.inside(*words), env=self.desktop.env | self.env, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=harness.DEADLINE)

    def systemctl(self, *words):
        return self.run("systemctl", "--user", "--no-pager", *words)

    def show(self, unit, name):
        return self.systemctl("show", "--value", "-p", name, unit).stdout.strip()

    def processes_of(self, unit):
        """By their numbers outside."""
        return [int(number) for folder in self._group.rglob(unit) for number in (folder / "cgroup.procs").read_text().split()]

    def bus(self, name, path, method, *arguments):
        """Calls a method; gives the reply's text, or none where it fails."""
        done = self.run("gdbus", "call", "--session", "--dest", name, "--object-path", path, "--method", method, *arguments)
        return done.stdout if done.returncode == 0 else None

    def owner_of(self, name):
        return self.bus("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.GetNameOwner", name)

    def install(self, program):
        """A copy of a program that the user may run; its path inside."""
        shutil.copy(program, self.folder / "bin")
        return HERE / "bin" / pathlib.Path(program).name
