// The files of a run as the programs wrote them, read by nothing of the page.

import { readFileSync } from "node:fs";
import { join } from "node:path";

/** Where a herd was run: "cuvier", "hinterwald", "hostile". */
export const run = (herd: string) => join(process.env["QOB_RUNS"]!, herd, { hinterwald: "hinterwald", hostile: "herd" }[herd] ?? "");
export const file = (herd: string, name: string) => join(run(herd), name);
const lines = (herd: string, name: string) => readFileSync(file(herd, name), "utf8").split("\n");
const words = (line: string) => line.trim().split(/\s+/);

/** A table of a result file below its line of headings: texts by heading. */
export function table(herd: string, name: string, first: string): Map<string, string>[] {
  const all = lines(herd, name);
  const start = all.findIndex((line) => words(line)[0] === first);
  const heads = words(all[start]!);
  const end = all.findIndex((line, i) => i > start && !/^[-+.\d]/.test(line.trim()));
  return all.slice(start + 1, end).map((line) => new Map(words(line).map((value, i) => [heads[i] ?? "", value])));
}

/** The number that a line of the summary tells, "Average inbreeding      :    0.2713"; that of the last such. */
export function told(herd: string, line: string, prefix = "QOB_"): string {
  const found = lines(herd, `${prefix}F_summary.txt`).filter((each) => each.trim().startsWith(line)).pop()!;
  return found.slice(found.indexOf(":") + 1).match(/[-+.\dE]+/)![0];
}

/** How animals are identified, by their running number. */
export function identifiers(herd: string): (number: string) => string {
  const animals = fromCsv(readFileSync(file(herd, "tables/animals.csv"), "utf8"));
  const book = herd === "hinterwald" ? fromCsv(readFileSync(file(herd, "hinterwald.names.csv"), "utf8")) : animals;
  const known = new Map(book.map((row) => [row.get("number")!, row.get("identifier")!]));
  return (number) => known.get(number) ?? number;
}

const number = (text: string) => Number(text.replace(/[,%\s]/g, "").replace("−", "-"));

/** What the last digit of a number is worth: 0.01 of "1.23". */
function unit(text: string): number {
  const [, decimals = "", power = "0"] = text.match(/\d(?:\.(\d*))?[^\dE]*(?:E([-+]\d+))?$/) ?? [];
  return 10 ** (Number(power) - decimals.length);
}

/** Whether a number as shown is one as a file tells it, as far as both have digits; `percent` is shown. */
export function agree(shown: string | undefined, file: string | undefined, percent = false): boolean {
  if (!shown || !file) return false;
  const scale = percent ? 0.01 : 1;
  return Math.abs(number(shown) * scale - number(file)) <= 0.5001 * (unit(shown) * scale + unit(file));
}

export function csvOf(rows: readonly (readonly (string | number)[])[]): string {
  return rows.map((row) => row.map((cell) => `"${String(cell).replaceAll('"', '""')}"`).join(",") + "\r\n").join("");
}

/** CSV (RFC 4180) as rows by heading. */
export function fromCsv(text: string): Map<string, string>[] {
  const cells = [...text.replace(/^\ufeff/, "").matchAll(/("(?:[^"]|"")*"|[^,\r\n]*)(,|\r?\n|$)/g)];
  const rows: string[][] = [[]];
  for (const [, cell, end] of cells) {
    rows[rows.length - 1]!.push(cell!.startsWith('"') ? cell!.slice(1, -1).replaceAll('""', '"') : cell!);
    if (end !== ",") rows.push([]);
  }
  const [heads, ...rest] = rows.filter((row) => row.length > 1);
  return rest.map((row) => new Map(row.map((cell, i) => [heads![i]!, cell])));
}

/** A page with other data in the place of its own. */
export function withData(page: string, json: string): string {
  return readFileSync(page, "utf8").replace(/(<script type="application\/json" id="data">)[^]*?(<\/script>)/, (_, start, end) => start + json.replaceAll("<", "\\u003c") + end);
}
