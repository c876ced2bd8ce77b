"use strict";
// The collection sheet and the last games, behind the service door. Reading them costs the cabinet a
// look through the whole journal, so they are read only while the door is open.

const SHEET_EVERY_MS = 3000;

function showSheet(books) {
  find("#span").textContent = books.unread ?? books.span[0].toUpperCase() + books.span.slice(1);
  find("[data-sheet]").replaceChildren(...(books.sheet ?? []).map(cells => {
    const row = document.createElement("tr");
    for (const text of cells) row.insertCell().textContent = text;
    return row;
  }));
  const items = (list, texts) => list.replaceChildren(...(texts ?? []).map(text => {
    const item = document.createElement("li");
    item.textContent = text;
    return item;
  }));
  items(find("[data-games]"), books.games);
  items(find("[data-wrong]"), books.wrong);
}

async function followSheet() {
  const door = find("#door");
  for (;;) {
    await visible();
    if (!door.hidden && state) {
      await fetch("books").then(answer => answer.json()).then(showSheet).catch(() => {});
    }
    await Promise.race([pause(SHEET_EVERY_MS), new Promise(done => find("#hatch").addEventListener("click", done, {once: true}))]);
  }
}

followSheet();
