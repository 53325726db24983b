// What is planned: how many matings, by which rules, and how much inbreeding for how much merit.

import { saying } from "../../frontier/say.js";
import { h } from "../../shared/dom.js";
import type { Planning } from "../planning.js";
import { said } from "../errors.js";
import type { Step } from "../step.js";
import { words } from "../texts/words.js";
import type { Tradeoff } from "../tradeoff.js";
import type { Work } from "../work.js";
import { Curve } from "./goal/curve.js";
import { Matings } from "./goal/matings.js";
import { Meaning } from "./goal/meaning.js";
import { Rules } from "./goal/rules.js";
import { Thorough } from "./goal/search.js";
import { Along, Wanted } from "./goal/target.js";
import { Waiting } from "./waiting.js";

interface Shown { element: HTMLElement; show: () => void }

export function step(work: Work, { tradeoff, searches }: Planning): Step {
  saying(words.goal.say);
  const matings = new Matings(work), rules = new Rules(work, tradeoff);
  const thorough = new Thorough(work, tradeoff, searches);
  const between = [new Curve(work, tradeoff), new Meaning(tradeoff), new Along(work, tradeoff), new Wanted(work, tradeoff), thorough] as const;
  const [curve, meaning, along, wanted] = between;
  const waiting = new Waiting(() => tradeoff.stop());
  const again = h("button", { type: "button", class: "plainbutton screen", onclick: () => tradeoff.resume() }, words.goal.resume);
  const shown = h("div", {}, h("div", { class: "with-plan" }, h("div", {}, curve.element, along.element), meaning.element), wanted.element, thorough.element);
  const body = h("div", { class: "goal" }, matings.element, rules.element,
    h("section", { class: "group" }, h("h3", {}, words.goal.tradeoff.title), h("p", {}, words.goal.tradeoff.lead), waiting.element, again, shown));

  const show = () => {
    tell(tradeoff, waiting);
    again.hidden = tradeoff.state.state !== "stopped";
    shown.hidden = !tradeoff.frontier;
    shown.classList.toggle("stale", tradeoff.stale);
    for (const each of [matings, rules, ...between] as Shown[]) each.show();
  };
  const unfollow = [tradeoff.follow(show), searches.follow(() => thorough.show())];
  return { id: "goal", title: words.goal.title, body, ready: () => tradeoff.known, show, end: () => unfollow.forEach((act) => act()) };
}

/** How far the trade-off is. */
function tell({ state, frontier, stale }: Tradeoff, waiting: Waiting): void {
  const { reading, planning, ready, none } = words.goal.tradeoff;
  if (stale) waiting.rest(none);
  else if (state.state === "reading") waiting.show(reading, state.progress?.share, state.progress?.left);
  else if (state.state === "planning") waiting.show(planning, state.made / state.all);
  else waiting.rest(state.state === "ready" ? ready(frontier!.plans.length) : state.state === "failed" ? said(state.error) : state.state === "stopped" ? words.frame.cancelled : none);
}
