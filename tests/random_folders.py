#!/usr/bin/env python3
"""Runs the program in folders where a user's things lie about, and checks that they stay.

usage: tests/random_folders.py PROGRAM PAIRS [SEED]

Makes random pairs of runs, from SEED (1) on, one after the other or at once, in one folder, two or
nested ones. The first violation ends it with status 1, tells the seed (which repeats it unless it
hangs on the moment) and leaves its folder. Root becomes nobody first. What must hold:
  results   equal those of a run alone in an empty folder, if the status is 0. What a user keeps
            under a result's name is given away, and so is what a link of that name leads to.
  inputs, files in use, the file of standard output   keep names and contents, but for lines added
  folders, links   stay, whatever their names
  others    keep what they hold, but for what runs wrote into *.prev; a .txt or .log may become one
  status    that of a run alone, or 1 with what is in the way; within 20 s, also at a terminal
"""
import fcntl, os, pty, random, re, shutil, stat, subprocess, sys, tempfile, time
from collections import Counter
from os.path import basename, dirname, isdir, isfile, islink, join, lexists, realpath
from pathlib import Path

HERD = "1 0 0 1 1 0 0\n2 0 0 2 1 0 0\n3 1 2 1 2 4 1\n4 1 2 2 2 4 2\n5 1 2 2 2 4 3\n"
PARAMETERS = """&DataParameters datafile={},\n resultsdirectory={},\n recodefile={} /
&PopulationHistory / &RelationshipMatrix gfile={}, source={} / &OCSParameters nmatings=4 /
&AlgorithmParameters generations={}, popsize=9, seed_rng={} / &MatingOptions /\n"""
RESULTS = ["qob.log", "Candidates.txt", "F_summary.txt", "f_coeff.txt", "gencont.txt", "max_gc.txt",
           "male_list.txt", "qob_MatingList.txt", "qob_best.txt", "qob_conv.txt"]
LONG = "l" * 77  # with ".data" too long for a name; cut, it ends in ".da"
NAMES = ["notes.txt", "x.txt", "y.prev", "backup.prev", "*.prev", "*.txt", "*.log", "*.txt.prev",
         "old.log", "qob.log", "qob.log.prev", "notes.txt.prev", ".txt", ".prev", "-f.txt", "-rf",
         "-t.prev", "a b.txt", "a b.prev", "c\\d.txt", "\\*.log", "it's.log", '"q".txt', "[a].txt",
         "?.prev", "new\nline.txt", "\n.prev", "$(id).txt", "`id`.log", ";.prev", "&.txt", "#.log",
         "herd.txt", "herd.prev", "\udcff.txt", "é.prev", "x.TXT", "~", LONG + ".da", LONG]
PREFIXES = ["r_", "", "P/r_", "d\\", "\\-rf ", "a b", "-x/", "P//", "P\\/", "P/x.txt/", "y.prev/",
            "*/", "it's/", "$x/r", "P/*", LONG, LONG[:60] + "/", "r\\w", "../", "../q/r_", "../P/",
            *4 * ["P/"], *2 * ["../q/", "./"]]
WAYS = rb"ERROR.*(input file|uses it|goes there|of that name|open|found)|Is a dir|No such|denied"
NOBODY = 65534
counts = Counter()  # what happened

def everything():
    """Mode, number and contents of all there is."""
    paths = sorted(join(f, name) for f, *names in os.walk(os.getcwd()) for name in sum(names, []))
    return {path: (*os.lstat(path)[:2], os.readlink(path) if islink(path) else b"" if isdir(path)
                   else Path(path).read_bytes()) for path in paths}

def result(path):
    """What a file holds but for clocks."""
    data = Path(path).read_bytes() if isfile(path) else b"none"
    return re.sub(rb"(?m)^(  cpu=| wall=| QOB started|  QOB started).*", b"", data)

class Run:
    def __init__(self, rng, folder, prefix, own):
        self.folder, home = folder, prefix[:prefix.rfind("/") + 1]
        odd = [prefix + rng.choice(RESULTS), prefix + "qob.log", "qob.log", LONG + ".data"]
        plain = [name for name in NAMES if "\n" not in name]
        odd += [place + rng.choice(plain) for place in ("", home, home)]
        source, usual = rng.choice(2 * [("pedigree", "_null_")] + [("file", "g.rel")])
        self.prm, data, recode, gfile, self.screen = (rng.choice(30 * [name] + odd)
            for name in (own + ".prm", own + ".dat", "_null_", usual, "/none/"))
        quoted = ("'" + name.replace("'", "''") + "'"
                  for name in (data, prefix, recode, gfile, source))
        text = PARAMETERS.format(*quoted, rng.choice([30, 3000, 10000]), rng.randint(1, 9))
        if rng.random() < 0.05: text = text.replace("recodefile", "recode")
        self.inputs = {self.prm: text, data: HERD + rng.choice(["", "6 1 0 1 2 4 3\n"])}
        if source == "file": self.inputs[gfile] = "3 3 1\n4 4 1\n5 5 1\n3 4 0.5\n3 5 0.25\n"
        prefix, self.results = prefix.strip(), {"qob.log"}
        if LONG + ".data" not in (data, recode, gfile) and "recodefile" in text:
            self.results |= {recode, gfile if source == "pedigree" else recode} - {"_null_"}
            self.results |= {prefix + name for name in RESULTS}
            self.results.add(re.sub(r"\\(.)", r"\1", prefix) + "qob.log")  # as the shell reads it

    def path(self, name):
        return realpath(join(self.folder, name))

    def start(self, *streams):
        self.process = subprocess.Popen([program, self.prm], 0, None, *streams, cwd=self.folder)

    def prepare(self, texts, rng=None):
        """Makes its folders, or only most of them, and inputs."""
        for name in sorted({*self.inputs, *self.results}):
            if not rng or rng.random() < 0.9: os.makedirs(dirname(self.path(name)), exist_ok=True)
        for path, data in ((self.path(name), texts[name]) for name in texts):
            if isdir(dirname(path)) and not isdir(path): Path(path).write_bytes(os.fsencode(data))

    def look(self, rng, held, others):
        """At what is there before it starts, and at what it gives alone; others run with it."""
        texts = {n: Path(self.path(n)).read_bytes() for n in self.inputs if isfile(self.path(n))}
        self.reads = {os.stat(self.path(name)).st_ino for name in texts if self.prm in texts}
        self.paths, here = {self.path(name) for name in self.results}, os.getcwd()
        try: self.shown = open(self.path(self.screen), "ab+")
        except OSError: self.shown = tempfile.TemporaryFile()
        self.reads.add(ino := os.fstat(self.shown.fileno()).st_ino)
        results = [other.path(name) for other in others for name in other.results]
        taken = {*held, *(os.stat(path).st_ino for path in results if lexists(path))}
        if ino in taken or len(self.reads) <= len(texts): self.shown = tempfile.TemporaryFile()
        self.told = rng.choice([self.shown, tempfile.TemporaryFile()])
        self.size = self.shown.seek(0, 2)
        with tempfile.TemporaryDirectory(prefix="random_folders_") as alone:
            os.chdir(alone)
            self.prepare(texts)
            self.start(*3 * [subprocess.DEVNULL])
            self.code_alone = self.process.wait(20)
            found = {name: result(self.path(name)) for name in self.results - {*texts}
                     if isfile(self.path(name))}
            os.chdir(here)
        self.expected = {self.path(name): data for name, data in found.items()}
        self.logs = {self.path(name) for name in found if name.endswith("qob.log")}

def leave_about(rng, names, held, written):
    """Something that a user has, under one of the names, in some folder."""
    found = everything()
    folders = [path for path, (mode, *_) in found.items() if stat.S_ISDIR(mode)]
    files = [path for path, (mode, *_) in found.items() if stat.S_ISREG(mode)]
    file = rng.choice([path for path in files if found[path][2] in written] * 2 + files)
    path, kind, ino = join(rng.choice(folders), rng.choice(names)), rng.randrange(9), found[file][1]
    if kind == 0 and ino not in held:
        held[ino] = open(file, "rb")
        fcntl.flock(held[ino], rng.choice([fcntl.LOCK_EX, fcntl.LOCK_SH]))
    elif kind == 1: os.chmod(file, 0o444)
    elif lexists(path): return
    elif kind == 2: os.mkdir(path)
    elif kind == 3: shutil.copy(file, path)
    elif kind == 4: os.link(file, path)
    elif kind == 5:
        os.rename(file, path)
        os.symlink(path, file)
    elif kind == 6: os.symlink(rng.choice([*found, "no/where", rng.choice(names)]), path)
    else: Path(path).write_text(rng.choice(["", f"mine {rng.random()}\n"]))

def check_files(runs, before, after, held, written):
    paths, reads = (set().union(*some) for some in zip(*((run.paths, run.reads) for run in runs)))
    is_aside, both = re.compile(r"\.prev(/[^/]+)?\Z").search, len(runs) > 1
    targets = {realpath(path) for path in before if path.endswith(".prev")}  # folders, by links
    for path, old in before.items():
        if after.get(path) == old: continue
        fault, may_move = f"{path} was {old}, is {after.get(path)}", path[-4:] in (".txt", ".log")
        assert stat.S_ISREG(old[0]) and old[1] not in held, fault
        assert old[1] not in reads or both and (path in paths or may_move), fault
        aside = [e for q, e in after.items()
                 if is_aside(q) and q.startswith(dirname(path)) or dirname(q) in targets]
        gone = old[2] in written and (is_aside(path) or may_move and aside)
        assert path in paths or may_move and old in aside or gone, fault
        counts["moved" if old in aside else "replaced"] += path not in paths
    _, inos, known = map(set, zip(*before.values()))
    for path, new in after.items():
        assert path in paths or new[1] in inos or both and is_aside(path), f"{path} is new: {new}"
        if new[2] not in known: written.add(new[2])

def step(rng, runs, held, written):
    """Runs that start together."""
    for run in runs: run.look(rng, {*held}, [other for other in runs if other is not run])
    shared = runs[0].paths & runs[-1].paths if len(runs) > 1 else set()
    before, ends = everything(), [os.open(os.devnull, os.O_RDONLY), *pty.openpty()]
    for run in runs:
        run.start(rng.choice([ends[0], ends[2]]), run.shown, run.told)
        time.sleep(rng.choice([0, rng.uniform(0, 0.05)]))
    try: codes = [run.process.wait(20) for run in runs]
    finally:
        for run in runs: run.process.kill()
        for end in ends: os.close(end)
    for run, code in zip(runs, codes):
        run.told.seek(run.size * (run.told is run.shown))
        said, old = run.told.read(), run.code_alone
        os.truncate(run.shown.fileno(), run.size)
        assert code == old or code == 1 and re.search(WAYS, said), f"{code}, not {old}: {said}"
        run.bad = {path for path, data in run.expected.items() if result(path) != data}
        if b"could not be copied" in said: run.bad -= run.logs
        run.met = b"another run" in said
        assert code or not run.bad - shared, f"{run.folder}: {run.bad} not as alone"
        assert code == 0 or said.strip(), f"{code}, and nothing is said"
        assert not run.met or held or len(runs) > 1, f"there is no other run: {said}"
        counts[f"status {code}" + ", in the way" * (code != old)] += 1
    check_files(runs, before, everything(), {*held}, written)
    if shared and 0 in codes and all(code == 0 or run.met for run, code in zip(runs, codes)):
        assert not all(code or run.bad for run, code in zip(runs, codes)), "results of two runs"

def check_pair(rng):
    second = "w/" + rng.choice(["a", "b", rng.choice(["a/x.txt", "a/y.prev", "a/P", "a/qob.log"])])
    prefix, held, written = rng.choice(PREFIXES), {}, set()
    other = rng.choice([prefix, prefix, "../" + prefix, rng.choice(PREFIXES)])
    runs = [Run(rng, "w/a", prefix, "qob") for _ in "12"] + [Run(rng, second, other, "q")]
    while {*map(runs[1].path, runs[1].inputs)} & {*map(runs[2].path, runs[2].inputs)}:
        runs[2] = Run(rng, second, other, "q")
    for folder in ("w/a", second): os.makedirs(folder, exist_ok=True)
    for run in runs:
        run.prepare(run.inputs, rng)
        if run is runs[0] and rng.random() < 0.6: step(rng, [run], held, written)
    names = NAMES + 2 * sorted(basename(name) for run in runs for name in run.results)
    for _ in range(rng.randint(0, 8)): leave_about(rng, names, held, written)
    for some in rng.choice([[runs[1:]], [[runs[1]], [runs[2]]]]):
        step(rng, some, held, written)
        for _ in range(rng.randint(0, 3)): leave_about(rng, names, held, written)

def become_nobody(program):
    """Gives a copy of the program, which nobody may run wherever the other stands."""
    home = tempfile.mkdtemp(prefix="random_folders_")
    shutil.copy(program, home)
    os.chown(home, NOBODY, NOBODY)
    os.setgroups([])
    os.setgid(NOBODY)
    os.setuid(NOBODY)
    return join(home, basename(program))

program, pairs = realpath(sys.argv[1]), int(sys.argv[2])
first = int(sys.argv[3]) if len(sys.argv) > 3 else 1
if os.geteuid() == 0: program = become_nobody(program)
for seed in range(first, first + pairs):
    folder = tempfile.mkdtemp(prefix="random_folders_")
    os.chdir(folder)
    try: check_pair(random.Random(seed))
    except Exception as fault: raise SystemExit(f"seed {seed}, {folder}: {fault!r}") from fault
    os.chdir("/")
    shutil.rmtree(folder)
print(f"{pairs} pairs:", ", ".join(f"{number} {kind}" for kind, number in sorted(counts.items())))
