// From herd books to mating lists, in both browsers: the programs make the same of the same files.

import { expect, test } from "@playwright/test";
import { unzipSync } from "fflate";
import { basename, join } from "node:path";
import { BOOKS, put, run, text, withFolder } from "./programs.js";
import { BROWSERS, PLANS, User } from "./user.js";

const plain = (bytes: Uint8Array) => Buffer.from(bytes).toString("latin1");

/** From the herd book to the plan; what hinders is accepted, as far as it can be. */
async function way(user: User, book: string): Promise<void> {
  await user.give(book);
  for (const [sex, matings] of [["Males", "10"], ["Females", "1"]] as const) {
    await user.fill(`${sex} > Matings each may have`, matings);
    await user.fill(`${sex} > Youngest`, "1");
    await user.fill(`${sex} > Oldest`, "8");
  }
  if (!/EBV|bv/.test(await user.read("#book table"))) await user.choose("Where one is missing", "plan without them");
  await user.acceptAll();
  await user.sees("#faults", /All good/);
  await user.fill("Matings to plan", "20");
  await user.sees("#goal", PLANS);
  await user.press("Make the mating plan");
  await user.sees("#plan", /The plan is there/);
}

/** What the page saves is what the programs make of the files that it saves to repeat it. */
async function same(user: User, folder: string): Promise<void> {
  const repeat = unzipSync((await user.saves("Repeat it on a computer")).bytes);
  put(folder, repeat as Record<string, Uint8Array>);
  const command = plain(repeat["README.txt"]!).match(/^ {4}(qob-prepare .*?)\r?$/m)![1]!;
  expect(run(join(folder, "herd_book"), command)).toMatchObject({ status: 0, err: "" });
  const name = Object.keys(repeat).find((file) => file.endsWith(".dat"))!.replace(".dat", "");
  for (const ending of [".dat", ".names.csv"]) expect(text(folder, `herd_book/${name}/${name}${ending}`)).toBe(plain(repeat[name + ending]!));

  expect(run(folder, "qob", "qob.prm").status).toBe(0);
  expect(text(folder, "QOB_qob_MatingList.txt")).toBe(plain(repeat["page/QOB_qob_MatingList.txt"]!));
  expect(run(folder, "qob-report", "./QOB_", "--tables", "tables").status).toBe(0);
  const tables = unzipSync((await user.saves("All tables (CSV")).bytes);
  expect(Object.keys(tables).length).toBeGreaterThan(4);
  for (const [file, bytes] of Object.entries(tables)) expect(plain(bytes), file).toBe(text(folder, `tables/${file}`));
}

for (const browser of Object.keys(BROWSERS) as (keyof typeof BROWSERS)[]) {
  for (const book of BOOKS) {
    test(`${basename(book)} in ${browser}`, async () => {
      const user = await User.at(browser);
      await way(user, book);
      await withFolder((folder) => same(user, folder));
      await user.leaves();
    });
  }
}
