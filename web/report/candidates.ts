// Who was chosen and why: all candidates as a picture and as a ranked table.

import { choose } from "../shared/choose.js";
import { h, note } from "../shared/dom.js";
import { count, digits, fixed, NONE } from "../shared/format.js";
import { table, type Column } from "../shared/table.js";
import { candidates as words } from "../shared/texts/language.js";
import { picture } from "./merit_picture.js";
import { animal, called, type Animal, type Candidate, type Result } from "./model.js";
import { group, part } from "./outline.js";

/** A candidate with what is known of the animal. */
export type Row = Candidate & { of: Animal };

export function section(result: Result): HTMLElement {
  const rows = candidates(result);
  const by_pedigree = !result.warnings.some(({ kind }) => kind === "relationships_from_file");
  return part("candidates", words.title, h("p", {}, words.intro), picture(rows, by_pedigree), ranked(rows));
}

export function candidates(result: Result): Row[] {
  return result.candidates.map((candidate) => ({ ...candidate, of: animal(result, candidate.animal) }));
}

function ranked(rows: readonly Row[]): HTMLElement {
  const { filter, table: { title, intro, caption } } = words;
  const filters: readonly { name: string; value: (row: Row) => boolean }[] = [
    { name: filter.all, value: () => true },
    { name: filter.males, value: ({ of }) => of.sex === 1 },
    { name: filter.females, value: ({ of }) => of.sex === 2 },
    { name: filter.chosen, value: ({ matings }) => matings > 0 },
    { name: filter.not_chosen, value: ({ matings }) => matings === 0 },
  ];
  const shown = (kept: (row: Row) => boolean) =>
    table(columns(rows), rows.filter(kept), {
      caption, file: "candidates.csv", search: true, mark: ({ matings }) => (matings > 0 ? "chosen" : undefined),
    });
  return group(title, note(intro), brief(choose(filter.label, filters, shown)));
}

/** A long table of which a reader of the printed page wants but the first rows. */
export function brief(long: HTMLElement): HTMLElement {
  return h("div", { class: "brief" }, long, h("p", { class: "note paper" }, words.table.brief));
}

function columns(rows: readonly Row[]): Column<Row>[] {
  const { columns: titles, notes } = words.table;
  const decimals = meritDecimals(rows);
  const number = (key: keyof typeof titles, value: (row: Row) => number, more: Partial<Column<Row>> = {}): Column<Row> => ({
    key, title: titles[key], note: (notes as Record<string, string>)[key], value, ...more,
  });
  return [
    number("rank", (row) => row.rank),
    { key: "animal", title: titles.animal, value: ({ of }) => called(of) },
    { key: "sex", title: titles.sex, value: ({ of }) => words.sexes[of.sex] ?? NONE },
    { key: "birth", title: titles.birth, value: ({ of }) => of.birth },
    number("matings", (row) => row.matings),
    number("max_matings", (row) => row.max_matings),
    number("merit", (row) => row.merit, { decimals }),
    { key: "lack", title: titles.lack, value: (row) => lacking(row, decimals), wrap: true },
    number("to_others", (row) => row.to_others, { percent: true }),
    number("relationship", (row) => row.relationship, { percent: true }),
    number("mean_kinship", (row) => row.mean_kinship, { percent: true }),
    number("f", ({ of }) => of.f, { percent: true }),
    number("completeness", ({ of }) => of.completeness, { percent: true, decimals: 0 }),
    number("offspring", (row) => row.offspring),
    number("so_far", (row) => row.contribution_so_far, { percent: true }),
    number("wanted", (row) => row.contribution_wanted, { percent: true }),
    number("value", (row) => row.lacking_value, { show: (row) => digits(row.lacking_value) }),
  ];
}

/** Decimals with which merits are told apart: three digits of their spread. */
export function meritDecimals(rows: readonly { merit: number }[]): number {
  const merits = rows.map(({ merit }) => merit).filter(Number.isFinite);
  const least = merits.reduce((a, b) => Math.min(a, b), Infinity);
  const most = merits.reduce((a, b) => Math.max(a, b), -Infinity);
  return most > least ? Math.min(6, Math.max(0, 2 - Math.floor(Math.log10(most - least)))) : 2;
}

/** What a candidate lacks, in words. */
export function lacking(row: Row, decimals: number): string {
  const parent = row.unknown_parent ? `; ${words.table.unknown_parent}` : "";
  return words_of(row, decimals) + parent;
}

function words_of({ lack, matings, lacking_merit }: Row, decimals: number): string {
  if (lack === "chosen") return words.lack.chosen(matings);
  if (lack === "nothing" || lack === "not_known") return words.lack[lack];
  if (!Number.isFinite(lacking_merit)) return words.lack[`${lack}_only`];
  const least = 10 ** -decimals;
  return words.lack[lack](lacking_merit < least ? digits(lacking_merit, 1) : fixed(lacking_merit, decimals));
}

/** Lines that tell of a candidate in a picture. */
export function told(row: Row, decimals: number): string {
  const { tip } = words;
  const share = (value: number) => `${fixed(value * 100, 2)} %`;
  return [
    called(row.of),
    tip.born(tip.sex[row.of.sex] ?? NONE, row.of.birth),
    tip.merit(fixed(row.merit, decimals)),
    tip.relationship(share(row.to_others), share(row.relationship)),
    tip.matings(count(row.matings), count(row.max_matings)),
  ].join("\n");
}
