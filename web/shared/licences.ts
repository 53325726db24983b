// The licences of the programs that are bundled into the page, as the build put them there.

import { h, type Outline } from "./dom.js";
import { made as words } from "./texts/language.js";

interface Licence { name: string; version: string; license: string; text: string }

export function licences(group: Outline["group"]): HTMLElement {
  const { title, text, none, one } = words.licences;
  const all = bundled();
  const single = ({ name, version, license, text }: Licence) =>
    h("details", {}, h("summary", { lang: "en" }, one(name, version, license)), h("pre", { class: "licence", lang: "en" }, text));
  return group(title, all.length === 0 ? h("p", {}, none) : [h("p", {}, text), all.map(single)]);
}

function bundled(): Licence[] {
  const text = document.getElementById("licences")?.textContent ?? "";
  return text.trim() ? (JSON.parse(text) as Licence[]) : [];
}
