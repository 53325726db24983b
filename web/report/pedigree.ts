// The drawn pedigree of an offspring: nested lists of boxes, the sire's side above the dam's, in which
// common ancestors are marked by a letter, a frame and a colour.

import { h, note, type Child } from "../shared/dom.js";
import { matings as words } from "../shared/texts/language.js";
import { animal, called, NOBODY, type Mating, type Result } from "./model.js";

/** Common ancestors by their place among the animals, numbered from 0. */
export type Marks = ReadonlyMap<number, number>;

const GENERATIONS = 5;
const COLOURS = 4;

const letter = (i: number) => (i < 26 ? String.fromCharCode(65 + i) : String(i + 1));

/** The mark of a common ancestor: a letter on a colour. */
export function mark(i: number): HTMLElement {
  return h("span", { class: `mark mark-${i % COLOURS}`, role: "img", "aria-label": words.marked(letter(i)) }, letter(i));
}

export function pedigree(result: Result, { sire, dam, common }: Mating, marks: Marks): Child[] {
  const drawn = [sire, dam].map((parent) => reached(result, parent, 1));
  const missing = common.filter(([place]) => !drawn.every((side) => side.has(place)));
  const side = (title: string, root: number) =>
    h("div", { class: "side" }, h("h4", {}, title), h("ul", { class: "tree" }, box(result, root, marks, 1)));
  return [
    note(words.PEDIGREE_LEAD),
    h("div", { class: "scroll pedigree", tabindex: 0, role: "region", "aria-label": words.PEDIGREE }, side(words.SIRE_SIDE, sire), side(words.DAM_SIDE, dam)),
    missing.length > 0 && [
      h("p", {}, words.NOT_DRAWN),
      h("ul", { class: "listed" }, missing.map(([place]) => h("li", {}, mark(marks.get(place) ?? 0), " ", called(animal(result, place))))),
    ],
  ];
}

/** Whom the drawing shows from an animal on. */
function reached(result: Result, place: number, generation: number, found = new Set<number>()): Set<number> {
  if (place < 0 || generation > GENERATIONS) return found;
  const { sire, dam } = animal(result, place);
  found.add(place);
  reached(result, sire, generation + 1, found);
  return reached(result, dam, generation + 1, found);
}

function box(result: Result, place: number, marks: Marks, generation: number): HTMLElement {
  if (place < 0) return h("li", {}, h("div", { class: "box none" }, place === NOBODY ? words.UNKNOWN : words.FURTHER));
  const who = animal(result, place);
  const marked = marks.get(place);
  const look = marked === undefined ? "box" : `box common common-${marked % COLOURS}`;
  const shown = h("div", { class: look, title: called(who) }, marked !== undefined && mark(marked), h("span", {}, called(who)));
  const parents = [who.sire, who.dam];
  if (generation === GENERATIONS || parents.every((parent) => parent === NOBODY)) return h("li", {}, shown);
  return h("li", {}, shown, h("ul", {}, parents.map((parent) => box(result, parent, marks, generation + 1))));
}
