#!/usr/bin/env python3
"""Checks what holds for every run: tests/random_runs.py PROGRAM RUNS [SEED]"""
# Runs the program on random herds and parameter files. The first violation ends it with status 1,
# tells the seed that repeats it and leaves its folder.
# Of every run: exit status 0, or 1 exactly when the input asks for it, with its message last in the
# log; no sanitizer's report; files end in a line end and hold no NaN or infinity; input files stay
# as they are; the same input gives the same bytes. Of every result: matings keep nmatings, sexes,
# max_matings and limitmalematings; inbreeding, relationships, contributions and the best mateset's
# values equal those computed here, plainly, to the digits printed.
import ast, math, pathlib, random, re, shutil, subprocess, sys, tempfile
from collections import Counter, namedtuple
from statistics import fmean

Animal = namedtuple("Animal", "id sire dam sex born most ebv text")
counts = Counter()
# What the value of each key is drawn from; nmatings is replaced by what fits the herd.
DRAWN = {line.split()[0]: dict(item.split("=") for item in line.split()[1:]) for line in """\
DataParameters resultsdirectory='out/'|'res_' recodefile='_null_'|'codes.dat' \
  ignoreparentalpedigreeerrors=True|True|True|False
PopulationHistory pci_ngen=1|5|12
RelationshipMatrix source='pedigree'|'file' gfile='_null_'|'rel.dat' timesteps=0|0|0|0|1|1|5|5|9|-1
OCSParameters nmatings=1 limitmalematings=1|1|2|3|4|5 optimise='penalty'|'constraint'|'Merit'|'?' \
  w_merit=0.0|1.0|-0.5 w_relationship=0.0|-1.0|-20.0|2.0 dfconstraint=-1.0|0.001|0.02|0.2|5.0
AlgorithmParameters generations=-1|0|1|30|120|300 popsize=2|3|9|20|30 n_offspring=1|1|2|2 \
  restart_interval=0|2|10|50 exchange_algorithm=0|1|7|40 seed_rng=1|-5|2147483647|20240607 \
  mutate_probability=-1.0|0.0|0.02|0.3|1.0 crossover_probability=-1.0|0.0|0.3|1.0 \
  directed_mutation_probability=-1.0|0.0|0.02|0.3|1.0 ngenerationsnoimprovement=1|20|200|1000
MatingOptions matingstrategy='mai'|'MAI'|'random'|'mcac' repeatedmatings=True|False
Contrib ancestor=0|1|3|5 descendant=0|1|7 group=0|3|2005
""".splitlines()}


# The line begins with the values: integers, and reals to one unit of their last digit.
def same(line, values, slack=1e-12):
    for text, value in zip(line.split()[:len(values)], values, strict=True):
        digits, power = re.fullmatch(r"[-+]?\d*\.?(\d*)(?:E(.+))?", text).groups("0")
        unit = 0 if isinstance(value, int) else 10.0 ** (int(power) - len(digits)) + slack
        assert abs(float(text) - value) <= unit, f"{text} should be {value} in {line}"


# Animals of several birth times, parents first, two of them perhaps without a record; parameters.
def random_input(rng):
    n = 300 if rng.random() < 0.03 else rng.randint(10, 80)
    ids = rng.sample(range(*rng.choice([(1 - n // 2 * 2, n + 9, 2), (1 - 2**31, 2**31, 2)])), n + 3)
    ids = [i for i in ids if i != -1][:n + 2]
    years = rng.sample(range(*rng.choice([(-5, 9), (2001, 2009)])), rng.randint(2, 6))
    known, pool, unrecorded, share, oldest, least, factor, merit, spread = map(rng.choice, (
        [0, 0.5, 0.9, 1], [1, 3, 99], [0, 0, 0, 0.1], [0.3, 0.7, 1], years, [1, 5], [1, 3, 12],
        ["{:.3f}", "{:.0f}", "1.5", "{:.6E}"], [0, 1, 9]))
    herd = []
    for i, born in zip(ids, sorted(rng.choices(years, k=n))):
        older = [[a.id for a in herd if a.born < born and a.sex == sex][-pool:] for sex in (1, 2)]
        parents = [ids[k - 2] if rng.random() < unrecorded else rng.choice(some)
                   if some and rng.random() < known else 0 for k, some in enumerate(older)]
        most = rng.randint(least, least * factor) * (born >= oldest and rng.random() < share)
        ebv = merit.format(rng.gauss(0, 10 ** rng.uniform(-spread, spread)))
        herd.append(Animal(i, *parents, rng.choice([1, 2, 2]), born, most, ebv, rng.choice(
            ["", f"tag{i}", "'two words'", '"with ""quotes"" inside"'])))
    if rng.random() < 0.5: herd.sort(key=lambda a: any((a.sire, a.dam)))
    p = {key: ast.literal_eval(rng.choice(drawn.split("|")))
         for keys in DRAWN.values() for key, drawn in keys.items()}
    room = min(sum(a.most for a in herd if a.sex == sex) for sex in (1, 2))
    slots = int(min(room, 60) * rng.choice([0.2, 0.5, 0.8, 1, 1.3]) / p["limitmalematings"])
    p["nmatings"] = rng.choice([-1, 0, 7] + 60 * [max(1, slots) * p["limitmalematings"]])
    return herd, p


# Checks what holds for every input; returns the text of the results and the fault told.
def run(program, folder, herd, p, relations=""):
    (folder / "out").mkdir(parents=True)
    groups = (f"&{group} {', '.join(f'{key}={p[key]!r}' for key in keys)} /\n"
              for group, keys in DRAWN.items())
    inputs = {folder / "qob.dat": "".join(" ".join(map(str, a)) + "\n" for a in herd),
              folder / "qob.prm": "".join(groups), folder / "read.dat": relations}
    for path, text in inputs.items(): path.write_text(text)
    done = subprocess.run([program, "qob.prm"], cwd=folder, timeout=99, text=True, capture_output=1)
    assert all(path.read_text() == text for path, text in inputs.items()), "an input file changed"
    files = {path.name.removeprefix("res_"): path.read_text() for path in folder.glob("**/*")
             if path.is_file() and path not in inputs}
    assert not re.search("Sanitizer|runtime error", done.stderr), done.stderr
    for name, text in [*files.items(), ("stdout", done.stdout)]:
        assert text.endswith("\n"), f"{name} does not end in a line end"
        assert name[-4:] != ".txt" or not re.search(r"(?i)\b(nan|inf|infinity)\b", text), name
        files[name] = re.sub(r"(?m)^(  cpu=| wall=| QOB started|  QOB started).*", "", text)
    told = done.stdout.split("\n")[-2] if done.returncode else ""
    said = " Program terminated. Check file qob.log\n" if told else "QOB ended successfully\n"
    assert done.stderr.endswith(said) and told in files["qob.log"].split("\n")[-2], done.stderr
    return files, told


# All relationships; Mendelian variances follow the inbreeding `f`, if given.
def tabular(parents, f=None):
    a = [[0.0] * len(parents) for _ in parents]
    for k, known in enumerate(parents):
        for j in range(k): a[k][j] = a[j][k] = sum(a[p][j] for p in known) / 2
        a[k][k] = 1 - sum(1 + f[p] if f else a[p][p] for p in known) / 4 + sum(
            a[p][q] for p in known for q in known) / 4
    return a


# Animals, relationships and candidates, and what is to be found with them.
class Expected:
    def __init__(self, herd, p, relations):
        record, unrecorded = {a.id: a for a in herd}, Animal(0, 0, 0, 0, -9999, 0, "0", "")
        order = dict.fromkeys(i for a in herd for i in (a.sire, a.dam, a.id) if i)
        self.animals, self.p = [record.get(i, unrecorded._replace(id=i)) for i in order], p
        self.at, self.inserted = {i: k for k, i in enumerate(order)}, len(order) > len(herd)
        self.parents = [[self.at[i] for i in (a.sire, a.dam) if i] for a in self.animals]
        self.born, self.merit = zip(*((a.born, float(a.ebv)) for a in self.animals))
        self.a = tabular(self.parents)
        self.rel = [[0.0] * len(order) for _ in order] if relations else self.a
        for i, j, a in self.pairs(relations): self.rel[i][j] = self.rel[j][i] = float(a)
        self.product = tabular(self.parents, [(r[k] or 1) - 1 for k, r in enumerate(self.rel)])
        self.sexes = [[k for k, a in enumerate(self.animals) if a.most > 0 and a.sex == sex and
                       self.rel[k][k]] for sex in (1, 2)]
        self.room = min(sum(self.animals[k].most for k in sex) for sex in self.sexes)

    def pairs(self, text):
        return ((self.at[int(i)], self.at[int(j)], a) for i, j, a in zip(*[iter(text.split())] * 3))

    # What the run has to stop with; "" if with nothing but before matings; else None.
    def fault(self):
        p, limit, (males, females) = self.p, self.p["limitmalematings"], self.sexes
        return next(message for true, message in (
            (self.inserted and not p["ignoreparentalpedigreeerrors"], "ERRORs found in pedigree"),
            (p["timesteps"] < 0 or p["nmatings"] < 0, ""),
            (p["nmatings"] % limit, "NMatings cannot be divided by LimitMaleMatings"),
            (p["nmatings"] < limit, "LimitMaleMatings should be 1 <="),
            (not males, "No male candidates"), (not females, "No female candidates"),
            (self.room < limit, "LimitMaleMatings should be 1 <="),
            (all(self.animals[k].most < limit for k in males), "at least "), (True, None)) if true)

    # Evaluation value, breeding value, relationship, rate of inbreeding, mean age of the parents.
    def values(self, matings):
        p, born, now, used = self.p, self.born, max(self.born) + 1, sum(matings, ())
        mean, dot = lambda of: fmean(map(of, used)), lambda u, v: sum(s * t for s, t in zip(u, v))
        pairs = [(q, now - b) for known, b in zip(self.parents, born) for q in known]
        ages, size = [now - 1 - born[q] for q, a in pairs if a == 1], Counter(a for _, a in pairs)
        interval, weight = fmean(ages or [1]), lambda a: a < 2 or fmean(x >= a for x in ages or [0])
        # What the parents of each age class have fixed: now, and when all are a time step older.
        x, y = ([sum(weight(a + step) / size[a] for q, a in pairs if q == k)
                 for k in range(len(born))] for step in (0, 1))
        ax, ay = ([dot(row, v) for row in self.product] for v in (x, y))
        last, own = dot(x, ax) / interval ** 2, mean(lambda i: mean(lambda j: self.rel[i][j]))
        relationship = (dot(y, ay) + 2 * mean(lambda k: ay[k]) + own) / interval ** 2
        scaled, merit = 0.0, mean(lambda k: self.merit[k])
        # Scaled merit: in standard deviations of each sex, above that of using all by their limits.
        for sex, column in zip(self.sexes, zip(*matings)):
            w, merits = [self.animals[k].most for k in sex], [self.merit[k] for k in sex]
            average, n = dot(w, merits) / sum(w), len(w)
            square = dot(w, [v * v for v in merits]) - average * average * sum(w)
            unit = math.sqrt(max(square, 0.0) / ((n - 1) * sum(w) / n or 1))
            unit = 1.0 if unit < 1e-8 or len(set(merits)) == 1 else unit
            scaled += fmean(self.merit[k] - average for k in column) / unit / 2
        most = min(max(p["dfconstraint"], 1e-5), 1.0) * (2 - last) / interval + last
        penalty = relationship * (p["w_relationship"] if p["w_relationship"] <= 0 else -1.0)
        fitness = {"constraint": scaled - 1000 * max(0.0, relationship - most), "Merit": merit}
        return [fitness.get(p["optimise"], p["w_merit"] * scaled + penalty), merit, relationship,
                (relationship - last) * interval / (2 - last), mean(lambda k: now - born[k])]


def check_lists(want, files, n, lines, matings):
    assert len(matings) == n and matings == sorted(matings), f"{n} matings expected, in order"
    assert all(set(x) <= set(sex) for x, sex in zip(zip(*matings), want.sexes)), "wrong parents"
    nm, nf, rel, merit = 0, 0, want.rel, want.merit
    for k, ((s, d), before, line) in enumerate(zip(matings, [(-1, -1)] + matings, lines), 1):
        nm, nf = nm * (s == before[0]) + 1, nf * (d == before[1]) + 1
        same(line, [want.animals[s].id, want.animals[d].id, k, nm, nf, (merit[s] + merit[d]) / 2,
                    rel[s][d] / 2, (2 - (rel[s][s] + rel[d][d]) / 2) / 2])
    used, offspring = Counter(sum(matings, ())), Counter(sum(want.parents, []))
    rows = [line.split() for line in files["Candidates.txt"].split("\n")[7:-1]]
    for k, row in zip(sum(want.sexes, []), rows, strict=True):
        a, rest = want.animals[k], used[k] % want.p["limitmalematings"]
        assert used[k] <= a.most and (a.sex == 2 or not rest), f"{a} has {used[k]} matings"
        means = [fmean(rel[k][j] for j in some) for some in [*want.sexes, *zip(*matings)]]
        same(" ".join(row), [a.id, a.sex, used[k], offspring[k], merit[k], *means])
    assert [line.split()[:7] for line in files["male_list.txt"].split("\n")[6:-1]] == [
        [row[0], *row[2:4], *row[5:9]] for row in rows if row[1] == "1" and row[2] != "0"], "males"


def check_report(want, files, matings):
    p, values, slack = want.p, want.values(matings), 1e-12 * (1 + max(map(abs, want.merit)))
    found, value, breeding, average, before, age, _, _, rate, _, inbreeding = re.findall(
        r"(?m)^ \w[\w ]+:(.*)", files["F_summary.txt"])[-11:]
    same(" ".join((value, breeding, average, rate, age)), values, slack)
    same(inbreeding, [fmean(want.rel[s][d] / 2 for s, d in matings)])
    assert before == inbreeding or p["matingstrategy"].lower() == "mai" and (
        float(before) > float(inbreeding) or not p["repeatedmatings"]), f"{before} to {inbreeding}"
    if p["generations"] >= 0:
        same(files["qob_best.txt"].split("\n")[-2].split(None, 1)[1], values, slack)
        ran = min(int(found) + p["ngenerationsnoimprovement"], p["generations"])
        counts["exchanges"] += ran // (p["exchange_algorithm"] or 10**9)
        counts["restarts"] += files["qob.log"].count("Mutating solutions to increase variance")


def check_run(program, folder, rng, again):
    (herd, p), relations = random_input(rng), ""
    if p["source"] == "file":  # relationships that a run writes, perhaps with some lines left out
        first, kept = dict(p, source="pedigree", gfile="rel.dat", nmatings=-1), rng.choice([1, 0.9])
        written = run(program, folder / "first", herd, first)[0].get("rel.dat", "")
        relations = "".join(x for x in written.splitlines(True) if rng.random() < kept)
        p.update({"gfile": "read.dat"} if relations else {"source": "Pedigree"})
    want = Expected(herd, p, relations)
    files, told = run(program, folder / "run", herd, p, relations)
    assert not again or run(program, folder / "again", herd, p, relations) == (files, told), "new"
    fault, n, cands = want.fault(), min(p["nmatings"], want.room), sum(want.sexes, [])
    illegal = files["qob.log"].count("Base pop solution not legal") + p["n_offspring"]
    if fault is None and told and illegal >= p["popsize"]: fault = "A legal solution was NOT found"
    assert bool(told) == bool(fault) and (fault or "") in told, f"{told!r} instead of {fault!r}"
    assert ("Candidates.txt" in files) == (fault is None), "matings, but not as asked for"
    counts[{None: "mated", "": "analysed"}.get(fault, f"told: {fault}")] += 1
    for k, a in enumerate([] if fault else want.animals):
        same(files["f_coeff.txt"].split("\n")[4 + k], [*a[:5], want.a[k][k] - 1])
    for i, j, a in want.pairs(files.get("rel.dat", "")): same(a, [want.a[i][j]])
    if fault is None:
        lines = files["qob_MatingList.txt"].split("\n")[1:-1]
        matings = [tuple(want.at[int(i)] for i in line.split()[:2]) for line in lines]
        check_lists(want, files, n, lines, matings)
        check_report(want, files, matings)
        counts.update(f"{key} {p[key]}" for key in ("optimise", "limitmalematings", "source"))
        counts.update(inserted=want.inserted, shortage=n < p["nmatings"],
                      ties=len({want.merit[k] for k in cands}) < len(cands))


program, runs, first = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), (sys.argv + [1])[3]
for seed in range(int(first), int(first) + runs):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="random_runs_"))
    try: check_run(program, folder, random.Random(seed), seed % 4 == 0)
    except Exception as fault: raise SystemExit(f"seed {seed}, {folder}: {fault!r}") from fault
    shutil.rmtree(folder)
print(f"{runs} runs:", ", ".join(f"{number} {kind}" for kind, number in sorted(counts.items())))
