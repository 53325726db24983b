// What a reader reads about the population. Numbers come in as texts, made by shared/format.ts.

export const title = "The population";
export const timeStep = (birth: string) => `time step ${birth}`;
export const intro = (animals: string, founders: string, living: string) =>
  `The pedigree holds ${animals} animals, ${founders} of them founders (both parents unknown). ${living} count as living.`;
export const living_by = {
  column: "The herd book says who lives.",
  since: (since: string) => `The herd book does not say who lives: those born since ${since} are taken as living.`,
};

export const figures = {
  title: "Figures that a geneticist asks for",
  source: (formula: string, source: string) => `Formula: ${formula} (${source}).`,
  between: (low: string, high: string) => `${low} to ${high}`,
  mean_f: {
    name: "Mean inbreeding of all animals",
    meaning: "The chance that the two copies of a gene in an animal come from one and the same ancestor; 0 where parents are unknown.",
    formula: "F, exact over the whole pedigree", source: "Wright 1922; Meuwissen & Luo 1992",
  },
  mean_kinship: {
    name: "Mean kinship of the living",
    meaning: "The chance that genes drawn from any two of the living come from one ancestor: where inbreeding goes if they mate at random.",
    formula: "mean coancestry of all pairs, each with itself included", source: "Lacy 1989",
  },
  gene_diversity: {
    name: "Gene diversity",
    meaning: "The share of the founders' genetic variation that is still there.",
    formula: "1 − mean kinship", source: "Lacy 1989",
  },
  founder_equivalents: {
    name: "Founder equivalents",
    meaning: "The living carry as much variation as if so many founders had contributed equally, were nothing lost by chance.",
    formula: "1 / Σ p², p the shares of the founders", source: "Lacy 1989",
  },
  effective_ancestors: {
    name: "Effective ancestors",
    meaning: "So many ancestors, founders or not, contributing equally would explain the genes of the living; far fewer than the founder equivalents tell of bottlenecks.",
    formula: "1 / Σ q², q the marginal shares of the ancestors", source: "Boichard, Maignan & Verrier 1997",
    bounds: "Two bounds: not all ancestors were worked through.",
  },
  founder_genomes: {
    name: "Founder genome equivalents",
    meaning: "So many unrelated founders without any loss would hold the variation that is left, losses by chance counted.",
    formula: "1 / (2 mean kinship)", source: "Lacy 1989",
  },
  unknown_genes: {
    name: "Genes of unknown origin",
    meaning: "The share of the genes of the living that comes from unknown parents of animals whose other parent is known; all figures above take them as unrelated.",
    formula: "sum of the shares of unknown parents", source: "Boichard, Maignan & Verrier 1997",
  },
};

export const trend = {
  title: "Inbreeding and relationship over time",
  birth: "Birth time",
  f: {
    title: "Inbreeding and coancestry by birth time",
    description: (first: string, last: string, from: string, to: string) =>
      `Mean inbreeding of those born goes from ${from} in ${first} to ${to} in ${last}. Where coancestry lies higher, relatives are kept from mating for now, and inbreeding follows later.`,
    mean: "mean inbreeding", coancestry: "mean coancestry", axis: "percent",
  },
  max: {
    title: "Largest inbreeding by birth time",
    description: (max: string, when: string) => `The most inbred animal of each birth time; the largest of all is ${max}, in ${when}. A child of full sibs or of parent and offspring has 25 %.`,
    none: "No animal is inbred, as far as the pedigree tells.",
    max: "largest inbreeding", axis: "percent", full_sibs: "full sibs: 25 %",
  },
  completeness: {
    title: "How complete the pedigrees are",
    description: (last: string, when: string) =>
      `Completeness of five generations (MacCluer and others 1983): 100 % if all ancestors are known, 0 if a parent is unknown. In ${when} it is ${last}. Below about 60 %, inbreeding is seen too small.`,
    line: "completeness", axis: "percent",
  },
  generations: {
    title: "How deep the pedigrees are",
    description: (last: string, when: string) =>
      `Complete generations equivalent, the sum over all known ancestors of ½ for a parent, ¼ for a grandparent and so on (Boichard, Maignan & Verrier 1997). In ${when} there are ${last}.`,
    line: "generations", axis: "generations",
  },
  columns: {
    birth: "Born", animals: "Animals", males: "Males", females: "Females", sires: "Sires", dams: "Dams", inbred: "Inbred",
    mean_f: "Mean F, %", max_f: "Largest F, %", coancestry: "Coancestry, %", completeness: "PCI, %",
    generations: "Generations", interval: "Age of parents",
  },
  none: "No birth times are known.",
};

export const births = {
  title: "Who was born, and of how many parents",
  animals: {
    title: "Animals born, by birth time",
    description: (most: string, when: string) => `Most were born in ${when}: ${most}. A last column much lower than the others is often a birth time that is not over.`,
    axis: "animals", males: "males", females: "females", unknown: "sex unknown",
  },
  parents: {
    title: "Parents of those born, by birth time",
    description: "Different sires and dams of the animals of a birth time. The fewer sires, the faster inbreeding rises.",
    axis: "parents", sires: "sires", dams: "dams",
  },
};

export const ages = {
  title: "Who lives now",
  pyramid: {
    title: "Age pyramid",
    description: (males: string, females: string) =>
      `The living by birth time, ${males} males to the left and ${females} females to the right, the youngest on top. From the middle outwards: chosen (strongest, their number at the end), other candidates, others that live (palest).`,
    to_left: "← males", to_right: "females →",
    chosen_here: (n: string) => `${n} chosen`,
    says: (of: {
      birth: string; males: number; females: number; candidate_males: number; candidate_females: number; chosen_males: number; chosen_females: number;
    }) => [
      `born ${of.birth}`,
      `males: ${of.males} living, ${of.candidate_males} candidates, ${of.chosen_males} chosen`,
      `females: ${of.females} living, ${of.candidate_females} candidates, ${of.chosen_females} chosen`,
    ].join("\n"),
    living: "living, no candidates", candidates: "candidates, not chosen", chosen: "chosen", male: "males", female: "females",
  },
  columns: {
    birth: "Born", males: "Males", females: "Females", candidate_males: "Candidate males", candidate_females: "Candidate females",
    chosen_males: "Chosen males", chosen_females: "Chosen females",
  },
  none: "No birth times of the living are known.",
};

export const kinship = {
  title: "Mean kinship: whose genes are rare",
  intro: (mean: string, diversity: string) =>
    `The living have a mean kinship of ${mean}, so gene diversity is ${diversity}. An animal of lower mean kinship carries genes of which few others have copies: bred from, it keeps variation; one of higher mean kinship repeats what is common. Ranked: the candidates.`,
  caption: "Candidates by mean kinship",
  columns: {
    place: "Place", animal: "Animal", sex: "Sex", birth: "Born", mean_kinship: "Mean kinship, %", completeness: "PCI, %",
    offspring: "Offspring", matings: "Matings planned",
  },
  incomplete: "Beware of candidates of incomplete pedigree (low completeness): they seem rare because their ancestors are not recorded.",
};

export const intervals = {
  title: "Generation interval",
  intro: (all: string) => `Parents are on average ${all} time steps old when an offspring is born that itself becomes a parent.`,
  source: "Mean of the four paths (James 1977).",
  figure: {
    title: "Age of the parents by the four paths",
    description: (since: string) => `Filled circles: all times; hollow squares: offspring born since ${since}. The lines show one standard error to both sides.`,
    axis: "time steps", all: "all times", recent: (since: string) => `since ${since}`,
  },
  paths: {
    "sire-son": "sire – son", "sire-daughter": "sire – daughter", "dam-son": "dam – son", "dam-daughter": "dam – daughter", all: "all four",
  } as Record<string, string>,
  columns: { path: "Path", n: "Offspring", mean: "Mean", se: "Standard error", recent_n: "Offspring, recent", recent_mean: "Mean, recent", recent_se: "Standard error, recent" },
  none: "There are no parents of parents with known birth times.",
};

export const effective_size = {
  title: "Effective population size",
  intro: "The number of animals of an ideal population that would become inbred as fast as this one. Below 50 a population is at risk (FAO 1998).",
  by_inbreeding: {
    name: "From inbreeding", formula: "ΔF = 1 − exp(L b), b the regression of ln(1 − F) on birth time, L the generation interval; Ne = 1 / (2 ΔF)",
    source: "Wright 1931; Pérez-Enciso 1995; Falconer & Mackay 1996",
    meaning: "What the matings of the past have made: it lags behind by a generation or two, and depends on who was mated with whom.",
  },
  by_coancestry: {
    name: "From coancestry", formula: "the same with ln(1 − coancestry) of those born in one birth time",
    source: "Cervantes and others 2011",
    meaning: "What the choice of parents has made, whoever was mated with whom: it tells sooner where inbreeding goes.",
  },
  ne: (ne: string) => `Ne = ${ne}`,
  range: (low: string, high: string) => `${low} to ${high} at one standard error`,
  rate: (rate: string, se: string) => `rate ${rate} a generation, standard error ${se}`,
  span: (n: string, first: string, last: string) => `from ${n} values, birth times ${first} to ${last}`,
  none: "None",
  no_upper: "no upper limit",
  figure: {
    title: "Effective size with one standard error, and the limit of 50",
    description: "A bar to the left of the dashed line: the population loses variation faster than is usually thought safe.",
    axis: "effective size", limit: "50 (FAO 1998)",
  },
};

export const founders = {
  title: "Founders",
  intro: (n: string, all: string, half: string) =>
    `${n === all ? `All ${all} founders are` : `${n} of ${all} founders, those that gave most to the living, are`} told here.${half && ` ${half}.`}`,
  half: (n: string) => (n === "1" ? "The first alone makes half of all genes" : `The first ${n} make half of all genes`),
  told: (place: string, name: string, share: string, added: string) => `${place}. ${name}\nshare ${share}\nadded up ${added}`,
  told_added: (n: string, share: string) => `the first ${n} founders\n${share}`,
  figure: {
    title: "What the founders gave, ranked",
    description: (name: string, share: string, n: string) =>
      `Each founder's share of the genes of the living, the largest first: ${name} with ${share}. Shown: the first ${n}; the table holds all that are told.`,
    place: "founder, by rank", share: "percent of the genes",
    added: "The shares added up",
    added_description: (half: string, all: string) =>
      `${half && `${half}. `}All that are told here make ${all} together.`,
    cumulative: "percent of the genes",
  },
  columns: { place: "Place", animal: "Founder", birth: "Born", contribution: "Share of the genes, %", cumulative: "Added up, %" },
  none: "No founder has genes in the living.",
};

export const families = {
  title: "Sizes of families",
  intro: "How many parents have how many recorded offspring. A few very large families make the others' genes rare.",
  sires: { title: "Offspring of sires", none: "No sire is recorded.", description: (n: string, mean: string, most: string) => `${n} sires with ${mean} offspring on average, ${most} at most.` },
  dams: { title: "Offspring of dams", none: "No dam is recorded.", description: (n: string, mean: string, most: string) => `${n} dams with ${mean} offspring on average, ${most} at most.` },
  axis: "offspring", parents_axis: "parents",
  columns: { offspring: "Offspring", sires: "Sires", dams: "Dams" },
  none: "No parents are recorded.",
};

export const sources = {
  title: "Sources of the formulas",
  list: [
    "Boichard D., Maignan L., Verrier É. 1997. The value of using probabilities of gene origin to measure genetic variability in a population. Genetics Selection Evolution 29, 5–23.",
    "Cervantes I., Goyache F., Molina A., Valera M., Gutiérrez J.P. 2011. Estimation of effective population size from the rate of coancestry in pedigreed populations. Journal of Animal Breeding and Genetics 128, 56–63.",
    "Falconer D.S., Mackay T.F.C. 1996. Introduction to quantitative genetics. 4th edition. Longman.",
    "FAO 1998. Secondary guidelines for development of national farm animal genetic resources management plans: management of small populations at risk. Rome.",
    "James J.W. 1977. A note on selection differential and generation length when generations overlap. Animal Production 24, 109–112.",
    "Lacy R.C. 1989. Analysis of founder representation in pedigrees: founder equivalents and founder genome equivalents. Zoo Biology 8, 111–123.",
    "MacCluer J.W. and others 1983. Inbreeding and pedigree structure in Standardbred horses. Journal of Heredity 74, 394–399.",
    "Meuwissen T.H.E., Luo Z. 1992. Computing inbreeding coefficients in large populations. Genetics Selection Evolution 24, 305–313.",
    "Pérez-Enciso M. 1995. Use of the uncertain relationship matrix to compute effective population size. Journal of Animal Breeding and Genetics 112, 327–332.",
    "Wright S. 1922. Coefficients of inbreeding and relationship. American Naturalist 56, 330–338.",
    "Wright S. 1931. Evolution in Mendelian populations. Genetics 16, 97–159.",
  ],
};
