// The frame of every page: what stands above its parts, the table of contents, the data that can be saved;
// data that are not what the page knows are told in words.

import { add, h, link } from "./dom.js";
import { save } from "./download.js";
import { Misshapen, OtherVersion } from "./shape.js";
import { frame as words } from "./texts/language.js";

/** What a page is called, which program fills it, and the file that its data are saved to. */
export interface Kind { what: "report" | "page"; program: string; saved: string }

/** What a page shows of its data. */
export interface Shown { title: string; made: { time: string; program: string } | undefined; parts: readonly HTMLElement[] }

/** Shows the data that are in the document as `make` has them shown. */
export function page(kind: Kind, make: (json: string) => Shown): void {
  const json = document.getElementById("data")?.textContent ?? "";
  try {
    frame(kind, make(json), json);
  } catch (error) {
    document.body.replaceChildren(broken(kind, error, json));
    if (!expected(error)) throw error;
  }
}

function frame({ what, saved }: Kind, { title, made, parts }: Shown, json: string): void {
  document.title = title;
  const saveAll = () => save(saved, "application/json", json);
  add(document.body, [
    h("a", { class: "skip", href: `#${what}` }, words.skip(what)),
    h("header", { class: "top" },
      h("h1", {}, title),
      h("p", {}, made && words.made(made.time, made.program)),
      h("button", { type: "button", class: "download", onclick: saveAll }, words.SAVE_JSON)),
    h("div", { class: "frame" }, contents(parts), h("main", { id: what, tabindex: -1 }, parts)),
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

function broken({ what, program }: Kind, error: unknown, json: string): HTMLElement {
  const said = error instanceof Error ? error.message : String(error);
  const empty = json.trim().length <= 8;
  const why = empty ? words.noData(what, program)
    : error instanceof OtherVersion ? words.otherVersion(error.theirs, error.ours, what, program) : words.broken(what, program);
  return h("main", { class: "top" },
    h("h1", {}, words.brokenTitle(what)),
    h("p", { class: "warning serious", role: "alert" }, why),
    !empty && h("p", { class: "note" }, words.detail(said)));
}
