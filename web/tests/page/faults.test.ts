// Herd books with every fault that they are known to have: the page tells what the program tells.

import { expect, test } from "@playwright/test";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { NONE } from "../../shared/format.js";
import { put, run, withFolder } from "./programs.js";
import { User } from "./user.js";

/** The herd books of the cases: tables, each before its commands; "as ENCODING" stores one in another way. */
function cases(): { book: string; stored: string | undefined }[] {
  const all: { book: string; stored: string | undefined }[] = [];
  let book: string[] = [];
  let answers = false;
  for (const line of readFileSync("../tests/prepare/cases.txt", "utf8").split("\n")) {
    if (line.startsWith("$ ")) {
      if (book.length > 0) all.push({ book: `${book.join("\n")}\n`, stored: /\bas (\S+?)[;\s]/.exec(line)?.[1] });
      [book, answers] = [[], true];
    } else if (line === "") [book, answers] = [[], false];
    else if (!answers && !line.startsWith("# ")) book.push(line);
  }
  return all;
}

test("every fault of the cases is shown", async () => {
  test.setTimeout(600_000);
  const user = await User.at("chromium");
  const kinds = new Set<string>();
  for (const [at, { book, stored }] of cases().entries()) {
    await withFolder(async (folder) => {
      put(folder, { "herd.csv": book });
      if (stored) expect(run(folder, `iconv -f UTF-8 -t ${stored} herd.csv > x && mv x herd.csv`).status).toBe(0);
      const { err } = run(folder, "qob-prepare", "herd.csv", "--json", "found.json");
      await user.give(join(folder, "herd.csv"));
      if (!run(folder, "test -f found.json && echo").out) {
        const words = err.trim().replace(/^herd\.csv: /, "");
        expect(words).not.toBe("");
        expect(await user.read("[role=alert]"), `case ${at}`).toContain(words);
        return;
      }
      const { findings } = JSON.parse(readFileSync(join(folder, "found.json"), "utf8")) as { findings: Record<string, (string | number)[]> };
      await user.unfolds("#faults");
      const rows = await user.evaluate(() => [...document.querySelectorAll("#faults tbody tr")].map((row) => [...row.children].map(({ textContent }) => textContent!)));
      const filled = (cells: readonly unknown[]) => cells.filter((cell) => cell !== "" && cell !== NONE).join(" | ");  // empty columns are not shown
      const shown = (key: string, i: number) => (key === "text" ? String(findings[key]![i]).replace(/ : expected .*--.*/, "") : findings[key]![i] || "");
      const expected = findings["text"]!.map((_, i) => filled(["row", "column", "value", "text", "done"].map((key) => shown(key, i))));
      for (const row of expected) expect(rows.map(filled), `case ${at}`).toContain(row);
      for (const kind of findings["kind"]!) kinds.add(String(kind));
    });
  }
  const known = [...readFileSync("../src/prepare/findings.cpp", "utf8").matchAll(/^ {4}\{"([a-z-]+)", /gm)].map(([, kind]) => kind!);
  expect([...kinds, "rule"].sort()).toEqual(known.sort());  // those of rules have a test of their own
  await user.leaves();
});
