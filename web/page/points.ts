// Points of the trade-off, as the program names their folders: "w20" for weight 20, "ne50_s1" for the search
// with seed 1 at effective size 50.

import type { Plan } from "../frontier/model.js";
import type { Target } from "./choices.js";

const OPTIONS: Record<Target["kind"], string> = { weight: "--weights", rate: "--target-rate", ne: "--target-ne", degrees: "--target-degrees" };

/** How qob-frontier is asked for it. */
export const optionOf = ({ kind, value }: Target): string => `${OPTIONS[kind]}=${value}`;

/** A folder without the seed of a search. */
export const bare = (folder: string): string => folder.replace(/_s\d+$/, "");

/** The folder of a plan's point. */
export const pointOf = ({ folder, seed }: Plan): string => (Number.isNaN(seed) ? folder : bare(folder));

/** What a folder's point was made for: with other files a weight or target stays what it is. */
export function targetOf(folder: string): Target | null {
  const [, kind, value] = /^(w|rate|ne|degrees)([\d.e+-]+)$/.exec(bare(folder)) ?? [];
  return kind ? { kind: kind === "w" ? "weight" : (kind as Target["kind"]), value: Number(value) } : null;
}

const close = (a: number, b: number) => Math.abs(a - b) <= 1e-9 * Math.abs(b);

/** Whether a plan was made for a target. */
export const meets = ({ kind, value }: Target) => (plan: Plan): boolean =>
  kind === "weight" ? !plan.target && close(plan.weight, Math.abs(value)) : plan.target?.kind === kind && close(plan.target.value, value);
