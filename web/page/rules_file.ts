// A file of rules that the reader has: the CSV that qob-prepare takes, with the marks that it takes.

import { RULES, type Rule } from "./choices.js";

/** A line that is no rule. */
export class NoRule extends Error {
  constructor(readonly line: number, readonly found: string) {
    super(found);
  }
}

export function readRules(bytes: Uint8Array): Rule[] {
  const lines = decoded(bytes).split(/\r\n|\r|\n/);
  const mark = [",", ";", "\t"].find((mark) => cells(lines[0]!, mark).map((cell) => cell.toLowerCase()).join() === "kind,a,b,value");
  if (!mark) throw new NoRule(1, lines[0]!);
  return lines.slice(1).flatMap((line, i) => (line.trim() ? [rule(cells(line, mark), mark, i + 2, line)] : []));
}

function decoded(bytes: Uint8Array): string {
  try {
    return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
  } catch {
    return new TextDecoder("windows-1252").decode(bytes);
  }
}

function rule([name = "", a = "", b = "", value = ""]: readonly string[], mark: string, line: number, found: string): Rule {
  const kind = RULES.find((kind) => kind === name.toLowerCase());
  if (!kind) throw new NoRule(line, found);
  return { kind, a, b, value: mark === ";" ? value.replace(",", ".") : value };
}

/** The cells of a line; those in quotes may hold the mark, and quotes twice. */
function cells(line: string, mark: string): string[] {
  const found: string[] = [];
  for (let at = 0; at <= line.length; ) {
    const quoted = /^\s*"((?:[^"]|"")*)"\s*/.exec(line.slice(at));
    const end = line.indexOf(mark, at + (quoted?.[0].length ?? 0));
    const stop = end < 0 ? line.length : end;
    found.push(quoted ? quoted[1]!.replaceAll('""', '"') : line.slice(at, stop).trim());
    at = stop + 1;
  }
  return found;
}
