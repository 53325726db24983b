// What a user has chosen, as one value: what is undone, saved and opened again.

import { flag, list, number, object, oneOf, orNull, text, type Read, type Shape } from "../shared/shape.js";

/** What a column of a herd book may hold, as qob-prepare names it. */
export const FIELDS = ["identifier", "sire", "dam", "sex", "birth", "ebv", "matings", "name", "alive", "herd"] as const;
export type Field = (typeof FIELDS)[number];

export const STEPS = ["auto", "year", "season", "quarter", "month", "generation"] as const;
export const RULES = ["fix", "forbid", "min", "max", "group", "forbid-groups", "max-pair", "max-per-group", "max-f"] as const;
export const TARGETS = ["weight", "rate", "ne", "degrees"] as const;

const whole: Shape<number | null> = orNull(number);
const pair = object({ field: text, value: text });
const sex = object({ matings: whole, from: whole, to: whole });
const rule = object({ kind: oneOf(...RULES), a: text, b: text, value: text });

export const shape = object({
  // The table.
  columns: list(pair),  // fields whose columns the user has named: heading, or position without headings
  header: flag, unknown: list(text), dates: oneOf("", "dmy", "mdy"), decimals: flag, step: oneOf(...STEPS), days: whole,
  // What is not to hinder.
  accept: list(text),
  // Who may be mated. Ages in years.
  males: sex, females: sex, alive: orNull(object({ column: text, value: text })), completeness: number, parentsKnown: flag,
  ebv: oneOf("read", "mean", "none"),
  // What is planned. A point of the trade-off by its folder, as the program names it.
  matings: whole, rules: list(rule), target: orNull(object({ kind: oneOf(...TARGETS), value: number })), point: text, seeds: number,
});

export type Choices = Read<typeof shape>;
export type Rule = Choices["rules"][number];
export type Target = NonNullable<Choices["target"]>;

const ANY = { matings: null, from: null, to: null };

export const FIRST: Choices = {
  columns: [], header: true, unknown: [], dates: "", decimals: false, step: "auto", days: null,
  accept: [],
  males: ANY, females: ANY, alive: null, completeness: 0, parentsKnown: false, ebv: "read",
  matings: null, rules: [], target: null, point: "", seeds: 4,
};

type Sexes = Pick<Choices, "males" | "females">;
type Ages = readonly [number, number] | null;

/** What is asked first where nobody, and no column of the herd book, says how often animals may be mated: the ages are those at
 * which most have become parents. */
export function suggestion(males: Ages, females: Ages): Sexes {
  const sex = (matings: number, ages: Ages) => ({ matings, from: ages?.[0] ?? null, to: ages?.[1] ?? null });
  return { males: sex(20, males), females: sex(1, females) };
}

/** "matings=30 age=1-6" */
function ruleOf({ matings, from, to }: Choices["males"]): string {
  const words = matings === null ? [] : [`matings=${matings}`];
  if (from !== null || to !== null) words.push(`age=${from ?? 0}-${to ?? 1000}`);
  return words.join(" ");
}

/** The words of qob-prepare for a herd book; what they name is in the folder of the run. */
export function prepareWords(book: string, rulesFile: string | null, now: Choices): string[] {
  const given = (option: string, value: string | false) => (value === false || value === "" ? [] : [`${option}=${value}`]);
  return [
    "qob-prepare", book,
    ...now.columns.flatMap(({ field, value }) => given("--column", `${field}=${value}`)),
    ...given("--header", !now.header && "none"), ...now.unknown.flatMap((word) => given("--unknown", word)),
    ...given("--dates", now.dates), ...(now.decimals ? ["--decimals"] : []),
    ...given("--step", now.days !== null ? String(now.days) : now.step !== "auto" && now.step),
    ...given("--accept", now.accept.join(",")),
    ...given("--males", ruleOf(now.males)), ...given("--females", ruleOf(now.females)),
    ...given("--alive", now.alive !== null && `${now.alive.column}=${now.alive.value}`),
    ...given("--min-completeness", now.completeness > 0 && String(now.completeness)),
    ...(now.parentsKnown ? ["--parents-known"] : []),
    ...given("--missing-ebv", now.ebv === "mean" && "mean"), ...(now.ebv === "none" ? ["--no-ebv"] : []),
    ...given("--matings", now.matings !== null && String(now.matings)), ...given("--rules", rulesFile ?? false),
  ];
}

/** What decides about the files of the run: when this changes, all behind it is made anew. */
export const decides = (now: Choices): string => JSON.stringify({ ...now, target: null, point: "", seeds: 0 });
