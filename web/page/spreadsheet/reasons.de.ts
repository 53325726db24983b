// Why a spreadsheet cannot be read, in German.

import type { Reasons } from "./reasons.js";

const SAVE = "Öffnen Sie die Datei in Ihrer Tabellenkalkulation und speichern Sie sie als .xlsx oder als „CSV UTF-8“.";
const MAKE = "Erzeugen Sie die Datei neu; hilft das nicht, speichern Sie sie in Ihrer Tabellenkalkulation als „CSV UTF-8“.";
const FEWER = "Speichern Sie die nötigen Zeilen und Spalten als eigene Datei oder das Tabellenblatt als „CSV UTF-8“.";

const listed = (names: readonly string[]) => names.map((name) => `„${name}“`).join(", ");

export const reasons: Reasons = {
  unknown: () => `Dies ist keine Arbeitsmappe (.xlsx). Falls es die Tabelle eines anderen Programms ist: ${SAVE}`,
  oldFormat: () => `Dies ist eine Arbeitsmappe im alten Format .xls. ${SAVE}`,
  encrypted: () => "Diese Arbeitsmappe ist durch ein Kennwort geschützt. Öffnen Sie sie in Ihrer Tabellenkalkulation, entfernen Sie das Kennwort und speichern Sie sie neu.",
  openDocument: () => `Dies ist eine OpenDocument-Tabelle (.ods). ${SAVE}`,
  numbers: () => "Dies ist eine Tabelle von Apple Numbers. Öffnen Sie sie in Numbers und exportieren Sie sie als Excel (.xlsx) oder als CSV.",
  binary: () => `Dies ist eine Arbeitsmappe im Binärformat .xlsb. ${SAVE}`,
  noWorkbook: () => "Dies ist ein ZIP-Archiv, aber keine Arbeitsmappe. Falls eine Tabelle darin ist, entpacken Sie es zuerst.",
  damaged: () => "Diese Arbeitsmappe ist beschädigt oder abgeschnitten, etwa durch ein unvollständiges Herunterladen. Holen Sie die Datei neu. Lässt sie sich in Ihrer Tabellenkalkulation öffnen, speichern Sie sie dort neu als .xlsx.",
  forged: () => `Diese Datei ist so gebaut, wie es keine Tabellenkalkulation tut, und wird nicht gelesen. ${MAKE}`,
  tooLarge: (megabytes) => `Diese Arbeitsmappe ist zu groß, um hier gelesen zu werden (entpackt ${megabytes} MB). ${FEWER}`,
  tooManyCells: (sheet) => `Das Tabellenblatt „${sheet}“ enthält mehr, als hier gelesen werden kann: mehr als 10 Millionen Zellen oder 200 MB Text. ${FEWER}`,
  outside: (sheet) => `Das Tabellenblatt „${sheet}“ hat eine Zelle außerhalb der 1.048.576 Zeilen und 16.384 Spalten, die ein Tabellenblatt haben kann. ${MAKE}`,
  noSheet: (sheet, names) => `Die Arbeitsmappe hat kein Tabellenblatt „${sheet}“. Ihre Tabellenblätter sind ${listed(names)}.`,
  empty: (names) => names.length === 1 ? `Das Tabellenblatt ${listed(names)} ist leer.` : "Alle Tabellenblätter dieser Arbeitsmappe sind leer.",
};
