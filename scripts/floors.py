#!/usr/bin/env python3
"""Checks the floors of src/: an include goes down or stays level, never up; independent modules don't
include each other; no two files include each other; only platform/ includes the machine's headers. The
payout lab is on top, like frame/: it may include everything but needs no display or device, and nothing
in src/ includes it. Prints what is wrong and exits with 1."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SRC = ROOT / "src"
GROUND = {"frame/" + name for name in
          ("sides.h", "game_clock.h", "game_mode.h", "tick_timers.h", "ticket_status.h")}
UPPER_IO = re.compile(r"io/(lamps|led_board|led_value|watchdog_link)[^/]*")
MACHINE = re.compile(r"(SDL|GL/|SOIL|X11/|systemd/|termios|pthread|libusb|sched\.h|unistd\.h|fcntl\.h|poll\.h|"
                     r"sys/|linux/)")


def floor(file):
    """The height of a file, and the name of its module where modules may not include each other."""
    folder = file.split("/")[0]
    if folder == "platform":
        return 0, "platform"
    if file in GROUND:
        return 1, "ground"
    if UPPER_IO.fullmatch(file):
        return 4, "io"
    return {"books": (2, "books"), "gfx": (2, "gfx"), "sound": (2, "sound"), "io": (2, "io"),
            "playfield": (3, "playfield"), "presentation": (4, "presentation"),
            "operator": (4, "operator"), "frame": (5, "frame")}[folder]


def includes(path):
    return re.findall(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', path.read_text(), re.M)


def lab_wrong(files):
    lab = {f"lab/{p.name}": p for p in (ROOT / "lab").iterdir() if p.suffix in (".h", ".cpp")}
    wrong = []
    for name, path in sorted(lab.items()):
        for kind, target in includes(path):
            if kind == "<" and re.match(r"(SDL|GL/|SOIL|termios|libusb)", target):
                wrong.append(f"{name}: <{target}> is no business of the lab")
            if kind == '"' and target not in files and target not in lab:
                wrong.append(f"{name}: \"{target}\" is neither in src/ nor in lab/")
            if kind == '"' and target in lab and name in (i for _, i in includes(lab[target])):
                wrong.append(f"{name} and {target} include each other")
    return wrong


def main():
    files = {str(p.relative_to(SRC)): p for p in SRC.rglob("*") if p.suffix in (".h", ".cpp")}
    own = {name: [i for kind, i in includes(p) if kind == '"'] for name, p in files.items()}
    wrong = []
    for name, path in sorted(files.items()):
        height, room = floor(name)
        for kind, target in includes(path):
            if kind == "<":
                if MACHINE.match(target) and height > 0:
                    wrong.append(f"{name}: <{target}> belongs to platform/ alone")
                continue
            if target not in files:
                wrong.append(f"{name}: \"{target}\" is not a path below src/")
                continue
            up, next_room = floor(target)
            door = not includes(files[target])  # a header that pulls in nothing
            if up > height and not door:
                wrong.append(f"{name}: includes {target}, which stands on a higher floor")
            if up == height == 2 and room != next_room:
                wrong.append(f"{name}: includes {target}; {room}/ and {next_room}/ don't meet")
            if name in own[target]:
                wrong.append(f"{name} and {target} include each other")
    wrong += lab_wrong(files)
    for line in wrong:
        print(line)
    print(f"floors: {len(files)} files, {len(wrong)} wrong")
    return 1 if wrong else 0


sys.exit(main())
