// How the search went, and whether it looks finished.

import * as Plot from "@observablehq/plot";
import { facts, h } from "../shared/dom.js";
import { count, digits, percent } from "../shared/format.js";
import { key } from "../shared/key.js";
import { COLOUR, draw, figure, type Picture } from "../shared/plot.js";
import { search as words } from "../shared/texts/language.js";
import type { Result, Search } from "./model.js";
import { part } from "./outline.js";

type Row = Search["rows"][number];

export function section(result: Result): HTMLElement {
  const { search } = result;
  const { found, ended, restarts } = search;
  const best = bestOf(search);
  const shown = verdict(result);
  return part("search", words.title,
    h("p", {}, words.intro),
    h("p", {}, h("strong", {}, shown.title), " ", shown.text),
    facts(
      [words.facts.generations, count(ended)],
      [words.facts.found, count(found)],
      [words.facts.since, count(ended - found)],
      [words.facts.restarts, count(restarts.length)],
      [words.facts.value, digits(best, 5)]),
    search.rows.length > 1 && h("div", { class: "pictures" }, improvement(search), spread(search)));
}

function improvement(search: Search): HTMLElement {
  const { title, description } = words.best;
  return figure({
    title, description: description(digits(bestOf(search), 4), count(search.found)),
    plot: (width) => drawn(width, search, ["best"], lowest(search.rows, "best", 0)),
    table: numbers(search.rows),
  });
}

function spread(search: Search): HTMLElement {
  const { title, description, restarts } = words.all;
  return figure({
    title, description: description + (search.restarts.length ? restarts(search.restarts.map(count).join(", ")) : ""),
    plot: (width) => h("div", {}, legend(), drawn(width, search, ["worst", "median", "best"], lowest(search.rows, "worst", 0.25))),
  });
}

type Line = "best" | "median" | "worst";

const bestOf = ({ rows }: Search) => rows.reduce((most, { best }) => Math.max(most, best), -Infinity);

/** A search that found nothing in this last share of its time is taken as finished. */
const QUIET = 0.25;

/** The files tell every generation with a better plan and every one that this number divides. */
const TOLD_EVERY = 100;

function verdict({ search, making }: Result): { title: string; text: string } {
  const { found, ended } = search;
  const parameter = (name: string) => Number(making.parameters.find(({ key }) => key.toLowerCase() === name)?.value ?? NaN);
  const since = ended - found;
  const by_itself = ended + TOLD_EVERY < parameter("generations");
  const said = by_itself ? words.verdict.stopped(count(parameter("ngenerationsnoimprovement")))
    : since >= QUIET * ended ? words.verdict.quiet(count(since), percent(since / ended, 0))
    : words.verdict.restless(count(found), count(ended));
  const late = lateShare(search);
  return { title: said.title, text: late > 0 ? `${said.text} ${words.verdict.late(percent(late))}` : said.text };
}

/** The share of all improvement of the best plan that came in the second half. */
function lateShare(search: Search): number {
  const first = search.rows[0];
  const half = search.rows.filter(({ generation }) => generation <= search.ended / 2).pop();
  return first && half ? (bestOf(search) - half.best) / (bestOf(search) - first.best) : NaN;
}

const looks: Record<Line, { stroke: string; strokeWidth: number; strokeDasharray?: string; curve?: "step-after" }> = {
  best: { stroke: COLOUR.blue, strokeWidth: 2.5, curve: "step-after" },
  median: { stroke: COLOUR.orange, strokeWidth: 1.5, strokeDasharray: "6 3" },
  worst: { stroke: COLOUR.purple, strokeWidth: 1.5, strokeDasharray: "1 4" },
};

const legend = () => key(
  { name: words.picture.best, colour: looks.best.stroke, symbol: "line" },
  { name: words.picture.median, colour: looks.median.stroke, symbol: "dashes" },
  { name: words.picture.worst, colour: looks.worst.stroke, symbol: "dots" });

/** Where a scale begins: the values of the first generations, far below all others, are left out. */
function lowest(rows: readonly Row[], line: Line, share: number): number {
  const values = rows.map((row) => row[line]).sort((a, b) => a - b);
  return values[Math.floor(share * (values.length - 1))] ?? 0;
}

function drawn(width: number, search: Search, lines: readonly Line[], low: number): Element {
  const { rows, restarts, found } = search;
  const high = bestOf(search);
  const room = high > low ? 0.05 * (high - low) : Math.abs(high) * 0.01 || 1;
  const at = rows.filter(({ generation }) => generation <= found).pop();
  return draw({
    width, height: 300, marginLeft: 64, marginRight: 24, marginTop: 34, marginBottom: 42,
    x: { label: words.picture.generation, labelArrow: "right", tickFormat: count, ticks: width / 90 },
    y: { label: words.picture.axis, domain: [low - room, high + room], grid: true },
    marks: [
      Plot.ruleX(restarts, { stroke: COLOUR.muted, strokeDasharray: "4 4" }),
      lines.map((y) => Plot.lineY(rows, { x: "generation", y, ...looks[y], clip: true })),
      Plot.dot(at ? [at] : [], { x: "generation", y: "best", fill: COLOUR.blue, symbol: "diamond", r: 6 }),
      Plot.text(at ? [at] : [], { x: "generation", y: "best", text: () => words.picture.found, dy: 16, dx: 6, textAnchor: "start" }),
      Plot.tip(rows, Plot.pointerX({ x: "generation", y: "best", title: told })),
    ],
  });
}

function told({ generation, best, median, worst }: Row): string {
  const { picture } = words;
  return [
    `${picture.generation} ${count(generation)}`, `${picture.best}: ${digits(best, 6)}`,
    `${picture.median}: ${digits(median, 6)}`, `${picture.worst}: ${digits(worst, 6)}`,
  ].join("\n");
}

function numbers(rows: readonly Row[]): Picture<Row>["table"] {
  const keys = Object.keys(words.columns) as (keyof Row)[];
  const shown = (key: keyof Row) => (key === "generation" ? {} : key === "rate" ? { percent: true } : { show: (row: Row) => digits(row[key], 6) });
  return { rows, columns: keys.map((key) => ({ key, title: words.columns[key], value: (row: Row) => row[key], ...shown(key) })), file: "search.csv" };
}
