"use strict";
// Reads the cabinet's sound on its own thread, where no picture delays it, and passes it block by
// block to the port that it is given. A packet is the number of its first frame and the time when
// that was made (microseconds of the cabinet's clock), 8 bytes each; its number of frames and 0, 4
// bytes each; then 16-bit samples, left and right in turn. Lowest bytes come first.

const HEAD = 24;
const AGAIN_MS = 500;

const number = (view, at) => Number(view.getBigInt64(at, true));

// Passes on all complete packets. Returns the rest.
function handOn(bytes, output) {
  const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
  let at = 0;
  while (at + HEAD <= bytes.length) {
    const frames = view.getInt32(at + 16, true), end = at + HEAD + frames * 4;
    if (end > bytes.length) break;
    if (frames > 0) {
      const samples = new Int16Array(bytes.slice(at + HEAD, end).buffer);
      output.postMessage({frame: number(view, at), time: number(view, at + 8), samples}, [samples.buffer]);
    }
    at = end;
  }
  return bytes.slice(at);
}

function join(left, right) {
  if (left.length === 0) return right;
  const whole = new Uint8Array(left.length + right.length);
  whole.set(left);
  whole.set(right, left.length);
  return whole;
}

async function read(output) {
  const response = await fetch("sound");
  if (!response.ok) throw new Error(response.statusText);
  const reader = response.body.getReader();
  let left = new Uint8Array();
  for (;;) {
    const {done, value} = await reader.read();
    if (done) return;
    left = handOn(join(left, value), output);
  }
}

onmessage = async ({ports: [output]}) => {
  for (;;) {
    await read(output).catch(() => {});
    await new Promise(done => setTimeout(done, AGAIN_MS));
  }
};
