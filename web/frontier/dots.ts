// The plans of a picture under the pointer and the keyboard: figures are shown beside the one that is
// pointed at, and a click or Enter chooses it. Places are shares of the picture, so that they keep when it
// is printed smaller; to a screen reader the plans are a list.

import { fill, h } from "../shared/dom.js";
import type { Choice } from "./choice.js";
import type { Plan } from "./model.js";
import { say } from "./say.js";

/** A plan in a picture, in pixels from its left upper corner, and what is said of it, line by line. */
export interface Place { plan: Plan; x: number; y: number; told: readonly string[] }

const NEAR = 40;   // pixels from which a pointer takes a sign
const SAME = 3;    // signs that are closer lie on one another
const APART = 14;  // from a sign to its figures

export class Dots {
  /** The picture with its plans. */
  readonly element: HTMLElement;
  private readonly places: readonly Place[];
  private readonly options: readonly HTMLElement[];
  private readonly list: HTMLElement;
  private readonly chosen = h("div", { class: "ring" });
  private readonly pointed = h("div", { class: "ring pointed screen", hidden: true });
  private readonly tip = h("div", { class: "tip screen", "aria-hidden": "true", hidden: true });
  private at = -1;

  /** Lays plans over a picture of a size in pixels. */
  constructor(picture: Element, private readonly size: readonly [width: number, height: number], plans: readonly Place[], private readonly choice: Choice) {
    this.places = [...plans].sort((a, b) => a.x - b.x || b.y - a.y);
    this.options = this.places.map(({ told }, i) => h("span", { role: "option", id: `plan-${i}`, "aria-label": told.join(", ") }));
    this.options.forEach((option, i) => this.put(option, this.places[i]!));
    this.list = h("div", {
      class: "dots screen", role: "listbox", tabindex: 0, "aria-label": `${say.picture.signs}. ${say.picture.help}`,
    }, this.options);
    this.element = h("div", { class: "over" }, picture, this.chosen, this.pointed, this.list, this.tip);
    this.listen();
    this.mark();
  }

  /** Shows which plan is chosen. */
  mark(): void {
    const now = this.now();
    this.options.forEach((option, i) => option.setAttribute("aria-selected", String(i === now)));
    this.chosen.hidden = now < 0;
    if (this.places[now]) this.put(this.chosen, this.places[now]);
  }

  /** If it has the focus, the folder of the plan that is pointed at, "" for none. */
  get held(): string | undefined {
    return document.activeElement === this.list ? (this.places[this.at]?.plan.folder ?? "") : undefined;
  }

  /** Takes the focus, and points at a plan, as a picture before did. */
  hold(folder: string): void {
    this.list.focus({ preventScroll: true });
    this.point(this.places.findIndex(({ plan }) => plan.folder === folder));
  }

  private now(): number {
    return this.places.findIndex(({ plan }) => plan === this.choice.plan);
  }

  private put(element: HTMLElement, { x, y }: Place): void {
    element.style.setProperty("left", `${(100 * x) / this.size[0]}%`);
    element.style.setProperty("top", `${(100 * y) / this.size[1]}%`);
  }

  private listen(): void {
    const { list } = this;
    list.addEventListener("pointermove", (event) => this.point(this.under(event)));
    list.addEventListener("pointerleave", () => this.point(-1));
    list.addEventListener("blur", () => this.point(-1));
    list.addEventListener("focus", () => list.matches(":focus-visible") && this.point(this.now()));
    list.addEventListener("click", (event) => {
      this.point(this.under(event));
      this.take();
    });
    list.addEventListener("keydown", (event) => this.press(event));
  }

  private press(event: KeyboardEvent): void {
    const { at } = this;
    const last = this.places.length - 1;
    const to = { ArrowRight: at + 1, ArrowDown: at + 1, ArrowLeft: at - 1, ArrowUp: at - 1, Home: 0, End: last }[event.key];
    if (to === undefined && event.key !== "Enter" && event.key !== " ") return;
    event.preventDefault();  // these keys would scroll the page
    if (to !== undefined) this.point(Math.max(0, Math.min(last, to)));
    else if (this.places[at]) this.choice.choose(this.places[at].plan);
  }

  private together({ x, y }: Place): readonly Plan[] {
    return this.places.filter((other) => Math.hypot(other.x - x, other.y - y) <= SAME).map(({ plan }) => plan);
  }

  /** Of plans in one place the one after that which is chosen. */
  private take(): void {
    const place = this.places[this.at];
    if (!place) return;
    const here = this.together(place);
    this.choice.choose(here[(here.findIndex((plan) => plan === this.choice.plan) + 1) % here.length]!);
  }

  private under({ clientX, clientY }: MouseEvent): number {
    const from = this.list.getBoundingClientRect();
    const far = this.places.map(({ x, y }) => Math.hypot(clientX - from.left - x, clientY - from.top - y));
    const least = far.reduce((best, each, i) => (each < far[best]! ? i : best), 0);
    return (far[least] ?? Infinity) <= NEAR ? least : -1;
  }

  private point(to: number): void {
    this.at = to;
    const place = this.places[to];
    this.pointed.hidden = this.tip.hidden = !place;
    if (!place) return this.list.removeAttribute("aria-activedescendant");
    this.list.setAttribute("aria-activedescendant", `plan-${to}`);
    this.put(this.pointed, place);
    this.tell(place);
  }

  /** Right below the plan, where the line is not, and never out of the picture. */
  private tell(place: Place): void {
    const { tip, size: [width, height] } = this;
    const others = this.together(place).length - 1;
    fill(tip, [...place.told, others > 0 && say.told.others(others)].map((line) => line && h("div", {}, line)));
    const below = place.y + APART;
    tip.style.setProperty("left", `${Math.max(0, Math.min(width - tip.offsetWidth, place.x + APART))}px`);
    tip.style.setProperty("top", `${below + tip.offsetHeight <= height ? below : place.y - APART - tip.offsetHeight}px`);
  }
}
