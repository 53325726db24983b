// A fault in words for the reader.

import { Cancelled, Failed } from "./engine/engine.js";
import { words } from "./texts/words.js";

export function said(error: Error): string {
  const { cancelled, memory, defect } = words.frame;
  if (error instanceof Cancelled) return cancelled;
  if (error instanceof Failed) return error.why === "memory" ? memory : `${defect} ${error.message}`;
  return /memory/i.test(error.message) ? memory : error.message;
}
