// Runs sound-output.js without a browser's sound thread, in simulated time: a block is 512 frames, a
// pull 128. Returns a list of faults. SOURCE is that file's text.
(() => {
  const wrong = [];
  const BLOCK = 512, PULL = 128, MS = 44.1;
  let Output = null;
  class AudioWorkletProcessor {
    constructor() { this.reports = []; this.port = {postMessage: report => this.reports.push(report)}; }
  }
  new Function("AudioWorkletProcessor", "registerProcessor", "sampleRate", "currentTime", SOURCE)(
    AudioWorkletProcessor, (_, made) => { Output = made; }, 44100, 0);

  const sampleAt = frame => (frame * 7919 % 65536) - 32768;
  function block(frame) {
    const samples = new Int16Array(BLOCK * 2);
    for (let i = 0; i < BLOCK; ++i) { samples[2 * i] = sampleAt(frame + i); samples[2 * i + 1] = -samples[2 * i] - 1; }
    return {frame, time: frame / MS * 1000, samples};
  }

  // Pulls `seconds` of sound. Block n comes at n blocks' time * `pace` + lateness(n) frames, if it comes.
  function play(seconds, {pace = 1, late = () => 0, comes = () => true, pulls = () => true, number = n => n * BLOCK, tone = block} = {}) {
    const output = new Output(), heard = [];
    let next = 0, longest = 0, last = 0;
    for (let time = 0; time < seconds * 44100; time += PULL) {
      for (; Math.max(last, next * BLOCK * pace + late(next)) <= time; ++next) {
        last = Math.max(last, next * BLOCK * pace + late(next));
        if (comes(next)) output.take(tone(number(next)));
      }
      if (!pulls(time / 44100)) continue;
      const channels = [new Float32Array(PULL), new Float32Array(PULL)];
      output.process([], [channels]);
      heard.push(channels);
      if (time > seconds * 44100 / 2) longest = Math.max(longest, output.end - output.at);
    }
    return {output, heard, longest};
  }
  const expect = (holds, what) => { if (!holds) wrong.push(what); };

  // With blocks up to 20 ms late now and then, every sample is played once, unchanged.
  {
    const {output, heard} = play(10, {late: n => n % 37 === 5 ? 20 * MS : n % 5 * 40});
    const all = heard.flatMap(([left]) => [...left]), start = all.findIndex(value => value !== 0);
    let first = 0, same = 0;  // each value comes once in 65536 frames
    while (first < 65535 && all[start] !== sampleAt(first) / 32768) ++first;
    while (start + same < all.length && all[start + same] === sampleAt(first + same) / 32768) ++same;
    expect(same === all.length - start && same > 9 * 44100, `only ${same} samples are as they came`);
    expect(output.gaps === 0 && output.cuts === 0 && output.lost === 0, "steady play has gaps");
    expect(heard.at(-1)[1][5] === (-sampleAt(first + all.length - PULL + 5 - start) - 1) / 32768, "the right side isn't");
  }
  // Clocks that differ by a thousandth: no gap, and a short buffer.
  for (const pace of [0.999, 1.001]) {
    const {output, longest} = play(60, {pace});
    expect(output.gaps === 0, `${output.gaps} gaps at pace ${pace}`);
    expect(output.cuts === 0, `sound is left out at pace ${pace}`);
    expect(longest < 75 * MS, `${longest / MS} ms in store at pace ${pace}`);
  }
  // Nothing for 400 ms, then all at once: one gap, and soon the same delay as before.
  {
    const {output, longest} = play(20, {late: n => n >= 200 && n < 235 ? (235 - n) * BLOCK : 0});
    expect(output.gaps === 1 && output.lost === 0, `a stop makes ${output.gaps} gaps`);
    expect(longest < 85 * MS, `${longest / MS} ms in store after a stop`);
  }
  // The browser itself stops for 400 ms: the sound of that time is skipped.
  {
    const {output, longest} = play(20, {pulls: second => second < 5 || second > 5.4});
    expect(output.gaps === 0 && output.cuts === 1, `a late browser: ${output.gaps} gaps, ${output.cuts} cuts`);
    expect(longest < 85 * MS, `${longest / MS} ms in store after the browser stood still`);
  }
  // Lost blocks are silence of the same length.
  {
    const {output, heard} = play(8, {comes: n => n !== 300, tone: frame => ({...block(frame), samples: new Int16Array(BLOCK * 2).fill(9)})});
    const all = heard.flatMap(([left]) => [...left]), start = all.findIndex(value => value !== 0);
    expect(output.lost === BLOCK && output.gaps === 0, `${output.lost} frames lost, ${output.gaps} gaps`);
    expect(all.slice(start).filter(value => value === 0).length === BLOCK, "the silence has another length");
  }
  // Another game begins at 0 again.
  {
    const {output} = play(12, {number: n => (n < 500 ? n : n - 500) * BLOCK});
    expect(output.playing && output.end > 44100 && output.end < 44100 * 7, `after another game's start: frame ${output.end}`);
  }
  return wrong;
})()
