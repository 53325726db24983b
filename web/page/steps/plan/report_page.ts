// The report as a page of its own: the page of reports is within this one, packed, and its data are put in
// as the programs do. It speaks the language that it says.

import { unpacked } from "../../blocks.js";
import { language } from "../../texts/words.js";

const MARKER = "/*DATA*/";

export async function reportPage(json: string): Promise<string> {
  const [before, after] = new TextDecoder().decode(await unpacked("report-page")).split(MARKER);
  return before!.replace(/<html lang="\w+"/, `<html lang="${language}"`) + json.replaceAll("<", "\\u003c") + after!;
}
