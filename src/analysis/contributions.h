// Genetic contributions of ancestors to later animals: founders and the largest contributions to
// the last group, and what the Contrib groups of the parameter file ask for.
#pragma once

#include "analysis/cohorts.h"
#include "core/qobtypestools.h"

namespace qob {

// Writes `gcfile` and `maxgcfile`. Reads the Contrib groups from where the parameter file stands
// to its end; a request that does not fit the data is reported and skipped. Needs model.pedigree
// with f, and the summary file open.
void contributions(Model& model, const Cohorts& cohorts);

}  // namespace qob
