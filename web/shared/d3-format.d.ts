// What is used of d3-format, by which the plotting library writes numbers and which comes without types.

declare module "d3-format" {
  export function formatDefaultLocale(marks: { decimal: string; thousands: string; grouping: number[]; currency: [string, string] }): void;
}
