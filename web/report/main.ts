// Shows the data of the page as a report or as a comparison of plans.

import { page, type Shown } from "../shared/frame.js";
import { frame as words, speak } from "../shared/texts/language.js";
import * as compare from "./compare.js";
import { read, type Comparison, type Result } from "./model.js";
import { parts } from "./show.js";

function report(result: Result): Shown {
  return { title: words.title(result.title, result.plan !== null), made: result.making, parts: parts(result) };
}

function comparison(plans: Comparison): Shown {
  return { title: words.COMPARISON_TITLE, made: plans.plans[0]?.making, parts: [compare.section(plans)] };
}

speak(document.documentElement.lang === "de" ? "de" : "en");
page({ what: "report", program: "qob-report", saved: "result.json" }, (json) => {
  const data = read(json);
  return data.format === "qob-result" ? report(data) : comparison(data);
});
