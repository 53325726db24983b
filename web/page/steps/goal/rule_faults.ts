// What the programs say of single rules, whichever of them found it.

import { RULES } from "../../choices.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";

/** "rules.csv:3: words": the first rule stands in the second line. */
const FAULT = /rules\.csv:(\d+): ([^\n]*)/g;

/** Faults by the place of the rule. */
export function faultsOf(work: Work, { state, run, name }: Tradeoff): Map<number, string> {
  const { found } = work;
  const texts = found.state === "refused" ? [found.error.message]
    : found.state === "ready" ? found.data.findings.flatMap(({ kind, value, text }) => (kind === "rule" ? [text, value] : [])) : [];
  if (state.state === "failed") texts.push(state.error.message);
  const faults = new Map<number, string>();
  for (const text of texts)
    for (const [, line, fault] of text.matchAll(FAULT)) faults.set(Number(line) - 2, inWords(fault!, run.find(([file]) => file === `${name}.names.csv`)?.[1]));
  return faults;
}

/** Animals by their identifiers in the herd book instead of running numbers, rules by their places; of rules
 * that cannot hold together the program repeats each. */
function inWords(fault: string, names: Uint8Array | undefined): string {
  if (RULES.some((kind) => fault.startsWith(`${kind},`))) return words.goal.rules.together;
  const placed = fault.replace(/\bline (\d+)/g, (_, line) => `rule ${Number(line) - 1}`);
  if (!names || !/'\d+'/.test(placed)) return placed;
  const text = new TextDecoder().decode(names);
  return placed.replace(/'(\d+)'/g, (whole, number) => new RegExp(`^${number},([^,]*),`, "m").exec(text)?.[1] ?? whole);
}
