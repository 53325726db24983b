// Texts of a herd stay texts, the page asks for nothing, and data that it cannot show are told in words.

import { readFileSync, writeFileSync } from "node:fs";
import { expect, open, openAll, rows, saved, test } from "./page.js";
import { file, fromCsv, withData } from "./results.js";
import { HOSTILE } from "./runs.js";

const PAGES = [["cuvier", "QOB_report.html"], ["cuvier", "none_report.html"], ["cuvier", "QOB_comparison.html"], ["cuvier", "QOB_evaluation.html"], ["hinterwald", "QOB_report.html"]] as const;

for (const [herd, name] of PAGES)
  test(`${herd}, ${name}: complete, without network and without a fault`, async ({ page }) => {
    await open(page, herd, name);
    await openAll(page);
    await expect(page.locator(".canvas:empty")).toHaveCount(0);
    const parts = name === "QOB_comparison.html" ? ["compare"] : name === "none_report.html" ? ["summary", "population", "beware", "made"] : ["summary", "matings", "candidates", "population", "search", "beware", "made"];
    expect(await page.locator("main > section").evaluateAll((all) => all.map(({ id }) => id))).toEqual(parts);
    const text = await page.locator("main").innerText();
    expect(text.match(/\b(NaN|undefined|null|Infinity|\[object)\b/g)).toBeNull();
    expect(await page.evaluate(() => performance.getEntriesByType("resource").map(({ name }) => name))).toEqual([]);
  });

test("a hostile herd becomes text and nothing else", async ({ page }) => {
  await open(page, "hostile");
  await openAll(page);
  await page.getByRole("button", { name: "All in one table" }).click();
  const candidates = fromCsv((await saved(page.locator("#candidates .table").getByRole("button", { name: "Save as CSV" }))).text);
  expect(candidates.map((row) => row.get("animal")).sort()).toEqual(HOSTILE.map((id, i) => `${id} ${HOSTILE[(i + 5) % HOSTILE.length]}`).sort());
  expect((await rows(page.locator("#candidates table"))).map((row) => row.get("Animal"))).toEqual(candidates.map((row) => row.get("animal")));
  const grid = page.locator("#matings .table:visible table").first();
  for (const mating of await grid.locator(".open").all()) {
    await mating.press("Enter");
    await page.getByRole("dialog").getByRole("button", { name: "Close" }).press("Enter");
  }
  await page.locator("#matings .open:visible").first().press("Enter");  // stays open
  const parents = { Sire: "sire", "Its name": "dam_name", Dam: "dam" };  // of two columns with one heading the second
  const planned = fromCsv(readFileSync(file("hostile", "tables/matings.csv"), "utf8"));
  for (const [heading, key] of Object.entries(parents)) expect((await rows(grid)).map((row) => row.get(heading))).toEqual(planned.map((row) => row.get(key)));
  const foreign = await page.evaluate(() => ({
    elements: [...document.querySelectorAll("body img, body iframe, body object, body embed, body base, body form, body meta, body link, body style")].map(({ outerHTML }) => outerHTML),
    scripts: document.scripts.length,
    handlers: [...document.querySelectorAll("*")].flatMap((each) => [...each.attributes]).filter(({ name, value }) => /^on/i.test(name) || /^javascript:/i.test(value)).map(({ name, value }) => `${name}=${value}`),
    links: [...document.links].map(({ href }) => href).filter((href) => !href.startsWith(`${location.href.split("#")[0]}#`)),
  }));
  expect(foreign).toEqual({ elements: [], scripts: 3, handlers: [], links: [] });
});

test("the policy of the page lets nothing else run, style or load", async ({ browser }) => {
  const page = await browser.newPage();
  await open(page, "cuvier");
  const refused = await page.evaluate(async () => {
    const found: string[] = [];
    document.addEventListener("securitypolicyviolation", ({ effectiveDirective }) => found.push(effectiveDirective));
    document.body.insertAdjacentHTML("beforeend", `<img src="https://example.org/a.png"><p onclick="alert(1)" style="color: red">a</p><iframe src="https://example.org"></iframe>`);
    document.body.append(Object.assign(document.createElement("script"), { textContent: "document.title = 'run'" }));
    document.body.append(Object.assign(document.createElement("script"), { src: "https://example.org/a.js" }));
    await fetch("https://example.org").catch(() => {});
    await new Promise((next) => setTimeout(next, 200));
    return { found: [...new Set(found)].sort(), title: document.title };
  });
  expect(refused.found).toEqual(["connect-src", "frame-src", "img-src", "script-src-attr", "script-src-elem", "style-src-attr"]);
  expect(refused.title).toContain("Mating plan");
  await page.close();
});

const result = () => JSON.parse(readFileSync(file("cuvier", "QOB_result.json"), "utf8")) as Record<string, unknown> & { plan: { matings: { f: unknown[] } } };
const BROKEN: readonly [what: string, json: () => string, words: RegExp][] = [
  ["another version", () => JSON.stringify({ ...result(), version: 2 }), /data are of version 2, this page shows version 1/],
  ["no data", () => "", /holds no data/],
  ["cut off", () => JSON.stringify(result()).slice(0, 5000), /not complete or have been changed/],
  ["another format", () => JSON.stringify({ ...result(), format: "other" }), /not complete or have been changed[^]*format/],
  ["a column too short", () => JSON.stringify(result(), (key, value: unknown) => (key === "merit" && Array.isArray(value) ? value.slice(1) : value)), /equal length/],
  ["a text for a number", () => { const data = result(); data.plan.matings.f[3] = "0.1"; return JSON.stringify(data); }, /plan\.matings\.f\[3\]/],
];
for (const [what, json, words] of BROKEN)
  test(`broken data are told in words: ${what}`, async ({ page }) => {
    const name = `broken_${what.replaceAll(" ", "_")}.html`;
    writeFileSync(file("cuvier", name), withData(file("cuvier", "QOB_report.html"), json()));
    await open(page, "cuvier", name);
    await expect(page.getByRole("heading", { level: 1 })).toHaveText("This report cannot be shown");
    await expect(page.locator("main")).toHaveText(words);
  });
