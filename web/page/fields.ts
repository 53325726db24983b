// Controls for a choice: each has a name, says what it is for, shows the choice as it is and hands over
// what the reader wants. What is typed is taken when the reader pauses.

import { fill, h, type Child } from "../shared/dom.js";
import { words } from "./texts/words.js";

export interface Control { element: HTMLElement; /** Shows the choice as it is now. */ show: () => void }

interface Named { name: string; help?: Child }

const PAUSE = 700;  // milliseconds

let last = 0;

/** A control with its name above it and its help below. */
function labelled({ name, help }: Named, control: HTMLElement, ...more: Child[]): HTMLElement {
  const id = `field-${++last}`;
  control.id = id;
  if (help) control.setAttribute("aria-describedby", `${id}-help`);
  return h("div", { class: "field" }, h("label", { for: id }, name), control, more, help && h("p", { class: "note", id: `${id}-help` }, help));
}

/** Takes what is typed after a pause, or at once when the reader goes on. */
function typing(field: HTMLInputElement, take: () => void): { pending: () => boolean } {
  let waiting = 0;
  const now = () => {
    clearTimeout(waiting);
    waiting = 0;
    take();
  };
  field.addEventListener("input", () => {
    clearTimeout(waiting);
    waiting = setTimeout(now, PAUSE);
  });
  field.addEventListener("change", now);
  return { pending: () => waiting !== 0 };
}

interface Numbers extends Named { read: () => number | null; write: (value: number | null) => void; /** The least and the greatest that is taken now. */ range: () => readonly [number, number]; any?: string; unit?: string }

/** A whole number, or none. */
export function number({ read, write, range, any, unit, ...named }: Numbers): Control {
  const field = h("input", { type: "number", inputmode: "numeric", step: 1, placeholder: any });
  const wrong = h("span", { class: "wrong", role: "status" });
  const value = () => (field.value === "" ? null : Number(field.value));
  const check = () => {
    [field.min, field.max] = range().map(String) as [string, string];
    const good = field.checkValidity();
    field.setAttribute("aria-invalid", String(!good));
    fill(wrong, !good && words.frame.wholeNumber(...range()));
    return good;
  };
  const typed = typing(field, () => check() && write(value()));
  let shown: number | null = null;
  function show(): void {
    const now = read();
    if (typed.pending()) return;
    if (now !== shown || field.validity.valid) field.value = value() === now ? field.value : String(now ?? "");
    shown = now;
    check();
  }
  return { element: labelled(named, field, unit && h("span", { class: "unit" }, unit), wrong), show };
}

interface Texts extends Named { read: () => string; write: (value: string) => void; holder?: string }

export function text({ read, write, holder, ...named }: Texts): Control {
  const field = h("input", { type: "text", placeholder: holder, autocomplete: "off", spellcheck: "false" });
  let shown = "", own = false;
  const typed = typing(field, () => {
    own = true;
    write(field.value);
    own = false;
    shown = read();
  });
  /** What the reader has typed is not tidied up beneath the cursor. */
  function show(): void {
    const now = read();
    if (!typed.pending() && !own && now !== shown) field.value = shown = now;
  }
  return { element: labelled(named, field), show };
}

export function tick({ name, help, read, write }: Named & { read: () => boolean; write: (value: boolean) => void }): Control {
  const id = `field-${++last}`;
  const box = h("input", { type: "checkbox", id, "aria-describedby": help ? `${id}-help` : null, onchange: () => write(box.checked) });
  const element = h("div", { class: "field tick" }, h("label", {}, box, name), help && h("p", { class: "note", id: `${id}-help` }, help));
  return { element, show: () => void (box.checked = read()) };
}

export type Options = readonly (readonly [value: string, name: string])[];

/** One of some; these may change. */
export function select({ options, read, write, ...named }: Named & { options: () => Options; read: () => string; write: (value: string) => void }): Control {
  const field = h("select", { onchange: () => write(field.value) });
  return { element: labelled(named, field), show: () => offer(field, options(), read()) };
}

/** Sets what a field offers, if that is new, and what is chosen. */
export function offer(field: HTMLSelectElement, options: Options, chosen: string): void {
  const there = [...field.options];
  const same = there.length === options.length && options.every(([value, name], i) => there[i]!.value === value && there[i]!.text === name);
  if (!same) fill(field, options.map(([value, name]) => h("option", { value }, name)));
  field.value = chosen;
}

/** Controls that belong together. */
export function fields(title: string, controls: readonly Control[], ...more: Child[]): Control {
  const element = h("fieldset", { class: "fields" }, h("legend", {}, title), more, h("div", { class: "row" }, controls.map(({ element }) => element)));
  return { element, show: () => controls.forEach((each) => each.show()) };
}
