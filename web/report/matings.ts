// Who with whom: by sire or in one table, and the matrix of all that could have been paired.

import { group, h, note, part } from "../shared/dom.js";
import * as words from "../shared/texts/matings.js";
import { matingsTable, sheets } from "./mating_tables.js";
import { matrix } from "./matrix.js";
import type { Plan, Result } from "./model.js";

export function section(result: Result): HTMLElement {
  const { plan } = result;
  if (!plan) return part("matings", words.TITLE);
  return part("matings", words.TITLE,
    h("p", {}, words.lead(plan.pairing), " ", words.HOW),
    views(result, plan),
    plan.matrix.f.length > 0 && group(words.MATRIX, matrix(result, plan)));
}

/** Two views of which one is shown and printed; the second is made when it is first wanted. */
function views(result: Result, plan: Plan): HTMLElement {
  const bySire = h("div", {}, sheets(result, plan));
  const all = h("div", { hidden: true });
  const buttons = [words.BY_SIRE, words.ALL].map((text, i) =>
    h("button", { type: "button", "aria-pressed": String(i === 0), onclick: () => show(i) }, text));
  function show(which: number): void {
    if (which === 1 && !all.hasChildNodes()) all.append(matingsTable(result, plan.matings, "matings.csv", plan));
    bySire.hidden = which !== 0;
    all.hidden = which !== 1;
    buttons.forEach((button, i) => button.setAttribute("aria-pressed", String(i === which)));
  }
  return h("div", {}, h("div", { class: "switch", role: "group", "aria-label": words.VIEWS }, buttons), bySire, all, note(words.OFFSPRING_VF[0], ": ", words.OFFSPRING_VF[1]));
}
