// The picture of the trade-off, drawn anew whenever a plan has come.

import { Choice } from "../../../frontier/choice.js";
import type { Dots } from "../../../frontier/dots.js";
import type { Axis } from "../../../frontier/marks.js";
import type { Frontier, Plan } from "../../../frontier/model.js";
import { drawn, legend, scales } from "../../../frontier/picture.js";
import { fill, h } from "../../../shared/dom.js";
import { figure } from "../../../shared/plot.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";

export class Curve {
  readonly element: HTMLElement;
  private readonly axes = h("div", { class: "switch", role: "group", "aria-label": words.goal.picture.axes });
  private axis: Axis = "rate";
  private frontier: Frontier | null = null;
  private marked: Plan | undefined;
  private choice = new Choice(undefined);
  private dots: Dots | undefined;
  private draw = () => {};

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {
    const { title, description, note } = words.goal.picture;
    const picture = figure({ title, description, note, anew: (draw) => (this.draw = draw), plot: (width) => this.drawn(width) });
    this.element = h("div", {}, this.axes, picture);
  }

  /** Shows the plans that there are, and which is chosen. */
  show(): void {
    const { frontier, plan, aim, suggested } = this.tradeoff;
    const marked = aim ?? suggested;
    if (frontier === this.frontier && plan === this.choice.plan && marked === this.marked) return;
    [this.frontier, this.marked, this.choice] = [frontier, marked, new Choice(plan)];
    this.choice.follow((plan) => this.take(plan));
    this.showAxes();
    this.redraw();
  }

  private take(plan: Plan): void {
    this.dots?.mark();
    if (plan !== this.tradeoff.plan) this.work.choose({ point: plan.folder });
  }

  private showAxes(): void {
    const known = this.frontier ? scales(this.frontier) : [];
    if (this.axes.childElementCount === known.length) return;
    const buttons = known.map(({ name, value }) => h("button", { type: "button", "aria-pressed": String(value === this.axis), onclick: () => press(value) }, name));
    const press = (axis: Axis) => {
      this.axis = axis;
      known.forEach(({ value }, i) => buttons[i]!.setAttribute("aria-pressed", String(value === axis)));
      this.redraw();
    };
    fill(this.axes, buttons);
  }

  /** The focus stays on the plan that is pointed at. */
  private redraw(): void {
    const held = this.dots?.held;
    this.draw();
    if (held !== undefined) this.dots?.hold(held);
  }

  private drawn(width: number): HTMLElement {
    const { frontier } = this;
    if (!frontier) return h("div");
    this.dots = drawn(width, this.axis, frontier, this.marked, this.choice);
    return h("div", {}, legend(frontier), this.dots.element);
  }
}
