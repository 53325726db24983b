// The page of the best possible and its plans: places and figures are those of the data, plans are chosen
// by pointer, key and row, and texts stay texts.

import type { Locator, Page } from "@playwright/test";
import { readFileSync } from "node:fs";
import { expect, fact, open, rows, saved, test } from "./page.js";
import { file, fromCsv, table } from "./results.js";

type Mating = [sire: string | number, dam: string | number, f: number];
interface Plan { folder: string; seed: number | null; scaled_merit: number; rate: number; relationship: number; share: number; matings: Mating[] }
const { plans } = JSON.parse(readFileSync(file("frontier", "frontier.json"), "utf8")) as { plans: [Plan, Plan, Plan, Plan] };
const [strong, own, searched] = plans;

const show = (page: Page) => open(page, "frontier", "frontier.html");
const sign = (page: Page, words: string) => page.getByRole("option", { name: words });
const centre = async (of: Locator) => {
  await of.scrollIntoViewIfNeeded();
  const { x, y, width, height } = (await of.boundingBox())!;
  return [x + width / 2, y + height / 2] as const;
};
const press = async (page: Page, words: string) => page.mouse.click(...(await centre(sign(page, words))));

/** What the page shows of the plan that is chosen. */
async function chosen(page: Page): Promise<{ name: string; command: string; selected: string[]; row: string[]; matings: Map<string, string>[] }> {
  const [row, selected] = await Promise.all([page.locator('#plans [aria-pressed="true"]').allInnerTexts(), page.locator('[role="option"][aria-selected="true"]').evaluateAll((all) => all.map((each) => each.ariaLabel!.split(":")[0]!))]);
  return {
    name: await page.locator("#curve output").innerText(), command: await page.locator("#matings pre").innerText(), selected, row,
    matings: fromCsv((await saved(page.locator("#matings").getByRole("button", { name: "Save as CSV" }))).text),
  };
}

const plain = (cell: string | undefined) => (cell && Number.isFinite(Number(cell)) ? Number(cell) : cell);

/** A mating list by pairs. */
const pairs = ({ matings }: Plan) => [...new Set(matings.map((mating) => JSON.stringify(mating.map(String))))].map((pair) => {
  const [sire, dam, f] = JSON.parse(pair) as [string, string, string];
  return [sire, dam, String(matings.filter(([s, d]) => String(s) === sire && String(d) === dam).length), f];
});
const listed = (matings: readonly Map<string, string>[]) => matings.map((row) => ["sire", "dam", "matings", "f"].map((key) => row.get(key)));

test("figures are those of the data, and shares are rounded down", async ({ page }) => {
  await show(page);
  expect(await fact(page, "curve", "Share of the possible")).toBe("95.30\u00a0%");
  expect(await fact(page, "curve", "Effective size")).toBe("41.7");
  await expect(page.locator("#curve")).toContainText("This plan does not keep the limit that it was made for: 1.20 % inbreeding a generation.");
  const shown = await rows(page.locator("#plans table"));
  const told = (key: string) => shown.map((row) => row.get(key));
  expect(told("Plan")).toEqual(["weight 0.5", "own goal", "own goal, seed 1", "target 1 % a generation"]);
  expect(told("Share, %")).toEqual(["99.99", "98.75", "98.75", "95.30"]);
  expect(told("Rate, %")).toEqual(["4.00", "−1.00", "−1.00", "1.20"]);
  expect(told("Eff. size")).toEqual(["12.5", "–", "–", "41.7"]);
  const saves = fromCsv((await saved(page.locator("#plans").getByRole("button", { name: "Save as CSV" }))).text);
  for (const key of ["folder", "scaled_merit", "rate", "relationship", "share"] as const) expect(saves.map((row) => row.get(key))).toEqual(plans.map((plan) => String(plan[key])));
});

test("a real herd: the plans of the table and their mating lists are those of the folders", async ({ page }) => {
  await open(page, "cuvier", "qob_frontier/frontier.html");
  const csv = async (part: string) => fromCsv((await saved(page.locator(part).getByRole("button", { name: "Save as CSV" }))).text);
  const [shown, written] = [await csv("#plans"), fromCsv(readFileSync(file("cuvier", "qob_frontier/frontier.csv"), "utf8"))];
  for (const key of ["folder", "merit", "rate", "share", "males", "how"]) expect(shown.map((row) => row.get(key)).map(plain)).toEqual(written.map((row) => row.get(key)).map(plain));
  expect(await page.locator("#curve output").innerText()).toContain("target effective size 50 (marked)");
  const planned = table("cuvier", "qob_frontier/ne50/QOB_qob_MatingList.txt", "Sire").map((row) => `${row.get("Sire")} ${row.get("Dam")}`);
  expect((await csv("#matings")).flatMap((row) => Array.from({ length: Number(row.get("matings")) }, () => `${row.get("sire")} ${row.get("dam")}`)).sort()).toEqual(planned.sort());
});

test("each sign stands where its figures say, on both scales", async ({ page }) => {
  await show(page);
  for (const [axis, name] of [["rate", "Rate of inbreeding"], ["relationship", "Mean relationship"]] as const) {
    await page.getByRole("button", { name, exact: true }).click();
    await expect(page.locator(".over svg")).toBeVisible();
    const [a, b, c] = await Promise.all(["weight 0.5", "own goal:", "target"].map((words) => centre(sign(page, words))));
    const share = (of: (plan: Plan) => number) => (of(plans[3]) - of(own)) / (of(strong) - of(own));
    expect((c![0] - b![0]) / (a![0] - b![0])).toBeCloseTo(share((plan) => plan[axis]), 2);
    expect((c![1] - b![1]) / (a![1] - b![1])).toBeCloseTo(share((plan) => plan.scaled_merit), 2);
    const tick = page.locator(".over svg text").filter({ hasText: /^50$/ });  // the effective size above a rate of 1 %
    const one = b![0] + ((a![0] - b![0]) * (0.01 - own.rate)) / (strong.rate - own.rate);
    expect(Math.abs((await centre(tick))[0] - one)).toBeLessThan(2);
  }
});

test("a plan is chosen by pointer, by key and by row", async ({ page }) => {
  await show(page);
  await page.mouse.move(...(await centre(sign(page, "own goal:"))));
  await expect(page.locator(".tip")).toContainText("inbreeding −1.00 % a generation, relationship falls");
  await expect(page.locator(".tip")).toContainText("1 plan more at this place");
  const seen = [];
  for (let i = 0; i < 2; i++) {
    await press(page, "own goal:");
    const { name, selected, row, matings } = await chosen(page);
    expect([selected, row]).toEqual([[name], [name]]);
    expect(listed(matings)).toEqual(pairs(name.includes("seed") ? searched : own));
    seen.push(name);
  }
  expect(seen.sort()).toEqual(["own goal", "own goal, seed 1"]);

  await page.getByRole("listbox").focus();
  await page.keyboard.press("End");
  await page.keyboard.press("ArrowLeft");
  await expect(page.locator(".tip")).toContainText("target 1 % a generation");
  await page.keyboard.press("ArrowRight");
  await page.keyboard.press("Enter");
  expect(await chosen(page)).toMatchObject({ name: "weight 0.5", selected: ["weight 0.5"], command: "cd w0.5 && qob qob.prm" });
  expect(listed((await chosen(page)).matings)).toEqual(pairs(strong));

  await page.locator("#plans tbody tr").nth(3).locator("td").last().click();
  expect((await chosen(page)).name).toBe("target 1\u00a0% a generation (marked)");
});

test("hostile names stay texts, and the page asks for nothing", async ({ page }) => {
  await show(page);
  await page.getByRole("button", { name: "own goal, seed 1" }).click();
  const { matings, command } = await chosen(page);
  expect(command).toBe(`cd 'it'\\''s <s1>' && qob qob.prm`);
  expect(matings.map((row) => row.get("dam"))).toEqual([...new Set(searched.matings.map(([, dam]) => dam))]);
  expect((await rows(page.locator("#matings table"))).map((row) => [row.get("Sire"), row.get("Dam")])).toEqual(matings.map((row) => [row.get("sire"), row.get("dam")]));
  expect(matings.map((row) => row.get("sire_name"))).toEqual(Array.from(matings, () => "<svg onload=alert(1)>"));
  expect(await page.locator("h1").innerText()).toBe("Merit and relationship: Herd <b>");
  expect(await page.evaluate(() => [document.scripts.length, document.querySelectorAll("body img, body iframe, body style").length, performance.getEntriesByType("resource").length])).toEqual([3, 0, 0]);
});
