// What a user does beside going straight ahead, and what files may hold.

import { expect, test } from "@playwright/test";
import { strFromU8, strToU8, unzipSync, zipSync } from "fflate";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import { workbook } from "../../page/spreadsheet/write.js";
import { openAll, saved } from "../page.js";
import { csvOf, fromCsv } from "../results.js";
import { HOSTILE, hostileHerdBook } from "../runs.js";
import { put, withFolder } from "./programs.js";
import { example, PLANS, User } from "./user.js";

test("what was chosen is undone, done again, saved and opened", async () => {
  const user = await example();
  const planned = () => user.read("#candidates .facts");
  const before = await planned();
  await user.fill("Males > Matings each may have", "7");
  await user.sees("#candidates .facts", /1,743 matings/);  // 249 candidates
  await user.fill("Matings to plan", "30");
  await user.press("Undo");
  await user.press("Undo");
  expect(await user.holds("Males > Matings each may have")).toBe("20");
  await user.sees("#candidates .facts", new RegExp(before.slice(0, 40)));
  await user.press("Redo");
  await user.sees("#candidates .facts", /1,743 matings/);
  await user.choose("Language", "Deutsch");
  expect(await user.holds("Männlich > Paarungen je Tier")).toBe("7");
  await user.press("Arbeit speichern");
  await user.sees(".toolbar", /Gespeichert als hinterwald.qob.json/);  // for some seconds
  const saved = await user.taken();
  expect(saved.name).toBe("hinterwald.qob.json");
  await user.leaves();

  await withFolder(async (folder) => {
    put(folder, { [saved.name]: saved.bytes, "broken.qob.json": saved.bytes.slice(0, -20), "other.qob.json": `{"format": "qob-work", "version": 99}` });
    const next = await User.at();
    await next.give(join(folder, "broken.qob.json"));
    expect(await next.read("[role=alert]")).toContain("no saved work");
    await next.give(join(folder, "other.qob.json"));
    expect(await next.read("[role=alert]")).toContain("another version");
    await next.give(join(folder, saved.name));
    expect(await next.holds("Males > Matings each may have")).toBe("7");
    await next.sees("#candidates .facts", /1,743 matings/);
    await next.leaves();
  });
});

/** In the page: what is read or heard there in English words or with a decimal point, and is not said to be English. */
function english(within: string): string[] {
  const words = /\b(the|of|and|is|are|with|born|search|save|show|merit|matings?|males?|females?|sires?|dams?)\b|^\d+\.\d\d?( %)?$/i;
  const all = [...document.querySelectorAll(`${within} *`)].filter((each) => !each.closest("[lang=en], code, pre, script, noscript"));
  const attributes = all.flatMap((each) => ["aria-label", "title", "placeholder"].map((name) => each.getAttribute(name) ?? ""));
  const texts = all.flatMap(({ childNodes }) => [...childNodes].filter((node) => node instanceof Text).map(({ data }) => data));
  return [...attributes, ...texts].filter((text) => words.test(text.trim()));
}

test("a page in German shows and saves a German report, whose tables are saved as programs read them", async ({ page }) => {
  const user = await example({ viewport: { width: 390, height: 844 } });
  await user.choose("Language", "Deutsch");
  await user.press("Paarungsplan machen");
  await user.sees("#plan", /Der Plan ist da/);
  await user.unfolds("#plan");
  expect(await user.read("#plan .report")).toMatch(/Inzuchtrate \d,\d\d %.*Als Tabelle zeigen.*Als CSV speichern/);
  expect(await user.evaluate(english, "#plan")).toEqual([]);
  expect(await user.evaluate(() => document.documentElement.scrollWidth)).toBe(390);  // its words are longer
  const report = await user.saves("Bericht (HTML)");
  await user.leaves();
  await withFolder(async (folder) => {
    put(folder, { [report.name]: report.bytes });
    await page.goto(pathToFileURL(join(folder, report.name)).href);
    await expect(page).toHaveTitle(/^Paarungsplan: /);
    await openAll(page);
    expect(await page.evaluate(english, "body")).toEqual([]);
    await page.getByRole("button", { name: "Alle in einer Tabelle" }).click();
    await expect(page.getByLabel("Suchen: Alle Paarungen des Plans")).toBeVisible();
    const [mating] = fromCsv((await saved(page.getByRole("button", { name: "Als CSV speichern" }).first())).text);
    expect([mating!.get("f"), mating!.get("other_males")]).toEqual([expect.stringMatching(/^0(\.\d+)?$/), expect.stringMatching(/\(\d+\.\d\d\)/)]);
  });
});

test("the page suggests matings and ages where the herd book has none, and tells there what that brings about", async () => {
  const user = await User.at();
  await user.give("../examples/hinterwald/hinterwald.csv");
  expect(await user.holds("Males > Matings each may have")).toBe("20");
  expect(await user.holds("Females > Matings each may have")).toBe("1");
  for (const [sex, youngest, oldest] of [["Males", "2", "10"], ["Females", "2", "13"]] as const) {
    expect(await user.holds(`${sex} > Youngest`)).toBe(youngest);
    expect(await user.holds(`${sex} > Oldest`)).toBe(oldest);
  }
  expect(await user.read("#faults")).toContain("All good");
  expect(await user.evaluate(() => document.querySelector("[aria-keyshortcuts='Control+Z']")!.getAttribute("aria-disabled"))).toBe("true");
  for (const sex of ["Males", "Females"]) for (const end of ["Youngest", "Oldest"]) await user.fill(`${sex} > ${end}`, "");
  for (const place of ["#faults", "#candidates"]) await user.sees(place, /584 candidates have no breeding value/);
  await user.choose("Where one is missing", "missing ones get the mean");
  await user.sees("#faults", /All good/);
  expect(await user.read("#candidates")).not.toContain("no breeding value.");
  await user.press("Undo");
  await user.sees(".toolbar", /Undone/);
  await user.sees("#candidates", /584 candidates have no breeding value/);
  await user.fill("Females > Matings each may have", "2");
  expect(await user.read("#candidates")).not.toContain("suggestion");
  await user.leaves();
});

test("a search ends at once when it is cancelled, and what was there stays", async () => {
  const user = await example();
  await user.unfolds("#goal");
  await user.fill("Searches with different random numbers", "60");  // each takes half a second
  await user.press("Search thoroughly");
  await user.sees("#goal .searches", /\d %|begins/);
  await user.press("Cancel");
  await user.sees("#goal", /The searches have ended/);
  expect(await user.read("#goal .searches")).not.toMatch(/done/);
  await user.press("Make the mating plan");
  await user.sees("#plan", /The plan is there/);
  await user.leaves();
});

/** The same after so many searches. */
async function searched(seeds: number): Promise<User> {
  const user = await example();
  await user.unfolds("#goal");
  await user.fill("Searches with different random numbers", String(seeds));
  await user.press("Search thoroughly");
  await user.sees("#goal", /The searches have ended/);
  return user;
}

/** The mating list of the chosen plan. */
async function listMade(user: User): Promise<string> {
  await user.press("Make the mating plan");
  await user.sees("#plan", /The plan is there/);
  return Buffer.from((await user.saves("Mating list (CSV)")).bytes).toString();
}

test("searches compete with the plans that are there", async () => {
  const user = await searched(2);
  for (const name of ["search 1", "search 2", "made at once"]) expect(await user.read("#goal table")).toContain(name);
  await user.press("search 2");
  expect((await listMade(user)).trim().split("\n").length).toBe(1 + 64);
  await user.leaves();
});

/** From here on the worker that carries out a command is told of it so much later. */
const delays = (user: User, command: string, milliseconds: number) => user.evaluate(([command, milliseconds]: [string, number]) => {
  const post = Worker.prototype.postMessage;
  Worker.prototype.postMessage = function (this: Worker, message: { job?: { command?: string[] } }) {
    if (message.job?.command?.[0] === command) setTimeout(() => post.call(this, message), milliseconds);
    else post.call(this, message);
  };
}, [command, milliseconds]);

test("a plan that was cancelled while it waited has no part in the next one", async () => {
  const user = await searched(1);
  await user.press("search 1");
  const expected = await listMade(user);
  await user.choose("What is given", "effective size");
  await user.fill("Its value", "150");
  await user.press("Show this point");
  await user.sees("#goal", /Chosen: .*150/);
  await delays(user, "frontier-search", 4000);  // it comes back between the run of the next one and its report
  await delays(user, "qob-report", 6000);
  await user.press("Make the mating plan");
  await user.press("Cancel");
  await user.press("Undo");
  expect(await listMade(user)).toBe(expected);
  await user.leaves();
});

test("what repeats a plan is of the plan, also while the herd book is worked on again", async () => {
  const user = await example();
  await user.press("Make the mating plan");
  await user.sees("#plan", /The plan is there/);
  await delays(user, "qob-prepare", 5000);
  await user.fill("Males > Matings each may have", "3");
  const repeat = unzipSync((await user.saves("Repeat it on a computer")).bytes);
  expect(strFromU8(repeat["README.txt"]!)).toMatch(/qob-prepare .*--males.?=.?matings=20/);
  await user.settles();
  await user.sees("#goal", PLANS);
  await user.leaves();
});

test("rules are kept, and faults of rules told", async () => {
  await withFolder(async (folder) => {
    const user = await example();
    const list = async () => (await listMade(user)).trim().split("\n").slice(1).map((line) => line.split(",").slice(0, 2));
    const [[sire], [, dam]] = (await list()) as [[string, string], [string, string]];
    put(folder, { "rules.csv": `kind,a,b,value\nforbid,${sire},${dam},\nmax,${sire},,3\n`, "faulty.csv": `kind,a,b,value\nmax,nobody,,3\n` });
    await user.give(join(folder, "rules.csv"), "goal");
    await user.sees("#goal", PLANS);
    const ruled = await list();
    expect(ruled.filter(([male]) => male === sire).length).toBe(3);
    expect(ruled).not.toContainEqual([sire, dam]);
    await user.give(join(folder, "faulty.csv"), "goal");
    await user.unfolds("#faults");
    expect(await user.read("#faults")).toMatch(/faults in the rules of matings.*nobody/);
    await user.leaves();
  });
});

test("a workbook is what its CSV is", async () => {
  const lines = readFileSync("../examples/hinterwald/hinterwald.csv", "utf8").trim().split("\n").map((line) => line.split(","));
  const book = await workbook([{ name: "Herd", header: lines[0]!, rows: lines.slice(1).map((line) => line.map((cell, i) => (i === 4 && cell ? Number(cell) : cell))) }]).arrayBuffer();
  await withFolder(async (folder) => {
    put(folder, { "hinterwald.xlsx": new Uint8Array(book) });
    const user = await User.at();
    await user.give("../examples/hinterwald/hinterwald.csv");
    const told = async () => (await user.read("#faults")) + (await user.read("#candidates"));
    const expected = await told();
    await user.give(join(folder, "hinterwald.xlsx"));
    expect(await told()).toBe(expected);
    await user.leaves();
  });
});

test("files that are no herd books, or that are built to do harm, end in a sentence", async () => {
  const cases: Record<string, [Uint8Array | string, RegExp]> = {
    "picture.png": [strToU8("\x89PNG\r\n\x1a\n....", true), /picture/],
    "letter.pdf": ["%PDF-1.4\n", /document/],
    "empty.csv": ["", /nothing in it/],
    "bomb.xlsx": [zipSync({ "[Content_Types].xml": strToU8(""), "xl/workbook.xml": new Uint8Array(1 << 28) }, { level: 9 }), /./],
    "other.zip.xlsx": [zipSync({ "a.txt": strToU8("a") }), /no workbook|workbook/i],
    "zeros.csv": [new Uint8Array(5000), /no text/],
    "quotes.csv": [`id,sire,dam\nA,,\n"B,,\n`, /row 3/],
  };
  await withFolder(async (folder) => {
    const user = await User.at();
    for (const [name, [bytes, said]] of Object.entries(cases)) {
      put(folder, { [name]: bytes });
      await user.give(join(folder, name));
      expect(await user.read("[role=alert]"), name).toMatch(said);
    }
    await user.give("../examples/hinterwald/hinterwald.csv");
    await user.sees("#faults", /10,865/);
    await user.leaves();
  });
});

test("names that a careless page would run or take for its own are names", async () => {
  await withFolder(async (folder) => {
    put(folder, { "herd.csv": hostileHerdBook(), "headings.csv": csvOf([["__proto__", "sire", "dam", "constructor", HOSTILE[0]!], ["A", "", "", "1", "x"]]) });
    const user = await User.at();
    await user.give(join(folder, "headings.csv"));
    expect(await user.read("#book")).toContain("__proto__");
    await user.give(join(folder, "herd.csv"));
    await user.fill("Males > Matings each may have", "6");
    await user.fill("Females > Matings each may have", "2");
    await user.fill("Matings to plan", "8");
    await user.sees("#goal", PLANS);
    await user.press("Make the mating plan");
    await user.sees("#plan", /The plan is there/);
    expect(await user.read("#plan")).toContain(HOSTILE[2]!.slice(0, 12));
    expect(await user.evaluate(() => document.querySelectorAll("img, svg[onload], iframe").length)).toBe(0);
    await user.leaves();
  });
});

test("a worker that lacks memory or breaks is told of, and the page goes on", async () => {
  const user = await User.at();
  for (const [failure, said] of [["memory", /more memory than a browser gives/], ["defect", /has failed in the browser/]] as const) {
    await user.evaluate((failure: string) => {
      const post = Worker.prototype.postMessage;
      Worker.prototype.postMessage = function (this: Worker, message: { id?: number }) {
        if (message.id === undefined) return post.call(this, message);
        Worker.prototype.postMessage = post;
        this.onmessage!(new MessageEvent("message", { data: { id: message.id, failed: failure, detail: "made by the test" } }));
      };
    }, failure);
    await user.give("../examples/hinterwald/hinterwald.csv");
    await user.sees("[role=alert]", said);
    await user.press("Try again");
    await user.sees("#faults", /10,865/);
  }
  await user.leaves();
});
