// Words of the page's frame.

export const SKIP = "Skip to the report";
export const CONTENTS = "Contents";
export const title = (herd: string, planned: boolean) => `${planned ? "Mating plan" : "Population report"}: ${herd}`;
export const COMPARISON_TITLE = "Comparison of mating plans";
export const made = (time: string, program: string) => `Made on ${time} by ${program}. This page works offline: it holds its data and loads nothing.`;
export const SAVE_JSON = "Save all data as JSON";

export const BROKEN_TITLE = "This report cannot be shown";
export const BROKEN = "The data in this page are not complete or have been changed. Please make the report again with qob-report.";
export const NO_DATA = "This page holds no data: it is the empty form of a report. qob-report fills it.";
export const otherVersion = (theirs: number, ours: number) =>
  `The data are of version ${theirs}, this page shows version ${ours}. Please make the report again with the qob-report that this page belongs to.`;
export const detail = (text: string) => `What was found: ${text}`;
