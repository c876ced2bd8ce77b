#!/usr/bin/env python3
"""restart_in_payout.py OUT [TIMES [SEED]]: ends the game at random moments of payouts, by a kill or a quit,
and starts it again. While the board stays up, the tickets that came out have to be those that the
books show awarded. Prints a line for each restart; ends with 1 at the first difference."""

import pathlib
import random
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "page"))
from cabinet import Cabinet  # noqa: E402
from random_presses import Machine, Wrong  # noqa: E402

TICKETS = 25
WAIT_S = 40


def awarded(machine):
    return int(machine.audit("Tickets Left") + machine.audit("Tickets Right"))


def paper(machine):
    return int(machine.reading("tickets left") + machine.reading("tickets right"))


def owed_by_board(machine):
    return machine.reading("owed left") + machine.reading("owed right")


def wait(machine, what, holds, seconds=WAIT_S):
    if not machine.until(holds, seconds):
        raise Wrong(f"not within {seconds} s: {what}")


def started(machine):
    machine.do("start game")
    wait(machine, "the lockout coils are on",
         lambda: machine.reading("lockout left") and machine.reading("lockout right"))


def one_restart(machine, chance):
    """A payout on one side or both, an end in its middle, and the sums after it, as a line."""
    sides = chance.choice((["left"], ["right"], ["left", "right"]))
    rate = chance.choice((4, 10, 40))
    end = chance.choice(("kill", "quit"))
    away_s = chance.choice((0, 0.5, 3, 8))
    paid = paper(machine)
    for side in sides:
        machine.do(f"rate {side} {rate}")
        machine.do(f"coin {side}")
    wait(machine, "paper comes out", lambda: paper(machine) > paid)
    time.sleep(chance.uniform(0, TICKETS / rate))
    out_then = paper(machine) - paid
    machine.do(f"{end} game")
    wait(machine, "the game has ended", lambda: machine.reading("game ended"))
    time.sleep(away_s)
    left_then = owed_by_board(machine)
    started(machine)
    wait(machine, "the board owes nothing", lambda: owed_by_board(machine) == 0)
    time.sleep(3)
    story = (f"{end:4} after {out_then:2} of {TICKETS * len(sides)}, {rate:2} a second, away for {away_s} s, "
             f"board then owed {left_then:.0f}: paper {paper(machine)}, awarded {awarded(machine)}")
    if paper(machine) != awarded(machine) or owed_by_board(machine):
        raise Wrong(story)
    return story


def main():
    out = pathlib.Path(sys.argv[1]).resolve()
    times = int(sys.argv[2]) if len(sys.argv) > 2 else 20
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1000000)
    chance = random.Random(seed)
    print(f"seed {seed}", flush=True)
    with Cabinet(out, log=sys.stderr) as cabinet:
        machine = Machine(cabinet)
        try:
            machine.do("quit game")
            wait(machine, "the game has ended", lambda: machine.reading("game ended"))
            for line in ('set pref "Fixed Ticket" 1', f'set pref "Fixed Tickets Per Game" {TICKETS}',
                         'set pref "Timeout (Seconds)" 0'):
                machine.do(line)
            started(machine)
            for _ in range(times):
                print(one_restart(machine, chance), flush=True)
        except Wrong as wrong:
            print(f"WRONG: {wrong}")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
