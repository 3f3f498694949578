// Questions to the tool that serves this page. All addresses are relative: the token stands in the page's own.

export class Refused extends Error {
  constructor(status, text) {
    super(text.trim());
    this.status = status;
  }
}

async function ask(path, options) {
  const response = await fetch(path, { cache: "no-store", ...options });
  if (!response.ok) throw new Refused(response.status, await response.text());
  return response;
}
const withParameters = (path, parameters) => path + (parameters ? "?" + new URLSearchParams(parameters) : "");

export const getJSON = async (path) => (await ask(path)).json();
export const post = (path, body = "", parameters = null) => ask(withParameters(path, parameters), { method: "POST", body });
export const postJSON = async (path, body, parameters) => (await post(path, body, parameters)).json();

/** Asks for pictures of one view: one at a time, and then for the newest that was wanted meanwhile. */
export class Feed {
  constructor(view, onPicture, onRefused) {
    Object.assign(this, { view, onPicture, onRefused, isWaiting: false, next: null });
  }
  want(body, time, side) {
    this.next = { body, time, side, since: performance.now() };
    if (!this.isWaiting) this.#work();
  }
  async #work() {
    this.isWaiting = true;
    while (this.next) {
      const { body, time, side, since } = this.next;
      this.next = null;
      try {
        const response = await post("api/frame", body, { time: time.toFixed(6), side, view: this.view });
        if (response.status === 204) continue;
        const bitmap = await createImageBitmap(await response.blob());
        await this.onPicture(bitmap, { time, since, moving: JSON.parse(response.headers.get("Studio-Moving") || "{}") });
      } catch (error) {
        await this.onRefused(error);
      }
    }
    this.isWaiting = false;
  }
}

/** Events of the tool: {card, export, note} by name; `lost` when it has ended. */
export function listen(handlers, lost) {
  const events = new EventSource("api/events");
  for (const [name, handler] of Object.entries(handlers))
    events.addEventListener(name, (event) => handler(JSON.parse(event.data)));
  events.addEventListener("error", () => lost(true));
  events.addEventListener("open", () => lost(false));
}
