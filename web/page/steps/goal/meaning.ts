// What the chosen point means: its figures, each with what it says.

import { called, type Plan } from "../../../frontier/model.js";
import { facts, fill, h } from "../../../shared/dom.js";
import { atLeast, digits, fixed, NONE, percent } from "../../../shared/format.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";

export class Meaning {
  readonly element = h("div", { class: "meaning" });
  private shown: Plan | undefined;

  constructor(private readonly tradeoff: Tradeoff) {}

  show(): void {
    const { plan } = this.tradeoff;
    if (plan === this.shown) return;
    this.shown = plan;
    fill(this.element, plan && this.figures(plan));
  }

  private figures(plan: Plan): HTMLElement[] {
    const { meaning } = words.goal;
    const { herd } = this.tradeoff.frontier!;
    const { rate, effective_size: size, males, females } = plan;
    return [
      h("p", {}, meaning.chosen, " ", h("strong", {}, called(plan))),
      facts(
        [meaning.rate, percent(rate), rate > 0 ? meaning.rises(rate) : meaning.falls],
        [meaning.size, Number.isFinite(size) ? fixed(size, 1) : NONE, Number.isFinite(size) ? meaning.sizeNote : meaning.falls],
        [meaning.merit, digits(plan.merit, 4), meaning.above(plan.scaled_merit)],
        [meaning.parents, meaning.used(males, females), meaning.candidates(herd.males, herd.females)],
        [meaning.inbreeding, percent(plan.inbreeding), meaning.inbreedingNote],
        [meaning.share, atLeast(plan.share), meaning.shareNote]),
      ...(plan.keeps_constraint === false ? [h("p", { class: "warning" }, meaning.breaks(rate))] : []),
    ];
  }
}
