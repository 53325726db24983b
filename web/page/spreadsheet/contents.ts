// What a workbook's parts other than its sheets say: where things are, texts, formats.

import { kindOf, type Kind } from "./values.js";
import { attribute, local, LONGEST, readXml, type Listener } from "./xml.js";
import { megabytes, type Part, type Parts } from "./zip.js";
import { Unreadable } from "./unreadable.js";

const LARGEST = 2 ** 25; // of a part that only lists things, in bytes

function readList(part: Part | undefined, listener: Listener): void {
  if (!part) return;
  if (part.size > LARGEST) throw new Unreadable("tooLarge", megabytes(part.size));
  readXml(part, listener);
}

/** A part that another one names. */
export interface Target { kind: string; path: string }

export interface Listed { name: string; hidden: boolean; target: string }

/** What the part `path` names, by what it calls each; a kind is "worksheet", "styles" and so on. */
export function targets(parts: Parts, path: string): Map<string, Target> {
  const found = new Map<string, Target>();
  const [, folder = "", file = ""] = /^(.*\/)?([^/]*)$/.exec(path) ?? [];
  readList(parts.get(`${folder}_rels/${file}.rels`), {
    open(name, attributes) {
      if (name !== "Relationship") return;
      const [id, type = "", target = ""] = ["Id", "Type", "Target"].map((key) => attribute(attributes(), key));
      if (id === undefined || attribute(attributes(), "TargetMode") === "External") return;
      const { pathname } = new URL(target, `file:///${folder}`);
      found.set(id, { kind: type.slice(type.lastIndexOf("/") + 1), path: decodeURIComponent(pathname).slice(1).toLowerCase() });
    },
  });
  return found;
}

/** The sheets of a workbook, and whether it counts its days from 1904. */
export function bookOf(part: Part): { sheets: Listed[]; since1904: boolean } {
  const sheets: Listed[] = [];
  let since1904 = false;
  readList(part, {
    open(name, attributes) {
      if (name === "workbookPr") since1904 = /^(1|true)$/.test(attribute(attributes(), "date1904") ?? "");
      if (name !== "sheet") return;
      const id = Object.keys(attributes()).find((key) => key !== "id" && local(key) === "id") ?? "id";
      const hidden = /hidden$/i.test(attribute(attributes(), "state") ?? "");
      sheets.push({ name: attribute(attributes(), "name") ?? "", hidden, target: attribute(attributes(), id) ?? "" });
    },
  });
  return { sheets, since1904 };
}

/** What the numbers of each format of cells stand for. */
export function kindsOf(part: Part | undefined): Kind[] {
  const codes = new Map<number, string>();
  const formats: number[] = [];
  let within = "";
  readList(part, {
    open(name, attributes) {
      if (name === "numFmts" || name === "cellXfs") within = name;
      const id = () => Number(attribute(attributes(), "numFmtId") ?? 0);
      if (within === "numFmts" && name === "numFmt") codes.set(id(), attribute(attributes(), "formatCode") ?? "");
      if (within === "cellXfs" && name === "xf") formats.push(id());
    },
    close(name) {
      if (name === within) within = "";
    },
  });
  return formats.map((id) => kindOf(id, codes.get(id)));
}

/** Gathers the text of a cell, whose parts may be formatted; how East Asian letters sound is left out. */
export class Text {
  private text = "";
  private taking = false;
  private sound = false;

  open(name: string): void {
    if (name === "rPh") this.sound = true;
    this.taking = !this.sound && (name === "t" || name === "v");
  }
  close(name: string): void {
    if (name === "rPh") this.sound = false;
    this.taking = false;
  }
  add(text: string): void {
    if (this.taking) this.text += text;
    if (this.text.length > LONGEST) throw new Unreadable("forged");
  }
  /** The text, and an empty one from then on. */
  take(): string {
    const text = this.text;
    this.text = "";
    return text;
  }
}

const BLOCK = 1024; // texts
const MOST_TEXTS = 5_000_000, MOST_LETTERS = 2 ** 27;

/** Many texts in little memory: a text cut out of a document would keep all of that. */
export class Texts {
  private readonly blocks: { letters: string; ends: Uint32Array }[] = [];
  private block: string[] = [];
  private letters = 0;

  get isFull(): boolean {
    return this.blocks.length * BLOCK > MOST_TEXTS || this.letters > MOST_LETTERS;
  }
  add(text: string): void {
    this.letters += text.length;
    this.block.push(text);
    if (this.block.length === BLOCK) this.endBlock();
  }
  at(k: number): string | undefined {
    const block = this.blocks[Math.floor(k / BLOCK)], end = block?.ends[k % BLOCK];
    return end === undefined ? undefined : block?.letters.slice(block.ends[(k % BLOCK) - 1] ?? 0, end);
  }
  endBlock(): void {
    let end = 0;
    this.blocks.push({ letters: this.block.join(""), ends: Uint32Array.from(this.block, (text) => (end += text.length)) });
    this.block = [];
  }
}

/** The texts that cells name by their place in this list. */
export function textsOf(part: Part | undefined): Texts {
  const texts = new Texts();
  const text = new Text();
  if (part) readXml(part, {
    open: (name) => text.open(name),
    close(name) {
      text.close(name);
      if (name !== "si") return;
      texts.add(unescaped(text.take()));
      if (texts.isFull) throw new Unreadable("tooLarge", megabytes(part.size));
    },
    text: (more) => text.add(more),
  });
  texts.endBlock();
  return texts;
}

/** Characters that XML cannot hold stand as _x000D_ in texts. A NUL, which no table may hold, is replaced. */
export function unescaped(text: string): string {
  if (!text.includes("_x")) return text;
  return text.replace(/_x([0-9a-f]{4})_/gi, (_, code: string) => String.fromCharCode(parseInt(code, 16) || 0xfffd));
}
