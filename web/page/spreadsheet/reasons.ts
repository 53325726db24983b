// Why a spreadsheet cannot be read, in English: what it is, and what to do.

const SAVE = "Open it in your spreadsheet program and save it as .xlsx or as “CSV UTF-8”.";
const MAKE = "Make the file again; if that does not help, save it as “CSV UTF-8” from your spreadsheet program.";
const FEWER = "Save the rows and columns that are needed as a file of their own, or the sheet as “CSV UTF-8”.";

const listed = (names: readonly string[]) => names.map((name) => `“${name}”`).join(", ");

export const reasons = {
  unknown: () => `This is no workbook (.xlsx). If it is a table of another program: ${SAVE}`,
  oldFormat: () => `This is a workbook in the old format .xls. ${SAVE}`,
  encrypted: () => `This workbook is protected by a password. Open it in your spreadsheet program, take the password off and save it again.`,
  openDocument: () => `This is an OpenDocument spreadsheet (.ods). ${SAVE}`,
  numbers: () => `This is a spreadsheet of Apple Numbers. Open it in Numbers and export it as Excel (.xlsx) or as CSV.`,
  binary: () => `This is a workbook in the binary format .xlsb. ${SAVE}`,
  noWorkbook: () => "This is a ZIP archive, but no workbook. If a table is in it, unpack it first.",
  damaged: () => `This workbook is damaged or cut off, as by a download that did not end. Get the file again. If it opens in your spreadsheet program, save it there again as .xlsx.`,
  forged: () => `This file is put together as no spreadsheet program does it, and is not read. ${MAKE}`,
  tooLarge: (megabytes: number) => `This workbook is too large to be read here (${megabytes} MB unpacked). ${FEWER}`,
  tooManyCells: (sheet: string) => `The sheet “${sheet}” holds more than can be read here: more than 10 million cells, or 200 MB of text. ${FEWER}`,
  outside: (sheet: string) => `The sheet “${sheet}” has a cell outside of the 1,048,576 rows and 16,384 columns that a sheet can have. ${MAKE}`,
  noSheet: (sheet: string, names: readonly string[]) => `The workbook has no sheet “${sheet}”. Its sheets are ${listed(names)}.`,
  empty: (names: readonly string[]) => names.length === 1 ? `The sheet ${listed(names)} is empty.` : "All sheets of this workbook are empty.",
};

export type Reasons = typeof reasons;
