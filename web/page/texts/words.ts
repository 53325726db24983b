// The language of the page. Each language is one file, of the shape of the English one.

import { speak as speakShared } from "../../shared/texts/language.js";
import { de } from "./de.js";
import { en, type Texts } from "./en.js";

export const LANGUAGES = { en, de };
export type Language = keyof typeof LANGUAGES;

export let language: Language = "en";
export let words: Texts = en;

/** The page is made anew thereafter. */
export function speak(wanted: Language): void {
  [language, words] = [wanted, LANGUAGES[wanted]];
  speakShared(wanted);
  document.documentElement.lang = wanted;
}
