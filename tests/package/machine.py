"""A bare Debian root in a disk image, and the system that boots in it: a container of systemd-nspawn."""

import contextlib
import os
import pathlib
import signal
import subprocess
import sys
import time

CGROUPS = pathlib.Path("/sys/fs/cgroup")
GROUP = CGROUPS / f"lilyhop-package-{os.getpid()}"
HAS_SYSTEMD = pathlib.Path("/run/systemd/system").is_dir()
OWN_MOUNTS = "LILYHOP_OWN_MOUNTS"
ASKS_FOR_REBOOT = 133  # the container's exit code, where no systemd starts it again
SCREEN = """Section "Device"
  Identifier "Card"
  Driver "dummy"
  VideoRam 65536
EndSection
Section "Monitor"
  Identifier "Monitor"
  HorizSync 20-100
  VertRefresh 40-100
  Modeline "1360x768" 84.75 1360 1432 1568 1776 768 771 781 798
EndSection
Section "Screen"
  Identifier "Screen"
  Device "Card"
  Monitor "Monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "1360x768"
  EndSubSection
EndSection
"""


class Cannot(Exception):
    """This machine can't boot a root; the text is a sentence."""


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, **options)


def own_mounts():
    """Starts the program anew, if it isn't yet, so that its mounts are its own and end with it."""
    if not os.environ.get(OWN_MOUNTS):
        os.environ[OWN_MOUNTS] = "yes"
        os.execvp("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, *sys.argv])


def own_groups():
    """A container needs one tree of control groups. systemd gives it one; without it we mount our own."""
    if HAS_SYSTEMD:
        return
    try:
        run("mount", "-t", "cgroup2", "cgroup2", CGROUPS)
        GROUP.mkdir()
    except (OSError, subprocess.CalledProcessError) as error:
        raise Cannot("This machine gives no control groups to a container.") from error


def leave_groups():
    """Removes the control groups, the innermost first."""
    if HAS_SYSTEMD or not GROUP.is_dir():
        return
    for folder in sorted(GROUP.rglob("*"), reverse=True):
        if folder.is_dir():
            folder.rmdir()
    GROUP.rmdir()


class Machine:
    def __init__(self, work, suite):
        self.base = work / suite
        self.debs = work / f"{suite}-debs"
        self.image = work / f"{suite}.img"
        self.log = work / f"{suite}.log"
        self.root = work / f"{suite}-root"
        self.suite = suite
        self.container = None

    def make(self):
        """The root as debootstrap makes it, on a disk of its own. The bootstrap is kept for the next time."""
        self.debs.mkdir(parents=True, exist_ok=True)
        if not (self.base / "ready").exists():
            with open(self.log, "w") as log:
                run("rm", "-rf", self.base)
                run("debootstrap", "--variant=minbase", "--include=systemd-sysv,dbus", self.suite, self.base,
                    stdout=log, stderr=log)
            (self.base / "ready").touch()
        self.image.unlink(missing_ok=True)
        run("truncate", "-s", "4G", self.image)
        run("mkfs.ext4", "-q", "-m", "0", self.image)
        self.root.mkdir(exist_ok=True)
        run("mount", "-o", "loop", self.image, self.root)
        run("cp", "-a", f"{self.base}/.", self.root)
        (self.root / "etc/X11").mkdir()
        (self.root / "etc/X11/xorg.conf").write_text(SCREEN)

    def nspawn(self, *arguments):
        own = [] if HAS_SYSTEMD else ["--keep-unit"]
        return ["systemd-nspawn", "--quiet", "--register=no", *own, f"--directory={self.root}",
                f"--bind={self.debs}:/var/cache/apt/archives", *arguments]

    def change_root(self, *command):
        """Runs a command in the root while no system runs there, as whoever makes an image does."""
        with open(self.log, "a") as log:
            subprocess.run(self.nspawn("--pipe", *command), check=True, stdin=subprocess.DEVNULL, stdout=log,
                           stderr=log, preexec_fn=join_group)

    def boot(self, *binds):
        # On the host's network its screen would meet this machine's own, or that of a second run.
        with open(self.log, "a") as log:
            self.container = subprocess.Popen(
                self.nspawn("--boot", "--console=read-only", "--private-network", "--capability=CAP_SYS_RESOURCE",
                            *(f"--bind={bind}" for bind in binds)),
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, preexec_fn=join_group)
        if not until(lambda: self.ask("systemctl is-system-running --wait").strip() in ("running", "degraded"), 60):
            raise Cannot("systemd doesn't boot in a container here; the log is " + str(self.log) + ".")

    def leader(self):
        """The container's first process."""
        tasks = pathlib.Path(f"/proc/{self.container.pid}/task/{self.container.pid}/children")
        return tasks.read_text().split()[-1]

    def do(self, command, check=True):
        """Runs a command of a shell in the running system. Returns its exit code and what it printed."""
        done = subprocess.run(["nsenter", "-t", self.leader(), "-m", "-u", "-i", "-n", "-p", "-C", "-r", "-w",
                               "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND=noninteractive",
                               "sh", "-c", command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True)
        if check and done.returncode:
            raise RuntimeError(f"{command}: {done.stdout.strip()}")
        return done

    def ask(self, command):
        with contextlib.suppress(OSError, IndexError):
            return self.do(command, check=False).stdout
        return ""

    def ended(self):
        """Waits for the system to go down by itself."""
        self.container.wait(timeout=60)
        self.container = None

    def rebooted(self, leader):
        """Waits until the system has gone down for a reboot, whose first process was `leader`. Where systemd
        runs, the container is booted again by itself; it is ended then, to be booted as any other time."""
        def gone():
            with contextlib.suppress(OSError, IndexError):
                return self.container.poll() == ASKS_FOR_REBOOT or self.leader() != leader
            return False

        done = until(gone, 60)
        self.end()
        return done

    def cut(self):
        """The power goes. The disk has what was written, also if it wasn't told to keep it."""
        os.kill(int(self.leader()), signal.SIGKILL)
        self.ended()

    def close(self):
        self.end()
        if os.path.ismount(self.root):
            run("umount", self.root)
        self.image.unlink(missing_ok=True)

    def end(self):
        if self.container:
            self.container.send_signal(signal.SIGTERM)
            try:
                self.container.wait(timeout=30)
            except subprocess.TimeoutExpired:
                self.container.kill()
                self.container.wait()
            self.container = None


def join_group():
    if not HAS_SYSTEMD:
        (GROUP / "cgroup.procs").write_text(str(os.getpid()))


def until(holds, seconds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if holds():
            return True
        time.sleep(0.2)
    return False
