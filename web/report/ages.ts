// Who lives: an age pyramid by sex, with the candidates and the chosen ones.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { count, fixed } from "../shared/format.js";
import { key } from "../shared/key.js";
import { draw, COLOUR, FEMALE, figure, MALE } from "../shared/plot.js";
import { population as words } from "../shared/texts/language.js";
import type { Result } from "./model.js";
import { group } from "./outline.js";

type AgeClass = Result["population"]["ages"][number];

export function section({ population: { ages } }: Result): HTMLElement {
  const { title, none, columns, pyramid } = words.ages;
  const sum = (value: (row: AgeClass) => number) => count(ages.reduce((total, row) => total + value(row), 0));
  const keys = Object.keys(columns) as (keyof typeof columns)[];
  return group(title, ages.length === 0 ? h("p", {}, none) : figure({
    title: pyramid.title,
    description: pyramid.description(sum(({ males }) => males), sum(({ females }) => females)),
    plot: (width) => h("div", {}, legend(), drawn(width, ages)),
    table: { rows: ages, columns: keys.map((key) => ({ key, title: columns[key], value: (row: AgeClass) => row[key] })), file: "ages.csv" },
  }));
}

const OPACITY = { living: 0.25, candidates: 0.6, chosen: 1 };

function legend(): HTMLElement {
  const { male, female, living, candidates, chosen } = words.ages.pyramid;
  return key(
    { name: male, colour: MALE, symbol: "square" }, { name: female, colour: FEMALE, symbol: "square" },
    { name: living, colour: COLOUR.text, symbol: "square", opacity: OPACITY.living },
    { name: candidates, colour: COLOUR.text, symbol: "square", opacity: OPACITY.candidates },
    { name: chosen, colour: COLOUR.text, symbol: "square", opacity: OPACITY.chosen });
}

interface Bar { row: AgeClass; to: number; n: number; colour: string; opacity: number }

/** The bars of an age class from the middle outwards: chosen, other candidates, others that live. */
function bars(row: AgeClass): Bar[] {
  const side = (sign: number, colour: string, living: number, candidates: number, chosen: number): Bar[] => {
    const bar = (n: number, opacity: number): Bar => ({ row, to: sign, n: Math.max(0, n), colour, opacity });
    return [bar(chosen, OPACITY.chosen), bar(candidates - chosen, OPACITY.candidates), bar(living - candidates, OPACITY.living)];
  };
  return [
    ...side(-1, MALE, row.males, row.candidate_males, row.chosen_males),
    ...side(1, FEMALE, row.females, row.candidate_females, row.chosen_females),
  ];
}

function drawn(width: number, ages: readonly AgeClass[]): Element {
  const { to_left, to_right, says, chosen_here } = words.ages.pyramid;
  const born = ages.map(({ birth }) => birth);
  const every = Math.ceil(ages.length / 40);
  const end = (sign: number) => ({ x: (row: AgeClass) => (sign < 0 ? -row.males : row.females), y: "birth" });
  const label = (chosen: number) => (chosen > 0 ? chosen_here(count(chosen)) : "");
  return draw({
    width, height: Math.max(120, 50 + ages.length * (20 / every)),
    marginLeft: 12 + 7 * Math.max(4, ...born.map((text) => text.length)), marginTop: 28, marginBottom: 24,
    x: { label: null, grid: true, tickFormat: (x: number) => fixed(Math.abs(x), 0), insetLeft: 64, insetRight: 64, ticks: width / 90 },
    y: { label: null, type: "band", domain: born, ticks: born.filter((_, i) => i % every === 0), tickSize: 0 },
    color: { type: "identity" }, opacity: { type: "identity" },
    marks: [
      Plot.barX(ages.flatMap(bars), Plot.stackX({
        x: (bar: Bar) => bar.to * bar.n, y: (bar: Bar) => bar.row.birth, fill: "colour", fillOpacity: "opacity",
      })),
      Plot.ruleX([0], { stroke: COLOUR.muted }),
      Plot.text([to_left], { x: 0, text: (text: string) => text, frameAnchor: "top", textAnchor: "end", dx: -6, dy: -16 }),
      Plot.text([to_right], { x: 0, text: (text: string) => text, frameAnchor: "top", textAnchor: "start", dx: 6, dy: -16 }),
      Plot.text(ages, { ...end(-1), text: (row: AgeClass) => label(row.chosen_males), textAnchor: "end", dx: -4 }),
      Plot.text(ages, { ...end(1), text: (row: AgeClass) => label(row.chosen_females), textAnchor: "start", dx: 4 }),
      Plot.tip(ages, Plot.pointerY({ x: 0, y: "birth", title: says, lineHeight: 1.2, lineWidth: 26, anchor: "bottom" })),
    ],
  });
}
