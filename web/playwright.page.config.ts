// Tests of qob.html, the whole tool as one page, beside the programs: QOB_PAGE and QOB_PROGRAMS say where
// both are.

import base from "./playwright.config.js";

export default { ...base, testDir: "tests/page", testIgnore: [], globalSetup: undefined, timeout: 300_000 };
