// The page: five steps from a herd book to a plan of matings.

import { add, fill, h, link, part } from "../shared/dom.js";
import { Planning } from "./planning.js";
import type { Step } from "./step.js";
import * as book from "./steps/book.js";
import * as candidates from "./steps/candidates.js";
import * as faults from "./steps/faults.js";
import * as goal from "./steps/goal.js";
import * as plan from "./steps/plan.js";
import { LANGUAGES, language, speak, words, type Language } from "./texts/words.js";
import { Work } from "./work.js";

const work = new Work();
const planning = new Planning(work);
let steps: Step[] = [];

function header(): HTMLElement {
  const { frame } = words;
  const button = (text: string, act: () => void) => h("button", { type: "button", onclick: act }, text);
  const undo = button(frame.undo, () => work.undo()), redo = button(frame.redo, () => work.redo());
  const names = Object.keys(LANGUAGES) as Language[];
  const choice = h("select", { "aria-label": frame.language, onchange: () => (speak(choice.value as Language), show()) },
    names.map((name) => h("option", { value: name, selected: name === language }, name)));
  follow(() => {
    undo.disabled = !work.canUndo;
    redo.disabled = !work.canRedo;
  });
  return h("header", { class: "top" }, h("h1", {}, frame.title), h("p", {}, frame.lead), h("div", { class: "tools" }, undo, redo, choice));
}

function contents(): HTMLElement {
  return h("nav", { class: "contents", "aria-label": words.frame.steps }, h("ol", {}, steps.map(({ id, title }) => h("li", {}, link(id, title)))));
}

function section(step: Step): HTMLElement {
  const place = h("div");
  let shown: HTMLElement | undefined;
  follow(() => {
    const now = step.ready() ? step.body : (shown === step.body || !shown ? h("p", { class: "note" }, words.frame.later) : shown);
    if (now !== shown) fill(place, (shown = now));
    if (step.ready()) step.show();
  });
  return part(step.id, step.title, place);
}

let unfollow: (() => void)[] = [];

function follow(act: () => void): void {
  unfollow.push(work.follow(act));
}

/** Makes the page, anew in another language. */
function show(): void {
  for (const { end } of steps) end?.();
  for (const act of unfollow) act();
  unfollow = [];
  steps = [book, faults, candidates, goal, plan].map(({ step }) => step(work, planning));
  document.title = words.frame.title;
  document.body.replaceChildren(...[...document.body.children].filter((child) => child instanceof HTMLScriptElement));
  add(document.body, [header(), h("div", { class: "frame" }, contents(), h("main", {}, steps.map(section)))]);
}

show();
