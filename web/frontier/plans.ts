// All plans as a table: each row has a button that chooses its plan, and so has the row itself.

import { h, part } from "../shared/dom.js";
import { atLeast, digits, short } from "../shared/format.js";
import { table, type Column } from "../shared/table.js";
import * as words from "../shared/texts/frontier.js";
import type { Choice } from "./choice.js";
import { called, type Frontier, type Plan } from "./model.js";

type Key = keyof typeof words.table.columns;

export function section({ plans }: Frontier, choice: Choice): HTMLElement {
  const buttons = new Map<Plan, HTMLElement>();
  const mark = (button: HTMLElement, plan: Plan) => button.setAttribute("aria-pressed", String(plan === choice.plan));
  const chooser = (plan: Plan) => {
    const button = h("button", { type: "button", class: "open", onclick: () => choice.choose(plan) }, called(plan));
    buttons.set(plan, button);
    mark(button, plan);
    return button;
  };
  const grid = table(columns(plans, chooser), plans, { caption: words.table.caption, file: "plans.csv" });
  grid.addEventListener("click", ({ target }) => {
    if (target instanceof Element && !target.closest("button")) target.closest("tbody tr")?.querySelector<HTMLElement>(".open")?.click();
  });
  choice.follow(() => buttons.forEach(mark));
  return part("plans", words.table.title, h("p", { class: "screen" }, words.table.intro), h("div", { class: "pick" }, grid));
}

/** Columns in which no plan has a value are left out. */
function columns(plans: readonly Plan[], chooser: (plan: Plan) => HTMLElement): Column<Plan>[] {
  const column = (key: Key, value: (plan: Plan) => string | number, look: Partial<Column<Plan>> = {}): Column<Plan> =>
    ({ key, title: words.table.columns[key][0], note: words.table.columns[key][1], value, ...look });
  const all = [
    column("plan", called, { show: chooser }),
    column("how", ({ how }) => how, { show: ({ how }) => words.how[how] }),
    column("share", ({ share }) => share, { show: ({ share }) => atLeast(share).replace(/\s*%$/, "") }),
    column("scaled_merit", ({ scaled_merit }) => scaled_merit, { decimals: 3 }),
    column("merit", ({ merit }) => merit, { show: ({ merit }) => digits(merit, 4) }),
    column("rate", ({ rate }) => rate, { percent: true }),
    column("effective_size", ({ effective_size }) => effective_size, { decimals: 1 }),
    column("relationship", ({ relationship }) => relationship, { percent: true }),
    column("inbreeding", ({ inbreeding }) => inbreeding, { percent: true }),
    column("males", ({ males }) => males),
    column("females", ({ females }) => females),
    column("degrees", ({ degrees }) => degrees, { decimals: 0 }),
    column("weight", ({ weight }) => weight, { show: ({ weight }) => short(weight) }),
    column("constraint", ({ constraint }) => constraint, { percent: true }),
    column("seed", ({ seed }) => seed),
    column("seconds", ({ seconds }) => seconds, { show: ({ seconds }) => digits(seconds, 2) }),
    column("folder", ({ folder }) => folder, { show: ({ folder }) => h("code", {}, folder) }),
  ];
  return all.filter(({ value }) => plans.some((plan) => !Number.isNaN(value(plan))));
}
