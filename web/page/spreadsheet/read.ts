// Workbooks (.xlsx) as CSV, for what reads tables further. Needs no page: it is run in a worker.

import { cellsOf, type Common } from "./cells.js";
import { bookOf, kindsOf, targets, textsOf, type Listed } from "./contents.js";
import { partsOf, unpack, type Parts } from "./zip.js";
import { Unreadable } from "./unreadable.js";

export interface Sheet { readonly name: string; readonly hidden: boolean }

export interface Table {
  readonly sheet: string;
  /** UTF-8 with commas and LF; its n-th record is the sheet's n-th row. */
  readonly csv: Uint8Array;
  /** Cells that are empty because the program that wrote their formulas left the values out. */
  readonly uncalculated: number;
}

export interface Workbook {
  readonly sheets: readonly Sheet[];
  /** The table on a sheet; without a name, on the first with cells, hidden ones last. */
  table(sheet?: string): Table;
}

const ZIP = [0x50, 0x4b, 3, 4], OLE = [0xd0, 0xcf, 0x11, 0xe0];

/** Whether a file is for `readSpreadsheet`, by its first bytes: also one that it explains to be no workbook. */
export function isSpreadsheet(bytes: Uint8Array): boolean {
  return [ZIP, OLE].some((start) => start.every((byte, k) => bytes[k] === byte));
}

/** Opens a workbook. This and its tables throw nothing but `Unreadable`. */
export function readSpreadsheet(bytes: Uint8Array): Workbook {
  return told(() => {
    if (OLE.every((byte, k) => bytes[k] === byte)) throw new Unreadable(isEncrypted(bytes) ? "encrypted" : "oldFormat");
    if (!isSpreadsheet(bytes)) throw new Unreadable("unknown");
    return open(partsOf(bytes));
  });
}

/** Whatever else is thrown (by what unpacks or decodes) is because of damage. */
function told<T>(read: () => T): T {
  try {
    return read();
  } catch (error) {
    if (error instanceof Unreadable) throw error;
    throw Object.assign(new Unreadable("damaged"), { cause: error });
  }
}

function isEncrypted(bytes: Uint8Array): boolean {
  return new TextDecoder("utf-16le").decode(bytes).includes("EncryptedPackage");
}

function open(parts: Parts): Workbook {
  const path = [...targets(parts, "").values()].find(({ kind }) => kind === "officeDocument")?.path ?? "";
  const main = parts.get(path);
  if (!main) throw new Unreadable(otherKind(parts));
  if (path.endsWith(".bin")) throw new Unreadable("binary");
  const named = targets(parts, path);
  const { sheets: listed, since1904 } = bookOf(main);
  const sheets = listed.filter(({ target }) => named.get(target)?.kind === "worksheet");
  if (sheets.length === 0) throw new Unreadable("noWorkbook");
  // So that nothing is read over and over while a sheet with cells is looked for.
  if (new Set(sheets.map(({ target }) => named.get(target)?.path)).size < sheets.length) throw new Unreadable("forged");

  const only = (wanted: string) => parts.get([...named.values()].find(({ kind }) => kind === wanted)?.path ?? "");
  let common: Common | undefined;
  const read = ({ name, target }: Listed): Table => {
    common ??= { texts: textsOf(only("sharedStrings")), kinds: kindsOf(only("styles")), since1904 };
    const part = parts.get(named.get(target)?.path ?? "");
    if (!part) throw new Unreadable("damaged");
    return { sheet: name, ...cellsOf(part, name, common) };
  };
  const table = (wanted?: string): Table => {
    const asked = wanted === undefined ? visibleFirst(sheets) : sheets.filter(({ name }) => name === wanted);
    if (wanted !== undefined && asked.length === 0) throw new Unreadable("noSheet", wanted, sheets.map(({ name }) => name));
    for (const sheet of asked) {
      const found = read(sheet);
      if (found.csv.length > 0) return found;
    }
    throw new Unreadable("empty", asked.map(({ name }) => name));
  };
  return { sheets: sheets.map(({ name, hidden }) => ({ name, hidden })), table: (wanted) => told(() => table(wanted)) };
}

function visibleFirst(sheets: readonly Listed[]): Listed[] {
  return [...sheets.filter(({ hidden }) => !hidden), ...sheets.filter(({ hidden }) => hidden)];
}

/** What an archive is that holds no workbook that can be read. */
function otherKind(parts: Parts): "openDocument" | "numbers" | "noWorkbook" {
  const mimetype = parts.get("mimetype");
  let said = "";
  if (mimetype && mimetype.size < 200) unpack(mimetype, (piece) => (said += new TextDecoder().decode(piece)));
  if (said.includes("opendocument.spreadsheet")) return "openDocument";
  if (parts.has("index.zip") || [...parts.keys()].some((name) => name.endsWith(".iwa"))) return "numbers";
  return "noWorkbook";
}
