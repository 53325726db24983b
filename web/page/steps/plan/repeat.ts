// All that is needed to make a plan again on a computer, from the files of its run or from the herd book.

import type { Zippable } from "fflate";
import { quoted } from "../../../shared/shell.js";
import { prepareWords } from "../../choices.js";
import type { Made } from "../../planned.js";
import { words } from "../../texts/words.js";
import { rulesFile, type Work } from "../../work.js";

const RULES = "rules.csv";
const LIST = "page/QOB_qob_MatingList.txt";  // that of the page, to compare
const BOOK = "herd_book/";  // apart from the run's files, one of which may be called as it is

/** The files, with a README that tells the commands. */
export function repeated({ book, choices }: Work, name: string, { inputs, result, list }: Made): Zippable {
  const rules = choices.rules.length > 0;
  const prepare = prepareWords(`${name}.csv`, rules ? RULES : null, choices).map(quoted).join(" ");
  const readme = words.plan.readme(result.making.program, prepare, name);
  return {
    ...Object.fromEntries(inputs),
    [`${BOOK}${name}.csv`]: book!.bytes,
    ...(rules ? { [`${BOOK}${RULES}`]: rulesFile(choices) } : {}),
    [LIST]: list,
    "README.txt": new TextEncoder().encode(readme.replaceAll("\n", "\r\n")),
  };
}
