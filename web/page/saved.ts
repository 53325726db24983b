// The work as a file: herd book and choices, so that it can be opened again and handed on.

import { save } from "../shared/download.js";
import { headed, number, object, optional, orNull, text } from "../shared/shape.js";
import { shape } from "./choices.js";
import { complete } from "./steps/goal/rule_forms.js";
import { stem, type Arrived, type Book, type Work } from "./work.js";

const FORMAT = "qob-work", VERSION = 1;

export const ENDING = ".qob.json";

const saved = object({
  book: object({ name: text, from: orNull(text), uncalculated: optional(number, 0), text: orNull(text), base64: orNull(text) }),
  choices: shape,
});

/** Hands the work to the browser as a file; how it is called. */
export function saveWork({ book, choices }: Work): string | null {
  if (!book) return null;
  const { name, from = null, uncalculated = 0 } = book;
  const data = { format: FORMAT, version: VERSION, book: { name, from, uncalculated, ...textOf(book) }, choices };
  const file = stem(name) + ENDING;
  save(file, "application/json", JSON.stringify(data) + "\n");
  return file;
}

/** What was saved; throws Misshapen, OtherVersion or SyntaxError. */
export function opened(json: string): Arrived {
  const { book, choices } = saved(headed(json, VERSION, FORMAT).data);
  if (!choices.rules.every(complete)) throw new SyntaxError("a rule that is not complete");
  const { name, from, uncalculated, text, base64 } = book;
  const bytes = text !== null ? new TextEncoder().encode(text) : bytesOf(base64 ?? "");
  return { book: { name, bytes, uncalculated, ...(from !== null && { from }) }, choices };
}

/** As text if it is UTF-8, so that the file can be read by people. */
function textOf({ bytes }: Book): { text: string | null; base64: string | null } {
  try {
    return { text: new TextDecoder("utf-8", { fatal: true, ignoreBOM: true }).decode(bytes), base64: null };
  } catch {
    const letters: string[] = [];
    for (let at = 0; at < bytes.length; at += 0x8000) letters.push(String.fromCharCode(...bytes.subarray(at, at + 0x8000)));
    return { text: null, base64: btoa(letters.join("")) };
  }
}

function bytesOf(base64: string): Uint8Array {
  try {
    return Uint8Array.from(atob(base64), (letter) => letter.charCodeAt(0));
  } catch {
    throw new SyntaxError("base64");
  }
}
