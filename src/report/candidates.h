// All candidates, ranked: what each brings, what the plan makes of it, and what the others lack.
#pragma once

#include <vector>

#include "report/animal_list.h"
#include "report/finished_run.h"
#include "report/population.h"
#include "report/report.h"

namespace qob {

// finished: with a plan. The chosen come first, by their matings, then the others, by what they
// lack; candidates that are alike by their merit.
std::vector<ReportedCandidate> reported_candidates(FinishedRun& finished,
                                                   const PopulationMeasures& population,
                                                   AnimalList& animals);

}  // namespace qob
