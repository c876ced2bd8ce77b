#!/usr/bin/env python3
"""measure.py OUT OBJ [SECONDS]: rate, delay and cost of the page's picture and sound. First the delay,
with a stand-in for the game whose window shows the time and which plays a tone at each half second;
then what the sound costs the cabinet; then SECONDS (300) of play of the real game, both sides at once,
with a compiler at work beside it. Without a display it starts one of its own."""

import contextlib
import os
import pathlib
import subprocess
import sys
import time
import urllib.request

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "page"))
from browser import Browser  # noqa: E402
from cabinet import Cabinet  # noqa: E402

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

# What the page itself finds for the delay of the sound, about twenty times a second.
TIME_SOUND = """
(() => {
  window.delays = [];
  const take = takeReport;
  takeReport = report => {
    if (report.playing && sound.clock !== null) delays.push(delayOf(report));
    take(report);
  };
})()
"""

TONES_MS = 500  # between two, as in clock.cpp

# Each onset of a tone at the node before the loudspeaker: when it is heard, in Date.now()'s time.
LISTEN = """
(async () => {
  const ear = `registerProcessor("ear", class extends AudioWorkletProcessor {
    constructor() { super(); this.silent = 0; }
    process([input]) {
      const samples = input[0] ?? [];
      for (let i = 0; i < samples.length; ++i) {
        if (Math.abs(samples[i]) < 0.05) ++this.silent;
        else { if (this.silent > 4410) this.port.postMessage(currentTime + i / sampleRate); this.silent = 0; }
      }
      return true;
    }
  })`;
  await sound.context.audioWorklet.addModule(`data:text/javascript,${encodeURIComponent(ear)}`);
  const node = new AudioWorkletNode(sound.context, "ear", {numberOfOutputs: 0});
  window.heard = [];
  const epoch = Date.now() - performance.now();
  node.port.onmessage = ({data}) => {
    const stamp = sound.context.getOutputTimestamp();
    heard.push(epoch + stamp.performanceTime + (data - stamp.contextTime) * 1000);
  };
  sound.gain.connect(node);
})()
"""


def processor_seconds(pid):
    fields = open(f"/proc/{pid}/stat").read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def game_of(pid):
    return int(open(f"/proc/{pid}/task/{pid}/children").read().split()[0])


def percentile(values, share):
    return sorted(values)[min(int(len(values) * share), len(values) - 1)]


def delay_text(delays):
    return (f"{percentile(delays, 0.5):.0f} ms median, {percentile(delays, 0.99):.0f} ms 99th percentile, "
            f"{max(delays):.0f} ms at most")


def report(name, seen, seconds):
    gaps = [b[0] - a[0] for a, b in zip(seen, seen[1:])]
    print(f"{name}: {len(seen) / seconds:.1f} pictures a second; between two of them "
          f"{percentile(gaps, 0.5):.0f} ms median, {percentile(gaps, 0.99):.0f} ms 99th percentile, "
          f"{max(gaps):.0f} ms at most")


def measure_lag(out, obj, seconds=120):
    with Cabinet(out, "--sound", "page", "--", f"{obj}/bench/page_clock") as cabinet:
        with Browser(cabinet.address, free=True) as page:
            page.wait("pictureRate > 0 && state.sound", 30)
            page.click("#sound")
            page.wait("sound.report?.playing")
            page.value(WATCH % "true")
            page.value(LISTEN)
            time.sleep(seconds)
            seen, heard = page.value("seen"), page.value("heard")
            shown = page.value("find('#delay').textContent")
    report("clock", seen, seconds)
    lags = [lag for _, lag in seen]
    print(f"picture behind the window: {delay_text(lags)}")
    lags = [time % TONES_MS for time in heard]
    print(f"sound behind the clock: {len(lags)} tones, {delay_text(lags)}; the page says \"{shown}\"")


def measure_sound_alone(out, obj, seconds=30):
    """What the sound costs the cabinet, without a browser."""
    with Cabinet(out, "--sound", "page", "--", f"{obj}/bench/page_clock") as cabinet:
        pid = cabinet.process.pid
        shares = []
        for listen in (False, True):
            with urllib.request.urlopen(cabinet.address + "sound") if listen else contextlib.nullcontext() as stream:
                begun, before = time.monotonic(), processor_seconds(pid)
                while time.monotonic() - begun < seconds:
                    if listen:
                        stream.read1(65536)
                    else:
                        time.sleep(0.1)
                shares.append((processor_seconds(pid) - before) / seconds)
    print(f"cabinet: {shares[1] * 100:.1f}% of a processor with a listener, {shares[0] * 100:.1f}% without")


@contextlib.contextmanager
def compiler():
    """Compiles on every processor, again and again."""
    loop = "while :; do c++ -std=c++20 -O2 -I. -Isrc -c cabinet/commands.cpp -o /dev/null; done"
    loops = [subprocess.Popen(["sh", "-c", loop], start_new_session=True) for _ in range(os.cpu_count())]
    try:
        yield
    finally:
        for process in loops:
            os.killpg(process.pid, 15)
            process.wait()


def play(page, seconds):
    begun = time.monotonic()
    while time.monotonic() - begun < seconds:
        for side in ("left", "right"):
            page.click(f".{side} [data-coin]")
            time.sleep(0.5)
            page.click(f".{side} .start")
        time.sleep(4)
    return time.monotonic() - begun


def measure_play(out, seconds):
    with Cabinet(out, "--sound", "page") as cabinet, Browser(cabinet.address) as page, contextlib.ExitStack() as beside:
        page.wait("state?.sides[0].takes_coins && pictureRate > 0", 60)
        page.click("#sound")
        page.wait("sound.report?.playing")
        page.value(WATCH % "false")
        page.value(TIME_SOUND)
        beside.enter_context(compiler())
        pids = {"cabinet": cabinet.process.pid, "game": game_of(cabinet.process.pid)}
        before = {name: processor_seconds(pid) for name, pid in pids.items()}
        took = play(page, seconds)
        report("play", page.value("seen"), took)
        for name, pid in pids.items():
            share = (processor_seconds(pid) - before[name]) / took
            print(f"{name}: {share * 100:.0f}% of a processor")
        print(page.value("(({gaps, lost, cuts, store}) => `sound: ${gaps} gaps, ${lost} frames lost, "
                         "${cuts} cuts, ${Math.round(store)} ms in store`)(sound.report)"))
        print(f"sound behind the game: {delay_text(page.value('delays'))}")
        sides = page.value("state.sides.map(s => [s.audits['Games Played'], s.paper_out])")
        print(f"games and tickets, left and right: {sides}; errors of the page: {page.errors}")


@contextlib.contextmanager
def display():
    if "DISPLAY" in os.environ:
        yield
        return
    server = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1360x768x24", "-nolisten", "tcp"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    os.environ["DISPLAY"] = ":" + server.stdout.readline().strip()
    try:
        yield
    finally:
        server.terminate()
        server.wait()


with display():
    measure_lag(*sys.argv[1:3])
    measure_sound_alone(*sys.argv[1:3])
    measure_play(sys.argv[1], float(sys.argv[3]) if len(sys.argv) > 3 else 300)
