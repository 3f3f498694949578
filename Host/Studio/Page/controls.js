// One control for each property of an effect, of the kind that suits it.

import { clamp, icon, iconButton, make, sentence } from "./elements.js";
import { isMoving } from "./model.js";

/** How numbers of a unit are shown: times a factor, with a sign behind. */
const kUnits = {
  fraction: { factor: 100, sign: "%" },
  factor: { factor: 1, sign: "×" },
  seconds: { factor: 1, sign: "s" },
  radians: { factor: 180 / Math.PI, sign: "°" },
  turns: { factor: 360, sign: "°" },
  percent: { factor: 1, sign: "%" },
  pixels: { factor: 1, sign: "px" },
  "pixels at 1080": { factor: 1, sign: "px", meaning: "pixels of a frame that is 1080 high" },
};
const unitOf = (property) => kUnits[property.unit] ?? { factor: 1, sign: "" };
const round = (value, digits = 4) => Number(value.toFixed(digits));
/** Up to this many variants stand side by side. */
const kMostChips = 8;

const numbersOf = (value) => String(value).split(",").map(Number);

class Controls {
  /** `timeNow` tells where the scrubber is; `movingNow` what a property that moves is there, as text. */
  constructor(model, timeNow, movingNow, stills) {
    Object.assign(this, { model, timeNow, movingNow, stills });
    this.rows = [];
  }

  build(effect) {
    this.effect = effect;
    this.rows = this.model.propertiesOf(effect).map((property) => this.row(property));
    return this.rows.map(({ root }) => root);
  }
  /** Shows what the values are now, without taking a control away from under the pointer. */
  refresh() {
    for (const { property, show, key, reset } of this.rows) {
      const given = this.effect.set[property.name];
      show(this.current(property));
      reset.hidden = given === undefined;
      if (!key) continue;
      const moves = isMoving(given), here = moves && this.model.keyAt(this.effect, property, this.timeNow());
      key.classList.toggle("moves", moves);
      key.classList.toggle("here", Boolean(here));
      key.setAttribute("aria-pressed", String(Boolean(here)));
      const label = !moves ? "Let it move: set a key here" : here ? "Remove the key here" : "Set a key here";
      key.title = label;
      key.setAttribute("aria-label", `${property.title}: ${label.toLowerCase()}`);
    }
  }
  current(property) {
    const value = this.model.valueOf(this.effect, property);
    if (!isMoving(value)) return value;
    const moving = this.movingNow(this.effect)?.[property.name];
    const shown = moving ?? value[0].value;
    return property.type === "float" || property.type === "int" ? Number(shown) : shown;
  }

  row(property) {
    const set = (value) => this.model.setValue(this.effect, property, value, this.timeNow());
    const id = `control-${property.name}`;
    const { control, show, isGroup } = this.control(property, id, set);
    const label = isGroup ? make("span", { class: "name", id: `${id}-name` }, property.title) : make("label", { class: "name", for: id }, property.title);
    label.title = property.help;
    const reset = iconButton("reset", `Back to the default of ${property.title}`, () => this.model.clearValue(this.effect, property));
    const key = this.model.canMove(property) ? make("button", { type: "button", class: "plain key", onclick: () => this.toggleKey(property) }, icon("key")) : null;
    const root = make("div", { class: "property", "data-property": property.name, role: isGroup ? "group" : null, "aria-labelledby": isGroup ? `${id}-name` : null },
      make("div", { class: "head" }, label, reset, key), control, make("p", { class: "help" }, sentence(property.help)));
    return { property, root, show, key, reset };
  }
  toggleKey(property) {
    const time = this.timeNow(), here = this.model.keyAt(this.effect, property, time);
    if (here) this.model.removeKey(this.effect, property, here);
    else this.model.addKey(this.effect, property, this.current(property), time);
  }

  control(property, id, set) {
    const { type, variants, min } = property;
    if (type === "bool") return this.toggle(id, set);
    if (variants) return variants.length > kMostChips ? this.list(property, id, set) : this.chips(property, id, set);
    if ((type === "float" || type === "int") && min !== null) return this.slider(property, id, set);
    if (type === "float" || type === "int") return this.number(property, id, set);
    if (type === "color") return this.color(id, set);
    if (type === "colors") return this.colors(property, set);
    if ((type === "point" || type === "size") && min !== null) return this.point(property, id, set);
    return this.text(id, set);
  }

  slider(property, id, set, label = null) {
    const { factor, sign, meaning } = unitOf(property);
    const { min, max, step } = property;
    const range = make("input", { type: "range", id, min: min * factor, max: max * factor, step: step * factor, "aria-label": label });
    const field = make("input", { type: "number", min: round(min * factor), max: round(max * factor), step: round(step * factor), "aria-label": `${label ?? property.title} as a number` });
    const take = (text) => {
      const value = Number(text);
      if (text === "" || !Number.isFinite(value)) return;
      set(clamp(property.type === "int" ? Math.round(value) : round(value / factor, 6), min, max));
    };
    range.addEventListener("input", () => take(range.value));
    field.addEventListener("change", () => take(field.value));
    const show = (value) => {
      range.value = value * factor;
      range.style.setProperty("--share", `${(100 * (value - min)) / (max - min)}%`);
      range.setAttribute("aria-valuetext", `${round(value * factor, 2)} ${sign}`);
      if (document.activeElement !== field) field.value = round(value * factor, 2);
    };
    return { control: make("div", { class: "slider" }, range, field, make("span", { class: "unit", title: meaning }, sign)), show };
  }
  number(property, id, set) {
    const field = make("input", { type: "number", id, step: property.step ?? "any", onchange: () => field.value !== "" && set(Number(field.value)) });
    return { control: field, show: (value) => { if (document.activeElement !== field) field.value = value; } };
  }
  toggle(id, set) {
    const box = make("input", { type: "checkbox", role: "switch", id, onchange: () => set(box.checked) });
    return { control: make("label", { class: "switch" }, box, make("span")), show: (value) => { box.checked = value === true || value === "true"; } };
  }
  list(property, id, set) {
    const select = make("select", { id, onchange: () => set(Number(select.value)) }, property.variants.map((name, value) => make("option", { value }, name)));
    return { control: select, show: (value) => { select.value = String(this.indexOf(property, value)); } };
  }
  chips(property, id, set) {
    const boxes = property.variants.map((name, value) => make("input", { type: "radio", name: id, value, onchange: () => set(value) }));
    const chips = boxes.map((box, value) => {
      const picture = this.stills(this.effect.class, property.name, value);
      return make("label", { class: "chip" }, box, picture && make("img", { src: picture, alt: "", loading: "lazy" }), make("span", {}, property.variants[value]));
    });
    return { control: make("div", { class: chips.some((chip) => chip.querySelector("img")) ? "chips pictures" : "chips" }, chips), isGroup: true, show: (value) => { boxes[this.indexOf(property, value)].checked = true; } };
  }
  indexOf(property, value) {
    const named = property.variants.indexOf(String(value));
    return named >= 0 ? named : clamp(Number(value) || 0, 0, property.variants.length - 1);
  }
  color(id, set) {
    const well = make("input", { type: "color", id, oninput: () => { code.textContent = well.value; set(well.value); } });
    const code = make("code");
    return { control: make("div", { class: "color" }, well, code), show: (value) => { well.value = code.textContent = String(value).slice(0, 7); } };
  }
  colors(property, set) {
    const control = make("div", { class: "colors" });
    const show = (value) => {
      const colors = String(value).split(",").filter(Boolean);
      if (control.contains(document.activeElement) && control.childElementCount === colors.length + 1) return;
      const wells = colors.map((color, i) => make("span", { class: "color" },
        make("input", { type: "color", value: color.slice(0, 7), "aria-label": `Colour ${i + 1}`, oninput: (event) => { colors[i] = event.target.value; set(colors.join(",")); } }),
        colors.length > 1 && iconButton("close", `Remove colour ${i + 1}`, () => set(colors.filter((_, other) => other !== i).join(",")))));
      control.replaceChildren(...wells, iconButton("plus", "Add a colour", () => set([...colors, colors.at(-1) ?? "#ff9a3c"].join(","))));
    };
    return { control, show, isGroup: true };
  }
  /** Two sliders; the stage shows a handle besides. */
  point(property, id, set) {
    const axes = ["x", "y"].map((name, axis) => this.slider(property, axis ? `${id}-y` : id,
      (value) => { const point = numbersOf(this.current(property)); point[axis] = value; set(point.join(",")); }, `${property.title} ${name}`));
    axes.forEach(({ control }, axis) => control.prepend(make("span", { class: "axis", "aria-hidden": "true" }, axis ? "y" : "x")));
    return { control: make("div", { class: "point" }, axes.map(({ control }) => control)), isGroup: true, show: (value) => numbersOf(value).forEach((number, axis) => axes[axis]?.show(number)) };
  }
  text(id, set) {
    const field = make("input", { type: "text", id, spellcheck: "false", onchange: () => set(field.value) });
    return { control: field, show: (value) => { if (document.activeElement !== field) field.value = value; } };
  }
}

/** Where a point property lies on the picture, 0 to 1 from the top left, and back. */
export function pointOnPicture(property, value) {
  const [x, y] = numbersOf(value);
  return property.unit === "half frame sides" ? [(x + 1) / 2, (1 - y) / 2] : [x, y];
}
export function pointFromPicture(property, x, y) {
  const [a, b] = property.unit === "half frame sides" ? [2 * x - 1, 1 - 2 * y] : [x, y];
  return [a, b].map((value) => round(clamp(value, property.min, property.max), 3)).join(",");
}
export const isPoint = (property) => property.type === "point" && property.unit?.includes("frame sides");

export { Controls };
