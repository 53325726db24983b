// Numbers and dates as texts.

/** What a number in a cell stands for, by the cell's format. */
export type Kind = "number" | "date" | "time";

/** What a format shows; without a code it is one that every program knows by its number. */
export function kindOf(format: number, code: string | undefined): Kind {
  if (code === undefined) {
    if ((format >= 18 && format <= 21) || format === 45 || format === 47) return "time";
    return (format >= 14 && format <= 22) || (format >= 27 && format <= 36) || (format >= 50 && format <= 58) ? "date" : "number";
  }
  const [shown = ""] = code.replace(/"[^"]*"|\\.|[_*]./g, "").split(";");
  if (/\[[hms]+\]/i.test(shown)) return "number"; // lengths of time
  const letters = shown.replace(/\[[^\]]*\]/g, "").replace(/am\/pm|a\/p/gi, "h");
  if (/[yd]/i.test(letters)) return "date";
  return /[hs]/i.test(letters) ? "time" : /m/i.test(letters) ? "date" : "number";
}

const DAY = 86_400; // seconds
const END = 2_958_466; // of the year 9999, in days
const FROM_1904 = 1462; // days from the first date of 1900's system to that of 1904's

/**
 * A date (2021-03-04), date and time (2021-03-04T10:30:00) or time (10:30:00) from the days since
 * the end of 1899, or since the start of 1904; undefined if it is none.
 */
export function dateText(days: number, kind: "date" | "time", since1904: boolean): string | undefined {
  if (kind === "time" && days >= 0 && days < 1) return new Date(Math.round(days * DAY) * 1000).toISOString().slice(11, 19);
  const seconds = Math.round((since1904 ? days + FROM_1904 : days) * DAY);
  if (!(seconds >= DAY && seconds < END * DAY)) return undefined;
  // Spreadsheets count a 29 February 1900, as day 60, which the calendar does not have.
  if (seconds >= 60 * DAY && seconds < 61 * DAY) return "1900-02-29";
  const start = Date.UTC(1899, 11, seconds < 60 * DAY ? 31 : 30);
  const text = new Date(start + seconds * 1000).toISOString();
  return text.slice(0, seconds % DAY === 0 ? 10 : 19);
}

/** A number's shortest text without an exponent that stands for no other; whole numbers keep all digits. */
export function plainNumber(text: string): string {
  const value = Number(text);
  if (/^-?[1-9]\d*$/.test(text) || !Number.isFinite(value)) return text;
  const shown = String(value);
  const [, sign, whole, part = "", exponent] = /^(-?)(\d)(?:\.(\d+))?e(.+)$/.exec(shown) ?? [];
  if (exponent === undefined) return shown;
  const digits = `${whole}${part}`, point = 1 + Number(exponent);
  return sign + (point > 0 ? digits.padEnd(point, "0") : `0.${"0".repeat(-point)}${digits}`);
}
