"use strict";

// A picture of the page: a class's preview, which can be compared with its source. Sets window.qvStage.
(() => {
  if (!window.qvGallery) return;

  /** An element with attributes, listeners (on…) and children. */
  function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
      if (value === null || value === false) continue;
      if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
      else element.setAttribute(name, value === true ? "" : value);
    }
    element.append(...children.filter((child) => child !== null));
    return element;
  }

  function icon(path) {
    const box = make("span", { "aria-hidden": "true" });
    box.innerHTML = `<svg viewBox="0 0 10 10"><path d="${path}"/></svg>`;
    return box.firstChild;
  }
  const kPlay = "M2 1v8l7-4z", kPause = "M2 1h2v8H2zM6 1h2v8H6z";

  const stages = new Set();
  const { size: previewSize, seconds: previewSeconds, hold } = window.qvGallery.preview;
  let moving = false;  // whether previews play by themselves
  document.documentElement.style.setProperty("--aspect", `${previewSize[0]} / ${previewSize[1]}`);

  const watcher = new IntersectionObserver((changes) => {
    for (const change of changes) change.target.stage.setVisible(change.isIntersecting);
  }, { threshold: 0.35 });

  function movie(source, classes = "") {
    const video = make("video", { class: classes, src: source, preload: "auto", tabindex: "-1", "aria-hidden": "true" });
    video.muted = video.loop = video.playsInline = true;
    return video;
  }

  class Stage {
    constructor(entry, onOpen) {
      this.entry = entry;
      this.isTransition = Boolean(entry.card.incoming);
      this.visible = false;
      this.choice = null;  // the viewer's own play or pause, until the picture leaves the view
      this.root = make("div", { class: "stage" });
      this.root.stage = this;
      const { card } = entry;
      this.after = this.picture(card.after, entry.help);
      this.before = this.picture(card.before, "");
      this.before.classList.add("source");
      this.cut = make("div", { class: "cut" });
      this.badge = make("span", { class: "badge", hidden: true });
      this.line = make("div", { class: "line", hidden: true });
      this.button = make("button", {
        type: "button", class: "play", tabindex: "-1",
        onclick: (event) => { event.stopPropagation(); this.toggle(); },
      });
      this.root.append(this.after, this.before, this.cut, this.line, this.badge, this.button);
      this.root.addEventListener("pointermove", (event) => {
        if (event.pointerType !== "touch" && event.target !== this.button) this.compareAt(this.shareOf(event));
      });
      this.root.addEventListener("pointerleave", () => this.compareEnd());
      this.root.addEventListener("click", (event) => {
        if (event.pointerType === "touch" || event.pointerType === "pen" || !onOpen) this.step();
        else onOpen();
      });
      this.showButton();
      stages.add(this);
      watcher.observe(this.root);
    }

    path(file) { return `cards/${this.entry.name}/${file}`; }
    picture(file, alt) { return make("img", { src: this.path(file), alt, loading: "lazy", decoding: "async", draggable: "false" }); }
    shareOf(event) {
      const box = this.root.getBoundingClientRect();
      return Math.min(1, Math.max(0, (event.clientX - box.left) / box.width));
    }

    // Playing: only in view, and never more videos than that.
    get shouldPlay() { return this.visible && (this.choice ?? moving); }
    setVisible(visible) {
      this.visible = visible;
      if (!visible) this.choice = null;
      this.follow();
    }
    toggle() {
      this.choice = !(this.video && !this.video.paused);
      if (this.stepped) this.compareEnd();
      this.follow();
    }
    follow() {
      if (!this.after) return;
      if (this.shouldPlay && !this.scrubbing) this.load().play().catch(() => {});
      else if (!this.visible) this.unload();
      else if (this.source) this.compareEnd();
      else if (this.video && !this.scrubbing) this.video.pause();
      this.showButton();
    }
    load() {
      if (this.video) return this.video;
      this.video = movie(this.path(this.entry.card.preview.file), "effect");
      this.video.hidden = true;
      this.video.addEventListener("loadeddata", () => { if (this.video) this.video.hidden = this.comparingStills; });
      this.after.after(this.video);
      return this.video;
    }
    unload() {
      this.compareEnd();
      this.drop("video");
    }
    drop(name) {
      const video = this[name];
      if (!video) return;
      this[name] = null;
      video.removeAttribute("src");
      video.load();
      video.remove();
    }
    showButton() {
      const playing = this.shouldPlay;
      this.root.classList.toggle("paused", !playing);
      this.button.replaceChildren(icon(playing ? kPause : kPlay));
      this.button.setAttribute("aria-label", `${playing ? "Pause" : "Play"} ${this.entry.name}`);
    }

    // Comparing: an effect is wiped over its source; a transition is moved through.
    compareAt(share) {
      this.stepped = 0;
      if (this.isTransition) return this.scrub(share);
      this.compareStart();
      this.setCut(share);
    }
    setCut(share) {
      this.root.style.setProperty("--cut", `${share * 100}%`);
      this.say(share > 0.18 ? "Before" : "");
    }
    compareStart() {
      if (this.root.classList.contains("comparing")) return;
      this.root.classList.add("comparing");
      const running = this.video && !this.video.hidden && !this.video.paused && this.entry.card.overSource;
      if (running) return this.playSource();
      this.comparingStills = true;
      if (this.video) this.video.hidden = true;
    }
    /** The source's own preview runs in step with the effect's. */
    playSource() {
      this.source = movie("source.mp4", "source");
      this.source.hidden = true;
      this.source.addEventListener("seeked", () => { if (this.source) this.source.hidden = false; }, { once: true });
      this.source.addEventListener("loadedmetadata", () => {
        if (!this.source || !this.video) return;
        this.source.currentTime = this.video.currentTime;
        this.source.play().catch(() => {});
        this.keepInStep();
      });
      this.before.hidden = true;
      this.cut.before(this.source);
    }
    keepInStep() {
      if (!this.source || !this.video) return;
      const behind = this.video.currentTime - this.source.currentTime;
      if (Math.abs(behind) > 0.06 && !this.source.seeking) this.source.currentTime = this.video.currentTime;
      requestAnimationFrame(() => this.keepInStep());
    }
    scrub(share) {
      this.scrubbing = true;
      const video = this.load();
      video.pause();
      const seek = () => { video.currentTime = hold + this.scrubbedTo * (previewSeconds - 2 * hold); };
      const isNew = this.scrubbedTo === undefined;
      this.scrubbedTo = share;
      if (video.readyState >= 1) { if (!video.seeking || isNew) seek(); }
      else video.addEventListener("loadedmetadata", seek, { once: true });
      if (isNew) video.addEventListener("seeked", () => { if (this.scrubbing && Math.abs(this.scrubbedTo - share) > 1e-3) seek(); });
      this.line.hidden = false;
      this.root.style.setProperty("--played", `${share * 100}%`);
      this.say(`${Math.round(share * 100)} %`);
    }
    compareEnd() {
      this.root.classList.remove("comparing");
      this.root.style.removeProperty("--cut");
      this.drop("source");
      this.stepped = 0;
      this.scrubbing = this.comparingStills = false;
      this.scrubbedTo = undefined;
      if (!this.after) return;
      this.before.hidden = false;
      this.line.hidden = true;
      this.say("");
      this.showing?.remove();
      this.showing = null;
      if (this.video) {
        this.video.hidden = this.video.readyState < 2;
        if (this.shouldPlay) this.video.play().catch(() => {});
        else this.drop("video");
      }
    }
    /** Before, after: by tap and by key. A transition shows where it begins, where it ends, and itself again. */
    step() {
      if (!this.after) return;
      const next = ((this.stepped || 0) + 1) % (this.isTransition ? 3 : 2);
      if (next === 0) return this.compareEnd();
      if (this.isTransition) {
        this.compareEnd();
        const [file, label] = next === 1 ? [this.entry.card.before, "From"] : [this.entry.card.incoming, "To"];
        this.showing = this.picture(file, "");
        this.badge.before(this.showing);
        this.say(label);
      } else {
        this.compareStart();
        this.setCut(1);
      }
      this.stepped = next;
    }
    say(text) {
      this.badge.textContent = text;
      this.badge.hidden = !text;
    }
    end() {
      this.setVisible(false);
      stages.delete(this);
      watcher.unobserve(this.root);
    }
  }

  function setMoving(on) {
    moving = on;
    for (const stage of stages) stage.follow();
  }

  window.qvStage = { make, Stage, setMoving };
})();
