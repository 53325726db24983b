// Step 3: who may be mated, and who then remains.

import { facts, fill, group, h, link } from "../../../shared/dom.js";
import { count, percent } from "../../../shared/format.js";
import { plain } from "../../../shared/table.js";
import { hindering, type Prepared } from "../../prepared.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import type { Work } from "../../work.js";
import { titleOf } from "../faults/kind.js";
import { animals } from "./animals.js";
import { conditions } from "./conditions.js";
import { picture } from "./picture.js";
import { reasonName, reasonsOf } from "./reasons.js";

export function step(work: Work): Step {
  const asked = conditions(work);
  const sum = h("p", { role: "status", class: "lead" }), remain = h("div"), pictures = h("div");
  const left = leftOut(), all = animals();
  let drawn: Prepared | null = null;
  function show(): void {
    asked.show();
    const data = work.latest!;
    if (data === drawn) return;
    drawn = data;
    const any = data.animals.length > 0;
    fill(sum, any && words.candidates.sum(data.sexes[0]!.candidates, data.sexes[1]!.candidates));
    fill(remain, any ? [lack(work, data), figures(work, data)] : hindered(data));
    fill(pictures, any && picture(data));
    for (const list of [left, all]) {
      list.element.hidden = !any;
      list.show(data);
    }
  }
  const body = h("div", {}, h("p", {}, words.candidates.intro), asked.element, group(words.candidates.remain, sum, remain, left.element, pictures, all.element));
  return { id: "candidates", title: words.candidates.title, body, ready: () => (work.latest?.counts.animals ?? 0) > 0, show };
}

/** What has to be mended before the figures come. */
function hindered(data: Prepared): HTMLElement {
  const { unsound, toFaults } = words.candidates;
  const kinds = hindering(data).map((kind) => h("li", {}, `${count(kind.count)} `, titleOf(kind)));
  return h("div", { class: "warning" }, h("p", {}, unsound, " ", link("faults", toFaults)), kinds.length > 0 && h("ul", {}, kinds));
}

/** Why nothing can be planned; at first nobody has said how many matings anyone may have. */
function lack({ choices }: Work, { sexes, columns }: Prepared): HTMLElement | false {
  const { none, unsaid } = words.candidates;
  if (sexes.every(({ candidates }) => candidates > 0)) return false;
  const silent = columns.every(({ field }) => field !== "matings") && (choices.males.matings === null || choices.females.matings === null);
  return h("p", { class: silent ? "warning" : "warning serious" }, silent ? unsaid : none);
}

function figures({ choices }: Work, { sexes, planned_matings }: Prepared): HTMLElement {
  const { facts: names, sexNames } = words.candidates;
  const of = ({ sex, candidates, matings, completeness }: Prepared["sexes"][number]) =>
    [sexNames[sex === "male" ? 1 : 2], count(candidates), candidates > 0 && names.more(count(matings), percent(completeness, 0))] as const;
  return facts(...sexes.map(of), [names.planned, count(Math.max(0, planned_matings)), choices.matings === null && names.plannedNote]);
}

/** How many a condition leaves out, each counted for the first. */
function leftOut(): { element: HTMLElement; show: (data: Prepared) => void } {
  const { reasons, sexNames } = words.candidates;
  const place = h("div", { class: "wrapped" });
  const row = (data: Prepared, reason: string) => [reasonName(reason), count(outOf(data, 1, reason)), count(outOf(data, 2, reason))];
  const show = (data: Prepared) => fill(place, plain(reasons.caption, [reasons.title, sexNames[1], sexNames[2]], reasonsOf(data).map((reason) => row(data, reason))));
  return { element: h("details", {}, h("summary", {}, reasons.summary), place), show };
}

const outOf = ({ animals }: Prepared, sex: 1 | 2, reason: string): number =>
  animals.filter((animal) => animal.sex === sex && animal.left_out === reason && animal.matings === 0).length;
