// Runs the program and its WebAssembly module on the same folders and compares what they leave:
// the exit status, the text that they end with, standard output and every file, byte by byte but
// for the digits of clocks. All runs share one module, so each has to begin anew.
// Usage: node compare.js PROGRAM MODULE FOLDER...    (each with a qob.prm)
"use strict";
const {spawnSync} = require("node:child_process");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");

const kStandardOutput = "/dev/stdout";
const kClock = /^(  cpu=| wall=| QOB started).*$/gm;

// Of equal length, so that the rest of the file stays in its place.
const withoutClocks = (bytes) =>
  Buffer.from(bytes).toString("latin1").replace(kClock, (line) => line.replace(/\d/g, "#"));

function filesOf(folder) {
  const names = fs.readdirSync(folder).sort();
  return new Map(names.map((name) => [name, fs.readFileSync(path.join(folder, name))]));
}

// Both return {status, text, files, seconds}; the files are those that the run wrote.
function runProgram(program, inputs) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), "qob-"));
  try {
    for (const [name, bytes] of inputs) fs.writeFileSync(path.join(folder, name), bytes);
    const begin = performance.now();
    const run = spawnSync(program, ["qob.prm"], {cwd: folder, maxBuffer: 2 ** 30});
    const seconds = (performance.now() - begin) / 1000;
    if (run.error) throw run.error;
    const files = filesOf(folder);
    for (const name of inputs.keys()) files.delete(name);
    files.set(kStandardOutput, run.stdout);
    const text = run.stderr.toString().trimEnd().split("\n").at(-1);
    return {status: run.status, text, files, seconds};
  } finally {
    fs.rmSync(folder, {recursive: true});
  }
}

function runModule(qob, inputs) {
  qob.clearFiles();
  for (const [name, bytes] of inputs) qob.putFile(name, bytes);
  const begin = performance.now();
  const {status, text} = qob.command("qob", "qob.prm");
  const seconds = (performance.now() - begin) / 1000;
  for (const name of inputs.keys()) qob.removeFile(name);
  qob.removeFile("/dev/stderr");  // where the program's has what its shell says
  const files = new Map(qob.fileNames().map((name) => [name, qob.takeFile(name)]));
  return {status, text, files, seconds};
}

function differences(a, b) {
  const list = ["status", "text"].filter((key) => a[key] !== b[key])
    .map((key) => `${key}: ${a[key]} | ${b[key]}`);
  for (const name of new Set([...a.files.keys(), ...b.files.keys()])) {
    if (!a.files.has(name) || !b.files.has(name)) {
      list.push(`${name}: only of the ${a.files.has(name) ? "program" : "module"}`);
    } else if (withoutClocks(a.files.get(name)) !== withoutClocks(b.files.get(name))) {
      list.push(`${name}: differs`);
    }
  }
  return list;
}

// Whether there was nothing that differs.
function compare(program, qob, folder) {
  const inputs = filesOf(folder);
  const native = runProgram(program, inputs);
  const module = runModule(qob, inputs);
  const found = differences(native, module);
  let bytes = 0;
  for (const contents of native.files.values()) bytes += contents.length;
  console.log(`${path.basename(folder)}: ${native.files.size} files, ${bytes} bytes, ` +
    `${found.length} differences; ${native.seconds.toFixed(2)} s, ` +
    `module ${module.seconds.toFixed(2)} s (${(module.seconds / native.seconds).toFixed(1)} times); ` +
    `status ${native.status}, ${native.text}`);
  for (const difference of found) console.log("  " + difference);
  return found.length === 0 && bytes > 0;
}

async function main([program, module, ...folders]) {
  const file = path.resolve(module);
  const wasmBinary = fs.readFileSync(file.replace(/js$/, "wasm"));  // else it is fetched like a page's
  const qob = await require(file)({wasmBinary});
  let same = folders.length > 0;
  for (const folder of folders) same = compare(path.resolve(program), qob, folder) && same;
  console.log(same ? "The same bytes" : "NOT the same bytes, or nothing to compare");
  process.exitCode = same ? 0 : 1;
}

main(process.argv.slice(2));
