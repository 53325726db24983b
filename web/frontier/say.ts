// What is said of plans and their picture. A page in another language says it in its own words.

import { asked, how, parents, picture, told } from "../shared/texts/frontier.js";

const own = { asked, how, parents, picture, told };

export type Said = typeof own;
export let say = own;

export function saying(said: Said): void {
  say = said;
}
