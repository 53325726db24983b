// Files that the page itself makes: nothing leaves the machine.

import { h } from "./dom.js";

type Cell = string | number | boolean | null | undefined;

/** A table as CSV (RFC 4180), numbers with all their digits, NaN empty. */
export function csv(header: readonly string[], rows: readonly (readonly Cell[])[]): string {
  return [header, ...rows].map((row) => row.map(field).join(",")).join("\r\n") + "\r\n";
}

function field(cell: Cell): string {
  if (cell === null || cell === undefined || Number.isNaN(cell)) return "";
  const text = String(cell);
  return /[",\r\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
}

export type Type = "text/csv" | "text/html" | "application/json" | "application/zip" | "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet";

/** Hands a text or bytes to the browser as a file; CSV gets the mark by which spreadsheets know UTF-8. */
export function save(name: string, type: Type, data: string | Uint8Array | Blob): void {
  const mark = type === "text/csv" ? "\ufeff" : "";
  const address = URL.createObjectURL(new Blob([mark, data as BlobPart], { type: typeof data === "string" ? `${type};charset=utf-8` : type }));
  h("a", { href: address, download: name }).click();
  setTimeout(() => URL.revokeObjectURL(address), 60_000);
}

/** A button that saves what `make` gives when it is pressed. */
export function download(
  label: string,
  name: string,
  type: "text/csv" | "application/json",
  make: () => string,
): HTMLElement {
  return h("button", { type: "button", class: "download", onclick: () => save(name, type, make()) }, label);
}
