// How many matings are planned.

import { h, note } from "../../../shared/dom.js";
import { count } from "../../../shared/format.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

export class Matings {
  private readonly told = h("p", { class: "note", id: "matings-told" });
  private readonly field = h("input", { type: "number", id: "matings-planned", min: 1, step: 1, "aria-describedby": this.told.id });
  readonly element: HTMLElement;

  constructor(private readonly work: Work) {
    const { title, label, help } = words.goal.matings;
    this.field.addEventListener("change", () => {
      if (this.field.reportValidity()) work.choose({ matings: Number.isNaN(this.field.valueAsNumber) ? null : this.field.valueAsNumber });
    });
    this.element = h("section", { class: "group screen" }, h("h3", {}, title),
      h("div", { class: "line" }, h("label", { for: this.field.id }, label), this.field), this.told,
      h("details", {}, h("summary", {}, words.goal.what), note(help)));
  }

  show(): void {
    const { found, choices } = this.work;
    if (document.activeElement !== this.field) this.field.value = choices.matings === null ? "" : String(choices.matings);
    if (found.state !== "ready") return;
    const planned = found.data.planned_matings;
    if (choices.matings === null) this.field.placeholder = count(planned);
    this.told.textContent = choices.matings === null ? words.goal.matings.byItself(planned) : words.goal.matings.given;
  }
}
