// The matings as tables: all of them, and one sheet a sire for the barn.

import { h, type Child } from "../shared/dom.js";
import { digits, fixed } from "../shared/format.js";
import { holds, searchBox, table, type Column } from "../shared/table.js";
import * as words from "../shared/texts/matings.js";
import { openMating } from "./mating.js";
import { animal, called, type Mating, type Pair, type Plan, type Result } from "./model.js";

type Heading = readonly [title: string, note: string];
const column = (key: string, [title, note]: Heading, rest: Omit<Column<Pair>, "key" | "title" | "note">): Column<Pair> =>
  ({ key, title, note, ...rest });

const isMating = (pair: Pair): pair is Mating => "common" in pair;

/** The expected F; of a mating of the plan as a button that opens what makes it. */
function opener(result: Result, mating: Pair): Child {
  const f = fixed(mating.f * 100, 2);
  if (!isMating(mating)) return f;
  const pair = words.pair(called(animal(result, mating.sire)), called(animal(result, mating.dam)));
  return h("button", { type: "button", class: "open", "aria-label": words.opens(f, pair), onclick: () => openMating(result, mating) }, f);
}

export type Merits = ReadonlyMap<number, number>;

/** Merits of the candidates by their place among the animals. */
export const meritsOf = (result: Result): Merits => new Map(result.candidates.map((each) => [each.animal, each.merit]));

function parentColumns(result: Result, of: "sire" | "dam", merits: Merits): Column<Pair>[] {
  const who = (mating: Pair) => animal(result, mating[of]);
  const heading = words.parentColumn(of);
  const names = result.animals.some(({ name }) => name !== "");
  const name = column(`${of}_name`, of === "sire" ? words.SIRE_NAME : words.DAM_NAME, { value: (row) => who(row).name });
  return [
    column(of, of === "sire" ? words.SIRE : words.DAM, { value: (row) => who(row).id }),
    ...(names ? [name] : []),
    column(`${of}_merit`, heading.merit, { value: (row) => merits.get(row[of]) ?? NaN, decimals: 3 }),
    column(`${of}_f`, heading.f, { value: (row) => who(row).f, percent: true }),
    column(`${of}_completeness`, heading.completeness, { value: (row) => who(row).completeness, percent: true, decimals: 0 }),
  ];
}

function offspringColumns(result: Result): Column<Pair>[] {
  return [
    column("merit", words.OFFSPRING_MERIT, { value: (row) => row.merit, decimals: 3 }),
    column("f", words.OFFSPRING_F, { value: (row) => row.f, show: (row) => opener(result, row) }),
    column("vf", words.OFFSPRING_VF, { value: (row) => row.vf, decimals: 3 }),
  ];
}

/** For each chosen female the other males, in words. */
function othersColumn(result: Result, plan: Plan, wrap: boolean): Column<Pair> {
  const others = new Map(plan.alternatives.map(({ dam, sires, f }) =>
    [dam, sires.map((sire, i) => words.other(called(animal(result, sire)), f[i] ?? NaN)).join(", ")]));
  return column("other_males", words.OTHERS, { value: (row) => others.get(row.dam) ?? words.NO_OTHER, wrap });
}

/** All matings, sortable and searchable. */
export function matingsTable(result: Result, matings: readonly Pair[], file: string, plan?: Plan): HTMLElement {
  const merits = meritsOf(result);
  const columns = [
    ...parentColumns(result, "sire", merits), ...parentColumns(result, "dam", merits),
    ...offspringColumns(result), ...(plan ? [othersColumn(result, plan, false)] : []),
  ];
  return table(columns, matings, { caption: words.ALL_CAPTION, file });
}

const FEW_SIRES = 6;

/** A sheet for each sire: open when they are few, and all of them on paper. */
export function sheets(result: Result, plan: Plan): HTMLElement {
  const merits = meritsOf(result);
  const bySire = new Map<number, Mating[]>();
  for (const mating of plan.matings) bySire.set(mating.sire, [...(bySire.get(mating.sire) ?? []), mating]);
  const columns = [...offspringFirst(result, merits), othersColumn(result, plan, true)];
  const all = [...bySire].map(([sire, matings]) => sheet(result, sire, matings, columns, merits));
  const open = (now: boolean) => () => all.forEach((each) => each.open(now));
  if (all.length <= FEW_SIRES) open(true)();
  printedOpen(all);
  const button = (text: string, now: boolean): Child => h("button", { type: "button", class: "plainbutton", onclick: open(now) }, text);
  const search = searchBox(words.BY_SIRE, (wanted) => sought(all, wanted));
  const tools = h("div", { class: "tools" }, search, button(words.OPEN_ALL, true), button(words.CLOSE_ALL, false));
  return h("div", { class: "sheets" }, tools, all.map(({ element }) => element));
}

/** A sheet, the words that it holds, and what opens or closes it. */
interface Sheet {
  element: HTMLDetailsElement;
  text: string;
  open: (now: boolean) => void;
}

/** Shows the sheets in which the wanted words stand, opened. */
function sought(sheets: readonly Sheet[], wanted: string): void {
  for (const { element, text, open } of sheets) {
    element.hidden = !holds(text, wanted);
    if (wanted && !element.hidden) open(true);
  }
}

function offspringFirst(result: Result, merits: Merits): Column<Pair>[] {
  return [...parentColumns(result, "dam", merits), ...offspringColumns(result)];
}

/** The table of a sheet is made when it is first opened: there may be hundreds. */
function sheet(result: Result, sire: number, matings: Mating[], columns: Column<Pair>[], merits: Merits): Sheet {
  const male = animal(result, sire);
  const about = words.parent(digits(merits.get(sire) ?? NaN), male.f, male.completeness);
  const heading = h("summary", {}, h("h3", {}, called(male)), h("span", { class: "number" }, words.sheet(matings.length)), h("span", { class: "about" }, about));
  const element = h("details", { class: "sheet" }, heading);
  const make = () => {
    if (element.childElementCount === 1) element.append(table(columns, matings, { caption: words.females(called(male)), search: false }));
  };
  element.addEventListener("toggle", () => element.open && make());
  const text = [called(male), ...matings.map(({ dam }) => called(animal(result, dam)))].join(" ");
  const open = (now: boolean) => {
    if (now) make();
    element.open = now;
  };
  return { element, text, open };
}

function printedOpen(sheets: readonly Sheet[]): void {
  let before: boolean[] = [];
  addEventListener("beforeprint", () => {
    before = sheets.map(({ element }) => element.open);
    for (const { open } of sheets) open(true);
  });
  addEventListener("afterprint", () => sheets.forEach(({ open }, i) => open(before[i] ?? true)));
}
