// Plans side by side: to be written.

import { part } from "../shared/dom.js";
import type { Comparison } from "./model.js";

export function section(_comparison: Comparison): HTMLElement {
  return part("compare", "Comparison");
}
