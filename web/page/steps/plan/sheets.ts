// The tables of a report as sheets of a workbook: what is a text stays one, however it looks.

import { rowsOf } from "../../csv.js";
import type { Files } from "../../engine/protocol.js";
import type { NamedTable } from "../../spreadsheet/write.js";

/** Headings of texts in the tables of the program; the other columns hold numbers. */
const TEXTS = new Set(["identifier", "name", "sex", "birth", "sire", "dam", "sire_name", "dam_name", "unknown_parent", "main_common_ancestor", "lack"]);

export const sheets = (tables: Files): NamedTable[] => tables.filter(([file]) => file.endsWith(".csv")).map(([file, bytes]) => {
  const [header = [], ...rows] = rowsOf(new TextDecoder().decode(bytes));
  const cell = (text: string, i: number) => (text === "" ? null : TEXTS.has(header[i] ?? "") ? text : Number(text));
  return { name: file.replace(/\.csv$/, ""), header, rows: rows.map((row) => row.map(cell)) };
});
