// Makes every element of the page. Text from files goes in as text, never as HTML, and styles go in
// through the object model, which the page's content security policy allows.

export type Child = Node | string | number | null | undefined | false | readonly Child[];

type Handler = (event: Event) => void;
type Value = string | number | boolean | null | undefined | Handler | Record<string, string>;

/** Attributes of an element: `onclick` and the like are functions, `style` an object of properties
 * ({"--share": "3%"}); true sets an attribute without value, false, null and undefined leave it out. */
export type Attributes = Record<string, Value>;

/** Makes an element: h("p", { class: "note" }, "Born ", year). Children are nodes, texts, numbers or
 * lists of them; null, undefined and false are left out. */
export function h<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: Child[]
): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) set(element, name, value);
  add(element, children);
  return element;
}

/** Appends children as h() takes them. */
export function add(parent: Node, children: readonly Child[]): void {
  for (const child of children) {
    if (child === null || child === undefined || child === false) continue;
    if (Array.isArray(child)) add(parent, child as readonly Child[]);
    else if (child instanceof Node) parent.appendChild(child);
    else parent.appendChild(document.createTextNode(String(child)));
  }
}

/** Replaces what an element holds. */
export function fill(parent: Element, ...children: Child[]): void {
  parent.replaceChildren();
  add(parent, children);
}

function set(element: HTMLElement, name: string, value: Value): void {
  if (value === null || value === undefined || value === false) return;
  if (typeof value === "function") element.addEventListener(name.replace(/^on/, ""), value);
  else if (typeof value === "object") {
    for (const [property, text] of Object.entries(value)) element.style.setProperty(property, text);
  } else element.setAttribute(name, value === true ? "" : String(value));
}

const waiting: (() => void)[] = [];

/** Acts once, soon after what was asked for before: whenever the page has time, or when it is printed. So
 * a page is there at once, and is whole before a reader is far down; nothing moves beneath a pointer. */
export function soon(act: () => void): void {
  if (waiting.push(act) > 1) return;
  addEventListener("beforeprint", finish, { once: true });
  setTimeout(next);
}

function next(): void {
  const act = waiting.shift();
  if (waiting.length > 0) setTimeout(next);
  act?.();
}

function finish(): void {
  while (waiting.length > 0) waiting.shift()!();
}

/** Makes parts, groups within them and links to them: headings from a level on, and ids that begin so. */
export function outline(level: 2 | 3, before = "") {
  /** The heading of a group. */
  const heading = (...children: Child[]) => h(level === 2 ? "h3" : "h4", {}, children);
  return {
    heading,
    /** A part of the page with its heading; it enters the table of contents. */
    part(id: string, title: string, ...children: Child[]): HTMLElement {
      const top = h(level === 2 ? "h2" : "h3", { id: `${before}${id}-title`, tabindex: -1 }, title);
      return h("section", { id: before + id, class: "part", "aria-labelledby": top.id }, top, children);
    },
    /** A heading with what belongs to it. */
    group: (title: string, ...children: Child[]): HTMLElement => h("section", { class: "group" }, heading(title), children),
    /** A link within the page. */
    link: (id: string, ...children: Child[]): HTMLElement => h("a", { href: `#${before}${id}` }, children),
  };
}

export type Outline = ReturnType<typeof outline>;
export const { part, group, link } = outline(2);

/** Figures with their names: facts(["Founders", 12, "animals without known parents"], ...). */
export function facts(...rows: readonly (readonly [name: string, value: Child, note?: Child])[]): HTMLElement {
  const fact = ([name, value, note]: readonly [string, Child, Child?]) =>
    h("div", { class: "fact" }, h("dt", {}, name), h("dd", {}, value), note && h("dd", { class: "note" }, note));
  return h("dl", { class: "facts" }, rows.map(fact));
}

/** A remark in small letters: an explanation, a formula, a source. */
export function note(...children: Child[]): HTMLElement {
  return h("p", { class: "note" }, children);
}
