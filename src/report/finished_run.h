// A run that has ended, set up anew from its log, data file and mating list: the same animals,
// relationships and selection as the run had, with full digits and nothing written.
//
// The parameters are those that the log echoes, so that what a later change of the parameter file
// says does not count. Names of files in them begin where the run was started, which is the folder
// that is left of the prefix when the run's own prefix is taken away:
//
//   prefix herd/QOB_, resultsdirectory ./QOB_   ->   herd/
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/animal_statistics.h"
#include "analysis/relationship.h"
#include "core/qobtypestools.h"
#include "ocs/mateset.h"
#include "ocs/selection.h"
#include "pedigree/pedigree.h"
#include "report/results.h"

namespace qob {

struct FinishedRun {
  FinishedRun() = default;
  FinishedRun(const FinishedRun&) = delete;
  FinishedRun& operator=(const FinishedRun&) = delete;

  std::string prefix;
  LogOfRun log;
  Parameters as_run;  // as the log tells them
  Run run;            // the same, but for files that are not to be written again
  std::string told;   // what the run would tell, in lines
  Pedigree pedigree;
  AnimalStatistics statistics;

  // Of a run that planned matings.
  struct Planned {
    Relationship relationship;
    Selection selection;
    MatesetTable matings;          // one mateset, in the order of the mating list
    std::vector<double> listed_f;  // of the offspring, as that tells it
    MatesetValue value;

    Mateset mateset() { return matings(1); }
  };
  std::optional<Planned> planned;

  // The path of a result file, of an input.
  std::string result(std::string_view name) const { return prefix + std::string(trim(name)); }
  std::string input(std::string_view name) const { return run.files.path(name); }
  // Paths of all result files but the log, and of the parameter files beside the data.
  std::vector<std::string> results() const;
  std::vector<std::string> parameter_files() const;
};

// Sets it up. Stops with one message when a file is missing or does not fit the others.
void take_up_run(const std::string& prefix, FinishedRun& finished);

// The value of a mateset of the run's selection.
MatesetValue value_of(FinishedRun& finished, Mateset mateset);

}  // namespace qob
