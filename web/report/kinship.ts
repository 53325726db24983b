// Mean kinship of the candidates, ranked: whose genes are rare among the living.

import { choose } from "../shared/choose.js";
import { h, note, type Child } from "../shared/dom.js";
import { percent } from "../shared/format.js";
import { table, type Column } from "../shared/table.js";
import { candidates as candidate_words, population as words } from "../shared/texts/language.js";
import { brief, candidates, type Row } from "./candidates.js";
import { called, type Result } from "./model.js";
import { group } from "./outline.js";

export function section(result: Result): Child {
  const { mean_kinship, gene_diversity } = result.population;
  const text = words.kinship;
  const ranked = candidates(result).filter(({ mean_kinship }) => Number.isFinite(mean_kinship)).sort((a, b) => a.mean_kinship - b.mean_kinship);
  if (ranked.length === 0) return false;
  const { filter } = candidate_words;
  const sexes = [{ name: filter.all, value: 0 }, { name: filter.males, value: 1 }, { name: filter.females, value: 2 }];
  return group(text.title,
    h("p", {}, text.intro(percent(mean_kinship), percent(gene_diversity))),
    note(text.incomplete),
    brief(choose(filter.label, sexes, (sex) => list(ranked.filter(({ of }) => sex === 0 || of.sex === sex)))));
}

function list(rows: readonly Row[]): HTMLElement {
  const place = new Map(rows.map((row, i) => [row, i + 1]));
  const { columns: titles, caption } = words.kinship;
  const columns: Column<Row>[] = [
    { key: "place", title: titles.place, value: (row) => place.get(row) ?? NaN },
    { key: "animal", title: titles.animal, value: ({ of }) => called(of) },
    { key: "sex", title: titles.sex, value: ({ of }) => candidate_words.sexes[of.sex] ?? "" },
    { key: "birth", title: titles.birth, value: ({ of }) => of.birth },
    { key: "mean_kinship", title: titles.mean_kinship, value: (row) => row.mean_kinship, percent: true, decimals: 3 },
    { key: "completeness", title: titles.completeness, value: ({ of }) => of.completeness, percent: true, decimals: 0 },
    { key: "offspring", title: titles.offspring, value: (row) => row.offspring },
    { key: "matings", title: titles.matings, value: (row) => row.matings },
  ];
  return table(columns, rows, { caption, file: "mean_kinship.csv", mark: ({ matings }) => (matings > 0 ? "chosen" : undefined) });
}
