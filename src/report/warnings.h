// What to beware of in a plan and in the population behind it.
#pragma once

#include <vector>

#include "report/animal_list.h"
#include "report/finished_run.h"
#include "report/report.h"

namespace qob {

// The rate of inbreeding per generation and the effective size beyond which a population should not
// go (FAO 1998, Secondary guidelines: management of small populations at risk).
inline constexpr double kLargestRate = 0.01;
inline constexpr double kLeastSize = 50.0;

// report: its plan and population. The serious ones come first.
std::vector<Warning> warnings_of(FinishedRun& finished, const Report& report, AnimalList& animals);

}  // namespace qob
