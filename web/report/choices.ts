// Which animals each of several plans chose. Animals are the same where their identifiers are.

import { called, type Animal, type Comparison, type Plan, type Result } from "./model.js";
import { candidates, type Row } from "./candidates.js";
import * as words from "../shared/texts/compare.js";

/** A result that holds a plan, with the letter that it is called by. */
export interface Planned { letter: string; result: Result; plan: Plan; rows: readonly Row[] }

export function planned({ plans }: Comparison): Planned[] {
  return plans.flatMap((result, i) => {
    const letter = words.letters[i] ?? String(i + 1);
    return result.plan ? [{ letter, result, plan: result.plan, rows: candidates(result) }] : [];
  });
}

/** An animal that any plan chose: its matings in each, and itself as a candidate in each. */
export interface Choice { of: Animal; name: string; merit: number; matings: number[]; rows: (Row | undefined)[]; in: string }

export function choices(plans: readonly Planned[]): Choice[] {
  const known = plans.map(({ rows }) => new Map(rows.map((row) => [row.of.id, row])));
  const ids = new Set(plans.flatMap(({ rows }) => rows.filter(({ matings }) => matings > 0).map(({ of }) => of.id)));
  const all = [...ids].map((id): Choice => {
    const rows = known.map((map) => map.get(id));
    const first = rows.find((row) => row !== undefined)!;
    const matings = rows.map((row) => row?.matings ?? 0);
    const within = plans.filter((_, i) => matings[i]! > 0).map(({ letter }) => letter).join("");
    return { of: first.of, name: called(first.of), merit: first.merit, matings, rows, in: within };
  });
  return all.sort((a, b) => sum(b.matings) - sum(a.matings) || b.merit - a.merit);
}

export const sum = (values: readonly number[]) => values.reduce((total, value) => total + value, 0);
