// Copying a look, rendering it, and the list of keys.

import { byId, copyText, make, say } from "./elements.js";
import { Refused, post, postJSON } from "./server.js";

const kShortcuts = [
  ["Space", "play or pause"], ["← →", "a frame back or forth; with Shift a second"], ["Home End", "first or last frame"],
  ["/", "search the catalogue"], ["↑ ↓ ← →", "move through the catalogue, the look, keys and points"], ["F", "a favourite, or not any more"],
  ["Alt ↑ ↓", "move an effect in the look"], ["Delete", "remove an effect or a key"], ["I O", "the effect begins or ends here"],
  ["B", "hold: before"], ["1 2 3", "after, split, two looks"], ["X", "the other look"],
  ["Ctrl Z", "undo"], ["Ctrl Shift Z", "redo"], ["Ctrl C", "copy the look"], ["R", "render"], ["?", "these keys"],
];

export function setUpDialogs(model, session, timeNow) {
  for (const dialog of document.querySelectorAll("dialog")) {
    dialog.addEventListener("click", (event) => { if (event.target === dialog) dialog.close(); });
    dialog.querySelector("[data-close]").addEventListener("click", () => dialog.close());
  }
  byId("shortcuts").append(...kShortcuts.map(([keys, meaning]) => make("div", {}, make("dt", {}, keys.split(" ").map((key) => make("kbd", {}, key))), make("dd", {}, meaning))));

  // Copy.

  const kTexts = { command: "Command line", code: "C++", project: "Project file" };
  async function openCopy() {
    try {
      const texts = await postJSON("api/copy", model.document(), { name: byId("name").value });
      byId("texts").replaceChildren(...Object.entries(kTexts).map(([name, label]) => {
        const button = make("button", { type: "button", class: "small", onclick: async () => {
          button.textContent = (await copyText(texts[name])) ? "Copied" : "Select and copy";
          setTimeout(() => { button.textContent = "Copy"; }, 1600);
        } }, "Copy");
        const save = name === "project" && make("a", { class: "small button", download: "look.json", href: URL.createObjectURL(new Blob([texts.project], { type: "application/json" })) }, "Save as look.json");
        return make("section", {}, make("header", {}, make("h3", {}, label), save, button), make("pre", { tabindex: "0", "data-text": name }, texts[name]));
      }));
      byId("copy-dialog").showModal();
    } catch (error) {
      say(error.message, true);
    }
  }
  byId("copy").addEventListener("click", openCopy);

  // Render.

  const form = byId("render-form");
  byId("folder").textContent = session.folder;
  const stem = (session.clips[0].name || "colour").replace(/\.[^.]*$/, "");
  const isPhoto = model.timeline.clips.length === 1 && model.timeline.clips[0].isPicture;
  byId("name").value = `${stem}-look${isPhoto ? ".png" : ".mp4"}`;
  function openRender() {
    byId("replace-row").hidden = true;
    byId("render-error").hidden = true;
    byId("render-dialog").showModal();
    byId("name").select();
  }
  byId("render").addEventListener("click", openRender);
  byId("still").addEventListener("click", () => {
    byId("name").value = byId("name").value.replace(/\.[^.]*$/, "") + ".png";
    openRender();
  });
  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    byId("render-error").hidden = true;
    const replace = !byId("replace-row").hidden && byId("replace").checked;
    try {
      await post("api/export", model.document(), { name: byId("name").value, time: timeNow().toFixed(6), replace: replace ? "yes" : "no" });
      byId("replace-row").hidden = true;
    } catch (error) {
      if (error instanceof Refused && error.status === 409) {
        byId("replace-row").hidden = false;
        byId("replace").checked = false;
        byId("replace").focus();
      }
      byId("render-error").textContent = error.message;
      byId("render-error").hidden = false;
    }
  });
  byId("name").addEventListener("input", () => { byId("replace-row").hidden = true; });
  for (const button of document.querySelectorAll("[data-cancel]")) button.addEventListener("click", () => post("api/cancel"));

  /** What the tool tells of an export. */
  function showExport(state) {
    if (!state) return;
    const { frames, total } = state, isRunning = state.state === "running";
    const share = total ? frames / total : 0;
    form.classList.toggle("running", isRunning);
    byId("start").disabled = isRunning;
    for (const bar of document.querySelectorAll("[data-progress]")) {
      bar.hidden = !isRunning;
      bar.querySelector("progress").value = share;
      bar.querySelector(".done").textContent = total ? `${Math.floor(share * 100)} %` : "";
      bar.querySelector(".left").textContent = state.left > 1 ? `${Math.ceil(state.left)} s left` : "";
    }
    const name = state.file.split("/").at(-1);
    const ends = { done: `${name} is rendered, in ${state.seconds?.toFixed(1)} s.`, failed: state.error, cancelled: "Cancelled; nothing is left of it." };
    byId("render-end").textContent = ends[state.state] ?? "";
    byId("render-end").dataset.state = state.state;
    if (!isRunning && ends[state.state] && !byId("render-dialog").open) say(ends[state.state], state.state === "failed");
  }
  return { openCopy, openRender, showExport };
}
