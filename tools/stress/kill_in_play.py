#!/usr/bin/env python3
"""kill_in_play.py OUT [MINUTES [SEED]]: both sides play without a pause while coins, swipes, jams, empty
dispensers and pulled cables come at random; every few seconds the game is killed or quits, and is started
again. After each restart coins and paper are counted against the books, and `books check` against the
journal. Prints a line for each restart and the sums; ends with 1 if something is missing that no kill
explains."""

import datetime
import pathlib
import random
import re
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "page"))
from cabinet import Cabinet  # noqa: E402
from random_presses import Machine, Wrong  # noqa: E402
import restart_in_payout as payout  # noqa: E402

SIDES = ("left", "right")
PULLS = {"jam {}": "clear-jam {}", "empty {}": "refill {}", "unplug": "plug"}
ENDS = {"kill game": True, "quit game": False}  # and whether it may take a coin
WAIT_S = 600  # for the frogs of all credits
PLAY_S = (4, 120)  # from a restart to the next end
STORED_S = 0.5  # a kill may take a coin that the game had no longer than this before its last event
FLIGHT_S = 12  # of a frog, at most
PAPER_S = 20
SETTLED_S = 3  # for the books


def sums(machine, name):
    return int(sum(machine.audit(f"{name} {side.capitalize()}") for side in SIDES))


def wait(machine, what, holds):
    payout.wait(machine, what, holds, WAIT_S)


def takes_coins(machine):
    return all(machine.reading(f"lockout {side}") for side in SIDES)


def play(machine, chance, seconds, pulls):
    """Plays and breaks things. Returns the moments of the coins put in."""
    put_in = []
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        side = chance.choice(SIDES)
        if chance.random() < 0.12:
            pull = chance.choice(list(pulls))
            machine.do(pull.format(side))
            time.sleep(chance.uniform(0.2, 2))
            machine.do(pulls[pull].format(side))
        elif takes_coins(machine):
            machine.do(f"coin {side}")
            put_in.append(time.time())
        time.sleep(chance.uniform(0.3, 2.5))
    return put_in


def last_event(drive, ended):
    """When the game was last seen alive: by its journal, in which a kill leaves half a line at most. A game whose
    calendar was set says nothing of it."""
    lines = (pathlib.Path(drive) / "journal").read_text().split("\n")[:-1]
    moment = datetime.datetime.fromisoformat(lines[-1].split()[0].replace("Z", "+00:00")).timestamp()
    return moment if 0 <= ended - moment < WAIT_S else ended


def settle(machine):
    """Waits until no frog is in play and all paper is out. A dispenser that gave up goes on with its side's
    next win, so such a side gets a coin. Returns how many."""
    put_in = 0
    for _ in range(5):
        wait(machine, "no credit is left", lambda: sums(machine, "Current Credits") == 0)
        time.sleep(FLIGHT_S)
        if machine.until(lambda: payout.owed_by_board(machine) == 0, PAPER_S):
            time.sleep(SETTLED_S)
            return put_in
        for side in SIDES:
            if machine.reading(f"owed {side}"):
                machine.do(f"coin {side}")
                put_in += 1
    raise Wrong("paper is owed for good")


def explained(check, known):
    """What `books check` names: the paper of wins that are not in the books, and what was ordered again without an
    answer, and may have come out twice. `known`: what it has named before; grows."""
    new = set(check.splitlines()) - known
    known |= new
    told = "\n".join(new)
    return (sum(map(int, re.findall(r"the books at the start don't have .* tickets .* paper=(\d+)", told))),
            sum(map(int, re.findall(r"(\d+) tickets ordered again", told))))


def one_run(machine, chance, drive, out, pulls, ends, known):
    coins, paper, games = sums(machine, "Coin Drops"), payout.paper(machine), sums(machine, "Games Played")
    tickets = payout.awarded(machine)
    moments = play(machine, chance, chance.uniform(*PLAY_S), pulls)
    end = chance.choice(list(ends))
    ended = time.time()
    machine.do(end)
    wait(machine, "the game has ended", lambda: machine.reading("game ended"))
    doubtful = sum(moment > last_event(drive, ended) - STORED_S for moment in moments)
    for mend in pulls.values():
        for side in SIDES:
            machine.do(mend.format(side))
    time.sleep(chance.choice((0, 0.5, 3)))
    machine.do("start game")
    wait(machine, "it takes coins", lambda: takes_coins(machine))
    put_in = len(moments) + settle(machine)
    now = {"coins": sums(machine, "Coin Drops") - coins, "paper": payout.paper(machine) - paper,
           "games": sums(machine, "Games Played") - games, "tickets": payout.awarded(machine) - tickets}
    check = subprocess.run([f"{out}/books", "check", drive], capture_output=True, text=True)
    unbooked, again = explained(check.stdout, known)
    story = (f"{end}: coins {put_in}, counted {now['coins']}; games {now['games']}, awarded {now['tickets']}, paper "
             f"{now['paper']}, {unbooked} of it for a win that a kill kept from the books, at most {again} ordered twice; "
             f"check {'adds up' if check.returncode == 0 else 'finds: ' + check.stdout}")
    lost_coins = put_in - now["coins"]
    if not 0 <= lost_coins <= (doubtful if ends[end] else 0):
        raise Wrong(story)
    if check.returncode or not 0 <= now["paper"] - now["tickets"] - unbooked <= again:
        raise Wrong(story)
    return story, now["games"], lost_coins, unbooked


def runs_until_wrong(machine, chance, drive, out, minutes, pulls=PULLS, ends=ENDS):
    """Returns the exit code."""
    runs = games = coins = tickets = 0
    known = set()
    try:
        machine.do("quit game")
        wait(machine, "the game has ended", lambda: machine.reading("game ended"))
        machine.do('set pref "Timeout (Seconds)" 0')
        machine.do("start game")
        wait(machine, "it takes coins", lambda: takes_coins(machine))
        end = time.monotonic() + minutes * 60
        while time.monotonic() < end:
            story, played, lost_coins, unbooked = one_run(machine, chance, drive, out, pulls, ends, known)
            runs, games, coins, tickets = runs + 1, games + played, coins + lost_coins, tickets + unbooked
            print(story, flush=True)
    except Wrong as wrong:
        print(f"WRONG: {wrong}", *machine.done, sep="\n")
        subprocess.run([f"{out}/books", "events", drive, "--last", "400"])
        return 1
    print(f"{runs} restarts, {games} games; kills took {coins} coins and kept {tickets} paid tickets from the books")
    return 0


def main():
    out = pathlib.Path(sys.argv[1]).resolve()
    minutes = float(sys.argv[2]) if len(sys.argv) > 2 else 10
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1000000)
    print(f"seed {seed}", flush=True)
    with Cabinet(out, log=sys.stderr) as cabinet:
        return runs_until_wrong(Machine(cabinet), random.Random(seed), cabinet.drive.name, out, minutes)


if __name__ == "__main__":
    sys.exit(main())
