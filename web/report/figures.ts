// The figures of a population, each with what it means and where its formula comes from.

import { digits, fixed, percent } from "../shared/format.js";
import { population as words } from "../shared/texts/language.js";
import { cards, type Card } from "./cards.js";
import type { Population, Result } from "./model.js";
import { group } from "./outline.js";

type Named = { name: string; meaning: string; formula: string; source: string };

export function section({ population }: Result): HTMLElement {
  const { figures } = words;
  const of = population;
  return group(figures.title, cards([
    row(figures.mean_f, percent(of.mean_f)),
    row(figures.mean_kinship, percent(of.mean_kinship)),
    row(figures.gene_diversity, percent(of.gene_diversity)),
    row(figures.founder_equivalents, fixed(of.founder_equivalents, 1)),
    row(figures.effective_ancestors, ancestors(of), hasBounds(of) ? figures.effective_ancestors.bounds : ""),
    row(figures.founder_genomes, digits(of.founder_genomes)),
    row(figures.unknown_genes, percent(of.unknown_genes, 1)),
  ]));
}

function row({ name, meaning, formula, source }: Named, value: string, more = ""): Card {
  return { name, value, notes: [meaning, more, words.figures.source(formula, source)] };
}

function hasBounds({ effective_ancestors: low, effective_ancestors_high: high }: Population): boolean {
  return Number.isFinite(high) && digits(low) !== digits(high);
}

function ancestors(population: Population): string {
  const { effective_ancestors: low, effective_ancestors_high: high } = population;
  return hasBounds(population) ? words.figures.between(digits(low), digits(high)) : digits(low);
}
