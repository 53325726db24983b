// What a reader reads about the candidates and the comparison of plans.

import { counted } from "../format.js";

export const title = "Who was chosen and why";
export const intro =
  "A candidate is worth choosing by its merit and by how little it is related to the others that are chosen: such a relationship becomes inbreeding in time. So the best lie at the top left. Near the edge between chosen and others a small difference decides, and chance.";

export const picture = {
  title: "Merit and relationship of the candidates",
  description: (males: number, females: number) =>
    `Chosen: ${counted(males, "male", "males")} (squares) and ${counted(females, "female", "females")} (circles), the larger the more matings. Point at one to read who it is; the table below tells the same of all.`,
  binned: (n: string) => `The ${n} candidates that were not chosen are too many to be drawn one by one; hexagons count them, the stronger their colour the more. The pointer still finds each.`,
  x: "mean relationship",
  to_others: {
    name: "Related to the others chosen", axis: "mean relationship to the others chosen, percent →",
    note: "Mean relationship to the chosen, each weighted by its matings, without the animal itself: by this the plan's value falls if it is chosen, so this explains the choice best.",
  },
  relationship: {
    name: "Related to all candidates", axis: "mean relationship to all candidates, percent →",
    note: "Mean relationship to all candidates, itself included. It tells who is related to many; what counted in the choice is the relationship to those chosen.",
  },
  merit: "↑ merit",
  key: {
    male: "chosen male", female: "chosen female", other_male: "male not chosen", other_female: "female not chosen", count: "not chosen, counted",
  },
};

export const tip = {
  sex: { 0: "sex unknown", 1: "male", 2: "female" } as Record<number, string>,
  born: (sex: string, birth: string) => (birth ? `${sex}, born ${birth}` : sex),
  merit: (merit: string) => `merit ${merit}`,
  relationship: (chosen: string, all: string) => `related to the chosen ${chosen}, to all ${all}`,
  matings: (matings: string, most: string) => `matings ${matings} of ${most} allowed`,
};

export const lack = {
  chosen: (matings: number) => `chosen: ${counted(matings, "mating", "matings")}`,
  merit: (merit: string) => `would need ${merit} more merit`,
  relationship: (merit: string) => `too related to the chosen: would need ${merit} more merit`,
  both: (merit: string) => `too related and too little merit: would need ${merit} more`,
  merit_only: "too little merit",
  relationship_only: "too related to the chosen",
  both_only: "too related to the chosen and too little merit",
  nothing: "as good as the chosen: the search had no place",
  not_known: "cannot be said",
};

export const filter = { label: "Candidates shown", all: "All", males: "Males", females: "Females", chosen: "Chosen", not_chosen: "Not chosen" };

export const table = {
  title: "All candidates, ranked",
  caption: "Candidates",
  intro: "Ranked by matings, then by how little they lack, then by merit. The headings sort; a search finds identifiers, names and words.",
  columns: {
    rank: "Rank", animal: "Animal", sex: "Sex", birth: "Born", merit: "Merit", matings: "Matings", max_matings: "Allowed",
    lack: "Chosen, or what it lacks", to_others: "Related to the chosen, %", relationship: "Related to all, %",
    mean_kinship: "Mean kinship, %", f: "F, %", completeness: "PCI, %", offspring: "Offspring",
    so_far: "Contribution so far, %", wanted: "Contribution wanted, %", value: "Lacking value",
  },
  notes: {
    max_matings: "The most matings that it may have",
    to_others: "Mean relationship to the others chosen, each weighted by its matings",
    relationship: "Mean relationship to all candidates, itself included",
    mean_kinship: "Mean coancestry with the living",
    f: "Its inbreeding coefficient",
    completeness: "Pedigree completeness index, five generations (MacCluer and others 1983)",
    so_far: "Share of the genes of the last birth time that come from it",
    wanted: "Share of the genes of the planned generation that shall come from it",
    offspring: "Recorded in the pedigree",
    value: "By how much the plan's value would fall if it took one mating of a chosen one",
  },
  unknown_parent: "a parent is unknown",
  brief: "The first 60 are printed. The page on a screen shows all and saves them as a table.",
};

export const sexes = { 0: "unknown", 1: "male", 2: "female" } as Record<number, string>;
