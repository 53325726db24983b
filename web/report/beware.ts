// What to beware of: each warning in words, with its numbers and animals; the serious ones first.
// What a program said is shown as it said it.

import { h } from "../shared/dom.js";
import { count, digits, percent } from "../shared/format.js";
import type { Told, Words } from "../shared/texts/beware.js";
import { beware as words } from "../shared/texts/language.js";
import { birthOf, inWords } from "./births.js";
import { animal, called, type Result, type Warning } from "./model.js";
import { heading, part } from "./outline.js";

export function section(result: Result): HTMLElement {
  return part("beware", words.title, shown(result));
}

function shown(result: Result): HTMLElement[] {
  const warnings = once(result.warnings);
  const serious = warnings.filter((warning) => warning.serious);
  const others = warnings.filter((warning) => !warning.serious);
  if (result.warnings.length === 0) return [h("p", {}, words.nothing)];
  const intro = serious.length ? words.intro(count(serious.length), count(others.length)) : words.none_serious;
  return [
    h("p", {}, intro),
    ...serious.map((warning) => single(warning, result)),
    ...others.filter(({ text }) => !text).map((warning) => single(warning, result)),
    ...quoted(others.filter(({ text }) => text)),
  ];
}

/** An effective size is its rate said in another way: a reader is warned of both at once. */
const SAME: Record<string, string> = { ne: "rate", regression_ne: "regression_rate" };

/** A smaller effective size means nothing. */
export const LEAST = 2;

export function once(warnings: readonly Warning[]): Warning[] {
  const kinds = new Set(warnings.map(({ kind }) => kind));
  const size = warnings.find(({ kind }) => kind === "ne")?.values["ne"] ?? NaN;
  const ne = size < LEAST ? NaN : size;
  return warnings
    .filter(({ kind }) => !kinds.has(SAME[kind] ?? ""))
    .map((warning) => (warning.kind === "rate" ? { ...warning, values: { ...warning.values, ne } } : warning));
}

/** A warning in words. */
export function said(warning: Warning, result: Result): Words {
  return words.warnings[warning.kind]?.(told(warning, result)) ?? words.unknown(warning.kind);
}

function single(warning: Warning, result: Result): HTMLElement {
  const { title, text } = said(warning, result);
  return h("section", { class: warning.serious ? "warning serious" : "warning" },
    heading(`${warning.serious ? words.serious : words.known}: ${title}`),
    text ? h("p", {}, text) : warning.text && h("pre", { lang: "en" }, warning.text),
    animals(warning, result));
}

/** Texts of programs, one list a kind. */
function quoted(warnings: readonly Warning[]): HTMLElement[] {
  return [...new Set(warnings.map(({ kind }) => kind))].map((kind) => {
    const texts = warnings.filter((warning) => warning.kind === kind).map(({ text }) => h("li", {}, h("code", { lang: "en" }, text)));
    const { title } = words.warnings[kind]?.(NOTHING_TOLD) ?? words.unknown(kind);
    return h("section", { class: "warning" }, heading(`${words.known}: ${title}`), h("ul", {}, texts));
  });
}

const NOTHING_TOLD: Told = { percent: String, count: String, number: String, birth: String, change: String, has: () => false, text: "" };

function told({ values, text }: Warning, result: Result): Told {
  const value = (name: string) => values[name] ?? NaN;
  return {
    percent: (name, decimals) => percent(value(name), decimals ?? (isWhole(value(name) * 100) ? 0 : 2)),
    count: (name) => count(value(name)),
    number: (name) => (isWhole(value(name)) ? count(value(name)) : digits(value(name))),
    birth: (name) => inWords(birthOf(result)(value(name))),
    change: (name) => words.change(value(name), percent(Math.abs(value(name)))),
    has: (name) => Number.isFinite(value(name)),
    text,
  };
}

/** Limits such as 1 % and 50 are told without digits that nobody set. */
const isWhole = (value: number) => Math.abs(value - Math.round(value)) < 1e-9;

/** More than so many are folded away. */
const OPEN = 6;

function animals({ kind, animals }: Warning, result: Result): HTMLElement | false {
  if (animals.length === 0) return false;
  const names = animals.map((place) => called(animal(result, place)));
  const lines = kind === "close_relatives"
    ? names.flatMap((name, i) => (i % 2 ? [words.pair(names[i - 1]!, name)] : []))
    : names;
  const list = h("ul", {}, lines.map((line) => h("li", {}, line)));
  return lines.length <= OPEN ? list : h("details", {}, h("summary", {}, words.animals(count(lines.length))), list);
}
