// How it was made, so that anyone can repeat it: programs, parameters, seed, files with checksums.

import { facts, h } from "../shared/dom.js";
import { bytes, count, NONE } from "../shared/format.js";
import { licences } from "../shared/licences.js";
import { quoted } from "../shared/shell.js";
import { table } from "../shared/table.js";
import { made as words } from "../shared/texts/language.js";
import type { Making, Result } from "./model.js";
import { group, part } from "./outline.js";

export function section({ making }: Result): HTMLElement {
  const names = words.facts;
  return part("made", words.title,
    facts(
      [names.run, making.run_program || NONE], [names.started, making.run_started || NONE], [names.seed, String(making.seed)],
      [names.report, making.program], [names.time, making.time], [names.prefix, making.prefix || NONE]),
    repeat(making), files(making), parameters(making), licences(group));
}

function repeat(making: Making): HTMLElement {
  const { title, text, seed, unknown, parameter_file } = words.repeat;
  const name = (wanted: string) => making.files.find(({ role }) => role === wanted)?.name;
  const asked = making.parameters.find(({ key }) => key.toLowerCase() === "seed_rng")?.value;
  const names = name("names");
  return group(title, h("p", {}, text),
    h("pre", {}, run(name("parameters") ?? parameter_file), "\n",
      `qob-report ${quoted(making.prefix)}${names ? ` --names ${quoted(names)}` : ""}`),
    !name("parameters") && h("p", {}, unknown),
    asked !== undefined && Number(asked) === 0 && h("p", {}, seed(String(making.seed))));
}

/** A run is started in the folder of its parameter file: the names of files there begin in it. */
function run(parameters: string): string {
  const [, folder, file] = /^(?:(.*)\/)?([^/]*)$/.exec(parameters)!;
  return folder ? `(cd ${quoted(folder)} && qob ${quoted(file ?? "")})` : `qob ${quoted(parameters)}`;
}

function files({ files }: Making): HTMLElement {
  const { title, columns, roles, none } = words.files;
  type File = Making["files"][number];
  return group(title, files.length === 0 ? h("p", {}, none) : table<File>([
    { key: "name", title: columns.name, value: ({ name }) => name },
    { key: "role", title: columns.role, value: ({ role }) => roles[role] ?? role },
    { key: "bytes", title: columns.bytes, value: (file) => file.bytes, show: (file) => bytes(file.bytes) },
    { key: "sha256", title: columns.sha256, value: ({ sha256 }) => sha256, show: ({ sha256 }) => h("code", {}, sha256) },
  ], files, { caption: title, file: "files.csv", search: false }));
}

function parameters({ parameters }: Making): HTMLElement {
  const { title, columns, none, all } = words.parameters;
  type Parameter = Making["parameters"][number];
  if (parameters.length === 0) return group(title, h("p", {}, none));
  const grid = table<Parameter>([
    { key: "key", title: columns.key, value: ({ key }) => key, show: ({ key }) => h("code", {}, key) },
    { key: "value", title: columns.value, value: ({ value }) => value, show: ({ value }) => h("code", {}, value) },
    { key: "group", title: columns.group, value: ({ group }) => group },
  ], parameters, { caption: title, file: "parameters.csv" });
  return group(title, h("details", { open: true }, h("summary", {}, all(count(parameters.length))), grid));
}
