// What the chosen point means: its figures, each with what it says.

import { called, type Plan } from "../../../frontier/model.js";
import { facts, fill, h } from "../../../shared/dom.js";
import { atLeast, digits, fixed, NONE, percent } from "../../../shared/format.js";
import { meets } from "../../points.js";
import { words } from "../../texts/words.js";
import { ADVISED, type Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";

export class Meaning {
  readonly element = h("div", { class: "meaning" });
  private shown: Plan | undefined;
  private name = "";

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {}

  show(): void {
    const { tradeoff: { plan }, work: { choices } } = this;
    const name = choices.point === "" && choices.target === null ? words.goal.meaning.suggested : words.goal.meaning.chosen;
    if (plan === this.shown && name === this.name) return;
    [this.shown, this.name] = [plan, name];
    fill(this.element, plan && this.figures(plan));
  }

  private figures(plan: Plan): HTMLElement[] {
    const { meaning } = words.goal;
    const { herd } = this.tradeoff.frontier!;
    const { rate, effective_size: size, males, females } = plan;
    return [
      h("p", {}, this.name, " ", h("strong", {}, called(plan))),
      facts(
        [meaning.rate, percent(rate), rate > 0 ? meaning.rises(rate) : meaning.falls],
        [meaning.size, Number.isFinite(size) ? fixed(size, size < 10 ? 1 : 0) : NONE, Number.isFinite(size) ? meaning.sizeNote : meaning.falls],
        [meaning.merit, digits(plan.merit, 4), meaning.above(plan.scaled_merit)],
        [meaning.parents, meaning.used(males, females), meaning.candidates(herd.males, herd.females)],
        [meaning.inbreeding, percent(plan.inbreeding), meaning.inbreedingNote],
        [meaning.share, atLeast(plan.share), meaning.shareNote]),
      ...(herd.last_is_unfinished ? [h("p", { class: "note" }, meaning.noBase(herd.last_animals))] : []),
      ...(plan.keeps_constraint === false ? [h("p", { class: "warning" }, meets(ADVISED)(plan) ? meaning.unreachable(ADVISED.value, rate) : meaning.breaks(rate))] : []),
    ];
  }
}
