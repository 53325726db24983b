// How it was made: to be written.

import { part } from "../shared/dom.js";
import type { Result } from "./model.js";

export function section(_result: Result): HTMLElement {
  return part("made", "How it was made");
}
