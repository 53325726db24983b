// What went wrong, in the words of the page.

import { count, fixed } from "../shared/format.js";
import { Misshapen, OtherVersion } from "../shared/shape.js";
import { Unwelcome } from "./arrivals.js";
import { Cancelled, Failed } from "./engine/engine.js";
import { sentence, Unreadable } from "./spreadsheet/unreadable.js";
import { words } from "./texts/words.js";

/** What a reader is told of an error; what the program itself says stays as it is. */
export function said(error: Error): string {
  const { frame, book } = words;
  if (error instanceof Cancelled) return frame.cancelled;
  if (error instanceof Failed) return frame[error.why];
  if (error instanceof Unwelcome) return book.unwelcome[error.why];
  if (error instanceof Unreadable) return sentence(words.workbook, error);
  if (error instanceof OtherVersion) return frame.otherVersion(error.theirs);
  if (error instanceof SyntaxError) return frame.brokenWork;
  if (error instanceof Misshapen) return frame.misshapen(error.message);
  return error.message;
}

/** The same of a herd with so many candidates; of memory also what their relationships would take: 8 bytes
 * for each pair. */
export function saidOf(error: Error, candidates: number): string {
  const lacking = error instanceof Failed && error.why === "memory";
  return lacking ? `${said(error)} ${words.frame.needed(count(candidates), fixed((4 * candidates * (candidates + 1)) / 1e9, 1))}` : said(error);
}
