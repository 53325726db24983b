// Makes a page: one file with program, style and licences inside, and a content security policy that
// lets nothing but these in. node build.mjs PAGE [FOLDER [MODULE]], of PAGE/main.ts FOLDER/PAGE.html;
// the page of the whole tool is FOLDER/qob.html, takes its module from the folder MODULE, and the page
// of reports from FOLDER.

import { build } from "esbuild";
import { createHash } from "node:crypto";
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { gzipSync } from "node:zlib";

const here = dirname(fileURLToPath(import.meta.url));
const titles = { report: "Mating plan", frontier: "Merit and relationship", page: "qob" };
const [, , name, folder = join(here, "dist"), module] = process.argv;
if (!titles[name]) throw new Error(`The pages are ${Object.keys(titles).join(" and ")}.`);

/** Bundles; returns the text and the files that went in. */
async function bundled(entry) {
  const { outputFiles, metafile } = await build({
    absWorkingDir: here, entryPoints: [entry], bundle: true, minify: true, write: false, metafile: true,
    format: "iife", target: "es2021", charset: "utf8", legalComments: "none", logLevel: "warning",
  });
  return { text: outputFiles[0].text.trim(), inputs: Object.values(metafile.outputs)[0].inputs };
}

/** Name, version, licence and its text of every package of which something is in the bundle. */
function licences(inputs) {
  const used = Object.entries(inputs).filter(([, { bytesInOutput }]) => bytesInOutput > 0);
  const folder = ([file]) => file.match(/^node_modules\/(?:@[^/]+\/)?[^/]+/)?.[0];
  const folders = [...new Set(used.map(folder).filter(Boolean))].sort();
  return folders.map((folder) => {
    const { name, version, license } = JSON.parse(readFileSync(join(here, folder, "package.json"), "utf8"));
    const file = readdirSync(join(here, folder)).find((name) => /^licen[cs]e/i.test(name));
    if (!license) throw new Error(`${name} does not say its licence.`);
    return { name, version, license, text: file ? readFileSync(join(here, folder, file), "utf8") : "" };
  });
}

/** The same of the programs, with the libraries that are compiled into them. */
function ownLicence() {
  const version = readFileSync(join(here, "../CMakeLists.txt"), "utf8").match(/^project\(qob VERSION ([0-9.]+) /m)[1];
  return { name: "qob", version, license: "with libraries of its own", text: readFileSync(join(here, "../package/copyright"), "utf8") };
}

const hash = (text) => `'sha256-${createHash("sha256").update(text).digest("base64")}'`;

/** Puts texts in the place of markers, each of which must stand once. */
function put(template, texts) {
  return Object.entries(texts).reduce((page, [marker, text]) => {
    const parts = page.split(`/*${marker}*/`);
    if (parts.length !== 2) throw new Error(`The template must hold /*${marker}*/ once, not ${parts.length - 1} times.`);
    return parts.join(text);
  }, template);
}

/** What no parser of HTML can take for the end of a script. */
const inScript = (text) => text.replaceAll("<", "\\u003c");

const block = (id, text) => `<script type="application/json" id="${id}">${text}</script>`;
const packed = (bytes) => JSON.stringify(gzipSync(bytes, { level: 9 }).toString("base64"));

/** The blocks of the whole tool: module, worker, the page of reports and an example of a herd book. */
async function toolBlocks() {
  const worker = await bundled("page/engine/worker.ts");
  const text = readFileSync(join(module, "qob.js"), "utf8") + worker.text;
  const blocks = [
    block("program", packed(readFileSync(join(module, "qob.wasm")))), block("worker", inScript(JSON.stringify(text))),
    block("report-page", packed(readFileSync(join(folder, "report.html")))),
    block("example", packed(readFileSync(join(here, "../examples/hinterwald/hinterwald.csv")))),
  ];
  return { inputs: worker.inputs, text: blocks.join("\n") };
}

/** The hashes must be those of all that runs or styles, no more and no fewer. */
function checked(page) {
  const inside = [...page.matchAll(/<(script|style)>([^]*?)<\/\1>/g)].map(([, , text]) => hash(text));
  const allowed = page.match(/'sha256-[^']+'/g) ?? [];
  if (inside.length !== 2 || inside.join() !== [...allowed].reverse().join()) throw new Error("The hashes of the policy are not those of the page.");
  if (name !== "page" && page.split("/*DATA*/").length !== 2) throw new Error("The page must hold the marker of the data once.");
  return page;
}

const tool = name === "page";
const script = await bundled(`${name}/main.ts`);
const style = await bundled("theme.css");
if (/<\/script|<!--/i.test(script.text) || /<\/style/i.test(style.text)) throw new Error("The bundle would end its element.");
const blocks = tool ? await toolBlocks() : { inputs: {}, text: block("data", "/*DATA*/") };
const policy = [
  "default-src 'none'", `script-src ${hash(script.text)}${tool ? " 'wasm-unsafe-eval'" : ""}`, `style-src ${hash(style.text)}`,
  ...(tool ? ["worker-src blob:"] : []), "img-src data: blob:", "base-uri 'none'", "form-action 'none'",
];
const page = put(readFileSync(join(here, "template.html"), "utf8"), {
  POLICY: policy.join("; "),
  TITLE: titles[name],
  LICENCES: inScript(JSON.stringify([...(tool ? [ownLicence()] : []), ...licences({ ...blocks.inputs, ...script.inputs })])),
  STYLE: style.text,
  SCRIPT: script.text,
  BLOCKS: blocks.text,
});
const out = join(folder, `${tool ? "qob" : name}.html`);
mkdirSync(folder, { recursive: true });
writeFileSync(out, checked(page));
console.log(`${out}: ${Math.round(Buffer.byteLength(page) / 1000)} kB`);
