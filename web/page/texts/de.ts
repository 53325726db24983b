// Deutsch.

import type { Texts } from "./en.js";

export const de: Texts = {
  frame: {
    title: "qob: Paarungen planen",
    lead: "Vom Herdbuch zur Paarungsliste, nur auf diesem Rechner: nichts wird irgendwohin gesendet.",
    undo: "Rückgängig", redo: "Wiederholen", save: "Arbeit speichern", open: "Arbeit öffnen", language: "Sprache",
    steps: "Schritte", later: "Kommt, wenn der Schritt davor getan ist.",
    working: "Rechnet", cancel: "Abbrechen",
    cancelled: "Angehalten.",
    memory: "Das braucht mehr Speicher, als ein Browser gibt (4 GB). Auf einem Rechner mit mehr tut es die Kommandozeile: siehe Schritt 5.",
    defect: "Das Programm ist im Browser gescheitert; die Seite lebt weiter. Bitte sagen Sie uns, wie es dazu kam.",
    version: (program: string) => `Erstellt mit ${program}.`,
  },
  book: { title: "Herdbuch" },
  faults: { title: "Prüfung" },
  candidates: { title: "Kandidaten" },
  goal: { title: "Ziel" },
  plan: { title: "Plan" },
};
