// How birth times are called: as the herd book counts, or as the time step.

import { population as words } from "../shared/texts/language.js";
import type { Result } from "./model.js";

export type Birth = (birth_time: number) => string;

/** A birth time in a sentence: a year stands for itself, a small number is said to be a time step. */
export const inWords = (birth: string) => (/^\d{1,3}$/.test(birth) ? words.timeStep(birth) : birth);

export function birthOf({ population }: Result): Birth {
  const called = new Map(population.trend.map(({ birth_time, birth }) => [birth_time, birth]));
  return (birth_time) => called.get(birth_time) || String(birth_time);
}
