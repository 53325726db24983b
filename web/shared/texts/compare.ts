// What a reader reads where plans stand side by side.

export const title = "The plans side by side";
/** Plans are called A, B and C; the title of each follows. */
export const letters = ["A", "B", "C"] as const;
export const plan = (letter: string) => `Plan ${letter}`;
export const about = (title: string, goal: string, pairing: string, started: string) => `${title}; ${goal}; pairs ${pairing}${started && `; run started ${started}`}`;
export const no_plan = "This result holds no plan.";

export const figures = {
  title: "Figures",
  caption: "Figures of the plans",
  figure: "Figure",
  goals: {
    penalty: (merit: string, relationship: string) => `goal: ${merit} × merit, ${relationship} × relationship`,
    constraint: (rate: string) => `goal: most merit at a rate of inbreeding of at most ${rate}`,
    merit: "goal: most merit",
  },
  pairings: { mai: "for least inbreeding", random: "as found" } as Record<string, string>,
  matings: "Matings", males: "Males chosen", females: "Females chosen", most: "Most matings of a male",
  merit: "Merit of the offspring", gain: "Gain over those born last", inbreeding: "Mean inbreeding of the offspring",
  largest: "Largest inbreeding of an offspring", relationship: "Mean relationship", rate: "Rate of inbreeding a generation", ne: "Effective size", share: "Share of what any plan could reach by its own goal",
  unknown_genes: "Genes of unknown parents", warnings: "Serious things to beware of",
  of: (chosen: string, candidates: string) => `${chosen} of ${candidates}`,
  note: "The value by which a search goes is not compared: with other weights it is another measure.",
};

export const choice = {
  title: "Merit and relationship of the chosen",
  description: (names: string) => `The chosen of ${names}, one picture a plan on the same scales: the higher the better, the further left the less related to the chosen. An animal is one of them itself, so many matings move it to the right. Squares: males, circles: females, the larger the more matings; the cross is the mean, weighted by matings.`,
  x: "mean relationship to the chosen, percent →", merit: "↑ merit", mean: "mean of the chosen", male: "males", female: "females",
};

export const males = {
  title: "Matings of the males",
  description: (n: string, all: string) => (n === all ? "One row a male that any plan chose." : `The ${n} males with most matings of the ${all} that any plan chose; the table below tells of all.`),
  axis: "matings",
};

export const who = {
  title: "Who is in which plan",
  caption: "Animals chosen by any plan",
  shared: (n: string, which: string) => `${n} in ${which}`,
  only: (n: string, plan: string) => `${n} only in ${plan}`,
  summary: (sex: string, parts: string) => `${sex}: ${parts}.`,
  males: "Males", females: "Females", all_plans: "all plans",
  filter: { label: "Animals shown", all: "All", males: "Males", females: "Females", differing: "With other matings" },
  columns: { animal: "Animal", sex: "Sex", birth: "Born", merit: "Merit", in: "In", matings: (plan: string) => `Matings in ${plan}`, related: (plan: string) => `Related to the chosen of ${plan}, %` },
};
