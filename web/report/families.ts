// How many offspring sires and dams have. Few parents have very many: the classes grow with the size.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { count, fixed } from "../shared/format.js";
import { COLOUR, draw, FEMALE, figure, MALE, type Picture } from "../shared/plot.js";
import { population as words } from "../shared/texts/language.js";
import type { Result } from "./model.js";
import { group } from "./outline.js";

type Family = Result["population"]["families"][number];
type Parents = (family: Family) => number;

export function section({ population: { families } }: Result): HTMLElement {
  const text = words.families;
  const some = families.some(({ offspring }) => offspring > 0);
  return group(text.title, h("p", {}, some ? text.intro : text.none), some && h("div", { class: "pictures" },
    histogram(families, ({ sires }) => sires, text.sires, MALE),
    histogram(families, ({ dams }) => dams, text.dams, FEMALE)));
}

interface Class { name: string; parents: number }

/** Sizes 1 to 5 alone, then 6-10, 11-20, 21-50, 51-100, ... */
function classes(families: readonly Family[], parents: Parents): Class[] {
  const most = largest(families, parents);
  const found: Class[] = [];
  for (let low = 1, high = 1; low <= most; low = high + 1, high = next(high)) {
    const within = families.filter(({ offspring }) => offspring >= low && offspring <= high);
    found.push({ name: low === high ? String(low) : `${low}–${high}`, parents: total(within, parents) });
  }
  return found;
}

function next(high: number): number {
  if (high < 5) return high + 1;
  const power = 10 ** Math.floor(Math.log10(high));
  const digit = high / power;
  return digit < 2 ? 2 * power : digit < 5 ? 5 * power : 10 * power;
}

const total = (families: readonly Family[], parents: Parents) => families.reduce((sum, family) => sum + parents(family), 0);
const largest = (families: readonly Family[], parents: Parents) =>
  families.reduce((most, family) => (parents(family) > 0 ? Math.max(most, family.offspring) : most), 0);

function histogram(families: readonly Family[], parents: Parents, named: typeof words.families.sires, colour: string): HTMLElement {
  const with_some = families.filter(({ offspring }) => offspring > 0);
  const n = total(with_some, parents);
  if (n === 0) return h("p", {}, named.none);
  const mean = with_some.reduce((sum, family) => sum + family.offspring * parents(family), 0) / n;
  const bars = classes(with_some, parents);
  return figure({
    title: named.title,
    description: named.description(count(n), fixed(mean, 1), count(largest(families, parents))),
    plot: (width) => draw({
      width, height: 62 + 21 * bars.length, marginLeft: 72, marginRight: 44, marginBottom: 42,
      x: { label: words.families.parents_axis, labelArrow: "right", grid: true },
      y: { type: "band", domain: bars.map(({ name }) => name), label: words.families.axis, labelArrow: "none", padding: 0.15, tickSize: 0 },
      marks: [
        Plot.barX(bars, { y: "name", x: "parents", fill: colour }),
        Plot.ruleX([0], { stroke: COLOUR.muted }),
        Plot.text(bars, { y: "name", x: "parents", text: ({ parents }: Class) => (parents > 0 ? count(parents) : ""), textAnchor: "start", dx: 5 }),
      ],
    }),
    table: numbers(families),
  });
}

function numbers(rows: readonly Family[]): Picture<Family>["table"] {
  const { columns: titles } = words.families;
  const keys: (keyof Family)[] = ["offspring", "sires", "dams"];
  return { rows, columns: keys.map((key) => ({ key, title: titles[key], value: (row: Family) => row[key] })), file: "families.csv" };
}
