// Shows the curve of the best possible with the plans beneath it, and the plan that a reader chooses.

import { h, part } from "../shared/dom.js";
import { page, type Shown } from "../shared/frame.js";
import * as words from "../shared/texts/frontier.js";
import { Choice } from "./choice.js";
import { beside, cards } from "./figures.js";
import * as made from "./made.js";
import * as matings from "./matings.js";
import { read, type Frontier, type Plan } from "./model.js";
import { picture } from "./picture.js";
import * as plans from "./plans.js";

function sections(frontier: Frontier): HTMLElement[] {
  const marked = frontier.plans[frontier.marked] ?? frontier.plans[0];
  if (!marked) return [part("curve", words.curve.title, h("p", {}, words.curve.no_plans))];
  const choice = new Choice(marked);
  return [curve(frontier, marked, choice), plans.section(frontier, choice), matings.section(frontier, choice)];
}

function curve(frontier: Frontier, marked: Plan, choice: Choice): HTMLElement {
  const { title, lead } = words.curve;
  return part("curve", title,
    h("p", { class: "lead" }, lead(frontier.herd.matings, frontier.curve !== null)),
    frontier.herd.last_is_unfinished && h("p", { class: "warning" }, words.curve.no_base(frontier.herd.last_animals)),
    cards(marked, frontier),
    h("div", { class: "with-plan" }, picture(frontier, marked, choice), beside(marked, choice)));
}

function show(frontier: Frontier): Shown {
  return { title: words.title(frontier.herd.name), made: frontier.made, parts: [...sections(frontier), made.section(frontier)] };
}

page({ what: "page", program: "qob-frontier", saved: "frontier.json" }, (json) => show(read(json)));
