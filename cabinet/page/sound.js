"use strict";
// The cabinet's loudspeaker: its switch, meter, volume and delay. The sound itself goes from
// sound-reader.js to sound-output.js and does not pass through this thread.

const SILENT_AFTER_MS = 1000;
const CLOCK_QUESTIONS = 5;
const METER_DB = 48;  // its full length

const sound = {context: null, gain: null, reader: null, output: null, clock: null, report: null, reportedAt: 0, delay: null};

// How far the cabinet's clock is ahead of performance.now(), in milliseconds. The fastest answer
// gives the best estimate.
async function readClock() {
  let best = {took: Infinity, ahead: 0};
  for (let i = 0; i < CLOCK_QUESTIONS; ++i) {
    const asked = performance.now();
    const time = Number(await (await fetch("time")).text()) / 1000;
    const took = performance.now() - asked;
    if (took < best.took) best = {took, ahead: time - asked - took / 2};
  }
  return best.ahead;
}

const setVolume = () => {
  const share = Number(find("#volume").value) / 100;
  sound.gain?.gain.setTargetAtTime(share * share, sound.context.currentTime, 0.01);
};

async function startSound() {
  const context = sound.context = new AudioContext({sampleRate: 44100, latencyHint: "interactive"});
  const resumed = context.resume();  // within the click, or the browser refuses
  sound.gain = context.createGain();
  sound.gain.connect(context.destination);
  setVolume();
  await context.audioWorklet.addModule("sound-output.js");
  if (sound.context !== context) return;
  sound.output = new AudioWorkletNode(context, "output", {numberOfInputs: 0, outputChannelCount: [2]});
  sound.output.port.onmessage = ({data}) => takeReport(data);
  sound.output.connect(sound.gain);
  sound.reader = new Worker("sound-reader.js");
  const channel = new MessageChannel();
  sound.output.port.postMessage(channel.port2, [channel.port2]);
  sound.reader.postMessage(null, [channel.port1]);
  const clock = await readClock();
  if (sound.context !== context) return;
  sound.clock = clock;
  await resumed;
}

function stopSound() {
  sound.reader?.terminate();
  sound.context?.close();
  Object.assign(sound, {context: null, gain: null, reader: null, output: null, clock: null, report: null, delay: null});
}

// From the making of a frame until it is heard, the browser's own delay included.
function delayOf(report) {
  const now = performance.now(), stamp = sound.context.getOutputTimestamp?.();
  const heard = stamp?.performanceTime > 0
    ? stamp.contextTime + (now - stamp.performanceTime) / 1000
    : sound.context.currentTime - (sound.context.outputLatency || sound.context.baseLatency || 0);
  return now + sound.clock - (report.made + (heard - report.context) * 1000);
}

function takeReport(report) {
  if (!sound.context) return;
  if (report.playing) {
    sound.reportedAt = performance.now();
    const delay = sound.clock === null ? null : delayOf(report);
    sound.delay = sound.delay === null ? delay : sound.delay + (delay - sound.delay) * 0.1;
  }
  sound.report = report;
  showSound();
}

const meterShare = peak => Math.max(0, 1 + 20 * Math.log10(Math.max(peak, 1e-6)) / METER_DB);

function showSound() {
  const on = sound.context !== null;
  const flows = on && sound.report?.playing && performance.now() - sound.reportedAt < SILENT_AFTER_MS;
  find("#sound").setAttribute("aria-pressed", on);
  find("#speaker").classList.toggle("on", on);
  const volume = sound.gain?.gain.value ?? 0;
  all("#level i").forEach((bar, side) => {
    bar.style.setProperty("--level", flows ? meterShare(sound.report.peaks[side] * volume).toFixed(3) : 0);
  });
  find("#sound b").textContent = on ? "SOUND IS ON" : "SOUND IS OFF";
  find("#delay").textContent = !on ? "click to hear" : !flows ? "no sound yet" : sound.delay === null ? "" : `${Math.round(sound.delay)} ms late`;
}

// Shown in place of the switch if there is nothing to switch.
function explainSound(text) {
  if (sound.context) stopSound();
  find("#speaker").hidden = false;
  find("#speaker").classList.add("without");
  find("#no-sound").textContent = text;
}

async function switchSound() {
  if (sound.context) {
    stopSound();
  } else {
    const started = startSound();
    const context = sound.context;
    try {
      await started;
    } catch (error) {
      if (sound.context !== context) return;  // it was switched off meanwhile
      stopSound();
      tell(`The sound can't be played: ${error.message}`);
    }
  }
  showSound();
}

// What the cabinet reports: whether the game's sound comes to the page.
function followSound(comes) {
  if (!window.AudioContext || !("audioWorklet" in AudioContext.prototype)) {
    explainSound("This browser can't play the sound: it has no AudioWorklet. Every current browser has one.");
  } else if (!comes) {
    explainSound("The sound comes from the machine that the game runs on.");
  } else {
    find("#speaker").hidden = false;
  }
}

find("#sound").onclick = switchSound;
find("#volume").oninput = setVolume;
find("#volume").onchange = () => find("#volume").blur();  // the keys are for the game
setInterval(showSound, SILENT_AFTER_MS);
