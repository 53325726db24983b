// All that is needed to make a plan on a computer, from the files of a run or from the herd book.

import type { Zippable } from "fflate";
import { quoted } from "../../../shared/shell.js";
import { prepareWords } from "../../choices.js";
import type { Files } from "../../engine/protocol.js";
import { words } from "../../texts/words.js";
import { RULES_FILE, rulesFile, type Ready } from "../../work.js";

const BOOK = "herd_book/";  // apart from the run's files, one of which may be called as it is

/** Double quotes serve the shells of all systems, where they serve. */
const word = (text: string) => (/^[^"$`\\!%]*$/.test(text) && quoted(text) !== text ? `"${text}"` : quoted(text));

/** The files of a run with one of parameters, and a README that tells the commands. */
export function repeated({ book, choices, data }: Ready, name: string, files: Files, parameters: string): Zippable {
  const rules = choices.rules.length > 0;
  const prepare = prepareWords(`${name}.csv`, rules ? RULES_FILE : null, choices).map(word).join(" ");
  const readme = words.plan.readme(data.program, `qob ${word(parameters)}`, prepare, name);
  return {
    ...Object.fromEntries(files),
    [`${BOOK}${name}.csv`]: book.bytes,
    ...(rules ? { [`${BOOK}${RULES_FILE}`]: rulesFile(choices) } : {}),
    "README.txt": new TextEncoder().encode(readme.replaceAll("\n", "\r\n")),
  };
}
