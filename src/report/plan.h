// The plan of a run as it is told: its value, who takes part, the matings and what makes their
// inbreeding, what else each female could have.
#pragma once

#include "report/animal_list.h"
#include "report/finished_run.h"
#include "report/report.h"

namespace qob {

// Takes up the animals that it names. finished: with a plan.
ReportedPlan reported_plan(FinishedRun& finished, AnimalList& animals);

// The figures of any mateset of the run's selection; of a mating neither common ancestors nor more.
std::vector<ReportedMating> reported_matings(const FinishedRun::Planned& planned, Mateset mateset,
                                             AnimalList& animals);
PlanValue reported_value(const MatesetValue& value);
SexUse use_of(const Candidates& candidates, Mateset mateset, int sex);

}  // namespace qob
