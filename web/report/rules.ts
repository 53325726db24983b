// The rules that the breeder set: whether the plan keeps them, and what each costs.

import { facts, h, note } from "../shared/dom.js";
import { digits, fixed, NONE, percent } from "../shared/format.js";
import { table, type Column } from "../shared/table.js";
import { rules as words } from "../shared/texts/language.js";
import type { Rule, Rules } from "./model.js";
import { part } from "./outline.js";

export function section(rules: Rules): HTMLElement {
  const { list, with_all, left_out } = rules;
  const unknown = list.filter(({ gain }) => Number.isNaN(gain.value)).length > left_out;
  return part("rules", words.title,
    h("p", {}, words.intro(list.length, rules.file, list.filter(({ broken }) => broken > 0).length), " ", words.lead),
    facts(
      [words.with_all.value, digits(with_all.value, 5)],
      [words.with_all.merit, digits(with_all.merit, 4)],
      [words.with_all.rate, percent(with_all.rate)],
      [words.with_all.inbreeding, percent(with_all.inbreeding)]),
    table(columns(rules), list, { caption: words.caption, file: "rules.csv" }),
    note(words.note, left_out > 0 && ` ${words.leftOut(left_out)}`, unknown && ` ${words.unknown}`));
}

type Key = keyof typeof words.columns;
const column = (key: Key, rest: Omit<Column<Rule>, "key" | "title" | "note">): Column<Rule> => {
  const [title, note] = words.columns[key];
  return { key, title, note, ...rest };
};

/** What a figure would be, and the difference with its sign; the figure alone where it stays. */
function shown(value: number, more: number, decimals: number): string {
  const text = fixed(more, decimals);
  return /[1-9]/.test(text) ? words.changed(fixed(value, decimals), more > 0 ? `+${text}` : text) : fixed(value, decimals);
}

/** Decimals at which a cost tells beside the value. */
function decimalsOf({ list }: Rules): number {
  const most = list.reduce((sum, { gain }) => Math.max(sum, gain.value || 0), 0);
  return most > 0 ? Math.min(8, Math.max(0, 2 - Math.floor(Math.log10(most)))) : 0;
}

function columns(rules: Rules): Column<Rule>[] {
  const decimals = decimalsOf(rules);
  const merit = Math.min(8, Math.max(2, 3 - Math.floor(Math.log10(Math.abs(rules.with_all.merit) || 1))));
  const without = (key: "merit" | "rate" | "inbreeding", unit: number, decimals: number) =>
    column(key, { value: ({ gain }) => gain[key], show: ({ without, gain }) => shown(without[key] * unit, gain[key] * unit, decimals) });
  return [
    column("line", { value: ({ line }) => line }),
    column("rule", { value: words.said, wrap: true }),
    column("broken", { value: ({ broken }) => (broken === 0 ? words.kept : words.broken(broken)) }),
    column("value", { value: ({ gain }) => gain.value, show: ({ gain }) => (Number.isNaN(gain.value) ? NONE : fixed(gain.value, decimals)) }),
    without("merit", 1, merit), without("rate", 100, 2), without("inbreeding", 100, 2),
  ];
}
