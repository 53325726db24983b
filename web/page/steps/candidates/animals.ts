// All animals, each with what became of it.

import { fill, h } from "../../../shared/dom.js";
import { count, NONE } from "../../../shared/format.js";
import { holds, searchBox, table, type Column } from "../../../shared/table.js";
import type { Animal, Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";
import { reasonName } from "./reasons.js";

const MOST = 20_000;  // rows that a table takes without keeping the page from answering

function tableOf(rows: readonly Animal[], search = true): HTMLElement {
  return table(columns(rows), rows, { caption: words.candidates.all.caption, file: "animals.csv", search, mark: ({ matings }) => (matings > 0 ? "chosen" : undefined) });
}

/** Of a large herd the first animals, or the first that are searched for. */
function ofMany(animals: readonly Animal[]): HTMLElement {
  const { caption, first } = words.candidates.all;
  const place = h("div");
  const show = (wanted: string) => {
    const found = animals.filter(({ identifier, name, birth }) => wanted === "" || holds(`${identifier} ${name} ${birth}`, wanted));
    fill(place, found.length > MOST && h("p", { class: "note" }, first(count(MOST), count(found.length))), tableOf(found.slice(0, MOST), false));
  };
  show("");
  return h("div", {}, searchBox(caption, show), place);
}

/** It is made when it is unfolded; a search goes on when the animals are others. */
export function animals(): { element: HTMLElement; show: (data: Prepared) => void } {
  const { all } = words.candidates;
  const title = h("summary"), place = h("div");
  const element = h("details", {}, title, place);
  let data: Prepared | null = null, drawn: Prepared | null = null;
  const first = ({ animals }: Prepared) => [...animals.filter(({ matings }) => matings > 0), ...animals.filter(({ matings }) => !(matings > 0))];
  function draw(): void {
    if (!element.open || !data || data === drawn) return;
    const wanted = place.querySelector<HTMLInputElement>("input[type=search]")?.value ?? "";
    const rows = first(data);
    fill(place, rows.length > MOST ? ofMany(rows) : tableOf(rows));
    drawn = data;
    const search = place.querySelector<HTMLInputElement>("input[type=search]");
    if (!search || wanted === "") return;
    search.value = wanted;
    search.dispatchEvent(new Event("input"));
  }
  element.addEventListener("toggle", draw);
  return { element, show: (now) => (fill(title, all.summary(count(now.animals.length))), (data = now), draw()) };
}

function columns(rows: readonly Animal[]): Column<Animal>[] {
  const { columns: titles, notes } = words.candidates.all;
  const { one, why } = words.candidates;
  const number = (key: "age" | "completeness" | "ebv" | "matings", more: Partial<Column<Animal>> = {}): Column<Animal> => ({
    key, title: titles[key], note: (notes as Record<string, string>)[key], value: (row) => row[key], ...more,
  });
  const named = rows.some(({ name }) => name !== "");
  return [
    { key: "identifier", title: titles.identifier, value: ({ identifier }) => identifier },
    ...(named ? [{ key: "name", title: titles.name, value: ({ name }: Animal) => name }] : []),
    { key: "sex", title: titles.sex, value: ({ sex }) => (sex === 1 || sex === 2 ? one[sex] : NONE) },
    { key: "birth", title: titles.birth, value: ({ birth }) => birth },
    number("age"), number("completeness", { percent: true, decimals: 0 }), number("ebv", { show: ({ ebv }) => (Number.isNaN(ebv) ? NONE : String(Number(ebv.toPrecision(6)))) }), number("matings"),
    { key: "reason", title: titles.reason, value: ({ matings, left_out }) => (matings > 0 ? why.candidate : reasonName(left_out)) },
  ];
}
