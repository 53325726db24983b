// Step 3: who may be mated, and who then remains.

import { facts, fill, group, h } from "../../../shared/dom.js";
import { count, percent } from "../../../shared/format.js";
import { plain } from "../../../shared/table.js";
import type { Prepared } from "../../prepared.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";
import { animals } from "./animals.js";
import { picture } from "./picture.js";
import { reasonName, reasonsOf } from "./reasons.js";
import { conditions } from "./conditions.js";

export function step(work: Work): Step {
  const asked = conditions(work);
  const remain = h("div"), sum = h("p", { role: "status", class: "lead" });
  const all = animals();
  let drawn: Prepared | null = null;
  function show(): void {
    asked.show();
    const data = work.latest!;
    if (data === drawn) return;
    drawn = data;
    const any = data.animals.length > 0;
    fill(sum, any && words.candidates.sum(data.sexes[0]!.candidates, data.sexes[1]!.candidates));
    fill(remain, any ? [lack(work, data), figures(data), leftOut(data), picture(data)] : h("p", { class: "warning" }, words.candidates.unsound));
    all.element.hidden = !any;
    all.show(data);
  }
  const body = h("div", {}, h("p", {}, words.candidates.intro), asked.element, group(words.candidates.remain, sum, remain, all.element));
  return { id: "candidates", title: words.candidates.title, body, ready: () => (work.latest?.counts.animals ?? 0) > 0, show };
}

/** Why nothing can be planned; at first nobody has said how many matings anyone may have. */
function lack({ choices }: Work, { sexes, columns }: Prepared): HTMLElement | false {
  const { none, unsaid } = words.candidates;
  if (sexes.every(({ candidates }) => candidates > 0)) return false;
  const silent = columns.every(({ field }) => field !== "matings") && (choices.males.matings === null || choices.females.matings === null);
  return h("p", { class: silent ? "warning" : "warning serious" }, silent ? unsaid : none);
}

function figures({ sexes, planned_matings }: Prepared): HTMLElement {
  const { facts: names, sexNames } = words.candidates;
  const of = ({ sex, candidates, matings, completeness }: Prepared["sexes"][number]) =>
    [sexNames[sex === "male" ? 1 : 2], count(candidates), candidates > 0 && names.more(count(matings), percent(completeness, 0))] as const;
  return facts(...sexes.map(of), [names.planned, count(Math.max(0, planned_matings)), names.plannedNote]);
}

/** How many a condition leaves out, each counted for the first. */
function leftOut(data: Prepared): HTMLElement {
  const { reasons, sexNames } = words.candidates;
  const rows = reasonsOf(data).map((reason) => [reasonName(reason), count(outOf(data, 1, reason)), count(outOf(data, 2, reason))]);
  return h("details", {}, h("summary", {}, reasons.summary), h("div", { class: "wrapped" }, plain(reasons.caption, [reasons.title, sexNames[1], sexNames[2]], rows)));
}

const outOf = ({ animals }: Prepared, sex: 1 | 2, reason: string): number =>
  animals.filter((animal) => animal.sex === sex && animal.left_out === reason && animal.matings === 0).length;
