// A file of rules that the reader has: the CSV that qob-prepare takes, with the marks that it takes.

import { RULES, type Rule } from "./choices.js";
import { rowsOf } from "./csv.js";
import { complete } from "./steps/goal/rule_forms.js";

/** A line that is no rule. */
export class NoRule extends Error {
  constructor(readonly line: number, readonly found: string) {
    super(found);
  }
}

const MARKS = [",", ";", "\t"] as const;
const HEADER = "kind,a,b,value";

export function readRules(bytes: Uint8Array): Rule[] {
  const text = decoded(bytes);
  const mark = MARKS.find((mark) => rowsOf(text.split(/[\r\n]/, 1)[0]!, mark).map((cells) => cells.map((cell) => cell.trim().toLowerCase()).join())[0] === HEADER);
  if (!mark) throw new NoRule(1, text.split(/[\r\n]/, 1)[0]!);
  return rowsOf(text, mark).flatMap((cells, i) => (i === 0 || cells.every((cell) => cell.trim() === "") ? [] : [rule(cells.map((cell) => cell.trim()), mark, i + 1)]));
}

function decoded(bytes: Uint8Array): string {
  try {
    return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
  } catch {
    return new TextDecoder("windows-1252").decode(bytes);
  }
}

function rule(cells: readonly string[], mark: string, line: number): Rule {
  const [name = "", a = "", b = "", value = ""] = cells;
  const kind = RULES.find((kind) => kind === name.toLowerCase());
  if (!kind) throw new NoRule(line, cells.join(mark));
  const read: Rule = { kind, a, b, value: mark === ";" ? value.replace(",", ".") : value };
  if (!complete(read)) throw new NoRule(line, cells.join(mark));
  return read;
}
