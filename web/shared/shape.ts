// What data must look like, said once: a shape reads an unknown value into its type or tells where it
// differs. From these the types of the model follow.

/** Reads a value; throws Misshapen when it is not of the shape. */
export type Shape<T> = (value: unknown) => T;
export type Read<S> = S extends Shape<infer T> ? T : never;

/** Tells where data differ from what was expected, as a path such as plan.matings.f[3]. */
export class Misshapen extends Error {
  constructor(
    readonly expected: string,
    readonly path: readonly (string | number)[] = [],
  ) {
    super(`${path.map((step) => (typeof step === "number" ? `[${step}]` : `.${step}`)).join("").replace(/^\./, "") || "data"}: expected ${expected}`);
  }
}

/** Told apart from misshapen data, as another page may show it. */
export class OtherVersion extends Error {
  constructor(readonly theirs: number, readonly ours: number) {
    super(`version ${theirs}`);
  }
}

function within<T>(step: string | number, read: () => T): T {
  try {
    return read();
  } catch (error) {
    throw error instanceof Misshapen ? new Misshapen(error.expected, [step, ...error.path]) : error;
  }
}

function must(right: boolean, expected: string): asserts right {
  if (!right) throw new Misshapen(expected);
}

/** A number; null, which stands for "none", becomes NaN. */
export const number: Shape<number> = (value) => {
  if (value === null) return NaN;
  must(typeof value === "number", "a number or null");
  return value;
};

export const text: Shape<string> = (value) => {
  must(typeof value === "string", "a text");
  return value;
};

export const flag: Shape<boolean> = (value) => {
  must(typeof value === "boolean", "true or false");
  return value;
};

export const oneOf = <T extends string | number>(...allowed: readonly T[]): Shape<T> => (value) => {
  must(allowed.includes(value as T), `one of ${allowed.join(", ")}`);
  return value as T;
};

export const list = <T>(item: Shape<T>): Shape<T[]> => (value) => {
  must(Array.isArray(value), "a list");
  let at = 0;
  try {
    return value.map((each, i) => ((at = i), item(each)));
  } catch (error) {
    throw error instanceof Misshapen ? new Misshapen(error.expected, [at, ...error.path]) : error;
  }
};

/** A list of so many values, each of its own shape. */
export const tuple = <T extends unknown[]>(...shapes: { [K in keyof T]: Shape<T[K]> }): Shape<T> => (value) => {
  must(Array.isArray(value) && value.length === shapes.length, `a list of ${shapes.length}`);
  return shapes.map((shape, i) => within(i, () => shape(value[i]))) as T;
};

export const orNull = <T>(shape: Shape<T>): Shape<T | null> => (value) => (value === null ? null : shape(value));

function members(value: unknown): Record<string, unknown> {
  must(typeof value === "object" && value !== null && !Array.isArray(value), "an object");
  return value as Record<string, unknown>;
}

type Fields = Record<string, Shape<unknown>>;
type Of<F extends Fields> = { -readonly [K in keyof F]: Read<F[K]> };

export const object = <F extends Fields>(fields: F): Shape<Of<F>> => (value) => {
  const from = members(value);
  const read = ([name, shape]: [string, Shape<unknown>]) => [name, within(name, () => shape(from[name]))];
  return Object.fromEntries(Object.entries(fields).map(read)) as Of<F>;
};

/** Any names, each with a value of the shape. */
export const named = <T>(shape: Shape<T>): Shape<Map<string, T>> => (value) =>
  new Map(Object.entries(members(value)).map(([name, each]) => [name, within(name, () => shape(each))]));

export const numbers: Shape<Record<string, number>> = (value) => Object.fromEntries(named(number)(value));

/** What may be left out, and what it is then. */
export const optional = <T>(shape: Shape<T>, otherwise: T): Shape<T> => (value) => (value === undefined ? otherwise : shape(value));

/** One row; assigned name by name, as there may be many. */
function row<R>(names: readonly string[], columns: readonly unknown[][], at: number): R {
  const made: Record<string, unknown> = {};
  for (let i = 0; i < names.length; i++) made[names[i]!] = columns[i]![at];
  return made as R;
}

/** Columns of equal length, read as rows: {"f": [0, 0.1]} becomes [{f: 0}, {f: 0.1}]. */
export const columns = <F extends Fields>(fields: F): Shape<Of<F>[]> => (value) => {
  const from = members(value);
  const names = Object.keys(fields);
  const read = names.map((name) => within(name, () => list(fields[name] as Shape<unknown>)(from[name])));
  const length = read[0]?.length ?? 0;
  must(read.every((column) => column.length === length), "columns of equal length");
  return Array.from({ length }, (_, at) => row<Of<F>>(names, read, at));
};

/** Reads JSON whose head names a format and its version, before any more of it is looked at; throws
 * Misshapen, OtherVersion or SyntaxError. */
export function headed<F extends string>(json: string, version: number, ...formats: readonly F[]): { format: F; data: unknown } {
  const data: unknown = JSON.parse(json);
  const head = object({ format: oneOf(...formats), version: number })(data);
  if (head.version !== version) throw new OtherVersion(head.version, version);
  return { format: head.format, data };
}
