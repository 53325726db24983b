// The figures of a plan: the marked one's as cards, the chosen one's beside those of the marked one.

import { facts, fill, group, h, link, type Child } from "../shared/dom.js";
import { atLeast, count, digits, fixed, NONE, percent } from "../shared/format.js";
import { plain } from "../shared/table.js";
import * as words from "../shared/texts/frontier.js";
import type { Choice } from "./choice.js";
import { called, type Frontier, type Plan } from "./model.js";

const VALUES = {
  share: ({ share }: Plan) => atLeast(share),
  scaled_merit: ({ scaled_merit }: Plan) => words.sd(scaled_merit),
  merit: ({ merit }: Plan) => digits(merit, 4),
  rate: ({ rate }: Plan) => percent(rate),
  ne: ({ effective_size }: Plan) => (Number.isFinite(effective_size) ? fixed(effective_size, 1) : NONE),
  relationship: ({ relationship }: Plan) => percent(relationship),
  inbreeding: ({ inbreeding }: Plan) => percent(inbreeding),
  males: ({ males }: Plan) => count(males),
  females: ({ females }: Plan) => count(females),
  parents: ({ males, females }: Plan) => words.parents(males, females),
  how: ({ how }: Plan) => words.how[how],
  time: ({ seconds }: Plan) => words.seconds(seconds),
};

const keys = <T extends object>(of: T) => Object.keys(of) as (keyof T)[];

/** The marked plan for those who read nothing else. */
export function cards(plan: Plan, { herd, plans }: Frontier): Child[] {
  const more = (figure: keyof typeof words.cards) =>
    figure === "merit" ? words.above(plan.scaled_merit)
    : figure === "parents" ? words.candidates(herd.males, herd.females)
    : figure === "ne" && !(plan.rate > 0) ? words.falls : words.cards[figure][1];
  return [
    h("p", {}, words.curve.marked(called(plan), plans.length)),
    facts(...keys(words.cards).map((figure) => [words.cards[figure][0], VALUES[figure](plan), more(figure)] as const)),
    broken(plan),
  ];
}

function broken({ keeps_constraint, rate }: Plan): Child {
  return keeps_constraint === false && h("p", { class: "warning" }, words.curve.breaks(rate));
}

/** The chosen plan, beside the marked one when it is another. */
export function beside(marked: Plan, choice: Choice): HTMLElement {
  const { title, short, caption, figure, marked: other, marked_itself, matings } = words.chosen;
  const shown = h("div");
  const name = h("output", { class: "told" });
  choice.follow((plan) => {
    const others = plan === marked ? [] : [marked];
    fill(name, others.length ? called(plan) : marked_itself(called(plan)));
    const rows = keys(words.lines).map((each): Child[] => [words.lines[each], ...[plan, ...others].map(VALUES[each])]);
    fill(shown, plain(caption, [figure, short, ...others.map(() => other)], rows), broken(plan));
  });
  return group(title, name, shown, h("p", { class: "screen" }, link("matings", matings)));
}
