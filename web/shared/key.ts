// What the shapes and colours of a picture mean, in words above it.

import { h, type Child } from "./dom.js";

export type Shape = keyof typeof SIGNS;

const SIGNS = {
  circle: "●", square: "■", triangle: "▲", diamond: "◆", hollow: "○", hollow_square: "□", hollow_diamond: "◇", hollow_triangle: "△", hexagon: "⬢", cross: "✕", star: "★",
  line: "━━", dashes: "╍╍", dots: "┅┅",
} as const;

/** A line of signs with their names. */
export function key(...entries: readonly { name: Child; colour: string; symbol?: Shape; opacity?: number }[]): HTMLElement {
  const entry = ({ name, colour, symbol = "circle", opacity = 1 }: (typeof entries)[number]) =>
    h("span", { class: "plot-swatch" },
      h("span", { "aria-hidden": "true", style: { color: colour, opacity: String(opacity) } }, SIGNS[symbol]), name);
  return h("div", { class: "plot-swatches" }, entries.map(entry));
}
