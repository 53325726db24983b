// Which plan a reader looks at. Whatever shows it follows it.

import type { Plan } from "./model.js";

export class Choice {
  private readonly followers: ((plan: Plan) => void)[] = [];

  /** There may be no plan yet. */
  constructor(private now: Plan | undefined) {}

  get plan(): Plan | undefined {
    return this.now;
  }

  choose(plan: Plan): void {
    this.now = plan;
    for (const act of this.followers) act(plan);
  }

  /** Acts now and whenever another plan is chosen. */
  follow(act: (plan: Plan) => void): void {
    this.followers.push(act);
    if (this.now) act(this.now);
  }
}
