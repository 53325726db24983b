// Words of the matings: tables, sheets, the matrix, one mating and its pedigree.

import { count, counted, fixed, percent } from "../format.js";

export const TITLE = "The matings";
export const lead = (pairing: string, ruled: boolean) =>
  pairing === "mai"
    ? "The chosen parents are paired so that their offspring are least inbred, taken together: another chosen male of lower F is needed elsewhere."
    : pairing === "least"
    ? `The chosen parents are paired for exactly the least inbreeding of their offspring${ruled ? " that the rules permit" : ""}.`
    : ruled
    ? "The chosen parents are paired at random as far as the rules permit; their offspring could be less inbred in another pairing."
    : "The chosen parents are paired as the search found them; their offspring could be less inbred in another pairing.";
export const decided = (matings: number) => `${counted(matings, "mating was", "matings were")} decided beforehand.`;
export const DECIDED = ["Decided", "Decided beforehand by a rule"] as const;
export const HOW = "Press an F to see which common ancestors make it.";

export const VIEWS = "View of the matings";
export const BY_SIRE = "By sire";
export const ALL = "All in one table";
export const OPEN_ALL = "Open all sheets";
export const CLOSE_ALL = "Close all sheets";
export const ALL_CAPTION = "All matings of the plan";
export const females = (sire: string) => `Females for ${sire}`;

export const sheet = (matings: number) => counted(matings, "mating", "matings");
export const parent = (merit: string, f: number, completeness: number) =>
  `merit ${merit}, own inbreeding F ${percent(f)}, completeness of its pedigree ${percent(completeness, 0)}`;

// Columns: heading, and what it means.
export const SIRE = ["Sire", "Identifier of the male"] as const;
export const SIRE_NAME = ["Its name", "Name of the male"] as const;
export const DAM = ["Dam", "Identifier of the female"] as const;
export const DAM_NAME = ["Its name", "Name of the female"] as const;
export const OFFSPRING_MERIT = ["Offspring merit", "Expected merit of the offspring: the mean of its parents' merits"] as const;
export const OFFSPRING_F = ["Offspring F %", "Expected inbreeding of the offspring: half of its parents' additive relationship (Wright 1922)"] as const;
export const OFFSPRING_VF = ["Mendelian var.", "vF: Mendelian sampling variance of the offspring, as a share of the additive genetic variance: ½ (1 − mean F of the parents). The more inbred the parents, the less their offspring differ."] as const;
export const parentColumn = (of: "sire" | "dam") => ({
  merit: [`${of === "sire" ? "Sire" : "Dam"} merit`, `Merit (breeding value) of the ${of}`] as const,
  f: [`${of === "sire" ? "Sire" : "Dam"} F %`, `Inbreeding of the ${of}`] as const,
  completeness: ["Complete %", `Completeness of the pedigree of the ${of}: how much of its ancestry is known`] as const,
});
export const OTHERS = ["Other chosen males (F %)", "Chosen males with which the offspring of this female would be least inbred"] as const;
export const other = (called: string, f: number) => `${called} (${fixed(f * 100, 2)})`;
export const NO_OTHER = "none";

// One mating.
export const pair = (sire: string, dam: string) => `${sire} × ${dam}`;
export const opens = (f: string, pair: string) => `F ${f} %: what makes it, for ${pair}`;
export const CLOSE = "Close";
export const COMMON = "Common ancestors: what makes the F";
export const commonLead = (f: number) =>
  `The expected inbreeding of the offspring is F = ${percent(f)}. Each ancestor that sire and dam share adds Σ (½)ⁿ (1 + its own F), over all paths from sire to dam through it that meet no animal twice, n being the number of animals on the path (Wright 1922).`;
export const NO_COMMON = "Sire and dam have no known common ancestor: as far as the pedigree tells, the offspring is not inbred.";
export const COMMON_COLUMNS = ["Mark", "Ancestor", "Born", "Its own F", "Adds to F", "Share of F"];
export const others = (more: number) => `${counted(more, "further ancestor", "further ancestors")} together`;
export const ALTERNATIVES = "Other chosen males for this female";
export const ALTERNATIVE_COLUMNS = ["Male", "F of the offspring"];

// The pedigree.
export const PEDIGREE = "Pedigree of the offspring";
export const PEDIGREE_LEAD = "Five generations of ancestors, in each pair the sire above the dam. The common ancestors listed above carry their letter and a thick frame.";
export const SIRE_SIDE = "Sire's side";
export const DAM_SIDE = "Dam's side";
export const UNKNOWN = "unknown";
export const FURTHER = "not in this page";
export const NOT_DRAWN = "Common ancestors that do not stand on both sides of the drawing, because their paths are longer than five generations:";
export const marked = (letter: string) => `common ancestor ${letter}`;

// The matrix.
export const MATRIX = "Chosen males by chosen females";
export const matrixLead = (males: number, females: number) =>
  `Inbreeding of the offspring (F) of each of ${counted(males, "chosen male", "chosen males")} (rows) with each of ${counted(females, "chosen female", "chosen females")} (columns). The darker, the more inbred; a ring marks a mating of the plan.`;
export const MATRIX_HELP = "Move the pointer over the matrix, or go into it with the Tab key and use the arrow keys. Enter opens a mating of the plan.";
export const MATRIX_SCALE = "F of the offspring, %";
export const MATRIX_START = "No pair is selected.";
export const cell = (sire: string, dam: string, f: number, planned: boolean) =>
  `${pair(sire, dam)}: F ${percent(f, 3)}${planned ? ", a mating of the plan" : ""}`;
export const SAVE_MATRIX = "Save the matrix as CSV";
export const PAIRS = "Show as a table of all pairs";
export const MATRIX_BIG = (pairs: number) => `The matrix has ${count(pairs)} pairs; the saved file holds them all.`;
export const PLANNED = ["In the plan", "Whether the plan makes this mating"] as const;
export const YES = "yes";
export const NO = "no";
