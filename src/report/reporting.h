// The door of the room: the results of a run, its pedigree and what the herd book calls its animals
// become a report.
//
// A run leaves tables of few digits and no name. The report takes from its files what was run and
// what was planned, and has the core compute every number anew: the value of the plan by the
// search's own evaluation, inbreeding and relationships by the run's own phases. So whoever reads
// the report sees the numbers that the run had, and is told when the data have changed since.
#pragma once

#include "report/finished_run.h"
#include "report/given_plan.h"
#include "report/names.h"
#include "report/population.h"
#include "report/report.h"

namespace qob {

struct Reported {
  Report report;  // all but checksums, and what qob-prepare found
  PopulationMeasures population;
};

// finished: taken up. names: of its herd book, or empty. given: a plan that somebody has made, to
// be valued beside the run's, or nullptr. Stops with all that is wrong with it, row by row.
Reported report_on(FinishedRun& finished, const Names& names, const GivenList* given);

}  // namespace qob
