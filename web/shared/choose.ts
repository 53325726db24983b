// Two small controls: a row of buttons of which one is pressed, and what stands below changes with it.

import { fill, h } from "./dom.js";

export interface Choice<K> {
  name: string;
  value: K;
}

/** Buttons and what the chosen one shows; what was made once is kept. */
export function choose<K>(label: string, choices: readonly Choice<K>[], make: (value: K) => HTMLElement): HTMLElement {
  const shown = h("div");
  const made = new Map<K, HTMLElement>();
  const buttons = choices.map(({ name, value }, i) => h("button", { type: "button", onclick: () => press(i, value) }, name));
  function press(i: number, value: K): void {
    buttons.forEach((button, j) => button.setAttribute("aria-pressed", String(i === j)));
    if (!made.has(value)) made.set(value, make(value));
    fill(shown, made.get(value));
  }
  const first = choices[0];
  if (first) press(0, first.value);
  return h("div", {}, h("div", { class: "switch", role: "group", "aria-label": label }, buttons), shown);
}
