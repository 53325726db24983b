// The drawing of the matrix: cells are pixels of a canvas, painted in a blink however many they are;
// labels, rings and numbers are marks of the plotting library, whose scale colours the cells as it does
// the legend. The labels stay in sight while the cells scroll.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { fixed } from "../shared/format.js";
import { draw } from "../shared/plot.js";
import { matings as words } from "../shared/texts/language.js";
import { animal, called, type Mating, type Plan, type Result } from "./model.js";

const HUNDRED_THOUSAND = 1e5;
const ROOM = 40;  // pixels of a cell that holds its number
const PAPER = 690;  // pixels of the width of a page

/** What the drawing and the pointer both need. */
export interface Grid {
  sires: readonly string[];
  dams: readonly string[];
  f: readonly number[];  // row by row
  planned: ReadonlyMap<number, Mating>;  // by row * dams + column
  least: number;  // the colours begin here: at nothing, unless all is far from it
  largest: number;
  cell: number;  // pixels
  left: number;
  top: number;
}

export function makeGrid(result: Result, { matrix: { sires, dams, f }, matings }: Plan): Grid {
  const row = new Map(sires.map((sire, i) => [sire, i]));
  const column = new Map(dams.map((dam, i) => [dam, i]));
  const name = (place: number) => called(animal(result, place));
  const shares = f.map((each) => each / HUNDRED_THOUSAND);
  const names = { sires: sires.map(name), dams: dams.map(name) };
  const room = (texts: string[]) => Math.min(176, 16 + 7.8 * texts.reduce((most, { length }) => Math.max(most, length), 0));
  const largest = Math.max(0.001, shares.reduce((most, each) => Math.max(most, each), 0));
  const least = shares.reduce((least, each) => Math.min(least, each), largest);
  const cell = dams.length <= 16 ? 44 : dams.length <= 60 ? 20 : 15;
  return {
    ...names, f: shares, cell, left: room(names.sires), top: room(names.dams),
    planned: new Map(matings.map((mating) => [(row.get(mating.sire) ?? 0) * dams.length + (column.get(mating.dam) ?? 0), mating])),
    least: least > largest / 2 ? least : 0, largest,
  };
}

export const colour = ({ least, largest }: Grid): Plot.ScaleOptions =>
  ({ type: "linear", scheme: "YlGnBu", domain: [least * 100, largest * 100], label: words.MATRIX_SCALE });

/** Where on the scale of colours an F stands: from 0, the lightest, to 1. */
const darkness = ({ least, largest }: Grid, f: number) => (largest > least ? (f - least) / (largest - least) : 1);

const width = ({ dams, cell }: Grid) => dams.length * cell;
const height = ({ sires, cell }: Grid) => sires.length * cell;

/** The sheet in which the parts of the drawing lie: its room is taken before it is drawn. */
export function sheet(grid: Grid, ...children: Node[]): HTMLElement {
  const style = {
    "grid-template-columns": `${grid.left}px ${width(grid)}px`, "grid-template-rows": `${grid.top}px ${height(grid)}px`,
    "--paper": String(Math.min(1, PAPER / (grid.left + width(grid)))),
  };
  return h("div", { class: "drawing", style }, children);
}

/** The parts: corner, labels above, labels at the left, and the cells. */
export function parts(grid: Grid): HTMLElement[] {
  const part = (name: string, ...children: Node[]) => h("div", { class: name, "aria-hidden": "true" }, children);
  return [part("corner"), part("above", labels(grid, "dams")), part("beside", labels(grid, "sires")), part("cells", painted(grid), over(grid))];
}

const shorter = (text: string) => (text.length > 21 ? `${text.slice(0, 20)}…` : text);

const BARE = { marginTop: 0, marginRight: 0, marginBottom: 0, marginLeft: 0 } as const;

function labels(grid: Grid, of: "sires" | "dams"): Element {
  const { left, top, cell } = grid;
  const middle = (_: string, i: number) => i + 0.5;
  const font = { text: shorter, fontSize: cell < 20 ? 11 : 12 };
  const across = of === "dams";
  return draw({
    ...BARE, width: across ? width(grid) : left, height: across ? top : height(grid),
    x: { domain: across ? [0, grid.dams.length] : [0, 1], axis: null },
    y: { domain: across ? [0, 1] : [0, grid.sires.length], reverse: !across, axis: null },
    marks: [across
      ? Plot.text(grid.dams, { ...font, x: middle, y: 0, rotate: -90, textAnchor: "start", dy: -6 })
      : Plot.text(grid.sires, { ...font, x: 1, y: middle, textAnchor: "end", dx: -6 })],
  });
}

const SHADES = 256;

/** A pixel a cell, which the style sheet enlarges. */
function painted(grid: Grid): HTMLCanvasElement {
  const { sires, dams, f, least, largest } = grid;
  const canvas = h("canvas", { width: dams.length, height: sires.length });
  const context = canvas.getContext("2d");
  if (!context) return canvas;
  const scale = Plot.scale({ color: colour(grid) });
  const shades = Array.from({ length: SHADES }, (_, i) => rgb(String(scale?.apply((least + (i / (SHADES - 1)) * (largest - least)) * 100))));
  const image = context.createImageData(dams.length, sires.length);
  f.forEach((each, i) => image.data.set(shades[Math.round(darkness(grid, each) * (SHADES - 1))]!, i * 4));
  context.putImageData(image, 0, 0);
  return canvas;
}

/** A colour of the scale, "rgb(1, 2, 3)", as a pixel. */
function rgb(text: string): number[] {
  return [...(text.match(/\d+/g) ?? []).slice(0, 3).map(Number), 255];
}

/** What lies over the cells: a ring for each mating of the plan, and numbers where they have room. */
function over(grid: Grid): Element {
  const { sires, dams, f, cell, planned } = grid;
  const at = (i: number) => ({ x: (i % dams.length) + 0.5, y: Math.floor(i / dams.length) + 0.5 });
  const numbers = cell < ROOM ? [] : f.map((each, i) => ({ ...at(i), text: fixed(each * 100, 1), dark: darkness(grid, each) > 0.55 }));
  const rings = [...planned.keys()].map(at);
  const ring = (stroke: string, strokeWidth: number) => Plot.dot(rings, { x: "x", y: "y", r: cell * 0.42, stroke, strokeWidth });
  return draw({
    ...BARE, width: width(grid), height: height(grid), style: "background: none",
    x: { domain: [0, dams.length], axis: null }, y: { domain: [0, sires.length], reverse: true, axis: null },
    marks: [
      Plot.text(numbers, { x: "x", y: "y", text: "text", fill: ({ dark }: { dark: boolean }) => (dark ? "#fff" : "#1d2326") }),
      ring("#fff", cell < ROOM ? 3 : 4), ring("#c2185b", cell < ROOM ? 1.5 : 2),
    ],
  });
}
