// Puts data into a page as the program does: node fill.mjs PAGE DATA.json OUT.html

import { readFileSync, writeFileSync } from "node:fs";

export const MARKER = "/*DATA*/";

/** The page with its data, in which no text can end the block that holds them. */
export function filled(page, json) {
  const [before, after, ...more] = page.split(MARKER);
  if (after === undefined || more.length) throw new Error(`The page must hold ${MARKER} once.`);
  return before + json.replaceAll("<", "\\u003c") + after;
}

const [, script, page, data, out] = process.argv;
if (script && import.meta.url.endsWith("/fill.mjs") && script.endsWith("fill.mjs")) {
  writeFileSync(out, filled(readFileSync(page, "utf8"), JSON.stringify(JSON.parse(readFileSync(data, "utf8")))));
}
