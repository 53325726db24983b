// How birth times are called: as the herd book counts, or as the time step.

import type { Result } from "./model.js";

export type Birth = (birth_time: number) => string;

export function birthOf({ population }: Result): Birth {
  const called = new Map(population.trend.map(({ birth_time, birth }) => [birth_time, birth]));
  return (birth_time) => called.get(birth_time) || String(birth_time);
}
