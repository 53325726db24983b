// What a reader reads about the search.

export const title = "The search";
export const intro =
  "The plan was found by a search that keeps many plans, crosses and changes them and lets the best survive, generation by generation. Whether it ran long enough is seen from how the best plan improved.";

export const facts = {
  generations: "Generations", found: "Best plan found in generation", since: "Generations without improvement", restarts: "Restarts", value: "Value of the best plan",
};

/** Whether it looks finished: a heading and why. */
export const verdict = {
  stopped: (since: string) => ({
    title: "The search looks finished.",
    text: `It ended by itself, as ${since} generations brought no better plan.`,
  }),
  quiet: (since: string, share: string) => ({
    title: "The search looks finished.",
    text: `It reached its last generation, but had found nothing better for ${since} generations, ${share} of the whole search.`,
  }),
  restless: (found: string, ended: string) => ({
    title: "The search may not be finished.",
    text: `It still found a better plan in generation ${found} of ${ended}, shortly before its end. A longer search (generations in the parameter file) may find a better plan.`,
  }),
  late: (share: string) => `In the second half of the search the best plan gained ${share} of all its improvement.`,
};

export const picture = {
  axis: "value of the plan", generation: "generation", best: "best", median: "median", worst: "worst", found: "found",
};
export const best = {
  title: "How the best plan improved",
  description: (best: string, found: string) => `It reached its value, ${best}, in generation ${found}. A long level line at the end means that more search would hardly help.`,
};
export const all = {
  title: "All plans of a generation",
  description: "The best plan (line), the median (dashed) and the worst (dotted). Values of the first generations that lie far below are left out.",
  restarts: (at: string) => ` After vertical dashed lines (generation ${at}) all plans but the best were changed at random, to find others.`,
};

export const columns = {
  generation: "Generation", best: "Best", median: "Median", worst: "Worst", mean: "Mean", sd: "Standard deviation",
  merit: "Merit of the best", relationship: "Relationship of the best", rate: "Rate of inbreeding of the best, %",
};
