// Words of the summary: the plan, or the population, in one paragraph.

import { atLeast, count, counted, digits, fixed, percent } from "../format.js";

export const TITLE = "In short";

export const matings = (matings: number, males: string, females: string) =>
  `The plan makes ${counted(matings, "mating", "matings")}, with ${males} and ${females}. `;
export const chosen = (chosen: number, candidates: number, one: string, more: string) =>
  `${count(chosen)} of ${counted(candidates, one, more)}`;
export const MALE = ["male", "males"] as const;
export const FEMALE = ["female", "females"] as const;

export const merit = (merit: number) => `The expected merit of the offspring is ${digits(merit, 4)}`;
export const gain = (gain: number, born: string) =>
  Math.abs(gain) < 1e-9
    ? `, as much as the mean of the animals born last (${born}). `
    : `: they ${gain > 0 ? "gain" : "lose"} ${digits(Math.abs(gain))} units of merit against the mean of the animals born last (${born}). `;
export const END = ". ";

export const inbreeding = (f: number, relationship: number) =>
  `Their average inbreeding will be ${percent(f)} and their average relationship to one another ${percent(relationship)}. `;
export const rate = (rate: number, ne: number, interval: number) => {
  if (rate <= 0) return "By this plan inbreeding does not rise, as far as the pedigree tells. ";
  if (ne < 2) return `Relationship rises in one step so much that, over a generation of ${digits(interval)} time steps, the rate of inbreeding would be ${percent(rate, 0)}: too fast for an effective size to mean anything. `;
  return `Inbreeding rises by ${percent(rate)} a generation, as in a population of an effective size of ${size(ne)}. `;
};
export const reaches = (share: number, ruled: boolean) =>
  share < 1
    ? `By the goal that was set it reaches ${atLeast(share)} of what any plan could${ruled ? ", were there no rules" : ""}. `
    : "By the goal that was set no plan could be better. ";
export const noBase = (animals: number, born: string, change: string) =>
  `How fast inbreeding rises by this plan, and how much merit it gains, cannot be said well, as only ${counted(animals, "animal", "animals")} born in ${born} can be compared with${change && `; over the last generation interval inbreeding ${change}`}. `;
export const incomplete = (completeness: number, born: string) =>
  `The pedigrees are known only in part (completeness of those born in ${born}: ${percent(completeness, 0)}), so true inbreeding is probably higher than these figures. `;
const size = (ne: number) => `${fixed(ne, ne < 10 ? 1 : 0)}\u00a0animals`;

export const SOUND = "Nothing serious was found to beware of.";
export const BEWARE = "To beware of: ";
export const DETAILS = "More on this";

export const population = (animals: number, founders: number, living: number) =>
  `The pedigree holds ${counted(animals, "animal", "animals")}, among them ${counted(founders, "founder", "founders")} without known parents; ${count(living)} count as living. `;
export const meanInbreeding = (mean: number, largest: number) =>
  `Average inbreeding of all is ${percent(mean)}, the largest ${percent(largest)}. `;
export const diversity = (kinship: number, diversity: number) =>
  `The living have an average kinship of ${percent(kinship)}; they keep ${percent(diversity, 1)} of the gene diversity of the founders. `;
export const effective = (ne: number) =>
  Number.isFinite(ne) ? `Inbreeding rose as in a population of an effective size of ${size(ne)}. ` : "";
export const NO_PLAN = "No matings were planned. ";

// Figures.
export const MATINGS = "Matings";
export const MALES = "Males";
export const FEMALES = "Females";
export const ofCandidates = (candidates: number) => `chosen of ${counted(candidates, "candidate", "candidates")}`;
export const SIRES_NOTE = (mean: number, sd: number) => `${fixed(mean, 1)} ± ${fixed(sd, 1)} matings each`;
export const MERIT = "Merit of the offspring";
export const MERIT_NOTE = (gain: number) => `${gain >= 0 ? "+" : ""}${digits(gain)} against the last birth time; mean of the parents' merits`;
export const INBREEDING = "Inbreeding of the offspring";
export const INBREEDING_NOTE = (last: number) => `mean F; the last birth time has ${percent(last)}`;
export const RELATIONSHIP = "Relationship";
export const RELATIONSHIP_NOTE = (last: number) => `mean of the next generation; the last birth time has ${percent(last)}`;
export const RATE = "Rate of inbreeding";
export const RATE_NOTE = (interval: number) => `a generation of ${interval === 1 ? "one time step" : `${digits(interval)} time steps`}, from the last birth time on`;
export const NO_BASE_MERIT = "mean of the parents' merits";
export const NO_BASE = "no firm base: the last birth time is not finished";
export const NE = "Effective size";
export const NE_NOTE = "animals; FAO (1998) advises 50 or more";
export const FOUNDERS = "Founder equivalents";
export const FOUNDERS_NOTE = "equally used founders that would give the same diversity (Lacy 1989)";
export const KINSHIP = "Mean kinship";
export const KINSHIP_NOTE = "of the living";
export const DIVERSITY = "Gene diversity";
export const DIVERSITY_NOTE = "kept by the living";

export const HOW = "How these figures are computed";
export const FORMULAS = [
  "Merit of the offspring: the mean of their parents' merits, in the units of the breeding values of the data.",
  "F, inbreeding: the probability that the two genes of an animal at one place come from the same gene of an ancestor (Wright 1922).",
  "Relationship: the additive relationship, twice the coancestry, as the mean of all pairs of the next generation, each with itself included.",
  "Rate of inbreeding a generation: (r − r₀) × L / (2 − r₀), where r is the mean relationship of the next generation, r₀ that of the last birth time and L the generation interval, the mean age of the parents.",
  "What any plan could reach: a bound of the value by the goal, as of a best plan when matings may be given in parts, with the variances that no two candidates share counted in whole matings. 0 % would be all candidates used in proportion to their limits, without gain of merit.",
  "Effective size: 1 / (2 × rate), the number of animals of an ideal population whose inbreeding rises as fast (Falconer & Mackay 1996).",
];

// A given plan beside the best one.
export const GIVEN_TITLE = "The given plan beside the best one found";
export const givenLead = (file: string) =>
  `The plan in ${file} was valued in the same way as the best plan that the search found.`;
export const givenFewer = (given: number, best: number) =>
  `It makes ${counted(given, "mating", "matings")} and the best plan ${count(best)}: relationship, rate and fitness would differ for that alone.`;
export const GIVEN_FAULTS = "Limits that the given plan does not keep:";
export const GIVEN_SOUND = "The given plan keeps all limits.";
export const GIVEN_COLUMNS = ["Figure", "Best plan", "Given plan", "Difference"];
export const GIVEN_MATINGS = "The matings of the given plan";
export const FITNESS = "Value of the plan (fitness)";
export const SHARE = "Share of what any plan could reach";
export const FITNESS_NOTE = "Fitness is what the search maximises under the criterion of this run: larger is better.";
export const AGE = "Mean age of the parents, in time steps";
