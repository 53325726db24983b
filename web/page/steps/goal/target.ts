// A point of the trade-off by what the reader wants of it: by a place along the curve, or by a figure.

import type { Vertex } from "../../../frontier/model.js";
import { h } from "../../../shared/dom.js";
import { digits } from "../../../shared/format.js";
import { TARGETS, type Target } from "../../choices.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";

const AFTER = 350;  // milliseconds for which a slider must rest

/** Rates are shown in percent. */
const unit = (kind: Target["kind"]) => (kind === "rate" ? 100 : 1);
const shown = ({ kind, value }: Target) => String(Number((value * unit(kind)).toPrecision(12)));

/** The slider along the curve, from most merit to least relationship. */
export class Along {
  private readonly told = h("span", { class: "note", id: "along-told" });
  private readonly slider = h("input", { type: "range", id: "along", min: 0, max: 90, step: 1, "aria-describedby": this.told.id });
  readonly element = h("div", { class: "along screen" },
    h("label", { for: this.slider.id }, words.goal.along.label),
    h("span", { class: "ends" }, h("span", {}, words.goal.along.merit), this.slider, h("span", {}, words.goal.along.relationship)), this.told);
  private waiting: ReturnType<typeof setTimeout> | undefined;

  constructor(work: Work, private readonly tradeoff: Tradeoff) {
    this.slider.addEventListener("input", () => {
      this.tell();
      clearTimeout(this.waiting);
      this.waiting = setTimeout(() => {
        this.waiting = undefined;
        work.choose({ target: { kind: "degrees", value: Number(this.slider.value) }, point: "" });
      }, AFTER);
    });
  }

  show(): void {
    const { plan } = this.tradeoff;
    const degrees = plan?.target?.kind === "degrees" ? plan.target.value : plan?.degrees ?? NaN;
    this.element.hidden = !this.tradeoff.frontier?.curve?.some((vertex) => Number.isFinite(vertex.degrees));
    if (this.waiting !== undefined || Number.isNaN(degrees)) return;
    this.slider.value = String(Math.round(degrees));
    this.tell();
  }

  /** What is best possible there. */
  private tell(): void {
    const at = placeAt(this.tradeoff.frontier?.curve ?? [], Number(this.slider.value));
    this.told.textContent = at ? words.goal.along.best(at.rate, at.rate > 0 ? 0.5 / at.rate : NaN, at.scaled_merit) : "";
    this.slider.setAttribute("aria-valuetext", this.told.textContent);
  }
}

/** Between two corners of the curve. */
function placeAt(curve: readonly Vertex[], degrees: number): { rate: number; scaled_merit: number } | undefined {
  const sorted = [...curve].sort((a, b) => a.degrees - b.degrees);
  const after = sorted.findIndex((vertex) => vertex.degrees >= degrees);
  const b = sorted[after < 0 ? sorted.length - 1 : after], a = sorted[Math.max(0, after - 1)];
  if (!a || !b) return b;
  const share = after < 0 || b.degrees <= a.degrees ? 1 : Math.max(0, (degrees - a.degrees) / (b.degrees - a.degrees));
  const mix = (key: "rate" | "scaled_merit") => a[key] + share * (b[key] - a[key]);
  return { rate: mix("rate"), scaled_merit: mix("scaled_merit") };
}

/** The form for a figure. */
export class Wanted {
  private readonly kind = h("select", { id: "target-kind", "aria-label": words.goal.target.kind },
    TARGETS.map((kind) => h("option", { value: kind }, words.goal.target.kinds[kind])));
  private readonly told = h("output", { id: "target-told", class: "fault" });
  private readonly value = h("input", {
    type: "number", id: "target-value", step: "any", required: true, "aria-label": words.goal.target.value, "aria-describedby": this.told.id,
  });
  private readonly help = h("p", { class: "note" });
  readonly element: HTMLElement;
  private shown: Target | null | undefined;

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {
    const { title, take } = words.goal.target;
    const form = h("form", { class: "line", onsubmit: (event) => this.take(event) },
      this.kind, this.value, h("button", { type: "submit", class: "plainbutton" }, take));
    this.kind.addEventListener("change", () => this.explain());
    this.kind.value = "ne";
    this.element = h("fieldset", { class: "fields screen" }, h("legend", {}, title), form, this.help, this.told);
    this.explain();
  }

  private explain(): void {
    this.help.textContent = words.goal.target.help[this.kind.value as Target["kind"]];
  }

  private take(event: Event): void {
    event.preventDefault();
    const kind = this.kind.value as Target["kind"];
    this.work.choose({ target: { kind, value: Number((this.value.valueAsNumber / unit(kind)).toPrecision(12)) }, point: "" });
  }

  show(): void {
    const { target } = this.work.choices;
    this.told.textContent = this.tradeoff.refused ?? (target && target.kind !== "degrees" ? this.missed(target) : null);
    if (this.shown === target) return;
    this.shown = target;
    this.value.value = target ? shown(target) : "";
    if (!target) return;
    this.kind.value = target.kind;
    this.explain();
  }

  /** Of a plan that is not what was asked for, as none can be. */
  private missed(target: Target): string | null {
    const { aim } = this.tradeoff;
    return aim?.keeps_constraint === false ? words.goal.target.missed(digits(target.value * unit(target.kind)), aim.rate) : null;
  }
}
