"""The package of obj/ in a machine of its own, and the virtual cabinet's boards on it."""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/page"), str(ROOT / "tools/stress")]
from cabinet import Cabinet  # noqa: E402
from machine import Cannot, Machine, own_groups, run, until  # noqa: E402
from random_presses import Machine as Board  # noqa: E402

OBJ = ROOT / "obj"
WORK = OBJ / "package"
BOOKS = "var/lib/lilyhop"
USB = "/opt/usb"  # in the machine, the folder of the watchdog's socket
UNIT_LINK = "etc/systemd/system/multi-user.target.wants/lilyhop.service"
OPERATORS_LINE = "# The operator's own line\n"
CANNOT = 77  # the exit code where a machine can't boot a root
UP_S = 60  # on a busy machine
PLAY_S = 8


def hold(what, true):
    print(f"  {'held' if true else 'NOT HELD'}: {what}", flush=True)
    if not true:
        raise SystemExit(1)


def can():
    if os.geteuid() != 0:
        raise Cannot("Only root can boot a system in a container.")
    for tool in ("systemd-nspawn", "debootstrap", "mkfs.ext4", "nsenter", "lintian", "cpack"):
        if not shutil.which(tool, path=os.environ["PATH"] + ":/usr/sbin:/sbin"):
            raise Cannot(f"The program {tool} is missing.")
    own_groups()


def packages():
    """The package of this tree, and the same with the next version."""
    run("cpack", "-G", "DEB", cwd=OBJ, stdout=open(WORK / "cpack.log", "w"), stderr=subprocess.STDOUT)
    deb = max(OBJ.glob("lilyhop_*_*.deb"), key=lambda file: file.stat().st_mtime)
    tree = WORK / "next"
    shutil.rmtree(tree, ignore_errors=True)
    run("dpkg-deb", "-R", deb, tree)
    control = tree / "DEBIAN/control"
    control.write_text(re.sub(r"(?m)^Version: (.*)$", r"Version: \1+next", control.read_text()))
    run("dpkg-deb", "--root-owner-group", "-Znone", "-b", tree, WORK / "next.deb", stdout=open(os.devnull, "w"))
    shutil.rmtree(tree)
    return deb


class Installed:
    """The package in a machine, with the boards that the cabinet has."""

    def __init__(self, machine, cabinet):
        self.machine = machine
        self.board = Board(cabinet)
        self.binds = []
        for name, device in (("The board", "io"), ("The LED board", "led")):
            for pty in re.findall(f"{name} is on (.*)", cabinet.greeting):
                self.give(pty)
                self.binds.append(f"{pty}:/dev/lilyhop-{device}")
        for socket in re.findall("The watchdog is on unix:(.*)", cabinet.greeting):
            os.chmod(os.path.dirname(socket), 0o755)
            self.binds.append(f"{os.path.dirname(socket)}:{USB}")
        self.counted = 0

    def give(self, pty):
        """What a udev rule does for an adapter."""
        passwd = (self.machine.root / "etc/passwd").read_text()
        os.chown(pty, -1, int(re.search(r"(?m)^lilyhop:[^:]*:\d+:(\d+)", passwd).group(1)))
        os.chmod(pty, 0o660)

    def boot(self):
        began = time.monotonic()
        self.machine.boot(*self.binds)
        hold("it plays after power-on", self.plays())
        return time.monotonic() - began

    def frames(self):
        """How many games drew a first frame since the machine was switched on."""
        return self.machine.ask("journalctl -b -u lilyhop -o cat").count("first frame")

    def plays(self, games=1):
        """Waits for a game's first frame; then coins are counted in the books."""
        if not until(lambda: self.frames() >= games and self.board.reading("lockout left"), UP_S):
            return False
        for side in ("left", "right"):
            self.board.do(f"coin {side}")
        self.counted += 1
        return until(lambda: self.coins() == [self.counted] * 2, 10)

    def coins(self):
        return [self.board.audit("Coin Drops Left"), self.board.audit("Coin Drops Right")]

    def on_s(self):
        """Seconds that the game was on, in the books."""
        return self.board.audit("Time Game On") / 1000

    def comes_back(self, what, command, check=True):
        """A command that ends the game; a new one plays."""
        games = self.frames()
        began = time.monotonic()
        done = self.machine.do(command, check)
        hold(f"after {what} it plays again", self.plays(games + 1))
        print(f"    within {time.monotonic() - began:.1f} s")
        return done

    def stores(self, what, end):
        """After an orderly end the books have the whole time that the game was on."""
        before = self.on_s()
        time.sleep(PLAY_S)
        done = end()
        hold(f"{what} stores the books", self.on_s() - before >= PLAY_S - 1)
        return done


def in_a_chroot(machine, deb):
    machine.make()
    shutil.copy(deb, machine.debs / "lilyhop.deb")
    shutil.copy(WORK / "next.deb", machine.debs / "next.deb")
    machine.change_root("apt-get", "update")
    machine.change_root("apt-get", "install", "-y", "--no-install-recommends", "/var/cache/apt/archives/lilyhop.deb",
                        "xserver-xorg-video-dummy")
    hold("installed in an image, it is enabled", os.path.islink(machine.root / UNIT_LINK))
    with open(machine.root / "etc/lilyhop.conf", "a") as conf:
        conf.write(OPERATORS_LINE)


@contextlib.contextmanager
def fitted(suite, deb, *options):
    """The package in a machine that is still to be booted, and the virtual cabinet at its ports."""
    machine = Machine(WORK, suite)
    try:
        in_a_chroot(machine, deb)
        with open(machine.log, "a") as log, Cabinet(OBJ.parent / "out", "--no-game", *options, "--sound", "card",
                                                    "--drive", str(machine.root / BOOKS), log=log) as cabinet:
            try:
                yield Installed(machine, cabinet)
            except SystemExit:
                print(machine.ask("systemctl --failed; journalctl -b -n 80 -u lilyhop -u lilyhop-x -o short-precise"))
                raise
            finally:
                machine.close()
    finally:
        machine.close()
