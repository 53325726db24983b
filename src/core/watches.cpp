#include "core/watches.h"

#include <exception>
#include <initializer_list>

namespace qob {

// The relationship watch is made twice and shows its second name: so because the names stand here
// as the phases come, and logs know this phase by another name. The second making replaces the
// first.
void start_watches(Watches& w) {
  w.stopwatch.option_stopwatch({.default_clocks = NameList{"cpu", "wall"}, .form = "hh:mm:ss"});
  w.stopwatch.create_watch({&w.total, &w.init, &w.history, &w.pedigree, &w.ocs, &w.mating},
                           {"QOB Total time", "Initialisation", "Analyse pedigree", "Relationship",
                            "Optimal contribution selection", "Mating"});
  w.stopwatch.create_watch(w.pedigree, {"Pedigree"});
  w.stopwatch.create_watch(
      {&w.basepop, &w.eval, &w.repair, &w.mutate, &w.dirmut, &w.recomb, &w.matesel, &w.nrm},
      {"OCS Base population", "OCS Evaluation", "OCS Repair mateset", "OCS Mutation",
       "OCS Directed mutation", "OCS Recombination", "OCS Mating and selection", "OCS NRM"});
  w.stopwatch.start_watch(w.total);
  w.stopwatch.start_watch(w.init);
}

void end_initialisation(Journal& journal) {
  Unit& log = journal.units.log;
  Watches& w = journal.watches;
  w.stopwatch.option_stopwatch({.print_unit = &log, .error_unit = &log});
  w.stopwatch.stop_watch(w.init);
  w.stopwatch.print_watch(w.init);
  write_list(log);
}

void write_timing(Journal& journal) {
  Unit& log = journal.units.log;
  Watches& w = journal.watches;
  w.stopwatch.stop_watch(w.total);
  write_list(log);
  write_list(log, "----------------Timing of QOB program -------------------");
  const std::initializer_list<Watch*> watches = {
      &w.total, &w.init,   &w.history, &w.pedigree, &w.ocs,    &w.nrm,     &w.basepop,
      &w.eval,  &w.repair, &w.mutate,  &w.dirmut,   &w.recomb, &w.matesel, &w.mating};
  w.stopwatch.print_watch(watches);
  w.stopwatch.destroy_watch(watches);
  write_list(log, "---------------------------------------------------------");
}

TimedPhase::TimedPhase(Journal& journal, Watch& watch)
    : journal_(journal), watch_(watch), faults_before_(std::uncaught_exceptions()) {
  journal_.watches.stopwatch.start_watch(watch_);
}

TimedPhase::~TimedPhase() noexcept(false) {
  if (std::uncaught_exceptions() > faults_before_) return;
  journal_.watches.stopwatch.stop_watch(watch_);
  journal_.watches.stopwatch.print_watch(watch_);
  write_list(journal_.units.log);
}

}  // namespace qob
