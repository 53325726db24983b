// The plan: made of the chosen point, shown as its report, saved and printed.

import { called } from "../../frontier/model.js";
import { fill, h } from "../../shared/dom.js";
import type { Planning } from "../planning.js";
import type { State } from "../planned.js";
import { said } from "../errors.js";
import type { Step } from "../step.js";
import { words } from "../texts/words.js";
import type { Work } from "../work.js";
import { shownReport } from "./plan/report.js";
import { saving } from "./plan/saving.js";
import { Waiting } from "./waiting.js";

export function step(work: Work, { tradeoff, planned }: Planning): Step {
  const { plan: text } = words;
  const waiting = new Waiting(() => planned.stop());
  const make = h("button", { type: "button", class: "main", onclick: () => tradeoff.plan && void planned.make(tradeoff.plan) }, text.make);
  const about = h("p", { class: "screen" });
  const fault = h("p", { class: "warning serious", role: "alert" });
  const shown = h("div");
  const body = h("div", {}, about, h("div", { class: "screen" }, make), waiting.element, fault, shown);
  let last: State | undefined;

  const show = () => {
    const { plan } = tradeoff, { state } = planned;
    const other = state.state === "ready" && state.made.plan.folder !== plan?.folder;
    about.textContent = !plan ? text.none : other ? text.other(called(state.made.plan), called(plan)) : text.of(called(plan));
    make.disabled = !plan || tradeoff.stale || state.state === "working";
    if (state === last) return;
    last = state;
    if (state.state === "working") waiting.show(state.reporting ? text.reporting : text.planning, state.progress?.share, state.progress?.left);
    else waiting.rest(state.state === "ready" ? text.ready : "");
    fault.hidden = state.state !== "failed";
    fault.textContent = state.state === "failed" ? said(state.error) : "";
    if (state.state === "ready") fill(shown, saving(work, tradeoff.name, state.made), shownReport(state.made));
    else if (state.state !== "working") fill(shown);
  };
  const unfollow = [tradeoff.follow(show), planned.follow(show)];
  return { id: "plan", title: text.title, body, ready: () => tradeoff.known, show, end: () => unfollow.forEach((act) => act()) };
}
