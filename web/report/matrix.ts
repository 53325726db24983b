// The matrix of chosen males by chosen females, coloured by the F of their offspring. A frame follows the
// pointer or the arrow keys and the pair is told in words.

import { fill, h, note, soon } from "../shared/dom.js";
import { csv, download } from "../shared/download.js";
import { legend } from "../shared/plot.js";
import { table } from "../shared/table.js";
import { matings as words } from "../shared/texts/language.js";
import { openMating } from "./mating.js";
import { colour, makeGrid, parts, sheet, type Grid } from "./matrix_drawing.js";
import type { Plan, Result } from "./model.js";

const LISTED = 20_000;

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

/** The box in which the matrix scrolls, with the frame that follows the reader. */
function field(result: Result, grid: Grid, told: HTMLElement): HTMLElement {
  const frame = h("div", { class: "cursor", hidden: true, style: { width: `${grid.cell}px`, height: `${grid.cell}px` } });
  const drawing = sheet(grid, frame);
  soon(() => drawing.prepend(...parts(grid)));
  const box = h("div", {
    class: "scroll matrix", tabindex: 0, role: "application", "aria-label": `${words.MATRIX}. ${words.MATRIX_HELP}`,
    style: { "scroll-padding": `${grid.top}px 0 0 ${grid.left}px` },
  }, drawing);
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
    const from = drawing.getBoundingClientRect();
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
