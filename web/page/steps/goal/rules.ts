// Rules of the breeder's own, each a sentence whose gaps are filled in. A rule counts when it is complete.

import { fill, h, type Child } from "../../../shared/dom.js";
import { save } from "../../../shared/download.js";
import { RULES, type Rule } from "../../choices.js";
import { NoRule, readRules } from "../../rules_file.js";
import { words } from "../../texts/words.js";
import type { Tradeoff } from "../../tradeoff.js";
import { rulesFile, type Work } from "../../work.js";
import { Animals } from "./animals.js";
import { faultsOf } from "./rule_faults.js";
import { complete, FORMS, type Form } from "./rule_forms.js";

interface Row {
  rule: Rule; element: HTMLElement; remove: HTMLElement; told: HTMLElement; names: () => void;
  /** Fields that name nobody; and whether one is typed in now. */
  nobody: Set<HTMLInputElement>; typing: boolean;
}

const same = (a: readonly Rule[], b: readonly Rule[]) => JSON.stringify(a) === JSON.stringify(b);
const bare = ({ kind, a, b, value }: Rule): Rule => ({ kind, a, b, value });
let made = 0;

export class Rules {
  private rows: Row[] = [];
  private readonly animals = new Animals();
  private readonly groups = h("datalist", { id: "rule-groups" });
  private readonly list = h("ol", { class: "rules" });
  private readonly kind = h("select", { id: "rule-kind" }, RULES.map((kind) => h("option", { value: kind }, words.goal.rules.kinds[kind])));
  private readonly add = h("button", { type: "button", class: "plainbutton", onclick: () => this.begin() }, words.goal.rules.add);
  private readonly file = h("input", { type: "file", id: "rule-file", accept: ".csv,.txt,text/csv", onchange: () => void this.open() });
  private readonly told = h("p", { class: "fault", role: "alert" });
  readonly element: HTMLElement;

  constructor(private readonly work: Work, private readonly tradeoff: Tradeoff) {
    const { title, lead, kind, files, file, save: keep, help } = words.goal.rules;
    this.element = h("section", { class: "group screen" }, h("h3", {}, title), h("p", {}, lead), this.list, this.animals.list, this.groups,
      h("div", { class: "line" }, h("label", { for: this.kind.id }, kind), this.kind, this.add),
      h("details", {}, h("summary", {}, files),
        h("p", { class: "note" }, help),
        h("div", { class: "line" }, h("label", { for: this.file.id }, file), this.file,
          h("button", { type: "button", class: "download", onclick: () => save("rules.csv", "text/csv", rulesFile(work.choices)) }, keep))),
      this.told);
  }

  private begin(): void {
    const row = this.row({ kind: this.kind.value as Rule["kind"], a: "", b: "", value: "" });
    this.rows.push(row);
    this.list.append(row.element);
    row.element.querySelector("input")?.focus();
    this.show();
  }

  private async open(): Promise<void> {
    const [file] = this.file.files ?? [];
    if (!file) return;
    this.told.textContent = "";
    try {
      this.work.choose({ rules: readRules(new Uint8Array(await file.arrayBuffer())) });
    } catch (error) {
      if (!(error instanceof NoRule)) throw error;
      this.told.textContent = words.goal.rules.noRule(error.line, error.found);
    }
    this.file.value = "";
  }

  private row(rule: Rule): Row {
    const told = h("output", { class: "fault", id: `rule-${++made}` });
    const remove = h("button", { type: "button", class: "plainbutton", onclick: () => this.drop(row) }, words.goal.rules.remove);
    const names: (() => void)[] = [];
    const row: Row = { rule, remove, told, names: () => names.forEach((name) => name()), element: h("li"), nobody: new Set(), typing: false };
    const parts = words.goal.rules.said[rule.kind].split(/\{(a|b|value)\}/);
    const sentence = parts.map((part, i): Child => (i % 2 === 0 ? part : this.gap(rule, FORMS[rule.kind].find(({ cell }) => cell === part)!, row, names)));
    row.element.append(h("span", {}, sentence), " ", remove, told);
    return row;
  }

  /** What is filled in, and who is called so. */
  private gap(rule: Rule, form: Form, row: Row, names: (() => void)[]): Child {
    const { cell, holds, optional } = form;
    const numeric = holds === "count" || holds === "share", animal = !numeric && holds !== "group";
    const field = h("input", {
      type: numeric ? "number" : "text", class: numeric && "short", list: animal ? this.animals.list.id : numeric ? undefined : this.groups.id, autocomplete: "off", spellcheck: "false",
      "aria-label": words.goal.rules.holds[holds], "aria-describedby": row.told.id, placeholder: optional ? words.goal.rules.all : words.goal.rules.holds[holds],
      ...(holds === "count" ? { min: 0, step: 1 } : holds === "share" ? { min: 0, max: 100, step: "any" } : {}),
    });
    field.value = holds === "share" && rule[cell] !== "" ? String(Number((Number(rule[cell]) * 100).toPrecision(12))) : rule[cell];
    const name = h("span", { class: "light", role: "status" });
    if (animal) {
      names.push(() => {
        const nobody = row.nobody.has(field);
        [name.className, name.textContent] = nobody ? ["fault", words.goal.rules.nobody] : ["light", this.animals.name(rule[cell])];
      });
      for (const event of ["focus", "input"]) field.addEventListener(event, () => this.animals.offer(field.value, holds));
    }
    field.addEventListener("input", () => {
      row.typing = true;
      row.nobody.delete(field);
      this.tell();
    });
    field.addEventListener("blur", () => {
      row.typing = false;
      this.tell();
    });
    field.addEventListener("change", () => {
      row.typing = false;
      if (animal) field.value = this.animals.meant(field.value, holds);
      if (animal && field.value !== "" && !this.animals.knows(field.value)) row.nobody.add(field);
      rule[cell] = holds === "share" && field.value !== "" ? String(Number((field.valueAsNumber / 100).toPrecision(12))) : field.value.trim();
      this.commit();
    });
    return animal ? [field, " ", name] : field;
  }

  private drop(row: Row): void {
    const at = this.rows.indexOf(row);
    this.rows.splice(at, 1);
    row.element.remove();
    (this.rows[Math.min(at, this.rows.length - 1)]?.remove ?? this.add).focus();
    this.commit();
  }

  private get counting(): Row[] {
    return this.rows.filter(({ rule, nobody }) => complete(rule) && nobody.size === 0);
  }

  private commit(): void {
    const rules = this.counting.map(({ rule }) => bare(rule));
    if (same(rules, this.work.choices.rules)) this.show();
    else this.work.choose({ rules });
  }

  show(): void {
    const { found, choices } = this.work;
    if (found.state === "ready") this.animals.take(found.data.animals);
    if (!same(this.counting.map(({ rule }) => bare(rule)), choices.rules)) {
      this.rows = choices.rules.map((rule) => this.row({ ...rule }));
      fill(this.list, this.rows.map(({ element }) => element));
    }
    const groups = new Set(this.rows.flatMap(({ rule }) => FORMS[rule.kind].flatMap(({ cell, holds }) => (holds === "group" && rule[cell] ? [rule[cell]] : []))));
    if (groups.size !== this.groups.childElementCount) fill(this.groups, [...groups].map((value) => h("option", { value })));
    this.tell();
  }

  /** The faults, each beside its rule. */
  private tell(): void {
    const faults = faultsOf(this.work, this.tradeoff);
    const counting = this.counting;
    for (const row of this.rows) {
      const fault = row.typing ? undefined : faults.get(counting.indexOf(row)), open = !complete(row.rule);
      row.told.textContent = open ? words.goal.rules.open : fault ?? "";
      row.told.className = open ? "note" : "fault";
      for (const field of row.element.querySelectorAll("input")) field.setAttribute("aria-invalid", String(fault !== undefined || row.nobody.has(field)));
      row.names();
    }
  }
}
