// Where the parts of a report stand: on a page of their own, or in a part of another page.

import { outline, type Outline } from "../shared/dom.js";

let place = outline(2);

/** From now on they stand within another page: their headings are a level lower, and their ids begin so. */
export function within(before: string): void {
  place = outline(3, before);
}

export const part: Outline["part"] = (id, title, ...children) => place.part(id, title, ...children);
export const group: Outline["group"] = (title, ...children) => place.group(title, ...children);
export const heading: Outline["heading"] = (...children) => place.heading(...children);
export const link: Outline["link"] = (id, ...children) => place.link(id, ...children);
