// The generation interval by the four paths, of all times and of late.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { fixed } from "../shared/format.js";
import { key } from "../shared/key.js";
import { COLOUR, draw, figure } from "../shared/plot.js";
import { population as words } from "../shared/texts/language.js";
import { birthOf, inWords } from "./births.js";
import type { Result } from "./model.js";
import { group } from "./outline.js";

type Path = Result["population"]["intervals"][number];

/** A path of all times and the same of late. */
interface Both { path: string; all: Path; recent: Path | undefined }

export function section(result: Result): HTMLElement {
  const { interval, intervals, recent_intervals, recent_since } = result.population;
  const text = words.intervals;
  const paths: Both[] = intervals.map((all) => ({
    path: text.paths[all.path] ?? all.path, all, recent: recent_intervals.find(({ path }) => path === all.path),
  }));
  if (!paths.some(({ all }) => Number.isFinite(all.mean))) return group(text.title, h("p", {}, text.none));
  const since = inWords(birthOf(result)(recent_since));
  return group(text.title,
    h("p", {}, text.intro(fixed(interval, 2))),
    figure({
      title: text.figure.title, description: text.figure.description(since),
      plot: (width) => h("div", {}, legend(since), drawn(width, paths)),
      table: { rows: paths, columns: columns(), file: "intervals.csv" },
      note: text.source,
    }));
}

function legend(since: string): HTMLElement {
  const { all, recent } = words.intervals.figure;
  return key(
    { name: all, colour: COLOUR.blue, symbol: "circle" },
    { name: recent(since), colour: COLOUR.orange, symbol: "hollow_square" });
}

function drawn(width: number, paths: readonly Both[]): Element {
  const recent = paths.flatMap(({ path, recent }) => (recent && Number.isFinite(recent.mean) ? [{ ...recent, path }] : []));
  const all = paths.filter(({ all }) => Number.isFinite(all.mean)).map(({ path, all }) => ({ ...all, path }));
  const error = (dy: number, stroke: string) => ({
    x1: ({ mean, se }: Path) => mean - (se || 0), x2: ({ mean, se }: Path) => mean + (se || 0), y: "path", stroke, strokeWidth: 2, dy,
  });
  const label = (dy: number) => ({
    x: ({ mean, se }: Path) => mean + (se || 0), y: "path", text: ({ mean }: Path) => fixed(mean, 2), dy, dx: 9, textAnchor: "start" as const,
  });
  return draw({
    width, height: 60 + 44 * paths.length, marginLeft: 112, marginRight: 44, marginBottom: 40,
    x: { label: words.intervals.figure.axis, labelArrow: "right", grid: true, zero: true, nice: true },
    y: { type: "band", label: null, domain: paths.map(({ path }) => path), tickSize: 0 },
    marks: [
      Plot.ruleY(all, error(-8, COLOUR.blue)),
      Plot.dot(all, { x: "mean", y: "path", fill: COLOUR.blue, r: 5, dy: -8 }),
      Plot.text(all, label(-8)),
      Plot.ruleY(recent, error(8, COLOUR.orange)),
      Plot.dot(recent, { x: "mean", y: "path", stroke: COLOUR.orange, fill: "var(--card)", strokeWidth: 2, symbol: "square", r: 5, dy: 8 }),
      Plot.text(recent, label(8)),
    ],
  });
}

function columns() {
  const { columns: titles } = words.intervals;
  return [
    { key: "path", title: titles.path, value: ({ path }: Both) => path },
    { key: "n", title: titles.n, value: ({ all }: Both) => all.n },
    { key: "mean", title: titles.mean, value: ({ all }: Both) => all.mean, decimals: 2 },
    { key: "se", title: titles.se, value: ({ all }: Both) => all.se, decimals: 3 },
    { key: "recent_n", title: titles.recent_n, value: ({ recent }: Both) => recent?.n ?? NaN },
    { key: "recent_mean", title: titles.recent_mean, value: ({ recent }: Both) => recent?.mean ?? NaN, decimals: 2 },
    { key: "recent_se", title: titles.recent_se, value: ({ recent }: Both) => recent?.se ?? NaN, decimals: 3 },
  ];
}
