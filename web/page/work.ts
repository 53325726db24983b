// The work of the page: one herd book, what was chosen, and what was found with it. Whatever shows it
// follows it.

import { csv } from "../shared/download.js";
import { decides, FIRST, prepareWords, suggestion, type Choices } from "./choices.js";
import { Cancelled, Engine, type Progress } from "./engine/engine.js";
import type { Files } from "./engine/protocol.js";
import { Followed } from "./followers.js";
import { read, type Prepared } from "./prepared.js";

/** A herd book as it is read: always CSV; `from` tells of which sheet it was made, if it was, and
 * `workbook` holds the others; so many of its formulas had no value and are empty here. */
export interface Book { name: string; bytes: Uint8Array; from?: string; uncalculated?: number; workbook?: { bytes: Uint8Array; sheets: readonly string[] } }

/** What can be undone. */
interface Moment { book: Book | null; choices: Choices }

/** What a file turned out to be: a herd book, or one with the choices of a saved work. */
export interface Arrived { book: Book; choices?: Choices }

/** What qob-prepare found in a herd book with some choices, and the files of a run, which are there only if
 * `data.sound`. */
export interface Ready { state: "ready"; book: Book; choices: Choices; data: Prepared; files: Files }

/** What qob-prepare made of it. */
export type Found =
  | { state: "none" }
  | { state: "working"; progress: Progress | null }
  | Ready
  /** Nothing but the program's words, or a worker that has failed. */
  | { state: "refused"; error: Error };

/** The name of the files that are made of a herd book: its own, as far as files may be called so. */
export function stem(book: string): string {
  const bare = book.replace(/\.[^.]*$/, "").replace(/[^\p{L}\p{N}._-]+/gu, "_").replace(/^[._-]+/, "");
  return [...bare].slice(0, 20).join("") || "herd";
}

/** What the rules are called beside the herd book, whose stem never begins like this. */
export const RULES_FILE = "_rules.csv";

export class Work extends Followed {
  private readonly engine = new Engine();
  private past: Moment[] = [];
  private future: Moment[] = [];
  private runs = 0;
  private fresh: Book | null = null;  // for which the page may suggest choices
  book: Book | null = null;
  choices: Choices = FIRST;
  found: Found = { state: "none" };
  /** What was found last in this herd book, which can be shown while it is made anew. */
  latest: Prepared | null = null;
  /** What reads a file, while one is read, and why the last one could not be. */
  opening: Engine | null = null;
  unopened: Error | null = null;

  /** Reads a file and begins with what is in it; if it is none for us, the work stays as it was. */
  async open(arriving: (engine: Engine) => Promise<Arrived>): Promise<void> {
    this.opening?.stop();
    const engine = new Engine();
    [this.opening, this.unopened] = [engine, null];
    this.changed();
    const end = (act: () => void) => {
      engine.stop();
      if (this.opening !== engine) return;
      this.opening = null;
      act();
    };
    await arriving(engine).then(
      ({ book, choices }) => end(() => this.begin(book, choices)),
      (error: unknown) => end(() => this.tell(error)));
  }

  /** Tells why a file could not be opened. */
  tell(error: unknown): void {
    if (!(error instanceof Error)) throw error;
    this.unopened = error;
    this.changed();
  }

  /** The reader knows. */
  dismiss(): void {
    this.unopened = null;
    this.changed();
  }

  /** Begins with a herd book; choices are those of a saved work, else what the page suggests. */
  begin(book: Book, choices?: Choices): void {
    this.fresh = choices ? null : book;
    if (this.book) this.past.push(this.moment);
    this.future = [];
    this.unopened = null;
    this.move({ book, choices: choices ?? FIRST });
  }

  get canUndo(): boolean {
    return this.past.length > 0;
  }
  get canRedo(): boolean {
    return this.future.length > 0;
  }

  private get moment(): Moment {
    return { book: this.book, choices: this.choices };
  }

  choose(some: Partial<Choices>): void {
    const choices = { ...this.choices, ...some };
    if (JSON.stringify(choices) === JSON.stringify(this.choices)) return;
    this.past.push(this.moment);
    this.future = [];
    this.move({ book: this.book, choices });
  }

  undo(): void {
    const before = this.past.pop();
    if (!before) return;
    this.future.push(this.moment);
    this.move(before);
  }

  redo(): void {
    const after = this.future.pop();
    if (!after) return;
    this.past.push(this.moment);
    this.move(after);
  }

  private move({ book, choices }: Moment): void {
    const same = book === this.book && decides(choices) === decides(this.choices);
    if (book !== this.book) this.latest = null;
    [this.book, this.choices] = [book, choices];
    if (same) this.changed();
    else void this.prepare();
  }

  /** Begins anew what was stopped or has failed. */
  again(): void {
    void this.prepare();
  }

  /** Stops what is under way. */
  cancel(): void {
    this.opening?.stop();
    this.engine.stop();
  }

  private async prepare(): Promise<void> {
    this.engine.stop();
    const { book, choices } = this;
    if (!book) return;
    const run = ++this.runs;
    const show = (found: Found) => {
      if (run !== this.runs) return;
      this.found = found;
      if (found.state === "ready") this.latest = found.data;
      this.changed();
    };
    show({ state: "working", progress: null });
    try {
      const found = await this.preparedOf(book, choices, (progress) => show({ state: "working", progress }));
      if (run === this.runs && this.suggests(found)) await this.prepare();
      else show(found);
    } catch (error) {
      if (!(error instanceof Error)) throw error;
      show({ state: "refused", error });
      if (!(error instanceof Cancelled) && error.constructor === Error) throw error;
    }
  }

  /** Whether choices were added that a new herd book needs before anything can be planned. */
  private suggests(found: Found): boolean {
    if (found.state !== "ready" || found.data.counts.animals === 0 || this.fresh !== this.book) return false;
    this.fresh = null;
    if (!silent(this.choices, found.data)) return false;
    this.choices = { ...this.choices, ...suggested(found.data) };
    return true;
  }

  private async preparedOf(book: Book, choices: Choices, progress: (progress: Progress | null) => void): Promise<Found> {
    const name = stem(book.name);
    const rules = choices.rules.length > 0 ? RULES_FILE : null;
    const put: Files = [[`${name}.csv`, book.bytes], ...(rules ? [[rules, rulesFile(choices)] as const] : [])];
    const command = [...prepareWords(`${name}.csv`, rules, choices), "--output=run", "--json=found.json"];
    const done = await this.engine.do({ clear: true, put, command, take: ["found.json", "run/"] }, progress);
    const json = done.files.find(([file]) => file === "found.json");
    if (!json) return { state: "refused", error: new Error(done.text || done.err.trim()) };
    const files: Files = done.files.filter(([file]) => file.startsWith("run/")).map(([file, bytes]) => [file.slice(4), bytes]);
    return { state: "ready", book, choices, data: read(new TextDecoder().decode(json[1])), files };
  }
}

/** Whether nothing tells how often an animal may be mated. */
const silent = ({ males, females }: Choices, { columns }: Prepared): boolean =>
  males.matings === null && females.matings === null && columns.every(({ field }) => field !== "matings");

/** Whom the page suggests to mate how often, and at what ages. */
export function suggested({ sexes }: Prepared): ReturnType<typeof suggestion> {
  return suggestion(sexes[0]!.parent_ages, sexes[1]!.parent_ages);
}

/** The rules as a file of qob-prepare has them. */
export function rulesFile({ rules }: Choices): Uint8Array {
  return new TextEncoder().encode(csv(["kind", "a", "b", "value"], rules.map(({ kind, a, b, value }) => [kind, a, b, value])));
}
