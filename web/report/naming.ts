// How chosen animals are called where room is short. Herd books give identifiers of 15 characters that
// begin alike: the end that tells the chosen ones apart is strong and the rest light, and where there is
// no room for all of it the end stands alone, the whole identifier under the pointer.

import { h, type Child } from "../shared/dom.js";
import { animal, called, type Animal, type Result } from "./model.js";

export interface Naming {
  /** The whole identifier, its end strong. */
  id: (of: Animal) => Child;
  /** The name, or the end of the identifier. */
  brief: (of: Animal) => string;
}

const SHORTEST = 4;
const LIGHT = 4;       // a start of fewer characters is not worth a difference
const LONGEST = 14;    // of a name that stands for its animal

export function naming(result: Result): Naming {
  const chosen = new Set((result.plan?.matings ?? []).flatMap(({ sire, dam }) => [sire, dam]));
  const animals = [...chosen].map((place) => animal(result, place));
  const end = telling(animals.map(({ id }) => id));
  const named = new Map<string, number>();
  for (const { name } of animals) named.set(name, (named.get(name) ?? 0) + 1);
  const parted = (id: string) => id.length >= end + LIGHT;
  return {
    id: ({ id }) => (parted(id) ? [h("span", { class: "light" }, id.slice(0, -end)), h("b", {}, id.slice(-end))] : id),
    brief: ({ id, name }) => {
      if (name && name.length <= LONGEST && named.get(name) === 1) return name;
      return parted(id) ? `…${id.slice(-end)}` : id;
    },
  };
}

/** How many last characters tell identifiers apart. */
function telling(ids: readonly string[]): number {
  const longest = ids.reduce((most, { length }) => Math.max(most, length), 0);
  for (let end = SHORTEST; end < longest; ++end) {
    if (new Set(ids.map((id) => id.slice(-end))).size === new Set(ids).size) return end;
  }
  return Math.max(SHORTEST, longest);
}

/** Other males for a female with the F of their offspring, on one line. */
export function inBrief(result: Result, { brief }: Naming, males: readonly (readonly [sire: number, f: string])[]): Child {
  return males.map(([sire, f], i) => {
    const of = animal(result, sire);
    return [i > 0 && " ", h("span", { class: "brief-male", title: called(of) }, brief(of), " ", h("b", {}, f))];
  });
}
