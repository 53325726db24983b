// What a reader reads about the curve of merit against relationship and the plans beneath it.

import { atLeast, count, counted, digits, fixed, percent, short } from "../format.js";

export const title = (herd: string) => `Merit and relationship: ${herd}`;

const plans = (n: number) => counted(n, "plan", "plans");
export const sd = (value: number) => `${value < 0 ? "" : "+"}${fixed(value, 3)}\u00a0sd`;

/** How plans are called by what was asked for. */
export const asked = {
  own: "own goal",
  weight: (weight: number) => `weight ${short(weight)}`,
  constraint: (rate: number) => `at most ${short(100 * rate)}\u00a0% a generation`,
  merit: "most merit",
  target: {
    rate: (rate: number) => `target ${short(100 * rate)}\u00a0% a generation`,
    ne: (size: number) => `target effective size ${short(size)}`,
    degrees: (angle: number) => `target ${short(angle)}°`,
  },
  seed: (goal: string, seed: number) => `${goal}, seed ${short(seed)}`,
};

export const how = {
  greedy: "best gains", exchanges: "exchanges", search: "search",
};

export const curve = {
  title: "What can be had",
  lead: (matings: number, known: boolean) =>
    `Each sign is a plan of ${counted(matings, "mating", "matings")}: the higher it lies, the more merit its parents have; the further left, the less related they are and the slower inbreeding rises. ${
      known ? "No plan can lie above the line, so one that is close to it cannot be made better, only exchanged for another along it: more merit for more inbreeding, or less for less."
        : "What the best possible plans would be is not known for this herd."}`,
  marked: (name: string, n: number) => (n > 1 ? `The plan that is marked, of ${plans(n)}: ${name}.` : `There is one plan: ${name}.`),
  no_plans: "There is no plan yet.",
  no_base: (animals: number) => `Rates and effective sizes have no firm base here: they are reckoned from the animals born last, of which only ${count(animals)} are in the data so far. They still tell one plan from another.`,
  breaks: (rate: number) => `This plan does not keep the limit that it was made for: ${percent(rate)} inbreeding a generation. None better was found.`,
};

/** The marked plan's figures: name, and what it means. */
export const cards = {
  share: ["Share of the possible", "of what any plan could reach, rounded down; 0 % is using all candidates alike"],
  merit: ["Merit", ""],
  rate: ["Rate of inbreeding", "a generation, from the last birth time on"],
  ne: ["Effective size", "animals; FAO (1998) advises 50 or more"],
  inbreeding: ["Mean inbreeding of the offspring", "as they are paired"],
  parents: ["Parents", ""],
} as const;
export const falls = "relationship falls";
export const above = (value: number) => `${sd(value)} above using all candidates alike`;
export const seconds = (value: number) => `${digits(value, 2)}\u00a0s`;
export const parents = (males: number, females: number) => `${counted(males, "male", "males")}, ${counted(females, "female", "females")}`;
export const candidates = (males: number, females: number) => `of ${count(males)} and ${count(females)} candidates`;
export const of = (chosen: number, all: number) => `${count(chosen)} of ${count(all)}`;

export const picture = {
  title: "Merit against inbreeding",
  description: (n: number, matings: number, known: boolean) =>
    `${plans(n)}${known ? ` and the best possible in ${counted(matings, "whole mating", "whole matings")}` : ""}. Merit is that above using all candidates alike.`,
  help: "Point at a sign, or use the arrow keys, to read its figures; a click or Enter chooses the plan. Several in one place take turns.",
  signs: "Plans",
  axes: "Horizontal scale",
  rate: { name: "Rate of inbreeding", axis: "rate of inbreeding a generation, percent →", note: "Left of 0 the mean relationship falls below that of the last birth time, and there is no effective size." },
  relationship: { name: "Mean relationship", axis: "mean relationship of the next generation, percent →", note: "Each animal of the next generation with all others and itself." },
  merit: "↑ merit, standard deviations",
  ne: "effective size",
  limit: "target",
  impossible: "no plan can lie here",
  key: {
    line: "best possible in whole matings", greedy: "each mating where it gains most", exchanges: "then exchanges of matings", search: "search", marked: "marked plan", chosen: "chosen plan",
  },
};

/** A plan in words, line by line. */
export const told = {
  merit: (merit: string, scaled: number) => `merit ${merit} (${sd(scaled)})`,
  rate: (rate: number, size: number) => `inbreeding ${percent(rate)} a generation, ${Number.isFinite(size) ? `effective size ${digits(size)}` : falls}`,
  relationship: (value: number) => `relationship ${percent(value)}`,
  share: (share: number) => `${atLeast(share)} of what any plan could`,
  others: (n: number) => `${plans(n)} more at this place`,
};

/** Figures of a plan on one line each. */
export const lines = {
  share: "Of the possible", scaled_merit: "Merit, sd", merit: "Merit", rate: "Inbreeding rate", ne: "Effective size", relationship: "Relationship",
  inbreeding: "Offspring's F", males: "Males", females: "Females", how: "Found by", time: "Time",
} as const;

export const chosen = {
  title: "The chosen plan",
  short: "Chosen",
  caption: "Figures of the chosen plan and of the marked one",
  figure: "Figure",
  marked: "Marked",
  matings: "Its matings",
  marked_itself: (name: string) => `${name} (marked)`,
};

export const table = {
  title: "All plans",
  caption: "Figures of all plans",
  intro: "The headings sort; a click on a plan chooses it for the picture above and the matings below.",
  columns: {
    plan: ["Plan", "What it was made for"], how: ["Found by", "Best gains: each mating where it gains most. Exchanges: and then exchanges of matings until none helps. Search: as qob searches"],
    seed: ["Seed", "Of the search's random numbers"], weight: ["Weight", "Of relationship, against 1 of merit"],
    constraint: ["Limit, %", "Most inbreeding allowed, percent a generation"],
    merit: ["Merit", "Mean merit of the parents, as in the data"], scaled_merit: ["Merit, sd", "Above using all candidates alike, in standard deviations"],
    rate: ["Rate, %", "Rate of inbreeding a generation, percent"], effective_size: ["Eff. size", "Effective size; none where relationship falls"],
    relationship: ["Relationship, %", "Mean relationship of the next generation, percent"], inbreeding: ["F, %", "Mean inbreeding of the offspring, percent"],
    males: ["Males", "Males chosen"], females: ["Females", "Females chosen"],
    share: ["Share, %", "Of what any plan could reach, percent, rounded down"], degrees: ["Angle, °", "0 is most merit, 90 least relationship"],
    seconds: ["Time, s", "Seconds of computing"], folder: ["Folder", "Where its files are"],
  },
} as const;

export const matings = {
  title: "The matings",
  lead: (n: number, sires: number, dams: number) =>
    `${counted(n, "mating", "matings")} of ${counted(sires, "male", "males")} with ${counted(dams, "female", "females")}. F is the expected inbreeding of the offspring.`,
  caption: (name: string) => `Matings of the plan: ${name}`,
  columns: {
    sire: ["Sire", "Identifier of the male"], sire_name: ["Its name", "Name of the male"], dam: ["Dam", "Identifier of the female"], dam_name: ["Its name", "Name of the female"],
    matings: ["Matings", "Of this pair"], f: ["F, %", "Expected inbreeding of the offspring, percent"],
  },
  none: "Its mating list is not in this page.",
  repeat: "To repeat it",
  repeat_lead: "All its files are in the folder below, beside this page. The command makes them again, byte by byte but for the dates and times in the log:",
} as const;

export const made = {
  title: "How it was made",
  facts: {
    program: "Made by", time: "Made on", parameter_file: "Parameter file", data_file: "Data file", candidates: "Candidates", matings: "Matings", unit: "Matings of a male",
    last: "Relationship of the last birth time", interval: "Generation interval",
  },
  unit: (unit: number) => (unit > 1 ? `in steps of ${count(unit)}` : "any number"),
  interval: "in time steps; rate and effective size hang on it",
  how: "How these figures are computed",
  formulas: [
    "Merit in standard deviations: the mean of the parents' merits, each divided by the standard deviation among the candidates of its sex, less the same of all candidates, each used in proportion to its mating limit.",
    "The best possible: for each weight of relationship against merit a bound that no plan exceeds is computed; the line is the border of what lies beneath all of these.",
    "Share of the possible: (value − base) / (bound − base), where value is that of the plan by its own goal, bound the most that any plan could have by that goal, and base that of using all candidates alike.",
    "Rate of inbreeding a generation: (r − r₀) × L / (2 − r₀), where r is the mean relationship of the next generation, r₀ that of the last birth time and L the generation interval.",
    "Effective size: 1 / (2 × rate), the number of animals of an ideal population whose inbreeding rises as fast (Falconer & Mackay 1996).",
  ],
} as const;
