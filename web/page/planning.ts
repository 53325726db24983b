// What is made of the files of a run, as long as the page is open: the trade-off, searches of its points,
// and the plan.

import { Planned } from "./planned.js";
import { Searches } from "./searches.js";
import { Tradeoff } from "./tradeoff.js";
import type { Work } from "./work.js";

export class Planning {
  readonly tradeoff: Tradeoff;
  readonly searches: Searches;
  readonly planned: Planned;

  constructor(work: Work) {
    this.tradeoff = new Tradeoff(work);
    this.searches = new Searches(work, this.tradeoff);
    this.planned = new Planned(this.tradeoff);
  }
}
