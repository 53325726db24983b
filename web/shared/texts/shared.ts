// Words that all parts of a page share.

export const SEARCH = "Search";
export const SAVE_CSV = "Save as CSV";
export const AS_TABLE = "Show as table";
export const found = (some: string, all: string) => `${some} of ${all}`;
export const printed = (some: string, all: string) =>
  `The first ${some} of ${all} rows are printed. All of them are in the tables that the page saves.`;
