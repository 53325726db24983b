// What can be saved of a plan, and what prints it.

import { zipSync } from "fflate";
import { h } from "../../../shared/dom.js";
import { save } from "../../../shared/download.js";
import type { Files } from "../../engine/protocol.js";
import type { Made } from "../../planned.js";
import { workbook } from "../../spreadsheet/write.js";
import { words } from "../../texts/words.js";
import { PARAMETERS } from "../../tradeoff.js";
import type { Ready } from "../../work.js";
import { repeated } from "./repeat.js";
import { reportPage } from "./report_page.js";
import { sheets } from "./sheets.js";

const MATINGS = "matings.csv";
const LIST = "page/QOB_qob_MatingList.txt";  // beside the files that make it again, to compare
const ZIP = "application/zip", XLSX = "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet";

const button = (label: string, act: () => void) => h("button", { type: "button", class: "download", onclick: act }, label);

/** Prints the plan alone: the summary, then its matings. */
export function printed(): void {
  const { classList } = document.body;
  const summary = document.getElementById("report-summary"), matings = document.getElementById("report-matings");
  if (summary) matings?.before(summary);
  classList.add("plan-alone");
  addEventListener("afterprint", () => {
    classList.remove("plan-alone");
    if (summary) matings?.after(summary);
  }, { once: true });
  print();
}

export function saving(name: string, made: Made): HTMLElement {
  const { save: text } = words.plan;
  const list = made.tables.find(([file]) => file === MATINGS)![1];
  return h("div", { class: "tools screen", role: "group", "aria-label": text.title },
    button(text.list, () => save(`${name}_${MATINGS}`, "text/csv", list)),
    button(text.tables, () => save(`${name}_tables.zip`, ZIP, zipSync(Object.fromEntries(made.tables)))),
    button(text.workbook, () => save(`${name}_tables.xlsx`, XLSX, workbook(sheets(made.tables)))),
    button(text.report, async () => save(`${name}_report.html`, "text/html", await reportPage(made.json))),
    elsewhere(made.source, name, [...made.inputs, [LIST, made.list]], PARAMETERS));
}

/** A button that saves what makes a plan on a computer. */
export function elsewhere(source: Ready, name: string, files: Files, parameters: string): HTMLElement {
  return button(words.plan.save.repeat, () => save(`${name}_repeat.zip`, ZIP, zipSync(repeated(source, name, files, parameters))));
}
