// The work of the page: one herd book, what was chosen, and what was found with it. Whatever shows it
// follows it.

import { csv } from "../shared/download.js";
import { decides, FIRST, prepareWords, type Choices } from "./choices.js";
import { Cancelled, Engine, type Progress } from "./engine/engine.js";
import type { Files } from "./engine/protocol.js";
import { read, type Prepared } from "./prepared.js";

/** A herd book as it is read: always CSV; `from` tells of which sheet it was made, if it was. */
export interface Book { name: string; bytes: Uint8Array; from?: string }

/** What qob-prepare made of it. */
export type Found =
  | { state: "none" }
  | { state: "working"; progress: Progress | null }
  /** The files of a run, which are there only if `data.sound`. */
  | { state: "ready"; data: Prepared; files: Files }
  /** Nothing but the program's words, or a worker that has failed. */
  | { state: "refused"; error: Error };

/** The name of the files that are made of a herd book: its own, as far as files may be called so. */
export function stem(book: string): string {
  const bare = book.replace(/\.[^.]*$/, "").replace(/[^\p{L}\p{N}._-]+/gu, "_").replace(/^[._-]+/, "");
  return [...bare].slice(0, 20).join("") || "herd";
}

export class Work {
  private readonly engine = new Engine();
  private readonly followers = new Set<() => void>();
  private past: Choices[] = [];
  private future: Choices[] = [];
  book: Book | null = null;
  choices: Choices = FIRST;
  found: Found = { state: "none" };

  /** Acts now and whenever anything has changed, until what it returns is called. */
  follow(act: () => void): () => void {
    this.followers.add(act);
    act();
    return () => this.followers.delete(act);
  }

  private changed(): void {
    for (const act of [...this.followers]) act();
  }

  /** Begins with a herd book; choices are those of a saved work, else none. */
  begin(book: Book, choices: Choices = FIRST): void {
    [this.book, this.choices, this.past, this.future] = [book, choices, [], []];
    void this.prepare();
  }

  get canUndo(): boolean {
    return this.past.length > 0;
  }
  get canRedo(): boolean {
    return this.future.length > 0;
  }

  choose(some: Partial<Choices>): void {
    const next = { ...this.choices, ...some };
    if (JSON.stringify(next) === JSON.stringify(this.choices)) return;
    this.past.push(this.choices);
    this.future = [];
    this.move(next);
  }

  undo(): void {
    const before = this.past.pop();
    if (!before) return;
    this.future.push(this.choices);
    this.move(before);
  }

  redo(): void {
    const after = this.future.pop();
    if (!after) return;
    this.past.push(this.choices);
    this.move(after);
  }

  private move(next: Choices): void {
    const same = decides(next) === decides(this.choices);
    this.choices = next;
    if (same) this.changed();
    else void this.prepare();
  }

  /** Stops what is under way. */
  cancel(): void {
    this.engine.stop();
  }

  private async prepare(): Promise<void> {
    this.engine.stop();
    const { book, choices } = this;
    if (!book) return;
    const show = (found: Found) => {
      if (book !== this.book || choices !== this.choices) return;
      this.found = found;
      this.changed();
    };
    show({ state: "working", progress: null });
    try {
      show(await this.preparedOf(book, choices, (progress) => show({ state: "working", progress })));
    } catch (error) {
      if (!(error instanceof Error)) throw error;
      show({ state: "refused", error });
      if (!(error instanceof Cancelled) && error.constructor === Error) throw error;
    }
  }

  private async preparedOf(book: Book, choices: Choices, progress: (progress: Progress | null) => void): Promise<Found> {
    const name = stem(book.name);
    const rules = choices.rules.length > 0 ? "rules.csv" : null;
    const put: Files = [[`${name}.csv`, book.bytes], ...(rules ? [[rules, rulesFile(choices)] as const] : [])];
    const command = [...prepareWords(`${name}.csv`, rules, choices), "--output=run", "--json=found.json"];
    const done = await this.engine.do({ clear: true, put, command, take: ["found.json", "run/"] }, progress);
    const json = done.files.find(([file]) => file === "found.json");
    if (!json) return { state: "refused", error: new Error(done.text || done.err.trim()) };
    const files: Files = done.files.filter(([file]) => file.startsWith("run/")).map(([file, bytes]) => [file.slice(4), bytes]);
    return { state: "ready", data: read(new TextDecoder().decode(json[1])), files };
  }
}

/** The rules as a file of qob-prepare has them. */
export function rulesFile({ rules }: Choices): Uint8Array {
  return new TextEncoder().encode(csv(["kind", "a", "b", "value"], rules.map(({ kind, a, b, value }) => [kind, a, b, value])));
}
