#!/usr/bin/env python3
"""Runs the program on random herds and parameter files and checks what holds for every run.

Usage: tests/random_runs.py PROGRAM RUNS [SEED]

Run k is made from seed SEED + k alone, so RUNS = 1 and that seed repeat it. The first violation is
told with its seed and its folder, which stays, and the exit status is 1.

Every run: exit status 0, or 1 exactly when the input asks for it, with that message last in the
log; no sanitizer's report; files end in a line end and hold no NaN or infinity; the input files
stay as they are; every fourth run gives the same bytes again.
Every result: the matings keep nmatings, the sexes, max_matings and limitmalematings; inbreeding,
relationships, contributions, the best mateset's values and its fitness equal those computed here
from the pedigree by the tabular method, or from the relationship file, to the digits printed.
"""
import collections
import itertools
import math
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile

Animal = collections.namedtuple("Animal", "id sire dam sex born most ebv text")
Case = collections.namedtuple("Case", "herd groups file_lines")  # file_lines: None without a file
INSERTED = Animal(0, 0, 0, 0, -9999, 0, "0", "ID_Inserted")
CLOCK = re.compile(r"^(  cpu=|  ?wall=| +QOB started).*$", re.M)
NOT_FINITE = re.compile(r"(?i)(?<![a-z_])(nan|inf|infinity)(?![a-z_])")
counts = collections.Counter()


def need(kept, *what):
    if not kept:
        raise AssertionError(" ".join(map(str, what)))


def agree(text, value, what, scale=1.0):
    """The printed number is the value to one unit of its last digit."""
    digits = re.fullmatch(r" *[-+]?\d*\.?(\d*)(?:E([-+]\d+))? *", text)
    need(digits, what, "is no number:", text)
    unit = 10.0 ** (int(digits[2] or 0) - len(digits[1]))
    need(abs(float(text) - value) <= unit + 1e-12 * scale, what, text, "should be", value)


def fields(line, widths):
    ends = list(itertools.accumulate(widths))
    return [line[end - width:end] for end, width in zip(ends, widths)]


# ---- random input ----

def random_herd(rng):
    n = 300 if rng.random() < 0.03 else rng.randint(10, 80)
    scattered = rng.sample(range(-2**31 + 1, 2**31), n + 5)
    ids = [i for i in rng.choice([range(1, n + 6), scattered, range(-n, 7)]) if i != 0]
    ghosts = [ids.pop(), ids.pop()] if rng.random() < 0.2 else []
    rng.shuffle(ids)
    start, length = rng.choice([0, 0, 2010, -7]), rng.choice([1, 1, 1, 3])
    births = sorted(rng.randrange(rng.randint(2, 6)) for _ in range(n))
    known, pool = rng.choice([0, 0.5, 0.9, 1, 1]), rng.choice([1, 3, 10, 100])
    oldest, share = rng.choice([0, 0, 1, 2]), rng.choice([0.3, 0.7, 1])
    most = {sex: rng.choice([1, 2, 5, 12, 60]) for sex in (1, 2)}
    flat = rng.random() < 0.4
    merit = rng.choice([lambda: f"{rng.gauss(100, 10):.3f}", lambda: str(rng.randint(-2, 2)),
                        lambda: "1.5", lambda: f"{rng.gauss(0, 10 ** rng.uniform(-9, 9)):.6E}"])
    herd = []
    for i, birth in zip(ids, births):
        def parent(k, sex):
            older = [a.id for a in herd if a.born < start + length * birth and a.sex == sex]
            if ghosts and rng.random() < 0.1:
                return ghosts[k]
            return rng.choice(older[-pool:]) if older and rng.random() < known else 0
        sex = rng.choice([1, 2, 2])
        candidate = birth >= oldest and rng.random() < share
        limit = (most[sex] if flat else rng.randint(1, most[sex])) if candidate else 0
        text = rng.choice(["", f"tag{i}", "'two words'", '"with ""quotes"" inside"'])
        herd.append(Animal(i, parent(0, 1), parent(1, 2), sex, start + length * birth, limit,
                           merit(), text))
    if rng.random() < 0.5:
        return herd
    record, ordered = {a.id: a for a in herd}, {}

    def add(i):  # a shuffled file, parents before their offspring
        if i in record and i not in ordered:
            add(record[i].sire), add(record[i].dam)
            ordered[i] = record[i]
    for a in rng.sample(herd, n):
        add(a.id)
    return list(ordered.values())


def random_groups(rng, herd):
    rare = lambda odd, usual, chance=0.02: odd if rng.random() < chance else usual
    limit = rng.choice([1, 1, 1, 2, 2, 3, 4, 5])
    room = min(sum(a.most for a in herd if a.sex == sex) for sex in (1, 2))
    wanted = min(room, 60) * rng.choice([0.2, 0.5, 0.8, 1, 1.3])
    nmatings = limit * max(1, int(wanted / limit)) + rare(1, 0)
    probability = lambda: rng.choice([-1.0, -1.0, 0.0, 0.02, 0.3, 1.0])
    popsize = rare(1, rng.randint(2, 30))
    groups = [("DataParameters", dict(
        datafile="herd.dat", resultsdirectory=rng.choice(["out/", "res_"]),
        ignoreparentalpedigreeerrors=rng.random() < 0.8,
        recodefile=rng.choice(["_null_", "codes.dat"]))),
        ("PopulationHistory", dict(pci_ngen=rng.choice([1, 5, 12])))]
    for _ in range(rng.choice([0, 0, 1, 3])):
        some = [rng.choice(herd).id, rng.choice(herd).id, 0, 999999]
        groups.append(("Contrib", dict(ancestor=rng.choice(some), descendant=rng.choice(some),
                                       group=rng.choice([0, rng.choice(herd).born]))))
    groups += [("RelationshipMatrix", dict(
        source=rng.choice(["pedigree", "pedigree", "PEDIGREE", "file"]),
        gfile=rng.choice(["_null_", "relations.dat"]),
        timesteps=rare(-1, rng.choice([0, 0, 0, 1, 2, 5])))),
        ("OCSParameters", dict(
            nmatings=rare(-1, rare(0, nmatings)), limitmalematings=rare(0, limit, 0.01),
            optimise=rng.choice(["penalty", "constraint", " Merit", "else"]),
            w_merit=rng.choice([0.0, 1.0, -0.5]), w_relationship=rng.choice([0.0, -1.0, -20.0, 2.0]),
            dfconstraint=rng.choice([-1.0, 0.001, 0.02, 0.2, 5.0]))),
        ("AlgorithmParameters", dict(
            generations=rng.choice([-1, 0, 1, 30, 120, 300]), popsize=popsize,
            n_offspring=rare(popsize + 1, rng.randint(1, min(popsize, 6))),
            restart_interval=rng.choice([0, 2, 10, 50]),
            exchange_algorithm=rng.choice([-1, 0, 1, 7, 40]), mutate_probability=probability(),
            crossover_probability=probability(), directed_mutation_probability=probability(),
            seed_rng=rng.choice([1, -5, 2**31 - 1, rng.randint(1, 10**6)]),
            ngenerationsnoimprovement=rng.choice([1, 20, 200, 1000]))),
        ("MatingOptions", dict(matingstrategy=rng.choice(["mai", " MAI", "random", "mcac"]),
                               repeatedmatings=rng.random() < 0.5))]
    return groups


# ---- the program ----

def write_input(folder, case):
    show = lambda v: f"'{v}'" if isinstance(v, str) else str(v)[0] if isinstance(v, bool) else v
    (folder / "out").mkdir(parents=True)
    (folder / "qob.prm").write_text("".join(
        f"&{name} {', '.join(f'{key}={show(value)}' for key, value in keys.items())} /\n"
        for name, keys in case.groups))
    (folder / "herd.dat").write_text("".join(" ".join(map(str, a)) + "\n" for a in case.herd))
    if case.file_lines is not None:
        (folder / "relations.dat").write_text("".join(case.file_lines))
    return {path: path.read_bytes() for path in folder.iterdir() if path.is_file()}


def run(program, folder, case):
    """Runs the case in the folder; checks what holds whatever the input; returns all the text."""
    before = write_input(folder, case)
    done = subprocess.run([program, "qob.prm"], cwd=folder, capture_output=True, timeout=300)
    for path, content in before.items():
        need(path.read_bytes() == content, "the run changed", path.name)
    errors = done.stderr.decode()
    need("Sanitizer" not in errors and "runtime error" not in errors, errors)
    need(done.returncode in (0, 1), "exit status", done.returncode, errors)
    text = {path.name.removeprefix("res_"): CLOCK.sub("", path.read_bytes().decode())
            for path in sorted(folder.glob("**/*")) if path.is_file() and path not in before}
    text["stdout"] = CLOCK.sub("", done.stdout.decode())
    for name, content in text.items():
        need(content.endswith("\n"), name, "does not end in a line end")
        need(not name.endswith(".txt") or not NOT_FINITE.search(content), name, "holds", NOT_FINITE.search(content))
    said = errors.splitlines()[-1].strip() if errors else ""
    last = [text[name].splitlines()[-1] for name in ("qob.log", "stdout")]
    if done.returncode == 0:
        need(said == "QOB ended successfully", "the last message is", said)
    elif "index 0" not in said:
        need(said == "Program terminated. Check file qob.log", "the last message is", said)
        need(last[0] == last[1], "log and screen end differently:", last)
    return text, last[1] if done.returncode else None


# ---- what a run should find ----

class Expected:
    """Relationships, candidates and goal, written down plainly from the case."""

    def __init__(self, case):
        self.p = {key: value for _, keys in case.groups for key, value in keys.items()}
        self.text = {key: v.strip().lower() for key, v in self.p.items() if isinstance(v, str)}
        numbered = {}
        for a in case.herd:
            for i in (a.sire, a.dam):
                if i:
                    numbered.setdefault(i, INSERTED._replace(id=i))
            numbered[a.id] = a
        self.animals, self.at = list(numbered.values()), {i: k for k, i in enumerate(numbered)}
        self.inserted = len(self.animals) - len(case.herd)
        self.parents = [[self.at[i] for i in (a.sire, a.dam) if i] for a in self.animals]
        self.own_f = [row[k] - 1 for k, row in enumerate(self.tabular())]
        self.a, self.from_file = self.tabular(), case.file_lines is not None
        self.cands = [k for sex in (1, 2) for k, a in enumerate(self.animals)
                      if a.most > 0 and a.sex == sex]
        if self.from_file:
            self.read(case.file_lines)
        self.males = [k for k in self.cands if self.animals[k].sex == 1]
        self.females = [k for k in self.cands if self.animals[k].sex == 2]

    def tabular(self, f=None):
        """All relationships; Mendelian variances follow the inbreeding of the file, if given."""
        a = []
        for k, parents in enumerate(self.parents):
            row = [sum(a[p][j] for p in parents) / 2 for j in range(k)]
            inbreeding = [f[p] if f else a[p][p] - 1 for p in parents]
            row.append(1 - sum(1 + x for x in inbreeding) / 4 +
                       sum(a[p][q] for p in parents for q in parents) / 4)
            for j in range(k):
                a[j].append(row[j])
            a.append(row)
        return a

    def read(self, lines):
        self.file = collections.defaultdict(float)
        f, cohort = [0.0] * len(self.animals), [a.born for a in self.animals]
        last, total = list(dict.fromkeys(cohort))[-1], 0.0
        for i, j, value in ((self.at[int(i)], self.at[int(j)], float(v))
                            for i, j, v in map(str.split, lines)):
            self.file[i, j] = self.file[j, i] = value
            if i == j:
                f[i] = value - 1
            elif cohort[i] == cohort[j] == last:
                total += value
        n = cohort.count(last)
        self.cohort_relationship = total / (n * (n - 1) / 2) if n > 1 else 0.0
        self.a = self.tabular(f)
        kept = [k for k in self.cands if (k, k) in self.file]
        counts["candidates not on file"] += len(self.cands) - len(kept)
        self.cands = kept

    def rel(self, i, j):
        return self.file.get((i, j), 0.0) if self.from_file else self.a[i][j]

    def capacity(self, sex):
        return sum(self.animals[k].most for k in sex)

    def fault(self):
        """What the run has to stop with; None if with nothing, "" if it stops before matings."""
        p, limit = self.p, self.p["limitmalematings"]
        if self.inserted and not p["ignoreparentalpedigreeerrors"]:
            return "ERRORs found in pedigree, See log file"
        if p["timesteps"] < 0 or p["nmatings"] < 0:
            return ""
        if limit and p["nmatings"] % limit:
            return "NMatings cannot be divided by LimitMaleMatings"
        if not 1 <= limit <= p["nmatings"]:
            return "LimitMaleMatings should be 1 <="
        if p["generations"] >= 0 and p["popsize"] < 2:
            return "PopSize should be at least 2"
        if p["generations"] >= 0 and p["n_offspring"] > p["popsize"]:
            return "N_Offspring should be 1 <="
        if not self.males or not self.females:
            return "No male candidates" if not self.males else "No female candidates"
        if max(self.animals[k].most for k in self.males) < limit:
            return "Male candidates should have at least LimitMaleMatings matings"
        if min(self.capacity(self.males), self.capacity(self.females)) < limit:
            return "index 0"
        return None

    def legal_for_certain(self, n):
        """Whatever is drawn is legal: nobody can have too many of the n matings."""
        return (n % self.p["limitmalematings"] == 0 and
                all(self.animals[k].most >= n for k in self.cands))

    def set_goal(self):
        """Contributions that earlier time steps have fixed, scale of merit, constraint."""
        born = [a.born for a in self.animals]
        now = max(born) + 1
        ages = [now - 1 - born[p] for k, b in enumerate(born) if b == now - 1
                for p in self.parents[k]]
        oldest = max([1] + ages + [now - born[k] for k in self.cands])
        weight = lambda a: (sum(x >= a for x in ages) / len(ages) if ages else a == 1) or a == 1
        number = collections.Counter((p, now - b) for k, b in enumerate(born) if now - b <= oldest
                                     for p in self.parents[k])
        parents = collections.Counter()
        for (_, age), times in number.items():
            parents[age] += times
        n = range(len(born))
        x, y = [0.0] * len(born), [0.0] * len(born)
        for (p, age), times in number.items():
            x[p] += weight(age) * times / parents[age]
            y[p] += weight(age + 1) * times / parents[age] if age < oldest else 0.0
        ax, ay = ([sum(row[j] * v[j] for j in n if v[j]) for row in self.a] for v in (x, y))
        self.interval = sum(ages) / len(ages) if ages else 1.0
        self.last_rel = sum(map(float.__mul__, x, ax)) / self.interval ** 2
        if sum(x) < 1e-8:
            self.last_rel = self.cohort_relationship if self.from_file else 0.0
        self.fixed, self.cross = sum(map(float.__mul__, y, ay)), [2 * v for v in ay]
        self.age = [now - b for b in born]
        self.merit = [float(a.ebv) for a in self.animals]
        self.unit, self.expected_merit = {}, 0.0
        for sex in (self.males, self.females):
            w = self.capacity(sex)
            pairs = [(self.animals[k].most, self.merit[k]) for k in sex]
            mean = sum(m * v for m, v in pairs) / w
            square = sum(m * (v * v) for m, v in pairs) - mean * mean * w
            square /= (len(sex) - 1.0) * w / len(sex) if len(sex) > 1 else 1.0
            same = len({v for _, v in pairs}) == 1 or square < 1e-16
            self.unit.update(dict.fromkeys(sex, 1.0 if same else math.sqrt(square)))
            self.expected_merit += 0.5 * mean / self.unit[sex[0]]
        most = min(max(self.p["dfconstraint"], 1e-5), 1.0)
        self.constraint = (2 - self.last_rel) * most / self.interval + self.last_rel

    def value(self, matings):
        """The best mateset's value by the labels of the report."""
        n, used = len(matings), collections.Counter(k for pair in matings for k in pair)
        mean = lambda of: sum(of(k) * times for k, times in used.items()) / (2 * n)
        merit, scaled = mean(lambda k: self.merit[k]), mean(lambda k: self.merit[k] / self.unit[k])
        scaled -= self.expected_merit
        quadratic = sum(self.rel(i, j) * s * t for i, s in used.items() for j, t in used.items())
        relationship = (self.fixed + mean(lambda k: self.cross[k]) +
                        quadratic / (2 * n) ** 2) / self.interval ** 2
        rate = (relationship - self.last_rel) * self.interval / (2 - self.last_rel)
        penalty = self.p["w_relationship"] if self.p["w_relationship"] <= 0 else -1.0
        fitness = self.p["w_merit"] * scaled + penalty * relationship
        if self.text["optimise"] == "constraint":
            fitness = scaled - 1000 * max(0.0, relationship - self.constraint)
        elif self.text["optimise"] == "merit":
            fitness = merit
        return {"Evaluation value": fitness, "Average breeding value": merit,
                "Average relationship": relationship, "Rate of  inbreeding": rate,
                "Generation interval": mean(lambda k: self.age[k])}


# ---- checks of the results ----

def check_pedigree(want, text):
    rows = text["f_coeff.txt"].splitlines()[4:]
    need(len(rows) == len(want.animals), "lines in f_coeff.txt:", len(rows))
    for k, (animal, line) in enumerate(zip(want.animals, rows)):
        row = fields(line, [12, 12, 12, 4, 8, 8, 8])
        need([int(x) for x in row[:5]] == [animal.id, animal.sire, animal.dam, animal.sex,
                                           animal.born], "animal", animal, "is", line)
        agree(row[5], want.own_f[k], f"F of {animal.id}")
    groups = list(dict.fromkeys(a.born for a in want.animals))
    first = text["F_summary.txt"].splitlines()[9:]
    a = want.tabular()
    for born, line in zip(groups, first):
        row = fields(line, [8, 8, 8, 12, 8, 8])
        group = [k for k, animal in enumerate(want.animals) if animal.born == born]
        need([int(row[0]), int(row[1])] == [born, len(group)], "group", born, "is", line)
        agree(row[3], sum(want.own_f[k] for k in group) / len(group), f"avg.F of {born}")
        agree(row[5], sum(a[i][j] for i in group for j in group) / len(group) ** 2 / 2,
              f"avg.coa of {born}")


def check_relations_written(want, lines):
    a, seen = want.tabular(), set()
    for i, j, value in map(str.split, lines):
        pair = frozenset((want.at[int(i)], want.at[int(j)]))
        need(pair not in seen, "relationship twice:", i, j)
        seen.add(pair)
        agree(value, a[min(pair)][max(pair)], f"relationship of {i} and {j}")
    for i in want.cands:
        need(all(a[i][j] < 1e-7 or frozenset((i, j)) in seen for j in want.cands),
             "relationships of", want.animals[i].id, "are incomplete")


def check_matings(want, text, n):
    """The mating list; returns the pairs of animals."""
    lines, matings, place = text["qob_MatingList.txt"].splitlines()[1:], [], want.cands.index
    need(len(lines) == n, "matings:", len(lines), "not", n)
    nm = nf = 0
    for number, line in enumerate(lines, 1):
        row = fields(line, [12, 12, 8, 8, 8, 13, 9, 9, 4, 15, 1, 15])
        s, d = want.at[int(row[0])], want.at[int(row[1])]
        need(s in want.males and d in want.females, "no candidates of their sexes:", line)
        before = matings[-1] if matings else (None, None)
        nm, nf = nm + 1 if s == before[0] else 1, nf + 1 if d == before[1] else 1
        need([int(x) for x in row[2:5]] == [number, nm, nf], "counters:", line)
        need(not matings or tuple(map(place, before)) <= (place(s), place(d)), "order:", line)
        agree(row[5], (want.merit[s] + want.merit[d]) / 2, "EBV", max(map(abs, want.merit)))
        agree(row[6], want.rel(s, d) / 2, "F")
        agree(row[7], (2 - (want.rel(s, s) + want.rel(d, d)) / 2) / 2, "vF")
        matings.append((s, d))
    used = collections.Counter(k for pair in matings for k in pair)
    for k, times in used.items():
        need(times <= want.animals[k].most, want.animals[k], "has", times, "matings")
        need(k in want.females or times % want.p["limitmalematings"] == 0, want.animals[k], times)
    return matings


def check_candidates(want, text, matings):
    used = collections.Counter(k for pair in matings for k in pair)
    offspring = collections.Counter(p for parents in want.parents for p in parents)
    sets = [want.males, want.females, [s for s, _ in matings], [d for _, d in matings]]
    lists = {"Candidates.txt": (want.cands, [15, 5, 12, 12, 12] + [16] * 4),
             "male_list.txt": ([k for k in want.males if used[k]], [15, 0, 15, 16, 0] + [16] * 4)}
    for name, (animals, widths) in lists.items():
        lines = text[name].splitlines()[7 if name == "Candidates.txt" else 6:]
        need(len(lines) == len(animals), name, "has", len(lines), "lines")
        for k, line in zip(animals, lines):
            row = fields(line, widths)
            need([int(row[0]), int(row[2]), int(row[3])] ==
                 [want.animals[k].id, used[k], offspring[k]], name, want.animals[k], line)
            if row[4]:
                need(int(row[1]) == want.animals[k].sex, "sex:", line)
                agree(row[4], want.merit[k], "merit")
            for printed, others in zip(row[5:], sets):
                agree(printed, sum(want.rel(k, j) for j in others) / len(others),
                      f"{name}: a relationship of {want.animals[k].id}")


def check_report(want, text, matings):
    printed = collections.defaultdict(list)
    for label, number in re.findall(r"(?m)^ (\w[\w ]*?) *:(.{12})$", text["F_summary.txt"]):
        printed[label].append(number)
    values = want.value(matings)
    scale = max([1.0] + [abs(want.merit[k]) / min(want.unit[k], 1.0) for k in want.cands])
    for label, value in values.items():
        agree(printed[label][-1], value, label, scale)
    pairing = sum(want.rel(s, d) for s, d in matings) / 2 / len(matings)
    first, last = printed["Average inbreeding"][-2:]
    agree(last, pairing, "Average inbreeding of the list")
    if want.text["matingstrategy"] != "mai":
        need(first == last, "Average inbreeding changed:", first, last)
    elif want.p["repeatedmatings"]:
        need(float(last) <= float(first), "Average inbreeding rose:", first, last)
    if want.p["generations"] >= 0:
        row = fields(text["qob_best.txt"].splitlines()[-1], [10, 16, 14, 14, 14, 8])
        for number, value in zip(row[1:], values.values()):
            agree(number, value, "qob_best.txt", scale)
        ran = min(want.p["generations"],
                  int(printed["Found in QOB generation"][-1]) + want.p["ngenerationsnoimprovement"])
        counts["exchanges"] += ran // max(1, want.p["exchange_algorithm"]) * (
            want.p["exchange_algorithm"] > 0)
        counts["restarts"] += text["qob.log"].count("Mutating solutions to increase variance")


def check_run(program, folder, rng, again):
    herd = random_herd(rng)
    case = Case(herd, random_groups(rng, herd), None)
    options = {name: keys for name, keys in case.groups}
    relationship = options["RelationshipMatrix"]
    if relationship["source"] == "file":
        relationship.update(source="pedigree", gfile="relations.dat")
        text, fault = run(program, folder / "first", case)
        relationship["source"] = "file" if "relations.dat" in text else "pedigree"
        if "relations.dat" in text:
            case = case._replace(file_lines=other_relations(rng, text["relations.dat"]))
    want = Expected(case)
    text, message = run(program, folder / "run", case)
    if again:
        need(run(program, folder / "again", case) == (text, message), "another run differs")
    fault, n = want.fault(), want.p["nmatings"]
    counts[f"expected: {fault}" if fault else "results"] += 1
    if fault:
        need(message and fault in message, "message", message, "instead of", fault)
        return
    check_pedigree(want, text)
    if want.text["source"] == "pedigree" and "relations.dat" in text:
        check_relations_written(want, text["relations.dat"].splitlines())
    if fault == "":
        need(message is None and "Candidates.txt" not in text, "matings unasked for", message)
        return
    room = min(want.capacity(want.males), want.capacity(want.females))
    if n > room:
        counts["shortages"] += 1
        need(re.search(rf" Matings selected         : +{room}\n", text["qob.log"]), "no warning")
        n = room
    if message:
        need("A legal solution was NOT found" in message, "unexpected:", message)
        need(not want.legal_for_certain(n), "a legal solution was NOT found")
        counts["without a legal solution"] += 1
        return
    want.set_goal()
    matings = check_matings(want, text, n)
    check_candidates(want, text, matings)
    check_report(want, text, matings)
    merits = [want.merit[k] for k in want.cands]
    for kind in (f"optimise {want.text['optimise']}", f"limit {want.p['limitmalematings']}",
                 f"source {want.text['source']}", "mated", want.inserted and "inserted parents",
                 len(set(merits)) < len(merits) and "ties"):
        counts[kind] += bool(kind)


def other_relations(rng, text):
    """The relationships as another program may give them: shuffled, changed, some left out."""
    kept, changed = rng.choice([1, 0.9]), rng.random() < 0.5
    pairs = rng.choice([1, 1, 0.8])
    lines = []
    for i, j, value in map(str.split, text.splitlines()):
        if rng.random() < (kept if i == j else pairs):
            value = f"{float(value) * rng.uniform(0.9, 1.1):.6f}" if changed else value
            lines.append(" ".join(rng.choice([(i, j, value), (j, i, value)])) + "\n")
    rng.shuffle(lines)
    return lines


def main():
    program, runs = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2])
    first = int(sys.argv[3]) if len(sys.argv) > 3 else 1
    for seed in range(first, first + runs):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="random_runs_"))
        try:
            check_run(program, folder, random.Random(seed), seed % 4 == 0)
        except Exception as fault:
            where = fault.__traceback__
            while where.tb_next:
                where = where.tb_next
            print(f"seed {seed}, folder {folder}, line {where.tb_lineno}: {fault!r}")
            sys.exit(1)
        shutil.rmtree(folder)
    print(f"{runs} runs:", ", ".join(f"{v} {k}" for k, v in sorted(counts.items(), key=str) if k))


if __name__ == "__main__":
    main()
