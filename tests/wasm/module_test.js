// The WebAssembly module where its memory does not suffice, what it does after that, and the way from a
// herd book to a report, beside that of the programs.
// Usage: node module_test.js MODULE PROGRAMS    (their folder)
"use strict";
const assert = require("node:assert/strict");
const {spawnSync} = require("node:child_process");
const {createHash} = require("node:crypto");
const fs = require("node:fs");
const os = require("node:os");
const path = require("node:path");

const herd = path.join(__dirname, "../../examples/cuvier");
const parameters = fs.readFileSync(path.join(herd, "qob.prm"), "latin1");
const bytes = (text) => new TextEncoder().encode(text);
const text = (contents) => new TextDecoder().decode(contents);

function testFiles(qob) {
  const names = ["b/ü.txt", "empty", "a"];
  for (const name of names) qob.putFile(name, bytes(name === "empty" ? "" : "in " + name));
  assert.deepEqual(qob.fileNames(), ["a", "b/ü.txt", "empty"]);
  assert.equal(text(qob.takeFile("./b/../b/ü.txt")), "in b/ü.txt");
  assert.equal(qob.takeFile("empty").length, 0);
  qob.removeFile("a");
  assert.equal(qob.takeFile("a"), undefined);
  qob.clearFiles();
  assert.deepEqual(qob.fileNames(), []);
}

// Beyond the module's 4 GB; what is there stays.
function testFileThatIsTooLarge(qob) {
  qob.putFile("kept", bytes("contents"));
  const huge = {length: 2 ** 32 - 2 ** 20};  // refused before anybody looks into it
  assert.throws(() => qob.putFile("kept", huge), RangeError);
  assert.equal(text(qob.takeFile("kept")), "contents");
}

// A job that needs more than there is ends with a message; the next one does as if it were the first.
function testRunThatLacksMemory(qob) {
  qob.clearFiles();
  qob.putFile("cuvier.dat", fs.readFileSync(path.join(herd, "cuvier.dat")));
  qob.putFile("qob.prm", bytes(parameters));
  assert.equal(qob.command("qob", "qob.prm").status, 0);
  const list = text(qob.takeFile("QOB_qob_MatingList.txt"));

  qob.putFile("qob.prm", bytes(parameters.replace("popsize=100,", "popsize=2147483647,")));
  assert.deepEqual(qob.command("qob", "qob.prm"), {status: 1, text: "Allocation POP failed"});
  assert.match(text(qob.takeFile("qob.log")), /ERROR in allocating memory/);

  qob.putFile("qob.prm", bytes(parameters));
  assert.equal(qob.command("qob", "qob.prm").status, 0);
  assert.equal(text(qob.takeFile("QOB_qob_MatingList.txt")), list);
}

// Without what clocks have written, and the checksum of the log, which holds such.
function withoutClocks(name, contents) {
  if (name !== "QOB_result.json") return text(contents).replace(/^(  cpu=| wall=| QOB started).*$/gm, "");
  const result = JSON.parse(text(contents));
  result.making.time = result.making.run_started = "";
  result.making.files.sha256[result.making.files.name.indexOf("./QOB_qob.log")] = "";
  return JSON.stringify(result);
}

// The same command lines, but for the herd that the module keeps between its plans; the same files.
function testWayFromHerdBookToReport(qob, programs) {
  const book = path.join(__dirname, "../../examples/hinterwald/hinterwald.csv");
  const prepare = ["hinterwald.csv", "-o", ".", "--males", "matings=20 age=1-6", "--females", "matings=1 age=2-12",
    "--min-completeness", "0.6", "--matings", "64"];
  const points = ["hinterwald.prm", "-o", "f", "--weights", "20", "--target-ne", "60", "--points", "0"];
  const report = ["--json", "--tables", "tables", "--force"];
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), "qob-"));
  const native = (program, ...words) => {
    const {status, stderr} = spawnSync(path.join(programs, program), words, {cwd: folder});
    assert.equal(status, 0, stderr.toString());
  };
  const module = (...words) => {
    assert.deepEqual(qob.command(...words), {status: 0, text: words[0] === "qob" ? "QOB ended successfully" : ""});
    return text(qob.takeFile("/dev/stdout")).trim();
  };
  try {
    fs.copyFileSync(book, path.join(folder, "hinterwald.csv"));
    native("qob-prepare", ...prepare);
    native("qob-frontier", ...points);

    qob.clearFiles();
    qob.putFile("hinterwald.csv", fs.readFileSync(book));
    module("qob-prepare", ...prepare);
    assert.equal(module("frontier-begin", ...points.slice(0, 3), "--points", "0"), "1");
    assert.equal(module("frontier-add", ...points), "3");
    for (const left of ["2", "1", "0", "0"]) assert.equal(module("frontier-make"), left);
    assert.equal(module("frontier-search", "w20", "3", "qob.prm"), "f/w20_s3/");
    module("qob", "qob.prm");
    for (const name of ["QOB_qob.log", "QOB_qob_MatingList.txt"]) qob.putFile("f/w20_s3/" + name, qob.takeFile(name));
    module("frontier-collect");
    const plans = JSON.parse(text(qob.takeFile("f/frontier.json"))).plans;
    assert.deepEqual(plans.map(({folder}) => folder), ["own", "ne60", "w20", "w20_s3"]);
    assert(plans.every(({share}) => share > 0.9 && share <= 1));

    fs.writeFileSync(path.join(folder, "qob.prm"), qob.takeFile("qob.prm"));
    native("qob", "qob.prm");
    for (const program of [native, module]) program("qob-report", "./QOB_", ...report);
    const compared = qob.fileNames().filter((name) => !/^\/dev|frontier.json$|_s3\//.test(name));
    for (const name of compared) {
      assert.equal(withoutClocks(name, qob.takeFile(name)), withoutClocks(name, fs.readFileSync(path.join(folder, name))), name);
    }
    assert(compared.length > 50);
  } finally {
    fs.rmSync(folder, {recursive: true});
  }
}

async function main(module, programs) {
  const wasmBinary = fs.readFileSync(module.replace(/js$/, "wasm"));
  const progress = [];
  const qob = await require(module)({wasmBinary, sha256: () => createHash("sha256"), onProgress: (told) => progress.push(told)});
  for (const test of [testFiles, testFileThatIsTooLarge, testRunThatLacksMemory, testWayFromHerdBookToReport]) {
    test(qob, programs);
    console.log("passed: " + test.name);
  }
  assert(progress.some((told) => /^Search : +[\d.]+ %, \d+ s left/.test(told)), progress.join());
}

main(...process.argv.slice(2).map((file) => path.resolve(file)));
