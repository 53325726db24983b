// The herd book that is open: which it is, how it is read, its columns.

import { fill, h, link, type Child } from "../../../shared/dom.js";
import { bytes, count } from "../../../shared/format.js";
import { sheet } from "../../arrivals.js";
import { FIELDS } from "../../choices.js";
import { select, type Control } from "../../fields.js";
import { hindering, type Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";
import { columns } from "./columns.js";
import { reading } from "./reading.js";

export function opened(work: Work): Control {
  const { book } = words;
  const name = h("p", { class: "lead" });
  const understood = h("p"), empty = h("div");
  const which = sheets(work);
  const parts = [which, columns(work), reading(work)];
  function show(): void {
    const { book: now, latest } = work;
    if (!now) return;
    fill(name, h("strong", {}, now.name), now.from !== undefined && ` · ${book.fromSheet(now.from)}`, ` · ${bytes(now.bytes.length)}`, latest && ` · ${book.rows(latest.rows)}`);
    fill(understood, latest && told(latest));
    const { workbook: { sheets = [] } = {}, uncalculated = 0 } = now;
    fill(empty, uncalculated > 0 && h("p", { class: "warning" }, book.uncalculated(count(uncalculated))));
    which.element.hidden = sheets.length < 2;
    for (const part of parts) part.show();
  }
  return { element: h("div", { class: "opened" }, name, understood, empty, parts.map(({ element }) => element)), show };
}

/** What was found in it at once: the columns that are known, and how many faults hinder. */
function told(data: Prepared): Child[] {
  const { read, faults, fields } = words.book;
  const known = new Set(data.columns.map(({ field }) => field));
  const names = FIELDS.filter((field) => known.has(field)).map((field) => fields[field]);
  const hinder = hindering(data).filter(({ kind }) => kind !== "ebv").reduce((sum, { count }) => sum + count, 0);  // values are a matter of step 3
  return [names.length > 0 && read(names.join(", ")), hinder > 0 && [" ", link("faults", faults(hinder))]];
}

/** The sheets of a workbook that has several. */
function sheets(work: Work): Control {
  return select({
    name: words.book.sheet, help: words.book.sheetHelp,
    options: () => (work.book?.workbook?.sheets ?? []).map((name) => [name, name]),
    read: () => work.book?.from ?? "",
    write: (wanted) => {
      const { name, workbook } = work.book ?? {};
      if (workbook) void work.open(async (engine) => ({ book: await sheet(name!, workbook.bytes, wanted, engine) }));
    },
  });
}
