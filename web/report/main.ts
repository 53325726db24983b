// Shows the data of the page as a report or as a comparison of plans.

import { page, type Shown } from "../shared/frame.js";
import * as words from "../shared/texts/frame.js";
import * as beware from "./beware.js";
import * as candidates from "./candidates.js";
import * as compare from "./compare.js";
import * as made from "./made.js";
import * as matings from "./matings.js";
import { read, type Comparison, type Result } from "./model.js";
import * as population from "./population.js";
import * as rules from "./rules.js";
import * as search from "./search.js";
import * as summary from "./summary.js";

function report(result: Result): Shown {
  const planned = result.plan !== null;
  const parts = [
    summary.section(result),
    planned && matings.section(result),
    result.plan?.rules && rules.section(result.plan.rules),
    result.candidates.length > 0 && candidates.section(result),
    population.section(result),
    result.search.rows.length > 0 && search.section(result),
    beware.section(result),
    made.section(result),
  ].filter((part) => part instanceof HTMLElement);
  return { title: words.title(result.title, planned), made: result.making, parts };
}

function comparison(plans: Comparison): Shown {
  return { title: words.COMPARISON_TITLE, made: plans.plans[0]?.making, parts: [compare.section(plans)] };
}

page({ what: "report", program: "qob-report", saved: "result.json" }, (json) => {
  const data = read(json);
  return data.format === "qob-result" ? report(data) : comparison(data);
});
