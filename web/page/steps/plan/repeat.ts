// All that is needed to make a plan again on a computer, from the files of its run or from the herd book.

import type { Zippable } from "fflate";
import { quoted } from "../../../shared/shell.js";
import { prepareWords } from "../../choices.js";
import type { Made } from "../../planned.js";
import { words } from "../../texts/words.js";
import { rulesFile, type Work } from "../../work.js";

const RULES = "rules.csv";
const BOOK = "herd_book/";  // apart from the run's files, one of which may be called as it is

/** Double quotes serve the shells of all systems, where they serve. */
const word = (text: string) => (/^[^"$`\\!%]*$/.test(text) && quoted(text) !== text ? `"${text}"` : quoted(text));

/** The files, with a README that tells the commands. */
export function repeated({ book, choices }: Work, name: string, { inputs, result }: Made): Zippable {
  const rules = choices.rules.length > 0;
  const prepare = prepareWords(`${name}.csv`, rules ? RULES : null, choices).map(word).join(" ");
  const readme = words.plan.readme(result.making.program, prepare, name);
  return {
    ...Object.fromEntries(inputs),
    [`${BOOK}${name}.csv`]: book!.bytes,
    ...(rules ? { [`${BOOK}${RULES}`]: rulesFile(choices) } : {}),
    "README.txt": new TextEncoder().encode(readme.replaceAll("\n", "\r\n")),
  };
}
