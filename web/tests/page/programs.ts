// The programs beside which the page is judged.

import { spawnSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";

export const BOOKS = (process.env["QOB_BOOKS"] ?? "").split("\n").filter((book) => book !== "");

const programs = process.env["QOB_PROGRAMS"] ?? "";

/** A folder for one test; it goes when the work ends. */
export async function withFolder<T>(work: (folder: string) => T | Promise<T>): Promise<T> {
  const folder = mkdtempSync(join(tmpdir(), "qob-page-"));
  try {
    return await work(folder);
  } finally {
    rmSync(folder, { recursive: true });
  }
}

export function put(folder: string, files: Record<string, Uint8Array | string>): void {
  for (const [name, bytes] of Object.entries(files)) {
    mkdirSync(dirname(join(folder, name)), { recursive: true });
    writeFileSync(join(folder, name), bytes);
  }
}

/** Runs a program, or a line of a shell that may name some. */
export function run(folder: string, ...words: readonly string[]): { status: number; out: string; err: string } {
  const [command, ...rest] = words.length === 1 ? ["sh", "-c", words[0]!] : words;
  const { status, stdout, stderr, error } = spawnSync(command!, rest, { cwd: folder, encoding: "utf8", maxBuffer: 2 ** 28, env: { ...process.env, PATH: `${programs}:${process.env["PATH"]}` } });
  if (error) throw error;
  return { status: status ?? -1, out: stdout, err: stderr };
}

export const text = (folder: string, name: string): string => readFileSync(join(folder, name), "latin1");
