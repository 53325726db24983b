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

/** One of each sex, as their numbers differ much. */
export function picture({ animals }: Prepared): HTMLElement {
  const bars = counted(animals);
  return h("div", { class: "pictures" }, ([1, 2] as const).map((sex) => pictureOf(sex, bars.filter((bar) => bar.sex === sex))));
}

function pictureOf(sex: 1 | 2, bars: readonly Bar[]): HTMLElement {
  const { picture, sexNames } = words.candidates;
  const columns: Column<Bar>[] = [
    { key: "born", title: picture.born, value: ({ born }) => born },
    { key: "fate", title: picture.fate, value: ({ fate }) => picture.fates[fate] }, { key: "animals", title: picture.animals, value: ({ n }) => n },
  ];
  const signs = NAMES.map((fate) => ({ name: picture.fates[fate], colour: FATES[fate], symbol: "square" as const }));
  return figure({
    title: picture.title(sexNames[sex]), description: picture.description,
    plot: (width) => h("div", {}, key(...signs), drawn(width, bars)),
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

const yearOf = (born: string): number => (born === "" ? NaN : Number(born.replace("−", "-")));
const order = (born: string, unborn: string): number => (born === unborn ? -Infinity : yearOf(born));

/** First what stands for no year, then all years from the first to the last, but for errors of centuries. */
function domain(bars: readonly Bar[]): string[] {
  const { unborn } = words.candidates.picture;
  const born = [...new Set(bars.map(({ born }) => born))];
  const years = born.filter((year) => year !== unborn);
  const [first, last] = [years[0], years[years.length - 1]].map((year) => yearOf(year ?? "")) as [number, number];
  const all = Number.isFinite(last - first) && last - first < 300 ? Array.from({ length: last - first + 1 }, (_, i) => String(first + i).replace("-", "−")) : years;
  return [...born.filter((year) => year === unborn), ...all];
}

function drawn(width: number, bars: readonly Bar[]): Element {
  const { picture, sexNames } = words.candidates;
  const years = domain(bars);
  const every = Math.max(1, Math.ceil(years.length / (width / 56)));
  const labelled = (i: number) => i === 0 || (i >= every && (years.length - 1 - i) % every === 0);
  const order = ({ fate }: Bar) => NAMES.indexOf(fate);
  const told = ({ born, sex, fate, n }: Bar) => picture.tip(born, sexNames[sex], picture.fates[fate], count(n));
  return draw({
    width, height: 250, marginLeft: 48, marginRight: 20,
    x: { type: "band", domain: years, label: null, ticks: years.filter((_, i) => labelled(i)), tickSize: 0, padding: 0.08 },
    y: { label: null, grid: true, tickFormat: (y: number) => (Number.isInteger(y) ? count(y) : "") },
    color: { type: "identity" },
    marks: [
      Plot.barY(bars, Plot.stackY({ x: "born", y: "n", fill: ({ fate }: Bar) => FATES[fate], order })),
      Plot.ruleY([0], { stroke: COLOUR.muted }),
      Plot.tip(bars, Plot.pointer(Plot.stackY({ x: "born", y: "n", order, title: told }))),
    ],
  });
}
