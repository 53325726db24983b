// The population by birth time.
#pragma once

#include <vector>

#include "analysis/animal_statistics.h"
#include "pedigree/pedigree.h"
#include "report/report.h"

namespace qob {

// One row for each known birth time, ascending. `birth` is the time step.
//
// generations: complete generations equivalent, the sum over all known ancestors of (1/2)^n, n
// generations back (Maignan et al. 1996; Boichard et al. 1997, Genet. Sel. Evol. 29:5).
// coancestry: of N animals each with each but not with itself, from the mean c with themselves,
// (N^2 c - sum of (1 + F) / 2) / (N (N - 1)).
std::vector<TrendRow> trend_of(const Pedigree& pedigree, const AnimalStatistics& statistics);

}  // namespace qob
