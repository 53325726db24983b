// Deutsch.

import { atLeast, counted, digits, percent } from "../../shared/format.js";
import { short } from "../../shared/texts/frontier.js";
import type { Texts } from "./en.js";

const plans = (n: number) => counted(n, "Plan", "Pläne");
const sd = (value: number) => `${value < 0 ? "−" : "+"}${Math.abs(value).toFixed(3)}\u00a0Standardabw.`;
const falls = "die Verwandtschaft sinkt";

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
  goal: {
    title: "Ziel",
    what: "Was heißt das?",
    left: (seconds: number) => `noch ${Math.max(1, Math.round(seconds))} s`,
    resume: "Weiter",
    matings: {
      title: "Wie viele Paarungen",
      label: "Zu planende Paarungen",
      byItself: (n: number) => `Bleibt das leer, werden ${n} geplant: eine für jedes weibliche Tier, das gepaart werden darf, soweit die männlichen reichen.`,
      given: "Bleibt das leer, nimmt das Programm eine für jedes weibliche Tier, das gepaart werden darf, soweit die männlichen reichen.",
      help: "So viele Paarungen hat die Liste. Sind es weniger als weibliche Tiere, werden nur die geeignetsten genommen.",
    },
    rules: {
      title: "Eigene Regeln",
      lead: "Was schon entschieden ist und was nicht sein darf. Tiere heißen nach ihrer Kennung; auch ein Name gilt, wenn nur ein Tier so heißt. Alle Regeln gelten für alle Paarungen.",
      kind: "Eine neue Regel:", add: "Hinzufügen", remove: "Entfernen", all: "alle", open: "Unvollständig: sie zählt noch nicht.",
      kinds: {
        fix: "beschlossene Paarungen", forbid: "zwei Tiere nie", min: "mindestens so viele Paarungen", max: "höchstens so viele Paarungen", group: "ein Tier gehört zu einer Gruppe",
        "forbid-groups": "keine Paarungen zwischen Gruppen", "max-pair": "meiste Paarungen eines Paares", "max-per-group": "meiste Paarungen eines Vaters in einer Gruppe", "max-f": "größte Inzucht der Nachkommen",
      },
      said: {
        fix: "Vater {a} und Mutter {b}: {value} Paarungen sind beschlossen.",
        forbid: "Vater {a} und Mutter {b} werden nie gepaart.",
        min: "{a} hat mindestens {value} Paarungen.",
        max: "{a} hat höchstens {value} Paarungen.",
        group: "{a} gehört zur Gruppe {b} (ein Betrieb, eine Station, eine Familie).",
        "forbid-groups": "Niemand der Gruppe {a} wird mit der Gruppe {b} gepaart; zweimal derselbe Name: nicht innerhalb der Gruppe.",
        "max-pair": "Jedes Paar hat höchstens {value} Paarungen.",
        "max-per-group": "Vater {a} hat höchstens {value} Paarungen mit Müttern der Gruppe {b}.",
        "max-f": "Kein Nachkomme hat eine erwartete Inzucht über {value} Prozent.",
      },
      holds: { sire: "Vater", dam: "Mutter", animal: "Tier", group: "Gruppe", count: "Anzahl", share: "Prozent" },
      files: "Regeln aus einer Datei und in eine", file: "Datei öffnen", help: "Eine CSV-Datei mit der Kopfzeile kind,a,b,value, wie sie die Kommandozeile nimmt. Ihre Regeln treten an die Stelle der obigen.",
      save: "Diese Regeln speichern", noRule: (line: number, text: string) => `Zeile ${line} ist keine Regel: ${text}`,
    },
    tradeoff: {
      title: "Leistung oder Verwandtschaft",
      lead: "Wer nur die Tiere mit den besten Zuchtwerten paart, paart Verwandte, und die Inzucht steigt schnell. Die grüne Linie ist das Beste, was sich in dieser Herde von beidem haben lässt: darüber liegt nichts. Die Zeichen darunter sind Pläne; wählen Sie den, dessen Inzuchtrate Sie hinnehmen wollen.",
      reading: "Liest die Herde und berechnet das Bestmögliche",
      planning: "Macht Pläne",
      ready: (n: number) => `${n} Pläne stehen zur Wahl.`,
      none: "Wartet auf ein Herdbuch ohne Fehler.",
    },
    picture: {
      title: "Zuchtwert und Inzucht",
      description: "Weiter oben ist mehr Zuchtwert, weiter links ist weniger Inzucht.",
      note: "Ein Klick oder ein Tippen nimmt den nächsten Plan. Mit der Tastatur: Pfeiltasten zeigen auf einen Plan, Enter nimmt ihn.",
      axes: "Waagerechte Achse",
    },
    say: {
      asked: {
        own: "Vorschlag", weight: (weight: number) => `Gewicht ${short(weight)}`, constraint: (rate: number) => `höchstens ${short(100 * rate)}\u00a0% je Generation`, merit: "höchster Zuchtwert",
        target: {
          rate: (rate: number) => `Ziel ${short(100 * rate)}\u00a0% je Generation`, ne: (size: number) => `Ziel effektive Größe ${short(size)}`, degrees: (angle: number) => `Ziel ${short(angle)}°`,
        },
        seed: (goal: string, seed: number) => `${goal}, Suche ${seed}`,
      },
      how: { greedy: "sofort gemacht", exchanges: "sofort gemacht, mit Tauschen", search: "durch gründliche Suche" },
      parents: (males: number, females: number) => `${males} männliche, ${females} weibliche`,
      picture: {
        title: "Zuchtwert und Inzucht",
        description: (n: number) => plans(n),
        help: "Zeigen Sie auf ein Zeichen, oder nehmen Sie die Pfeiltasten, um seine Zahlen zu lesen; ein Klick oder Enter wählt den Plan. Mehrere an einer Stelle kommen der Reihe nach.",
        signs: "Pläne",
        axes: "Waagerechte Achse",
        rate: { name: "Inzuchtrate", axis: "Inzuchtrate je Generation, Prozent →", note: "" },
        relationship: { name: "Mittlere Verwandtschaft", axis: "mittlere Verwandtschaft der nächsten Generation, Prozent →", note: "" },
        merit: "↑ Zuchtwert, Standardabweichungen",
        ne: "effektive Größe",
        limit: "Ziel",
        impossible: "hier kann kein Plan liegen",
        key: {
          line: "bestmöglich", greedy: "jede Paarung, wo sie am meisten bringt", exchanges: "dann Tausch von Paarungen", search: "Suche", marked: "vorgeschlagen oder verlangt", chosen: "gewählt",
        },
      },
      told: {
        merit: (merit: string, scaled: number) => `Zuchtwert ${merit} (${sd(scaled)})`,
        rate: (rate: number, size: number) => `Inzucht ${percent(rate)} je Generation, ${Number.isFinite(size) ? `effektive Größe ${digits(size)}` : falls}`,
        relationship: (value: number) => `Verwandtschaft ${percent(value)}`,
        share: (share: number) => `${atLeast(share)} dessen, was irgendein Plan könnte`,
        others: (n: number) => `noch ${plans(n)} an dieser Stelle`,
      },
    },
    meaning: {
      chosen: "Gewählt:",
      rate: "Inzuchtrate", rises: (rate: number) => `${rate <= 0.01 ? "je Generation; geraten wird zu höchstens 1 %" : "je Generation; mehr als das 1 %, zu dem geraten wird"}`, falls: "die Verwandtschaft sinkt: es kommt keine Inzucht hinzu",
      size: "Effektive Größe", sizeNote: "Tiere einer idealen Herde, in der die Inzucht ebenso schnell steigt; geraten wird zu 50 oder mehr (FAO 1998)",
      merit: "Mittlerer Zuchtwert der Eltern", above: (sd: number) => `${sd.toFixed(2)} Standardabweichungen über dem gleichmäßigen Einsatz aller Kandidaten`,
      parents: "Eltern", used: (males: number, females: number) => `${males} ♂, ${females} ♀`, candidates: (males: number, females: number) => `männliche und weibliche, von ${males} und ${females} Kandidaten`,
      inbreeding: "Inzucht der Nachkommen", inbreedingNote: "im Mittel, so wie sie gepaart werden",
      share: "Anteil am Bestmöglichen", shareNote: "dessen, was irgendein Plan hier erreichen könnte, abgerundet",
      breaks: (rate: number) => `Kein Plan hält ein, was verlangt war: dieser kommt am nächsten, mit ${(100 * rate).toFixed(2)} % je Generation.`,
    },
    along: {
      label: "Entlang der Linie", merit: "höchster Zuchtwert", relationship: "geringste Verwandtschaft",
      best: (rate: number, size: number, sd: number) => `Hier bestmöglich: ${sd.toFixed(2)} Standardabweichungen Zuchtwert bei ${(100 * rate).toFixed(2)} % Inzucht je Generation${Number.isNaN(size) ? "" : `, effektive Größe ${size.toFixed(0)}`}.`,
    },
    target: {
      title: "Oder sagen Sie, was Sie wollen",
      kind: "Was gegeben ist", value: "Sein Wert", take: "Diesen Plan machen",
      kinds: { weight: "Gewicht der Verwandtschaft", rate: "Inzuchtrate, %", ne: "effektive Größe", degrees: "Winkel entlang der Linie, °" },
      help: {
        weight: "Wie viel die Verwandtschaft gegen den Zuchtwert zählt: 0 ist der Zuchtwert allein, 20 ist üblich.",
        rate: "Der Plan mit dem höchsten Zuchtwert, bei dem die Inzucht in einer Generation um nicht mehr als das steigt, in Prozent: 1 ist viel, 0.5 ist vorsichtig.",
        ne: "Der Plan mit dem höchsten Zuchtwert und mindestens dieser effektiven Größe: 50 erhält eine Herde für einige Generationen, 100 und mehr auf Dauer.",
        degrees: "0 ist der höchste Zuchtwert, 90 die geringste Verwandtschaft.",
      },
      missed: (value: string, rate: number) => `Kein Plan hält ${value} ein; der nächste hat eine Rate von ${(100 * rate).toFixed(2)} %.`,
    },
    search: {
      title: "Diesen Punkt gründlich suchen",
      lead: "Die Pläne oben sind sofort gemacht und meist sehr gut. Eine gründliche Suche am gewählten Punkt versucht sehr viele andere; was sie findet, tritt gegen sie an, und der beste Plan wird genommen.",
      seeds: "Suchen mit verschiedenen Zufallszahlen", start: "Gründlich suchen",
      help: "Jede Suche beginnt mit anderen Zufallszahlen, darum finden manche mehr als andere. Sie laufen nebeneinander, eine auf jedem Kern dieses Rechners; weitere warten, bis einer frei ist.",
      busy: "Sucht.", ended: "Die Suchen sind zu Ende.",
      caption: "Pläne des gewählten Punktes", columns: ["Plan", "", "Vom Möglichen", "Zuchtwert", "Inzuchtrate", "Inzucht der Nachkommen"],
      best: "der beste", direct: "sofort gemacht", seed: (seed: number) => `Suche ${seed}`,
      states: { waiting: "wartet", running: "beginnt", done: "fertig", cancelled: "angehalten" },
    },
  },
  plan: {
    title: "Plan",
    none: "Wählen Sie erst einen Punkt in Schritt 4.",
    of: (name: string) => `In Schritt 4 gewählt: ${name}.`,
    other: (made: string, chosen: string) => `Unten steht der Plan für: ${made}. In Schritt 4 ist jetzt gewählt: ${chosen}.`,
    make: "Paarungsplan machen",
    planning: "Plant die Paarungen", reporting: "Schreibt den Bericht", ready: "Der Plan ist da.",
    english: "Der Bericht ist auf Englisch.",
    print: "Paarungsliste drucken",
    save: {
      title: "Plan speichern", list: "Paarungsliste (CSV)", tables: "Alle Tabellen (CSV, zip)", workbook: "Alle Tabellen (Excel)", report: "Bericht (HTML)", repeat: "Auf einem Rechner wiederholen (zip)",
    },
    readme: (program: string, prepare: string, name: string) => `Diese Dateien machen den Paarungsplan noch einmal, auf jedem Rechner mit qob.
Sie wurden gemacht mit ${program}.

Der Plan, aus den Dateien seines Laufs:

    qob qob.prm

QOB_qob_MatingList.txt ist dann die Paarungsliste, Byte für Byte dieselbe. Der Bericht dazu:

    qob-report ./QOB_

Die Dateien des Laufs, aus dem Herdbuch (im Ordner herd_book):

    ${prepare}

macht einen Ordner ${name} mit ${name}.dat und dem, was dazu gehört.
`,
  },
};
