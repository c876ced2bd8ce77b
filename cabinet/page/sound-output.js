"use strict";
// Plays the blocks that come through a port, on the browser's sound thread. A small buffer lets a
// block be late. It is kept as short as possible without gaps, and grows after a gap. Two clocks
// never agree: while the buffer is a little too long or too short, the speed changes by a few
// thousandths. If it is far too long, after a time without blocks, some sound is skipped. Otherwise
// samples are played unchanged.

const RATE = 44100;
const ROOM = 65536;  // frames of the ring, a power of two
const frames = ms => ms * RATE / 1000;
const LEAST = frames(30), LEAST_GROWS = frames(10), LEAST_AT_MOST = frames(110);
const BEGIN = frames(16);  // frames above the minimum, when playing begins
const TOO_LONG = frames(16), TOO_SHORT = frames(12), FAR_TOO_LONG = frames(50);  // above and below it
const FASTER = 1.004, SLOWER = 0.996;
const SHRINKS = frames(1) / 10;  // of the minimum, in a window without a gap
const WINDOW = RATE / 2;         // the minimum in the buffer is measured over this
const FADE = 256;                // cross-fade where sound is skipped
const REPORT = 2048;             // between two reports

class Output extends AudioWorkletProcessor {
  constructor() {
    super();
    this.ring = [new Float32Array(ROOM), new Float32Array(ROOM)];
    this.at = this.end = -1;  // next frame to play; after the newest
    this.newest = {frame: 0, time: 0};
    this.playing = false;
    this.step = RATE / sampleRate;
    this.speed = 1;
    this.least = LEAST;
    this.seen = Infinity;  // minimum in the buffer in this window
    this.window = this.sinceReport = 0;
    this.peaks = [0, 0];
    this.fade = this.jump = 0;  // frames of fade left; how far ahead it reads
    this.gaps = this.lost = this.cuts = 0;
    this.port.onmessage = ({data}) => { data.onmessage = block => this.take(block.data); };
  }

  take({frame, time, samples}) {
    const count = samples.length / 2;
    const far = this.end < 0 || frame < this.end || frame - this.end > ROOM / 2;
    if (far) {  // the first block, or another game's
      this.at = this.end = frame;
      this.playing = false;
    }
    this.lost += frame - this.end;
    while (this.end < frame) this.put(0, 0);
    for (let i = 0; i < count; ++i) this.put(samples[2 * i] / 32768, samples[2 * i + 1] / 32768);
    this.newest = {frame, time};
    if (this.end - this.at > ROOM - WINDOW) this.at = this.end - ROOM / 2;  // nobody plays
  }

  put(left, right) {
    const place = this.end++ & ROOM - 1;
    this.ring[0][place] = left;
    this.ring[1][place] = right;
  }

  // Adapts to the minimum of the last window.
  steer() {
    const over = this.seen - this.least;
    this.least = Math.max(this.least - SHRINKS, LEAST);
    this.speed = over > TOO_LONG ? FASTER : over < -TOO_SHORT ? SLOWER : 1;
    if (over > FAR_TOO_LONG) this.leaveOut(Math.round(over));
    if (this.speed === 1 && this.step === 1) this.at = Math.round(this.at);
    this.look();
  }

  look() {
    this.seen = Infinity;
    this.window = 0;
  }

  leaveOut(count) {
    this.at += count;
    this.jump = count;
    this.fade = FADE;
    this.cuts += 1;
  }

  sample(ring, at) {
    const whole = Math.floor(at), part = at - whole, a = ring[whole & ROOM - 1];
    return part === 0 ? a : a + (ring[whole + 1 & ROOM - 1] - a) * part;
  }

  sound([left, right], step) {
    const [ringLeft, ringRight] = this.ring;
    for (let i = 0; i < left.length; ++i, this.at += step) {
      left[i] = this.sample(ringLeft, this.at);
      right[i] = this.sample(ringRight, this.at);
      if (this.fade > 0) {
        const old = this.fade-- / FADE;
        left[i] += (this.sample(ringLeft, this.at - this.jump) - left[i]) * old;
        right[i] += (this.sample(ringRight, this.at - this.jump) - right[i]) * old;
      }
      this.peaks[0] = Math.max(this.peaks[0], Math.abs(left[i]));
      this.peaks[1] = Math.max(this.peaks[1], Math.abs(right[i]));
    }
  }

  // `made` is when the frame that plays at `context` was made.
  report() {
    this.port.postMessage({
      peaks: this.peaks, playing: this.playing, gaps: this.gaps, lost: this.lost, cuts: this.cuts,
      store: (this.end - this.at) / RATE * 1000, speed: this.speed, context: currentTime,
      made: this.newest.time / 1000 + (this.at - this.newest.frame) / RATE * 1000,
    });
    this.peaks = [0, 0];
    this.sinceReport = 0;
  }

  process(_, [output]) {
    const count = output[0].length, step = this.step * this.speed;
    const stored = this.end - this.at;
    if (!this.playing && this.end >= 0 && stored >= this.least + BEGIN) {
      // Blocks that arrived together with this one would only be late.
      this.at = Math.floor(this.end - this.least - BEGIN);
      this.playing = true;
      this.look();
    }
    if (this.playing && stored < count * step + 1) {
      this.playing = false;
      this.gaps += 1;
      this.least = Math.min(this.least + LEAST_GROWS, LEAST_AT_MOST);
    }
    if (this.playing) {
      this.seen = Math.min(this.seen, stored);
      this.sound(output, step);
      this.window += count;
      if (this.window >= WINDOW) this.steer();
    }
    this.sinceReport += count;
    if (this.sinceReport >= REPORT) this.report();
    return true;
  }
}

registerProcessor("output", Output);
