// Step 5: the plan of the chosen point, shown as its report, saved and printed.

import { called } from "../../../frontier/model.js";
import { fill, h } from "../../../shared/dom.js";
import { Failed } from "../../engine/engine.js";
import { said } from "../../errors.js";
import type { Planning } from "../../planning.js";
import type { State } from "../../planned.js";
import { progress } from "../../status.js";
import type { Step } from "../../step.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import type { Work } from "../../work.js";
import { shownReport } from "./report.js";
import { elsewhere, printed, saving } from "./saving.js";

export function step(_work: Work, { tradeoff, planned }: Planning): Step {
  const { plan: text } = words;
  const under = progress(() => (planned.stop(), make.focus()));
  const make = h("button", { type: "button", "aria-describedby": "plan-about", onclick: () => can() && void planned.make(tradeoff.plan!) }, text.make);
  const print = h("button", { type: "button", onclick: printed }, text.print);
  const can = () => tradeoff.plan !== undefined && !tradeoff.awaited && !tradeoff.stale && planned.state.state !== "working";
  const about = h("p", { class: "screen", id: "plan-about" }), told = h("p", { class: "told screen", role: "status" }), fault = h("p", { class: "warning serious", role: "alert" });
  const shown = h("div"), instead = h("div");
  const body = h("div", {}, about, h("div", { class: "line screen" }, make, print), under.element, told, fault, instead, shown);
  let last: State | undefined;

  function show(): void {
    const { plan } = tradeoff, { state } = planned;
    const other = state.state === "ready" && state.made.plan.folder !== plan?.folder;
    const now = tradeoff.awaited ? text.awaited : !plan ? text.none : other ? text.other(called(state.made.plan), called(plan)) : text.of(called(plan));
    if (about.textContent !== now) about.textContent = now;
    print.hidden = state.state !== "ready";
    const printing = state.state === "ready" && !other && !tradeoff.awaited;  // what comes next is prominent
    [make.className, print.className] = printing ? ["plainbutton", "main"] : ["main", "plainbutton"];
    make.setAttribute("aria-disabled", String(!can()));  // it keeps the focus
    if (state !== last) showState((last = state));
    const needed = [state, tradeoff.state].some((each) => each.state === "failed" && each.error instanceof Failed);
    if (needed !== instead.hasChildNodes()) fill(instead, needed && withoutPlan(tradeoff));
  }

  function showState(state: State): void {
    const doing = state.state === "working" ? (state.reporting ? text.reporting : text.planning) : null;
    under.show(doing, state.state === "working" && state.progress ? { ...state.progress, phase: doing! } : null);
    told.textContent = state.state === "ready" ? text.ready : "";
    fault.hidden = state.state !== "failed";
    fault.textContent = state.state === "failed" ? said(state.error) : "";
    if (state.state === "ready") fill(shown, saving(tradeoff.name, state.made), shownReport(state.made));
    else if (state.state !== "working") fill(shown);
  }
  const unfollow = [tradeoff.follow(show), planned.follow(show)];
  return { id: "plan", title: text.title, body, ready: () => tradeoff.known, show, end: () => unfollow.forEach((act) => act()) };
}

/** The way that is left where a browser has no room for the herd. */
function withoutPlan({ name, run, source }: Tradeoff): HTMLElement[] {
  return [h("p", {}, words.plan.instead), elsewhere(source!, name, run, `${name}.prm`)];
}
