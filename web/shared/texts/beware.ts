// What a reader reads about things to beware of, and about how a report was made.

export const title = "What to beware of";
export const nothing = "Nothing was found that speaks against the plan or the data.";
export const none_serious = "Nothing serious was found. What follows is good to know.";
export const intro = (serious: string, others: string) => `Serious: ${serious}. Good to know: ${others}.`;
export const serious = "Serious";
export const known = "Good to know";

/** Numbers of a warning as texts, by name. */
export interface Told {
  percent: (name: string, decimals?: number) => string;
  count: (name: string) => string;
  number: (name: string) => string;
  /** The birth time as the herd book counts. */
  birth: (name: string) => string;
  /** A rate a generation: "rose by 1.10 % a generation". */
  change: (name: string) => string;
  has: (name: string) => boolean;
  text: string;
}

/** A few words for the summary, a heading, and what it means and what to do. */
export interface Words { brief: string; title: string; text: string }

const counted = (n: string, one: string, more: string) => `${n} ${n === "1" ? one : more}`;
const some = (told: Told, name: string, one: string, more: string, matings?: string) =>
  told.has(name) && told.count(name) !== "0"
    ? counted(told.count(name), one, more) + (matings ? ` (${counted(told.count(matings), "mating", "matings")})` : "")
    : "";
const listed = (...parts: string[]) => parts.filter(Boolean).join(", ").replace(/, ([^,]*)$/, " and $1");

const measure = (told: Told) => (told.has("by_inbreeding") && told.count("by_inbreeding") === "0" ? "coancestry" : "inbreeding");

export const warnings: Record<string, (told: Told) => Words> = {
  unknown_parents: (told) => ({
    brief: `some of the chosen have unknown parents (${told.percent("genes")} of the genes of the offspring come from them)`,
    title: "Chosen animals have unknown parents",
    text: `Of the chosen, these have an unknown parent: ${listed(
      some(told, "chosen_males", "male", "males", "male_matings"), some(told, "chosen_females", "female", "females", "female_matings"),
    )}. ${told.percent("genes")} of the genes of the offspring come from parents that nobody knows. They count as related to nobody, so the plan favours these animals, and the true inbreeding may be higher than the figures say. Find out the parents, or leave out candidates of incomplete pedigree (--min-completeness).`,
  }),
  undated_parents: (told) => ({
    brief: "some parents of the youngest animals have no birth time, so rate and effective size are wrong",
    title: "Parents without a birth time",
    text: `${told.count("undated")} of ${counted(told.count("parentages"), "parentage", "parentages")} of the youngest animals are by parents whose birth time is not known. They count as born thousands of time steps ago: the generation interval, the rate of inbreeding and the effective size of the plan are wrong by that. Add these parents to the herd book with their birth.`,
  }),
  unfinished_last_time: (told) => ({
    brief: "the last birth time is not finished, so the rate of inbreeding has no firm base",
    title: "The last birth time is not complete",
    text: `Only ${counted(told.count("animals"), "animal", "animals")} born in ${told.birth("birth_time")} ${told.count("animals") === "1" ? "is" : "are"} in the data; ${told.count("usual")} are usual. The rate of inbreeding is reckoned from the animals of that birth time, so it has no good base.${
      told.has("rate") ? ` Over the last generation interval${
        told.has("from") && told.has("to") ? `, from ${told.birth("from")} to ${told.birth("to")},` : ""} inbreeding ${told.change("rate")}.` : ""}`,
  }),
  constraint: (told) => ({
    brief: `the rate of inbreeding (${told.percent("rate")}) exceeds the wanted limit of ${told.percent("constraint")}`,
    title: "The plan does not keep its constraint",
    text: `Its rate of inbreeding is ${told.percent("rate")} a generation; at most ${told.percent("constraint")} was wanted. More males, more candidates or fewer matings a male may make it possible.`,
  }),
  close_relatives: (told) => ({
    brief: "close relatives are mated",
    title: "Close relatives are mated",
    text: `The plan holds ${listed(
      some(told, "parent_offspring", "mating of parent and offspring", "matings of parent and offspring"),
      some(told, "full_sibs", "mating of full sibs", "matings of full sibs"),
      some(told, "half_sibs", "mating of half sibs", "matings of half sibs"),
    )}. Their offspring will be inbred: at least 25\u00a0% from parent and offspring or full sibs, 12.5\u00a0% from half sibs. The matings tell which other chosen males would give less.`,
  }),
  brothers: (told) => ({
    brief: `two brothers have ${told.percent("share", 0)} of all matings`,
    title: "Two brothers have most of the matings",
    text: `They have ${told.count("matings")} matings, ${told.percent("share", 0)} of all. So much of the next generation will be close relatives, which then find few unrelated mates.`,
  }),
  rate: (told) => ({
    brief: `inbreeding would rise by more than ${told.percent("limit")} a generation`,
    title: "Inbreeding would rise fast",
    text: `The plan's rate of inbreeding is ${told.percent("rate")} a generation${told.has("ne") ? `, an effective size of ${told.number("ne")}` : ""}. At most ${told.percent("limit")}, an effective size of 50 or more, is usually thought safe (FAO 1998).`,
  }),
  ne: (told) => ({
    brief: `the plan's effective size is below ${told.number("limit")} animals`,
    title: "The effective size is small",
    text: `A rate such as the plan's means an effective size of ${told.number("ne")} animals. At least ${told.number("limit")} are usually thought safe (FAO 1998).`,
  }),
  rules: (told) => ({
    brief: "rules of matings are broken",
    title: "The plan does not keep all rules",
    text: `Rules are broken by ${counted(told.count("broken"), "mating", "matings")}, too many or too few; the part on the rules tells which.`,
  }),
  changed: (told) => ({
    brief: "files have changed since the run",
    title: "The data are not those of the run any more",
    text: `What the run wrote down differs from what its files give now: ${told.text}. This report mixes the two: run again, or restore the files of the run.`,
  }),
  relationships_from_file: () => ({
    brief: "relationships come from a file and may differ from the pedigree",
    title: "Relationships come from a file",
    text: "The search used relationships from a file (from markers, for example), not those of the pedigree. Inbreeding and kinship of the population in this report are those of the pedigree.",
  }),
  regression_rate: (told) => ({
    brief: `${measure(told)} has been rising by more than ${told.percent("limit")} a generation`,
    title: `${measure(told) === "coancestry" ? "Coancestry" : "Inbreeding"} has risen fast`,
    text: `Over the population's birth times ${measure(told)} rises by ${told.percent("rate")} a generation${
      told.has("ne") ? `, an effective size of ${told.number("ne")}` : ""}. At most ${told.percent("limit")} is usually thought safe (FAO 1998).`,
  }),
  regression_ne: (told) => ({
    brief: `the population's effective size has been below ${told.number("limit")} animals`,
    title: "The population's effective size is small",
    text: `By its own trend it is ${told.number("ne")} animals. At least ${told.number("limit")} are usually thought safe (FAO 1998).`,
  }),
  told: () => ({ brief: "the program gave a warning", title: "The program said", text: "" }),
  prepared: () => ({ brief: "the herd book had faults", title: "Found when the herd book was prepared", text: "" }),
};

export const change = (rate: number, percent: string) =>
  rate === 0 ? "did not rise" : `${rate > 0 ? "rose" : "fell"} by ${percent} a generation`;

/** A kind that this viewer does not know. */
export const unknown = (kind: string): Words => ({ brief: kind, title: kind, text: "" });

export const animals = (n: string) => `The animals (${n})`;
export const pair = (a: string, b: string) => `${a} × ${b}`;
