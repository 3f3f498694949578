// Puts the page together.

import { byId, icon, memory, say } from "./elements.js";
import { getJSON, listen, postJSON } from "./server.js";
import { Model } from "./model.js";
import { Catalogue } from "./catalogue.js";
import { Chain } from "./chain.js";
import { Scrubber } from "./scrubber.js";
import { Stage } from "./stage.js";
import { setUpDialogs } from "./dialogs.js";

const [session, entries] = await Promise.all([getJSON("api/session"), getJSON("api/catalogue")]);
const model = new Model(new Map(entries.map((entry) => [entry.name, entry])), session.project, session.timeline);
document.title = `${session.clips.map(({ name }) => name).join(", ")} – Studio`;
byId("clip-name").textContent = session.clips.map(({ name }) => name || "colour").join(" · ");
byId("device").textContent = `${session.device} · ${session.version}`;

// ---- Colours ------------------------------------------------------------------------------------------------

const dark = matchMedia("(prefers-color-scheme: dark)");
function showTheme() {
  const chosen = memory.get("theme", null);
  if (chosen) document.documentElement.dataset.theme = chosen;
  const isDark = (chosen ?? (dark.matches ? "dark" : "light")) === "dark";
  byId("theme").textContent = isDark ? "Light" : "Dark";
  byId("theme").setAttribute("aria-label", isDark ? "Light colours" : "Dark colours");
  return isDark;
}
byId("theme").addEventListener("click", () => { memory.set("theme", showTheme() ? "light" : "dark"); showTheme(); });
dark.addEventListener("change", showTheme);
showTheme();

// ---- Parts --------------------------------------------------------------------------------------------------

let moving = {};
const movingNow = (effect) => moving[model.documentPlace(effect)];
const timeNow = () => scrubber.time;
const scrubber = new Scrubber(model, session.easings, () => {
  stage.refresh();
  chain.refreshValues();
});
const stage = new Stage(model, timeNow, (now) => {
  moving = now;
  chain.refreshValues();
  stage.showHandles();
});
stage.movingValue = (effect, property) => movingNow(effect)?.[property.name];
const catalogue = new Catalogue(entries, session.hasMask, choose, model);
const chain = new Chain(model, session, timeNow, movingNow, (...still) => catalogue.stillOf(...still));
const dialogs = setUpDialogs(model, session, timeNow);

function choose(entry) {
  if (entry.kind === "effect") {
    model.add(entry.name);
    return showPanel("look");
  }
  if (session.clips.length < 2) return say("A transition needs two clips: qvfilter studio FIRST SECOND.", true);
  const join = model.join || (typeof model.target === "number" && model.target > 0 ? model.target : 1);
  model.setTransition(join, entry.name);
  model.select(`join${join}`);
  showPanel("look");
}

// ---- What follows a change ------------------------------------------------------------------------------------

let laidOut = "";
/** Where the clips lie changes with transitions; all else stays. */
async function layOut() {
  const shape = JSON.stringify(model.look.transitions.map((transition) => transition?.duration));
  if (shape === laidOut) return;
  laidOut = shape;
  try {
    model.timeline = await postJSON("api/timeline", model.document({ isPlain: true }));
    scrubber.refresh();
    showPlace();
  } catch {
    // What is wrong stands on the stage.
  }
}
let pending = false;
function refresh(isGesture) {
  stage.refresh();
  stage.showLetters();
  isGesture ? chain.refreshValues() : chain.refresh();
  scrubber.refresh();
  byId("undo").disabled = !model.canUndo;
  byId("redo").disabled = !model.canRedo;
  layOut();
}
model.addEventListener("change", ({ detail }) => {
  if (detail.isGesture && pending) return;
  if (!detail.isGesture) return refresh(false);
  // Controls tell more often than a screen shows.
  pending = true;
  queueMicrotask(() => { pending = false; refresh(true); });
});
/** What is worked on is to be seen. */
function showPlace() {
  const { start, seconds } = model.place;
  if (scrubber.time < start || scrubber.time > start + seconds - scrubber.frame / 2) scrubber.goTo(model.join ? start + seconds / 2 : start);
}
model.addEventListener("select", () => {
  catalogue.showKind(model.join ? "transition" : catalogue.kind === "transition" ? "effect" : catalogue.kind);
  showPlace();
  refresh(false);
});

byId("undo").append(icon("undo"));
byId("redo").append(icon("redo"));
byId("undo").addEventListener("click", () => model.undo());
byId("redo").addEventListener("click", () => model.redo());
byId("keep").addEventListener("submit", (event) => {
  event.preventDefault();
  const name = byId("look-name").value.trim();
  if (!name || !model.chain.length) return say("A look has a name and at least one effect.", true);
  catalogue.keepLook(name);
  byId("look-name").value = "";
});

// ---- Panels of a narrow page --------------------------------------------------------------------------------

function showPanel(name) {
  document.body.dataset.panel = name;
  for (const button of byId("panels").children) button.setAttribute("aria-selected", String(button.dataset.panel === name));
}
byId("panels").addEventListener("click", (event) => { const panel = event.target.closest("button")?.dataset.panel; if (panel) showPanel(panel); });
showPanel("effects");

// ---- Keys ---------------------------------------------------------------------------------------------------

const isTyping = (element) => element.matches?.("input:not([type=range]):not([type=checkbox]):not([type=radio]), select, textarea, pre");
const openKeys = () => byId("keys-dialog").showModal();
byId("keys").addEventListener("click", openKeys);
const kKeys = {
  " ": () => scrubber.toggle(),
  ArrowLeft: (event) => scrubber.step(event.shiftKey ? -Math.round(scrubber.rate) : -1),
  ArrowRight: (event) => scrubber.step(event.shiftKey ? Math.round(scrubber.rate) : 1),
  Home: () => { scrubber.stop(); scrubber.goTo(0); },
  End: () => { scrubber.stop(); scrubber.goTo(scrubber.last); },
  "/": () => { showPanel("effects"); byId("search").focus(); byId("search").select(); },
  b: () => stage.hold(true),
  i: () => chain.partHere("from"),
  o: () => chain.partHere("to"),
  1: () => stage.showMode("after"),
  2: () => stage.showMode("split"),
  3: () => stage.showMode("ab"),
  x: () => { if (stage.mode !== "ab") stage.showMode("ab"); model.showLook(model.state.letter === "A" ? "B" : "A"); },
  r: () => dialogs.openRender(),
  "?": openKeys,
};
document.addEventListener("keydown", (event) => {
  if (document.querySelector("dialog[open]")) return;
  const key = event.key.length === 1 ? event.key.toLowerCase() : event.key;
  const typing = isTyping(event.target);
  if (event.ctrlKey || event.metaKey) {
    if (typing && event.target.type !== "range") return;
    if (key === "z") { event.preventDefault(); event.shiftKey ? model.redo() : model.undo(); }
    if (key === "y") { event.preventDefault(); model.redo(); }
    if (key === "c" && !String(getSelection())) { event.preventDefault(); dialogs.openCopy(); }
    return;
  }
  if (event.altKey || typing) return;
  const isControl = event.target.matches("input, button, a, [role=slider], [role=tab]");
  if (isControl && (key === " " || event.key.startsWith("Arrow") || event.key === "Home" || event.key === "End")) {
    if (event.target.matches("input, [role=slider]") || key === " ") return;
  }
  const act = kKeys[key];
  if (!act || event.defaultPrevented) return;
  event.preventDefault();
  act(event);
});
document.addEventListener("keyup", (event) => { if (event.key.toLowerCase() === "b") stage.hold(false); });

// ---- Begin --------------------------------------------------------------------------------------------------

listen({
  card: (card) => catalogue.take(card),
  export: (state) => dialogs.showExport(state),
  note: (line) => say(line),
}, (isLost) => { byId("lost").hidden = !isLost; if (!isLost) catalogue.askForCards(); });
dialogs.showExport(session.export?.state === "running" ? session.export : null);
refresh(false);
/** For measuring. */
window.qvStudio = { model, stage, scrubber };
