// Who with whom in the chosen plan, and the command that makes it again.

import { fill, group, h, part, type Child } from "../shared/dom.js";
import { quoted } from "../shared/shell.js";
import { table, type Column } from "../shared/table.js";
import * as words from "../shared/texts/frontier.js";
import type { Choice } from "./choice.js";
import { called, type Frontier, type Plan } from "./model.js";

/** All matings of one pair. */
interface Pair { sire: string; dam: string; f: number; matings: number }

export function section({ names }: Frontier, choice: Choice): HTMLElement {
  const shown = h("div");
  choice.follow((plan) => fill(shown, list(plan, names), repeat(plan)));
  return part("matings", words.matings.title, shown);
}

function list(plan: Plan, names: Frontier["names"]): Child[] {
  const { lead, none, caption } = words.matings;
  const title = h("h3", {}, called(plan));
  if (plan.matings.length === 0) return [title, h("p", {}, none)];
  return [title, h("p", {}, lead(plan.matings.length, plan.males, plan.females)),
    table(columns(names), pairs(plan), { caption: caption(called(plan)), file: `${plan.folder}_matings.csv` })];
}

/** In the order of the mating list. */
function pairs({ matings }: Plan): Pair[] {
  const all = new Map<string, Pair>();
  for (const [sire, dam, f] of matings) {
    const key = JSON.stringify([sire, dam]);
    const pair = all.get(key) ?? { sire, dam, f, matings: 0 };
    all.set(key, { ...pair, matings: pair.matings + 1 });
  }
  return [...all.values()];
}

function columns(names: Frontier["names"]): Column<Pair>[] {
  const titles = words.matings.columns;
  const column = (key: keyof typeof titles, value: (pair: Pair) => string | number, percent = false): Column<Pair> =>
    ({ key, title: titles[key][0], note: titles[key][1], value, percent });
  const who = (of: "sire" | "dam") => [
    column(of, (pair) => pair[of]),
    ...(names.size > 0 ? [column(`${of}_name`, (pair) => names.get(pair[of]) ?? "")] : []),
  ];
  return [...who("sire"), ...who("dam"), column("matings", ({ matings }) => matings), column("f", ({ f }) => f, true)];
}

function repeat({ folder }: Plan): HTMLElement {
  const { repeat: title, repeat_lead } = words.matings;
  return group(title, h("p", {}, repeat_lead), h("pre", {}, `cd ${quoted(folder)} && qob qob.prm`));
}
