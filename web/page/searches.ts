// Full searches of a point with several seeds, each in a worker of its own; further ones wait for a free
// one. What a search has found joins the plans and competes with them.

import type { Plan } from "../frontier/model.js";
import { Cancelled, Engine, workers, type Progress } from "./engine/engine.js";
import type { Files } from "./engine/protocol.js";
import { Followed } from "./followers.js";
import { PARAMETERS, RESULTS, type Tradeoff } from "./tradeoff.js";
import type { Work } from "./work.js";

export interface Search {
  seed: number;
  /** Where it is among the plans. */
  folder: string;
  state: "waiting" | "running" | "done" | "failed" | "cancelled";
  progress: Progress | null;
  error?: Error;
}

export class Searches extends Followed {
  private engines: Engine[] = [];
  private files: Files | null = null;
  /** Those of the point that was searched last. */
  all: Search[] = [];
  /** The point's plan. */
  of: Plan | null = null;

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {
    super();
    tradeoff.follow(() => this.files && this.files !== tradeoff.run && this.forget());
  }

  get busy(): boolean {
    return this.all.some(({ state }) => state === "waiting" || state === "running");
  }

  /** Ends them; those that are done stay among the plans. */
  stop(): void {
    for (const engine of this.engines) engine.stop();
    for (const search of this.all) if (search.state === "waiting" || search.state === "running") search.state = "cancelled";
    this.changed();
  }

  private forget(): void {
    this.stop();
    [this.files, this.all, this.of] = [null, [], null];
    this.changed();
  }

  /** Searches a plan's point, and in the end takes the best of its plans. */
  async start(plan: Plan): Promise<void> {
    const { tradeoff, work } = this;
    const known = new Set(tradeoff.rivals(plan).map(({ seed }) => seed));
    const seeds = Array.from({ length: work.choices.seeds }, (_, k) => k + 1).filter((seed) => !known.has(seed));
    const all: Search[] = seeds.map((seed) => ({ seed, folder: "", state: "waiting", progress: null }));
    [this.files, this.of, this.all] = [tradeoff.run, plan, all];
    this.engines = Array.from({ length: Math.min(workers(), seeds.length) }, () => new Engine());
    this.changed();
    await Promise.all(this.engines.map((engine) => this.serve(engine, all)));
    if (this.all === all) this.choose(plan);
  }

  /** The best by its share of the possible; of equal ones that which was there first. */
  private choose(plan: Plan): void {
    const { tradeoff, work } = this;
    const best = tradeoff.rivals(plan).reduce((best, other) => (other.share > best.share ? other : best));
    if (tradeoff.plan && tradeoff.rivals(plan).includes(tradeoff.plan)) work.choose({ point: best.folder });
    this.changed();
  }

  private async serve(engine: Engine, all: readonly Search[]): Promise<void> {
    for (let search; (search = all.find(({ state }) => state === "waiting")); ) {
      search.state = "running";
      try {
        await this.carryOut(search, engine);
        if (search.state === "running") search.state = "done";
      } catch (error) {
        if (!(error instanceof Error)) throw error;
        [search.state, search.error] = [error instanceof Cancelled ? "cancelled" : "failed", error];
      }
      this.changed();
    }
    engine.stop();
  }

  private async carryOut(search: Search, engine: Engine): Promise<void> {
    const { tradeoff, files, of } = this;
    const { folder, bytes } = await tradeoff.parametersOf(of!, search.seed);
    if (search.state !== "running") throw new Cancelled();
    search.folder = folder;
    const progress = (progress: Progress | null) => {
      search.progress = progress;
      this.changed();
    };
    const done = await engine.must({ clear: true, put: [...files!, [PARAMETERS, bytes]], command: ["qob", PARAMETERS], take: RESULTS }, progress);
    if (files !== tradeoff.run) throw new Cancelled();
    await tradeoff.collect(folder, done.files);
  }
}
