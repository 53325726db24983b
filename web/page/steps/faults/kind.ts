// One kind of findings: how many, what it means, what to do, and where they are.

import { fill, h } from "../../../shared/dom.js";
import { count, NONE } from "../../../shared/format.js";
import { table, type Column } from "../../../shared/table.js";
import type { Finding, Prepared } from "../../prepared.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";

type Kind = Prepared["kinds"][number];

export interface KindView { element: HTMLDetailsElement; show: (kind: Kind, data: Prepared) => void }

/** It unfolds; its table is made when it is wanted, and stays as long as the findings are the same. */
export function kindView(work: Work, name: string): KindView {
  const title = h("span"), number = h("span", { class: "badge" }), advice = h("div"), place = h("div");
  const accepting = acceptance(work, name);
  const element = h("details", { class: "kind", open: name === "table" }, h("summary", {}, number, title), advice, accepting.element, place);
  let rows: readonly Finding[] = [];
  let all = 0;
  let made: readonly Finding[] | null = null;
  const draw = () => {
    if (!element.open || made === rows) return;
    fill(place, findings(rows, name), rows.length < all && h("p", { class: "note" }, words.faults.first(count(rows.length), count(all))));
    made = rows;
  };
  element.addEventListener("toggle", draw);
  function show(kind: Kind, { findings }: Prepared): void {
    fill(title, titleOf(kind));
    fill(number, count(kind.count));
    element.classList.toggle("hinders", kind.severity === "fault" && !kind.accepted);
    fill(advice, advised(name).map((text) => h("p", {}, text)));
    accepting.show(kind);
    const now = findings.filter((each) => each.kind === name);
    if (!alike(now, rows)) rows = now;
    all = kind.count;
    draw();
  }
  return { element, show };
}

/** What a kind is called in the language of the page. */
export const titleOf = ({ kind, title }: Kind): string => new Map(Object.entries(words.faults.titles)).get(kind) ?? title;

/** What a kind means and what to do about it; a program that is newer may have kinds unknown here. */
const advised = (name: string): readonly string[] => new Map(Object.entries(words.faults.kinds)).get(name) ?? [];

/** A box that is ticked if a kind is not to hinder. */
function acceptance(work: Work, name: string): { element: HTMLElement; show: (kind: Kind) => void } {
  const box = h("input", { type: "checkbox", onchange: () => work.choose({ accept: toggled(work.choices.accept, name, box.checked) }) });
  const means = h("span");
  const element = h("p", { class: "tick" }, h("label", {}, box, means));
  const show = ({ acceptable, accepted, remedy }: Kind) => {
    element.hidden = !acceptable;
    box.checked = accepted;
    const known = new Map(Object.entries(words.faults.remedies)).get(name);
    fill(means, words.faults.accept(known ?? remedy));
  };
  return { element, show };
}

const toggled = (list: readonly string[], name: string, wanted: boolean): string[] => [...list.filter((each) => each !== name), ...(wanted ? [name] : [])];

const KEYS = ["row", "column", "value", "text", "done"] as const;

const alike = (a: readonly Finding[], b: readonly Finding[]): boolean =>
  a.length === b.length && a.every((each, i) => KEYS.every((key) => each[key] === b[i]![key]));

/** What the command line offers; here the advice on the kind tells where it is chosen. */
const OPTIONS = / : expected .*--.*$/;

function findings(rows: readonly Finding[], name: string): HTMLElement {
  const { columns, caption } = words.faults.table;
  const text = (key: "column" | "value" | "text" | "done", wrap = false): Column<Finding> => ({ key, title: columns[key], value: (row) => row[key], wrap });
  const filled = (key: "column" | "value" | "done") => rows.some((row) => row[key] !== "");
  return table<Finding>([
    { key: "row", title: columns.row, value: ({ row }) => row || NaN, show: ({ row }) => (row > 0 ? String(row) : NONE) },
    ...(filled("column") ? [text("column")] : []), ...(filled("value") ? [text("value", true)] : []),
    { ...text("text", true), show: ({ text }) => text.replace(OPTIONS, "") }, ...(filled("done") ? [text("done", true)] : []),
  ], rows, { caption: caption(name), file: `${name}.csv` });
}
