#!/usr/bin/env python3
"""Carries out the workflow of two herds here and on a Slurm of its own, and compares what they collect.

usage: tests/workflow.py PROGRAMS    (the folder of qob, qob-frontier and qob-report)

What must hold, beside that all of it ends well:
  collected   equal to what qob-frontier makes alone, but for seconds
  a job that is killed   runs again, but not those of its runs that are finished
  a second call   finds nothing to do
  an input that has changed   is told
"""
import contextlib, csv, getpass, os, secrets, shutil, signal, socket, subprocess, sys, tempfile, time
from collections import Counter
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[1]
PROGRAMS = Path(sys.argv[1]).resolve()
HERDS = {"the cuvier": ["--weights", "5,10,20,40,80", "--search"], "macaque": ["--points", "3"]}
RUNS = 24  # of cuvier: five weights and its own, each directly and with three seeds
HELD = "the cuvier/w20_s2"  # waits to be killed
WAIT = 240  # seconds, for a busy machine
SLURM = """ClusterName=test
SlurmctldHost={host}(127.0.0.1)
SlurmUser={user}
SlurmdUser={user}
AuthInfo=socket={folder}/munge
SlurmctldPort={ports[0]}
SlurmdPort={ports[1]}
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
ReturnToService=2
KillWait=1
SelectType=select/cons_tres
SelectTypeParameters=CR_Core_Memory
NodeName={host} NodeAddr=127.0.0.1 CPUs=2 RealMemory=4000
PartitionName=all Nodes=ALL Default=YES
"""
# Notes the runs that it is asked for; the held one waits, until it is killed, for the first time.
QOB = """#!/bin/sh
echo "$PWD" >>{work}/asked
[ "$PWD" != "{held}" ] || ! mkdir {work}/held 2>/dev/null || {{
  echo "$SLURM_JOB_ID" >{work}/held/job
  sleep 60
}}
exec {programs}/qob "$@"
"""


def say(*command, cwd, env=None, status=0):
    done = subprocess.run(command, cwd=cwd, env=env, text=True, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    assert done.returncode == status, f"{command}: status {done.returncode}\n{done.stdout}"
    return done.stdout


def wait_for(what, is_there):
    end = time.monotonic() + WAIT
    while not is_there():
        assert time.monotonic() < end, f"{what}: not within {WAIT} s"
        time.sleep(0.1)


@contextlib.contextmanager
def started(log, env, *command, cwd=None):
    """A process that ends with this block, or with this script."""
    process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], cwd=cwd, env=env,
                               stdout=log.open("w"), stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL)
    try:
        yield process
    finally:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


@contextlib.contextmanager
def slurm(folder, env):
    """One node, in `folder`, with its own key, socket and ports; needs no init system."""
    (folder / "state").mkdir(parents=True)
    (folder / "spool").mkdir()
    (folder / "key").write_bytes(secrets.token_bytes(1024))
    (folder / "key").chmod(0o400)
    with contextlib.ExitStack() as sockets:
        free = [sockets.enter_context(socket.create_server(("127.0.0.1", 0))) for _ in range(2)]
        ports = [one.getsockname()[1] for one in free]
    (folder / "slurm.conf").write_text(SLURM.format(
        host=socket.gethostname().split(".")[0], user=getpass.getuser(), folder=folder, ports=ports))
    env = dict(env, SLURM_CONF=str(folder / "slurm.conf"))
    munge = [f"--{name}-file={folder}/{name}" for name in ("key", "pid", "log", "seed")]
    ask = lambda *command: subprocess.run(command, env=env, capture_output=True, text=True).stdout
    with contextlib.ExitStack() as stack:
        stack.enter_context(started(folder / "munged", env, "munged", "-F", "--force",
                                    f"--socket={folder}/munge", *munge))
        wait_for("munged", (folder / "munge").exists)
        stack.enter_context(started(folder / "slurmctld", env, "slurmctld", "-D", "-i"))
        stack.enter_context(started(folder / "slurmd", env, "slurmd", "-D"))
        wait_for("slurmd", lambda: "idle" in ask("sinfo", "-h", "-o", "%T"))
        try:
            yield env
        finally:
            ask("scancel", "--user", getpass.getuser())
            wait_for("the end of all jobs", lambda: not ask("squeue", "-h"))


def collected(file):
    rows = list(csv.DictReader(file.open()))
    return [{key: row[key] for key in row if key != "seconds"} for row in rows]


def expect_done(herds, folder, env, *command):
    for herd in HERDS:
        alone = collected(herds / f"{herd}_frontier/frontier.csv")
        assert collected(folder / herd / "frontier.csv") == alone, f"{folder}: {herd} differs"
        assert (folder / f"{herd}.report.html").stat().st_size > 10_000
    assert len(collected(folder / "the cuvier/frontier.csv")) == RUNS
    assert "Nothing to be done" in say(*command, cwd=folder, env=env)


def on_this_machine(herds, folder, env):
    command = ["snakemake", "--cores", "2"]
    say(*command, cwd=folder, env=env)
    expect_done(herds, folder, env, *command)
    with (herds / "macaque.dat").open("a") as data:
        data.write("! one more line\n")
    assert "expected qob-frontier" in say("snakemake", "--cores", "1", cwd=folder, env=env, status=1)


def on_slurm(herds, folder, env):
    work = folder.parent
    (work / "bin").mkdir()
    (work / "bin/qob").write_text(QOB.format(work=work, held=folder / HELD, programs=PROGRAMS))
    (work / "bin/qob").chmod(0o755)
    env = dict(env, PATH=f"{work}/bin:{env['PATH']}", CI="true")  # then Snakemake asks each second
    job, command = work / "held/job", ["snakemake", "--profile", "slurm", "--config", "minutes=0.1"]
    with slurm(work / "slurm", env) as env, started(work / "said", env, *command, cwd=folder) as flow:
        wait_for("the run that waits", lambda: job.exists() and job.read_text())
        say("scancel", job.read_text().strip(), cwd=work, env=env)
        with contextlib.suppress(subprocess.TimeoutExpired):
            flow.wait(WAIT)
        assert flow.returncode == 0, (work / "said").read_text()
    asked = Counter((work / "asked").read_text().splitlines())
    assert asked.pop(str(folder / HELD)) == 2 and set(asked.values()) == {1}, asked
    expect_done(herds, folder, env, *command)


signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended from outside"))  # and clean up
env = dict(os.environ, PATH=f"{PROGRAMS}:{os.environ['PATH']}:/usr/sbin")
needed = ["munged", "slurmctld", "slurmd", "snakemake", "setpriv", "qob-frontier"]
missing = [name for name in needed if not shutil.which(name, path=env["PATH"])]
if missing:
    sys.exit(f"not there: {', '.join(missing)} (tools/test installs them; without: -DQOB_WORKFLOW_TEST=OFF)")
with tempfile.TemporaryDirectory() as name:
    work, herds = Path(name), Path(name) / "herds"
    herds.mkdir()
    for herd, options in HERDS.items():
        example = herd.split()[-1]
        shutil.copy(SOURCE / f"examples/{example}/{example}.dat", herds)
        shutil.copy(SOURCE / f"examples/{example}/qob.prm", herds / f"{herd}.prm")
        say("qob-frontier", f"{herd}.prm", *options, cwd=herds, env=env)
        for folder in ("here", "there"):
            say("qob-frontier", f"{herd}.prm", *options, "--workflow", f"../{folder}", cwd=herds, env=env)
    on_slurm(herds, work / "there", env)
    on_this_machine(herds, work / "here", env)
print("the workflow gives here and on Slurm what qob-frontier gives alone")
