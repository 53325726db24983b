// The population: what was born, lives, is related and comes from whom. Each group is a module of its own.

import { h, note } from "../shared/dom.js";
import { count } from "../shared/format.js";
import { population as words } from "../shared/texts/language.js";
import * as ages from "./ages.js";
import { inWords } from "./births.js";
import * as effective_size from "./effective_size.js";
import * as families from "./families.js";
import * as figures from "./figures.js";
import * as founders from "./founders.js";
import * as intervals from "./intervals.js";
import * as kinship from "./kinship.js";
import type { Population, Result } from "./model.js";
import { group, part } from "./outline.js";
import * as trend from "./trend.js";

export function section(result: Result): HTMLElement {
  const { animals, founders: n, living } = result.population;
  return part("population", words.title,
    h("p", {}, words.intro(count(animals), count(n), count(living)), " ", living_by(result.population)),
    figures.section(result),
    effective_size.section(result),
    trend.section(result),
    trend.births(result),
    ages.section(result),
    intervals.section(result),
    kinship.section(result),
    founders.section(result),
    families.section(result),
    group(words.sources.title, h("ul", {}, words.sources.list.map((source) => h("li", { lang: "en" }, note(source))))));
}

function living_by(population: Population): string {
  const born = population.trend.find(({ birth_time }) => birth_time >= population.living_since);
  return population.living_by === "column"
    ? words.living_by.column
    : words.living_by.since(inWords(born?.birth || String(population.living_since)));
}
