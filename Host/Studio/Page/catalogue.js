// What there is to choose from, with the gallery's cards over the clips that are open.

import { byId, icon, make, memory, say, sentence } from "./elements.js";
import { post } from "./server.js";

const kPatience = 120;  // of asking for the cards in view, milliseconds

export class Catalogue {
  /** `entries` are the classes; `choose` is told the one that was chosen. */
  constructor(entries, hasMask, choose, model) {
    Object.assign(this, { hasMask, choose, model });
    this.kind = "effect";
    this.favourites = new Set(memory.get("favourites", []));
    this.made = new Map();
    this.visible = new Set();
    // What would find nobody to work on comes last.
    const isIdle = ({ inputs }) => !hasMask && inputs.some(({ role }) => role === "mask");
    const inOrder = [...entries].sort((a, b) => isIdle(a) - isIdle(b));
    this.cards = new Map(inOrder.map((entry) => [entry.name, this.card(entry)]));
    this.watcher = new IntersectionObserver((changes) => this.watch(changes), { root: null, rootMargin: "200px" });
    this.reduced = matchMedia("(prefers-reduced-motion: reduce)");
    const categories = [...new Set(entries.filter(({ kind }) => kind === "effect").map(({ category }) => category))].sort();
    byId("category").append(make("option", { value: "" }, "All categories"), ...categories.map((name) => make("option", { value: name }, sentence(name))));
    byId("category").addEventListener("change", () => this.show());
    byId("search").addEventListener("input", () => this.show());
    byId("search").addEventListener("keydown", (event) => {
      if (event.key === "ArrowDown" || event.key === "Enter") { event.preventDefault(); this.shown[0]?.button.focus(); }
      if (event.key === "Escape") { byId("search").value = ""; this.show(); }
    });
    byId("kinds").addEventListener("change", (event) => this.showKind(event.target.value));
    byId("cards").addEventListener("keydown", (event) => this.keyOn(event));
    this.show();
  }

  card(entry) {
    const words = entry.properties.flatMap(({ title, help, variants }) => [title, help, ...(variants ?? [])]);
    const needsMask = !this.hasMask && entry.inputs.some(({ role, required }) => role === "mask" && required);
    const picture = make("span", { class: "picture" });
    const star = make("button", { type: "button", class: "star", onclick: () => this.toggleFavourite(entry.name) }, icon("star"));
    const button = make("button", { type: "button", class: "add", tabindex: "-1", title: sentence(entry.help), onclick: () => this.choose(entry) },
      picture, make("span", { class: "title" }, entry.title), needsMask && make("span", { class: "badge" }, "needs a mask"));
    const root = make("li", { class: "card", draggable: "true", "data-name": entry.name,
      ondragstart: (event) => { event.dataTransfer.setData(entry.kind === "effect" ? "text/qv-class" : "text/qv-transition", entry.name); event.dataTransfer.effectAllowed = "copy"; },
      onpointerenter: () => this.play(entry.name), onpointerleave: () => this.stop(entry.name),
      onfocusin: () => this.play(entry.name), onfocusout: () => this.stop(entry.name) }, button, star);
    const card = { entry, root, button, star, picture, text: [entry.name, entry.title, entry.help, entry.category, ...entry.tags, ...words].join(" ").toLowerCase() };
    this.showStar(card);
    return card;
  }
  showStar({ entry, star }) {
    const is = this.favourites.has(entry.name);
    star.setAttribute("aria-pressed", String(is));
    star.setAttribute("aria-label", `${entry.title} is a favourite`);
    star.title = is ? "Not a favourite any more" : "A favourite";
  }
  toggleFavourite(name) {
    if (!this.favourites.delete(name)) this.favourites.add(name);
    memory.set("favourites", [...this.favourites]);
    this.showStar(this.cards.get(name));
    if (this.kind === "favourite") this.show();
  }

  showKind(kind) {
    this.kind = kind;
    byId("kinds").querySelector(`[value="${kind}"]`).checked = true;
    byId("category").disabled = kind !== "effect";
    this.show();
  }
  show() {
    const words = byId("search").value.toLowerCase().split(/\s+/).filter(Boolean);
    const category = this.kind === "effect" ? byId("category").value : "";
    const suits = ({ entry, text }) => (this.kind === "favourite" ? this.favourites.has(entry.name) : entry.kind === this.kind) &&
      (!category || entry.category === category) && words.every((word) => text.includes(word));
    this.shown = [...this.cards.values()].filter(suits);
    this.watcher.disconnect();
    this.visible.clear();
    byId("cards").replaceChildren(...this.shown.map(({ root }) => root));
    for (const { root } of this.shown) this.watcher.observe(root);
    byId("count").textContent = this.shown.length ? `${this.shown.length}` : "";
    byId("nothing").hidden = this.shown.length > 0;
    byId("nothing").textContent = this.kind === "favourite" && !words.length ? "Stars mark favourites, and looks can be kept: both are found here." : "Nothing matches.";
    byId("looks").hidden = this.kind !== "favourite";
    this.reach(this.shown[0]);
    this.showLooks();
  }

  watch(changes) {
    for (const { target, isIntersecting } of changes) this.visible[isIntersecting ? "add" : "delete"](target.dataset.name);
    clearTimeout(this.asking);
    this.asking = setTimeout(() => this.askForCards(), kPatience);
  }
  askForCards() {
    const missing = this.shown.map(({ entry }) => entry.name).filter((name) => this.visible.has(name) && !this.made.has(name));
    if (missing.length) post("api/cards", missing.join("\n")).catch(() => {});
  }
  /** The tool has made one. */
  take({ name, card }) {
    const place = this.cards.get(name);
    if (!place || this.made.has(name) || !card) return;
    this.made.set(name, card);
    place.picture.replaceChildren(make("img", { src: `card/${name}/${card.after}`, alt: "", draggable: "false" }));
  }
  stillOf(name, property, value) {
    const still = this.made.get(name)?.stills.find((each) => each.property === property && each.value === value);
    return still ? `card/${name}/${still.file}` : null;
  }
  play(name) {
    const card = this.made.get(name), place = this.cards.get(name);
    if (!card || this.reduced.matches || place.picture.querySelector("video")) return;
    const video = make("video", { src: `card/${name}/${card.preview}`, ".muted": true, ".loop": true, ".playsInline": true, tabindex: "-1" });
    place.picture.append(video);
    video.play().catch(() => {});
  }
  stop(name) {
    const place = this.cards.get(name);
    if (place.root.matches(":hover, :focus-within")) return;
    place.picture.querySelector("video")?.remove();
  }

  /** One card is in the tab order; the arrows reach the others. */
  reach(card) {
    for (const other of this.cards.values()) other.button.tabIndex = other === card ? 0 : -1;
    for (const other of this.cards.values()) other.star.tabIndex = other === card ? 0 : -1;
  }
  keyOn(event) {
    const at = this.shown.findIndex(({ root }) => root.contains(document.activeElement));
    if (at < 0 || event.altKey || event.ctrlKey || event.metaKey) return;
    const columns = getComputedStyle(byId("cards")).gridTemplateColumns.split(" ").length;
    const by = { ArrowLeft: -1, ArrowRight: 1, ArrowUp: -columns, ArrowDown: columns }[event.key];
    if (event.key.toLowerCase() === "f") return this.toggleFavourite(this.shown[at].entry.name);
    if (!by) return;
    event.preventDefault();
    event.stopPropagation();
    if (at + by < 0) return byId("search").focus();
    const next = this.shown[Math.min(at + by, this.shown.length - 1)];
    this.reach(next);
    next.button.focus();
  }

  // Looks that were kept.

  keepLook(name) {
    const chain = this.model.chain.map(({ class: className, set, from, to }) => ({ class: className, set, from, to }));
    memory.set("looks", [...memory.get("looks", []).filter((look) => look.name !== name), { name, chain }]);
    say(`Kept as “${name}” among the favourites.`);
    this.showLooks();
  }
  showLooks() {
    byId("looks").replaceChildren(...memory.get("looks", []).map(({ name, chain }) => make("li", {},
      make("button", { type: "button", class: "look", onclick: () => this.model.replaceChain(chain.filter((effect) => this.model.classes.has(effect.class))) },
        make("strong", {}, name), make("span", {}, chain.map((effect) => this.model.classes.get(effect.class)?.title ?? effect.class).join(", "))),
      make("button", { type: "button", class: "plain", "aria-label": `Forget ${name}`, title: "Forget", onclick: () => {
        memory.set("looks", memory.get("looks", []).filter((look) => look.name !== name));
        this.showLooks();
      } }, icon("close")))));
  }
}
