// Before all tests: herds are run by the programs in the folder QOB_PROGRAMS, and their pages made, once.

import { spawnSync } from "node:child_process";
import { appendFileSync, cpSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { csvOf, withData } from "./results.js";

/** Texts that a careless page would run, take for its own, or break at. */
export const HOSTILE = [
  `<img src=x onerror=alert(1)>`, `</script><script>alert(1)</script>`, `"><svg onload=alert(1)>`, `<!-- <script>`,
  `=cmd()`, `-1+1`, `a"b,c`, `'; alert(1); //`, `/*DATA*/`, "$& $` ${1}", `&lt;b&gt;&amp;`, `__proto__`, `constructor`, `toString`,
  `W`.repeat(190), `שלום עולם`, `\u202Egnp.exe`, `javascript:alert(1)`, `{{7*7}}`, `undefined`, `1e5`, `Zoë 🐄`,
];

/** Two founding sires and five dams, their eight offspring, and seven of these; the name of each animal is
 * the identifier of another. */
export function hostileHerdBook(): string {
  const animal = (id: string, i: number) => {
    const parent = (female: number) => (i < 7 ? "" : i < 15 ? HOSTILE[female ? 2 + (i % 5) : i % 2]! : HOSTILE[female ? 8 + 2 * (i % 3) : 7 + 2 * (i % 2)]!);
    const male = i < 7 ? i < 2 : i % 2 === 1;
    return [id, parent(0), parent(1), male ? "M" : "F", i < 7 ? 2000 : i < 15 ? 2003 : 2006, (i * 37) % 23 / 10, HOSTILE[(i + 5) % HOSTILE.length]!];
  };
  return csvOf([["identifier", "sire", "dam", "sex", "birth", "ebv", "name"], ...HOSTILE.map(animal)]);
}

const programs = resolve(process.env["QOB_PROGRAMS"] ?? "../build/dev");
const examples = resolve("../examples");

function run(folder: string, program: string, ...args: string[]): void {
  const { status, stdout, stderr, error } = spawnSync(join(programs, program), args, { cwd: folder, encoding: "utf8" });
  if (status !== 0) throw error ?? new Error(`${program} ${args.join(" ")}\n${stdout}${stderr}`);
}

/** Copies a parameter file with other values: {"timesteps": "-1"}. */
function changed(folder: string, to: string, values: Record<string, string>): void {
  const change = (text: string, [key, value]: [string, string]) => text.replace(new RegExp(`(^ +${key} *= *)('[^']*'|[^ ,/\n]+)`, "m"), `$1${value}`);
  writeFileSync(join(folder, to), Object.entries(values).reduce(change, readFileSync(join(folder, "qob.prm"), "utf8")));
}

/** A herd book through all three programs. */
function prepared(folder: string, book: string, rules: readonly string[]): void {
  run(folder, "qob-prepare", book, ...rules);
  const herd = join(folder, book.replace(".csv", ""));
  run(herd, "qob", book.replace(".csv", ".prm"));
  reported(herd);
}

/** QOB_report.html is the page of a run, QOB_result.json its data. */
function reported(folder: string): void {
  run(folder, "qob-report", "./QOB_");
  run(folder, "qob-report", "./QOB_", "--json", "--tables", "tables");
}

/** The plan of the run, with the males of two matings exchanged and one mating left out. */
function otherPlan(folder: string): void {
  const [heading, first, ...rest] = readFileSync(join(folder, "tables/matings.csv"), "utf8").trim().split("\n").map((line) => line.split(",").slice(0, 2));
  const last = rest.pop()!;
  writeFileSync(join(folder, "given.csv"), csvOf([heading!, [last[0]!, first![1]!], [first![0]!, last[1]!], ...rest.slice(1)]));
}

function cuvier(folder: string): void {
  changed(folder, "loose.prm", { resultsdirectory: "'./loose_'", w_relationship: "-2" });
  changed(folder, "strict.prm", { resultsdirectory: "'./strict_'", w_relationship: "-100" });
  changed(folder, "none.prm", { resultsdirectory: "'./none_'", timesteps: "-1" });
  for (const parameters of ["qob", "loose", "strict", "none"]) run(folder, "qob", `${parameters}.prm`);
  reported(folder);
  run(folder, "qob-frontier", "qob.prm", "--points", "5", "--target-ne", "50");  // qob_frontier/frontier.html
  run(folder, "qob-report", "./none_");
  otherPlan(folder);
  ruled(folder);
  for (const json of [[], ["--json"]]) {  // QOB_comparison.html and .json, QOB_evaluation.html and .json
    run(folder, "qob-report", "--compare", "./QOB_", "./loose_", "./strict_", ...json);
    run(folder, "qob-report", "--evaluate", "given.csv", "./QOB_", ...json);
  }
}

/** A decided mating, rules that cost something, and one that cannot be kept: ruled_report.html. */
function ruled(folder: string): void {
  writeFileSync(join(folder, "rules.csv"), [
    "kind,a,b,value", "fix,931,916,1", "max,932,,2", "forbid,940,946,", "group,946,H1,", "group,947,H1,", "max-per-group,,H1,1", "min,930,,4", "min,940,,5",
  ].join("\n"));
  changed(folder, "ruled.prm", { resultsdirectory: "'./ruled_'" });
  appendFileSync(join(folder, "ruled.prm"), "&MatingRules rulesfile='rules.csv', keep_all=.false. /\n");
  run(folder, "qob", "ruled.prm");
  run(folder, "qob-report", "./ruled_", "--tables", "ruled_tables");
}

/** frontier.html is the page of what is possible, frontier.json its data. */
function frontier(folder: string): void {
  mkdirSync(folder);
  cpSync("fixtures/frontier.json", join(folder, "frontier.json"));
  writeFileSync(join(folder, "frontier.html"), withData(join(programs, "web/frontier.html"), readFileSync("fixtures/frontier.json", "utf8")));
}

function runAll(folder: string): void {
  cpSync(examples, folder, { recursive: true });
  cuvier(join(folder, "cuvier"));
  const [, book, ...rules] = readFileSync(join(folder, "hinterwald/prepare.txt"), "utf8").match(/"[^"]*"|\S+/g)!.map((word) => word.replaceAll('"', ""));
  prepared(join(folder, "hinterwald"), book!, rules);
  frontier(join(folder, "frontier"));
  mkdirSync(join(folder, "hostile"));
  writeFileSync(join(folder, "hostile/herd.csv"), hostileHerdBook());
  prepared(join(folder, "hostile"), "herd.csv", ["--males", "matings=6", "--females", "matings=2", "--matings", "8"]);
}

export default function (): () => void {
  const folder = mkdtempSync(join(tmpdir(), "qob-web-"));
  const remove = () => rmSync(folder, { recursive: true });
  process.env["QOB_RUNS"] = folder;
  try {
    runAll(folder);
  } catch (error) {
    remove();
    throw error;
  }
  return remove;
}
