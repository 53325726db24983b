// Two or three plans side by side: their figures, a picture of each on the same scales, who is in which.

import { choose } from "../shared/choose.js";
import { h, note, type Child } from "../shared/dom.js";
import { atLeast, count, fixed, NONE, percent } from "../shared/format.js";
import { plain, table, type Column } from "../shared/table.js";
import * as words from "../shared/texts/compare.js";
import { candidates as candidate_words } from "../shared/texts/language.js";
import { once } from "./beware.js";
import { meritDecimals } from "./candidates.js";
import { choices, planned, type Choice, type Planned } from "./choices.js";
import { males, merits } from "./compare_pictures.js";
import type { Comparison, Plan } from "./model.js";
import { group, part } from "./outline.js";

export function section(comparison: Comparison): HTMLElement {
  const plans = planned(comparison);
  const chosen = choices(plans);
  const without = comparison.plans.filter(({ plan }) => plan === null).map(({ title }) => h("p", {}, `${title}: ${words.no_plan}`));
  return part("compare", words.title,
    h("ul", {}, plans.map((each) => h("li", {}, h("strong", {}, words.plan(each.letter)), ": ", about(each)))), without,
    plans.length > 0 && [figures(plans), merits(plans), males(plans, chosen.filter(({ of }) => of.sex === 1)), who(plans, chosen)]);
}

function figures(plans: readonly Planned[]): HTMLElement {
  const names = words.figures;
  const decimals = meritDecimals(plans.flatMap(({ rows }) => rows));
  const row = (name: string, value: (plan: Plan, planned: Planned) => Child): Child[] => [name, ...plans.map((each) => value(each.plan, each))];
  const most = (values: readonly number[]) => values.reduce((a, b) => Math.max(a, b), -Infinity);
  return group(names.title,
    h("div", { class: "wrapped" }, plain(names.caption, [names.figure, ...plans.map(({ letter }) => letter)], [
      row(names.matings, ({ matings }) => count(matings.length)),
      row(names.males, ({ males }) => names.of(count(males.chosen), count(males.candidates))),
      row(names.females, ({ females }) => names.of(count(females.chosen), count(females.candidates))),
      row(names.most, (_, { rows }) => count(most(rows.filter(({ of }) => of.sex === 1).map(({ matings }) => matings)))),
      row(names.merit, ({ value }) => fixed(value.merit, decimals + 1)),
      row(names.gain, ({ gain }) => fixed(gain, decimals + 1)),
      row(names.inbreeding, ({ value }) => percent(value.inbreeding)),
      row(names.largest, ({ matings }) => percent(most(matings.map(({ f }) => f)))),
      row(names.relationship, ({ value }) => percent(value.relationship)),
      row(names.rate, ({ value }) => percent(value.rate)),
      row(names.ne, ({ ne }) => (Number.isFinite(ne) ? fixed(ne, 1) : NONE)),
      row(names.share, ({ share }) => atLeast(share)),
      row(names.unknown_genes, ({ unknown_genes }) => percent(unknown_genes, 1)),
      row(names.warnings, (_, { result }) => count(once(result.warnings).filter(({ serious }) => serious).length)),
    ])),
    note(names.note));
}

function about({ plan, result }: Planned): string {
  return words.about(result.title, goal(plan), words.figures.pairings[plan.pairing] ?? plan.pairing, result.making.run_started);
}

function goal({ criterion, w_merit, w_relationship, constraint }: Plan): string {
  const { goals } = words.figures;
  const said = (value: number) => String(Number(value.toPrecision(6))).replace("-", "−");
  if (criterion === "penalty") return goals.penalty(said(w_merit), said(w_relationship));
  return criterion === "constraint" ? goals.constraint(percent(constraint)) : goals.merit;
}

function who(plans: readonly Planned[], chosen: readonly Choice[]): HTMLElement {
  const { title, caption, filter } = words.who;
  const filters: { name: string; value: (choice: Choice) => boolean }[] = [
    { name: filter.all, value: () => true },
    { name: filter.males, value: ({ of }) => of.sex === 1 },
    { name: filter.females, value: ({ of }) => of.sex === 2 },
    { name: filter.differing, value: ({ matings }) => new Set(matings).size > 1 },
  ];
  return group(title, overlap(plans, chosen, words.who.males, 1), overlap(plans, chosen, words.who.females, 2),
    choose(filter.label, filters, (kept) => table(columns(plans, chosen), chosen.filter(kept), { caption, file: "comparison.csv", search: true })));
}

/** In which plans how many of a sex are: all, each alone, and the rest of the combinations. */
function overlap(plans: readonly Planned[], chosen: readonly Choice[], name: string, sex: number): HTMLElement {
  const counts = new Map<string, number>();
  for (const { of, in: within } of chosen) if (of.sex === sex) counts.set(within, (counts.get(within) ?? 0) + 1);
  const parts = [...counts].sort(([a], [b]) => b.length - a.length || a.localeCompare(b)).map(([within, n]) =>
    within.length === 1 ? words.who.only(count(n), within)
    : words.who.shared(count(n), within.length === plans.length ? words.who.all_plans : [...within].join(" + ")));
  return h("p", {}, words.who.summary(name, parts.join(", ") || NONE));
}

function columns(plans: readonly Planned[], chosen: readonly Choice[]): Column<Choice>[] {
  const { columns: titles } = words.who;
  return [
    { key: "animal", title: titles.animal, value: ({ name }) => name },
    { key: "sex", title: titles.sex, value: ({ of }) => candidate_words.sexes[of.sex] ?? NONE },
    { key: "birth", title: titles.birth, value: ({ of }) => of.birth },
    { key: "merit", title: titles.merit, value: ({ merit }) => merit, decimals: meritDecimals(chosen) },
    { key: "in", title: titles.in, value: (choice) => choice.in },
    ...plans.map(({ letter }, i) => ({ key: `matings_${letter}`, title: titles.matings(letter), value: ({ matings }: Choice) => matings[i] ?? 0 })),
    ...plans.map(({ letter }, i) => ({
      key: `related_${letter}`, title: titles.related(letter), value: ({ rows }: Choice) => rows[i]?.to_others ?? NaN, percent: true,
    })),
  ];
}
