"use strict";

// Builds the page from window.qvGallery, which gallery.js sets. No request leaves this folder.
(() => {
  const gallery = window.qvGallery;
  const byId = (id) => document.getElementById(id);

  if (!gallery) {
    byId("about").textContent = "gallery.js, the data of this page, is missing.";
    return;
  }
  const { make, Stage, setMoving } = window.qvStage;

  // ---- What the viewer chose for good -------------------------------------------------------------------

  const memory = {
    get(name) { try { return localStorage.getItem("qvGallery." + name); } catch { return null; } },
    set(name, value) { try { localStorage.setItem("qvGallery." + name, value); } catch { /* private mode */ } },
  };

  const still = matchMedia("(prefers-reduced-motion: reduce)");
  const dark = matchMedia("(prefers-color-scheme: dark)");
  let moving = memory.get("motion") ? memory.get("motion") === "on" : !still.matches;

  function showTheme() {
    const chosen = memory.get("theme");
    if (chosen) document.documentElement.dataset.theme = chosen;
    const isDark = chosen ? chosen === "dark" : dark.matches;
    byId("theme").textContent = isDark ? "Light" : "Dark";
    byId("theme").setAttribute("aria-label", isDark ? "Light colours" : "Dark colours");
    return isDark;
  }
  byId("theme").addEventListener("click", () => {
    memory.set("theme", showTheme() ? "light" : "dark");
    showTheme();
  });
  dark.addEventListener("change", showTheme);

  function showMotion() {
    byId("motion").textContent = moving ? "Pause all" : "Play all";
    byId("motion").setAttribute("aria-pressed", String(moving));
    setMoving(moving);
  }
  function setMotion(on) {
    moving = on;
    showMotion();
  }
  byId("motion").addEventListener("click", () => {
    setMotion(!moving);
    memory.set("motion", moving ? "on" : "off");
  });
  still.addEventListener("change", () => { if (!memory.get("motion")) setMotion(!still.matches); });

  // ---- Cards ----------------------------------------------------------------------------------------------

  const plural = (count, one, many = one + "s") => `${count} ${count === 1 ? one : many}`;
  const kInputs = {
    one: { label: "One clip", needs: "one clip" },
    two: { label: "Two clips", needs: "two clips" },
    mask: { label: "Clip and mask", needs: "a clip and its subject's mask" },
  };
  function inputsOf(entry) {
    const takes = (role) => entry.inputs.some((input) => input.role === role);
    if (takes("mask")) return "mask";
    return takes("incoming") ? "two" : "one";
  }
  const round = (number) => Math.round(number * 100) / 100;
  const copies = (cost) => plural(cost.copies < 10 ? Math.round(cost.copies * 10) / 10 : Math.round(cost.copies), "copy pass", "copy passes");

  function tags(entry) {
    const { cost, stills } = entry.card;
    const choices = entry.levelCount > 1 ? plural(entry.levelCount, "level") : stills.length ? plural(stills.length, "variant") : null;
    return [
      make("span", { class: "lead" }, entry.category),
      entry.kind === entry.category ? null : make("span", {}, entry.kind),
      make("span", { title: "Time of a frame against a plain copy of it" }, copies(cost)),
      choices ? make("span", {}, choices) : null,
      entry.card.changes === false && !entry.card.sweep ? make("span", {}, "no change by itself") : null,
      inputsOf(entry) === "mask" ? make("span", {}, "needs a mask") : null,
    ];
  }

  class Card {
    constructor(entry) {
      this.entry = entry;
      this.stage = new Stage(entry, () => openDetails(entry));
      this.button = make("button", { type: "button", class: "open", tabindex: "-1", onclick: () => openDetails(entry) },
        make("h3", {}, entry.title), make("p", { class: "name" }, ...breakable(entry.name)), make("p", { class: "help" }, sentence(entry.help)), make("p", { class: "tags" }, ...tags(entry)));
      this.root = make("article", { class: "card", role: "listitem", "data-name": entry.name }, this.stage.root, this.button);
      const words = entry.properties.flatMap((property) => [property.name, property.help, ...(property.variants ?? [])]);
      this.text = [entry.name, entry.title, ...entry.tags, entry.help, entry.category, entry.kind, entry.fragmentFunction, ...words].join(" ").toLowerCase();
    }
  }
  /** A name that may be broken between its words. */
  function breakable(name) {
    return name.split(/(?<=[a-z0-9])(?=[A-Z])/).flatMap((word, i) => (i ? [make("wbr"), word] : [word]));
  }
  function sentence(text) { return text ? text[0].toUpperCase() + text.slice(1) : ""; }

  const cards = gallery.cards.map((entry) => new Card(entry));
  const cardOf = new Map(cards.map((card) => [card.entry.name, card]));
  let shown = [];

  // ---- Search, filters, order -----------------------------------------------------------------------------

  const kOrders = {
    category: { label: "Category", compare: null },
    name: { label: "Name", compare: (a, b) => a.entry.name.localeCompare(b.entry.name) },
    cheap: { label: "Lightest first", compare: (a, b) => costOf(a) - costOf(b) },
    dear: { label: "Heaviest first", compare: (a, b) => costOf(b) - costOf(a) },
  };
  const costOf = (card) => card.entry.card.cost.copies;
  const { categories } = gallery;

  const count = (test) => cards.filter(test).length;
  function fill(select, options) {
    select.append(...options.map(([value, label]) => make("option", { value }, label)));
    select.addEventListener("change", show);
  }
  fill(byId("category"), [["", "All"], ...categories.slice().sort().map((name) => [name, `${sentence(name)} (${count((card) => card.entry.category === name)})`])]);
  fill(byId("inputs"), [["", "Any"], ...Object.entries(kInputs).map(([value, { label }]) => [value, label])]);
  fill(byId("order"), Object.entries(kOrders).map(([value, { label }]) => [value, label]));
  for (const [value, label] of [["", "All"], ["effect", "Effects"], ["transition", "Transitions"], ["auxiliary", "Auxiliary"]]) {
    byId("kinds").append(make("label", {},
      make("input", { type: "radio", name: "kind", value, checked: value === "", onchange: show }),
      make("span", {}, `${label} `, make("small", {}, String(count((card) => !value || card.entry.kind === value))))));
  }

  const kindChosen = () => document.querySelector("#kinds input:checked").value;
  function matching() {
    const words = byId("search").value.toLowerCase().split(/\s+/).filter(Boolean);
    const kind = kindChosen(), category = byId("category").value, inputs = byId("inputs").value;
    return cards.filter(({ entry, text }) =>
      words.every((word) => text.includes(word)) && (!kind || entry.kind === kind) &&
      (!category || entry.category === category) && (!inputs || inputsOf(entry) === inputs));
  }

  function list(label, members) {
    return make("div", { class: "cards", role: "list", "aria-label": label }, ...members.map((card) => card.root));
  }
  function show() {
    const { compare } = kOrders[byId("order").value];
    shown = matching();
    let groups;
    if (compare) {
      shown.sort(compare);
      groups = shown.length ? [list("Effects", shown)] : [];
    } else {
      groups = categories.map((name) => [name, shown.filter((card) => card.entry.category === name)]).filter(([, members]) => members.length)
        .map(([name, members]) => make("section", { class: "group" }, make("h2", {}, name, make("small", {}, String(members.length))), list(name, members)));
      shown = categories.flatMap((name) => shown.filter((card) => card.entry.category === name));
    }
    byId("cards").replaceChildren(...groups);
    const filtered = shown.length < cards.length;
    byId("count").textContent = filtered ? `${shown.length} of ${cards.length}` : plural(cards.length, "class", "classes");
    byId("clear").hidden = !filtered;
    byId("empty").hidden = shown.length > 0;
    reachFrom(shown.find((card) => card.button.tabIndex === 0) ?? shown[0]);
  }
  function clearFilters() {
    byId("filters").reset();
    show();
  }
  byId("clear").addEventListener("click", clearFilters);
  byId("filters").addEventListener("submit", (event) => {
    event.preventDefault();
    shown[0]?.button.focus();
  });
  byId("search").addEventListener("input", show);

  // ---- Keys -----------------------------------------------------------------------------------------------

  /** One card is in the tab order: the arrows reach the others. */
  function reachFrom(card) {
    for (const other of cards) other.button.tabIndex = other === card ? 0 : -1;
  }
  function cardInFocus() {
    return cardOf.get(document.activeElement?.closest?.(".card")?.dataset.name);
  }
  document.addEventListener("focusin", () => {
    const card = cardInFocus();
    if (card) reachFrom(card);
  });

  /** The card whose middle is nearest in the row above or below. */
  function cardAcross(from, direction) {
    const middle = (card) => {
      const box = card.root.getBoundingClientRect();
      return { x: box.left + box.width / 2, y: box.top };
    };
    const start = middle(from);
    const beyond = shown.map((card) => ({ card, ...middle(card) })).filter(({ y }) => (y - start.y) * direction > 4);
    if (!beyond.length) return null;
    const row = direction > 0 ? Math.min(...beyond.map(({ y }) => y)) : Math.max(...beyond.map(({ y }) => y));
    const inRow = beyond.filter(({ y }) => Math.abs(y - row) < 4);
    return inRow.reduce((best, each) => (Math.abs(each.x - start.x) < Math.abs(best.x - start.x) ? each : best)).card;
  }
  const kMoves = {
    ArrowLeft: (card, at) => shown[at - 1],
    ArrowRight: (card, at) => shown[at + 1],
    ArrowUp: (card) => cardAcross(card, -1),
    ArrowDown: (card) => cardAcross(card, 1),
    Home: () => shown[0],
    End: () => shown[shown.length - 1],
  };

  const isTyping = (element) => element?.matches?.("input:not([type=radio]), select, textarea");
  document.addEventListener("keydown", (event) => {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    if (byId("details").open) return keyInDetails(event);
    if (event.key === "/" && !isTyping(document.activeElement)) {
      event.preventDefault();
      byId("search").focus();
      byId("search").select();
      return;
    }
    if (event.key === "Escape") return leave(event);
    if (document.activeElement === byId("search") && event.key === "ArrowDown") {
      event.preventDefault();
      shown[0]?.button.focus();
      return;
    }
    const card = cardInFocus();
    if (!card) return;
    const key = event.key.toLowerCase();
    if (key === "b") card.stage.step();
    if (key === "p") card.stage.toggle();
    const next = kMoves[event.key]?.(card, shown.indexOf(card));
    if (kMoves[event.key]) event.preventDefault();
    if (!next) return;
    next.button.focus({ preventScroll: true });
    next.root.scrollIntoView({ block: "nearest" });
  });
  /** First out of what is being compared, then out of the search, then out of the filters. */
  function leave(event) {
    const card = cardInFocus();
    if (card?.stage.stepped) return card.stage.compareEnd();
    if (document.activeElement === byId("search") && byId("search").value) {
      event.preventDefault();
      byId("search").value = "";
      return show();
    }
    if (isTyping(document.activeElement)) return document.activeElement.blur();
    if (shown.length < cards.length) clearFilters();
  }

  // ---- Details --------------------------------------------------------------------------------------------

  const dialog = byId("details");
  let opened = null;  // { entry, stage }

  function copyable(label, text) {
    const code = make("pre", { tabindex: "0" }, text);
    const button = make("button", { type: "button", "aria-label": `Copy ${label.toLowerCase()}`, onclick: () => copy(code.textContent, button) }, "Copy");
    const section = make("section", {}, make("h3", {}, label), make("div", { class: "copy" }, code, button));
    return { section, set: (value) => { code.textContent = value; } };
  }
  async function copy(text, button) {
    let done = true;
    try {
      await navigator.clipboard.writeText(text);
    } catch {
      const field = make("textarea", { readonly: true });
      field.value = text;
      dialog.append(field);
      field.select();
      done = document.execCommand("copy");
      field.remove();
      button.focus();
    }
    button.textContent = done ? "Copied" : "Select and copy";
    setTimeout(() => { button.textContent = "Copy"; }, 1600);
  }

  function rangeOf(property) {
    if (property.variants) return property.variants.map((name, value) => `${value} ${name}`).join(", ");
    if (property.min === null) return property.unit ?? "";
    return [`${property.min} to ${property.max}`, property.unit].filter(Boolean).join(" ");
  }
  const valueOf = (value) => (Array.isArray(value) ? value.join(", ") || "none" : String(value));

  function propertyTable(entry) {
    if (!entry.properties.length) return null;
    const rows = entry.properties.filter(({ driver }) => driver !== "none").map((property) => make("tr", {},
      make("td", {}, property.title), make("td", {}, property.name), make("td", {}, property.type), make("td", { class: property.variants ? null : "number" }, rangeOf(property)),
      make("td", { class: "number" }, valueOf(property.default)), make("td", {}, sentence(property.help))));
    return make("section", {}, make("h3", {}, "Properties"), make("div", { class: "scroll", tabindex: "0", role: "group", "aria-label": "Properties" },
      make("table", {},
        make("thead", {}, make("tr", {}, ...["Title", "Name", "Type", "Range", "Default", "Meaning"].map((name) => make("th", { scope: "col" }, name)))),
        make("tbody", {}, ...rows))));
  }

  function facts(entry) {
    const { cost, preview } = entry.card;
    const rows = [
      ["Inputs", sentence(kInputs[inputsOf(entry)].needs)],
      ["Cost of a frame", `${copies(cost)} at ${gallery.costSize.join("×")}`],
      ["Passes", String(cost.passes)],
      ["Shader function", make("code", {}, entry.fragmentFunction || "–")],
      ["Superclass", entry.superclass ? make("code", {}, entry.superclass) : "–"],
      entry.levelCount > 1 ? ["Levels", String(entry.levelCount)] : null,
      entry.properties.some(({ name, driver }) => name === "effectValue" && driver === "user") ? ["Strength", String(entry.defaultEffectValue)] : null,
      entry.isVideoOnly ? ["For", "Video only"] : null,
      entry.card.sweep ? ["Shown with", `${entry.card.sweep.property} from ${entry.card.sweep.from} to ${round(entry.card.sweep.to)} and back`] : null,
      ["Preview", `${(preview.bytes / 1000).toFixed(0)} kB`],
    ];
    return make("dl", { class: "facts" }, ...rows.filter(Boolean).map(([name, value]) =>
      make("div", { class: value.tagName === "CODE" ? "wide" : null }, make("dt", {}, name), make("dd", {}, value))));
  }

  function slider(stage) {
    const [label, from, to] = stage.isTransition ? ["Progress", "From", "To"] : ["Share that shows the source", "After", "Before"];
    const input = make("input", { type: "range", min: "0", max: "100", value: "0", "aria-label": label,
      oninput: () => (Number(input.value) || stage.isTransition ? stage.compareAt(input.value / 100) : stage.compareEnd()) });
    stage.root.addEventListener("pointerleave", () => { input.value = 0; });
    return make("div", { class: "slider" }, make("span", {}, from), input, make("span", {}, to));
  }

  /** Levels and selector values; choosing one puts it into what is copied. */
  function stillsSection(entry, command, snippet) {
    const { stills } = entry.card;
    if (!stills.length) return null;
    const buttons = stills.map((still) => make("button", { type: "button", "aria-pressed": "false", onclick: (event) => {
      const chosen = event.currentTarget.getAttribute("aria-pressed") !== "true";
      for (const button of buttons) button.setAttribute("aria-pressed", String(chosen && button === event.currentTarget));
      command.set((chosen ? still : entry.card).command);
      snippet.set((chosen ? still : entry.card).snippet);
    } }, make("img", { src: `cards/${entry.name}/${still.file}`, alt: "", loading: "lazy" }), make("span", {}, still.label)));
    return make("section", {}, make("h3", {}, entry.levelCount > 1 ? "Levels and variants" : "Variants"), make("div", { class: "stills" }, ...buttons));
  }

  function fillDetails(entry) {
    opened?.stage.end();
    const stage = new Stage(entry, null);
    opened = { entry, stage };
    byId("details-name").replaceChildren(entry.title, " ", make("small", {}, ...breakable(entry.name)));
    byId("details-tags").replaceChildren(...tags(entry).filter(Boolean));
    const command = copyable("Command line", entry.card.command), snippet = copyable("C++", entry.card.snippet);
    byId("details-body").replaceChildren(...[
      make("div", { class: "intro" },
        make("div", {}, stage.root, stage.after ? slider(stage) : null),
        make("div", {}, make("p", { class: "help" }, sentence(entry.help) + (entry.help.endsWith(".") ? "" : ".")), facts(entry))),
      stillsSection(entry, command, snippet), command.section, snippet.section, propertyTable(entry),
    ].filter(Boolean));
    const at = shown.findIndex((card) => card.entry === entry);
    byId("previous").disabled = at <= 0;
    byId("next").disabled = at < 0 || at === shown.length - 1;
    dialog.scrollTop = 0;
  }
  function openDetails(entry) {
    fillDetails(entry);
    if (!dialog.open) dialog.showModal();
    byId("details-name").focus();
    setAddress("#" + entry.name);
  }
  function moveDetails(by) {
    const next = shown[shown.findIndex((card) => card.entry === opened.entry) + by];
    if (!next) return;
    fillDetails(next.entry);
    setAddress("#" + next.entry.name);
  }
  /** A link to a class, without a step in the history for every look. */
  function setAddress(hash) {
    try { history.replaceState(null, "", hash || location.href.split("#")[0]); } catch { /* some browsers refuse it for files */ }
  }
  function keyInDetails(event) {
    if (isTyping(document.activeElement) || event.target.closest("pre, .scroll")) return;
    const key = event.key.toLowerCase();
    if (key === "b") opened.stage.step();
    if (key === "p") opened.stage.toggle();
    if (event.key === "ArrowLeft") moveDetails(-1);
    if (event.key === "ArrowRight") moveDetails(1);
  }
  dialog.addEventListener("close", () => {
    const card = cardOf.get(opened?.entry.name);
    opened?.stage.end();
    opened = null;
    setAddress("");
    if (!card || !shown.includes(card)) return;
    card.button.focus({ preventScroll: true });
    card.root.scrollIntoView({ block: "nearest" });
  });
  dialog.addEventListener("click", (event) => { if (event.target === dialog) dialog.close(); });
  byId("close").addEventListener("click", () => dialog.close());
  byId("previous").addEventListener("click", () => moveDetails(-1));
  byId("next").addEventListener("click", () => moveDetails(1));
  function openFromAddress() {
    const card = cardOf.get(decodeURIComponent(location.hash.slice(1)));
    if (card) openDetails(card.entry);
  }
  addEventListener("hashchange", openFromAddress);

  // ---- Begin ----------------------------------------------------------------------------------------------

  const kinds = (kind) => count((card) => card.entry.kind === kind);
  byId("about").textContent = `${plural(kinds("effect"), "effect")}, ${plural(kinds("transition"), "transition")} and ` +
    `${plural(kinds("auxiliary"), "building block")} of version ${gallery.version}. Point at a picture to compare it with its source, ` +
    `or to move through a transition. A copy pass is the time a frame takes to be copied, here on ${gallery.device}.`;
  showTheme();
  showMotion();
  show();
  openFromAddress();
})();
