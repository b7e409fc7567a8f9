// The menu of pages on a narrow screen, and the search through the index of search.js.
"use strict";

const menu = document.getElementById("menu");
const pages = document.getElementById("pages");
menu.addEventListener("click", () => {
  menu.setAttribute("aria-expanded", String(pages.classList.toggle("open")));
});

const search = document.getElementById("search");
const found = document.getElementById("found");
const most = 20;

// How well a part answers: every word must be there, best in its heading and there best alone.
function score([, title, , heading, text], words) {
  let sum = 0;
  for (const word of words) {
    const names = heading.toLowerCase().split(/[ .]/);
    if (names.includes(word)) sum += names.length === 1 ? 30 : 15;
    else if (heading.toLowerCase().includes(word)) sum += 8;
    else if (title.toLowerCase().includes(word)) sum += 4;
    else if (text.toLowerCase().includes(word)) sum += 1;
    else return 0;
  }
  return sum;
}

// The text around the first word that is in it, with all words marked.
function excerpt(text, words) {
  const low = text.toLowerCase();
  const places = words.map((word) => low.indexOf(word)).filter((at) => at >= 0);
  const first = Math.max(0, Math.min(...places, text.length) - 40);
  const line = document.createElement("small");
  const piece = text.slice(first, first + 160);
  let at = 0;
  while (at < piece.length) {
    const rest = piece.toLowerCase().slice(at);
    const next = words
      .map((word) => [rest.indexOf(word), word.length])
      .filter(([place]) => place >= 0)
      .sort((a, b) => a[0] - b[0])[0];
    if (next === undefined) break;
    const mark = document.createElement("mark");
    mark.textContent = piece.slice(at + next[0], at + next[0] + next[1]);
    line.append(piece.slice(at, at + next[0]), mark);
    at += next[0] + next[1];
  }
  line.append(piece.slice(at), first + 160 < text.length ? " \u2026" : "");
  return line;
}

function show() {
  const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
  found.replaceChildren();
  if (words.length === 0) return;
  const answers = zolIndex
    .map((part) => [score(part, words), part])
    .filter(([sum]) => sum > 0)
    .sort((a, b) => b[0] - a[0])
    .slice(0, most);
  if (answers.length === 0) {
    found.textContent = "Nothing was found.";
    return;
  }
  const list = document.createElement("ul");
  for (const [, [address, title, anchor, heading, text]] of answers) {
    const link = document.createElement("a");
    link.href = `${zolRoot}${address}#${anchor}`;
    link.textContent = heading === title ? title : `${title}: ${heading}`;
    link.addEventListener("click", () => found.replaceChildren());
    const item = document.createElement("li");
    item.append(link, excerpt(text, words));
    list.append(item);
  }
  found.append(list);
}

search.addEventListener("input", show);
search.form.addEventListener("submit", (event) => {
  event.preventDefault();
  found.querySelector("a")?.click();
});
document.addEventListener("keydown", (event) => {
  if (event.key === "Escape") {
    found.replaceChildren();
  } else if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName)) {
    event.preventDefault();
    search.focus();
  }
});
