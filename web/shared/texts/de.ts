// Deutsch: die Wörter der Berichte und dessen, was alle Seiten teilen.

import { atLeast, count, counted, digits, fixed, percent } from "../format.js";
import type { Told } from "./beware.js";
import type { Texts } from "./language.js";
import { sources } from "./population.js";

const STEP = "Zeitschritt";
/** When somebody was born, in a sentence: a year stands without a preposition. */
const when = (birth: string) => (birth.startsWith(STEP) ? `in ${birth}` : birth);
const born = (n: string, birth: string) => (n === "1" ? `1 Tier, das ${when(birth)} geboren ist` : `${n} Tiere, die ${when(birth)} geboren sind`);
/** A number that is a text already, with its noun. */
const said = (n: string, one: string, more: string) => `${n} ${n === "1" ? one : more}`;
const some = (told: Told, name: string, one: string, more: string) =>
  told.has(name) && told.count(name) !== "0" ? [said(told.count(name), one, more)] : [];
const listed = (parts: readonly string[]) => new Intl.ListFormat("de").format(parts);
const matings = (n: number) => counted(n, "Paarung", "Paarungen");
const animals = (ne: number) => `${fixed(ne, ne < 10 ? 1 : 0)}\u00a0Tieren`;

const by_coancestry = (told: Told) => told.has("by_inbreeding") && told.count("by_inbreeding") === "0";
const measure = (told: Told) => (by_coancestry(told) ? "die Kinship" : "die Inzucht");
const sized = (told: Told) => (told.has("ne") ? `, das entspricht einer effektiven Populationsgröße von ${told.number("ne")}` : "");
/** Chosen animals with the matings that they have. */
const used = (told: Told, name: string, matings: string, one: string, more: string) =>
  some(told, name, one, more).map((animals) => `${animals} (${said(told.count(matings), "Paarung", "Paarungen")})`);

const beware: Texts["beware"] = {
  title: "Worauf zu achten ist",
  nothing: "Es wurde nichts gefunden, was gegen den Plan oder die Daten spricht.",
  none_serious: "Es gibt keine Warnungen. Was folgt, ist gut zu wissen.",
  intro: (serious, others) => `Warnungen: ${serious}. Gut zu wissen: ${others}.`,
  serious: "Warnung",
  known: "Gut zu wissen",
  warnings: {
    unknown_parents: (told) => ({
      brief: `bei einigen gewählten Tieren sind Eltern unbekannt (${told.percent("genes")} der Gene der Nachkommen stammen von diesen)`,
      title: "Gewählte Tiere haben unbekannte Eltern",
      text: `Von den gewählten Tieren haben diese einen unbekannten Elternteil: ${listed([
        ...used(told, "chosen_males", "male_matings", "männliches", "männliche"), ...used(told, "chosen_females", "female_matings", "weibliches", "weibliche"),
      ])}. ${told.percent("genes")} der Gene der Nachkommen stammen von Eltern, die niemand kennt. Diese gelten als mit niemandem verwandt; darum bevorzugt der Plan solche Tiere, und die wahre Inzucht kann höher sein, als die Zahlen sagen. Ermitteln Sie die Eltern, oder lassen Sie Kandidaten mit unvollständiger Abstammung weg (Schritt 3, „Geringste Vollständigkeit“; auf der Kommandozeile --min-completeness).`,
    }),
    undated_parents: (told) => ({
      brief: "Eltern der jüngsten Tiere haben keine Geburtszeit, darum stimmen Inzuchtrate und effektive Populationsgröße nicht",
      title: "Eltern ohne Geburtszeit",
      text: `Bei ${told.count("undated")} von ${said(told.count("parentages"), "Elternschaft", "Elternschaften")} der jüngsten Tiere ist die Geburtszeit des Elternteils nicht bekannt. Solche Eltern gelten als vor Tausenden von Zeitschritten geboren: Generationsintervall, Inzuchtrate und effektive Populationsgröße des Plans sind dadurch falsch. Tragen Sie diese Eltern mit ihrer Geburt im Herdbuch nach.`,
    }),
    unfinished_last_time: (told) => ({
      brief: "die letzte Geburtszeit ist noch nicht zu Ende, darum hat die Inzuchtrate keine sichere Grundlage",
      title: "Die letzte Geburtszeit ist nicht vollständig",
      text: `Die Daten enthalten nur ${born(told.count("animals"), told.birth("birth_time"))}; üblich sind ${told.count("usual")}. Die Inzuchtrate wird von den Tieren dieser Geburtszeit aus gerechnet und hat darum keine gute Grundlage.${
        told.has("rate") ? ` Die Inzucht ${told.change("rate")} (im letzten Generationsintervall${
          told.has("from") && told.has("to") ? `, von ${told.birth("from")} bis ${told.birth("to")}` : ""}).` : ""}`,
    }),
    constraint: (told) => ({
      brief: `die Inzuchtrate (${told.percent("rate")}) überschreitet die gewünschte Grenze von ${told.percent("constraint")}`,
      title: "Der Plan hält seine Grenze nicht ein",
      text: `Seine Inzuchtrate ist ${told.percent("rate")} je Generation; gewünscht waren höchstens ${told.percent("constraint")}. Mehr Vatertiere, mehr Kandidaten oder weniger Paarungen je Vatertier können es möglich machen.`,
    }),
    close_relatives: (told) => ({
      brief: "nahe Verwandte werden gepaart",
      title: "Nahe Verwandte werden gepaart",
      text: `Der Plan enthält ${listed([
        ...some(told, "parent_offspring", "Paarung von Elternteil und Nachkomme", "Paarungen von Elternteil und Nachkomme"),
        ...some(told, "full_sibs", "Paarung von Vollgeschwistern", "Paarungen von Vollgeschwistern"),
        ...some(told, "half_sibs", "Paarung von Halbgeschwistern", "Paarungen von Halbgeschwistern"),
      ])}. Die Nachkommen daraus sind ingezüchtet: zu mindestens 25\u00a0% bei Elternteil und Nachkomme oder Vollgeschwistern, zu 12,5\u00a0% bei Halbgeschwistern. Bei den Paarungen steht, mit welchen anderen gewählten Vatertieren es weniger wäre.`,
    }),
    brothers: (told) => ({
      brief: `zwei Brüder haben ${told.percent("share", 0)} aller Paarungen`,
      title: "Zwei Brüder haben die meisten Paarungen",
      text: `Sie haben ${told.count("matings")} Paarungen, ${told.percent("share", 0)} von allen. Ein ebenso großer Teil der nächsten Generation ist nah miteinander verwandt und findet dann wenige Partner, die es nicht sind.`,
    }),
    rate: (told) => ({
      brief: `die Inzucht würde um mehr als ${told.percent("limit")} je Generation steigen`,
      title: "Die Inzucht würde schnell steigen",
      text: `Die Inzuchtrate des Plans ist ${told.percent("rate")} je Generation${sized(told)}. Als sicher gelten meist höchstens ${told.percent("limit")}, also eine effektive Populationsgröße von 50 oder mehr (FAO 1998).`,
    }),
    ne: (told) => ({
      brief: `die effektive Populationsgröße des Plans liegt unter ${told.number("limit")} Tieren`,
      title: "Die effektive Populationsgröße ist klein",
      text: `Eine Inzuchtrate wie die des Plans entspricht einer effektiven Populationsgröße von ${told.number("ne")} Tieren. Als sicher gelten meist mindestens ${told.number("limit")} (FAO 1998).`,
    }),
    rules: (told) => ({
      brief: "Paarungsregeln sind verletzt",
      title: "Der Plan hält nicht alle Regeln ein",
      text: `Regeln sind um ${said(told.count("broken"), "Paarung", "Paarungen")} verletzt, zu viele oder zu wenige; welche, steht im Teil über die Regeln.`,
    }),
    changed: (told) => ({
      brief: "Dateien haben sich seit dem Lauf geändert",
      title: "Die Daten sind nicht mehr die des Laufs",
      text: `Was der Lauf aufgeschrieben hat, weicht von dem ab, was seine Dateien jetzt ergeben: ${told.text}. Dieser Bericht vermengt beides: Wiederholen Sie den Lauf, oder stellen Sie seine Dateien wieder her.`,
    }),
    relationships_from_file: () => ({
      brief: "die Verwandtschaften kommen aus einer Datei und können vom Pedigree abweichen",
      title: "Die Verwandtschaften kommen aus einer Datei",
      text: "Die Suche hat Verwandtschaften aus einer Datei genommen (etwa aus Markern), nicht die nach dem Pedigree. Inzucht und Kinship der Population in diesem Bericht sind die nach dem Pedigree.",
    }),
    regression_rate: (told) => ({
      brief: `${measure(told)} ist um mehr als ${told.percent("limit")} je Generation gestiegen`,
      title: `Die ${by_coancestry(told) ? "Kinship" : "Inzucht"} ist schnell gestiegen`,
      text: `Über die Geburtszeiten der Population steigt ${measure(told)} um ${told.percent("rate")} je Generation${sized(told)}. Als sicher gelten meist höchstens ${told.percent("limit")} (FAO 1998).`,
    }),
    regression_ne: (told) => ({
      brief: `die effektive Größe der Population lag unter ${told.number("limit")} Tieren`,
      title: "Die effektive Größe der Population ist klein",
      text: `Nach ihrer bisherigen Entwicklung sind es ${told.number("ne")} Tiere. Als sicher gelten meist mindestens ${told.number("limit")} (FAO 1998).`,
    }),
    told: () => ({ brief: "das Programm hat eine Warnung gegeben", title: "Das Programm meldet", text: "" }),
    prepared: () => ({ brief: "das Herdbuch hatte Fehler", title: "Befunde im Herdbuch", text: "" }),
  },
  change: (rate, percent) => (rate === 0 ? "ist nicht gestiegen" : `ist um ${percent} je Generation ${rate > 0 ? "gestiegen" : "gesunken"}`),
  unknown: (kind) => ({ brief: kind, title: kind, text: "" }),
  animals: (n) => `Die Tiere (${n})`,
  pair: (a, b) => `${a} × ${b}`,
};

const candidates: Texts["candidates"] = {
  title: "Wer gewählt wurde und warum",
  intro:
    "Für einen Kandidaten sprechen sein Zuchtwert und eine geringe Verwandtschaft mit den anderen Gewählten, denn Verwandtschaft wird mit der Zeit zu Inzucht. Die besten liegen also links oben. Nahe der Grenze zwischen Gewählten und anderen entscheidet ein kleiner Unterschied, und der Zufall.",
  picture: {
    title: "Zuchtwert und Verwandtschaft der Kandidaten",
    description: (males, females) =>
      `Gewählt: ${counted(males, "männliches", "männliche")} (Quadrate) und ${counted(females, "weibliches Tier", "weibliche Tiere")} (Kreise), je mehr Paarungen, desto größer. Zeigen Sie auf eines, um zu lesen, wer es ist; die Tabelle darunter sagt dasselbe von allen.`,
    binned: (n) => `Die ${n} nicht gewählten Kandidaten sind zu viele, um einzeln gezeichnet zu werden; Sechsecke zählen sie, je mehr, desto kräftiger ihre Farbe. Der Zeiger findet trotzdem jeden.`,
    x: "mittlere Verwandtschaft",
    to_others: {
      name: "Verwandt mit den anderen Gewählten", axis: "Verwandtschaft mit den anderen Gewählten, % →",
      note: "Mittlere Verwandtschaft mit den Gewählten, jeder mit seinen Paarungen gewichtet, ohne das Tier selbst: Um so viel sinkt der Wert des Plans, wenn es gewählt wird; darum erklärt dieses Maß die Wahl am besten.",
    },
    relationship: {
      name: "Verwandt mit allen Kandidaten", axis: "Verwandtschaft mit allen Kandidaten, % →",
      note: "Mittlere Verwandtschaft mit allen Kandidaten, das Tier selbst eingeschlossen. Sie sagt, wer mit vielen verwandt ist; bei der Wahl hat die Verwandtschaft mit den Gewählten gezählt.",
    },
    merit: "↑ Zuchtwert",
    key: {
      male: "männlich, gewählt", female: "weiblich, gewählt", other_male: "männlich, nicht gewählt", other_female: "weiblich, nicht gewählt", count: "nicht gewählt, gezählt",
    },
  },
  tip: {
    sex: { 0: "Geschlecht unbekannt", 1: "männlich", 2: "weiblich" },
    born: (sex, birth) => (birth ? `${sex}, geboren ${birth}` : sex),
    merit: (merit) => `Zuchtwert ${merit}`,
    relationship: (chosen, all) => `verwandt mit den Gewählten ${chosen}, mit allen ${all}`,
    matings: (matings, most) => `Paarungen ${matings} von ${most} erlaubten`,
  },
  lack: {
    chosen: (n) => `gewählt: ${matings(n)}`,
    merit: (merit) => `der Zuchtwert müsste um ${merit} höher sein`,
    relationship: (merit) => `zu verwandt mit den Gewählten: der Zuchtwert müsste um ${merit} höher sein`,
    both: (merit) => `zu verwandt und der Zuchtwert zu gering: er müsste um ${merit} höher sein`,
    merit_only: "der Zuchtwert ist zu gering",
    relationship_only: "zu verwandt mit den Gewählten",
    both_only: "zu verwandt mit den Gewählten, und der Zuchtwert ist zu gering",
    nothing: "so gut wie die Gewählten: die Suche hatte keinen Platz",
    not_known: "lässt sich nicht sagen",
  },
  filter: { label: "Gezeigte Kandidaten", all: "Alle", males: "Männliche", females: "Weibliche", chosen: "Gewählte", not_chosen: "Nicht gewählte" },
  table: {
    title: "Alle Kandidaten nach Rang",
    caption: "Kandidaten",
    intro: "Geordnet nach Paarungen, dann danach, wie wenig ihnen fehlt, dann nach Zuchtwert. Die Überschriften sortieren; die Suche findet Kennungen, Namen und Wörter.",
    columns: {
      rank: "Rang", animal: "Tier", sex: "Geschlecht", birth: "Geboren", merit: "Zuchtwert", matings: "Paarungen", max_matings: "Erlaubt",
      lack: "Gewählt, oder was fehlt", to_others: "Verwandt mit den Gewählten, %", relationship: "Verwandt mit allen, %",
      mean_kinship: "Mittlere Kinship, %", f: "F, %", completeness: "Vollständigkeit, %", offspring: "Nachkommen",
      so_far: "Beitrag bisher, %", wanted: "Gewünschter Beitrag, %", value: "Fehlender Wert",
    },
    notes: {
      max_matings: "Die meisten Paarungen, die es haben darf",
      to_others: "Mittlere Verwandtschaft mit den anderen Gewählten, jeder mit seinen Paarungen gewichtet",
      relationship: "Mittlere Verwandtschaft mit allen Kandidaten, das Tier selbst eingeschlossen",
      mean_kinship: "Mittlere Kinship mit den lebenden Tieren",
      f: "Sein Inzuchtkoeffizient",
      completeness: "Vollständigkeit der Abstammung über fünf Generationen (PCI; MacCluer und andere 1983)",
      so_far: "Anteil der Gene der letzten Geburtszeit, der von ihm kommt",
      wanted: "Anteil der Gene der geplanten Generation, der von ihm kommen soll",
      offspring: "Im Pedigree verzeichnet",
      value: "Um wie viel der Wert des Plans sinken würde, wenn es eine Paarung eines Gewählten übernähme",
    },
    unknown_parent: "ein Elternteil ist unbekannt",
    brief: "Gedruckt sind die ersten 60. Die Seite zeigt am Bildschirm alle und speichert sie als Tabelle.",
  },
  sexes: { 0: "unbekannt", 1: "männlich", 2: "weiblich" },
};

/** Of pages with a frame of their own only reports speak German. */
const frame: Texts["frame"] = {
  skip: () => "Zum Bericht springen",
  CONTENTS: "Inhalt",
  title: (herd, planned) => `${planned ? "Paarungsplan" : "Bericht zur Population"}: ${herd}`,
  COMPARISON_TITLE: "Vergleich von Paarungsplänen",
  made: (time, program) => `Erstellt am ${time} mit ${program}. Diese Seite braucht kein Netz: Sie enthält ihre Daten und lädt nichts.`,
  SAVE_JSON: "Alle Daten als JSON speichern",
  brokenTitle: () => "Dieser Bericht kann nicht gezeigt werden",
  broken: (_, program) => `Die Daten in dieser Seite sind unvollständig oder verändert. Bitte erstellen Sie den Bericht neu mit ${program}.`,
  noData: (_, program) => `Diese Seite enthält keine Daten: Sie ist ein leeres Formular. ${program} macht daraus den Bericht.`,
  otherVersion: (theirs, ours, _, program) =>
    `Die Daten sind von Version ${theirs}, diese Seite zeigt Version ${ours}. Bitte erstellen Sie den Bericht neu mit dem ${program}, das zu ihr gehört.`,
  detail: (text) => `Gefunden wurde: ${text}`,
};

const made: Texts["made"] = {
  title: "Entstehung des Berichts",
  facts: {
    run: "Plan gemacht mit", started: "Lauf begonnen", report: "Bericht gemacht mit", time: "Gemacht am", seed: "Startwert der Zufallszahlen", prefix: "Ergebnisse beginnen mit",
  },
  repeat: {
    title: "Zum Wiederholen",
    text: "Dasselbe Programm, dieselben Dateien und derselbe Startwert ergeben denselben Plan, Byte für Byte. Legen Sie die Dateien unten dorthin, wo ihre Namen es sagen, vergleichen Sie ihre Prüfsummen (sha256sum), und führen Sie aus:",
    seed: (seed) => `Der Startwert kam von der Uhr: Um den Plan zu wiederholen, schreiben Sie vorher seed_rng = ${seed} in die Parameterdatei.`,
    parameter_file: "PARAMETER.prm",
    unknown: "Die Parameterdatei lag nicht bei den Ergebnissen: PARAMETER.prm steht für eine mit den Parametern unten.",
  },
  parameters: { title: "Parameter", columns: { group: "Gruppe", key: "Parameter", value: "Wert" }, none: "Es sind keine Parameter angegeben.", all: (n) => `Alle ${n} Parameter` },
  files: {
    title: "Dateien",
    columns: { role: "Was sie ist", name: "Name", bytes: "Größe", sha256: "Prüfsumme (SHA-256)" },
    roles: {
      parameters: "Parameter", data: "Daten", rules: "Paarungsregeln", names: "Namen der Tiere", faults: "Fehler des Herdbuchs",
      relationships: "Verwandtschaften", result: "Ergebnis",
    },
    none: "Es sind keine Dateien angegeben.",
  },
  licences: {
    title: "Lizenzen dessen, was in dieser Seite ist",
    text: "Die Seite zeichnet und sortiert mit diesen Programmen, die Teile von ihr sind. Ihre Urheber erlauben das zu den Bedingungen unten.",
    none: "Die Lizenzen sind nicht in dieser Seite.",
    one: (name, version, licence) => `${name} ${version} (${licence})`,
  },
};

const pair = (sire: string, dam: string) => `${sire} × ${dam}`;

const mating: Texts["matings"] = {
  TITLE: "Die Paarungen",
  lead: (pairing, ruled) =>
    pairing === "mai"
      ? "Die gewählten Eltern sind so gepaart, dass ihre Nachkommen, zusammen genommen, am wenigsten ingezüchtet sind: Ein anderes gewähltes Vatertier mit kleinerem F wird anderswo gebraucht."
      : pairing === "least"
      ? `Die gewählten Eltern sind genau so gepaart, dass die Inzucht ihrer Nachkommen die geringste ist${ruled ? ", die die Regeln erlauben" : ""}.`
      : ruled
      ? "Die gewählten Eltern sind zufällig gepaart, soweit die Regeln es erlauben; anders gepaart könnten ihre Nachkommen weniger ingezüchtet sein."
      : "Die gewählten Eltern sind so gepaart, wie die Suche sie gefunden hat; anders gepaart könnten ihre Nachkommen weniger ingezüchtet sein.",
  decided: (matings) => `${counted(matings, "Paarung war", "Paarungen waren")} schon vorher beschlossen.`,
  DECIDED: ["Beschlossen", "Vorher durch eine Regel beschlossen"],
  HOW: "Drücken Sie auf ein F, um zu sehen, welche gemeinsamen Vorfahren es ausmachen.",

  VIEWS: "Ansicht der Paarungen",
  BY_SIRE: "Nach Vätern",
  ALL: "Alle in einer Tabelle",
  OPEN_ALL: "Alle Blätter öffnen",
  CLOSE_ALL: "Alle Blätter schließen",
  ALL_CAPTION: "Alle Paarungen des Plans",
  females: (sire) => `Muttertiere für ${sire}`,

  sheet: matings,
  parent: (merit, f, completeness) => `Zuchtwert ${merit}, eigene Inzucht F ${percent(f)}, Vollständigkeit der Abstammung ${percent(completeness, 0)}`,

  SIRE: ["Vater", "Kennung des Vatertiers"],
  SIRE_NAME: ["Sein Name", "Name des Vatertiers"],
  DAM: ["Mutter", "Kennung des Muttertiers"],
  DAM_NAME: ["Ihr Name", "Name des Muttertiers"],
  OFFSPRING_MERIT: ["Zuchtwert Nachkommen", "Erwarteter Zuchtwert der Nachkommen: das Mittel der Zuchtwerte ihrer Eltern"],
  OFFSPRING_F: ["Nachkommen F %", "Erwartete Inzucht der Nachkommen: die halbe additive Verwandtschaft ihrer Eltern (Wright 1922)"],
  OFFSPRING_VF: ["Mendelsche Varianz", "vF: Varianz der Nachkommen durch die mendelsche Aufspaltung, als Anteil der additiv-genetischen Varianz: ½ (1 − mittleres F der Eltern). Je ingezüchteter die Eltern, desto weniger unterscheiden sich ihre Nachkommen."],
  parentColumn: (of) => {
    const [parent, animal] = of === "sire" ? ["Vater", "Vatertiers"] : ["Mutter", "Muttertiers"];
    return {
      merit: [`Zuchtwert ${parent}`, `Zuchtwert des ${animal}`],
      f: [`${parent} F %`, `Inzucht des ${animal}`],
      completeness: ["Vollst. %", `Vollständigkeit der Abstammung des ${animal}: wie viel von seinen Vorfahren bekannt ist`],
    };
  },
  OTHERS: ["Andere gewählte Vatertiere (F %)", "Gewählte Vatertiere, mit denen die Nachkommen dieses Muttertiers am wenigsten ingezüchtet wären"],
  other: (called, f) => `${called} (${(f * 100).toFixed(2)})`,  // for the saved file: numbers have points there
  NO_OTHER: "keines",

  pair,
  opens: (f, pair) => `F ${f} %: was es ausmacht, bei ${pair}`,
  CLOSE: "Schließen",
  COMMON: "Gemeinsame Vorfahren: was das F ausmacht",
  commonLead: (f) =>
    `Die erwartete Inzucht der Nachkommen ist F = ${percent(f)}. Jeder gemeinsame Vorfahre von Vater und Mutter trägt Σ (½)ⁿ (1 + sein eigenes F) bei, über alle Wege vom Vater zur Mutter durch ihn, die keinem Tier zweimal begegnen; n ist die Zahl der Tiere auf dem Weg (Wright 1922).`,
  NO_COMMON: "Vater und Mutter haben keinen bekannten gemeinsamen Vorfahren: Soweit das Pedigree reicht, sind die Nachkommen nicht ingezüchtet.",
  COMMON_COLUMNS: ["Zeichen", "Vorfahre", "Geboren", "Eigenes F", "Beitrag zu F", "Anteil an F"],
  others: (more) => `${counted(more, "weiterer Vorfahre", "weitere Vorfahren")} zusammen`,
  ALTERNATIVES: "Andere gewählte Vatertiere für dieses Muttertier",
  ALTERNATIVE_COLUMNS: ["Vatertier", "F der Nachkommen"],

  PEDIGREE: "Abstammung der Nachkommen",
  PEDIGREE_LEAD: "Fünf Generationen von Vorfahren, in jedem Paar der Vater über der Mutter. Die gemeinsamen Vorfahren von oben tragen ihren Buchstaben und einen dicken Rahmen.",
  SIRE_SIDE: "Väterliche Seite",
  DAM_SIDE: "Mütterliche Seite",
  UNKNOWN: "unbekannt",
  FURTHER: "nicht in dieser Seite",
  NOT_DRAWN: "Gemeinsame Vorfahren, die nicht auf beiden Seiten der Zeichnung stehen, weil ihre Wege länger als fünf Generationen sind:",
  marked: (letter) => `gemeinsamer Vorfahre ${letter}`,

  MATRIX: "Gewählte Vatertiere mit gewählten Muttertieren",
  matrixLead: (males, females) =>
    `Inzucht der Nachkommen (F) aller möglichen Paarungen: ${counted(males, "gewähltes Vatertier", "gewählte Vatertiere")} (Zeilen) mal ${counted(females, "gewähltes Muttertier", "gewählte Muttertiere")} (Spalten). Je dunkler, desto ingezüchteter; ein Ring kennzeichnet eine Paarung des Plans.`,
  MATRIX_HELP: "Bewegen Sie den Zeiger über die Matrix, oder gehen Sie mit der Tabulatortaste hinein und nehmen Sie die Pfeiltasten. Enter öffnet eine Paarung des Plans.",
  MATRIX_SCALE: "F der Nachkommen, %",
  MATRIX_START: "Es ist kein Paar gewählt.",
  cell: (sire, dam, f, planned) => `${pair(sire, dam)}: F ${percent(f, 3)}${planned ? ", eine Paarung des Plans" : ""}`,
  SAVE_MATRIX: "Matrix als CSV speichern",
  PAIRS: "Als Tabelle aller Paare zeigen",
  MATRIX_BIG: (pairs) => `Die Matrix hat ${count(pairs)} Paare; die gespeicherte Datei enthält sie alle.`,
  PLANNED: ["Im Plan", "Ob der Plan diese Paarung enthält"],
  YES: "ja",
  NO: "nein",
};

const half = (n: string) => (n === "1" ? "Der erste allein macht die Hälfte aller Gene aus" : `Die ersten ${n} machen die Hälfte aller Gene aus`);

const population: Texts["population"] = {
  title: "Die Population",
  timeStep: (birth) => `${STEP} ${birth}`,
  intro: (animals, founders, living) =>
    `Das Pedigree enthält ${animals} Tiere, davon ${founders} Gründer (beide Eltern unbekannt). ${living} gelten als lebend.`,
  living_by: {
    column: "Wer lebt, sagt das Herdbuch.",
    since: (since) => `Wer lebt, sagt das Herdbuch nicht: Alle seit ${since} geborenen Tiere gelten als lebend.`,
  },
  figures: {
    title: "Genetische Kennzahlen",
    source: (formula, source) => `Formel: ${formula} (${source}).`,
    between: (low, high) => `${low} bis ${high}`,
    mean_f: {
      name: "Mittlere Inzucht aller Tiere",
      meaning: "Die Wahrscheinlichkeit, dass die beiden Kopien eines Gens in einem Tier von ein und demselben Vorfahren kommen; 0, wo Eltern unbekannt sind.",
      formula: "F, exakt über das ganze Pedigree", source: "Wright 1922; Meuwissen & Luo 1992",
    },
    mean_kinship: {
      name: "Mittlere Kinship der lebenden Tiere",
      meaning: "Die Wahrscheinlichkeit, dass Gene, aus zwei beliebigen lebenden Tieren gezogen, von einem Vorfahren kommen: Dorthin geht die Inzucht, wenn sie sich zufällig paaren.",
      formula: "Mittel der Kinship aller Paare, jedes Tier auch mit sich selbst", source: "Lacy 1989",
    },
    gene_diversity: {
      name: "Gendiversität",
      meaning: "Der Anteil der genetischen Vielfalt der Gründer, der noch da ist.",
      formula: "1 − mittlere Kinship", source: "Lacy 1989",
    },
    founder_equivalents: {
      name: "Gründeräquivalente",
      meaning: "Die lebenden Tiere tragen so viel Vielfalt, als hätten so viele Gründer gleich viel beigetragen, wäre nichts durch Zufall verloren gegangen.",
      formula: "1 / Σ p², p die Anteile der Gründer", source: "Lacy 1989",
    },
    effective_ancestors: {
      name: "Effektive Zahl der Ahnen",
      meaning: "So viele Ahnen, Gründer oder nicht, würden bei gleichem Beitrag die Gene der lebenden Tiere erklären; viel weniger als die Gründeräquivalente verraten Flaschenhälse.",
      formula: "1 / Σ q², q die marginalen Anteile der Ahnen", source: "Boichard, Maignan & Verrier 1997",
      bounds: "Zwei Grenzen: nicht alle Ahnen wurden durchgerechnet.",
    },
    founder_genomes: {
      name: "Gründergenom-Äquivalente",
      meaning: "So viele nicht verwandte Gründer würden ohne jeden Verlust die Vielfalt enthalten, die noch übrig ist, Verluste durch Zufall eingerechnet.",
      formula: "1 / (2 × mittlere Kinship)", source: "Lacy 1989",
    },
    unknown_genes: {
      name: "Gene unbekannter Herkunft",
      meaning: "Der Anteil der Gene der lebenden Tiere, der von unbekannten Eltern solcher Tiere kommt, deren anderer Elternteil bekannt ist; alle Zahlen oben nehmen diese als nicht verwandt.",
      formula: "Summe der Anteile unbekannter Eltern", source: "Boichard, Maignan & Verrier 1997",
    },
  },
  trend: {
    title: "Inzucht und Verwandtschaft im Lauf der Zeit",
    birth: "Geburtszeit",
    f: {
      title: "Inzucht und Kinship nach Geburtszeit",
      description: (first, last, from, to) =>
        `Die mittlere Inzucht der Geborenen geht von ${from} (${first}) zu ${to} (${last}). Wo die Kinship höher liegt, werden Verwandte vorerst nicht gepaart, und die Inzucht folgt später.`,
      mean: "mittlere Inzucht", coancestry: "mittlere Kinship", axis: "Prozent",
    },
    max: {
      title: "Größte Inzucht nach Geburtszeit",
      description: (max, when) => `Das Tier jeder Geburtszeit mit der größten Inzucht; die größte von allen ist ${max} (${when}). Ein Nachkomme von Vollgeschwistern oder von Elternteil und Nachkomme hat 25 %.`,
      none: "Kein Tier ist ingezüchtet, soweit das Pedigree reicht.",
      max: "größte Inzucht", axis: "Prozent", full_sibs: "Vollgeschwister: 25 %",
    },
    completeness: {
      title: "Wie vollständig die Abstammungen sind",
      description: (last, when) =>
        `Vollständigkeit über fünf Generationen (MacCluer und andere 1983): 100 %, wenn alle Vorfahren bekannt sind, 0, wenn ein Elternteil unbekannt ist. Zuletzt (${when}) ist sie ${last}. Unter etwa 60 % erscheint die Inzucht zu klein.`,
      line: "Vollständigkeit", axis: "Prozent",
    },
    generations: {
      title: "Wie tief die Abstammungen sind",
      description: (last, when) =>
        `Vollständige Generationsäquivalente: die Summe über alle bekannten Vorfahren von ½ für einen Elternteil, ¼ für einen Großelternteil und so weiter (Boichard, Maignan & Verrier 1997). Zuletzt (${when}) sind es ${last}.`,
      line: "Generationen", axis: "Generationen",
    },
    columns: {
      birth: "Geboren", animals: "Tiere", males: "Männlich", females: "Weiblich", sires: "Väter", dams: "Mütter", inbred: "Ingezüchtet",
      mean_f: "Mittleres F, %", max_f: "Größtes F, %", coancestry: "Kinship, %", completeness: "Vollständigkeit, %",
      generations: "Generationen", interval: "Alter der Eltern",
    },
    none: "Es sind keine Geburtszeiten bekannt.",
  },
  births: {
    title: "Wer geboren wurde, und von wie vielen Eltern",
    animals: {
      title: "Geborene Tiere nach Geburtszeit",
      description: (most, when) => `Die meisten Geburten: ${most} (${when}). Eine letzte Säule, die viel niedriger ist als die anderen, gehört oft zu einer Geburtszeit, die noch nicht vorbei ist.`,
      axis: "Tiere", males: "männlich", females: "weiblich", unknown: "Geschlecht unbekannt",
    },
    parents: {
      title: "Eltern der Geborenen nach Geburtszeit",
      description: "Verschiedene Väter und Mütter der Tiere einer Geburtszeit. Je weniger Väter, desto schneller steigt die Inzucht.",
      axis: "Eltern", sires: "Väter", dams: "Mütter",
    },
  },
  ages: {
    title: "Wer jetzt lebt",
    pyramid: {
      title: "Alterspyramide",
      description: (males, females) =>
        `Die lebenden Tiere nach Geburtszeit, ${males} männliche links und ${females} weibliche rechts, die jüngsten oben. Von der Mitte nach außen: gewählte (am kräftigsten, ihre Zahl am Ende), andere Kandidaten, andere lebende (am blassesten).`,
      to_left: "← männlich", to_right: "weiblich →",
      chosen_here: (n) => `${n} gewählt`,
      says: (of) => [
        `geboren ${of.birth}`,
        `männlich: ${of.males} lebend, ${of.candidate_males} Kandidaten, ${of.chosen_males} gewählt`,
        `weiblich: ${of.females} lebend, ${of.candidate_females} Kandidaten, ${of.chosen_females} gewählt`,
      ].join("\n"),
      living: "lebend, keine Kandidaten", candidates: "Kandidaten, nicht gewählt", chosen: "gewählt", male: "männlich", female: "weiblich",
    },
    columns: {
      birth: "Geboren", males: "Männlich", females: "Weiblich", candidate_males: "Männliche Kandidaten", candidate_females: "Weibliche Kandidaten",
      chosen_males: "Männlich, gewählt", chosen_females: "Weiblich, gewählt",
    },
    none: "Von den lebenden Tieren sind keine Geburtszeiten bekannt.",
  },
  kinship: {
    title: "Mittlere Kinship: wessen Gene selten sind",
    intro: (mean, diversity) =>
      `Die lebenden Tiere haben eine mittlere Kinship von ${mean}, also ist die Gendiversität ${diversity}. Ein Tier mit kleinerer mittlerer Kinship trägt Gene, von denen wenige andere Kopien haben: Mit ihm zu züchten, erhält Vielfalt; eines mit größerer wiederholt, was häufig ist. Hier die Kandidaten der Reihe nach.`,
    caption: "Kandidaten nach mittlerer Kinship",
    columns: {
      place: "Platz", animal: "Tier", sex: "Geschlecht", birth: "Geboren", mean_kinship: "Mittlere Kinship, %", completeness: "Vollständigkeit, %",
      offspring: "Nachkommen", matings: "Geplante Paarungen",
    },
    incomplete: "Vorsicht bei Kandidaten mit unvollständiger Abstammung: Sie scheinen selten, weil ihre Vorfahren nicht verzeichnet sind.",
  },
  intervals: {
    title: "Generationsintervall",
    intro: (all) => `Eltern sind im Mittel ${all} Zeitschritte alt, wenn ein Nachkomme geboren wird, der selbst Elternteil wird.`,
    source: "Mittel der vier Pfade (James 1977).",
    figure: {
      title: "Alter der Eltern auf den vier Pfaden",
      description: (since) => `Gefüllte Kreise: alle Zeiten; hohle Quadrate: seit ${since} geborene Nachkommen. Die Linien zeigen einen Standardfehler nach beiden Seiten.`,
      axis: "Zeitschritte", all: "alle Zeiten", recent: (since) => `seit ${since}`,
    },
    paths: {
      "sire-son": "Vater – Sohn", "sire-daughter": "Vater – Tochter", "dam-son": "Mutter – Sohn", "dam-daughter": "Mutter – Tochter", all: "alle vier",
    },
    columns: { path: "Pfad", n: "Nachkommen", mean: "Mittel", se: "Standardfehler", recent_n: "Nachkommen, zuletzt", recent_mean: "Mittel, zuletzt", recent_se: "Standardfehler, zuletzt" },
    none: "Es gibt keine Eltern von Eltern mit bekannter Geburtszeit.",
  },
  effective_size: {
    title: "Effektive Populationsgröße",
    intro: "Die Zahl der Tiere einer idealen Population, in der die Inzucht ebenso schnell stiege wie in dieser. Unter 50 ist eine Population gefährdet (FAO 1998).",
    by_inbreeding: {
      name: "Aus der Inzucht", formula: "ΔF = 1 − exp(L b), b die Regression von ln(1 − F) auf die Geburtszeit, L das Generationsintervall; Ne = 1 / (2 ΔF)",
      source: "Wright 1931; Pérez-Enciso 1995; Falconer & Mackay 1996",
      meaning: "Was die Paarungen der Vergangenheit bewirkt haben: Sie folgt um eine oder zwei Generationen verspätet und hängt davon ab, wer mit wem gepaart wurde.",
    },
    by_coancestry: {
      name: "Aus der Kinship", formula: "dasselbe mit ln(1 − Kinship) der Tiere einer Geburtszeit",
      source: "Cervantes und andere 2011",
      meaning: "Was die Wahl der Eltern bewirkt hat, wer auch mit wem gepaart wurde: Sie sagt früher, wohin die Inzucht geht.",
    },
    ne: (ne) => `Ne = ${ne}`,
    range: (low, high) => `${low} bis ${high} bei einem Standardfehler`,
    rate: (rate, se) => `Rate ${rate} je Generation, Standardfehler ${se}`,
    span: (n, first, last) => `aus ${n} Werten, Geburtszeiten ${first} bis ${last}`,
    none: "Keine",
    no_upper: "ohne obere Grenze",
    figure: {
      title: "Effektive Populationsgröße mit einem Standardfehler, und die Grenze von 50",
      description: "Ein Balken links der gestrichelten Linie: Die Population verliert schneller an Vielfalt, als meist für sicher gehalten wird.",
      axis: "effektive Größe", limit: "50 (FAO 1998)",
    },
  },
  founders: {
    title: "Gründer",
    intro: (n, all, half) =>
      `${n === all ? `Alle ${all} Gründer` : `${n} von ${all} Gründern, die den lebenden Tieren am meisten gegeben haben,`} sind hier genannt.${half && ` ${half}.`}`,
    half,
    told: (place, name, share, added) => `${place}. ${name}\nAnteil ${share}\nzusammen ${added}`,
    told_added: (n, share) => `die ersten ${n} Gründer\n${share}`,
    figure: {
      title: "Was die Gründer gegeben haben, geordnet",
      description: (name, share, n) =>
        `Der Anteil jedes Gründers an den Genen der lebenden Tiere, der größte zuerst: ${name} mit ${share}. Gezeigt: die ersten ${n}; die Tabelle enthält alle genannten.`,
      place: "Gründer nach Rang", share: "Prozent der Gene",
      added: "Die Anteile zusammengezählt",
      added_description: (half, all) => `${half && `${half}. `}Alle hier genannten machen zusammen ${all} aus.`,
      cumulative: "Prozent der Gene",
    },
    columns: { place: "Platz", animal: "Gründer", birth: "Geboren", contribution: "Anteil der Gene, %", cumulative: "Zusammen, %" },
    none: "Kein Gründer hat Gene in den lebenden Tieren.",
  },
  families: {
    title: "Größe der Familien",
    intro: "Wie viele Eltern wie viele verzeichnete Nachkommen haben. Wenige sehr große Familien machen die Gene der anderen selten.",
    sires: { title: "Nachkommen der Väter", none: "Es ist kein Vater verzeichnet.", description: (n, mean, most) => `${n} Väter mit ${mean} Nachkommen im Mittel, ${most} höchstens.` },
    dams: { title: "Nachkommen der Mütter", none: "Es ist keine Mutter verzeichnet.", description: (n, mean, most) => `${n} Mütter mit ${mean} Nachkommen im Mittel, ${most} höchstens.` },
    axis: "Nachkommen", parents_axis: "Eltern",
    columns: { offspring: "Nachkommen", sires: "Väter", dams: "Mütter" },
    none: "Es sind keine Eltern verzeichnet.",
  },
  sources: { title: "Quellen der Formeln", get list() { return sources.list; } },
};

/** A rule in a breeder's words, by its kind. */
const RULES: Record<string, (a: string, b: string, limit: number) => string> = {
  fix: (a, b, n) => `${a} × ${b}: ${matings(n)} beschlossen`,
  min: (a, _, n) => `${a}: mindestens ${matings(n)}`,
  max: (a, _, n) => (n === 0 ? `${a}: keine Paarungen` : `${a}: höchstens ${matings(n)}`),
  forbid: (a, b) => `nie ${a} × ${b}`,
  "forbid-groups": (a, b) => (a === b ? `keine Paarung innerhalb der Gruppe ${a}` : `keine Paarung zwischen den Gruppen ${a} und ${b}`),
  "max-pair": (_a, _b, n) => `jedes Paar: höchstens ${matings(n)}`,
  "max-per-group": (a, b, n) => `${a || "jeder Vater"}: höchstens ${matings(n)} mit ${b ? `der Gruppe ${b}` : "jeder Gruppe"}`,
  "max-f": (_a, _b, f) => `keine Nachkommen mit F über ${percent(f)}`,
};

const rules: Texts["rules"] = {
  title: "Regeln",
  intro: (rules, file, broken) =>
    `${counted(rules, "Regel", "Regeln")} für die Paarungen, aus ${file}. ${broken === 0 ? "Der Plan hält alle ein." : `Der Plan hält ${broken === rules ? "keine" : "nicht alle"} davon ein.`}`,
  lead:
    "Was eine Regel kostet: um wie viel der Plan im Wert, dem Ziel der Suche, besser sein könnte, wenn diese Regel allein aufgegeben würde, und was dann aus Zuchtwert und Inzucht würde. 0: sie aufzugeben ändert nichts.",
  note:
    "Eine Schätzung: Der Plan wird erst durch Tausch von Eltern innerhalb aller Regeln verbessert (die Zahlen über der Tabelle), dann ohne die eine Regel, und die Eltern beider werden für die geringste mittlere Inzucht gepaart. Regeln, die nur sagen, wer mit wem gepaart werden darf, können sich allein in der Inzucht zeigen. Die Kosten mehrerer Regeln lassen sich nicht zusammenzählen.",
  leftOut: (rules) => `Die Kosten von ${counted(rules, "Regel", "Regeln")} wurden nicht ausgerechnet, da es zu lange dauern würde.`,
  unknown:
    "Ein Strich: nicht bekannt, da der Plan ohne die Regel ein ganz anderer wäre oder die übrigen Paarungen der Vatertiere nicht mehr in ganzen Einheiten aufgehen.",
  with_all: { value: "Wert mit allen Regeln", merit: "Zuchtwert", rate: "Inzuchtrate", inbreeding: "Mittlere Inzucht der Nachkommen" },
  caption: "Regeln, und was sie kosten",
  columns: {
    line: ["Zeile", "In der Datei der Regeln"],
    rule: ["Regel", "Was sie verlangt"],
    broken: ["Eingehalten", "Ob der Plan sie einhält, oder um wie viele Paarungen, zu viele oder zu wenige, sie verletzt ist"],
    value: ["Kosten im Wert", "Um wie viel der Wert des Plans, den die Suche möglichst groß macht, ohne die Regel größer wäre"],
    merit: ["Zuchtwert ohne sie", "Zuchtwert der Nachkommen, wenn die Regel aufgegeben würde, und wie viel mehr das ist als mit allen Regeln; gespeichert wird der Unterschied"],
    rate: ["Inzuchtrate ohne sie, %", "Inzuchtrate je Generation, wenn die Regel aufgegeben würde, und wie viel mehr das ist als mit allen Regeln, in Prozentpunkten; gespeichert wird der Unterschied"],
    inbreeding: ["F ohne sie, %", "Mittlere Inzucht der Nachkommen, wenn die Regel aufgegeben würde, für die geringste gepaart, und wie viel mehr das ist als mit allen Regeln, in Prozentpunkten; gespeichert wird der Unterschied"],
  },
  changed: (without, more) => `${without} (${more})`,
  kept: "eingehalten",
  broken: (n) => `um ${matings(n)} verletzt`,
  said: ({ kind, a, b, limit, text }) => RULES[kind]?.(a, b, limit) ?? text,
};

const search: Texts["search"] = {
  title: "Die Suche",
  intro:
    "Der Plan wurde durch eine Suche gefunden, die viele Pläne bereithält, sie kreuzt und verändert und die besten überleben lässt, Generation um Generation. Ob sie lange genug gelaufen ist, zeigt sich daran, wie der beste Plan besser wurde.",
  facts: {
    generations: "Generationen", found: "Bester Plan gefunden in Generation", since: "Generationen ohne Verbesserung", restarts: "Neustarts", value: "Wert des besten Plans",
  },
  verdict: {
    stopped: (since) => ({
      title: "Die Suche scheint fertig zu sein.",
      text: `Sie hat von selbst geendet, da ${since} Generationen keinen besseren Plan brachten.`,
    }),
    quiet: (since, share) => ({
      title: "Die Suche scheint fertig zu sein.",
      text: `Sie hat ihre letzte Generation erreicht, aber seit ${since} Generationen, ${share} der ganzen Suche, nichts Besseres gefunden.`,
    }),
    restless: (found, ended) => ({
      title: "Die Suche ist vielleicht nicht fertig.",
      text: `Sie hat noch in Generation ${found} von ${ended} einen besseren Plan gefunden, kurz vor ihrem Ende. Eine längere Suche (generations in der Parameterdatei) findet vielleicht einen besseren.`,
    }),
    late: (share) => `In der zweiten Hälfte der Suche gewann der beste Plan ${share} seiner ganzen Verbesserung.`,
  },
  picture: { axis: "Wert des Plans", generation: "Generation", best: "bester", median: "Median", worst: "schlechtester", found: "gefunden" },
  best: {
    title: "Wie der beste Plan besser wurde",
    description: (best, found) => `Seinen Wert, ${best}, erreichte er in Generation ${found}. Eine lange waagerechte Linie am Ende heißt, dass weiteres Suchen kaum helfen würde.`,
  },
  all: {
    title: "Alle Pläne einer Generation",
    description: "Der beste Plan (Linie), der Median (gestrichelt) und der schlechteste (gepunktet). Weit darunter liegende Werte der ersten Generationen sind weggelassen.",
    restarts: (at) => ` Nach senkrechten gestrichelten Linien (Generation ${at}) wurden alle Pläne außer dem besten zufällig verändert, um andere zu finden.`,
  },
  columns: {
    generation: "Generation", best: "Bester", median: "Median", worst: "Schlechtester", mean: "Mittel", sd: "Standardabweichung",
    merit: "Zuchtwert des besten", relationship: "Verwandtschaft des besten", rate: "Inzuchtrate des besten, %",
  },
};

const summary: Texts["summary"] = {
  TITLE: "In Kürze",

  matings: (n, males, females) => `Der Plan enthält ${matings(n)}, mit ${males} und ${females}. `,
  chosen: (chosen, candidates, one, more) => `${count(chosen)} von ${counted(candidates, one, more)}`,
  MALE: ["männlichen", "männlichen"],
  FEMALE: ["weiblichen Kandidaten", "weiblichen Kandidaten"],

  merit: (merit) => `Der erwartete Zuchtwert der Nachkommen ist ${digits(merit, 4)}`,
  gain: (gain, born) =>
    Math.abs(gain) < 1e-9
      ? `, so hoch wie das Mittel der zuletzt geborenen Tiere (${born}). `
      : `, um ${digits(Math.abs(gain))} ${gain > 0 ? "höher" : "niedriger"} als das Mittel der zuletzt geborenen Tiere (${born}). `,
  END: ". ",

  inbreeding: (f, relationship) => `Die mittlere Inzucht der Nachkommen wird ${percent(f)} sein, ihre mittlere Verwandtschaft miteinander ${percent(relationship)}. `,
  rate: (rate, ne, interval) => {
    if (rate <= 0) return "Mit diesem Plan steigt die Inzucht nicht, soweit das Pedigree reicht. ";
    if (ne < 2) return `Die Verwandtschaft steigt in einem Schritt so sehr, dass die Inzuchtrate über eine Generation von ${digits(interval)} Zeitschritten ${percent(rate, 0)} wäre: zu schnell, als dass eine effektive Populationsgröße etwas bedeuten würde. `;
    return `Die Inzucht steigt um ${percent(rate)} je Generation, wie in einer Population mit einer effektiven Größe von ${animals(ne)}. `;
  },
  reaches: (share, ruled) =>
    share < 1
      ? `Nach dem gesetzten Ziel erreicht der Plan ${atLeast(share)} dessen, was irgendein Plan könnte${ruled ? ", gäbe es keine Regeln" : ""}. `
      : "Nach dem gesetzten Ziel könnte kein Plan besser sein. ",
  noBase: (animals, birth, change) =>
    `Wie schnell die Inzucht mit diesem Plan steigt und wie viel Zuchtwert er gewinnt, lässt sich nicht gut sagen, denn zum Vergleich gibt es nur ${born(count(animals), birth)}${change && `; die Inzucht ${change}, über das letzte Generationsintervall gerechnet`}. `,
  incomplete: (completeness, born) =>
    `Die Abstammungen sind nur zum Teil bekannt (Vollständigkeit der ${when(born)} geborenen Tiere: ${percent(completeness, 0)}), darum ist die wahre Inzucht wahrscheinlich höher als diese Zahlen. `,

  SOUND: "Es wurde nichts Bedenkliches gefunden.",
  BEWARE: "Zu beachten: ",
  DETAILS: "Mehr dazu",

  population: (animals, founders, living) =>
    `Das Pedigree enthält ${counted(animals, "Tier", "Tiere")}, darunter ${count(founders)} Gründer ohne bekannte Eltern; ${count(living)} gelten als lebend. `,
  meanInbreeding: (mean, largest) => `Die mittlere Inzucht aller Tiere ist ${percent(mean)}, die größte ${percent(largest)}. `,
  diversity: (kinship, diversity) =>
    `Die lebenden Tiere haben eine mittlere Kinship von ${percent(kinship)}; sie bewahren ${percent(diversity, 1)} der Gendiversität der Gründer. `,
  effective: (ne) => (Number.isFinite(ne) ? `Die Inzucht ist gestiegen wie in einer Population mit einer effektiven Größe von ${animals(ne)}. ` : ""),
  NO_PLAN: "Es wurden keine Paarungen geplant. ",

  MATINGS: "Paarungen",
  MALES: "Vatertiere",
  FEMALES: "Muttertiere",
  ofCandidates: (candidates) => `gewählt aus ${count(candidates)}\u00a0Kandidaten`,
  SIRES_NOTE: (mean, sd) => `je ${fixed(mean, 1)} ± ${fixed(sd, 1)} Paarungen`,
  MERIT: "Zuchtwert der Nachkommen",
  MERIT_NOTE: (gain) => `${gain >= 0 ? "+" : ""}${digits(gain)} gegenüber der letzten Geburtszeit; Mittel der Zuchtwerte der Eltern`,
  INBREEDING: "Inzucht der Nachkommen",
  INBREEDING_NOTE: (last) => `mittleres F; in der letzten Geburtszeit ${percent(last)}`,
  RELATIONSHIP: "Verwandtschaft",
  RELATIONSHIP_NOTE: (last) => `Mittel der nächsten Generation; in der letzten Geburtszeit ${percent(last)}`,
  RATE: "Inzuchtrate",
  RATE_NOTE: (interval) => `je Generation von ${interval === 1 ? "einem Zeitschritt" : `${digits(interval)} Zeitschritten`}, von der letzten Geburtszeit an`,
  NO_BASE_MERIT: "Mittel der Zuchtwerte der Eltern",
  NO_BASE: "keine sichere Grundlage: die letzte Geburtszeit ist noch nicht zu Ende",
  NE: "Effektive Größe",
  NE_NOTE: "Tiere; die FAO (1998) rät zu 50 oder mehr",
  FOUNDERS: "Gründeräquivalente",
  FOUNDERS_NOTE: "gleich viel genutzte Gründer, die dieselbe Vielfalt ergäben (Lacy 1989)",
  KINSHIP: "Mittlere Kinship",
  KINSHIP_NOTE: "der lebenden Tiere",
  DIVERSITY: "Gendiversität",
  DIVERSITY_NOTE: "in den lebenden Tieren bewahrt",

  HOW: "Wie diese Zahlen berechnet sind",
  FORMULAS: [
    "Zuchtwert der Nachkommen: das Mittel der Zuchtwerte ihrer Eltern, in den Einheiten der Daten.",
    "F, Inzucht: die Wahrscheinlichkeit, dass die beiden Gene eines Tieres an einem Ort von demselben Gen eines Vorfahren kommen (Wright 1922).",
    "Verwandtschaft: die additive Verwandtschaft, das Doppelte der Kinship, als Mittel aller Paare der nächsten Generation, jedes Tier auch mit sich selbst.",
    "Inzuchtrate je Generation: (r − r₀) × L / (2 − r₀), wobei r die mittlere Verwandtschaft der nächsten Generation ist, r₀ die der letzten Geburtszeit und L das Generationsintervall, das mittlere Alter der Eltern.",
    "Was irgendein Plan könnte: eine obere Grenze des Wertes nach dem Ziel, wie die eines besten Plans, wenn Paarungen in Teilen vergeben werden dürften, wobei die Varianzen, die keine zwei Kandidaten gemeinsam haben, in ganzen Paarungen gerechnet sind. 0 % wäre, alle Kandidaten im Verhältnis ihrer Grenzen zu nutzen, ohne Gewinn an Zuchtwert.",
    "Effektive Populationsgröße: 1 / (2 × Rate), die Zahl der Tiere einer idealen Population, in der die Inzucht ebenso schnell steigt (Falconer & Mackay 1996).",
  ],

  GIVEN_TITLE: "Der gegebene Plan neben dem besten gefundenen",
  givenLead: (file) => `Der Plan in ${file} wurde ebenso bewertet wie der beste, den die Suche gefunden hat.`,
  givenFewer: (given, best) =>
    `Er enthält ${matings(given)} und der beste Plan ${count(best)}: Schon darum wären Verwandtschaft, Rate und Fitness verschieden.`,
  GIVEN_FAULTS: "Grenzen, die der gegebene Plan nicht einhält:",
  GIVEN_SOUND: "Der gegebene Plan hält alle Grenzen ein.",
  GIVEN_COLUMNS: ["Zahl", "Bester Plan", "Gegebener Plan", "Unterschied"],
  GIVEN_MATINGS: "Die Paarungen des gegebenen Plans",
  FITNESS: "Wert des Plans (Fitness)",
  SHARE: "Anteil dessen, was irgendein Plan könnte",
  FITNESS_NOTE: "Fitness ist, was die Suche nach dem Kriterium dieses Laufs möglichst groß macht: größer ist besser.",
  AGE: "Mittleres Alter der Eltern, in Zeitschritten",
};

const shared: Texts["shared"] = {
  SEARCH: "Suchen",
  SAVE_CSV: "Als CSV speichern",
  AS_TABLE: "Als Tabelle zeigen",
  found: (some, all) => `${some} von ${all}`,
  printed: (some, all) => `Gedruckt sind die ersten ${some} von ${all} Zeilen. Alle stehen in den Tabellen, die die Seite speichert.`,
};

export const de: Texts = { beware, candidates, frame, made, matings: mating, population, rules, search, shared, summary };
