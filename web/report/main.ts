// Reads the data of the page and shows them as a report or as a comparison of plans; data that are not
// what the page knows are told in words.

import { add, h, link, type Child } from "../shared/dom.js";
import { save } from "../shared/download.js";
import * as words from "../shared/texts/frame.js";
import * as beware from "./beware.js";
import * as candidates from "./candidates.js";
import * as compare from "./compare.js";
import * as made from "./made.js";
import * as matings from "./matings.js";
import { OtherVersion, read, VERSION, type Comparison, type Result } from "./model.js";
import * as population from "./population.js";
import * as search from "./search.js";
import { Misshapen } from "./shape.js";
import * as summary from "./summary.js";

const json = document.getElementById("data")?.textContent ?? "";

function show(): void {
  try {
    const data = read(json);
    if (data.format === "qob-result") showReport(data);
    else showComparison(data);
  } catch (error) {
    document.body.replaceChildren(broken(error));
    if (!expected(error)) throw error;
  }
}

function showReport(result: Result): void {
  const planned = result.plan !== null;
  const parts = [
    summary.section(result),
    planned && matings.section(result),
    result.candidates.length > 0 && candidates.section(result),
    population.section(result),
    result.search.rows.length > 0 && search.section(result),
    beware.section(result),
    made.section(result),
  ].filter((part) => part !== false);
  frame(words.title(result.title, planned), words.made(result.making.time, result.making.program), parts);
}

function showComparison(comparison: Comparison): void {
  const making = comparison.plans[0]?.making;
  frame(words.COMPARISON_TITLE, making && words.made(making.time, making.program), [compare.section(comparison)]);
}

function frame(title: string, made: Child, parts: readonly HTMLElement[]): void {
  document.title = title;
  const saveAll = () => save("result.json", "application/json", json);
  add(document.body, [
    h("a", { class: "skip", href: "#report" }, words.SKIP),
    h("header", { class: "top" },
      h("h1", {}, title),
      h("p", {}, made),
      h("button", { type: "button", class: "download", onclick: saveAll }, words.SAVE_JSON)),
    h("div", { class: "frame" }, contents(parts), h("main", { id: "report", tabindex: -1 }, parts)),
  ]);
}

/** The table of contents; it follows the reader. */
function contents(parts: readonly HTMLElement[]): HTMLElement {
  const links = new Map<Element, HTMLElement>();
  for (const part of parts) links.set(part, link(part.id, part.querySelector("h2")?.textContent));
  const seen = new IntersectionObserver((entries) => {
    const now = entries.filter((entry) => entry.isIntersecting).pop()?.target;
    if (now) for (const [part, to] of links) mark(to, part === now);
  }, { rootMargin: "-20% 0px -70% 0px" });
  for (const part of parts) seen.observe(part);
  return h("nav", { class: "contents", "aria-label": words.CONTENTS }, h("ol", {}, [...links.values()].map((to) => h("li", {}, to))));
}

function mark(to: HTMLElement, now: boolean): void {
  if (now) to.setAttribute("aria-current", "true");
  else to.removeAttribute("aria-current");
}

function expected(error: unknown): boolean {
  return error instanceof Misshapen || error instanceof OtherVersion || error instanceof SyntaxError;
}

function broken(error: unknown): HTMLElement {
  const said = error instanceof Error ? error.message : String(error);
  const empty = json.trim().length <= 8;
  const what = empty ? words.NO_DATA : error instanceof OtherVersion ? words.otherVersion(error.version, VERSION) : words.BROKEN;
  return h("main", { class: "top" },
    h("h1", {}, words.BROKEN_TITLE),
    h("p", { class: "warning serious", role: "alert" }, what),
    !empty && h("p", { class: "note" }, words.detail(said)));
}

show();
