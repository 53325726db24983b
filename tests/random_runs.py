#!/usr/bin/env python3
"""Runs the program on random herds and parameter files and checks what holds for every run.

Usage: tests/random_runs.py PROGRAM RUNS [SEED]
The first violation ends it with status 1, tells the seed that repeats it and leaves its folder."""
# Of every run: exit status 0, or 1 exactly when the input asks for it, with its message last in the
# log; no sanitizer's report; files end in a line end and hold no NaN or infinity; input files stay
# as they are; the same input gives the same bytes. Of every result: matings keep nmatings, sexes,
# max_matings and limitmalematings; inbreeding, relationships, contributions and the best mateset's
# values equal those computed here, plainly, to the digits printed.
import ast, math, pathlib, random, re, shutil, subprocess, sys, tempfile
from collections import Counter, namedtuple

Animal = namedtuple("Animal", "id sire dam sex born most ebv text")
counts = Counter()
# What the value of each key is drawn from; nmatings is replaced by what fits the herd.
DRAWN = {line.split()[0]: dict(item.split("=") for item in line.split()[1:]) for line in """\
DataParameters ignoreparentalpedigreeerrors=True|True|True|False recodefile='_null_'|'codes.dat' \
  resultsdirectory='out/'|'res_'
PopulationHistory pci_ngen=1|5|12
RelationshipMatrix source='pedigree'|'PEDIGREE'|'file' gfile='_null_'|'relations.dat' \
  timesteps=-1|0|0|0|0|0|0|0|0|0|1|1|1|1|5|5|5|5
OCSParameters nmatings=1 limitmalematings=1|1|2|3|4|5 optimise='penalty'|'constraint'|'Merit'|'?' \
  w_merit=0.0|1.0|-0.5 w_relationship=0.0|-1.0|-20.0|2.0 dfconstraint=-1.0|0.001|0.02|0.2|5.0
AlgorithmParameters generations=-1|0|1|30|120|300 popsize=2|3|9|20|30 n_offspring=1|1|2|2 \
  restart_interval=0|2|10|50 exchange_algorithm=-1|0|1|7|40 seed_rng=1|-5|2147483647|20240607 \
  mutate_probability=-1.0|0.0|0.02|0.3|1.0 crossover_probability=-1.0|0.0|0.3|1.0 \
  directed_mutation_probability=-1.0|0.0|0.02|0.3|1.0 ngenerationsnoimprovement=1|20|200|1000
MatingOptions matingstrategy='mai'|'MAI'|'random'|'mcac' repeatedmatings=True|False
""".splitlines()}


# The line begins with the values: integers, and reals to one unit of their last digit.
def same(line, values, slack=1e-12):
    assert len(line.split()) >= len(values), f"too few values in {line}"
    for text, value in zip(line.split(), values):
        digits, power = re.fullmatch(r"[-+]?\d*\.?(\d*)(?:E(.+))?", text).groups("0")
        unit = 0 if isinstance(value, int) else 10.0 ** (int(power) - len(digits)) + slack
        assert abs(float(text) - value) <= unit, f"{text} should be {value} in {line}"


# Animals of several birth times, parents first; two of the parents may have no record.
def random_herd(rng):
    n = 300 if rng.random() < 0.03 else rng.randint(10, 80)
    ids = rng.choice([range(1, n + 9), range(-n, 9), rng.sample(range(-2**31 + 1, 2**31), n + 9)])
    ids = rng.sample([i for i in ids if i], n + 2)
    years = rng.sample(range(*rng.choice([(-5, 9), (2001, 2009)])), rng.randint(2, 6))
    known, pool, unrecorded = map(rng.choice, ([0, 0.5, 0.9, 1], [1, 3, 99], [0, 0, 0, 0.1]))
    share, oldest, least = map(rng.choice, ([0.3, 0.7, 1], years, [1, 5]))
    most = [least * rng.choice([1, 3, 12]), rng.choice([5, 12, 60])]
    merit, spread = map(rng.choice, (["{:.3f}", "{:.0f}", "1.5", "{:.6E}"], [0, 1, 9]))
    herd, depth = [], {0: 0, ids[-1]: 0, ids[-2]: 0}
    for i, born in zip(ids, sorted(rng.choices(years, k=n))):
        older = [[a.id for a in herd if a.born < born and a.sex == sex][-pool:] for sex in (1, 2)]
        parents = [ids[k - 2] if rng.random() < unrecorded else rng.choice(some)
                   if some and rng.random() < known else 0 for k, some in enumerate(older)]
        sex, candidate = rng.choice([1, 2, 2]), born >= oldest and rng.random() < share
        limit = rng.randint(least, most[sex - 1]) if candidate else 0
        text = rng.choice(["", f"tag{i}", "'two words'", '"with ""quotes"" inside"'])
        ebv = merit.format(rng.gauss(0, 10 ** rng.uniform(-spread, spread)))
        herd.append(Animal(i, *parents, sex, born, limit, ebv, text))
        depth[i] = 1 + max(map(depth.get, parents))
    return sorted(herd, key=lambda a: depth[a.id]) if rng.random() < 0.5 else herd


def random_parameters(rng, herd):
    p = {key: ast.literal_eval(rng.choice(drawn.split("|")))
         for keys in DRAWN.values() for key, drawn in keys.items()}
    room = min(sum(a.most for a in herd if a.sex == sex) for sex in (1, 2))
    slots = int(min(room, 60) * rng.choice([0.2, 0.5, 0.8, 1, 1.3]) / p["limitmalematings"])
    p["nmatings"] = rng.choice([-1, 0, 7] + 40 * [max(1, slots) * p["limitmalematings"]])
    p["requests"] = "".join(f"&Contrib ancestor={herd[0].id} group={a.born} /\n&Contrib ancestor="
                            f"{rng.choice(herd).id} descendant={a.id} /\n" for a in herd[::40])
    return p


# Checks what holds for every input; returns the text of the results and the fault told.
def run(program, folder, herd, p, relations=""):
    (folder / "out").mkdir(parents=True)
    groups = (f"&{group} {', '.join(f'{key}={p[key]!r}' for key in keys)} /\n"
              for group, keys in DRAWN.items())
    inputs = {"qob.dat": "".join(" ".join(map(str, a)) + "\n" for a in herd),
              "qob.prm": "".join(groups) + p["requests"], "relations.dat": relations}
    inputs = {folder / name: text for name, text in inputs.items() if text}
    for path, text in inputs.items():
        path.write_text(text)
    done = subprocess.run([program, "qob.prm"], cwd=folder, capture_output=True, text=True, timeout=99)
    assert all(path.read_text() == text for path, text in inputs.items()), "an input file changed"
    files = {path.name.removeprefix("res_"): path.read_text() for path in folder.glob("**/*")
             if path.is_file() and path not in inputs}
    files["stdout"] = done.stdout
    for name, text in files.items():
        assert text.endswith("\n"), f"{name} does not end in a line end"
        assert name[-4:] != ".txt" or not re.search(r"\b(nan|inf|infinity)\b", text, re.I), name
        files[name] = re.sub(r"(?m)^(  cpu=| wall=| QOB started|  QOB started).*", "", text)
    said, told = done.stderr.split("\n")[-2], done.stdout.split("\n")[-2]
    assert not re.search("Sanitizer|runtime error", done.stderr), done.stderr
    if (done.returncode, said) == (0, "QOB ended successfully"):
        return files, ""
    assert (done.returncode, said) == (1, " Program terminated. Check file qob.log"), done
    assert files["qob.log"].endswith(f"\n{told}\n"), f"not in the log: {told}"
    return files, told


# All relationships; Mendelian variances follow the inbreeding `f`, if given.
def tabular(parents, f=None):
    a = [[0.0] * len(parents) for _ in parents]
    for k, known in enumerate(parents):
        for j in range(k):
            a[k][j] = a[j][k] = sum(a[p][j] for p in known) / 2
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
        self.a = self.rel = self.product = tabular(self.parents)
        if relations:
            self.rel = [[0.0] * len(order) for _ in order]
            for i, j, value in map(str.split, relations.splitlines()):
                i, j = self.at[int(i)], self.at[int(j)]
                self.rel[i][j] = self.rel[j][i] = float(value)
            self.product = tabular(self.parents, [(r[k] or 1) - 1 for k, r in enumerate(self.rel)])
        self.sexes = [[k for k, a in enumerate(self.animals) if a.most > 0 and a.sex == sex and
                       self.rel[k][k]] for sex in (1, 2)]
        self.room = min(sum(self.animals[k].most for k in sex) for sex in self.sexes)

    # What the run has to stop with; "" if with nothing but before matings; else None.
    def fault(self):
        p, limit, (males, females) = self.p, self.p["limitmalematings"], self.sexes
        return next((message for true, message in [
            (self.inserted and not p["ignoreparentalpedigreeerrors"], "ERRORs found in pedigree"),
            (p["timesteps"] < 0 or p["nmatings"] < 0, ""),
            (p["nmatings"] % limit, "NMatings cannot be divided by LimitMaleMatings"),
            (p["nmatings"] < limit, "LimitMaleMatings should be 1 <="),
            (not males, "No male candidates"), (not females, "No female candidates"),
            (max(self.animals[k].most for k in males or [0]) < limit, "at least LimitMaleMatings"),
        ] if true), None)

    # Evaluation value, breeding value, relationship, rate of inbreeding, mean age of the parents.
    def values(self, matings):
        p, now, used = self.p, max(self.born) + 1, sum(matings, ())
        mean = lambda of: sum(map(of, used)) / len(used)
        dot = lambda u, v: sum(s * t for s, t in zip(u, v))
        pairs = [(q, now - b) for known, b in zip(self.parents, self.born) for q in known]
        ages, size = [now - 1 - self.born[q] for q, a in pairs if a == 1], Counter(a for _, a in pairs)
        interval = sum(ages) / len(ages) if ages else 1.0
        weight = lambda a: sum(x >= a for x in ages) / len(ages) if ages and a > 1 else a == 1
        # What the parents of each age class have fixed: now, and when all are a time step older.
        x, y = ([sum(weight(a + step) / size[a] for q, a in pairs if q == k)
                 for k in range(len(self.born))] for step in (0, 1))
        ax, ay = ([dot(row, v) for row in self.product] for v in (x, y))
        last, own = dot(x, ax) / interval ** 2, mean(lambda i: mean(lambda j: self.rel[i][j]))
        relationship = (dot(y, ay) + 2 * mean(lambda k: ay[k]) + own) / interval ** 2
        scaled = 0.0  # merit in standard deviations of each sex, above that of using all
        for sex, column in zip(self.sexes, zip(*matings)):
            w, merits = [self.animals[k].most for k in sex], [self.merit[k] for k in sex]
            average, n = dot(w, merits) / sum(w), len(w)
            square = dot(w, [v * v for v in merits]) - average * average * sum(w)
            unit = math.sqrt(max(square, 0.0) / ((n - 1) * sum(w) / n or 1))
            unit = 1.0 if unit < 1e-8 or len(set(merits)) == 1 else unit
            scaled += sum(self.merit[k] - average for k in column) / unit / len(used)
        most = min(max(p["dfconstraint"], 1e-5), 1.0) * (2 - last) / interval + last
        penalty = relationship * (p["w_relationship"] if p["w_relationship"] <= 0 else -1.0)
        merit = mean(lambda k: self.merit[k])
        fitness = {"constraint": scaled - 1000 * max(0.0, relationship - most), "Merit": merit}
        return [fitness.get(p["optimise"], p["w_merit"] * scaled + penalty), merit, relationship,
                (relationship - last) * interval / (2 - last), mean(lambda k: now - self.born[k])]


def check_pedigree(want, files):
    f, groups = [row[k] - 1 for k, row in enumerate(want.a)], dict.fromkeys(want.born)
    for a, own, line in zip(want.animals, f, files["f_coeff.txt"].split("\n")[4:]):
        same(line, [a.id, a.sire, a.dam, a.sex, a.born, own])
    for born, line in zip(groups, files["F_summary.txt"].split("\n")[9:]):
        group, own = zip(*((k, own) for k, own in enumerate(f) if want.born[k] == born))
        coancestry = sum(want.a[i][j] for i in group for j in group) / 2 / len(group) ** 2
        same(line, [born, len(own), sum(x > 0 for x in own), sum(own) / len(own), max(own), coancestry])
    for i, j, value in map(str.split, files.get("relations.dat", "").splitlines()):
        same(value, [want.a[want.at[int(i)]][want.at[int(j)]]])


# Returns the matings, pairs of animals.
def check_lists(want, files, n):
    lines, rel, merit = files["qob_MatingList.txt"].split("\n")[1:-1], want.rel, want.merit
    matings = [tuple(want.at[int(i)] for i in line.split()[:2]) for line in lines]
    assert len(matings) == n and matings == sorted(matings), f"{n} matings expected, in order"
    nm = nf = 0
    for k, ((s, d), before, line) in enumerate(zip(matings, [(-1, -1)] + matings, lines), 1):
        assert s in want.sexes[0] and d in want.sexes[1], f"no candidates of their sexes: {line}"
        nm, nf = nm * (s == before[0]) + 1, nf * (d == before[1]) + 1
        same(line, [want.animals[s].id, want.animals[d].id, k, nm, nf, (merit[s] + merit[d]) / 2,
                    rel[s][d] / 2, (2 - (rel[s][s] + rel[d][d]) / 2) / 2])
    used, offspring = Counter(sum(matings, ())), Counter(sum(want.parents, []))
    candidates, selected = sum(want.sexes, []), [k for k in want.sexes[0] if used[k]]
    for name, head, animals in ("Candidates", 7, candidates), ("male_list", 6, selected):
        lines = files[name + ".txt"].split("\n")[head:-1]
        assert len(lines) == len(animals), f"{name} has {len(lines)} lines"
        for k, line in zip(animals, lines):
            a, rest = want.animals[k], used[k] % want.p["limitmalematings"]
            assert used[k] <= a.most and (a.sex == 2 or not rest), f"{a} has {used[k]} matings"
            means = [sum(rel[k][j] for j in s) / len(s) for s in [*want.sexes, *zip(*matings)]]
            same(line, [a.id, a.sex, used[k], offspring[k], merit[k], *means] if head == 7 else
                 [a.id, used[k], offspring[k], *means])
    return matings


def check_report(want, files, matings):
    p, values, slack = want.p, want.values(matings), 1e-12 * (1 + max(map(abs, want.merit)))
    printed = re.findall(r"(?m)^ (\w[\w ]*\w) +:(.*)$", files["F_summary.txt"])
    first, last = dict(printed[::-1]), dict(printed)
    labels = ["Evaluation value", "Average breeding value", "Average relationship",
              "Rate of  inbreeding", "Generation interval"]
    same(" ".join(map(last.get, labels)), values, slack)
    first, pairing = first["Average inbreeding"], last["Average inbreeding"]
    same(pairing, [sum(want.rel[s][d] for s, d in matings) / 2 / len(matings)])
    mai = p["matingstrategy"].lower() == "mai"
    assert first == pairing or mai and (float(pairing) < float(first) or not p["repeatedmatings"])
    if p["generations"] >= 0:
        same(files["qob_best.txt"].split("\n")[-2].split(None, 1)[1], values, slack)
        ran = int(last["Found in QOB generation"]) + p["ngenerationsnoimprovement"]
        every = p["exchange_algorithm"] if p["exchange_algorithm"] > 0 else 10**9
        counts["exchanges"] += min(ran, p["generations"]) // every
        counts["restarts"] += files["qob.log"].count("Mutating solutions to increase variance")


def check_run(program, folder, rng, again):
    herd = random_herd(rng)
    p, relations = random_parameters(rng, herd), ""
    if p["source"] == "file":  # relationships that a run writes, perhaps with some lines left out
        before, kept = dict(p, source="pedigree", gfile="relations.dat"), rng.choice([1, 0.95, 0.7])
        written = run(program, folder / "first", herd, before)[0].get("relations.dat", "")
        relations = "".join(x for x in written.splitlines(True) if rng.random() < kept)
        p.update(source="file" if relations else "pedigree", gfile="relations.dat")
    want = Expected(herd, p, relations)
    files, told = run(program, folder / "run", herd, p, relations)
    assert not again or run(program, folder / "again", herd, p, relations) == (files, told)
    fault, n = want.fault(), min(p["nmatings"], want.room)
    can_exceed = any(want.animals[k].most < n for k in sum(want.sexes, []))
    if fault is None and told and (can_exceed or n % p["limitmalematings"]):
        fault = "A legal solution was NOT found"
    assert bool(told) == bool(fault) and (fault or "") in told, f"{told!r} instead of {fault!r}"
    assert ("Candidates.txt" in files) == (fault is None), "matings, but not as asked for"
    counts[{None: "mated", "": "analysed"}.get(fault, f"told: {fault}")] += 1
    if not fault:
        check_pedigree(want, files)
    if fault is None:
        check_report(want, files, check_lists(want, files, n))
        counts.update(f"{key} {p[key]}" for key in ("optimise", "limitmalematings", "source"))
        ties = max(Counter(want.merit[k] for k in sum(want.sexes, [])).values()) > 1
        counts.update({"inserted": want.inserted, "ties": ties, "shortage": n < p["nmatings"]})


def main(program, runs, first=1):
    for seed in range(int(first), int(first) + int(runs)):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="random_runs_"))
        try:
            check_run(pathlib.Path(program).resolve(), folder, random.Random(seed), seed % 4 == 0)
        except Exception as fault:
            raise SystemExit(f"seed {seed}, folder {folder}: {fault!r}") from fault
        shutil.rmtree(folder)
    print(f"{runs} runs:", ", ".join(f"{number} {kind}" for kind, number in sorted(counts.items())))


main(*sys.argv[1:])
