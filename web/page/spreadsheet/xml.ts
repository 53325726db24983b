// XML in pieces, as a workbook's parts are written: without declarations of its own, so that there
// are no entities but the five that XML knows.

/// <reference path="./saxen.d.ts" />
import { Parser, type Attributes } from "saxen";
import { megabytes, unpack, type Part } from "./zip.js";
import { Unreadable } from "./unreadable.js";

/** Hears of a document; names come without their prefix. A text may come in several pieces. */
export interface Listener {
  open(name: string, attributes: () => Attributes): void;
  close?(name: string): void;
  text?(text: string): void;
}

/** The most characters of a text or tag; programs put 32,767 in a cell. */
export const LONGEST = 2 ** 18;
const DEEPEST = 100;
const MOST_ELEMENTS = 40_000_000; // four times the cells that are read

/** Reads a part. What is not heard of in `LONGEST` characters is no part of a workbook. */
export function readXml(part: Part, listener: Listener): void {
  const decoder = new TextDecoder("utf-8", { fatal: true });
  let unheard = 0, depth = 0, elements = 0;
  const parser = new Parser()
    .on("openTag", (name, attributes) => {
      unheard = 0;
      if (++depth > DEEPEST) throw new Unreadable("forged");
      if (++elements > MOST_ELEMENTS) throw new Unreadable("tooLarge", megabytes(part.size));
      listener.open(local(name), attributes);
    })
    .on("closeTag", (name) => {
      unheard = 0;
      --depth;
      listener.close?.(local(name));
    })
    .on("text", (text) => {
      unheard = 0;
      listener.text?.(decoded(text));
    })
    .on("cdata", (text) => listener.text?.(unified(text)))
    .on("attention", () => {
      throw new Unreadable("forged");
    })
    .on("warn", () => {
      throw new Unreadable("damaged");
    });
  unpack(part, (piece) => {
    const text = decoder.decode(piece, { stream: true });
    if (text.includes("\0")) throw new Unreadable("damaged");
    unheard += text.length;
    parser.write(text);
    if (unheard > LONGEST) throw new Unreadable("forged");
  });
  parser.write(decoder.decode()).end();
}

/** An attribute of an element. */
export function attribute(attributes: Attributes, name: string): string | undefined {
  const value = attributes[name];
  return value === undefined ? undefined : decoded(value);
}

/** A name without its prefix. */
export function local(name: string): string {
  return name.slice(name.indexOf(":") + 1);
}

const KNOWN = new Map([["amp", "&"], ["lt", "<"], ["gt", ">"], ["quot", '"'], ["apos", "'"]]);

function decoded(text: string): string {
  if (!text.includes("&")) return unified(text);
  return unified(text).replace(/&([^;]*);?/g, (_, name: string) => KNOWN.get(name) ?? character(name));
}

function character(reference: string): string {
  const [, hexadecimal, decimal] = /^#(?:x([0-9a-f]{1,6})|(\d{1,7}))$/i.exec(reference) ?? [];
  const code = hexadecimal ? parseInt(hexadecimal, 16) : Number(decimal);
  if (!(code > 0 && code <= 0x10ffff)) throw new Unreadable("forged");
  return String.fromCodePoint(code);
}

/** Line ends as XML has them read. */
function unified(text: string): string {
  return text.includes("\r") ? text.replace(/\r\n?/g, "\n") : text;
}
