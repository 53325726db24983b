// Each part of the page holds the numbers of the result files, and saves them.

import type { Locator } from "@playwright/test";
import { readFileSync } from "node:fs";
import { isDeepStrictEqual } from "node:util";
import { expect, fact, open, rows, saved, test } from "./page.js";
import { agree, file, fromCsv, identifiers, table, told } from "./results.js";

type Rows = Map<string, string>[];

/** The rows of the first table that stands behind a picture. */
async function behind(figures: Locator): Promise<Rows> {
  const figure = figures.filter({ hasText: "Show as table" }).first();
  await figure.getByText("Show as table").click();
  return rows(figure.locator("table"));
}

/** Each row shown must be that of the file, in columns named here; "%" in a heading is percent. */
function same(shown: Rows, told: Rows, columns: Record<string, string>): void {
  expect(shown.length).toBe(told.length);
  for (const [heading, column] of Object.entries(columns))
    expect.soft(told.filter((row, i) => !agree(shown[i]!.get(heading), row.get(column), heading.endsWith("%"))), heading).toEqual([]);
}

for (const herd of ["cuvier", "hinterwald"]) {
  const id = identifiers(herd);

  test(`${herd}: the summary is that of the run`, async ({ page }) => {
    await open(page, herd);
    const lines: [string, string, boolean][] = [
      ["Males", "Males used", false], ["Females", "Females used", false], ["Merit of the offspring", "Average breeding value", false],
      ["Inbreeding of the offspring", "Average inbreeding", true], ["Relationship", "Average relationship", true],
      ["Rate of inbreeding", "Rate of  inbreeding", true],
    ];
    for (const [name, line, percent] of lines) expect.soft(agree(await fact(page, "summary", name), told(herd, line), percent), name).toBe(true);
    const ne = Number(await fact(page, "summary", "Effective size"));
    expect(Math.abs(ne - 1 / (2 * Number(told(herd, "Rate of  inbreeding"))))).toBeLessThan(1);
    await expect(page.locator("#summary .lead").first()).toContainText(`The plan makes ${table(herd, "QOB_qob_MatingList.txt", "Sire").length}\u00a0matings`);
  });

  test(`${herd}: every mating of the list is shown and saved`, async ({ page }) => {
    await open(page, herd);
    await page.getByRole("button", { name: "All in one table" }).click();
    const made = fromCsv(readFileSync(file(herd, "tables/matings.csv"), "utf8"));
    const listed = table(herd, "QOB_qob_MatingList.txt", "Sire");
    const grid = page.locator("#matings .table:visible").filter({ has: page.getByRole("columnheader", { name: /^Sire$/ }) });
    const shown = await rows(grid.locator("table"));
    const file_ = await saved(grid.getByRole("button", { name: "Save as CSV" }));
    const kept = fromCsv(file_.text);
    expect([file_.name, shown.length, kept.length]).toEqual(["matings.csv", listed.length, listed.length]);
    for (const mating of listed) {
      const [sire, dam] = [id(mating.get("Sire")!), id(mating.get("Dam")!)];
      const row = shown.find((each) => each.get("Sire") === sire && each.get("Dam") === dam);
      const mean = made.find((each) => each.get("sire") === sire && each.get("dam") === dam)!;
      const own = kept.find((each) => each.get("sire") === sire && each.get("dam") === dam)!;
      expect.soft(agree(row?.get("Offspring merit"), mating.get("EBV")), `${sire} × ${dam}: ${row?.get("Offspring merit")}`).toBe(true);
      expect.soft(agree(row?.get("Offspring F %"), mating.get("F"), true), `${sire} × ${dam}: ${row?.get("Offspring F %")}`).toBe(true);
      expect.soft(agree(row?.get("Mendelian var."), mating.get("vF")), `${sire} × ${dam}: ${row?.get("Mendelian var.")}`).toBe(true);
      for (const [key, column] of [["f", "expected_inbreeding"], ["merit", "expected_merit"], ["sire_f", "sire_inbreeding"], ["dam_completeness", "dam_completeness"]] as const)
        expect.soft(Number(own.get(key)), `${sire} × ${dam}: ${key}`).toBeCloseTo(Number(mean.get(column)), 7);
    }
  });

  test(`${herd}: the candidates are those of the run`, async ({ page }) => {
    await open(page, herd);
    const grid = page.locator("#candidates .table");
    const kept = fromCsv((await saved(grid.getByRole("button", { name: "Save as CSV" }))).text);
    const listed = table(herd, "QOB_Candidates.txt", "ID");
    const males = listed.filter((each) => each.get("Sex") === "1").length;
    const own = new Map(kept.map((row) => [row.get("animal")!, row]));
    expect(own.size).toBe(listed.length);
    const faults = listed.filter((each) => {
      const row = own.get(id(each.get("ID")!));
      const mean = (males * Number(each.get("Rel.males")) + (listed.length - males) * Number(each.get("Rel.females"))) / listed.length;
      const chosen = (Number(each.get("Rel.males.sel")) + Number(each.get("Rel.females.sel"))) / 2;
      return !row || !agree(row.get("merit"), each.get("Merit")) || row.get("matings") !== each.get("N.matings") || row.get("offspring") !== each.get("Prev.offspr") ||
        row.get("sex") !== (each.get("Sex") === "1" ? "male" : "female") || Math.abs(Number(row.get("relationship")) - mean) > 1e-4 || Math.abs(Number(row.get("to_others")) - chosen) > 1e-4 && row.get("matings") === "0";
    });
    expect(faults.map((each) => each.get("ID"))).toEqual([]);
    const shown = await rows(grid.locator("table"));
    expect(shown.length).toBeGreaterThan(10);
    shown.forEach((row, i) => expect.soft([row.get("Animal"), agree(row.get("Merit"), kept[i]!.get("merit")), agree(row.get("F, %"), kept[i]!.get("f"), true)]).toEqual([kept[i]!.get("animal"), true, true]));
  });

  test(`${herd}: trend and search are those of the run`, async ({ page }) => {
    await open(page, herd);
    const trend = await behind(page.locator("#population figure"));
    const search = await behind(page.locator("#search figure"));
    same(trend, table(herd, "QOB_F_summary.txt", "Group"), {
      Born: "Group", Animals: "N", Inbred: "N.inbred", "Mean F, %": "avg.F", "Largest F, %": "max.F", "PCI, %": "PCI5",
    });
    const otherwise = table(herd, "QOB_F_summary.txt", "Group").filter((row, i) => {  // there a founder is of generation 1, coancestry is with itself
      const [n, f] = [Number(row.get("N")), Number(row.get("avg.F"))];
      const [coancestry, generations, interval] = ["Coancestry, %", "Generations", "Age of parents"].map((name) => Number(trend[i]!.get(name)!.replace("–", "0")));
      const ages = herd !== "cuvier" || Math.abs(interval! - Number(row.get("GenInt"))) < 0.0101;  // elsewhere unknown parents count as of no age
      return !ages || Math.abs(((n - 1) * coancestry! / 100 + (1 + f) / 2) / n - Number(row.get("avg.coa"))) > 0.0002 || Math.abs(generations! + 1 - Number(row.get("Gencoef"))) > 0.0101;
    });
    expect.soft(otherwise).toEqual([]);
    const steps = table(herd, "QOB_qob_conv.txt", "Generation");
    same(search, steps, { Generation: "Generation", Best: "Best", Median: "Median", Worst: "Worst", Mean: "Mean", "Standard deviation": "Std" });
    same(search, table(herd, "QOB_qob_best.txt", "Generation"), { "Merit of the best": "Merit", "Relationship of the best": "Avg.rel", "Rate of inbreeding of the best, %": "dF" });
    expect(agree(await fact(page, "search", "Value of the best plan"), told(herd, "Evaluation value"))).toBe(true);
    expect(await fact(page, "search", "Best plan found in generation")).toBe(told(herd, "Found in QOB generation"));
  });
}

for (const [herd, name] of [["hostile", "QOB_report"], ["cuvier", "QOB_comparison"]] as const)
  test(`${herd}, ${name}: all data are saved as the program writes them`, async ({ page }) => {
    await open(page, herd, `${name}.html`);
    const { name: as, text } = await saved(page.getByRole("button", { name: "Save all data as JSON" }));
    const data = (json: string) => JSON.parse(json, (key, value: unknown) => (key === "time" ? "" : value)) as unknown;
    const written = readFileSync(file(herd, `${name.replace("report", "result")}.json`), "utf8");
    expect(as).toBe("result.json");
    expect(isDeepStrictEqual(data(text), data(written))).toBe(true);
  });

test("plans side by side are those of their runs", async ({ page }) => {
  await open(page, "cuvier", "QOB_comparison.html");
  const figures = await rows(page.locator("#compare table").first());
  const lines: [string, string][] = [
    ["Males", "Males used"], ["Females", "Females used"], ["Merit", "Average breeding value"], ["Mean inbreeding", "Average inbreeding"],
    ["Mean relationship", "Average relationship"], ["Rate of inbreeding", "Rate of  inbreeding"],
  ];
  for (const [name, line] of lines)
    for (const [letter, prefix] of [["A", "QOB_"], ["B", "loose_"], ["C", "strict_"]] as const) {
      const shown = figures.find((row) => row.get("Figure")!.startsWith(name))?.get(letter)?.split(" of ")[0];
      expect.soft(agree(shown, told("cuvier", line, prefix), shown?.includes("%")), `${name} of ${letter}`).toBe(true);
    }
  const who = await rows(page.locator("#compare table").last());
  for (const [letter, prefix] of [["A", "QOB_"], ["B", "loose_"], ["C", "strict_"]] as const) {
    const chosen = table("cuvier", `${prefix}Candidates.txt`, "ID").filter((row) => row.get("N.matings") !== "0");
    const shown = who.filter((row) => row.get(`Matings in ${letter}`) !== "0");
    expect.soft(shown.map((row) => `${row.get("Animal")} ${row.get(`Matings in ${letter}`)}`).sort(), letter).toEqual(chosen.map((row) => `${row.get("ID")} ${row.get("N.matings")}`).sort());
  }
});

test("rules, what they cost and decided matings are those of the run", async ({ page }) => {
  await open(page, "cuvier", "ruled_report.html");
  const made = fromCsv(readFileSync(file("cuvier", "ruled_tables/rules.csv"), "utf8"));
  const shown = await rows(page.locator("#rules table"));
  expect(shown.map((row) => row.get("Rule"))).toEqual(
    ["931 × 916: 1 mating decided", "932: at most 2 matings", "never 940 × 946", "each sire: at most 1 mating with group H1", "930: at least 4 matings", "940: at least 5 matings"]);
  expect(made.some((rule) => Number(rule.get("value_gained")) > 0.01)).toBe(true);
  shown.forEach((row, i) => {
    const rule = made[i]!;
    expect.soft(row.get("Line")).toBe(rule.get("line"));
    const broken = Number(rule.get("broken_by"));
    expect.soft(row.get("Kept")).toBe(broken === 0 ? "kept" : `broken by ${broken} mating${broken === 1 ? "" : "s"}`);
    if (rule.get("value_gained") === "") return expect.soft(row.get("Cost in value")).toBe("–");
    expect.soft(agree(row.get("Cost in value"), rule.get("value_gained"))).toBe(true);
    for (const [heading, key, unit] of [["Merit without it", "merit", 1], ["Rate without it, %", "rate", 0.01], ["F without it, %", "inbreeding", 0.01]] as const) {
      const [figure, change = "0"] = row.get(heading)!.split(/ ?[()]/);
      expect.soft(agree(figure, rule.get(`${key}_without`), key !== "merit"), heading).toBe(true);
      expect.soft(Math.abs(Number(change.replace("−", "-")) * unit - Number(rule.get(`${key}_gained`))), heading).toBeLessThan(key === "merit" ? 0.00051 : 0.000051);
    }
    return undefined;
  });
  await page.getByRole("button", { name: "All in one table" }).click();
  const matings = await rows(page.locator("#matings .table:visible table").filter({ has: page.getByRole("columnheader", { name: /^Sire$/ }) }));
  expect(matings.filter((row) => row.get("Decided") === "yes").map((row) => [row.get("Sire"), row.get("Dam")])).toEqual([["931", "916"]]);
});

test("without rules there is no word of them", async ({ page }) => {
  await open(page, "cuvier");
  await expect(page.locator("#rules, th:has-text('Decided')")).toHaveCount(0);
});

test("a given plan is valued and stands beside the best one", async ({ page }) => {
  await open(page, "cuvier", "QOB_evaluation.html");
  const given = fromCsv(readFileSync(file("cuvier", "given.csv"), "utf8"));
  const f = fromCsv((await saved(page.getByRole("button", { name: "Save the matrix as CSV" }))).text);
  const merit = new Map(table("cuvier", "QOB_Candidates.txt", "ID").map((row) => [row.get("ID")!, Number(row.get("Merit"))]));
  const expected = given.map((row) => ({
    f: Number(f.find((each) => each.get("") === row.get("sire"))!.get(row.get("dam")!)), merit: (merit.get(row.get("sire")!)! + merit.get(row.get("dam")!)!) / 2,
  }));
  await page.getByText("The matings of the given plan").click();
  const shown = await rows(page.locator("#summary details[open] table"));
  expect(shown.map((row) => [row.get("Sire"), row.get("Dam")])).toEqual(given.map((row) => [row.get("sire"), row.get("dam")]));
  shown.forEach((row, i) => {
    expect.soft(Number(row.get("Offspring F %"))).toBeCloseTo(expected[i]!.f * 100, 1.9);
    expect.soft(Number(row.get("Offspring merit"))).toBeCloseTo(expected[i]!.merit, 1.9);
  });
  const beside = await rows(page.locator("#summary table").first());
  const mean = (key: "f" | "merit") => expected.reduce((sum, each) => sum + each[key], 0) / expected.length;
  const figure = (name: string) => beside.find((row) => row.get("Figure") === name)!;
  expect(agree(figure("Inbreeding of the offspring").get("Given plan"), mean("f").toFixed(4), true)).toBe(true);
  expect(agree(figure("Merit of the offspring").get("Given plan"), mean("merit").toFixed(2))).toBe(true);
  expect(agree(figure("Value of the plan (fitness)").get("Best plan"), told("cuvier", "Evaluation value"))).toBe(true);
});
