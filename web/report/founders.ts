// What the founders gave to the living: a ranked curve, and the shares added up.

import * as Plot from "@observablehq/plot";
import { h } from "../shared/dom.js";
import { count, fixed, percent } from "../shared/format.js";
import { COLOUR, draw, figure } from "../shared/plot.js";
import { population as words } from "../shared/texts/language.js";
import { whole } from "./charts.js";
import { animal, called, type Result } from "./model.js";
import { group } from "./outline.js";

/** Columns that can be told apart, and points of a curve that look as one. */
const MOST_COLUMNS = 60;
const MOST_POINTS = 500;

interface Founder { place: number; name: string; birth: string; contribution: number; cumulative: number }

export function section(result: Result): HTMLElement {
  const text = words.founders;
  const { founders, founders_ranked, founders_cumulative } = result.population;
  const rows = founders_ranked.map(({ animal: at, contribution }, i): Founder => {
    const of = animal(result, at);
    return { place: i + 1, name: called(of), birth: of.birth, contribution, cumulative: founders_cumulative[i] ?? NaN };
  });
  const first = rows[0];
  if (!first) return group(text.title, h("p", {}, text.none));
  const half = founders_cumulative.findIndex((share) => share >= 0.5) + 1;
  return group(text.title,
    h("p", {}, text.intro(count(rows.length), count(founders), half > 0 ? text.half(count(half)) : "")),
    h("div", { class: "pictures" }, ranked(rows, first), added(founders_cumulative, half)));
}

function ranked(rows: readonly Founder[], first: Founder): HTMLElement {
  const { title, description, place, share } = words.founders.figure;
  const shown = rows.slice(0, MOST_COLUMNS);
  return figure({
    title, description: description(first.name, percent(first.contribution), count(shown.length)),
    plot: (width) => draw({
      width, height: 260, marginLeft: 48, marginTop: 30, marginBottom: 42,
      x: { label: place, ticks: whole(1, shown.length, 8), labelArrow: "right", tickFormat: count },
      y: { label: share, grid: true },
      marks: [
        Plot.rectY(shown, {
          x1: ({ place }: Founder) => place - 0.45, x2: ({ place }: Founder) => place + 0.45,
          y: ({ contribution }: Founder) => contribution * 100, fill: COLOUR.blue,
        }),
        Plot.ruleY([0], { stroke: COLOUR.muted }),
        Plot.tip(shown, Plot.pointerX({ x: "place", y: ({ contribution }: Founder) => contribution * 100, title: told })),
      ],
    }),
    table: { rows, columns: columns(), file: "founders.csv" },
  });
}

const told = ({ place, name, contribution, cumulative }: Founder) => words.founders.told(count(place), name, percent(contribution), percent(cumulative, 1));

function added(cumulative: readonly number[], half: number): HTMLElement {
  const { added: title, added_description, place, cumulative: label } = words.founders.figure;
  const every = Math.ceil(cumulative.length / MOST_POINTS);
  const all = cumulative.map((share, i) => ({ x: i + 1, y: share * 100 }));
  const points = [{ x: 0, y: 0 }, ...all.filter(({ x }) => x % every === 0 || x === all.length)];
  return figure({
    title, description: added_description(half > 0 ? words.founders.half(count(half)) : "", percent(cumulative[cumulative.length - 1] ?? NaN, 1)),
    plot: (width) => draw({
      width, height: 260, marginLeft: 48, marginTop: 30, marginBottom: 42,
      x: { label: place, labelArrow: "right", ticks: whole(0, cumulative.length, 8), tickFormat: count },
      y: { label, grid: true, domain: [0, 100] },
      marks: [
        half > 0 ? Plot.ruleX([half], { stroke: COLOUR.muted, strokeDasharray: "5 4", y1: 0, y2: 50 }) : [],
        half > 0 ? Plot.ruleY([50], { stroke: COLOUR.muted, strokeDasharray: "5 4", x1: 0, x2: half }) : [],
        Plot.lineY(points, { x: "x", y: "y", stroke: COLOUR.orange, strokeWidth: 2 }),
        Plot.ruleY([0], { stroke: COLOUR.muted }),
        Plot.tip(points, Plot.pointerX({ x: "x", y: "y", title: ({ x, y }: { x: number; y: number }) => words.founders.told_added(count(x), `${fixed(y, 1)} %`) })),
      ],
    }),
  });
}

function columns() {
  const { columns: titles } = words.founders;
  return [
    { key: "place", title: titles.place, value: ({ place }: Founder) => place },
    { key: "animal", title: titles.animal, value: ({ name }: Founder) => name },
    { key: "birth", title: titles.birth, value: ({ birth }: Founder) => birth },
    { key: "contribution", title: titles.contribution, value: ({ contribution }: Founder) => contribution, percent: true },
    { key: "cumulative", title: titles.cumulative, value: ({ cumulative }: Founder) => cumulative, percent: true },
  ];
}
