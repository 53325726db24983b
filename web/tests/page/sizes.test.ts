// How long it takes, from a double click to a printed mating list, and with a herd of 200,000 animals; the
// page answers all the while. Times are told beside those of the programs, and bounded only where a reader
// would give up.

import { expect, test } from "@playwright/test";
import { join } from "node:path";
import { csvOf } from "../results.js";
import { put, run, withFolder } from "./programs.js";
import { PLANS, User } from "./user.js";

/** Seconds from mark to mark. */
class Watch {
  private last = performance.now();
  private readonly told: string[] = [];

  mark(what: string): number {
    const seconds = (performance.now() - this.last) / 1000;
    this.told.push(`${what} ${seconds.toFixed(2)} s`);
    this.last = performance.now();
    return seconds;
  }

  tell(of: string): void {
    console.log(`${of}: ${this.told.join(", ")}`);
  }
}

/** In the page: how long it did not answer at the worst, in milliseconds. */
function watchStalls(): void {
  let last = performance.now();
  Object.assign(window, { worst: 0 });
  setInterval(() => {
    const now = performance.now();
    Object.assign(window, { worst: Math.max((window as unknown as { worst: number }).worst, now - last) });
    last = now;
  }, 10);
}

test("from a double click to a printed mating list takes a reader less than five minutes", async () => {
  const watch = new Watch();
  const user = await User.at();
  watch.mark("page");
  await user.give("../examples/hinterwald/hinterwald.csv");
  watch.mark("herd book and check");
  for (const [name, value] of [["Males > Matings each may have", "20"], ["Males > Youngest", "1"], ["Males > Oldest", "6"], ["Females > Matings each may have", "1"], ["Females > Youngest", "2"], ["Females > Oldest", "12"], ["Least completeness", "60"], ["Matings to plan", "64"]] as const)
    await user.fill(name, value);
  watch.mark("eight fields");
  await user.sees("#goal", /Rate of inbreeding/);
  watch.mark("curve and first picture");
  await user.sees("#goal", PLANS);
  watch.mark("all plans");
  await user.choose("What is given", "effective size");
  await user.fill("Its value", "60");
  await user.press("Show this point");
  await user.sees("#goal", /Chosen: ne60|Chosen: .*60/);
  watch.mark("target");
  await user.press("Make the mating plan");
  await user.sees("#plan", /The plan is there/);
  watch.mark("plan and report");
  await user.evaluate(() => Object.assign(window, { print: () => (document.body.dataset["printed"] = document.body.className) }));
  await user.press("Print mating list");
  expect(await user.evaluate(() => document.body.dataset["printed"])).toContain("plan-alone");
  watch.mark("print");
  watch.tell("Hinterwald");
  for (const [at, place] of ["#book", "#faults", "#candidates", "#goal .switch", "#plan"].entries()) await user.picture(`page-${at + 1}`, place);
  await user.leaves();
});

/** A herd of so many animals in forty years, each with parents of the years before. */
function largeHerd(animals: number): string {
  let state = 1;
  const below = (n: number) => ((state = (Math.imul(state, 1664525) + 1013904223) >>> 0), Math.floor((state / 2 ** 32) * n));
  const aYear = animals / 40;
  const rows = Array.from({ length: animals }, (_, i) => {
    const year = Math.floor(i / aYear), before = (year - 1 - below(3)) * aYear;
    const parents = before < 0 ? ["", ""] : [`A${before + 2 * below(25)}`, `A${before + 2 * below(aYear / 2) + 1}`];  // 25 sires a year
    const young = year >= 37 && i % 2 === 0 ? i % 120 === 0 : year >= 37 && i % 8 === 1;
    return [`A${i}`, ...parents, i % 2 ? "F" : "M", 1980 + year, (below(600) - 300) / 100 + year / 10, young ? (i % 2 ? 1 : 20) : 0];
  });
  return csvOf([["identifier", "sire", "dam", "sex", "birth", "ebv", "matings"], ...rows]);
}

test("a herd of 200,000 animals with 2,000 candidates", async () => {
  await withFolder(async (folder) => {
    put(folder, { "large.csv": largeHerd(200_000) });
    const watch = new Watch();
    const user = await User.at();
    await user.evaluate(watchStalls);
    watch.mark("page");
    await user.give(join(folder, "large.csv"));
    watch.mark("herd book and check");
    expect(await user.read("#candidates .facts")).toMatch(/125 .*1,875 /);
    await user.press("All 200,000 animals");
    await user.sees("#candidates", /The first 20,000 of 200,000/);
    await user.fill("Search: All animals", "A199999");
    await user.sees("#candidates details[open] .table tbody", /^A199999 female 2019/);
    watch.mark("an animal found");
    await user.fill("Matings to plan", "200");
    await user.sees("#goal", /Rate of inbreeding/);
    watch.mark("curve");
    await user.sees("#goal", PLANS);
    watch.mark("all plans");
    await user.press("Make the mating plan");
    await user.sees("#plan", /The plan is there/);
    watch.mark("plan and report");
    const worst = await user.evaluate(() => Math.round((window as unknown as { worst: number }).worst));
    watch.tell(`200,000 animals (the page was silent for ${worst} ms at most)`);
    await user.leaves();

    const native = new Watch();
    expect(run(folder, "qob-prepare", "large.csv", "--matings", "200").status).toBe(0);
    native.mark("herd book and check");
    expect(run(join(folder, "large"), "qob-frontier", "large.prm", "--points", "17", "--jobs", "1").status).toBe(0);
    native.mark("curve and all plans");
    native.tell("The programs");
    expect(worst).toBeLessThan(3000);
  });
});
