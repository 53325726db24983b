// How far something is that takes its time, with a button that ends it.

import { h } from "../../shared/dom.js";
import { percent } from "../../shared/format.js";
import { words } from "../texts/words.js";

export class Waiting {
  private readonly told = h("output", { class: "told" });
  private readonly more = h("span", { class: "note" });
  private readonly bar = h("progress", { max: 1 });
  private readonly button: HTMLButtonElement;
  readonly element: HTMLElement;

  constructor(end: () => void, label = words.frame.cancel) {
    this.button = h("button", { type: "button", class: "plainbutton", onclick: end }, label);
    this.element = h("div", { class: "waiting screen" }, this.told, this.bar, this.more, this.button);
    this.rest("");
  }

  /** A share from 0 to 1, or NaN when nobody knows. */
  show(what: string, share = NaN, left = NaN): void {
    this.say(what);
    this.bar.hidden = this.more.hidden = this.button.hidden = false;
    this.bar.setAttribute("aria-label", what);
    if (Number.isNaN(share)) this.bar.removeAttribute("value");
    else this.bar.value = share;
    this.more.textContent = [Number.isNaN(share) ? "" : percent(share, 0), Number.isNaN(left) ? "" : words.goal.left(left)].filter(Boolean).join(", ");
  }

  /** Nothing is under way; the focus of the button that goes stays near. */
  rest(what: string): void {
    const focused = document.activeElement === this.button;
    this.say(what);
    this.bar.hidden = this.more.hidden = this.button.hidden = true;
    if (!focused) return;
    this.told.tabIndex = -1;
    this.told.focus();
  }

  /** Told again only when it is something else: a screen reader would say it again. */
  private say(what: string): void {
    if (this.told.textContent !== what) this.told.textContent = what;
  }
}
