// The population's history: inbreeding, completeness and generation interval by birth-time group,
// and the genetic contributions of ancestors.
//
// F of every animal comes first (inbreeding: Meuwissen & Luo 1992); from it the coancestry within
// each group, 1'A1 / 2N^2, and the inbreeding that pairing at random would have given, whose
// difference from the observed one is Wright's (1965) alpha = 1 - (1 - F) / (1 - expected F). Sums
// over A go through the pedigree and never form it (pedigree_products: Colleau 2002). Groups come
// in the order in which the animals show them; the last of them is what contributions are reported
// to.
#pragma once

#include "core/qobtypestools.h"
#include "pedigree/pedigree.h"

namespace qob {

// Reads the group PopulationHistory and, for the contributions, Contrib. Fills pedigree.f, and
// pedigree.ids with what the requests name; writes `fcoefffile`, `fsummaryfile` (which stays open),
// `gcfile` and `maxgcfile`.
void pophistory(Run& run, Pedigree& pedigree);

}  // namespace qob
