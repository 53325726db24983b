// Step 4: how many matings, by which rules, and how much inbreeding for how much merit.

import { saying } from "../../../frontier/say.js";
import { group, h } from "../../../shared/dom.js";
import { saidOf } from "../../errors.js";
import { Failed, type Progress } from "../../engine/engine.js";
import type { Planning } from "../../planning.js";
import { progress } from "../../status.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";
import { Curve } from "./curve.js";
import { matings } from "./matings.js";
import { Meaning } from "./meaning.js";
import { faultsOf } from "./rule_faults.js";
import { Rules } from "./rules.js";
import { Thorough } from "./search.js";
import { Along, Wanted } from "./target.js";

export function step(work: Work, { tradeoff, searches }: Planning): Step {
  saying(words.goal.say);
  const rules = new Rules(work, tradeoff), curve = new Curve(work, tradeoff), meaning = new Meaning(work, tradeoff);
  const along = new Along(work, tradeoff), wanted = new Wanted(work, tradeoff), thorough = new Thorough(work, tradeoff, searches);
  const asked = matings(work);
  const under = progress(() => (tradeoff.stop(), again.focus()));
  const told = h("p", { class: "told", role: "status" });
  const again = h("button", { type: "button", class: "plainbutton screen", onclick: () => tradeoff.resume() }, words.goal.resume);
  const shown = h("div", {}, h("div", { class: "with-plan" }, h("div", {}, curve.element, along.element), meaning.element), wanted.element, thorough.element);
  const { title, lead } = words.goal.tradeoff;
  const body = h("div", { class: "goal" }, asked.element, rules.element, group(title, h("p", {}, lead), told, under.element, again, shown));

  function show(): void {
    under.show(...underWay(tradeoff));
    const now = faultsOf(work, tradeoff).size > 0 ? words.goal.rules.faulty : sentence(work, tradeoff);
    if (told.textContent !== now) told.textContent = now;
    const { state } = tradeoff;
    again.hidden = tradeoff.stale || !(state.state === "stopped" || (state.state === "failed" && (state.error instanceof Failed || tradeoff.frontier !== null)));
    shown.hidden = !tradeoff.frontier;
    shown.classList.toggle("stale", tradeoff.stale);
    for (const each of [asked, rules, curve, meaning, along, wanted, thorough]) each.show();
  }
  const unfollow = [tradeoff.follow(show), searches.follow(() => thorough.show())];
  return { id: "goal", title: words.goal.title, body, ready: () => tradeoff.known, show, end: () => unfollow.forEach((act) => act()) };
}

/** What is being done, and how far it is. */
function underWay({ state, stale }: Tradeoff): [string | null, Progress | null] {
  const { reading, planning } = words.goal.tradeoff;
  if (!stale && state.state === "reading") return [reading, state.progress && { ...state.progress, phase: reading }];
  if (!stale && state.state === "planning") return [planning, { phase: planning, share: state.made / state.all, left: NaN, more: "" }];
  return [null, null];
}

function sentence({ choices, latest }: Work, { state, stale, frontier, nobody }: Tradeoff): string {
  const { ready, none, unsaid, nobody: without } = words.goal.tradeoff;
  const silent = latest?.columns.every(({ field }) => field !== "matings") && (choices.males.matings === null || choices.females.matings === null);
  if (nobody) return silent ? unsaid : without;
  if (stale || state.state === "none") return none;
  if (state.state === "failed") return saidOf(state.error, latest?.sexes.reduce((sum, { candidates }) => sum + candidates, 0) ?? 0);
  return state.state === "ready" ? ready(frontier!.plans.length) : state.state === "stopped" ? words.frame.cancelled : "";
}
