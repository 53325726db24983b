// The English words, section by section, of which there is a translation.

export * as beware from "./beware.js";
export * as candidates from "./candidates.js";
export * as frame from "./frame.js";
export * as made from "./made.js";
export * as matings from "./matings.js";
export * as population from "./population.js";
export * as rules from "./rules.js";
export * as search from "./search.js";
export * as shared from "./shared.js";
export * as summary from "./summary.js";
