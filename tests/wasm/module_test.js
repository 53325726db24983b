// The WebAssembly module where its memory does not suffice, and what it does after that.
// Usage: node module_test.js MODULE
"use strict";
const assert = require("node:assert/strict");
const fs = require("node:fs");
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

async function main(module) {
  const wasmBinary = fs.readFileSync(module.replace(/js$/, "wasm"));
  const qob = await require(module)({wasmBinary});
  for (const test of [testFiles, testFileThatIsTooLarge, testRunThatLacksMemory]) {
    test(qob);
    console.log("passed: " + test.name);
  }
}

main(path.resolve(process.argv[2]));
