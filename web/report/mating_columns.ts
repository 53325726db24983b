// The columns of a table of matings: who is mated, what is expected of the offspring, what the parents are
// worth, and which other males a female could have.

import { h } from "../shared/dom.js";
import { fixed } from "../shared/format.js";
import type { Column } from "../shared/table.js";
import { matings as words } from "../shared/texts/language.js";
import { meritDecimals } from "./candidates.js";
import { openMating } from "./mating.js";
import { animal, called, decided, type Mated, type Mating, type Plan, type Result } from "./model.js";
import { inBrief, naming, type Naming } from "./naming.js";

type Heading = readonly [title: string, note: string];
const column = (key: string, [title, note]: Heading, rest: Omit<Column<Mated>, "key" | "title" | "note">): Column<Mated> =>
  ({ key, title, note, ...rest });

const isPlanned = (mating: Mated): mating is Mating => "common" in mating;

/** The expected F as a button that opens what makes it. */
function opener(result: Result, mating: Mating): HTMLElement {
  const f = fixed(mating.f * 100, 2);
  const pair = words.pair(called(animal(result, mating.sire)), called(animal(result, mating.dam)));
  return h("button", { type: "button", class: "open", "aria-label": words.opens(f, pair), onclick: () => openMating(result, mating) }, f);
}

type Merits = ReadonlyMap<number, number>;

/** Merits of the candidates by their place among the animals. */
const meritsOf = (result: Result): Merits => new Map(result.candidates.map((each) => [each.animal, each.merit]));

/** How a table shows the plan: merits of the parents, their names and the length of the longest. */
export interface Shown { result: Result; merits: Merits; names: Naming; decimals: number; longest: number }

export const shownOf = (result: Result): Shown =>
  ({ result, merits: meritsOf(result), names: naming(result), decimals: meritDecimals(result.candidates), longest: longestName(result) });

const longestName = ({ animals }: Result) => animals.reduce((most, { name }) => Math.max(most, name.length), 0);
const ONE_LINE = 24;  // characters of a name

type Parent = "sire" | "dam";

/** Who a parent is. */
export function whoColumns({ result, names, longest }: Shown, of: Parent): Column<Mated>[] {
  const who = (mating: Mated) => animal(result, mating[of]);
  const id = column(of, of === "sire" ? words.SIRE : words.DAM, { value: (row) => who(row).id, show: (row) => names.id(who(row)) });
  const name = column(`${of}_name`, of === "sire" ? words.SIRE_NAME : words.DAM_NAME, { value: (row) => who(row).name, wrap: longest > ONE_LINE });
  return longest > 0 ? [id, name] : [id];
}

/** What a parent is worth. */
export function parentColumns({ result, merits, decimals }: Shown, of: Parent): Column<Mated>[] {
  const heading = words.parentColumn(of);
  return [
    column(`${of}_merit`, heading.merit, { value: (row) => merits.get(row[of]) ?? NaN, decimals }),
    column(`${of}_f`, heading.f, { value: (row) => animal(result, row[of]).f, percent: true }),
    column(`${of}_completeness`, heading.completeness, { value: (row) => animal(result, row[of]).completeness, percent: true, decimals: 0 }),
  ];
}

export function offspringColumns({ result, decimals }: Shown): Column<Mated>[] {
  return [
    column("f", words.OFFSPRING_F, { value: (row) => row.f, show: (row) => (isPlanned(row) ? opener(result, row) : fixed(row.f * 100, 2)) }),
    column("merit", words.OFFSPRING_MERIT, { value: (row) => row.merit, decimals }),
  ];
}

export const varianceColumn = (): Column<Mated> => column("vf", words.OFFSPRING_VF, { value: (row) => row.vf, decimals: 3 });

/** Whether a rule decided the mating, where any did. */
export function decidedColumn(plan: Plan): Column<Mated>[] {
  const all = decided(plan);
  return all.size === 0 ? [] : [column("decided", words.DECIDED, { value: (row) => (all.has(row) ? words.YES : words.NO), show: (row) => (all.has(row) ? words.YES : null) })];
}

/** For each chosen female the other males: told in full to the saved file and to the search, shown in brief. */
export function othersColumn({ result, names }: Shown, plan: Plan, wrap: boolean): Column<Mated> {
  const others = new Map(plan.alternatives.map((each) => [each.dam, each.sires.map((sire, i) => [sire, each.f[i] ?? NaN] as const)]));
  const of = ({ dam }: Mated) => others.get(dam) ?? [];
  return column("other_males", words.OTHERS, {
    value: (row) => of(row).map(([sire, f]) => words.other(called(animal(result, sire)), f)).join(", ") || words.NO_OTHER,
    show: (row) => (of(row).length ? inBrief(result, names, of(row).map(([sire, f]) => [sire, fixed(f * 100, 2)])) : words.NO_OTHER),
    wrap,
  });
}
