// Figures as cards: a name, the value, what it means and where its formula comes from.

import { h, type Child } from "../shared/dom.js";

export interface Card {
  name: string;
  value: Child;
  /** Lines in small letters below the value. */
  notes: readonly Child[];
}

export function cards(all: readonly Card[]): HTMLElement {
  const card = ({ name, value, notes }: Card) =>
    h("div", { class: "fact" }, h("dt", {}, name), h("dd", {}, value), notes.map((note) => note && h("dd", { class: "note" }, note)));
  return h("dl", { class: "facts wide" }, all.map(card));
}
