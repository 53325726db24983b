// What is drawn on the scales of merit and inbreeding: the line of the best possible, the signs of the plans,
// their names, a target, the effective sizes above.

import * as Plot from "@observablehq/plot";
import type { Shape } from "../shared/key.js";
import { COLOUR } from "../shared/plot.js";
import { called, type Frontier, type Plan } from "./model.js";
import { say } from "./say.js";

export type Axis = "rate" | "relationship";
/** In percent and in standard deviations. */
export type Point = readonly [x: number, y: number];
export type Range = readonly [low: number, high: number];

export const LOOKS: Record<Plan["how"], { colour: string; symbol: Shape; drawn: Plot.SymbolType; r: number; hollow: boolean }> = {
  greedy: { colour: COLOUR.purple, symbol: "hollow_triangle", drawn: "triangle", r: 6, hollow: true },
  exchanges: { colour: COLOUR.orange, symbol: "hollow_diamond", drawn: "diamond", r: 6, hollow: true },
  search: { colour: COLOUR.blue, symbol: "circle", drawn: "circle", r: 3.5, hollow: false },
};
export const WAYS = ["greedy", "exchanges", "search"] as const;

const ROOM = 0.06;  // of the range, beside the outermost values

/** A scale for values. */
export function domain(values: readonly number[]): Range {
  const low = values.reduce((a, b) => Math.min(a, b), Infinity), high = values.reduce((a, b) => Math.max(a, b), -Infinity);
  if (!(low <= high)) return [0, 1];
  const room = ROOM * (high - low) || Math.abs(high) * ROOM || 1;
  return [low - room, high + room];
}

/** Where a rate stands on a scale, in percent. */
export function positionOf(rate: number, axis: Axis, { last_relationship: last, generation_interval: interval }: Frontier["herd"]): number {
  return 100 * (axis === "rate" ? rate : last + (rate * (2 - last)) / interval);
}

/** Effective sizes that people speak of, those that matter most first: of two that would touch the first is told. */
const SIZES = [50, 100, 25, 200, 10, 500, 1000, 5, 30, 70, 15, 20, 40, 150, 300, 2000];
const SIZE_ROOM = 34;  // pixels

export function effectiveSizes([low, high]: Range, position: (rate: number) => number, pixels: number): (readonly [x: number, size: number])[] {
  const kept: (readonly [number, number])[] = [];
  for (const size of SIZES) {
    const x = position(1 / (2 * size));
    const free = kept.every(([other]) => (Math.abs(other - x) / (high - low)) * pixels >= SIZE_ROOM);
    if (x >= low && x <= high && free) kept.push([x, size]);
  }
  return kept;
}

/** The line, which goes on straight beyond the plans of most merit and of least relationship, and beyond it
 * a shade where no plan can lie. */
export function best(points: readonly Point[], x: Range, y: Range): Plot.Markish {
  const ends: Point[] = [[x[1], points[0]?.[1] ?? y[1]], ...points, [points[points.length - 1]?.[0] ?? x[0], y[0]]];
  const beyond: Point[] = [...ends, [x[0], y[0]], [x[0], y[1]], [x[1], y[1]]];
  return [
    Plot.line(beyond, { curve: "linear-closed", fill: COLOUR.muted, fillOpacity: 0.13, stroke: "none" }),
    Plot.line(points, { stroke: COLOUR.green, strokeWidth: 2 }),
    Plot.text([say.picture.impossible], { frameAnchor: "top-left", dx: 8, dy: 8, fill: "var(--soft)", fontStyle: "italic" }),
  ];
}

/** The rate that a target asks for. */
export function limit({ target }: Plan, axis: Axis, herd: Frontier["herd"], x: Range, y: Range): Plot.Markish {
  if (!target || target.kind === "degrees") return null;
  const at = positionOf(target.kind === "ne" ? 1 / (2 * target.value) : target.value, axis, herd);
  if (!(at >= x[0] && at <= x[1])) return null;
  return [
    Plot.ruleX([at], { stroke: COLOUR.text, strokeDasharray: "5 4" }),
    Plot.text([[at, y[0]]], { text: () => say.picture.limit, textAnchor: "start", dx: 5, dy: -8, fill: "var(--soft)" }),
  ];
}

/** Searches over the plans that were made at once, which are larger, so that both are seen. */
export function signs(plans: readonly Plan[], at: (plan: Plan) => Point): Plot.Markish {
  return WAYS.map((way) => {
    const { colour, drawn: symbol, r, hollow } = LOOKS[way];
    const look = hollow ? { stroke: colour, strokeWidth: 1.8, fill: "var(--card)", fillOpacity: 0.6 } : { fill: colour, stroke: "var(--card)", strokeWidth: 0.8 };
    return Plot.dot(plans.filter(({ how }) => how === way), { x: (plan: Plan) => at(plan)[0], y: (plan: Plan) => at(plan)[1], symbol, r, ...look });
  });
}

/** The marked plan. */
export const star = (at: Point) => Plot.dot([at], { symbol: "star", r: 6, fill: COLOUR.text, stroke: "var(--card)", strokeWidth: 1 });

const MIDDLE = 0.42;                          // of the scale: at its left is the room of the vertical one
const BELOW = { own: 30, marked: 46 } as const;  // pixels: free of the line and of one another

/** The names of the marked plan and of the herd's own goal hang below their signs, towards the middle. */
export function labels(plans: readonly Plan[], at: (plan: Plan) => Point, marked: Plan, x: Range, y: Range, height: number): Plot.Markish {
  const own = plans.find((plan) => plan.own);
  const named = plans.filter((plan) => plan === marked || plan === own);
  const hung = named.map((plan) => {
    const [px, py] = at(plan);
    const low = Math.max(y[0], py - ((plan === marked ? BELOW.marked : BELOW.own) * (y[1] - y[0])) / height);
    const side = px - x[0] > MIDDLE * (x[1] - x[0]) ? { textAnchor: "end" as const, dx: -5 } : { textAnchor: "start" as const, dx: 5 };
    return {
      line: Plot.link([plan], { x: px, y1: py, y2: low, stroke: COLOUR.text }),
      name: Plot.text([plan], { x: px, y: low, text: called, ...side, dy: -4, fontWeight: 650, fill: "currentColor", stroke: "var(--card)", strokeWidth: 5 }),
    };
  });
  return [hung.map(({ line }) => line), hung.map(({ name }) => name)];  // no line crosses a name
}
