// What a reader does with the page: sort, search, choose, open a mating, walk through the matrix.

import type { Locator, Page } from "@playwright/test";
import { readFileSync } from "node:fs";
import { expect, open, rows, saved, test } from "./page.js";
import { agree, file, fromCsv, identifiers, table } from "./results.js";

const number = (text: string | undefined) => Number(text?.replaceAll(/[,\s%]/g, "").replace("−", "-"));
const animals = (herd: string) => new Map(fromCsv(readFileSync(file(herd, "tables/animals.csv"), "utf8")).map((row) => [row.get("identifier")!, row]));
const columnOf = async (grid: Locator, name: string) => (await rows(grid)).map((row) => number(row.get(name)));
const ascending = (values: readonly number[]) => [...values].sort((a, b) => a - b);

test("tables are sorted by a click and by a key", async ({ page }) => {
  await open(page, "hinterwald");
  await page.locator("#candidates .table").scrollIntoViewIfNeeded();
  const grid = page.locator("#candidates table");
  const merits = ascending(table("hinterwald", "QOB_Candidates.txt", "ID").map((row) => Number(row.get("Merit"))));
  const heading = grid.getByRole("columnheader", { name: "Merit" });
  await heading.getByRole("button").click();
  await expect(heading).toHaveAttribute("aria-sort", "ascending");
  const up = await columnOf(grid, "Merit");
  expect(up).toEqual(ascending(up));
  expect(up[0]).toBeCloseTo(merits[0]!, 2);
  await expect(heading.getByRole("button")).toBeFocused();
  await page.keyboard.press("Enter");
  await expect(heading).toHaveAttribute("aria-sort", "descending");
  const down = await columnOf(grid, "Merit");
  expect(down).toEqual(ascending(down).reverse());
  expect(down[0]).toBeCloseTo(merits[merits.length - 1]!, 2);
  await expect(heading.getByRole("button")).toBeFocused();
});

test("candidates are searched and filtered", async ({ page }) => {
  await open(page, "hinterwald");
  const all = table("hinterwald", "QOB_Candidates.txt", "ID");
  const id = identifiers("hinterwald");
  const box = page.locator("#candidates .table");
  const wanted = id(all[40]!.get("ID")!);
  await box.getByRole("searchbox").fill(wanted);
  await expect(box.locator("output")).toHaveText(`1 of ${all.length.toLocaleString("en")}`);
  expect((await rows(box.locator("table"))).map((row) => row.get("Animal"))).toEqual([wanted]);
  expect(fromCsv((await saved(box.getByRole("button", { name: "Save as CSV" }))).text).length).toBe(1);
  await box.getByRole("searchbox").fill("no such animal");
  await expect(box.locator("output")).toContainText("0 of");
  for (const [filter, kept] of [["Males", all.filter((row) => row.get("Sex") === "1")], ["Chosen", all.filter((row) => row.get("N.matings") !== "0")]] as const) {
    const button = page.locator("#candidates").getByRole("button", { name: filter, exact: true });
    await button.click();
    await expect(button).toHaveAttribute("aria-pressed", "true");
    const shown = fromCsv((await saved(box.getByRole("button", { name: "Save as CSV" }))).text).map((row) => row.get("animal"));
    expect(shown.sort()).toEqual(kept.map((row) => id(row.get("ID")!)).sort());
  }
});

test("matings are shown by sire or in one table, and found", async ({ page }) => {
  await open(page, "hinterwald");
  const id = identifiers("hinterwald");
  const males = table("hinterwald", "QOB_male_list.txt", "Sire");
  const sheets = page.locator("#matings .sheet");
  await expect(sheets).toHaveCount(males.length);
  for (const male of males) {
    const sheet = sheets.filter({ has: page.getByRole("heading", { name: id(male.get("Sire")!) }) });
    await expect(sheet.locator("summary .number")).toHaveText(`${male.get("N.matings")}\u00a0matings`);
    await expect(sheet.locator("tbody tr")).toHaveCount(Number(male.get("N.matings")));
  }
  await page.getByRole("button", { name: "Close all sheets" }).click();
  await expect(sheets.locator("table:visible")).toHaveCount(0);
  const mating = table("hinterwald", "QOB_qob_MatingList.txt", "Sire")[30]!;
  await page.getByRole("searchbox", { name: "By sire" }).fill(id(mating.get("Dam")!));
  await expect(sheets.filter({ visible: true })).toHaveCount(1);
  await expect(sheets.filter({ visible: true })).toContainText(id(mating.get("Sire")!));
  await expect(sheets.locator("table:visible")).toHaveCount(1);
  const [bySire, one] = ["By sire", "All in one table"].map((name) => page.getByRole("button", { name, exact: true }));
  await one!.click();
  await expect(one!).toHaveAttribute("aria-pressed", "true");
  await expect(bySire!).toHaveAttribute("aria-pressed", "false");
  await expect(sheets.filter({ visible: true })).toHaveCount(0);
});

/** Whom a drawn pedigree must show, in its order: five generations, each animal before its sire and dam. */
function ancestors(known: ReturnType<typeof animals>, id: string, generation = 1): string[] {
  if (id === "") return ["unknown"];
  const [sire, dam] = ["sire", "dam"].map((parent) => known.get(id)!.get(parent)!);
  if (generation === 5 || (sire === "" && dam === "")) return [id];
  return [id, ...ancestors(known, sire!, generation + 1), ...ancestors(known, dam!, generation + 1)];
}

const texts = (boxes: Locator) => boxes.evaluateAll((all) => all.map((box) => [box.querySelector(".mark")?.textContent ?? "", (box.querySelector("span:not(.mark)") ?? box).textContent ?? ""] as const));

for (const herd of ["cuvier", "hinterwald"]) {
  test(`${herd}: a mating opens to what makes its F`, async ({ page }) => {
    await open(page, herd);
    const known = animals(herd);
    const [mating] = table(herd, "QOB_qob_MatingList.txt", "Sire").sort((a, b) => Number(b.get("F")) - Number(a.get("F")));
    const [sire, dam] = ["Sire", "Dam"].map((of) => identifiers(herd)(mating!.get(of)!));
    const opener = page.getByRole("button", { name: `for ${sire} × ${dam}`, exact: false }).first();
    await opener.press("Enter");
    const dialog = page.getByRole("dialog", { name: `${sire} × ${dam}` });
    const common = await rows(dialog.locator("table").first());
    const f = common.reduce((sum, row) => sum + number(row.get("Adds to F")) / 100, 0);
    expect(Math.abs(f - Number(mating!.get("F")))).toBeLessThan(0.5e-5 * (common.length + 2));
    expect(common.reduce((sum, row) => sum + number(row.get("Share of F")), 0)).toBeCloseTo(100, -0.3);
    for (const row of common.filter((each) => each.get("Mark") !== "…")) expect.soft(agree(row.get("Its own F"), known.get(row.get("Ancestor")!)!.get("inbreeding"), true)).toBe(true);

    const sides = await Promise.all([0, 1].map((i) => texts(dialog.locator(".side").nth(i).locator(".box"))));
    expect(sides.map((side) => side.map(([, name]) => name))).toEqual([ancestors(known, sire!), ancestors(known, dam!)]);
    const marks = new Map(common.filter((row) => row.get("Mark") !== "…").map((row) => [row.get("Ancestor")!, row.get("Mark")!]));
    const listed = await dialog.locator(".listed li").allInnerTexts();
    expect(marks.size).toBeGreaterThan(2);
    for (const [mark, name] of sides.flat()) expect.soft(mark, name).toBe(marks.get(name) ?? "");
    for (const [name, mark] of marks) {
      const drawn = sides.every((side) => side.some(([, each]) => each === name));
      expect.soft(listed.includes(`${mark} ${name}`), name).toBe(!drawn);
    }
    await page.keyboard.press("Escape");
    await expect(dialog).toHaveCount(0);
    await expect(opener).toBeFocused();
  });
}

async function matrixOf(page: Page): Promise<{ sires: string[]; dams: string[]; f: number[][] }> {
  const csv = fromCsv((await saved(page.getByRole("button", { name: "Save the matrix as CSV" }))).text);
  const dams = [...csv[0]!.keys()].filter((name) => name !== "");
  return { sires: csv.map((row) => row.get("")!), dams, f: csv.map((row) => dams.map((dam) => Number(row.get(dam)))) };
}

test("the matrix holds every pair, and is walked through by keys", async ({ page }) => {
  await open(page, "cuvier");
  const { sires, dams, f } = await matrixOf(page);
  const plan = table("cuvier", "QOB_qob_MatingList.txt", "Sire");
  for (const mating of plan)
    expect.soft(f[sires.indexOf(mating.get("Sire")!)]![dams.indexOf(mating.get("Dam")!)]).toBeCloseTo(Number(mating.get("F")), 5);
  const matrix = page.getByRole("application");
  const told = page.locator("#matings output.told");
  await matrix.focus();
  for (const key of ["ArrowDown", ...Array<string>(dams.length + 2).fill("ArrowRight"), "ArrowDown"]) await page.keyboard.press(key);
  const planned = plan.some((each) => each.get("Sire") === sires[1] && each.get("Dam") === dams[dams.length - 1]);
  await expect(told).toHaveText(new RegExp(`^${sires[1]} × ${dams[dams.length - 1]}: F ${(100 * f[1]![dams.length - 1]!).toFixed(3)}\u00a0%${planned ? ", a mating of the plan" : ""}$`));
  const [sire, dam] = ["Sire", "Dam"].map((of) => plan[0]!.get(of)!);
  for (let i = dams.length - 1; i > dams.indexOf(dam!); i--) await page.keyboard.press("ArrowLeft");
  await page.keyboard.press("ArrowUp");
  for (let i = 0; i < sires.indexOf(sire!); i++) await page.keyboard.press("ArrowDown");
  await page.keyboard.press("Enter");
  await expect(page.getByRole("dialog", { name: `${sire} × ${dam}` })).toBeVisible();
});

test("the other males are those of least F", async ({ page }) => {
  await open(page, "cuvier");
  const { sires, dams, f } = await matrixOf(page);
  await page.getByRole("button", { name: "All in one table" }).click();
  for (const row of await rows(page.locator("#matings .table:visible table").first())) {
    const column = dams.indexOf(row.get("Dam")!);
    const others = sires.map((sire, i) => [sire, f[i]![column]!] as const).filter(([sire]) => sire !== row.get("Sire")).sort((a, b) => a[1] - b[1]);
    const shown = [...row.get("Other chosen males (F %)")!.matchAll(/(\S+) (\d+\.\d+)/g)].map(([, sire, share]) => [sire, Number(share)] as const);
    expect(shown.length).toBeGreaterThan(1);
    shown.forEach(([sire, share], i) => {
      expect.soft(others.find(([each]) => each === sire)?.[1]).toBeCloseTo(share / 100, 3.9);
      expect.soft(share / 100).toBeCloseTo(others[i]![1], 3.9);
    });
  }
});
