// Tables that a reader sorts by a click or a key on a heading, searches and saves. Long ones
// draw only the rows in sight (rows.ts).

import {
  createTable, getCoreRowModel, getFilteredRowModel, getSortedRowModel,
  type ColumnDef, type Row, type SortingState, type Table, type TableState,
} from "@tanstack/table-core";
import { fill, h, soon, type Child } from "./dom.js";
import { csv, download } from "./download.js";
import { count, fixed } from "./format.js";
import { drawAll, drawInSight } from "./rows.js";
import { shared as words } from "./texts/language.js";

export interface Column<T> {
  /** Its heading in the saved file. */
  key: string;
  title: string;
  /** What it means, with its unit; shown when the pointer or the keyboard rests on the heading. */
  note?: string;
  /** What it is sorted, searched and saved by, with all digits; NaN is none and comes last. */
  value: (row: T) => string | number;
  /** What is shown, if not the value itself. */
  show?: (row: T) => Child;
  /** Numbers: decimals shown (0), and whether as percent without the sign (say so in the title). */
  decimals?: number;
  percent?: boolean;
  /** Texts that may take several lines where all rows are drawn. */
  wrap?: boolean;
}

export interface TableOptions<T> {
  /** What the table holds, for those who do not see it. */
  caption: string;
  /** Each sheet of paper on which rows stand has the caption. */
  repeated?: boolean;
  /** Name of the saved file, "candidates.csv"; without it there is no button. */
  file?: string;
  /** Whether there is a search box (from 8 rows on, unless told otherwise). */
  search?: boolean;
  /** The order at first: key of a column. Without it the order of the rows. */
  sort?: { key: string; descending?: boolean };
  /** Class of a row, such as "chosen". */
  mark?: (row: T) => string | undefined;
}

const LONG = 250;
const WHOLE = 100;  // rows; with more a table scrolls in a box of its own
const BROAD = 12;  // columns; with more a table is printed on pages laid across

/** Makes a table of rows. */
export function table<T>(columns: readonly Column<T>[], rows: readonly T[], options: TableOptions<T>): HTMLElement {
  const long = rows.length > LONG;
  const head = h("thead");
  const body = h("tbody");
  const found = h("output", { class: "found" });
  const grid = h("table", {}, h("caption", { class: "unseen" }, options.caption), head, body);
  const box = h("div", { class: long ? "scroll long" : rows.length > WHOLE ? "scroll" : "scroll whole", tabindex: 0, role: "region", "aria-label": options.caption }, grid);
  const model = makeModel(columns, rows, options, () => redraw());
  const draw = long ? drawInSight(box, body) : drawAll(body);

  function redraw(): void {
    fill(head, options.repeated && h("tr", { class: "paper" }, h("th", { colspan: columns.length }, options.caption)), headings(columns, model));
    const shown = model.getRowModel().rows;
    fill(found, shown.length < rows.length && words.found(count(shown.length), count(rows.length)));
    draw(shown.length, (i) => line(columns, shown[i]!, long, options.mark), columns.length);
  }

  if (long) soon(redraw);
  else redraw();
  const wide = options.search ?? rows.length >= 8;
  const tools = [wide && searchBox(options.caption, (text) => model.setGlobalFilter(text)), found, options.file && saving(options.file, columns, model)];
  return h("div", { class: columns.length > BROAD ? "table broad" : "table" }, h("div", { class: "tools" }, tools), box);
}

function makeModel<T>(columns: readonly Column<T>[], rows: readonly T[], { sort }: TableOptions<T>, changed: () => void): Table<T> {
  const sorting: SortingState = sort ? [{ id: sort.key, desc: sort.descending ?? false }] : [];
  const texts = new Map<T, string>();
  const model = createTable<T>({
    data: rows as T[],
    columns: columns.map(definition),
    state: {},
    renderFallbackValue: null,
    autoResetAll: false,
    onStateChange: (update) => {
      state = typeof update === "function" ? update(state) : update;
      model.setOptions((old) => ({ ...old, state }));
      changed();
    },
    getCoreRowModel: getCoreRowModel(),
    getSortedRowModel: getSortedRowModel(),
    getFilteredRowModel: getFilteredRowModel(),
    getColumnCanGlobalFilter: () => true,
    globalFilterFn: (row, _column, wanted: string) => holds(searchable(columns, row.original, texts), wanted),
  });
  let state: TableState = { ...model.initialState, sorting };
  model.setOptions((old) => ({ ...old, state }));
  return model;
}

const collator = new Intl.Collator("en", { numeric: true });

function definition<T>({ key, value }: Column<T>): ColumnDef<T> {
  return {
    id: key,
    accessorFn: (row) => none(value(row)),
    sortUndefined: "last",
    sortDescFirst: false,
    sortingFn: (a, b) => compare(a.getValue(key), b.getValue(key)),
  };
}

const none = (value: string | number) => (Number.isNaN(value) || value === "" ? undefined : value);

function compare(a: string | number, b: string | number): number {
  return typeof a === "number" && typeof b === "number" ? a - b : collator.compare(String(a), String(b));
}

function searchable<T>(columns: readonly Column<T>[], row: T, known: Map<T, string>): string {
  let text = known.get(row);
  if (text === undefined) {
    text = columns.map(({ value }) => value(row)).join(" ");
    known.set(row, text);
  }
  return text;
}

/** Whether all wanted words stand in a text. */
export function holds(text: string, wanted: string): boolean {
  const lower = text.toLowerCase();
  return wanted.toLowerCase().split(/\s+/).every((word) => lower.includes(word));
}

function headings<T>(columns: readonly Column<T>[], model: Table<T>): HTMLElement {
  const first = model.getCoreRowModel().rows[0]?.original;
  const heading = ({ key, title, note, value }: Column<T>, i: number) => {
    const column = model.getColumn(key)!;
    const order = column.getIsSorted();
    const sorted = order === false ? undefined : order === "asc" ? "ascending" : "descending";
    const press = () => {
      column.toggleSorting(order === "asc");
      pressed(model, i);
    };
    const arrow = h("span", { class: "arrow", "aria-hidden": "true" }, order === "asc" ? "▲" : order === "desc" ? "▼" : "");
    const kind = first !== undefined && typeof value(first) === "number" ? "number" : undefined;
    return h("th", { scope: "col", class: kind, "aria-sort": sorted }, h("button", { type: "button", title: note, onclick: press }, title, arrow));
  };
  const row = h("tr", {}, columns.map(heading));
  heads.set(model, row);
  return row;
}

// The headings are made anew when the order changes: the one that was pressed keeps the focus.
const heads = new WeakMap<object, HTMLElement>();

function pressed(model: object, i: number): void {
  heads.get(model)?.querySelectorAll("button")[i]?.focus();
}

function line<T>(columns: readonly Column<T>[], { original }: Row<T>, long: boolean, mark: TableOptions<T>["mark"]): HTMLElement {
  const cell = (column: Column<T>, i: number) => {
    const value = column.value(original);
    const kind = typeof value === "number" ? "number" : column.wrap && !long ? "wrap" : undefined;
    const shown = column.show ? column.show(original) : shownValue(column, value);
    return i === 0 ? h("th", { scope: "row", class: kind }, shown) : h("td", { class: kind }, shown);
  };
  return h("tr", { class: mark?.(original) }, columns.map(cell));
}

function shownValue<T>({ decimals, percent }: Column<T>, value: string | number): string {
  if (typeof value === "string") return value;
  return fixed(percent ? value * 100 : value, decimals ?? (percent ? 2 : 0));
}

/** A field that says what it is to be searched for, shortly after the last key. */
export function searchBox(caption: string, wanted: (text: string) => void): HTMLElement {
  const field = h("input", { type: "search", placeholder: words.SEARCH, "aria-label": `${words.SEARCH}: ${caption}` });
  let waiting = 0;
  field.addEventListener("input", () => {
    clearTimeout(waiting);
    waiting = setTimeout(() => wanted(field.value.trim()), 80);
  });
  return field;
}

function saving<T>(file: string, columns: readonly Column<T>[], model: Table<T>): HTMLElement {
  return download(words.SAVE_CSV, file, "text/csv", () =>
    csv(
      columns.map(({ key }) => key),
      model.getRowModel().rows.map(({ original }) => columns.map(({ value }) => value(original))),
    ),
  );
}

/** A short table without tools, for a few rows of figures. Columns of text, by their place, stand at
 * the left; the others are numbers. */
export function plain(caption: string, header: readonly Child[], rows: readonly (readonly Child[])[], texts: readonly number[] = [0]): HTMLElement {
  const kind = (i: number) => (texts.includes(i) ? undefined : "number");
  const cell = (value: Child, i: number) => (i === 0 ? h("th", { scope: "row", class: kind(i) }, value) : h("td", { class: kind(i) }, value));
  const heading = (value: Child, i: number) => h("th", { scope: "col", class: kind(i) }, value);
  const grid = h("table", {},
    h("caption", { class: "unseen" }, caption),
    h("thead", {}, h("tr", {}, header.map(heading))),
    h("tbody", {}, rows.map((row) => h("tr", {}, row.map(cell)))));
  return h("div", { class: "scroll", tabindex: 0, role: "region", "aria-label": caption }, grid);
}
