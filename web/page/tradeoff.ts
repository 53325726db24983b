// The trade-off between merit and inbreeding, made while a reader looks at it: first the curve of the best
// possible, then plans beneath it, few at first and then ever closer. The herd is read once, into a worker
// that keeps it, so that each plan takes no more than its own time.

import { read, type Frontier, type Plan } from "../frontier/model.js";
import type { Target } from "./choices.js";
import { Cancelled, Engine, Failed, Refused, type Progress } from "./engine/engine.js";
import type { Done, Files, Job } from "./engine/protocol.js";
import { Followed } from "./followers.js";
import { bare, meets, optionOf, pointOf, targetOf } from "./points.js";
import { stem, type Book, type Ready, type Work } from "./work.js";

const FOLDER = "f";
const JSON_FILE = `${FOLDER}/frontier.json`;
export const PARAMETERS = "qob.prm";
/** What a search leaves that is looked for in its folder. */
export const RESULTS = ["QOB_qob.log", "QOB_qob_MatingList.txt"] as const;

const ROUNDS = [3, 5, 9, 17];  // points; each round has those of the one before
/** What is suggested: the least that is advised to keep a herd going. */
export const ADVISED: Target = { kind: "ne", value: 50 };
const PAUSE = 300;             // milliseconds until it begins: choices often change one after the other

export type State =
  /** There is nothing to plan with. */
  | { state: "none" }
  | { state: "reading"; progress: Progress | null }
  | { state: "planning"; made: number; all: number }
  | { state: "ready" }
  /** By the reader. */
  | { state: "stopped" }
  | { state: "failed"; error: Error };

export class Tradeoff extends Followed {
  private engine = new Engine();
  private waiting: ReturnType<typeof setTimeout> | undefined;
  private files: Files | null = null;
  private book: Book | null = null;
  /** Of what the files are. */
  source: Ready | null = null;
  private begun = false;
  private going = false;
  private stopped = false;
  private rounds: number[] = [];
  private left = 0;
  private aimed = "";
  /** The suggestion can be had of the program. */
  private advising = false;
  /** Parameter files of searches, by folder. */
  private readonly parameters = new Map<string, Uint8Array>();
  state: State = { state: "none" };
  frontier: Frontier | null = null;
  /** What the program says of a target that cannot be had. */
  refused: string | null = null;

  constructor(private readonly work: Work) {
    super();
    work.follow(() => this.look());
  }

  /** The files of the run, which are the same as long as nothing is decided anew. */
  get run(): Files {
    return this.files ?? [];
  }

  /** Those that every plan's run reads beside its parameter file. */
  get inputs(): Files {
    const { name } = this;
    return this.run.filter(([file]) => [`${name}.dat`, `${name}.names.csv`, `${name}.rules.csv`].includes(file));
  }

  /** What the files are called by. */
  get name(): string {
    return stem(this.book?.name ?? "");
  }

  /** Whether the herd book could be planned with at some time, or has rules: these may have to be mended. */
  get known(): boolean {
    const { book, choices, latest } = this.work;
    return book !== null && (book === this.book || (latest !== null && choices.rules.length > 0));
  }

  /** Whether the herd book is good, but nobody of a sex may be mated. */
  get nobody(): boolean {
    const { found } = this.work;
    return found.state === "ready" && found.data.sound && (found.data.planned_matings < 1 || found.data.sexes.some(({ candidates }) => candidates < 1));
  }

  /** Whether what is shown is of files that are made anew now. */
  get stale(): boolean {
    const { found } = this.work;
    return found.state !== "ready" || found.files !== this.files;
  }

  /** The plan of the chosen point, else of the target, else the suggestion. */
  get plan(): Plan | undefined {
    const { point } = this.work.choices, plans = this.frontier?.plans ?? [];
    const called = (folder: string) => plans.find((plan) => plan.folder === folder);
    return called(point) ?? called(bare(point)) ?? this.aim ?? this.suggested;
  }

  /** The plan of the advised effective size, or of the herd's own goal where that has as much merit and keeps
   * to the advice, too. While the former is to come there is none, so that nobody takes another one. */
  get suggested(): Plan | undefined {
    const plans = this.frontier?.plans ?? [];
    const own = plans.find(({ own }) => own), advised = plans.find(meets(ADVISED));
    if (!advised) return this.going && this.advising ? undefined : own;
    return own && own.rate <= 0.5 / ADVISED.value && own.scaled_merit >= advised.scaled_merit ? own : advised;
  }

  /** Whether a point was asked for that is not there yet. */
  get awaited(): boolean {
    const { target, point } = this.work.choices;
    return this.begun && target !== null && point === "" && !this.aim && this.refused === null;
  }

  /** The plan that was made for the target. */
  get aim(): Plan | undefined {
    const { target } = this.work.choices;
    return target ? this.frontier?.plans.find(meets(target)) : undefined;
  }

  /** All plans of a plan's point: by the direct way, and by searches. */
  rivals(plan: Plan): Plan[] {
    return (this.frontier?.plans ?? []).filter((other) => pointOf(other) === pointOf(plan));
  }

  private look(): void {
    const { found, book, choices } = this.work;
    if (this.nobody) this.await(book!);
    else if (found.state === "ready" && found.data.sound && found.files !== this.files) this.begin(found);
    else if (found.state === "none" || found.state === "refused" || (found.state === "ready" && !found.data.sound)) this.forget();
    else if (this.begun && JSON.stringify(choices.target) !== this.aimed) this.resume();
    this.changed();
  }

  /** Waits for somebody to be mated. */
  private await(book: Book): void {
    if (this.files) this.forget();
    this.book = book;
  }

  private begin(found: Ready): void {
    this.forget();
    [this.source, this.book, this.files] = [found, found.book, found.files];
    this.waiting = setTimeout(() => void this.start(), PAUSE);
    this.state = { state: "reading", progress: null };
  }

  private forget(): void {
    clearTimeout(this.waiting);
    this.engine.stop();
    this.engine = new Engine();  // what the one before still tells is not heard
    [this.files, this.frontier, this.begun, this.going, this.stopped, this.refused] = [null, null, false, false, false, null];
    this.parameters.clear();
    this.state = { state: "none" };
  }

  /** Stops; plans that are there stay. */
  stop(): void {
    clearTimeout(this.waiting);
    if (!this.begun) this.engine.stop();
    this.stopped = true;
    this.show({ state: "stopped" });
  }

  /** Goes on where it was stopped, or begins anew where its worker has failed. */
  resume(): void {
    this.stopped = false;
    void (this.begun ? this.go() : this.start());
  }

  private show(state: State): void {
    this.state = state;
    this.changed();
  }

  /** Acts; tells a fault, unless it is of a herd that is not looked at any more. */
  private async guarded(act: () => Promise<void>): Promise<void> {
    const { engine } = this;
    try {
      await act();
    } catch (error) {
      if (engine !== this.engine) return;
      this.going = false;
      if (!(error instanceof Error)) throw error;
      if (error instanceof Cancelled) return this.show({ state: "stopped" });
      if (error instanceof Failed) [this.begun, this.frontier] = [false, null];  // its files are gone
      this.show({ state: "failed", error });
    }
  }

  private start(): Promise<void> {
    return this.guarded(async () => {
      [this.rounds, this.left, this.aimed] = [[...ROUNDS], 0, "null"];
      const progress = (progress: Progress | null) => this.show({ state: "reading", progress });
      progress(null);
      try {
        await this.do({ clear: true, put: this.run, command: ["frontier-begin", `${this.name}.prm`, `--output=${FOLDER}`, "--points=0"], take: [JSON_FILE] }, progress);
      } catch (error) {
        throw error instanceof Refused ? await this.explained(error) : error;
      }
      this.begun = true;
      const target = targetOf(this.work.choices.point);
      if (target) await this.add("--points=0", optionOf(target));
      this.advising = (await this.asked(ADVISED)) === null;
      await this.go();
    });
  }

  /** A run of the herd tells more of what is wrong with it. */
  private async explained(error: Refused): Promise<Error> {
    if (!error.message.includes("qob.log")) return error;
    const done = await this.engine.do({ command: ["qob", `${this.name}.prm`] });
    return done.status !== 0 && done.err.trim() ? new Refused({ ...done, text: "" }) : error;
  }

  /** Carries a command out; takes over how many plans are to be made, and those that there are. */
  private async do(job: Job, progress?: (progress: Progress | null) => void): Promise<Done> {
    const { engine } = this;
    const done = await engine.must(job, progress);
    if (engine !== this.engine) throw new Cancelled();
    if (done.out.trim()) this.left = Number(done.out);
    for (const [, bytes] of done.files) this.frontier = read(new TextDecoder().decode(bytes));
    return done;
  }

  private add(...options: string[]): Promise<Done> {
    return this.do({ command: ["frontier-add", `${this.name}.prm`, ...options] });
  }

  /** Makes what is to be made, one after the other: the target, then the points that were asked for. */
  private async go(): Promise<void> {
    if (this.going || this.stopped) return;
    this.going = true;
    await this.guarded(async () => {
      while (!this.stopped) {
        if (JSON.stringify(this.work.choices.target) !== this.aimed) await this.take(this.work.choices.target);
        else if (this.left > 0) await this.make();
        else if (this.rounds.length > 0) await this.add(`--points=${this.rounds.shift()}`);
        else break;
      }
      this.going = false;
      this.show(this.stopped ? { state: "stopped" } : { state: "ready" });
    });
  }

  private async take(target: Target | null): Promise<void> {
    [this.aimed, this.refused] = [JSON.stringify(target), null];
    if (!target || this.aim) return;
    this.refused = await this.asked(target);
  }

  /** Asks for a target; what the program says if that cannot be had. */
  private async asked(target: Target): Promise<string | null> {
    try {
      await this.add("--points=0", optionOf(target));
      return null;
    } catch (error) {
      if (!(error instanceof Refused)) throw error;
      return error.message.replace(/^--[a-z-]+: /, "").split("\n")[0]!;
    }
  }

  private async make(): Promise<void> {
    const before = this.left;
    const done = this.frontier!.plans.length;
    if (!this.stopped) this.show({ state: "planning", made: done, all: Math.max(done + before, ROUNDS[ROUNDS.length - 1]! + 1) });
    const { err } = await this.do({ command: ["frontier-make"], take: [JSON_FILE] });
    if (this.frontier!.plans.length === done) throw new Error(err.trim());
    this.changed();
  }

  /** Acts for others, who are told what goes wrong; a worker that fails takes the herd with it. */
  private async kept<T>(act: () => Promise<T>): Promise<T> {
    try {
      return await act();
    } catch (error) {
      if (error instanceof Failed) await this.guarded(() => Promise.reject(error));
      throw error;
    }
  }

  /** The parameter file of a plan's run, with a seed that of its point's search. */
  async parametersOf(plan: Plan, seed?: number): Promise<{ folder: string; bytes: Uint8Array }> {
    const known = seed === undefined && this.parameters.get(plan.folder);
    if (known) return { folder: plan.folder, bytes: known };
    const { out, files } = await this.kept(() => this.engine.must({ command: ["frontier-search", pointOf(plan), String(seed ?? 0), PARAMETERS], take: [PARAMETERS] }));
    const folder = out.trim().replace(/\/$/, "").slice(FOLDER.length + 1), bytes = files[0]![1];
    if (seed !== undefined) this.parameters.set(folder, bytes);
    return { folder, bytes };
  }

  /** Puts the results of a search among the plans. */
  async collect(folder: string, results: Files): Promise<void> {
    const put = results.map(([file, bytes]) => [`${FOLDER}/${folder}/${file}`, bytes] as const);
    await this.kept(() => this.do({ put, command: ["frontier-collect"], take: [JSON_FILE] }));
    this.changed();
  }
}
