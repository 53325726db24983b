// What is asked of a candidate.

import { h } from "../../../shared/dom.js";
import type { Choices } from "../../choices.js";
import { fields, number, select, tick, type Control, type Options } from "../../fields.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

const OLDEST = 1000;

export function conditions(work: Work): Control {
  const parts = [sex(work, "males"), sex(work, "females"), alive(work), known(work), values(work)];
  const element = h("div", { class: "conditions" }, parts.map(({ element }) => element));
  return { element, show: () => parts.forEach((part) => part.show()) };
}

/** How often an animal of a sex may be mated, and at what ages. */
function sex(work: Work, which: "males" | "females"): Control {
  const { sexNames, sexFields, anyMatings, anyAge } = words.candidates;
  const now = () => work.choices[which];
  const field = (key: "matings" | "from" | "to", any: string, range: () => readonly [number, number]) => number({
    ...sexFields[key], any, range, read: () => now()[key], write: (value) => work.choose({ [which]: { ...now(), [key]: value } }),
  });
  return fields(sexNames[which === "males" ? 1 : 2], [
    field("matings", anyMatings, () => [1, 1_000_000]),
    field("from", anyAge, () => [0, now().to ?? OLDEST]), field("to", anyAge, () => [now().from ?? 0, OLDEST]),
  ]);
}

/** A column that tells who lives, and what it says of those. It is chosen when both are told. */
function alive(work: Work): Control {
  const { alive } = words.candidates;
  let wanted: string | null = null;
  const column = () => wanted ?? work.choices.alive?.column ?? "";
  const which = select({
    ...alive.column, options: () => [["", alive.everybody], ...columnsOf(work).map(({ name }) => [name, name] as const)], read: column,
    write: (now) => {
      wanted = now;
      if (now === "") work.choose({ alive: null });
      show();
    },
  });
  const value = select({
    ...alive.value, options: () => saying(work, column()), read: () => (wanted === null && work.choices.alive ? SAYS + work.choices.alive.value : ""),
    write: (now) => now !== "" && work.choose({ alive: { column: column(), value: now.slice(SAYS.length) } }),
  });
  const all = fields(alive.title, [which, value]);
  function show(): void {
    if (wanted === "" || work.choices.alive?.column === wanted) wanted = null;
    all.show();
    value.element.hidden = column() === "";
  }
  return { element: all.element, show };
}

const SAYS = "=";  // before a value, which may be empty

/** What a column may say of those that live; and first, that this is still to be chosen. */
function saying(work: Work, column: string): Options {
  const { pick, empty } = words.candidates.alive;
  const chosen = work.choices.alive?.column === column ? [work.choices.alive.value] : [];
  const values = new Set([...(columnsOf(work).find(({ name }) => name === column)?.values ?? []), ...chosen]);
  return [["", pick], ...[...values].map((value) => [SAYS + value, value || empty] as const)];
}

/** The columns that say one of a few things, by what the program calls them. */
function columnsOf({ latest, choices }: Work): { name: string; values: readonly string[] }[] {
  const all = (latest?.columns ?? []).map(({ heading, values }, i) => ({ name: latest!.header > 0 ? heading : String(i + 1), values }));
  return all.filter(({ name, values }, i) => name !== "" && (values.length > 1 || name === choices.alive?.column) && all.findIndex((each) => each.name === name) === i);
}

/** How much of the pedigree is to be known. */
function known(work: Work): Control {
  const { known } = words.candidates;
  return fields(known.title, [
    number({ ...known.completeness, range: () => [0, 100], any: "0", unit: "%", read: () => Math.round(work.choices.completeness * 100) || null, write: (now) => work.choose({ completeness: (now ?? 0) / 100 }) }),
    tick({ ...known.parents, read: () => work.choices.parentsKnown, write: (now) => work.choose({ parentsKnown: now }) }),
  ]);
}

function values(work: Work): Control {
  const { values } = words.candidates;
  return fields(values.title, [select({
    ...values.missing, options: () => Object.entries(values.options), read: () => work.choices.ebv, write: (now) => work.choose({ ebv: now as Choices["ebv"] }),
  })]);
}
