// The population's history: inbreeding, completeness and generation interval by birth-time group,
// and the genetic contributions of ancestors.
#pragma once

#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Reads the group PopulationHistory and, for the contributions, Contrib. Fills pedigree.f, and
// pedigree.ids with what the requests name; writes `fcoefffile`, `fsummaryfile` (which stays open),
// `gcfile` and `maxgcfile`.
void pophistory(Run& run, Pedigree& pedigree);

}  // namespace qob
