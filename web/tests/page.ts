// A page opened from disk. Whatever it tells the console, asks of the network or throws fails the test.

import { expect, test as base, type Locator, type Page } from "@playwright/test";
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";
import { file } from "./results.js";

export { expect };

export const test = base.extend({
  page: async ({ page }, use) => {
    const faults: string[] = [];
    const own = (url: string) => url === page.url() || /^(blob|data):/.test(url) || url.startsWith("file:") && page.url() === "about:blank";
    page.on("console", (message) => ["error", "warning"].includes(message.type()) && faults.push(message.text()));
    page.on("pageerror", (error) => faults.push(error.message));
    page.on("dialog", (dialog) => (faults.push(dialog.message()), void dialog.dismiss()));
    page.on("request", (request) => own(request.url()) || faults.push(request.url()));
    await use(page);
    expect(faults).toEqual([]);
  },
});

/** Opens a page that the programs made. */
export const load = (page: Page, herd: string, name = "QOB_report.html") => page.goto(pathToFileURL(file(herd, name)).href);

/** The same, and waits until its pictures are drawn. */
export async function open(page: Page, herd: string, name?: string): Promise<void> {
  await load(page, herd, name);
  await drawn(page);
}

/** Waits until all pictures that are not folded away are drawn. */
export const drawn = (page: Page) => page.waitForFunction(() => [...document.querySelectorAll(".canvas:empty")].every(({ clientWidth }) => clientWidth === 0));

/** The rows in sight of a table: the text of each cell by its heading, with plain spaces. */
export async function rows(table: Locator): Promise<Map<string, string>[]> {
  const cells = await table.evaluate((table) => {
    const text = (node: Node | undefined) => (node?.textContent ?? "").replaceAll("\u00a0", " ");
    const heads = [...table.querySelectorAll("thead tr:not(.paper) th")].map((th) => text((th.querySelector("button") ?? th).childNodes[0]));
    return [...table.querySelectorAll("tbody tr:not(.space)")].map((tr) => [...tr.children].map((cell, i) => [heads[i]!, text(cell)] as const));
  });
  return cells.map((row) => new Map(row));
}

/** What a button saves. */
export async function saved(button: Locator): Promise<{ name: string; text: string }> {
  const [download] = await Promise.all([button.page().waitForEvent("download"), button.click()]);
  return { name: download.suggestedFilename(), text: readFileSync(await download.path(), "utf8") };
}

/** A figure of a part, by its name. */
export const fact = (page: Page, part: string, name: string): Promise<string> =>
  page.locator(`#${part} .fact`).filter({ has: page.locator(`dt:text-is("${name}")`) }).locator("dd").first().innerText();

/** Opens all that is folded in the parts of a page. */
export async function openAll(page: Page): Promise<void> {
  await page.evaluate(() => document.querySelectorAll("details").forEach((details) => (details.open = true)));
  await drawn(page);
}
