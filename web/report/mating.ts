// One mating, opened: what makes the inbreeding of its offspring, drawn and listed. On paper an open
// mating is printed alone.

import { group, h, type Child } from "../shared/dom.js";
import { percent } from "../shared/format.js";
import { plain } from "../shared/table.js";
import { matings as words } from "../shared/texts/language.js";
import { animal, called, type Mating, type Result } from "./model.js";
import { mark, pedigree, type Marks } from "./pedigree.js";

export function openMating(result: Result, mating: Mating): void {
  const title = h("h2", { id: "mating-title" }, words.pair(called(animal(result, mating.sire)), called(animal(result, mating.dam))));
  const close = h("button", { type: "button", class: "plainbutton screen", onclick: () => dialog.close() }, words.CLOSE);
  const dialog = h("dialog", { "aria-labelledby": title.id }, h("header", {}, title, close), content(result, mating));
  dialog.addEventListener("close", () => dialog.remove());
  dialog.addEventListener("click", (event) => event.target === dialog && dialog.close());
  document.body.append(dialog);
  dialog.showModal();
}

function content(result: Result, mating: Mating): Child[] {
  const marks: Marks = new Map(mating.common.map(([ancestor], i) => [ancestor, i]));
  return [
    group(words.COMMON, mating.common.length ? common(result, mating) : h("p", {}, words.NO_COMMON)),
    group(words.PEDIGREE, pedigree(result, mating, marks)),
    alternatives(result, mating),
  ];
}

function common(result: Result, mating: Mating): Child[] {
  const share = (f: number) => percent(f / mating.f, 1);
  const rows: Child[][] = mating.common.map(([place, f], i) => {
    const ancestor = animal(result, place);
    return [mark(i), called(ancestor), ancestor.birth, percent(ancestor.f), percent(f, 3), share(f)];
  });
  if (mating.other_common > 0) rows.push(["…", words.others(mating.other_common), "", "", percent(mating.other_f, 3), share(mating.other_f)]);
  return [h("p", {}, words.commonLead(mating.f)), plain(words.COMMON, words.COMMON_COLUMNS, rows, [0, 1])];
}

function alternatives(result: Result, { dam }: Mating): HTMLElement | null {
  const found = result.plan?.alternatives.find((each) => each.dam === dam);
  if (!found || found.sires.length === 0) return null;
  const rows = found.sires.map((sire, i) => [called(animal(result, sire)), percent(found.f[i] ?? NaN)]);
  return group(words.ALTERNATIVES, plain(words.ALTERNATIVES, words.ALTERNATIVE_COLUMNS, rows));
}
