// The plan of a chosen point: its run, with all results, and the report of it.

import type { Plan } from "../frontier/model.js";
import { read, type Result } from "../report/model.js";
import { Cancelled, Engine, type Progress } from "./engine/engine.js";
import type { Files } from "./engine/protocol.js";
import { Followed } from "./followers.js";
import { PARAMETERS, type Tradeoff } from "./tradeoff.js";
import type { Ready } from "./work.js";

const LIST = "QOB_qob_MatingList.txt";
const RESULT = "QOB_result.json";
const TABLES = "tables/";

/** A plan with what its run has left. */
export interface Made {
  /** The herd book and the choices that it is of. */
  source: Ready;
  plan: Plan;
  /** Its report, and the same as the program wrote it. */
  result: Result;
  json: string;
  /** The mating list as the program writes it. */
  list: Uint8Array;
  /** Tables as CSV, by their bare names. */
  tables: Files;
  /** All that the run needs: with them it can be made again elsewhere. */
  inputs: Files;
}

export type State =
  | { state: "none" }
  | { state: "working"; plan: Plan; reporting: boolean; progress: Progress | null }
  | { state: "ready"; made: Made }
  | { state: "failed"; error: Error };

export class Planned extends Followed {
  private engine = new Engine();
  private files: Files | null = null;
  private last = 0;
  state: State = { state: "none" };

  constructor(private readonly tradeoff: Tradeoff) {
    super();
    tradeoff.follow(() => this.files && this.files !== tradeoff.run && this.forget());
  }

  private forget(): void {
    this.files = null;
    this.stop();
  }

  private show(state: State): void {
    this.state = state;
    this.changed();
  }

  stop(): void {
    ++this.last;
    this.engine.stop();
    this.show({ state: "none" });
  }

  async make(plan: Plan): Promise<void> {
    this.engine.stop();
    this.engine = new Engine();  // whoever was stopped while it waited has no part in it
    const mine = ++this.last;
    const show = (state: State) => mine === this.last && this.show(state);
    this.files = this.tradeoff.run;
    show({ state: "working", plan, reporting: false, progress: null });
    try {
      show({ state: "ready", made: await this.madeOf(plan, (reporting, progress) => show({ state: "working", plan, reporting, progress })) });
    } catch (error) {
      if (!(error instanceof Error)) throw error;
      show({ state: "failed", error });
    }
  }

  private async madeOf(plan: Plan, progress: (reporting: boolean, progress: Progress | null) => void): Promise<Made> {
    const { tradeoff, engine, last } = this, source = tradeoff.source!;
    const inputs: Files = [...tradeoff.inputs, [PARAMETERS, (await tradeoff.parametersOf(plan)).bytes]];
    if (last !== this.last) throw new Cancelled();
    await engine.must({ clear: true, put: inputs, command: ["qob", PARAMETERS] }, (now) => progress(false, now));
    progress(true, null);
    const report = ["qob-report", "./QOB_", "--json", "--tables", "tables"];
    const { files } = await engine.must({ command: report, take: [LIST, RESULT, TABLES] }, (now) => progress(true, now));
    const taken = new Map(files);
    const json = new TextDecoder().decode(taken.get(RESULT));
    const result = read(json);
    if (result.format !== "qob-result") throw new Error(RESULT);
    const tables: Files = files.filter(([file]) => file.startsWith(TABLES)).map(([file, bytes]) => [file.slice(TABLES.length), bytes]);
    return { source, plan, result, json, list: taken.get(LIST)!, tables, inputs };
  }
}
