#!/usr/bin/env python3
"""Judges runs with rules of matings by all plans that there are, or by one that is known.

usage: tests/rules_runs.py PROGRAM RUNS [SEED]

Makes RUNS random herds with rules, from SEED (1) on. The first violation ends it with status 1,
tells the seed that repeats it and leaves its folder. Of every run: what random_runs.py checks of
runs and results, and
  faults      wrong rows, and rules that contradict each other, are told with their lines, all at
              once and no others, and end the run with status 1
  rules       each is kept, or told with the number of matings by which it is broken
Every second herd is so small that all plans are looked at:
  feasible    if a plan keeps all rules, one is found, and its value is the best of such plans
  pairing     its mean inbreeding is the least that its parents can have under the rules
  infeasible  else the rules named cannot all be kept, and without any one of them they can be
  violations  keep_all=.false.: no plan has fewer
Of the others a plan is known that keeps all rules, and one is found; or it breaks some, and no more
are broken. Rules that are named cannot be kept by a run of their own, and without any one can be.
"""
import itertools, math, random, re, sys
from collections import Counter, namedtuple
sys.dont_write_bytecode = True
import random_runs
from random_runs import FEMALE, MALE, Expected, check_numbers, counts

PAIRING = "pairing='least', "
PLANS = 6000  # so many, and no more, are looked at
MOST = ["max", "max-pair", "max-per-group"]  # kinds whose value is the most matings
CLOSED = ["forbid", "forbid-groups", "max-f"]  # kinds that permit no mating of what they are about
SMALL = dict(generations=2000, popsize=30, n_offspring=10, ngenerationsnoimprovement=1000,
             restart_interval=50, exchange_algorithm=40, mutate_probability=-1.0,
             crossover_probability=-1.0, directed_mutation_probability=-1.0)
# Rows with a Sire, a Dam, an animal that is in No record and an Idle one, which is no candidate.
WRONG = """fix,N,D,1 fix,S,N,1 fix,D,S,1 fix,S,D, fix,S,,2 min,N,,1 min,cow,,1 min,I,,1 min,S,,x
min,,,2 max,N,,3 max,S,,-1 max,D,,1.5 forbid,S,N, forbid,D,S, forbid,S,, group,N,new, group,S,,
wish,S,D,1 max-per-group,N,,2 max-per-group,D,,2 max-f,,,much max-pair,,,
forbid-groups,nobody,,""".split()
Case = namedtuple("Case", "program herd p relations want plan groups more")
Ending = namedtuple("Ending", "plan value named faulty")  # a run's: `named` cannot hold together

class Rule:
    """A row: animals by their numbers from 0, groups by name. `together` tells of each mating that
    the rule is about with which others it is counted."""

    def __init__(self, want, groups, kind, a="", b="", n=""):
        self.kind, self.a, self.b, self.n = kind, a, b, n
        self.names = {x for x in (a, b) if x and isinstance(x, str)}
        pairs = itertools.product(*want.candidates)
        self.together = {(s, d): key for s, d in pairs if (key := self.key(want, groups, s, d))}
        self.cells = kind, *(x if isinstance(x, str) else want.animals[x].id for x in (a, b)), n

    def key(self, want, groups, s, d):
        a, b = self.a, self.b
        if self.kind in ("min", "max"): return a in (s, d)
        if self.kind in ("fix", "forbid"): return (s, d) == (a, b)
        if self.kind == "max-pair": return (s, d)
        if self.kind == "max-f": return want.rel[s][d] / 2 > float(self.n) + 1e-9
        if self.kind == "max-per-group":
            among = [g for g in groups if b in ("", g) and d in groups[g]]
            return a in ("", s) and among and (s, among[0])
        return self.kind == "forbid-groups" and any(
            s in groups.get(x, ()) and d in groups.get(y, ()) for x, y in ((a, b), (b, a)))

    def counted(self, plan):
        return Counter(self.together[mating] for mating in plan if mating in self.together)

    def violations(self, plan):
        counted = self.counted(plan)
        if self.kind in ("fix", "min"): return max(0, self.n - counted.total())
        return sum(max(0, n - (self.n if self.kind in MOST else 0)) for n in counted.values())

def decided_by(rules):
    return Counter({(r.a, r.b): r.n for r in rules if r.kind == "fix"})

def contradictions(case, rules):
    """Sets of rules that contradict each other, or the data, in a direct way."""
    want, unit = case.want, case.p["limitmalematings"]
    fix, decided = [r for r in rules if r.kind == "fix"], [*decided_by(rules).elements()]
    closing = [r for r in rules if r.kind in CLOSED or r.kind == "max" and not r.n]
    if len(decided) > len(case.plan) or (len(case.plan) - len(decided)) % unit: yield {*fix}
    for k, used in Counter(sum(decided, ())).items():
        if used > want.animals[k].most: yield {r for r in fix if k in (r.a, r.b)}
    for r, q in itertools.permutations(rules, 2):
        if r.kind == q.kind == "fix" and (r.a, r.b) == (q.a, q.b): yield {r, q}
        if (r.kind, q.kind, r.a) == ("min", "max", q.a) and r.n > q.n: yield {r, q}
    for r in rules:
        if r.kind in MOST + CLOSED and r.violations(decided):
            yield {r, *(f for f in fix if (f.a, f.b) in r.together)}
        if r.kind == "min":  # the strictest of an animal may stand for the others
            mins = {q for q in rules if (q.kind, q.a) == ("min", r.a) and q.n >= r.n}
            closed = [q for q in closing if q.together.keys() & r.together]
            if r.n > min(want.animals[r.a].most, len(case.plan)): yield mins
            if r.n and r.together.keys() <= {x for q in closed for x in q.together}:
                yield {*mins, *closed}
        if r.kind in ("forbid-groups", "max-per-group") and r.names - case.groups.keys(): yield {r}
    for s, d in itertools.product(*want.candidates):
        limits = [r for r in rules if r.kind == "max-per-group" and r.a in ("", s)]
        members = {r for r in rules if r.kind == "group" and r.a == d and
                   any(q.b in ("", r.b) for q in limits)}
        if len(members) > 1:
            yield {*members, *(q for q in limits if q.b in ("", *(r.b for r in members)))}

# --- random input ---
def small_herd(rng):
    herd, chosen = random_runs.random_herd(rng), set()
    for sex, most in ((MALE, 4), (FEMALE, 5)):
        young = [a.id for a in herd if a.sex == sex][-9:]
        chosen.update(rng.sample(young, min(len(young), rng.randint(2, most))))
    return [a._replace(most=rng.randint(1, 3) if a.id in chosen else 0) for a in herd]

def known_plan(rng, want):
    """A plan, and how many of its first matings are decided; none where it is not easily drawn.

    Decided matings need not come in units: then the plan may be of fewer than asked for."""
    unit = want.p["limitmalematings"]
    males, dams = ([k for k in some for _ in range(want.animals[k].most)]
                   for some in want.candidates)
    n = min(want.p["nmatings"], want.room)
    m = min(rng.choice([0, 0, 1, 2, 3, n // 2]), n)
    less = n - (n - m) % unit
    if unit <= less < n == want.p["nmatings"] and rng.random() < 0.5:
        want.p["nmatings"] = n = less
    else:
        m -= m % unit
    sires = rng.sample(males, m)
    left = Counter(males) - Counter(sires)
    units = [k for k in left for _ in range(left[k] // unit)]
    if not n or (n - m) % unit or (n - m) // unit > len(units): return None, m
    sires += rng.sample(units, (n - m) // unit) * unit
    return list(zip(sires, rng.sample(dams, n))), m

def random_case(program, folder, rng, small):
    """A herd with a plan of which all is known, and the matings of it that are decided."""
    for attempt in itertools.count():
        herd = small_herd(rng) if small else random_runs.random_herd(rng)
        p, relations = random_runs.random_parameters(rng, herd), ""
        unit, n = rng.choice([1, 1, 2]), rng.randint(2, 6)
        if small: p.update(SMALL, limitmalematings=unit, nmatings=n)
        if p["source"] == "file":
            first = folder / f"first{attempt}"
            relations = random_runs.written_relationships(program, first, herd, p, rng)
            p.update({"gfile": "read.dat"} if relations else {"source": "pedigree"})
        want = Expected(herd, p, relations)
        pairs, n = math.prod(map(len, want.candidates)), p["nmatings"]
        if want.fault() is not None or small and math.comb(pairs + n - 1, n) > PLANS: continue
        plan, m = known_plan(rng, want)
        start, finish = (small or rng.random() < 0.5 for _ in range(2))
        more = (f"&Improvement start={start}, finish={finish} /\n"
                f"&MatingRules rulesfile='rules.csv', {rng.choice(['', '', PAIRING])}")
        if plan: return Case(program, herd, p, relations, want, plan, {}, more), Counter(plan[:m])

def random_rule(rng, case, kind):
    """Animals, groups and numbers at random, the number near what the plan has."""
    want, groups, (males, females) = case.want, case.groups, case.want.candidates
    if kind in ("max", "forbid") and rng.random() < 0.1:  # of any animals
        sexes = [a.sex for a in want.animals]
        males, females = ([k for k, x in enumerate(sexes) if x == sex] for sex in (MALE, FEMALE))
    one, pair, names = [males + females, [""]], [males, females], [*groups] or ["nobody"]
    of = {"min": one, "max": one, "fix": pair, "forbid": pair, "forbid-groups": [names, names],
          "max-per-group": [[""] * len(males) + males, ["", *groups]]}
    a, b = map(rng.choice, of.get(kind, [[""], [""]]))
    s, d = map(rng.choice, want.candidates)
    n = f"{want.rel[s][d] / 2:.{rng.choice([3, 10])}f}" if kind == "max-f" else ""
    if kind in ("fix", "min", *MOST):
        had = Rule(want, groups, kind, a, b, 0).counted(case.plan).values()
        near = max(had, default=0) + rng.choice([-2, -1, 0, 0, 1, 2])
        n = max(near, 1 if kind in ("fix", "max-pair") else 0)
    return Rule(want, groups, kind, a, b, n)

def random_rules(rng, case, decided, kept):
    """Perhaps only such as the plan keeps; one time in ten some that contradict each other."""
    want, rules, careless = case.want, [], rng.random() < 0.1
    for name in rng.sample(["g1", "North 2", "x_y", "7"], rng.randint(0, 3)):
        taken = {k for some in case.groups.values() for k in some if rng.random() < 0.97}
        share, some = rng.choice([0.1, 0.5]), (k for k, a in enumerate(want.animals) if a.sex)
        members = [k for k in some if k not in taken and rng.random() < share]
        if members: case.groups[name] = members
        rules += [Rule(want, {}, "group", k, name) for k in members]
    rules += [Rule(want, {}, "fix", *pair, n) for pair, n in decided.items()]
    for _ in range(rng.randint(1, 9) if kept else rng.randint(4, 16)):
        kinds = ["min", "min", *MOST, *CLOSED, *["fix"] * careless]
        rule = random_rule(rng, case, rng.choice(kinds))
        contrary = any(contradictions(case, [*rules, rule]))
        fits = rule.kind != "fix" and not (kept and rule.violations(case.plan))
        if careless if contrary else fits: rules.append(rule)
    return rules

def wrong_rows(rng, want):
    s, d = (want.animals[rng.choice(some)].id for some in want.candidates)
    no = next(i for i in itertools.count(5) if i not in want.number)
    idle = rng.choice([no, *(a.id for a in want.animals if a.sex and a.most == 0)])
    names = {"S": s, "D": d, "N": no, "I": idle}
    rows = rng.sample(WRONG, rng.randint(1, 3))
    return [tuple(str(names.get(cell, cell)) for cell in row.split(",")) for row in rows]

def cells(row):
    *names, value = row.split(",")
    return *names, float(value) if re.fullmatch(r"[\d.]+", value) else value

def written(rng, rows):
    """The file, and its rows, also as they are told, by line."""
    separator, lines, texts = rng.choice(",,;\t"), [], {}
    lines = [separator.join(["kind", "a", "b", "value"])]
    for row in rng.sample(rows, len(rows)):
        lines += [""] * (rng.random() < 0.1)
        kind, a, b, value = map(str, getattr(row, "cells", row))
        kind = rng.choice([str, str, str.upper, str.title])(kind)
        if separator == ";" and rng.random() < 0.5: value = value.replace(".", ",")
        lines.append(separator.join([kind, a, b, value]))
        texts[len(lines)] = row, cells(",".join(map(str, getattr(row, "cells", row))))
    return "\n".join(lines) + "\n", texts

# --- a run ---
def run(case, folder, rng, rules, keep_all, wrong=(), repeat=False):
    """Checks what holds for any rules."""
    want = case.want
    text, texts = written(rng, [*rules, *wrong])
    given = case.herd, case.p, case.relations, f"{case.more} keep_all={keep_all} /\n", text
    files, told = random_runs.run(case.program, folder, *given)
    again = folder / "again"
    assert not repeat or random_runs.run(case.program, again, *given) == (files, told), "new"
    if told:
        rows = re.findall(r"(?m)^rules\.csv:(\d+): (.*)", files["stderr"])
        named = "cannot hold together" in files["stderr"]
        assert not named or all(texts[int(k)][1] == cells(row) for k, row in rows), rows
        some = {texts[int(k)][0] for k, _ in rows}
        illegal = files["qob.log"].count("Base pop solution not legal")
        unlucky = illegal + case.p["n_offspring"] >= case.p["popsize"]
        if unlucky and "A legal solution was NOT found" in told:
            return Ending(None, None, None, set())  # an unlucky start of the search
        if "do not fit into units" in told: some |= {r for r in rules if r.kind == "fix"}
        return Ending(None, None, some if named else set(), set() if named else some)
    want.decided = decided_by(rules)
    plan = random_runs.check_mating_list(want, files, len(case.plan))
    random_runs.check_inbreeding(want, files)
    random_runs.check_founders(files)
    random_runs.check_candidates(want, files, plan)
    value = random_runs.check_search_result(want, files, plan, "finish=True" in case.more)[0]
    broken = [(k, row, n) for k, (rule, row) in texts.items() if (n := rule.violations(plan))]
    for name in ("qob.log", "stdout"):
        told = re.findall(r"rules\.csv:(\d+): (.*) : broken by (\d+)", files[name])
        told = [(int(k), cells(row), int(n)) for k, row, n in told]
        assert sorted(told) == sorted(broken), f"{name}: {told} instead of {broken}"
    return Ending(plan, value, set(), set())

def check_all_plans(case, rules, keep_all, ending):
    want, unit, n = case.want, case.p["limitmalematings"], len(case.plan)
    plans = itertools.combinations_with_replacement(itertools.product(*want.candidates), n)
    plans = [plan for plan in plans if all(
        used <= want.animals[k].most for k, used in Counter(sum(plan, ())).items())]
    broken = {plan: {r: k for r in rules if (k := r.violations(plan))} for plan in plans}
    uses = {plan: tuple(tuple(sorted(some)) for some in zip(*plan)) for plan in plans}

    def planned(decided):
        """The plans with these matings and, besides, males in units."""
        of_sires = Counter(s for s, _ in decided.elements())
        return [plan for plan in plans if decided <= Counter(plan) and
                all((uses[plan][0].count(s) - of_sires[s]) % unit == 0 for s in want.candidates[0])]

    def possible(some):
        return any(not broken[plan].keys() & some for plan in planned(decided_by(some)))

    number = {plan: sum(broken[plan].values()) for plan in planned(decided_by(rules))}
    least = min(number.values())
    if ending.plan is None:
        assert keep_all and least > 0, f"a plan breaks rules by {least}, and none is given"
        check_named(case, rules, ending.named, possible)
        return
    plan = tuple(sorted(ending.plan))
    assert number[plan] == least, f"broken by {number[plan]}, not {least}"
    if least: return  # what may be broken for the sake of value, nobody has said
    some = [other for other in number if not broken[other]]
    values = [want.values(plan) for plan in {uses[plan]: plan for plan in some}.values()]
    most = min(max(case.p["dfconstraint"], 1e-5), 1.0)
    rate = most if case.p["optimise"] == "constraint" else math.inf
    best = max([v[0] for v in values if v[3] <= rate] or [v[0] for v in values])
    if want.values(plan)[0] < best: check_numbers(ending.value, [best])
    if PAIRING in case.more or case.p["matingstrategy"].lower() == "mai":
        def cost(plan):
            repeats = 0 if case.p["repeatedmatings"] else n - len(set(plan))
            return 2 * repeats + sum(want.rel[s][d] / 2 for s, d in plan)
        least = min(cost(other) for other in some if uses[other] == uses[plan])
        assert cost(plan) < least + n * 1e-6, f"pairs cost {cost(plan)} instead of {least}"

def check_named(case, rules, named, possible):
    """All of these are needed, with the matings that are decided."""
    held = {r for r in rules if r.kind in ("group", "fix")}
    assert named and not possible(named | held), "the rules named can hold together"
    for r in named - held: assert possible((named | held) - {r}), f"{r.cells} is not needed"

def check_run(program, folder, rng, seed):
    small, kept, keep_all = seed % 2 == 1, rng.random() < 0.3, rng.random() < 0.6
    case, decided = random_case(program, folder, rng, small)
    rules = random_rules(rng, case, decided, kept)
    wrong = wrong_rows(rng, case.want) if rng.random() < 0.1 else []
    ending = run(case, folder / "run", rng, rules, keep_all, wrong, seed % 4 < 2)
    faults = [*({row} for row in wrong), *contradictions(case, rules)]
    known, size = sum(r.violations(case.plan) for r in rules), "small" if small else "large"
    if faults:
        untold = [fault for fault in faults if not fault & ending.faulty]
        names = [[getattr(row, "cells", row) for row in fault] for fault in untold]
        assert not untold, f"not told: {names}"
        assert ending.faulty <= set().union(*faults), "told, but no fault"
        counts[f"{size}, faulty"] += 1
        return
    assert not ending.faulty, f"no faults: {[r.cells for r in ending.faulty]}"
    if ending.named is None and not small:
        counts["large, unlucky"] += 1
        return
    if small: check_all_plans(case, rules, keep_all, ending)
    elif ending.plan is None:
        assert known and keep_all, "a plan is known, and none is given"
        runs = itertools.count()
        check_named(case, rules, ending.named, lambda some: not run(
            case, folder / f"some{next(runs)}", rng, [r for r in rules if r in some], True).named)
    broken = ending.plan and sum(r.violations(ending.plan) for r in rules)
    assert not broken or not keep_all and broken <= known, f"broken by {broken}; by {known} can be"
    ended = "infeasible" if broken is None else "violated" if broken else "feasible"
    counts[f"{size}, {ended}"] += 1
    counts.update({r.kind for r in rules})

if __name__ == "__main__": random_runs.main(check_run)
