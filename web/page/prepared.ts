// What qob-prepare tells of a herd book, as it writes it; types follow from the shapes.

import { columns, flag, headed, list, number, object, orNull, text, tuple, type Read } from "../shared/shape.js";

const reason = object({ reason: text, count: number, text });
const sex = object({ sex: text, candidates: number, parents_known: number, matings: number, completeness: number, parent_ages: orNull(tuple(number, number)), left_out: list(reason) });

const prepared = object({
  program: text, file: text, sound: flag, refused: text, decoding: text, header: number, rows: number,
  columns: list(object({ heading: text, field: orNull(text), how: text, values: list(text) })),
  preview: object({ rows: list(number), cells: list(list(text)) }),
  step: object({ name: text, text }),
  counts: object({ animals: number, founders: number, completeness: number, males: number, females: number, unknown_sex: number }),
  sexes: list(sex), planned_matings: number,
  kinds: list(object({ kind: text, title: text, remedy: text, acceptable: flag, accepted: flag, severity: text, count: number })),
  findings: columns({ row: number, column: text, value: text, severity: text, kind: text, text, done: text }), findings_total: number,
  animals: columns({ identifier: text, name: text, sex: number, birth: text, age: number, completeness: number, ebv: number, matings: number, left_out: text }),
  summary: text,
});

export type Prepared = Read<typeof prepared>;
export type Animal = Prepared["animals"][number];
export type Finding = Prepared["findings"][number];

/** The kinds of faults that keep the herd book from being used. */
export const hindering = ({ kinds }: Prepared): Prepared["kinds"] => kinds.filter(({ severity, accepted }) => severity === "fault" && !accepted);

const VERSION = 1;

/** Reads it; throws Misshapen, OtherVersion or SyntaxError. */
export const read = (json: string): Prepared => prepared(headed(json, VERSION, "qob-prepared").data);
