// The parts of a ZIP archive. What it claims to hold is checked before anything is unpacked, and
// what comes out is checked against the claim.

import { Inflate } from "fflate";
import { Unreadable } from "./unreadable.js";

/** A part, still packed, as the archive's directory tells of it. */
export interface Part {
  readonly packed: Uint8Array;
  readonly deflated: boolean;
  readonly size: number;
  readonly check: number;
}

/** Parts by their names in small letters: which letters are large is not told apart. */
export type Parts = ReadonlyMap<string, Part>;

interface Entry extends Omit<Part, "packed"> { name: string; start: number; length: number }

const FILE = 0x04034b50, ENTRY = 0x02014b50, END = 0x06054b50;
const END_SIZE = 22, ENTRY_SIZE = 46, FILE_SIZE = 30;
const SAID_ELSEWHERE = 0xffffffff;
const MOST_PARTS = 10_000;
const LARGEST = { file: 2 ** 28, unpacked: 3 * 2 ** 28 };
// Rows of nothing but zeros reach 260; more than 1030 cannot be.
const DENSEST = 300, DENSE_FROM = 2 ** 24;
const PIECE = 2 ** 14; // packed bytes, which unpack to 16 MB at most

/** The parts of an archive that claims nothing impossible or dangerous. */
export function partsOf(bytes: Uint8Array): Parts {
  if (bytes.length > LARGEST.file) throw new Unreadable("tooLarge", megabytes(bytes.length));
  const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
  const end = endOf(view);
  const count = view.getUint16(end + 10, true), directory = view.getUint32(end + 16, true);
  if (count > MOST_PARTS) throw new Unreadable("forged");
  const entries = entriesOf(bytes, view, directory, count);
  checkSizes(entries);
  const parts = new Map<string, Part>();
  let free = 0;
  for (const { name, start, length, ...claim } of entries.sort((a, b) => a.start - b.start)) {
    const from = contentOf(view, start);
    if (start < free || from + length > directory || parts.has(name)) throw new Unreadable("forged");
    free = from + length;
    parts.set(name, { ...claim, packed: bytes.subarray(from, free) });
  }
  return parts;
}

/** A size as it is told. */
export function megabytes(bytes: number): number {
  return Math.ceil(bytes / 2 ** 20);
}

/** Unpacks a part piece by piece. */
export function unpack({ packed, deflated, size, check }: Part, take: (piece: Uint8Array) => void): void {
  let left = size, sum = 0;
  const taken = (piece: Uint8Array) => {
    left -= piece.length;
    if (left < 0) throw new Unreadable("forged");
    sum = crc32(piece, sum);
    take(piece);
  };
  const inflate = new Inflate(taken);
  for (let at = 0; at < packed.length; at += PIECE) {
    const piece = packed.subarray(at, at + PIECE);
    if (deflated) inflate.push(piece, at + PIECE >= packed.length);
    else taken(piece);
  }
  if (left !== 0 || sum !== check) throw new Unreadable("damaged");
}

/** Where the record begins that ends every archive; only a remark may follow. */
function endOf(view: DataView): number {
  const last = view.byteLength - END_SIZE;
  for (let at = last; at >= 0 && at >= last - 0xffff; --at) {
    if (view.getUint32(at, true) === END && at + view.getUint16(at + 20, true) <= last) return at;
  }
  throw new Unreadable("damaged");
}

function entriesOf(bytes: Uint8Array, view: DataView, directory: number, count: number): Entry[] {
  const entries: Entry[] = [];
  for (let at = directory; entries.length < count; ) {
    if (view.getUint32(at, true) !== ENTRY) throw new Unreadable("damaged");
    const method = view.getUint16(at + 10, true);
    const [name, more, remark] = [28, 30, 32].map((field) => view.getUint16(at + field, true)) as [number, number, number];
    const flags = view.getUint16(at + 8, true);
    if (flags & 1) throw new Unreadable("encrypted");
    if (method !== 0 && method !== 8) throw new Unreadable("forged");
    const [size, length, start] = numbersOf(view, at, at + ENTRY_SIZE + name, more);
    entries.push({
      name: new TextDecoder().decode(bytes.subarray(at + ENTRY_SIZE, at + ENTRY_SIZE + name)).toLowerCase(),
      deflated: method === 8, check: view.getInt32(at + 16, true), size, length, start,
    });
    at += ENTRY_SIZE + name + more + remark;
  }
  return entries;
}

/** Unpacked and packed size and place of an entry; those that have no room in 32 bits stand behind its name. */
function numbersOf(view: DataView, at: number, behind: number, more: number): [number, number, number] {
  const long: number[] = [];
  for (let field = behind; field + 4 <= behind + more; field += 4 + view.getUint16(field + 2, true)) {
    if (view.getUint16(field, true) !== 1) continue;
    for (let k = 0; k + 8 <= view.getUint16(field + 2, true); k += 8) long.push(Number(view.getBigUint64(field + 4 + k, true)));
  }
  const told = [24, 20, 42].map((field) => view.getUint32(at + field, true));
  return told.map((value) => (value === SAID_ELSEWHERE ? long.shift() ?? value : value)) as [number, number, number];
}

function checkSizes(entries: readonly Entry[]): void {
  const unpacked = entries.reduce((sum, { size }) => sum + size, 0);
  const dense = entries.some(({ size, length }) => size > DENSE_FROM && size > length * DENSEST);
  if (dense || unpacked > LARGEST.unpacked) throw new Unreadable("tooLarge", megabytes(unpacked));
}

/** Where the bytes of a part begin, behind its own heading. */
function contentOf(view: DataView, start: number): number {
  if (view.getUint32(start, true) !== FILE) throw new Unreadable("damaged");
  return start + FILE_SIZE + view.getUint16(start + 26, true) + view.getUint16(start + 28, true);
}

const table = Int32Array.from({ length: 256 }, (_, byte) => {
  for (let bit = 0; bit < 8; ++bit) byte = byte & 1 ? (byte >>> 1) ^ 0xedb88320 : byte >>> 1;
  return byte;
});

/** The checksum of ZIP, continued from that of what went before. */
function crc32(bytes: Uint8Array, before: number): number {
  let sum = ~before;
  for (let k = 0; k < bytes.length; ++k) sum = table[(sum ^ bytes[k]!) & 0xff]! ^ (sum >>> 8);
  return ~sum;
}
