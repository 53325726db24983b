// The rows of a table's body: all of them, or of a long table those in sight, so that 20,000 rows scroll
// as 20 do. All rows of a long table are of one height.

import { elementScroll, observeElementOffset, observeElementRect, Virtualizer } from "@tanstack/virtual-core";
import { fill, h } from "./dom.js";
import { count } from "./format.js";
import { shared as words } from "./texts/language.js";

const PRINTED = 250;

/** Draws so many rows, each made by its place in the order. */
export type Draw = (rows: number, make: (i: number) => HTMLElement, columns: number) => void;

export function drawAll(body: HTMLElement): Draw {
  return (rows, make) => fill(body, Array.from({ length: rows }, (_, i) => make(i)));
}

/** Draws the rows that are in sight of a box that scrolls, and on paper the first ones. */
export function drawInSight(box: HTMLElement, body: HTMLElement): Draw {
  let rows = 0;
  let make: (i: number) => HTMLElement = () => h("tr");
  let columns = 1;
  let printing = false;
  let drawn = "";
  const sight = new Virtualizer<HTMLElement, HTMLElement>(settings());

  function settings() {
    return {
      count: rows, getScrollElement: () => box, estimateSize: () => 33, overscan: 6,
      initialRect: { width: 800, height: 600 },
      scrollToFn: elementScroll, observeElementRect, observeElementOffset, onChange: () => show(),
    };
  }

  function show(anew = false): void {
    if (printing) return printRows();
    const items = sight.getVirtualItems();
    const range = `${items[0]?.index}-${items[items.length - 1]?.index}`;
    if (range === drawn && !anew) return;
    drawn = range;
    const before = items[0]?.start ?? 0;
    const after = sight.getTotalSize() - (items[items.length - 1]?.end ?? 0);
    fill(body, space(before), items.map(({ index }) => make(index)), space(after));
  }

  function printRows(): void {
    const shown = Math.min(rows, PRINTED);
    const rest = h("tr", {}, h("td", { colspan: columns }, words.printed(count(shown), count(rows))));
    fill(body, Array.from({ length: shown }, (_, i) => make(i)), shown < rows && rest);
  }

  const space = (height: number) => height > 0 && h("tr", { class: "space", "aria-hidden": "true", style: { height: `${height}px` } });
  const print = (now: boolean) => () => ((printing = now), show(true));
  addEventListener("beforeprint", print(true));
  addEventListener("afterprint", print(false));
  sight._didMount();
  return (length, maker, width) => {
    [rows, make, columns] = [length, maker, width];
    sight.setOptions(settings());
    sight._willUpdate();
    box.scrollTop = 0;
    show(true);
  };
}
