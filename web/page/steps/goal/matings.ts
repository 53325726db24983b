// How many matings are planned.

import { group } from "../../../shared/dom.js";
import { count } from "../../../shared/format.js";
import { number, type Control } from "../../fields.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

const MOST = 1e6;

export function matings(work: Work): Control {
  const { title, label, any, help } = words.goal.matings;
  const field = number({
    name: label, help, any, range: () => [1, MOST], read: () => work.choices.matings, write: (matings) => work.choose({ matings }),
  });
  const show = () => {
    const { planned_matings: planned } = work.latest ?? {};
    if (work.choices.matings === null && planned !== undefined) field.element.querySelector("input")!.placeholder = planned > 0 ? count(planned) : "";
    field.show();
  };
  return { element: group(title, field.element), show };
}
