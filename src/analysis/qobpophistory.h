// The population's history: inbreeding, completeness and generation interval by birth-time group,
// and the genetic contributions of ancestors.
#pragma once

#include "core/qobtypestools.h"

namespace qob {

// Reads the group PopulationHistory and, for the contributions, Contrib. Fills model.pedigree.f
// and writes `fcoefffile`, `fsummaryfile` (which stays open), `gcfile` and `maxgcfile`.
void pophistory(Model& model);

}  // namespace qob
