// The search: to be written.

import { part } from "../shared/dom.js";
import type { Result } from "./model.js";

export function section(_result: Result): HTMLElement {
  return part("search", "The search");
}
