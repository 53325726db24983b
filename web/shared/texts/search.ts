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
    text: `It ended by itself after ${since} generations without a better plan.`,
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
  title: "Value of the plans by generation",
  description: (best: string, found: string) =>
    `The best plan (thick line) reached ${best} in generation ${found}. The median (dashed) and the worst plan (dotted) of each generation are shown where they fit: the scale is that of the best.`,
  restarts: (at: string) => ` A vertical dashed line is a restart, in which all plans but the best were changed at random: generation ${at}.`,
  axis: "value of the plan", generation: "generation",
  best: "best", median: "median", worst: "worst", restart: "restart", found: "found",
};

export const columns = {
  generation: "Generation", best: "Best", median: "Median", worst: "Worst", mean: "Mean", sd: "Standard deviation",
  merit: "Merit of the best", relationship: "Relationship of the best", rate: "Rate of inbreeding of the best, %",
};
