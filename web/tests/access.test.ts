// For everybody: contrast and names in light and dark, the keyboard, a telephone, paper.

import type { Page } from "@playwright/test";
import axe from "axe-core";
import { execFileSync } from "node:child_process";
import { expect, open, openAll, test } from "./page.js";
import { file, identifiers, table } from "./results.js";

/** In the first rows of each table, as the others look alike; dark differs from light in its colours alone. */
async function violations(page: Page, colorScheme: "light" | "dark", within: "body" | "dialog" = "body"): Promise<string[]> {
  await page.evaluate(axe.source);
  return page.evaluate(async ({ within, runOnly }) => {
    const { axe } = globalThis as unknown as { axe: typeof import("axe-core") };
    const { violations } = await axe.run({ include: [within], exclude: ["tbody tr:nth-child(n + 5)"] }, { runOnly, resultTypes: ["violations"] });
    return violations.flatMap(({ id, nodes }) => nodes.slice(0, 3).map(({ target, failureSummary }) => `${id}: ${target.join(" ")}: ${failureSummary}`));
  }, { within, runOnly: colorScheme === "light" ? ["wcag2a", "wcag2aa", "best-practice"] : ["color-contrast"] });
}

for (const colorScheme of ["light", "dark"] as const)
  for (const [herd, name] of [["cuvier", "QOB_evaluation.html"], ["cuvier", "QOB_comparison.html"], ["cuvier", "ruled_report.html"], ["frontier", "frontier.html"]] as const)  // an evaluation holds all that a report does
    test(`${colorScheme} ${name} is accessible`, async ({ page }) => {
      await page.emulateMedia({ colorScheme });
      await open(page, herd, name);
      await openAll(page);
      expect(await violations(page, colorScheme)).toEqual([]);
      if (name !== "QOB_evaluation.html") return;
      await page.locator("#matings .open").first().click();
      expect(await violations(page, colorScheme, "dialog")).toEqual([]);
    });

test("the keyboard reaches all that a pointer reaches", async ({ page }) => {
  await open(page, "cuvier");
  const wanted = await page.evaluate(() => {
    const pressed = [...document.querySelectorAll<HTMLElement>("a[href], button, summary, input, .scroll, [role=application]")].filter((each) => each.checkVisibility());
    const pointed = [...document.querySelectorAll<HTMLElement>("body *")].filter((each) => getComputedStyle(each).cursor === "pointer" && each.checkVisibility());
    const lost = pointed.filter((each) => !each.closest("a[href], button, summary, input")).map(({ outerHTML }) => outerHTML);
    pressed.forEach((each, i) => each.setAttribute("data-test", String(i)));
    return { count: pressed.length, lost };
  });
  expect(wanted.lost).toEqual([]);
  expect(wanted.count).toBeGreaterThan(100);
  const reached = new Set<string>();
  for (let i = 0; i < wanted.count + 5; i++) {
    await page.keyboard.press("Tab");
    reached.add(await page.evaluate(() => document.activeElement?.getAttribute("data-test") ?? "none"));
  }
  expect(Array.from({ length: wanted.count }, (_, i) => String(i)).filter((i) => !reached.has(i))).toEqual([]);
});

test.describe("on a telephone", () => {
  test.use({ viewport: { width: 390, height: 844 }, hasTouch: true, isMobile: true });
  for (const [herd, name] of [["hinterwald", "QOB_report.html"], ["hostile", "QOB_report.html"], ["cuvier", "QOB_comparison.html"], ["frontier", "frontier.html"]] as const)
    test(`${herd}, ${name}: nothing is moved sideways but tables in their boxes`, async ({ page }) => {
      await open(page, herd, name);
      await openAll(page);
      const wide = await page.evaluate(() => ({
        page: document.documentElement.scrollWidth,
        parts: [...document.querySelectorAll("main *")].filter((each) => !each.parentElement!.closest(".scroll, .canvas, .switch") && each.checkVisibility() && each.getBoundingClientRect().right > 391).map(({ outerHTML }) => outerHTML.slice(0, 120)),
      }));
      expect(wide).toEqual({ page: 390, parts: [] });
    });
});

test("on paper each sire has a sheet of its own with all its females", async ({ page }) => {
  await open(page, "hinterwald");
  await page.getByRole("button", { name: "Close all sheets" }).click();
  const path = file("hinterwald", "printed.pdf");
  await page.pdf({ path, format: "A4" });
  const pages = execFileSync("pdftotext", ["-layout", path, "-"], { encoding: "utf8" }).split("\f");
  const id = identifiers("hinterwald");
  const plan = table("hinterwald", "QOB_qob_MatingList.txt", "Sire");
  for (const male of new Set(plan.map((mating) => mating.get("Sire")!))) {
    const dams = plan.filter((mating) => mating.get("Sire") === male).map((mating) => id(mating.get("Dam")!));
    const others = plan.filter((mating) => mating.get("Sire") !== male).map((mating) => id(mating.get("Dam")!));
    const sheet = pages.find((text) => text.trimStart().startsWith(id(male))) ?? "";
    expect.soft([dams.filter((dam) => !sheet.includes(dam)), others.filter((dam) => sheet.includes(dam))], male).toEqual([[], []]);
  }
});
