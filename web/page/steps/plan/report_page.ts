// The report as a page of its own: the page of reports is within this one, packed, and its data are put in
// as the programs do.

import { unpacked } from "../../blocks.js";

const MARKER = "/*DATA*/";

export async function reportPage(json: string): Promise<string> {
  const [before, after] = new TextDecoder().decode(await unpacked("report-page")).split(MARKER);
  return before! + json.replaceAll("<", "\\u003c") + after!;
}
