// Deutsch.

import { atLeast, count, counted, digits, fixed, percent, short } from "../../shared/format.js";
import { reasons } from "../spreadsheet/reasons.de.js";
import type { Texts } from "./en.js";

const plans = (n: number) => counted(n, "Plan", "Pläne");
const sd = (value: number) => `${value < 0 ? "−" : "+"}${fixed(Math.abs(value), 3)}\u00a0Standardabw.`;
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
    needed: (candidates, gigabytes) => `Allein die Verwandtschaften unter ${candidates} Kandidaten brauchen ${gigabytes} GB; weniger Kandidaten (Schritt 3) brauchen weniger.`,
    defect: "Das Programm ist im Browser gescheitert; die Seite lebt weiter. Bitte sagen Sie uns, wie es dazu kam.",
    undone: "Rückgängig gemacht", redone: "Wiederholt", saved: (file) => `Gespeichert als ${file}`,
    control: "Strg", work: "Ihre Arbeit", languages: { en: "English", de: "Deutsch" },
    before: "Was Sie sehen, ist noch von vorher.",
    again: "Noch einmal", dismiss: "Schließen", left: (seconds) => `noch ${seconds} s`,
    wholeNumber: (least, most) => `Eine ganze Zahl von ${least} bis ${most}.`,
    otherVersion: (theirs) => `Diese Arbeit hat eine andere Version der Seite gespeichert (Format ${theirs}). Öffnen Sie sie mit jener.`,
    brokenWork: "Diese Datei ist keine gespeicherte Arbeit, oder sie ist abgeschnitten oder verändert. Nehmen Sie eine andere Kopie, oder beginnen Sie mit dem Herdbuch.",
    misshapen: (detail) => `Diese Datei ist keine Arbeit, die diese Seite öffnen kann. Gefunden wurde: ${detail}.`,
    version: (program: string) => `Erstellt mit ${program}.`,
  },
  book: {
    title: "Herdbuch",
    drop: "Herdbuch hier ablegen, oder drücken und die Datei wählen",
    kinds: "Eine Tabelle mit einer Zeile je Tier: .xlsx, .csv, .txt oder .tsv. Auch hier gespeicherte Arbeit wird geöffnet.",
    another: "Ein anderes Herdbuch", anotherKinds: "Irgendwo auf der Seite ablegen, oder drücken und die Datei wählen. „Rückgängig“ holt dieses zurück.",
    example: "Das Beispiel ausprobieren: Hinterwälder Rinder",
    paste: "Eine Tabelle einfügen", pasteHelp: "Kopieren Sie in Ihrer Tabellenkalkulation die Zellen samt Überschriften und fügen Sie sie hier ein.",
    pasteExample: "Tier\tVater\tMutter\tGeschlecht\tGeburt", pasteRead: "Diese Tabelle lesen", pastedName: "eingefügte Tabelle",
    opening: "Liest die Datei",
    fromSheet: (name) => `Blatt „${name}“`, rows: (rows) => counted(rows, "Zeile", "Zeilen"),
    read: (fields) => `Gelesen: ${fields}.`, faults: (n) => `${counted(n, "Fehler", "Fehler")}: siehe Schritt 2`,
    sheet: "Blatt", sheetHelp: "Die Arbeitsmappe hat mehrere; wählen Sie das mit den Tieren.",
    uncalculated: (count) => `${count} Zellen enthalten Formeln ohne ihre Werte und sind hier leer. Öffnen Sie die Mappe in Ihrer Tabellenkalkulation und speichern Sie sie dort noch einmal.`,
    unwelcome: {
      empty: "Es ist nichts darin: Die Datei oder der Text ist leer.",
      large: "Diese Datei ist größer als 1 GB, mehr als ein Browser bearbeiten kann. Lassen Sie weg, was nicht gebraucht wird, oder nehmen Sie die Kommandozeile.",
      picture: "Das ist ein Bild. Die Seite braucht die Tabelle selbst: eine Arbeitsmappe (.xlsx) oder eine CSV-Datei.",
      document: "Das ist ein Dokument (PDF oder ähnliches), aus dem sich keine Tabelle sicher lesen lässt. Bitten Sie um die Tabelle als Arbeitsmappe (.xlsx) oder CSV-Datei.",
      binary: "Das ist keine Tabelle: Die Datei enthält keinen Text. Speichern Sie das Herdbuch als .xlsx oder als „CSV UTF-8“.",
      folder: "Das lässt sich nicht lesen. Wenn es ein Ordner ist, öffnen Sie ihn und legen Sie die Datei darin ab.",
      several: "Das sind mehrere Dateien. Legen Sie eine ab: das Herdbuch.",
    },
    preview: {
      title: "Wofür jede Spalte gehalten wurde", caption: "Die ersten Zeilen des Herdbuchs", row: "Zeile",
      help: "Jede Spalte wird an ihrer Überschrift erkannt. Ist eine falsch verstanden, wählen Sie über ihr das Richtige. Kennung, Vater und Mutter werden gebraucht; vom Übrigen, was Sie haben.",
      notRead: "nicht gelesen", column: (at) => `Spalte ${at}`, takenFor: (name) => `${name}: gehalten für`,
      twice: "Diese Spalte hat keine eigene Überschrift: Geben Sie ihr in der Tabelle eine, damit sie von den anderen zu unterscheiden ist.",
      lacking: (fields) => `Keine Spalte gefunden für: ${fields}. Wählen Sie es über der Spalte, die es enthält.`,
      empty: "Die Tabelle hat keine Spalten.",
      how: {
        "decimal points": "Dezimalpunkte", "decimal commas": "Dezimalkommas",
        "days before months": "Tag vor Monat", "months before days": "Monat vor Tag",
      },
    },
    fields: {
      identifier: "Kennung", sire: "Vater", dam: "Mutter", sex: "Geschlecht", birth: "Geburt", ebv: "Zuchtwert", matings: "Paarungen, höchstens",
      name: "Name", alive: "lebt oder nicht", herd: "Betrieb",
    },
    reading: {
      more: "Mehr dazu, wie die Tabelle gelesen wird", title: "Die Tabelle",
      header: { name: "Die erste Zeile enthält Überschriften", help: "Ohne Überschriften wählen Sie Kennung, Vater und Mutter über den Spalten." },
      dates: { name: "3/4/2001 ist", help: "Nur nötig, wenn kein Datum in der Tabelle es zeigt.", options: { "": "wie die Daten zeigen", dmy: "der 3. April", mdy: "der 4. März" } },
      decimals: { name: "1.234 ist kaum mehr als eins", help: "Ankreuzen, wenn Zahlen wie 1.234 abgelehnt werden, weil sie Tausender sein könnten." },
      unknown: { name: "Weitere Wörter für unbekannte Eltern", help: "Durch Kommas getrennt. Leere Zellen, 0, NA, -, ? und „unbekannt“ sind bekannt.", holder: "fremd, ohne Angabe" },
    },
    timing: {
      title: "Zeit",
      step: {
        name: "Geburten zählen in", help: "Eltern müssen vor ihren Nachkommen kommen. Jahre passen für die meisten Bestände; Mäuse oder Geflügel brauchen Monate.",
        options: { auto: "was am besten passt", year: "Jahren", season: "Halbjahren", quarter: "Vierteljahren", month: "Monaten", generation: "Generationen" }, days: "Tagen",
      },
      days: { name: "Tage je Schritt" },
      why: (text) => `Das Programm zählt ${text}`,
    },
  },
  workbook: reasons,
  faults: {
    title: "Prüfung",
    verdicts: {
      good: (animals) => `Alles gut: Das Herdbuch mit ${counted(animals, "Tier", "Tieren")} kann verwendet werden.`,
      accepted: (findings) => `${counted(findings, "Fehler wurde", "Fehler wurden")} hingenommen.`,
      hinder: (findings) => `${counted(findings, "Fehler hindert", "Fehler hindern")} die nächsten Schritte.`,
      mend: "Was zu tun ist, steht unten bei jeder Art.",
      mendOrAccept: "Berichtigen Sie Ihr Herdbuch und legen Sie es wieder ab, oder nehmen Sie hin, was das Programm daraus macht: Öffnen Sie dazu unten jede Art.",
      noValues: (n) => `Das Herdbuch selbst kann verwendet werden. ${counted(n, "Kandidat hat", "Kandidaten haben")} keinen Zuchtwert: Sagen Sie, was damit geschehen soll.`, toValues: "Zu Schritt 3",
      refused: "Das Herdbuch kann so nicht verwendet werden.",
    },
    counts: {
      names: { animals: "Tiere", males: "Männlich", females: "Weiblich", unknown_sex: "Geschlecht unbekannt", founders: "Gründer", completeness: "Vollständigkeit" },
      notes: {
        unknown_sex: "keine Kandidaten", founders: "ohne bekannte Eltern", completeness: "der Abstammungen über fünf Generationen, im Mittel",
      },
    },
    hinder: { title: "Fehler, die hindern", help: "Jeder macht ein Tier, einen Elternteil, eine Zeit oder einen Wert zweifelhaft." },
    accepted: { title: "Fehler, die Sie hingenommen haben", help: "Sie hindern nicht mehr; die Tabellen sagen, was getan wurde." },
    told: { title: "Bemerkungen", help: "Dafür gibt es eine vernünftige Deutung, und die wurde genommen. Sehen Sie nach, ob sie stimmt." },
    accept: (remedy) => `Hinnehmen: ${remedy}`,
    save: "Alle Befunde als CSV speichern",
    first: (some, all) => `Das sind die ersten ${some} von ${all}; die Datei mit allen Befunden enthält die übrigen.`,
    table: { caption: (kind) => `Befunde: ${kind}`, columns: { row: "Zeile", column: "Spalte", value: "Wert", text: "Was es ist", done: "Was getan wurde" } },
    titles: {
      table: "die Tabelle", cells: "Zeilen mit mehr Zellen als Überschriften", identifier: "Kennungen, die keine sind", duplicate: "Kennungen, deren Zeilen sich widersprechen",
      "own-parent": "Tiere, die ihr eigener Elternteil sind", "same-parents": "ein Tier als Vater und Mutter eines anderen", loop: "Kreise in der Abstammung", sex: "Geschlechter, die nicht zu lesen sind",
      "parent-sex": "Eltern vom falschen Geschlecht", "both-roles": "Tiere, die Vater und Mutter sind", birth: "Geburten, die nicht zu lesen sind", "younger-parent": "Eltern, die nicht vor ihren Nachkommen geboren sind",
      number: "Zahlen, die nicht zu lesen sind", ebv: "Kandidaten ohne Zuchtwert", rule: "Fehler in den Paarungsregeln", read: "Bemerkungen dazu, wie die Tabelle gelesen wird", repeated: "Zeilen, die doppelt vorkommen",
      alike: "Kennungen, die sich nur durch Groß- und Kleinschreibung, Leerzeichen oder führende Nullen unterscheiden", founder: "Eltern ohne eigene Zeile", undated: "Tiere ohne Geburtsdatum",
      moved: "Geburtszeiten, die verschoben wurden", inferred: "Geschlechter, die aus der Verwendung als Elternteil folgen", label: "Kennungen, die für eine Kurzbezeichnung zu lang sind",
    },
    remedies: {
      cells: "die überzähligen Zellen werden nicht gelesen", identifier: "die Zeile wird weggelassen", duplicate: "die erste Zeile gilt",
      "own-parent": "der Elternteil gilt als unbekannt", "same-parents": "beide Eltern gelten als unbekannt", loop: "ein Elternteil gilt als unbekannt",
      sex: "das Geschlecht folgt aus der Verwendung als Elternteil", "parent-sex": "das Geschlecht folgt aus der Verwendung als Elternteil",
      "both-roles": "es bleibt beides", birth: "die Geburt gilt als unbekannt", "younger-parent": "eine Geburtszeit wird verschoben",
      number: "der Wert gilt als fehlend", ebv: "das Tier ist kein Kandidat",
    },
    kinds: {
      table: ["Die Tabelle als Ganzes ist noch nicht zu verstehen.", "Wählen Sie in Schritt 1 die fehlenden Spalten, oder sagen Sie dort, was Daten oder Dezimalzeichen bedeuten."],
      cells: ["Eine Zeile hat mehr Zellen als es Überschriften gibt, oder eine Zelle enthält ein Zeilenende. Oft ein Komma in einem Namen, oder ein Anführungszeichen zu viel.", "Sehen Sie sich die Zeile in Ihrer Tabellenkalkulation an, und die davor."],
      identifier: ["Eine Kennung fehlt, ist zu lang oder wurde von einer Tabellenkalkulation gekürzt (2,76E+14), so dass mehrere Tiere gleich aussehen.", "Formatieren Sie die Spalte als Text und übernehmen Sie die Kennungen neu aus der Quelle."],
      duplicate: ["Eine Kennung hat mehrere Zeilen, die Verschiedenes sagen.", "Behalten Sie die richtige, oder geben Sie den Tieren verschiedene Kennungen."],
      "own-parent": ["Ein Tier ist als sein eigener Vater oder seine eigene Mutter angegeben.", "Meist ein Schreibfehler: Berichtigen Sie den Elternteil, oder leeren Sie die Zelle."],
      "same-parents": ["Ein Tier ist zugleich Vater und Mutter eines anderen.", "Berichtigen Sie das falsche von beiden, oder leeren Sie es."],
      loop: ["Ein Tier stammt über mehrere Schritte von sich selbst ab; also ist mindestens ein Elternteil im Kreis falsch.", "Die Zeilen nennen den Kreis; sehen Sie nach, welcher Elternteil nicht sein kann, oft an den Geburtsdaten."],
      sex: ["Ein Geschlecht ist mit einem unbekannten Wort angegeben, oder ein Kandidat hat keines.", "Schreiben Sie M oder W."],
      "parent-sex": ["Ein Tier ist als weiblich eingetragen, aber Vater, oder umgekehrt.", "Entweder ist das Geschlecht falsch oder der Elternteil beim Nachkommen. Prüfen Sie beides."],
      "both-roles": ["Ein Tier ist bei einigen Vater und bei anderen Mutter.", "Berichtigen Sie die Nachkommen, bei denen es die falsche Rolle hat."],
      birth: ["Eine Geburt ist kein Datum, oder liegt mehr als zehn Jahre hinter allen anderen.", "Schreiben Sie 2001-04-03 oder 3.4.2001, oder ein Jahr."],
      "younger-parent": ["Ein Elternteil ist nicht vor dem Nachkommen geboren.", "Eines der beiden Daten ist falsch, oder der Elternteil. Wenn Eltern und Nachkommen im selben Jahr geboren sind, zählen Sie in Monaten (Schritt 1)."],
      number: ["Ein Zuchtwert oder eine Zahl von Paarungen ist keine Zahl.", "Schreiben Sie nur Zahlen, ohne Einheiten oder Wörter."],
      ebv: ["Ein Kandidat hat keinen Zuchtwert.", "Tragen Sie ihn nach, oder sagen Sie in Schritt 3, dass das Mittel für fehlende gilt, oder planen Sie ohne Zuchtwerte."],
      rule: ["Eine Paarungsregel nennt ein Tier, das unbekannt, kein Kandidat oder von anderem Geschlecht ist.", "Berichtigen oder entfernen Sie die Regel dort, wo Sie sie angelegt haben (Schritt 4)."],
      read: ["Wie die Tabelle gelesen wurde, wo es nicht offensichtlich war.", "Wo Optionen wie --alive oder --column genannt sind: Hier sind es Felder in den Schritten 1 und 3."],
      repeated: ["Dieselbe Zeile kommt mehrmals vor. Sie zählt einmal."],
      alike: ["Zwei Kennungen unterscheiden sich nur durch Groß- und Kleinschreibung, Leerzeichen oder führende Nullen. Sie gelten als zwei Tiere.", "Sind sie eines, schreiben Sie sie im Herdbuch gleich."],
      founder: ["Eltern ohne eigene Zeile. Sie werden Gründer, deren Vorfahren unbekannt sind.", "Kennen Sie ihre Eltern, ergänzen Sie Zeilen: Je mehr bekannt ist, desto besser der Plan."],
      undated: ["Tiere ohne Geburtsdatum erhalten eine Zeit, die zu Eltern und Nachkommen passt."],
      moved: ["Eine Geburtszeit wurde verschoben, damit Eltern vor ihren Nachkommen kommen."],
      inferred: ["Ein nicht eingetragenes Geschlecht folgt aus der Verwendung als Vater oder Mutter."],
      label: ["Kennungen mit mehr als 15 Zeichen werden in den eigenen Dateien des Programms gekürzt. Ihre Listen haben sie in voller Länge."],
    },
  },
  candidates: {
    title: "Kandidaten",
    intro: "Sagen Sie, welche Tiere Sie überhaupt anpaaren würden. Unter diesen wählt der Plan.",
    sexNames: { 1: "Männlich", 2: "Weiblich" }, one: { 1: "männlich", 2: "weiblich" },
    sexFields: {
      matings: { name: "Paarungen je Tier", help: "Höchstens. Leer: was eine Spalte des Herdbuchs sagt." },
      from: { name: "Jüngstes Alter", help: (year) => `In Jahren, wenn die Nachkommen geboren werden${year === null ? "" : ` (${year})`}.` },
      to: { name: "Höchstes Alter", help: "Ältere werden weggelassen." },
    },
    anyMatings: "laut Buch", anyAge: "beliebig",
    alive: {
      title: "Lebt und ist da", everybody: "alle Tiere gelten als lebend",
      column: { name: "Spalte, die es sagt", help: "Ohne sie können tote und verkaufte Tiere eingeplant werden. Angeboten werden Spalten, die nur weniges Verschiedene oder leere Zellen enthalten, etwa wo nur tote Tiere ein Datum haben." },
      value: { name: "Ein Tier ist da, wenn dort steht" },
      pick: "wählen", empty: "(leere Zelle)",
    },
    known: {
      title: "Bekannte Abstammung",
      completeness: { name: "Geringste Vollständigkeit", help: "Prozent der über fünf Generationen bekannten Vorfahren. Unbekannte Vorfahren gelten als nicht verwandt: Ohne Grenze sehen Tiere, von denen wenig bekannt ist, besser aus, als sie sind. Lassen Sie zuerst 0 stehen; üblich sind 60 %, wo dann genug Tiere bleiben." },
      parents: { name: "Beide Eltern müssen bekannt sein" },
    },
    values: {
      title: "Zuchtwerte",
      missing: { name: "Wo einer fehlt", help: "Ohne Zuchtwerte achtet der Plan nur auf Verwandtschaft." },
      options: { read: "jeder Kandidat muss einen haben", mean: "fehlende erhalten das Mittel der anderen", none: "ohne sie planen" },
      without: (n) => `${counted(n, "Kandidat hat", "Kandidaten haben")} keinen Zuchtwert. Wählen Sie unten: das Mittel der anderen für diese, oder ohne Zuchtwerte planen; oder nehmen Sie in Schritt 2 hin, dass sie keine Kandidaten sind; oder fassen Sie die Bedingungen enger, so dass sie keine sind.`,
      noColumn: "Keine Spalte wurde für Zuchtwerte gehalten. Wählen Sie sie in Schritt 1, oder wählen Sie unten, ohne sie zu planen.",
    },
    remain: "Wer bleibt",
    suggested: (ages: boolean) => `Wie viele Paarungen ein Tier haben darf, ist ein Vorschlag der Seite, denn das Herdbuch hat keine Spalte dafür: 20 für ein männliches, 1 für ein weibliches. ${ages
      ? "Das Alter ist jenes, in dem neun von zehn in diesem Herdbuch ihre Nachkommen hatten. Ändern Sie beides nach Bedarf, damit niemand eingeplant wird, den es nicht mehr gibt."
      : "Ändern Sie es nach Bedarf, und sagen Sie das Alter, damit keine Tiere von einst eingeplant werden."}`,
    unsound: "Die Zahlen kommen, wenn nichts mehr hindert.", toFaults: "Siehe Schritt 2",
    sum: (males, females) => `${counted(males, "männliches", "männliche")} und ${counted(females, "weibliches Tier", "weibliche Tiere")} kommen in Frage.`,
    none: "Von einem Geschlecht bleibt keines: So lässt sich nichts planen. Lockern Sie eine Bedingung; die Liste der Gründe zeigt, welche am meisten weglässt.",
    unsaid: "Sagen Sie oben, wie viele Paarungen ein männliches und ein weibliches Tier haben darf: Das Herdbuch hat keine Spalte dafür.",
    facts: {
      more: (matings, completeness) => `dürfen ${matings} Paarungen haben; Abstammungen zu ${completeness} vollständig`,
      planned: "Planbare Paarungen", plannedNote: "eine je weiblichem Tier, soweit die männlichen reichen, wenn Sie in Schritt 4 nichts anderes sagen",
    },
    reasons: { summary: "Warum die anderen wegfallen", caption: "Weggelassene Tiere nach Grund", title: "Grund (der erste, der zutrifft)" },
    why: {
      candidate: "Kandidat", castrated: "kastriert", no_matings: "0 Paarungen im Herdbuch", not_alive: "lebt nicht oder ist nicht da", no_birth: "ohne Geburtsdatum, also ohne Alter",
      age: "zu jung oder zu alt", unknown_parent: "ein Elternteil unbekannt", incomplete: "Abstammung zu unvollständig", "": "keine Paarungen angegeben, oder ohne eigene Zeile",
    },
    picture: {
      title: (sex) => `${sex}, nach Geburtsjahr`, description: "Unten in jeder Säule die Kandidaten, darüber die weggelassenen nach Grund.",
      born: "Geboren", fate: "Was aus ihnen wurde", animals: "Tiere", unborn: "unbekannt",
      fates: { candidate: "Kandidaten", age: "zu jung oder zu alt", birth: "ohne Geburtsdatum, also ohne Alter", pedigree: "Abstammung zu wenig bekannt", other: "nicht da, ohne Paarungen oder anderes" },
      tip: (born, sex, fate, count) => `${sex} ${born}\n${count} ${fate}`,
    },
    all: {
      summary: (count) => `Alle ${count} Tiere, jedes mit seinem Grund`, caption: "Alle Tiere", first: (some: string, all: string) => `Die ersten ${some} von ${all}. Die Suche sieht alle durch.`,
      columns: { identifier: "Tier", name: "Name", sex: "Geschlecht", birth: "Geboren", age: "Alter", completeness: "Vollständigkeit, %", ebv: "Zuchtwert", matings: "Paarungen", reason: "Kandidat, oder warum nicht" },
      notes: { age: "In Jahren, wenn die Nachkommen geboren werden; in Generationen, wo keine Geburten bekannt sind", completeness: "Anteil der über fünf Generationen bekannten Vorfahren", matings: "Die meisten, die es haben darf" },
    },
  },
  goal: {
    title: "Ziel",
    resume: "Weiter",
    more: "Mehr",
    matings: {
      title: "Wie viele Paarungen",
      label: "Zu planende Paarungen",
      any: "von selbst",
      help: "Bleibt das leer, gibt es eine für jedes weibliche Tier, das gepaart werden darf, soweit die männlichen reichen. Bei weniger werden nur die geeignetsten weiblichen genommen.",
    },
    rules: {
      title: "Eigene Regeln",
      lead: "Was schon entschieden ist und was nicht sein darf. Tiere heißen nach ihrer Kennung; auch ihr Ende oder ein Name gilt, wenn nur ein Tier so heißt. Alle Regeln gelten für alle Paarungen.",
      kind: "Eine neue Regel:", add: "Hinzufügen", remove: "Entfernen", all: "alle", open: "Unvollständig: sie zählt noch nicht.", nobody: "kein Tier dieses Herdbuchs",
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
      together: "Diese Regel und die, bei denen dasselbe steht, lassen sich nicht alle einhalten.",
      faulty: "Wartet, bis sich die Regeln einhalten lassen: was daran falsch ist, steht bei ihnen.",
      holds: { sire: "Vater", dam: "Mutter", animal: "Tier", group: "Gruppe", count: "Anzahl", share: "Prozent" },
      files: "Regeln aus einer Datei und in eine", file: "Datei öffnen", help: "Eine CSV-Datei mit der Kopfzeile kind,a,b,value, wie sie die Kommandozeile nimmt. Ihre Regeln treten an die Stelle der obigen.",
      save: "Diese Regeln speichern", noRule: (line: number, text: string) => `Zeile ${line} ist keine Regel: ${text}`,
    },
    tradeoff: {
      title: "Zuchtwert oder Verwandtschaft",
      lead: "Wer nur die Tiere mit den besten Zuchtwerten paart, paart Verwandte, und die Inzucht steigt schnell. Die grüne Linie ist das Beste, was sich in dieser Herde von beidem haben lässt: darüber liegt nichts. Die Zeichen darunter sind Pläne; wählen Sie den, dessen Inzuchtrate Sie hinnehmen wollen.",
      reading: "Liest die Herde und berechnet das Bestmögliche",
      planning: "Macht Pläne",
      ready: (n: number) => `${n} Pläne stehen zur Wahl.`,
      none: "Wartet auf ein Herdbuch ohne Fehler.",
      unsaid: "Wartet auf Schritt 3: sagen Sie, wie viele Paarungen ein männliches und ein weibliches Tier haben darf.",
      nobody: "Wartet auf Schritt 3: von einem Geschlecht darf niemand gepaart werden. Lockern Sie dort eine Bedingung.",
    },
    picture: {
      title: "Zuchtwert und Inzucht",
      description: "Weiter oben ist mehr Zuchtwert, weiter links ist weniger Inzucht.",
      note: "Ein Klick oder ein Tippen nimmt den nächsten Plan. Mit der Tastatur: Pfeiltasten zeigen auf einen Plan, Enter nimmt ihn.",
      axes: "Waagerechte Achse",
    },
    say: {
      asked: {
        own: "die übliche Abwägung", weight: (weight: number) => `Gewicht ${short(weight)}`, constraint: (rate: number) => `höchstens ${short(100 * rate)}\u00a0% je Generation`, merit: "höchster Zuchtwert",
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
          line: "bestmöglich", greedy: "sofort gemacht", exchanges: "sofort gemacht, mit Tauschen", search: "durch gründliche Suche", marked: "vorgeschlagen oder verlangt", chosen: "gewählt",
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
      chosen: "Gewählt:", suggested: "Vorgeschlagen:",
      rate: "Inzuchtrate", rises: (rate: number) => `${rate <= 0.01 ? "je Generation; geraten wird zu höchstens 1 %" : "je Generation; mehr als das 1 %, zu dem geraten wird"}`, falls: "die Verwandtschaft sinkt: es kommt keine Inzucht hinzu",
      size: "Effektive Größe", sizeNote: "Tiere einer idealen Herde, in der die Inzucht ebenso schnell steigt; geraten wird zu 50 oder mehr (FAO 1998)",
      noBase: (animals: number) => `Inzuchtrate und effektive Größe stehen hier auf schwachem Grund: sie werden von den zuletzt geborenen Tieren an gerechnet, von denen erst ${animals} im Herdbuch sind. Einen Plan vom anderen unterscheiden sie dennoch.`,
      merit: "Mittlerer Zuchtwert der Eltern", above: (sd: number) => `${fixed(sd, 2)} Standardabweichungen über dem gleichmäßigen Einsatz aller Kandidaten`,
      parents: "Eltern", used: (males: number, females: number) => `${males} ♂, ${females} ♀`, candidates: (males: number, females: number) => `männliche und weibliche, von ${count(males)} und ${count(females)} Kandidaten`,
      inbreeding: "Inzucht der Nachkommen", inbreedingNote: "im Mittel, so wie sie gepaart werden",
      share: "Anteil am Bestmöglichen", shareNote: "dessen, was irgendein Plan hier erreichen könnte, abgerundet",
      breaks: (rate: number) => `Kein Plan hält ein, was verlangt war: dieser kommt am nächsten, mit ${percent(rate)} je Generation.`,
      unreachable: (size: number, rate: number) => `Eine effektive Größe von ${size} ist mit diesen Kandidaten nicht zu erreichen: dieser Plan kommt am nächsten, mit ${percent(rate)} je Generation.`,
    },
    along: {
      label: "Entlang der Linie", merit: "höchster Zuchtwert", relationship: "geringste Verwandtschaft",
      best: (rate: number, size: number, sd: number) => `Hier bestmöglich: ${fixed(sd, 2)} Standardabweichungen Zuchtwert bei ${percent(rate)} Inzucht je Generation${Number.isNaN(size) ? "" : `, effektive Größe ${fixed(size, 0)}`}.`,
    },
    target: {
      title: "Oder sagen Sie, was Sie wollen",
      kind: "Was gegeben ist", value: "Sein Wert", take: "Diesen Punkt zeigen",
      coming: "Dieser Punkt wird gerade gemacht.", there: "Er ist da und oben gewählt.",
      kinds: { weight: "Gewicht der Verwandtschaft", rate: "Inzuchtrate, %", ne: "effektive Größe", degrees: "Winkel entlang der Linie, °" },
      help: {
        weight: "Wie viel die Verwandtschaft gegen den Zuchtwert zählt: 0 ist der Zuchtwert allein, 20 ist üblich.",
        rate: "Der Plan mit dem höchsten Zuchtwert, bei dem die Inzucht in einer Generation um nicht mehr als das steigt, in Prozent: 1 ist viel, 0,5 ist vorsichtig.",
        ne: "Der Plan mit dem höchsten Zuchtwert und mindestens dieser effektiven Größe: 50 erhält eine Herde für einige Generationen, 100 und mehr auf Dauer.",
        degrees: "0 ist der höchste Zuchtwert, 90 die geringste Verwandtschaft.",
      },
      missed: (value: string, rate: number) => `Kein Plan hält ${value} ein; der nächste hat eine Rate von ${percent(rate)}.`,
    },
    search: {
      title: "Diesen Punkt gründlich suchen",
      lead: "Die Pläne oben sind sofort gemacht und meist sehr gut. Eine gründliche Suche am gewählten Punkt versucht sehr viele andere; was sie findet, tritt gegen sie an, und der beste Plan wird genommen.",
      seeds: "Suchen mit verschiedenen Zufallszahlen", start: "Gründlich suchen",
      help: "Jede Suche beginnt mit anderen Zufallszahlen, darum finden manche mehr als andere. Sie laufen nebeneinander, eine auf jedem Kern dieses Rechners; weitere warten, bis einer frei ist.",
      busy: (point: string) => `Sucht: ${point}.`, ended: (point: string) => `Die Suchen sind zu Ende: ${point}.`, kept: "Keine fand etwas Besseres als den sofort gemachten Plan: Er bleibt.",
      caption: "Pläne des gewählten Punktes", columns: ["Plan", "Anteil am Bestmöglichen", "Zuchtwert", "Inzuchtrate", "Inzucht der Nachkommen"],
      best: "(der beste)", direct: "sofort gemacht", seed: (seed: number) => `Suche ${seed}`,
      states: { waiting: "wartet", running: "beginnt", done: "fertig", cancelled: "angehalten" },
    },
  },
  plan: {
    title: "Plan",
    none: "Wählen Sie erst einen Plan in Schritt 4.",
    awaited: "Was Sie in Schritt 4 verlangt haben, wird gerade noch gemacht.",
    of: (name: string) => `In Schritt 4 gewählt: ${name}.`,
    other: (made: string, chosen: string) => `Unten steht der Plan für: ${made}. In Schritt 4 ist jetzt gewählt: ${chosen}.`,
    make: "Paarungsplan machen",
    planning: "Plant die Paarungen", reporting: "Schreibt den Bericht", ready: "Der Plan ist da.",
    instead: "Auf einem Rechner mit mehr Speicher macht die Kommandozeile den Plan. Diese Datei enthält alles, was sie braucht, und eine README mit den Befehlen.",
    paper: (herd: string, plan: string, day: Date) => `Paarungsplan für ${herd}, ${day.toLocaleDateString("de-DE", { dateStyle: "long" })}: ${plan}`,
    print: "Paarungsliste drucken",
    save: {
      title: "Plan speichern", list: "Paarungsliste (CSV)", tables: "Alle Tabellen (CSV, zip)", workbook: "Alle Tabellen (Excel)", report: "Bericht (HTML)", repeat: "Auf einem Rechner wiederholen (zip)",
    },
    readme: (program: string, run: string, prepare: string, name: string) => `Diese Dateien machen den Paarungsplan noch einmal, auf jedem Rechner mit qob.
Sie wurden gemacht mit ${program}.

Der Plan, aus den Dateien seines Laufs:

    ${run}

QOB_qob_MatingList.txt ist dann die Paarungsliste, Byte für Byte die im Ordner page, wenn
die Seite sie gemacht hat. Der Bericht dazu:

    qob-report ./QOB_

Die Dateien des Laufs, aus dem Herdbuch (im Ordner herd_book):

    ${prepare}

macht einen Ordner ${name} mit ${name}.dat und dem, was dazu gehört.
`,
  },
};
