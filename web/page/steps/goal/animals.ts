// Animals to choose from while a reader types: by identifier or by name, some at a time, as a herd has
// many.

import { fill, h } from "../../../shared/dom.js";
import type { Animal } from "../../prepared.js";
import type { Holds } from "./rule_forms.js";

const SHOWN = 40;
const SEX: Partial<Record<Holds, number>> = { sire: 1, dam: 2 };

export class Animals {
  /** What the fields of a form refer to. */
  readonly list = h("datalist", { id: "rule-animals" });
  private all: readonly Animal[] = [];
  private byId = new Map<string, Animal>();

  /** Takes over those that may be mated. */
  take(animals: readonly Animal[]): void {
    if (animals === this.all) return;
    this.all = animals;
    this.byId = new Map(animals.map((animal) => [animal.identifier, animal]));
  }

  /** Offers those that the text so far may mean. */
  offer(text: string, holds: Holds): void {
    const wanted = text.trim().toLowerCase();
    const found = new Set(this.some((animal) => fits(animal, holds) && ends(animal, wanted)));
    for (const animal of this.some((animal) => fits(animal, holds) && [animal.identifier, animal.name].some((text) => text.toLowerCase().includes(wanted)))) found.add(animal);
    fill(this.list, [...found].map(({ identifier, name }) => h("option", { value: identifier }, name && name !== identifier ? `${identifier} ${name}` : identifier)));
  }

  /** The first of them. */
  private some(wanted: (animal: Animal) => boolean): Animal[] {
    const found: Animal[] = [];
    for (const animal of this.all) if (wanted(animal) && found.push(animal) === SHOWN) break;
    return found;
  }

  /** Whether there is such an animal; of all, as long as nobody is known. */
  knows(identifier: string): boolean {
    return this.all.length === 0 || this.byId.has(identifier);
  }

  /** Who is meant: the identifier of whose name or ending it is, where it is one animal's alone. */
  meant(text: string, holds: Holds): string {
    const wanted = text.trim();
    if (wanted === "" || this.byId.has(wanted)) return wanted;
    const lower = wanted.toLowerCase();
    for (const means of [(animal: Animal) => animal.name.toLowerCase() === lower, (animal: Animal) => ends(animal, lower)]) {
      const meant = this.all.filter((animal) => fits(animal, holds) && means(animal));
      if (meant.length > 0) return meant.length === 1 ? meant[0]!.identifier : wanted;
    }
    return wanted;
  }

  name(identifier: string): string {
    const name = this.byId.get(identifier)?.name ?? "";
    return name === identifier ? "" : name;
  }
}

const ends = ({ identifier }: Animal, wanted: string) => identifier.toLowerCase().endsWith(wanted);
const fits = ({ sex, left_out }: Animal, holds: Holds) => left_out === "" && (SEX[holds] ?? sex) === sex;
