// For everybody: contrast and names in light and dark, a telephone, the keyboard alone, paper.

import { expect, test } from "@playwright/test";
import axe from "axe-core";
import { example, PLANS, User } from "./user.js";

/** In the first rows of tables, as the others look alike. */
async function violations(user: User, ...within: readonly string[]): Promise<string[]> {
  for (const each of within) await user.unfolds(each);
  await user.evaluate(axe.source as never);
  return user.evaluate(async (within: string[]) => {
    const { axe } = globalThis as unknown as { axe: typeof import("axe-core") };
    const { violations } = await axe.run({ include: within, exclude: ["tbody tr:nth-child(n + 5)"] }, { runOnly: ["wcag2a", "wcag2aa", "best-practice"], resultTypes: ["violations"] });
    return violations.flatMap(({ id, nodes }) => nodes.slice(0, 3).map(({ target, failureSummary }) => `${id}: ${target.join(" ")}: ${failureSummary}`));
  }, within);
}

for (const colorScheme of ["light", "dark"] as const)
  test(`all steps are accessible, ${colorScheme}`, async () => {
    const user = await example({ colorScheme });
    await user.choose("A new rule", "two animals never");
    await user.press("Add");
    expect(await violations(user, "header", "nav", "#book", "#faults", "#candidates", "#goal")).toEqual([]);
    await user.press("Make the mating plan");
    await user.sees("#plan", /The plan is there/);
    expect(await violations(user, "#plan .tools")).toEqual([]);  // the report is judged with the other pages
    await user.leaves();
  });

for (const width of [390, 320])
  test(`on a telephone of ${width} pixels nothing is moved sideways but tables in their boxes`, async () => {
    const user = await example({ viewport: { width, height: 844 }, hasTouch: true, isMobile: true });
    await user.press("Make the mating plan");
    await user.sees("#plan", /The plan is there/);
    await user.unfolds("main");
    const wide = await user.evaluate((width: number) => ({
      page: document.documentElement.scrollWidth,
      parts: [...document.querySelectorAll("main *")].filter((each) => !each.parentElement!.closest(".scroll, .canvas, .switch") && each.checkVisibility() && each.getBoundingClientRect().right > width + 1).map(({ outerHTML }) => outerHTML.slice(0, 120)),
    }), width);
    expect(wide).toEqual({ page: width, parts: [] });
    await user.leaves();
  });

test("the keyboard alone goes from the example to a saved plan", async () => {
  const user = await User.at();
  await user.tabsTo("Try the example");
  await user.key("Enter");
  await user.sees("#goal", PLANS);
  await user.tabsTo("Along the line");
  await user.key("ArrowRight");
  await user.tabsTo("Make the mating plan");
  await user.key("Enter");
  await user.sees("#plan", /The plan is there/);
  await user.tabsTo("Mating list (CSV)");
  await user.key("Enter");
  expect((await user.taken()).name).toBe("hinterwald_matings.csv");
  await user.leaves();
});
