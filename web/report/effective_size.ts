// Effective size from two regressions, with its standard error and span, or why there is none.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { count, digits, percent } from "../shared/format.js";
import { COLOUR, draw, figure } from "../shared/plot.js";
import { population as words } from "../shared/texts/language.js";
import { birthOf, type Birth } from "./births.js";
import { cards, type Card } from "./cards.js";
import type { EffectiveSize, Result } from "./model.js";
import { group } from "./outline.js";

/** Below so many animals a population is at risk (FAO 1998). */
const LIMIT = 50;

export function section(result: Result): HTMLElement {
  const text = words.effective_size;
  const { by_inbreeding, by_coancestry } = result.population;
  const sizes = [
    { of: by_inbreeding, words: text.by_inbreeding, colour: COLOUR.blue, symbol: "circle" as const },
    { of: by_coancestry, words: text.by_coancestry, colour: COLOUR.orange, symbol: "triangle" as const },
  ];
  const known = sizes.filter(({ of }) => Number.isFinite(of.ne));
  return group(text.title,
    h("p", {}, text.intro),
    cards(sizes.map(({ of, words }) => card(of, words, birthOf(result)))),
    known.length > 0 && figure({ ...text.figure, plot: (width) => drawn(width, known) }));
}

type Named = { name: string; formula: string; source: string; meaning: string };

const size = (animals: number) => (animals < 100 ? digits(animals) : count(animals));
const decimals = (rate: number) => (rate !== 0 && Math.abs(rate) < 5e-4 ? 4 : 2);

function card(of: EffectiveSize, { name, formula, source, meaning }: Named, birth: Birth): Card {
  const { ne, rate, range, span, none, no_upper } = words.effective_size;
  const some = Number.isFinite(of.ne);
  const high = Number.isFinite(of.ne_high) ? size(of.ne_high) : no_upper;
  return {
    name, value: some ? ne(size(of.ne)) : none,
    notes: [
      of.why_not && h("span", { lang: "en" }, of.why_not),
      some && Number.isFinite(of.ne_low) && range(size(of.ne_low), high),
      Number.isFinite(of.rate) && rate(percent(of.rate, decimals(of.rate)), percent(of.rate_se, decimals(of.rate))),
      of.n > 0 && span(count(of.n), birth(of.first), birth(of.last)),
      meaning,
      words.figures.source(formula, source),
    ],
  };
}

interface Known { of: EffectiveSize; words: Named; colour: string; symbol: "circle" | "triangle" }

function drawn(width: number, known: readonly Known[]): Element {
  const ends = known.flatMap(({ of }) => [of.ne, of.ne_high]).filter(Number.isFinite);
  const right = Math.min(Math.max(2 * LIMIT, ...ends) * 1.1, 4 * Math.max(2 * LIMIT, ...known.map(({ of }) => of.ne)));
  const high = ({ of }: Known) => (Number.isFinite(of.ne_high) ? Math.min(of.ne_high, right) : right);
  const y = ({ words }: Known) => words.name;
  return draw({
    width, height: 60 + 45 * known.length, marginLeft: 124, marginRight: 20, marginBottom: 40, marginTop: 24,
    x: { domain: [0, right], label: words.effective_size.figure.axis, labelArrow: "right", grid: true, ticks: width / 90 },
    y: { type: "band", label: null, tickSize: 0 },
    color: { type: "identity" }, symbol: { type: "identity" },
    marks: [
      Plot.ruleX([LIMIT], { stroke: COLOUR.text, strokeDasharray: "5 4" }),
      Plot.text([LIMIT], { x: (x: number) => x, text: () => words.effective_size.figure.limit, frameAnchor: "top", dy: -14 }),
      Plot.ruleY(known, { x1: ({ of }: Known) => of.ne_low, x2: high, y, stroke: "colour", strokeWidth: 3 }),
      Plot.dot(known, { x: ({ of }: Known) => of.ne, y, fill: "colour", symbol: "symbol", r: 6 }),
      Plot.text(known, { x: ({ of }: Known) => of.ne, y, text: ({ of }: Known) => size(of.ne), dy: -14 }),
    ],
  });
}
