// Why animals are no candidates.

import { COLOUR } from "../../../shared/plot.js";
import type { Animal, Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";

/** In the order in which the program asks; who has none of them and no matings was never one to choose. */
const REASONS = ["castrated", "no_matings", "not_alive", "no_birth", "age", "unknown_parent", "incomplete", ""] as const;

/** What becomes of an animal: a candidate, or why not. */
export type Fate = "candidate" | "age" | "birth" | "pedigree" | "other";

export const FATES: Record<Fate, string> = { candidate: COLOUR.green, age: COLOUR.blue, birth: COLOUR.purple, pedigree: COLOUR.orange, other: COLOUR.muted };

export function fateOf({ matings, left_out }: Animal): Fate {
  if (matings > 0) return "candidate";
  if (left_out === "age") return "age";
  if (left_out === "no_birth") return "birth";
  return left_out === "unknown_parent" || left_out === "incomplete" ? "pedigree" : "other";
}

export const reasonName = (reason: string): string => new Map(Object.entries(words.candidates.why)).get(reason) ?? reason;

/** Those that leave out any animal. */
export function reasonsOf({ animals }: Prepared): string[] {
  const there = new Set(animals.filter(({ matings }) => matings === 0).map(({ left_out }) => left_out));
  const known = REASONS.filter((reason) => there.has(reason));
  return [...known, ...[...there].filter((reason) => !(REASONS as readonly string[]).includes(reason))];
}
