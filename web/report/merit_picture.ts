// Merit against mean relationship. Males are squares and females circles, as in drawn pedigrees. Where
// the candidates that were not chosen are many, hexagons count them; the pointer finds each all the same.

import * as Plot from "@observablehq/plot";
import { choose } from "../shared/choose.js";
import { h } from "../shared/dom.js";
import { count } from "../shared/format.js";
import { key } from "../shared/key.js";
import { COLOUR, draw, FEMALE, figure, MALE } from "../shared/plot.js";
import { candidates as words } from "../shared/texts/language.js";
import { meritDecimals, told, type Row } from "./candidates.js";

/** More than so many are counted and not drawn one by one: beyond, drawing takes longer than a blink. */
const DRAWN = 1500;

type Axis = "to_others" | "relationship";

/** A picture for each measure of relationship. That to the others chosen explains the choice best: the
 * plan's value falls by it. It needs relationships by pedigree, as they tell what a chosen animal's
 * relationship to itself is, 1 + F, which the mean relationship to the chosen includes. */
export function picture(rows: readonly Row[], by_pedigree: boolean): HTMLElement {
  const chosen = rows.filter(({ matings }) => matings > 0);
  const others = rows.filter(({ matings, merit }) => matings === 0 && Number.isFinite(merit));
  const males = chosen.filter(({ of }) => of.sex === 1).length;
  const axes: readonly Axis[] = by_pedigree ? ["to_others", "relationship"] : ["relationship"];
  return choose(words.picture.x, axes.map((value) => ({ name: words.picture[value].name, value })), (axis) =>
    figure({
      title: words.picture.title,
      description: [
        words.picture.description(males, chosen.length - males),
        others.length > DRAWN ? words.picture.binned(count(others.length)) : "",
      ].join(" ").trim(),
      plot: (width) => h("div", {}, legend(others.length), drawn(width, chosen, others, axis)),
      note: words.picture[axis].note,
    }));
}

function legend(others: number): HTMLElement {
  const names = words.picture.key;
  return key(
    { name: names.male, colour: MALE, symbol: "square" },
    { name: names.female, colour: FEMALE, symbol: "circle" },
    ...(others > DRAWN
      ? [{ name: names.count, colour: COLOUR.muted, symbol: "hexagon" as const }]
      : [{ name: names.other_male, colour: COLOUR.muted, symbol: "hollow_square" as const },
         { name: names.other_female, colour: COLOUR.muted, symbol: "hollow" as const }]));
}

const shape = ({ of }: Row): "square" | "circle" => (of.sex === 1 ? "square" : "circle");

const measures: Record<Axis, (row: Row) => number> = {
  to_others: ({ to_others }) => to_others,
  relationship: ({ relationship }) => relationship,
};

/** Radius by matings: the area tells how many there are, and a single one is seen. */
function size(chosen: readonly Row[], width: number): (row: Row) => number {
  const most = chosen.reduce((most, { matings }) => Math.max(most, matings), 1);
  const one = Math.min(4.5, (width < 500 ? 11 : 15) / Math.sqrt(most));
  return ({ matings }) => Math.max(3, one * Math.sqrt(matings));
}

function drawn(width: number, chosen: readonly Row[], others: readonly Row[], axis: Axis): Element {
  const all = [...others, ...chosen];
  const x = (row: Row) => measures[axis](row) * 100;
  const y = (row: Row) => row.merit;
  const decimals = meritDecimals(all);
  return draw({
    width, height: Math.min(560, Math.max(340, width * 0.6)), marginLeft: 56, marginRight: 20, marginBottom: 44, inset: 8,
    x: { label: words.picture[axis].axis, labelArrow: "none", labelAnchor: "right", nice: true },
    y: { label: words.picture.merit, labelArrow: "none", grid: true, nice: true },
    r: { type: "identity" },
    opacity: { type: "sqrt", range: [0.15, 0.85] },
    symbol: { type: "identity" }, color: { type: "identity" },
    marks: [
      others.length > DRAWN
        ? Plot.hexagon(others, Plot.hexbin({ fillOpacity: "count" }, { x, y, fill: COLOUR.muted, binWidth: 11, r: 6 }))
        : Plot.dot(others, { x, y, r: 3, symbol: shape, stroke: COLOUR.muted, strokeWidth: 1.2 }),
      Plot.dot(chosen, {
        x, y, r: size(chosen, width), symbol: shape, fill: ({ of }: Row) => (of.sex === 1 ? MALE : FEMALE),
        stroke: "var(--card)", strokeWidth: 1, sort: { channel: "-r" }, fillOpacity: 0.9,
      }),
      // The row itself is the title: only the one that is pointed at is put into words.
      Plot.tip(all, Plot.pointer({ x, y, title: (row: Row) => row, lineHeight: 1.2, lineWidth: 26, format: { title: (row: Row) => told(row, decimals) } })),
    ],
  });
}
