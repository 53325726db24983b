// What a reader reads about the rules that the breeder set for the matings.

import { counted, percent } from "../format.js";

export const title = "Rules";
export const intro = (rules: number, file: string, broken: number) =>
  `${counted(rules, "rule", "rules")} for the matings, from ${file}. ${broken === 0 ? "The plan keeps all of them." : `The plan does not keep ${broken === rules ? "any" : "all"} of them.`}`;
export const lead =
  "What a rule costs: by how much the plan could be better in value, the goal of the search, if that rule alone were given up, and what would become of merit and inbreeding then. 0: giving it up changes nothing.";
export const note =
  "An estimate: the plan is first improved by exchanges of parents within all rules (the figures above the table), then without the one rule, and the parents of both are paired for the least mean inbreeding. Rules that only say who may be mated with whom may show in the inbreeding alone. Costs of several rules do not add up.";
export const leftOut = (rules: number) =>
  `The costs of ${counted(rules, "rule", "rules")} were not worked out, as that would take too long.`;
export const unknown =
  "A dash: not known, as without the rule the plan would be another one altogether, or the other matings of males no longer come in whole units.";

export const with_all = { value: "Value with all rules", merit: "Merit", rate: "Rate of inbreeding", inbreeding: "Mean inbreeding of the offspring" };
export const caption = "Rules, and what they cost";
export const columns = {
  line: ["Line", "Of the file of rules"],
  rule: ["Rule", "What it asks for"],
  broken: ["Kept", "Whether the plan keeps it, or by how many matings, too many or too few, it is broken"],
  value: ["Cost in value", "By how much the plan's value, which the search maximises, would be larger without the rule"],
  merit: ["Merit without it", "Merit of the offspring if the rule were given up, and how much more that is than with all rules; saved is the difference"],
  rate: ["Rate without it, %", "Rate of inbreeding per generation if the rule were given up, and how much more that is than with all rules, in percent points; saved is the difference"],
  inbreeding: ["F without it, %", "Mean inbreeding of the offspring if the rule were given up, paired for the least, and how much more that is than with all rules, in percent points; saved is the difference"],
} as const;
/** What it would be, and by how much more than now. */
export const changed = (without: string, more: string) => `${without} (${more})`;
export const kept = "kept";
export const broken = (matings: number) => `broken by ${counted(matings, "mating", "matings")}`;

const matings = (n: number) => counted(n, "mating", "matings");

/** A rule in a breeder's words, by its kind. */
const SAID: Record<string, (a: string, b: string, limit: number) => string> = {
  fix: (a, b, n) => `${a} × ${b}: ${matings(n)} decided`,
  min: (a, _, n) => `${a}: at least ${matings(n)}`,
  max: (a, _, n) => (n === 0 ? `${a}: no matings` : `${a}: at most ${matings(n)}`),
  forbid: (a, b) => `never ${a} × ${b}`,
  "forbid-groups": (a, b) => (a === b ? `no mating within group ${a}` : `no mating between the groups ${a} and ${b}`),
  "max-pair": (_a, _b, n) => `each pair: at most ${matings(n)}`,
  "max-per-group": (a, b, n) => `${a || "each sire"}: at most ${matings(n)} with ${b ? `group ${b}` : "each group"}`,
  "max-f": (_a, _b, f) => `no offspring with F above ${percent(f)}`,
};
export const said = (rule: { kind: string; a: string; b: string; limit: number; text: string }) =>
  SAID[rule.kind]?.(rule.a, rule.b, rule.limit) ?? rule.text;
