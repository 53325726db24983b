// The plan in one paragraph and a row of figures that a board reads first; without a plan the same for
// the population. Serious warnings are named here and explained in their own part.

import { facts, h, type Child } from "../shared/dom.js";
import { count, digits, fixed, percent } from "../shared/format.js";
import { beware as beware_words, summary as words } from "../shared/texts/language.js";
import { once, said } from "./beware.js";
import { birthOf, inWords } from "./births.js";
import { beside } from "./evaluate.js";
import type { Plan, Result, SexUse } from "./model.js";
import { link, part } from "./outline.js";

export function section(result: Result): HTMLElement {
  const { plan, given } = result;
  return part("summary", words.TITLE,
    h("p", { class: "lead" }, plan ? planned(result, plan) : populated(result)),
    h("p", { class: "lead" }, beware(result)),
    plan ? figures(result, plan) : populationFigures(result),
    plan && h("details", {}, h("summary", {}, words.HOW), h("ul", {}, words.FORMULAS.map((each) => h("li", {}, each)))),
    plan && given.map((each) => beside(result, plan, each)));
}

function planned(result: Result, plan: Plan): Child[] {
  const { value, last } = plan;
  const sex = (use: SexUse, [one, more]: readonly [string, string]) => words.chosen(use.chosen, use.candidates, one, more);
  return [
    words.matings(plan.matings.length, sex(plan.males, words.MALE), sex(plan.females, words.FEMALE)),
    words.merit(value.merit),
    Number.isNaN(plan.gain) || unfinished(result) ? words.END : words.gain(plan.gain, born(result, last.birth_time)),
    words.inbreeding(value.inbreeding, value.relationship),
    rate(result, plan),
    Number.isNaN(plan.share) ? null : words.reaches(plan.share, plan.rules !== null),
    incomplete(result),
  ];
}

const born = (result: Result, time: number) => inWords(birthOf(result)(time));

const unfinished = ({ warnings }: Result) => warnings.find(({ kind }) => kind === "unfinished_last_time");

/** How fast inbreeding rises, unless there is nothing to reckon it from. */
function rate(result: Result, { value, ne, last }: Plan): string | null {
  const { values } = unfinished(result) ?? {};
  if (!values) return Number.isNaN(value.rate) ? null : words.rate(value.rate, ne, last.generation_interval);
  const before = values["rate"] ?? NaN;
  const so_far = Number.isNaN(before) ? "" : beware_words.change(before, percent(Math.abs(before)));
  return words.noBase(last.animals, born(result, last.birth_time), so_far);
}

/** Below this completeness inbreeding is seen much too small. */
const COMPLETE = 0.6;

function incomplete(result: Result): string | null {
  const { trend } = result.population;
  const row = trend[trend.length - (unfinished(result) ? 2 : 1)];
  return row && row.completeness < COMPLETE ? words.incomplete(row.completeness, inWords(row.birth)) : null;
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

function beware(result: Result): Child[] {
  // Without a plan the population's own trend is what there is to beware of.
  const serious = once(result.warnings).filter(({ serious, text }) => serious || (!result.plan && text === ""));
  const brief = [...new Set(serious.map((warning) => said(warning, result).brief))];
  if (brief.length === 0) return [words.SOUND];
  return [h("strong", {}, words.BEWARE), brief.join("; "), ". ", link("beware", words.DETAILS), "."];
}

function figures(result: Result, { matings, males, females, value, gain, ne, last }: Plan): HTMLElement {
  const sex = (name: string, use: SexUse) =>
    [name, count(use.chosen), `${words.ofCandidates(use.candidates)}; ${words.SIRES_NOTE(use.mean_matings, use.sd_matings)}`] as const;
  return facts(
    [words.MATINGS, count(matings.length)],
    sex(words.MALES, males),
    sex(words.FEMALES, females),
    [words.MERIT, digits(value.merit, 4), Number.isNaN(gain) ? null : unfinished(result) ? words.NO_BASE_MERIT : words.MERIT_NOTE(gain)],
    [words.INBREEDING, percent(value.inbreeding), words.INBREEDING_NOTE(last.f)],
    [words.RELATIONSHIP, percent(value.relationship), words.RELATIONSHIP_NOTE(last.relationship)],
    [words.RATE, percent(value.rate), unfinished(result) ? words.NO_BASE : words.RATE_NOTE(last.generation_interval)],
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
