// Pictures of plans side by side: the chosen of each by merit and relationship, and the males' matings.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { count } from "../shared/format.js";
import { key } from "../shared/key.js";
import { COLOUR, draw, FEMALE, figure, MALE } from "../shared/plot.js";
import * as words from "../shared/texts/compare.js";
import { meritDecimals, told, type Row } from "./candidates.js";
import type { Choice, Planned } from "./choices.js";

interface Point { plan: string; row: Row; x: number; y: number }
interface Mean { plan: string; x: number; y: number }

export function merits(plans: readonly Planned[]): HTMLElement {
  const points = plans.flatMap(({ letter, rows }) =>
    rows.filter(({ matings }) => matings > 0).map((row): Point => ({ plan: letter, row, x: row.to_others * 100, y: row.merit })));
  const means = plans.map(({ letter }) => mean(letter, points.filter(({ plan }) => plan === letter)));
  const { title, description, male, female, mean: mean_name } = words.choice;
  const legend = () => key(
    { name: male, colour: MALE, symbol: "square" }, { name: female, colour: FEMALE, symbol: "circle" },
    { name: mean_name, colour: COLOUR.text, symbol: "cross" });
  return figure({
    title, description: description(plans.map(({ letter }) => letter).join(", ")),
    plot: (width) => h("div", {}, legend(), drawn(width, points, means)),
  });
}

function mean(plan: string, points: readonly Point[]): Mean {
  const weights = points.reduce((sum, { row }) => sum + row.matings, 0);
  const average = (value: (point: Point) => number) => points.reduce((sum, point) => sum + value(point) * point.row.matings, 0) / weights;
  return { plan, x: average(({ x }) => x), y: average(({ y }) => y) };
}

/** Beside one another where there is room, below one another on a telephone. */
function drawn(width: number, points: readonly Point[], means: readonly Mean[]): Element {
  const side = width >= 600;
  const facet = side ? { fx: "plan" } : { fy: "plan" };
  const most = points.reduce((most, { row }) => Math.max(most, row.matings), 1);
  const decimals = meritDecimals(points.map(({ row }) => row));
  return draw({
    width, height: side ? 380 : 90 + 260 * means.length,
    marginLeft: 52, marginTop: side ? 48 : 30, marginRight: side ? 20 : 34, marginBottom: 42, inset: 6,
    fx: { label: null, tickFormat: words.plan }, fy: { label: null },
    x: { label: words.choice.x, labelArrow: "none", labelAnchor: "right", ticks: 5, nice: true },
    y: { label: words.choice.merit, labelArrow: "none", grid: true, nice: true },
    r: { type: "identity" }, symbol: { type: "identity" }, color: { type: "identity" },
    marks: [
      Plot.frame({ stroke: COLOUR.rule }),
      Plot.dot(points, {
        ...facet, x: "x", y: "y", r: ({ row }: Point) => Math.max(3, 10 * Math.sqrt(row.matings / most)),
        symbol: ({ row }: Point) => (row.of.sex === 1 ? "square" : "circle"),
        fill: ({ row }: Point) => (row.of.sex === 1 ? MALE : FEMALE), stroke: "var(--card)", sort: { channel: "-r" },
      }),
      Plot.dot(means, { ...facet, x: "x", y: "y", symbol: "times", stroke: "var(--card)", strokeWidth: 6, r: 8 }),
      Plot.dot(means, { ...facet, x: "x", y: "y", symbol: "times", stroke: COLOUR.text, strokeWidth: 2.5, r: 8 }),
      Plot.tip(points, Plot.pointer({ ...facet, x: "x", y: "y", title: ({ row }: Point) => told(row, decimals) })),
    ],
  });
}

/** Rows that a reader looks through. */
const MOST_MALES = 40;

export function males(plans: readonly Planned[], chosen: readonly Choice[]): HTMLElement {
  const shown = chosen.slice(0, MOST_MALES);
  const bars = plans.flatMap(({ letter }, i) => shown.map(({ name, matings }) => ({ plan: letter, name, matings: matings[i] ?? 0 })));
  const { title, description, axis } = words.males;
  return figure({
    title, description: description(count(shown.length), count(chosen.length)),
    plot: (width) => {
      const left = Math.min(width * 0.42, 20 + 7.2 * shown.reduce((most, { name }) => Math.max(most, name.length), 4));
      return draw({
        width, height: 80 + 20 * shown.length, marginLeft: left, marginTop: 34, marginBottom: 42,
        fx: { label: null, padding: 0.12, tickFormat: words.plan },
        x: { label: axis, labelArrow: "right", ticks: 3, grid: true, insetRight: 22 },
        y: {
          type: "band", domain: shown.map(({ name }) => name), label: null, tickSize: 0, tickFormat: (name: string) => shortened(name, left / 7.2),
        },
        marks: [
          Plot.barX(bars, { fx: "plan", y: "name", x: "matings", fill: COLOUR.blue }),
          Plot.ruleX([0], { stroke: COLOUR.muted }),
          Plot.text(bars, {
            fx: "plan", y: "name", x: "matings", textAnchor: "start", dx: 4, text: ({ matings }: { matings: number }) => (matings > 0 ? count(matings) : "–"),
          }),
        ],
      });
    },
  });
}

function shortened(name: string, letters: number): string {
  return name.length <= letters ? name : `${name.slice(0, Math.max(4, Math.floor(letters) - 1))}…`;
}
