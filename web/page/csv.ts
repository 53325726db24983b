// Tables as CSV (RFC 4180), read cell by cell.

/** The rows of a table; without a mark, cells are parted by commas. */
export function rowsOf(text: string, mark: "," | ";" | "\t" = ","): string[][] {
  const cell = new RegExp(`(?:[ ]*"((?:[^"]|"")*)"[ ]*|([^${mark}\r\n]*))(${mark}|\r\n|\r|\n|$)`, "gy");
  const rows: string[][] = [];
  let row: string[] = [];
  while (cell.lastIndex < text.length || row.length > 0) {
    const [, quoted, bare = "", end] = cell.exec(text)!;  // there always is one, if an empty one
    row.push(quoted === undefined ? bare : quoted.replaceAll('""', '"'));
    if (end === mark) continue;
    rows.push(row);
    row = [];
  }
  return rows;
}
