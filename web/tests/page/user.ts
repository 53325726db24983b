// Somebody who uses the page in a browser, the same in each: what is pressed and filled is found by what it
// is called, as a reader or a screen reader finds it.

import { chromium, expect, type Browser, type BrowserContextOptions, type Page } from "@playwright/test";
import { readFileSync } from "node:fs";
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import config from "../../playwright.config.js";

export interface File { name: string; bytes: Uint8Array }

/** What both libraries' handles of an element have. */
interface Handle { click(): Promise<void>; focus(): Promise<void> }

/** What both libraries' pages have, behind one form. */
interface Browsing {
  evaluate<T>(work: (argument: never) => T | Promise<T>, argument?: unknown): Promise<T>;
  element(kind: Kind, name: string): Promise<Handle | null>;
  type(text: string): Promise<void>;
  key(name: string): Promise<void>;
  give(input: string, file: string): Promise<void>;
  picture(file: string): Promise<void>;
  close(): Promise<void>;
}

type Kind = "button" | "field";

/** In the page: a button or a field that can be seen, by the beginning of what it is called, behind the
 * name of its group if there are several: "Males > Oldest". */
function find([kind, asked]: [Kind, string]): Element | null {
  const [group, name] = asked.includes(" > ") ? asked.split(" > ") as [string, string] : ["", asked];
  const plain = (text: string | null | undefined) => (text ?? "").replace(/\s+/g, " ").trim();
  const called = (element: Element) => {
    const labels = [...((element as HTMLInputElement).labels ?? [])].map((label) => plain(label.textContent));
    return [...labels, plain(element.getAttribute("aria-label")), ...(kind === "button" ? [plain(element.textContent)] : [])];
  };
  const all = [...document.querySelectorAll(kind === "button" ? "button, summary, [role=button]" : "input, select, textarea")];
  const shown = all.filter((element) => (element as HTMLElement).checkVisibility() || element.getAttribute("type") === "file");
  const inGroup = (element: Element) => plain(element.closest("fieldset")?.querySelector("legend")?.textContent).startsWith(group);
  return shown.find((element) => inGroup(element) && called(element).some((text) => text.startsWith(name))) ?? null;
}

/** In the page, before it is there: what it saves is kept, and what it asks of the network told. */
function keep(): void {
  const kept: { name: string; blob: Blob }[] = [];
  const blobs = new Map<string, Blob>();
  const { createObjectURL } = URL;
  URL.createObjectURL = (blob: Blob) => {
    const address = createObjectURL.call(URL, blob);
    blobs.set(address, blob);
    return address;
  };
  const { click } = HTMLAnchorElement.prototype;
  HTMLAnchorElement.prototype.click = function (this: HTMLAnchorElement) {
    if (this.download) kept.push({ name: this.download, blob: blobs.get(this.href)! });
    else click.call(this);
  };
  Object.assign(window, { kept });
}

/** In the page: takes what was saved last. */
async function taken(): Promise<{ name: string; bytes: number[] } | null> {
  const last = (window as unknown as { kept: { name: string; blob: Blob }[] }).kept.pop();
  return last ? { name: last.name, bytes: [...new Uint8Array(await last.blob.arrayBuffer())] } : null;
}

const address = () => pathToFileURL(process.env["QOB_PAGE"]!).href;

async function playwrightPage(faults: string[], settings: BrowserContextOptions = {}): Promise<{ browser: Browser; page: Page }> {
  const { launchOptions, viewport } = config.use!;
  const browser = await chromium.launch(launchOptions);
  const page = await (await browser.newContext({ offline: true, viewport, ...settings })).newPage();
  page.on("console", (message) => ["error", "warning"].includes(message.type()) && faults.push(message.text()));
  page.on("pageerror", (error) => faults.push(error.message));
  page.on("request", (request) => /^(file|blob|data):/.test(request.url()) || faults.push(request.url()));
  await page.addInitScript(keep);
  await page.goto(address());
  return { browser, page };
}

async function inChromium(faults: string[], settings?: BrowserContextOptions): Promise<Browsing> {
  const { browser, page } = await playwrightPage(faults, settings);
  return {
    evaluate: (work, argument) => page.evaluate(work as never, argument) as never,
    element: async (kind, name) => (await page.evaluateHandle(find, [kind, name] as [Kind, string])).asElement(),
    type: (text) => page.keyboard.type(text),
    key: (name) => page.keyboard.press(name),
    give: (input, file) => page.setInputFiles(input, file),
    picture: async (file) => void (await page.screenshot({ path: file })),
    close: () => browser.close(),
  };
}

async function inFirefox(faults: string[]): Promise<Browsing> {
  const browser = await puppeteer.launch({ browser: "firefox", executablePath: process.env["QOB_FIREFOX"] ?? "/usr/bin/firefox-esr", headless: true, extraPrefsFirefox: { "network.manage-offline-status": false, "network.online": false } });
  const page = await browser.newPage();
  page.on("console", (message) => ["error", "warn"].includes(message.type()) && faults.push(message.text()));
  page.on("pageerror", (error) => faults.push((error as Error).message));
  page.on("request", (request) => /^(file|blob|data):/.test(request.url()) || faults.push(request.url()));
  await page.evaluateOnNewDocument(keep);
  await page.goto(address());
  return {
    evaluate: (work, argument) => page.evaluate(work as never, argument as never) as never,
    element: async (kind, name) => (await page.evaluateHandle(find, [kind, name] as [Kind, string])).asElement() as Handle | null,
    type: (text) => page.keyboard.type(text),
    key: (name) => page.keyboard.press(name as "Tab"),
    give: async (input, file) => (await page.$(input) as unknown as { uploadFile(file: string): Promise<void> }).uploadFile(file),
    picture: async (file) => void (await page.screenshot({ path: file as `${string}.png` })),
    close: () => browser.close(),
  };
}

export const BROWSERS = { chromium: inChromium, firefox: inFirefox };

/** Waits no longer than this for what the program does. */
const PATIENCE = 120_000;

export class User {
  private constructor(private readonly page: Browsing, private readonly faults: string[]) {}

  /** Opens the page from disk; what is set beside it is for Chromium. */
  static async at(browser: keyof typeof BROWSERS = "chromium", settings: BrowserContextOptions = {}): Promise<User> {
    const faults: string[] = [];
    return new User(await BROWSERS[browser](faults, settings), faults);
  }

  evaluate<T>(work: (argument: never) => T | Promise<T>, argument?: unknown): Promise<T> {
    return this.page.evaluate(work, argument);
  }

  /** What can be read of an element, in one line. */
  read(selector: string): Promise<string> {
    return this.page.evaluate((selector: string) => (document.querySelector<HTMLElement>(selector)?.innerText ?? "").replace(/\s+/g, " ").trim(), selector);
  }

  /** Waits until this can be read there. */
  async sees(selector: string, text: RegExp): Promise<void> {
    await expect.poll(() => this.read(selector), { timeout: PATIENCE }).toMatch(text);
  }

  private async found(kind: Kind, name: string): Promise<Handle> {
    let handle: Handle | null = null;
    await expect.poll(async () => (handle = await this.page.element(kind, name)) !== null, { timeout: PATIENCE, message: `${kind} ${name}` }).toBe(true);
    return handle!;
  }

  async press(name: string): Promise<void> {
    await (await this.found("button", name)).click();
  }

  /** Chooses a file as the herd book, or of rules, and waits until the page has made of it what it can. */
  async give(file: string, step: "book" | "goal" = "book"): Promise<void> {
    const times = () => this.page.evaluate(() => Number(document.querySelector("main")!.dataset["done"]));
    const before = await times();
    await this.page.give(`#${step} input[type=file]`, file);
    await expect.poll(times, { timeout: PATIENCE }).toBeGreaterThan(before);
  }

  /** Unfolds all that is folded there. */
  unfolds(selector: string): Promise<void> {
    return this.page.evaluate(async (selector: string) => {
      document.querySelectorAll(`${selector} details`).forEach((folded) => ((folded as HTMLDetailsElement).open = true));
      await new Promise((done) => setTimeout(done));  // what is folded is drawn when it is wanted
    }, selector);
  }

  /** Accepts the faults that can be. */
  async acceptAll(): Promise<void> {
    await this.unfolds("#faults");
    while (await this.page.evaluate(() => {
      const boxes = [...document.querySelectorAll<HTMLInputElement>("#faults input[type=checkbox]")];
      const next = boxes.find((box) => !box.checked && box.checkVisibility());
      next?.click();
      return next !== undefined;
    })) await this.settles();
  }

  /** Waits until nothing is under way in the herd book. */
  async settles(): Promise<void> {
    await expect.poll(() => this.page.evaluate(() => document.querySelector("main")!.getAttribute("aria-busy")), { timeout: PATIENCE }).toBe("false");
  }

  /** What a field holds. */
  async holds(name: string): Promise<string> {
    await (await this.found("field", name)).focus();
    return this.page.evaluate(() => (document.activeElement as HTMLInputElement).value);
  }

  /** Fills a field as a hand would: what stood there goes. */
  async fill(name: string, text: string): Promise<void> {
    await (await this.found("field", name)).focus();
    await this.page.evaluate(() => (document.activeElement as HTMLInputElement).select());
    await (text === "" ? this.page.key("Delete") : this.page.type(text));
    await this.page.evaluate(() => (document.activeElement as HTMLElement).blur());
  }

  /** Chooses of a list, by what the choice is called. */
  async choose(name: string, option: string): Promise<void> {
    await (await this.found("field", name)).focus();
    await this.page.evaluate((option: string) => {
      const list = document.activeElement as HTMLSelectElement;
      list.value = [...list.options].find(({ text }) => text.startsWith(option))!.value;
      list.dispatchEvent(new Event("input", { bubbles: true }));
      list.dispatchEvent(new Event("change", { bubbles: true }));
    }, option);
  }

  /** Presses a button that saves; what it saves. */
  async saves(name: string): Promise<File> {
    await this.press(name);
    return this.taken();
  }

  /** What the page has saved last. */
  async taken(): Promise<File> {
    let file: File | null = null;
    await expect.poll(async () => {
      const got = await this.page.evaluate(taken);
      file = got && { name: got.name, bytes: Uint8Array.from(got.bytes) };
      return file !== null;
    }, { timeout: PATIENCE, message: "a file that is saved" }).toBe(true);
    return file!;
  }

  /** Presses a key. */
  key(name: string): Promise<void> {
    return this.page.key(name);
  }

  /** Presses Tab until this has the focus. */
  async tabsTo(name: string): Promise<void> {
    for (let presses = 0; presses < 500; presses++) {
      await this.page.key("Tab");
      const at = await this.page.evaluate(() => {
        const now = document.activeElement as HTMLInputElement;
        return [...(now.labels ?? [])].map(({ textContent }) => textContent).join(" ") + (now.getAttribute("aria-label") ?? "") + now.textContent;
      });
      if (at.startsWith(name)) return;
    }
    throw new Error(`The keyboard does not reach "${name}".`);
  }

  /** Keeps a picture of what begins there if that was asked for. */
  async picture(name: string, selector: string): Promise<void> {
    const folder = process.env["QOB_PICTURES"];
    if (!folder) return;
    await this.page.evaluate((selector: string) => document.querySelector(selector)!.scrollIntoView(), selector);
    await this.page.picture(`${folder}/${name}.png`);
  }

  /** Ends, and tells whether there was any fault or any request. */
  async leaves(): Promise<void> {
    await this.page.close();
    expect(this.faults).toEqual([]);
  }
}

/** A file of the machine. */
export const onDisk = (file: string): Uint8Array => new Uint8Array(readFileSync(file));

export const PLANS = /\d+ plans are there to choose from/;

/** Somebody who has opened the example, with plans to choose from. */
export async function example(settings: BrowserContextOptions = {}): Promise<User> {
  const user = await User.at("chromium", settings);
  await user.press("Try the example");
  await user.sees("#goal", PLANS);
  return user;
}
