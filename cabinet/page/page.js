"use strict";
// The cabinet's page: it shows the state from /state and the picture from /picture. It sends
// actions as lines of the cabinet's command language (/command) or as keys of the game's window
// (/key).

const PAGE = Math.random().toString(36).slice(2) + Date.now().toString(36);
const SIDES = ["left", "right"];
const STRIP_TICKETS = 2, TICKET_PX = 60;
const PILE_PX = count => Math.min(count * 1.6 + 6, 70);

const find = (query, root = document) => root.querySelector(query);
const ofSide = (side, query) => find(`[data-side=${SIDES[side]}] ${query}`);
const all = (query, root = document) => [...root.querySelectorAll(query)];
const pause = ms => new Promise(done => setTimeout(done, ms));

let state = null, met = false;  // the cabinet's, and whether it has ever answered
let pictured = false;  // the game that is running now has been drawn

// --- actions -----------------------------------------------------------------------------------

let last = Promise.resolve();

// One after the other, so that no release overtakes its press.
function ask(path, body) {
  const answer = last.then(async () => {
    const response = await fetch(path, {method: "POST", body});
    const text = await response.text();
    if (!response.ok) throw new Error(text.trim());
    return text;
  });
  last = answer.catch(() => {});
  return answer;
}

let messageTimer = 0;
function tell(text) {
  const box = find("#message");
  box.textContent = text;
  box.hidden = false;
  clearTimeout(messageTimer);
  messageTimer = setTimeout(() => { box.hidden = true; }, 4000);
}

const command = line => ask("command", line).catch(error => tell(error.message));

const held = new Set();
function hold(key, down) {
  if (held.has(key) === down) return;
  if (down) held.add(key); else held.delete(key);
  ask(`key?page=${PAGE}`, `${down ? "press" : "release"} ${key}`).catch(error => tell(error.message));
  for (const button of all(`[data-hold="${CSS.escape(key)}"]`)) button.classList.toggle("down", down);
}
const letGo = () => { for (const key of [...held]) hold(key, false); };

function animate(element, name) {
  element.classList.remove(name);
  void element.offsetWidth;
  element.classList.add(name);
  element.addEventListener("animationend", () => element.classList.remove(name), {once: true});
}

function insertCoin(side) {
  const slot = ofSide(side, "[data-coin]");
  if (!state?.sides[side].takes_coins) {
    animate(slot, "back");
    tell(state?.power ? "The coin came back: this slot is locked." : "The coin came back: the cabinet has no power.");
    return;
  }
  animate(slot, "taken");
  command(`coin ${SIDES[side]}`);
}

function swipe(side) {
  animate(ofSide(side, "[data-swipe]"), "swiped");
  command(`swipe ${SIDES[side]}`);
}

// Things with two states: whether the state that needs attention is "on", and the commands that
// switch to it and back.
const TOGGLES = {
  "jam-left": [s => s.sides[0].jammed, "jam left", "clear-jam left"],
  "jam-right": [s => s.sides[1].jammed, "jam right", "clear-jam right"],
  board: [s => !s.plugged, "unplug", "plug"],
  led: [s => !s.led.plugged, "led pull", "led plug"],
  usb: [s => !s.usb_plugged, "usb pull", "usb plug"],
  deaf: [s => s.led.deaf, "led deaf", "led hears"],
  power: [s => !s.power, "power cut", "power on"],
};

function toggle(name) {
  if (!state) return;
  const [isOn, on, off] = TOGGLES[name];
  command(isOn(state) ? off : on);
}

function openDoor() {
  const open = document.body.classList.toggle("open");
  find("#door").hidden = !open;
  find("#hatch").setAttribute("aria-expanded", open);
}

// --- where the controls are --------------------------------------------------------------------

// Keys and lamps of the two sides.
const KEYS = {coin: "56", swipe: "34", start: "12"}, HALO_LAMPS = [3, 2], START_LAMPS = [5, 7];

function label(button, key, name) {
  button.setAttribute("aria-label", name);
  find("kbd", button).textContent = `key ${key}`;
}

function makeSide(name, side) {
  const place = document.getElementById(name);
  place.append(find("#side").content.cloneNode(true));
  find(".podium").append(find("#station").content.cloneNode(true));
  const station = find(".station:last-child");
  station.classList.add(name);
  for (const part of [place, station]) part.dataset.side = name;
  find("[data-name]", station).textContent = name.toUpperCase();
  find(".halo", station).dataset.lamp = HALO_LAMPS[side];
  find(".lit", station).dataset.lamp = START_LAMPS[side];
  const coin = find("[data-coin]", station), start = find(".start", station), card = find("[data-swipe]", place);
  coin.dataset.key = KEYS.coin[side];
  card.dataset.key = KEYS.swipe[side];
  start.dataset.hold = KEYS.start[side];
  label(coin, KEYS.coin[side], `Coin, ${name}`);
  label(card, KEYS.swipe[side], `Swipe a card, ${name}`);
  label(start, KEYS.start[side], `Start, ${name}`);
  coin.onclick = () => insertCoin(side);
  card.onclick = () => swipe(side);
  find("[data-pile]", place).onclick = () => takePaper(side);
}

function wire() {
  SIDES.forEach(makeSide);
  for (const button of all("[data-command]")) button.onclick = () => command(button.dataset.command);
  for (const button of all("[data-toggle]")) button.onclick = () => toggle(button.dataset.toggle);
  find("#hatch").onclick = openDoor;
  for (const button of all("[data-hold]")) {
    const key = button.dataset.hold;
    button.onpointerdown = event => {
      if (event.button !== 0) return;
      button.setPointerCapture(event.pointerId);
      hold(key, true);
    };
    button.onpointerup = button.onpointercancel = button.onlostpointercapture = () => hold(key, false);
    button.oncontextmenu = event => event.preventDefault();
    button.onkeydown = event => { if (event.key === " " || event.key === "Enter") hold(key, true); };
    button.onkeyup = event => { if (event.key === " " || event.key === "Enter") hold(key, false); };
    button.onblur = () => hold(key, false);
  }
  find("#line").onsubmit = typed;
}

async function typed(event) {
  event.preventDefault();
  const input = find("#line input"), said = find("#said");
  try {
    said.textContent = await ask("command", input.value);
    input.value = "";
  } catch (error) {
    said.textContent = error.message;
  }
  said.hidden = said.textContent === "";
}

const keyName = event => event.key === "=" ? "+" : event.key === "F2" ? "T" : event.key.toUpperCase();

// A key works where it is shown: those behind the service door need it open.
function onKey(event) {
  if (event.target.matches("input") || event.ctrlKey || event.altKey || event.metaKey) return;
  const name = CSS.escape(keyName(event)), down = event.type === "keydown";
  const button = find(`[data-hold="${name}"], [data-key="${name}"]`);
  if (!button || (down && button.closest("[hidden]"))) return;
  if (button.dataset.hold) hold(button.dataset.hold, down);
  else if (down && !event.repeat) button.click();
}

// --- the state ----------------------------------------------------------------------------------

// Which of the seven segments a digit lights: from the top clockwise, the middle last.
const DIGITS = ["1111110", "0110000", "1101101", "1111001", "0110011", "1011011", "1011111", "1110000", "1111111", "1111011"];
const SEGMENTS = ["4,2 26,2 22,8 8,8", "27,3 27,27 21,24 21,9", "27,29 27,53 21,47 21,32", "4,54 26,54 22,48 8,48",
                  "3,29 3,53 9,47 9,32", "3,3 3,27 9,24 9,9", "5,28 9,25 21,25 25,28 21,31 9,31"];
const LED_DIGITS = 4;

function makeLed() {
  const digit = at => `<g transform="translate(${at * 36})">${SEGMENTS.map(points => `<polygon points="${points}"/>`).join("")}</g>`;
  find("[data-led]").innerHTML =
    `<svg viewBox="0 0 ${LED_DIGITS * 36 - 6} 56">${[...Array(LED_DIGITS).keys()].map(digit).join("")}</svg>`;
}

function showLed(led) {
  const text = led.value < 0 ? "" : String(led.value);
  all("[data-led] g").forEach((group, at) => {
    const lit = DIGITS[text[at - LED_DIGITS + text.length]] ?? "0000000";
    all("polygon", group).forEach((segment, i) => segment.classList.toggle("on", lit[i] === "1"));
  });
  find("[data-led]").classList.toggle("blink", led.blink);
  find("[data-led]").setAttribute("aria-label", `Bonus display: ${text || "dark"}`);
}

// To the eye, half the power is more than half the light.
const MARQUEE_FULL = 2048, LAMP_FULL = 4095;
function showLamps(lamps) {
  for (const element of all("[data-lamp]")) {
    const channel = Number(element.dataset.lamp);
    const share = lamps[channel] / (channel >= 13 ? MARQUEE_FULL : LAMP_FULL);
    element.style.setProperty("--lit", Math.sqrt(Math.min(share, 1)).toFixed(3));
  }
}

const taken = [0, 0];
function takePaper(side) {
  if (state) taken[side] = state.sides[side].paper_out;
  if (state) showPaper(side, state.sides[side]);
}

function showPaper(side, now) {
  taken[side] = Math.min(taken[side], now.paper_out);  // it is less after a restart of the cabinet
  const count = now.paper_out - taken[side];
  const hanging = Math.min(count, STRIP_TICKETS);
  const strip = ofSide(side, "[data-strip]");
  strip.style.height = `${hanging * TICKET_PX}px`;
  strip.style.backgroundPositionY = `${now.paper_out * TICKET_PX}px`;
  ofSide(side, "[data-layers]").style.height = count > STRIP_TICKETS ? `${PILE_PX(count)}px` : "0";
  ofSide(side, "[data-count]").textContent = count;
  ofSide(side, "[data-fault]").classList.toggle("on", now.fault || now.paper_left === 0);
  ofSide(side, "[data-mouth]").textContent =
    now.paper_left === 0 ? "NO PAPER" : now.fault ? (now.jammed ? "JAMMED" : "STOPPED") : now.owed ? `${now.owed} TO COME` : "TICKETS";
}

const six = number => String(number).padStart(6, "0");
function showSide(now, side) {
  const credits = now.audits["Current Credits"];
  ofSide(side, "[data-credits]").textContent = now.free_play ? "free play"
    : credits === null ? "" : `${credits} credit${credits === 1 ? "" : "s"}`;
  ofSide(side, "[data-coin-meter]").textContent = six(now.coin_meter);
  ofSide(side, "[data-ticket-meter]").textContent = six(now.ticket_meter);
  const lock = ofSide(side, "[data-lock]");
  lock.classList.toggle("takes", now.takes_coins);
  lock.title = now.takes_coins ? "takes coins" : "locked: coins come back";
  find(`.station.${SIDES[side]}`).dataset.next = !state.game || !now.takes_coins ? "" : now.free_play || credits > 0 ? "start" : "coin";
  showPaper(side, now);
}

function listItem(good, text) {
  const item = document.createElement("li");
  item.className = good ? "good" : "";
  item.textContent = text;
  return item;
}

function showBooks(now) {
  const rows = Object.keys(now.sides[0].audits).map(name => {
    const row = document.createElement("tr");
    for (const text of [name, ...now.sides.map(side => side.audits[name] ?? "?")]) row.insertCell().textContent = text;
    return row;
  });
  find("[data-books]").replaceChildren(...rows);
  find("[data-stored]").textContent = now.stored_at
    ? `Stored at ${new Date(now.stored_at * 1000).toLocaleTimeString()}.` : "Not stored yet.";
}

// Why the game's picture isn't on the screen; empty if it is.
function troubleText() {
  if (!state) return met ? "The cabinet doesn't answer.\nHas it ended? Start it again with ./play." : "Looking for the cabinet.";
  if (!state.power) return "The power is off.\nIts switch is behind the service door.";
  if (!state.game) return "The game has ended.\nBehind the service door, the command \"start game\" starts it again.";
  if (state.picture_trouble) return `${state.picture_trouble[0].toUpperCase()}${state.picture_trouble.slice(1)}.`;
  return pictured ? "" : "The game is starting.";
}

// No old picture is left on the screen, and none that is still on its way gets there.
function showTrouble() {
  if (!state?.game || state.picture_trouble) pictured = false;
  const text = troubleText();
  find("#trouble p").textContent = text;
  find("#trouble").hidden = text === "";
  find(".glass").classList.toggle("dark", text !== "");
  document.body.classList.toggle("offline", !state);
}

function show(now) {
  state = now;
  met = true;
  showLamps(now.lamps);
  showLed(now.led);
  now.sides.forEach(showSide);
  find("[data-devices]").replaceChildren(
    ...now.devices.map(device => listItem(device.good, `${device.name}: ${device.text}`)),
    listItem(pictureRate > 0, `Picture: ${pictureRate} a second`));
  for (const button of all("[data-toggle]")) button.classList.toggle("on", TOGGLES[button.dataset.toggle][0](now));
  for (const knob of all("[data-input]")) knob.classList.toggle("down", now.pressed.includes(knob.dataset.input));
  showBooks(now);
  window.followSound?.(now.sound);  // sound.js is loaded after this script
  showTrouble();
}

function followState() {
  const stream = new EventSource(`state?page=${PAGE}`);
  stream.onmessage = event => show(JSON.parse(event.data));
  stream.onerror = () => {
    state = null;
    showTrouble();
    if (stream.readyState !== EventSource.CLOSED) return;  // the browser tries again by itself
    setTimeout(followState, 1000);
  };
}

// --- the picture --------------------------------------------------------------------------------

let pictures = 0, pictureRate = 0;
setInterval(() => { pictureRate = pictures; pictures = 0; }, 1000);

const visible = () => new Promise(done => {
  if (!document.hidden) done();
  else document.addEventListener("visibilitychange", () => done(), {once: true});
});

const tiny = new OffscreenCanvas(8, 8).getContext("2d", {willReadFrequently: true});
function isDark(bitmap) {
  tiny.drawImage(bitmap, 0, 0, 8, 8);
  return tiny.getImageData(0, 0, 8, 8).data.every((value, i) => i % 4 === 3 || value < 8);
}

// Asks for a picture when the last one has arrived, and decodes that one meanwhile: never an old
// one, and no more than this machine can show.
async function followPicture() {
  const canvas = find("#screen"), context = canvas.getContext("bitmaprenderer");
  let number = 0, drawn = Promise.resolve();
  for (;;) {
    await visible();
    try {
      const response = await fetch(`picture?after=${number}`);
      if (!response.ok) throw new Error(response.statusText);
      if (response.status === 204) continue;
      number = response.headers.get("X-Frame");
      const blob = await response.blob();
      await drawn;
      drawn = createImageBitmap(blob).then(bitmap => {
        const dark = !pictured && isDark(bitmap);  // a window that nothing is drawn in yet
        context.transferFromImageBitmap(bitmap);
        ++pictures;
        if (pictured || dark || !state?.game || state.picture_trouble) return;
        pictured = true;
        showTrouble();
      });
    } catch {
      await pause(1000);
    }
  }
}

wire();
makeLed();
addEventListener("keydown", onKey);
addEventListener("keyup", onKey);
addEventListener("blur", letGo);
addEventListener("pagehide", letGo);
document.addEventListener("visibilitychange", () => { if (document.hidden) letGo(); });
showTrouble();
followState();
followPicture();
