// A plan that somebody has made, side by side with the best one.

import { h, note } from "../shared/dom.js";
import { atLeast, count, digits, percent } from "../shared/format.js";
import { plain } from "../shared/table.js";
import { summary as words } from "../shared/texts/language.js";
import type { Given, Plan, PlanValue, Result } from "./model.js";
import { matingsTable } from "./mating_tables.js";
import { group } from "./outline.js";

export function beside(result: Result, plan: Plan, given: Given): HTMLElement {
  const faults = given.faults.map((fault) => h("li", {}, fault));
  const matings = h("details", {}, h("summary", {}, words.GIVEN_MATINGS));
  matings.append(matingsTable(result, given.matings, "given_matings.csv"));
  return group(words.GIVEN_TITLE,
    h("p", {}, words.givenLead(given.file), given.matings.length !== plan.matings.length && ` ${words.givenFewer(given.matings.length, plan.matings.length)}`),
    h("div", { class: "wrapped" }, plain(words.GIVEN_TITLE, words.GIVEN_COLUMNS, rows(plan, given))),
    note(words.FITNESS_NOTE),
    faults.length ? h("div", { class: "warning serious" }, h("p", {}, words.GIVEN_FAULTS), h("ul", {}, faults)) : h("p", {}, words.GIVEN_SOUND),
    matings);
}

type Show = (value: number) => string;

function rows(plan: Plan, given: Given): string[][] {
  const row = (name: string, best: number, other: number, show: Show) => [name, show(best), show(other), signed(other - best, show)];
  const value = (name: string, key: Exclude<keyof PlanValue, "legal">, show: Show) => row(name, plan.value[key], given.value[key], show);
  const short: Show = (number) => digits(number, 4);
  return [
    row(words.MATINGS, plan.matings.length, given.matings.length, count),
    row(words.MALES, plan.males.chosen, given.males.chosen, count),
    row(words.FEMALES, plan.females.chosen, given.females.chosen, count),
    value(words.MERIT, "merit", short),
    value(words.INBREEDING, "inbreeding", percent),
    value(words.RELATIONSHIP, "relationship", percent),
    value(words.RATE, "rate", percent),
    row(words.NE, effective(plan.value.rate), effective(given.value.rate), short),
    value(words.AGE, "age", short),
    value(words.FITNESS, "fitness", short),
    row(words.SHARE, plan.share, given.share, atLeast),
  ];
}

const effective = (rate: number) => (rate > 0 ? 1 / (2 * rate) : NaN);
const signed = (difference: number, show: Show) => (difference > 0 ? `+${show(difference)}` : show(difference));
