// The report of the plan within the page, the mating list first.

import { called } from "../../../frontier/model.js";
import { h } from "../../../shared/dom.js";
import { within } from "../../../report/outline.js";
import { parts } from "../../../report/show.js";
import type { Made } from "../../planned.js";
import { words } from "../../texts/words.js";

const BEFORE = "report-";
const FIRST = `${BEFORE}matings`;

within(BEFORE);

export function shownReport({ plan, result }: Made): HTMLElement {
  const all = parts(result);
  const [first, rest] = [all.filter(({ id }) => id === FIRST), all.filter(({ id }) => id !== FIRST)];
  return h("div", {},
    h("p", { class: "paper lead" }, words.plan.paper(result.title, called(plan), new Date())),
    h("div", { class: "report" }, first, rest));
}
