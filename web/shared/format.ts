// Numbers as readers see them, in their language. What there is none of (NaN) is a dash.

export const NONE = "–";

let locale = "en-GB";
const formats = new Map<string, Intl.NumberFormat>();

/** From now on numbers are written as there. */
export function writeAs(wanted: string): void {
  locale = wanted;
  formats.clear();
}

function format(minimum: number, maximum: number): Intl.NumberFormat {
  const key = `${minimum}-${maximum}`;
  const known = formats.get(key);
  if (known) return known;
  const made = new Intl.NumberFormat(locale, {
    minimumFractionDigits: minimum,
    maximumFractionDigits: maximum,
  });
  formats.set(key, made);
  return made;
}

/** A number with exactly so many decimals: 1,234.50. */
export function fixed(value: number, decimals: number): string {
  if (!Number.isFinite(value)) return Number.isNaN(value) ? NONE : value > 0 ? "∞" : "−∞";
  const text = format(decimals, decimals).format(value);
  return text.replace(/^-(?=[0.,]*$)/, "").replace("-", "−");
}

/** A count: 20,000. */
export function count(value: number): string {
  return fixed(value, 0);
}

/** A share or coefficient as percent: percent(0.0125) is "1.25 %". */
export function percent(value: number, decimals = 2): string {
  return Number.isFinite(value) ? `${fixed(value * 100, decimals)}\u00a0%` : NONE;
}

/** A share rounded down, so that only the whole is 100.00 %. */
export function atLeast(share: number): string {
  return percent(Math.floor(share * 1e4 + 1e-6) / 1e4);
}

/** Enough decimals for about so many digits that tell: 0.00123, 12.3, 1,234. */
export function digits(value: number, wanted = 3): string {
  if (!Number.isFinite(value) || value === 0) return fixed(value, 0);
  const before = Math.floor(Math.log10(Math.abs(value))) + 1;
  return fixed(value, Math.min(8, Math.max(0, wanted - before)));
}

/** As people write it: 64.51, 0.005, 1,000,000. */
export function short(value: number): string {
  return Number.isNaN(value) ? NONE : value.toLocaleString(locale, { maximumSignificantDigits: 6 }).replace("-", "−");
}

/** Bytes in words: 4.1 MB. */
export function bytes(value: number): string {
  if (value < 1000) return value.toLocaleString(locale, { style: "unit", unit: "byte", unitDisplay: "long" }).replace(" ", "\u00a0");
  return value < 1e6 ? `${fixed(value / 1e3, 1)}\u00a0kB` : `${fixed(value / 1e6, 1)}\u00a0MB`;
}

/** A count with its noun: counted(1, "mating", "matings") is "1 mating". */
export function counted(value: number, one: string, more: string): string {
  return `${count(value)}\u00a0${value === 1 ? one : more}`;
}
