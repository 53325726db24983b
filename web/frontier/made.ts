// How the curve and its plans were made.

import { facts, group, h, part } from "../shared/dom.js";
import { count, digits, NONE, percent } from "../shared/format.js";
import { licences } from "../shared/licences.js";
import * as words from "../shared/texts/frontier.js";
import type { Frontier } from "./model.js";

export function section({ made, herd }: Frontier): HTMLElement {
  const { facts: names, formulas, how, title, unit, interval } = words.made;
  return part("made", title,
    facts(
      [names.parameter_file, made.parameter_file || NONE], [names.data_file, made.data_file || NONE], [names.program, made.program], [names.time, made.time],
      [names.candidates, count(herd.candidates), words.parents(herd.males, herd.females)],
      [names.matings, count(herd.matings)], [names.unit, unit(herd.unit)],
      [names.last, percent(herd.last_relationship)], [names.interval, digits(herd.generation_interval), interval]),
    h("details", { open: true }, h("summary", {}, how), h("ul", {}, formulas.map((each) => h("li", {}, each)))),
    licences(group));
}
