#!/usr/bin/env python3
"""Puts small faults into src/, one at a time, and runs the test programs that have the changed file: what
they let pass, no test would have caught. Prints what lives, and for each folder how many were killed.

    scripts/mutate.py [--count 60] [--seed 1] [--only src/io] [--record FILE] [--all] [--jobs 3]

Needs a built tree; what is shown on a screen is killed with a display only (HACKING.md). Nothing in the tree
changes, and none of its files may change meanwhile: the changed file is compiled apart and linked in front of
the libraries. A fault that compiles to the same object code doesn't count, and a program that doesn't have the
file doesn't link and is passed over. A game with what all programs let pass plays the scripts of tests/e2e.
--record adds a line to FILE for each fault, with the test cases that fail, and begins after those that the file
has. --all runs all programs, also when one has killed the fault: so a test can be found that kills nothing which
others let live.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
TREE = ROOT / "obj"
PROGRAMS = {
    "books": "books operator frame",
    "frame": "frame tick_order operator lab gl",
    "gfx": "gfx presentation gl",
    "io": "io io_lamps io_watchdog io_wire io_usb",
    "operator": "operator frame",
    "platform": "platform books frame gfx sound_driver io_usb io_wire io_lamps sound_device gl",
    "playfield": "playfield presentation frame lab",
    "presentation": "presentation frame operator lab gl",
    "sound": "playlist sound_driver sound_device",
}
SCRIPTS = "e2e"  # stands for the undrawn game, played by the scripts that need no screen
SLOW = {"lab", "gl", SCRIPTS}  # asked only about what the others let live
# A busy machine may fail them, but not twice.
TIMED = {"gl", "io_wire", "io_lamps", "io_usb", "sound_device", SCRIPTS}
COMPILE = ["nice", "g++", "-std=c++20", "-O1", "-w", "-ffp-contract=off", f"-I{ROOT}/src", f"-I{ROOT}", "-c"]
MEMORY = {"TMPDIR": "/dev/shm"} if os.access("/dev/shm", os.W_OK) else {}  # a disk would be waited for
# As ctest runs them.
VARIABLES = {"io_usb": {"LD_PRELOAD": "libumockdev-preload.so.0", "LILYHOP_TEST_USB": "emulated"}}
LONGEST_S, LONGEST_SCRIPT_S = 120, 600
GAME = "tools/stress/lilyhop-undrawn"
DRAWN = re.search(r"set\(drawn_scripts ([^)]+)\)", (ROOT / "tests/CMakeLists.txt").read_text())[1].split()

UNTOUCHED = re.compile(r"^\s*(//|#|static_assert|assert\(|using |namespace |\}|case |default:)"
                       r"|printf|log_message|log_error")
SWAPS = [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
         (" && ", " || "), (r" \|\| ", " && "), (r" \+ ", " - "), (" - ", " + "), (r" \* ", " / "),
         (r" \+= ", " -= "), (" -= ", " += "), (r"\btrue\b", "false"), (r"\bfalse\b", "true"),
         (r"\bSIDE_LEFT\b", "SIDE_RIGHT"), (r"\bSIDE_RIGHT\b", "SIDE_LEFT")]
STRING = re.compile(r'"(?:[^"\\]|\\.)*"')
NUMBER = re.compile(r"(?<![\w.\"'])(0x[0-9A-Fa-f]+|\d+\.\d+F?|\d+)(?![\w.'])")
CALL = re.compile(r"^\s+[\w:.>\-\[\]]+\(.*\);$")
GUARD = re.compile(r"^(\s+if \()(.*)(\) (?:return|continue|break).*;)$")
RAN, FAILED = re.compile(r"\[ RUN      \] (\S+)"), re.compile(r"\[  FAILED  \] (\S+?)(?:,| \()")


def changed_number(text):
    """The next number; None for one that is left alone."""
    if re.fullmatch(r"0\d+", text):
        return None
    if re.fullmatch(r"0x\w+|\d+", text):
        return str(int(text, 0) + 1)
    return str(float(text.rstrip("F")) * 1.25 + 0.01) + ("F" if text.endswith("F") else "")


def changes_of(line):
    """What the line may become."""
    code = line.split(" //")[0]
    if not code.strip() or UNTOUCHED.search(code):
        return
    texts = [found.span() for found in STRING.finditer(code)]

    def in_text(at):
        return any(begin <= at < end for begin, end in texts)

    for what, by in SWAPS:
        for found in re.finditer(what, code):
            if not in_text(found.start()):
                yield line[:found.start()] + by + line[found.end():]
    for found in NUMBER.finditer(code):
        by = None if in_text(found.start()) else changed_number(found[1])
        if by is not None:
            yield line[:found.start()] + by + line[found.end():]
    for begin, end in texts:
        if end - begin > 4 and "include" not in code:
            yield line[:begin + 2] + ("Q" if line[begin + 2] != "Q" else "q") + line[begin + 3:]
    if CALL.match(code):
        yield re.match(r"\s*", line)[0] + ";"
    guard = GUARD.match(code)
    if guard:
        yield f"{guard[1]}!({guard[2]}){guard[3]}"


def faults(only, seed):
    """All faults of a folder or file as (path, line's index, new line), in the seed's order."""
    if only.is_dir():
        paths = sorted(path for path in only.rglob("*.cpp") if "headless" not in str(path))
    else:
        paths = [only]
    all_of_them = [(path, number, changed) for path in paths
                   for number, line in enumerate(path.read_text().split("\n")) for changed in changes_of(line)]
    random.Random(seed).shuffle(all_of_them)
    return all_of_them


LINKS, INPUTS, LIMITS, ASKING = {}, {}, {}, threading.Lock()  # of the programs


class Bench:
    """Compiles, links and runs what has a fault."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="mutate")
        self.binary = f"{self.folder.name}/test"

    def compiled(self, name, lines, to):
        source = f"{self.folder.name}/{name}"
        pathlib.Path(source).write_text("\n".join(lines))
        target = pathlib.Path(self.folder.name, to)
        done = subprocess.run([*COMPILE, source, "-o", target], capture_output=True, check=False)
        return target.read_bytes() if done.returncode == 0 else None

    def is_a_fault(self, path, number, changed):
        lines = path.read_text().split("\n")
        before = self.compiled(path.name, lines, "before.o")
        lines[number] = changed
        after = self.compiled(path.name, lines, "after.o")
        return after is not None and after != before

    def get_to_know(self, program):
        def ninja(tool):
            return subprocess.run(["ninja", "-t", tool, target], cwd=TREE, text=True, capture_output=True,
                                  check=True).stdout.strip().split("\n")
        target = GAME if program == SCRIPTS else f"tests/{program}/test_{program}"
        LINKS[program] = ninja("commands")[-1].replace(": && ", "").replace(" && :", "")
        INPUTS[program] = set(ninja("inputs"))
        begun = time.monotonic()
        if self.failures(program, TREE / target) and self.failures(program, TREE / target):
            sys.exit(f"{target} fails without a fault, so it can't judge one.")
        LIMITS[program] = min(LONGEST_S, 20 + 8 * (time.monotonic() - begun))

    def linked(self, program, path):
        """False if the program doesn't have the file, or a fake in its place."""
        with ASKING:
            if program not in LINKS:
                self.get_to_know(program)
        if str(path) not in INPUTS[program]:
            return False
        command = re.sub(r"-o \S+", f"{self.folder.name}/after.o -o {self.binary}", LINKS[program])
        command = re.sub(rf"\S+/{path.relative_to(ROOT)}\.o ", "", command)  # an object of the program's own
        return subprocess.run(command, cwd=TREE, shell=True, capture_output=True, check=False).returncode == 0

    def failures(self, program, binary):
        """The cases that fail, the one that ran last if it crashed or ran too long."""
        if program == SCRIPTS:
            return self.failing_scripts(binary)
        process = subprocess.Popen(["nice", binary], cwd=ROOT, text=True, errors="replace",
                                   env={**os.environ, **MEMORY, **VARIABLES.get(program, {})},
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        try:
            output, _ = process.communicate(timeout=LIMITS.get(program, LONGEST_S))
        except subprocess.TimeoutExpired:
            process.kill()
            output, _ = process.communicate()
        if process.returncode == 0:
            return []
        cases = sorted(set(FAILED.findall(output)))
        if not cases or process.returncode < 0:
            cases.append((RAN.findall(output) or [program])[-1])
        return cases

    def failing_scripts(self, game):
        with tempfile.TemporaryDirectory(prefix="mutate-game") as installation:
            subprocess.run([ROOT / "tools/stress/undrawn", installation, game], capture_output=True, check=True)

            def fails(script):
                try:
                    return subprocess.run([ROOT / "tests/e2e/run", installation, script], capture_output=True,
                                          timeout=LONGEST_SCRIPT_S, check=False, cwd=ROOT).returncode != 0
                except subprocess.TimeoutExpired:
                    return True

            scripts = sorted((path for path in (ROOT / "tests/e2e").glob("*.script") if path.stem not in DRAWN),
                             reverse=True)  # that of the watchdog, the longest, first
            # They mostly wait, but eleven starts at once take 14 s on two processors.
            with concurrent.futures.ThreadPoolExecutor(4) as pool:
                failed = list(pool.map(fails, scripts))
            return [f"{SCRIPTS}.{script.stem}" for script, fell in zip(scripts, failed) if fell]


def killers(bench, path, with_all):
    cases = []
    for program in [*PROGRAMS[path.relative_to(ROOT / "src").parts[0]].split(), SCRIPTS]:
        if program in SLOW and cases:
            continue
        if bench.linked(program, path):
            failed = bench.failures(program, bench.binary)
            if failed and program in TIMED:
                failed = sorted(set(failed) & set(bench.failures(program, bench.binary)))
            cases += failed
        if cases and not with_all:
            break
    return cases


def judged(options):
    """All faults in their order, with their killers; None for one that isn't a fault."""
    told, mine = {}, threading.local()
    if options.record and options.record.exists():
        for line in options.record.read_text().splitlines():
            row = json.loads(line)
            told[row["file"], row["line"], row["now"]] = row["killers"]

    def judge(path, number, changed):
        was = path.read_text().split("\n")[number].strip()
        row = {"file": str(path.relative_to(ROOT)), "line": number + 1, "was": was, "now": changed.strip()}
        key = row["file"], row["line"], row["now"]
        if key in told:
            return {**row, "killers": told[key]}
        if not hasattr(mine, "bench"):
            mine.bench = Bench()
        is_one = mine.bench.is_a_fault(path, number, changed)
        row["killers"] = killers(mine.bench, path, options.all) if is_one else None
        if options.record:
            with options.record.open("a") as record:
                record.write(json.dumps(row) + "\n")
        return row

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        ahead = collections.deque()
        try:
            for fault in faults(options.only.resolve(), options.seed):
                ahead.append(pool.submit(judge, *fault))
                if len(ahead) >= 4 * options.jobs:
                    yield ahead.popleft().result()
            while ahead:
                yield ahead.popleft().result()
        finally:
            for judgement in ahead:
                judgement.cancel()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", type=pathlib.Path, default=ROOT / "src")
    parser.add_argument("--record", type=pathlib.Path)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--jobs", type=int, default=1)
    options = parser.parse_args()
    killed, tried = collections.Counter(), collections.Counter()
    for row in judged(options):
        if row["killers"] is None:
            continue
        folder = row["file"].split("/")[1]
        tried[folder] += 1
        killed[folder] += bool(row["killers"])
        if not row["killers"]:
            print(f"{row['file']}:{row['line']}: {row['was']}  ->  {row['now']}", flush=True)
        if sum(tried.values()) >= options.count:
            break
    for folder in sorted(tried):
        print(f"{folder}: {killed[folder]} of {tried[folder]} killed")
    print(f"in all {sum(killed.values())} of {sum(tried.values())} killed")


main()
