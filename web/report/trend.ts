// How inbreeding, relationship, completeness and numbers went by birth time.

import * as Plot from "@observablehq/plot";
import { h, type Child } from "../shared/dom.js";
import { count, fixed, NONE, percent } from "../shared/format.js";
import { COLOUR, FEMALE, figure, MALE, type Picture } from "../shared/plot.js";
import type { Column } from "../shared/table.js";
import { population as words } from "../shared/texts/language.js";
import { inWords } from "./births.js";
import { columns, lines, type Axes, type Series } from "./charts.js";
import type { Result, TrendRow } from "./model.js";
import { group } from "./outline.js";

export function section(result: Result): HTMLElement {
  const { title, none } = words.trend;
  const { trend } = result.population;
  const to = lastFinished(result);
  return group(title, to ? pictures(f(trend, to), largest(trend), completeness(trend, to), generations(trend, to)) : h("p", {}, none));
}

/** The last birth time from which a sentence can be made: not one of which most animals are still to come. */
function lastFinished({ warnings, population: { trend } }: Result): TrendRow | undefined {
  return trend[trend.length - (warnings.some(({ kind }) => kind === "unfinished_last_time") ? 2 : 1)];
}

/** How many were born, and of how many parents. */
export function births({ population: { trend } }: Result): Child {
  return trend.length > 0 && group(words.births.title, pictures(born(trend), parents(trend)));
}

const pictures = (...all: HTMLElement[]) => h("div", { class: "pictures" }, all);
const share = (value: number) => (Number.isFinite(value) ? `${fixed(value, 2)} %` : NONE);

function axes(width: number, y_label: string, say: (value: number) => string): Axes<TrendRow> {
  return { width, x: ({ birth_time }) => birth_time, called: ({ birth }) => birth, x_label: words.trend.birth, y_label, say };
}

function f(trend: readonly TrendRow[], to: TrendRow): HTMLElement {
  const { title, description, mean, coancestry, axis } = words.trend.f;
  const from = trend.find(({ mean_f }) => Number.isFinite(mean_f)) ?? to;
  const series: Series<TrendRow>[] = [
    { name: mean, colour: COLOUR.blue, value: (row) => row.mean_f * 100, symbol: "circle" },
    { name: coancestry, colour: COLOUR.orange, value: (row) => row.coancestry * 100, dash: "6 3", symbol: "triangle" },
  ];
  return figure({
    title,
    description: highest(trend, ({ max_f }) => max_f)?.max_f === 0 ? words.trend.max.none : description(inWords(from.birth), inWords(to.birth), percent(from.mean_f), percent(to.mean_f)),
    plot: (width) => lines(trend, series, axes(width, axis, share)),
    table: numbers(trend),
  });
}

function largest(trend: readonly TrendRow[]): HTMLElement {
  const { title, description, none, max, axis, full_sibs } = words.trend.max;
  const most = highest(trend, ({ max_f }) => max_f);
  const series = [{ name: max, colour: COLOUR.purple, value: (row: TrendRow) => row.max_f * 100, symbol: "diamond" as const }];
  const limit = [
    Plot.ruleY([25], { stroke: COLOUR.muted, strokeDasharray: "2 3" }),
    Plot.text([25], {
      y: (y) => y, text: () => full_sibs, frameAnchor: "left", textAnchor: "start", dy: -9, dx: 4, stroke: "var(--card)", strokeWidth: 5, fill: COLOUR.text,
    }),
  ];
  return figure({
    title,
    description: most && most.max_f > 0 ? description(percent(most.max_f, 1), inWords(most.birth)) : none,
    plot: (width) => lines(trend, series, axes(width, axis, share), most && most.max_f > 0.1 ? limit : []),
  });
}

function completeness(trend: readonly TrendRow[], to: TrendRow): HTMLElement {
  const { title, description, line, axis } = words.trend.completeness;
  const series = [{ name: line, colour: COLOUR.green, value: (row: TrendRow) => row.completeness * 100, symbol: "square" as const }];
  return figure({
    title,
    description: description(percent(to.completeness, 0), inWords(to.birth)),
    plot: (width) => lines(trend, series, axes(width, axis, share)),
  });
}

function generations(trend: readonly TrendRow[], to: TrendRow): HTMLElement {
  const { title, description, line, axis } = words.trend.generations;
  const say = (value: number) => fixed(value, 2);
  const series = [{ name: line, colour: COLOUR.green, value: (row: TrendRow) => row.generations, symbol: "square" as const }];
  return figure({
    title,
    description: description(say(to.generations), inWords(to.birth)),
    plot: (width) => lines(trend, series, axes(width, axis, say)),
  });
}

function born(trend: readonly TrendRow[]): HTMLElement {
  const { title, description, axis, males, females, unknown } = words.births.animals;
  const most = highest(trend, ({ animals }) => animals);
  const series: Series<TrendRow>[] = [
    { name: females, colour: FEMALE, value: (row) => row.females },
    { name: males, colour: MALE, value: (row) => row.males },
  ];
  const neither = (row: TrendRow) => row.animals - row.males - row.females;
  if (trend.some((row) => neither(row) > 0)) series.push({ name: unknown, colour: COLOUR.muted, value: neither });
  return figure({
    title,
    description: most ? description(count(most.animals), inWords(most.birth)) : "",
    plot: (width) => columns(trend, series, axes(width, axis, count)),
  });
}

function parents(trend: readonly TrendRow[]): HTMLElement {
  const { title, description, axis, sires, dams } = words.births.parents;
  const series: Series<TrendRow>[] = [
    { name: dams, colour: FEMALE, value: (row) => row.dams, symbol: "circle", dash: "6 3" },
    { name: sires, colour: MALE, value: (row) => row.sires, symbol: "square" },
  ];
  return figure({ title, description, plot: (width) => lines(trend, series, axes(width, axis, count)) });
}

function highest(trend: readonly TrendRow[], value: (row: TrendRow) => number): TrendRow | undefined {
  return trend.reduce<TrendRow | undefined>((most, row) => (value(row) > (most ? value(most) : -Infinity) ? row : most), undefined);
}

function numbers(rows: readonly TrendRow[]): Picture<TrendRow>["table"] {
  const titles = words.trend.columns;
  const column = (key: Exclude<keyof typeof titles, "birth">, more: Partial<Column<TrendRow>> = {}): Column<TrendRow> => ({
    key, title: titles[key], value: (row) => row[key], ...more,
  });
  return {
    rows, file: "trend.csv",
    columns: [
      { key: "birth", title: titles.birth, value: ({ birth }) => birth },
      column("animals"), column("males"), column("females"), column("sires"), column("dams"), column("inbred"),
      column("mean_f", { percent: true }), column("max_f", { percent: true }), column("coancestry", { percent: true }),
      column("completeness", { percent: true }), column("generations", { decimals: 2 }), column("interval", { decimals: 2 }),
    ],
  };
}
