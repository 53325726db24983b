// The matrix of chosen males by chosen females, coloured by the F of their offspring. One picture of
// pixels, however large, over which a frame follows the pointer or the arrow keys.

import * as Plot from "@observablehq/plot";
import { fill, h, note, whenNear } from "../shared/dom.js";
import { csv, download } from "../shared/download.js";
import { draw, legend } from "../shared/plot.js";
import { table } from "../shared/table.js";
import * as words from "../shared/texts/matings.js";
import { openMating } from "./mating.js";
import { animal, called, type Mating, type Plan, type Result } from "./model.js";

const HUNDRED_THOUSAND = 1e5;
const LISTED = 20_000;
const ROOM = 40;  // pixels of a cell that holds its number

/** What the drawing and the pointer both need. */
interface Grid {
  sires: readonly string[];
  dams: readonly string[];
  f: readonly number[];  // row by row
  planned: ReadonlyMap<number, Mating>;  // by row * dams + column
  largest: number;
  cell: number;  // pixels
  left: number;
  top: number;
}

export function matrix(result: Result, plan: Plan): HTMLElement {
  const grid = makeGrid(result, plan);
  const told = h("output", { class: "told screen" }, words.MATRIX_START);
  const scale = legend({ color: { ...colour(grid), legend: "ramp" }, width: 260 } as Parameters<typeof legend>[0]);
  return h("div", {},
    h("p", {}, words.matrixLead(grid.sires.length, grid.dams.length)),
    h("div", { class: "legend" }, scale),
    h("p", { class: "note screen" }, words.MATRIX_HELP), told, field(result, grid, told),
    h("div", { class: "tools" }, download(words.SAVE_MATRIX, "matrix.csv", "text/csv", () => asCsv(grid))),
    grid.f.length <= LISTED ? pairs(grid) : note(words.MATRIX_BIG(grid.f.length)));
}

function makeGrid(result: Result, { matrix: { sires, dams, f }, matings }: Plan): Grid {
  const row = new Map(sires.map((sire, i) => [sire, i]));
  const column = new Map(dams.map((dam, i) => [dam, i]));
  const name = (place: number) => called(animal(result, place));
  const shares = f.map((each) => each / HUNDRED_THOUSAND);
  const names = { sires: sires.map(name), dams: dams.map(name) };
  const room = (texts: string[]) => Math.min(176, 14 + 7.6 * texts.reduce((most, { length }) => Math.max(most, length), 0));
  const cell = dams.length <= 16 ? 44 : dams.length <= 60 ? 20 : 13;
  return {
    ...names, f: shares, cell, left: room(names.sires), top: room(names.dams),
    planned: new Map(matings.map((mating) => [(row.get(mating.sire) ?? 0) * dams.length + (column.get(mating.dam) ?? 0), mating])),
    largest: Math.max(0.001, shares.reduce((most, each) => Math.max(most, each), 0)),
  };
}

const MARGIN = 8;

/** The room of the picture, before it is drawn. */
const size = ({ sires, dams, cell, left, top }: Grid) =>
  ({ width: `${left + dams.length * cell + MARGIN}px`, "min-height": `${top + sires.length * cell + MARGIN}px` });

const colour = ({ largest }: Grid): Plot.ScaleOptions =>
  ({ type: "linear", scheme: "YlGnBu", domain: [0, largest * 100], label: words.MATRIX_SCALE });

const shorter = (text: string) => (text.length > 21 ? `${text.slice(0, 20)}…` : text);

function picture(grid: Grid): Element {
  const { sires, dams, f, cell, left, top, planned, largest } = grid;
  const at = (i: number) => ({ x: (i % dams.length) + 0.5, y: Math.floor(i / dams.length) + 0.5 });
  const numbers = cell < ROOM ? [] : f.map((each, i) => ({ ...at(i), text: (each * 100).toFixed(1), dark: each > largest * 0.55 }));
  const text = (dark: boolean) =>
    Plot.text(numbers.filter((each) => each.dark === dark), { x: "x", y: "y", text: "text", fill: dark ? "#fff" : "#1d2326" });
  return draw({
    width: left + dams.length * cell + MARGIN, height: top + sires.length * cell + MARGIN,
    marginLeft: left, marginTop: top, marginRight: MARGIN, marginBottom: MARGIN,
    x: { domain: [0, dams.length], axis: null }, y: { domain: [0, sires.length], reverse: true, axis: null },
    color: colour(grid),
    marks: [
      Plot.raster(f.map((each) => each * 100), { width: dams.length, height: sires.length, x1: 0, y1: 0, x2: dams.length, y2: sires.length, imageRendering: "pixelated" }),
      Plot.text(sires, { x: 0, y: (_, i) => i + 0.5, text: shorter, textAnchor: "end", dx: -6 }),
      Plot.text(dams, { x: (_, i) => i + 0.5, y: 0, text: shorter, rotate: -90, textAnchor: "start", dy: -6 }),
      text(true), text(false),
      Plot.dot([...planned.keys()].map(at), { x: "x", y: "y", r: cell * 0.42, stroke: "#fff", strokeWidth: cell < ROOM ? 3 : 4 }),
      Plot.dot([...planned.keys()].map(at), { x: "x", y: "y", r: cell * 0.42, stroke: "#c2185b", strokeWidth: cell < ROOM ? 1.5 : 2 }),
    ],
  });
}

/** The box in which the matrix scrolls, with the frame that follows the reader. */
function field(result: Result, grid: Grid, told: HTMLElement): HTMLElement {
  const frame = h("div", { class: "cursor", hidden: true, style: { width: `${grid.cell}px`, height: `${grid.cell}px` } });
  const sheet = h("div", { class: "drawing", style: size(grid) }, frame);
  whenNear(sheet, () => sheet.prepend(h("div", { "aria-hidden": "true" }, picture(grid))));
  const box = h("div", { class: "scroll matrix", tabindex: 0, role: "application", "aria-label": `${words.MATRIX}. ${words.MATRIX_HELP}` }, sheet);
  let [row, column] = [-1, -1];

  function go(toRow: number, toColumn: number): void {
    row = Math.max(0, Math.min(grid.sires.length - 1, toRow));
    column = Math.max(0, Math.min(grid.dams.length - 1, toColumn));
    const i = row * grid.dams.length + column;
    frame.hidden = false;
    frame.style.transform = `translate(${grid.left + column * grid.cell}px, ${grid.top + row * grid.cell}px)`;
    fill(told, words.cell(grid.sires[row]!, grid.dams[column]!, grid.f[i]!, grid.planned.has(i)));
  }

  function open(): void {
    const mating = grid.planned.get(row * grid.dams.length + column);
    if (mating) openMating(result, mating);
  }

  function under(event: PointerEvent | MouseEvent): [row: number, column: number] | null {
    const from = sheet.getBoundingClientRect();
    const to = [(event.clientY - from.top - grid.top) / grid.cell, (event.clientX - from.left - grid.left) / grid.cell].map(Math.floor);
    const [r, c] = to as [number, number];
    return r >= 0 && c >= 0 && r < grid.sires.length && c < grid.dams.length ? [r, c] : null;
  }

  box.addEventListener("pointermove", (event) => {
    const at = under(event);
    if (at) go(...at);
  });
  box.addEventListener("click", (event) => {
    const at = under(event);
    if (!at) return;
    go(...at);
    open();
  });
  box.addEventListener("keydown", (event) => {
    const step = { ArrowUp: [-1, 0], ArrowDown: [1, 0], ArrowLeft: [0, -1], ArrowRight: [0, 1] }[event.key];
    if (!step && event.key !== "Enter") return;
    event.preventDefault();  // the same key would press the button that closes what it opened
    if (!step) return open();
    go(row < 0 ? 0 : row + step[0]!, column < 0 ? 0 : column + step[1]!);
    frame.scrollIntoView({ block: "nearest", inline: "nearest" });
  });
  return box;
}

function asCsv({ sires, dams, f }: Grid): string {
  return csv(["", ...dams], sires.map((sire, i) => [sire, ...f.slice(i * dams.length, (i + 1) * dams.length)]));
}

function pairs({ sires, dams, f, planned }: Grid): HTMLElement {
  const rows = f.map((each, i) => ({ sire: sires[Math.floor(i / dams.length)]!, dam: dams[i % dams.length]!, f: each, planned: planned.has(i) ? words.YES : words.NO }));
  const details = h("details", {}, h("summary", {}, words.PAIRS));
  details.addEventListener("toggle", () => {
    if (!details.open || details.childElementCount > 1) return;
    details.append(table([
      { key: "sire", title: words.SIRE[0], value: (row) => row.sire },
      { key: "dam", title: words.DAM[0], value: (row) => row.dam },
      { key: "f", title: words.OFFSPRING_F[0], note: words.OFFSPRING_F[1], value: (row) => row.f, percent: true },
      { key: "planned", title: words.PLANNED[0], note: words.PLANNED[1], value: (row) => row.planned },
    ], rows, { caption: words.MATRIX, file: "pairs.csv" }));
  });
  return details;
}
