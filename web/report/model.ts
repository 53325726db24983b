// The data that a page shows, as the program writes them. Types follow from the shapes; columns are
// read as rows, null numbers as NaN. Animals are named by their place in `animals`.

import { columns, flag, headed, list, number, numbers, object, oneOf, orNull, text, tuple, type Read } from "../shared/shape.js";

/** A parent that is not known, and one that is known but not among the animals told. */
export const NOBODY = -1;
export const NOT_SHOWN = -2;

const animals = columns({
  number, id: text, name: text, birth: text, birth_time: number, sex: number,
  sire: number, dam: number, f: number, completeness: number,
});

const mated = { sire: number, dam: number, merit: number, f: number, vf: number };

const matings = columns({
  ...mated,
  common: list(tuple(number, number)), other_common: number, other_f: number,
});

const value = object({
  inbreeding: number, rate: number, relationship: number, merit: number,
  scaled_merit: number, fitness: number, age: number, legal: flag,
});

const sex_use = object({
  candidates: number, chosen: number, mean_matings: number, sd_matings: number, mean_merit: number,
});

const figures = object({ value: number, merit: number, relationship: number, rate: number, inbreeding: number });

const rules = object({
  file: text, decided: list(number), with_all: figures, left_out: number,
  list: list(object({
    line: number, text, kind: text, a: text, b: text, limit: number, broken: number, without: figures, gain: figures,
  })),
});

const plan = object({
  criterion: oneOf("penalty", "constraint", "merit"),
  w_merit: number, w_relationship: number, constraint: number, pairing: text,
  value, bound: number, share: number, ne: number, gain: number, males: sex_use, females: sex_use, unknown_genes: number,
  last: object({
    birth_time: number, animals: number, f: number, merit: number, relationship: number, generation_interval: number,
  }),
  matings,
  alternatives: list(object({ dam: number, sires: list(number), f: list(number) })),
  matrix: object({ sires: list(number), dams: list(number), f: list(number) }),
  rules: orNull(rules),
});

const candidates = columns({
  animal: number, rank: number, merit: number, max_matings: number, matings: number, offspring: number,
  relationship: number, to_chosen: number, to_others: number, mean_kinship: number,
  contribution_so_far: number, contribution_wanted: number, unknown_parent: flag,
  lack: oneOf("chosen", "merit", "relationship", "both", "nothing", "not_known"),
  lacking_value: number, lacking_merit: number,
});

const effective_size = object({
  rate: number, rate_se: number, ne: number, ne_low: number, ne_high: number,
  n: number, first: number, last: number, why_not: text,
});

const intervals = columns({ path: text, n: number, mean: number, se: number });

const population = object({
  animals: number, founders: number, living: number, living_by: text, living_since: number,
  mean_f: number, max_f: number,
  trend: columns({
    birth_time: number, birth: text, animals: number, males: number, females: number, sires: number, dams: number,
    inbred: number, mean_f: number, max_f: number, coancestry: number,
    completeness: number, generations: number, interval: number,
  }),
  by_inbreeding: effective_size, by_coancestry: effective_size,
  interval: number, intervals, recent_intervals: intervals, recent_since: number,
  founder_equivalents: number, founder_genomes: number,
  effective_ancestors: number, effective_ancestors_high: number,
  mean_kinship: number, gene_diversity: number, unknown_genes: number,
  founders_ranked: columns({ animal: number, contribution: number }),
  founders_cumulative: list(number),
  families: columns({ offspring: number, sires: number, dams: number }),
  ages: columns({
    birth_time: number, birth: text, males: number, females: number,
    candidate_males: number, candidate_females: number, chosen_males: number, chosen_females: number,
  }),
});

const search = object({
  rows: columns({
    generation: number, best: number, median: number, worst: number, mean: number, sd: number,
    merit: number, relationship: number, rate: number,
  }),
  found: number, ended: number, restarts: list(number),
});

const warnings = list(object({ kind: text, serious: flag, text, values: numbers, animals: list(number) }));

const making = object({
  program: text, time: text, run_program: text, run_started: text, prefix: text, seed: number,
  parameters: columns({ group: text, key: text, value: text }),
  files: columns({ role: text, name: text, sha256: text, bytes: number }),
});

const given = list(object({ file: text, matings: columns(mated), value, share: number, males: sex_use, females: sex_use, faults: list(text) }));

const result = object({
  format: oneOf("qob-result"), version: oneOf(1), title: text, has_names: flag, planned_birth_time: number,
  animals, plan: orNull(plan), candidates, population, search, warnings, making, given,
});

const comparison = object({ format: oneOf("qob-comparison"), version: oneOf(1), plans: list(result) });

export type Result = Read<typeof result>;
export type Comparison = Read<typeof comparison>;
export type Animal = Result["animals"][number];
export type Plan = NonNullable<Result["plan"]>;
export type PlanValue = Plan["value"];
export type SexUse = Plan["males"];
/** A mating of a given plan; one of the best plan tells what makes its F, too. */
export type Mated = Given["matings"][number];
export type Mating = Plan["matings"][number];
export type Rules = NonNullable<Plan["rules"]>;
export type Rule = Rules["list"][number];
export type Candidate = Result["candidates"][number];
export type Population = Result["population"];
export type EffectiveSize = Population["by_inbreeding"];
export type TrendRow = Population["trend"][number];
export type Search = Result["search"];
export type Warning = Result["warnings"][number];
export type Making = Result["making"];
export type Given = Result["given"][number];

/** The version of the data that this viewer shows. */
const VERSION = 1;

/** Reads the data of a page; throws Misshapen, OtherVersion or SyntaxError. */
export function read(json: string): Result | Comparison {
  const { format, data } = headed(json, VERSION, "qob-result", "qob-comparison");
  return format === "qob-result" ? result(data) : comparison(data);
}

/** The animal at a place; places are checked nowhere else. */
export function animal(result: Result, place: number): Animal {
  const found = result.animals[place];
  if (!found) throw new RangeError(`There is no animal ${place}.`);
  return found;
}

/** Matings that rules decide, not the search. */
export const decided = ({ rules, matings }: Plan): Set<Mated> => new Set((rules?.decided ?? []).flatMap((place) => matings[place] ?? []));

/** How an animal is called: its identifier, and its name when it has one. */
export function called({ id, name }: Animal): string {
  return name && name !== id ? `${id} ${name}` : id;
}
