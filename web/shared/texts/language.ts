// The language of reports and of what all pages share: a section of words a name, which always holds those
// of the language that is spoken. So no module keeps words that it has read while it was loaded.

import { formatDefaultLocale } from "d3-format";
import { writeAs } from "../format.js";
import { de } from "./de.js";
import * as en from "./en.js";

/** Other words in the same place: for a text a text, for a function one of the same arguments. */
type Translated<T> =
  T extends string ? string
  : T extends (...of: infer Of) => infer Said ? (...of: Of) => Translated<Said>
  : T extends object ? { readonly [K in keyof T]: Translated<T[K]> }
  : T;

export type Texts = Translated<typeof en>;

const LANGUAGES: Record<"en" | "de", Texts> = { en, de };
export type Language = keyof typeof LANGUAGES;

export let beware: Texts["beware"] = en.beware;
export let candidates: Texts["candidates"] = en.candidates;
export let frame: Texts["frame"] = en.frame;
export let made: Texts["made"] = en.made;
export let matings: Texts["matings"] = en.matings;
export let population: Texts["population"] = en.population;
export let rules: Texts["rules"] = en.rules;
export let search: Texts["search"] = en.search;
export let shared: Texts["shared"] = en.shared;
export let summary: Texts["summary"] = en.summary;

/** How numbers are written: where, and by which marks at the axes of pictures. */
const NUMBERS: Record<Language, { locale: string; decimal: string; thousands: string }> = {
  en: { locale: "en-GB", decimal: ".", thousands: "," },
  de: { locale: "de-DE", decimal: ",", thousands: "." },
};

/** What is made thereafter speaks this language. */
export function speak(language: Language): void {
  ({ beware, candidates, frame, made, matings, population, rules, search, shared, summary } = LANGUAGES[language]);
  const { locale, ...marks } = NUMBERS[language];
  writeAs(locale);
  formatDefaultLocale({ ...marks, grouping: [3], currency: ["", ""] });
}
