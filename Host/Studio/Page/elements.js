// Elements of the page, and what they say to the user.

/** An element with attributes, listeners (on…), properties (.name) and children. */
export function make(tag, attributes = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === null || value === undefined || value === false) continue;
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else if (name.startsWith(".")) element[name.slice(1)] = value;
    else element.setAttribute(name, value === true ? "" : value);
  }
  element.append(...children.flat().filter((child) => child !== null && child !== undefined && child !== false));
  return element;
}

export const byId = (id) => document.getElementById(id);
export const clamp = (value, low, high) => Math.min(high, Math.max(low, value));
export const sentence = (text) => (text ? text[0].toUpperCase() + text.slice(1) : "");

const kPaths = {
  play: "M4 2.5v11l9-5.5z",
  pause: "M4 2.5h3v11H4zM9 2.5h3v11H9z",
  close: "M4 4l8 8M12 4l-8 8",
  star: "M8 1.8l1.9 3.9 4.3.6-3.1 3 .7 4.2L8 11.5l-3.8 2 .7-4.2-3.1-3 4.3-.6z",
  key: "M8 3l5 5-5 5-5-5z",
  reset: "M3.5 6.5A5 5 0 1 1 3 9M3 3v3.5h3.5",
  eye: "M1.5 8S4 3.5 8 3.5 14.5 8 14.5 8 12 12.5 8 12.5 1.5 8 1.5 8zM8 6a2 2 0 1 0 0 4 2 2 0 0 0 0-4z",
  grip: "M6 3.5v.01M10 3.5v.01M6 8v.01M10 8v.01M6 12.5v.01M10 12.5v.01",
  plus: "M8 3v10M3 8h10",
  undo: "M6 3.5L2.5 7 6 10.5M3 7h6.5a4 4 0 0 1 0 8H7",
  redo: "M10 3.5L13.5 7 10 10.5M13 7H6.5a4 4 0 0 0 0 8H9",
};
const kFilled = new Set(["play", "pause"]);

export function icon(name) {
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("viewBox", "0 0 16 16");
  svg.setAttribute("aria-hidden", "true");
  svg.classList.add("icon");
  svg.classList.toggle("filled", kFilled.has(name));
  const path = document.createElementNS("http://www.w3.org/2000/svg", "path");
  path.setAttribute("d", kPaths[name]);
  svg.append(path);
  return svg;
}

export function iconButton(name, label, onclick, attributes = {}) {
  return make("button", { type: "button", class: "plain", "aria-label": label, title: label, onclick, ...attributes }, icon(name));
}

/** One line for a while, also for a screen reader. */
export function say(text, isWrong = false) {
  const line = make("p", { class: isWrong ? "note wrong" : "note" }, text);
  byId("notes").append(line);
  setTimeout(() => line.remove(), isWrong ? 8000 : 4000);
}

/** What is kept in this browser. */
export const memory = {
  get(name, otherwise) {
    try {
      return JSON.parse(localStorage.getItem("qvStudio." + name)) ?? otherwise;
    } catch {
      return otherwise;
    }
  },
  set(name, value) {
    try {
      localStorage.setItem("qvStudio." + name, JSON.stringify(value));
    } catch {
      // Without storage it is kept for this page only.
    }
  },
};

export async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    return false;
  }
}
