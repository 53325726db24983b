// The data of the page as the program writes them; types follow from the shapes. Null numbers are read
// as NaN. Animals are identified as in the data file, most often by numbers.

import { flag, headed, list, named, number, object, oneOf, optional, orNull, text, tuple, type Read, type Shape } from "../shared/shape.js";
import { say } from "./say.js";

const identifier: Shape<string> = (value) => (typeof value === "number" ? String(value) : text(value));

const place = { scaled_merit: number, relationship: number, rate: number, effective_size: number, degrees: number };

const plan = object({
  ...place,
  folder: text, how: oneOf("greedy", "exchanges", "search"), weight: number, constraint: number, seed: number, own: flag,
  target: orNull(object({ kind: oneOf("rate", "ne", "degrees"), value: number })),
  merit: number, inbreeding: number, males: number, females: number, bound: number, share: number, seconds: number,
  keeps_constraint: orNull(flag),
  matings: list(tuple(identifier, identifier, number)),
});

const frontier = object({
  made: object({ program: text, time: text, parameter_file: text, data_file: text }),
  herd: object({
    name: text, candidates: number, males: number, females: number, matings: number, unit: number,
    last_relationship: number, last_inbreeding: number, last_animals: number, last_is_unfinished: flag, generation_interval: number, time_step: number,
  }),
  curve: orNull(list(object({ weight: number, ...place }))),
  plans: list(plan), names: optional(named(text), new Map()), marked: number,
});

export type Frontier = Read<typeof frontier>;
export type Plan = Frontier["plans"][number];
/** A place on the curve of the best possible. */
export type Vertex = NonNullable<Frontier["curve"]>[number];

const VERSION = 1;

/** Reads the data of a page; throws Misshapen, OtherVersion or SyntaxError. */
export const read = (json: string): Frontier => frontier(headed(json, VERSION, "qob-frontier").data);

/** How a plan is called by what was asked for: "weight −20, seed 1". */
export function called({ own, target, weight, constraint, seed }: Plan): string {
  const { asked } = say;
  const goal = target ? asked.target[target.kind](target.value)
    : own ? asked.own
    : Number.isFinite(constraint) ? asked.constraint(constraint)
    : Number.isFinite(weight) ? asked.weight(weight) : asked.merit;
  return Number.isNaN(seed) ? goal : asked.seed(goal, seed);
}
