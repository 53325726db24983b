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

/** The slider along the curve, in its direction: least relationship at the left, most merit at the right. */
export class Along {
  private readonly told = h("span", { class: "note", id: "along-told" });
  private readonly slider = h("input", { type: "range", id: "along", dir: "rtl", min: 0, max: 90, step: 1, "aria-describedby": this.told.id });
  readonly element = h("div", { class: "along screen" },
    h("label", { for: this.slider.id }, words.goal.along.label),
    h("span", { class: "ends" }, h("span", {}, words.goal.along.relationship), this.slider, h("span", {}, words.goal.along.merit)), this.told);
  private waiting: ReturnType<typeof setTimeout> | undefined;

  constructor(work: Work, private readonly tradeoff: Tradeoff) {
    this.slider.addEventListener("input", () => {
      this.tell();
      clearTimeout(this.waiting);
      const { book, choices } = work;
      this.waiting = setTimeout(() => {
        this.waiting = undefined;
        if (book === work.book && choices === work.choices) work.choose({ target: { kind: "degrees", value: Number(this.slider.value) }, point: "" });
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

const USUAL: readonly Target["kind"][] = ["ne", "rate"];

/** The forms for a figure: those that breeders ask for, and folded below them the others. */
export class Wanted {
  private readonly usual: Figure;
  private readonly more: Figure;
  private readonly coming = h("progress", { "aria-label": words.goal.target.coming, hidden: true });
  private readonly state = h("span", { role: "status" });
  private readonly told = h("output", { id: "target-told", class: "fault" });
  readonly element: HTMLElement;

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {
    const { title } = words.goal.target;
    [this.usual, this.more] = [USUAL, TARGETS.filter((kind) => !USUAL.includes(kind))].map((kinds) => new Figure(work, kinds, this.told.id)) as [Figure, Figure];
    this.element = h("fieldset", { class: "fields screen" }, h("legend", {}, title), this.usual.element,
      h("details", {}, h("summary", {}, words.goal.more), this.more.element), h("p", { class: "line" }, this.coming, this.state), this.told);
  }

  show(): void {
    const { work: { choices: { target, point } }, tradeoff: { awaited, refused, aim, plan, state } } = this;
    this.told.textContent = refused ?? (target && target.kind !== "degrees" ? this.missed(target) : null);
    this.coming.hidden = !awaited || state.state === "stopped";
    const { coming, there } = words.goal.target;
    const said = awaited ? coming : target && point === "" && aim && aim === plan ? there : "";
    if (this.state.textContent !== said) this.state.textContent = said;
    for (const each of [this.usual, this.more]) each.show(target);
  }

  /** Of a plan that is not what was asked for, as none can be. */
  private missed(target: Target): string | null {
    const { aim } = this.tradeoff;
    return aim?.keeps_constraint === false ? words.goal.target.missed(digits(target.value * unit(target.kind)), aim.rate) : null;
  }
}

/** A form for some kinds of figure. */
class Figure {
  private readonly kind: HTMLSelectElement;
  private readonly value: HTMLInputElement;
  private readonly help = h("p", { class: "note" });
  readonly element: HTMLElement;
  private shown: Target | null | undefined;

  constructor(private readonly work: Work, private readonly kinds: readonly Target["kind"][], told: string) {
    const { target } = words.goal;
    this.kind = h("select", { id: `target-kind-${kinds[0]}`, "aria-label": target.kind, onchange: () => this.explain() },
      kinds.map((kind) => h("option", { value: kind }, target.kinds[kind])));
    this.value = h("input", { type: "number", id: `target-value-${kinds[0]}`, step: "any", required: true, "aria-label": target.value, "aria-describedby": told });
    const form = h("form", { class: "line", onsubmit: (event) => this.take(event) },
      this.kind, this.value, h("button", { type: "submit", class: "plainbutton" }, target.take));
    this.element = h("div", {}, form, this.help);
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

  show(target: Target | null): void {
    if (this.shown === target) return;
    this.shown = target;
    const mine = target && this.kinds.includes(target.kind) ? target : null;
    this.value.value = mine ? shown(mine) : "";
    if (!mine) return;
    this.kind.value = mine.kind;
    this.explain();
  }
}
