// 20,000 candidates and 500 matings are shown without stutter. Times are the page's own work, so that
// others on the machine do not count.

import type { Page } from "@playwright/test";
import { readFileSync, writeFileSync } from "node:fs";
import { drawn, expect, load, test } from "./page.js";
import { file, withData } from "./results.js";

type Columns = Record<string, unknown[]>;
interface Data { animals: Columns; candidates: Columns; plan: { matings: Columns; alternatives: unknown[]; matrix: { sires: number[]; dams: number[]; f: number[] } } }

/** A result repeated: each copy with animals of its own, and all chosen ones paired in the matrix. */
function repeated(data: Data, times: number): Data {
  const n = data.animals["id"]!.length;
  const moved = (key: string, value: unknown, by: number): unknown =>
    ["sire", "dam", "animal"].includes(key) && typeof value === "number" && value >= 0 ? value + by * n
      : key === "rank" ? (value as number) + by * data.candidates["rank"]!.length
      : key === "common" ? (value as [number, number][]).map(([animal, f]) => [animal + by * n, f])
      : key === "id" && by > 0 ? `${String(value)}-${by}` : value;
  const copies = Array.from({ length: times }, (_, by) => by);
  const columns = (from: Columns): Columns => Object.fromEntries(Object.entries(from).map(([key, values]) => [key, copies.flatMap((by) => values.map((value) => moved(key, value, by)))]));
  const { sires, dams } = data.plan.matrix;
  const all = (places: number[]) => copies.flatMap((by) => places.map((place) => place + by * n));
  const matrix = { sires: all(sires), dams: all(dams), f: all(sires).flatMap((sire) => all(dams).map((dam) => (sire * 31 + dam * 17) % 25000)) };
  return { ...data, animals: columns(data.animals), candidates: columns(data.candidates), plan: { ...data.plan, matings: columns(data.plan.matings), alternatives: [], matrix } };
}

/** What measures the work of the page's main thread in milliseconds. */
async function worker(page: Page): Promise<() => Promise<number>> {
  const session = await page.context().newCDPSession(page);
  await session.send("Performance.enable", { timeDomain: "threadTicks" });
  return async () => 1000 * (await session.send("Performance.getMetrics")).metrics.find(({ name }) => name === "TaskDuration")!.value;
}

test("20,000 candidates and 500 matings load, scroll and sort without stutter", async ({ page }) => {
  const data = repeated(JSON.parse(readFileSync(file("hinterwald", "QOB_result.json"), "utf8")) as Data, 10);
  expect([data.candidates["animal"]!.length > 20_000, data.plan.matings["f"]!.length > 500]).toEqual([true, true]);
  writeFileSync(file("hinterwald", "large.html"), withData(file("hinterwald", "QOB_report.html"), JSON.stringify(data)));
  const work = await worker(page);
  const done = async (act: () => Promise<unknown>) => {
    const before = await work();
    await act();
    await page.evaluate(() => new Promise((next) => requestAnimationFrame(() => requestAnimationFrame(next))));
    return (await work()) - before;
  };
  const loading = await done(() => load(page, "hinterwald", "large.html"));
  const drawing = await done(() => drawn(page));

  const table = page.locator("#candidates .scroll.long");
  await table.scrollIntoViewIfNeeded();
  await expect(table.locator("tbody tr").nth(20)).toBeVisible();
  await table.hover();
  const slowest = async (wheel: number) => {
    const each: number[] = [];
    for (let i = 0; i < 40; i++) each.push(await done(() => page.mouse.wheel(0, wheel)));
    return Math.max(...each);
  };
  const steps = Math.min(await slowest(700), await slowest(-700));  // what slows but one of them is not the page
  const scrolling = Math.max(steps, await done(() => page.mouse.wheel(0, 1_000_000)));
  await expect(table.locator("tbody th").last()).toHaveText("21,330");
  const sorting = await done(() => table.getByRole("button", { name: "Merit" }).click());
  const search = page.locator("#candidates").getByRole("searchbox");
  const searching = await done(async () => (await search.fill("-7 female"), await expect(page.locator("#candidates output.found")).toContainText("of 21,330")));
  await page.evaluate(() => scrollTo(0, 0));
  const reading: number[] = [];
  for (let y = 0; y < (await page.evaluate(() => document.documentElement.scrollHeight)); y += 800) reading.push(await done(() => page.evaluate((y) => scrollTo(0, y), y)));
  const matings = await done(() => page.getByRole("button", { name: "All in one table" }).click());
  const work_ms = { loading, drawing, scrolling, sorting, searching, reading: Math.max(...reading), matings };
  const most: typeof work_ms = { loading: 2000, drawing: 2000, scrolling: 150, sorting: 800, searching: 2000, reading: 800, matings: 500 };
  expect(Object.entries(work_ms).filter(([what, ms]) => ms > most[what as keyof typeof most]), JSON.stringify(work_ms)).toEqual([]);
});
