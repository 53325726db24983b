// The table of contents of a page; it follows the reader.

import { h, link } from "./dom.js";

/** Links to parts that have a heading; that of the part which is read is marked. */
export function contents(parts: readonly HTMLElement[], label: string): HTMLElement {
  const links = new Map<Element, HTMLElement>();
  for (const part of parts) links.set(part, link(part.id, part.querySelector("h2")?.textContent));
  const seen = new IntersectionObserver((entries) => {
    const now = entries.filter((entry) => entry.isIntersecting).pop()?.target;
    if (now) for (const [part, to] of links) mark(to, part === now);
  }, { rootMargin: "-20% 0px -70% 0px" });
  for (const part of parts) seen.observe(part);
  return h("nav", { class: "contents", "aria-label": label }, h("ol", {}, [...links.values()].map((to) => h("li", {}, to))));
}

function mark(to: HTMLElement, now: boolean): void {
  if (now) to.setAttribute("aria-current", "true");
  else to.removeAttribute("aria-current");
}
