// All that the page says itself, in English. A translation is one more file of this shape; what the
// program says of a herd book, and the report, are English in all of them.

export const en = {
  frame: {
    title: "qob: plan matings",
    lead: "From a herd book to a mating list, on this computer alone: nothing is sent anywhere.",
    undo: "Undo", redo: "Redo", save: "Save work", open: "Open work", language: "Language",
    steps: "Steps", later: "Comes when the step before is done.",
    working: "Working", cancel: "Cancel",
    cancelled: "Stopped.",
    memory: "This needs more memory than a browser gives (4 GB). On a computer with more, the command line does it: see step 5.",
    defect: "The program has failed in the browser; the page goes on. Please tell us how it came about.",
    version: (program: string) => `Made with ${program}.`,
  },
  book: { title: "Herd book" },
  faults: { title: "Check" },
  candidates: { title: "Candidates" },
  goal: { title: "Goal" },
  plan: { title: "Plan" },
};

export type Texts = typeof en;
