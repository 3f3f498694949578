// The look: what it lies on, its effects in their order, and the properties of the one that is chosen.

import { byId, clamp, icon, iconButton, make, sentence } from "./elements.js";
import { Controls } from "./controls.js";

export class Chain {
  constructor(model, session, timeNow, movingNow, stills) {
    Object.assign(this, { model, session, timeNow });
    this.controls = new Controls(model, timeNow, movingNow, stills);
    this.shown = null;
    this.list = byId("chain");
    this.list.addEventListener("dragover", (event) => this.dragOver(event));
    this.list.addEventListener("dragleave", () => this.mark(null));
    this.list.addEventListener("drop", (event) => this.drop(event));
  }

  refresh() {
    this.showTargets();
    this.showEffects();
    this.showProperties();
  }
  /** After a change of time, or within a gesture. */
  refreshValues() { if (this.model.effect && this.shown === this.model.effect.id) this.controls.refresh(); }

  showTargets() {
    const { clips } = this.session, targets = byId("targets");
    targets.hidden = clips.length < 2;
    if (targets.hidden) return;
    const tab = (target, label, attributes = {}) => make("button", {
      type: "button", role: "tab", "aria-selected": String(this.model.target === target), tabindex: this.model.target === target ? "0" : "-1",
      onclick: () => this.model.select(target), ...attributes }, label);
    targets.replaceChildren(...clips.flatMap(({ name }, i) => [
      i > 0 && tab(`join${i}`, this.model.look.transitions[i] ? "⋈" : "┊", { class: "join", "aria-label": `Transition to ${name || "the colour"}`, title: `Transition to ${name || "the colour"}` }),
      tab(i, name || "colour"),
    ].filter(Boolean)), tab("all", "Everything"));
  }

  showEffects() {
    const { model } = this;
    byId("chain-empty").hidden = Boolean(model.join) || model.chain.length > 0;
    if (model.join) {
      const transition = model.effect;
      const text = transition ? model.classOf(transition).title : "A cut";
      return this.list.replaceChildren(make("li", { class: "effect chosen" }, make("span", { class: "choose" }, text),
        transition && iconButton("close", "Make it a cut", () => model.setTransition(model.join, null))));
    }
    this.list.replaceChildren(...model.chain.map((effect, index) => this.item(effect, index)));
  }
  item(effect, index) {
    const { model } = this, { title } = model.classOf(effect);
    const choose = make("button", { type: "button", class: "choose", "aria-pressed": String(effect.id === model.selected), "data-id": effect.id,
      onclick: () => model.select(model.target, effect.id),
      onkeydown: (event) => this.keyOn(event, effect, index) }, title);
    const toggle = iconButton("eye", `${effect.on ? "Switch off" : "Switch on"} ${title}`, () => model.change(() => { effect.on = !effect.on; }), { "aria-pressed": String(effect.on) });
    const item = make("li", { class: `effect${effect.id === model.selected ? " chosen" : ""}${effect.on ? "" : " off"}`, draggable: "true", "data-index": index,
      ondragstart: (event) => { event.dataTransfer.setData("text/qv-effect", String(effect.id)); event.dataTransfer.effectAllowed = "move"; } },
      make("span", { class: "grip", "aria-hidden": "true" }, icon("grip")), choose, toggle, iconButton("close", `Remove ${title}`, () => model.remove(effect.id)));
    return item;
  }
  keyOn(event, effect, index) {
    const by = { ArrowUp: -1, ArrowDown: 1 }[event.key];
    if (event.key === "Delete" || event.key === "Backspace") {
      event.preventDefault();
      this.model.remove(effect.id);
      return this.focus(this.model.selected);
    }
    if (!by) return;
    event.preventDefault();
    if (event.altKey) {
      this.model.move(effect.id, by > 0 ? index + 2 : index - 1);
      return this.focus(effect.id);
    }
    const next = this.model.chain[clamp(index + by, 0, this.model.chain.length - 1)];
    this.model.select(this.model.target, next.id);
    this.focus(next.id);
  }
  focus(id) { this.list.querySelector(`[data-id="${id}"]`)?.focus(); }

  /** Before which effect a drop would go. */
  placeOf(event) {
    const items = [...this.list.querySelectorAll(".effect")];
    const after = items.findIndex((item) => { const box = item.getBoundingClientRect(); return event.clientY < box.top + box.height / 2; });
    return after < 0 ? items.length : after;
  }
  mark(index) {
    [...this.list.children].forEach((item, i) => {
      item.classList.toggle("before", i === index);
      item.classList.toggle("after", index === this.list.childElementCount && i === index - 1);
    });
    this.list.classList.toggle("target", index !== null);
  }
  dragOver(event) {
    const kinds = event.dataTransfer.types;
    if (this.model.join || (!kinds.includes("text/qv-effect") && !kinds.includes("text/qv-class"))) return;
    event.preventDefault();
    this.mark(this.placeOf(event));
  }
  drop(event) {
    const id = event.dataTransfer.getData("text/qv-effect"), name = event.dataTransfer.getData("text/qv-class");
    const index = this.placeOf(event);
    event.preventDefault();
    this.mark(null);
    if (id) this.model.move(Number(id), index);
    else if (this.model.classes.has(name)) this.model.add(name, index);
  }

  showProperties() {
    const { model } = this, effect = model.effect, box = byId("properties");
    if (!effect) {
      this.shown = null;
      return box.replaceChildren();
    }
    const shape = JSON.stringify([effect.id, model.target]);
    if (this.shown !== effect.id || this.shape !== shape || this.controls.effect !== effect) {
      this.shown = effect.id;
      this.shape = shape;
      const entry = model.classOf(effect);
      box.replaceChildren(make("header", {}, make("h3", {}, entry.title), make("p", { class: "help" }, sentence(entry.help))),
        ...this.controls.build(effect), this.part(effect));
    }
    this.controls.refresh();
    this.showPart(effect);
  }
  /** The times that belong to an effect or a transition. */
  part(effect) {
    const field = (label, name, attributes = {}) => {
      const input = make("input", { type: "number", min: "0", step: "any", "data-part": name, ...attributes,
        onchange: () => this.setPart(effect, name, input.value) });
      return make("label", {}, make("span", {}, label), input, make("span", { class: "unit" }, "s"));
    };
    if (this.model.join) return make("div", { class: "part" }, field("Lasts", "duration"));
    return make("div", { class: "part" }, field("From", "from", { placeholder: "start" }), field("To", "to", { placeholder: "end" }),
      make("button", { type: "button", class: "small", title: "I", onclick: () => this.partHere("from") }, "Begin here"),
      make("button", { type: "button", class: "small", title: "O", onclick: () => this.partHere("to") }, "End here"));
  }
  showPart(effect) {
    for (const input of byId("properties").querySelectorAll("[data-part]"))
      if (document.activeElement !== input) input.value = effect[input.dataset.part] ?? "";
  }
  setPart(effect, name, text) {
    const value = Number(text);
    this.model.change(() => {
      if (text === "" || !Number.isFinite(value) || value < 0 || (name !== "duration" && name === "from" && value === 0)) delete effect[name];
      else effect[name] = value;
      if (name === "duration" && !(effect.duration > 0)) effect.duration = 1;
      if (effect.to !== undefined && effect.to <= (effect.from ?? 0)) delete effect[name === "from" ? "to" : "from"];
    });
  }
  partHere(name) {
    const effect = this.model.effect;
    if (!effect || this.model.join) return;
    const at = Math.round((this.timeNow() - this.model.place.start) * 1e4) / 1e4;
    if (at >= 0) this.setPart(effect, name, String(at));
  }
}
