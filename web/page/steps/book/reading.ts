// How the table is read, where the table itself does not tell.

import { fill, h } from "../../../shared/dom.js";
import { STEPS, type Choices } from "../../choices.js";
import { fields, number, select, text, tick, type Control } from "../../fields.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

export function reading(work: Work): Control {
  const { header, dates, decimals, unknown, ...rest } = words.book.reading;
  const choose = (some: Partial<Choices>) => work.choose(some);
  const table = fields(rest.title, [
    tick({ ...header, read: () => work.choices.header, write: (now) => choose({ header: now, columns: [] }) }),
    select({ ...dates, options: () => Object.entries(dates.options), read: () => work.choices.dates, write: (now) => choose({ dates: now as Choices["dates"] }) }),
    tick({ ...decimals, read: () => work.choices.decimals, write: (now) => choose({ decimals: now }) }),
    text({ ...unknown, read: () => work.choices.unknown.join(", "), write: (now) => choose({ unknown: parts(now) }) }),
  ]);
  const time = timing(work);
  return {
    element: h("details", {}, h("summary", {}, rest.more), table.element, time.element),
    show: () => (table.show(), time.show()),
  };
}

const parts = (list: string): string[] => list.split(/[,;]/).map((word) => word.trim()).filter((word) => word !== "");

/** The time step, with the program's words for why it took it. */
function timing(work: Work): Control {
  const { step, days, title } = words.book.timing;
  const DAYS = "days";
  const some = number({ ...days, range: () => [1, 100_000], read: () => work.choices.days, write: (now) => work.choose({ days: now }) });
  const which = select({
    ...step, options: () => [...STEPS.map((name) => [name, step.options[name]] as const), [DAYS, step.days]],
    read: () => (work.choices.days !== null ? DAYS : work.choices.step),
    write: (now) => work.choose(now === DAYS ? { days: 30 } : { step: now as Choices["step"], days: null }),
  });
  const why = h("p", { class: "note" });
  const all = fields(title, [which, some], why);
  const show = () => {
    all.show();
    some.element.hidden = work.choices.days === null;
    const text = work.latest?.step.text ?? "";
    fill(why, text && words.book.timing.why(text));
  };
  return { element: all.element, show };
}
