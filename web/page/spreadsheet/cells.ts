// The cells of a sheet as CSV.

import { Text, unescaped, type Texts } from "./contents.js";
import { dateText, plainNumber, type Kind } from "./values.js";
import { readXml, type Listener } from "./xml.js";
import type { Part } from "./zip.js";
import { Unreadable } from "./unreadable.js";

/** What the cells of all sheets of a workbook refer to. */
export interface Common { texts: Texts; kinds: readonly Kind[]; since1904: boolean }

export interface Cells { csv: Uint8Array; uncalculated: number }

const ROWS = 1_048_576, COLUMNS = 16_384;
const MOST_CELLS = 10_000_000, MOST_BYTES = 200 * 2 ** 20;

/** The cells of the sheet `name`. */
export function cellsOf(part: Part, name: string, common: Common): Cells {
  const reader = new Reader(name, common);
  readXml(part, reader);
  return { csv: reader.csv.bytes(), uncalculated: reader.uncalculated };
}

/**
 * Rows as text. Rows without cells are empty lines, so that the n-th record is the sheet's n-th
 * row, and the empty cells that end a row are left out.
 */
class Csv {
  private readonly pieces: Uint8Array[] = [];
  private readonly encoder = new TextEncoder();
  private text = "";
  private fields: string[] = [];
  private rows = 0;
  private cells = 0;
  private letters = 0;
  private size = 0;

  constructor(private readonly sheet: string) {}

  put(column: number, text: string): void {
    this.fields[column - 1] = field(text);
    this.letters += text.length;
    if (this.letters > MOST_BYTES) throw new Unreadable("tooManyCells", this.sheet);
  }

  endRow(row: number): void {
    if (this.fields.length === 0) return;
    this.cells += this.fields.length;
    if (this.cells > MOST_CELLS) throw new Unreadable("tooManyCells", this.sheet);
    this.text += `${"\n".repeat(row - this.rows - 1)}${this.fields.join(",")}\n`;
    this.fields = [];
    this.rows = row;
    if (this.text.length > 2 ** 16) this.encode();
  }

  bytes(): Uint8Array {
    this.encode();
    const all = new Uint8Array(this.size);
    let at = 0;
    for (const piece of this.pieces) {
      all.set(piece, at);
      at += piece.length;
    }
    return all;
  }

  private encode(): void {
    const piece = this.encoder.encode(this.text);
    this.pieces.push(piece);
    this.size += piece.length;
    this.text = "";
    if (this.size > MOST_BYTES) throw new Unreadable("tooManyCells", this.sheet);
  }
}

/** In quotes also where another separator stands, so that none but the comma can be taken for it. */
function field(text: string): string {
  return /[",;\t|\r\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
}

class Reader implements Listener {
  readonly csv: Csv;
  uncalculated = 0;
  private within = false;
  private row = 0;
  private column = 0;
  private type: string | undefined;
  private format: string | undefined;
  private formula = false;
  private readonly content = new Text();

  constructor(private readonly sheet: string, private readonly common: Common) {
    this.csv = new Csv(sheet);
  }

  open(name: string, attributes: () => Readonly<Record<string, string | undefined>>): void {
    if (name === "sheetData") this.within = true;
    if (!this.within) return;
    if (name === "row") this.startRow(attributes()["r"]);
    else if (name === "c") {
      const { r, t, s } = attributes();
      this.column = this.columnOf(r);
      this.type = t;
      this.format = s;
      this.formula = false;
    } else if (name === "f") this.formula = true;
    this.content.open(name);
  }

  close(name: string): void {
    if (!this.within) return;
    this.content.close(name);
    if (name === "c") this.endCell();
    else if (name === "row") this.csv.endRow(this.row);
    else if (name === "sheetData") this.within = false;
  }

  text(text: string): void {
    if (this.within) this.content.add(text);
  }

  /** Rows and cells that do not say where they are follow the last one. */
  private startRow(told: string | undefined): void {
    const row = told === undefined ? this.row + 1 : Number(told);
    if (row > ROWS) throw new Unreadable("outside", this.sheet);
    if (!Number.isInteger(row) || row <= this.row) throw new Unreadable("damaged");
    this.row = row;
    this.column = 0;
  }

  private columnOf(place: string | undefined): number {
    if (place === undefined) return this.column + 1;
    let column = 0, k = 0;
    for (let letter; (letter = place.charCodeAt(k) - 64) >= 1 && letter <= 26; ++k) column = column * 26 + letter;
    if (column === 0 || place.slice(k) !== String(this.row)) throw new Unreadable("damaged");
    return column;
  }

  private endCell(): void {
    if (this.column > COLUMNS) throw new Unreadable("outside", this.sheet);
    const text = this.shown(this.content.take());
    if (text !== "") this.csv.put(this.column, text);
    else if (this.formula && this.type !== "str") ++this.uncalculated;
  }

  /** What the cell shows, but numbers and dates in the same way everywhere. */
  private shown(value: string): string {
    if (this.type === "inlineStr" || this.type === "str") return unescaped(value);
    const plain = value.trim();
    if (plain === "") return "";
    if (this.type === "s") {
      const text = this.common.texts.at(Number(plain));
      if (text === undefined) throw new Unreadable("damaged");
      return text;
    }
    if (this.type === "b") return plain === "1" || plain === "true" ? "TRUE" : "FALSE";
    if (this.type === "d") return plain.replace(/T00:00(:00(\.0*)?)?Z?$/, "");
    if (this.type === "e") return plain;
    const kind = this.common.kinds[Number(this.format)] ?? "number";
    return (kind !== "number" && dateText(Number(plain), kind, this.common.since1904)) || plainNumber(plain);
  }
}
