// The frame of every page: what stands above its parts, the table of contents, the data that can be saved;
// data that are not what the page knows are told in words.

import { contents } from "./contents.js";
import { add, h } from "./dom.js";
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
    h("div", { class: "frame" }, contents(parts, words.CONTENTS), h("main", { id: what, tabindex: -1 }, parts)),
  ]);
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
