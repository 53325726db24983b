// Step 1: the herd book, and what its columns were taken for.

import { fill, h } from "../../../shared/dom.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";
import { doors } from "./doors.js";
import { opened } from "./opened.js";

export function step(work: Work): Step {
  const entrance = doors(work);
  const inside = opened(work);
  const book = h("div");
  let shown = false;
  function show(): void {
    const has = work.book !== null;
    entrance.show(has);
    if (has !== shown) fill(book, has && inside.element);
    if ((shown = has)) inside.show();
  }
  return { id: "book", title: words.book.title, body: h("div", {}, entrance.element, book), ready: () => true, show, end: entrance.end };
}
