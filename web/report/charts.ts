// Pictures that several parts draw: lines and columns over birth time. Percent and the
// like are the business of the caller: what comes in is drawn as it is.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { key, type Shape } from "../shared/key.js";
import { COLOUR, draw } from "../shared/plot.js";

export interface Series<T> {
  name: string;
  colour: string;
  value: (row: T) => number;
  dash?: string;
  symbol?: Shape;
}

export interface Axes<T> {
  width: number;
  height?: number;
  /** The whole number that a row stands at, and how it is called there. */
  x: (row: T) => number;
  called: (row: T) => string;
  x_label: string;
  y_label: string;
  /** How a value is said. */
  say: (value: number) => string;
}

/** Less is 0 with rounding errors: a scale for it would be one of noise. */
const TINY = 1e-9;

/** Series of values as lines with a shape at each value; the row under the pointer is told. */
export function lines<T>(rows: readonly T[], series: readonly Series<T>[], axes: Axes<T>, more: Plot.Markish[] = []): HTMLElement {
  const points = ({ value }: Series<T>) => rows.filter((row) => Number.isFinite(value(row)));
  const few = rows.length <= axes.width / 9;
  const marks = series.flatMap((each) => [
    Plot.lineY(points(each), { x: axes.x, y: each.value, stroke: each.colour, strokeWidth: 2, strokeDasharray: each.dash }),
    Plot.dot(few ? points(each) : [], { x: axes.x, y: each.value, fill: each.colour, r: 3, symbol: plotted(each.symbol) }),
  ]);
  const top = (row: T) => Math.max(...series.map(({ value }) => value(row)).filter(Number.isFinite));
  const told = rows.filter((row) => Number.isFinite(top(row)));
  const tip = Plot.tip(told, Plot.pointerX({ x: axes.x, y: top, title: (row: T) => told_of(row, series, axes), lineHeight: 1.2 }));
  const flat = !told.some((row) => top(row) > TINY);
  const drawn = draw({
    ...frame(rows, axes),
    y: { label: axes.y_label, grid: true, zero: true, nice: true, ...(flat && { domain: [0, 1] }) },
    marks: [Plot.ruleY([0], { stroke: COLOUR.muted }), more, marks, tip],
  });
  return h("div", {}, series.length > 1 && key(...series.map((each) => (few ? each : { ...each, symbol: each.dash ? "dashes" as const : "line" as const }))), drawn);
}

/** Counts as columns stacked on one another. */
export function columns<T>(rows: readonly T[], series: readonly Series<T>[], axes: Axes<T>): HTMLElement {
  const stacked = series.flatMap((each) => rows.map((row) => ({ row, x: axes.x(row), y: each.value(row), each })));
  const span = rows.length ? axes.x(rows[rows.length - 1]!) - axes.x(rows[0]!) + 1 : 1;
  const inset = axes.width / span > 6 ? 0.5 : 0;
  const total = (row: T) => series.reduce((sum, { value }) => sum + value(row), 0);
  const drawn = draw({
    ...frame(rows, axes),
    y: { label: axes.y_label, grid: true, nice: true },
    marks: [
      Plot.rectY(stacked, Plot.stackY({
        x1: (at) => at.x - 0.5, x2: (at) => at.x + 0.5, y: "y", fill: (at) => at.each.colour, insetLeft: inset, insetRight: inset,
        order: null,
      })),
      Plot.ruleY([0], { stroke: COLOUR.muted }),
      Plot.tip(rows, Plot.pointerX({ x: axes.x, y: total, title: (row: T) => told_of(row, series, axes), lineHeight: 1.2 })),
    ],
  });
  return h("div", {}, key(...series.map((each) => ({ ...each, symbol: "square" as const }))), drawn);
}

function told_of<T>(row: T, series: readonly Series<T>[], { called, say }: Axes<T>): string {
  return [called(row), ...series.map(({ name, value }) => `${name}: ${say(value(row))}`)].join("\n");
}

function frame<T>(rows: readonly T[], axes: Axes<T>): Plot.PlotOptions {
  const name = new Map(rows.map((row) => [axes.x(row), axes.called(row)]));
  const at = rows.map(axes.x);
  const length = Math.max(1, ...[...name.values()].map((text) => text.length));
  const ticks = whole(Math.min(...at), Math.max(...at), axes.width / (7 * length + 18));
  return {
    width: axes.width, height: axes.height ?? 240, marginLeft: 48, marginRight: 16, marginTop: 30, marginBottom: 42,
    x: { label: axes.x_label, ticks, tickFormat: (x: number) => name.get(x) ?? String(x) },
    color: { type: "identity" },
  };
}

/** Whole numbers from first to last at a round distance, at most so many. */
export function whole(first: number, last: number, most: number): number[] {
  if (!Number.isFinite(first) || !Number.isFinite(last)) return [];
  const steps = [1, 2, 5, 10, 20, 25, 50].flatMap((step, _, all) => [step, ...(step === 50 ? all.map((s) => s * 100) : [])]);
  const step = steps.find((each) => (last - first) / each <= most) ?? last - first;
  const start = Math.ceil(first / step) * step;
  return Array.from({ length: Math.floor((last - start) / step) + 1 }, (_, i) => start + i * step);
}

function plotted(symbol: Shape = "circle"): Plot.SymbolType {
  return symbol === "square" || symbol === "triangle" || symbol === "diamond" ? symbol : "circle";
}
