// The report as a page of its own: the page of reports is within this one, packed, and its data are put in
// as the programs do.

import { block, unpacked } from "../../engine/blocks.js";

const MARKER = "/*DATA*/";

let page: Promise<string> | undefined;

export async function reportPage(json: string): Promise<string> {
  const [before, after] = (await (page ??= unpacked(block("report-page")).text())).split(MARKER);
  return before! + json.replaceAll("<", "\\u003c") + after!;
}
