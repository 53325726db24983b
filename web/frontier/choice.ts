// Which plan a reader looks at. Whatever shows it follows it.

import type { Plan } from "./model.js";

export class Choice {
  private readonly followers: ((plan: Plan) => void)[] = [];

  constructor(private now: Plan) {}

  get plan(): Plan {
    return this.now;
  }

  choose(plan: Plan): void {
    this.now = plan;
    for (const act of this.followers) act(plan);
  }

  /** Acts now and whenever another plan is chosen. */
  follow(act: (plan: Plan) => void): void {
    this.followers.push(act);
    act(this.now);
  }
}
