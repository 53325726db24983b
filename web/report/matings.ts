// Who with whom: by sire or in one table, and the matrix of all that could have been paired.

import { h, note } from "../shared/dom.js";
import { matings as words } from "../shared/texts/language.js";
import { matingsTable, sheets } from "./mating_tables.js";
import { matrix } from "./matrix.js";
import { decided, type Plan, type Result } from "./model.js";
import { group, part } from "./outline.js";

export function section(result: Result): HTMLElement {
  const { plan } = result;
  if (!plan) return part("matings", words.TITLE);
  const fixed = decided(plan).size;
  return part("matings", words.TITLE,
    h("p", {}, words.lead(plan.pairing, plan.rules !== null), " ", fixed > 0 && `${words.decided(fixed)} `, h("span", { class: "screen" }, words.HOW)),
    views(result, plan),
    plan.matrix.f.length > 0 && group(words.MATRIX, matrix(result, plan)));
}

/** Sheets with fewer females than this on average say less than one table. */
const SHEETS = 1.5;

/** Two views of which one is shown and printed; each is made when it is first wanted. */
function views(result: Result, plan: Plan): HTMLElement {
  const all = [
    { name: words.BY_SIRE, box: h("div"), make: () => sheets(result, plan) },
    { name: words.ALL, box: h("div", { class: "pairs" }), make: () => matingsTable(result, plan.matings, "matings.csv", plan) },
  ];
  const buttons = all.map(({ name }, i) => h("button", { type: "button", onclick: () => show(i) }, name));
  function show(which: number): void {
    all.forEach(({ box, make }, i) => {
      box.hidden = i !== which;
      if (i === which && !box.hasChildNodes()) box.append(make());
      buttons[i]?.setAttribute("aria-pressed", String(i === which));
    });
  }
  show(plan.matings.length < SHEETS * plan.males.chosen ? 1 : 0);
  const view = h("div", { class: "switch", role: "group", "aria-label": words.VIEWS }, buttons);
  return h("div", {}, view, all.map(({ box }) => box), note(words.OFFSPRING_VF[0], ": ", words.OFFSPRING_VF[1]));
}
