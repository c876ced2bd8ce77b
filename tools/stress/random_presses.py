#!/usr/bin/env python3
"""random_presses.py OUT [MINUTES [SEED]]: presses every switch and pulls every plug at random, in whatever
screen that leads to. Every two minutes it checks that the game still plays and counts all coins. Best
with the programs of a sanitized tree. Ends with 1 at the first fault, and prints the seed."""

import pathlib
import random
import re
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "page"))
from cabinet import Cabinet  # noqa: E402

# Presses and their weights. A long hold of Test opens the menus, where Test and Right Start choose, Left
# Start and the volume buttons move, and Service goes back.
PRESSES = {
    "test": 20, "start right": 18, "start left": 24, "volume down": 12, "volume up": 8, "service": 7,
    "coin left": 5, "coin right": 5, "swipe left 2": 1, "swipe right 2": 1, "test 1500": 2, "test 5500": 4,
    "hold service 1500": 3, "hold start-left 700": 1, "press start-right": 1, "hands off": 1,
    "burst start-left 6 rate 12": 2, "burst test 5 rate 8": 1,
}
# Faults and what ends them.
PULLS = {
    "usb pull": "usb plug", "led pull": "led plug", "led deaf": "led hears", "unplug": "plug",
    "silence on": "silence off", "jam left": "clear-jam left", "jam right": "clear-jam right",
    "empty left": "refill left", "empty right": "refill right", "void left on": "void left off",
    "checksums on": "checksums off", "usb bite resets": "usb bite counts", "rate left 30": "rate left 4",
}
SHOCKS = ["restart", "usb reset-seen", "usb ask", "usb info 7", "counters", "dips 170", "dips 0", "ball x 9"]
MENDED = [*PULLS.values(), "hands off", *(f"release {switch}" for switch in (
    "start-left", "start-right", "coin-left", "coin-right", "volume-up", "volume-down", "test", "service"))]
GAP_S = (0.03, 0.45)
ROUND_S = 100
SILENCE_ENDS_S = 7  # the board's health is asked for every five seconds
STORED_S = 3
COUNTERS = [f"{name} {side}" for side in ("Left", "Right") for name in (
    "Coin Drops", "Games Played", "Tickets", "Bug Tickets", "Bugs", "Butterflies", "Jackpots")]
COUNTERS += ["Service Credits", "Boot Count", "Test Entry Count"]
SETTINGS = ["Coins To Play", "Frogs Per Game", "Coin Value", "Payout Percent", "Ticket Value", "Volume"]


class Wrong(Exception):
    pass


class Machine:
    def __init__(self, cabinet):
        self.cabinet = cabinet
        self.done = []  # the last lines, newest last

    def do(self, line):
        self.done = self.done[-60:] + [f"{time.strftime('%H:%M:%S')} {line}"]
        return self.cabinet.do(line)

    def reading(self, text):
        """The number of a reading. Wrong with its text if it has none."""
        said = self.cabinet.do(text)
        number = re.search(r" is (-?[\d.e+-]+)$", said.strip())
        if not number:
            raise Wrong(f"{said.strip()}")
        return float(number.group(1))

    def audit(self, name):
        return self.reading(f'audit "{name}"')

    def books(self):
        for name in SETTINGS:
            self.reading(f'pref "{name}"')
        return {name: self.audit(name) for name in [*COUNTERS, "Time Game On"]}

    def until(self, holds, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if holds():
                return True
            time.sleep(0.1)
        return holds()

    def mend(self):
        for line in MENDED:
            self.do(line)
        time.sleep(SILENCE_ENDS_S)

    def takes_coins(self):
        """Whether the game is in play: two coins a side are counted in the books."""
        before = [self.audit("Coin Drops Left"), self.audit("Coin Drops Right")]
        self.do("coin left 2")
        self.do("coin right 2")
        self.until(lambda: self.reading("hands idle"), 5)

        def counted():
            return [self.audit("Coin Drops Left") - before[0], self.audit("Coin Drops Right") - before[1]]

        if self.until(lambda: counted() == [2, 2], STORED_S):
            return True
        if counted() == [0, 0]:
            return False
        raise Wrong(f"of two coins a side {counted()} were counted")

    def walk_out(self):
        """Back to play from any screen."""
        self.do("hold service 1500")
        time.sleep(2)
        for attempt in range(20):
            if attempt:  # some screens ignore Service
                self.do("test")
                time.sleep(0.5)
            for _ in range(5):
                self.do("service")
                time.sleep(0.5)
            if self.takes_coins():
                return attempt
        raise Wrong("the game doesn't come back to play, or hangs")


def round_of(machine, dice, seconds):
    away = []
    if dice.random() < 0.8:
        machine.do("test 4000")
        time.sleep(4.5)
    end = time.monotonic() + seconds
    presses = pulls = 0
    while time.monotonic() < end:
        if dice.random() < 0.82:
            machine.do(dice.choices(list(PRESSES), list(PRESSES.values()))[0])
            presses += 1
        elif away and dice.random() < 0.5:
            machine.do(PULLS[away.pop(dice.randrange(len(away)))])
        elif dice.random() < 0.2:
            machine.do(dice.choice(SHOCKS))
        else:
            away.append(dice.choice(list(PULLS)))
            machine.do(away[-1])
            pulls += 1
        time.sleep(dice.uniform(*GAP_S))
    return presses, pulls


def check_books(before, now, seconds):
    """Counters only grow, except in an audit reset, after which Time Game On is shorter than the time since
    the last check. True after a reset."""
    if now["Time Game On"] < seconds * 1000:
        return True
    fallen = [name for name in COUNTERS if now[name] < before[name]]
    if fallen:
        raise Wrong("counters fell without a reset: "
                    + ", ".join(f"{name} {before[name]:g} to {now[name]:g}" for name in fallen))
    return False


def play(machine, dice, minutes):
    if not machine.until(lambda: machine.reading("lockout left"), 120) or not machine.takes_coins():
        raise Wrong("the game doesn't start")
    books, looked = machine.books(), time.monotonic()
    end = time.monotonic() + 60 * minutes
    rounds = presses = pulls = resets = 0
    while time.monotonic() < end:
        more_presses, more_pulls = round_of(machine, dice, ROUND_S)
        machine.mend()
        attempts = machine.walk_out()
        now = machine.books()
        resets += check_books(books, now, time.monotonic() - looked)
        books, looked = now, time.monotonic()
        rounds, presses, pulls = rounds + 1, presses + more_presses, pulls + more_pulls
        print(f"round {rounds}: {presses} presses, {pulls} pulls, {resets} audit resets, "
              f"boot count {books['Boot Count']:g}, entries {books['Test Entry Count']:g}, "
              f"coins {books['Coin Drops Left']:g}, frogs {books['Games Played Left']:g} and "
              f"{books['Games Played Right']:g}, tickets {books['Tickets Left']:g}, "
              f"restarts {machine.reading('restarts'):g}, bites {machine.reading('usb bites'):g}, "
              f"back in play at attempt {attempts}", flush=True)


def end_and_look_again(machine):
    """The next start reads what is on disk."""
    machine.do("quit game")
    if not machine.until(lambda: machine.reading("game ended"), 60):
        raise Wrong("the game doesn't quit")
    if machine.reading("game exit-code") != 0:
        raise Wrong(f"the game ended with {machine.reading('game exit-code'):g}")
    before = machine.books()
    machine.do("start game")
    if not machine.until(lambda: machine.audit("Boot Count") == before["Boot Count"] + 1, 120):
        raise Wrong("the game doesn't start again")
    now = machine.books()
    changed = [name for name in COUNTERS if name != "Boot Count" and now[name] != before[name]]
    if changed:
        raise Wrong(f"a new start changed {changed}")
    if not machine.until(machine.takes_coins, 60):
        raise Wrong("the game started again doesn't count coins")


def main(out, minutes="60", seed=None):
    seed = seed or str(random.randrange(1 << 30))
    print(f"random presses for {minutes} minutes, seed {seed}", flush=True)
    with Cabinet(out) as cabinet:
        machine = Machine(cabinet)
        try:
            play(machine, random.Random(seed), float(minutes))
            end_and_look_again(machine)
        except (Wrong, OSError, ValueError) as wrong:
            print("\n".join(machine.done[-40:]))
            print(f"seed {seed}: {wrong or type(wrong).__name__}")
            return 1
    print("books whole, game alive")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
