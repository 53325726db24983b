// A worker: the program as a module, and the jobs that it is sent, one at a time.

import { sha256 } from "@noble/hashes/sha2.js";
import { readSpreadsheet } from "../spreadsheet/read.js";
import { Unreadable } from "../spreadsheet/unreadable.js";
import type { Done, FromWorker, Job, Sheet, ToWorker } from "./protocol.js";

/** The module of module.js. */
interface Qob {
  putFile(name: string, bytes: Uint8Array): void;
  takeFile(name: string): Uint8Array | undefined;
  fileNames(): string[];
  clearFiles(): void;
  command(...words: readonly string[]): { status: number; text: string };
}

interface Settings {
  sha256: () => { update(bytes: Uint8Array): void; digest(): Uint8Array };
  onProgress: (text: string) => void;
  instantiateWasm: (imports: WebAssembly.Imports, ready: (instance: WebAssembly.Instance) => void) => object;
}

declare const createQob: (settings: Settings) => Promise<Qob>;
declare const self: { onmessage: (event: MessageEvent<ToWorker>) => void; postMessage: (message: FromWorker, transfer?: Transferable[]) => void };

const OUT = "/dev/stdout";
const ERR = "/dev/stderr";

let qob: Promise<Qob>;
let now = 0;

function started(module: WebAssembly.Module): Promise<Qob> {
  const made = new Promise<Qob>((resolve, reject) => {
    createQob({
      sha256: () => sha256.create(),
      onProgress: (progress) => self.postMessage({ id: now, progress }),
      instantiateWasm: (imports, ready) => {
        WebAssembly.instantiate(module, imports).then(ready, reject);  // createQob would wait for ever
        return {};
      },
    }).then(resolve, reject);
  });
  made.catch(() => undefined);  // told by the first job
  return made;
}

function wanted(qob: Qob, take: readonly string[]): string[] {
  const names = qob.fileNames().filter((name) => name !== OUT && name !== ERR);
  return names.filter((name) => take.some((one) => name === one || ((one === "" || one.endsWith("/")) && name.startsWith(one))));
}

// As the program says it; a run says more in its log.
const LACKS_MEMORY = /error in allocating memory|Allocation .*(failed|exceed)/i;

function lackedMemory(qob: Qob, text: string, err: string): boolean {
  const log = /qob\.log/.test(text) ? new TextDecoder().decode(qob.takeFile("qob.log")) : "";
  return [text, err, log].some((said) => LACKS_MEMORY.test(said));
}

function sheetOf({ bytes, name }: NonNullable<Job["sheet"]>): Sheet {
  const book = readSpreadsheet(bytes);
  const { sheet, csv, uncalculated } = book.table(name);
  return { name: sheet, csv, uncalculated, all: book.sheets.map(({ name }) => name) };
}

function carriedOut(qob: Qob, { sheet, clear, put, command, take }: Job): Done {
  if (clear) qob.clearFiles();
  for (const [name, bytes] of put ?? []) qob.putFile(name, bytes);
  const end = command ? qob.command(...command) : { status: 0, text: "" };
  const told = (name: string) => new TextDecoder().decode(command && qob.takeFile(name));
  const [out, err] = [told(OUT), told(ERR)];
  if (end.status !== 0 && lackedMemory(qob, end.text, err)) throw new RangeError(end.text);
  const files: Done["files"] = wanted(qob, take ?? []).map((name) => [name, qob.takeFile(name)!]);
  return { ...end, out, err, files, ...(sheet && { sheet: sheetOf(sheet) }) };
}

const lacksMemory = (error: unknown) => error instanceof RangeError || /memory/i.test(String(error));

async function work(id: number, job: Job): Promise<void> {
  now = id;
  try {
    const done = carriedOut(await qob, job);
    self.postMessage({ id, done }, done.files.map(([, bytes]) => bytes.buffer as ArrayBuffer));
  } catch (error) {
    if (error instanceof Unreadable) self.postMessage({ id, unreadable: error.reason, details: error.details });
    else self.postMessage({ id, failed: lacksMemory(error) ? "memory" : "defect", detail: String(error) });
  }
}

self.onmessage = ({ data }) => {
  if ("start" in data) qob = started(data.start);
  else void work(data.id, data.job);
};
