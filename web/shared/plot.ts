// Pictures: a frame with caption, text for those who do not see, the same as a table, and a new drawing
// when the width changes. Observable Plot draws: modules import * as Plot from it themselves, for of such
// an import the bundle holds only what is used.

import * as Plot from "@observablehq/plot";
import { fill, h, note, soon, type Child } from "./dom.js";
import { table, type Column } from "./table.js";
import { shared as words } from "./texts/language.js";

/** Colours that the colour-blind tell apart (after Okabe & Ito 2008), each in a tone for a light and one
 * for a dark page (theme.css). Never the only difference: a shape, a dash or a label says the same. */
export const COLOUR = {
  blue: "var(--blue)",
  orange: "var(--orange)",
  green: "var(--green)",
  purple: "var(--purple)",
  muted: "var(--muted)",
  rule: "var(--rule)",
  text: "currentColor",
} as const;

/** Who is shown by which colour, everywhere the same. */
export const MALE = COLOUR.blue;
export const FEMALE = COLOUR.orange;
export const CHOSEN = COLOUR.green;

export interface Picture<T> {
  title: string;
  /** What is to be seen, in a sentence: shown below the title and read aloud. */
  description: string;
  /** Draws for a width in pixels; use draw() of this file. */
  plot: (width: number) => Element;
  /** The figures behind the picture. */
  table?: { columns: readonly Column<T>[]; rows: readonly T[]; file?: string };
  /** An explanation or source. */
  note?: Child;
  /** Is handed what draws it anew, for when that changes which it shows. */
  anew?: (draw: () => void) => void;
}

/** A picture with all that belongs to it. */
export function figure<T>(picture: Picture<T>): HTMLElement {
  const canvas = h("div", { class: "canvas" });
  const draw = redrawn(canvas, (width) => named(picture.plot(width), picture.title, picture.description));
  picture.anew?.(draw);
  const caption = h("figcaption", {}, h("strong", {}, picture.title), " ", picture.description);
  return h("figure", { class: "picture" }, caption, canvas, picture.note && note(picture.note), picture.table && asTable(picture.title, picture.table));
}

/** Plot.plot() without the style element that it would add, which the content security policy forbids
 * (theme.css holds those rules), and without the names of its marks ("dot"), which say nothing. Take this and never Plot.plot() itself. */
export function draw(options: Plot.PlotOptions): ReturnType<typeof Plot.plot> {
  return unstyled(Plot.plot({ className: "plot", ...options }));
}

/** The legend of a scale, as Plot.legend() makes it. */
export function legend(options: Parameters<typeof Plot.legend>[0]): Element {
  return unstyled(Plot.legend({ className: "plot", ...options }));
}

function unstyled<E extends Element>(drawn: E): E {
  for (const style of drawn.querySelectorAll("style")) style.remove();
  for (const mark of drawn.querySelectorAll("g[aria-label]")) mark.removeAttribute("aria-label");
  return drawn;
}

function named(drawn: Element, title: string, description: string): Element {
  const svgs = drawn instanceof SVGSVGElement ? [drawn] : [...drawn.querySelectorAll("svg.plot")];
  for (const svg of svgs) {
    svg.setAttribute("role", "img");
    svg.setAttribute("aria-label", `${title}. ${description}`);
  }
  return drawn;
}

/** Draws into an element soon, and again when its width changes; returns what draws it anew. */
export function redrawn(canvas: HTMLElement, make: (width: number) => Element): () => void {
  let drawn = 0;
  const show = () => {
    const width = Math.floor(canvas.clientWidth);
    if (width === 0 || width === drawn) return;
    drawn = width;
    fill(canvas, make(width));
  };
  soon(() => {
    show();
    new ResizeObserver(show).observe(canvas);
  });
  return () => {
    drawn = 0;
    show();
  };
}

function asTable<T>(title: string, { columns, rows, file }: NonNullable<Picture<T>["table"]>): HTMLElement {
  const details = h("details", {}, h("summary", {}, words.AS_TABLE));
  details.addEventListener("toggle", () => {
    if (details.open && details.childElementCount === 1) details.append(table(columns, rows, { caption: title, file }));
  });
  return details;
}
