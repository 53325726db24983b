// What each column was taken for, above the first rows, where the user can tell it otherwise.

import { fill, h } from "../../../shared/dom.js";
import { FIELDS, type Choices, type Field } from "../../choices.js";
import { offer, type Control } from "../../fields.js";
import type { Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

const NEEDED: readonly Field[] = ["identifier", "sire", "dam"];

export function columns(work: Work): Control {
  const { book } = words;
  const missing = h("div", { role: "status" });
  const grid = h("div", { class: "scroll preview", tabindex: 0, role: "region", "aria-label": book.preview.caption });
  let drawn = "";
  let heads: Head[] = [];
  function show(): void {
    const data = work.latest;
    if (!data) return;
    const now = JSON.stringify([data.header, data.columns.map(({ heading }) => heading), data.preview]);
    if (now !== drawn) {
      const at = heads.findIndex(({ field }) => field === document.activeElement);
      heads = data.columns.map((_, i) => head(work, i));
      fill(grid, table(data, heads));
      heads[at]?.field.focus();
    }
    drawn = now;
    heads.forEach((each) => each.show(data));
    fill(missing, lacking(data));
  }
  return { element: h("section", { class: "group" }, h("h3", {}, book.preview.title), h("p", { class: "note" }, book.preview.help), missing, grid), show };
}

function lacking(data: Prepared): HTMLElement | false {
  const { preview, fields } = words.book;
  const known = new Set(data.columns.map(({ field }) => field));
  const none = NEEDED.filter((field) => !known.has(field)).map((field) => fields[field]);
  if (data.columns.length === 0) return h("p", { class: "warning serious" }, preview.empty);
  return none.length > 0 && h("p", { class: "warning serious" }, preview.lacking(none.join(", ")));
}

function table(data: Prepared, heads: readonly Head[]): HTMLElement {
  const { caption, row } = words.book.preview;
  const { rows, cells } = data.preview;
  return h("table", {}, h("caption", { class: "unseen" }, caption),
    h("thead", {}, h("tr", {}, h("th", { scope: "col", class: "number" }, row), heads.map(({ element }) => element))),
    h("tbody", {}, rows.map((number, i) => h("tr", {}, h("th", { scope: "row", class: "number light" }, number), heads.map((_, j) => cell(cells[i]?.[j] ?? ""))))));
}

const cell = (text: string) => h("td", { title: text.length > 24 ? text : null }, text);

interface Head { element: HTMLElement; field: HTMLSelectElement; show: (data: Prepared) => void }

/** The head of a column: its heading, what it is taken for, and how its cells are read. */
function head(work: Work, at: number): Head {
  const { preview, fields } = words.book;
  const title = h("span", { class: "heading" });
  const how = h("span", { class: "light how" });
  const field = h("select", { onchange: () => work.choose(retaken(work, at, field.value)) });
  const show = (data: Prepared) => {
    const { heading, how: read } = data.columns[at]!;
    const name = heading || preview.column(at + 1);
    fill(title, name);
    const now = takenFor(work.choices, data, at);
    field.setAttribute("aria-label", preview.takenFor(name));
    const sure = now !== "" && now !== "ebv" && !isChosen(work.choices, data, at);
    const options = FIELDS.map((each) => [each, fields[each]] as const);
    offer(field, sure ? options : [["", preview.notRead], ...options], now);
    field.disabled = !isTold(data, at);
    field.title = field.disabled ? preview.twice : "";
    field.classList.toggle("read", now !== "");
    fill(how, read && ((preview.how as Record<string, string>)[read] ?? read));
  };
  return { element: h("th", { scope: "col" }, title, field, how), field, show };
}

/** How the program is told of a column: its heading, or its position without headings. */
const called = (data: Prepared, at: number): string => (data.header > 0 ? data.columns[at]!.heading : String(at + 1));

/** Whether that names this column and no other. */
function isTold(data: Prepared, at: number): boolean {
  const name = called(data, at);
  return name !== "" && data.columns.findIndex((_, i) => called(data, i) === name) === at;
}

const isChosen = ({ columns }: Choices, data: Prepared, at: number): boolean => columns.some(({ value }) => value === called(data, at));

function takenFor({ columns, ebv }: Choices, data: Prepared, at: number): string {
  const chosen = columns.find(({ value }) => value === called(data, at))?.field;
  const field = chosen ?? data.columns[at]!.field ?? "";
  return field === "ebv" && ebv === "none" ? "" : field;
}

/** The choices when a column is taken for a field, which it then is alone; "" for none. */
function retaken({ choices, latest }: Work, at: number, field: string): Partial<Choices> {
  if (!latest) return {};  // another herd book is being read
  const value = called(latest, at);
  const others = choices.columns.filter((each) => each.field !== field && each.value !== value);
  const was = takenFor(choices, latest, at);
  if (field === "") return { columns: others, ...(was === "ebv" && { ebv: "none" }) };
  return { columns: [...others, { field, value }], ...(field === "ebv" && choices.ebv === "none" && { ebv: "read" }) };
}
