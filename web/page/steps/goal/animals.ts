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
    const found: Animal[] = [];
    for (const animal of this.all) {
      if (!fits(animal, holds) || !(animal.identifier.toLowerCase().includes(wanted) || animal.name.toLowerCase().includes(wanted))) continue;
      if (found.push(animal) === SHOWN) break;
    }
    fill(this.list, found.map(({ identifier, name }) => h("option", { value: identifier }, name && name !== identifier ? `${identifier} ${name}` : identifier)));
  }

  /** Who is meant: the identifier of whose name it is, where one animal alone is called so. */
  meant(text: string, holds: Holds): string {
    const wanted = text.trim();
    if (wanted === "" || this.byId.has(wanted)) return wanted;
    const lower = wanted.toLowerCase();
    const called = this.all.filter((animal) => fits(animal, holds) && animal.name.toLowerCase() === lower);
    return called.length === 1 ? called[0]!.identifier : wanted;
  }

  name(identifier: string): string {
    const name = this.byId.get(identifier)?.name ?? "";
    return name === identifier ? "" : name;
  }
}

const fits = ({ sex, left_out }: Animal, holds: Holds) => left_out === "" && (SEX[holds] ?? sex) === sex;
