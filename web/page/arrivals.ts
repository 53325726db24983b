// What is dropped, chosen or pasted becomes a herd book, or is refused for a reason.

import { unpacked } from "./blocks.js";
import { FIRST } from "./choices.js";
import type { Engine } from "./engine/engine.js";
import { opened } from "./saved.js";
import { isSpreadsheet } from "./spreadsheet/read.js";
import type { Arrived, Book } from "./work.js";

/** A file that is no herd book; a key of the texts. */
export class Unwelcome extends Error {
  constructor(readonly why: "empty" | "large" | "picture" | "document" | "binary" | "folder" | "several") {
    super(why);
  }
}

const LARGEST = 1e9;  // bytes; the program holds the table in memory several times

/** Reads a file, of whatever kind it turns out to be. */
export async function arrival(file: File, engine: Engine): Promise<Arrived> {
  if (file.size > LARGEST) throw new Unwelcome("large");
  const bytes = await bytesOf(file);
  if (bytes.length === 0) throw new Unwelcome("empty");
  if (isSpreadsheet(bytes)) return { book: await sheet(file.name, bytes, undefined, engine) };
  refuse(bytes);
  if (isSaved(bytes)) return opened(new TextDecoder().decode(bytes));
  return { book: { name: file.name, bytes } };
}

/** A folder looks like a file until it is read. */
async function bytesOf(file: File): Promise<Uint8Array> {
  try {
    return new Uint8Array(await file.arrayBuffer());
  } catch {
    throw new Unwelcome("folder");
  }
}

/** A sheet of a workbook as a herd book. */
export async function sheet(name: string, bytes: Uint8Array, wanted: string | undefined, engine: Engine): Promise<Book> {
  const { sheet } = await engine.must({ sheet: { bytes, ...(wanted !== undefined && { name: wanted }) } });
  const { name: from, csv, uncalculated, all } = sheet!;
  return { name, bytes: csv, from, uncalculated, workbook: { bytes, sheets: all } };
}

/** A table that was copied from a spreadsheet or typed. */
export function pasted(name: string, text: string): Arrived {
  if (text.trim() === "") throw new Unwelcome("empty");
  return { book: { name, bytes: new TextEncoder().encode(text) } };
}

/** The herd book that the page brings along, with sensible choices. */
export async function example(): Promise<Arrived> {
  const book = { name: "hinterwald.csv", bytes: new Uint8Array(await unpacked("example")) };
  return { book, choices: { ...FIRST, males: { matings: 20, from: 1, to: 6 }, females: { matings: 1, from: 2, to: 12 }, completeness: 0.6, matings: 64 } };
}

const text = (bytes: Uint8Array): string => String.fromCharCode(...bytes.subarray(0, 512));

/** No table that anybody keeps begins as work does. */
const isSaved = (bytes: Uint8Array): boolean => /^(ï»¿)?\s*\{\s*"/.test(text(bytes));

const KINDS: readonly (readonly [RegExp, Unwelcome["why"]])[] = [
  [/^(\x89PNG|\xff\xd8\xff|GIF8|BM.{4}\0{4}|RIFF.{4}WEBP|II\*\0|MM\0\*|.{4}ftyp(heic|mif1|avif))/s, "picture"],
  [/^(%PDF|\{\\rtf)/, "document"],
];

function refuse(bytes: Uint8Array): void {
  const start = text(bytes);
  for (const [kind, why] of KINDS) if (kind.test(start)) throw new Unwelcome(why);
  const sixteen = /^(\xff\xfe|\xfe\xff)/.test(start) || /^(?:[^\0]\0){4}|^(?:\0[^\0]){4}/s.test(start);
  if (!sixteen && /[\0-\x08\x0e-\x1a]/.test(start)) throw new Unwelcome("binary");
}
