// Words of the page's frame.

export const skip = (what: string) => `Skip to the ${what}`;
export const CONTENTS = "Contents";
export const title = (herd: string, planned: boolean) => `${planned ? "Mating plan" : "Population report"}: ${herd}`;
export const COMPARISON_TITLE = "Comparison of mating plans";
export const made = (time: string, program: string) => `Made on ${time} by ${program}. This page works offline: it holds its data and loads nothing.`;
export const SAVE_JSON = "Save all data as JSON";

// Of a page that cannot be shown: what it is ("report") and the program that makes it.
export const brokenTitle = (what: string) => `This ${what} cannot be shown`;
export const broken = (what: string, program: string) => `The data in this page are not complete or have been changed. Please make the ${what} again with ${program}.`;
export const noData = (what: string, program: string) => `This page holds no data: it is an empty form. ${program} makes the ${what} of it.`;
export const otherVersion = (theirs: number, ours: number, what: string, program: string) =>
  `The data are of version ${theirs}, this page shows version ${ours}. Please make the ${what} again with the ${program} that belongs to it.`;
export const detail = (text: string) => `What was found: ${text}`;
