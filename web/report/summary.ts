// The plan in one paragraph and a row of figures that a board reads first; without a plan the same for
// the population. Serious warnings are named here and explained in their own part.

import { facts, h, link, part, type Child } from "../shared/dom.js";
import { count, digits, fixed, percent } from "../shared/format.js";
import * as words from "../shared/texts/summary.js";
import { beside } from "./evaluate.js";
import type { Plan, Result, SexUse } from "./model.js";

export function section(result: Result): HTMLElement {
  const { plan, given } = result;
  return part("summary", words.TITLE,
    h("p", { class: "lead" }, plan ? planned(result, plan) : populated(result)),
    h("p", { class: "lead" }, beware(result)),
    plan ? figures(plan) : populationFigures(result),
    plan && h("details", {}, h("summary", {}, words.HOW), h("ul", {}, words.FORMULAS.map((each) => h("li", {}, each)))),
    plan && given.map((each) => beside(result, plan, each)));
}

function planned(result: Result, plan: Plan): Child[] {
  const { value, last } = plan;
  const sex = (use: SexUse, [one, more]: readonly [string, string]) => words.chosen(use.chosen, use.candidates, one, more);
  return [
    words.matings(plan.matings.length, sex(plan.males, words.MALE), sex(plan.females, words.FEMALE)),
    words.merit(value.merit),
    Number.isNaN(plan.gain) ? words.END : words.gain(plan.gain, born(result, last.birth_time)),
    words.inbreeding(value.inbreeding, value.relationship),
    Number.isNaN(value.rate) ? null : words.rate(value.rate, plan.ne),
  ];
}

/** A birth time as the herd book counts. */
function born(result: Result, time: number): string {
  return result.population.trend.find((row) => row.birth_time === time)?.birth ?? String(time);
}

function populated({ population: of }: Result): Child[] {
  return [
    words.NO_PLAN,
    words.population(of.animals, of.founders, of.living),
    words.meanInbreeding(of.mean_f, of.max_f),
    words.diversity(of.mean_kinship, of.gene_diversity),
    words.effective(of.by_inbreeding.ne),
  ];
}

function beware({ warnings }: Result): Child[] {
  const serious = warnings.filter((warning) => warning.serious);
  const brief = [...new Set(serious.map(({ kind, values }) => words.brief(kind, values)))];
  if (brief.length === 0) return [words.SOUND];
  return [h("strong", {}, words.BEWARE), brief.join("; "), " (", link("beware", words.DETAILS), ")."];
}

function figures({ matings, males, females, value, gain, ne, last }: Plan): HTMLElement {
  const sex = (name: string, use: SexUse) =>
    [name, count(use.chosen), `${words.ofCandidates(use.candidates)}; ${words.SIRES_NOTE(use.mean_matings, use.sd_matings)}`] as const;
  return facts(
    [words.MATINGS, count(matings.length)],
    sex(words.MALES, males),
    sex(words.FEMALES, females),
    [words.MERIT, digits(value.merit, 4), Number.isNaN(gain) ? null : words.MERIT_NOTE(gain)],
    [words.INBREEDING, percent(value.inbreeding), words.INBREEDING_NOTE(last.f)],
    [words.RELATIONSHIP, percent(value.relationship), words.RELATIONSHIP_NOTE(last.relationship)],
    [words.RATE, percent(value.rate), words.RATE_NOTE],
    [words.NE, value.rate > 0 ? fixed(ne, ne < 10 ? 1 : 0) : "–", words.NE_NOTE],
  );
}

function populationFigures({ population: of }: Result): HTMLElement {
  return facts(
    [words.NE, fixed(of.by_inbreeding.ne, 0), words.NE_NOTE],
    [words.FOUNDERS, fixed(of.founder_equivalents, 1), words.FOUNDERS_NOTE],
    [words.KINSHIP, percent(of.mean_kinship), words.KINSHIP_NOTE],
    [words.DIVERSITY, percent(of.gene_diversity, 1), words.DIVERSITY_NOTE],
  );
}
