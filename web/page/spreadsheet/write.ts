// Tables as a workbook (.xlsx), looking like those that the programs themselves write: a bold heading
// row that stays in view, columns of one width.

import { Zip, ZipDeflate } from "fflate";

export type Cell = string | number | boolean | null;

export interface NamedTable {
  name: string;
  header: readonly string[];
  rows: readonly (readonly Cell[])[];
}

const TYPE = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet";
const ROWS = 1_048_576, COLUMNS = 16_384, LONGEST_TEXT = 32_767, LONGEST_NAME = 31;
const MADE = new Date(1980, 0, 1); // so that the same tables give the same bytes
const SPACE = "http://schemas.openxmlformats.org";
const MAIN = `${SPACE}/spreadsheetml/2006/main`, RELATIONSHIPS = `${SPACE}/officeDocument/2006/relationships`;
const HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n';
const WIDTH = 14.7109375; // 14 digits and the room at both sides

/** A workbook. Rows that a sheet has no room for go on in a further one, under the same heading. */
export function workbook(tables: readonly NamedTable[]): Blob {
  const names = new Names();
  const sheets = tables.flatMap(inSheets).map((sheet) => ({ ...sheet, name: names.add(sheet.name) }));
  const packed: Uint8Array<ArrayBuffer>[] = [];
  const zip = new Zip((error, piece) => {
    if (error) throw error;
    packed.push(piece);
  });
  const add = (path: string, pieces: Iterable<string>) => {
    const file = Object.assign(new ZipDeflate(path, { level: 4 }), { mtime: MADE });
    zip.add(file);
    for (const piece of pieces) file.push(encoder.encode(piece));
    file.push(new Uint8Array(0), true);
  };
  for (const [path, text] of frame(sheets.map(({ name }) => name))) add(path, [HEAD, text]);
  sheets.forEach((sheet, k) => add(sheetPath(k), sheetPieces(sheet, k === 0)));
  zip.end();
  return new Blob(packed, { type: TYPE });
}

const encoder = new TextEncoder();
const sheetPath = (k: number) => `xl/worksheets/sheet${k + 1}.xml`;

function inSheets({ name, header, rows }: NamedTable): NamedTable[] {
  if (header.length > COLUMNS) throw new RangeError(`${name}: ${header.length} columns`);
  const room = ROWS - 1;
  const count = Math.max(1, Math.ceil(rows.length / room));
  return Array.from({ length: count }, (_, k) => ({ name, header, rows: rows.slice(k * room, (k + 1) * room) }));
}

/** Makes names of sheets valid and different. */
class Names {
  private readonly given = new Set(["history"]); // which spreadsheet programs keep to themselves

  add(wanted: string): string {
    const valid = wanted.replaceAll("'", "’").replace(/[[\]:*?/\\\u0000-\u001f\ufffe\uffff]/g, "_").trim() || "Sheet";
    for (let k = 1; ; ++k) {
      const suffix = k === 1 ? "" : ` (${k})`;
      const name = valid.slice(0, LONGEST_NAME - suffix.length) + suffix;
      if (this.given.has(name.toLowerCase())) continue;
      this.given.add(name.toLowerCase());
      return name;
    }
  }
}

/** The parts that say what is where and how it looks. */
function frame(names: readonly string[]): [path: string, xml: string][] {
  const each = (made: (name: string, k: number) => string) => names.map(made).join("");
  const types =
    `<Types xmlns="${SPACE}/package/2006/content-types">` +
    '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>' +
    '<Default Extension="xml" ContentType="application/xml"/>' +
    content("xl/workbook.xml", "sheet.main") + content("xl/styles.xml", "styles") + each((_, k) => content(sheetPath(k), "worksheet")) +
    "</Types>";
  const book =
    `<workbook xmlns="${MAIN}" xmlns:r="${RELATIONSHIPS}"><bookViews><workbookView/></bookViews><sheets>` +
    each((name, k) => `<sheet name="${escaped(name)}" sheetId="${k + 1}" r:id="rId${k + 1}"/>`) +
    "</sheets></workbook>";
  return [
    ["[Content_Types].xml", types],
    ["_rels/.rels", relationships([["officeDocument", "xl/workbook.xml"]])],
    ["xl/workbook.xml", book],
    ["xl/_rels/workbook.xml.rels", relationships([...names.map((_, k): [string, string] => ["worksheet", `/${sheetPath(k)}`]), ["styles", "styles.xml"]])],
    ["xl/styles.xml", STYLES],
  ];
}

function content(path: string, kind: string): string {
  return `<Override PartName="/${path}" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.${kind}+xml"/>`;
}

function relationships(all: [kind: string, target: string][]): string {
  const each = all.map(([kind, target], k) => `<Relationship Id="rId${k + 1}" Type="${RELATIONSHIPS}/${kind}" Target="${target}"/>`);
  return `<Relationships xmlns="${SPACE}/package/2006/relationships">${each.join("")}</Relationships>`;
}

// The second font, and the second format of cells, is that of headings.
const font = (bold: string) => `<font>${bold}<sz val="11"/><name val="Calibri"/><family val="2"/></font>`;
const format = (font: number, more: string) => `<xf numFmtId="0" fontId="${font}" fillId="0" borderId="0"${more}/>`;
const STYLES =
  `<styleSheet xmlns="${MAIN}"><fonts count="2">${font("")}${font("<b/>")}</fonts>` +
  '<fills count="2"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/></fill></fills>' +
  '<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>' +
  `<cellStyleXfs count="1">${format(0, "")}</cellStyleXfs>` +
  `<cellXfs count="2">${format(0, ' xfId="0"')}${format(1, ' xfId="0" applyFont="1"')}</cellXfs>` +
  '<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>';

function* sheetPieces({ header, rows }: NamedTable, first: boolean): Iterable<string> {
  const frozen = '<pane ySplit="1" topLeftCell="A2" activePane="bottomLeft" state="frozen"/><selection pane="bottomLeft"/>';
  const view = `<sheetView${first ? ' tabSelected="1"' : ""} workbookViewId="0">${frozen}</sheetView>`;
  const columns = header.map((_, k) => columnName(k));
  const widths = header.length === 0 ? "" : `<cols><col min="1" max="${header.length}" width="${WIDTH}" customWidth="1"/></cols>`;
  yield `${HEAD}<worksheet xmlns="${MAIN}"><sheetViews>${view}</sheetViews><sheetFormatPr defaultRowHeight="15"/>${widths}<sheetData>`;
  yield rowXml(header, 1, columns, ' s="1"');
  let piece = "";
  for (const [k, row] of rows.entries()) {
    piece += rowXml(row, k + 2, columns, "");
    if (piece.length < 2 ** 16) continue;
    yield piece;
    piece = "";
  }
  yield `${piece}</sheetData><pageMargins left="0.7" right="0.7" top="0.75" bottom="0.75" header="0.3" footer="0.3"/></worksheet>`;
}

function rowXml(row: readonly Cell[], number: number, columns: string[], style: string): string {
  let cells = "";
  for (let k = 0; k < row.length; ++k) cells += cellXml(row[k] ?? null, `r="${(columns[k] ??= columnName(k))}${number}"${style}`);
  return `<row r="${number}">${cells}</row>`;
}

/** An empty cell is not written. */
function cellXml(cell: Cell, place: string): string {
  if (typeof cell === "number") return Number.isFinite(cell) ? `<c ${place}><v>${cell}</v></c>` : "";
  if (typeof cell === "boolean") return `<c ${place} t="b"><v>${Number(cell)}</v></c>`;
  if (cell === null || cell === "") return "";
  const blanks = /^\s|\s$/.test(cell) ? ' xml:space="preserve"' : "";
  return `<c ${place} t="inlineStr"><is><t${blanks}>${cellText(cell.slice(0, LONGEST_TEXT))}</t></is></c>`;
}

/** Characters that XML cannot hold stand as _x0001_ in cells, and so does what would be taken for one. */
function cellText(text: string): string {
  const code = (character: string) => `_x${character.charCodeAt(0).toString(16).toUpperCase().padStart(4, "0")}_`;
  return escaped(text.replace(/_(?=x[0-9a-f]{4}_)/gi, "_x005F_").replace(/[\u0000-\u0008\u000b-\u001f\ufffe\uffff]/g, code));
}

function escaped(text: string): string {
  return text.replace(/[&<>"]/g, (character) => `&#${character.charCodeAt(0)};`);
}

function columnName(k: number): string {
  return (k < 26 ? "" : columnName(Math.floor(k / 26) - 1)) + String.fromCharCode(65 + (k % 26));
}
