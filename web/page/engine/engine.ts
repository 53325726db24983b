// The program in a worker. Nothing that takes time runs in the page itself.

import { block, unpacked } from "../blocks.js";
import { Unreadable } from "../spreadsheet/unreadable.js";
import type { Done, FromWorker, Job, ToWorker } from "./protocol.js";

/** How far a long command is. */
export interface Progress { phase: string; /** 0 to 1 */ share: number; /** Seconds. */ left: number; more: string }

/** A job that the reader did not want any more. */
export class Cancelled extends Error {}

/** A worker that has ended by itself; it is replaced, and the page goes on. */
export class Failed extends Error {
  constructor(readonly why: "memory" | "defect", detail: string) {
    super(detail);
  }
}

/** A command that ended with a fault: the program's own words. */
export class Refused extends Error {
  constructor(readonly done: Done) {
    super(done.text || done.err.trim() || done.out.trim());
  }
}

interface Waiting { resolve: (done: Done) => void; reject: (error: Error) => void; progress: ((progress: Progress | null) => void) | undefined }

/** "Search : 81.2 %, 1 s left, generation 942", or null where nothing is shown. */
export function progressOf(text: string): Progress | null {
  const found = /^(.*?) *: *([\d.]+) %(?:, (\d+) s left)?(.*)$/s.exec(text);
  return found && { phase: found[1]!, share: Number(found[2]) / 100, left: Number(found[3] ?? NaN), more: found[4]!.replace(/^, /, "").trim() };
}

let program: Promise<WebAssembly.Module> | undefined;

/** The compiled program of all workers. */
function compiled(): Promise<WebAssembly.Module> {
  program ??= unpacked("program").then((bytes) => WebAssembly.compile(bytes));
  program.catch(() => (program = undefined));  // to be tried again
  return program;
}

let source: string | undefined;

function madeWorker(): Worker {
  source ??= URL.createObjectURL(new Blob([block("worker")], { type: "text/javascript" }));
  return new Worker(source);
}

export class Engine {
  private worker: Worker | undefined;
  private readonly waiting = new Map<number, Waiting>();
  private last = 0;

  /** Whether a job is under way. */
  get busy(): boolean {
    return this.waiting.size > 0;
  }

  /** Carries a job out behind those that are under way. Files stay for the next jobs until the engine is
   * stopped or fails. Throws Cancelled or Failed. */
  async do(job: Job, progress?: (progress: Progress | null) => void): Promise<Done> {
    const worker = (this.worker ??= await this.started());
    const id = ++this.last;
    return new Promise((resolve, reject) => {
      this.waiting.set(id, { resolve, reject, progress });
      worker.postMessage({ id, job } satisfies ToWorker);
    });
  }

  /** The same; throws Refused if the command does not end with success. */
  async must(job: Job, progress?: (progress: Progress | null) => void): Promise<Done> {
    const done = await this.do(job, progress);
    if (done.status !== 0) throw new Refused(done);
    return done;
  }

  /** Ends all jobs at once; the next one has a new worker without files. */
  stop(): void {
    this.end(new Cancelled());
  }

  private starting: Promise<Worker> | undefined;

  private started(): Promise<Worker> {
    this.starting ??= compiled().then((module) => {
      const worker = madeWorker();
      worker.onmessage = ({ data }: MessageEvent<FromWorker>) => this.told(data);
      worker.onerror = ({ message }) => this.end(new Failed(/memory/i.test(message) ? "memory" : "defect", message));
      worker.postMessage({ start: module } satisfies ToWorker);
      return worker;
    }).finally(() => (this.starting = undefined));
    return this.starting;
  }

  private told(message: FromWorker): void {
    const waiting = this.waiting.get(message.id);
    if ("progress" in message) waiting?.progress?.(progressOf(message.progress));
    else if ("failed" in message) this.end(new Failed(message.failed, message.detail));
    else {
      this.waiting.delete(message.id);
      if ("done" in message) waiting?.resolve(message.done);
      else waiting?.reject(new Unreadable(message.unreadable, ...(message.details as [])));
    }
  }

  private end(error: Error): void {
    this.worker?.terminate();
    this.worker = undefined;
    const all = [...this.waiting.values()];
    this.waiting.clear();
    for (const { reject } of all) reject(error);
  }
}

/** So many workers as the machine has cores, and eight at most. */
export const workers = (): number => Math.min(8, Math.max(1, navigator.hardwareConcurrency || 1));
