// What the page and its workers say to each other. A worker holds the program with files of its own in
// memory; a job is one command line on them, as a shell would have it.

import type { Reason } from "../spreadsheet/unreadable.js";

/** Bytes by name; "f/own/qob.log" lies in the folder "f/own". */
export type Files = readonly (readonly [name: string, bytes: Uint8Array])[];

/** What a worker is asked for; each part may be left out, and they are done in this order. */
export interface Job {
  /** A workbook of which a sheet is wanted; without a name the first that holds anything. */
  sheet?: { bytes: Uint8Array; name?: string };
  /** Forget all files first. */
  clear?: boolean;
  put?: Files;
  /** The words of a command line: qob, qob-prepare, qob-report, frontier-begin and its like. */
  command?: readonly string[];
  /** Names of files to be handed over; "tables/" stands for all of that folder, "" for all files. Those
   * that are not there are left out. */
  take?: readonly string[];
}

/** How a job ended: exit status (0 is success), what a fault ended it with, standard output and error. */
export interface Done { status: number; text: string; out: string; err: string; files: Files; sheet?: Sheet }

/** A sheet of a workbook with the names of all. */
export interface Sheet { name: string; csv: Uint8Array; uncalculated: number; all: string[] }

export type ToWorker =
  | { start: WebAssembly.Module }
  | { id: number; job: Job };

export type FromWorker =
  | { id: number; done: Done }
  | { id: number; progress: string }
  /** A workbook that cannot be read: the arguments of Unreadable. */
  | { id: number; unreadable: Reason; details: readonly unknown[] }
  /** The worker is of no use any more: no memory was left, or a defect. */
  | { id: number; failed: "memory" | "defect"; detail: string };
