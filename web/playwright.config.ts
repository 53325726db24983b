// Tests of the pages of reports and frontiers in a browser: Debian's chromium, without network; nothing is downloaded.

import { defineConfig } from "@playwright/test";

// Without what a browser asks the network for by itself; root has no sandbox.
const quiet = [
  "--disable-gpu", "--disable-quic", "--no-first-run",
  "--disable-background-networking", "--disable-component-update", "--disable-sync",
];

export default defineConfig({
  testDir: "tests",
  testMatch: "*.test.ts",
  testIgnore: "**/tests/page/**",
  globalSetup: "./tests/runs.ts",
  fullyParallel: true,
  workers: 2,
  timeout: 120_000,
  reporter: "list",
  use: {
    offline: true,
    viewport: { width: 1280, height: 900 },
    launchOptions: {
      executablePath: process.env["QOB_CHROMIUM"] ?? "/usr/bin/chromium",
      args: process.getuid?.() === 0 ? ["--no-sandbox", ...quiet] : quiet,
    },
  },
});
