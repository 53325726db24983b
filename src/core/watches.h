// The watches of a run: what is timed, and how a phase is.
#pragma once

#include "core/stopwatch.h"
#include "core/units.h"

namespace qob {

struct Watches {
  Stopwatch stopwatch;
  Watch total, init, history, pedigree, ocs, mating;  // pedigree: the relationship matrix
  Watch basepop, eval, repair, mutate, dirmut, recomb, matesel, nrm;
};

// Where a run tells what it does and how long it takes.
struct Journal {
  Units units;
  Watches watches;
};

// Creates all watches. Those of the whole run and of its start begin to run.
void start_watches(Watches& watches);
// The start is over: from here on watches are printed to the log.
void end_initialisation(Journal& journal);
// Stops the watch of the whole run and prints all to the log.
void write_timing(Journal& journal);

// Runs a watch from its construction to the end of its scope, so that no early return leaves the
// watch running.
class Timed {
 public:
  Timed(Watches& watches, Watch& watch) : stopwatch_(watches.stopwatch), watch_(watch) {
    stopwatch_.start_watch(watch_);
  }
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;
  ~Timed() { stopwatch_.stop_watch(watch_); }

 private:
  Stopwatch& stopwatch_;
  Watch& watch_;
};

// The same for a phase of the run: at its end the watch is printed to the log, unless a fault ends
// the phase.
class TimedPhase {
 public:
  TimedPhase(Journal& journal, Watch& watch);
  TimedPhase(const TimedPhase&) = delete;
  TimedPhase& operator=(const TimedPhase&) = delete;
  ~TimedPhase() noexcept(false);

 private:
  Journal& journal_;
  Watch& watch_;
  int faults_before_;
};

}  // namespace qob
