// Who remains of those born in a year.

import * as Plot from "@observablehq/plot";
import { h } from "../../../shared/dom.js";
import { count } from "../../../shared/format.js";
import { key } from "../../../shared/key.js";
import { COLOUR, draw, figure } from "../../../shared/plot.js";
import type { Column } from "../../../shared/table.js";
import type { Animal, Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";
import { FATES, fateOf, type Fate } from "./reasons.js";

interface Bar { sex: 1 | 2; born: string; fate: Fate; n: number }

const NAMES = Object.keys(FATES) as Fate[];

export function picture({ animals }: Prepared): HTMLElement {
  const { picture, sexNames } = words.candidates;
  const bars = counted(animals);
  const columns: Column<Bar>[] = [
    { key: "born", title: picture.born, value: ({ born }) => born }, { key: "sex", title: picture.sex, value: ({ sex }) => sexNames[sex] },
    { key: "fate", title: picture.fate, value: ({ fate }) => picture.fates[fate] }, { key: "animals", title: picture.animals, value: ({ n }) => n },
  ];
  return figure({
    title: picture.title, description: picture.description,
    plot: (width) => h("div", {}, key(...NAMES.map((fate) => ({ name: picture.fates[fate], colour: FATES[fate], symbol: "square" as const }))), drawn(width, bars)),
    table: { columns, rows: bars, file: "births.csv" },
  });
}

/** By year of birth; where no animal has one, by age, the oldest first. */
function counted(animals: readonly Animal[]): Bar[] {
  const { unborn } = words.candidates.picture;
  const dated = animals.some(({ birth }) => birth !== "");
  const born = ({ birth, age }: Animal) => (dated ? birth.slice(0, 4) || unborn : Number.isNaN(age) ? unborn : `−${age}`);
  const bars = new Map<string, Bar>();
  for (const animal of animals) {
    if (animal.sex !== 1 && animal.sex !== 2) continue;
    const at: Bar = { sex: animal.sex, born: born(animal), fate: fateOf(animal), n: 0 };
    const name = `${at.sex} ${at.fate} ${at.born}`;
    const bar = bars.get(name) ?? at;
    bars.set(name, bar);
    ++bar.n;
  }
  return [...bars.values()].sort((a, b) => order(a.born, unborn) - order(b.born, unborn) || a.sex - b.sex || NAMES.indexOf(a.fate) - NAMES.indexOf(b.fate));
}

const order = (born: string, unborn: string): number => (born === unborn ? -Infinity : Number(born.replace("−", "-")));

function drawn(width: number, bars: readonly Bar[]): Element {
  const { sexNames, picture } = words.candidates;
  const years = [...new Set(bars.map(({ born }) => born))];
  const every = Math.max(1, Math.ceil(years.length / (width / 46)));
  return draw({
    width, height: 380, marginLeft: 48, marginRight: 24, marginTop: 24,
    x: { type: "band", domain: years, label: null, ticks: years.filter((_, i) => (years.length - 1 - i) % every === 0), tickSize: 0 },
    y: { label: null, grid: true, tickFormat: (y: number) => count(y) },
    fy: { domain: [1, 2], label: null, axis: null },
    color: { type: "identity" },
    marks: [
      Plot.barY(bars, Plot.stackY({ x: "born", y: "n", fy: "sex", fill: (bar: Bar) => FATES[bar.fate], order: (bar: Bar) => NAMES.indexOf(bar.fate), insetLeft: 0.5, insetRight: 0.5 })),
      Plot.ruleY([0], { stroke: COLOUR.muted }),
      Plot.text([1, 2] as const, { fy: (sex) => sex, text: (sex: 1 | 2) => sexNames[sex], frameAnchor: "top-left", dy: -14, fontWeight: "600" }),
      Plot.tip(bars, Plot.pointerX(Plot.stackY({ x: "born", y: "n", fy: "sex", order: (bar: Bar) => NAMES.indexOf(bar.fate), title: (bar: Bar) => picture.tip(bar.born, sexNames[bar.sex], picture.fates[bar.fate], count(bar.n)) }))),
    ],
  });
}
