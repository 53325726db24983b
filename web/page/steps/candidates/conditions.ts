// What is asked of a candidate.

import { fill, h, link, type Child } from "../../../shared/dom.js";
import type { Choices } from "../../choices.js";
import { fields, number, select, tick, type Control, type Options } from "../../fields.js";
import { words } from "../../texts/words.js";
import { hindering } from "../../prepared.js";
import { suggested, type Work } from "../../work.js";

const OLDEST = 1000;

export function conditions(work: Work): Control {
  const parts = [sex(work, "males"), sex(work, "females"), alive(work), known(work), values(work)];
  const told = h("p", { class: "warning", hidden: true });
  const element = h("div", {}, told, h("div", { class: "conditions" }, parts.map(({ element }) => element)));
  const show = () => {
    told.hidden = !isSuggested(work);
    if (!told.hidden) fill(told, words.candidates.suggested(work.choices.females.to !== null));
    for (const part of parts) part.show();
  };
  return { element, show };
}

/** Whether what is asked is still what the page has suggested. */
function isSuggested({ choices: { males, females }, latest }: Work): boolean {
  const recorded = latest?.columns.some(({ field }) => field === "matings") ?? true;
  return !recorded && JSON.stringify({ males, females }) === JSON.stringify(suggested(latest!));
}

/** How often an animal of a sex may be mated, and at what ages. */
function sex(work: Work, which: "males" | "females"): Control {
  const { sexNames, sexFields, anyMatings, anyAge } = words.candidates;
  const now = () => work.choices[which];
  const age = h("span");
  const field = (key: "matings" | "from" | "to", help: Child, any: string, range: () => readonly [number, number]) => number({
    name: sexFields[key].name, help, any, range, read: () => now()[key], write: (value) => work.choose({ [which]: { ...now(), [key]: value } }),
  });
  const all = fields(sexNames[which === "males" ? 1 : 2], [
    field("matings", sexFields.matings.help, anyMatings, () => [1, 1_000_000]),
    field("from", age, anyAge, () => [0, now().to ?? OLDEST]), field("to", sexFields.to.help, anyAge, () => [now().from ?? 0, OLDEST]),
  ]);
  const show = () => {
    all.show();
    const text = sexFields.from.help(yearOfOffspring(work));
    if (age.textContent !== text) fill(age, text);
  };
  return { element: all.element, show };
}

/** The year after the last that is recorded, if the program counts in years. */
function yearOfOffspring({ latest }: Work): number | null {
  const last = latest?.step.name === "year" && /^years \d+ to (\d{4})\b/.exec(latest.step.text)?.[1];
  return last ? Number(last) + 1 : null;
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
      work.choose({ alive: null });  // what another column said holds no more
      show();
    },
  });
  const value = select({
    ...alive.value, options: () => saying(work, column()), read: () => (wanted === null && work.choices.alive ? SAYS + work.choices.alive.value : ""),
    write: (now) => now !== "" && work.choose({ alive: { column: column(), value: now.slice(SAYS.length) } }),
  });
  const all = fields(alive.title, [which, value]);
  function show(): void {
    if (work.choices.alive !== null || !columnsOf(work).some(({ name }) => name === wanted)) wanted = null;
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

/** The columns that may tell, by what the program calls them: none that holds something else. */
function columnsOf({ latest, choices }: Work): { name: string; values: readonly string[] }[] {
  const tells = ["alive", "herd", null];
  const all = (latest?.columns ?? []).map(({ heading, field, values }, i) => ({ name: latest!.header > 0 ? heading : String(i + 1), field, values }));
  const apart = (values: readonly string[]) => values.length > 1 || values[0] === "";
  return all.filter(({ name, field, values }, i) =>
    name !== "" && !name.includes("=") && all.findIndex((each) => each.name === name) === i && (name === choices.alive?.column || (tells.includes(field) && apart(values))));
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
  const told = h("div", { role: "status" });
  const all = fields(values.title, [select({
    ...values.missing, options: () => Object.entries(values.options), read: () => work.choices.ebv, write: (now) => work.choose({ ebv: now as Choices["ebv"] }),
  })], told);
  let said = "";
  const show = () => {
    all.show();
    const text = lacking(work);
    if (text !== said) fill(told, (said = text) && h("p", { class: "warning serious" }, text, " ", link("faults", words.candidates.toFaults)));
  };
  return { element: all.element, show };
}

/** What hinders for want of breeding values, and what can be chosen; "" if nothing does. */
function lacking({ choices, latest }: Work): string {
  const { without, noColumn } = words.candidates.values;
  const missing = latest ? hindering(latest).find(({ kind }) => kind === "ebv")?.count ?? 0 : 0;
  if (missing > 0) return without(missing);
  const none = latest !== null && !latest.sound && choices.ebv === "read" && latest.columns.every(({ field }) => field !== "ebv");
  return none && latest.sexes.some(({ candidates }) => candidates > 0) ? noColumn : "";
}
