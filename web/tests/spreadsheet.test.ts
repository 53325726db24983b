// Workbooks as people have them, and as nobody should send them.

import { expect, test } from "@playwright/test";
import { strToU8, unzipSync, zipSync, type Zippable } from "fflate";
import { readSpreadsheet } from "../page/spreadsheet/read.js";
import { reasons } from "../page/spreadsheet/reasons.js";
import { reasons as german } from "../page/spreadsheet/reasons.de.js";
import { sentence, Unreadable, type Reason } from "../page/spreadsheet/unreadable.js";
import { workbook, type Cell } from "../page/spreadsheet/write.js";

const KIND = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const relationships = (...all: [id: string, kind: string, target: string][]) =>
  `<Relationships>${all.map(([id, kind, target]) => `<Relationship Id="${id}" Type="${KIND}/${kind}" Target="${target}"/>`).join("")}</Relationships>`;
const ROOT = relationships(["a", "officeDocument", "/xl/workbook.xml"]);
const FORMATS = [0, 14, 170, 171, 172, 21];
const STYLES = `<styleSheet><numFmts><numFmt numFmtId="170" formatCode="dd&quot;. Tag &quot;mmm\\ yyyy;@"/>
  <numFmt numFmtId="171" formatCode="[Red]0.0\\ &quot;days&quot;"/><numFmt numFmtId="172" formatCode="[h]:mm"/></numFmts>
  <cellStyleXfs><xf numFmtId="14"/></cellStyleXfs><cellXfs>${FORMATS.map((id) => `<xf numFmtId="${id}"/>`).join("")}</cellXfs></styleSheet>`;

/** A workbook of sheets by name, given as the inside of <sheetData>; names that begin with "-" are hidden. */
function packed(sheets: Record<string, string>, { strings = "", settings = "", more = {} as Zippable } = {}): Uint8Array {
  const names = Object.keys(sheets);
  const listed = names.map((name, k) => `<x:sheet name="${name}" q:id="s${k}"${name.startsWith("-") ? ' state="veryHidden"' : ""}/>`);
  const targets = names.map((name, k) => [`s${k}`, name === "Chart" ? "chartsheet" : "worksheet", `worksheets/sheet%20${k}.xml`] as [string, string, string]);
  const sheet = (rows: string) => strToU8(`<worksheet><sheetData>${rows}</sheetData><extLst><c r="A9"><v>9</v></c></extLst></worksheet>`);
  return zipSync({
    "_rels/.rels": strToU8(ROOT),
    "xl/workbook.xml": strToU8(`<x:workbook xmlns:q="${KIND}">${settings}<x:sheets>${listed.join("")}</x:sheets></x:workbook>`),
    "xl/_rels/workbook.xml.rels": strToU8(relationships(["t", "sharedStrings", "SharedStrings.xml"], ["f", "styles", "../xl/styles.xml"], ...targets)),
    "xl/sharedStrings.xml": strToU8(`<sst>${strings}</sst>`),
    "xl/styles.xml": strToU8(STYLES),
    ...Object.fromEntries(names.map((name, k) => [`xl/worksheets/sheet ${k}.xml`, sheet(sheets[name]!)])),
    ...more,
  });
}

const csv = (bytes: Uint8Array, sheet?: string) => new TextDecoder().decode(readSpreadsheet(bytes).table(sheet).csv);
const cells = (row: string, options = {}) => csv(packed({ One: `<row r="1">${row}</row>` }, options)).slice(0, -1);
const number = (value: string, format = 0, settings = "") => cells(`<c r="A1" s="${format}"><v>${value}</v></c>`, { settings });
const inline = (text: string) => cells(`<c r="A1" t="inlineStr"><is>${text}</is></c>`);

test("numbers keep their digits, dates become ISO", () => {
  const plain: [string, string][] = [
    ["276000912345678", "276000912345678"], ["2.76000912345678E+14", "276000912345678"], ["12345678901234567890", "12345678901234567890"],
    ["0.30000000000000004", "0.30000000000000004"], ["1.1000000000000001", "1.1"], ["-1.5E-7", "-0.00000015"], ["1E22", "10000000000000000000000"],
    ["007", "7"], [" 1.50 ", "1.5"], ["NaN", "NaN"],
  ];
  for (const [written, shown] of plain) expect.soft(number(written), written).toBe(shown);
  const dates: [string, number, string][] = [
    ["44259", 1, "2021-03-04"], ["44259.4375", 2, "2021-03-04T10:30:00"], ["44258.9999999", 2, "2021-03-04"],
    ["59", 1, "1900-02-28"], ["60", 1, "1900-02-29"], ["61", 1, "1900-03-01"], ["0", 1, "0"], ["-3", 1, "-3"], ["2958466", 1, "2958466"],
    ["44259", 3, "44259"], ["1.5", 4, "1.5"], ["0.4375", 5, "10:30:00"], ["44259", 0, "44259"],
  ];
  for (const [written, format, shown] of dates) expect.soft(number(written, format), `${written} ${format}`).toBe(shown);
  expect(number("42797", 1, '<workbookPr date1904="1"/>')).toBe("2021-03-04");
  expect(cells('<c r="A1" t="d"><v>2021-03-04T00:00:00</v></c><c r="B1" t="b"><v>1</v></c><c r="C1" t="e"><v>#N/A</v></c>')).toBe("2021-03-04,TRUE,#N/A");
});

test("texts are those of the cells, whatever they look like", () => {
  expect(inline("<t> =1+1 </t>")).toBe(" =1+1 ");
  expect(inline('<r><rPr/><t>rich </t></r><r><t xml:space="preserve">text</t></r><rPh><t>sound</t></rPh>')).toBe("rich text");
  expect(inline("<t>a&amp;b&#x1F404;&#228;<!-- --><![CDATA[<&amp;]]></t>")).toBe('"a&b🐄ä<&amp;"');
  expect(inline('<t>x,"y"\r\nz_x000D__x0000_</t>')).toBe('"x,""y""\nz\r\ufffd"');
  expect(inline("<t>sep=;</t>")).toBe('"sep=;"'); // which would tell of another separator
  expect(cells('<c r="A1" t="s"><v>0</v></c><c r="B1" t="s"><v>1</v></c><c r="C1" t="s"><v>2</v></c>', { strings: "<si><t>__proto__</t></si><si><t>constructor</t></si><si><t>0012</t></si>" })).toBe("__proto__,constructor,0012");
  const many = Array.from({ length: 2500 }, (_, k) => k);
  expect(cells(many.map((k) => `<c t="s"><v>${k}</v></c>`).join(""), { strings: many.map((k) => `<si><t>DE ${k}</t></si>`).join("") })).toBe(many.map((k) => `DE ${k}`).join(","));
});

test("cells stay where they are; formulas are their last values", () => {
  const rows = '<row r="3"><c r="B3"><v>1</v></c><c r="D3"/><c r="AA3" t="str"><f>B3</f><v>x</v></c></row><row r="4" ht="9"/><row><c t="str"><f>""</f><v></v></c><c><f>1+1</f></c><c><v>2</v></c></row>';
  const table = readSpreadsheet(packed({ One: rows })).table();
  expect(new TextDecoder().decode(table.csv)).toBe(`\n\n,1${",".repeat(25)}x\n\n,,2\n`);
  expect(table.uncalculated).toBe(1);
  const prefixed = '<x:sheetData><x:row r="1"><x:c r="A1"><x:v>5</x:v></x:c></x:row></x:sheetData>';
  expect(csv(packed({ One: "" }, { more: { "xl/worksheets/sheet 0.xml": strToU8(`<x:worksheet>${prefixed}</x:worksheet>`) } }))).toBe("5\n");
});

test("archives may tell numbers in 64 bits", () => {
  const bytes = packed({ One: "<row><c><v>6</v></c></row>" }, { more: { "_rels/.rels": [strToU8(ROOT), { extra: { 1: new Uint8Array(8) } }] } });
  expect(csv(claiming(bytes, 42, () => 0xffffffff))).toBe("6\n");
});

test("the first sheet with cells is read, or the one that is named", () => {
  const one = (value: number) => `<row r="1"><c r="A1"><v>${value}</v></c></row>`;
  const bytes = packed({ "-old": one(1), Chart: "", Empty: '<row r="2"/>', Herd: one(2), "a&amp;b": one(3), ["__proto__"]: one(4), constructor: one(5) });
  const book = readSpreadsheet(bytes);
  expect(book.sheets.map(({ name, hidden }) => `${name} ${hidden}`)).toEqual(["-old true", "Empty false", "Herd false", "a&b false", "__proto__ false", "constructor false"]);
  expect(book.table().sheet).toBe("Herd");
  expect(["a&b", "__proto__", "constructor", "-old"].map((name) => csv(bytes, name))).toEqual(["3\n", "4\n", "5\n", "1\n"]);
  expect(refusal(() => book.table("toString"))).toBe("noSheet");
  expect(refusal(() => book.table("Empty"))).toBe("empty");
  expect(readSpreadsheet(packed({ Empty: "", "-old": one(1) })).table().sheet).toBe("-old");
});

/** Why nothing is read; told in both languages. */
function refusal(read: () => unknown): Reason | undefined {
  try {
    read();
  } catch (error) {
    if (!(error instanceof Unreadable)) throw error;
    for (const words of [reasons, german]) expect(sentence(words, error)).toMatch(/^\S.{20,}\.$/);
    return error.reason;
  }
  return undefined;
}

/** Changes a number of 32 bits in what the directory tells of its n-th part. */
function claiming(bytes: Uint8Array, field: number, change: (value: number) => number, part = 0): Uint8Array {
  const view = new DataView(bytes.slice().buffer);
  let at = view.getUint32(bytes.length - 6, true);
  for (; part > 0; --part) at += 46 + view.getUint16(at + 28, true) + view.getUint16(at + 30, true);
  view.setUint32(at + field, change(view.getUint32(at + field, true)), true);
  return new Uint8Array(view.buffer);
}

test("what cannot be read is refused at once, and said why", () => {
  const one = { One: '<row r="1"><c r="A1"><v>1</v></c></row>' };
  const fine = packed(one);
  const text = "unusual text ".repeat(2500);
  const ole = new Uint8Array(1024).fill(7);
  ole.set([0xd0, 0xcf, 0x11, 0xe0]);
  const encrypted = ole.slice();
  [..."EncryptedPackage"].forEach((letter, k) => encrypted.set([letter.charCodeAt(0), 0], 512 + 2 * k));
  const sheet = (rows: string, strings = "") => packed({ One: rows }, { strings });
  const wide = Array.from({ length: 700 }, (_, k) => `<row r="${k + 1}"><c r="XFD${k + 1}"><v>1</v></c></row>`).join("");
  const repeated = `<row r="1">${'<c t="s"><v>0</v></c>'.repeat(16_000)}</row>`;
  const files: [string, Uint8Array, Reason][] = [
    ["nothing", new Uint8Array(), "unknown"], ["a CSV file", strToU8("a,b\n1,2\n"), "unknown"], ["an old workbook", ole, "oldFormat"], ["a password", encrypted, "encrypted"],
    ["a password of ZIP", claiming(fine, 8, (flags) => flags | 1), "encrypted"],
    ["OpenDocument", zipSync({ mimetype: [strToU8("application/vnd.oasis.opendocument.spreadsheet"), { level: 0 }], "content.xml": strToU8("<a/>") }), "openDocument"],
    ["Numbers", zipSync({ "Index/Document.iwa": strToU8("x") }), "numbers"], ["some archive", zipSync({ "a.txt": strToU8("x") }), "noWorkbook"],
    ["a binary workbook", zipSync({ "_rels/.rels": strToU8(relationships(["a", "officeDocument", "xl/workbook.bin"])), "xl/workbook.bin": strToU8("x") }), "binary"],
    ["cut off", fine.subarray(0, -30), "damaged"], ["another byte", claiming(fine, 16, (sum) => sum ^ 1), "damaged"], ["cut off within", sheet("<row><c><v>1"), "damaged"],
    ["swelling", packed({}, { more: { "xl/media/a": new Uint8Array(2 ** 25) } }), "tooLarge"],
    ["a claim of 800 MB", claiming(packed({}, { more: { "xl/media/a": [new Uint8Array(3e6), { level: 0 }] } }), 24, () => 8.5e8, 5), "tooLarge"],
    ["more than claimed", claiming(fine, 24, (size) => size - 1), "forged"], ["less than claimed", claiming(fine, 24, (size) => size + 1), "damaged"],
    ["parts over each other", claiming(packed(one, { more: { "xl/media/a": strToU8("a") } }), 42, () => 0, 6), "forged"],
    ["two parts of a name", claiming(packed(one, { more: { "xl/media/a": strToU8("a"), "xl/media/b": strToU8("b") } }), 52, (letters) => letters - 2 ** 24, 7), "forged"],
    ["beyond the end", claiming(fine, 42, () => 0xfffffff0, 1), "damaged"],
    ["many parts", zipSync(Object.fromEntries(Array.from({ length: 10_001 }, (_, k) => [`xl/${k}`, new Uint8Array()])), { level: 0 }), "forged"],
    ["entities", packed({ One: "" }, { more: { "xl/worksheets/sheet 0.xml": strToU8('<!DOCTYPE a [<!ENTITY b "lol"><!ENTITY c "&b;&b;">]><worksheet/>') } }), "forged"],
    ["an unknown entity", sheet("<row><c><v>&b;</v></c></row>"), "forged"], ["deep", sheet("<a>".repeat(9999)), "forged"],
    ["an endless text", packed({ One: "" }, { more: { "xl/worksheets/sheet 0.xml": [strToU8(`<a>${text.repeat(20)}</a>`), { level: 0 }] } }), "forged"],
    ["no UTF-8", packed({}, { more: { "xl/workbook.xml": strToU8("<a>ÿ</a>", true) } }), "damaged"], ["a far row", sheet('<row r="4000000000"><c><v>1</v></c></row>'), "outside"],
    ["a far column", sheet('<row r="1"><c r="XFE1"><v>1</v></c></row>'), "outside"],
    ["many texts in a cell", sheet(`<row><c t="inlineStr"><is>${`<t>${text}</t>`.repeat(20)}</is></c></row>`), "forged"],
    ["sheets in one part", packed({ One: "", Two: "" }, { more: { "xl/_rels/workbook.xml.rels": strToU8(relationships(["s0", "worksheet", "a"], ["s1", "worksheet", "/xl/a"])) } }), "forged"],
    ["a NUL", sheet("<row><c><v>\0</v></c></row>"), "damaged"], ["rows in disorder", sheet('<row r="2"/><row r="1"/>'), "damaged"],
    ["a cell of another row", sheet('<row r="2"><c r="A1"/></row>'), "damaged"], ["an unknown text", sheet('<row><c t="s"><v>7</v></c></row>'), "damaged"],
    ["wide rows", sheet(wide), "tooManyCells"], ["one text many times", sheet(repeated, `<si><t>${text}</t></si>`), "tooManyCells"],
    ["endless cells", sheet(`<row>${"<c/>".repeat(20_000)}</row>`), "outside"],
  ];
  const before = process.memoryUsage().rss;
  for (const [name, bytes, reason] of files) {
    const start = performance.now();
    expect.soft(refusal(() => readSpreadsheet(bytes).table()), name).toBe(reason);
    expect.soft(performance.now() - start, name).toBeLessThan(2000);
    expect.soft((process.memoryUsage().rss - before) / 1e6, name).toBeLessThan(100); // MB
  }
});

test("what is written is read again, and is no formula", async () => {
  const rows: Cell[][] = [["=1+1", "+1", "@a", -0.1, true], ["__proto__", " \t\n\r\u0001_x0041_ ", "]]>&<\"", NaN, null], ["🐄", "constructor", "", 1e-9, Infinity]];
  const header = ["Tier", "b", "c", "d", "e"];
  const names = ["Candidates: \\the/ [best] ones of all?", "Candidates_ _the_ _best_ ones of all", "history", "'", ""];
  const bytes = new Uint8Array(await workbook(names.map((name) => ({ name, header, rows }))).arrayBuffer());
  const book = readSpreadsheet(bytes);
  const valid = book.sheets.map(({ name }) => name);
  expect(new Set(valid.map((name) => name.toLowerCase())).size).toBe(5);
  for (const name of valid) expect(name).toMatch(/^(?!history$)[^[\]:*?/\\']{1,31}$/i);
  expect(csv(bytes, valid[4])).toBe('Tier,b,c,d,e\n=1+1,+1,@a,-0.1,TRUE\n__proto__," \t\n\r\u0001_x0041_ ","]]>&<"""\n🐄,constructor,,0.000000001\n');
  const inside = Object.values(unzipSync(bytes)).map((part) => new TextDecoder().decode(part)).join("");
  expect(inside).not.toMatch(/<f[ >]|]]>|[\u0000-\u0008\u000b-\u001f]|NaN|Infinity/);
  expect(inside).toContain('state="frozen"');
});
