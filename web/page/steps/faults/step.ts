// Step 2: what is wrong or odd in the herd book, by kind, and what can be done about it.

import { facts, fill, h, link } from "../../../shared/dom.js";
import { csv, download } from "../../../shared/download.js";
import { count, percent } from "../../../shared/format.js";
import { hindering, type Prepared } from "../../prepared.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import { stem, type Work } from "../../work.js";
import { kindView, type KindView } from "./kind.js";

const FEW = 5;  // findings that hinder are unfolded by themselves

export function step(work: Work): Step {
  const said = h("div", { role: "status" });
  const figures = h("div");
  const lists = { hinder: list(words.faults.hinder), accepted: list(words.faults.accepted), told: list(words.faults.told) };
  const views = new Map<string, KindView>();
  const saving = h("div", { class: "tools" }, download(words.faults.save, "findings.csv", "text/csv", () => findings(work)));
  let drawn: Prepared | null = null;
  let few = new Set<string>();  // kinds that were unfolded
  function show(): void {
    const data = work.latest!;
    if (data === drawn) return;
    drawn = data;
    fill(said, verdict(data));
    fill(figures, data.counts.animals > 0 && counts(data));
    for (const place of Object.values(lists)) place.clear();
    const before = few, hinder = hindering(data);
    few = new Set(sum(hinder) <= FEW ? hinder.map(({ kind }) => kind) : []);
    for (const kind of data.kinds) {
      const view = views.get(kind.kind) ?? kindView(work, kind.kind);
      views.set(kind.kind, view);
      if (few.has(kind.kind) && !before.has(kind.kind)) view.element.open = true;
      view.show(kind, data);
      lists[kind.severity !== "fault" ? "told" : kind.accepted ? "accepted" : "hinder"].add(view.element);
    }
    const focus = document.activeElement;
    for (const place of Object.values(lists)) place.show();
    if (focus instanceof HTMLElement && body.contains(focus)) focus.focus({ preventScroll: true });
    saving.hidden = data.kinds.length === 0;
  }
  const body = h("div", {}, said, figures, Object.values(lists).map(({ element }) => element), saving);
  return { id: "faults", title: words.faults.title, body, ready: () => work.latest !== null, show };
}

/** Kinds below a heading; they are moved no more than needed. */
function list({ title, help }: { title: string; help: string }) {
  const place = h("div");
  const element = h("section", { class: "group" }, h("h3", {}, title), h("p", { class: "note" }, help), place);
  let wanted: HTMLElement[] = [];
  return {
    element,
    clear: () => void (wanted = []),
    add: (view: HTMLElement) => void wanted.push(view),
    show: () => {
      element.hidden = wanted.length === 0;
      const same = wanted.length === place.children.length && wanted.every((view, i) => place.children[i] === view);
      if (!same) fill(place, wanted);
    },
  };
}

const sum = (kinds: Prepared["kinds"]): number => kinds.reduce((total, { count }) => total + count, 0);

function verdict(data: Prepared): HTMLElement {
  const { verdicts } = words.faults;
  const kinds = hindering(data), hinder = sum(kinds);
  const accepted = sum(data.kinds.filter(({ severity, accepted }) => severity === "fault" && accepted));
  const acceptable = kinds.some(({ acceptable }) => acceptable);
  if (kinds.length > 0 && kinds.every(({ kind }) => kind === "ebv")) return h("p", { class: "warning" }, verdicts.noValues(hinder), " ", link("candidates", verdicts.toValues));
  if (!data.sound) return h("p", { class: "warning serious" }, hinder > 0 ? verdicts.hinder(hinder) : verdicts.refused, hinder > 0 && ` ${acceptable ? verdicts.mendOrAccept : verdicts.mend}`);
  return h("p", { class: "warning good" }, verdicts.good(data.counts.animals), accepted > 0 && ` ${verdicts.accepted(accepted)}`);
}

function counts({ counts: { animals, founders, completeness, males, females, unknown_sex } }: Prepared): HTMLElement {
  const { names, notes } = words.faults.counts;
  return facts(
    [names.animals, count(animals)], [names.males, count(males)], [names.females, count(females)],
    ...(unknown_sex > 0 ? [[names.unknown_sex, count(unknown_sex), notes.unknown_sex] as const] : []),
    [names.founders, count(founders), notes.founders], [names.completeness, percent(completeness, 0), notes.completeness]);
}

/** All findings, as the program has written them. */
function findings({ found, book, latest }: Work): string {
  const written = found.state === "ready" ? found.files.find(([name]) => name === `${stem(book!.name)}.faults.csv`) : undefined;
  if (written) return new TextDecoder().decode(written[1]);
  const keys = ["row", "column", "value", "severity", "kind", "text", "done"] as const;
  return csv(keys, (latest?.findings ?? []).map((each) => keys.map((key) => each[key])));
}
