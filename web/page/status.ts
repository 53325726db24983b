// What is under way or went wrong, at the foot of the window wherever a reader is.

import { fill, h } from "../shared/dom.js";
import { Cancelled, type Progress } from "./engine/engine.js";
import { said } from "./errors.js";
import { words } from "./texts/words.js";
import type { Work } from "./work.js";

const PATIENCE = 400;  // milliseconds that pass before anything is said to be under way

/** Follows the work. */
export function status(work: Work): { element: HTMLElement; show: () => void } {
  const under = progress(() => work.cancel());
  const trouble = h("div", { role: "alert" });
  let told: Error | null = null;
  function show(): void {
    const { found, opening, unopened } = work;
    const pressed = under.element.contains(document.activeElement);
    under.show(opening ? words.book.opening : found.state === "working" ? words.frame.working : null, found.state === "working" ? found.progress : null);
    const error = unopened ?? (found.state === "refused" ? found.error : null);
    if (error !== told) fill(trouble, (told = error) && complaint(error!, work));
    if (pressed && under.element.hidden) (trouble.querySelector("button") ?? beginning())?.focus({ preventScroll: true });
  }
  return { element: h("div", { class: "status" }, trouble, under.element), show };
}

/** Where the focus is when what had it is gone. */
const beginning = () => document.getElementById("book-title");


function complaint(error: Error, work: Work): HTMLElement {
  const button = (text: string, act: () => void) => h("button", { type: "button", class: "plainbutton", onclick: () => {
    act();
    beginning()?.focus({ preventScroll: true });
  } }, text);
  const ways = error === work.unopened ? button(words.frame.dismiss, () => work.dismiss()) : button(words.frame.again, () => work.again());
  return h("div", { class: error instanceof Cancelled ? "warning" : "warning serious" }, h("p", {}, said(error), error !== work.unopened && work.latest && ` ${words.frame.before}`), ways);
}

/** A bar with what is done, how far it is, and a button that stops it; nothing is shown for null. */
export function progress(stop: () => void): { element: HTMLElement; show: (what: string | null, now: Progress | null) => void } {
  const bar = h("progress", { max: 1 });
  const name = h("span", { role: "status" });
  const rest = h("span", { class: "light" });
  const element = h("div", { class: "progress", hidden: true }, name, bar, rest, h("button", { type: "button", class: "plainbutton", onclick: stop }, words.frame.cancel));
  let waiting = 0;
  function show(what: string | null, now: Progress | null): void {
    if (what === null) {
      clearTimeout(waiting);
      [waiting, element.hidden] = [0, true];
      fill(name);
      return;
    }
    waiting ||= setTimeout(() => ((element.hidden = false), fill(name, bar.getAttribute("aria-label"))), PATIENCE);
    bar.setAttribute("aria-label", now?.phase || what);
    if (!element.hidden && name.textContent !== (now?.phase || what)) fill(name, now?.phase || what);
    if (now) bar.value = now.share;
    else bar.removeAttribute("value");
    fill(rest, now && Number.isFinite(now.left) && words.frame.left(now.left));
  }
  return { element, show };
}
