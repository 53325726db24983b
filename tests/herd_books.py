#!/usr/bin/env python3
"""Prepares herd books and compares what becomes of them with what a person would make of them.

usage: tests/herd_books.py QOB QOB_PREPARE HERD.csv... [--runs N] [--seed S]

A herd book: CSV in UTF-8 with the columns id, sire, dam, sex, born or birthdate, and perhaps bv, or
with other headings in COLUMNS. The first violation ends it with status 1 and leaves its folder,
whose path it tells. For each herd book
  by hand    F and completeness of every animal are those of a data file that is written here, of
             the same pedigree in another order and with other numbers
  mended     of the book without its faults, that and nothing but what is true is told
  rewritten  rows in another order, other identifiers, dates moved by whole years and in another
             form, language, separator, encoding: the plan is the same, animal by animal
  faults     N ordinary faults (--runs, else 10) are put into the mended book, one at a time: each
             is told with its kind, row and column, and no other fault
"""
import argparse, csv, datetime, io, pathlib, random, re, shutil, subprocess, tempfile
from collections import Counter

COLUMNS = {"id": "identifier", "Ear tag": "identifier", "sire": "sire", "Sire": "sire", "dam": "dam",
           "Dam": "dam", "sex": "sex", "Sex": "sex", "birthdate": "birth", "born": "birth",
           "Birth date": "birth", "bv": "ebv", "EBV": "ebv"}
FIELDS = [*dict.fromkeys(COLUMNS.values())]
# Headings in the order of FIELDS, a word for each sex, one for an unknown parent.
LANGUAGES = [line.split("|") for line in """Animal ID|Sire|Dam|Sex|Birth date|EBV|male|female|unknown
LOM|Vater|Mutter|Geschlecht|Geburtsdatum|Zuchtwert|männlich|weiblich|unbekannt
N° national|Père|Mère|Sexe|Date de naissance|Valeur génétique|mâle|femelle|inconnu
Crotal|Padre|Madre|Sexo|Fecha de nacimiento|Mérito|macho|hembra|desconocido
Levensnummer|Vader|Moeder|Geslacht|Geboortedatum|Fokwaarde|mannelijk|vrouwelijk|onbekend
CKR-nr.|Far|Mor|Køn|Fødselsdato|Avlsværdi|han|hun|ukendt""".split("\n")]
ENCODINGS = ["utf-8", "utf-8-sig", "utf-16", "utf-16-be", "utf-16-le", "cp1252"]
DATES = {"iso": "{0:%Y-%m-%d}", "dmy": "{0.day}.{0.month}.{0.year}", "slashes": "{0:%d/%m/%Y}",
         "mdy": "{0.month}/{0.day}/{0.year}", "serial": "{1}"}
RULES = ["--males", "matings=10 age=1-8", "--females", "matings=1 age=1-8", "--matings", "20"]

# The kind of what is put in, whom it befalls, the column, texts; a capital alone stands for the row's
# Identifier, Sire, Dam, Other sex, or its sire's with a bLank inside.
FAULTS = [
    ("own-parent", "any", "sire", "I"), ("own-parent", "any", "dam", "I"),
    ("same-parents", "sired", "dam", "S"),
    ("sex", "any", "sex", "stud|3|m/f"), ("parent-sex", "parent", "sex", "O"),
    ("birth", "any", "birth", "spring|2001-02-29|2001-13-01|31.4.2001|3.2.01|1.2|1500|20010230"),
    ("number", "any", "ebv", "1.234.5|1.234,5|1 234|1'000|abc|--1|1e999"),
    ("table", "any", "ebv", "1,5"), ("ebv", "candidate", "ebv", "|NA|-"),
    ("identifier", "barren", "identifier", "|0|unknown|2.76E+14|" + 201 * "x"),
    ("cells", "any", "column 7", "more"), ("duplicate", "any", "", ""), ("repeated", "any", "", ""),
    ("founder", "any", "sire", "nobody 1"), ("founder", "any", "dam", "nobody 1"),
    ("alike", "long", "sire", "L"), ("inferred", "parent", "sex", "|?"),
    ("undated", "dated", "birth", "|0|?"), ("younger-parent", "dated", "birth", "older"),
    ("loop", "grandchild", "", ""), ("both-roles", "grandson", "dam", "")]


def run(here, *command):
    """Status and what is shown of a command in a folder."""
    done = subprocess.run([str(c) for c in command], cwd=here, text=True, capture_output=True)
    return done.returncode, done.stdout + done.stderr


def rows_of(path):
    with open(path, encoding="utf-8", newline="") as file: return list(csv.DictReader(file))


def read_book(path, rng):
    """Rows with the FIELDS as texts; breeding values are drawn where there are none."""
    rows = rows_of(path)
    heading = {f: next((c for c in COLUMNS if c in rows[0] and COLUMNS[c] == f), f) for f in FIELDS}
    return [{f: r.get(heading[f]) or f"{rng.gauss(0, 1):.3f}" * (f == "ebv") for f in FIELDS}
            for r in rows]


def prepare(folder, book, *options):
    """Prepares the table at `book` in a folder. Gives status, text shown, and findings."""
    status, text = run(folder.parent, programs.prepare, book, "-o", folder, *options)
    findings = folder / f"{book.stem}.faults.csv"
    assert findings.exists(), text
    return status, text, rows_of(findings)


def analysed(folder, name, **values):
    """Runs qob on NAME.prm with these values. Gives its file of coefficients and its plan, both by
    identifier (names by number)."""
    prm = folder / f"{name}.prm"
    text = prm.read_text()
    for key, value in values.items(): text = re.sub(rf"\b{key}=[^,\s]+", f"{key}={value}", text)
    prm.write_text(text)
    status, shown = run(folder, programs.qob, prm.name, "--quiet")
    assert status == 0, shown
    table = rows_of(folder / f"{name}.names.csv")
    names = {r["number"]: r["identifier"] for r in table}
    lines = (folder / "QOB_f_coeff.txt").read_text().split("\n")[4:-1]
    coefficients = {names[v[:12].strip()]: (v[48:56], v[64:72]) for v in lines}
    for r in table:
        pci = coefficients[r["identifier"]][1].strip()
        assert r.get("completeness", pci) == pci, f"completeness {pci} of {r}"
    plan = folder / "QOB_qob_MatingList.txt"
    matings = [v.split()[:8] for v in plan.read_text().split("\n")[1:-1]] if plan.exists() else []
    return coefficients, [(names[v[0]], names[v[1]], *v[2:]) for v in matings]


def pedigree_of(rows):
    """Parents by identifier, those without a row as well; and how deep each stands."""
    parents = {r["identifier"]: (r["sire"], r["dam"]) for r in rows}
    for p in {p for pair in parents.values() for p in pair if p}: parents.setdefault(p, ("", ""))
    depth = {"": 0}
    waiting = [*parents]
    while waiting:
        i = waiting[-1]
        if first := [p for p in parents[i] if p not in depth]: waiting.extend(first)
        else: depth[waiting.pop()] = 1 + max(depth[p] for p in parents[i])
    return parents, depth


def write_by_hand(folder, name, rows, rng):
    """A data file with numbers and an order of its own, names and parameters."""
    parents, depth = pedigree_of(rows)
    males = {s for s, _ in parents.values()}
    order = sorted(parents, key=lambda i: (depth[i], rng.random()))
    number = dict(zip(order, rng.sample(range(1, 10 * len(order)), len(order))), **{"": 0})
    (folder / f"{name}.dat").write_text("".join(
        f"{number[i]} {number[s]} {number[d]} {2 - (i in males)} {depth[i]} 0 0 x\n"
        for i in order for s, d in [parents[i]]))
    with open(folder / f"{name}.names.csv", "w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows([("number", "identifier"), *((number[i], i) for i in order)])


def mended(rows, findings):
    """The rows without faults."""
    rows, gone = [dict(r) for r in rows], set()
    for f in findings:
        if f["severity"] != "fault": continue
        k, kind, field = int(f["row"]) - 2, f["kind"], COLUMNS[f["column"]]
        about = [r for r in rows if r["identifier"] in (rows[k]["identifier"], f["value"])]
        if kind in ("duplicate", "identifier"): gone.add(k)
        elif kind == "younger-parent": [r.update(birth="") for r in about]
        elif kind == "parent-sex":
            [r.update(sex="MF"[field == "dam"]) for r in about if r["identifier"] == f["value"]]
        elif kind == "same-parents": rows[k].update(sire="", dam="")
        else: rows[k][field] = ""
    return [r for k, r in enumerate(rows) if k not in gone]


def date_of(text, moved, form, day):
    """A date, moved by years, in another form; of a year, in which all were born on one day."""
    if not text: return ""
    if len(text) == 4 and form == "years": return str(int(text) + moved)
    year, month, day = map(int, text.split("-")) if len(text) > 4 else (int(text), *day)
    date = datetime.date(year + moved, month, day)
    return DATES[form].format(date, (date - datetime.date(1899, 12, 30)).days)


def rewritten(rows, rng):
    """The bytes of the same herd's table as another person keeps it, old identifiers by new ones, and
    how many remarks on its reading are to be told."""
    language, form = rng.choice(LANGUAGES), rng.choice([*DATES, "years"])
    years = [int(r["birth"][:4]) for r in rows if r["birth"]]
    known = {r["identifier"]: r for r in rows}
    if any(len(r["birth"]) > 4 for r in rows):
        form = "slashes" if form == "years" else form
    elif any(r["birth"] == known.get(r[f], {}).get("birth") for r in rows for f in ("sire", "dam")):
        form = "years"  # nobody is born on the day of its parents
    moved = 4 * rng.randint(0, 5)  # so that leap years stay such
    if form == "serial" and min(years, default=9999) < 1930: moved += 400
    day, comma, sex = (rng.randint(1, 12), rng.randint(13, 28)), rng.random() < 0.5, language[6:8]
    parents, _ = pedigree_of(rows)
    letters = "ABCXYZabcxyzäöüÄÖßéñø   .,;|/'\"-_#0123456789"
    new = {i: ("".join(rng.choices(letters, k=rng.randint(0, 40))) + f" {k}").strip()
           for k, i in enumerate(parents, 1)} | {"": language[8]}
    table = [[new[r["identifier"]], new[r["sire"]], new[r["dam"]],
              sex["MF".index(r["sex"])] if r["sex"] else "", date_of(r["birth"], moved, form, day),
              r["ebv"].replace(".", "," if comma else ".")] for r in rng.sample(rows, len(rows))]
    columns = rng.sample(range(6), 6)
    text = io.StringIO()
    csv.writer(text, delimiter=rng.choice(",;\t|"), lineterminator=rng.choice(["\n", "\r\n"]),
               quoting=rng.choice([csv.QUOTE_MINIMAL, csv.QUOTE_ALL])).writerows(
                   [v[c] for c in columns] for v in [language[:6], *table])
    encoding = rng.choice(ENCODINGS)
    table = text.getvalue().encode(encoding)
    remarks = comma + (encoding == "cp1252" and max(table) > 127) + (form == "serial" and any(years))
    return table, {v: k for k, v in new.items()}, remarks


def write_plainly(path, rows, headings):
    with open(path, "w", encoding="utf-8", newline="") as file:
        csv.writer(file).writerows([headings, *(r.values() for r in rows)])


def true_remarks(rows, text, read):
    """How often what holds of rows without faults is to be told."""
    parents, _ = pedigree_of(rows)
    used = {p for pair in parents.values() for p in pair}
    alike = Counter(re.sub(r"\s", "", i).lower() for i in parents)
    by_depth = "Time steps: gen" in text
    return +Counter(founder=len(parents) - len(rows),
                    read=read + (by_depth and any(r["birth"] for r in rows)),
                    alike=sum(n - 1 for n in alike.values()),
                    undated=sum(not r["birth"] for r in rows) * (not by_depth),
                    label=any(len(i.encode()) > 15 for i in parents),
                    inferred=sum(not r["sex"] and r["identifier"] in used for r in rows))


def befallen(rows, whom, candidates):
    """Numbers of the rows that a fault may befall."""
    known = {r["identifier"]: r for r in rows}
    used = {r[f] for r in rows for f in ("sire", "dam")}
    dated = lambda r: r["birth"] and any(known.get(r[f], r)["birth"] for f in ("sire", "dam") if r[f])
    fits = {"any": lambda r: True, "sired": lambda r: r["sire"], 
            "long": lambda r: len(r["sire"]) > 1, "dated": dated,
            "parent": lambda r: r["identifier"] in used and r["sex"],
            "barren": lambda r: r["identifier"] not in used,
            "candidate": lambda r: r["identifier"] in candidates,
            "grandson": lambda r: known.get(r["sire"], {}).get("sire"),
            "grandchild": lambda r: r["sex"] and known.get(known.get(r["sire"], {}).get("dam"))}
    return [k for k, r in enumerate(rows) if fits[whom](r)]


def first_use(rows, identifier):
    return next((k, f) for k, r in enumerate(rows) for f in ("sire", "dam") if r[f] == identifier)


def put(rows, fault, k, rng):
    """Puts the fault into row k. Gives number and field of the cell that it is to be told of."""
    kind, _, field, texts = fault
    r, known = rows[k], {r["identifier"]: r for r in rows}
    values = {"I": r["identifier"], "S": r["sire"], "D": r["dam"], "O": {"M": "F"}.get(r["sex"], "M"),
              "L": r["sire"][:1] + " " + r["sire"][1:]}
    text = rng.choice(texts.split("|"))
    text = values.get(text, text)
    if kind in ("duplicate", "repeated"):
        rows.append(r | {"ebv": "9.5"} if kind == "duplicate" else dict(r))
        return len(rows) - 1, "identifier"
    if kind == "parent-sex":
        r["sex"] = text
        return first_use(rows, r["identifier"])
    if kind == "younger-parent":
        field = next(f for f in ("sire", "dam") if known.get(r[f], {}).get("birth"))
        r["birth"] = str(int(known[r[field]]["birth"][:4]) - 1)
        return k, field
    if kind == "loop":
        ancestor = known[known[r["sire"]]["dam"]]
        field = "sire" if r["sex"] == "M" else "dam"
        ancestor[field] = r["identifier"]
        return rows.index(ancestor), field
    if kind == "both-roles":
        text = known[r["sire"]]["sire"]
        r["dam"] = text
        return max((next(i for i, v in enumerate(rows) if v[f] == text), f) for f in ("sire", "dam"))
    r[field] = text
    return k, field


def check_fault(folder, clean, candidates, rng):
    rows, headings = [dict(r) for r in clean], rng.choice(LANGUAGES)[:6]
    for fault in rng.sample(FAULTS, len(FAULTS)):
        if some := befallen(rows, fault[1], candidates): break
    kind = fault[0]
    k, field = put(rows, fault, rng.choice(some), rng)
    column = dict(zip(FIELDS, headings)).get(field, field)
    write_plainly(folder / "fault.csv", rows, headings)
    status, text, findings = prepare(folder / "fault", folder / "fault.csv", *RULES)
    faults = [f for f in findings if f["severity"] == "fault"]
    found = [f for f in findings if f["kind"] == kind and
             (kind == "loop" or (f["row"], f["column"]) == (str(k + 2), column))]
    if kind == "undated" and "Time steps: gen" in text: found = [None]  # the date is not missed
    assert found, f"{kind}: not row {k + 2}, {column}, but {findings[:9]}"
    told = kind in ("repeated", "founder", "alike", "inferred", "undated")
    over = {f["kind"] for f in faults} - {kind} - {"number": {"ebv"}}.get(kind, set())
    assert not over and status == (not told), f"{kind}: status {status}, also {over}"
    shutil.rmtree(folder / "fault")
    counts[kind] += 1


def check_by_hand(folder, path, rows, rng):
    """Also gives the faults that the herd book has, by kind, and the rows without them."""
    status, _, findings = prepare(folder / "first", path)
    faults = Counter(f["kind"] for f in findings if f["severity"] == "fault")
    accept = [v for kind in faults for v in ("--accept", kind)]
    assert status == bool(faults)
    status, text, _ = prepare(folder / "prepared", path, *accept)
    assert status == 0, text
    clean = mended(rows, findings)
    coefficients, _ = analysed(folder / "prepared", path.stem, timesteps=-1)
    hand = folder / "hand"
    hand.mkdir()
    write_by_hand(hand, path.stem, clean, rng)
    shutil.copy(folder / "prepared" / f"{path.stem}.prm", hand)
    wanted, _ = analysed(hand, path.stem, timesteps=-1)
    differing = [(i, coefficients.get(i), v) for i, v in wanted.items() if coefficients.get(i) != v]
    assert len(wanted) == len(coefficients) and not differing, f"F, PCI: {differing[:9]}"
    return faults, clean


def check_rewritten(folder, clean, rng):
    """Also gives the candidates."""
    write_plainly(folder / "plain.csv", clean, LANGUAGES[0][:6])
    table, old, read = rewritten(clean, rng)
    (folder / "other.csv").write_bytes(table)
    results = []
    for name, remarks in [("plain", 0), ("other", read)]:
        status, text, findings = prepare(folder / name, folder / f"{name}.csv", *RULES)
        told = Counter(f["kind"] for f in findings)
        true = true_remarks(clean, text, remarks)
        if name == "other": true |= {k: told[k] for k in ("alike", "label")}  # drawn identifiers
        assert status == 0 and told == +true, f"{name}: told {told}, true {true}\n{text}"
        results.append(analysed(folder / name, name, generations=50))
    (coefficients, plan), (other_coefficients, other_plan) = results
    assert len(plan) == 20, plan
    assert [(old[s], old[d], *v) for s, d, *v in other_plan] == plan, "another plan"
    assert {old[i]: v for i, v in other_coefficients.items()} == coefficients, "other coefficients"
    return {r["identifier"] for r in rows_of(folder / "plain/plain.names.csv")
            if r["matings"] != "0"}


def check_herd(path):
    rng, folder = random.Random(f"{programs.seed} {path.stem}"), pathlib.Path(tempfile.mkdtemp())
    try:
        rows = read_book(path, rng)
        faults, clean = check_by_hand(folder, path, rows, rng)
        candidates = check_rewritten(folder, clean, rng)
        for _ in range(programs.runs): check_fault(folder, clean, candidates, rng)
    except Exception as violation:
        raise SystemExit(f"{path} --seed {programs.seed}, {folder}: {violation!r}") from violation
    shutil.rmtree(folder)
    print(f"{path.stem}: {len(rows)} rows, faults of its own: {dict(faults) or 'none'}", flush=True)


arguments = argparse.ArgumentParser()
arguments.add_argument("qob", type=lambda p: pathlib.Path(p).resolve())
arguments.add_argument("prepare", type=lambda p: pathlib.Path(p).resolve())
arguments.add_argument("herds", type=lambda p: pathlib.Path(p).resolve(), nargs="+")
arguments.add_argument("--runs", type=int, default=10)
arguments.add_argument("--seed", type=int, default=1)
programs, counts = arguments.parse_args(), Counter()
for herd in programs.herds: check_herd(herd)
print("put in:", ", ".join(f"{n} {kind}" for kind, n in sorted(counts.items())))
