// All that the page says itself, in English. A translation is one more file of this shape; what the
// program says of a herd book, and the report, are English in all of them.

import { count, counted } from "../../shared/format.js";
import * as frontier from "../../shared/texts/frontier.js";
import { reasons } from "../spreadsheet/reasons.js";

export const en = {
  frame: {
    title: "qob: plan matings",
    lead: "From a herd book to a mating list, on this computer alone: nothing is sent anywhere.",
    undo: "Undo", redo: "Redo", save: "Save work", open: "Open work", language: "Language",
    steps: "Steps", later: "Comes when the step before is done.",
    working: "Working", cancel: "Cancel",
    cancelled: "Stopped.",
    memory: "This needs more memory than a browser gives (4 GB). On a computer with more, the command line does it: see step 5.",
    needed: (candidates: string, gigabytes: string) => `The relationships among ${candidates} candidates alone take ${gigabytes} GB; fewer candidates (step 3) take less.`,
    defect: "The program has failed in the browser; the page goes on. Please tell us how it came about.",
    undone: "Undone", redone: "Done again", saved: (file: string) => `Saved as ${file}`,
    control: "Ctrl", work: "Your work", languages: { en: "English", de: "Deutsch" },
    before: "What you see is still from before.",
    again: "Try again", dismiss: "Close", left: (seconds: number) => `${seconds} s left`,
    wholeNumber: (least: number, most: number) => `A whole number from ${least} to ${most}.`,
    otherVersion: (theirs: number) => `This work was saved by another version of the page (format ${theirs}). Open it with that one.`,
    brokenWork: "This file is no saved work, or it is cut off or changed. Take another copy of it, or begin with the herd book.",
    misshapen: (detail: string) => `This file is no work that this page can open. What was found: ${detail}.`,
    version: (program: string) => `Made with ${program}.`,
  },
  book: {
    title: "Herd book",
    drop: "Drop your herd book here, or press to choose the file",
    kinds: "A table with one row for each animal: .xlsx, .csv, .txt or .tsv. Work that you saved here opens, too.",
    another: "Another herd book", anotherKinds: "Drop it anywhere on the page, or press to choose the file. Undo brings this one back.",
    example: "Try the example: Hinterwald cattle",
    paste: "Paste a table", pasteHelp: "Copy the cells in your spreadsheet, headings included, and paste them here.",
    pasteExample: "Animal\tSire\tDam\tSex\tBorn", pasteRead: "Read this table", pastedName: "pasted table",
    opening: "Reading the file",
    fromSheet: (name: string) => `sheet “${name}”`, rows: (rows: number) => counted(rows, "row", "rows"),
    read: (fields: string) => `Read: ${fields}.`, faults: (n: number) => `${counted(n, "fault", "faults")}: see step 2`,
    sheet: "Sheet", sheetHelp: "The workbook has several; choose the one with the animals.",
    uncalculated: (count: string) => `${count} cells hold formulas without their values and are empty here. Open the workbook in your spreadsheet program and save it there again.`,
    unwelcome: {
      empty: "There is nothing in it: the file or the text is empty.",
      large: "This file is larger than 1 GB, more than a browser can work on. Leave out what is not needed, or use the command line.",
      picture: "This is a picture. The page needs the table itself: a spreadsheet (.xlsx) or a CSV file.",
      document: "This is a document (PDF or the like), from which no table can be read safely. Ask for the table as a spreadsheet (.xlsx) or CSV file.",
      binary: "This is no table: the file holds no text. Save the herd book as .xlsx or as “CSV UTF-8”.",
      folder: "This cannot be read. If it is a folder, open it and drop the file that is in it.",
      several: "These are several files. Drop one: the herd book.",
    },
    preview: {
      title: "What each column was taken for", caption: "The first rows of the herd book", row: "Row",
      help: "Each column is known by its heading. If one is taken for the wrong thing, choose the right one above it. Animal ID (ear tag, herd book number or the like), sire and dam are needed; of the others, what you have.",
      notRead: "not read", column: (at: number) => `column ${at}`, takenFor: (name: string) => `${name}: taken for`,
      twice: "This column has no heading of its own: give it one in the table, so that it can be told from the others.",
      lacking: (fields: string) => `No column was taken for: ${fields}. Choose it above the column that holds it.`,
      empty: "The table has no columns.",
      how: {
        "decimal points": "decimal points", "decimal commas": "decimal commas",
        "days before months": "day, then month", "months before days": "month, then day",
      },
    },
    fields: {
      identifier: "animal ID", sire: "sire", dam: "dam", sex: "sex", birth: "birth", ebv: "breeding value", matings: "matings at most",
      name: "name", alive: "alive or not", herd: "herd",
    },
    reading: {
      more: "More about how the table is read", title: "The table",
      header: { name: "The first row holds headings", help: "Without headings, choose animal ID, sire and dam above the columns." },
      dates: { name: "3/4/2001 is", help: "Needed only if no date in the table tells.", options: { "": "as the dates show", dmy: "the 3rd of April", mdy: "the 4th of March" } },
      decimals: { name: "1.234 is hardly more than one", help: "Tick it if the table refuses numbers such as 1.234 because they may be thousands." },
      unknown: { name: "More words for an unknown parent", help: "Parted by commas. Empty cells, 0, NA, -, ? and “unknown” are known.", holder: "foreign, no data" },
    },
    timing: {
      title: "Time",
      step: {
        name: "Count births in", help: "Parents must come before their offspring. Years suit most herds; mice or poultry need months.",
        options: { auto: "what fits best", year: "years", season: "half-years", quarter: "quarters", month: "months", generation: "generations" }, days: "days",
      },
      days: { name: "Days in a step" },
      why: (text: string) => `The program counts ${text}`,
    },
  },
  workbook: reasons,
  faults: {
    title: "Check",
    verdicts: {
      good: (animals: number) => `All good: the herd book with its ${counted(animals, "animal", "animals")} can be used.`,
      accepted: (findings: number) => `${counted(findings, "fault was", "faults were")} accepted.`,
      hinder: (findings: number) => `${counted(findings, "fault hinders", "faults hinder")} the next steps.`,
      mend: "What to do stands with each kind below.",
      mendOrAccept: "Mend your herd book and drop it again, or accept what the program makes of them: unfold each kind below.",
      noValues: (n: number) => `The herd book itself can be used. ${counted(n, "candidate has", "candidates have")} no breeding value: say what is to be done about it.`, toValues: "Go to step 3",
      refused: "The herd book cannot be used as it is.",
    },
    counts: {
      names: { animals: "Animals", males: "Males", females: "Females", unknown_sex: "Of unknown sex", founders: "Founders", completeness: "Completeness" },
      notes: {
        unknown_sex: "no candidates", founders: "without known parents", completeness: "of the pedigrees over five generations, in the mean",
      },
    },
    hinder: { title: "Faults that hinder", help: "Each makes an animal, a parent, a time or a value doubtful." },
    accepted: { title: "Faults that you have accepted", help: "They hinder no more; the tables tell what was done." },
    told: { title: "Remarks", help: "They have one sensible meaning, and that was taken. Look whether you agree." },
    accept: (remedy: string) => `Accept: ${remedy}`,
    save: "Save all findings as CSV",
    first: (some: string, all: string) => `These are the first ${some} of ${all}; the file with all findings has the others.`,
    table: { caption: (kind: string) => `Findings: ${kind}`, columns: { row: "Row", column: "Column", value: "Value", text: "What it is", done: "What was done" } },
    titles: {} as Record<string, string>,  // the program's own
    remedies: {} as Record<string, string>,
    kinds: {
      table: ["The table as a whole cannot be understood yet.", "Choose the missing columns in step 1, or say there what dates or decimals mean."],
      cells: ["A row holds more cells than there are headings, or a cell holds the end of a line. Often a comma within a name, or a quotation mark too many.", "Look at the row in your spreadsheet, and at the one before it."],
      identifier: ["An animal ID is missing, too long, or was shortened by a spreadsheet (2.76E+14), so that several animals look the same.", "Format the column as text in your spreadsheet and take the IDs from the source again."],
      duplicate: ["One animal ID has several rows that say different things.", "Keep the right row, or give the animals different IDs."],
      "own-parent": ["An animal is named as its own sire or dam.", "A slip of writing as a rule: correct the parent, or empty the cell."],
      "same-parents": ["One animal is both sire and dam of another.", "Correct the wrong one of the two, or empty it."],
      loop: ["An animal descends from itself by several steps; so at least one parent in the circle is wrong.", "The rows name the circle; look which parent cannot be, often by the dates of birth."],
      sex: ["A sex is given by a word that is not known, or a candidate has none.", "Write M or F."],
      "parent-sex": ["An animal is recorded as female, but used as a sire, or the other way round.", "Either the sex is wrong, or the parent of the offspring is. Check both."],
      "both-roles": ["An animal is the sire of some and the dam of others.", "Correct the offspring in which it has the wrong role."],
      birth: ["A birth is no date, or lies more than ten years behind all others.", "Write it as 2001-04-03 or 3.4.2001, or as a year."],
      "younger-parent": ["A parent is not born before its offspring.", "One of the two dates is wrong, or the parent is. If parents and offspring are born within one year, count in months (step 1)."],
      number: ["A breeding value or a number of matings is no number.", "Write numbers alone, without units or words."],
      ebv: ["A candidate has no breeding value.", "Add it, or say in step 3 that the mean stands for missing values, or plan without breeding values."],
      rule: ["A rule of matings names an animal that is unknown, no candidate or of another sex.", "Mend or take away the rule where you made it (step 4)."],
      read: ["How the table was read, where it was not obvious.", "Where options such as --alive or --column are named: they are fields in steps 1 and 3 here."],
      repeated: ["The same row stands there more than once. It counts once."],
      alike: ["Two animal IDs differ only by large and small letters, blanks or leading zeros. They are taken as two animals.", "If they are one, write them alike in the herd book."],
      founder: ["Parents that have no row of their own. They become founders, of which no ancestors are known.", "If you know their parents, add rows for them: the more is known, the better the plan."],
      undated: ["Animals without a date of birth take a time that fits their parents and offspring."],
      moved: ["A time of birth was moved, so that parents come before their offspring."],
      inferred: ["A sex that is not recorded was taken from use as a sire or dam."],
      label: ["IDs of more than 15 characters are shortened within the program's own files. Lists for you have them in full."],
    } as Record<string, readonly string[]>,
  },
  candidates: {
    title: "Candidates",
    intro: "Say which animals you would mate at all. The plan chooses among these.",
    sexNames: { 1: "Males", 2: "Females" }, one: { 1: "male", 2: "female" },
    sexFields: {
      matings: { name: "Matings each may have", help: "At most. Empty: what a column of the herd book says." },
      from: { name: "Youngest", help: (year: number | null) => `Age in years when the offspring are born${year === null ? "" : ` (${year})`}.` },
      to: { name: "Oldest", help: "Older ones are left out." },
    },
    anyMatings: "as recorded", anyAge: "any",
    alive: {
      title: "Alive and there", everybody: "all animals count as alive",
      column: { name: "Column that tells", help: "Without it, dead and sold animals may be planned. Offered are columns that say one of a few things, or have empty cells, as where only the dead have a date." },
      value: { name: "An animal is there if it says" },
      pick: "choose", empty: "(empty cell)",
    },
    known: {
      title: "Known pedigree",
      completeness: { name: "Least completeness", help: "Percent of the ancestors known over five generations. Unknown ancestors count as unrelated: without a limit, animals of which little is known look better than they are. Leave it at 0 to begin with; 60 % is usual where that leaves enough animals." },
      parents: { name: "Both parents must be known" },
    },
    values: {
      title: "Breeding values",
      missing: { name: "Where one is missing", help: "Without breeding values the plan looks at relationship alone." },
      options: { read: "every candidate must have one", mean: "missing ones get the mean of the others", none: "plan without them" },
      without: (n: number) => `${counted(n, "candidate has", "candidates have")} no breeding value. Choose below: the mean of the others for them, or plan without breeding values; or accept in step 2 that they are no candidates; or narrow the conditions, so that they are none.`,
      noColumn: "No column was taken for breeding values. Choose it in step 1, or choose below to plan without them.",
    },
    remain: "Who remains",
    suggested: (ages: boolean) => `How many matings each may have is the page's suggestion, as the herd book has no column for it: 20 for a male, 1 for a female. ${ages
      ? "The ages are those at which nine of ten in this herd book had their offspring. Change both as you need, so that nobody is planned who is not there any more."
      : "Change it as you need, and say the ages, so that no animals of long ago are planned."}`,
    unsound: "The figures come when nothing hinders any more.", toFaults: "See step 2",
    sum: (males: number, females: number) => `${counted(males, "male", "males")} and ${counted(females, "female", "females")} may be mated.`,
    none: "Of one sex nobody remains: nothing can be planned. Loosen a condition; the list of reasons tells which leaves out most.",
    unsaid: "Say above how many matings a male and a female may have: the herd book has no column for it.",
    facts: {
      more: (matings: string, completeness: string) => `may have ${matings} matings; pedigrees complete to ${completeness}`,
      planned: "Matings that can be planned", plannedNote: "one for each female, as far as the males suffice, if you do not say otherwise in step 4",
    },
    reasons: { summary: "Why the others are left out", caption: "Animals left out, by reason", title: "Reason (the first that holds)" },
    why: {
      candidate: "candidate", castrated: "castrated", no_matings: "0 matings in the herd book", not_alive: "not alive or there", no_birth: "no date of birth, so no age",
      age: "too young or too old", unknown_parent: "a parent is unknown", incomplete: "pedigree not complete enough", "": "no matings given, or no row of its own",
    },
    picture: {
      title: (sex: string) => `${sex} by year of birth`, description: "Candidates at the bottom of each bar, above them those who are left out, by reason.",
      born: "Born", fate: "What became of them", animals: "Animals", unborn: "unknown",
      fates: { candidate: "candidates", age: "too young or too old", birth: "no date of birth, so no age", pedigree: "too little known of the pedigree", other: "not alive, without matings, or else" },
      tip: (born: string, sex: string, fate: string, count: string) => `${sex} ${born}\n${count} ${fate}`,
    },
    all: {
      summary: (count: string) => `All ${count} animals, each with its reason`, caption: "All animals", first: (some: string, all: string) => `The first ${some} of ${all}. The search looks at all of them.`,
      columns: { identifier: "Animal", name: "Name", sex: "Sex", birth: "Born", age: "Age", completeness: "Completeness, %", ebv: "Breeding value", matings: "Matings", reason: "Candidate, or why not" },
      notes: { age: "In years when the offspring are born; in generations where no births are known", completeness: "Share of the ancestors known over five generations", matings: "The most it may have" },
    },
  },
  goal: {
    title: "Goal",
    resume: "Go on",
    more: "More",
    matings: {
      title: "How many matings",
      label: "Matings to plan",
      any: "by itself",
      help: "Left empty, there is one for each female that may be mated, as far as the males suffice. With fewer, only the best suited females are used.",
    },
    rules: {
      title: "Your own rules",
      lead: "What is decided already, and what must not be. Animals are named by their ID; its ending or a name is taken, too, where it is one animal's alone. All rules hold for all matings.",
      kind: "A new rule:", add: "Add", remove: "Remove", all: "all", open: "Not complete: it does not count yet.", nobody: "no animal of this herd book",
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
      together: "This rule and those that are marked like it cannot all be kept.",
      faulty: "Waits until the rules can be kept: what is wrong stands beside them.",
      holds: { sire: "sire", dam: "dam", animal: "animal", group: "group", count: "number", share: "percent" },
      files: "Rules from and to a file", file: "Open a file", help: "A CSV file with the header kind,a,b,value, as the command line takes it. Its rules come in the place of those above.",
      save: "Save these rules", noRule: (line: number, text: string) => `Line ${line} is no rule: ${text}`,
    },
    tradeoff: {
      title: "Breeding value or relationship",
      lead: "Who mates only the animals with the highest breeding values mates relatives, and inbreeding rises fast. The green line is the best that can be had of both in this herd: nothing lies above it. The signs beneath it are plans; choose the one whose rate of inbreeding you want to accept.",
      reading: "Reads the herd and computes the best possible",
      planning: "Makes plans",
      ready: (n: number) => `${n} plans are there to choose from.`,
      none: "Waits for a herd book without faults.",
      unsaid: "Waits for step 3: say how many matings a male and a female may have.",
      nobody: "Waits for step 3: of one sex nobody may be mated. Loosen a condition there.",
    },
    picture: {
      title: "Breeding value against inbreeding",
      description: "Higher is a higher breeding value, further left is less inbreeding.",
      note: "A click or a tap takes the plan nearest to it. With the keyboard: arrow keys point at a plan, Enter takes it.",
      axes: "Horizontal scale",
    },
    /** What the picture itself says. */
    say: {
      asked: { ...frontier.asked, own: "the usual balance" },
      how: { greedy: "made at once", exchanges: "made at once, with exchanges", search: "by a full search" },
      parents: frontier.parents, told: { ...frontier.told, merit: (merit: string, scaled: number) => `breeding value ${merit} (${frontier.sd(scaled)})` },
      picture: { ...frontier.picture, merit: "↑ breeding value, standard deviations", key: { ...frontier.picture.key, line: "best possible", greedy: "made at once", exchanges: "made at once, with exchanges", search: "by a full search", marked: "suggested, or what you asked for", chosen: "chosen" } },
    },
    meaning: {
      chosen: "Chosen:", suggested: "Suggested:",
      rate: "Rate of inbreeding", rises: (rate: number) => `${rate <= 0.01 ? "a generation; at most 1 % is advised" : "a generation; more than the 1 % that is advised"}`, falls: "relationship falls: no inbreeding is added",
      size: "Effective size", sizeNote: "animals of an ideal herd in which inbreeding rises as fast; 50 or more are advised (FAO 1998)",
      noBase: frontier.curve.no_base,
      merit: "Mean breeding value of the parents", above: (sd: number) => `${sd.toFixed(2)} standard deviations above using all candidates alike`,
      parents: "Parents", used: (males: number, females: number) => `${males} ♂, ${females} ♀`, candidates: (males: number, females: number) => `males and females, of ${count(males)} and ${count(females)} candidates`,
      inbreeding: "Inbreeding of the offspring", inbreedingNote: "on average, as they are paired",
      share: "Share of the best possible", shareNote: "of what any plan could reach here, rounded down",
      breaks: (rate: number) => `No plan keeps what was asked for: this one comes nearest, with ${(100 * rate).toFixed(2)} % a generation.`,
      unreachable: (size: number, rate: number) => `An effective size of ${size} cannot be reached with these candidates: this plan comes nearest, with ${(100 * rate).toFixed(2)} % a generation.`,
    },
    along: {
      label: "Along the line", merit: "highest breeding value", relationship: "least relationship",
      best: (rate: number, size: number, sd: number) => `Best possible here: ${sd.toFixed(2)} standard deviations of breeding value at ${(100 * rate).toFixed(2)} % inbreeding a generation${Number.isNaN(size) ? "" : `, effective size ${size.toFixed(0)}`}.`,
    },
    target: {
      title: "Or say what you want",
      kind: "What is given", value: "Its value", take: "Show this point",
      coming: "This point is being made.", there: "It is there, and chosen above.",
      kinds: { weight: "weight of relationship", rate: "rate of inbreeding, %", ne: "effective size", degrees: "angle along the line, °" },
      help: {
        weight: "How much relationship counts against breeding value: 0 is breeding value alone, 20 is a common choice.",
        rate: "The plan with the highest breeding values whose inbreeding rises by no more than this in a generation, in percent: 1 is much, 0.5 is careful.",
        ne: "The plan with the highest breeding values with at least this effective size: 50 keeps a herd going for some generations, 100 and more for long.",
        degrees: "0 is the highest breeding value, 90 is least relationship.",
      },
      missed: (value: string, rate: number) => `No plan was found that keeps ${value}; the nearest has a rate of ${(100 * rate).toFixed(2)} %.`,
    },
    search: {
      title: "Search this point thoroughly",
      lead: "The plans above are made at once and are mostly very good. A full search of the chosen point tries very many others; what it finds competes with them, and the best is taken.",
      seeds: "Searches with different random numbers", start: "Search thoroughly",
      help: "Each search begins with other random numbers, so some find more than others. They run side by side, one on each core of this computer; further ones wait for a free one.",
      busy: (point: string) => `Searches: ${point}.`, ended: (point: string) => `The searches have ended: ${point}.`, kept: "None found anything better than the plan made at once: it stays.",
      caption: "Plans of the chosen point", columns: ["Plan", "Of the possible", "Breeding value", "Rate of inbreeding", "Inbreeding of the offspring"],
      best: "(best)", direct: "made at once", seed: (seed: number) => `search ${seed}`,
      states: { waiting: "waits", running: "begins", done: "done", cancelled: "stopped" },
    },
  },
  plan: {
    title: "Plan",
    none: "Choose a plan in step 4 first.",
    awaited: "What you asked for in step 4 is still being made.",
    of: (name: string) => `Chosen in step 4: ${name}.`,
    other: (made: string, chosen: string) => `Below is the plan of: ${made}. Chosen in step 4 is now: ${chosen}.`,
    make: "Make the mating plan",
    planning: "Plans the matings", reporting: "Writes the report", ready: "The plan is there.",
    instead: "On a computer with more memory the command line makes the plan. This file holds all that it needs, and a README with the commands.",
    paper: (herd: string, plan: string, day: Date) => `Mating plan of ${herd}, ${day.toLocaleDateString("en-GB", { dateStyle: "long" })}: ${plan}`,
    print: "Print mating list",
    save: {
      title: "Save the plan", list: "Mating list (CSV)", tables: "All tables (CSV, zip)", workbook: "All tables (Excel)", report: "Report (HTML)", repeat: "Repeat it on a computer (zip)",
    },
    readme: (program: string, run: string, prepare: string, name: string) => `These files make the mating plan again, on any computer with qob.
They were made with ${program}.

The plan, from the files of its run:

    ${run}

QOB_qob_MatingList.txt is then the mating list, byte by byte that in the folder page, if the page has made
it. The report of it:

    qob-report ./QOB_

The files of the run, from the herd book (in the folder herd_book):

    ${prepare}

makes a folder ${name} with ${name}.dat and its companions.
`,
  },
};

export type Texts = typeof en;
