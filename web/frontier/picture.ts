// Merit against inbreeding: the line of the best possible and the plans beneath it, each a sign that can be
// pointed at and chosen. The rate of inbreeding is a straight function of the mean relationship, so both
// scales show one picture, and the effective size stands above either. What is drawn here alone also stands
// on the page that makes the plans while they are looked at.

import * as Plot from "@observablehq/plot";
import { choose } from "../shared/choose.js";
import { h } from "../shared/dom.js";
import { digits, fixed, short } from "../shared/format.js";
import { key } from "../shared/key.js";
import { COLOUR, draw, figure, type Picture } from "../shared/plot.js";
import type { Column } from "../shared/table.js";
import { table } from "../shared/texts/frontier.js";
import type { Choice } from "./choice.js";
import { Dots } from "./dots.js";
import { best, domain, effectiveSizes, labels, limit, LOOKS, positionOf, signs, star, WAYS, type Axis, type Point } from "./marks.js";
import { called, type Frontier, type Plan, type Vertex } from "./model.js";
import { say } from "./say.js";

export function picture(frontier: Frontier, marked: Plan, choice: Choice): HTMLElement {
  const { title, description, axes, help } = say.picture;
  return choose(axes, scales(frontier), (axis) => {
    let dots: Dots | undefined;
    choice.follow(() => dots?.mark());
    return figure({
      title, description: description(frontier.plans.length, frontier.herd.matings, frontier.curve !== null),
      plot: (width) => {
        dots = drawn(width, axis, frontier, marked, choice);
        return h("div", {}, legend(frontier), dots.element);
      },
      note: [h("span", { class: "screen" }, help, " "), say.picture[axis].note],
      table: frontier.curve ? figuresOf(frontier.curve) : undefined,
    });
  });
}

/** The horizontal scales on which there is something to show, by their names. */
export function scales({ plans, curve }: Frontier): { name: string; value: Axis }[] {
  const known = (["rate", "relationship"] as const).filter((axis) => [...plans, ...(curve ?? [])].some((place) => Number.isFinite(place[axis])));
  return known.map((value) => ({ name: say.picture[value].name, value }));
}

export function legend({ curve, plans }: Frontier): HTMLElement {
  const names = say.picture.key;
  const ways = WAYS.filter((way) => plans.some(({ how }) => how === way));
  return key(
    ...(curve ? [{ name: names.line, colour: COLOUR.green, symbol: "line" as const }] : []),
    ...ways.map((way) => ({ name: names[way], colour: LOOKS[way].colour, symbol: LOOKS[way].symbol })),
    { name: names.marked, colour: COLOUR.text, symbol: "star" },
    { name: names.chosen, colour: "var(--link)", symbol: "hollow" });
}

const FRAME = { marginRight: 18, marginBottom: 46, marginLeft: 50 };

/** The curve and the plans for a width in pixels; while there is no plan, none is marked. */
export function drawn(width: number, axis: Axis, frontier: Frontier, marked: Plan | undefined, choice: Choice): Dots {
  const { plans, curve } = frontier;
  const height = Math.round(Math.min(520, Math.max(380, width * 0.66)));
  const at = (place: Plan | Vertex): Point => [place[axis] * 100, place.scaled_merit];
  const shown = plans.filter((plan) => at(plan).every(Number.isFinite));
  const all = [...shown, ...(curve ?? [])].map(at);
  const [x, y] = [domain(all.map(([x]) => x)), domain(all.map(([, y]) => y))];
  const sizes = effectiveSizes(x, (rate) => positionOf(rate, axis, frontier.herd), width - FRAME.marginLeft - FRAME.marginRight);
  const top = sizes.length > 0 ? 66 : 34;
  const svg = draw({
    width, height, ...FRAME, marginTop: top,
    x: { domain: [...x], label: say.picture[axis].axis, labelArrow: "none", labelAnchor: "right", labelOffset: 40, ticks: width / 80 },
    y: { domain: [...y], label: say.picture.merit, labelArrow: "none", grid: true },
    symbol: { type: "identity" }, r: { type: "identity" },
    marks: [
      curve?.length ? best(curve.map(at), x, y) : null, Plot.axisX({}),
      sizes.length === 0 ? null : Plot.axisX(sizes.map(([x]) => x), {
        anchor: "top", label: say.picture.ne, labelAnchor: "right", labelArrow: "none", labelOffset: 34, tickFormat: (_: number, i: number) => fixed(sizes[i]![1], 0),
      }),
      marked && [limit(marked, axis, frontier.herd, x, y), labels(shown, at, marked, x, y, height - top - FRAME.marginBottom)],
      signs(shown, at), marked && star(at(marked)),
    ],
  });
  const [across, down] = [svg.scale("x")!, svg.scale("y")!];
  const places = shown.map((plan) => ({ plan, x: across.apply(at(plan)[0]) as number, y: down.apply(at(plan)[1]) as number, told: told(plan) }));
  return new Dots(svg, [width, height], places, choice);
}

function told(plan: Plan): string[] {
  const { how, parents, told } = say;
  return [
    `${called(plan)}: ${how[plan.how]}`, told.merit(digits(plan.merit, 4), plan.scaled_merit), told.rate(plan.rate, plan.effective_size),
    told.relationship(plan.relationship), parents(plan.males, plan.females), ...(Number.isFinite(plan.share) ? [told.share(plan.share)] : []),
  ];
}

function figuresOf(curve: readonly Vertex[]): Picture<Vertex>["table"] {
  const { columns } = table;
  const column = (key: "weight" | "scaled_merit" | "rate" | "effective_size" | "relationship" | "degrees", look: Partial<Column<Vertex>>): Column<Vertex> =>
    ({ key, title: columns[key][0], note: columns[key][1], value: (vertex) => vertex[key], ...look });
  return {
    rows: curve, file: "curve.csv",
    columns: [
      column("weight", { show: ({ weight }) => short(weight) }), column("scaled_merit", { decimals: 3 }), column("rate", { percent: true }),
      column("effective_size", { decimals: 1 }), column("relationship", { percent: true }), column("degrees", { decimals: 0 }),
    ],
  };
}
