// The parts of a report, in their order.

import * as beware from "./beware.js";
import * as candidates from "./candidates.js";
import * as made from "./made.js";
import * as matings from "./matings.js";
import type { Result } from "./model.js";
import * as population from "./population.js";
import * as rules from "./rules.js";
import * as search from "./search.js";
import * as summary from "./summary.js";

export function parts(result: Result): HTMLElement[] {
  return [
    summary.section(result),
    result.plan && matings.section(result),
    result.plan?.rules && rules.section(result.plan.rules),
    result.candidates.length > 0 && candidates.section(result),
    population.section(result),
    result.search.rows.length > 0 && search.section(result),
    beware.section(result),
    made.section(result),
  ].filter((part) => part instanceof HTMLElement);
}
