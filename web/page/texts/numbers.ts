// Numbers as the language of the page writes them.

import * as english from "../../shared/format.js";
import { language } from "./words.js";

/** 1,234.5 as 1.234,5 */
export const german = (number: string): string => number.replace(/[.,]/g, (mark) => (mark === "." ? "," : "."));

const written = <Of extends unknown[]>(english: (...of: Of) => string) => (...of: Of): string => (language === "de" ? german(english(...of)) : english(...of));

export const count = written(english.count), fixed = written(english.fixed), percent = written(english.percent);
export const atLeast = written(english.atLeast), digits = written(english.digits);
