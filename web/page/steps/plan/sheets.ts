// The tables of a report as sheets of a workbook: what is a text stays one, however it looks.

import { rowsOf } from "../../csv.js";
import type { Files } from "../../engine/protocol.js";
import type { NamedTable } from "../../spreadsheet/write.js";

/** Headings above what animals and groups are called, which may look like numbers. */
const NAMES = new Set(["identifier", "name", "sire", "dam", "sire_name", "dam_name", "main_common_ancestor", "a", "b"]);

export const sheets = (tables: Files): NamedTable[] => tables.filter(([file]) => file.endsWith(".csv")).map(([file, bytes]) => {
  const [header = [], ...rows] = rowsOf(new TextDecoder().decode(bytes));
  const cell = (text: string, i: number) => (text === "" ? null : NAMES.has(header[i] ?? "") || Number.isNaN(Number(text)) ? text : Number(text));
  return { name: file.replace(/\.csv$/, ""), header, rows: rows.map((row) => row.map(cell)) };
});
