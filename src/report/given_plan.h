// A plan that somebody has made, valued by the search's own evaluation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "report/animal_list.h"
#include "report/finished_run.h"
#include "report/names.h"
#include "report/report.h"

namespace qob {

struct GivenMating {
  std::int64_t row = 0;   // of the file
  std::string sire, dam;  // identifiers of the herd book or, without names, of the data file
  std::int32_t matings = 1;
};

struct GivenList {
  std::string file;
  std::vector<GivenMating> matings;
};

// Stops with all animals that are no candidates of the run, or of the wrong sex, row by row. Limits
// that the plan does not keep are among its faults. finished: with a plan.
GivenPlan value_given_plan(FinishedRun& finished, const Names& names, const GivenList& given,
                           AnimalList& animals);

}  // namespace qob
