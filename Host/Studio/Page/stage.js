// The picture: after, split with what it was before, or two looks side by side; and points on it.

import { byId, clamp, make } from "./elements.js";
import { Feed } from "./server.js";
import { isMoving } from "./model.js";
import { isPoint, pointFromPicture, pointOnPicture } from "./controls.js";

/** The longer side of a preview, pixels. */
const kSide = 640;

export class Stage {
  constructor(model, timeNow, onMoving) {
    Object.assign(this, { model, timeNow, onMoving });
    this.mode = "after";
    this.cut = 0.5;
    this.canvases = { main: byId("picture"), before: byId("picture-before"), other: byId("picture-other") };
    this.feeds = Object.fromEntries(Object.keys(this.canvases).map((view) => [view, new Feed(view,
      (bitmap, told) => this.take(view, bitmap, told), (error) => this.refuse(view, error))]));
    this.divide(byId("divider"));
    byId("modes").addEventListener("change", (event) => this.showMode(event.target.value));
    byId("letters").addEventListener("click", (event) => { const letter = event.target.closest("button")?.dataset.letter; if (letter) model.showLook(letter); });
    this.latencies = [];
  }

  get side() { return Math.min(kSide, Math.max(this.model.timeline.width, this.model.timeline.height)); }
  /** Asks for what is to be seen now. */
  refresh() {
    const { model } = this, time = this.timeNow(), { letter } = model.state;
    byId("stage").style.setProperty("--aspect", String(model.timeline.width / model.timeline.height));
    this.feeds.main.want(model.document(), time, this.side);
    if (this.mode === "split" || this.isHeld) this.feeds.before.want(model.document({ isPlain: true }), time, this.side);
    if (this.mode === "ab") this.feeds.other.want(model.document({ letter: letter === "A" ? "B" : "A" }), time, this.side);
    this.showHandles();
  }
  async take(view, bitmap, { time, since, moving }) {
    const canvas = this.canvases[view];
    if (canvas.width !== bitmap.width || canvas.height !== bitmap.height) Object.assign(canvas, { width: bitmap.width, height: bitmap.height });
    canvas.getContext("2d").drawImage(bitmap, 0, 0);
    bitmap.close();
    if (view !== "main") return;
    const spent = performance.now() - since;
    this.latencies.push(spent);
    if (this.latencies.length > 500) this.latencies.shift();
    byId("speed").textContent = `${canvas.width} × ${canvas.height} · ${Math.round(spent)} ms`;
    byId("problem").hidden = true;
    this.shownTime = time;
    this.onMoving(moving);
  }
  refuse(view, error) {
    if (view !== "main") return;
    byId("problem").textContent = error.message || "The tool does not answer.";
    byId("problem").hidden = false;
  }

  showMode(mode) {
    this.mode = mode;
    byId("modes").querySelector(`[value="${mode}"]`).checked = true;
    byId("stage").dataset.mode = mode;
    if (mode === "ab" && !this.model.state.looks.B) this.model.state.looks.B = JSON.parse(JSON.stringify(this.model.state.looks.A));
    this.showLetters();
    this.refresh();
  }
  showLetters() {
    const { letter } = this.model.state;
    byId("stage").dataset.letter = letter;
    for (const button of byId("letters").children) button.setAttribute("aria-pressed", String(button.dataset.letter === letter));
    byId("label-main").textContent = this.mode === "ab" ? letter : "After";
    byId("label-other").textContent = letter === "A" ? "B" : "A";
    byId("letters").hidden = this.mode !== "ab";
  }
  /** What it was before, for as long as a key is held. */
  hold(isHeld) {
    if (this.isHeld === isHeld || this.mode !== "after") return;
    this.isHeld = isHeld;
    byId("stage").classList.toggle("held", isHeld);
    if (isHeld) this.refresh();
  }

  /** The line between before and after: dragged, or moved by the arrows. */
  divide(divider) {
    const show = (share) => {
      this.cut = clamp(share, 0, 1);
      byId("stage").style.setProperty("--cut", `${this.cut * 100}%`);
      divider.setAttribute("aria-valuenow", String(Math.round(this.cut * 100)));
    };
    divider.addEventListener("keydown", (event) => {
      const by = { ArrowLeft: -0.02, ArrowRight: 0.02, Home: -1, End: 1 }[event.key];
      if (!by) return;
      event.preventDefault();
      event.stopPropagation();
      show(this.cut + by);
    });
    this.drag(divider, (x) => show(x));
    show(this.cut);
  }
  /** Tells where on the main picture the pointer is while something is dragged. */
  drag(element, tell) {
    element.addEventListener("pointerdown", (event) => {
      event.preventDefault();
      element.focus();
      element.setPointerCapture(event.pointerId);
      const move = (moved) => {
        const box = this.canvases.main.getBoundingClientRect();
        tell(clamp((moved.clientX - box.left) / box.width, 0, 1), clamp((moved.clientY - box.top) / box.height, 0, 1));
      };
      element.addEventListener("pointermove", move);
      element.addEventListener("pointerup", () => element.removeEventListener("pointermove", move), { once: true });
    });
  }

  /** The points of the chosen effect. */
  showHandles() {
    const { model } = this, effect = model.effect;
    const points = effect ? model.propertiesOf(effect).filter(isPoint) : [];
    const shape = points.length ? `${effect.id} ${points.map(({ name }) => name)}` : "";
    const box = byId("handles");
    if (shape !== this.handles) {
      this.handles = shape;
      box.replaceChildren(...points.map((property) => this.handle(property)));
    }
    points.forEach((property, i) => {
      const value = model.valueOf(effect, property);
      const now = isMoving(value) ? (this.movingValue?.(effect, property) ?? value[0].value) : value;
      const [x, y] = pointOnPicture(property, now);
      box.children[i].style.left = `${x * 100}%`;
      box.children[i].style.top = `${y * 100}%`;
      box.children[i].point = [x, y];
    });
  }
  handle(property) {
    const set = (x, y) => this.model.setValue(this.model.effect, property, pointFromPicture(property, clamp(x, 0, 1), clamp(y, 0, 1)), this.timeNow());
    const handle = make("button", { type: "button", class: "handle", "aria-label": `${property.title}: move with the arrows`, title: property.title,
      onkeydown: (event) => {
        const by = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] }[event.key];
        if (!by) return;
        event.preventDefault();
        event.stopPropagation();
        const [x, y] = handle.point, step = event.shiftKey ? 0.1 : 0.01;
        set(x + by[0] * step, y + by[1] * step);
      } });
    this.drag(handle, set);
    return handle;
  }
}
