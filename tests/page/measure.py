#!/usr/bin/env python3
"""measure.py OUT OBJ [SECONDS]: how fast, how late and how dear the page's picture is. First the
lag, with a window that shows the time; then SECONDS of play of the real game, both sides at once.
No test: the figures are for reading."""

import os
import sys
import time

from browser import Browser
from cabinet import Cabinet

# Each picture that the page draws: when, and in the first measurement the age of the time in it.
WATCH = """
(() => {
  const context = find('#screen').getContext('bitmaprenderer');
  const draw = context.transferFromImageBitmap.bind(context);
  const small = new OffscreenCanvas(1280, 40).getContext('2d', {willReadFrequently: true});
  window.seen = [];
  context.transferFromImageBitmap = bitmap => {
    let lag = 0;
    if (%s) {
      small.drawImage(bitmap, 0, 0);
      const row = small.getImageData(0, 20, 1280, 1).data;
      let time = 0;
      for (let i = 31; i >= 0; --i) time = time * 2 + (row[(i * 40 + 20) * 4] > 127 ? 1 : 0);
      lag = (Date.now() %% 2 ** 32) - time;
    }
    seen.push([performance.now(), lag]);
    draw(bitmap);
  };
})()
"""


def processor_seconds(pid):
    fields = open(f"/proc/{pid}/stat").read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def game_of(pid):
    return int(open(f"/proc/{pid}/task/{pid}/children").read().split()[0])


def percentile(values, share):
    return sorted(values)[min(int(len(values) * share), len(values) - 1)]


def report(name, seen, seconds):
    gaps = [b[0] - a[0] for a, b in zip(seen, seen[1:])]
    print(f"{name}: {len(seen) / seconds:.1f} pictures a second; between two of them "
          f"{percentile(gaps, 0.5):.0f} ms median, {percentile(gaps, 0.99):.0f} ms 99th percentile, "
          f"{max(gaps):.0f} ms at most")


def measure_lag(out, obj):
    with Cabinet(out, "--", f"{obj}/tests/page/page_clock") as cabinet:
        with Browser(cabinet.address) as page:
            page.wait("pictureRate > 0", 30)
            page.value(WATCH % "true")
            time.sleep(20)
            seen = page.value("seen")
    report("clock", seen, 20)
    lags = [lag for _, lag in seen]
    print(f"lag behind the window: {percentile(lags, 0.5)} ms median, "
          f"{percentile(lags, 0.99)} ms 99th percentile, {max(lags)} ms at most")


def play(page, seconds):
    begun = time.monotonic()
    while time.monotonic() - begun < seconds:
        for side in ("left", "right"):
            page.click(f"#{side} [data-coin]")
            time.sleep(0.5)
            page.click(f".{side} .start")
        time.sleep(4)
    return time.monotonic() - begun


def measure_play(out, seconds):
    with Cabinet(out) as cabinet, Browser(cabinet.address) as page:
        page.wait("state?.sides[0].takes_coins && pictureRate > 0", 60)
        page.value(WATCH % "false")
        pids = {"cabinet": cabinet.process.pid, "game": game_of(cabinet.process.pid)}
        before = {name: processor_seconds(pid) for name, pid in pids.items()}
        took = play(page, seconds)
        report("play", page.value("seen"), took)
        for name, pid in pids.items():
            share = (processor_seconds(pid) - before[name]) / took
            print(f"{name}: {share * 100:.0f}% of a processor")
        sides = page.value("state.sides.map(s => [s.audits['Games Played'], s.paper_out])")
        print(f"games and tickets, left and right: {sides}; errors of the page: {page.errors}")


measure_lag(*sys.argv[1:3])
measure_play(sys.argv[1], float(sys.argv[3]) if len(sys.argv) > 3 else 300)
