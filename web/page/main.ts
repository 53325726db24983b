// The page: five steps from a herd book to a plan of matings.

import { contents } from "../shared/contents.js";
import { add, fill, h, part } from "../shared/dom.js";
import { arrival } from "./arrivals.js";
import { Planning } from "./planning.js";
import { ENDING, saveWork } from "./saved.js";
import { status } from "./status.js";
import type { Step } from "./step.js";
import * as book from "./steps/book/step.js";
import * as candidates from "./steps/candidates/step.js";
import * as faults from "./steps/faults/step.js";
import * as goal from "./steps/goal/step.js";
import * as plan from "./steps/plan/step.js";
import { LANGUAGES, language, speak, words, type Language } from "./texts/words.js";
import { Work } from "./work.js";

const work = new Work();
const planning = new Planning(work);
let steps: Step[] = [];

const TOLD = 5000;  // milliseconds for which it is said what a button did
const notice = h("span", { role: "status", class: "notice" });
let silence: ReturnType<typeof setTimeout> | undefined;

function tell(text: string): void {
  clearTimeout(silence);
  fill(notice, text);
  silence = setTimeout(() => fill(notice), TOLD);
}

function undo(): void {
  if (work.canUndo) tell(words.frame.undone);
  work.undo();
}

function redo(): void {
  if (work.canRedo) tell(words.frame.redone);
  work.redo();
}

function save(): void {
  const file = saveWork(work);
  if (file !== null) tell(words.frame.saved(file));
}

function header(): HTMLElement {
  const { frame } = words;
  const choice = h("select", { id: "language", "aria-label": frame.language, onchange: () => (speak(choice.value as Language), show(), document.getElementById("language")?.focus()) },
    (Object.keys(LANGUAGES) as Language[]).map((name) => h("option", { value: name, selected: name === language, lang: name }, frame.languages[name])));
  return h("header", { class: "top" }, h("h1", {}, frame.title), h("p", {}, frame.lead), choice);
}

/** What can be done with the whole work, always in view. */
function toolbar(): HTMLElement {
  const { frame } = words;
  const button = (text: string, act: () => void, keys?: string) =>
    h("button", { type: "button", class: "plainbutton", onclick: act, "aria-keyshortcuts": keys, title: keys?.replace("Control", frame.control) }, text);
  const back = button(frame.undo, undo, "Control+Z"), forth = button(frame.redo, redo, "Control+Y"), keep = button(frame.save, save);
  follow(() => {
    able(back, work.canUndo);
    able(forth, work.canRedo);
    able(keep, work.book !== null);
  });
  fill(notice);
  const bar = h("section", { class: "toolbar", "aria-label": frame.work }, h("div", { class: "tools" }, back, forth, keep, opening()), notice);
  const measure = new ResizeObserver(() => document.documentElement.style.setProperty("--bar", `${bar.offsetHeight}px`));
  measure.observe(bar);
  unfollow.push(() => measure.disconnect());
  return bar;
}

/** A button that can do nothing now keeps the focus. */
const able = (button: HTMLElement, can: boolean) => button.setAttribute("aria-disabled", String(!can));

/** A button that opens saved work. */
function opening(): HTMLElement[] {
  const files = h("input", { type: "file", accept: `${ENDING},.json`, hidden: true, onchange: () => {
    const file = files.files?.[0];
    if (file) void work.open((engine) => arrival(file, engine));
    files.value = "";
  } });
  return [h("button", { type: "button", class: "plainbutton", onclick: () => files.click() }, words.frame.open), files];
}

/** While the work is made anew, what was shown before stays, and so does the focus in it. */
function section(step: Step, number: number): HTMLElement {
  const later = h("p", { class: "note" }, words.frame.later);
  const place = h("div");
  let shown: HTMLElement | undefined;
  follow(() => {
    const ready = step.ready();
    const now = ready ? step.body : shown && work.found.state === "working" ? shown : later;
    if (now !== shown) fill(place, (shown = now));
    if (ready) step.show();
  });
  return part(step.id, `${number}. ${step.title}`, place);
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
  const foot = status(work);
  follow(foot.show);
  const sections = steps.map((step, i) => section(step, i + 1)), main = h("main", {}, sections);
  follow(() => busy(main));
  add(document.body, [header(), toolbar(), h("div", { class: "frame" }, contents(sections, words.frame.steps), main), foot.element]);
}

/** While the herd book is worked on, what is shown may be of the one before. */
function busy(main: HTMLElement): void {
  const now = work.opening !== null || work.found.state === "working";
  if (!now && main.getAttribute("aria-busy") === "true") main.dataset["done"] = String(Number(main.dataset["done"]) + 1);
  main.setAttribute("aria-busy", String(now));
  main.dataset["done"] ??= "0";
}

/** In a text field these keys undo what was typed there. */
function pressed(event: KeyboardEvent): void {
  const { target, ctrlKey, metaKey, altKey, shiftKey } = event;
  const types = target instanceof HTMLTextAreaElement || (target instanceof HTMLInputElement && !/^(checkbox|radio|file|button|range)$/.test(target.type));
  if (types || altKey || !(ctrlKey || metaKey) || document.querySelector("dialog[open]")) return;
  const key = event.key.toLowerCase();
  const act = key === "y" || (key === "z" && shiftKey) ? redo : key === "z" ? undo : null;
  if (!act) return;
  event.preventDefault();
  act();
}

addEventListener("keydown", pressed);
show();
