// All that the page says itself, in English. A translation is one more file of this shape; what the
// program says of a herd book, and the report, are English in all of them.

import * as frontier from "../../shared/texts/frontier.js";

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
  goal: {
    title: "Goal",
    what: "What does this mean?",
    left: (seconds: number) => `${Math.max(1, Math.round(seconds))} s left`,
    resume: "Go on",
    matings: {
      title: "How many matings",
      label: "Matings to plan",
      byItself: (n: number) => `Left empty, ${n} are planned: one for each female that may be mated, as far as the males suffice.`,
      given: "Left empty, the program takes one for each female that may be mated, as far as the males suffice.",
      help: "The plan lists so many matings. Fewer matings than females means that only the best suited females are used.",
    },
    rules: {
      title: "Your own rules",
      lead: "What is decided already, and what must not be. Animals are named by their identifier; a name is taken, too, where it is one animal's alone. All rules hold for all matings.",
      kind: "A new rule:", add: "Add", remove: "Remove", all: "all", open: "Not complete: it does not count yet.",
      kinds: {
        fix: "matings that are decided", forbid: "two animals never", min: "at least so many matings", max: "at most so many matings", group: "an animal belongs to a group",
        "forbid-groups": "no matings between groups", "max-pair": "most matings of any pair", "max-per-group": "most matings of a sire in a group", "max-f": "largest inbreeding of offspring",
      },
      said: {
        fix: "Sire {a} and dam {b}: {value} matings are decided.",
        forbid: "Sire {a} and dam {b} are never mated.",
        min: "{a} has at least {value} matings.",
        max: "{a} has at most {value} matings.",
        group: "{a} belongs to the group {b} (a herd, a station, a family).",
        "forbid-groups": "Nobody of the group {a} is mated with the group {b}; the same name twice: not within it.",
        "max-pair": "Any one pair has at most {value} matings.",
        "max-per-group": "Sire {a} has at most {value} matings with dams of the group {b}.",
        "max-f": "No offspring has an expected inbreeding above {value} percent.",
      },
      holds: { sire: "sire", dam: "dam", animal: "animal", group: "group", count: "number", share: "percent" },
      files: "Rules from and to a file", file: "Open a file", help: "A CSV file with the header kind,a,b,value, as the command line takes it. Its rules come in the place of those above.",
      save: "Save these rules", noRule: (line: number, text: string) => `Line ${line} is no rule: ${text}`,
    },
    tradeoff: {
      title: "Merit or relationship",
      lead: "Who mates only the animals of most merit mates relatives, and inbreeding rises fast. The green line is the best that can be had of both in this herd: nothing lies above it. The signs beneath it are plans; choose the one whose rate of inbreeding you want to accept.",
      reading: "Reads the herd and computes the best possible",
      planning: "Makes plans",
      ready: (n: number) => `${n} plans are there to choose from.`,
      none: "Waits for a herd book without faults.",
    },
    picture: {
      title: "Merit against inbreeding",
      description: "Higher is more merit, further left is less inbreeding.",
      note: "A click or a tap takes the plan nearest to it. With the keyboard: arrow keys point at a plan, Enter takes it.",
      axes: "Horizontal scale",
    },
    /** What the picture itself says. */
    say: {
      asked: { ...frontier.asked, own: "suggestion" },
      how: { greedy: "made at once", exchanges: "made at once, with exchanges", search: "by a full search" },
      parents: frontier.parents, told: frontier.told,
      picture: { ...frontier.picture, key: { ...frontier.picture.key, line: "best possible", marked: "suggested, or what you asked for", chosen: "chosen" } },
    },
    meaning: {
      chosen: "Chosen:",
      rate: "Rate of inbreeding", rises: (rate: number) => `${rate <= 0.01 ? "a generation; at most 1 % is advised" : "a generation; more than the 1 % that is advised"}`, falls: "relationship falls: no inbreeding is added",
      size: "Effective size", sizeNote: "animals of an ideal herd in which inbreeding rises as fast; 50 or more are advised (FAO 1998)",
      merit: "Mean merit of the parents", above: (sd: number) => `${sd.toFixed(2)} standard deviations above using all candidates alike`,
      parents: "Parents", used: (males: number, females: number) => `${males} ♂, ${females} ♀`, candidates: (males: number, females: number) => `males and females, of ${males} and ${females} candidates`,
      inbreeding: "Inbreeding of the offspring", inbreedingNote: "on average, as they are paired",
      share: "Share of the best possible", shareNote: "of what any plan could reach here, rounded down",
      breaks: (rate: number) => `No plan keeps what was asked for: this one comes nearest, with ${(100 * rate).toFixed(2)} % a generation.`,
    },
    along: {
      label: "Along the line", merit: "most merit", relationship: "least relationship",
      best: (rate: number, size: number, sd: number) => `Best possible here: ${sd.toFixed(2)} standard deviations of merit at ${(100 * rate).toFixed(2)} % inbreeding a generation${Number.isNaN(size) ? "" : `, effective size ${size.toFixed(0)}`}.`,
    },
    target: {
      title: "Or say what you want",
      kind: "What is given", value: "Its value", take: "Make this plan",
      kinds: { weight: "weight of relationship", rate: "rate of inbreeding, %", ne: "effective size", degrees: "angle along the line, °" },
      help: {
        weight: "How much relationship counts against merit: 0 is merit alone, 20 is a common choice.",
        rate: "The plan of most merit whose inbreeding rises by no more than this in a generation, in percent: 1 is much, 0.5 is careful.",
        ne: "The plan of most merit with at least this effective size: 50 keeps a herd going for some generations, 100 and more for long.",
        degrees: "0 is most merit, 90 is least relationship.",
      },
      missed: (value: string, rate: number) => `No plan was found that keeps ${value}; the nearest has a rate of ${(100 * rate).toFixed(2)} %.`,
    },
    search: {
      title: "Search this point thoroughly",
      lead: "The plans above are made at once and are mostly very good. A full search of the chosen point tries very many others; what it finds competes with them, and the best is taken.",
      seeds: "Searches with different random numbers", start: "Search thoroughly",
      help: "Each search begins with other random numbers, so some find more than others. They run side by side, one on each core of this computer; further ones wait for a free one.",
      busy: "Searches.", ended: "The searches have ended.",
      caption: "Plans of the chosen point", columns: ["Plan", "", "Of the possible", "Merit", "Rate of inbreeding", "Inbreeding of the offspring"],
      best: "best", direct: "made at once", seed: (seed: number) => `search ${seed}`,
      states: { waiting: "waits", running: "begins", done: "done", cancelled: "stopped" },
    },
  },
  plan: {
    title: "Plan",
    none: "Choose a point of the trade-off first.",
    of: (name: string) => `Chosen in step 4: ${name}.`,
    other: (made: string, chosen: string) => `Below is the plan of: ${made}. Chosen in step 4 is now: ${chosen}.`,
    make: "Make the mating plan",
    planning: "Plans the matings", reporting: "Writes the report", ready: "The plan is there.",
    english: "The report is in English.",
    print: "Print mating list",
    save: {
      title: "Save the plan", list: "Mating list (CSV)", tables: "All tables (CSV, zip)", workbook: "All tables (Excel)", report: "Report (HTML)", repeat: "Repeat it on a computer (zip)",
    },
    readme: (program: string, prepare: string, name: string) => `These files make the mating plan again, on any computer with qob.
They were made with ${program}.

The plan, from the files of its run:

    qob qob.prm

QOB_qob_MatingList.txt is then the mating list, byte by byte the same. The report of it:

    qob-report ./QOB_

The files of the run, from the herd book (in the folder herd_book):

    ${prepare}

makes a folder ${name} with ${name}.dat and its companions.
`,
  },
};

export type Texts = typeof en;
