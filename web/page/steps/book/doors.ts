// The ways by which a herd book comes in: dropped anywhere, chosen, pasted, the example.

import { fill, h } from "../../../shared/dom.js";
import { arrival, example, pasted, Unwelcome } from "../../arrivals.js";
import { ENDING } from "../../saved.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

const KINDS = `.csv,.txt,.tsv,.xlsx,${ENDING},.json`;

/** `show` says whether a herd book is there; then there is less ado. */
export function doors(work: Work): { element: HTMLElement; show: (inside: boolean) => void; end: () => void } {
  const { book } = words;
  const take = (file: File | undefined) => void (file && work.open((engine) => arrival(file, engine)));
  const files = h("input", { type: "file", accept: KINDS, hidden: true, onchange: () => {
    take(files.files?.[0]);
    files.value = "";
  } });
  const zone = h("button", { type: "button", class: "drop", onclick: () => files.click() });
  const begin = h("button", { type: "button", class: "plainbutton", onclick: () => void work.open(example) }, book.example);
  const element = h("div", { class: "doors" }, zone, files, h("div", { class: "ways" }, begin, pasting(work)));
  const show = (inside: boolean) => {
    zone.classList.toggle("small", inside);
    fill(zone, h("strong", {}, inside ? book.another : book.drop), h("span", {}, inside ? book.anotherKinds : book.kinds));
  };
  return { element, show, end: listen(work, zone, take) };
}

/** For those who copy a table from a spreadsheet, by the keyboard anywhere or into a field. */
function pasting(work: Work): HTMLElement {
  const { book } = words;
  const field = h("textarea", { id: "pasted", rows: 6, spellcheck: "false", placeholder: book.pasteExample });
  const read = () => {
    void work.open(async () => pasted(book.pastedName, field.value));
    if (field.value.trim() !== "") field.value = "";
  };
  return h("details", {}, h("summary", {}, book.paste), h("label", { for: field.id }, book.pasteHelp), field,
    h("button", { type: "button", class: "plainbutton", onclick: read }, book.pasteRead));
}

/** Files are dropped anywhere on the page, lest a browser shows them in its place. */
function listen(work: Work, zone: HTMLElement, take: (file: File | undefined) => void): () => void {
  const stop = new AbortController();
  const on = <K extends keyof DocumentEventMap>(name: K, act: (event: DocumentEventMap[K]) => void) => document.addEventListener(name, act, { signal: stop.signal });
  const over = (is: boolean) => zone.classList.toggle("over", is);
  on("dragover", (event) => {
    if (!event.dataTransfer?.types.includes("Files")) return;
    event.preventDefault();
    over(true);
  });
  on("dragleave", (event) => over(event.relatedTarget !== null));
  on("dragend", () => over(false));
  on("drop", (event) => {
    over(false);
    if (!event.dataTransfer?.types.includes("Files")) return;
    event.preventDefault();
    if (event.dataTransfer.files.length > 1) return work.tell(new Unwelcome("several"));
    take(event.dataTransfer.files[0]);
  });
  on("paste", (event) => {
    if (event.target instanceof HTMLInputElement || event.target instanceof HTMLTextAreaElement) return;
    const [file] = event.clipboardData?.files ?? [];
    const text = event.clipboardData?.getData("text/plain") ?? "";
    if (/\n./.test(text)) void work.open(async () => pasted(words.book.pastedName, text));
    else take(file);
  });
  return () => stop.abort();
}
