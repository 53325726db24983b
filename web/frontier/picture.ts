// Merit against inbreeding: the line of the best possible and the plans beneath it, each a sign that can be
// pointed at and chosen. The rate of inbreeding is a straight function of the mean relationship, so both
// scales show one picture, and the effective size stands above either.

import * as Plot from "@observablehq/plot";
import { choose } from "../shared/choose.js";
import { h } from "../shared/dom.js";
import { digits, fixed } from "../shared/format.js";
import { key, type Shape } from "../shared/key.js";
import { COLOUR, draw, figure, type Picture } from "../shared/plot.js";
import type { Column } from "../shared/table.js";
import * as words from "../shared/texts/frontier.js";
import type { Choice } from "./choice.js";
import { Dots } from "./dots.js";
import { called, type Frontier, type Plan, type Vertex } from "./model.js";

type Axis = "rate" | "relationship";
type Point = readonly [x: number, y: number];

export function picture(frontier: Frontier, marked: Plan, choice: Choice): HTMLElement {
  const { title, description, axes, help } = words.picture;
  const scales = (["rate", "relationship"] as const).map((value) => ({ name: words.picture[value].name, value }));
  return choose(axes, scales, (axis) => {
    let dots: Dots | undefined;
    choice.follow(() => dots?.mark());
    return figure({
      title, description: description(frontier.plans.length, frontier.herd.matings, frontier.curve !== null),
      plot: (width) => {
        dots = drawn(width, axis, frontier, marked, choice);
        return h("div", {}, legend(frontier), dots.element);
      },
      note: [h("span", { class: "screen" }, help, " "), words.picture[axis].note],
      table: frontier.curve ? figuresOf(frontier.curve) : undefined,
    });
  });
}

const LOOKS: Record<Plan["how"], { colour: string; symbol: Shape; drawn: Plot.SymbolType; r: number; hollow: boolean }> = {
  greedy: { colour: COLOUR.purple, symbol: "hollow_triangle", drawn: "triangle", r: 6, hollow: true },
  exchanges: { colour: COLOUR.orange, symbol: "hollow_diamond", drawn: "diamond", r: 6, hollow: true },
  search: { colour: COLOUR.blue, symbol: "circle", drawn: "circle", r: 3.5, hollow: false },
};
const WAYS = ["greedy", "exchanges", "search"] as const;

function legend({ curve, plans }: Frontier): HTMLElement {
  const names = words.picture.key;
  const ways = WAYS.filter((way) => plans.some(({ how }) => how === way));
  return key(
    ...(curve ? [{ name: names.line, colour: COLOUR.green, symbol: "line" as const }] : []),
    ...ways.map((way) => ({ name: names[way], colour: LOOKS[way].colour, symbol: LOOKS[way].symbol })),
    { name: names.marked, colour: COLOUR.text, symbol: "star" },
    { name: names.chosen, colour: "var(--link)", symbol: "hollow" });
}

const FRAME = { marginTop: 34, marginRight: 18, marginBottom: 46, marginLeft: 50 };

function drawn(width: number, axis: Axis, frontier: Frontier, marked: Plan, choice: Choice): Dots {
  const { plans, curve } = frontier;
  const height = Math.round(Math.min(520, Math.max(380, width * 0.66)));
  const at = (place: Plan | Vertex): Point => [place[axis] * 100, place.scaled_merit];
  const shown = plans.filter((plan) => at(plan).every(Number.isFinite));
  const all = [...shown, ...(curve ?? [])].map(at);
  const [x, y] = [domain(all.map(([x]) => x)), domain(all.map(([, y]) => y))];
  const sizes = effectiveSizes(x, (rate) => positionOf(rate, axis, frontier.herd), width - FRAME.marginLeft - FRAME.marginRight);
  const svg = draw({
    width, height, ...FRAME, ...(sizes.length > 0 && { marginTop: 66 }),
    x: { domain: x, label: words.picture[axis].axis, labelArrow: "none", labelAnchor: "right", labelOffset: 40, ticks: width / 80 },
    y: { domain: y, label: words.picture.merit, labelArrow: "none", grid: true },
    symbol: { type: "identity" }, r: { type: "identity" },
    marks: [
      curve?.length ? best(curve.map(at), x, y) : null, Plot.axisX({}),
      sizes.length === 0 ? null : Plot.axisX(sizes.map(([x]) => x), {
        anchor: "top", label: words.picture.ne, labelAnchor: "right", labelArrow: "none", labelOffset: 34, tickFormat: (_: number, i: number) => fixed(sizes[i]![1], 0),
      }),
      limit(marked, axis, frontier.herd, y), signs(shown, at), star(at(marked)), labels(shown, at, marked, x),
    ],
  });
  const [across, down] = [svg.scale("x")!, svg.scale("y")!];
  const places = shown.map((plan) => ({ plan, x: across.apply(at(plan)[0]) as number, y: down.apply(at(plan)[1]) as number, told: told(plan) }));
  return new Dots(svg, [width, height], places, choice);
}

const ROOM = 0.06;  // of the range, beside the outermost values

function domain(values: readonly number[]): [number, number] {
  const low = values.reduce((a, b) => Math.min(a, b), Infinity), high = values.reduce((a, b) => Math.max(a, b), -Infinity);
  if (!(low <= high)) return [0, 1];
  const room = ROOM * (high - low) || Math.abs(high) * ROOM || 1;
  return [low - room, high + room];
}

/** Where a rate stands on a scale, in percent. */
function positionOf(rate: number, axis: Axis, { last_relationship: last, generation_interval: interval }: Frontier["herd"]): number {
  return 100 * (axis === "rate" ? rate : last + (rate * (2 - last)) / interval);
}

/** Effective sizes that people speak of, those that matter most first: of two that would touch the first is told. */
const SIZES = [50, 100, 25, 200, 10, 500, 1000, 5, 30, 70, 15, 20, 40, 150, 300, 2000];
const SIZE_ROOM = 34;  // pixels

function effectiveSizes([low, high]: readonly [number, number], position: (rate: number) => number, pixels: number): (readonly [x: number, size: number])[] {
  const kept: (readonly [number, number])[] = [];
  for (const size of SIZES) {
    const x = position(1 / (2 * size));
    const free = kept.every(([other]) => (Math.abs(other - x) / (high - low)) * pixels >= SIZE_ROOM);
    if (x >= low && x <= high && free) kept.push([x, size]);
  }
  return kept;
}

/** The line, which goes on straight beyond the plans of most merit and of least relationship, and beyond it
 * a shade where no plan can lie. */
function best(points: readonly Point[], x: readonly [number, number], y: readonly [number, number]): Plot.Markish {
  const ends: Point[] = [[x[1], points[0]?.[1] ?? y[1]], ...points, [points[points.length - 1]?.[0] ?? x[0], y[0]]];
  const beyond: Point[] = [...ends, [x[0], y[0]], [x[0], y[1]], [x[1], y[1]]];
  return [
    Plot.line(beyond, { curve: "linear-closed", fill: COLOUR.muted, fillOpacity: 0.13, stroke: "none" }),
    Plot.line(points, { stroke: COLOUR.green, strokeWidth: 2 }),
    Plot.text([words.picture.impossible], { frameAnchor: "top-left", dx: 8, dy: 8, fill: "var(--soft)", fontStyle: "italic" }),
  ];
}

/** The rate that a target asks for. */
function limit({ target }: Plan, axis: Axis, herd: Frontier["herd"], [low]: readonly [number, number]): Plot.Markish {
  if (!target || target.kind === "degrees") return null;
  const x = positionOf(target.kind === "ne" ? 1 / (2 * target.value) : target.value, axis, herd);
  return [
    Plot.ruleX([x], { stroke: COLOUR.text, strokeDasharray: "5 4", clip: true }),
    Plot.text([[x, low]], { text: () => words.picture.limit, textAnchor: "start", dx: 5, dy: -8, fill: "var(--soft)" }),
  ];
}

/** Searches over the plans that were made at once, which are larger, so that both are seen. */
function signs(plans: readonly Plan[], at: (plan: Plan) => Point): Plot.Markish {
  return WAYS.map((way) => {
    const { colour, drawn: symbol, r, hollow } = LOOKS[way];
    const look = hollow ? { stroke: colour, strokeWidth: 1.8, fill: "var(--card)", fillOpacity: 0.6 } : { fill: colour, stroke: "var(--card)", strokeWidth: 0.8 };
    return Plot.dot(plans.filter(({ how }) => how === way), { x: (plan: Plan) => at(plan)[0], y: (plan: Plan) => at(plan)[1], symbol, r, ...look });
  });
}

/** The marked plan. */
const star = (at: Point) => Plot.dot([at], { symbol: "star", r: 6, fill: COLOUR.text, stroke: "var(--card)", strokeWidth: 1 });

const MIDDLE = 0.42;  // of the scale: at its left is the room of the vertical one

/** The marked plan and the herd's own goal have their names beside them, below the line and towards the middle. */
function labels(plans: readonly Plan[], at: (plan: Plan) => Point, marked: Plan, [low, high]: readonly [number, number]): Plot.Markish {
  const own = plans.find((plan) => plan.own);
  const named = plans.filter((plan) => plan === marked || plan === own);
  return named.map((plan) => {
    const side = at(plan)[0] - low > MIDDLE * (high - low) ? { textAnchor: "end" as const, dx: -10 } : { textAnchor: "start" as const, dx: 12 };
    return Plot.text([at(plan)], { text: () => called(plan), ...side, dy: 17, fontWeight: 650, stroke: "var(--card)", strokeWidth: 4, fill: "currentColor" });
  });
}

function told(plan: Plan): string[] {
  const { told: say } = words;
  return [
    `${called(plan)}: ${words.how[plan.how]}`, say.merit(digits(plan.merit, 4), plan.scaled_merit), say.rate(plan.rate, plan.effective_size),
    say.relationship(plan.relationship), words.parents(plan.males, plan.females), ...(Number.isFinite(plan.share) ? [say.share(plan.share)] : []),
  ];
}

function figuresOf(curve: readonly Vertex[]): Picture<Vertex>["table"] {
  const { columns } = words.table;
  const column = (key: "weight" | "scaled_merit" | "rate" | "effective_size" | "relationship" | "degrees", look: Partial<Column<Vertex>>): Column<Vertex> =>
    ({ key, title: columns[key][0], note: columns[key][1], value: (vertex) => vertex[key], ...look });
  return {
    rows: curve, file: "curve.csv",
    columns: [
      column("weight", { show: ({ weight }) => digits(weight) }), column("scaled_merit", { decimals: 3 }), column("rate", { percent: true }),
      column("effective_size", { decimals: 1 }), column("relationship", { percent: true }), column("degrees", { decimals: 0 }),
    ],
  };
}
