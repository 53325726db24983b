// The matings as tables: all of them, and one sheet a sire for the barn.

import { h, type Child } from "../shared/dom.js";
import { digits } from "../shared/format.js";
import { holds, searchBox, table, type Column } from "../shared/table.js";
import { matings as words } from "../shared/texts/language.js";
import { decidedColumn, offspringColumns, othersColumn, parentColumns, shownOf, varianceColumn, whoColumns, type Shown } from "./mating_columns.js";
import { animal, called, type Mated, type Mating, type Plan, type Result } from "./model.js";
import { heading } from "./outline.js";

/** All matings, sortable and searchable. */
export function matingsTable(result: Result, matings: readonly Mated[], file: string, plan?: Plan): HTMLElement {
  const shown = shownOf(result);
  const columns = [
    ...whoColumns(shown, "sire"), ...whoColumns(shown, "dam"), ...(plan ? decidedColumn(plan) : []), ...offspringColumns(shown),
    ...parentColumns(shown, "sire"), ...parentColumns(shown, "dam"), varianceColumn(), ...(plan ? [othersColumn(shown, plan, true)] : []),
  ];
  return table(columns, matings, { caption: words.ALL_CAPTION, file });
}

const FEW_SIRES = 6;

/** A sheet for each sire: open when they are few, and all of them on paper. */
export function sheets(result: Result, plan: Plan): HTMLElement {
  const shown = shownOf(result);
  const bySire = new Map<number, Mating[]>();
  for (const mating of plan.matings) bySire.set(mating.sire, [...(bySire.get(mating.sire) ?? []), mating]);
  const columns = [...whoColumns(shown, "dam"), ...decidedColumn(plan), ...offspringColumns(shown), ...parentColumns(shown, "dam"), varianceColumn(), othersColumn(shown, plan, true)];
  const all = [...bySire].map(([sire, matings]) => sheet(shown, sire, matings, columns));
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

/** The table of a sheet is made when it is first opened: there may be hundreds. */
function sheet({ result, merits, names }: Shown, sire: number, matings: Mating[], columns: Column<Mated>[]): Sheet {
  const male = animal(result, sire);
  const about = words.parent(digits(merits.get(sire) ?? NaN), male.f, male.completeness);
  const name = male.name && male.name !== male.id ? ` ${male.name}` : null;
  const line = h("summary", {}, heading(names.id(male), name), h("span", { class: "number" }, words.sheet(matings.length)), h("span", { class: "about" }, about));
  const element = h("details", { class: "sheet" }, line);
  const make = () => {
    if (element.childElementCount === 1) element.append(table(columns, matings, { caption: words.females(called(male)), repeated: true, search: false }));
  };
  element.addEventListener("toggle", () => element.open && make());
  const text = [called(male), ...matings.map(({ dam }) => called(animal(result, dam)))].join(" ");
  const open = (now: boolean) => {
    if (now) make();
    element.open = now;
  };
  return { element, text, open };
}

/** Those of a report in whose place another one has come are not printed. */
function printedOpen(sheets: readonly Sheet[]): void {
  let printed: (readonly [sheet: Sheet, before: boolean])[] = [];
  addEventListener("beforeprint", () => {
    printed = sheets.filter(({ element }) => element.isConnected).map((sheet) => [sheet, sheet.element.open]);
    for (const [{ open }] of printed) open(true);
  });
  addEventListener("afterprint", () => printed.forEach(([{ open }, before]) => open(before)));
}
