// What keeps a spreadsheet from being read, as a key of the texts and what they are told.

import type { Reasons } from "./reasons.js";

export type Reason = keyof Reasons;

/** Of another thread, hand on `reason` and `details`: a copied error loses them. */
export class Unreadable<R extends Reason = Reason> extends Error {
  readonly details: Parameters<Reasons[R]>;

  constructor(readonly reason: R, ...details: Parameters<Reasons[R]>) {
    super(reason);
    this.details = details;
  }
}

/** The sentence for the user. */
export function sentence(words: Reasons, { reason, details }: { reason: Reason; details: readonly unknown[] }): string {
  return (words[reason] as (...details: unknown[]) => string)(...details);
}
