// Time: playing, the scrubber, and the keys of the chosen effect.

import { byId, clamp, icon, make } from "./elements.js";
import { isMoving } from "./model.js";

export function clock(seconds, rate) {
  const whole = Math.floor(seconds + 1e-6), minutes = Math.floor(whole / 60);
  const frame = Math.floor((seconds - whole) * rate + 1e-3);
  return `${minutes}:${String(whole % 60).padStart(2, "0")}:${String(Math.max(frame, 0)).padStart(2, "0")}`;
}

export class Scrubber {
  /** `onTime` is told when the time has changed. */
  constructor(model, easings, onTime) {
    Object.assign(this, { model, easings, onTime, time: 0, isPlaying: false, chosen: null });
    this.bar = byId("scrubber");
    this.bar.addEventListener("keydown", (event) => this.keyOn(event));
    this.drag(this.bar, (seconds) => this.goTo(seconds));
    byId("play").addEventListener("click", () => this.toggle());
    this.refresh();
    this.showPlaying();
  }

  get rate() { return this.model.timeline.rate; }
  get frame() { return 1 / this.rate; }
  /** That of the last frame. */
  get last() { return Math.max(0, this.model.timeline.seconds - this.frame); }
  share(seconds) { return `${clamp(seconds / Math.max(this.model.timeline.seconds, 1e-6), 0, 1) * 100}%`; }

  /** To the frame that is shown then. */
  goTo(seconds) {
    const time = clamp(Math.round(seconds * this.rate) / this.rate, 0, this.last);
    if (Math.abs(time - this.time) < 1e-6) return;
    this.time = time;
    this.showTime();
    this.onTime();
  }
  step(frames) { this.stop(); this.goTo(this.time + frames * this.frame); }

  toggle() { this.isPlaying ? this.stop() : this.play(); }
  play() {
    this.isPlaying = true;
    if (this.time >= this.last - this.frame / 2) this.goTo(0);
    const begin = performance.now(), from = this.time;
    const go = (now) => {
      if (!this.isPlaying) return;
      const time = from + (now - begin) / 1000;
      if (time > this.last + this.frame) { this.goTo(0); this.stop(); return this.play(); }
      this.goTo(time);
      requestAnimationFrame(go);
    };
    requestAnimationFrame(go);
    this.showPlaying();
  }
  stop() {
    this.isPlaying = false;
    this.showPlaying();
  }
  showPlaying() {
    const label = this.isPlaying ? "Pause" : "Play";
    byId("play").replaceChildren(icon(this.isPlaying ? "pause" : "play"));
    byId("play").setAttribute("aria-label", label);
    byId("play").title = `${label} (Space)`;
  }
  showTime() {
    this.bar.style.setProperty("--at", this.share(this.time));
    byId("lanes").style.setProperty("--at", this.share(this.time));
    this.bar.setAttribute("aria-valuenow", this.time.toFixed(3));
    this.bar.setAttribute("aria-valuetext", clock(this.time, this.rate));
    byId("time").textContent = clock(this.time, this.rate);
  }

  drag(element, tell, done = () => {}) {
    element.addEventListener("pointerdown", (event) => {
      if (event.target.closest("button") && event.target.closest("button") !== element) return;
      event.preventDefault();
      element.focus();
      this.stop();
      element.setPointerCapture(event.pointerId);
      const move = (moved) => {
        const box = this.bar.getBoundingClientRect();
        tell(clamp((moved.clientX - box.left) / box.width, 0, 1) * this.model.timeline.seconds);
      };
      move(event);
      element.addEventListener("pointermove", move);
      element.addEventListener("pointerup", () => { element.removeEventListener("pointermove", move); done(); }, { once: true });
    });
  }
  keyOn(event) {
    if (event.target !== this.bar) return;
    const large = event.shiftKey ? Math.round(this.rate) : 1;
    const by = { ArrowLeft: -large, ArrowRight: large, ArrowDown: -large, ArrowUp: large, PageDown: -10, PageUp: 10, Home: -Infinity, End: Infinity }[event.key];
    if (!by) return;
    event.preventDefault();
    this.stop();
    this.goTo(Number.isFinite(by) ? this.time + by * this.frame : by < 0 ? 0 : this.last);
  }

  /** Clips, the part of the chosen effect, and its keys. */
  refresh() {
    const { model } = this, { timeline } = model, effect = model.effect;
    this.bar.setAttribute("aria-valuemax", this.last.toFixed(3));
    byId("length").textContent = clock(timeline.seconds, this.rate);
    byId("clips").replaceChildren(...timeline.clips.map((clip) => {
      const part = make("span", { class: "clip" });
      part.style.left = this.share(clip.start);
      part.style.width = this.share(clip.seconds);
      return part;
    }));
    const span = byId("span");
    span.hidden = !effect || (effect.from === undefined && effect.to === undefined);
    if (!span.hidden) {
      const { start, seconds } = model.place;
      span.style.left = this.share(start + (effect.from ?? 0));
      span.style.width = this.share((effect.to ?? seconds) - (effect.from ?? 0));
    }
    this.showLanes(effect);
    this.showTime();
  }
  showLanes(effect) {
    const { model } = this;
    const moving = effect ? model.propertiesOf(effect).filter(({ name }) => isMoving(effect.set[name])) : [];
    const focused = document.activeElement?.dataset?.key;
    if (this.chosen && !moving.some(({ name }) => effect.set[name].includes(this.chosen.key))) this.chosen = null;
    byId("lanes").replaceChildren(...moving.map((property) => {
      const keys = effect.set[property.name].map((key, i) => this.diamond(effect, property, key, `${property.name} ${i}`));
      return make("div", { class: "lane" }, make("span", { class: "name" }, property.title), make("div", { class: "track" }, keys));
    }));
    if (focused) byId("lanes").querySelector(`[data-key="${focused}"]`)?.focus();
    this.showKey();
  }
  diamond(effect, property, key, name) {
    const { model } = this, time = model.beginOf(effect) + key.at;
    const label = `${property.title} ${key.value} at ${clock(time, this.rate)}`;
    const button = make("button", { type: "button", class: "diamond", "data-key": name, "aria-label": label, title: label, "aria-pressed": String(this.chosen?.key === key),
      onclick: () => { this.chosen = { effect, property, key }; this.goTo(time); this.refresh(); },
      onkeydown: (event) => {
        const by = { ArrowLeft: -1, ArrowRight: 1 }[event.key];
        if (event.key === "Delete" || event.key === "Backspace") { event.preventDefault(); event.stopPropagation(); return model.removeKey(effect, property, key); }
        if (!by) return;
        event.preventDefault();
        event.stopPropagation();
        model.moveKey(effect, property, key, key.at + by * (event.shiftKey ? 10 : 1) * this.frame);
      } });
    button.style.left = this.share(time);
    button.addEventListener("pointerdown", (event) => {
      const box = this.bar.getBoundingClientRect(), from = event.clientX;
      const move = (moved) => {
        if (Math.abs(moved.clientX - from) < 4 && !button.moves) return;
        button.moves = true;
        const seconds = clamp((moved.clientX - box.left) / box.width, 0, 1) * model.timeline.seconds;
        model.moveKey(effect, property, key, Math.round((seconds - model.beginOf(effect)) * this.rate) / this.rate);
      };
      addEventListener("pointermove", move);
      addEventListener("pointerup", () => removeEventListener("pointermove", move), { once: true });
    });
    return button;
  }
  /** How the chosen key is come to. */
  showKey() {
    const box = byId("key");
    box.hidden = !this.chosen;
    if (!this.chosen) return box.replaceChildren();
    const { effect, property, key } = this.chosen, { model } = this;
    const isFirst = effect.set[property.name][0] === key;
    const select = make("select", { "aria-label": "Easing", disabled: isFirst, onchange: () => model.change(() => { if (select.value === "linear") delete key.easing; else key.easing = select.value; }) },
      this.easings.map((name) => make("option", { value: name, selected: (key.easing ?? "linear") === name }, name)));
    box.replaceChildren(make("span", {}, `${property.title} at ${clock(model.beginOf(effect) + key.at, this.rate)}`),
      make("label", {}, make("span", {}, "Way to it"), select),
      make("button", { type: "button", class: "small", onclick: () => model.removeKey(effect, property, key) }, "Remove key"));
  }
}
