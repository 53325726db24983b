// How the search went, and whether it looks finished.

import * as Plot from "@observablehq/plot";
import { facts, h, part } from "../shared/dom.js";
import { count, digits, percent } from "../shared/format.js";
import { COLOUR, draw, figure, type Picture } from "../shared/plot.js";
import * as words from "../shared/texts/search.js";
import { key } from "./charts.js";
import type { Result, Search } from "./model.js";

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
    search.rows.length > 1 && figure({
      title: words.picture.title,
      description: words.picture.description(digits(best, 4), count(found)) + (restarts.length ? words.picture.restarts(restarts.map(count).join(", ")) : ""),
      plot: (width) => h("div", {}, legend(), drawn(width, search)),
      table: numbers(search.rows),
    }));
}

const bestOf = ({ rows }: Search) => rows.reduce((most, { best }) => Math.max(most, best), -Infinity);

/** A search that found nothing in this last share of its time is taken as finished. */
const QUIET = 0.25;

function verdict({ search, making }: Result): { title: string; text: string } {
  const { found, ended } = search;
  const patience = Number(making.parameters.find(({ key }) => key.toLowerCase() === "ngenerationsnoimprovement")?.value);
  const since = ended - found;
  const late = lateShare(search);
  const said = since >= patience ? words.verdict.stopped(count(since))
    : since >= QUIET * ended ? words.verdict.quiet(count(since), percent(since / ended, 0))
    : words.verdict.restless(count(found), count(ended));
  return { title: said.title, text: Number.isFinite(late) ? `${said.text} ${words.verdict.late(percent(late))}` : said.text };
}

/** The share of all improvement of the best plan that came in the second half. */
function lateShare(search: Search): number {
  const first = search.rows[0];
  const half = search.rows.filter(({ generation }) => generation <= search.ended / 2).pop();
  return first && half ? (bestOf(search) - half.best) / (bestOf(search) - first.best) : NaN;
}

const legend = () => key(
  { name: words.picture.best, colour: COLOUR.blue, symbol: "line" },
  { name: words.picture.median, colour: COLOUR.orange, symbol: "dashes" },
  { name: words.picture.worst, colour: COLOUR.purple, symbol: "dots" });

/** The scale is that of the best plan: the worst of the first generations are far below. */
function scale(search: Search): [number, number] {
  const low = search.rows.reduce((least, { best }) => Math.min(least, best), Infinity);
  const high = bestOf(search);
  const room = high > low ? 0.05 * (high - low) : Math.abs(high) * 0.01 || 1;
  return [low - room, high + room];
}

function drawn(width: number, search: Search): Element {
  const { rows, restarts, found } = search;
  const domain = scale(search);
  const line = (y: "best" | "median" | "worst", stroke: string, strokeWidth: number, strokeDasharray?: string) =>
    Plot.lineY(rows, { x: "generation", y, stroke, strokeWidth, strokeDasharray, clip: true });
  const at = rows.filter(({ generation }) => generation <= found).pop();
  return draw({
    width, height: 320, marginLeft: 64, marginRight: 24, marginTop: 34, marginBottom: 42,
    x: { label: words.picture.generation, labelArrow: "right", tickFormat: count, ticks: width / 90 },
    y: { label: words.picture.axis, domain, grid: true },
    marks: [
      Plot.ruleX(restarts, { stroke: COLOUR.muted, strokeDasharray: "4 4" }),
      line("worst", COLOUR.purple, 1.5, "1 4"), line("median", COLOUR.orange, 1.5, "6 3"), line("best", COLOUR.blue, 2.5),
      at ? Plot.dot([at], { x: "generation", y: "best", fill: COLOUR.blue, symbol: "diamond", r: 6 }) : [],
      at ? Plot.text([at], { x: "generation", y: "best", text: () => words.picture.found, dy: 16 }) : [],
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
