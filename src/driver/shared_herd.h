// A herd that several runs have in common. It is read once, its relationships are made once, and
// what this wrote is written again by each run, so that its files are those that it leaves alone:
//
//            log            summary, results
//   herd     1   2   3      f_coeff, F_summary, gencont, max_gc         1: data, 2: history and
//   a run   s1 e 2 g3 pf    the same, and its own                       relationships, 3: selection
//
// with what depends on a run between it: its start s, the end of its initialisation e, its goal g,
// the plan p and its finish f.
#pragma once

#include <deque>
#include <string>

#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "ocs/selection.h"
#include "pedigree/pedigree.h"

namespace qob {

// A run whose standard output and standard error are kept.
struct ToldRun {
  ToldRun() {
    run.journal.units.out.open_memory(&out);
    run.journal.units.err.open_memory(&err);
  }
  std::string out, err;
  Run run;

  // What it told last, which is what has stopped it if anything has.
  std::string last_words() const;
};

struct SharedHerd {
  Pedigree pedigree;  // as the relationships left it
  Relationship relationship;
  Selection selection;
  std::string of_data, of_analysis, of_selection;  // lines of the log
  std::deque<KeptResult> results;
};

// Reads the herd as the run of that parameter file does; names begin in run.files.folder. Standard
// output and standard error are open. Stops if the file asks for no matings.
void read_herd(Run& run, const char* parameter_file, SharedHerd& herd);

// Runs that parameter file, which differs from the herd's in its goal and its search alone. Any
// number of runs can do so at the same time. Ends by a stop.
[[noreturn]] void run_with(const SharedHerd& herd, Run& run, const char* parameter_file);

}  // namespace qob
