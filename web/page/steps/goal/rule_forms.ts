// What each kind of rule says of whom, and what of it a reader fills in.

import type { Rule } from "../../choices.js";

export type Cell = "a" | "b" | "value";
export type Holds = "sire" | "dam" | "animal" | "group" | "count" | "share";
export interface Form { cell: Cell; holds: Holds; /** Left empty it stands for all. */ optional?: boolean }

const SIRE: Form = { cell: "a", holds: "sire" }, DAM: Form = { cell: "b", holds: "dam" }, ANIMAL: Form = { cell: "a", holds: "animal" };
const COUNT: Form = { cell: "value", holds: "count" };
const group = (cell: Cell): Form => ({ cell, holds: "group" });
const all = (form: Form): Form => ({ ...form, optional: true });

export const FORMS: Record<Rule["kind"], readonly Form[]> = {
  fix: [SIRE, DAM, COUNT], forbid: [SIRE, DAM], min: [ANIMAL, COUNT], max: [ANIMAL, COUNT],
  group: [ANIMAL, group("b")], "forbid-groups": [group("a"), group("b")],
  "max-pair": [COUNT], "max-per-group": [all(SIRE), all(group("b")), COUNT], "max-f": [{ cell: "value", holds: "share" }],
};

/** Whether a rule says all that it must. */
export const complete = (rule: Rule): boolean => FORMS[rule.kind].every(({ cell, optional }) => optional || rule[cell] !== "");
