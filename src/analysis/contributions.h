// Genetic contributions of ancestors to later animals: founders and the largest contributions to
// the last group, and what the Contrib groups of the parameter file ask for.
#pragma once

#include "analysis/cohorts.h"
#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Writes `gcfile` and `maxgcfile`. Reads the Contrib groups from where the parameter file stands
// to its end; a request that does not fit the data is reported and skipped. Needs the inbreeding
// coefficients, and the summary file open. An identifier that only a request names is entered among
// the pedigree's, with a number beyond the animals'.
void contributions(Run& run, Pedigree& pedigree, const Cohorts& cohorts);

}  // namespace qob
