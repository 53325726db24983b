// The full search of the chosen point, and the plans that compete for it.

import { called, type Plan } from "../../../frontier/model.js";
import { fill, h, type Child } from "../../../shared/dom.js";
import { atLeast, digits, percent } from "../../../shared/format.js";
import { plain } from "../../../shared/table.js";
import { said } from "../../errors.js";
import type { Search, Searches } from "../../searches.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";

const MOST = 100;  // seeds

export class Thorough {
  private readonly seeds = h("input", { type: "number", id: "seeds", min: 1, max: MOST, step: 1 });
  private readonly start = h("button", { type: "button", class: "plainbutton", onclick: () => this.begin() }, words.goal.search.start);
  private readonly cancel = h("button", { type: "button", class: "plainbutton", onclick: () => this.searches.stop() }, words.frame.cancel);
  private readonly told = h("output", { class: "told" });
  private readonly list = h("ul", { class: "searches" });
  private readonly found = h("div");
  readonly element: HTMLElement;
  private shown: readonly (Plan | undefined)[] = [];

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff, private readonly searches: Searches) {
    const { title, lead, seeds, help } = words.goal.search;
    this.seeds.addEventListener("change", () => this.seeds.checkValidity() && work.choose({ seeds: this.seeds.valueAsNumber }));
    this.element = h("section", { class: "group" }, h("h3", {}, title),
      h("p", {}, lead),
      h("div", { class: "line screen" }, this.start, this.cancel),
      h("details", { class: "screen" }, h("summary", {}, words.goal.more), h("div", { class: "line" }, h("label", { for: this.seeds.id }, seeds), this.seeds), h("p", { class: "note" }, help)),
      this.told, this.list, this.found);
  }

  private begin(): void {
    if (!this.seeds.reportValidity() || !this.tradeoff.plan) return;
    void this.searches.start(this.tradeoff.plan);
    this.cancel.focus();
  }

  show(): void {
    const { searches, tradeoff, work } = this;
    if (document.activeElement !== this.seeds) this.seeds.value = String(work.choices.seeds);
    this.start.disabled = searches.busy || !tradeoff.plan || tradeoff.stale;
    if (!searches.busy && document.activeElement === this.cancel) this.start.focus();
    this.cancel.hidden = !searches.busy;
    fill(this.list, searches.all.map(line));
    const said = searches.of === null ? "" : searches.busy ? words.goal.search.busy(called(searches.of)) : this.ended(searches.of);
    if (this.told.textContent !== said) this.told.textContent = said;
    this.compare();
  }

  /** What came of searches of a plan's point. */
  private ended(plan: Plan): string {
    const rivals = this.tradeoff.rivals(plan);
    const kept = rivals.length > 1 && Number.isNaN(bestOf(rivals).seed);
    return [words.goal.search.ended(called(plan)), kept && words.goal.search.kept].filter(Boolean).join(" ");
  }

  /** The plans of the point, each with what takes it. */
  private compare(): void {
    const { tradeoff } = this;
    const rivals = tradeoff.plan ? tradeoff.rivals(tradeoff.plan) : [];
    const now = [tradeoff.plan, ...rivals];
    if (now.length === this.shown.length && now.every((plan, i) => plan === this.shown[i])) return;
    this.shown = now;
    const focused = (document.activeElement as HTMLElement | null)?.dataset["rival"];
    fill(this.found, rivals.length > 1 && this.table(rivals));
    if (focused) this.found.querySelector<HTMLElement>(`[data-rival="${CSS.escape(focused)}"]`)?.focus();
  }

  private table(rivals: readonly Plan[]): HTMLElement {
    const { caption, columns } = words.goal.search;
    const best = bestOf(rivals);
    const rows = rivals.map((plan): Child[] => [
      [this.chooser(plan), plan === best && ` ${words.goal.search.best}`], atLeast(plan.share), digits(plan.merit, 5), percent(plan.rate, 3), percent(plan.inbreeding),
    ]);
    return plain(caption, columns, rows);
  }

  private chooser(plan: Plan): HTMLElement {
    const name = Number.isNaN(plan.seed) ? words.goal.search.direct : words.goal.search.seed(plan.seed);
    const choose = () => this.work.choose({ point: plan.folder });
    return h("button", { type: "button", class: "open", "data-rival": plan.folder, "aria-pressed": String(plan === this.tradeoff.plan), onclick: choose }, name);
  }
}

const bestOf = (rivals: readonly Plan[]): Plan => rivals.reduce((best, plan) => (plan.share > best.share ? plan : best));

function line({ seed, state, progress, error }: Search): HTMLElement {
  const { search } = words.goal;
  const name = search.seed(seed);
  const share = progress ? { value: String(progress.share) } : {};
  const more = state === "failed" ? said(error!) : state !== "running" ? search.states[state]
    : progress ? [percent(progress.share, 0), Number.isNaN(progress.left) ? "" : words.frame.left(progress.left)].filter(Boolean).join(", ") : search.states.running;
  return h("li", {}, h("span", {}, name, ": "), state === "running" && h("progress", { max: 1, ...share, "aria-label": name }), " ", h("span", {}, more));
}
