// What the user makes: two looks over the same clips, as a project, with its history.

const kLongestHistory = 300;
/** Changes of one control that follow each other within this are one step back. */
const kOneGesture = 1200;

let lastId = 0;
const copyOf = (value) => JSON.parse(JSON.stringify(value));

export const isMoving = (value) => Array.isArray(value);

export class Model extends EventTarget {
  #past = [];
  #future = [];
  #gesture = { key: null, at: 0 };

  /** `classes` by name; `project` as the tool has it; `timeline` as it is laid out. */
  constructor(classes, project, timeline) {
    super();
    this.classes = classes;
    this.timeline = timeline;
    const look = {
      clips: project.clips.map(({ effects }) => (effects ?? []).map((effect) => this.#read(effect))),
      all: (project.effects ?? []).map((effect) => this.#read(effect)),
      transitions: project.clips.map(({ transition }) => (transition ? this.#read(transition) : null)),
    };
    const parts = project.clips.map(({ effects, transition, ...part }) => part);
    const { clips, effects, ...output } = project;
    this.state = { letter: "A", looks: { A: look, B: null }, parts, output };
    this.target = 0;  // a clip's number, "all", or "join1" for the transition to clip 1
    this.selected = look.clips[0][0]?.id ?? null;
  }

  #read(entry) {
    const { class: name, set = {}, ...rest } = typeof entry === "string" ? { class: entry } : entry;
    const seconds = (time) => (typeof time === "string" && time.endsWith("f") ? parseFloat(time) / this.timeline.rate : Number(time));
    const effect = { id: ++lastId, class: name, on: true, set: copyOf(set) };
    for (const field of ["from", "to", "duration"]) if (rest[field] !== undefined) effect[field] = seconds(rest[field]);
    for (const value of Object.values(effect.set)) if (isMoving(value)) for (const key of value) key.at = seconds(key.at);
    return effect;
  }
  newEffect(name, set = {}) { return { id: ++lastId, class: name, on: true, set: copyOf(set) }; }

  get look() { return this.state.looks[this.state.letter]; }
  /** The effects that are being worked on; none for a transition. */
  get chain() {
    if (this.target === "all") return this.look.all;
    return typeof this.target === "number" ? this.look.clips[this.target] : [];
  }
  get join() { return typeof this.target === "string" && this.target.startsWith("join") ? Number(this.target.slice(4)) : 0; }
  get effect() {
    if (this.join) return this.look.transitions[this.join];
    return this.chain.find(({ id }) => id === this.selected) ?? null;
  }
  classOf(effect) { return this.classes.get(effect.class); }
  propertiesOf(effect) { return this.classOf(effect).properties.filter(({ driver }) => driver === "user"); }

  /** Where the chain that is worked on begins and how long it is, seconds of the timeline. */
  get place() {
    if (this.join) {
      const { start, lead } = this.timeline.clips[this.join];
      return { start, seconds: lead };
    }
    if (this.target === "all") return { start: 0, seconds: this.timeline.seconds };
    return this.timeline.clips[this.target];
  }
  /** Where the time of an effect begins: its keys count from there. */
  beginOf(effect) { return this.place.start + (effect.from ?? 0); }

  /** A step that can be taken back. `key` names a control: its changes in a row are one step. */
  change(mutate, key = null) {
    const now = performance.now(), gesture = this.#gesture;
    const goesOn = key !== null && key === gesture.key && now - gesture.at < kOneGesture;
    if (!goesOn) {
      this.#past.push(this.#snapshot());
      if (this.#past.length > kLongestHistory) this.#past.shift();
    }
    this.#gesture = { key, at: now };
    this.#future = [];
    mutate(this.state);
    this.#tell("change", key !== null);
  }
  select(target, id = undefined) {
    this.target = target;
    this.selected = id !== undefined ? id : (this.chain.at(-1)?.id ?? null);
    this.#tell("select");
  }
  showLook(letter) {
    if (letter === this.state.letter) return;
    if (!this.state.looks[letter]) this.state.looks[letter] = copyOf(this.look);
    this.state.letter = letter;
    if (!this.effect) this.selected = this.chain.at(-1)?.id ?? null;
    this.#tell("change", false);
  }
  undo() { this.#step(this.#past, this.#future); }
  redo() { this.#step(this.#future, this.#past); }
  get canUndo() { return this.#past.length > 0; }
  get canRedo() { return this.#future.length > 0; }

  #snapshot() { return JSON.stringify({ state: this.state, target: this.target, selected: this.selected }); }
  #step(from, to) {
    if (!from.length) return;
    to.push(this.#snapshot());
    Object.assign(this, JSON.parse(from.pop()));
    this.#gesture.key = null;
    this.#tell("change", false);
  }
  #tell(name, isGesture = false) { this.dispatchEvent(new CustomEvent(name, { detail: { isGesture } })); }

  // Steps.

  add(name, index = this.chain.length, set = {}) {
    const effect = this.newEffect(name, set);
    if (this.join) this.select(0);
    this.selected = effect.id;
    this.change(() => this.chain.splice(Math.min(index, this.chain.length), 0, effect));
  }
  remove(id) {
    const at = this.chain.findIndex((effect) => effect.id === id);
    if (at < 0) return;
    if (this.selected === id) this.selected = (this.chain[at + 1] ?? this.chain[at - 1])?.id ?? null;
    this.change(() => this.chain.splice(at, 1));
  }
  move(id, to) {
    const at = this.chain.findIndex((effect) => effect.id === id);
    const index = Math.min(Math.max(to > at ? to - 1 : to, 0), this.chain.length - 1);
    if (at < 0 || index === at) return;
    this.change(() => this.chain.splice(index, 0, ...this.chain.splice(at, 1)));
  }
  setTransition(join, name) {
    const duration = this.look.transitions[join]?.duration ?? 1;
    this.change(() => { this.look.transitions[join] = name ? { ...this.newEffect(name), duration } : null; });
  }
  replaceChain(effects) {
    const chain = effects.map(({ class: name, set, from, to }) => ({ ...this.newEffect(name, set), ...(from && { from }), ...(to && { to }) }));
    if (this.join) this.select(0);
    this.selected = chain.at(-1)?.id ?? null;
    this.change(() => this.chain.splice(0, this.chain.length, ...chain));
  }

  // Values.

  valueOf(effect, property) { return effect.set[property.name] ?? this.defaultOf(effect, property); }
  defaultOf(effect, property) {
    if (property.name === "effectValue") return this.classOf(effect).defaultEffectValue;
    return Array.isArray(property.default) ? property.default.join(",") : property.default;
  }
  /** Where it moves, the key at that time of the timeline changes or is added. */
  setValue(effect, property, value, time) {
    this.change(() => {
      if (isMoving(effect.set[property.name])) this.#putKey(effect, property, value, time);
      else effect.set[property.name] = value;
    }, `${effect.id}.${property.name}`);
  }
  clearValue(effect, property) { this.change(() => { delete effect.set[property.name]; }); }
  canMove(property) { return !property.variants && ["float", "int", "point", "size", "color", "colors", "numbers"].includes(property.type); }

  #halfFrame() { return 0.5 / this.timeline.rate; }
  #at(effect, time) { return Math.max(0, Math.round((time - this.beginOf(effect)) * 1e4) / 1e4); }
  keyAt(effect, property, time) {
    const keys = effect.set[property.name], at = time - this.beginOf(effect);
    return isMoving(keys) ? keys.find((key) => Math.abs(key.at - at) < this.#halfFrame()) : undefined;
  }
  #putKey(effect, property, value, time) {
    const keys = effect.set[property.name];
    const existing = this.keyAt(effect, property, Math.max(time, this.beginOf(effect)));
    if (existing) existing.value = value;
    else keys.push({ at: this.#at(effect, time), value });
    keys.sort((a, b) => a.at - b.at);
  }
  addKey(effect, property, value, time) {
    this.change(() => {
      if (!isMoving(effect.set[property.name])) effect.set[property.name] = [];
      this.#putKey(effect, property, value, time);
    });
  }
  removeKey(effect, property, key) {
    this.change(() => {
      const keys = effect.set[property.name];
      keys.splice(keys.indexOf(key), 1);
      if (!keys.length) effect.set[property.name] = key.value;
    });
  }
  /** No two keys may be at one time. */
  moveKey(effect, property, key, at) {
    const others = effect.set[property.name].filter((other) => other !== key);
    const wanted = Math.round(Math.max(0, at) * 1e4) / 1e4;
    if (others.some((other) => Math.abs(other.at - wanted) < this.#halfFrame())) return;
    this.change(() => {
      key.at = wanted;
      effect.set[property.name].sort((a, b) => a.at - b.at);
    }, `key ${effect.id}.${property.name}`);
  }

  // As a project.

  /** The document of a look; `isPlain` leaves all effects out. */
  document({ letter = this.state.letter, isPlain = false } = {}) {
    const look = this.state.looks[letter] ?? this.look;
    const write = ({ class: name, set, from, to }) => ({ class: name, ...(from && { from }), ...(to !== undefined && { to }), ...(Object.keys(set).length && { set }) });
    const chain = (effects) => (isPlain ? [] : effects.filter(({ on }) => on).map(write));
    const clips = this.state.parts.map((part, i) => {
      const transition = look.transitions[i];
      return { ...part, ...(transition && { transition: { ...write(transition), duration: transition.duration } }), effects: chain(look.clips[i]) };
    });
    return JSON.stringify({ ...this.state.output, clips, effects: chain(look.all) });
  }
  /** The effect's place in that document, as the tool calls it; nothing when it is switched off. */
  documentPlace(effect) {
    if (!effect?.on) return null;
    if (this.join) return `clips[${this.join}].transition`;
    const index = this.chain.filter(({ on }) => on).indexOf(effect);
    return this.target === "all" ? `effects[${index}]` : `clips[${this.target}].effects[${index}]`;
  }
}
